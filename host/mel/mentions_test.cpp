// Which places of an expression's text name attributes.

#include "host/mel/mentions.h"

#include <gtest/gtest.h>

namespace vesk::mel {
namespace {

/// Mentions as `kind:text`, written ones with a star behind.
std::string found(std::string_view text) {
    static constexpr const char* kKinds[] = {"plug", "name", "time", "frame", "in", "out"};
    std::string all;
    for (const Mention& mention : mentionsIn(text)) {
        if (!all.empty()) all += ' ';
        all += kKinds[static_cast<int>(mention.kind)];
        all += ':' + std::string(text.substr(mention.begin, mention.end - mention.begin));
        if (mention.isWritten) all += '*';
    }
    return all;
}

TEST(Mentions, PlugsAreReadOrWritten) {
    struct Row {
        const char *text, *expected;
    };
    for (const Row& row : {
             Row{"pCube1.ty = sin(time) * 2;", "plug:pCube1.ty* time:time"},
             Row{"a.tx += b.w[3].v==c.x?frame:1;++d.y; e.z--;",
                 "plug:a.tx* plug:b.w[3].v plug:c.x frame:frame plug:d.y* plug:e.z*"},
             Row{"|g|a.tx = rig:b.tx*(|c.ty||d.tz);", "plug:|g|a.tx* plug:rig:b.tx plug:|c.ty plug:d.tz"},
             Row{".O[0] = .I[12]; $i[.I[1]] = .5;", "out:.O[0]* in:.I[12] in:.I[1]"},
             // Components, numbers, strings and comments are none.
             Row{"vector $v = <<1,2,3>>; a.tx = $v.x + ($v + $v).y + 1.5e2; // b.tx = 1\n", "plug:a.tx*"},
             Row{"string $s = \"b.tx\"; /* c.tx */ return;", ""},
             Row{"if (time > 1) tx = 2; else ty = time();", "time:time name:tx* name:ty*"},
         })
        EXPECT_EQ(found(row.text), row.expected) << row.text;
}

TEST(Mentions, WordsOfCommandsAreLeftAlone) {
    EXPECT_EQ(found("setAttr a.tx 5; b.tx = 1;"), "plug:b.tx*");
    EXPECT_EQ(found("if ($x) print (\"at \" + a.tx + \"\\n\"); b.tx = `getAttr c.tx` + `f (d.tx)`;"),
              "plug:a.tx plug:b.tx* plug:d.tx");
    EXPECT_EQ(found("select -r a.tx; print(a.tx);"), "plug:a.tx");
}

TEST(Mentions, BadTextEndsTheSearch) {
    EXPECT_EQ(found("a.tx = 1; \"open b.tx = 2;"), "plug:a.tx*");
    EXPECT_EQ(found("a.tx = @ b.tx"), "plug:a.tx*");
    EXPECT_EQ(found(")))] a.tx[ = .I[ a.b[99999999999]"), "plug:a.tx plug:a.b[99999999999]");
    EXPECT_EQ(mentionsIn(".I[99999999999]").front().index, 2147483647);
    (void)mentionsIn(std::string(1 << 20, '('));
}

} // namespace
} // namespace vesk::mel
