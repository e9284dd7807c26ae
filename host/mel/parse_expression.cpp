// The parser's part for expressions.

#include "host/mel/parser.h"

#include <utility>

namespace vesk::mel {

namespace {

struct Binary {
    Tok token;
    BinaryOp op;
    int precedence; ///< higher binds closer
};

constexpr int kEquality = 1;
constexpr int kOrder = 2;
constexpr int kSum = 3;
constexpr int kProduct = 4;

constexpr Binary binaries[] = {
    {Tok::Equal, BinaryOp::Equal, kEquality},  {Tok::NotEqual, BinaryOp::NotEqual, kEquality},
    {Tok::Less, BinaryOp::Less, kOrder},       {Tok::LessEqual, BinaryOp::LessEqual, kOrder},
    {Tok::Greater, BinaryOp::Greater, kOrder}, {Tok::GreaterEqual, BinaryOp::GreaterEqual, kOrder},
    {Tok::Plus, BinaryOp::Add, kSum},          {Tok::Minus, BinaryOp::Sub, kSum},
    {Tok::Star, BinaryOp::Mul, kProduct},      {Tok::Slash, BinaryOp::Div, kProduct},
    {Tok::Percent, BinaryOp::Mod, kProduct},   {Tok::Caret, BinaryOp::Cross, kProduct},
};

const Binary* binaryOf(Tok token) {
    for (const Binary& binary : binaries) {
        if (binary.token == token) return &binary;
    }
    return nullptr;
}

/// The operator in front of the `=` of a compound assignment, or nothing.
std::optional<BinaryOp> compoundOf(Tok token) {
    switch (token) {
    case Tok::AddAssign: return BinaryOp::Add;
    case Tok::SubAssign: return BinaryOp::Sub;
    case Tok::MulAssign: return BinaryOp::Mul;
    case Tok::DivAssign: return BinaryOp::Div;
    case Tok::ModAssign: return BinaryOp::Mod;
    case Tok::CrossAssign: return BinaryOp::Cross;
    default: return std::nullopt;
    }
}

bool canBeAssigned(const Expr& expr) {
    return expr.kind == Expr::Kind::Variable || expr.kind == Expr::Kind::Index;
}

} // namespace

ExprPtr Parser::parseExpression(ExprPtr first) {
    const Nesting nesting(*this);
    return parseAssignment(parseChoice(std::move(first)));
}

ExprPtr Parser::parseAssignment(ExprPtr target) {
    const std::optional<BinaryOp> compound = compoundOf(now_.kind);
    if (!compound && !at(Tok::Assign)) return target;
    if (target->kind == Expr::Kind::Component) {
        fail(now_.begin, "a component of a vector cannot be assigned; assign the whole vector.");
    }
    if (!canBeAssigned(*target)) fail(now_.begin, "only a variable or an element can be assigned.");
    auto assign = std::make_unique<AssignExpr>(Expr::Kind::Assign, now_.begin);
    assign->effects = true;
    assign->target = std::move(target);
    assign->compound = compound.has_value();
    assign->op = compound.value_or(BinaryOp::Add);
    advance();
    assign->value = parseExpression();
    return assign;
}

ExprPtr Parser::parseChoice(ExprPtr first) {
    ExprPtr condition = parseLogic(Tok::Or, std::move(first));
    if (!at(Tok::Question)) return condition;
    auto choice = std::make_unique<ChoiceExpr>(Expr::Kind::Choice, now_.begin);
    advance();
    choice->condition = std::move(condition);
    choice->yes = parseExpression();
    expect(Tok::Colon, "':'");
    choice->no = parseExpression();
    choice->effects = choice->condition->effects || choice->yes->effects || choice->no->effects;
    return choice;
}

ExprPtr Parser::parseLogic(Tok op, ExprPtr first) {
    const auto operand = [this, op](ExprPtr given) {
        return op == Tok::Or ? parseLogic(Tok::And, std::move(given))
                             : parseBinary(kEquality, std::move(given));
    };
    ExprPtr left = operand(std::move(first));
    if (!at(op)) return left;
    auto logic = std::make_unique<LogicExpr>(Expr::Kind::Logic, now_.begin);
    logic->isAnd = op == Tok::And;
    logic->effects = left->effects;
    logic->operands.push_back(std::move(left));
    while (accept(op)) {
        logic->operands.push_back(operand(nullptr));
        logic->effects |= logic->operands.back()->effects;
    }
    return logic;
}

ExprPtr Parser::parseBinary(int lowest, ExprPtr first) {
    ExprPtr left = first ? parsePostfix(std::move(first)) : parseUnary();
    ChainExpr* chain = nullptr;
    for (;;) {
        const Binary* binary = binaryOf(now_.kind);
        if (!binary || binary->precedence < lowest) return left;
        const std::uint32_t offset = now_.begin;
        advance();
        ExprPtr right = parseBinary(binary->precedence + 1);
        if (!chain || chain->precedence != binary->precedence) {
            auto longer = std::make_unique<ChainExpr>(Expr::Kind::Chain, offset);
            longer->precedence = binary->precedence;
            longer->effects = left->effects;
            longer->first = std::move(left);
            chain = longer.get();
            left = std::move(longer);
        }
        chain->effects |= right->effects;
        chain->links.push_back({binary->op, offset, std::move(right)});
    }
}

ExprPtr Parser::parseUnary() {
    const bool prefixed =
        at(Tok::Plus) || at(Tok::Minus) || at(Tok::Not) || at(Tok::Increment) || at(Tok::Decrement);
    if (!prefixed) return parsePostfix(parsePrimary());
    const Nesting nesting(*this);
    const std::uint32_t offset = now_.begin;
    if (accept(Tok::Plus)) return parseUnary();
    if (at(Tok::Minus) || at(Tok::Not)) {
        const Expr::Kind kind = at(Tok::Minus) ? Expr::Kind::Negate : Expr::Kind::Not;
        advance();
        auto unary = std::make_unique<UnaryExpr>(kind, offset);
        unary->operand = parseUnary();
        unary->effects = unary->operand->effects;
        return unary;
    }
    const int step = at(Tok::Increment) ? 1 : -1;
    advance();
    return makeStep(offset, parseUnary(), step, true);
}

ExprPtr Parser::makeStep(std::uint32_t offset, ExprPtr target, int step, bool before) const {
    if (!canBeAssigned(*target)) fail(offset, "only a variable or an element can be stepped.");
    auto expr = std::make_unique<StepExpr>(Expr::Kind::Step, offset);
    expr->effects = true;
    expr->target = std::move(target);
    expr->step = step;
    expr->before = before;
    return expr;
}

ExprPtr Parser::parsePostfix(ExprPtr expr) {
    for (;;) {
        if (at(Tok::LeftBracket)) {
            expr = parseIndex(std::move(expr));
        } else if (at(Tok::Dot)) {
            expr = parseComponent(std::move(expr));
        } else if ((at(Tok::Increment) || at(Tok::Decrement)) && canBeAssigned(*expr)) {
            const int step = at(Tok::Increment) ? 1 : -1;
            const std::uint32_t offset = now_.begin;
            advance();
            expr = makeStep(offset, std::move(expr), step, false);
        } else {
            return expr;
        }
    }
}

ExprPtr Parser::parseIndex(ExprPtr array) {
    const std::uint32_t offset = now_.begin;
    advance();
    ExprPtr index = parseExpression();
    expect(Tok::RightBracket, "']'");
    if (array->kind == Expr::Kind::Index) {
        auto& row = static_cast<IndexExpr&>(*array);
        if (row.column) fail(offset, "there is no third index.");
        row.effects |= index->effects;
        row.column = std::move(index);
        return array;
    }
    auto expr = std::make_unique<IndexExpr>(Expr::Kind::Index, offset);
    expr->effects = array->effects || index->effects;
    expr->array = std::move(array);
    expr->index = std::move(index);
    return expr;
}

ExprPtr Parser::parseComponent(ExprPtr vector) {
    auto expr = std::make_unique<ComponentExpr>(Expr::Kind::Component, now_.begin);
    advance();
    const std::size_t component = std::string_view("xyz").find(now_.text);
    if (!at(Tok::Name) || now_.text.size() != 1 || component == std::string_view::npos) {
        failHere("x, y or z");
    }
    advance();
    expr->component = static_cast<int>(component);
    expr->effects = vector->effects;
    expr->vector = std::move(vector);
    return expr;
}

ExprPtr Parser::parsePrimary() {
    const Token token = now_;
    switch (token.kind) {
    case Tok::Int: advance(); return std::make_unique<ConstantExpr>(token.begin, token.integer);
    case Tok::Float: advance(); return std::make_unique<ConstantExpr>(token.begin, token.number);
    case Tok::String: advance(); return std::make_unique<ConstantExpr>(token.begin, Lexer::contentOf(token));
    case Tok::Variable:
        advance();
        return std::make_unique<VariableExpr>(token.begin, std::string(token.text));
    case Tok::Name: return parseNameInExpression();
    case Tok::Backquote: return parseBackquoted();
    case Tok::VectorOpen: return parseAngles();
    case Tok::LeftBrace: return parseArray();
    case Tok::LeftParen: break;
    default: failHere("an expression");
    }
    // `(int)$x` converts; any other parenthesis groups.
    advance();
    const Type type = at(Tok::Name) ? typeNamed(now_.text) : Type::None;
    if (type != Type::None) {
        advance();
        if (accept(Tok::RightParen)) {
            const Nesting nesting(*this);
            auto cast = std::make_unique<UnaryExpr>(Expr::Kind::Cast, token.begin);
            cast->type = type;
            cast->operand = parseUnary();
            cast->effects = cast->operand->effects;
            return cast;
        }
    }
    rewindTo(token);
    return parseParenthesised();
}

ExprPtr Parser::parseParenthesised() {
    expect(Tok::LeftParen, "'('");
    ExprPtr expr = parseExpression();
    expect(Tok::RightParen, "')'");
    return expr;
}

ExprPtr Parser::parseNameInExpression() {
    const Token name = now_;
    if (atName("catch") || atName("catchQuiet")) return parseCatch();
    advance();
    if (at(Tok::LeftParen)) {
        if (const Type type = typeNamed(name.text); type != Type::None) {
            auto cast = std::make_unique<UnaryExpr>(Expr::Kind::Cast, name.begin);
            cast->type = type;
            cast->operand = parseParenthesised();
            cast->effects = cast->operand->effects;
            return cast;
        }
        auto call = std::make_unique<CallExpr>(Expr::Kind::Call, name.begin);
        call->effects = true;
        call->name = name.text;
        call->words = parseArguments();
        return call;
    }
    if (const std::optional<int> value = booleanNamed(name.text)) {
        return std::make_unique<ConstantExpr>(name.begin, *value);
    }
    fail(name.begin, "unexpected name '" + std::string(name.text) + "' in an expression.");
}

/// `catch(...)` around an expression, or before a back-quoted command.
ExprPtr Parser::parseCatch() {
    auto expr = std::make_unique<CatchExpr>(Expr::Kind::Catch, now_.begin);
    expr->effects = true;
    expr->quiet = atName("catchQuiet");
    advance();
    expr->body = at(Tok::Backquote) ? parseBackquoted() : parseParenthesised();
    return expr;
}

void Parser::parseRow(ListExpr& list) {
    do {
        list.items.push_back(parseExpression());
        list.effects |= list.items.back()->effects;
    } while (accept(Tok::Comma));
}

/// A vector `<<x, y, z>>`, or a matrix with `;` between its rows or another number of columns.
ExprPtr Parser::parseAngles() {
    auto list = std::make_unique<ListExpr>(Expr::Kind::Vector, now_.begin);
    advance();
    parseRow(*list);
    const std::size_t columns = list->items.size();
    list->rows = 1;
    while (accept(Tok::Semicolon)) {
        parseRow(*list);
        ++list->rows;
        if (list->items.size() != columns * static_cast<std::size_t>(list->rows)) {
            fail(now_.begin, "the rows of a matrix have the same length.");
        }
    }
    expect(Tok::VectorClose, "'>>'");
    if (list->rows > 1 || columns != 3) list->kind = Expr::Kind::Matrix;
    return list;
}

ExprPtr Parser::parseArray() {
    auto list = std::make_unique<ListExpr>(Expr::Kind::Array, now_.begin);
    advance();
    if (!at(Tok::RightBrace)) parseRow(*list);
    expect(Tok::RightBrace, "'}'");
    return list;
}

} // namespace vesk::mel
