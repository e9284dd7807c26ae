#include "host/scene/formats/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::formats {
namespace {

TEST(TextCursor, ReadsNumbersOneAfterAnother) {
    TextCursor cursor("1 -2.5e1\t+.5\r\n-.25 7. 1e999 -1e999 1e-999 x");
    double value = 0.0;
    for (const double expected : {1.0, -25.0, 0.5, -0.25, 7.0, HUGE_VAL, -HUGE_VAL, 0.0}) {
        cursor.skipBlanks();
        ASSERT_TRUE(cursor.number(value)) << cursor.rest();
        EXPECT_EQ(value, expected);
    }
    cursor.skipBlanks();
    EXPECT_FALSE(cursor.number(value));
    EXPECT_EQ(cursor.word(), "x");
    EXPECT_TRUE(cursor.atEnd());
}

TEST(TextCursor, RoundsFloatsOnce) {
    // Just above the middle of two floats: by way of a double it would end on the middle and go down.
    TextCursor cursor("1.0000000596046447753906251 +3e38 3.5e38 -1e39 1e-60");
    float value = 0.0F;
    for (const float expected : {std::nextafter(1.0F, 2.0F), 3e38F, HUGE_VALF, -HUGE_VALF, 0.0F}) {
        cursor.skipBlanks();
        ASSERT_TRUE(cursor.number(value)) << cursor.rest();
        EXPECT_EQ(value, expected);
    }
}

TEST(TextCursor, StaysPutWhereThereIsNoNumber) {
    for (const char* text :
         {"", " 1", "nan", "-nan", "inf", "-inf", "-", "+", ".", "-.", "+-1", "e5", "--1"}) {
        TextCursor cursor(text);
        double value = 3.0;
        EXPECT_FALSE(cursor.number(value)) << text;
        EXPECT_EQ(cursor.rest(), text);
        EXPECT_EQ(value, 3.0);
    }
    for (const char* text : {"", " 1", "x", "-", "+-1", "9223372036854775808"}) {
        TextCursor cursor(text);
        std::int64_t value = 3;
        EXPECT_FALSE(cursor.integer(value)) << text;
        EXPECT_EQ(cursor.rest(), text);
    }
}

TEST(TextCursor, StopsWhereItsTextDoes) {
    // The digits after the end must not be seen.
    TextCursor cursor(std::string_view("12345").substr(0, 2));
    double value = 0.0;
    ASSERT_TRUE(cursor.number(value));
    EXPECT_EQ(value, 12.0);
    EXPECT_FALSE(cursor.number(value));
    TextCursor sign(std::string_view("-1").substr(0, 1));
    EXPECT_FALSE(sign.number(value));
}

TEST(TextCursor, WalksLines) {
    const std::string_view text = "a b\r\n\n  +12/-3\nlast";
    TextCursor cursor(text);
    EXPECT_EQ(cursor.word(), "a");
    cursor.skipLine();
    cursor.skipBlanksInLine();
    EXPECT_EQ(cursor.peek(), '\n');
    cursor.skipBlanks();
    EXPECT_EQ(lineOf(text, cursor.at()), 3U);
    std::int64_t value = 0;
    ASSERT_TRUE(cursor.integer(value));
    EXPECT_EQ(value, 12);
    ASSERT_TRUE(cursor.take('/'));
    ASSERT_TRUE(cursor.integer(value));
    EXPECT_EQ(value, -3);
    cursor.skipLine();
    EXPECT_EQ(cursor.word(), "last");
    cursor.skipLine();
    EXPECT_TRUE(cursor.atEnd());
}

} // namespace
} // namespace vesk::formats
