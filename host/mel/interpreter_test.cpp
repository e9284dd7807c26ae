// The interpreter from outside: results, commands that run MEL, scripts on disk, limits.

#include "host/mel/interpreter.h"

#include "host/core/log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vesk::mel {

namespace {

class Mel : public testing::Test {
  protected:
    void SetUp() override {
        log().take();
        log().keepEntries(true);
    }
    void TearDown() override {
        log().keepEntries(false);
        EXPECT_EQ(said(LogLevel::Error), std::vector<std::string>()) << "an error that no test announced";
    }

    /// What the log holds of a level, taken out.
    static std::vector<std::string> said(LogLevel level) {
        std::vector<std::string> texts;
        for (LogEntry& entry : log().take()) {
            if (entry.level == level) texts.push_back(std::move(entry.text));
        }
        return texts;
    }
    std::string valueOf(std::string_view text) { return machine.run(text).value.display(); }
    /// The message of a text that must fail.
    std::string errorOf(std::string_view text) {
        const Result result = machine.run(text);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(said(LogLevel::Error).size(), 1U);
        return result.error;
    }

    Machine machine;
};

TEST_F(Mel, ResultIsTheValueOfTheLastStatement) {
    EXPECT_EQ(machine.run("1; $a = 2.5").value.type(), Type::Float);
    EXPECT_EQ(valueOf("({\"a\", \"b\"})[1]"), "b");
    EXPECT_EQ(valueOf("int $n[] = {1, 2}; $n;;"), "1 2");
    EXPECT_TRUE(machine.run("$a; if (1) $a;").value.isNone());
    EXPECT_TRUE(machine.run("").ok);
    EXPECT_TRUE(machine.run("\xEF\xBB\xBF// only a comment").ok);
}

TEST_F(Mel, ErrorTellsPlaceSourceLineAndCallers) {
    const Result result =
        machine.run("proc inner() {\n\terror \"bad\"; }\nproc outer() { inner; }\nouter;", "f.mel", 10);
    EXPECT_EQ(said(LogLevel::Error), std::vector<std::string>{"file \"f.mel\" line 11: bad"});
    EXPECT_EQ(result.error, "bad");
    EXPECT_EQ(result.place.file(), "f.mel");
    EXPECT_EQ(result.place.excerpt(), "\terror \"bad\"; }\n\t^");
    ASSERT_EQ(result.stack.size(), 3U);
    EXPECT_EQ(result.stack[0].procedure, "inner");
    EXPECT_EQ(result.stack[1].procedure, "outer");
    EXPECT_EQ(result.stack[1].place.line(), 12);
    EXPECT_EQ(result.stack[2].procedure, "");
    EXPECT_EQ(result.stack[2].place.line(), 13);

    machine.run("f;", "f.mel");
    log().take();
    machine.run("proc f(int $n) {\n\tif ($n) { f($n - 1); }\n\t$n = `nope`; }\n f(20);", "f.mel");
    const std::vector<LogEntry> entries = log().take();
    ASSERT_EQ(entries.size(), 1U);
    std::string shown = "// Error: file \"f.mel\" line 3: Cannot find procedure \"nope\". //\n"
                        "//   3:8 | \t$n = `nope`; }\n"
                        "//       | \t      ^\n"
                        "//   in f, file \"f.mel\" line 3\n";
    for (int i = 0; i < 7; ++i)
        shown += "//   in f, file \"f.mel\" line 2\n";
    EXPECT_EQ(Log::decorated(entries[0]), shown + "//   ... and 11 more\n"
                                                  "//   in f, file \"f.mel\" line 2\n"
                                                  "//   in f, file \"f.mel\" line 2\n"
                                                  "//   in file \"f.mel\" line 4");

    // Of a long line the part around the place; no control characters, no half characters.
    machine.run("$a = \"" + std::string(30, '\x01') + "\"; $b = \"" + std::string(100, 'b') +
                "\"; \tnope; $c = \"" + std::string(99, 'c') + "\xC3\xA9\";");
    EXPECT_EQ(log().take()[0].detail, "1:150 | ..." + std::string(46, 'b') + "\"; \tnope; $c = \"" +
                                          std::string(38, 'c') + "...\n      |    " + std::string(49, ' ') +
                                          "\t^");

    machine.run("\n error \"typed\";");
    EXPECT_EQ(said(LogLevel::Error), std::vector<std::string>{"line 2: typed"});
}

TEST_F(Mel, CommandsMayRunMelAndPassItsErrorsOn) {
    machine.commands().add("again", [](Call& call) -> Value {
        const Result result = call.machine.run(call.args[0].asString());
        if (!result.ok) Machine::rethrow(result);
        return result.value;
    });
    EXPECT_EQ(
        valueOf("proc int f(int $x) { int $y = `again \"1 + 1\"`; return $x * $y; } f(4) + `again \"f(1)\"`"),
        "10");
    machine.run("again \"nope\";");
    EXPECT_EQ(said(LogLevel::Error), std::vector<std::string>{"line 1: Cannot find procedure \"nope\"."});
    EXPECT_EQ(valueOf("catch(`again \"nope\"`)"), "1");
    EXPECT_EQ(said(LogLevel::Error).size(), 1U);

    machine.commands().add("throws", [](Call&) -> Value { throw std::runtime_error("from below"); });
    EXPECT_EQ(errorOf("throws;"), "from below");
}

TEST_F(Mel, CommandsAndProceduresMayChangeWhileTheyRun) {
    machine.commands().add("once", [](Call& call) -> Value {
        call.machine.commands().remove("once");
        call.machine.commands().add("other", [](Call&) -> Value { return 2; });
        return call.args[0]; // still alive
    });
    EXPECT_EQ(valueOf("proc int f() { return `once 1` + catchQuiet(`once 1`) * 10 + `other`; } f"), "13");
    // A procedure goes before a command of its name, from the next call on.
    EXPECT_EQ(valueOf("int $sum; proc int g() { return `other`; } $sum = g(); eval(\"global proc int other() "
                      "{ return 5; }\");"
                      "$sum * 10 + g()"),
              "25");
}

TEST_F(Mel, WordsReachCommandsUnspreadOnlyWhenTheyAreNoArrays) {
    std::vector<std::string> types;
    machine.commands().add("types", [&types](Call& call) -> Value {
        types.clear();
        for (const Value& word : call.args)
            types.emplace_back(nameOf(word.type()));
        return call.place.line();
    });
    EXPECT_EQ(valueOf("\nint $n[] = {1, 2}; types -f $n <<1, 2, 3>> {0.5} \"a\""), "2");
    EXPECT_EQ(types, (std::vector<std::string>{"string", "int", "int", "vector", "float", "string"}));

    std::string longCommand = "int $i = 3; types";
    for (int i = 0; i < 100000; ++i)
        longCommand += i % 10 == 9 ? " 0.5 word $i" : " 0.5 word -1";
    machine.run(longCommand);
    ASSERT_EQ(types.size(), 300000U);
    EXPECT_EQ(types[299998], "string");
}

TEST_F(Mel, ProceduresAndGlobalsFromOutside) {
    machine.run("global proc string f(float $x, string $a[]) { return $x / 2 + $a[1]; } int $g = 7; string "
                "$names[];");
    const Value arguments[] = {5, StringArray{"a", "b"}};
    EXPECT_EQ(machine.callProc("f", arguments).value.asString(), "2.5b");
    EXPECT_TRUE(machine.hasProc("f"));
    EXPECT_FALSE(machine.hasProc("g"));
    EXPECT_FALSE(machine.callProc("f").ok);
    EXPECT_FALSE(machine.callProc("unknown").ok);
    EXPECT_EQ(said(LogLevel::Error).size(), 2U);

    EXPECT_EQ(machine.global("$g")->asInt(), 7);
    EXPECT_FALSE(machine.global("none").has_value());
    machine.setGlobal("g", 2.9);
    machine.setGlobal("$fresh", MVector(1, 2, 3));
    EXPECT_EQ(valueOf("$names[0] = \"n\"; $g + \" \" + $fresh"), "2 1 2 3");
    EXPECT_EQ(machine.global("names")->arraySize(), 1U);
}

TEST_F(Mel, ScriptsOnThePathAreFoundSourcedAndKeepTheirLocals) {
    const auto folder = std::filesystem::temp_directory_path() / "vesk_mel_scripts";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "byName.mel")
        << "proc int hidden() { return 4; }\nglobal proc int byName() { return hidden(); }";
    std::ofstream(folder / "empty.mel") << "";
    machine.scriptPath() = {"/nowhere", folder.string()};
    EXPECT_EQ(valueOf("whatIs byName"), "Script found in: " + (folder / "byName.mel").string());
    EXPECT_EQ(valueOf("byName() + `exists byName`"), "5");
    EXPECT_EQ(valueOf("whatIs byName"), "Mel procedure found in: " + (folder / "byName.mel").string());
    EXPECT_EQ(errorOf("hidden();"), "Cannot find procedure \"hidden\".");
    EXPECT_EQ(errorOf("empty();"), "Cannot find procedure \"empty\".");
    EXPECT_TRUE(machine.run("source \"empty\"; source \"empty.mel\";").ok);
    EXPECT_TRUE(machine.source((folder / "byName").string()).ok);
    EXPECT_EQ(errorOf("source missing;"), "Cannot find file \"missing\" for source statement.");
    std::filesystem::remove_all(folder);
}

