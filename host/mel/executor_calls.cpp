// The machine's part for calls: frames, arguments, results.

#include "host/mel/executor.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vesk::mel {

void Executor::enter(Function& function, const Unit* unit) {
    if (frames_.size() >= surroundings_.limits().recursion) {
        limitReached(surroundings_.limits(), &Limits::recursion);
    }
    countStep();
    Frame frame;
    frame.function = &function;
    frame.unit = unit;
    frame.ip = function.code.data();
    frame.numberMark = numbers_.mark();
    frame.objectMark = objects_.mark();
    frame.numbers = numbers_.take(function.numbers.size());
    frame.objects = objects_.take(function.objects.size());
    if (!function.numbers.empty()) {
        std::memcpy(frame.numbers, function.numbers.data(), function.numbers.size() * sizeof(Num));
    }
    for (std::size_t i = 0; i < function.objects.size(); ++i) {
        start(frame.objects[i], function, function.objects[i]);
    }
    frames_.push_back(frame);
    ++function.active;
}

void Executor::start(Cell& cell, Function& function, const ObjectStart& start) {
    if (start.constant >= 0) {
        cell.at = &function.constants[static_cast<std::size_t>(start.constant)];
    } else if (start.global) {
        cell.at = &start.global->object;
    } else {
        cell.at = &cell.own;
        cell.own = Value::zero(start.type);
    }
}

void Executor::leave() {
    const Frame& frame = frames_.back();
    Function& function = *frame.function;
    for (std::size_t i = 0; i < function.objects.size(); ++i) {
        if (!frame.objects[i].own.isNone()) frame.objects[i].own = Value();
    }
    --function.active;
    numbers_.release(frame.numberMark);
    objects_.release(frame.objectMark);
    frames_.pop_back();
}

/// The instruction that a frame is at, or is waiting in.
Place Executor::placeOf(const Frame& frame) const {
    const Function& function = *frame.function;
    const auto next = static_cast<std::size_t>(frame.ip - function.code.data());
    return Place{function.source, function.places[next > 0 ? next - 1 : 0]};
}

Value Executor::boxed(Type type, Reg reg, const Num* numbers, const Cell* objects) {
    switch (type) {
    case Type::None: return {};
    case Type::Int: return numbers[reg].i;
    case Type::Float: return numbers[reg].f;
    case Type::Vector: return MVector(numbers[reg].f, numbers[reg + 1].f, numbers[reg + 2].f);
    default: return *objects[reg].at;
    }
}

Value Executor::valueOf(const Argument& argument, const Frame& frame) {
    if (argument.isConstant) return argument.constant;
    return boxed(argument.type, argument.reg, frame.numbers, frame.objects);
}

/// Puts a value into a register of the type, converted.
void Executor::deliver(Value value, Type type, Reg reg, const Frame& frame) {
    switch (type) {
    case Type::None: break;
    case Type::Int: frame.numbers[reg].i = value.asInt(); break;
    case Type::Float: frame.numbers[reg].f = value.asFloat(); break;
    case Type::Vector: {
        const MVector vector = value.asVector();
        for (unsigned int i = 0; i < 3; ++i)
            frame.numbers[reg + i].f = vector[i];
        break;
    }
    default:
        if (value.type() == type || type == Type::Any) {
            *frame.objects[reg].at = std::move(value);
        } else {
            *frame.objects[reg].at = value.convertedTo(type);
        }
    }
}

void Executor::call(CallSite& site) {
    if (!surroundings_.isResolved(site)) surroundings_.resolve(site, *frames_.back().function);
    if (site.target.procedure) {
        callProcedure(site, *site.target.procedure);
    } else {
        callCommand(site);
    }
}

void Executor::checkCount(const Function& function, std::size_t given) const {
    if (function.parameters.size() == given) return;
    throw Error("Wrong number of arguments on call to " + function.name + ": " + std::to_string(given) +
                " instead of " + std::to_string(function.parameters.size()) + ".");
}

/// Makes the procedure the running one; its return delivers the result.
void Executor::callProcedure(const CallSite& site, Function& function) {
    checkCount(function, site.arguments.size() + site.constants.size());
    const Frame caller = frames_.back();
    enter(function, nullptr);
    try {
        for (std::size_t i = 0; i < site.constants.size(); ++i) {
            bindValue(function.parameters[i], site.constants[i]);
        }
        for (std::size_t i = 0; i < site.arguments.size(); ++i) {
            bind(function.parameters[i], site.arguments[i], caller);
        }
    } catch (const Error&) {
        leave(); // what does not fit is the caller's fault
        throw;
    }
}

