#include "host/mel/lexer.h"

#include "host/api/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vesk::mel {

namespace {

struct Operator {
    std::string_view text;
    Tok kind;
};

// Longer ones first, so that the first that fits is the right one.
constexpr std::array<Operator, 38> operators{{
    {"<<", Tok::VectorOpen}, {">>", Tok::VectorClose},  {"++", Tok::Increment},  {"--", Tok::Decrement},
    {"+=", Tok::AddAssign},  {"-=", Tok::SubAssign},    {"*=", Tok::MulAssign},  {"/=", Tok::DivAssign},
    {"%=", Tok::ModAssign},  {"^=", Tok::CrossAssign},  {"==", Tok::Equal},      {"!=", Tok::NotEqual},
    {"<=", Tok::LessEqual},  {">=", Tok::GreaterEqual}, {"&&", Tok::And},        {"||", Tok::Or},
    {"(", Tok::LeftParen},   {")", Tok::RightParen},    {"[", Tok::LeftBracket}, {"]", Tok::RightBracket},
    {"{", Tok::LeftBrace},   {"}", Tok::RightBrace},    {",", Tok::Comma},       {";", Tok::Semicolon},
    {"?", Tok::Question},    {":", Tok::Colon},         {"`", Tok::Backquote},   {".", Tok::Dot},
    {"+", Tok::Plus},        {"-", Tok::Minus},         {"*", Tok::Star},        {"/", Tok::Slash},
    {"%", Tok::Percent},     {"^", Tok::Caret},         {"!", Tok::Not},         {"=", Tok::Assign},
    {"<", Tok::Less},        {">", Tok::Greater},
}};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isBareByte(char c) {
    return isNameByte(c) || (c != '\0' && std::string_view("|:.*?[]#@-~").find(c) != std::string_view::npos);
}

/// How a byte is named in a message.
std::string shown(char c) {
    if (c > ' ' && c < '\x7f') return std::string("'") + c + "'";
    const auto byte = static_cast<unsigned char>(c);
    constexpr std::string_view digits = "0123456789abcdef";
    return std::string("byte 0x") + digits[byte >> 4U] + digits[byte & 15U];
}

} // namespace

bool isNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool isNameByte(char c) { return isNameStart(c) || isDigit(c); }

Lexer::Lexer(std::string_view text) : text_(text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3; // a byte order mark
}

bool Lexer::skipBlanks(Token& token) {
    for (;;) {
        const char c = byteAt(at_);
        const char after = byteAt(at_ + std::size_t{1});
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
            ++at_;
        } else if (c == '/' && after == '/') {
            at_ = static_cast<std::uint32_t>(std::min(text_.find('\n', at_), text_.size()));
        } else if (c == '/' && after == '*') {
            const std::size_t close = text_.find("*/", at_ + std::size_t{2});
            if (close == std::string_view::npos) {
                token.begin = at_;
                fail(token, "This comment has no end.");
                return false;
            }
            at_ = static_cast<std::uint32_t>(close + 2);
        } else {
            token.begin = at_;
            return true;
        }
    }
}

Token& Lexer::finish(Token& token, Tok kind, std::size_t end) const {
    token.kind = kind;
    token.end = static_cast<std::uint32_t>(end);
    return token;
}

Token& Lexer::fail(Token& token, std::string message) const {
    token.text = std::move(message);
    return finish(token, Tok::Error, std::min<std::size_t>(token.begin + std::size_t{1}, text_.size()));
}

bool Lexer::startsNumber(std::size_t offset) const {
    return isDigit(byteAt(offset)) || (byteAt(offset) == '.' && isDigit(byteAt(offset + 1)));
}

Token Lexer::next() {
    Token token;
    if (!skipBlanks(token)) return token;
    const char c = byteAt(at_);
    if (at_ >= text_.size()) {
        finish(token, Tok::End, at_);
    } else if (startsNumber(at_)) {
        scanNumber(token);
        if (token.kind != Tok::Error && isNameByte(byteAt(token.end))) fail(token, "Malformed number.");
    } else if (isNameStart(c)) {
        scanName(token, Tok::Name, at_);
    } else if (c == '$') {
        scanName(token, Tok::Variable, at_ + std::size_t{1});
    } else if (c == '"') {
        scanString(token);
    } else {
        scanOperator(token);
    }
    at_ = token.end;
    return token;
}

Token Lexer::nextWord() {
    Token token;
    if (!skipBlanks(token)) return token;
    const char c = byteAt(at_);
    const char after = byteAt(at_ + std::size_t{1});
    const std::size_t digits = at_ + std::size_t{c == '-' || c == '+'};
    if (at_ >= text_.size()) {
        finish(token, Tok::End, at_);
    } else if (c == '"') {
        scanString(token);
    } else if (c == '$') {
        scanName(token, Tok::Variable, at_ + std::size_t{1});
    } else if (c == '-' && (after == '$' || after == '(' || after == '`')) {
        finish(token, Tok::Minus, at_ + std::size_t{1});
    } else if (startsNumber(digits)) {
        scanNumber(token);
        // `2d` and `1:24` are words, though they start like numbers.
        if (token.kind != Tok::Error && isBareByte(byteAt(token.end))) {
            if (c == '+') {
                fail(token, "Malformed number.");
            } else {
                scanBareWord(token);
            }
        }
    } else if (isBareByte(c)) {
        scanBareWord(token);
    } else {
        scanOperator(token);
    }
    at_ = token.end;
    return token;
}

