#pragma once
// Tokens to a tree.

#include "host/mel/error.h"
#include "host/mel/lexer.h"
#include "host/mel/syntax.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::mel {

/// Statements, expressions and back quotes within each other. Deeper texts are an error, not an overrun of
/// the machine's stack.
constexpr int kMaxNesting = 300;

/// Recursive descent over one text. Throws Error, with its place, at the first thing that is not MEL.
class Parser {
  public:
    explicit Parser(std::shared_ptr<const Source> source);

    /// All statements of the text.
    std::vector<StmtPtr> parse();

  private:
    class Nesting;

    // parser.cpp: reading, and statements
    void advance();
    void rewindTo(const Token& token);
    bool at(Tok kind) const { return now_.kind == kind; }
    bool atName(std::string_view name) const { return now_.kind == Tok::Name && now_.text == name; }
    bool accept(Tok kind);
    bool acceptName(std::string_view name);
    void expect(Tok kind, std::string_view what);
    std::string expectText(Tok kind, std::string_view what);
    [[noreturn]] void fail(std::uint32_t offset, const std::string& message) const;
    [[noreturn]] void failHere(std::string_view wanted) const;
    Place placeOf(std::uint32_t offset) const { return Place{source_, offset}; }

    StmtPtr parseStatement();
    StmtPtr parseNamed();
    StmtPtr parseSimple();
    void endStatement();
    StmtPtr parseBlock();
    StmtPtr parseIf();
    StmtPtr parseWhile();
    StmtPtr parseDo();
    StmtPtr parseFor();
    std::vector<ExprPtr> parseClause(Tok end);
    StmtPtr parseSwitch();
    StmtPtr parseReturn();
    StmtPtr parseGlobal();
    StmtPtr parseProcedure(bool global, std::uint32_t offset);
    std::unique_ptr<DeclarationStmt> parseDeclaration(bool global, std::uint32_t offset);
    Declarator parseDeclarator(Type base);
    int parseDimension();
    void parseDimensions(Declarator& variable);
    std::optional<StmtPtr> parseForIn();

    // parse_expression.cpp
    // Each goes on from `first` where that is given: what stands first has been read already.
    ExprPtr parseExpression(ExprPtr first = {});
    ExprPtr parseChoice(ExprPtr first);
    ExprPtr parseBinary(int lowest, ExprPtr first = {});
    ExprPtr parseLogic(Tok op, ExprPtr first);
    ExprPtr parseUnary();
    ExprPtr parseAssignment(ExprPtr target);
    ExprPtr makeStep(std::uint32_t offset, ExprPtr target, int step, bool before) const;
    ExprPtr parsePostfix(ExprPtr expr);
    ExprPtr parseIndex(ExprPtr array);
    ExprPtr parseComponent(ExprPtr vector);
    ExprPtr parsePrimary();
    ExprPtr parseParenthesised();
    void parseRow(ListExpr& list);
    ExprPtr parseNameInExpression();
    ExprPtr parseCatch();
    ExprPtr parseAngles();
    ExprPtr parseArray();

    // parse_command.cpp
    ExprPtr parseBackquoted();
    /// A call that starts at the present name, in the form of a function or of a command; stops at its end.
    ExprPtr parseCall(bool inBackquotes);
    std::vector<Word> parseArguments();
    void parseWords(CallExpr& call, bool inBackquotes);
    bool endsFunctionForm() const;
    bool atWordEnd(const Token& word, bool inBackquotes) const;
    bool opensBackquote(const Token& quote) const;
    Word parseWord(const Token& word);
    Word parseExpressionWord(const Token& word);

    std::shared_ptr<const Source> source_;
    Lexer lexer_;
    Token now_;                 ///< the token ahead
    std::uint32_t lastEnd_ = 0; ///< where the token before it ended
    int nesting_ = 0;
};

class Parser::Nesting {
  public:
    explicit Nesting(Parser& parser) : parser_(parser) {
        if (++parser.nesting_ > kMaxNesting) {
            --parser.nesting_;
            parser.fail(parser.now_.begin, "Nested more than " + std::to_string(kMaxNesting) + " deep.");
        }
    }
    ~Nesting() { --parser_.nesting_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    Parser& parser_;
};

/// The type that a word of the language names (`int`, `string` ...), or None.
Type typeNamed(std::string_view name);
/// 1 for `true on yes`, 0 for `false off no`, nothing for any other word.
std::optional<int> booleanNamed(std::string_view name);

} // namespace vesk::mel
