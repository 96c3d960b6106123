// A later run of a byte array, in general form.
#include <gtest/gtest.h>

#include <string>

#include "support/exact_copy.h"
#include "support/random_records.h"
#include "support/test_records.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

TEST(ByteArrays, AreClearedByALaterRunOfAnyFormOnlyWhereTheRowSaysSo) {
    for (const char *blanks : {"    ", "\t", ""}) {
        SCOPED_TRACE(blanks);
        std::string lines;
        for (const char *value : {"1", "2", "3"}) {
            lines += std::string("    indexes: ") + value + "\n";
        }
        for (const char *value : {"1", "2", "3"}) {
            lines += std::string("    reserved: ") + value + "\n";
        }
        lines += std::string("    byte: 1\n") + blanks + "indexes: 9\n" + blanks + "reserved: 9\n";
        OwnedRecord record(RecordOf<test_everything>::table);
        const auto text = exact_copy(lines + "  }\n");
        Input input{Text(text.get()), Counts::as_read};
        CodecOf<test_everything>::codec.unpack(input, text.get(), record.get(), 1);
        const auto *read = record.as<test_everything>();
        EXPECT_EQ(read->indexes[0], 9U);
        EXPECT_EQ(read->indexes[1], 0U);
        EXPECT_EQ(read->indexes[2], 0U);
        EXPECT_EQ(read->reserved[0], 9U);
        EXPECT_EQ(read->reserved[1], 2U);
        EXPECT_EQ(read->reserved[2], 3U);
    }
}

} // namespace
} // namespace kvt_test
