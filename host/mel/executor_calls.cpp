// The machine's part for calls: frames, arguments, results.

#include "host/mel/executor.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vesk::mel {

void Executor::startObjects(Frame& frame) {
    Function& function = *frame.function;
    frame.owned = values_.take(function.objects.size());
    for (std::size_t i = 0; i < function.objects.size(); ++i) {
        const ObjectStart& start = function.objects[i];
        if (start.constant >= 0) {
            frame.objects[i].object = &function.constants[static_cast<std::size_t>(start.constant)];
        } else if (start.global) {
            frame.objects[i].object = &start.global->object;
        } else {
            frame.objects[i].object = &frame.owned[i];
            frame.owned[i] = Value::zero(start.type);
        }
    }
}

void Executor::endObjects(Frame& frame) {
    for (std::size_t i = 0; i < frame.function->objects.size(); ++i) {
        if (!frame.owned[i].isNone()) frame.owned[i] = Value();
    }
    values_.release(frame.owned);
}

bool Executor::isRunning(const Function& function) const {
    for (const Frame* frame = top_; frame; frame = frame->caller) {
        if (frame->function == &function) return true;
    }
    return false;
}

/// The instruction that a frame is at, or is waiting in.
Place Executor::placeOf(const Frame& frame) const {
    const Function& function = *frame.function;
    const auto next = static_cast<std::size_t>(frame.ip - function.code.data());
    return Place{function.source, function.places[next > 0 ? next - 1 : 0]};
}

Value Executor::boxed(Type type, Reg reg, const Frame& frame) {
    const Num* const numbers = frame.numbers();
    switch (type) {
    case Type::None: return {};
    case Type::Int: return numbers[reg].whole();
    case Type::Float: return numbers[reg].f;
    case Type::Vector: return MVector(numbers[reg].f, numbers[reg + 1].f, numbers[reg + 2].f);
    default: return *frame.objects[reg].object;
    }
}

Value Executor::valueOf(const Argument& argument, const Frame& frame) {
    if (argument.isConstant) return argument.constant;
    if (argument.step != 0) return addInts(frame.numbers()[argument.reg].whole(), argument.step);
    return boxed(argument.type, argument.reg, frame);
}

/// Puts a value into a register of the type, converted.
void Executor::deliver(Value value, Type type, Reg reg, Frame& frame) {
    switch (type) {
    case Type::None: break;
    case Type::Int: frame.numbers()[reg].i = value.asInt(); break;
    case Type::Float: frame.numbers()[reg].f = value.asFloat(); break;
    case Type::Vector: {
        const MVector vector = value.asVector();
        for (unsigned int i = 0; i < 3; ++i)
            frame.numbers()[reg + i].f = vector[i];
        break;
    }
    default:
        if (value.type() == type || type == Type::Any) {
            *frame.objects[reg].object = std::move(value);
        } else {
            *frame.objects[reg].object = value.convertedTo(type);
        }
    }
}

/// A call of a command, or of a name whose meaning has to be found first.
void Executor::callOther(std::size_t call) {
    Function& caller = *top_->function;
    CallSite& site = caller.calls[call];
    if (site.stamp != surroundings_.stamp()) {
        surroundings_.resolve(site, caller);
        if (site.target.procedure) {
            const std::uint64_t stamp = std::exchange(site.stamp, 0); // not resolved while it does not fit
            caller.links[call] = linkOf(site, stamp);
            site.stamp = stamp;
        }
    }
    if (site.target.procedure) {
        callProcedure(caller.links[call]);
    } else {
        callCommand(site);
    }
}

void Executor::checkCount(const Function& function, std::size_t given) {
    if (function.parameters.size() == given) return;
    throw Error("Wrong number of arguments on call to " + function.name + ": " + std::to_string(given) +
                " instead of " + std::to_string(function.parameters.size()) + ".");
}

