// Texts within DOT: whatever a name holds, it is shown and harms nothing.
#include <gtest/gtest.h>

#include "graph/text.h"
#include "model/hexadecimal.h"

namespace kvt_tool {
namespace {

using namespace std::string_literals;

TEST(GraphText, WhatIsNoUtf8IsShownAsItsBytes) {
    EXPECT_EQ(visible("leaf\xff\xfe"), "leaf\\xff\\xfe");
    EXPECT_EQ(visible("\xc3"), "\\xc3");
    EXPECT_EQ(visible("\xc3("), "\\xc3(");
    EXPECT_EQ(visible("\xc0\xaf"), "\\xc0\\xaf") << "too long a form of /";
    EXPECT_EQ(visible("\xe0\x80\xaf"), "\\xe0\\x80\\xaf");
    EXPECT_EQ(visible("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
    EXPECT_EQ(visible("\xef\xbf\xbf"), "\\xef\\xbf\\xbf") << "no character of XML";
    EXPECT_EQ(visible("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond the last plane";
    EXPECT_EQ(visible("\xf5\x80\x80\x80"), "\\xf5\\x80\\x80\\x80");
}

TEST(GraphText, ControlCharactersAreShownAsTheirBytes) {
    EXPECT_EQ(visible("a\nb\tc\x7f\0"s), "a\\x0ab\\x09c\\x7f\\x00");
    EXPECT_EQ(visible("\xc2\x85"), "\\xc2\\x85");
}

TEST(GraphText, OtherCharactersStay) {
    EXPECT_EQ(visible("Böhme €𝄞 <\"&\\>"), "Böhme €𝄞 <\"&\\>");
}

TEST(GraphText, AnArrayEndsAtItsNulOrAtItsEnd) {
    const char with_nul[6] = {'a', 'b', '\0', 'c', 'd', '\0'};
    const char full[3] = {'a', 'b', 'c'};
    EXPECT_EQ(visible_array(with_nul), "ab");
    EXPECT_EQ(visible_array(full), "abc");
}

TEST(GraphText, AQuotedTextShowsWhatItIsMadeOf) {
    EXPECT_EQ(quoted("say \"hi\"\\\nA&B"), R"("say \"hi\"\\\nA&amp;B")");
    EXPECT_EQ(quoted("ends with \\"), R"("ends with \\")");
}

TEST(GraphText, ABackslashInATooltipSurvivesTwoReadings) {
    EXPECT_EQ(quoted_tooltip("a\\\n\"&"), R"("a\\\\\n\"&amp;")");
}

TEST(GraphText, HtmlHasNoMarkupOfANameInIt) {
    EXPECT_EQ(in_html("<b a=\"1\">&"), "&lt;b a=&quot;1&quot;&gt;&amp;");
}

TEST(GraphText, LabelsAreCutBetweenCharacters) {
    EXPECT_EQ(shortened(std::string(32, 'x')), std::string(32, 'x'));
    EXPECT_EQ(shortened(std::string(33, 'x')), std::string(32, 'x') + "…");
    EXPECT_EQ(shortened(std::string(31, 'x') + "öö"), std::string(31, 'x') + "ö…");
}

TEST(GraphText, NumbersOfThingsHaveTheirPlural) {
    EXPECT_EQ(counted(0, "host", "hosts"), "0 hosts");
    EXPECT_EQ(counted(1, "host", "hosts"), "1 host");
    EXPECT_EQ(guid_text(0x248a0703000000ff), "0x248a0703000000ff");
}

} // namespace
} // namespace kvt_tool
