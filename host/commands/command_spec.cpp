#include "host/commands/command_spec.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vesk::commands {

namespace {

using mel::Error;
using mel::Value;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string_view kindName(ArgKind kind) {
    static constexpr std::array<std::string_view, 4> kNames{"boolean", "integer", "number", "string"};
    return kNames[static_cast<std::size_t>(kind)];
}

bool fits(const Value& word, ArgKind kind) {
    switch (kind) {
    case ArgKind::Bool: return asBool(word).has_value();
    case ArgKind::Int:
    case ArgKind::Float: return word.number().has_value();
    case ArgKind::Text: return word.isString() || word.isNumber();
    }
    return false;
}

/// `Flag '-t' must have 3 number arguments.`, or with one: `Flag '-lock' must have a boolean argument.`
[[noreturn]] void refuseArguments(std::string_view written, const FlagSpec& flag) {
    std::string text = "Flag '" + std::string(written) + "' must have ";
    const std::string kind(kindName(flag.args.front()));
    const bool alike = std::equal(flag.args.begin() + 1, flag.args.end(), flag.args.begin());
    if (flag.args.size() == 1) {
        text += (kind.front() == 'i' ? "an " : "a ") + kind + " argument.";
    } else if (alike) {
        text += std::to_string(flag.args.size()) + ' ' + kind + " arguments.";
    } else {
        text += std::to_string(flag.args.size()) + " arguments:";
        for (auto one : flag.args)
            text += (&one == flag.args.data() ? " " : ", ") + std::string(kindName(one));
        text += '.';
    }
    throw Error(std::move(text));
}

bool isModeWord(std::string_view word, std::string_view longName, std::string_view shortName) {
    return word == longName || word == shortName;
}

std::string_view modeName(Mode mode) {
    return mode == Mode::Query ? "query" : mode == Mode::Edit ? "edit" : "create";
}

Modes bit(Mode mode) { return mode == Mode::Query ? kQuery : mode == Mode::Edit ? kEdit : kCreate; }

/// The mode of a call, which says whether flags take arguments, is known before the first of them is read.
Mode modeOf(const CommandSpec& spec, std::span<const Value> words) {
    for (const Value& word : words) {
        const std::string* text = word.ifString();
        if (!text || !looksLikeFlag(*text) || findFlag(spec, *text)) continue;
        if ((spec.modes & kQuery) && isModeWord(*text, "-query", "-q")) return Mode::Query;
        if ((spec.modes & kEdit) && isModeWord(*text, "-edit", "-e")) return Mode::Edit;
    }
    return Mode::Create;
}

} // namespace

bool looksLikeFlag(std::string_view word) { return word.size() > 1 && word[0] == '-' && isLetter(word[1]); }

std::optional<bool> asBool(const Value& word) {
    if (const auto number = word.number()) return *number != 0;
    const std::string* text = word.ifString();
    if (!text) return std::nullopt;
    if (*text == "on" || *text == "yes" || *text == "true") return true;
    if (*text == "off" || *text == "no" || *text == "false") return false;
    return std::nullopt;
}

const FlagSpec* findFlag(const CommandSpec& spec, std::string_view name) {
    for (const auto& flag : spec.flags) {
        if (flag.longName == name || flag.shortName == name) return &flag;
    }
    return nullptr;
}

Args parse(const CommandSpec& spec, std::span<const Value> words) {
    Args args;
    args.spec_ = &spec;
    args.mode = modeOf(spec, words);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string* text = words[i].ifString();
        if (!text || !looksLikeFlag(*text)) {
            args.words_.push_back(&words[i]);
            continue;
        }
        const FlagSpec* flag = findFlag(spec, *text);
        if (!flag) {
            const bool isMode = (args.mode == Mode::Query && isModeWord(*text, "-query", "-q")) ||
                                (args.mode == Mode::Edit && isModeWord(*text, "-edit", "-e"));
            if (isMode) continue;
            if (!spec.dashedOperands || args.words_.empty()) throw Error("Invalid flag '" + *text + "'.");
            args.words_.push_back(&words[i]);
            continue;
        }
        if (!(flag->modes & bit(args.mode))) {
            throw Error("Flag '" + *text + "' cannot be used in " + std::string(modeName(args.mode)) +
                        " mode.");
        }
        const bool takes = args.mode != Mode::Query || flag->queryArgs;
        const std::size_t count = takes ? flag->args.size() : 0;
        if (words.size() - i - 1 < count) refuseArguments(*text, *flag);
        const auto values = words.subspan(i + 1, count);
        for (std::size_t k = 0; k < count; ++k) {
            if (!fits(values[k], flag->args[k])) refuseArguments(*text, *flag);
        }
        if (!flag->multiUse) {
            std::erase_if(args.uses_, [&](const Args::Use& use) { return use.flag == flag; });
        }
        args.uses_.push_back({flag, values});
        i += count;
    }
    return args;
}

