#include "host/mel/language_commands.h"

#include "host/core/log.h"
#include "host/mel/display_strings.h"
#include "host/mel/interpreter.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <utility>

namespace vesk::mel {

namespace {

/// The words that are left when these flags are gone; `withValue` flags take the next word with them.
std::vector<std::string> wordsWithout(const Call& call, std::initializer_list<std::string_view> plain,
                                      std::initializer_list<std::string_view> withValue) {
    const auto isIn = [](std::string_view word, std::initializer_list<std::string_view> list) {
        return std::find(list.begin(), list.end(), word) != list.end();
    };
    std::vector<std::string> words;
    for (std::size_t i = 0; i < call.args.size(); ++i) {
        std::string word = call.args[i].asString();
        if (isIn(word, withValue)) {
            ++i;
        } else if (!isIn(word, plain)) {
            words.push_back(std::move(word));
        }
    }
    return words;
}

/// The message of `error` and `warning`: one text, perhaps with flags about how it is shown.
std::string messageOf(const Call& call) {
    std::vector<std::string> words = wordsWithout(call, {"-n", "-noContext"}, {"-sl", "-showLineNumber"});
    if (words.size() != 1) throw Error(std::string(call.name) + " needs one message.");
    return std::move(words.front());
}

/// Several words make one text with blanks in between.
std::string textOf(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) text += ' ';
        text += word;
    }
    return text;
}

std::string onlyWord(const Call& call) {
    if (call.args.size() != 1) throw Error(std::string(call.name) + " needs one name.");
    return call.args.front().asString();
}

Value raise(Call& call) { throw Error(messageOf(call)); }

Value warn(Call& call) {
    log().warning(messageOf(call));
    return {};
}

Value eval(Call& call) { return call.machine.evaluate(textOf(wordsWithout(call, {}, {}))); }

Value evalDeferred(Call& call) {
    call.machine.defer(textOf(wordsWithout(call, {"-lp", "-lowestPriority", "-en", "-evaluateNext"}, {})));
    return {};
}

Value source(Call& call) { return call.machine.evaluateFile(onlyWord(call)); }

Value whatIs(Call& call) { return call.machine.whatIs(onlyWord(call)); }

/// `format -s "a" -s "b" "^2s and ^1s"`: the arguments in the places that name their numbers.
Value format(Call& call) {
    std::vector<std::string> arguments;
    const std::string* pattern = nullptr;
    std::vector<std::string> words;
    for (const Value& word : call.args)
        words.push_back(word.asString());
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isArgument = words[i] == "-s" || words[i] == "-stringArg";
        if (isArgument && i + 1 < words.size()) {
            arguments.push_back(words[++i]);
        } else if (isArgument || pattern) {
            throw Error("format: expected -stringArg TEXT ... FORMAT.");
        } else {
            pattern = &words[i];
        }
    }
    std::string text;
    for (std::size_t at = 0; pattern && at < pattern->size(); ++at) {
        std::size_t end = at + 1;
        std::size_t number = 0;
        while ((*pattern)[at] == '^' && end < pattern->size() &&
               std::isdigit(static_cast<unsigned char>((*pattern)[end])))
            number = std::min<std::size_t>(number * 10 + static_cast<std::size_t>((*pattern)[end++] - '0'),
                                           1000000);
        if (end == at + 1 || end >= pattern->size() || (*pattern)[end] != 's') {
            text += (*pattern)[at];
            continue;
        }
        if (number < 1 || number > arguments.size()) {
            throw Error("format: there is no argument for ^" + std::to_string(number) + "s.");
        }
        text += arguments[number - 1];
        checkStringSize(text.size(), call.machine.limits());
        at = end;
    }
    return text;
}

Value rehash(Call& call) {
    call.machine.rehash();
    return {};
}

Value exists(Call& call) { return call.machine.whatIs(onlyWord(call)) != "Unknown"; }

} // namespace

void addLanguageCommands(CommandTable& commands) {
    commands.add("error", raise);
    commands.add("warning", warn);
    commands.add("eval", eval);
    commands.add("evalDeferred", evalDeferred);
    commands.add("source", source);
    commands.add("whatIs", whatIs);
    commands.add("exists", exists);
    commands.add("format", format);
    commands.add("rehash", rehash);
    addDisplayStringCommands(commands);
}

} // namespace vesk::mel
