#include "host/mel/parser.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vesk::mel {

namespace {

constexpr int kMaxDimension = 1024; ///< rows or columns of a matrix

/// The words that only go on with a statement.
bool continuesStatement(std::string_view name) {
    constexpr std::array<std::string_view, 4> words{"else", "case", "default", "in"};
    return std::find(words.begin(), words.end(), name) != words.end();
}

/// The words that no procedure can be named by, since it could never be called.
bool isReserved(std::string_view name) {
    constexpr std::array<std::string_view, 12> words{"if",     "while",    "do",     "for",
                                                     "switch", "return",   "global", "proc",
                                                     "break",  "continue", "catch",  "catchQuiet"};
    return continuesStatement(name) || typeNamed(name) != Type::None ||
           std::find(words.begin(), words.end(), name) != words.end();
}

std::unique_ptr<ExprStmt> expressionStatement(std::uint32_t offset, ExprPtr expr) {
    auto statement = std::make_unique<ExprStmt>(Stmt::Kind::Expression, offset);
    statement->expr = std::move(expr);
    return statement;
}

} // namespace

Type typeNamed(std::string_view name) {
    if (name.empty()) return Type::None;
    const auto only = [name](std::string_view word, Type type) { return name == word ? type : Type::None; };
    switch (name.front()) {
    case 'i': return only("int", Type::Int);
    case 'f': return only("float", Type::Float);
    case 's': return only("string", Type::String);
    case 'v': return only("vector", Type::Vector);
    case 'm': return only("matrix", Type::Matrix);
    default: return Type::None;
    }
}

std::optional<int> booleanNamed(std::string_view name) {
    if (name == "true" || name == "on" || name == "yes") return 1;
    if (name == "false" || name == "off" || name == "no") return 0;
    return std::nullopt;
}

Parser::Parser(std::shared_ptr<const Source> source) : source_(std::move(source)), lexer_(source_->text()) {
    now_ = lexer_.next();
}

std::vector<StmtPtr> Parser::parse() {
    std::vector<StmtPtr> statements;
    while (!at(Tok::End)) {
        if (accept(Tok::Semicolon)) continue;
        statements.push_back(parseStatement());
    }
    return statements;
}

void Parser::advance() {
    lastEnd_ = now_.end;
    now_ = lexer_.next();
}

void Parser::rewindTo(const Token& token) {
    now_ = token;
    lexer_.seek(token.end);
}

bool Parser::accept(Tok kind) {
    if (!at(kind)) return false;
    advance();
    return true;
}

bool Parser::acceptName(std::string_view name) {
    if (!atName(name)) return false;
    advance();
    return true;
}

void Parser::expect(Tok kind, std::string_view what) {
    if (!accept(kind)) failHere(what);
}

std::string Parser::expectText(Tok kind, std::string_view what) {
    if (!at(kind)) failHere(what);
    std::string text(now_.text);
    advance();
    return text;
}

void Parser::fail(std::uint32_t offset, const std::string& message) const {
    throw Error("Syntax error: " + message, placeOf(offset));
}

void Parser::failHere(std::string_view wanted) const {
    if (at(Tok::Error)) fail(now_.begin, Lexer::messageOf(now_));
    constexpr std::size_t longest = 24;
    const std::string_view text = source_->text();
    std::string found(text.substr(now_.begin, std::min<std::size_t>(now_.end - now_.begin, longest)));
    if (now_.end - now_.begin > longest) found += "...";
    fail(now_.begin, "expected " + std::string(wanted) + " before " +
                         (at(Tok::End) ? "the end of the text." : "'" + found + "'."));
}

StmtPtr Parser::parseStatement() {
    const Nesting nesting(*this);
    if (at(Tok::LeftBrace)) return parseBlock();
    if (at(Tok::Semicolon)) {
        auto empty = std::make_unique<BlockStmt>(Stmt::Kind::Block, now_.begin);
        advance();
        return empty;
    }
    if (at(Tok::Name)) return parseNamed();
    return parseSimple();
}

StmtPtr Parser::parseNamed() {
    const std::uint32_t offset = now_.begin;
    if (atName("if")) return parseIf();
    if (atName("while")) return parseWhile();
    if (atName("do")) return parseDo();
    if (atName("for")) return parseFor();
    if (atName("switch")) return parseSwitch();
    if (atName("return")) return parseReturn();
    if (atName("global")) return parseGlobal();
    if (acceptName("proc")) return parseProcedure(false, offset);
    if (acceptName("break")) {
        endStatement();
        return std::make_unique<ExprStmt>(Stmt::Kind::Break, offset);
    }
    if (acceptName("continue")) {
        endStatement();
        return std::make_unique<ExprStmt>(Stmt::Kind::Continue, offset);
    }
    if (continuesStatement(now_.text)) failHere("a statement");
    // `int $x` declares; `int($x)` converts.
    if (typeNamed(now_.text) != Type::None) {
        const Token type = now_;
        advance();
        if (!at(Tok::LeftParen)) {
            rewindTo(type);
            StmtPtr declaration = parseDeclaration(false, offset);
            endStatement();
            return declaration;
        }
        rewindTo(type);
    }
    return parseSimple();
}

