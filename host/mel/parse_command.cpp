// The parser's part for calls: the words of commands, and back quotes.

#include "host/mel/parser.h"

#include <utility>

namespace vesk::mel {

ExprPtr Parser::parseBackquoted() {
    const Nesting nesting(*this);
    expect(Tok::Backquote, "'`'");
    if (!at(Tok::Name)) failHere("a command");
    ExprPtr call = atName("catch") || atName("catchQuiet") ? parseCatch() : parseCall(true);
    expect(Tok::Backquote, "'`'");
    return call;
}

ExprPtr Parser::parseCall(bool inBackquotes) {
    auto call = std::make_unique<CallExpr>(Expr::Kind::Call, now_.begin);
    call->effects = true;
    call->name = now_.text;
    advance();
    if (at(Tok::LeftParen)) {
        call->words = parseArguments();
        // `f(a, b)` is a function; `setAttr ($n + ".tx") 5` is a command whose first word has parentheses.
        if (call->words.size() != 1 || endsFunctionForm()) return call;
    }
    parseWords(*call, inBackquotes);
    return call;
}

/// Whether what follows `name(...)` cannot be the next word of a command.
bool Parser::endsFunctionForm() const {
    switch (now_.kind) {
    case Tok::Dot:
    case Tok::LeftBracket: return now_.begin == lastEnd_;
    case Tok::Backquote: return !opensBackquote(now_);
    case Tok::End:
    case Tok::Semicolon:
    case Tok::RightParen:
    case Tok::RightBracket:
    case Tok::RightBrace:
    case Tok::Comma:
    case Tok::Question:
    case Tok::Plus:
    case Tok::Slash:
    case Tok::Percent:
    case Tok::Caret:
    case Tok::Assign:
    case Tok::Equal:
    case Tok::NotEqual:
    case Tok::Less:
    case Tok::LessEqual:
    case Tok::Greater:
    case Tok::GreaterEqual:
    case Tok::And:
    case Tok::Or: return true;
    default: return false;
    }
}

std::vector<Word> Parser::parseArguments() {
    std::vector<Word> words;
    expect(Tok::LeftParen, "'('");
    if (accept(Tok::RightParen)) return words;
    do {
        Word word;
        word.at = now_.begin;
        word.expr = parseExpression();
        words.push_back(std::move(word));
    } while (accept(Tok::Comma));
    expect(Tok::RightParen, "')'");
    return words;
}

void Parser::parseWords(CallExpr& call, bool inBackquotes) {
    lexer_.seek(lastEnd_);
    call.words.reserve(4); // as many as most commands have
    for (;;) {
        const Token word = lexer_.nextWord();
        if (atWordEnd(word, inBackquotes)) {
            lexer_.seek(word.begin);
            now_ = lexer_.next();
            return;
        }
        call.words.push_back(parseWord(word));
    }
}

bool Parser::atWordEnd(const Token& word, bool inBackquotes) const {
    switch (word.kind) {
    case Tok::End:
    case Tok::Semicolon:
    case Tok::RightParen:
    case Tok::RightBrace: return true;
    case Tok::Backquote: return inBackquotes && !opensBackquote(word);
    default: return false;
    }
}

/// Within back quotes a quote after a blank and before a name opens a nested command; any other closes.
bool Parser::opensBackquote(const Token& quote) const {
    const char before = quote.begin > 0 ? lexer_.byteAt(quote.begin - std::size_t{1}) : '\0';
    const bool blank = before == ' ' || before == '\t' || before == '\n' || before == '\r';
    return blank && isNameStart(lexer_.byteAt(quote.end));
}

Word Parser::parseWord(const Token& token) {
    Word word;
    word.at = token.begin;
    switch (token.kind) {
    case Tok::Error: fail(token.begin, Lexer::messageOf(token));
    case Tok::Int: word.constant = token.integer; break;
    case Tok::Float: word.constant = token.number; break;
    case Tok::String: word.constant = Lexer::contentOf(token); break;
    case Tok::Bare:
        if (const std::optional<int> value = booleanNamed(token.text)) {
            word.constant = *value;
        } else {
            word.constant = token.text;
        }
        break;
    case Tok::Variable:
    case Tok::LeftParen:
    case Tok::Backquote:
    case Tok::LeftBrace:
    case Tok::VectorOpen:
    case Tok::Minus: return parseExpressionWord(token);
    default: {
        const std::string text = source_->text().substr(token.begin, token.end - token.begin);
        fail(token.begin, "unexpected '" + text + "'; an expression among words needs parentheses.");
    }
    }
    return word;
}

Word Parser::parseExpressionWord(const Token& token) {
    lexer_.seek(token.begin);
    now_ = lexer_.next();
    Word word;
    word.at = token.begin;
    const bool negative = accept(Tok::Minus);
    word.expr = parsePrimary();
    while (at(Tok::LeftBracket) && now_.begin == lastEnd_)
        word.expr = parseIndex(std::move(word.expr));
    if (lexer_.byteAt(lastEnd_) == '.') {
        fail(lastEnd_, "unexpected '.'; an expression among words needs parentheses.");
    }
    if (negative) {
        auto negate = std::make_unique<UnaryExpr>(Expr::Kind::Negate, token.begin);
        negate->effects = word.expr->effects;
        negate->operand = std::move(word.expr);
        word.expr = std::move(negate);
    }
    lexer_.seek(lastEnd_);
    return word;
}

} // namespace vesk::mel
