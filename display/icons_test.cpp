#include "display/icons.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vesk::display {

namespace {

class Icons : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "vesk-icons-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string file(std::string_view text) const {
        const auto path = folder_ / "icons.cfg";
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }
    /// What is printed while the file is loaded.
    std::string load(std::string_view text) {
        const std::string path = file(text);
        testing::internal::CaptureStdout();
        faults_ = loadIconsFile(path);
        return testing::internal::GetCapturedStdout();
    }
    static std::string counts(int elements, int icons) {
        return "INFO: " + std::to_string(elements) + " element(s) loaded.\nINFO: " + std::to_string(icons) +
               " icon(s) loaded.\n";
    }

    std::filesystem::path folder_;
    IconFaults faults_;
};

std::string numbers(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " " + std::to_string(i);
    return text;
}

} // namespace

TEST_F(Icons, ReadsEveryPropertyAndIconsInOrder) {
    EXPECT_EQ(load("// a comment\r\n"
                   "<icon> b a\n" // icons may stand before the elements
                   "  <element> a\t\n"
                   "<points> 0 0 1.5 0 1 -2e1\n<color> 0.25 0.5 nonsense\n<alpha> 0.5\n<type> 0\n<width> 3\n"
                   "<scalable_lines_width> 1\n<antialias> 0\n<outline> -1\n<is3D> 0\n<unknown> 4\n"
                   "<element> b\n<type> 1\n<points> 1 2 3 4 5 6\n<is3D> 2\n"
                   "<icon> a"),
              counts(2, 2));
    EXPECT_EQ(faults_.warnings + faults_.errors, 0);
    const IconElement& a = iconElements.at("a");
    EXPECT_EQ(a.pointValueCount, 6);
    EXPECT_EQ(a.points[2], 1.5F);
    EXPECT_EQ(a.points[5], -20.0F);
    EXPECT_EQ(a.color[1], 0.5F);
    EXPECT_EQ(a.color[2], 0.0F) << "no number is zero";
    EXPECT_EQ(a.alpha, 0.5F);
    EXPECT_EQ(a.width, 3.0F);
    EXPECT_TRUE(a.scalableLinesWidth && a.outline && !a.antialias && !a.is3D);
    const IconElement& b = iconElements.at("b");
    EXPECT_TRUE(b.is3D) << "the look-ahead makes six numbers two points";
    EXPECT_EQ(b.type, kLineLoop);
    EXPECT_EQ(b.alpha, 0.5F) << "left out: as the block before";
    EXPECT_EQ(iconDefinitions.at(0), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(iconDefinitions.at(1), (std::vector<std::string>{"a"}));
}

TEST_F(Icons, ChecksPointsByDimensionAndType) {
    const struct {
        bool is3D;
        int type;
        int count;
        const char* message; ///< null: they pass
    } rows[] = {
        {true, 0, 8, "at least 9 values (3 3D points) should be provided."},
        {true, 0, 9, nullptr},
        {true, 1, 5, "at least 6 values (2 3D points) should be provided."},
        {true, 2, 4, "at least 6 values (2 3D points) should be provided."},
        {true, 2, 6, nullptr},
        {true, 1, 7, "insufficient number of (XYZ) point coordinates."},
        {true, 1, 8, nullptr},
        {false, 0, 5, "at least 6 values (3 2D points) should be provided."},
        {false, 0, 7, "odd number of (XY) point coordinates."},
        {false, 1, 3, "at least 4 values (2 2D points) should be provided."},
        {false, 1, 4, nullptr},
        {false, 2, 1, "odd number of (XY) point coordinates."},
        {false, 2, 2, nullptr},
        {false, 0, 90, nullptr},
    };
    for (const auto& row : rows) {
        const std::string text = "<element> e\n<points>" + numbers(row.count) + "\n<type> " +
                                 std::to_string(row.type) + "\n<is3D> " + (row.is3D ? "1" : "0") +
                                 "\n<icon> e\n";
        const std::string warning = row.message ? "WARNING: line 2: " + std::string(row.message) + "\n" : "";
        EXPECT_EQ(load(text), warning + counts(1, 1)) << text;
        EXPECT_EQ(iconElements.at("e").pointValueCount, row.message ? 0 : row.count);
    }
    EXPECT_EQ(load("<element> e\n<points>" + numbers(91) + "\n<icon> e"),
              "WARNING: line 2: too many point coordinates. The first 90 values will be used.\n" +
                  counts(1, 1));
    EXPECT_EQ(iconElements.at("e").pointValueCount, 90);
    EXPECT_EQ(iconElements.at("e").points[89], 89.0F);
}

TEST_F(Icons, FaultsAreToldAndStopNothing) {
    EXPECT_EQ(load("<element> a\n<color> 1 1\n<color> 1 1 1 1\n<alpha>\n"
                   "<icon> a nobody a\n<icon>\n<element>\n<alpha> 0.5\n<icon> a\n"),
              "WARNING: line 2: tag <color> should contain exactly 3 values.\n"
              "WARNING: line 3: tag <color> should contain exactly 3 values.\n"
              "ERROR: line 5: icon definition contains invalid element names.\n"
              "ERROR: line 6: icon definition contains invalid element names.\n" +
                  counts(1, 1));
    EXPECT_EQ(faults_.warnings, 2);
    EXPECT_EQ(faults_.errors, 2);
    EXPECT_EQ(iconDefinitions.at(0), (std::vector<std::string>{"a"})) << "bad lines take no ordinal";
}

TEST_F(Icons, BlocksEndAtLinesWithNamesAlone) {
    // Neither "<icon>" nor "<element>" without a word behind it ends a block.
    (void)load("<element> a\n<icon>\n<element>\n<width> 4\n<icon> a\n<width> 5\n");
    EXPECT_EQ(iconElements.at("a").width, 4.0F);
    // A type that does not exist: the block's lines stay unread, the record of the block before is stored.
    (void)load("<element> a\n<width> 4\n<element> b\n<width> 5\n<type> 3\n<icon> b\n");
    EXPECT_EQ(iconElements.at("b").width, 4.0F);
    EXPECT_EQ(iconElements.at("b").type, kPolygon);
    // A name seen twice is the later block's.
    EXPECT_EQ(load("<element> a\n<width> 4\n<element> a\n<width> 6\n<icon> a\n"), counts(1, 1));
    EXPECT_EQ(iconElements.at("a").width, 6.0F);
}

TEST_F(Icons, ThereIsAlwaysAnIcon) {
    EXPECT_EQ(load(""), counts(0, 0));
    EXPECT_EQ(iconDefinitions.at(0), (std::vector<std::string>{"PLACEHOLDER"}));
    EXPECT_EQ(iconElements.at("PLACEHOLDER").pointValueCount, 0);
}

TEST_F(Icons, WhatCannotBeReadKeepsWhatWasLoaded) {
    (void)load("<element> a\n<icon> a\n");
    for (const std::string& path : {folder_.string(), (folder_ / "nowhere.cfg").string()}) {
        testing::internal::CaptureStdout();
        (void)loadIconsFile(path);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), counts(1, 1));
        EXPECT_TRUE(iconElements.contains("a"));
    }
}

TEST_F(Icons, JunkAndVeryLongLinesAreSurvived) {
    std::string junk;
    for (int i = 0; i < 100000; ++i)
        junk += static_cast<char>(i * 7919 >> 3);
    EXPECT_EQ(load(junk + "\n<element> a\n<points>" + numbers(200000) +
                   "\n<icon> a\n"
                   "<icon> " +
                   std::string(1 << 20, 'x'))
                  .substr(0, 14),
              "WARNING: line ");
    EXPECT_EQ(iconElements.at("a").pointValueCount, 90);
    EXPECT_EQ(faults_.errors, 1);
}

TEST_F(Icons, TheDefaultFileIsFlawless) {
    testing::internal::CaptureStdout();
    const IconFaults faults = loadIconsFile(std::string(VESK_SOURCE_DIR) + "/scripts/icons.cfg");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), counts(56, 33));
    EXPECT_EQ(faults.warnings, 0);
    std::map<std::string, int> uses;
    for (const auto& [ordinal, names] : iconDefinitions) {
        for (const auto& name : names)
            ++uses[name];
    }
    EXPECT_EQ(uses.size(), iconElements.size()) << "an element that no icon shows";
}

} // namespace vesk::display
