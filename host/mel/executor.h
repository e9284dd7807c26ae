#pragma once
// The register machine.

#include "host/mel/code.h"
#include "host/mel/frame_stack.h"
#include "host/mel/interpreter.h"
#include "host/mel/library.h"
#include "host/mel/operators.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <vector>

namespace vesk::mel {

/// What the register machine asks of the interpreter around it.
class Surroundings {
  public:
    virtual ~Surroundings() = default;
    /// Finds what the site's name means now. Throws Error when there is nothing.
    virtual void resolve(CallSite& site, const Function& caller) = 0;
    virtual void define(const std::shared_ptr<Function>& procedure) = 0;
    /// Writes an error to the log unless it is there already.
    virtual void report(Error& error) = 0;
    virtual Machine& machine() = 0;
    virtual const Limits& limits() const = 0;
    /// Whether somebody outside wants the script to stop.
    virtual bool isInterrupted() const = 0;

    /// Another number whenever a name may have got another meaning.
    std::uint64_t stamp() const { return procedureVersion + commands.version(); }

    CommandTable commands;
    std::uint64_t procedureVersion = 1; ///< above 0, the stamp of a call that was never resolved
};

/// Runs compiled code. Procedures that call procedures do not use the stack of C++; commands that run code
/// again do.
class Executor {
  public:
    explicit Executor(Surroundings& surroundings)
        : surroundings_(surroundings), limits_(surroundings.limits()), library_(limits_) {}

    /// Runs a procedure with arguments, or a statement. Throws Error, with its place and the
    /// running procedures down to this one.
    Value run(Function& function, std::span<const Value> arguments);
    /// Runs a command; arrays among the words are spread.
    Value runCommand(const Command& command, std::string_view name, std::span<const Value> words,
                     Place place);

    /// Starts counting steps anew.
    void resetSteps();
    LibraryState& library() { return library_; }
    bool isRunning(const Function& function) const;

  private:
    /// Lies in the stack of registers, right in front of its own: first those of numbers, then those of
    /// objects.
    struct Frame {
        Frame* caller;   ///< the frame below, also of another run
        const Instr* ip; ///< the next instruction, unless this is the running frame
        Function* function;
        Num* objects;
        Value* owned; ///< what registers of objects hold; null when there are none

        Num* numbers() { return reinterpret_cast<Num*>(this + 1); }
        const Num* numbers() const { return reinterpret_cast<const Num*>(this + 1); }
    };
    static constexpr std::size_t kFrameHead = sizeof(Frame) / sizeof(Num);
    static_assert(sizeof(Frame) % sizeof(Num) == 0 && std::is_trivially_destructible_v<Frame>);

    struct Handler {
        const Frame* frame = nullptr; ///< that set it
        const Instr* ip = nullptr;
        bool quiet = false;
    };

    // executor.cpp
    Value loop(const Frame* below);
    void recover(Error error, const Frame* below, std::size_t handlers);
    void countStep() {
        if (--stepsLeft_ == 0) [[unlikely]]
            takeSteps();
    }
    /// Before a frame more, which is a step too.
    void checkFrame() {
        if (framesLeft_ == 0) [[unlikely]]
            limitReached(limits_, &Limits::recursion);
        countStep();
    }
    [[gnu::noinline]] void takeSteps();

    // executor_calls.cpp
    Frame& enter(Function& function);
    void leave();
    void leave(Frame& frame);
    void startObjects(Frame& frame);
    void endObjects(Frame& frame);
    Place placeOf(const Frame& frame) const;
    static Value boxed(Type type, Reg reg, const Frame& frame);
    static Value valueOf(const Argument& argument, const Frame& frame);
    static void deliver(Value value, Type type, Reg reg, Frame& frame);
    Frame& callProcedure(const Link& link);
    Frame& enterPlain(const Link& link, Frame& caller);
    Frame& callPlain(const Link& link, Frame& caller);
    Frame& callOneInt(const Link& link, Frame& caller);
    void callOther(std::size_t call);
    static Link linkOf(CallSite& site, std::uint64_t stamp);
    void handOverRest();
    void callCommand(const CallSite& site);
    void bind(const Parameter& parameter, const Argument& argument, const Frame& caller);
    void bindValue(const Parameter& parameter, const Value& value);
    static void checkCount(const Function& function, std::size_t given);
    void callLibrary(const LibrarySite& site);
    bool returnFrom(Type type, Reg reg, const Frame* below, Value& result);

    // executor_objects.cpp
    static std::size_t checkedIndex(int index);
    template <class Array>
    static typename Array::value_type elementIn(const Value& value, std::int64_t index);
    template <class Array>
    static typename Array::value_type missingElement(int index);
    void checkGrowth(std::size_t index) const;
    template <class Array>
    typename Array::value_type& elementToSet(Value& value, std::int64_t index) const;
    template <class Array>
    typename Array::value_type& elementToMake(Value& value, int index) const;
    void checkText(std::size_t size) const;
    void join(Value& to, const Value& left, const Value& right) const;
    void append(Value& to, const Value& right) const;
    static Value elementOfAny(const Value& array, int index);
    void setElementOfAny(Value& array, int index, const Value& item) const;
    static void assignMatrix(Value& to, const Value& from);
    static double matrixElement(const Value& value, int row, int column);
    static void setMatrixElement(Value& value, int row, int column, double item);
    static void declareAny(Value& variable, Type type);
    static bool isPastEnd(const Value& list, int index);