StmtPtr Parser::parseSimple() {
    const std::uint32_t offset = now_.begin;
    ExprPtr expr;
    const bool call = at(Tok::Name) && typeNamed(now_.text) == Type::None && !booleanNamed(now_.text) &&
                      !atName("catch") && !atName("catchQuiet");
    if (call) {
        expr = parseExpression(parseCall(false));
    } else {
        expr = parseExpression();
    }
    endStatement();
    return expressionStatement(offset, std::move(expr));
}

void Parser::endStatement() {
    if (!at(Tok::End)) expect(Tok::Semicolon, "';'");
}

StmtPtr Parser::parseBlock() {
    auto block = std::make_unique<BlockStmt>(Stmt::Kind::Block, now_.begin);
    expect(Tok::LeftBrace, "'{'");
    while (!accept(Tok::RightBrace)) {
        if (accept(Tok::Semicolon)) continue;
        if (at(Tok::End)) failHere("'}'");
        block->statements.push_back(parseStatement());
    }
    return block;
}

StmtPtr Parser::parseIf() {
    auto statement = std::make_unique<IfStmt>(Stmt::Kind::If, now_.begin);
    while (acceptName("if")) {
        IfStmt::Branch branch;
        branch.condition = parseParenthesised();
        branch.body = parseStatement();
        statement->branches.push_back(std::move(branch));
        if (!acceptName("else")) break;
        if (!atName("if")) {
            statement->branches.push_back({nullptr, parseStatement()});
            break;
        }
    }
    return statement;
}

StmtPtr Parser::parseWhile() {
    auto loop = std::make_unique<LoopStmt>(Stmt::Kind::While, now_.begin);
    advance();
    loop->condition = parseParenthesised();
    loop->body = parseStatement();
    return loop;
}

StmtPtr Parser::parseDo() {
    auto loop = std::make_unique<LoopStmt>(Stmt::Kind::DoWhile, now_.begin);
    advance();
    loop->body = parseStatement();
    if (!acceptName("while")) failHere("'while'");
    loop->condition = parseParenthesised();
    endStatement();
    return loop;
}

StmtPtr Parser::parseFor() {
    const std::uint32_t offset = now_.begin;
    advance();
    expect(Tok::LeftParen, "'('");
    if (std::optional<StmtPtr> forIn = parseForIn()) return std::move(*forIn);

    auto loop = std::make_unique<LoopStmt>(Stmt::Kind::For, offset);
    if (at(Tok::Name) && typeNamed(now_.text) != Type::None) {
        loop->init.push_back(parseDeclaration(false, now_.begin));
        expect(Tok::Semicolon, "';'");
    } else {
        for (ExprPtr& expr : parseClause(Tok::Semicolon)) {
            const std::uint32_t start = expr->at;
            loop->init.push_back(expressionStatement(start, std::move(expr)));
        }
    }
    loop->before = parseClause(Tok::Semicolon);
    if (!loop->before.empty()) {
        loop->condition = std::move(loop->before.back());
        loop->before.pop_back();
    }
    loop->step = parseClause(Tok::RightParen);
    loop->body = parseStatement();
    return loop;
}

std::vector<ExprPtr> Parser::parseClause(Tok end) {
    std::vector<ExprPtr> clause;
    if (!at(end)) {
        do {
            clause.push_back(parseExpression());
        } while (accept(Tok::Comma));
    }
    expect(end, end == Tok::Semicolon ? "';'" : "')'");
    return clause;
}

/// The rest of `for (` when it is a loop over an array; otherwise nothing has been read.
std::optional<StmtPtr> Parser::parseForIn() {
    const Token start = now_;
    auto loop = std::make_unique<ForInStmt>(Stmt::Kind::ForIn, start.begin);
    if (at(Tok::Name)) {
        loop->type = typeNamed(now_.text);
        if (loop->type != Type::None) advance();
    }
    loop->variable = now_.text;
    if (!accept(Tok::Variable) || !acceptName("in")) {
        rewindTo(start);
        return std::nullopt;
    }
    loop->list = parseExpression();
    expect(Tok::RightParen, "')'");
    loop->body = parseStatement();
    return StmtPtr(std::move(loop));
}

