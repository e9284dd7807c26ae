#pragma once
// What the command line asks for.

#include <string>
#include <utility>
#include <vector>

namespace vesk::app {

/// Exit codes of the command.
enum ExitCode : int { kAllDone = 0, kFailed = 1, kBadUsage = 2, kInterrupted = 130 };

enum class ProgressDialect { Bar, Percent, Alf, OpenJobDescription, Json, None };

struct Assignment {
    std::string left, right; ///< around the first `=`
};

struct RunOptions {
    std::vector<std::string> files;
    std::vector<std::string> gets;
    std::vector<Assignment> exports;                         ///< file, plug
    std::vector<Assignment> sets;                            ///< plug, value
    std::vector<std::pair<std::string, std::size_t>> limits; ///< of scripts: name, value
    std::vector<double> frames;                              ///< empty: the scene's current time
    ProgressDialect progress = ProgressDialect::Percent;
    std::string plugin; ///< empty: the one beside the command
    std::string userDir;
    bool noPlugin = false;
    bool interactiveSession = false;
    bool time = false;
    int threads = 0; ///< 0: as many as the machine has
    bool strict = false;
    bool json = false;
};

/// Frames of a text such as `1-24x2,30`, in the order given. Throws std::invalid_argument with a sentence.
std::vector<double> parseFrames(const std::string& text);
/// A limit of scripts, `name=N` with N above 0. Throws std::invalid_argument with a sentence.
std::pair<std::string, std::size_t> parseLimit(const std::string& text);
/// Splits at the first `=`. Throws std::invalid_argument when there is none or a side is empty.
Assignment parseAssignment(const std::string& option, const std::string& text);

} // namespace vesk::app
