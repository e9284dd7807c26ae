#pragma once
// Text to tokens. The language has two ways of reading: expressions, and the words of a command.

#include "host/mel/value.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vesk::mel {

enum class Tok : std::uint8_t {
    End,
    Error, ///< `fault` says what is wrong; `begin` is where
    Int,
    Float,
    String,   ///< quoted; `text` without the quotes, escapes as they are written
    Name,     ///< also the language's own words
    Variable, ///< `text` without the `$`
    Bare,     ///< a bare word or a flag, in words only
    LeftParen,
    RightParen,
    LeftBracket,
    RightBracket,
    LeftBrace,
    RightBrace,
    Comma,
    Semicolon,
    Question,
    Colon,
    Backquote,
    Dot,
    VectorOpen,
    VectorClose,
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Caret,
    Not,
    Increment,
    Decrement,
    Assign,
    AddAssign,
    SubAssign,
    MulAssign,
    DivAssign,
    ModAssign,
    CrossAssign,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    Or
};

/// What is wrong with an Error token.
enum class Fault : std::uint8_t { OpenComment, OpenString, BadNumber, NoName, BadByte, BadBrackets };

/// Cheap to copy: its text is a part of the lexer's.
struct Token {
    Tok kind = Tok::End;
    Fault fault = Fault::BadByte; ///< of Error
    bool hasEscapes = false;      ///< of String
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    union {
        int integer;         ///< of Int
        double number = 0.0; ///< of Float
    };
    std::string_view text; ///< of String, Name, Variable, Bare
};

/// Reads tokens from a position that the parser may set back. Never throws: bad input becomes an Error token,
/// so that a token which is only looked at in the wrong way of reading does no harm.
class Lexer {
  public:
    /// The text must outlive the lexer.
    explicit Lexer(std::string_view text);

    /// The next token of an expression.
    Token next();
    /// The next word of a command. A word that is an expression (`$x`, `(`, a back quote, `{`, `<<`, or a
    /// minus before one of them) gives its first token only.
    Token nextWord();

    void seek(std::uint32_t offset) { at_ = offset; }
    /// What a String token stands for.
    static std::string contentOf(const Token& token);
    /// What is wrong with an Error token, as a sentence.
    static std::string messageOf(const Token& token);
    /// The byte at an offset, 0 outside the text.
    char byteAt(std::size_t offset) const { return offset < text_.size() ? text_[offset] : '\0'; }

  private:
    /// Skips blanks and comments; false with `token` made an error for a comment without end.
    bool skipBlanks(Token& token);
    Token& finish(Token& token, Tok kind, std::size_t end) const;
    Token& fail(Token& token, Fault fault) const;
    void scanNumber(Token& token) const;
    void scanHexNumber(Token& token) const;
    void scanString(Token& token) const;
    void scanName(Token& token, Tok kind, std::size_t start) const;
    void scanOperator(Token& token) const;
    void scanBareWord(Token& token) const;
    bool startsNumber(std::size_t offset) const;

    std::string_view text_;
    std::uint32_t at_ = 0;
};

bool isNameStart(char c);

} // namespace vesk::mel
