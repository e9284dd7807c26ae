// The library's functions of numbers and vectors.

#include "host/mel/library.h"
#include "host/mel/operators.h"

#include <algorithm>
#include <cmath>

namespace vesk::mel {

namespace {

constexpr double kDegrees = 57.29577951308232; ///< in a radian

MVector vectorAt(const Num* numbers) { return {numbers[0].f, numbers[1].f, numbers[2].f}; }

void put(Num* result, const MVector& vector) {
    result[0].f = vector.x;
    result[1].f = vector.y;
    result[2].f = vector.z;
}

constexpr Builtin row(std::string_view name, std::string_view parameters, Type result,
                      NumberFunction function) {
    return {name, parameters, result, function, nullptr};
}

/// A function of one float.
template <double (*Function)(double)>
constexpr Builtin unary(std::string_view name) {
    return row(name, "f", Type::Float,
               [](LibraryState&, const Num* a, Num* result) { result->f = Function(a->f); });
}

/// A function of two floats.
template <double (*Function)(double, double)>
constexpr Builtin binary(std::string_view name) {
    return row(name, "ff", Type::Float,
               [](LibraryState&, const Num* a, Num* result) { result->f = Function(a[0].f, a[1].f); });
}

double degreesOf(double radians) { return radians * kDegrees; }
double radiansOf(double degrees) { return degrees / kDegrees; }
double sineOfDegrees(double degrees) { return std::sin(radiansOf(degrees)); }
double cosineOfDegrees(double degrees) { return std::cos(radiansOf(degrees)); }
double tangentOfDegrees(double degrees) { return std::tan(radiansOf(degrees)); }
double degreesOfSine(double sine) { return degreesOf(std::asin(sine)); }
double degreesOfCosine(double cosine) { return degreesOf(std::acos(cosine)); }
double degreesOfTangent(double tangent) { return degreesOf(std::atan(tangent)); }
double degreesOfRatio(double y, double x) { return degreesOf(std::atan2(y, x)); }
double signOf(double value) { return value > 0.0 ? 1.0 : value < 0.0 ? -1.0 : 0.0; }
double larger(double a, double b) { return a < b ? b : a; }
double smaller(double a, double b) { return b < a ? b : a; }
double held(double low, double high, double value) { return smaller(larger(value, low), high); }

/// 0 up to `low`, 1 from `high` on, even in between.
double linearStep(double low, double high, double value) {
    if (low == high) return value < low ? 0.0 : 1.0;
    return held(0.0, 1.0, (value - low) / (high - low));
}

double smoothStep(double low, double high, double value) {
    const double t = linearStep(low, high, value);
    return t * t * (3.0 - 2.0 * t);
}

/// The cubic with the given ends and slopes.
template <class Point>
Point hermite(const Point& start, const Point& end, const Point& startSlope, const Point& endSlope,
              double t) {
    const double t2 = t * t;
    const double t3 = t2 * t;
    return start * (2.0 * t3 - 3.0 * t2 + 1.0) + end * (3.0 * t2 - 2.0 * t3) +
           startSlope * (t3 - 2.0 * t2 + t) + endSlope * (t3 - t2);
}

/// Turned about an axis by an angle in radians, counter-clockwise as seen from the axis's tip.
MVector rotated(const MVector& point, const MVector& axis, double angle) {
    const MVector unit = axis.normal();
    const double c = std::cos(angle);
    return point * c + (unit ^ point) * std::sin(angle) + unit * ((unit * point) * (1.0 - c));
}

constexpr Builtin table[] = {
    unary<std::sqrt>("sqrt"),
    unary<std::exp>("exp"),
    unary<std::log>("log"),
    unary<std::log10>("log10"),
    unary<std::ceil>("ceil"),
    unary<std::floor>("floor"),
    unary<std::trunc>("trunc"),
    unary<std::round>("round"),
    unary<std::sin>("sin"),
    unary<std::cos>("cos"),
    unary<std::tan>("tan"),
    unary<std::asin>("asin"),
    unary<std::acos>("acos"),
    unary<std::atan>("atan"),
    unary<sineOfDegrees>("sind"),
    unary<cosineOfDegrees>("cosd"),
    unary<tangentOfDegrees>("tand"),
    unary<degreesOfSine>("asind"),
    unary<degreesOfCosine>("acosd"),
    unary<degreesOfTangent>("atand"),
    unary<degreesOf>("rad_to_deg"),
    unary<radiansOf>("deg_to_rad"),
    unary<signOf>("sign"),
    unary<std::fabs>("abs"),
    row("abs", "i", Type::Int,
        [](LibraryState&, const Num* a, Num* r) { r->i = a->i < 0 ? subInts(0, a->whole()) : a->whole(); }),
    row("abs", "v", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) {
            put(r, {std::fabs(a[0].f), std::fabs(a[1].f), std::fabs(a[2].f)});
        }),
    row("sign", "i", Type::Int, [](LibraryState&, const Num* a, Num* r) { r->i = (a->i > 0) - (a->i < 0); }),

