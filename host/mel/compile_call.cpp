// The compiler's part for calls.

#include "host/mel/compiler.h"

#include "host/mel/library.h"

#include <utility>

namespace vesk::mel {

namespace {

constexpr int kNever = -1;

/// How far an argument is from a parameter; the overload with the smallest sum is called.
int distance(Type from, const BuiltinParameter& parameter) {
    const Type to = parameter.type;
    if (from == to) return 0;
    if (to == Type::Any) return 1;
    if (parameter.byReference) return from == Type::Any ? 1 : kNever;
    if (!isConvertible(from, to)) return kNever;
    if (from == Type::Any) return to == Type::Int ? 4 : 3; // a number that might be a float is taken for one
    if (from == Type::Int && to == Type::Float) return 1;
    if (isArray(from)) return 2;
    return to == Type::Int ? 6 : 5;
}

/// The sum of the distances, or kNever.
int distance(const std::vector<Operand>& arguments, const std::vector<BuiltinParameter>& parameters) {
    if (arguments.size() != parameters.size()) return kNever;
    int sum = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const int one = distance(arguments[i].type, parameters[i]);
        if (one == kNever) return kNever;
        sum += one;
    }
    return sum;
}

std::string listed(const std::vector<Operand>& arguments) {
    std::string text;
    for (const Operand& argument : arguments) {
        if (!text.empty()) text += ", ";
        text += nameOf(argument.type);
    }
    return text;
}

Argument argumentOf(const Operand& operand) {
    Argument argument;
    argument.type = operand.type;
    argument.reg = operand.reg;
    argument.isConstant = operand.isConstant();
    if (argument.isConstant) argument.constant = operand.constant;
    return argument;
}

} // namespace

Operand FunctionCompiler::call(const CallExpr& expr, const Want& want, bool resultUsed) {
    if (const auto procedure = unit_.findProcedure(expr.name)) {
        return callByName(expr, resultUsed ? want : Want{}, resultUsed ? procedure->returns : Type::None);
    }
    const std::vector<const Builtin*> builtins = builtinsNamed(expr.name);
    if (!builtins.empty()) return callBuiltin(expr, builtins, want);
    return callByName(expr, resultUsed ? want : Want{}, resultUsed ? Type::Any : Type::None);
}

Operand FunctionCompiler::word(const Word& word) {
    Operand operand;
    if (word.expr && word.expr->kind == Expr::Kind::Array &&
        static_cast<const ListExpr&>(*word.expr).items.empty()) {
        operand.type = Type::Any; // `{}`: empty whatever array is wanted
        return operand;
    }
    if (word.expr) return valued(*word.expr);
    operand.type = word.constant.type();
    operand.constant = word.constant;
    return operand;
}

/// The values of the words. One that a later word may change is copied, unless it is an array, which is
/// passed as the variable that it is.
std::vector<Operand> FunctionCompiler::words(const CallExpr& expr) {
    std::size_t lastEffect = 0;
    for (std::size_t i = 0; i < expr.words.size(); ++i) {
        if (expr.words[i].expr && expr.words[i].expr->effects) lastEffect = i;
    }
    std::vector<Operand> operands;
    operands.reserve(expr.words.size());
    for (std::size_t i = 0; i < expr.words.size(); ++i) {
        Operand operand = word(expr.words[i]);
        if (!isArray(operand.type)) operand = kept(std::move(operand), i < lastEffect);
        operands.push_back(std::move(operand));
    }
    return operands;
}

/// A call of what the name means when it runs. `returns` is the type that is known of the result: Any when
/// nothing is known, None when there is none or it is not needed.
Operand FunctionCompiler::callByName(const CallExpr& expr, const Want& want, Type returns) {
    CallSite site;
    site.name = expr.name;
    site.at = expr.at;
    std::vector<Operand> operands = words(expr);
    bool constant = true;
    for (const Operand& operand : operands)
        constant = constant && operand.isConstant();
    for (Operand& operand : operands) {
        if (constant) {
            site.constants.push_back(std::move(operand.constant));
        } else {
            site.arguments.push_back(argumentOf(operand));
        }
    }
    if (operands.size() == 1 && operands.front().type == Type::Int && operands.front().isTemporary()) {
        if (const auto stepped = builder_.takeStep(operands.front().reg)) {
            site.arguments.front().reg = stepped->reg;
            site.arguments.front().step = stepped->by;
        }
    }
    builder_.setPlace(expr.at);
    Operand result;
    if (returns != Type::None) {
        const bool takesWanted = want.type != Type::None && isConvertible(returns, want.type);
        result = temporary(takesWanted ? want.type : returns, want);
    }
    builder_.emit(Op::Call, result.reg, static_cast<Reg>(result.type), 0,
                  static_cast<std::int32_t>(builder_.function().calls.size()));
    builder_.function().calls.push_back(std::move(site));
    for (const Operand& operand : operands)
        release(operand);
    return result;
}

