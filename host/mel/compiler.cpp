// The compiler: whole texts, names, and moving values between types.

#include "host/mel/compiler.h"

#include "host/mel/parser.h"

#include <utility>

namespace vesk::mel {

namespace {

std::string redeclared(const Declarator& variable, Type known) {
    return "Invalid redeclaration of variable \"$" + variable.name + "\" as a different type (" +
           std::string(nameOf(variable.type)) + " instead of " + std::string(nameOf(known)) + ").";
}

} // namespace

std::unique_ptr<Unit> compile(std::shared_ptr<const Source> source, std::shared_ptr<Module> module,
                              Environment& environment) {
    auto unit = std::make_unique<Unit>();
    unit->source = source;
    unit->module = std::move(module);
    UnitCompiler(*unit, environment).compile(Parser(std::move(source)).parse());
    return unit;
}

void UnitCompiler::compile(std::vector<StmtPtr> statements) {
    for (const StmtPtr& statement : statements) {
        if (statement->kind != Stmt::Kind::Procedure) continue;
        const auto& procedure = static_cast<const ProcedureStmt&>(*statement);
        procedures_.try_emplace(procedure.name, procedure.returns);
    }
    for (StmtPtr& statement : statements) {
        std::unique_ptr<Function> function = makeFunction({});
        function->unit = &unit_;
        FunctionCompiler(*this, *function, true).compileTopLevel(*statement);
        unit_.statements.push_back(std::move(function));
        statement.reset(); // long texts need not be in memory twice
    }
}

std::unique_ptr<Function> UnitCompiler::makeFunction(const std::string& name) {
    auto function = std::make_unique<Function>();
    function->name = name;
    function->source = unit_.source;
    function->module = unit_.module.get();
    return function;
}

Global* UnitCompiler::findGlobal(const std::string& name) {
    const auto found = newGlobals_.find(name);
    return found != newGlobals_.end() ? found->second : environment_.findGlobal(name);
}

Global& UnitCompiler::declareGlobal(const Declarator& variable) {
    if (Global* known = findGlobal(variable.name)) {
        if (known->type != variable.type && known->type != Type::Any) {
            throw Error(redeclared(variable, known->type), Place{unit_.source, variable.at});
        }
        return *known;
    }
    auto global = std::make_unique<Global>();
    global->name = variable.name;
    global->type = variable.type;
    if (variable.type == Type::Matrix) {
        global->object = Matrix(variable.rows, variable.columns);
    } else if (!isNumeric(variable.type)) {
        global->object = Value::zero(variable.type);
    }
    newGlobals_[variable.name] = global.get();
    unit_.globals.push_back(std::move(global));
    return *unit_.globals.back();
}

std::optional<UnitCompiler::Signature> UnitCompiler::findProcedure(const std::string& name) {
    const auto found = procedures_.find(name);
    if (found != procedures_.end()) return Signature{found->second};
    const Function* known = environment_.findProcedure(name, unit_.module.get());
    if (!known) return std::nullopt;
    return Signature{known->returns};
}

std::size_t UnitCompiler::addProcedure(const ProcedureStmt& statement) {
    procedures_[statement.name] = statement.returns;
    std::shared_ptr<Function> function = makeFunction(statement.name);
    function->isGlobal = statement.global;
    if (statement.global) function->keptModule = unit_.module;
    function->returns = statement.returns;
    FunctionCompiler(*this, *function, false).compileProcedure(statement);
    unit_.procedures.push_back(std::move(function));
    return unit_.procedures.size() - 1;
}

void FunctionCompiler::fail(std::uint32_t offset, const std::string& message) const {
    throw Error(message, Place{unit_.unit().source, offset});
}

/// Errors that know no place get that of the expression being compiled.
template <class Work>
void FunctionCompiler::placed(Work work) {
    try {
        work();
    } catch (Error& error) {
        if (!error.isPlaced()) error.setPlace(Place{unit_.unit().source, builder_.place()});
        throw;
    }
}

void FunctionCompiler::compileTopLevel(const Stmt& stmt) {
    builder_.setPlace(stmt.at);
    placed([&] {
        if (stmt.kind == Stmt::Kind::Expression) {
            returnValue(expression(*static_cast<const ExprStmt&>(stmt).expr));
        } else {
            statement(stmt);
            builder_.emit(Op::ReturnNone);
        }
    });
    builder_.finish();
}

void FunctionCompiler::compileProcedure(const ProcedureStmt& stmt) {
    builder_.setPlace(stmt.at);
    for (const Declarator& declarator : stmt.parameters) {
        Variable variable;
        variable.type = declarator.type;
        variable.reg = builder_.allocate(declarator.type);
        if (!scopes_.back().emplace(declarator.name, variable).second) {
            fail(declarator.at, "There are two parameters \"$" + declarator.name + "\".");
        }
        builder_.function().parameters.push_back({declarator.name, declarator.type, variable.reg});
    }
    placed([&] {
        block(stmt.body->statements);
        if (builder_.isReachable()) returnZero();
    });
    builder_.finish();
}

std::optional<FunctionCompiler::Variable> FunctionCompiler::findVariable(const std::string& name) {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
        const auto found = scope->find(name);
        if (found != scope->end()) return found->second;
    }
    if (!topLevel_) return std::nullopt;
    if (Global* global = unit_.findGlobal(name)) return variableOf(*global);
    return std::nullopt;
}

