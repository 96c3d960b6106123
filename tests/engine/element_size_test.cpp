// The sizes of elements that the tables tell, against those of the C types.
#include <gtest/gtest.h>

#include <string_view>

#include "engine/element_size.h"
#include "support/test_records.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// The size for a row of test_everything; 0 when there is none of that key.
uint32_t size_at(std::string_view key) {
    for (const Row &row : RecordOf<test_everything>::table.rows) {
        if (std::string_view(row.label.text, row.key_length) == key) {
            return element_size(row);
        }
    }
    return 0;
}

TEST(ElementSize, IsThatOfANumberInAnArray) {
    EXPECT_EQ(size_at("indexes"), sizeof(uint8_t));
    EXPECT_EQ(size_at("shorts"), sizeof(uint16_t));
    EXPECT_EQ(size_at("ids"), sizeof(uint32_t));
    EXPECT_EQ(size_at("guids"), sizeof(uint64_t));
}

TEST(ElementSize, IsThatOfARecordInARunOrSlots) {
    EXPECT_EQ(size_at("entries"), sizeof(test_entry));
    EXPECT_EQ(size_at("slots"), sizeof(test_slot));
}

TEST(ElementSize, IsThatOfTheMemberWhereThereAreNoElements) {
    EXPECT_EQ(size_at("byte"), sizeof(uint8_t));
    EXPECT_EQ(size_at("word"), sizeof(uint16_t));
    EXPECT_EQ(size_at("large"), sizeof(uint64_t));
    EXPECT_EQ(size_at("signed_number"), sizeof(int32_t));
    EXPECT_EQ(size_at("text"), sizeof(test_everything::text));
    EXPECT_EQ(size_at("address"), sizeof(test_address));
}

} // namespace
} // namespace kvt_test