TEST_F(Mel, AScriptFoundByNameRunsOnceAndSourceRunsItAlways) {
    const auto folder = std::filesystem::temp_directory_path() / "vesk_mel_once";
    std::filesystem::create_directories(folder);
    machine.scriptPath() = {folder.string(), folder.string() + "/."};
    std::ofstream(folder / "late.mel") << "global int $runs; $runs++;";
    EXPECT_EQ(errorOf("late;"), "Cannot find procedure \"late\".");
    EXPECT_EQ(errorOf("late;"), "Cannot find procedure \"late\".");
    EXPECT_EQ(machine.global("runs")->asInt(), 1);
    std::ofstream(folder / "late.mel") << "$runs++; global proc int late() { return 5; }";
    EXPECT_EQ(valueOf("rehash; late()"), "5");
    EXPECT_EQ(valueOf("late(); late(); source late; $runs"), "3");
    // A script that fails is tried again.
    std::ofstream(folder / "broken.mel") << "global proc broken() { 1 +; }";
    EXPECT_EQ(errorOf("broken;").substr(0, 12), "Syntax error");
    std::ofstream(folder / "broken.mel") << "global proc int broken() { return 1; }";
    EXPECT_EQ(valueOf("broken"), "1");
    std::filesystem::remove_all(folder);
}