void Lexer::scanNumber(Token& token) const {
    std::size_t end = token.begin;
    if (byteAt(end) == '-' || byteAt(end) == '+') ++end;
    if (byteAt(end) == '0' && (byteAt(end + 1) == 'x' || byteAt(end + 1) == 'X')) return scanHexNumber(token);

    bool whole = true;
    while (isDigit(byteAt(end)))
        ++end;
    if (byteAt(end) == '.') {
        whole = false;
        ++end;
        while (isDigit(byteAt(end)))
            ++end;
    }
    if (byteAt(end) == 'e' || byteAt(end) == 'E') {
        const bool isSigned = byteAt(end + 1) == '-' || byteAt(end + 1) == '+';
        const std::size_t digits = end + (isSigned ? 2 : 1);
        if (isDigit(byteAt(digits))) {
            whole = false;
            end = digits;
            while (isDigit(byteAt(end)))
                ++end;
        }
    }
    token.number = leadingNumber(text_.substr(token.begin, end - token.begin)).value;
    // A whole number beyond the range of an int is a float.
    if (std::abs(token.number) > std::numeric_limits<int>::max()) whole = false;
    if (whole) token.integer = static_cast<int>(token.number);
    finish(token, whole ? Tok::Int : Tok::Float, end);
}

void Lexer::scanHexNumber(Token& token) const {
    const bool negative = byteAt(token.begin) == '-';
    const std::size_t start = token.begin + std::size_t{byteAt(token.begin) != '0'} + 2;
    std::uint32_t bits = 0;
    const char* const first = text_.data() + start;
    const auto [end, error] = std::from_chars(first, text_.data() + text_.size(), bits, 16);
    if (end == first || error != std::errc()) {
        fail(token, "Malformed number.");
        return;
    }
    token.integer = static_cast<int>(negative ? 0U - bits : bits);
    finish(token, Tok::Int, static_cast<std::size_t>(end - text_.data()));
}

void Lexer::scanString(Token& token) const {
    std::size_t i = token.begin + std::size_t{1};
    for (;;) {
        const std::size_t special = text_.find_first_of("\"\\\n", i);
        if (special == std::string_view::npos || text_[special] == '\n') {
            fail(token, "This string has no closing quote.");
            return;
        }
        token.text.append(text_, i, special - i);
        if (text_[special] == '"') {
            finish(token, Tok::String, special + 1);
            return;
        }
        const char escaped = byteAt(special + 1);
        i = special + 2;
        switch (escaped) {
        case 'n': token.text += '\n'; break;
        case 't': token.text += '\t'; break;
        case 'r': token.text += '\r'; break;
        case '\n': break; // the string goes on in the next line
        case '\r':
            if (byteAt(i) == '\n') ++i;
            break;
        default:
            if (special + 1 < text_.size()) token.text += escaped;
        }
        i = std::min(i, text_.size());
    }
}

void Lexer::scanName(Token& token, Tok kind, std::size_t start) const {
    std::size_t end = start;
    if (isNameStart(byteAt(end))) {
        while (isNameByte(byteAt(end)))
            ++end;
    }
    if (end == start) {
        fail(token, "A variable's name is missing after '$'.");
        return;
    }
    token.text = text_.substr(start, end - start);
    finish(token, kind, end);
}

void Lexer::scanOperator(Token& token) const {
    const std::string_view rest = text_.substr(token.begin, 2);
    for (const Operator& known : operators) {
        if (rest.substr(0, known.text.size()) == known.text) {
            finish(token, known.kind, token.begin + known.text.size());
            return;
        }
    }
    fail(token, "Unexpected " + shown(rest.front()) + ".");
}

void Lexer::scanBareWord(Token& token) const {
    std::size_t end = token.begin;
    int brackets = 0;
    for (;; ++end) {
        const char c = byteAt(end);
        if (c == '[') ++brackets;
        if (c == ']') --brackets;
        // `>` belongs to a word as the second half of an arrow, and a comment ends it.
        const bool arrow = c == '>' && end > token.begin && byteAt(end - 1) == '-';
        if (!isBareByte(c) && !arrow) break;
    }
    token.text = text_.substr(token.begin, end - token.begin);
    if (brackets != 0) {
        fail(token,
             "Unbalanced brackets in the word \"" + token.text + "\"; build it as text in parentheses.");
        return;
    }
    finish(token, Tok::Bare, end);
}

} // namespace vesk::mel
