#pragma once
// The one way out for messages: what the host would show in its Script Editor.

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {

enum class LogLevel { Print, Info, Warning, Error };

struct LogEntry {
    LogLevel level;
    std::string text;   ///< without decoration; `Print` texts carry their own line ends
    std::string detail; ///< lines to show below the text, parted by line ends; mostly empty
};

/// Collects messages and hands each to the sink, if there is one, as it comes.
class Log {
  public:
    using Sink = std::function<void(const LogEntry&)>;

    void print(std::string_view text) { add(LogLevel::Print, text); }
    void info(std::string_view text) { add(LogLevel::Info, text); }
    void warning(std::string_view text) { add(LogLevel::Warning, text); }
    void error(std::string_view text, std::string_view detail = {}) { add(LogLevel::Error, text, detail); }
    void add(LogLevel level, std::string_view text, std::string_view detail = {});

    void setSink(Sink sink) { sink_ = std::move(sink); }
    /// Hears each message too; returns what it is removed by, above 0. Listeners may come and go while one is
    /// called.
    int addListener(Sink listener);
    bool removeListener(int id) { return listeners_.erase(id) > 0; }
    /// Entries are kept only while this is on (tests); counters always run.
    void keepEntries(bool keep) { keep_ = keep; }
    const std::vector<LogEntry>& entries() const { return entries_; }
    std::vector<LogEntry> take() { return std::exchange(entries_, {}); }

    std::size_t errorCount() const { return errors_; }
    std::size_t warningCount() const { return warnings_; }

    /// The decorated line as the Script Editor shows it: `// Warning: text //` and its siblings. Lines of
    /// detail follow, each a comment as well.
    static std::string decorated(const LogEntry& entry);

  private:
    Sink sink_;
    std::map<int, Sink> listeners_;
    int lastListener_ = 0;
    bool keep_ = false;
    std::vector<LogEntry> entries_;
    std::size_t errors_ = 0;
    std::size_t warnings_ = 0;
};

/// The process's log. There is one host session in a process.
Log& log();

} // namespace vesk
