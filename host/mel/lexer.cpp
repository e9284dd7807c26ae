#include "host/mel/lexer.h"

#include "host/api/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vesk::mel {

namespace {

// What a byte may be part of.
enum : std::uint8_t { kDigit = 1, kNameStart = 2, kBareMark = 4, kBlank = 8 };

constexpr std::array<std::uint8_t, 256> byteClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    const auto mark = [&classes](std::string_view bytes, std::uint8_t as) {
        for (const char c : bytes)
            classes[static_cast<unsigned char>(c)] |= as;
    };
    mark("0123456789", kDigit);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", kNameStart);
    mark("|:.*?[]#@-~", kBareMark);
    mark(" \t\n\r\f\v", kBlank);
    return classes;
}();

bool is(char c, int classes) { return (byteClasses[static_cast<unsigned char>(c)] & classes) != 0; }
bool isDigit(char c) { return is(c, kDigit); }
bool isNameByte(char c) { return is(c, kNameStart | kDigit); }
bool isBareByte(char c) { return is(c, kNameStart | kDigit | kBareMark); }

/// An operator by its first byte and the one after it.
struct Operator {
    Tok kind;
    std::size_t length;
};

Operator operatorOf(char first, char second) {
    const auto either = [second](char longer, Tok two, Tok one) {
        return second == longer ? Operator{two, 2} : Operator{one, 1};
    };
    switch (first) {
    case '(': return {Tok::LeftParen, 1};
    case ')': return {Tok::RightParen, 1};
    case '[': return {Tok::LeftBracket, 1};
    case ']': return {Tok::RightBracket, 1};
    case '{': return {Tok::LeftBrace, 1};
    case '}': return {Tok::RightBrace, 1};
    case ',': return {Tok::Comma, 1};
    case ';': return {Tok::Semicolon, 1};
    case '?': return {Tok::Question, 1};
    case ':': return {Tok::Colon, 1};
    case '`': return {Tok::Backquote, 1};
    case '.': return {Tok::Dot, 1};
    case '+': return second == '+' ? Operator{Tok::Increment, 2} : either('=', Tok::AddAssign, Tok::Plus);
    case '-': return second == '-' ? Operator{Tok::Decrement, 2} : either('=', Tok::SubAssign, Tok::Minus);
    case '*': return either('=', Tok::MulAssign, Tok::Star);
    case '/': return either('=', Tok::DivAssign, Tok::Slash);
    case '%': return either('=', Tok::ModAssign, Tok::Percent);
    case '^': return either('=', Tok::CrossAssign, Tok::Caret);
    case '!': return either('=', Tok::NotEqual, Tok::Not);
    case '=': return either('=', Tok::Equal, Tok::Assign);
    case '<': return second == '<' ? Operator{Tok::VectorOpen, 2} : either('=', Tok::LessEqual, Tok::Less);
    case '>':
        return second == '>' ? Operator{Tok::VectorClose, 2} : either('=', Tok::GreaterEqual, Tok::Greater);
    case '&': return either('&', Tok::And, Tok::Error);
    case '|': return either('|', Tok::Or, Tok::Error);
    default: return {Tok::Error, 1};
    }
}

/// How a byte is named in a message.
std::string shown(char c) {
    if (c > ' ' && c < '\x7f') return std::string("'") + c + "'";
    const auto byte = static_cast<unsigned char>(c);
    constexpr std::string_view digits = "0123456789abcdef";
    return std::string("byte 0x") + digits[byte >> 4U] + digits[byte & 15U];
}

} // namespace

bool isNameStart(char c) { return is(c, kNameStart); }

Lexer::Lexer(std::string_view text) : text_(text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3; // a byte order mark
}

