#pragma once
// The MEL interpreter of a session: runs texts, keeps procedures and global variables, calls commands.

#include "host/mel/command.h"
#include "host/mel/error.h"
#include "host/mel/limits.h"
#include "host/mel/value.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::mel {

/// How a text or a procedure ended.
struct Result {
    bool ok = true;
    Value value;                   ///< of the last statement; none when it has no value or failed
    std::string error;             ///< the message alone
    Place place;                   ///< where the error is
    std::vector<StackEntry> stack; ///< the procedures that were running, innermost first
};

/// The interpreter. Everything may be called again from within a command that it is running: a command may
/// run MEL, which may call commands. One thread at a time.
class Machine {
  public:
    Machine();
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    CommandTable& commands();
    Limits& limits();
    /// Asked now and then while a script runs; once it says true, every script stops with an error.
    void setInterruptCheck(std::function<bool()> isInterrupted);

    /// Runs a text at top level. The whole text is parsed and checked first, so that after a syntax error
    /// nothing of it has run. An error is written to the log once, as `file "x.mel" line 3: message`, and
    /// returned. Texts that it defers run after the outermost call has ended.
    Result run(std::string_view text, std::string fileName = {}, int firstLine = 1);
    /// Runs a file, found as it stands or on the script path (with or without `.mel`).
    Result source(const std::string& path);
    /// Calls what the name means (procedure, command, script file) with the values, which are converted to
    /// the types of a procedure's parameters.
    Result callProc(std::string_view name, std::span<const Value> args = {});

    // The same for commands, which answer to a running script: an error is thrown and not written to the log,
    // and what is deferred waits for the end of that script.
    Value evaluate(std::string_view text, std::string fileName = {}, int firstLine = 1);
    Value evaluateFile(const std::string& path);
    /// Throws the error of a failed result on to the calling script; the log does not get it a second time.
    [[noreturn]] static void rethrow(const Result& result);

    /// Queues a text until the outermost run has ended; runs it at once when nothing runs.
    void defer(std::string text);

    /// Whether a global procedure of that name is defined (scripts on the path are not looked at).
    bool hasProc(std::string_view name) const;
    /// What a name means, as `whatIs` says it: `Command`, `Mel procedure found in: x.mel`,
    /// `Mel procedure entered interactively.`, `Script found in: x.mel`, `Unknown`.
    std::string whatIs(const std::string& name) const;

    /// Names with or without `$`. Nothing when there is no such variable.
    std::optional<Value> global(std::string_view name) const;
    /// Makes the variable with the value's type, or converts the value to the type that it has.
    void setGlobal(std::string_view name, const Value& value);

    /// Folders that are searched for scripts, in order. A script that a call finds by its name is run once;
    /// if it did not define the procedure, it is not run again before `rehash`.
    std::vector<std::string>& scriptPath();
    void rehash();
    /// Folders below which scripts may write files; none at first.
    std::vector<std::string>& writeFolders();
    /// The file that `name` or `name.mel` stands for, or nothing.
    std::optional<std::string> findScript(const std::string& name) const;

    struct Impl;

  private:
    std::unique_ptr<Impl> impl_;
};

} // namespace vesk::mel