Operand FunctionCompiler::callBuiltin(const CallExpr& expr, const std::vector<const Builtin*>& overloads,
                                      const Want& want) {
    std::vector<Operand> arguments = words(expr);
    builder_.setPlace(expr.at);
    const Builtin* best = nullptr;
    int least = 0;
    bool countFits = false;
    for (const Builtin* builtin : overloads) {
        const std::vector<BuiltinParameter> parameters = parametersOf(*builtin);
        countFits = countFits || parameters.size() == arguments.size();
        const int far = distance(arguments, parameters);
        if (far == kNever || (best && far >= least)) continue;
        best = builtin;
        least = far;
    }
    if (!countFits) fail(expr.at, "Wrong number of arguments on call to " + expr.name + ".");
    if (!best)
        fail(expr.at, "Wrong type of argument on call to " + expr.name + "(" + listed(arguments) + ").");

    const std::vector<BuiltinParameter> parameters = parametersOf(*best);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Word& given = expr.words[i];
        if (parameters[i].byReference && (!given.expr || given.expr->kind != Expr::Kind::Variable)) {
            fail(given.at, expr.name + " needs a variable here, which it changes.");
        }
    }
    return best->numbers ? callNumbers(*best, std::move(arguments), want)
                         : callValues(*best, std::move(arguments), want);
}

Operand FunctionCompiler::callNumbers(const Builtin& builtin, std::vector<Operand> arguments,
                                      const Want& want) {
    const std::vector<BuiltinParameter> parameters = parametersOf(builtin);
    const auto width = [](Type type) { return type == Type::Vector ? std::size_t{3} : std::size_t{1}; };
    const std::int32_t function = builder_.numberCall(builtin.numbers);
    if (arguments.size() == 1) { // no row to build
        const Operand only = converted(std::move(arguments.front()), parameters.front().type);
        Operand result = temporary(builtin.result, want);
        builder_.emit(Op::CallNumbers, result.reg, registerOf(only), 0, function);
        release(only);
        return result;
    }
    std::size_t count = 0;
    for (const BuiltinParameter& parameter : parameters)
        count += width(parameter.type);
    const Reg first = builder_.allocateNumbers(count);
    Reg next = first;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        store(arguments[i], parameters[i].type, next);
        next = static_cast<Reg>(next + width(parameters[i].type));
    }
    Operand result = temporary(builtin.result, want);
    builder_.emit(Op::CallNumbers, result.reg, first, 0, function);
    builder_.releaseNumbers(first, count);
    return result;
}

Operand FunctionCompiler::callValues(const Builtin& builtin, std::vector<Operand> arguments,
                                     const Want& want) {
    const std::vector<BuiltinParameter> parameters = parametersOf(builtin);
    if (builtin.name == "size" && isArray(arguments.front().type)) {
        Operand result = temporary(Type::Int, want);
        builder_.emit(Op::SizeOf, result.reg, registerOf(arguments.front()));
        release(arguments.front());
        return result;
    }
    LibrarySite site;
    site.function = &builtin;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!parameters[i].byReference && parameters[i].type != Type::Any) {
            arguments[i] = converted(std::move(arguments[i]), parameters[i].type);
        }
        site.arguments.push_back(argumentOf(arguments[i]));
    }
    Operand result;
    if (builtin.result != Type::None) {
        result = temporary(builtin.result, want);
        site.resultType = result.type;
        site.result = result.reg;
    }
    builder_.emit(Op::CallValues, 0, 0, 0,
                  static_cast<std::int32_t>(builder_.function().libraryCalls.size()));
    builder_.function().libraryCalls.push_back(std::move(site));
    for (const Operand& argument : arguments)
        release(argument);
    return result;
}

/// 1 when an error stopped the body, else 0.
Operand FunctionCompiler::catchExpr(const CatchExpr& expr, const Want& want) {
    const std::size_t enter = builder_.jump(Op::EnterCatch, static_cast<Reg>(expr.quiet ? 1 : 0));
    discard(*expr.body);
    builder_.emit(Op::LeaveCatch);
    Operand result = temporary(Type::Int, want);
    builder_.emit(Op::MoveNumber, result.reg, builder_.constant(0));
    const std::size_t end = builder_.jump(Op::Jump);
    builder_.land(enter, builder_.here());
    builder_.emit(Op::MoveNumber, result.reg, builder_.constant(1));
    builder_.land(end, builder_.here());
    return result;
}

} // namespace vesk::mel