    binary<std::pow>("pow"),
    binary<std::atan2>("atan2"),
    binary<degreesOfRatio>("atan2d"),
    binary<std::hypot>("hypot"),
    binary<modFloats>("fmod"),
    binary<smaller>("min"),
    binary<larger>("max"),
    row("min", "ii", Type::Int, [](LibraryState&, const Num* a, Num* r) { r->i = std::min(a[0].i, a[1].i); }),
    row("max", "ii", Type::Int, [](LibraryState&, const Num* a, Num* r) { r->i = std::max(a[0].i, a[1].i); }),
    row("clamp", "fff", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = held(a[0].f, a[1].f, a[2].f); }),
    row("clamp", "iii", Type::Int,
        [](LibraryState&, const Num* a, Num* r) { r->i = std::min(std::max(a[2].i, a[0].i), a[1].i); }),
    row("linstep", "fff", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = linearStep(a[0].f, a[1].f, a[2].f); }),
    row("smoothstep", "fff", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = smoothStep(a[0].f, a[1].f, a[2].f); }),
    row("hermite", "fffff", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = hermite(a[0].f, a[1].f, a[2].f, a[3].f, a[4].f); }),
    row("hermite", "vvvvf", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) {
            put(r, hermite(vectorAt(a), vectorAt(a + 3), vectorAt(a + 6), vectorAt(a + 9), a[12].f));
        }),

    row("mag", "v", Type::Float, [](LibraryState&, const Num* a, Num* r) { r->f = vectorAt(a).length(); }),
    row("unit", "v", Type::Vector, [](LibraryState&, const Num* a, Num* r) { put(r, vectorAt(a).normal()); }),
    row("dot", "vv", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = vectorAt(a) * vectorAt(a + 3); }),
    row("cross", "vv", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) { put(r, vectorAt(a) ^ vectorAt(a + 3)); }),
    row("angle", "vv", Type::Float,
        [](LibraryState&, const Num* a, Num* r) { r->f = vectorAt(a).angle(vectorAt(a + 3)); }),
    row("rot", "vvf", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) { put(r, rotated(vectorAt(a), vectorAt(a + 3), a[6].f)); }),
    row("rad_to_deg", "v", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) { put(r, vectorAt(a) * kDegrees); }),
    row("deg_to_rad", "v", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) { put(r, vectorAt(a) / kDegrees); }),
};

double between(Random& random, double low, double high) { return low + (high - low) * random.uniform(); }

/// Each component between those of two vectors, drawn x first.
MVector between(Random& random, const MVector& low, const MVector& high) {
    MVector drawn;
    for (unsigned int i = 0; i < 3; ++i)
        drawn[i] = between(random, low[i], high[i]);
    return drawn;
}

MVector scaledBy(const MVector& vector, const MVector& factors) {
    return {vector.x * factors.x, vector.y * factors.y, vector.z * factors.z};
}

MVector gaussVector(Random& random) {
    MVector drawn;
    for (unsigned int i = 0; i < 3; ++i)
        drawn[i] = random.gauss();
    return drawn;
}

constexpr Builtin randomTable[] = {
    row("seed", "i", Type::Int,
        [](LibraryState& state, const Num* a, Num* r) {
            const int seed = a->whole();
            state.random.seed(static_cast<std::uint32_t>(seed));
            r->i = seed;
        }),
    row("rand", "f", Type::Float,
        [](LibraryState& state, const Num* a, Num* r) { r->f = between(state.random, 0.0, a->f); }),
    row("rand", "ff", Type::Float,
        [](LibraryState& state, const Num* a, Num* r) { r->f = between(state.random, a[0].f, a[1].f); }),
    row("rand", "v", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) { put(r, between(state.random, {}, vectorAt(a))); }),
    row("rand", "vv", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) {
            put(r, between(state.random, vectorAt(a), vectorAt(a + 3)));
        }),
    row("sphrand", "f", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) { put(r, state.random.inBall() * a->f); }),
    row("sphrand", "v", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) {
            put(r, scaledBy(state.random.inBall(), vectorAt(a)));
        }),
    row("gauss", "f", Type::Float,
        [](LibraryState& state, const Num* a, Num* r) { r->f = state.random.gauss() * a->f; }),
    row("gauss", "ff", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) {
            const MVector deviation(a[0].f, a[1].f, 0.0);
            put(r, scaledBy(gaussVector(state.random), deviation));
        }),
    row("gauss", "v", Type::Vector,
        [](LibraryState& state, const Num* a, Num* r) {
            put(r, scaledBy(gaussVector(state.random), vectorAt(a)));
        }),
    row("noise", "f", Type::Float,
        [](LibraryState&, const Num* a, Num* r) {
            r->f = noise({a->f, 0.0, 0.0});
        }),
    row("noise", "ff", Type::Float,
        [](LibraryState&, const Num* a, Num* r) {
            r->f = noise({a[0].f, a[1].f, 0.0});
        }),
    row("noise", "fff", Type::Float, [](LibraryState&, const Num* a, Num* r) { r->f = noise(vectorAt(a)); }),
    row("noise", "v", Type::Float, [](LibraryState&, const Num* a, Num* r) { r->f = noise(vectorAt(a)); }),
    row("dnoise", "v", Type::Vector,
        [](LibraryState&, const Num* a, Num* r) { put(r, noiseVector(vectorAt(a))); }),
};

} // namespace

std::span<const Builtin> numberFunctions() { return table; }

std::span<const Builtin> randomFunctions() { return randomTable; }

} // namespace vesk::mel