void Executor::bind(const Parameter& parameter, const Argument& argument, const Frame& caller) {
    const Frame& frame = frames_.back();
    if (argument.isConstant) {
        bindValue(parameter, argument.constant);
    } else if (parameter.type == argument.type && isNumeric(parameter.type)) {
        const std::size_t width = parameter.type == Type::Vector ? 3 : 1;
        for (std::size_t i = 0; i < width; ++i) {
            frame.numbers[parameter.reg + i] = caller.numbers[argument.reg + i];
        }
    } else if (isArray(parameter.type) && !isNumeric(argument.type) &&
               caller.objects[argument.reg].at->type() == parameter.type) {
        frame.objects[parameter.reg].at = caller.objects[argument.reg].at; // by reference
    } else {
        bindValue(parameter, valueOf(argument, caller));
    }
}

void Executor::bindValue(const Parameter& parameter, const Value& value) {
    if (!isConvertible(value.type(), parameter.type)) {
        throw Error("Wrong type of argument \"$" + parameter.name + "\" on call to " +
                    frames_.back().function->name + ": " + std::string(nameOf(value.type())) +
                    " instead of " + std::string(nameOf(parameter.type)) + ".");
    }
    deliver(value, parameter.type, parameter.reg, frames_.back());
}

void Executor::callCommand(CallSite& site) {
    // The command may change what the site stands for, and it may remove itself.
    const std::shared_ptr<const Command> command = site.target.command;
    const Frame frame = frames_.back();
    const Place place{frame.function->source, site.at};
    Value result;
    if (site.arguments.empty()) {
        result = runCommand(*command, site.name, site.constants, place);
    } else {
        std::vector<Value> words;
        words.reserve(site.arguments.size());
        for (const Argument& argument : site.arguments)
            words.push_back(valueOf(argument, frame));
        result = runCommand(*command, site.name, words, place);
    }
    deliver(std::move(result), site.resultType, site.result, frame);
}

Value Executor::runCommand(const Command& command, std::string_view name, std::span<const Value> words,
                           Place place) {
    std::vector<Value> spread;
    const auto isOneWord = [](const Value& word) { return !word.isArray() && !word.isNone(); };
    if (!std::all_of(words.begin(), words.end(), isOneWord)) {
        for (const Value& word : words) {
            if (isOneWord(word)) spread.push_back(word);
            for (std::size_t i = 0; i < word.arraySize(); ++i)
                spread.push_back(word.element(i));
        }
        words = spread;
    }
    Call call{name, words, std::move(place), surroundings_.machine()};
    return command(call);
}

void Executor::callLibrary(const LibrarySite& site) {
    constexpr std::size_t most = 8; // parameters of any library function
    Value numbers[most];
    Value* arguments[most];
    const Frame frame = frames_.back();
    const std::size_t count = site.arguments.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Argument& argument = site.arguments[i];
        if (argument.isConstant || isNumeric(argument.type)) {
            numbers[i] = valueOf(argument, frame);
            arguments[i] = &numbers[i];
        } else {
            arguments[i] = frame.objects[argument.reg].at;
        }
    }
    Value result = site.function->values(library_, std::span<Value* const>(arguments, count));
    deliver(std::move(result), site.resultType, site.result, frame);
}

/// Ends the running procedure with the value of a register. True when it is the one that `run` started; then
/// `result` is the value. Otherwise the value goes to where the caller wants it.
bool Executor::returnFrom(Type type, Reg reg, std::size_t base, Value& result) {
    const Frame frame = frames_.back();
    const bool outermost = frames_.size() == base + 1;
    const CallSite* site = nullptr;
    if (!outermost) {
        const Frame& caller = frames_[frames_.size() - 2];
        site = &caller.function->calls[static_cast<std::size_t>((caller.ip - 1)->imm)];
        if (isNumeric(type) && site->resultType == type) {
            const std::size_t width = type == Type::Vector ? 3 : 1;
            for (std::size_t i = 0; i < width; ++i) {
                caller.numbers[site->result + i] = frame.numbers[reg + i];
            }
            leave();
            return false;
        }
    }
    Value value;
    if (!isNumeric(type) && type != Type::None && frame.objects[reg].at == &frame.objects[reg].own) {
        value = std::move(frame.objects[reg].own);
    } else {
        value = boxed(type, reg, frame.numbers, frame.objects);
    }
    leave();
    if (outermost) {
        result = std::move(value);
        return true;
    }
    deliver(std::move(value), site->resultType, site->result, frames_.back());
    return false;
}

} // namespace vesk::mel
