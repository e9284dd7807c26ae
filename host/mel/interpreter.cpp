#include "host/mel/interpreter.h"

#include "host/core/log.h"
#include "host/mel/compiler.h"
#include "host/mel/executor.h"
#include "host/mel/language_commands.h"
#include "host/mel/library.h"

#include <deque>
#include <filesystem>
#include <fstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vesk::mel {

namespace {

std::string bareName(std::string_view name) {
    return std::string(name.substr(!name.empty() && name.front() == '$' ? 1 : 0));
}

bool isFile(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

std::string readFile(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size > Limits::kTextSize) {
        throw Error("Script \"" + path + "\" is larger than " + std::to_string(Limits::kTextSize) +
                    " bytes.");
    }
    std::ifstream file(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file) throw Error("Cannot read script \"" + path + "\".");
    return text;
}

} // namespace

struct Machine::Impl : Environment, Surroundings {
    explicit Impl(Machine& owner) : self(owner) { addLanguageCommands(commands); }

    /// One text or call from outside; the outermost one starts the count of steps.
    class Level {
      public:
        explicit Level(Impl& impl) : impl_(impl) {
            if (impl.depth >= impl.limitValues.nestedRuns) {
                limitReached(impl.limitValues, &Limits::nestedRuns);
            }
            if (impl.depth++ == 0) impl.executor.resetSteps();
        }
        ~Level() { --impl_.depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

      private:
        Impl& impl_;
    };

    // Environment and Surroundings.
    Global* findGlobal(const std::string& name) override;
    const Function* findProcedure(const std::string& name, const Module* module) override;
    void resolve(CallSite& site, const Function& caller) override;
    void define(const std::shared_ptr<Function>& procedure) override;
    void report(Error& error) override;
    Machine& machine() override { return self; }
    const Limits& limits() const override { return limitValues; }
    bool isInterrupted() const override { return interruptCheck && interruptCheck(); }

    std::shared_ptr<Function> procedureNamed(const std::string& name, const Module* module) const;
    std::optional<Target> targetOf(const std::string& name, const Module* module);
    std::optional<std::string> findOnPath(const std::string& name) const;
    std::optional<Target> targetOrScript(const std::string& name, const Module* module);
    Value evaluate(std::string_view text, std::string fileName, int firstLine);
    Value evaluateFile(const std::string& path);
    Value callName(const std::string& name, std::span<const Value> arguments);
    void finish();
    template <class Work>
    Result reported(Work work);

