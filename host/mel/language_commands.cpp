#include "host/mel/language_commands.h"

#include "host/core/log.h"
#include "host/mel/interpreter.h"

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
}

} // namespace vesk::mel
