#pragma once
// Vectors of W floats or whole numbers, and the loads that bring scattered values of a grid into them. Each
// lane computes what a scalar would, to the bit. For the files that hold kernels only: what is here is
// compiled once for every vector width, in the instructions that go with it.

#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vesk::fluid {

template <int W>
struct Lanes {
    using Float [[gnu::vector_size(W * 4)]] = float;
    using Int [[gnu::vector_size(W * 4)]] = std::int32_t;
    using Double [[gnu::vector_size(W * 4)]] = double; ///< half as many
};

template <int W>
using Floats = typename Lanes<W>::Float;
template <int W>
using Ints = typename Lanes<W>::Int;

template <int W>
[[gnu::always_inline]] inline Floats<W> loadLanes(const float* from) {
    Floats<W> value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <int W>
[[gnu::always_inline]] inline void storeLanes(float* to, Floats<W> value) {
    std::memcpy(to, &value, sizeof value);
}

#if defined(__AVX512F__)
[[gnu::always_inline]] inline __mmask16 firstLanes(int count) {
    return static_cast<__mmask16>((1U << count) - 1);
}
#endif

/// The first `count` lanes; the others 0.
template <int W>
[[gnu::always_inline]] inline Floats<W> loadSome(const float* from, int count) {
    if (count >= W) return loadLanes<W>(from);
#if defined(__AVX512F__)
    if constexpr (W == 16) return reinterpret_cast<Floats<W>>(_mm512_maskz_loadu_ps(firstLanes(count), from));
#endif
    Floats<W> value{};
    std::memcpy(&value, from, static_cast<std::size_t>(count) * sizeof(float));
    return value;
}

template <int W>
[[gnu::always_inline]] inline void storeSome(float* to, Floats<W> value, int count) {
    if (count >= W) return storeLanes<W>(to, value);
#if defined(__AVX512F__)
    if constexpr (W == 16)
        return _mm512_mask_storeu_ps(to, firstLanes(count), reinterpret_cast<__m512>(value));
#endif
    std::memcpy(to, &value, static_cast<std::size_t>(count) * sizeof(float));
}

/// 0, 1, 2 ...
template <int W>
[[gnu::always_inline]] inline Ints<W> laneNumbers() {
    Ints<W> value{};
    for (int i = 0; i < W; ++i)
        value[i] = i;
    return value;
}

template <int W>
[[gnu::always_inline]] inline Floats<W> toFloats(Ints<W> value) {
    return __builtin_convertvector(value, Floats<W>);
}

/// Truncated; for values within the range of an int32.
template <int W>
[[gnu::always_inline]] inline Ints<W> toInts(Floats<W> value) {
    return __builtin_convertvector(value, Ints<W>);
}

/// `value` within the bounds; the lower one if it is not a number.
template <class F>
[[gnu::always_inline]] inline F limited(F value, F low, F high) {
    const F raised = value > low ? value : low;
    return raised < high ? raised : high;
}

template <int W>
[[gnu::always_inline]] inline Floats<W> magnitude(Floats<W> value) {
    return reinterpret_cast<Floats<W>>(reinterpret_cast<Ints<W>>(value) & 0x7FFFFFFF);
}

/// A bit for each lane of a mask.
template <int W>
[[gnu::always_inline]] inline unsigned laneBits(Ints<W> mask) {
#if defined(__AVX512F__)
    if constexpr (W == 16) return _mm512_movepi32_mask(reinterpret_cast<__m512i>(mask));
#endif
#if defined(__AVX2__)
    if constexpr (W == 8) return static_cast<unsigned>(_mm256_movemask_ps(reinterpret_cast<__m256>(mask)));
#endif
#if defined(__SSE2__)
    if constexpr (W == 4) return static_cast<unsigned>(_mm_movemask_ps(reinterpret_cast<__m128>(mask)));
#endif
    unsigned bits = 0;
    for (int i = 0; i < W; ++i)
        bits |= (mask[i] != 0 ? 1U : 0U) << i;
    return bits;
}

template <int W>
inline constexpr unsigned allLanes = (1U << W) - 1;

/// Whether a masked load costs no more than another.
template <int W>
inline constexpr bool hasMaskedLoads = W == 16;

/// `value`, but from[i] in the lanes i of the mask. Nothing is read for the others.
template <int W>
[[gnu::always_inline]] inline Floats<W> loadWhere([[maybe_unused]] Ints<W> mask,
                                                  [[maybe_unused]] const float* from, Floats<W> value) {
    static_assert(hasMaskedLoads<W>);
#if defined(__AVX512F__)
    return reinterpret_cast<Floats<W>>(
        _mm512_mask_loadu_ps(reinterpret_cast<__m512>(value), laneBits<W>(mask), from));
#else
    return value;
#endif
}

template <int W>
struct LanePair {
    Floats<W> first, second;
};

template <int W>
struct LaneTriple {
    Floats<W> a, b, c;
};

/// Two and four floats at any address, as one value.
using Two = double;
using Four [[gnu::vector_size(16)]] = float;

template <class T>
[[gnu::always_inline]] inline T loadAs(const float* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

/// base[i] and base[i + 1] for the i of every lane.
template <int W>
[[gnu::always_inline]] inline LanePair<W> loadPairs(const float* base, const std::int32_t* i) {
    using Pairs = typename Lanes<W>::Double;
    if constexpr (W == 4) {
        const Pairs a = {loadAs<Two>(base + i[0]), loadAs<Two>(base + i[1])};
        const Pairs b = {loadAs<Two>(base + i[2]), loadAs<Two>(base + i[3])};
        const auto x = reinterpret_cast<Floats<W>>(a), y = reinterpret_cast<Floats<W>>(b);
        return {__builtin_shufflevector(x, y, 0, 2, 4, 6), __builtin_shufflevector(x, y, 1, 3, 5, 7)};
    } else {
        const Pairs a = {loadAs<Two>(base + i[0]), loadAs<Two>(base + i[1]), loadAs<Two>(base + i[4]),
                         loadAs<Two>(base + i[5])};
        const Pairs b = {loadAs<Two>(base + i[2]), loadAs<Two>(base + i[3]), loadAs<Two>(base + i[6]),
                         loadAs<Two>(base + i[7])};
        const auto x = reinterpret_cast<Floats<W>>(a), y = reinterpret_cast<Floats<W>>(b);
        return {__builtin_shufflevector(x, y, 0, 2, 8, 10, 4, 6, 12, 14),
                __builtin_shufflevector(x, y, 1, 3, 9, 11, 5, 7, 13, 15)};
    }
}

/// base[i], base[i + 1] and base[i + 2] for the i of every lane; reads base[i + 3] too.
template <int W>
[[gnu::always_inline]] inline LaneTriple<W> loadTriples(const float* base, const std::int32_t* i) {
    Floats<W> row[4];
    for (int r = 0; r < 4; ++r) {
        if constexpr (W == 4) {
            row[r] = loadAs<Four>(base + i[r]);
        } else {
            const Four low = loadAs<Four>(base + i[r]), high = loadAs<Four>(base + i[r + 4]);
            row[r] = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
        }
    }
    if constexpr (W == 4) {
        const auto t0 = __builtin_shufflevector(row[0], row[1], 0, 4, 1, 5);
        const auto t1 = __builtin_shufflevector(row[0], row[1], 2, 6, 3, 7);
        const auto t2 = __builtin_shufflevector(row[2], row[3], 0, 4, 1, 5);
        const auto t3 = __builtin_shufflevector(row[2], row[3], 2, 6, 3, 7);
        return {__builtin_shufflevector(t0, t2, 0, 1, 4, 5), __builtin_shufflevector(t0, t2, 2, 3, 6, 7),
                __builtin_shufflevector(t1, t3, 0, 1, 4, 5)};
    } else {
        const auto t0 = __builtin_shufflevector(row[0], row[1], 0, 8, 1, 9, 4, 12, 5, 13);
        const auto t1 = __builtin_shufflevector(row[0], row[1], 2, 10, 3, 11, 6, 14, 7, 15);
        const auto t2 = __builtin_shufflevector(row[2], row[3], 0, 8, 1, 9, 4, 12, 5, 13);
        const auto t3 = __builtin_shufflevector(row[2], row[3], 2, 10, 3, 11, 6, 14, 7, 15);
        return {__builtin_shufflevector(t0, t2, 0, 1, 8, 9, 4, 5, 12, 13),
                __builtin_shufflevector(t0, t2, 2, 3, 10, 11, 6, 7, 14, 15),
                __builtin_shufflevector(t1, t3, 0, 1, 8, 9, 4, 5, 12, 13)};
    }
}

} // namespace vesk::fluid
