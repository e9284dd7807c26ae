#include "host/scene/formats/array_files.h"
#include "host/scene/formats/test_folder.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace vesk::formats {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// The header text and the data of an NPY file of version 1.0.
struct Npy {
    std::string header, data;

    explicit Npy(const std::string& bytes) {
        EXPECT_EQ(bytes.substr(0, 8), std::string("\x93NUMPY\x01\x00", 8));
        const auto length =
            static_cast<unsigned char>(bytes.at(8)) + 256U * static_cast<unsigned char>(bytes.at(9));
        EXPECT_EQ((10 + length) % 64, 0U);
        header = bytes.substr(10, length);
        data = bytes.substr(10 + length);
        EXPECT_EQ(header.back(), '\n');
        header.erase(header.find_last_not_of(" \n") + 1);
    }
    template <class T>
    std::vector<T> values() const {
        std::vector<T> items(data.size() / sizeof(T));
        std::memcpy(items.data(), data.data(), data.size());
        return items;
    }
};

TEST(Npy, HoldsTypeShapeAndBits) {
    const TestFolder folder;
    const std::vector<double> doubles = {0.1, -0.0, 1e300, infinity, 5e-324, 1.0};
    ASSERT_TRUE(writeNpy(folder.path("v.npy"), {"v", std::span(doubles), 3}));
    const Npy vectors(folder.load("v.npy"));
    EXPECT_EQ(vectors.header, "{'descr': '<f8', 'fortran_order': False, 'shape': (2, 3), }");
    EXPECT_EQ(vectors.values<double>(), doubles);
    EXPECT_TRUE(std::signbit(vectors.values<double>()[1]));

    const std::vector<int> ints = {-1, 2147483647};
    ASSERT_TRUE(writeNpy(folder.path("i.npy"), {"i", std::span(ints), 1}));
    const Npy plain(folder.load("i.npy"));
    EXPECT_EQ(plain.header, "{'descr': '<i4', 'fortran_order': False, 'shape': (2,), }");
    EXPECT_EQ(plain.values<int>(), ints);

    ASSERT_TRUE(writeNpy(folder.path("f.npy"), {"f", std::span<const float>(), 1}));
    const Npy empty(folder.load("f.npy"));
    EXPECT_EQ(empty.header, "{'descr': '<f4', 'fortran_order': False, 'shape': (0,), }");
    EXPECT_EQ(empty.data, "");
}

TEST(Csv, OneRowAnEntry) {
    const TestFolder folder;
    const std::vector<double> positions = {1, -0.5, 1e20, nan, infinity, 0.1};
    const std::vector<int> ids = {7, 8, 9};
    const std::vector<float> weights = {0.1F, 1e-7F, 2, 3, 4};
    const std::vector<std::string> names = {"plain", "a \"b\", c", "two\nlines"};
    const ArrayColumn columns[] = {{"position", std::span(positions), 3},
                                   {"id", std::span(ids), 1},
                                   {"five", std::span(weights), 5},
                                   {"na,me", std::span(names), 1}};
    ASSERT_TRUE(writeCsv(folder.path("a.csv"), columns));
    EXPECT_EQ(folder.load("a.csv"),
              "position.x,position.y,position.z,id,five.0,five.1,five.2,five.3,five.4,\"na,me\"\n"
              "1,-0.5,1e+20,7,0.1,1e-07,2,3,4,plain\n"
              "nan,inf,0.1,8,,,,,,\"a \"\"b\"\", c\"\n"
              ",,,9,,,,,,\"two\nlines\"\n");
}

TEST(Json, OneListAColumn) {
    const TestFolder folder;
    const std::vector<double> numbers = {0.1, nan, -infinity, 1e300};
    const std::vector<float> pairs = {0.1F, 2, 3, 4};
    const std::vector<std::string> names = {"a\"\\\n\x01", "\xC3\xA9\xE2\x82\xAC"};
    const ArrayColumn columns[] = {{"n", std::span(numbers), 1},
                                   {"p", std::span(pairs), 2},
                                   {"s", std::span(names), 1},
                                   {"none", std::span<const int>(), 3}};
    ASSERT_TRUE(writeJson(folder.path("a.json"), columns));
    EXPECT_EQ(folder.load("a.json"), "{\n\"n\": [\n0.1,\nnull,\nnull,\n1e+300\n],\n"
                                     "\"p\": [\n[0.1, 2],\n[3, 4]\n],\n"
                                     "\"s\": [\n\"a\\\"\\\\\\u000a\\u0001\",\n\"\xC3\xA9\xE2\x82\xAC\"\n],\n"
                                     "\"none\": []\n}\n");
}

TEST(Json, IsUtf8WhateverTheTexts) {
    const TestFolder folder;
    const std::string bad = "\xEF\xBF\xBD";
    const std::string characters[] = {"\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xF0\x90\x80\x80",
                                      "\xF4\x8F\xBF\xBF"};
    // Each just outside one of those: longer than needed, half of a surrogate pair, beyond the last
    // character.
    const std::string strays[] = {"\xC1\xBF",         "\xE0\x9F\xBF",     "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                                  "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82"};
    std::string text, expected;
    for (const std::string& character : characters) {
        text += character;
        expected += character;
    }
    for (const std::string& stray : strays) {
        text += stray;
        for (std::size_t i = 0; i < stray.size(); ++i)
            expected += bad;
    }
    const ArrayColumn columns[] = {{"s", std::span<const std::string>(&text, 1), 1}};
    ASSERT_TRUE(writeJson(folder.path("a.json"), columns));
    EXPECT_EQ(folder.load("a.json"), "{\n\"s\": [\n\"" + expected + "\"\n]\n}\n");
}

TEST(ArrayFiles, RefuseWhatTheyCannotHold) {
    const TestFolder folder;
    const std::vector<double> four = {1, 2, 3, 4};
    const std::vector<std::string> texts = {"a"};
    const ArrayColumn broken[] = {{"p", std::span(four), 3}};
    const std::string why = "array \"p\": 4 values are no whole entries of 3";
    EXPECT_EQ(writeNpy(folder.path("a"), broken[0]).error, why);
    EXPECT_EQ(writeCsv(folder.path("a"), broken).error, why);
    EXPECT_EQ(writeJson(folder.path("a"), broken).error, why);
    EXPECT_FALSE(writeNpy(folder.path("a"), {"none", std::span(four), 0}));
    EXPECT_FALSE(writeNpy(folder.path("a"), {"t", std::span(texts), 1}));
    const ArrayColumn twins[] = {{"t", std::span(texts), 1}, {"t", std::span(four), 1}};
    EXPECT_FALSE(writeJson(folder.path("a"), twins));
    EXPECT_EQ(folder.fileCount(), 0U);
}

} // namespace
} // namespace vesk::formats