    Machine& self;
    Limits limitValues;
    std::function<bool()> interruptCheck;
    std::unordered_map<std::string, std::unique_ptr<Global>> globals;
    std::unordered_map<std::string, std::shared_ptr<Function>> procedures;
    /// Local procedures of texts without a file name, which all see each other.
    std::shared_ptr<Module> unnamed = std::make_shared<Module>();
    std::vector<std::shared_ptr<Function>> replaced; ///< procedures replaced while they ran
    std::vector<std::string> scriptPath;
    std::unordered_set<std::string> foundByName; ///< script files that calls have run
    std::deque<std::string> deferred;
    bool finishing = false;
    std::size_t depth = 0;
    Executor executor{*this};
};

Global* Machine::Impl::findGlobal(const std::string& name) {
    const auto found = globals.find(name);
    return found == globals.end() ? nullptr : found->second.get();
}

std::shared_ptr<Function> Machine::Impl::procedureNamed(const std::string& name, const Module* module) const {
    const auto local = module->procedures.find(name);
    if (local != module->procedures.end()) return local->second;
    const auto found = procedures.find(name);
    return found == procedures.end() ? nullptr : found->second;
}

const Function* Machine::Impl::findProcedure(const std::string& name, const Module* module) {
    return procedureNamed(name, module).get();
}

std::optional<Target> Machine::Impl::targetOf(const std::string& name, const Module* module) {
    if (const std::shared_ptr<Function> procedure = procedureNamed(name, module)) {
        return Target{procedure.get(), nullptr};
    }
    if (std::shared_ptr<const Command> command = commands.share(name))
        return Target{nullptr, std::move(command)};
    return std::nullopt;
}

/// What a name means; a script of that name on the path is run first when nothing else has the name.
std::optional<Target> Machine::Impl::targetOrScript(const std::string& name, const Module* module) {
    std::optional<Target> target = targetOf(name, module);
    if (target) return target;
    const std::optional<std::string> script = findOnPath(name);
    if (!script || foundByName.contains(*script)) return std::nullopt;
    evaluateFile(*script);
    foundByName.insert(*script);
    return targetOf(name, module);
}

void Machine::Impl::resolve(CallSite& site, const Function& caller) {
    std::optional<Target> target = targetOrScript(site.name, caller.module);
    if (!target) throw Error("Cannot find procedure \"" + site.name + "\".");
    site.target = std::move(*target);
    site.stamp = stamp();
}

void Machine::Impl::define(const std::shared_ptr<Function>& procedure) {
    auto& table = procedure->isGlobal ? procedures : procedure->module->procedures;
    std::shared_ptr<Function>& slot = table[procedure->name];
    if (slot && executor.isRunning(*slot)) replaced.push_back(slot);
    slot = procedure;
    ++procedureVersion;
}

void Machine::Impl::report(Error& error) {
    if (error.isReported()) return;
    log().error(error.describe(), error.detail());
    error.setReported();
}

std::optional<std::string> Machine::Impl::findOnPath(const std::string& name) const {
    for (const std::string& folder : scriptPath) {
        const std::filesystem::path path = std::filesystem::path(folder) / name;
        if (isFile(path)) return path.string();
        if (isFile(path.string() + ".mel")) return path.string() + ".mel";
    }
    return std::nullopt;
}

Value Machine::Impl::evaluate(std::string_view text, std::string fileName, int firstLine) {
    const Level level(*this);
    if (text.size() > Limits::kTextSize) {
        throw Error("A text is limited to " + std::to_string(Limits::kTextSize) + " bytes.");
    }
    const std::shared_ptr<Module> module = fileName.empty() ? unnamed : std::make_shared<Module>();
    auto source = std::make_shared<const Source>(std::move(fileName), std::string(text), firstLine);
    const std::unique_ptr<Unit> unit = compile(std::move(source), module, *this);
    for (std::unique_ptr<Global>& global : unit->globals) {
        const std::string& name = global->name;
        globals.try_emplace(name, std::move(global));
    }
    // A procedure may be called above its definition; one that is there already serves until it is replaced.
    for (const std::shared_ptr<Function>& procedure : unit->procedures) {
        auto& table = procedure->isGlobal ? procedures : module->procedures;
        if (!table.contains(procedure->name)) define(procedure);
    }
    Value value;
    for (const std::unique_ptr<Function>& statement : unit->statements) {
        try {
            value = executor.run(*statement, {});
        } catch (Error& error) { // one that came up before the statement began
            if (!error.isPlaced()) error.setPlace(Place{unit->source, statement->places.front()});
            throw;
        }
    }
    return value;
}

Value Machine::Impl::evaluateFile(const std::string& path) { return evaluate(readFile(path), path, 1); }

Value Machine::Impl::callName(const std::string& name, std::span<const Value> arguments) {
    const Level level(*this);
    const std::optional<Target> target = targetOrScript(name, unnamed.get());
    if (!target) throw Error("Cannot find procedure \"" + name + "\".");
    if (target->procedure) return executor.run(*target->procedure, arguments);
    return executor.runCommand(*target->command, name, arguments, {});
}

/// After the outermost text: what it put off, and what that puts off.
void Machine::Impl::finish() {
    replaced.clear();
    if (finishing) return;
    finishing = true;
    for (std::size_t count = 0; !deferred.empty(); ++count) {
        if (count >= limitValues.deferred) {
            log().error(limitMessage(limitValues, &Limits::deferred));
            deferred.clear();
            break;
        }
        const std::string text = std::move(deferred.front());
        deferred.pop_front();
        self.run(text);
    }
    finishing = false;
}

/// Runs work from outside: errors end here, in the log and in the result. After the outermost work comes what
/// it put off.
template <class Work>
Result Machine::Impl::reported(Work work) {
    const auto failed = [this](Error error) {
        report(error);
        return Result{false, {}, error.message(), error.place(), error.stack()};
    };
    Result result;
    try {
        result.value = work();
    } catch (const Error& error) {
        result = failed(error);
    } catch (const std::exception& error) {
        result = failed(Error(error.what()));
    }
    if (depth == 0) finish();
    return result;
}

Machine::Machine() : impl_(std::make_unique<Impl>(*this)) {}

Machine::~Machine() = default;

CommandTable& Machine::commands() { return impl_->commands; }

Limits& Machine::limits() { return impl_->limitValues; }

void Machine::setInterruptCheck(std::function<bool()> isInterrupted) {
    impl_->interruptCheck = std::move(isInterrupted);
}

Result Machine::run(std::string_view text, std::string fileName, int firstLine) {
    return impl_->reported([&] { return impl_->evaluate(text, std::move(fileName), firstLine); });
}

Result Machine::source(const std::string& path) {
    return impl_->reported([&] { return evaluateFile(path); });
}

Result Machine::callProc(std::string_view name, std::span<const Value> args) {
    return impl_->reported([&] { return impl_->callName(std::string(name), args); });
}

Value Machine::evaluate(std::string_view text, std::string fileName, int firstLine) {
    return impl_->evaluate(text, std::move(fileName), firstLine);
}

Value Machine::evaluateFile(const std::string& path) {
    const std::optional<std::string> found = findScript(path);
    if (!found) throw Error("Cannot find file \"" + path + "\" for source statement.");
    return impl_->evaluateFile(*found);
}

void Machine::rethrow(const Result& result) {
    Error error(result.error, result.place);
    error.setReported();
    for (const StackEntry& entry : result.stack)
        error.addCaller(entry);
    throw error;
}

void Machine::defer(std::string text) {
    impl_->deferred.push_back(std::move(text));
    if (impl_->depth == 0) impl_->finish();
}

bool Machine::hasProc(std::string_view name) const { return impl_->procedures.contains(std::string(name)); }

std::string Machine::whatIs(const std::string& name) const {
    if (const std::shared_ptr<Function> procedure = impl_->procedureNamed(name, impl_->unnamed.get())) {
        const std::string& file = procedure->source->name();
        return file.empty() ? "Mel procedure entered interactively." : "Mel procedure found in: " + file;
    }
    if (impl_->commands.find(name) || !builtinsNamed(name).empty()) return "Command";
    if (const std::optional<std::string> script = impl_->findOnPath(name))
        return "Script found in: " + *script;
    return "Unknown";
}

std::optional<Value> Machine::global(std::string_view name) const {
    const Global* global = impl_->findGlobal(bareName(name));
    if (!global) return std::nullopt;
    switch (global->type) {
    case Type::Int: return global->numbers[0].whole();
    case Type::Float: return global->numbers[0].f;
    case Type::Vector: return MVector(global->numbers[0].f, global->numbers[1].f, global->numbers[2].f);
    default: return global->object;
    }
}

void Machine::setGlobal(std::string_view name, const Value& value) {
    std::unique_ptr<Global>& slot = impl_->globals[bareName(name)];
    if (!slot) {
        slot = std::make_unique<Global>();
        slot->name = bareName(name);
        slot->type = value.isNone() ? Type::Any : value.type();
    }
    switch (slot->type) {
    case Type::Int: slot->numbers[0].i = value.asInt(); break;
    case Type::Float: slot->numbers[0].f = value.asFloat(); break;
    case Type::Vector: {
        const MVector vector = value.asVector();
        for (unsigned int i = 0; i < 3; ++i)
            slot->numbers[i].f = vector[i];
        break;
    }
    case Type::Any: slot->object = value; break;
    default: slot->object = value.convertedTo(slot->type);
    }
}

std::vector<std::string>& Machine::scriptPath() { return impl_->scriptPath; }

void Machine::rehash() { impl_->foundByName.clear(); }

std::vector<std::string>& Machine::writeFolders() { return impl_->executor.library().files.writeFolders; }

std::optional<std::string> Machine::findScript(const std::string& name) const {
    if (isFile(name)) return name;
    if (isFile(name + ".mel")) return name + ".mel";
    return impl_->findOnPath(name);
}

} // namespace vesk::mel
