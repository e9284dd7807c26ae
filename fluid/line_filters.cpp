#include "fluid/line_filters.h"

#include "fluid/float_array.h"
#include "fluid/kernels.h"

#include <algorithm>

#include <omp.h>

namespace vesk::fluid {

namespace {

/// How many lines are filtered together: side by side, so that the samples of one place are a vector.
constexpr int together = 32;

/// The lines of a grid along one axis.
struct Lines {
    Lines(const GridSize& res, int axis) : samples(res[axis]), count(cellCount(res) / samples) {
        for (int i = 0; i < axis; ++i)
            stride *= res[i];
    }
    /// Where a line starts.
    std::size_t start(std::size_t line) const { return line / stride * stride * samples + line % stride; }

    int samples;
    std::size_t count;
    std::size_t stride = 1; ///< from sample to sample
};

/// Some lines side by side: sample i of line l at i*together + l. Lines that are not there repeat the last.
void gather(const float* from, const Lines& lines, std::size_t first, int samples, float* to) {
    for (int l = 0; l < together; ++l) {
        const float* line = from + lines.start(std::min(first + l, lines.count - 1));
        for (int i = 0; i < samples; ++i)
            to[i * together + l] = line[i * lines.stride];
    }
}

void scatter(const float* from, const Lines& lines, std::size_t first, int samples, float* to) {
    const int count = static_cast<int>(std::min<std::size_t>(together, lines.count - first));
    for (int l = 0; l < count; ++l) {
        float* line = to + lines.start(first + l);
        for (int i = 0; i < samples; ++i)
            line[i * lines.stride] = from[i * together + l];
    }
}

void addWeighted(float weight, const float* from, float* sum) {
#pragma omp simd
    for (int l = 0; l < together; ++l)
        sum[l] += weight * from[l];
}

int samplePlace(int k, int samples, LineEnds ends) {
    if (ends == LineEnds::periodic) return (k % samples + samples) % samples;
    return std::clamp(k, 0, samples - 1);
}

void downsample(const float* from, float* to, int samples, LineEnds ends) {
    for (int i = 0; i < samples / 2; ++i) {
        float sum[together] = {};
        for (int a = 0; a < 32; ++a)
            addWeighted(downCoefficients[a], from + samplePlace(2 * i - 16 + a, samples, ends) * together,
                        sum);
        std::copy_n(sum, together, to + i * together);
    }
}

void upsample(const float* from, float* to, int samples, LineEnds ends) {
    const int half = samples / 2;
    for (int i = 0; i < samples; ++i) {
        float sum[together] = {};
        for (int k = i / 2; k <= i / 2 + 1; ++k) {
            const int place = ends == LineEnds::periodic ? samplePlace(k, half, ends) : std::min(k, half);
            addWeighted(upCoefficients[i - 2 * k + 2], from + place * together, sum);
        }
        std::copy_n(sum, together, to + i * together);
    }
}

template <class Filter>
void filterLines(const float* from, float* to, const GridSize& res, int axis, int samplesIn, int samplesOut,
                 Filter&& filter) {
    if (cellCount(res) == 0) return;
    const Lines lines(res, axis);
    const int threads = threadsFor(cellCount(res));
    const std::size_t scratchSize = 2 * static_cast<std::size_t>(lines.samples) * together;
    FloatArray scratch(scratchSize * threads);
#pragma omp parallel for schedule(static) num_threads(threads)
    for (std::size_t first = 0; first < lines.count; first += together) {
        float* in = scratch.data() + scratchSize * omp_get_thread_num();
        float* out = in + scratchSize / 2;
        gather(from, lines, first, samplesIn, in);
        filter(in, out);
        scatter(out, lines, first, samplesOut, to);
    }
}

} // namespace

void downsampleLines(const float* from, float* to, const GridSize& res, int axis, LineEnds ends) {
    const int samples = res[axis];
    filterLines(from, to, res, axis, samples, samples / 2,
                [&](const float* in, float* out) { downsample(in, out, samples, ends); });
}

void upsampleLines(const float* from, float* to, const GridSize& res, int axis, LineEnds ends) {
    const int samples = res[axis];
    const int used = ends == LineEnds::periodic ? samples / 2 : samples / 2 + 1;
    filterLines(from, to, res, axis, used, samples,
                [&](const float* in, float* out) { upsample(in, out, samples, ends); });
}

} // namespace vesk::fluid
