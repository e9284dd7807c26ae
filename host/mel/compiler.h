#pragma once
// The tree to code. Types are settled here: every variable and expression has one, or Any, and the
// instructions are chosen by it.

#include "host/mel/builder.h"
#include "host/mel/operators.h"
#include "host/mel/syntax.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vesk::mel {

struct Builtin;

/// What the compiler asks about names that the text itself does not define.
class Environment {
  public:
    virtual ~Environment() = default;
    virtual Global* findGlobal(const std::string& name) = 0;
    /// The procedure that a name means to code of the module, or null.
    virtual const Function* findProcedure(const std::string& name, const Module* module) = 0;
};

/// Parses and compiles a text. Nothing outside the unit changes. Throws Error, with its place, when the text
/// is not right; then nothing of it can run.
std::unique_ptr<Unit> compile(std::shared_ptr<const Source> source, std::shared_ptr<Module> module,
                              Environment& environment);

/// What all procedures of one text share while it is compiled.
class UnitCompiler {
  public:
    UnitCompiler(Unit& unit, Environment& environment) : unit_(unit), environment_(environment) {}

    void compile(std::vector<StmtPtr> statements);

    Unit& unit() { return unit_; }
    /// A variable of the interpreter or of this text, or null.
    Global* findGlobal(const std::string& name);
    /// The same, made when there is none yet.
    Global& declareGlobal(const Declarator& variable);
    struct Signature {
        Type returns;
    };
    /// The procedure as far as it is known now.
    std::optional<Signature> findProcedure(const std::string& name);
    /// Compiles a procedure and returns its index in the unit.
    std::size_t addProcedure(const ProcedureStmt& statement);

  private:
    std::unique_ptr<Function> makeFunction(const std::string& name);

    Unit& unit_;
    Environment& environment_;
    std::unordered_map<std::string, Type> procedures_; ///< of this text: what they return
    std::unordered_map<std::string, Global*> newGlobals_;
};

/// The value of a compiled expression: a constant, or what is in a register.
struct Operand {
    enum class Kind : std::uint8_t { Constant, Variable, Temporary };
    Kind kind = Kind::Constant;
    Type type = Type::None;
    Reg reg = 0;
    Value constant;

    bool isConstant() const { return kind == Kind::Constant && type != Type::None; }
    bool isTemporary() const { return kind == Kind::Temporary; }
};

/// Where the result of an expression would best go. A result of another type goes elsewhere.
struct Want {
    Type type = Type::None;
    std::optional<Reg> reg;
};

/// Compiles one procedure, or one statement of the top level.
class FunctionCompiler {
  public:
    FunctionCompiler(UnitCompiler& unit, Function& function, bool topLevel)
        : unit_(unit), builder_(function), topLevel_(topLevel) {
        scopes_.emplace_back();
    }

    void compileProcedure(const ProcedureStmt& statement);
    void compileTopLevel(const Stmt& statement);

  private:
    struct Variable {
        Type type = Type::None;
        Reg reg = 0;              ///< unless it is a global number
        Global* global = nullptr; ///< set for globals
        bool isGlobalNumber() const { return global && isNumeric(type); }
    };
    struct Loop {
        Jumps breaks;
        Jumps continues;
        bool isSwitch = false;
    };
    class Scope;

    // compiler.cpp: names, places, conversions
    [[noreturn]] void fail(std::uint32_t offset, const std::string& message) const;
    template <class Work>
    void placed(Work work);
    std::optional<Variable> findVariable(const std::string& name);
    Variable variableNamed(const VariableExpr& expr);
    Variable variableOf(Global& global);
    bool declaresGlobals() const { return topLevel_ && scopes_.size() == 1; }
    Variable declare(const Declarator& variable);
    void release(const Operand& operand);
    Operand temporary(Type type, const Want& want = {});
    Reg registerOf(const Operand& operand);
    Operand read(const Variable& variable);
    static Want wantOf(const Variable& variable);
    /// Copies a variable's value when `next` may change the variable before the value is used.
    Operand kept(Operand operand, bool nextHasEffects);
    void move(Type type, Reg to, const Operand& from);
    void store(const Operand& from, Type type, Reg to);
    Operand converted(Operand operand, Type type, const Want& want = {});
    void convertNumber(const Operand& from, Type to, Reg reg);

