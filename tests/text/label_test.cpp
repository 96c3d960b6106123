// The constant parts of lines, at any indentation.
#include <string>

#include <gtest/gtest.h>

#include "text/label.h"

namespace {

using kvt_str::closing_label;
using kvt_str::deepest_indent;
using kvt_str::indent_of;
using kvt_str::Label;
using kvt_str::make_label;

TEST(MakeLabel, CountsTheCharactersAfterTheBlanks) {
    constexpr Label label = make_label(KVT_BLANKS "job_id: ");
    EXPECT_EQ(label.length, 8);
    EXPECT_STREQ(label.text, "job_id: ");
}

TEST(MakeLabel, TakesAnEmptyText) {
    constexpr Label label = make_label(KVT_BLANKS "");
    EXPECT_EQ(label.length, 0);
    EXPECT_STREQ(label.text, "");
}

TEST(Label, IsIndentedByAsManyBlanks) {
    constexpr Label label = make_label(KVT_BLANKS "quota {\n");
    EXPECT_STREQ(label.indented(0), "quota {\n");
    EXPECT_STREQ(label.indented(1), " quota {\n");
    EXPECT_STREQ(label.indented(4), "    quota {\n");
    EXPECT_STREQ(label.indented(10), "          quota {\n");
    EXPECT_EQ(label.indented(deepest_indent), std::string(deepest_indent, ' ') + "quota {\n");
}

TEST(Label, HasRoomForTheDeepestLines) {
    EXPECT_GE(deepest_indent, 10U);
}

TEST(ClosingLabel, IsAClosingBraceAndANewlineAtAnyIndentation) {
    EXPECT_EQ(closing_label.length, 2);
    EXPECT_STREQ(closing_label.text, "}\n");
    EXPECT_STREQ(closing_label.indented(indent_of(1)), "  }\n");
    EXPECT_STREQ(closing_label.indented(indent_of(2)), "    }\n");
}

TEST(IndentOf, IsTwoBlanksALevel) {
    EXPECT_EQ(indent_of(0), 0U);
    EXPECT_EQ(indent_of(1), 2U);
    EXPECT_EQ(indent_of(5), 10U);
}

} // namespace
