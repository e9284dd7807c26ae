#include "host/mel/display_strings.h"

#include "host/core/log.h"

#include <algorithm>
#include <map>

namespace vesk::mel {

namespace {

using DisplayStrings = std::map<std::string, std::string, std::less<>>;

/// What the words of `displayString` ask for.
struct Request {
    bool query = false, exists = false, keys = false, remove = false, replace = false;
    std::optional<std::string> value;
    std::string key;
};

Request requestOf(const Call& call) {
    Request request;
    const auto is = [](std::string_view word, std::string_view longName, std::string_view shortName) {
        return word == longName || word == shortName;
    };
    for (std::size_t i = 0; i < call.args.size(); ++i) {
        const std::string word = call.args[i].asString();
        if (is(word, "-query", "-q")) {
            request.query = true;
        } else if (is(word, "-exists", "-ex")) {
            request.exists = true;
        } else if (is(word, "-keys", "-k")) {
            request.keys = true;
        } else if (is(word, "-delete", "-d")) {
            request.remove = true;
        } else if (is(word, "-replace", "-r")) {
            request.replace = true;
        } else if (is(word, "-value", "-v")) {
            if (request.query) continue;
            if (++i == call.args.size()) throw Error("displayString: -value needs a text.");
            request.value = call.args[i].asString();
        } else if (word.starts_with('-') || !request.key.empty()) {
            throw Error(word.starts_with('-') ? "Invalid flag '" + word + "'."
                                              : "displayString needs one key.");
        } else {
            request.key = word;
        }
    }
    return request;
}

Value keysThatBegin(const DisplayStrings& strings, const std::string& start) {
    StringArray keys;
    for (auto at = strings.lower_bound(start); at != strings.end() && at->first.starts_with(start); ++at)
        keys.push_back(at->first);
    return keys;
}

Value displayString(DisplayStrings& strings, const Request& request) {
    if (request.keys) return keysThatBegin(strings, request.key);
    if (request.key.empty()) throw Error("displayString needs one key.");
    const auto found = strings.find(request.key);
    if (request.exists) return found != strings.end();
    if (request.value) {
        if (found != strings.end() && !request.replace)
            throw Error("displayString: \"" + request.key + "\" has a text already; use -replace.");
        strings[request.key] = *request.value;
        return {};
    }
    if (found == strings.end()) throw Error("displayString: there is no text \"" + request.key + "\".");
    if (request.remove) {
        strings.erase(found);
        return {};
    }
    return found->second;
}

/// A text that is missing shows as its key, so that an interface comes up all the same.
Value uiRes(const DisplayStrings& strings, const Call& call) {
    if (call.args.size() != 1) throw Error("uiRes needs one key.");
    const std::string key = call.args.front().asString();
    const auto found = strings.find(key);
    if (found != strings.end()) return found->second;
    log().warning("uiRes: there is no text \"" + key + "\".");
    return key;
}

} // namespace

void addDisplayStringCommands(CommandTable& commands) {
    auto strings = std::make_shared<DisplayStrings>();
    commands.add("displayString", [strings](Call& call) { return displayString(*strings, requestOf(call)); });
    commands.add("uiRes", [strings](Call& call) { return uiRes(*strings, call); });
}

} // namespace vesk::mel
