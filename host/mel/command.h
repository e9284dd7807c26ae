#pragma once
// What the language knows of the host's commands: names and callables.

#include "host/mel/error.h"
#include "host/mel/value.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vesk::mel {

class Machine;

/// One call of a command. The words come as values: numbers as int or float (`on`, `yes`, `true` and their
/// opposites as 1 and 0), flags, bare words and quoted text as strings, vectors and matrices as such. Arrays
/// have been spread into one word for each element, and a result that is none gives no word, so `args` holds
/// neither. `args` and `name` live as long as the call.
struct Call {
    std::string_view name;
    std::span<const Value> args;
    Place place;
    Machine& machine;
};

/// Returns the command's result, none when it has no result; throws Error to stop the script.
using Command = std::function<Value(Call&)>;

/// Commands by name. A command may add or remove commands while it runs, itself included.
class CommandTable {
  public:
    /// Replaces a command of the same name.
    void add(std::string name, Command command);
    /// Returns whether there was one.
    bool remove(std::string_view name);
    /// Null when there is none; valid until the command is replaced or removed.
    const Command* find(std::string_view name) const;
    /// The same, kept alive by the holder.
    std::shared_ptr<const Command> share(std::string_view name) const;
    /// Sorted.
    std::vector<std::string> names() const;
    /// Changes whenever a command is added or removed.
    std::uint64_t version() const { return version_; }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    std::unordered_map<std::string, std::shared_ptr<const Command>, Hash, std::equal_to<>> commands_;
    std::uint64_t version_ = 0;
};

} // namespace vesk::mel