TEST_F(Mel, FilesAreReadAndWrittenBelowTheFoldersForThat) {
    const auto folder = std::filesystem::temp_directory_path() / "vesk_mel_files";
    std::filesystem::create_directories(folder / "open");
    machine.writeFolders() = {(folder / "open").string()};
    machine.setGlobal("in", (folder / "open/a.txt").string());
    machine.setGlobal("out", (folder / "b.txt").string());
    std::filesystem::create_symlink(folder / "b.txt", folder / "open/link");
    machine.setGlobal("link", (folder / "open/link").string());
    EXPECT_EQ(valueOf("int $f = fopen($in, \"w+\"); fprint $f \"one two\\n\"; fprint($f, 3); $f"), "1");
    EXPECT_EQ(
        valueOf("frewind $f; fgetline($f) + fgetword($f) + `feof $f` + `fgetline $f` + size(fgetword($f))"),
        "one two\n310");
    EXPECT_EQ(valueOf("fclose $f; $f = `fopen $in`; fwrite $f 7; fwrite $f 2.5; fwrite $f \"a b\"; fwrite $f "
                      "<<1, 2, 3>>; "
                      "fflush $f; fclose $f; $f = fopen($in, \"r\")"),
              "1");
    EXPECT_EQ(
        valueOf(
            "int $i; float $x; string $s; vector $v; fread($f, $i) + \" \" + `fread $f $x` + fread($f, $s) + "
            "fread($f, $v) + fread($f, $i) + feof($f)"),
        "7 2.5a b1 2 301");
    EXPECT_EQ(valueOf("fopen($in, \"a\")"), "2");
    machine.limits().openFiles = 2;
    EXPECT_EQ(errorOf("fopen($in, \"r\")"),
              "Scripts hold more than 2 files open (--mel-limit files=N raises this).");
    EXPECT_EQ(valueOf("fclose 1; fopen($in, \"r\")"), "1");
    for (const char* refused : {"fopen($out, \"w\")", "fopen($link, \"a\")",
                                "fopen($in + \"/../../b.txt\", \"w\")", "fopen(\"/dev/full\", \"w\")"}) {
        EXPECT_EQ(errorOf(refused).substr(0, 31), "fopen: scripts may write below ") << refused;
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "b.txt"));
    std::filesystem::remove_all(folder);
}

