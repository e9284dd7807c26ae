#pragma once
// The register machine.

#include "host/mel/code.h"
#include "host/mel/frame_stack.h"
#include "host/mel/interpreter.h"
#include "host/mel/library.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vesk::mel {

/// What the register machine asks of the interpreter around it.
class Surroundings {
  public:
    virtual ~Surroundings() = default;
    /// Finds what the site's name means now. Throws Error when there is nothing.
    virtual void resolve(CallSite& site, const Function& caller) = 0;
    virtual bool isResolved(const CallSite& site) const = 0;
    virtual void define(const std::shared_ptr<Function>& procedure) = 0;
    /// Writes an error to the log unless it is there already.
    virtual void report(Error& error) = 0;
    virtual Machine& machine() = 0;
    virtual const Limits& limits() const = 0;
    /// Whether somebody outside wants the script to stop.
    virtual bool isInterrupted() const = 0;
};

/// Runs compiled code. Procedures that call procedures do not use the stack of C++; commands that run code
/// again do.
class Executor {
  public:
    explicit Executor(Surroundings& surroundings)
        : surroundings_(surroundings), library_(surroundings.limits()) {}

    /// Runs a procedure with arguments, or a statement of `unit`. Throws Error, with its place and the
    /// running procedures down to this one.
    Value run(Function& function, std::span<const Value> arguments, const Unit* unit = nullptr);
    /// Runs a command; arrays among the words are spread.
    Value runCommand(const Command& command, std::string_view name, std::span<const Value> words,
                     Place place);

    /// Starts counting steps anew.
    void resetSteps();
    LibraryState& library() { return library_; }

  private:
    /// An object register: it holds a value, or stands for one elsewhere (a constant, a global variable, an
    /// array of the caller).
    struct Cell {
        Value* at = nullptr;
        Value own;
    };
    struct Frame {
        Function* function = nullptr;
        const Unit* unit = nullptr;
        const Instr* ip = nullptr; ///< the next instruction, while another frame runs
        Num* numbers = nullptr;
        Cell* objects = nullptr;
        FrameStack<Num>::Mark numberMark;
        FrameStack<Cell>::Mark objectMark;
    };
    struct Handler {
        std::size_t depth = 0; ///< frames when it was set
        const Instr* ip = nullptr;
        bool quiet = false;
    };

    // executor.cpp
    Value loop(std::size_t base);
    void recover(Error error, std::size_t base, std::size_t handlers);
    void countStep() {
        if (--stepsLeft_ == 0) takeSteps();
    }
    void takeSteps();

    // executor_calls.cpp
    void enter(Function& function, const Unit* unit);
    void leave();
    static void start(Cell& cell, Function& function, const ObjectStart& start);
    Place placeOf(const Frame& frame) const;
    static Value boxed(Type type, Reg reg, const Num* numbers, const Cell* objects);
    static Value valueOf(const Argument& argument, const Frame& frame);
    static void deliver(Value value, Type type, Reg reg, const Frame& frame);
    void call(CallSite& site);
    void callProcedure(const CallSite& site, Function& function);
    void callCommand(CallSite& site);
    void bind(const Parameter& parameter, const Argument& argument, const Frame& caller);
    void bindValue(const Parameter& parameter, const Value& value);
    void checkCount(const Function& function, std::size_t given) const;
    void callLibrary(const LibrarySite& site);
    bool returnFrom(Type type, Reg reg, std::size_t base, Value& result);

    // executor_objects.cpp
    static std::size_t checkedIndex(int index);
    void checkGrowth(std::size_t index) const;
    template <class Array>
    typename Array::value_type& elementToSet(Value& value, int index) const;
    void checkText(std::size_t size) const;
    void join(Value& to, const Value& left, const Value& right) const;
    void append(Value& to, const Value& right) const;
    static Value elementOfAny(const Value& array, int index);
    void setElementOfAny(Value& array, int index, const Value& item) const;
    static double matrixElement(const Value& value, int row, int column);
    static void setMatrixElement(Value& value, int row, int column, double item);
    static void declareAny(Value& variable, Type type);
    static bool isPastEnd(const Value& list, int index);

    Surroundings& surroundings_;
    LibraryState library_;
    std::vector<Frame> frames_;
    std::vector<Handler> handlers_;
    FrameStack<Num> numbers_;
    FrameStack<Cell> objects_;
    std::size_t stepsLeft_ = 0;    ///< until `takeSteps` looks at what there is
    std::size_t stepsInStock_ = 0; ///< that the limit leaves beyond those
};

/// An element of an array, which grows to hold it.
template <class Array>
typename Array::value_type& Executor::elementToSet(Value& value, int index) const {
    const std::size_t at = checkedIndex(index);
    Array& array = value.ifShared<Array>()->write();
    if (at >= array.size()) {
        checkGrowth(at);
        array.resize(at + 1);
    }
    return array[at];
}

} // namespace vesk::mel
