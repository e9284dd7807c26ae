#pragma once
// The words of a command as a stream, wherever they come from: values of the language, or the raw text of a
// scene file.

#include "host/core/result.h"
#include "host/mel/value.h"

#include <span>
#include <string>
#include <string_view>

namespace vesk::commands {

enum class WordKind : std::uint8_t {
    End,
    Number, ///< also the bare words `yes no on off true false`, which are 1 and 0
    Text,
    Flag, ///< a dash and a letter; never a quoted text where the stream can tell
};

/// Words in order. Nothing here throws. Numbers come in bulk, so that a long list costs one virtual call.
class Words {
  public:
    Words() = default;
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;
    virtual ~Words() = default;

    virtual WordKind peek() = 0;
    /// No more words than this follow; what a count is checked against before memory is taken for it.
    virtual std::size_t mostLeft() const = 0;
    /// How many numbers follow before the end or the first word that is none.
    virtual std::size_t numbersAhead() = 0;

    /// Takes the next word as a text, a number as it stands. Empty at the end. Valid until the next call.
    virtual std::string_view text() = 0;
    /// Takes the next word as it was written, a text with its quotes. Empty at the end.
    virtual std::string asWritten() = 0;

    // Take up to `count` numbers and return how many there were before the end or the first word that is
    // none. A text that is a number as a whole counts as one. For ints, fractions are cut off and what is too
    // large is held in range.
    virtual std::size_t numbers(double* to, std::size_t count) = 0;
    virtual std::size_t numbers(float* to, std::size_t count) = 0;
    virtual std::size_t numbers(int* to, std::size_t count) = 0;

    bool atEnd() { return peek() == WordKind::End; }
};

/// The next word as a count of things of `wordsEach` words that follow it. Fails on what is no whole number
/// from 0 on, and on more than the words that are left. `what` stands in the message.
Result<std::size_t> readCount(Words& words, std::size_t wordsEach, std::string_view what);

/// Values of the language. Vectors and matrices stand for their numbers, one word each.
class ValueWords final : public Words {
  public:
    /// The values must outlive the stream.
    explicit ValueWords(std::span<const mel::Value* const> values);

    WordKind peek() override;
    std::size_t mostLeft() const override { return left_; }
    std::size_t numbersAhead() override;
    std::string_view text() override;
    std::string asWritten() override;
    std::size_t numbers(double* to, std::size_t count) override;
    std::size_t numbers(float* to, std::size_t count) override;
    std::size_t numbers(int* to, std::size_t count) override;

  private:
    /// Numbers inside the value: more than one for vectors and matrices.
    static std::size_t sizeOf(const mel::Value& value);
    static std::optional<double> part(const mel::Value& value, std::size_t index);
    template <class T>
    std::size_t take(T* to, std::size_t count);
    void step();

    std::span<const mel::Value* const> values_; ///< those not used up
    std::size_t part_ = 0;                      ///< within the first of them
    std::size_t left_ = 0;
    std::string text_;
};

} // namespace vesk::commands