TEST_F(Mel, LimitsStopAScriptByName) {
    constexpr const char* kFullArray =
        "An array is limited to 100 elements (--mel-limit array=N raises this).";
    constexpr const char* kFullString = "A string is limited to 40 bytes (--mel-limit string=N raises this).";
    machine.limits().recursion = 50;
    machine.limits().arraySize = 100;
    machine.limits().stringSize = 40;
    machine.limits().nestedRuns = 10;
    machine.run("global proc int down(int $n) { return $n ? 1 + down($n - 1) : 0; }"
                "global proc int again(int $n) { return $n ? 1 + eval(\"again(\" + ($n - 1) + \")\") : 0; }");
    // The statement that calls is a frame as well.
    EXPECT_EQ(valueOf("down(48)"), "48");
    EXPECT_EQ(errorOf("down(49)"),
              "Procedures are nested more than 50 deep (--mel-limit recursion=N raises this).");
    EXPECT_EQ(valueOf("again(9)"), "9");
    EXPECT_EQ(errorOf("again(10)"),
              "Scripts run by commands are nested more than 10 deep (--mel-limit nesting=N raises this).");
    EXPECT_EQ(valueOf("int $a[]; $a[99] = 1; size($a)"), "100");
    EXPECT_EQ(errorOf("$a[100] = 1;"), kFullArray);
    EXPECT_EQ(errorOf("$a[2147483647] = 1;"), kFullArray);
    EXPECT_EQ(valueOf("string $s = \"0123456789\"; $s += $s; $s = $s + $s; size($s)"), "40");
    EXPECT_EQ(errorOf("$s += \"x\";"), kFullString);
    EXPECT_EQ(errorOf("$s = $s + 1;"), kFullString);
    EXPECT_EQ(valueOf("size($s)"), "40");
    // The library keeps to them as well.
    EXPECT_EQ(valueOf("string $full = substring($s, 1, 39); size(substitute(\"$\", $full, \"x\"))"), "40");
    EXPECT_EQ(errorOf("substitute(\"$\", $full, \"xy\")"), kFullString);
    EXPECT_EQ(errorOf("substituteAllString($s, \"0\", \"oo\")"), kFullString);
    EXPECT_EQ(errorOf("stringArrayToString({$s, $s}, \"\")"), kFullString);
    EXPECT_EQ(errorOf("`format -s $s \"^1s^1s\"`"), kFullString);
    EXPECT_EQ(valueOf("size(encodeString($s))"), "40");
    EXPECT_EQ(errorOf("encodeString(substitute(\"0\", $s, \"\\\"\"))"), kFullString);
    EXPECT_EQ(valueOf("int $half[]; $half[49] = 1; size(intArrayCatenate($half, $half))"), "100");
    EXPECT_EQ(errorOf("intArrayCatenate($half, $a)"), kFullArray);
    EXPECT_EQ(errorOf("intArrayInsertAtIndex(0, $a, 1)"), kFullArray);
    machine.limits().stringSize = 1000;
    const auto words = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += "w ";
        return "string $w[]; tokenize(\"" + text + "\", $w)";
    };
    EXPECT_EQ(valueOf(words(100)), "100");
    EXPECT_EQ(errorOf(words(101)), kFullArray);
}

TEST_F(Mel, FixedLimitsHaveTwoSides) {
    const auto groups = [](std::size_t depth) {
        return "match(\"" + std::string(depth, '(') + "a" + std::string(depth, ')') + "\", \"a\")";
    };
    EXPECT_EQ(valueOf(groups(100)), "a");
    EXPECT_EQ(errorOf(groups(101)).substr(0, 18), "Malformed pattern ");
    EXPECT_TRUE(machine.run("matrix $tall[1024][1]; matrix $wide[1][1024];").ok);
    EXPECT_EQ(errorOf("matrix $m[1025][1];"), "Syntax error: a matrix has 1 to 1024 rows and columns.");
    const auto row = [](int columns) {
        std::string text = "$m = <<0";
        for (int i = 1; i < columns; ++i)
            text += ", 0";
        return text + ">>; $m[0][0]";
    };
    EXPECT_EQ(valueOf(row(1024)), "0");
    EXPECT_EQ(errorOf(row(1025)), "A matrix has at most 1024 rows and columns.");
}

