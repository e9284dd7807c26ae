#pragma once
// The tree that the parser builds and the compiler reads.

#include "host/mel/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vesk::mel {

enum class BinaryOp : std::uint8_t {
    Add,
    Sub,
    Mul,
    Div,
    Mod,
    Cross,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual
};

/// As it is written: `+`, `<=` ...
std::string_view symbolOf(BinaryOp op);
bool isComparison(BinaryOp op);

/// Nodes live in memory of their own, which is much faster than the heap for many small things that go
/// together. A tree stays on the thread that made it.
struct TreeNode {
    static void* operator new(std::size_t size);
    static void operator delete(void* node) noexcept;
};

struct Expr : TreeNode {
    enum class Kind : std::uint8_t {
        Constant,
        Variable,
        Index,
        Component,
        Negate,
        Not,
        Chain,
        Logic,
        Choice,
        Assign,
        Step,
        Cast,
        Call,
        Catch,
        Vector,
        Array,
        Matrix
    };

    Expr(Kind k, std::uint32_t offset) : kind(k), at(offset) {}
    Expr(const Expr&) = delete;
    Expr& operator=(const Expr&) = delete;
    virtual ~Expr() = default;

    Kind kind;
    /// Whether evaluating it may change a variable (assignments, steps, calls).
    bool effects = false;
    std::uint32_t at; ///< where in the source
};
using ExprPtr = std::unique_ptr<Expr>;

struct ConstantExpr : Expr {
    ConstantExpr(std::uint32_t offset, Value v) : Expr(Kind::Constant, offset), value(std::move(v)) {}
    Value value;
};

struct VariableExpr : Expr {
    VariableExpr(std::uint32_t offset, std::string n) : Expr(Kind::Variable, offset), name(std::move(n)) {}
    std::string name;
};

/// `array[index]`, and of a matrix `matrix[row][column]`.
struct IndexExpr : Expr {
    using Expr::Expr;
    ExprPtr array;
    ExprPtr index;
    ExprPtr column; ///< null but for matrices
};

/// `vector.x`
struct ComponentExpr : Expr {
    using Expr::Expr;
    ExprPtr vector;
    int component = 0;
};

/// Negate, Not and Cast.
struct UnaryExpr : Expr {
    using Expr::Expr;
    ExprPtr operand;
    Type type = Type::None; ///< of Cast
};

/// Operators of one precedence from left to right: `first op operand op operand ...`. A chain instead of
/// nested pairs, so that a text of thousands of pieces joined by `+` is no deep tree.
struct ChainExpr : Expr {
    using Expr::Expr;
    struct Link {
        BinaryOp op;
        std::uint32_t at;
        ExprPtr operand;
    };
    ExprPtr first;
    std::vector<Link> links;
    int precedence = 0;
};

/// `a && b && ...` or `a || b || ...`
struct LogicExpr : Expr {
    using Expr::Expr;
    bool isAnd = true;
    std::vector<ExprPtr> operands;
};

/// `condition ? yes : no`
struct ChoiceExpr : Expr {
    using Expr::Expr;
    ExprPtr condition;
    ExprPtr yes;
    ExprPtr no;
};

/// `target = value` and, with an operator, `target += value` ...
struct AssignExpr : Expr {
    using Expr::Expr;
    ExprPtr target; ///< Variable or Index
    bool compound = false;
    BinaryOp op = BinaryOp::Add;
    ExprPtr value;
};

/// `++$x`, `$x--` ...
struct StepExpr : Expr {
    using Expr::Expr;
    ExprPtr target; ///< Variable or Index
    int step = 1;
    bool before = false; ///< whether the result is the new value
};

/// One word of a command or argument of a function: a constant, or an expression.
struct Word {
    std::uint32_t at = 0;
    Value constant; ///< used when `expr` is null
    ExprPtr expr;
};

/// A procedure or command with its words.
struct CallExpr : Expr {
    using Expr::Expr;
    std::string name;
    std::vector<Word> words;
};

/// `catch(expression)`, `catchQuiet(expression)`
struct CatchExpr : Expr {
    using Expr::Expr;
    ExprPtr body;
    bool quiet = false;
};

/// `<<x, y, z>>` and `{a, b, c}`; of Matrix `<<a, b; c, d>>`, row by row.
struct ListExpr : Expr {
    using Expr::Expr;
    std::vector<ExprPtr> items;
    int rows = 0; ///< of Matrix
};

struct Stmt : TreeNode {
    enum class Kind : std::uint8_t {
        Expression,
        Declaration,
        Block,
        If,
        While,
        DoWhile,
        For,
        ForIn,
        Switch,
        Break,
        Continue,
        Return,
        Procedure
    };

    Stmt(Kind k, std::uint32_t offset) : kind(k), at(offset) {}
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;
    virtual ~Stmt() = default;

    Kind kind;
    std::uint32_t at;
};
using StmtPtr = std::unique_ptr<Stmt>;

/// Expression and Return; of Return the expression may be null.
struct ExprStmt : Stmt {
    using Stmt::Stmt;
    ExprPtr expr;
};

struct Declarator {
    std::uint32_t at = 0;
    std::string name;
    Type type = Type::None; ///< with the brackets counted in
    int rows = 0;           ///< of a matrix
    int columns = 0;
    ExprPtr init; ///< may be null
};

struct DeclarationStmt : Stmt {
    using Stmt::Stmt;
    bool global = false;
    std::vector<Declarator> variables;
};

struct BlockStmt : Stmt {
    using Stmt::Stmt;
    std::vector<StmtPtr> statements;
};

/// A whole `if ... else if ... else` in one: an empty condition is the last `else`.
struct IfStmt : Stmt {
    using Stmt::Stmt;
    struct Branch {
        ExprPtr condition;
        StmtPtr body;
    };
    std::vector<Branch> branches;
};

/// While, DoWhile and For.
struct LoopStmt : Stmt {
    using Stmt::Stmt;
    std::vector<StmtPtr> init;   ///< of For: expressions or one declaration
    std::vector<ExprPtr> before; ///< of For: evaluated before the condition each time
    ExprPtr condition;           ///< null: for ever
    std::vector<ExprPtr> step;   ///< of For
    StmtPtr body;
};

struct ForInStmt : Stmt {
    using Stmt::Stmt;
    std::string variable;
    Type type = Type::None; ///< when it is declared here
    ExprPtr list;
    StmtPtr body;
};

struct SwitchStmt : Stmt {
    using Stmt::Stmt;
    struct Case {
        ExprPtr value; ///< null: default
        std::vector<StmtPtr> body;
    };
    ExprPtr value;
    std::vector<Case> cases;
};

struct ProcedureStmt : Stmt {
    using Stmt::Stmt;
    bool global = false;
    std::string name;
    Type returns = Type::None;
    std::vector<Declarator> parameters;
    std::unique_ptr<BlockStmt> body;
};

} // namespace vesk::mel
