// Tables of texts, as several commands print them.
#include <gtest/gtest.h>

#include <string>

#include "model/columns.h"

namespace kvt_tool {
namespace {

constexpr auto left = Columns::Side::left;
constexpr auto right = Columns::Side::right;

TEST(Columns, AreAsWideAsTheirWidestCell) {
    Columns columns({left, right, left});
    columns.add({"KIND", "N", "BLOCK"});
    columns.add({"END_JOB", "12345", "end_job"});
    EXPECT_EQ(columns.text(), "KIND         N  BLOCK\n"
                              "END_JOB  12345  end_job\n");
}

TEST(Columns, LeaveNoBlanksAtTheEndsOfLines) {
    Columns columns({left, left});
    columns.add({"a", "bcd"});
    columns.add({"}"});
    columns.add({});
    EXPECT_EQ(columns.text(), "a  bcd\n}\n\n");
}

TEST(Columns, ALineOfTextWidensNone) {
    Columns columns({left, left});
    columns.add({"a", "b"});
    columns.add_text("  a long line");
    EXPECT_EQ(columns.text(), "a  b\n  a long line\n");
}

} // namespace
} // namespace kvt_tool
