// The interpreter of MEL beside the plain interpreter of Lua: the same programs, written in each language as
// one writes them there, in the same process.

#include "bench/bench.h"
#include "bench/mel_programs.h"
#include "host/mel/interpreter.h"
#include "host/mel/lexer.h"
#include "host/mel/parser.h"

#include <cmath>
#include <lua.hpp>
#include <memory>
#include <string>

namespace vesk::bench {

namespace {

constexpr int kRepeats = 15;

/// A Lua state with its libraries; errors end the benchmark's line and nothing else.
class Lua {
  public:
    Lua() : state_(luaL_newstate()) { luaL_openlibs(state_.get()); }
    /// Runs a text, which defines functions.
    void run(const char* text) {
        if (luaL_dostring(state_.get(), text) != LUA_OK) complain();
    }
    /// Calls a function without arguments.
    double call(const char* function) {
        lua_State* const lua = state_.get();
        lua_getglobal(lua, function);
        if (lua_pcall(lua, 0, 1, 0) != LUA_OK) {
            complain();
            return 0.0;
        }
        const double result = lua_tonumber(lua, -1);
        lua_pop(lua, 1);
        return result;
    }

  private:
    void complain() {
        std::printf("mel: Lua says %s\n", lua_tostring(state_.get(), -1));
        lua_pop(state_.get(), 1);
    }
    struct Closer {
        void operator()(lua_State* state) const { lua_close(state); }
    };
    std::unique_ptr<lua_State, Closer> state_;
};

double call(mel::Machine& machine, const char* procedure) {
    const mel::Result result = machine.callProc(procedure);
    if (!result.ok) std::printf("mel: %s\n", result.error.c_str());
    return result.value.isNumber() ? result.value.asFloat() : 0.0;
}

/// The plugs that the generated procedure reads: positions and normals that differ from point to point.
void addPlugs(mel::Machine& machine) {
    mel::IntArray ids;
    mel::FloatArray fours, threes, ones, twos;
    for (int i = 0; i < kPoints; ++i) {
        ids.push_back(i);
        for (int k = 0; k < 4; ++k)
            fours.push_back(i * 0.001 + k);
        for (int k = 0; k < 3; ++k)
            threes.push_back(i * 0.001 + k);
        for (int k = 0; k < 2; ++k)
            twos.push_back(i * 0.001 + k);
        ones.push_back(i * 0.001);
    }
    const std::map<std::string, mel::Value> plugs{
        {"ids", ids}, {"fours", fours}, {"threes", threes}, {"ones", ones}, {"twos", twos}};
    machine.commands().add("getAttr",
                           [plugs](mel::Call& call) { return plugs.at(call.args.front().asString()); });
}

void compare(const Program& program, mel::Machine& machine, Lua& lua) {
    const double expected = lua.call(program.name);
    if (const double result = call(machine, program.name); result != expected) {
        std::printf("mel: %s gives %.17g and not %.17g\n", program.name, result, expected);
    }
    // By turns, so that a noisy moment hits both.
    double seconds = std::numeric_limits<double>::infinity();
    double peer = seconds;
    for (int i = 0; i < kRepeats; ++i) {
        seconds = std::min(seconds, processorSeconds([&] { keep(call(machine, program.name)); }));
        peer = std::min(peer, processorSeconds([&] { keep(lua.call(program.name)); }));
    }
    report(program.title, seconds, "Lua 5.4", peer, program.limit);
}

/// A script of 50,000 lines of all kinds.
std::string longScript() {
    std::string text;
    for (int block = 0; block < 5000; ++block) {
        const std::string n = std::to_string(block);
        text += "// ---- block " + n +
                "\n"
                "createNode transform -n \"node" +
                n +
                "\";\n"
                "setAttr -k off \".v\" 0;\n"
                "setAttr \".t\" -type \"double3\" " +
                n +
                ".5 -1.25 3e-2;\n"
                "connectAttr \"node" +
                n + ".t\" \"other" + n +
                ".t\";\n"
                "if ($count < " +
                n +
                ") {\n"
                "    $size[$count] = ($count * 2.5 + sin($x)) / " +
                n +
                "1;\n"
                "    $text = \"a\" + $count + `getAttr node" +
                n +
                ".tx`;\n"
                "}\n"
                "for ($i = 0; $i < size($list); $i++) $sum += $list[$i];\n";
    }
    return text;
}

void parseLongScript() {
    const std::string text = longScript();
    const auto source = std::make_shared<const mel::Source>("long.mel", text);
    double parsing = std::numeric_limits<double>::infinity();
    double splitting = parsing;
    for (int i = 0; i < kRepeats; ++i) {
        parsing = std::min(parsing, processorSeconds([&] { keep(mel::Parser(source).parse()); }));
        splitting = std::min(splitting, processorSeconds([&] {
                                 mel::Lexer lexer(text);
                                 while (lexer.next().kind != mel::Tok::End) {
                                 }
                             }));
    }
    reportLimit("MEL: parsing a script, a million lines", parsing * 1e6 / 50000, "s", 1);
    std::printf("  splitting it into tokens: %.3f s\n", splitting * 1e6 / 50000);
}

} // namespace

static void benchMel() {
    mel::Machine machine;
    Lua lua;
    addPlugs(machine);
    machine.run(positionProcedure());
    for (const Program& program : programs()) {
        machine.run(program.mel);
        lua.run(program.lua);
        compare(program, machine, lua);
    }
    parseLongScript();
}

static const Benchmark registered("mel", benchMel);

} // namespace vesk::bench
