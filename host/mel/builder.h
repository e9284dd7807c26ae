#pragma once
// The mechanical half of compiling a procedure: registers, constants, instructions, jumps.

#include "host/mel/code.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vesk::mel {

/// Jumps that wait for their target.
using Jumps = std::vector<std::size_t>;

/// Fills one Function. Throws Error when the procedure needs more registers than there are.
class Builder {
  public:
    explicit Builder(Function& function) : function_(function) {}

    Function& function() { return function_; }

    /// The source offset that the next instructions are charged to.
    void setPlace(std::uint32_t offset) { place_ = offset; }
    std::uint32_t place() const { return place_; }

    // Registers. Those of variables are never given back, so that two variables never share one.

    /// A register for a value of the type: one number, three for a vector, or an object.
    Reg allocate(Type type);
    /// The same for a variable, which is zero until it is set.
    Reg allocateVariable(Type type);
    /// `count` registers of numbers in a row.
    Reg allocateNumbers(std::size_t count);
    void release(Type type, Reg reg);
    void releaseNumbers(Reg first, std::size_t count);
    /// A register that holds the constant from the start; never to be written.
    Reg constant(const Value& value);
    /// The object register that stands for a global variable.
    Reg bind(Global& global);
    /// The index of a global number in the function's list.
    std::int32_t globalIndex(Global& global);
    /// The index of a library function of numbers in the function's list.
    std::int32_t numberCall(NumberFunction called);

    // Instructions.

    void emit(Op op, Reg a = 0, Reg b = 0, Reg c = 0, std::int32_t imm = 0);
    std::size_t here() const { return function_.code.size(); }
    /// The same for a place that later jumps go back to: nothing is joined across it.
    std::size_t target() { return lastTarget_ = here(); }
    /// Emits a jump and returns it for a later `land`.
    std::size_t jump(Op op, Reg a = 0, Reg b = 0);
    void land(std::size_t jump, std::size_t target);
    void landHere(const Jumps& jumps);
    void landAt(const Jumps& jumps, std::size_t target);
    /// These do the work of a move, of reading an element or of a return in the instruction before where that
    /// is possible.
    bool joinMove(Reg to, Reg from);
    bool joinElement(Reg to, Reg array, Reg index);
    bool joinReturn(Reg reg);
    /// An int register and a number that is added to it.
    struct Stepped {
        Reg reg = 0;
        std::int32_t by = 0;
    };
    /// Takes back the last instruction when all it does is such a step into `reg`.
    std::optional<Stepped> takeStep(Reg reg);
    /// Whether the next instruction can be come to: not right after a return or jump, unless a jump lands
    /// here.
    bool isReachable() const;
    /// To be called when the code is complete.
    void finish();

  private:
    Instr* lastOf(Op op);
    bool joinLoop(Op op, Reg a, Reg b);
    Reg addObject(const ObjectStart& start);
    Reg numberConstant(Num number);
    Reg vectorConstant(const MVector& vector);

    Function& function_;
    std::uint32_t place_ = 0;
    std::size_t lastTarget_ = 0;           ///< of all jumps that have landed
    std::size_t firstSet_ = kMaxRegisters; ///< the first number register whose start value counts
    std::map<std::size_t, std::vector<Reg>> freeNumbers_; ///< by the length of the row
    std::map<Type, std::vector<Reg>> freeObjects_;
    std::unordered_map<std::uint64_t, Reg> numberConstants_; ///< by the bits of the number
    std::unordered_map<std::string, Reg> textConstants_;
    std::unordered_map<const Global*, Reg> boundGlobals_;
    std::unordered_map<const Global*, std::int32_t> listedGlobals_;
};

} // namespace vesk::mel
