#include "host/mel/mentions.h"

#include "host/mel/lexer.h"
#include "host/mel/value.h"

#include <algorithm>

namespace vesk::mel {

namespace {

bool isNameByte(char c) { return isNameStart(c) || (c >= '0' && c <= '9'); }

bool isKeyword(std::string_view name) {
    static constexpr std::string_view kWords[] = {
        "if",       "else",   "while", "for",   "do",  "switch", "case",   "default", "break",
        "continue", "return", "int",   "float", "in",  "string", "vector", "matrix",  "global",
        "proc",     "true",   "false", "on",    "off", "yes",    "no"};
    return std::find(std::begin(kWords), std::end(kWords), name) != std::end(kWords);
}

/// Whether a statement may begin behind this token.
bool endsStatement(Tok kind) {
    return kind == Tok::Semicolon || kind == Tok::LeftBrace || kind == Tok::RightBrace ||
           kind == Tok::RightParen || kind == Tok::Colon;
}

bool assigns(Tok kind) {
    switch (kind) {
    case Tok::Assign:
    case Tok::AddAssign:
    case Tok::SubAssign:
    case Tok::MulAssign:
    case Tok::DivAssign:
    case Tok::ModAssign:
    case Tok::CrossAssign: return true;
    default: return false;
    }
}

bool steps(Tok kind) { return kind == Tok::Increment || kind == Tok::Decrement; }

class Search {
  public:
    explicit Search(std::string_view text) : text_(text), lexer_(text) {}

    std::vector<Mention> run() {
        while (mode() == Mode::Expression ? inExpression() : inWords()) {
        }
        return std::move(found_);
    }

  private:
    enum class Mode : char { Expression, Words, QuotedWords };
    Mode mode() const { return modes_.empty() ? Mode::Expression : modes_.back(); }
    char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }

    /// One step; false at the end.
    bool inExpression() {
        const Token token = lexer_.next();
        const bool startsStatement = atStart_;
        atStart_ = endsStatement(token.kind);
        if (token.kind == Tok::End) return false;
        if (token.kind == Tok::Name || (token.kind == Tok::Error && at(token.begin) == '|')) {
            if (!name(token, startsStatement)) return false;
        } else if (token.kind == Tok::Error) {
            return false;
        } else if (token.kind == Tok::Dot && !followsValue(token.begin)) {
            placeholder(token);
        } else if (token.kind == Tok::LeftParen) {
            modes_.push_back(Mode::Expression);
        } else if (token.kind == Tok::RightParen && !modes_.empty()) {
            modes_.pop_back();
        } else if (token.kind == Tok::Backquote) {
            modes_.push_back(Mode::QuotedWords);
        }
        previous_ = token.kind;
        return true;
    }

    bool inWords() {
        const Token token = lexer_.nextWord();
        if (token.kind == Tok::End || token.kind == Tok::Error) return false;
        const bool quoted = mode() == Mode::QuotedWords;
        if (token.kind == Tok::LeftParen) {
            modes_.push_back(Mode::Expression);
        } else if (quoted ? token.kind == Tok::Backquote : token.kind == Tok::Semicolon) {
            modes_.pop_back();
            atStart_ = !quoted;
        } else if (token.kind == Tok::Backquote) {
            modes_.push_back(Mode::QuotedWords);
        }
        previous_ = token.kind;
        return true;
    }

    /// `$v.x`, `(a + b).x`, `$a[0].x`: a component of a value.
    bool followsValue(std::size_t dot) const {
        return dot > 0 && (isNameByte(at(dot - 1)) || at(dot - 1) == ')' || at(dot - 1) == ']');
    }

    bool name(const Token& token, bool startsStatement) {
        if (previous_ == Tok::Dot) return true; // a component
        const std::size_t end = plugEnd(token.begin);
        if (end > token.begin) {
            add(Mention::Kind::Plug, token.begin, end);
            return true;
        }
        if (token.kind == Tok::Error) return false;
        if (isKeyword(token.text)) {
            atStart_ = token.text == "else" || token.text == "do";
            return true;
        }
        const Token next = lexer_.next();
        lexer_.seek(token.end);
        if (next.kind == Tok::LeftParen) return true;
        if (startsStatement && startsWords(next)) {
            modes_.push_back(Mode::Words);
            return true;
        }
        const Mention::Kind kind = token.text == "time"    ? Mention::Kind::Time
                                   : token.text == "frame" ? Mention::Kind::Frame
                                                           : Mention::Kind::Name;
        add(kind, token.begin, token.end);
        return true;
    }

    bool startsWords(const Token& next) const {
        switch (next.kind) {
        case Tok::Name:
        case Tok::Variable:
        case Tok::String:
        case Tok::Int:
        case Tok::Float:
        case Tok::Backquote: return true;
        case Tok::Minus: return isNameStart(at(next.end));
        default: return false;
        }
    }

    /// The end of the plug's name that begins here; the beginning itself when there is none.
    std::size_t plugEnd(std::size_t begin) const {
        std::size_t end = begin;
        while (isNameByte(at(end)) || (at(end) == '|' && at(end + 1) != '|' && isNameStart(at(end + 1))) ||
               (at(end) == ':' && end > begin && isNameStart(at(end + 1))))
            ++end;
        if (at(end) != '.' || !isNameStart(at(end + 1))) return begin;
        return pathEnd(end);
    }

    /// The end of `.a[1].b` from its first dot on.
    std::size_t pathEnd(std::size_t end) const {
        while (at(end) == '.' && isNameStart(at(end + 1))) {
            ++end;
            while (isNameByte(at(end)))
                ++end;
            end = indexEnd(end);
        }
        return end;
    }

    std::size_t indexEnd(std::size_t begin) const {
        if (at(begin) != '[') return begin;
        std::size_t end = begin + 1;
        while (at(end) >= '0' && at(end) <= '9')
            ++end;
        return end > begin + 1 && at(end) == ']' ? end + 1 : begin;
    }

    /// `.I[3]` or `.O[3]`.
    void placeholder(const Token& dot) {
        const char letter = at(dot.end);
        if (letter != 'I' && letter != 'O') return;
        const std::size_t number = dot.end + std::size_t{1}, end = indexEnd(number);
        if (end == number) return;
        add(letter == 'I' ? Mention::Kind::Input : Mention::Kind::Output, dot.begin, end);
        found_.back().index = Value(text_.substr(number + 1, end - number - 2)).asInt();
    }

    void add(Mention::Kind kind, std::size_t begin, std::size_t end) {
        lexer_.seek(static_cast<std::uint32_t>(end));
        const Token next = lexer_.next();
        lexer_.seek(static_cast<std::uint32_t>(end));
        found_.push_back({kind, begin, end, -1, assigns(next.kind) || steps(next.kind) || steps(previous_)});
    }

    std::string_view text_;
    Lexer lexer_;
    std::vector<Mode> modes_; ///< what the present place stands in, below the text itself
    std::vector<Mention> found_;
    Tok previous_ = Tok::Semicolon;
    bool atStart_ = true;
};

} // namespace

std::vector<Mention> mentionsIn(std::string_view text) { return Search(text).run(); }

} // namespace vesk::mel