TEST_F(Mel, StepLimitEndsEndlessScripts) {
    machine.limits().steps = 100;
    // Each turn but the last jumps back once; the statements are a step each.
    EXPECT_TRUE(machine.run("for ($i = 0; $i < 90; $i++);").ok);
    EXPECT_EQ(errorOf("while (1);"),
              "The script took more than 100 steps (--mel-limit steps=N raises this).");
    EXPECT_EQ(errorOf("while (1) catchQuiet(eval(\"while (1);\"));"),
              "The script took more than 100 steps (--mel-limit steps=N raises this).");
    machine.limits().steps = Limits::kNoStepLimit;
    EXPECT_TRUE(machine.run("for ($i = 0; $i < 100000; $i++);").ok);
}

TEST_F(Mel, LimitsAreSetByNameUpToWhatTheyCanBe) {
    Limits limits;
    for (const LimitRow& row : limitRows()) {
        setLimit(limits, row.name, row.most);
        EXPECT_EQ(limits.*row.value, row.most) << row.name;
        if (row.most < static_cast<std::size_t>(-1)) {
            EXPECT_THROW(setLimit(limits, row.name, row.most + 1), Error) << row.name;
        }
    }
    EXPECT_THROW(setLimit(limits, "stack", 5), Error);
}

TEST_F(Mel, AnInterruptStopsEveryScriptThatRuns) {
    int asked = 0;
    machine.setInterruptCheck([&asked] { return ++asked > 3; });
    EXPECT_EQ(errorOf("while (1) catchQuiet(eval(\"while (1);\"));"), "Interrupted.");
    machine.setInterruptCheck(nullptr);
    EXPECT_TRUE(machine.run("for ($i = 0; $i < 600000; $i++);").ok);
}

TEST_F(Mel, DeferredTextsRunAfterTheOutermostText) {
    EXPECT_EQ(
        valueOf("global string $order = \"\"; evalDeferred \"$order += \\\"later\\\"\"; $order += \"now \";"),
        "now ");
    EXPECT_EQ(valueOf("$order"), "now later");
    machine.defer("$order = \"at once\"");
    EXPECT_EQ(machine.global("order")->asString(), "at once");
    machine.limits().deferred = 5;
    machine.run("int $turns; global proc forever() { global int $turns; $turns++; evalDeferred forever; } "
                "evalDeferred forever;");
    EXPECT_EQ(machine.global("turns")->asInt(), 5);
    EXPECT_EQ(said(LogLevel::Error).size(), 1U);
}

TEST(MelValue, ConversionsOfTheLanguageAndThoseThatItDoesNotHave) {
    EXPECT_EQ(Value("12abc").asInt(), 12);
    EXPECT_EQ(Value(MVector(3, 4, 0)).asFloat(), 5.0);
    EXPECT_EQ(Value("<<1, 2.5, 3>>").asVector(), MVector(1, 2.5, 3));
    EXPECT_EQ(Value(FloatArray{1.5, -2.5}).asIntArray().read(), (IntArray{1, -2}));
    EXPECT_TRUE(Value().asStringArray()->empty());
    EXPECT_EQ(Value("1e3").number(), 1000.0);
    EXPECT_FALSE(Value("1e3x").number().has_value());
    EXPECT_EQ(Value(StringArray{"", "a"}).display(), " a");
    EXPECT_THROW((void)Value(IntArray{1}).asInt(), Error);
    EXPECT_THROW((void)Value(StringArray{"1"}).asIntArray(), Error);
    EXPECT_THROW((void)Value().asString(), Error);
    EXPECT_THROW((void)Value(Matrix(2, 3)).asVector(), Error);
    // A copy shares until one is written.
    const Value original(IntArray{1, 2});
    Value copy = original;
    copy.setElement(3, 7.9);
    EXPECT_EQ(copy.display(), "1 2 0 7");
    EXPECT_EQ(original.display(), "1 2");
}

} // namespace

} // namespace vesk::mel
