#pragma once
// Compiled code: what the compiler makes and the machine runs.

#include "host/mel/command.h"
#include "host/mel/error.h"
#include "host/mel/opcodes.h"
#include "host/mel/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vesk::mel {

enum class Op : std::uint16_t {
#define VESK_MEL_OPCODE_NAME(name) name,
    VESK_MEL_OPCODES(VESK_MEL_OPCODE_NAME)
#undef VESK_MEL_OPCODE_NAME
};

using Reg = std::uint16_t;
/// Registers of one kind in one procedure.
constexpr std::size_t kMaxRegisters = 65535;

/// Whether values of the type live in registers of numbers; the others live in registers of objects.
inline bool isNumeric(Type type) { return type == Type::Int || type == Type::Float || type == Type::Vector; }

/// A register operand that is a small number instead.
inline int smallOf(Reg reg) { return static_cast<std::int16_t>(reg); }
inline bool isSmall(std::int64_t number) { return number == static_cast<std::int16_t>(number); }

struct Instr {
    Op op;
    Reg a = 0;
    Reg b = 0;
    Reg c = 0;
    std::int32_t imm = 0;
};

/// A register. Which member counts is known where it is used. An int fills the whole register: one that was
/// written in half could not be read at once as a whole.
union Num {
    double f;
    std::int64_t i; ///< in the range of an int
    Value* object;  ///< of a register of objects: the frame's own value, or one elsewhere
    int whole() const { return static_cast<int>(i); }
};

struct Function;
struct Unit;
struct Builtin;
struct LibraryState;
using NumberFunction = void (*)(LibraryState& state, const Num* arguments, Num* result);

/// A lasting variable. Numbers and vectors live in `numbers`, everything else in `object`; its place in
/// memory stays as long as the interpreter.
struct Global {
    std::string name;
    Type type = Type::None; ///< Any: the first value decides, `object` holds it
    Num numbers[3] = {{0.0}, {0.0}, {0.0}};
    Value object;
};

/// Where an argument comes from.
struct Argument {
    Type type = Type::None;
    Reg reg = 0;
    std::int32_t step = 0;   ///< added to the int in the register
    bool isConstant = false; ///< then `constant` holds it
    Value constant;
};

/// What a name means where it is called.
struct Target {
    Function* procedure = nullptr;
    std::shared_ptr<const Command> command;
};

/// How the arguments of a call become the parameters of the procedure that its name means now.
struct Handover {
    struct Move {
        Reg to = 0;
        Reg from = 0;
    };
    struct Preset {
        Reg to = 0;
        Num value{0.0};
    };
    std::vector<Move> moves;         ///< numbers that need no conversion
    std::vector<Preset> presets;     ///< constant numbers, converted already
    std::vector<std::size_t> others; ///< arguments that are looked at in every call
};

/// A call of a procedure made ready: what every such call needs, close together.
struct alignas(64) Link {
    std::uint64_t stamp = 0; ///< the interpreter's while the name means this procedure, else another
    Function* procedure = nullptr;
    const Instr* code = nullptr; ///< of the procedure
    const Handover::Move* moves = nullptr;
    std::uint32_t moveCount = 0;
    std::uint32_t frameSize = 0; ///< of the procedure, in registers
    std::int32_t step = 0;
    Reg from = 0;
    bool isOneInt = false; ///< plain, and the int `from` with `step` added becomes register 0
    bool isPlain = false;  ///< no rest, no objects, no constants: a frame and the moves are all there is
    bool hasRest = false;  ///< whether moves do not hand over everything
};

/// One call of a procedure or command by name. The instruction says what becomes of the result.
struct CallSite {
    std::string name;
    std::vector<Argument> arguments;
    std::vector<Value> constants; ///< the words when all of them are constants; `arguments` is empty then
    std::uint32_t at = 0;
    // The last resolution of the name, good while the interpreter's stamp is the same.
    Target target;
    std::uint64_t stamp = 0;
    Handover handover; ///< when it is a procedure
};

/// One call of a library function that takes values.
struct LibrarySite {
    const Builtin* function = nullptr;
    std::vector<Argument> arguments;
    Type resultType = Type::None;
    Reg result = 0;
};

/// How an object register starts.
struct ObjectStart {
    Type type = Type::None;
    int constant = -1;        ///< index into the function's constants
    Global* global = nullptr; ///< the register stands for this variable
};

struct Parameter {
    std::string name;
    Type type = Type::None;
    Reg reg = 0;
};

/// Procedures that only the text that defines them sees.
struct Module {
    std::unordered_map<std::string, std::shared_ptr<Function>> procedures;
};

/// A procedure, or one statement of a text's top level.
struct Function {
    std::string name; ///< empty for a top-level statement
    std::shared_ptr<const Source> source;
    const Unit* unit = nullptr; ///< of a top-level statement
    Module* module = nullptr;
    std::shared_ptr<Module> keptModule; ///< of global procedures; a local one lives in its module
    bool isGlobal = false;
    Type returns = Type::None;
    std::vector<Parameter> parameters;
    std::vector<Instr> code;
    std::vector<std::uint32_t> places; ///< offset in the source, one for each instruction
    std::vector<Num> numbers;          ///< how the number registers start: constants, and zeros
    std::size_t firstSet = 0;          ///< those before it are written before they are read
    std::vector<ObjectStart> objects;  ///< how the object registers start
    std::size_t registers = 0;         ///< of both kinds
    std::vector<Value> constants;
    std::vector<Global*> globals;
    std::vector<CallSite> calls;
    std::vector<Link> links; ///< one for each call
    std::vector<NumberFunction> numberCalls;
    std::vector<LibrarySite> libraryCalls;
};

/// A compiled text.
struct Unit {
    std::shared_ptr<const Source> source;
    std::shared_ptr<Module> module;
    std::vector<std::unique_ptr<Function>> statements; ///< run in order
    std::vector<std::shared_ptr<Function>> procedures; ///< in the order of their definitions
    std::vector<std::unique_ptr<Global>> globals; ///< variables that the text declares and nobody had yet
};

} // namespace vesk::mel
