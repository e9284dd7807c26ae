// Texts that are not MEL: what is said, where, and that nothing of them runs.

#include "host/core/log.h"
#include "host/mel/compiler.h"
#include "host/mel/interpreter.h"
#include "host/mel/parser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vesk::mel {

namespace {

struct Wrong {
    const char* text;
    int line;
    int column;
    const char* message;
};

class WrongText : public testing::TestWithParam<Wrong> {};

TEST_P(WrongText, IsRefusedAsAWholeAndNamesThePlace) {
    const Wrong& wrong = GetParam();
    Machine machine;
    int ran = 0;
    machine.commands().add("ran", [&ran](Call&) -> Value { return ++ran; });
    const Result result = machine.run(std::string("ran;\n") + wrong.text, "x.mel");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(result.error, wrong.message);
    EXPECT_EQ(result.place.line(), wrong.line);
    EXPECT_EQ(result.place.column(), wrong.column);
}

INSTANTIATE_TEST_SUITE_P(
    Syntax, WrongText,
    testing::Values(
        Wrong{"$a = 1 + ;", 2, 10, "Syntax error: expected an expression before ';'."},
        Wrong{"$a = 1\n$b = 2;", 3, 1, "Syntax error: expected ';' before '$b'."},
        Wrong{"if (1) { ran;", 2, 14, "Syntax error: expected '}' before the end of the text."},
        Wrong{"ran \"abc\n\";", 2, 5, "Syntax error: This string has no closing quote."},
        Wrong{"ran \"abc\\", 2, 5, "Syntax error: This string has no closing quote."},
        Wrong{"ran; /* abc", 2, 6, "Syntax error: This comment has no end."},
        Wrong{"x = 5;", 2, 3, "Syntax error: unexpected '='; an expression among words needs parentheses."},
        Wrong{"ran $a + 5;", 2, 8,
              "Syntax error: unexpected '+'; an expression among words needs parentheses."},
        Wrong{"vector $v; ran $v.x;", 2, 18,
              "Syntax error: unexpected '.'; an expression among words needs parentheses."},
        Wrong{"ran a.b[$i];", 2, 5,
              "Syntax error: Unbalanced brackets in the word \"a.b[\"; build it as text in parentheses."},
        Wrong{"vector $v; $v.x = 1;", 2, 17,
              "Syntax error: a component of a vector cannot be assigned; assign the whole vector."},
        Wrong{"5 = 6;", 2, 3, "Syntax error: only a variable or an element can be assigned."},
        Wrong{"$a = 12abc;", 2, 6, "Syntax error: Malformed number."},
        Wrong{"ran +0:3;", 2, 5, "Syntax error: Malformed number."},
        Wrong{"$a = 0x;", 2, 6, "Syntax error: Malformed number."},
        Wrong{"$ = 1;", 2, 1, "Syntax error: A variable's name is missing after '$'."},
        Wrong{"$a = 1 @ 2;", 2, 8, "Syntax error: Unexpected '@'."},
        Wrong{"$a = \x01;", 2, 6, "Syntax error: Unexpected byte 0x01."},
        Wrong{"$a = `ran;", 2, 10, "Syntax error: expected '`' before ';'."},
        Wrong{"$a = nan;", 2, 6, "Syntax error: unexpected name 'nan' in an expression."},
        Wrong{"else ran;", 2, 1, "Syntax error: expected a statement before 'else'."},
        Wrong{"proc f(int x) {}", 2, 12, "Syntax error: expected a variable before 'x'."},
        Wrong{"proc int switch() {}", 2, 10,
              "Syntax error: a procedure cannot be named 'switch', a word of the language."},
        Wrong{"$a = 1 + \\ 2;", 2, 10, "Syntax error: Unexpected '\\'."},
        Wrong{"ran \\", 2, 5, "Syntax error: Unexpected '\\'."},
        Wrong{"matrix $m[0][3];", 2, 11, "Syntax error: a matrix has 1 to 1024 rows and columns."},
        Wrong{"$m = <<1, 2; 3>>;", 2, 15, "Syntax error: the rows of a matrix have the same length."},
        Wrong{"switch (1) { ran; }", 2, 14, "Syntax error: expected 'case' or 'default' before 'ran'."}));

INSTANTIATE_TEST_SUITE_P(
    Types, WrongText,
    testing::Values(
        Wrong{"$a = $b;", 2, 6, "\"$b\" is an undeclared variable."},
        Wrong{"int $a;\nstring $a;", 3, 8,
              "Invalid redeclaration of variable \"$a\" as a different type (string instead of int)."},
        Wrong{"proc f() {\n int $a; float $a; }", 3, 16,
              "Invalid redeclaration of variable \"$a\" as a different type (float instead of int)."},
        Wrong{"int $g; proc f() { $g++; }", 2, 20, "\"$g\" is an undeclared variable."},
        Wrong{"{ int $in; } $in = $in + 1;", 2, 20, "\"$in\" is an undeclared variable."},
        Wrong{"$s = \"a\" - 1;", 2, 10, "Illegal operation \"-\" on data of type string."},
        Wrong{"string $s; $s++;", 2, 14, "Illegal operation \"++\" on data of type string."},
        Wrong{"int $a[]; int $b = $a;", 2, 15, "Cannot convert data of type int[] to type int."},
        Wrong{"string $a[]; float $b[] = $a;", 2, 20,
              "Cannot convert data of type string[] to type float[]."},
        Wrong{"int $a; $a[0] = 1;", 2, 11, "Data of type int has no elements."},
        Wrong{"int $a; int $b = $a.x;", 2, 20, "Data of type int has no component."},
        Wrong{"$a = {};", 2, 6, "The type of this empty array is not known."},
        Wrong{"proc f() {} $a = f();", 2, 18, "\"f\" returns no value."},
        Wrong{"proc f() { return 1; }", 2, 12,
              "Procedure \"f\" has no return type and cannot return a value."},
        Wrong{"proc f() { proc g() {} }", 2, 12, "A procedure cannot be defined within another."},
        Wrong{"return 1;", 2, 1, "\"return\" outside of a procedure."},
        Wrong{"while (1) { switch (1) { case 1: break; } } continue;", 2, 45,
              "\"continue\" outside of a loop."},
        Wrong{"$a = sin(1, 2);", 2, 6, "Wrong number of arguments on call to sin."},
        Wrong{"int $x[]; $a = sin($x);", 2, 16, "Wrong type of argument on call to sin(int[])."},
        Wrong{"clear({1});", 2, 7, "clear needs a variable here, which it changes."},
        Wrong{"if ({1, 2}) ran;", 2, 5, "Cannot convert data of type int[] to type int."}));

/// Knows nothing: enough to compile without running.
class NoNames : public Environment {
  public:
    Global* findGlobal(const std::string&) override { return nullptr; }
    const Function* findProcedure(const std::string&, const Module*) override { return nullptr; }
};

bool compiles(std::string text) {
    NoNames names;
    try {
        compile(std::make_shared<const Source>("", std::move(text)), std::make_shared<Module>(), names);
        return true;
    } catch (const Error& error) {
        EXPECT_TRUE(error.isPlaced()) << error.message();
        return false;
    }
}

std::vector<std::string> scripts() {
    std::vector<std::string> texts;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_SOURCE_DIR "/host/mel/scripts")) {
        std::ifstream file(entry.path());
        texts.emplace_back((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    }
    return texts;
}

TEST(DamagedText, APrefixCompilesOrIsAnErrorWithAPlace) {
    const std::string text =
        "proc int f(string $a[]) { for ($x in $a) { if (`g -x $x` > 2) return size($x); } }";
    EXPECT_TRUE(compiles(text));
    // An unfinished procedure never passes for a finished one.
    for (std::size_t length = 4; length < text.size(); ++length)
        EXPECT_FALSE(compiles(text.substr(0, length)));
    for (const std::string& script : scripts()) {
        for (std::size_t length = 0; length < script.size(); length += 3)
            compiles(script.substr(0, length));
    }
}

TEST(DamagedText, JunkBytesDoNotCrashWhatCompilesOrRuns) {
    constexpr std::string_view junk("\0\xFF`\"{}()<>$;-[].\\\n", 18);
    std::uint32_t state = 1;
    const auto next = [&state](std::size_t bound) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8U) % bound;
    };
    Machine machine;
    machine.limits().steps = 2000;
    for (const std::string& script : scripts()) {
        for (int turn = 0; turn < 150; ++turn) {
            std::string damaged = script;
            for (int i = 0; i < 3; ++i)
                damaged[next(damaged.size())] = junk[next(junk.size())];
            compiles(damaged);
            if (turn % 10 == 0) machine.run(damaged);
        }
    }
}

