#include "host/data/component_list_data.h"
#include "host/data/component_text.h"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Texts = std::vector<std::string>;

/// Reads the texts and writes what they mean.
Texts reread(const Texts& texts) {
    std::string error;
    const auto list = ComponentListData::fromTexts(texts, error);
    EXPECT_EQ(error, "");
    return list ? list->texts() : Texts{"nothing"};
}

std::string errorOf(const Texts& texts) {
    std::string error;
    EXPECT_FALSE(ComponentListData::fromTexts(texts, error));
    return error;
}

TEST(ComponentText, RunsAreWrittenAsRanges) {
    EXPECT_EQ(reread({"vtx[5]", "vtx[2]", "vtx[0:1]"}), (Texts{"vtx[0:2]", "vtx[5]"}));
    EXPECT_EQ(reread({"f[7:4]"}), (Texts{"f[4:7]"}));
    EXPECT_EQ(reread({"map[0]", "map[1]"}), (Texts{"map[0:1]"}));
    EXPECT_EQ(reread({"ep[3]"}), (Texts{"ep[3]"}));
    EXPECT_EQ(reread({"e[*]", "e[3]"}), (Texts{"e[*]"}));
    EXPECT_EQ(reread({}), Texts{});
}

TEST(ComponentText, BlocksAreWrittenAsRangesOfEveryIndex) {
    EXPECT_EQ(reread({"cv[0:1][2:5]"}), (Texts{"cv[0:1][2:5]"}));
    EXPECT_EQ(reread({"cv[0][2:5]", "cv[1][2:5]", "cv[1][0]", "cv[3][2:5]"}),
              (Texts{"cv[0:1][2:5]", "cv[1][0]", "cv[3][2:5]"}));
    EXPECT_EQ(reread({"cv[*][*]"}), (Texts{"cv[*][*]"}));
    EXPECT_EQ(reread({"pt[0:1][0:2][3]", "pt[4][0][0]"}), (Texts{"pt[0:1][0:2][3]", "pt[4][0][0]"}));
    EXPECT_EQ(reread({"vtxFace[8][2]", "vtxFace[8][3]"}), (Texts{"vtxFace[8][2:3]"}));
}

TEST(ComponentText, KindsComeFromWordAndBrackets) {
    std::string error;
    const Texts texts{"cv[1]", "f[0]", "cv[1][2]", "pt[0]", "pt[0][0][0]", "f[2]"};
    const auto list = ComponentListData::fromTexts(texts, error);
    ASSERT_TRUE(list) << error;
    ASSERT_EQ(list->length(), 5);
    const MFn::Type kinds[] = {MFn::kCurveCVComponent, MFn::kMeshPolygonComponent, MFn::kSurfaceCVComponent,
                               MFn::kDynParticleSetComponent, MFn::kLatticeComponent};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(list->entry(i).apiType(), kinds[i]) << i;
    EXPECT_EQ(list->entry(1).count(), 2u);
}

TEST(ComponentText, StarsCountWhereSizesAreKnown) {
    const auto surface = Component::create(MFn::kSurfaceCVComponent);
    const int sizes[] = {2, 3};
    EXPECT_TRUE(addTo(*surface, parseComponentText("cv[*][1]"), sizes));
    EXPECT_EQ(surface->texts(), (Texts{"cv[0:1][1]"}));
    EXPECT_TRUE(addTo(*surface, parseComponentText("cv[*][*]"), sizes));
    EXPECT_TRUE(surface->isComplete());
    EXPECT_EQ(surface->count(), 6u);
    const auto faces = Component::create(MFn::kMeshPolygonComponent);
    EXPECT_FALSE(addTo(*faces, parseComponentText("vtx[0]")));
}

TEST(ComponentText, BadTextsAreNamed) {
    for (const char* text :
         {"",          "vtx",         "vtx[",    "vtx[]",    "vtx[1",      "vtx[1]x",
          "vtx[-1]",   "vtx[a]",      "vtx[1:]", "vtx[:2]",  "vtx[1:2:3]", "vtx[99999999999]",
          "vtx[1][2]", "cv[1][2][3]", "[1]",     "pt[0][0]", "vtx[0:*]",   "vtx(1)",
          "vertex[0]", "vtx[1],[2]"}) {
        EXPECT_EQ(errorOf({text}).rfind("'" + std::string(text) + "' is not a component", 0), 0u) << text;
    }
    EXPECT_NE(errorOf({"f[1]", "cv[*][3]"}).find("'cv'"), std::string::npos);
    EXPECT_NE(errorOf({"vtx[0:2147483647]"}).find("Too many"), std::string::npos);
    EXPECT_NE(errorOf({"cv[0:99999][0:99999]"}).find("Too many"), std::string::npos);
}

} // namespace
} // namespace vesk
