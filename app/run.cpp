// `vesk run`: open, override, evaluate frame by frame, write.

#include "app/commands.h"
#include "app/plug_json.h"
#include "app/progress.h"
#include "app/talk.h"

#include "host/core/log.h"
#include "host/graph/scene.h"
#include "host/scene/export.h"
#include "host/session/session.h"
#include "parallel/loops.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iterator>

namespace vesk::app {

namespace {

volatile std::sig_atomic_t interrupted = 0;
void onInterrupt(int) { interrupted = 1; }

/// Something that the user asked for and did not get; its sentence was told already.
struct Failed {};

void require(const Outcome& outcome) {
    if (outcome) return;
    log().error(outcome.error);
    throw Failed();
}

/// The last run of `#` becomes the frame, with as many digits at least.
std::string withFrame(const std::string& name, double frame) {
    const auto last = name.find_last_of('#');
    if (last == std::string::npos) return name;
    auto first = last;
    while (first > 0 && name[first - 1] == '#')
        --first;
    char digits[64];
    const int width = static_cast<int>(last - first + 1);
    if (frame == std::floor(frame)) {
        std::snprintf(digits, sizeof digits, "%0*.0f", std::min(width, 32), frame);
    } else {
        std::snprintf(digits, sizeof digits, "%0*.10g", std::min(width, 32), frame);
    }
    return name.substr(0, first) + digits + name.substr(last + 1);
}

class Run {
  public:
    Run(const RunOptions& options, Session& session) : options_(options), session_(session) {}

    void all() {
        load();
        for (const auto& file : options_.files)
            read(file);
        for (const auto& set : options_.sets)
            override(set);
        evaluate();
    }

    std::size_t written() const { return written_; }
    /// A file was read, but not all of it.
    bool isIncomplete() const { return isIncomplete_; }

  private:
    /// A scene of which some lines failed is evaluated all the same; what cannot be read at all ends the run.
    void read(const std::string& file) {
        const Outcome outcome = session_.runFile(file);
        if (outcome) return;
        if (session_.scene().fileName.empty() || std::filesystem::path(file).extension() != ".ma")
            require(outcome);
        log().error(outcome.error);
        isIncomplete_ = true;
    }

    void load() {
        if (options_.noPlugin) return;
        require(session_.plugins().load(options_.plugin.empty() ? pluginBesideCommand() : options_.plugin));
    }

    /// The value is as a script would write it behind `setAttr plug`; a text attribute takes it as it stands.
    void override(const Assignment& set) {
        const auto range = graph::findPlug(session_.scene(), set.left);
        require(Outcome{range.error});
        const bool isText =
            range.plug.attr->kind == graph::AttrKind::Typed && range.plug.attr->dataType == MFnData::kString;
        std::string command = "setAttr ";
        if (isText) {
            std::string quoted;
            for (const char c : set.right)
                quoted += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
            command += "-type \"string\" " + set.left + " \"" + quoted + "\"";
        } else {
            command += set.left + " " + set.right;
        }
        if (!session_.run(command, "--set " + set.left).ok) throw Failed();
    }

    void evaluate() {
        if (options_.gets.empty() && options_.exports.empty()) return;
        for (const auto& one : options_.exports)
            require(scene::checkExportName(one.left));
        const auto frames =
            options_.frames.empty() ? std::vector<double>{session_.scene().frame()} : options_.frames;
        checkNames(frames.size());
        Progress progress(options_.frames.empty() ? ProgressDialect::None : options_.progress, frames.size());
        std::size_t count = 0;
        for (const double frame : frames) {
            if (interrupted) return;
            if (!options_.frames.empty()) session_.scene().setFrame(frame);
            for (const auto& plug : options_.gets)
                print(plug, frame);
            for (const auto& one : options_.exports) {
                if (interrupted) return;
                const std::string file = withFrame(one.left, frame);
                require(scene::exportPlug(session_.scene(), file, one.right));
                told(one.right + " -> " + file);
                ++written_;
            }
            progress.done(++count);
        }
    }

    /// Several frames into one name would leave the last alone.
    void checkNames(std::size_t frameCount) const {
        if (frameCount < 2) return;
        for (const auto& one : options_.exports) {
            if (one.left.find('#') != std::string::npos) continue;
            require(
                Outcome::fail("--export '" + one.left + "': several frames need a '#' in the file's name"));
        }
    }

    void print(const std::string& plug, double frame) const {
        std::string line;
        require(plugJson(session_.scene(), plug, line));
        if (options_.json) {
            const std::string at = options_.frames.empty() ? "" : ", \"frame\": " + frameText(frame);
            std::printf("{\"plug\": %s%s, \"value\": %s}\n", quotedJson(plug).c_str(), at.c_str(),
                        line.c_str());
        } else {
            std::printf("%s\n", line.c_str());
        }
        if (std::fflush(stdout) != 0) require(Outcome::fail("cannot write to standard output"));
    }

    void told(const std::string& text) const {
        if (options_.frames.empty()) log().info(text);
    }

    const RunOptions& options_;
    Session& session_;
    std::size_t written_ = 0;
    bool isIncomplete_ = false;
};

void reportCosts(const graph::Scene& scene) {
    std::vector<std::pair<std::string, graph::Cost>> rows(scene.profile.byType.begin(),
                                                          scene.profile.byType.end());
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.second.own > b.second.own; });
    std::fprintf(stderr, "%-28s %10s %14s %14s\n", "node type", "computes", "own ms", "with inputs ms");
    for (const auto& [type, cost] : rows) {
        std::fprintf(stderr, "%-28s %10zu %14.3f %14.3f\n", type.c_str(), cost.computes,
                     static_cast<double>(cost.own.count()) / 1e6,
                     static_cast<double>(cost.total.count()) / 1e6);
    }
}

} // namespace

int runScenes(const RunOptions& options) {
    if (options.threads > 0) parallel::setThreads(options.threads);
    const auto start = std::chrono::steady_clock::now();
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    const Talk talk(options.json);
    SessionOptions sessionOptions;
    sessionOptions.interactive = options.interactiveSession;
    sessionOptions.userDir = options.userDir;
    sessionOptions.pluginPath = {std::filesystem::path(pluginBesideCommand()).parent_path()};
    Session session(std::move(sessionOptions));
    session.scene().profile.timed = options.time;
    session.mel().setInterruptCheck([] { return interrupted != 0; });
    for (const auto& [name, value] : options.limits)
        mel::setLimit(session.mel().limits(), name, value);
    Run run(options, session);
    bool failed = false;
    try {
        run.all();
    } catch (const Failed&) {
        failed = true;
    }
    if (options.time) reportCosts(session.scene());
    if (interrupted) {
        std::fprintf(stderr, "vesk: interrupted\n");
        return kInterrupted;
    }
    failed = failed || run.isIncomplete() || session.scene().profile.cycles > 0 ||
             (options.strict && log().errorCount() > 0);
    if (!failed && run.written() > 0) {
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        std::fprintf(stderr,
                     options.json ? "{\"written\": %zu, \"seconds\": %.3f}\n"
                                  : "vesk: %zu file(s) written in %.2f s\n",
                     run.written(), took.count());
    }
    return failed ? kFailed : kAllDone;
}

} // namespace vesk::app