bool Lexer::skipBlanks(Token& token) {
    for (;;) {
        while (is(byteAt(at_), kBlank))
            ++at_;
        const char c = byteAt(at_);
        if (c == '/' && byteAt(at_ + std::size_t{1}) == '/') {
            at_ = static_cast<std::uint32_t>(std::min(text_.find('\n', at_), text_.size()));
        } else if (c == '/' && byteAt(at_ + std::size_t{1}) == '*') {
            const std::size_t close = text_.find("*/", at_ + std::size_t{2});
            if (close == std::string_view::npos) {
                token.begin = at_;
                fail(token, Fault::OpenComment);
                return false;
            }
            at_ = static_cast<std::uint32_t>(close + 2);
        } else if (c == '\\' && is(byteAt(at_ + std::size_t{1}), kBlank)) {
            // Lines are joined; editors leave blanks and a carriage return in between.
            const std::size_t next = text_.find_first_not_of(" \t\r", at_ + std::size_t{1});
            if (next == std::string_view::npos || text_[next] != '\n') {
                token.begin = at_;
                return true;
            }
            at_ = static_cast<std::uint32_t>(next + 1);
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

/// The text is what messages quote: the word of BadBrackets, else what stands there.
Token& Lexer::fail(Token& token, Fault fault) const {
    token.fault = fault;
    if (fault != Fault::BadBrackets) token.text = text_.substr(token.begin, 1);
    return finish(token, Tok::Error, std::min<std::size_t>(token.begin + std::size_t{1}, text_.size()));
}

std::string Lexer::messageOf(const Token& token) {
    switch (token.fault) {
    case Fault::OpenComment: return "This comment has no end.";
    case Fault::OpenString: return "This string has no closing quote.";
    case Fault::BadNumber: return "Malformed number.";
    case Fault::NoName: return "A variable's name is missing after '$'.";
    case Fault::BadBrackets:
        return "Unbalanced brackets in the word \"" + std::string(token.text) +
               "\"; build it as text in parentheses.";
    case Fault::BadByte: break;
    }
    return "Unexpected " + shown(token.text.front()) + ".";
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
        if (token.kind != Tok::Error && isNameByte(byteAt(token.end))) fail(token, Fault::BadNumber);
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
                fail(token, Fault::BadNumber);
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
        fail(token, Fault::BadNumber);
        return;
    }
    token.integer = static_cast<int>(negative ? 0U - bits : bits);
    finish(token, Tok::Int, static_cast<std::size_t>(end - text_.data()));
}

void Lexer::scanString(Token& token) const {
    const std::size_t start = token.begin + std::size_t{1};
    for (std::size_t i = start;;) {
        while (i < text_.size() && text_[i] != '"' && text_[i] != '\\' && text_[i] != '\n')
            ++i;
        if (i >= text_.size() || text_[i] == '\n') {
            fail(token, Fault::OpenString);
            return;
        }
        if (text_[i] == '"') {
            token.text = text_.substr(start, i - start);
            finish(token, Tok::String, i + 1);
            return;
        }
        token.hasEscapes = true;
        i += byteAt(i + 1) == '\r' && byteAt(i + 2) == '\n' ? 3 : 2;
    }
}

std::string Lexer::contentOf(const Token& token) {
    if (!token.hasEscapes) return std::string(token.text);
    const std::string_view text = token.text;
    std::string content;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            content += text[i];
            continue;
        }
        const char escaped = text[++i]; // a string does not end with a single backslash
        switch (escaped) {
        case 'n': content += '\n'; break;
        case 't': content += '\t'; break;
        case 'r': content += '\r'; break;
        case '\n': break; // the string goes on in the next line
        case '\r':
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
            break;
        default: content += escaped;
        }
    }
    return content;
}

void Lexer::scanName(Token& token, Tok kind, std::size_t start) const {
    std::size_t end = start;
    if (isNameStart(byteAt(end))) {
        while (isNameByte(byteAt(end)))
            ++end;
    }
    if (end == start) {
        fail(token, Fault::NoName);
        return;
    }
    token.text = text_.substr(start, end - start);
    finish(token, kind, end);
}

void Lexer::scanOperator(Token& token) const {
    const Operator found = operatorOf(byteAt(token.begin), byteAt(token.begin + std::size_t{1}));
    if (found.kind == Tok::Error) {
        fail(token, Fault::BadByte);
    } else {
        finish(token, found.kind, token.begin + found.length);
    }
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
        fail(token, Fault::BadBrackets);
        return;
    }
    finish(token, Tok::Bare, end);
}

} // namespace vesk::mel
