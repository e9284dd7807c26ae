#include "host/mel/builder.h"

#include <algorithm>
#include <bit>

namespace vesk::mel {

namespace {

std::uint64_t bitsOf(Num number) { return std::bit_cast<std::uint64_t>(number.f); }

Num numberOf(int value) { return Num{.i = value}; }

std::size_t checkedCount(std::size_t count) {
    if (count > kMaxRegisters) {
        throw Error("One procedure needs more than " + std::to_string(kMaxRegisters) + " registers.");
    }
    return count;
}

} // namespace

Reg Builder::allocate(Type type) {
    if (type == Type::Vector) return allocateNumbers(3);
    if (isNumeric(type)) return allocateNumbers(1);
    std::vector<Reg>& free = freeObjects_[type];
    if (free.empty()) return addObject({type, -1, nullptr});
    const Reg reg = free.back();
    free.pop_back();
    return reg;
}

Reg Builder::allocateVariable(Type type) {
    const Reg reg = allocate(type);
    if (isNumeric(type)) firstSet_ = std::min<std::size_t>(firstSet_, reg);
    return reg;
}

Reg Builder::allocateNumbers(std::size_t count) {
    std::vector<Reg>& free = freeNumbers_[count];
    if (!free.empty()) {
        const Reg reg = free.back();
        free.pop_back();
        return reg;
    }
    const std::size_t first = function_.numbers.size();
    function_.numbers.resize(checkedCount(first + count), Num{0.0});
    return static_cast<Reg>(first);
}

void Builder::release(Type type, Reg reg) {
    if (isNumeric(type)) {
        releaseNumbers(reg, type == Type::Vector ? 3 : 1);
    } else {
        freeObjects_[type].push_back(reg);
    }
}

void Builder::releaseNumbers(Reg first, std::size_t count) { freeNumbers_[count].push_back(first); }

Reg Builder::addObject(const ObjectStart& start) {
    checkedCount(function_.objects.size() + 1);
    function_.objects.push_back(start);
    return static_cast<Reg>(function_.objects.size() - 1);
}

Reg Builder::constant(const Value& value) {
    if (const int* number = value.ifInt()) return numberConstant(numberOf(*number));
    if (const double* number = value.ifFloat()) return numberConstant(Num{*number});
    if (const MVector* vector = value.ifVector()) return vectorConstant(*vector);
    const std::string* text = value.ifString();
    if (text) {
        const auto known = textConstants_.find(*text);
        if (known != textConstants_.end()) return known->second;
    }
    const Reg reg = addObject({value.type(), static_cast<int>(function_.constants.size()), nullptr});
    function_.constants.push_back(value);
    if (text) textConstants_.emplace(*text, reg);
    return reg;
}

Reg Builder::numberConstant(Num number) {
    const auto [known, isNew] = numberConstants_.try_emplace(bitsOf(number), Reg{0});
    if (isNew) {
        // Straight from the end, since a row given back may be written again.
        known->second = static_cast<Reg>(function_.numbers.size());
        checkedCount(function_.numbers.size() + 1);
        function_.numbers.push_back(number);
        firstSet_ = std::min<std::size_t>(firstSet_, known->second);
    }
    return known->second;
}

Reg Builder::vectorConstant(const MVector& vector) {
    const std::size_t first = function_.numbers.size();
    checkedCount(first + 3);
    for (const double component : {vector.x, vector.y, vector.z})
        function_.numbers.push_back(Num{component});
    firstSet_ = std::min(firstSet_, first);
    return static_cast<Reg>(first);
}

Reg Builder::bind(Global& global) {
    const auto [known, isNew] = boundGlobals_.try_emplace(&global, Reg{0});
    if (isNew) known->second = addObject({global.type, -1, &global});
    return known->second;
}

std::int32_t Builder::globalIndex(Global& global) {
    const auto [known, isNew] = listedGlobals_.try_emplace(&global, 0);
    if (isNew) {
        known->second = static_cast<std::int32_t>(function_.globals.size());
        function_.globals.push_back(&global);
    }
    return known->second;
}

std::int32_t Builder::numberCall(NumberFunction called) {
    std::vector<NumberFunction>& calls = function_.numberCalls;
    const auto known = std::find(calls.begin(), calls.end(), called);
    const auto index = known - calls.begin();
    if (known == calls.end()) calls.push_back(called);
    return static_cast<std::int32_t>(index);
}

void Builder::finish() {
    function_.firstSet = std::min(firstSet_, function_.numbers.size());
    function_.registers = function_.numbers.size() + function_.objects.size();
    function_.links.resize(function_.calls.size());
}

void Builder::emit(Op op, Reg a, Reg b, Reg c, std::int32_t imm) {
    function_.code.push_back({op, a, b, c, imm});
    function_.places.push_back(place_);
}

std::size_t Builder::jump(Op op, Reg a, Reg b) {
    if (!joinLoop(op, a, b)) emit(op, a, b);
    return here() - 1;
}

/// The last instruction when it is of that kind and the next one always follows it.
Instr* Builder::lastOf(Op op) {
    if (function_.code.empty() || lastTarget_ == here() || function_.code.back().op != op) return nullptr;
    return &function_.code.back();
}

/// `$x = $y = $a[$i]`: the element goes to both.
bool Builder::joinMove(Reg to, Reg from) {
    Instr* const last = lastOf(Op::GetFloat);
    if (!last || last->a != from) return false;
    last->op = Op::GetFloatTwice;
    last->imm = to;
    return true;
}

/// `$a[$b[$i]]`: an element by an element of an int array, which nobody else needs.
bool Builder::joinElement(Reg to, Reg array, Reg index) {
    Instr* const last = lastOf(Op::GetInt);
    if (!last || last->a != index) return false;
    *last = {Op::GetFloatAt, to, array, last->c, last->b};
    return true;
}

/// `$i++` or `$i += $k` in front of `$i < $n` or `$i <= $n`.
bool Builder::joinLoop(Op op, Reg a, Reg b) {
    if ((op != Op::JumpLessInt && op != Op::JumpLessEqualInt) || a == b) return false;
    const bool less = op == Op::JumpLessInt;
    if (Instr* const step = lastOf(Op::StepInt)) {
        if (step->a != a || step->b != a || !isSmall(step->imm)) return false;
        *step = {less ? Op::StepJumpLess : Op::StepJumpLessEqual, a, b, static_cast<Reg>(step->imm), 0};
        return true;
    }
    if (Instr* const sum = lastOf(Op::AddInt)) {
        if (sum->a != a || sum->b != a) return false;
        *sum = {less ? Op::AddJumpLess : Op::AddJumpLessEqual, a, b, sum->c, 0};
        return true;
    }
    return false;
}

/// `return $a + $b`: nobody reads the sum again.
bool Builder::joinReturn(Reg reg) {
    Instr* const last = lastOf(Op::AddInt);
    if (!last || last->a != reg) return false;
    *last = {Op::ReturnSum, last->b, static_cast<Reg>(Type::Int), last->c, 0};
    return true;
}

/// `f($i - 1)`: the step of an argument that nobody else needs. The argument is then that many above the
/// register which comes back.
std::optional<Builder::Stepped> Builder::takeStep(Reg reg) {
    const Instr* const last = lastOf(Op::StepInt);
    if (!last || last->a != reg) return std::nullopt;
    const Stepped stepped{last->b, last->imm};
    function_.code.pop_back();
    function_.places.pop_back();
    return stepped;
}

bool Builder::isReachable() const {
    if (function_.code.empty() || lastTarget_ == here()) return true;
    const Op last = function_.code.back().op;
    return last != Op::Jump && last != Op::Return && last != Op::ReturnNumber && last != Op::ReturnSum &&
           last != Op::ReturnNone;
}

void Builder::land(std::size_t jump, std::size_t target) {
    lastTarget_ = std::max(lastTarget_, target);
    function_.code[jump].imm =
        static_cast<std::int32_t>(static_cast<std::int64_t>(target) - static_cast<std::int64_t>(jump) - 1);
}

void Builder::landHere(const Jumps& jumps) { landAt(jumps, here()); }

void Builder::landAt(const Jumps& jumps, std::size_t target) {
    for (const std::size_t jump : jumps)
        land(jump, target);
}

} // namespace vesk::mel
