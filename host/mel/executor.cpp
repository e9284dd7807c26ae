#include "host/mel/executor.h"

#include "host/mel/operators.h"

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

template <class Array>
const Array& arrayIn(const Value& value) {
    return value.ifShared<Array>()->read();
}

/// An element, or zero past the end.
template <class Array>
typename Array::value_type elementIn(const Value& value, std::size_t index) {
    const Array& array = arrayIn<Array>(value);
    return index < array.size() ? array[index] : typename Array::value_type{};
}

} // namespace

void Executor::resetSteps() {
    const std::size_t limit = surroundings_.limits().steps;
    stepsInStock_ = limit == Limits::kNoStepLimit ? std::numeric_limits<std::size_t>::max() : limit;
    stepsLeft_ = 1; // the first step takes the first batch
}

/// Hands out a batch of steps, of which the present one is the first.
void Executor::takeSteps() {
    constexpr std::size_t batch = 1U << 18U; // some milliseconds
    stepsLeft_ = 1; // so that a script which catches an error from here gets no further
    if (surroundings_.isInterrupted()) throw Error("Interrupted.");
    if (stepsInStock_ == 0) limitReached(surroundings_.limits(), &Limits::steps);
    stepsLeft_ = std::min(batch, stepsInStock_);
    stepsInStock_ -= stepsLeft_;
}

Value Executor::run(Function& function, std::span<const Value> arguments, const Unit* unit) {
    const std::size_t base = frames_.size();
    const std::size_t handlers = handlers_.size();
    checkCount(function, arguments.size());
    enter(function, unit);
    try {
        for (std::size_t i = 0; i < arguments.size(); ++i)
            bindValue(function.parameters[i], arguments[i]);
    } catch (const Error&) {
        leave();
        throw;
    }
    for (;;) {
        try {
            return loop(base);
        } catch (Error& error) {
            recover(std::move(error), base, handlers);
        } catch (const std::bad_alloc&) {
            recover(Error("There is not enough memory."), base, handlers);
        } catch (const std::exception& error) {
            recover(Error(error.what()), base, handlers);
        }
    }
}

/// Goes back to the innermost catch above `base` frames; without one, throws the error on.
void Executor::recover(Error error, std::size_t base, std::size_t handlers) {
    while (frames_.size() > base) {
        const Frame& frame = frames_.back();
        const Place place = placeOf(frame);
        // A place in a generated text helps less than one in the file that ran it.
        const bool vague = !error.isPlaced() || (error.place().file().empty() && !place.file().empty());
        if (vague) error.setPlace(place);
        error.addCaller({frame.function->name, place});
        if (handlers_.size() > handlers && handlers_.back().depth == frames_.size()) {
            const Handler handler = handlers_.back();
            handlers_.pop_back();
            frames_.back().ip = handler.ip;
            if (!handler.quiet) surroundings_.report(error);
            return;
        }
        leave();
    }
    throw error;
}

// One case an instruction; `n` and `o` are the registers of the running procedure. The macros keep the table
// readable: each line says what its instruction does.
#define NA n[i.a]
#define NB n[i.b]
#define NC n[i.c]
#define OA (*o[i.a].at)
#define OB (*o[i.b].at)
#define OC (*o[i.c].at)
#define JUMP_WHEN(condition)                                                                                 \
    if (condition) {                                                                                         \
        ip += i.imm;                                                                                         \
        if (i.imm < 0) countStep();                                                                          \
    }                                                                                                        \
    break

