// The compiler's part for assignments and steps.

#include "host/mel/compiler.h"

#include <utility>

namespace vesk::mel {

Operand FunctionCompiler::assign(const AssignExpr& expr) {
    if (expr.target->kind == Expr::Kind::Index) {
        return assignElement(expr, static_cast<const IndexExpr&>(*expr.target));
    }
    return assignVariable(expr, static_cast<const VariableExpr&>(*expr.target));
}

Operand FunctionCompiler::assignVariable(const AssignExpr& expr, const VariableExpr& target) {
    const std::optional<Variable> variable = findVariable(target.name);
    if (expr.compound) return assignCompound(expr, variableNamed(target));
    if (!variable) return assignNew(expr, target);
    Operand value = valued(*expr.value, wantOf(*variable));
    builder_.setPlace(expr.at);
    return write(*variable, std::move(value));
}

/// The first assignment declares the variable with the type of the value.
Operand FunctionCompiler::assignNew(const AssignExpr& expr, const VariableExpr& target) {
    Operand value = valued(*expr.value);
    builder_.setPlace(expr.at);
    if (const std::optional<Variable> meanwhile = findVariable(target.name)) {
        return write(*meanwhile, std::move(value)); // the value itself declared it
    }
    Declarator declarator;
    declarator.at = target.at;
    declarator.name = target.name;
    declarator.type = value.type;
    const Variable variable = declare(declarator);
    if (variable.type == Type::Any) {
        // A fresh variable takes the value with whatever type it has.
        move(Type::Any, variable.reg, value);
        release(value);
        return read(variable);
    }
    return write(variable, std::move(value));
}

/// Puts a value into a variable, converted; the operand that comes back is the variable's new value.
Operand FunctionCompiler::write(const Variable& variable, Operand value) {
    if (variable.type == Type::Any) {
        const Operand boxed = converted(std::move(value), Type::Any);
        builder_.emit(Op::AssignAny, variable.reg, registerOf(boxed));
        release(boxed);
        return read(variable);
    }
    if (variable.isGlobalNumber()) {
        Operand number = converted(std::move(value), variable.type);
        builder_.emit(variable.type == Type::Vector ? Op::StoreVector : Op::StoreNumber, registerOf(number),
                      0, 0, builder_.globalIndex(*variable.global));
        return number;
    }
    if (variable.type == Type::Matrix) {
        const Operand matrix = converted(std::move(value), Type::Matrix);
        builder_.emit(Op::AssignMatrix, variable.reg, registerOf(matrix));
        release(matrix);
        return read(variable);
    }
    store(value, variable.type, variable.reg);
    return read(variable);
}

Operand FunctionCompiler::assignCompound(const AssignExpr& expr, const Variable& variable) {
    Operand right = valued(*expr.value);
    builder_.setPlace(expr.at);
    if (variable.type == Type::String && expr.op == BinaryOp::Add) {
        right = converted(std::move(right), Type::String);
        builder_.emit(Op::Append, variable.reg, registerOf(right));
        release(right);
        return read(variable);
    }
    return write(variable, binary(expr.op, read(variable), std::move(right), wantOf(variable)));
}

/// The array or matrix that an element is assigned in. A name that is not known yet becomes an array of
/// `*newElement`.
FunctionCompiler::Variable FunctionCompiler::arrayTarget(const IndexExpr& target, const Type* newElement) {
    if (target.array->kind != Expr::Kind::Variable) {
        fail(target.at, "Only an element of a variable can be assigned.");
    }
    const auto& name = static_cast<const VariableExpr&>(*target.array);
    if (newElement && !target.column && !findVariable(name.name)) {
        Declarator declarator;
        declarator.at = name.at;
        declarator.name = name.name;
        declarator.type = *newElement == Type::Any ? Type::Any : arrayOf(*newElement);
        if (declarator.type == Type::None) cannotConvert(*newElement, Type::Strings);
        return declare(declarator);
    }
    Variable variable = variableNamed(name);
    const bool fits =
        target.column ? variable.type == Type::Matrix : isArray(variable.type) || variable.type == Type::Any;
    if (!fits) {
        const std::string type(nameOf(variable.type));
        fail(target.at, variable.type == Type::Matrix ? "An element of a matrix has two indices."
                        : target.column               ? "Only a matrix has two indices."
                                                      : "Data of type " + type + " has no elements.");
    }
    return variable;
}

Operand FunctionCompiler::assignElement(const AssignExpr& expr, const IndexExpr& target) {
    const bool known = target.array->kind != Expr::Kind::Variable ||
                       findVariable(static_cast<const VariableExpr&>(*target.array).name).has_value();
    if (expr.compound || known) {
        const Variable array = arrayTarget(target, nullptr);
        if (target.column) return assignMatrixElement(expr, target, array);
        const Operand at = kept(index(*target.index), expr.value->effects);
        Operand value = valued(*expr.value, {elementOf(array.type), std::nullopt});
        builder_.setPlace(expr.at);
        if (expr.compound) value = binary(expr.op, getElement(read(array), at, {}), std::move(value), {});
        value = converted(std::move(value), elementOf(array.type));
        setElement(array, at, value);
        release(at);
        return value;
    }
    const Operand at = kept(index(*target.index), expr.value->effects);
    Operand value = valued(*expr.value);
    builder_.setPlace(expr.at);
    const Variable array = arrayTarget(target, &value.type);
    value = converted(std::move(value), elementOf(array.type));
    setElement(array, at, value);
    release(at);
    return value;
}

void FunctionCompiler::setElement(const Variable& array, const Operand& index, const Operand& value) {
    const Type type = elementOf(array.type);
    const Op op = type == Type::Int      ? Op::SetInt
                  : type == Type::Float  ? Op::SetFloat
                  : type == Type::Vector ? Op::SetVector
                  : type == Type::String ? Op::SetText
                                         : Op::SetAny;
    builder_.emit(op, array.reg, registerOf(index), registerOf(value));
}

Operand FunctionCompiler::assignMatrixElement(const AssignExpr& expr, const IndexExpr& target,
                                              const Variable& matrix) {
    const bool effects = target.column->effects || expr.value->effects;
    const Operand row = kept(index(*target.index), effects);
    const Operand column = kept(index(*target.column), expr.value->effects);
    Operand value = valued(*expr.value, {Type::Float, std::nullopt});
    builder_.setPlace(expr.at);
    if (expr.compound) {
        Operand old = temporary(Type::Float);
        builder_.emit(Op::GetMatrix, old.reg, matrix.reg, registerOf(row), registerOf(column));
        value = binary(expr.op, std::move(old), std::move(value), {});
    }
    value = converted(std::move(value), Type::Float);
    builder_.emit(Op::SetMatrix, matrix.reg, registerOf(row), registerOf(column), registerOf(value));
    release(row);
    release(column);
    return value;
}

/// The value one step on, in a register of its own unless it is a plain number variable that may be stepped
/// in place.
Operand FunctionCompiler::stepped(const Operand& value, const StepExpr& expr) {
    builder_.setPlace(expr.at);
    if (value.type == Type::Int || value.type == Type::Float) {
        Operand result = temporary(value.type);
        builder_.emit(value.type == Type::Int ? Op::StepInt : Op::StepFloat, result.reg, registerOf(value), 0,
                      expr.step);
        return result;
    }
    if (value.type == Type::Any) {
        Operand one;
        one.type = Type::Int;
        one.constant = expr.step;
        Operand left = value;
        left.kind = Operand::Kind::Variable; // read here, given back by whoever has it
        return binary(BinaryOp::Add, std::move(left), std::move(one), {});
    }
    fail(expr.at, "Illegal operation \"" + std::string(expr.step > 0 ? "++" : "--") + "\" on data of type " +
                      std::string(nameOf(value.type)) + ".");
}

Operand FunctionCompiler::stepMatrixElement(const StepExpr& expr, const IndexExpr& target,
                                            const Variable& matrix) {
    const Operand row = kept(index(*target.index), target.column->effects);
    const Operand column = index(*target.column);
    Operand old = temporary(Type::Float);
    builder_.emit(Op::GetMatrix, old.reg, matrix.reg, registerOf(row), registerOf(column));
    const Operand next = stepped(old, expr);
    builder_.emit(Op::SetMatrix, matrix.reg, registerOf(row), registerOf(column), registerOf(next));
    release(row);
    release(column);
    release(expr.before ? old : next);
    return expr.before ? next : old;
}

Operand FunctionCompiler::step(const StepExpr& expr, bool resultUsed) {
    if (expr.target->kind == Expr::Kind::Index) {
        const auto& target = static_cast<const IndexExpr&>(*expr.target);
        const Variable array = arrayTarget(target, nullptr);
        if (target.column) return stepMatrixElement(expr, target, array);
        const Operand at = index(*target.index);
        Operand old = getElement(read(array), at, {});
        const Operand next = stepped(old, expr);
        setElement(array, at, next);
        release(at);
        release(expr.before ? old : next);
        return expr.before ? next : old;
    }
    const Variable variable = variableNamed(static_cast<const VariableExpr&>(*expr.target));
    const bool inPlace = !variable.global && (variable.type == Type::Int || variable.type == Type::Float);
    if (inPlace) {
        const Operand value = read(variable);
        Operand old = resultUsed && !expr.before ? kept(value, true) : value;
        builder_.setPlace(expr.at);
        builder_.emit(variable.type == Type::Int ? Op::StepInt : Op::StepFloat, variable.reg, variable.reg, 0,
                      expr.step);
        return old;
    }
    Operand old = kept(read(variable), true);
    Operand next = write(variable, stepped(old, expr));
    release(expr.before ? old : next);
    return expr.before ? next : old;
}

} // namespace vesk::mel