std::string repeated(std::string_view text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST(Nesting, IsLimitedInTheParser) {
    struct Nested {
        const char* open;
        const char* middle;
        const char* close;
    };
    // The statement itself, or the expression around, is one level.
    const Nested kinds[] = {{"(", "1", ")"},           {"!", "1", ""},      {"-(int)", "1", ""},
                            {"<<1, 2, ", "3", ">>.x"}, {"$a[", "0", "]"},   {"f(", "1", ")"},
                            {"1 ? 2 : ", "3", ""},     {"`f (", "1", ")`"}, {"{", "1", "}[0]"},
                            {"$b = ", "1", ""},        {"`f ", "`g`", "`"}};
    for (const Nested& kind : kinds) {
        const auto nested = [&kind](int depth) {
            return "int $a[]; int $x = " + repeated(kind.open, depth) + kind.middle +
                   repeated(kind.close, depth) + ";";
        };
        EXPECT_TRUE(compiles(nested(kMaxNesting / 2 - 5))) << kind.open;
        EXPECT_FALSE(compiles(nested(kMaxNesting + 1))) << kind.open;
        EXPECT_FALSE(compiles(nested(50000))) << kind.open;
    }
    EXPECT_TRUE(compiles(repeated("{", kMaxNesting) + repeated("}", kMaxNesting)));
    EXPECT_FALSE(compiles(repeated("{", kMaxNesting + 1) + repeated("}", kMaxNesting + 1)));
    // What stands side by side is not nested.
    EXPECT_TRUE(compiles("int $a = 1" + repeated(" + 1", 20000) + repeated(" && 1", 20000) + ";"));
    EXPECT_TRUE(compiles("int $a; if ($a) f;" + repeated(" else if ($a) f;", 5000)));
}

} // namespace

} // namespace vesk::mel
