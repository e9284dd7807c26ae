#include "nodes/arrayToArray/mixChannels.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

std::vector<MPoint> points(const ChannelSources& sources) {
    std::vector<MPoint> out(mixedLength(sources));
    mixChannels(sources, std::span<MPoint>(out));
    return out;
}

/// The description word by word: each input becomes points first, and those are picked from.
std::vector<MPoint> pointsInTwoSteps(const ChannelSources& sources) {
    std::vector<MPoint> made[4];
    for (std::size_t k = 0; k < 4; ++k) {
        const auto& [values, reads] = sources[k];
        if (const auto* doubles = std::get_if<std::span<const double>>(&values)) {
            for (const double d : *doubles)
                made[k].push_back(
                    MPoint(reads[0] ? d : 0, reads[1] ? d : 0, reads[2] ? d : 0, reads[3] ? d : 0));
        } else if (const auto* vectors = std::get_if<std::span<const MVector>>(&values)) {
            made[k].resize(vectors->size());
            for (std::size_t i = 0; i < vectors->size(); ++i) {
                for (unsigned c = 0; c < 3; ++c)
                    made[k][i][c] = reads[c] ? (*vectors)[i][c] : 0;
                if (k < 3) {
                    made[k][i].w = 0;
                } else if (i < made[2].size()) {
                    made[2][i].w = 0;
                }
            }
        } else if (const auto* whole = std::get_if<std::span<const MPoint>>(&values)) {
            made[k].assign(whole->begin(), whole->end());
        }
    }
    std::vector<MPoint> out(mixedLength(sources));
    for (std::size_t i = 0; i < out.size(); ++i) {
        for (unsigned c = 0; c < 4; ++c) {
            out[i][c] = 0;
            for (std::size_t k = 0; k < 4; ++k) {
                if (sources[k].reads[c] && i < made[k].size()) out[i][c] = made[k][i][c];
            }
        }
    }
    return out;
}

TEST(MixChannels, IsThePickingFromWorkingPointsToTheBit) {
    std::vector<double> doubles;
    std::vector<MVector> vectors;
    std::vector<MPoint> whole;
    for (int i = 1; i <= 7; ++i) {
        doubles.push_back(i);
        vectors.emplace_back(10 * i, 20 * i, 30 * i);
        whole.emplace_back(100 * i, 200 * i, 300 * i, 400 * i);
    }
    // Every choice of kinds, with lengths and switches that a small generator deals out.
    unsigned state = 1;
    const auto next = [&](unsigned below) { return (state = state * 1103515245U + 12345U) / 65536U % below; };
    for (unsigned kinds = 0; kinds < 4 * 4 * 4 * 4; ++kinds) {
        ChannelSources sources;
        for (unsigned k = 0; k < 4; ++k) {
            const std::size_t length = next(8);
            switch (kinds >> 2 * k & 3U) {
            case 1: sources[k].values = std::span<const double>(doubles).first(length); break;
            case 2: sources[k].values = std::span<const MVector>(vectors).first(length); break;
            case 3: sources[k].values = std::span<const MPoint>(whole).first(length); break;
            default: break;
            }
            for (bool& reads : sources[k].reads)
                reads = next(2) == 1;
        }
        const auto expected = pointsInTwoSteps(sources);
        ASSERT_EQ(points(sources), expected) << kinds;
        std::vector<MVector> out(expected.size());
        mixChannels(sources, std::span<MVector>(out));
        for (std::size_t i = 0; i < out.size(); ++i)
            ASSERT_EQ(out[i], MVector(expected[i])) << kinds;
    }
}

TEST(MixChannels, TheFourthInputsVectorsTakeTheThirdsW) {
    const MPoint third[] = {{1, 1, 1, 5}, {1, 1, 1, 5}};
    const MVector fourth[] = {{2, 2, 2}};
    ChannelSources sources;
    sources[2] = {std::span<const MPoint>(third), {true, true, true, true}};
    sources[3] = {std::span<const MVector>(fourth), {true, false, false, false}};
    EXPECT_EQ(points(sources), (std::vector<MPoint>{{2, 1, 1, 0}, {1, 1, 1, 5}}));
    sources[3].reads[3] = true;
    EXPECT_EQ(points(sources)[0], MPoint(2, 1, 1, 1));
}

class ArrayToArray : public tests::PluginTest {};

TEST_F(ArrayToArray, SwitchesLengthsAndKinds) {
    run("createNode arrayToArray -n m; setAttr m.inArray1 -type vectorArray 2 1 2 3 4 5 6;");
    expectNear(floats("m.outArray"), {1, 2, 3, 4, 5, 6});
    run("createNode arrayToArray -n second; setAttr second.inArray2 -type vectorArray 1 1 2 3;");
    expectNear(floats("second.outArray"), {0, 0, 0});
    run("setAttr m.inArray1 -type doubleArray 3 1 2 3; setAttr m.inArray3 -type doubleArray 1 9;"
        "setAttr m.readX3 1; setAttr m.readZ1 0;");
    expectNear(floats("m.outArray"), {9, 1, 0, 2, 2, 0, 3, 3, 0});
    run("setAttr m.inArray1 -type pointArray 1 1 2 3 4; setAttr m.readW1 1; setAttr m.outDataType 1;");
    expectNear(floats("m.outArray"), {9, 2, 0, 4});
    run("setAttr m.inArray1 -type doubleArray 0; setAttr m.envelope 0");
    expectNear(floats("m.outArray"), {9, 2, 0, 4});
    run("setAttr m.envelope 1; setAttr m.nodeState 2");
    expectNear(floats("m.outArray"), {9, 2, 0, 4});
    run("setAttr m.nodeState 0; setAttr m.inArray3 -type doubleArray 0;");
    EXPECT_EQ(floats("m.outArray"), std::vector<double>());
    run("createNode arrayToArray -n none");
    EXPECT_EQ(floats("none.outArray"), std::vector<double>());
    EXPECT_EQ(mel("setAttr m.inArray1 -type Int32Array 1 5").substr(0, 6), "error:");
    complaints();
}

} // namespace
} // namespace vesk::nodes
