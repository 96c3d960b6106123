// What the check relies on in every table.
#include <gtest/gtest.h>

#include "support/tables.h"

namespace kvt_test {
namespace {

TEST(CheckedRows, AreNoMoreThanTheCheckRemembers) {
    for (const kvt_str::Record *table : all_tables()) {
        EXPECT_LE(table->rows.size(), 64U) << table->name;
    }
}

} // namespace
} // namespace kvt_test