    Surroundings& surroundings_;
    const Limits& limits_;
    LibraryState library_;
    Frame* top_ = nullptr; ///< of the running procedure
    std::vector<Handler> handlers_;
    FrameStack<Num> registers_;
    FrameStack<Value> values_;
    std::size_t framesLeft_ = 0;   ///< that the limit of recursion leaves
    std::size_t stepsLeft_ = 0;    ///< until `takeSteps` looks at what there is
    std::size_t stepsInStock_ = 0; ///< that the limit leaves beyond those
};

// What every call and return does, inline in the loop.

[[gnu::always_inline]] inline Executor::Frame& Executor::enter(Function& function) {
    Frame* const caller = top_;
    if (!caller) framesLeft_ = limits_.recursion;
    checkFrame();
    Num* const memory = registers_.take(kFrameHead + function.registers);
    Num* const numbers = memory + kFrameHead;
    Num* const objects = numbers + function.numbers.size();
    Frame& frame = *new (memory) Frame{caller, function.code.data(), &function, objects, nullptr};
    for (std::size_t i = function.firstSet; i < function.numbers.size(); ++i)
        numbers[i] = function.numbers[i];
    --framesLeft_;
    top_ = &frame;
    if (!function.objects.empty()) startObjects(frame);
    return frame;
}

/// The running one, `top_`, that the caller has at hand.
[[gnu::always_inline]] inline void Executor::leave(Frame& frame) {
    if (frame.owned) [[unlikely]]
        endObjects(frame);
    ++framesLeft_;
    top_ = frame.caller;
    registers_.release(reinterpret_cast<Num*>(&frame));
}

inline void Executor::leave() { leave(*top_); }

/// The frame of a procedure that starts without anything set up: as short as can be, for the sake of
/// recursion.
[[gnu::always_inline]] inline Executor::Frame& Executor::enterPlain(const Link& link, Frame& caller) {
    checkFrame();
    Num* const memory = registers_.take(link.frameSize);
    Frame& frame = *new (memory) Frame{&caller, link.code, link.procedure, nullptr, nullptr};
    --framesLeft_;
    top_ = &frame;
    return frame;
}

/// Makes the procedure that the running one calls the running one; its return delivers the result.
[[gnu::always_inline]] inline Executor::Frame& Executor::callOneInt(const Link& link, Frame& caller) {
    Frame& frame = enterPlain(link, caller);
    frame.numbers()[0].i = addInts(caller.numbers()[link.from].whole(), link.step);
    return frame;
}

[[gnu::always_inline]] inline Executor::Frame& Executor::callPlain(const Link& link, Frame& caller) {
    Frame& frame = enterPlain(link, caller);
    const Num* const from = caller.numbers();
    Num* const to = frame.numbers();
    const Handover::Move* move = link.moves;
    for (std::uint32_t i = 0; i < link.moveCount; ++i, ++move)
        to[move->to] = from[move->from];
    return frame;
}

/// The same for every procedure.
[[gnu::noinline]] inline Executor::Frame& Executor::callProcedure(const Link& link) {
    if (link.isOneInt) return callOneInt(link, *top_);
    const Num* const from = top_->numbers();
    Frame& frame = enter(*link.procedure);
    Num* const to = frame.numbers();
    const Handover::Move* move = link.moves;
    for (std::uint32_t i = 0; i < link.moveCount; ++i, ++move)
        to[move->to] = from[move->from];
    if (link.hasRest) handOverRest();
    return frame;
}

// Element access, inline where the element is there. A negative index is beyond every size too.

template <class Array>
typename Array::value_type Executor::elementIn(const Value& value, std::int64_t index) {
    const Array* const array = value.as<Shared<Array>>().get();
    const auto at = static_cast<std::size_t>(index);
    if (array && at < array->size()) [[likely]]
        return (*array)[at];
    return missingElement<Array>(static_cast<int>(index));
}

template <class Array>
typename Array::value_type& Executor::elementToSet(Value& value, std::int64_t index) const {
    Array* const array = value.as<Shared<Array>>().sole();
    const auto at = static_cast<std::size_t>(index);
    if (array && at < array->size()) [[likely]]
        return (*array)[at];
    return elementToMake<Array>(value, static_cast<int>(index));
}

/// Past the end there are zeros.
template <class Array>
[[gnu::noinline]] typename Array::value_type Executor::missingElement(int index) {
    checkedIndex(index);
    return {};
}

/// The array becomes this holder's own and grows to hold the element.
template <class Array>
[[gnu::noinline]] typename Array::value_type& Executor::elementToMake(Value& value, int index) const {
    const std::size_t at = checkedIndex(index);
    Array* const own = value.as<Shared<Array>>().sole();
    Array& array = own ? *own : value.as<Shared<Array>>().write();
    if (at < array.size()) return array[at];
    if (at >= limits_.arraySize) checkGrowth(at);
    if (at == array.size()) return array.emplace_back(); // most arrays grow element by element
    array.resize(at + 1);
    return array[at];
}

} // namespace vesk::mel
