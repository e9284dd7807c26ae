// Runs each script of the folder `scripts` and compares what it says with the comments on the lines that say
// it:
//   // expect: text                 a printed line, in the order of printing (blanks at its end do not count)
//   // expect warning: text         a warning
//   // expect error: text           an error of this line; `expect error at 5:` one of line 5
// A line may carry several.

#include "host/core/log.h"
#include "host/mel/interpreter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace vesk::mel {

namespace {

struct Said {
    std::vector<std::string> lines;
    std::vector<std::string> warnings;
    std::vector<std::string> errors; ///< "line 5: text"
};

std::string trimmed(const std::string& text) {
    const std::size_t end = text.find_last_not_of(" \r");
    return text.substr(0, end == std::string::npos ? 0 : end + 1);
}

/// The rest of a comment up to the next one that expects something.
Said expectedOf(const std::string& script) {
    Said expected;
    std::istringstream lines(script);
    std::string line;
    constexpr std::string_view mark = "// expect";
    for (int number = 1; std::getline(lines, line); ++number) {
        for (std::size_t at = line.find(mark); at != std::string::npos;) {
            const std::size_t next = line.find(mark, at + 1);
            const std::string comment = line.substr(at + mark.size(), next - at - mark.size());
            const std::size_t colon = comment.find(':');
            const std::string kind = comment.substr(0, colon);
            std::string text = trimmed(comment.substr(std::min(colon + 2, comment.size())));
            if (kind.empty()) expected.lines.push_back(text);
            if (kind == " warning") expected.warnings.push_back(text);
            if (kind == " error") expected.errors.push_back("line " + std::to_string(number) + ": " + text);
            if (kind.starts_with(" error at "))
                expected.errors.push_back("line " + kind.substr(10) + ": " + text);
            at = next;
        }
    }
    return expected;
}

Said saidBy(const std::vector<LogEntry>& entries, const std::string& file) {
    Said said;
    std::string printed;
    for (const LogEntry& entry : entries) {
        if (entry.level == LogLevel::Print) printed += entry.text;
        if (entry.level == LogLevel::Warning) said.warnings.push_back(entry.text);
        if (entry.level != LogLevel::Error) continue;
        const std::string front = "file \"" + file + "\" ";
        said.errors.push_back(entry.text.substr(entry.text.starts_with(front) ? front.size() : 0));
    }
    std::istringstream lines(printed);
    for (std::string line; std::getline(lines, line);)
        said.lines.push_back(trimmed(line));
    return said;
}

void addTestCommands(CommandTable& commands) {
    commands.add("show", [](Call& call) -> Value {
        std::string text;
        for (const Value& word : call.args)
            text += std::string(nameOf(word.type())) + ":" + word.asString() + " ";
        log().print(text + "\n");
        return call.args.empty() ? Value() : call.args.front();
    });
    commands.add("word", [](Call& call) { return call.args.front(); });
    commands.add("list", [](Call& call) -> Value {
        StringArray words;
        for (const Value& word : call.args)
            words.push_back(word.asString());
        return words;
    });
}

std::vector<std::string> scriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_SOURCE_DIR "/host/mel/scripts")) {
        if (entry.path().extension() == ".mel") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Script : public testing::TestWithParam<std::string> {};

TEST_P(Script, SaysWhatItExpects) {
    const std::string path = VESK_SOURCE_DIR "/host/mel/scripts/" + GetParam() + ".mel";
    std::ifstream file(path);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    Machine machine;
    addTestCommands(machine.commands());
    log().take();
    log().keepEntries(true);
    machine.run(text, GetParam());
    log().keepEntries(false);
    const Said expected = expectedOf(text);
    const Said said = saidBy(log().take(), GetParam());
    ASSERT_FALSE(expected.lines.empty());
    EXPECT_EQ(said.lines, expected.lines);
    EXPECT_EQ(said.warnings, expected.warnings);
    EXPECT_EQ(said.errors, expected.errors);
}

INSTANTIATE_TEST_SUITE_P(Folder, Script, testing::ValuesIn(scriptNames()),
                         [](const testing::TestParamInfo<std::string>& param) { return param.param; });

} // namespace

} // namespace vesk::mel