StmtPtr Parser::parseSwitch() {
    auto statement = std::make_unique<SwitchStmt>(Stmt::Kind::Switch, now_.begin);
    advance();
    statement->value = parseParenthesised();
    expect(Tok::LeftBrace, "'{'");
    while (!accept(Tok::RightBrace)) {
        if (acceptName("case")) {
            statement->cases.push_back({parseExpression(), {}});
            expect(Tok::Colon, "':'");
        } else if (acceptName("default")) {
            statement->cases.push_back({nullptr, {}});
            expect(Tok::Colon, "':'");
        } else if (at(Tok::End) || statement->cases.empty()) {
            failHere(at(Tok::End) ? "'}'" : "'case' or 'default'");
        } else {
            statement->cases.back().body.push_back(parseStatement());
        }
    }
    return statement;
}

StmtPtr Parser::parseReturn() {
    auto statement = std::make_unique<ExprStmt>(Stmt::Kind::Return, now_.begin);
    advance();
    if (!at(Tok::Semicolon) && !at(Tok::End)) statement->expr = parseExpression();
    endStatement();
    return statement;
}

StmtPtr Parser::parseGlobal() {
    const std::uint32_t offset = now_.begin;
    advance();
    if (acceptName("proc")) return parseProcedure(true, offset);
    if (!at(Tok::Name) || typeNamed(now_.text) == Type::None) failHere("'proc' or a type");
    StmtPtr declaration = parseDeclaration(true, offset);
    endStatement();
    return declaration;
}

StmtPtr Parser::parseProcedure(bool global, std::uint32_t offset) {
    auto procedure = std::make_unique<ProcedureStmt>(Stmt::Kind::Procedure, offset);
    procedure->global = global;
    if (at(Tok::Name)) procedure->returns = typeNamed(now_.text);
    if (procedure->returns != Type::None) {
        advance();
        if (accept(Tok::LeftBracket)) {
            expect(Tok::RightBracket, "']'");
            procedure->returns = arrayOf(procedure->returns);
            if (procedure->returns == Type::None) fail(offset, "there are no arrays of matrices.");
        }
    }
    if (at(Tok::Name) && isReserved(now_.text)) {
        fail(now_.begin,
             "a procedure cannot be named '" + std::string(now_.text) + "', a word of the language.");
    }
    procedure->name = expectText(Tok::Name, "the name of the procedure");
    expect(Tok::LeftParen, "'('");
    if (!at(Tok::RightParen)) {
        do {
            const Type type = at(Tok::Name) ? typeNamed(now_.text) : Type::None;
            if (type == Type::None) failHere("the type of a parameter");
            advance();
            procedure->parameters.push_back(parseDeclarator(type));
        } while (accept(Tok::Comma));
    }
    expect(Tok::RightParen, "')'");
    if (!at(Tok::LeftBrace)) failHere("'{'");
    StmtPtr body = parseBlock();
    procedure->body.reset(static_cast<BlockStmt*>(body.release()));
    return procedure;
}

std::unique_ptr<DeclarationStmt> Parser::parseDeclaration(bool global, std::uint32_t offset) {
    auto declaration = std::make_unique<DeclarationStmt>(Stmt::Kind::Declaration, offset);
    declaration->global = global;
    const Type base = typeNamed(now_.text);
    advance();
    do {
        Declarator variable = parseDeclarator(base);
        if (accept(Tok::Assign)) variable.init = parseExpression();
        declaration->variables.push_back(std::move(variable));
    } while (accept(Tok::Comma));
    return declaration;
}

Declarator Parser::parseDeclarator(Type base) {
    Declarator variable;
    variable.at = now_.begin;
    variable.type = base;
    variable.name = expectText(Tok::Variable, "a variable");
    if (base == Type::Matrix) {
        parseDimensions(variable);
    } else if (accept(Tok::LeftBracket)) {
        // The size only reserves room, which is made when elements are written.
        if (!at(Tok::RightBracket)) parseExpression();
        expect(Tok::RightBracket, "']'");
        variable.type = arrayOf(base);
    }
    return variable;
}

/// `[rows][columns]`; a parameter or a matrix with an initial value may leave them out.
void Parser::parseDimensions(Declarator& variable) {
    if (!at(Tok::LeftBracket)) return;
    variable.rows = parseDimension();
    variable.columns = parseDimension();
}

int Parser::parseDimension() {
    expect(Tok::LeftBracket, "'['");
    const Token size = now_;
    expect(Tok::Int, "the size of the matrix");
    if (size.integer < 1 || size.integer > kMaxDimension) {
        fail(size.begin, "a matrix has 1 to " + std::to_string(kMaxDimension) + " rows and columns.");
    }
    expect(Tok::RightBracket, "']'");
    return size.integer;
}

} // namespace vesk::mel