/// Numbers are handed over by plain copies, whatever needs more is left to every call.
Link Executor::linkOf(CallSite& site, std::uint64_t stamp) {
    Function& function = *site.target.procedure;
    checkCount(function, site.arguments.size() + site.constants.size());
    Handover& handover = site.handover;
    handover = {};
    const bool isBare = function.objects.empty() && function.firstSet == function.numbers.size();
    const bool isOneInt = isBare && site.arguments.size() == 1 && !site.arguments.front().isConstant &&
                          site.arguments.front().type == Type::Int &&
                          function.parameters.front().type == Type::Int &&
                          function.parameters.front().reg == 0;
    for (std::size_t i = isOneInt ? 1 : 0; i < function.parameters.size(); ++i) {
        const Parameter& parameter = function.parameters[i];
        const Argument* const argument = site.arguments.empty() ? nullptr : &site.arguments[i];
        const bool isConstant = !argument || argument->isConstant;
        const Value& constant = argument ? argument->constant : site.constants[i];
        if (isConstant && parameter.type == Type::Int && constant.isNumber()) {
            handover.presets.push_back({parameter.reg, Num{.i = constant.asInt()}});
        } else if (isConstant && parameter.type == Type::Float && constant.isNumber()) {
            handover.presets.push_back({parameter.reg, Num{.f = constant.asFloat()}});
        } else if (!isConstant && isNumeric(parameter.type) && parameter.type == argument->type &&
                   argument->step == 0) {
            const Reg width = parameter.type == Type::Vector ? 3 : 1;
            for (Reg k = 0; k < width; ++k) {
                handover.moves.push_back(
                    {static_cast<Reg>(parameter.reg + k), static_cast<Reg>(argument->reg + k)});
            }
        } else {
            handover.others.push_back(i);
        }
    }
    Link link;
    link.stamp = stamp;
    link.procedure = &function;
    link.code = function.code.data();
    link.moves = handover.moves.data();
    link.moveCount = static_cast<std::uint32_t>(handover.moves.size());
    link.frameSize = static_cast<std::uint32_t>(kFrameHead + function.registers);
    link.hasRest = !handover.presets.empty() || !handover.others.empty();
    link.isPlain = isBare && !link.hasRest;
    link.isOneInt = isOneInt;
    if (isOneInt) {
        link.from = site.arguments.front().reg;
        link.step = site.arguments.front().step;
    }
    return link;
}

/// The arguments that are not mere numbers in registers.
void Executor::handOverRest() {
    const Frame& caller = *top_->caller;
    const CallSite& site = caller.function->calls[static_cast<std::size_t>(caller.ip[-1].imm)];
    for (const Handover::Preset& preset : site.handover.presets)
        top_->numbers()[preset.to] = preset.value;
    try {
        for (const std::size_t i : site.handover.others) {
            const Parameter& parameter = top_->function->parameters[i];
            if (site.arguments.empty()) {
                bindValue(parameter, site.constants[i]);
            } else {
                bind(parameter, site.arguments[i], caller);
            }
        }
    } catch (const Error&) {
        leave(); // what does not fit is the caller's fault
        throw;
    }
}

void Executor::bind(const Parameter& parameter, const Argument& argument, const Frame& caller) {
    if (argument.isConstant) {
        bindValue(parameter, argument.constant);
    } else if (isArray(parameter.type) && !isNumeric(argument.type) &&
               caller.objects[argument.reg].object->type() == parameter.type) {
        top_->objects[parameter.reg].object = caller.objects[argument.reg].object; // by reference
    } else {
        bindValue(parameter, valueOf(argument, caller));
    }
}

void Executor::bindValue(const Parameter& parameter, const Value& value) {
    if (!isConvertible(value.type(), parameter.type) && !(value.isNone() && isArray(parameter.type))) {
        throw Error("Wrong type of argument \"$" + parameter.name + "\" on call to " + top_->function->name +
                    ": " + std::string(nameOf(value.type())) + " instead of " +
                    std::string(nameOf(parameter.type)) + ".");
    }
    deliver(value, parameter.type, parameter.reg, *top_);
}

void Executor::callCommand(const CallSite& site) {
    // The command may change what the site stands for, and it may remove itself.
    const std::shared_ptr<const Command> command = site.target.command;
    Frame& frame = *top_; // stays where it is
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
    const Instr& instr = frame.ip[-1];
    deliver(std::move(result), static_cast<Type>(instr.b), instr.a, frame);
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
    Frame& frame = *top_; // stays where it is
    const std::size_t count = site.arguments.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Argument& argument = site.arguments[i];
        if (argument.isConstant || isNumeric(argument.type)) {
            numbers[i] = valueOf(argument, frame);
            arguments[i] = &numbers[i];
        } else {
            arguments[i] = frame.objects[argument.reg].object;
        }
    }
    Value result = site.function->values(library_, std::span<Value* const>(arguments, count));
    deliver(std::move(result), site.resultType, site.result, frame);
}

/// Ends the running procedure with the value of a register. True when it is the one that `run` started; then
/// `result` is the value. Otherwise the value goes to where the caller wants it.
bool Executor::returnFrom(Type type, Reg reg, const Frame* below, Value& result) {
    Frame& frame = *top_; // stays where it is
    const bool outermost = frame.caller == below;
    Value value;
    if (!isNumeric(type) && type != Type::None && frame.objects[reg].object == &frame.owned[reg]) {
        value = std::move(frame.owned[reg]);
    } else {
        value = boxed(type, reg, frame);
    }
    leave();
    if (outermost) {
        result = std::move(value);
        return true;
    }
    const Instr& site = top_->ip[-1];
    deliver(std::move(value), static_cast<Type>(site.b), site.a, *top_);
    return false;
}

} // namespace vesk::mel