    // compile_statement.cpp
    void statement(const Stmt& stmt);
    void block(const std::vector<StmtPtr>& statements);
    void declaration(const DeclarationStmt& stmt);
    void declareLocal(const Declarator& declarator);
    void declareGlobal(const Declarator& declarator);
    void zero(const Declarator& declarator, const Variable& variable);
    void ifStatement(const IfStmt& stmt);
    void loop(const LoopStmt& stmt);
    void forIn(const ForInStmt& stmt);
    void switchStatement(const SwitchStmt& stmt);
    void breakOrContinue(const Stmt& stmt);
    void returnStatement(const ExprStmt& stmt);
    void returnValue(const Operand& value);
    void returnZero();

    // compile_condition.cpp
    void jumpWhen(const Expr& expr, bool sense, Jumps& jumps);
    void jumpWhenLogic(const LogicExpr& expr, bool sense, Jumps& jumps);
    bool jumpWhenCompared(const ChainExpr& expr, bool sense, Jumps& jumps);
    Operand truth(Operand operand);
    Operand logic(const Expr& expr, const Want& want);
    Operand choice(const ChoiceExpr& expr, const Want& want);

    // compile_expression.cpp
    Operand expression(const Expr& expr, const Want& want = {});
    Operand valued(const Expr& expr, const Want& want = {});
    void into(const Expr& expr, Type type, Reg reg);
    void discard(const Expr& expr);
    Operand index(const Expr& expr);
    Operand element(const IndexExpr& expr, const Want& want);
    Operand getElement(const Operand& array, const Operand& index, const Want& want);
    Operand joinedElement(const Operand& array, const Operand& index, const Want& want);
    Operand matrixElement(const IndexExpr& expr, const Operand& matrix, const Want& want);
    Operand component(const ComponentExpr& expr);
    Operand negate(const UnaryExpr& expr, const Want& want);
    Operand chain(const ChainExpr& expr, const Want& want);
    Operand binary(BinaryOp op, Operand left, Operand right, const Want& want);
    Operand binaryUnknown(BinaryOp op, Operand left, Operand right, const Want& want);
    Operand joinTexts(Operand left, Operand right, const Want& want);
    Operand compared(BinaryOp op, Type type, const Operand& left, const Operand& right, const Want& want);
    Operand vectorLiteral(const ListExpr& expr, const Want& want);
    Operand matrixLiteral(const ListExpr& expr);
    Operand arrayLiteral(const ListExpr& expr, const Want& want);
    Type literalType(const ListExpr& expr, const std::vector<Operand>& items, const Want& want) const;

    // compile_assign.cpp
    Operand assign(const AssignExpr& expr);
    Operand assignVariable(const AssignExpr& expr, const VariableExpr& target);
    Operand assignNew(const AssignExpr& expr, const VariableExpr& target);
    Operand assignCompound(const AssignExpr& expr, const Variable& variable);
    Operand write(const Variable& variable, Operand value);
    Operand assignElement(const AssignExpr& expr, const IndexExpr& target);
    Operand assignMatrixElement(const AssignExpr& expr, const IndexExpr& target, const Variable& matrix);
    Variable arrayTarget(const IndexExpr& target, const Type* newElement);
    void setElement(const Variable& array, const Operand& index, const Operand& value);
    Operand step(const StepExpr& expr, bool resultUsed);
    Operand stepMatrixElement(const StepExpr& expr, const IndexExpr& target, const Variable& matrix);
    Operand stepped(const Operand& value, const StepExpr& expr);

    // compile_call.cpp
    Operand call(const CallExpr& expr, const Want& want, bool resultUsed);
    Operand callByName(const CallExpr& expr, const Want& want, Type returns);
    std::vector<Operand> words(const CallExpr& expr);
    Operand word(const Word& word);
    Operand callBuiltin(const CallExpr& expr, const std::vector<const Builtin*>& overloads, const Want& want);
    Operand callNumbers(const Builtin& builtin, std::vector<Operand> arguments, const Want& want);
    Operand callValues(const Builtin& builtin, std::vector<Operand> arguments, const Want& want);
    Operand catchExpr(const CatchExpr& expr, const Want& want);

    UnitCompiler& unit_;
    Builder builder_;
    bool topLevel_;
    std::vector<std::unordered_map<std::string, Variable>> scopes_;
    std::vector<Loop> loops_;
};

class FunctionCompiler::Scope {
  public:
    explicit Scope(FunctionCompiler& compiler) : compiler_(compiler) { compiler_.scopes_.emplace_back(); }
    ~Scope() { compiler_.scopes_.pop_back(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

  private:
    FunctionCompiler& compiler_;
};

} // namespace vesk::mel
