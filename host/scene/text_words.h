#pragma once

#include "host/commands/words.h"
#include "host/mel/value.h"

#include <string>
#include <string_view>
#include <vector>

namespace vesk::scene {

/// The words of one statement of a scene file, straight from its text: no value is made for a number in a
/// list.
class TextWords final : public commands::Words {
  public:
    /// The statement without its semicolon; must outlive the stream.
    explicit TextWords(std::string_view statement);

    commands::WordKind peek() override;
    std::size_t mostLeft() const override;
    std::size_t numbersAhead() override;
    std::string_view text() override;
    std::string asWritten() override;
    std::size_t numbers(double* to, std::size_t count) override;
    std::size_t numbers(float* to, std::size_t count) override;
    std::size_t numbers(int* to, std::size_t count) override;

    /// Where the next word begins: for messages.
    const char* at() const { return at_; }

  private:
    void skipBlanks();
    /// The bytes of the next word, quotes included.
    std::string_view bytes() const;
    template <class T>
    bool takeOne(T& to);
    template <class T>
    std::size_t take(T* to, std::size_t count);

    const char* at_;
    const char* end_;
    std::string unescaped_;
};

/// All words as values of the language: numbers typed, everything else as text.
std::vector<mel::Value> valuesOf(std::string_view statement);

} // namespace vesk::scene
