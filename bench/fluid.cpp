// Wavelet turbulence: whole steps beside the same steps written plainly, advection beside reading and writing
// its arrays, the noise tile beside reading its file.

#include "bench/bench.h"
#include "fluid/noise_tile.h"
#include "fluid/plain_reference.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <omp.h>
#include <unistd.h>

namespace vesk::bench {

namespace {

using namespace fluid;

struct Velocity {
    FloatArray x, y, z;
};

/// A flow of a few large whirls, at most `speed` along each axis.
Velocity whirls(const GridSize& res, float speed) {
    const std::size_t cells = cellCount(res);
    Velocity v{FloatArray(cells), FloatArray(cells), FloatArray(cells)};
    const float turn = 6.2831853F / static_cast<float>(res[0]);
    plain::forEachCell(res, 0, [&](int x, int y, int z) {
        const std::size_t i = plain::cellAt(res, x, y, z);
        v.x[i] = speed * std::sin(turn * y) * std::cos(2 * turn * z);
        v.y[i] = speed * std::sin(turn * z) * std::cos(turn * x);
        v.z[i] = speed * std::sin(2 * turn * x) * std::cos(turn * y);
    });
    return v;
}

void fillDensity(FloatArray& density) {
    for (std::size_t i = 0; i < density.size(); ++i)
        density[i] = static_cast<float>(i % 97) / 97;
}

/// Bytes a second that a plain copy reads and writes.
double copyBandwidth() {
    FloatArray from(1 << 24), to(1 << 24);
    fillDensity(from);
    const double seconds = best(5, [&] {
        std::memcpy(to.data(), from.data(), to.size() * sizeof(float));
        keep(to);
    });
    return 2.0 * static_cast<double>(to.size() * sizeof(float)) / seconds;
}

void benchStep(bool full, int amplify, const std::string& tile, double bandwidth) {
    const GridSize res{48, 48, 48};
    WTURBULENCE fast(48, 48, 48, amplify, 10, 4, tile), reference(48, 48, 48, amplify, 10, 4, tile);
    const Velocity v = whirls(res, 3);
    fillDensity(fast.densityBig);
    fillDensity(reference.densityBig);
    constexpr float dt = 0.05F;
    const auto step = [&] {
        const auto run = full ? &WTURBULENCE::stepFullTurbulence : &WTURBULENCE::stepNoiseAdvection;
        (fast.*run)(dt, v.x.data(), v.y.data(), v.z.data(), true, 15);
    };
    const int threads = omp_get_max_threads();
    omp_set_num_threads(1);
    const double plainly = best(1, [&] {
        (full ? plain::stepFullTurbulence : plain::stepNoiseAdvection)(reference, dt, v.x.data(), v.y.data(),
                                                                       v.z.data(), true, 15);
    });
    const double alone = best(4, step);
    omp_set_num_threads(threads);
    const double together = best(4, step);
    std::string name = full ? "stepFullTurbulence" : "stepNoiseAdvection";
    name += ", amplify ";
    name += std::to_string(amplify);
    report((name + ", 1 thread").c_str(), alone, "the same plainly", plainly, 0.25);
    report((name + ", " + std::to_string(threads) + " threads").c_str(), together, "on 1 thread", alone,
           threads > 1 ? 1.3 / std::min(threads, 8) : 1.1);
    const auto cells = static_cast<double>(fast.densityBig.size());
    std::printf(
        "  %.1f million fine cells/s; each of the 7 fine arrays once: %.0f %% of the bandwidth of a copy\n",
        1e-6 * cells / together, 100 * 7 * sizeof(float) * cells / together / bandwidth);
}

void benchMacCormack(float reach) {
    const GridSize res{256, 256, 256};
    const std::size_t cells = cellCount(res);
    const Velocity v = whirls(res, reach);
    FloatArray oldField(cells), newField(cells), temp1(cells), temp2(cells);
    fillDensity(oldField);
    const double peer = best(5, [&] {
#pragma GCC ivdep
        for (std::size_t i = 0; i < cells; ++i) {
            const float sum = v.x[i] + v.y[i] + v.z[i] + oldField[i];
            newField[i] = temp1[i] = temp2[i] = sum;
        }
        keep(newField);
    });
    const double seconds = best(5, [&] {
        FLUID_3D::advectMacCormack(1, v.x.data(), v.y.data(), v.z.data(), oldField.data(), newField.data(),
                                   temp1.data(), temp2.data(), res);
    });
    char name[80];
    std::snprintf(name, sizeof name, "advectMacCormack 256^3, up to %g cells a step", reach);
    report(name, seconds, "its arrays read and written once", peer, 2);
}

void benchTile(const std::string& file) {
    FloatArray tile(tileSize);
    reportLimit("noise tile made", best(3, [&] { makeNoiseTile(tile.data()); }), "s", 1);
    saveTile(tile.data(), file);
    std::vector<char> bytes(tileSize * sizeof(float));
    const double peer = best(5, [&] {
        std::FILE* in = std::fopen(file.c_str(), "rb");
        if (!in || ::read(fileno(in), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            std::printf("fluid: short read\n");
        if (in) std::fclose(in);
    });
    report("noise tile read back", best(5, [&] { (void)loadTile(tile.data(), file); }),
           "one read of the file", peer, 1.25);
}

} // namespace

static void benchFluid() {
    const std::string tile =
        (std::filesystem::temp_directory_path() / ("bench_" + std::to_string(::getpid()) + ".wt")).string();
    benchTile(tile);
    const double bandwidth = copyBandwidth();
    for (const bool full : {false, true}) {
        for (const int amplify : {2, 4})
            benchStep(full, amplify, tile, bandwidth);
    }
    benchMacCormack(1);
    benchMacCormack(3);
    std::filesystem::remove(tile);
}

static const Benchmark registered("fluid", benchFluid);

} // namespace vesk::bench
