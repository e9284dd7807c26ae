#include "host/api/number_text.h"

#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

std::string joined(const char* text, char separator) {
    MStringArray pieces;
    EXPECT_TRUE(MString(text).split(separator, pieces));
    MString all;
    for (unsigned int i = 0; i < pieces.length(); ++i)
        all += "<" + pieces[i] + ">";
    return all.asChar();
}

TEST(NumberText, TenDigits) {
    EXPECT_EQ(vesk::formatDouble(1.0 / 3.0), "0.3333333333");
    EXPECT_EQ(vesk::formatDouble(3.14159265358979), "3.141592654");
    EXPECT_EQ(vesk::formatDouble(5.0), "5");
    EXPECT_EQ(vesk::formatDouble(-1e-7), "-1e-07");
    EXPECT_EQ(vesk::formatDouble(0.0001), "0.0001");
    EXPECT_EQ(vesk::formatDouble(12345678901.0), "1.23456789e+10");
    EXPECT_EQ(vesk::formatDouble(-std::nan("")), "nan");
    EXPECT_EQ(vesk::formatDouble(-infinity), "-inf");
    EXPECT_EQ(vesk::formatDouble(2.0 / 3.0, 3), "0.667");
    EXPECT_EQ(vesk::formatFixed(1.005, 1), "1.0");
    EXPECT_EQ(vesk::formatFixed(-1e300, 1000).size(), 1u + 301u + 1u + 60u);
}

TEST(NumberText, ShortestThatReadsBack) {
    EXPECT_EQ(vesk::formatExact(0.1), "0.1");
    EXPECT_EQ(vesk::formatExact(0.1F), "0.1");
    EXPECT_EQ(vesk::formatExact(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(vesk::formatExact(100000.0), "100000");
    EXPECT_EQ(vesk::formatExact(1e16), "10000000000000000");
    EXPECT_EQ(vesk::formatExact(1e17), "1e+17");
    EXPECT_EQ(vesk::formatExact(0.00001), "0.00001");
    EXPECT_EQ(vesk::formatExact(-0.000001), "-1e-06");
    EXPECT_EQ(vesk::formatExact(0.0), "0");
    EXPECT_EQ(vesk::formatExact(infinity), "inf");
    for (const double value : {0.1 + 0.2, 1e-310, std::numeric_limits<double>::max(), -2.0 / 3.0e20}) {
        EXPECT_EQ(vesk::leadingNumber(vesk::formatExact(value)).value, value);
    }
}

TEST(NumberText, LeadingNumbers) {
    const auto reads = [](const std::string& text, double value, std::size_t length) {
        const vesk::LeadingNumber number = vesk::leadingNumber(text);
        return number.value == value && number.length == length;
    };
    EXPECT_TRUE(reads("  -1.5e2cm", -150.0, 8));
    EXPECT_TRUE(reads("+.5.5", 0.5, 3));
    EXPECT_TRUE(reads("5.", 5.0, 2));
    EXPECT_TRUE(reads("1e", 1.0, 1));
    for (const char* none : {"", " ", "-", "+-1", "--1", ".", "-.e1", "nan", "-inf", "infinity", "abc"}) {
        EXPECT_TRUE(reads(none, 0.0, 0)) << none;
    }
    EXPECT_TRUE(reads("-1e999", -infinity, 6));
    EXPECT_TRUE(reads("1e-999", 0.0, 6));
    EXPECT_TRUE(reads("1e99999999999999999999", infinity, 22));
    EXPECT_TRUE(reads(std::string(400, '0').replace(1, 1, ".").append("1"), 0.0, 401));
    EXPECT_TRUE(reads(std::string(400, '9').append("e-5"), infinity, 403));
    EXPECT_EQ(vesk::wholeNumber(" 2.5 "), 2.5);
    EXPECT_FALSE(vesk::wholeNumber("2.5x") || vesk::wholeNumber("") || vesk::wholeNumber("1 2"));
    EXPECT_EQ(vesk::wholeInteger(" +12 "), 12);
    EXPECT_FALSE(vesk::wholeInteger("1.0") || vesk::wholeInteger("+-1") || vesk::wholeInteger("+") ||
                 vesk::wholeInteger("99999999999999999999"));
}

TEST(String, NumbersJoinAsText) {
    MString text("polyCut -pc ");
    text += 1e-7;
    text = text + " " + 5.0 + " " + 2 + " " + 3u;
    EXPECT_EQ(text, "polyCut -pc 1e-07 5 2 3");
    text.set(2.0, 3);
    EXPECT_EQ(text, "2.000");
    EXPECT_EQ("a" + MString("b"), "ab");
    EXPECT_EQ(MString(nullptr).length(), 0u);
    EXPECT_EQ(MString("a\0bc", 3).length(), 3u);
    EXPECT_EQ(MString("a\xC3\xA9z").numChars(), 3u);
}

TEST(String, Split) {
    EXPECT_EQ(joined("a|b", '|'), "<a><b>");
    EXPECT_EQ(joined("||a||b|", '|'), "<a><b>");
    EXPECT_EQ(joined("alone", '|'), "<alone>");
    EXPECT_EQ(joined("", '|'), "");
}

TEST(String, PiecesAndPlaces) {
    const MString text("pSphere1.vtx");
    EXPECT_EQ(text.index('p'), 0);
    EXPECT_EQ(text.rindex('e'), 6);
    EXPECT_EQ(text.index('?'), -1);
    EXPECT_EQ(text.substring(1, 6), "Sphere");
    EXPECT_EQ(text.substring(9, 99), "vtx");
    EXPECT_EQ(text.substring(-1, 3), "");
    EXPECT_EQ(text.substring(3, 2), "");
    EXPECT_EQ(text.substring(12, 12), "");
    MString cased("aZ[`{5");
    EXPECT_EQ(cased.toUpperCase(), "AZ[`{5");
    EXPECT_EQ(cased.toLowerCase(), "az[`{5");
}

TEST(String, ReadsNumbers) {
    EXPECT_TRUE(MString("-2147483648").isInt());
    EXPECT_FALSE(MString("2147483648").isInt() || MString("1.5").isInt() || MString("").isInt());
    EXPECT_TRUE(MString("4294967295").isUnsigned());
    EXPECT_FALSE(MString("-1").isUnsigned());
    EXPECT_TRUE(MString("-1.5e3").isDouble());
    EXPECT_FALSE(MString("nan").isDouble() || MString("1x").isDouble());
    EXPECT_EQ(MString("-3.9cm").asInt(), -3);
    EXPECT_EQ(MString("many").asInt(), 0);
    EXPECT_EQ(MString("1e300").asInt(), 2147483647);
    EXPECT_EQ(MString("0.25").asDouble(), 0.25);
}

} // namespace
