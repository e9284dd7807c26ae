#include "nodes/arrayBlend/blendArrays.h"

namespace vesk::nodes {

namespace {

template <class T>
constexpr bool kIsVector = std::is_same_v<T, MVector>;
template <class T>
constexpr bool kIsTaken = kIsVector<T> || std::is_same_v<T, double> || std::is_same_v<T, int>;

template <class A, class B>
struct Together {
    using Scalar = std::conditional_t<std::is_same_v<A, int> && std::is_same_v<B, int>, int, double>;
    using Element = std::conditional_t<kIsVector<A> || kIsVector<B>, MVector, Scalar>;
};

/// Calls `act` with the spans of both arrays when both are of kinds that can be combined.
template <class Act>
void visitBoth(const AnyElements& a, const AnyElements& b, Act act) {
    std::visit(
        [&](const auto& x, const auto& y) {
            using X = std::remove_cvref_t<decltype(x)>;
            using Y = std::remove_cvref_t<decltype(y)>;
            if constexpr (!std::is_same_v<X, std::monostate> && !std::is_same_v<Y, std::monostate>) {
                if constexpr (kIsTaken<typename X::value_type> && kIsTaken<typename Y::value_type>) act(x, y);
            }
        },
        a, b);
}

// Ints are calculated without signs, where running over the range is defined.

struct Add {
    double operator()(double a, double b) const { return a + b; }
    int operator()(int a, int b) const {
        return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
    }
};
struct Minus {
    double operator()(double a, double b) const { return a - b; }
    int operator()(int a, int b) const {
        return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
    }
};
struct Multiply {
    double operator()(double a, double b) const { return a * b; }
    int operator()(int a, int b) const {
        return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
    }
};
struct Divide {
    double operator()(double a, double b) const { return a / b; }
    int operator()(int a, int b) const {
        if (b == 0) return 0;
        return b == -1 ? Minus()(0, a) : a / b;
    }
};
struct Blend {
    double share;
    double operator()(double a, double b) const { return share * a + (1 - share) * b; }
    int operator()(int a, int b) const {
        return truncated((*this)(static_cast<double>(a), static_cast<double>(b)));
    }
};

MVector spread(const MVector& vector) { return vector; }
MVector spread(double scalar) { return {scalar, scalar, scalar}; }

template <class Element, class A, class B, class Op>
void combine(std::span<const A> a, std::span<const B> b, std::span<Element> out, Op op) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        if constexpr (kIsVector<Element>) {
            const MVector x = spread(a[i]), y = spread(b[i]);
            out[i] = MVector(op(x.x, y.x), op(x.y, y.y), op(x.z, y.z));
        } else {
            out[i] = op(static_cast<Element>(a[i]), static_cast<Element>(b[i]));
        }
    }
}

} // namespace

BlendResult blendResult(const AnyElements& a, const AnyElements& b) {
    BlendResult result = BlendResult::kNone;
    visitBoth(a, b, [&]<class A, class B>(std::span<const A>, std::span<const B>) {
        using Element = typename Together<A, B>::Element;
        if constexpr (kIsVector<Element>) {
            result = BlendResult::kVectors;
        } else {
            result = std::is_same_v<Element, int> ? BlendResult::kInts : BlendResult::kDoubles;
        }
    });
    return result;
}

template <class Element>
void blendArrays(BlendOperation operation, double blend, const AnyElements& a, const AnyElements& b,
                 std::span<Element> out) {
    visitBoth(a, b, [&]<class A, class B>(std::span<const A> x, std::span<const B> y) {
        if constexpr (std::is_same_v<typename Together<A, B>::Element, Element>) {
            switch (operation) {
            case BlendOperation::kBlend: combine(x, y, out, Blend{blend}); break;
            case BlendOperation::kAdd: combine(x, y, out, Add()); break;
            case BlendOperation::kMinus: combine(x, y, out, Minus()); break;
            case BlendOperation::kMultiply: combine(x, y, out, Multiply()); break;
            case BlendOperation::kDivide: combine(x, y, out, Divide()); break;
            }
        }
    });
}

template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&, std::span<int>);
template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&, std::span<double>);
template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&, std::span<MVector>);

} // namespace vesk::nodes
