#include "host/mel/fuzz/mel_input.h"

#include "host/mel/interpreter.h"

#include <cstdlib>

namespace vesk::mel {

namespace {

/// Commands whose results are of a type that only the run tells.
void addCommands(CommandTable& commands) {
    commands.add("word", [](Call& call) { return call.args.empty() ? Value() : call.args.front(); });
    commands.add("list", [](Call& call) -> Value {
        StringArray words;
        for (const Value& word : call.args)
            words.push_back(word.display());
        return words;
    });
}

} // namespace

void runAnyText(std::string_view text) {
    Machine machine;
    addCommands(machine.commands());
    Limits& limits = machine.limits();
    limits.recursion = 60;
    limits.nestedRuns = 10;
    limits.arraySize = 2000;
    limits.stringSize = 2000;
    limits.deferred = 5;
    limits.openFiles = 2;
    limits.steps = 3000;
    const Result result = machine.run(text, "fuzz.mel");
    if (!result.ok && (result.error.empty() || result.place.line() < 1 || result.place.excerpt().empty()))
        std::abort();
    const Result after = machine.run("int $fuzzed[] = {2, 3}; $fuzzed[0] * $fuzzed[1]");
    // A script may have declared `$fuzzed` as something else; it may not have broken the interpreter.
    if (after.ok && after.value.type() == Type::Int && after.value.asInt() != 6) std::abort();
}

} // namespace vesk::mel