const FlagSpec& Args::declared(std::string_view flag) const {
    for (const auto& one : spec_->flags) {
        if (one.longName.substr(1) == flag) return one;
    }
    throw std::logic_error("command '" + std::string(spec_->name) + "' does not declare flag '" +
                           std::string(flag) + "'");
}

std::vector<std::span<const Value>> Args::uses(std::string_view flag) const {
    const FlagSpec* wanted = &declared(flag);
    std::vector<std::span<const Value>> found;
    for (const auto& use : uses_) {
        if (use.flag == wanted) found.push_back(use.values);
    }
    return found;
}

const Value* Args::argument(std::string_view flag, std::size_t index) const {
    const FlagSpec* wanted = &declared(flag);
    for (auto use = uses_.rbegin(); use != uses_.rend(); ++use) {
        if (use->flag == wanted) return index < use->values.size() ? &use->values[index] : nullptr;
    }
    return nullptr;
}

bool Args::isOn(std::string_view flag) const {
    const Value* value = argument(flag, 0);
    return value ? asBool(*value).value_or(true) : has(flag);
}

bool Args::boolean(std::string_view flag, bool fallback) const { return has(flag) ? isOn(flag) : fallback; }

int Args::integer(std::string_view flag, int fallback, std::size_t index) const {
    const Value* value = argument(flag, index);
    return value ? mel::truncated(value->number().value_or(fallback)) : fallback;
}

double Args::number(std::string_view flag, double fallback, std::size_t index) const {
    const Value* value = argument(flag, index);
    return value ? value->number().value_or(fallback) : fallback;
}

std::string Args::text(std::string_view flag, std::string_view fallback, std::size_t index) const {
    const Value* value = argument(flag, index);
    return value ? value->asString() : std::string(fallback);
}

std::vector<std::string> Args::texts(std::string_view flag) const {
    std::vector<std::string> list;
    for (const auto& values : uses(flag)) {
        if (!values.empty()) list.push_back(values[0].asString());
    }
    return list;
}

std::string Args::word(std::size_t index) const {
    if (index >= words_.size()) {
        throw Error("Too few words: " + std::string(spec_->name) + " takes " + std::string(spec_->operands) +
                    ".");
    }
    return words_[index]->asString();
}

std::vector<std::string> Args::wordTexts() const {
    std::vector<std::string> list;
    list.reserve(words_.size());
    for (const Value* word : words_)
        list.push_back(word->asString());
    return list;
}

void addCommands(mel::CommandTable& table, CommandContext& context, std::span<const CommandSpec> specs) {
    for (const CommandSpec& spec : specs) {
        context.rows.push_back(&spec);
        table.add(std::string(spec.name),
                  [&spec, &context](mel::Call& call) { return spec.run(context, parse(spec, call.args)); });
    }
}

const CommandSpec* findCommand(const CommandContext& context, std::string_view name) {
    for (const CommandSpec* row : context.rows) {
        if (row->name == name) return row;
    }
    return nullptr;
}

std::string helpText(const CommandSpec& spec) {
    std::string text = "Synopsis: " + std::string(spec.name) + " [flags]";
    if (!spec.operands.empty()) text += ' ' + std::string(spec.operands);
    text += "\nFlags:\n";
    const auto line = [&text](std::string_view shortName, std::string_view longName,
                              std::span<const ArgKind> args, bool multiUse) {
        text += "  " + std::string(shortName) + ' ' + std::string(longName);
        for (auto kind : args)
            text += ' ' + std::string(kindName(kind));
        text += multiUse ? " (multi-use)\n" : "\n";
    };
    if (spec.modes & kEdit) line("-e", "-edit", {}, false);
    if (spec.modes & kQuery) line("-q", "-query", {}, false);
    for (const auto& flag : spec.flags)
        line(flag.shortName, flag.longName, flag.args, flag.multiUse);
    return text;
}

void require(const Outcome& outcome) {
    if (!outcome) throw Error(outcome.error);
}

} // namespace vesk::commands
