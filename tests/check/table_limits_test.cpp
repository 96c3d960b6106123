// What the check relies on in every table, and in the names of the kinds.
#include <gtest/gtest.h>

#include <string_view>

#include "engine/text_limits.h"
#include "message_kinds.h"
#include "support/tables.h"

namespace kvt_test {
namespace {

TEST(CheckedRows, AreNoMoreThanTheCheckRemembers) {
    for (const kvt_str::Record *table : all_tables()) {
        EXPECT_LE(table->rows.size(), 64U) << table->name;
    }
}

TEST(CheckedRows, HaveNoRoomForMoreTextThanTheReaderTakes) {
    for (const kvt_str::Record *table : all_tables()) {
        for (const kvt_str::Row &row : table->rows) {
            if (row.kind == kvt_str::RowKind::text) {
                EXPECT_LE(row.capacity - size_t{1}, kvt_str::longest_text_value) << row.label.text;
            }
        }
    }
}

/// A word that a single change makes out of nothing would be meant by every typo.
void expect_known_word(std::string_view word) {
    EXPECT_GE(word.size(), 2U) << word;
    EXPECT_LE(word.size(), 99U) << word;
    EXPECT_EQ(word.find('-'), std::string_view::npos) << word;
}

TEST(KnownWords, AreLongEnoughToBeMeantByATypo) {
    for (const kvt_str::Record *table : all_tables()) {
        for (const kvt_str::Row &row : table->rows) {
            expect_known_word({row.label.text, row.key_length});
        }
    }
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            expect_known_word(kind.name);
            expect_known_word(kind.block);
        }
    }
}

} // namespace
} // namespace kvt_test
