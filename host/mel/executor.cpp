#include "host/mel/executor.h"

#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace vesk::mel {

namespace {

MVector vectorAt(const Num* numbers) { return {numbers[0].f, numbers[1].f, numbers[2].f}; }

void put(Num* to, const MVector& vector) {
    to[0].f = vector.x;
    to[1].f = vector.y;
    to[2].f = vector.z;
}

} // namespace

void Executor::resetSteps() {
    const std::size_t limit = limits_.steps;
    stepsInStock_ = limit == Limits::kNoStepLimit ? std::numeric_limits<std::size_t>::max() : limit;
    stepsLeft_ = 1; // the first step takes the first batch
}

/// Hands out a batch of steps, of which the present one is the first.
void Executor::takeSteps() {
    constexpr std::size_t batch = 1U << 18U; // some milliseconds
    stepsLeft_ = 1; // so that a script which catches an error from here gets no further
    if (surroundings_.isInterrupted()) throw Error("Interrupted.");
    if (stepsInStock_ == 0) limitReached(limits_, &Limits::steps);
    stepsLeft_ = std::min(batch, stepsInStock_);
    stepsInStock_ -= stepsLeft_;
}

Value Executor::run(Function& function, std::span<const Value> arguments) {
    const Frame* const below = top_;
    const std::size_t handlers = handlers_.size();
    checkCount(function, arguments.size());
    enter(function);
    try {
        for (std::size_t i = 0; i < arguments.size(); ++i)
            bindValue(function.parameters[i], arguments[i]);
    } catch (const Error&) {
        leave();
        throw;
    }
    for (;;) {
        try {
            return loop(below);
        } catch (Error& error) {
            recover(std::move(error), below, handlers);
        } catch (const std::bad_alloc&) {
            recover(Error("There is not enough memory."), below, handlers);
        } catch (const std::exception& error) {
            recover(Error(error.what()), below, handlers);
        }
    }
}

/// Goes back to the innermost catch above the frame `below`; without one, throws the error on.
void Executor::recover(Error error, const Frame* below, std::size_t handlers) {
    while (top_ != below) {
        const Frame& frame = *top_;
        const Place place = placeOf(frame);
        // A place in a generated text helps less than one in the file that ran it.
        const bool vague = !error.isPlaced() || (error.place().file().empty() && !place.file().empty());
        if (vague) error.setPlace(place);
        error.addCaller({frame.function->name, place});
        if (handlers_.size() > handlers && handlers_.back().frame == top_) {
            const Handler handler = handlers_.back();
            handlers_.pop_back();
            top_->ip = handler.ip;
            if (!handler.quiet) surroundings_.report(error);
            return;
        }
        leave();
    }
    throw error;
}

// Each instruction is a label, and ends with a jump to the next one's: so every kind of instruction has a
// jump of its own, which the processor learns to foretell. `o` are the registers of objects of the running
// procedure; those of numbers lie right behind its frame. The macros keep the table readable: each line says
// what its instruction does.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#define N(reg) frame->numbers()[reg]
#define NA N(ip[-1].a)
#define NB N(ip[-1].b)
#define NC N(ip[-1].c)
#define OA (*o[ip[-1].a].object)
#define OB (*o[ip[-1].b].object)
#define OC (*o[ip[-1].c].object)
#define NEXT goto* labels[static_cast<std::size_t>((ip++)->op)]
#define ON(name, ...)                                                                                        \
    at_##name : __VA_ARGS__;                                                                                 \
    NEXT
#define JUMP(name, condition)                                                                                \
    at_##name : if (condition) {                                                                             \
        if (ip[-1].imm < 0) countStep();                                                                     \
        ip += ip[-1].imm;                                                                                    \
    }                                                                                                        \
    NEXT

