#include "host/commands/command_spec.h"

#include <gtest/gtest.h>

namespace vesk::commands {

namespace {

using mel::Value;

const CommandSpec& moveLike() {
    static const CommandSpec row{"shift",
                                 "node...",
                                 {{"-translation", "-t", {ArgKind::Float, ArgKind::Float, ArgKind::Float}},
                                  {"-relative", "-r"},
                                  {"-visible", "-v", {ArgKind::Bool}},
                                  {"-count", "-n", {ArgKind::Int}},
                                  {"-tag", "-tg", {ArgKind::Text}, kAllModes, true},
                                  {"-made", "-md", {}, kCreate},
                                  {"-at", "-at", {ArgKind::Int}, kAllModes, false, true}},
                                 nullptr,
                                 kAllModes};
    return row;
}

std::string failure(std::vector<Value> words, const CommandSpec& spec = moveLike()) {
    try {
        (void)parse(spec, words);
    } catch (const mel::Error& error) {
        return error.message();
    }
    return "none";
}

} // namespace

TEST(CommandFrame, TakesFlagsAndOperandsInAnyOrder) {
    const std::vector<Value> words{"a",   "-t",  1,   2.5,  "3", "b",    "-r", "-v",
                                   "off", "-tg", "x", "-n", 2.9, "-tag", 7,    -4};
    const Args args = parse(moveLike(), words);
    EXPECT_EQ(args.mode, Mode::Create);
    EXPECT_EQ(args.wordTexts(), (std::vector<std::string>{"a", "b", "-4"}));
    EXPECT_EQ(args.number("translation", 0, 1), 2.5);
    EXPECT_EQ(args.number("translation", 0, 2), 3);
    EXPECT_TRUE(args.isOn("relative"));
    EXPECT_TRUE(args.has("visible"));
    EXPECT_FALSE(args.isOn("visible"));
    EXPECT_EQ(args.integer("count"), 2);
    EXPECT_EQ(args.texts("tag"), (std::vector<std::string>{"x", "7"}));
    EXPECT_FALSE(args.has("made"));
    EXPECT_EQ(args.text("at", "fallback"), "fallback");
}

TEST(CommandFrame, QueryTakesNoArgumentsUnlessDeclared) {
    // The mode counts wherever it stands.
    const std::vector<Value> words{"-t", "a", "-at", 3, "-q"};
    const Args args = parse(moveLike(), words);
    EXPECT_TRUE(args.isQuery());
    EXPECT_TRUE(args.has("translation"));
    EXPECT_EQ(args.wordTexts(), (std::vector<std::string>{"a"}));
    EXPECT_EQ(args.integer("at"), 3);
}

TEST(CommandFrame, OfARepeatedFlagTheLastUseCounts) {
    const std::vector<Value> words{"-n", 1, "-count", 5};
    EXPECT_EQ(parse(moveLike(), words).integer("count"), 5);
}

TEST(CommandFrame, RefusesWhatTheRowDoesNotDeclare) {
    EXPECT_EQ(failure({"-x"}), "Invalid flag '-x'.");
    EXPECT_EQ(failure({"a", "-query", "-e"}), "Invalid flag '-e'.");
    EXPECT_EQ(failure({"-md", "-q"}), "Flag '-md' cannot be used in query mode.");
    EXPECT_EQ(failure({"-t", 1, 2}), "Flag '-t' must have 3 number arguments.");
    EXPECT_EQ(failure({"-translation", 1, 2, "c"}), "Flag '-translation' must have 3 number arguments.");
    EXPECT_EQ(failure({"-v"}), "Flag '-v' must have a boolean argument.");
    EXPECT_EQ(failure({"-v", "maybe"}), "Flag '-v' must have a boolean argument.");
    EXPECT_EQ(failure({"-n", "x"}), "Flag '-n' must have an integer argument.");
    EXPECT_EQ(failure({"-tg", MVector(1, 2, 3)}), "Flag '-tg' must have a string argument.");

    CommandSpec createOnly = moveLike();
    createOnly.modes = kCreate;
    EXPECT_EQ(failure({"-q"}, createOnly), "Invalid flag '-q'.");
    createOnly.dashedOperands = true;
    EXPECT_EQ(failure({"-q"}, createOnly), "Invalid flag '-q'.");
    EXPECT_EQ(failure({"a", "-q"}, createOnly), "none");
}

TEST(CommandFrame, HelpShowsEveryFlag) {
    const std::string help = helpText(moveLike());
    EXPECT_NE(help.find("Synopsis: shift [flags] node..."), std::string::npos);
    EXPECT_NE(help.find("-t -translation number number number\n"), std::string::npos);
    EXPECT_NE(help.find("-tg -tag string (multi-use)\n"), std::string::npos);
}

} // namespace vesk::commands
