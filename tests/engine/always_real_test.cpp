// A float that is written when it is zero, which no message has.
#include <gtest/gtest.h>

#include <cmath>

#include "engine/table.h"
#include "support/exact_copy.h"
#include "support/random_records.h"
#include "support/tables.h"

extern "C" {
typedef struct test_share {
    float share;
    float rest;
} test_share;
}

namespace kvt_str {

template <> const Record RecordOf<test_share>::table;
template <> const Codec CodecOf<test_share>::codec;
PackRoutine _kvt_txt_pack_msg_test_share;
UnpackRoutine _kvt_txt_unpack_msg_test_share;

// clang-format off
RECORD(test_share,
    _kvt_txt_pack_msg_test_share, _kvt_txt_unpack_msg_test_share,
    FIELD(share, always),
    FIELD(rest));
// clang-format on

} // namespace kvt_str

namespace kvt_test {
namespace {

using namespace kvt_str;

TEST(Floats, AreWrittenWhenZeroWhereTheRowSaysSo) {
    const Codec &codec = CodecOf<test_share>::codec;
    const test_share zeros = {0.0F, 0.0F};
    EXPECT_EQ(write_block(codec, &zeros, 1), "  some_block {\n    share: 0\n  }\n");
    const test_share negative = {-0.0F, -0.0F};
    EXPECT_EQ(write_block(codec, &negative, 1), "  some_block {\n    share: -0\n  }\n");
    const test_share both = {12.5F, 0.25F};
    EXPECT_EQ(write_block(codec, &both, 1),
              "  some_block {\n    share: 12.5\n    rest: 0.25\n  }\n");
}

TEST(Floats, AreReadBackAsZeroWhereTheyAreWritten) {
    OwnedRecord record(RecordOf<test_share>::table);
    auto *share = record.as<test_share>();
    share->share = 1.0F;
    const auto text = exact_copy("    share: -0\n  }\n");
    Input input{Text(text.get()), Counts::as_read};
    CodecOf<test_share>::codec.unpack(input, text.get(), share, 1);
    EXPECT_EQ(share->share, 0.0F);
    EXPECT_TRUE(std::signbit(share->share));
}

} // namespace
} // namespace kvt_test