Value Executor::loop(const Frame* below) {
    static const void* const labels[] = {
#define VESK_MEL_LABEL(name) &&at_##name,
        VESK_MEL_OPCODES(VESK_MEL_LABEL)
#undef VESK_MEL_LABEL
    };
    Frame* frame = nullptr;
    const Instr* ip = nullptr;
    Num* o = nullptr;
    const auto resume = [&] {
        frame = top_;
        ip = frame->ip;
        o = frame->objects;
    };
    const auto global = [&]() -> Num* {
        return frame->function->globals[static_cast<std::size_t>(ip[-1].imm)]->numbers;
    };
    Value result;
    resume();
    try {
        NEXT;
        ON(MoveNumber, NA = NB);
        ON(MoveVector, put(&NA, vectorAt(&NB)));
        ON(MoveObject, OA = OB);
        ON(TakeObject, OA = std::move(OB));
        ON(AssignMatrix, assignMatrix(OA, OB));
        ON(ZeroObject, OA = Value::zero(static_cast<Type>(ip[-1].b)));
        ON(MakeVector, put(&NA, {NB.f, NC.f, N(ip[-1].imm).f}));
        ON(SplatVector, put(&NA, {NB.f, NB.f, NB.f}));

        ON(IntToFloat, NA.f = NB.whole());
        ON(FloatToInt, NA.i = truncated(NB.f));
        ON(VectorLength, NA.f = vectorAt(&NB).length());
        ON(IntToText, OA = Value(NB.whole()).asString());
        ON(FloatToText, OA = Value(NB.f).asString());
        ON(VectorToText, OA = Value(vectorAt(&NB)).asString());
        ON(BoxInt, OA = Value(NB.whole()));
        ON(BoxFloat, OA = Value(NB.f));
        ON(BoxVector, OA = Value(vectorAt(&NB)));
        ON(UnboxInt, NA.i = OB.asInt());
        ON(UnboxFloat, NA.f = OB.asFloat());
        ON(UnboxVector, put(&NA, OB.asVector()));
        ON(ConvertObject, OA = OB.convertedTo(static_cast<Type>(ip[-1].c)));
        ON(AssignAny, OA = OB.convertedTo(OA.type()));
        ON(DeclareAny, declareAny(OA, static_cast<Type>(ip[-1].b)));

        ON(AddInt, NA.i = addInts(NB.whole(), NC.whole()));
        ON(SubInt, NA.i = subInts(NB.whole(), NC.whole()));
        ON(MulInt, NA.i = mulInts(NB.whole(), NC.whole()));
        ON(DivInt, NA.i = divInts(NB.whole(), NC.whole()));
        ON(ModInt, NA.i = modInts(NB.whole(), NC.whole()));
        ON(AddFloat, NA.f = NB.f + NC.f);
        ON(SubFloat, NA.f = NB.f - NC.f);
        ON(MulFloat, NA.f = NB.f * NC.f);
        ON(DivFloat, NA.f = divFloats(NB.f, NC.f));
        ON(ModFloat, NA.f = modFloats(NB.f, NC.f));
        ON(AddVector, put(&NA, vectorAt(&NB) + vectorAt(&NC)));
        ON(SubVector, put(&NA, vectorAt(&NB) - vectorAt(&NC)));
        ON(DivVector, put(&NA, divVectors(vectorAt(&NB), vectorAt(&NC))));
        ON(ModVector, put(&NA, modVectors(vectorAt(&NB), vectorAt(&NC))));
        ON(CrossVector, put(&NA, vectorAt(&NB) ^ vectorAt(&NC)));
        ON(ScaleVector, put(&NA, vectorAt(&NB) * NC.f));
        ON(DotVector, NA.f = vectorAt(&NB) * vectorAt(&NC));
        ON(NegateInt, NA.i = subInts(0, NB.whole()));
        ON(NegateFloat, NA.f = -NB.f);
        ON(NegateVector, put(&NA, -vectorAt(&NB)));
        ON(StepInt, NA.i = addInts(NB.whole(), ip[-1].imm));
        ON(StepFloat, NA.f = NB.f + ip[-1].imm);
        ON(Join, join(OA, OB, OC));
        ON(Append, append(OA, OB));
        ON(BinaryAny, OA = operate(static_cast<BinaryOp>(ip[-1].imm), OB, OC));
        ON(NegateAny, OA = negated(OB));

        ON(LessInt, NA.i = NB.i < NC.i);
        ON(LessEqualInt, NA.i = NB.i <= NC.i);
        ON(EqualInt, NA.i = NB.i == NC.i);
        ON(NotEqualInt, NA.i = NB.i != NC.i);
        ON(LessFloat, NA.i = NB.f < NC.f);
        ON(LessEqualFloat, NA.i = NB.f <= NC.f);
        ON(EqualFloat, NA.i = NB.f == NC.f);
        ON(NotEqualFloat, NA.i = NB.f != NC.f);
        ON(EqualVector, NA.i = vectorAt(&NB) == vectorAt(&NC));
        ON(NotEqualVector, NA.i = !(vectorAt(&NB) == vectorAt(&NC)));
        ON(CompareText,
           NA.i = compareTexts(static_cast<BinaryOp>(ip[-1].imm), *OB.ifString(), *OC.ifString()));
        ON(TruthOfFloat, NA.i = NB.f != 0.0);
        ON(TruthOfAny, NA.i = OB.asBool());
        ON(Not, NA.i = NB.i == 0);

        JUMP(Jump, true);
        JUMP(StepJumpLess, (NA.i = addInts(NA.whole(), smallOf(ip[-1].c))) < NB.i);
        JUMP(StepJumpLessEqual, (NA.i = addInts(NA.whole(), smallOf(ip[-1].c))) <= NB.i);
        JUMP(AddJumpLess, (NA.i = addInts(NA.whole(), NC.whole())) < NB.i);
        JUMP(AddJumpLessEqual, (NA.i = addInts(NA.whole(), NC.whole())) <= NB.i);
        JUMP(JumpIf, NA.i != 0);
        JUMP(JumpUnless, NA.i == 0);
        JUMP(JumpLessInt, NA.i < NB.i);
        JUMP(JumpLessEqualInt, NA.i <= NB.i);
        JUMP(JumpEqualInt, NA.i == NB.i);
        JUMP(JumpNotEqualInt, NA.i != NB.i);
        JUMP(JumpLessSmall, NA.i < smallOf(ip[-1].b));
        JUMP(JumpGreaterSmall, NA.i > smallOf(ip[-1].b));
        JUMP(JumpEqualSmall, NA.i == smallOf(ip[-1].b));
        JUMP(JumpNotEqualSmall, NA.i != smallOf(ip[-1].b));
        JUMP(JumpLessFloat, NA.f < NB.f);
        JUMP(JumpLessEqualFloat, NA.f <= NB.f);
        JUMP(JumpEqualFloat, NA.f == NB.f);
        JUMP(JumpNotEqualFloat, NA.f != NB.f);
        JUMP(JumpNotLessFloat, !(NA.f < NB.f));
        JUMP(JumpNotLessEqualFloat, !(NA.f <= NB.f));
        JUMP(JumpUnlessElement, isPastEnd(OB, NA.whole()));

        ON(GetInt, NA.i = elementIn<IntArray>(OB, NC.i));
        ON(GetFloat, NA.f = elementIn<FloatArray>(OB, NC.i));
        ON(GetFloatTwice, NA.f = N(ip[-1].imm).f = elementIn<FloatArray>(OB, NC.i));
        ON(GetFloatAt, NA.f = elementIn<FloatArray>(OB, elementIn<IntArray>(*o[ip[-1].imm].object, NC.i)));
        ON(GetVector, put(&NA, elementIn<VectorArray>(OB, NC.i)));
        ON(GetText, *OA.ifString() = elementIn<StringArray>(OB, NC.i));
        ON(GetAny, OA = elementOfAny(OB, NC.whole()));
        ON(SetInt, elementToSet<IntArray>(OA, NB.i) = NC.i);
        ON(SetFloat, elementToSet<FloatArray>(OA, NB.i) = NC.f);
        ON(SetVector, elementToSet<VectorArray>(OA, NB.i) = vectorAt(&NC));
        ON(SetText, elementToSet<StringArray>(OA, NB.i) = *OC.ifString());
        ON(SetAny, setElementOfAny(OA, NB.whole(), OC));
        ON(SizeOf, NA.i = static_cast<int>(OB.arraySize()));
        ON(MakeMatrix, OA = Matrix(ip[-1].b, ip[-1].c));
        ON(GetMatrix, NA.f = matrixElement(OB, NC.whole(), N(ip[-1].imm).whole()));
        ON(SetMatrix, setMatrixElement(OA, NB.whole(), NC.whole(), N(ip[-1].imm).f));

        ON(LoadNumber, NA = *global());
        ON(LoadVector, put(&NA, vectorAt(global())));
        ON(StoreNumber, *global() = NA);
        ON(StoreVector, put(global(), vectorAt(&NA)));

    at_Call : {
        frame->ip = ip;
        const auto index = static_cast<std::size_t>(ip[-1].imm);
        const Link& link = frame->function->links[index];
        if (link.stamp != surroundings_.stamp()) [[unlikely]] {
            callOther(index);
            resume();
            NEXT;
        }
        if (link.isOneInt) [[likely]] {
            frame = &callOneInt(link, *frame);
            ip = link.code;
            NEXT;
        }
        frame = link.isPlain ? &callPlain(link, *frame) : &callProcedure(link);
        ip = link.code;
        o = frame->objects;
        NEXT;
    }
        ON(CallNumbers,
           frame->function->numberCalls[static_cast<std::size_t>(ip[-1].imm)](library_, &NB, &NA));
        ON(CallValues, callLibrary(frame->function->libraryCalls[static_cast<std::size_t>(ip[-1].imm)]));
    at_ReturnSum:
        NA.i = addInts(NA.whole(), NC.whole());
    at_ReturnNumber : {
        Frame* const caller = frame->caller;
        // The number goes right to where the caller wants it, unless it has to be converted.
        if (caller == below) goto at_Return;
        if (const Instr* const next = caller->ip; next[-1].b == ip[-1].b) [[likely]] {
            caller->numbers()[next[-1].a] = NA;
            leave(*frame);
            frame = caller;
            ip = next;
            o = frame->objects;
            NEXT;
        }
    }
    at_Return:
        if (returnFrom(static_cast<Type>(ip[-1].b), ip[-1].a, below, result)) return result;
        resume();
        NEXT;
    at_ReturnNone:
        if (returnFrom(Type::None, 0, below, result)) return result;
        resume();
        NEXT;
        ON(Define,
           surroundings_.define(frame->function->unit->procedures[static_cast<std::size_t>(ip[-1].imm)]));
        ON(EnterCatch, handlers_.push_back({frame, ip + ip[-1].imm, ip[-1].a != 0}));
        ON(LeaveCatch, handlers_.pop_back());
    } catch (...) {
        // Unless the error came up while the running procedure was being left, it stands where it was thrown.
        if (top_ == frame) frame->ip = ip;
        throw;
    }
}

#pragma GCC diagnostic pop

} // namespace vesk::mel
