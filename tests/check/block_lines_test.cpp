// What the check remembers of a block's lines.
#include <gtest/gtest.h>

#include <vector>

#include "block_lines.h"

namespace kvt_test {
namespace {

/// How many rows of a table with so many are looked at.
size_t rows_looked_at(size_t count) {
    const std::vector<kvt_str::Row> rows(count);
    const kvt_str::Record table{.name = "",
                                .reader = "",
                                .rows = {rows.data(), rows.size()},
                                .size = 0,
                                .has_pointers = false,
                                .reading = kvt_str::Reading::cleared_and_traced};
    return kvt_checking::BlockLines(table).rows().size();
}

TEST(BlockLines, AreThoseOfSixtyFourRowsAtMost) {
    EXPECT_EQ(rows_looked_at(3), 3U);
    EXPECT_EQ(rows_looked_at(64), 64U);
    EXPECT_EQ(rows_looked_at(65), 64U);
}

} // namespace
} // namespace kvt_test
