#pragma once
// Where in a script something stands, and the one exception that crosses between a command and its caller.

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::mel {

/// One text that was given to the interpreter. Places point into it; it lives as long as any of them.
class Source {
  public:
    Source(std::string name, std::string text, int firstLine = 1);

    const std::string& name() const { return name_; } ///< file name, empty for text typed or generated
    const std::string& text() const { return text_; }
    int line(std::uint32_t offset) const;   ///< counted from `firstLine`
    int column(std::uint32_t offset) const; ///< counted from 1, in bytes
    std::string_view lineText(std::uint32_t offset) const;

  private:
    std::size_t lineIndex(std::uint32_t offset) const;

    std::string name_;
    std::string text_;
    int firstLine_;
    std::vector<std::uint32_t> lineStarts_;
};

/// A place in a source. Cheap to copy; lines are counted only when asked for.
struct Place {
    std::shared_ptr<const Source> source; ///< null: nowhere in particular
    std::uint32_t offset = 0;             ///< byte in the source's text

    const std::string& file() const;
    int line() const;   ///< 0 when nowhere
    int column() const; ///< 0 when nowhere
    /// `file "x.mel" line 3`, `line 3` for a text without a name, empty when nowhere.
    std::string describe() const;
    /// The line of text, and below it a caret under the place; of a long line the part around it. Empty when
    /// nowhere.
    std::string excerpt() const;
};

/// One procedure that was running when an error came up, and the place in it that was being executed.
struct StackEntry {
    std::string procedure; ///< empty for the top level of a text
    Place place;
};

/// What stops a script. Commands throw it with a message alone; the interpreter adds the place and the
/// procedures.
class Error : public std::exception {
  public:
    explicit Error(std::string message) : message_(std::move(message)) {}
    Error(std::string message, Place place) : message_(std::move(message)), place_(std::move(place)) {}

    const char* what() const noexcept override { return message_.c_str(); }
    const std::string& message() const { return message_; }
    const Place& place() const { return place_; }
    /// The running procedures, innermost first.
    const std::vector<StackEntry>& stack() const { return stack_; }
    /// The message with its place in front: `file "x.mel" line 3: message`.
    std::string describe() const;
    /// The line of text with a caret under the place, numbered by line and column; then, if a procedure was
    /// running, the procedures with their places, innermost first, one a line. Empty for an error without a
    /// place.
    std::string detail() const;

    bool isPlaced() const { return place_.source != nullptr; }
    void setPlace(Place place) { place_ = std::move(place); }
    void addCaller(StackEntry entry) { stack_.push_back(std::move(entry)); }

    /// Whether the log has it already, so that passing it on does not write it twice.
    bool isReported() const { return reported_; }
    void setReported() { reported_ = true; }

  private:
    std::string message_;
    Place place_;
    std::vector<StackEntry> stack_;
    bool reported_ = false;
};

} // namespace vesk::mel