Value Executor::loop(std::size_t base) {
    std::size_t depth = frames_.size();
    const Instr* ip = frames_.back().ip;
    Num* n = frames_.back().numbers;
    Cell* o = frames_.back().objects;
    Function* function = frames_.back().function;
    const auto resume = [&] {
        depth = frames_.size();
        const Frame& frame = frames_.back();
        ip = frame.ip;
        n = frame.numbers;
        o = frame.objects;
        function = frame.function;
    };
    const auto global = [&](const Instr& i) -> Num* {
        return function->globals[static_cast<std::size_t>(i.imm)]->numbers;
    };
    try {
        for (;;) {
            const Instr& i = *ip++;
            switch (i.op) {
            case Op::MoveNumber: NA = NB; break;
            case Op::MoveVector: put(&NA, vectorAt(&NB)); break;
            case Op::MoveObject: OA = OB; break;
            case Op::TakeObject: OA = std::move(OB); break;
            case Op::ZeroObject: OA = Value::zero(static_cast<Type>(i.b)); break;
            case Op::MakeVector: put(&NA, {NB.f, NC.f, n[i.imm].f}); break;
            case Op::SplatVector: put(&NA, {NB.f, NB.f, NB.f}); break;

            case Op::IntToFloat: NA.f = NB.i; break;
            case Op::FloatToInt: NA.i = truncated(NB.f); break;
            case Op::VectorLength: NA.f = vectorAt(&NB).length(); break;
            case Op::IntToText: OA = Value(NB.i).asString(); break;
            case Op::FloatToText: OA = Value(NB.f).asString(); break;
            case Op::VectorToText: OA = Value(vectorAt(&NB)).asString(); break;
            case Op::BoxInt: OA = Value(NB.i); break;
            case Op::BoxFloat: OA = Value(NB.f); break;
            case Op::BoxVector: OA = Value(vectorAt(&NB)); break;
            case Op::UnboxInt: NA.i = OB.asInt(); break;
            case Op::UnboxFloat: NA.f = OB.asFloat(); break;
            case Op::UnboxVector: put(&NA, OB.asVector()); break;
            case Op::ConvertObject: OA = OB.convertedTo(static_cast<Type>(i.c)); break;
            case Op::AssignAny: OA = OB.convertedTo(OA.type()); break;
            case Op::DeclareAny: declareAny(OA, static_cast<Type>(i.b)); break;

            case Op::AddInt: NA.i = addInts(NB.i, NC.i); break;
            case Op::SubInt: NA.i = subInts(NB.i, NC.i); break;
            case Op::MulInt: NA.i = mulInts(NB.i, NC.i); break;
            case Op::DivInt: NA.i = divInts(NB.i, NC.i); break;
            case Op::ModInt: NA.i = modInts(NB.i, NC.i); break;
            case Op::AddFloat: NA.f = NB.f + NC.f; break;
            case Op::SubFloat: NA.f = NB.f - NC.f; break;
            case Op::MulFloat: NA.f = NB.f * NC.f; break;
            case Op::DivFloat: NA.f = divFloats(NB.f, NC.f); break;
            case Op::ModFloat: NA.f = modFloats(NB.f, NC.f); break;
            case Op::AddVector: put(&NA, vectorAt(&NB) + vectorAt(&NC)); break;
            case Op::SubVector: put(&NA, vectorAt(&NB) - vectorAt(&NC)); break;
            case Op::DivVector: put(&NA, divVectors(vectorAt(&NB), vectorAt(&NC))); break;
            case Op::ModVector: put(&NA, modVectors(vectorAt(&NB), vectorAt(&NC))); break;
            case Op::CrossVector: put(&NA, vectorAt(&NB) ^ vectorAt(&NC)); break;
            case Op::ScaleVector: put(&NA, vectorAt(&NB) * NC.f); break;
            case Op::DotVector: NA.f = vectorAt(&NB) * vectorAt(&NC); break;
            case Op::NegateInt: NA.i = subInts(0, NB.i); break;
            case Op::NegateFloat: NA.f = -NB.f; break;
            case Op::NegateVector: put(&NA, -vectorAt(&NB)); break;
            case Op::StepInt: NA.i = addInts(NB.i, i.imm); break;
            case Op::StepFloat: NA.f = NB.f + i.imm; break;
            case Op::Join: join(OA, OB, OC); break;
            case Op::Append: append(OA, OB); break;
            case Op::BinaryAny: OA = operate(static_cast<BinaryOp>(i.imm), OB, OC); break;
            case Op::NegateAny: OA = negated(OB); break;

            case Op::LessInt: NA.i = NB.i < NC.i; break;
            case Op::LessEqualInt: NA.i = NB.i <= NC.i; break;
            case Op::EqualInt: NA.i = NB.i == NC.i; break;
            case Op::NotEqualInt: NA.i = NB.i != NC.i; break;
            case Op::LessFloat: NA.i = NB.f < NC.f; break;
            case Op::LessEqualFloat: NA.i = NB.f <= NC.f; break;
            case Op::EqualFloat: NA.i = NB.f == NC.f; break;
            case Op::NotEqualFloat: NA.i = NB.f != NC.f; break;
            case Op::EqualVector: NA.i = vectorAt(&NB) == vectorAt(&NC); break;
            case Op::NotEqualVector: NA.i = !(vectorAt(&NB) == vectorAt(&NC)); break;
            case Op::CompareText:
                NA.i = compareTexts(static_cast<BinaryOp>(i.imm), *OB.ifString(), *OC.ifString());
                break;
            case Op::TruthOfFloat: NA.i = NB.f != 0.0; break;
            case Op::TruthOfAny: NA.i = OB.asBool(); break;
            case Op::Not: NA.i = NB.i == 0; break;

            case Op::Jump: JUMP_WHEN(true);
            case Op::JumpIf: JUMP_WHEN(NA.i != 0);
            case Op::JumpUnless: JUMP_WHEN(NA.i == 0);
            case Op::JumpLessInt: JUMP_WHEN(NA.i < NB.i);
            case Op::JumpLessEqualInt: JUMP_WHEN(NA.i <= NB.i);
            case Op::JumpEqualInt: JUMP_WHEN(NA.i == NB.i);
            case Op::JumpNotEqualInt: JUMP_WHEN(NA.i != NB.i);
            case Op::JumpLessFloat: JUMP_WHEN(NA.f < NB.f);
            case Op::JumpLessEqualFloat: JUMP_WHEN(NA.f <= NB.f);
            case Op::JumpEqualFloat: JUMP_WHEN(NA.f == NB.f);
            case Op::JumpNotEqualFloat: JUMP_WHEN(NA.f != NB.f);
            case Op::JumpNotLessFloat: JUMP_WHEN(!(NA.f < NB.f));
            case Op::JumpNotLessEqualFloat: JUMP_WHEN(!(NA.f <= NB.f));
            case Op::JumpUnlessElement: JUMP_WHEN(isPastEnd(OB, NA.i));

            case Op::GetInt: NA.i = elementIn<IntArray>(OB, checkedIndex(NC.i)); break;
            case Op::GetFloat: NA.f = elementIn<FloatArray>(OB, checkedIndex(NC.i)); break;
            case Op::GetVector: put(&NA, elementIn<VectorArray>(OB, checkedIndex(NC.i))); break;
            case Op::GetText: *OA.ifString() = elementIn<StringArray>(OB, checkedIndex(NC.i)); break;
            case Op::GetAny: OA = elementOfAny(OB, NC.i); break;
            case Op::SetInt: elementToSet<IntArray>(OA, NB.i) = NC.i; break;
            case Op::SetFloat: elementToSet<FloatArray>(OA, NB.i) = NC.f; break;
            case Op::SetVector: elementToSet<VectorArray>(OA, NB.i) = vectorAt(&NC); break;
            case Op::SetText: elementToSet<StringArray>(OA, NB.i) = *OC.ifString(); break;
            case Op::SetAny: setElementOfAny(OA, NB.i, OC); break;
            case Op::SizeOf: NA.i = static_cast<int>(OB.arraySize()); break;
            case Op::MakeMatrix: OA = Matrix(i.b, i.c); break;
            case Op::GetMatrix: NA.f = matrixElement(OB, NC.i, n[i.imm].i); break;
            case Op::SetMatrix: setMatrixElement(OA, NB.i, NC.i, n[i.imm].f); break;

            case Op::LoadNumber: NA = *global(i); break;
            case Op::LoadVector: put(&NA, vectorAt(global(i))); break;
            case Op::StoreNumber: *global(i) = NA; break;
            case Op::StoreVector: put(global(i), vectorAt(&NA)); break;

            case Op::Call:
                frames_.back().ip = ip;
                call(function->calls[static_cast<std::size_t>(i.imm)]);
                if (frames_.size() != depth) resume();
                break;
            case Op::CallNumbers:
                builtinAt(static_cast<std::size_t>(i.imm)).numbers(library_, &NB, &NA);
                break;
            case Op::CallValues: callLibrary(function->libraryCalls[static_cast<std::size_t>(i.imm)]); break;
            case Op::Return:
            case Op::ReturnNone: {
                Value result;
                const Type type = i.op == Op::Return ? static_cast<Type>(i.b) : Type::None;
                if (returnFrom(type, i.a, base, result)) return result;
                resume();
                break;
            }
            case Op::Define:
                surroundings_.define(frames_.back().unit->procedures[static_cast<std::size_t>(i.imm)]);
                break;
            case Op::EnterCatch: handlers_.push_back({depth, ip + i.imm, i.a != 0}); break;
            case Op::LeaveCatch: handlers_.pop_back(); break;
            }
        }
    } catch (...) {
        // Unless the error came up while the running procedure was being left, it stands where it was thrown.
        if (frames_.size() == depth) frames_.back().ip = ip;
        throw;
    }
}

} // namespace vesk::mel