FunctionCompiler::Variable FunctionCompiler::variableNamed(const VariableExpr& expr) {
    std::optional<Variable> variable = findVariable(expr.name);
    if (!variable) fail(expr.at, "\"$" + expr.name + "\" is an undeclared variable.");
    return *variable;
}

FunctionCompiler::Variable FunctionCompiler::variableOf(Global& global) {
    Variable variable;
    variable.type = global.type;
    variable.global = &global;
    if (!isNumeric(global.type)) variable.reg = builder_.bind(global);
    return variable;
}

/// Makes the variable in the present scope, or finds it there with the same type.
FunctionCompiler::Variable FunctionCompiler::declare(const Declarator& declarator) {
    if (declaresGlobals()) return variableOf(unit_.declareGlobal(declarator));
    auto& scope = scopes_.back();
    const auto found = scope.find(declarator.name);
    if (found != scope.end()) {
        if (found->second.type != declarator.type && found->second.type != Type::Any) {
            fail(declarator.at, redeclared(declarator, found->second.type));
        }
        return found->second;
    }
    Variable variable;
    variable.type = declarator.type;
    variable.reg = builder_.allocateVariable(declarator.type);
    scope.emplace(declarator.name, variable);
    return variable;
}

void FunctionCompiler::release(const Operand& operand) {
    if (operand.isTemporary()) builder_.release(operand.type, operand.reg);
}

/// A register for a result: the wanted one when the type is right, else a new one.
Operand FunctionCompiler::temporary(Type type, const Want& want) {
    Operand operand;
    operand.type = type;
    const bool fits = want.reg && want.type == type;
    operand.kind = fits ? Operand::Kind::Variable : Operand::Kind::Temporary;
    operand.reg = fits ? *want.reg : builder_.allocate(type);
    return operand;
}

Reg FunctionCompiler::registerOf(const Operand& operand) {
    return operand.isConstant() ? builder_.constant(operand.constant) : operand.reg;
}

Operand FunctionCompiler::read(const Variable& variable) {
    if (!variable.isGlobalNumber()) {
        Operand operand;
        operand.kind = Operand::Kind::Variable;
        operand.type = variable.type;
        operand.reg = variable.reg;
        return operand;
    }
    Operand operand = temporary(variable.type);
    builder_.emit(variable.type == Type::Vector ? Op::LoadVector : Op::LoadNumber, operand.reg, 0, 0,
                  builder_.globalIndex(*variable.global));
    return operand;
}

