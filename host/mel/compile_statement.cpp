// The compiler's part for statements.

#include "host/mel/compiler.h"

#include <utility>

namespace vesk::mel {

void FunctionCompiler::statement(const Stmt& stmt) {
    builder_.setPlace(stmt.at);
    switch (stmt.kind) {
    case Stmt::Kind::Expression: discard(*static_cast<const ExprStmt&>(stmt).expr); break;
    case Stmt::Kind::Declaration: declaration(static_cast<const DeclarationStmt&>(stmt)); break;
    case Stmt::Kind::Block: {
        const Scope scope(*this);
        block(static_cast<const BlockStmt&>(stmt).statements);
        break;
    }
    case Stmt::Kind::If: ifStatement(static_cast<const IfStmt&>(stmt)); break;
    case Stmt::Kind::While:
    case Stmt::Kind::DoWhile:
    case Stmt::Kind::For: loop(static_cast<const LoopStmt&>(stmt)); break;
    case Stmt::Kind::ForIn: forIn(static_cast<const ForInStmt&>(stmt)); break;
    case Stmt::Kind::Switch: switchStatement(static_cast<const SwitchStmt&>(stmt)); break;
    case Stmt::Kind::Break:
    case Stmt::Kind::Continue: breakOrContinue(stmt); break;
    case Stmt::Kind::Return: returnStatement(static_cast<const ExprStmt&>(stmt)); break;
    case Stmt::Kind::Procedure: {
        if (!topLevel_) fail(stmt.at, "A procedure cannot be defined within another.");
        const std::size_t index = unit_.addProcedure(static_cast<const ProcedureStmt&>(stmt));
        builder_.emit(Op::Define, 0, 0, 0, static_cast<std::int32_t>(index));
        break;
    }
    }
}

void FunctionCompiler::block(const std::vector<StmtPtr>& statements) {
    for (const StmtPtr& inner : statements)
        statement(*inner);
}

void FunctionCompiler::declaration(const DeclarationStmt& stmt) {
    for (const Declarator& declarator : stmt.variables) {
        builder_.setPlace(declarator.at);
        if (stmt.global || declaresGlobals()) {
            declareGlobal(declarator);
        } else {
            declareLocal(declarator);
        }
    }
}

void FunctionCompiler::declareLocal(const Declarator& declarator) {
    if (!declarator.init) {
        zero(declarator, declare(declarator));
        return;
    }
    // The initial value is compiled first: it may still mean an outer variable of the same name.
    Operand value = valued(*declarator.init, {declarator.type, std::nullopt});
    const Variable variable = declare(declarator);
    builder_.setPlace(declarator.at);
    if (variable.type == Type::Any) value = converted(std::move(value), declarator.type);
    if (variable.type == Type::Matrix) {
        zero(declarator, variable);
        release(write(variable, std::move(value)));
    } else {
        store(value, variable.type, variable.reg);
    }
}

/// A global keeps its value when the declaration gives none.
void FunctionCompiler::declareGlobal(const Declarator& declarator) {
    Operand value;
    if (declarator.init) value = valued(*declarator.init, {declarator.type, std::nullopt});
    const Variable variable = variableOf(unit_.declareGlobal(declarator));
    if (!declaresGlobals()) scopes_.back().insert_or_assign(declarator.name, variable);
    builder_.setPlace(declarator.at);
    if (variable.type == Type::Any) {
        builder_.emit(Op::DeclareAny, variable.reg, static_cast<Reg>(declarator.type));
    }
    if (declarator.init) release(write(variable, std::move(value)));
}

void FunctionCompiler::zero(const Declarator& declarator, const Variable& variable) {
    if (isNumeric(variable.type)) {
        Operand none;
        none.type = variable.type;
        none.constant = Value::zero(variable.type);
        move(variable.type, variable.reg, none);
    } else if (declarator.type == Type::Matrix) {
        builder_.emit(Op::MakeMatrix, variable.reg, static_cast<Reg>(declarator.rows),
                      static_cast<Reg>(declarator.columns));
    } else {
        builder_.emit(Op::ZeroObject, variable.reg, static_cast<Reg>(declarator.type));
    }
}

void FunctionCompiler::ifStatement(const IfStmt& stmt) {
    Jumps ends;
    for (const IfStmt::Branch& branch : stmt.branches) {
        Jumps skips;
        if (branch.condition) jumpWhen(*branch.condition, false, skips);
        statement(*branch.body);
        if (&branch != &stmt.branches.back()) ends.push_back(builder_.jump(Op::Jump));
        builder_.landHere(skips);
    }
    builder_.landHere(ends);
}

void FunctionCompiler::loop(const LoopStmt& stmt) {
    for (const StmtPtr& init : stmt.init)
        statement(*init);
    const auto condition = [&](bool sense, Jumps& jumps) {
        for (const ExprPtr& expr : stmt.before)
            discard(*expr);
        if (stmt.condition) {
            jumpWhen(*stmt.condition, sense, jumps);
        } else if (sense) {
            jumps.push_back(builder_.jump(Op::Jump));
        }
    };
    // The condition stands twice, before the loop and at its end, so that a turn costs one jump.
    Jumps skips;
    if (stmt.kind != Stmt::Kind::DoWhile) condition(false, skips);
    const std::size_t start = builder_.target();
    loops_.emplace_back();
    statement(*stmt.body);
    builder_.landHere(loops_.back().continues);
    for (const ExprPtr& expr : stmt.step)
        discard(*expr);
    Jumps turns;
    condition(true, turns);
    builder_.landAt(turns, start);
    builder_.landHere(skips);
    builder_.landHere(loops_.back().breaks);
    loops_.pop_back();
}

void FunctionCompiler::forIn(const ForInStmt& stmt) {
    Operand array = valued(*stmt.list);
    if (!isArray(array.type) && array.type != Type::Any)
        fail(stmt.list->at, "A loop over values needs an array.");
    // The loop walks a copy, which shares the elements until somebody writes.
    const Reg list = builder_.allocate(array.type);
    store(array, array.type, list);
    array.kind = Operand::Kind::Variable;
    array.reg = list;

    Declarator declarator;
    declarator.at = stmt.at;
    declarator.name = stmt.variable;
    declarator.type = stmt.type != Type::None ? stmt.type : elementOf(array.type);
    const std::optional<Variable> known =
        stmt.type == Type::None ? findVariable(stmt.variable) : std::nullopt;
    const Variable variable = known ? *known : declare(declarator);

    Operand index;
    index.kind = Operand::Kind::Variable;
    index.type = Type::Int;
    index.reg = builder_.allocate(Type::Int);
    builder_.emit(Op::MoveNumber, index.reg, builder_.constant(-1));
    const std::size_t start = builder_.target();
    builder_.emit(Op::StepInt, index.reg, index.reg, 0, 1);
    const std::size_t end = builder_.jump(Op::JumpUnlessElement, index.reg, list);
    release(write(variable, getElement(array, index, wantOf(variable))));

    loops_.emplace_back();
    statement(*stmt.body);
    builder_.landAt(loops_.back().continues, start);
    builder_.land(builder_.jump(Op::Jump), start);
    builder_.land(end, builder_.here());
    builder_.landHere(loops_.back().breaks);
    loops_.pop_back();
    builder_.emit(Op::ZeroObject, list, static_cast<Reg>(array.type));
    builder_.release(array.type, list);
    builder_.release(Type::Int, index.reg);
}

void FunctionCompiler::switchStatement(const SwitchStmt& stmt) {
    const Operand value = valued(*stmt.value);
    if (isArray(value.type) || value.type == Type::Matrix) {
        fail(stmt.value->at, "A switch cannot be on data of type " + std::string(nameOf(value.type)) + ".");
    }
    // The value is kept, since a case's expression might change the variable that it came from.
    const Operand chosen = kept(value, true);
    Operand reused = chosen; // every comparison reads it, none may give it back
    if (reused.isTemporary()) reused.kind = Operand::Kind::Variable;

    std::vector<Jumps> entries(stmt.cases.size());
    std::optional<std::size_t> otherwise;
    for (std::size_t i = 0; i < stmt.cases.size(); ++i) {
        if (!stmt.cases[i].value) {
            otherwise = i;
            continue;
        }
        builder_.setPlace(stmt.cases[i].value->at);
        Operand same = truth(binary(BinaryOp::Equal, reused, valued(*stmt.cases[i].value), {}));
        entries[i].push_back(builder_.jump(Op::JumpIf, registerOf(same)));
        release(same);
    }
    loops_.emplace_back();
    loops_.back().isSwitch = true;
    Jumps& none = otherwise ? entries[*otherwise] : loops_.back().breaks;
    none.push_back(builder_.jump(Op::Jump));
    {
        const Scope scope(*this);
        for (std::size_t i = 0; i < stmt.cases.size(); ++i) {
            builder_.landHere(entries[i]);
            block(stmt.cases[i].body);
        }
    }
    builder_.landHere(loops_.back().breaks);
    loops_.pop_back();
    release(chosen);
}

void FunctionCompiler::breakOrContinue(const Stmt& stmt) {
    const bool isBreak = stmt.kind == Stmt::Kind::Break;
    for (auto loop = loops_.rbegin(); loop != loops_.rend(); ++loop) {
        if (!isBreak && loop->isSwitch) continue;
        (isBreak ? loop->breaks : loop->continues).push_back(builder_.jump(Op::Jump));
        return;
    }
    fail(stmt.at, isBreak ? "\"break\" outside of a loop or switch." : "\"continue\" outside of a loop.");
}

void FunctionCompiler::returnStatement(const ExprStmt& stmt) {
    if (topLevel_) fail(stmt.at, "\"return\" outside of a procedure.");
    const Function& function = builder_.function();
    if (!stmt.expr) {
        returnZero();
        return;
    }
    if (function.returns == Type::None) {
        fail(stmt.at, "Procedure \"" + function.name + "\" has no return type and cannot return a value.");
    }
    Operand value = valued(*stmt.expr, {function.returns, std::nullopt});
    builder_.setPlace(stmt.at);
    returnValue(converted(std::move(value), function.returns));
}

void FunctionCompiler::returnValue(const Operand& value) {
    if (value.type == Type::None) {
        builder_.emit(Op::ReturnNone);
    } else if (value.type != Type::Int || value.isConstant() || !builder_.joinReturn(value.reg)) {
        const bool isOneNumber = value.type == Type::Int || value.type == Type::Float;
        builder_.emit(isOneNumber ? Op::ReturnNumber : Op::Return, registerOf(value),
                      static_cast<Reg>(value.type));
    }
    release(value);
}

void FunctionCompiler::returnZero() {
    Operand zeroValue;
    zeroValue.type = builder_.function().returns;
    zeroValue.constant = Value::zero(zeroValue.type);
    returnValue(zeroValue);
}

} // namespace vesk::mel