Want FunctionCompiler::wantOf(const Variable& variable) {
    // A variable of a type yet to be known and a matrix of a size must see the value come in; a global number
    // has no register.
    if (variable.isGlobalNumber() || variable.type == Type::Any || variable.type == Type::Matrix)
        return {variable.type, std::nullopt};
    return {variable.type, variable.reg};
}

Operand FunctionCompiler::kept(Operand operand, bool nextHasEffects) {
    if (!nextHasEffects || operand.kind != Operand::Kind::Variable) return operand;
    Operand copy = temporary(operand.type);
    move(operand.type, copy.reg, operand);
    return copy;
}

/// A value of the type into a register of the type.
void FunctionCompiler::move(Type type, Reg to, const Operand& from) {
    const Reg reg = registerOf(from);
    if (reg == to && !from.isConstant()) return;
    if (type == Type::Vector) {
        builder_.emit(Op::MoveVector, to, reg);
    } else if (isNumeric(type)) {
        if (type == Type::Float && builder_.joinMove(to, reg)) return;
        builder_.emit(Op::MoveNumber, to, reg);
    } else {
        builder_.emit(from.isTemporary() ? Op::TakeObject : Op::MoveObject, to, reg);
    }
}

/// A value of any type into a register of `type`, converted; the operand is released.
void FunctionCompiler::store(const Operand& from, Type type, Reg to) {
    const Operand value = converted(from, type, {type, to});
    move(type, to, value);
    release(value);
}

/// The operand as `type`. Without a conversion it stays where it is, wherever it is wanted.
Operand FunctionCompiler::converted(Operand operand, Type type, const Want& want) {
    const Type from = operand.type;
    if (from == type || type == Type::None) return operand;
    if (!isConvertible(from, type)) cannotConvert(from, type);
    if (operand.isConstant() && type != Type::Any) {
        operand.constant = operand.constant.convertedTo(type);
        operand.type = type;
        return operand;
    }
    Operand result = temporary(type, want);
    const Reg source = registerOf(operand);
    if (isNumeric(type)) {
        convertNumber(operand, type, result.reg);
    } else if (type == Type::Any || !isNumeric(from)) {
        switch (from) {
        case Type::Int: builder_.emit(Op::BoxInt, result.reg, source); break;
        case Type::Float: builder_.emit(Op::BoxFloat, result.reg, source); break;
        case Type::Vector: builder_.emit(Op::BoxVector, result.reg, source); break;
        default:
            if (type == Type::Any) {
                builder_.emit(Op::MoveObject, result.reg, source);
            } else {
                builder_.emit(Op::ConvertObject, result.reg, source, static_cast<Reg>(type));
            }
        }
    } else if (type == Type::String) {
        const Op op = from == Type::Int     ? Op::IntToText
                      : from == Type::Float ? Op::FloatToText
                                            : Op::VectorToText;
        builder_.emit(op, result.reg, source);
    } else { // a vector as a matrix
        const Operand boxed = converted(operand, Type::Any);
        builder_.emit(Op::ConvertObject, result.reg, boxed.reg, static_cast<Reg>(type));
        release(boxed);
        return result;
    }
    release(operand);
    return result;
}

/// Anything into a register of numbers.
void FunctionCompiler::convertNumber(const Operand& from, Type to, Reg reg) {
    const Reg source = registerOf(from);
    switch (from.type) {
    case Type::Int:
        builder_.emit(Op::IntToFloat, reg, source);
        if (to == Type::Vector) builder_.emit(Op::SplatVector, reg, reg);
        break;
    case Type::Float: builder_.emit(to == Type::Int ? Op::FloatToInt : Op::SplatVector, reg, source); break;
    case Type::Vector:
        builder_.emit(Op::VectorLength, reg, source);
        if (to == Type::Int) builder_.emit(Op::FloatToInt, reg, reg);
        break;
    default:
        builder_.emit(to == Type::Int     ? Op::UnboxInt
                      : to == Type::Float ? Op::UnboxFloat
                                          : Op::UnboxVector,
                      reg, source);
    }
}

} // namespace vesk::mel
