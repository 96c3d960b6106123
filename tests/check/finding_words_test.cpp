// The sentences of findings, put together in a room of their own.
#include "finding_words.h"

#include <gtest/gtest.h>

namespace kvt_test {
namespace {

TEST(FindingWords, AreCutWhereTheirRoomEnds) {
    kvt_checking::Cut<6> words;
    words.add("abc");
    EXPECT_STREQ(words.text(), "abc");
    words.add("defg");
    EXPECT_STREQ(words.text(), "abcde");
    words.add("h");
    words.add(uint64_t{7});
    EXPECT_STREQ(words.text(), "abcde");
}

TEST(FindingWords, HoldNumbersUpToTheGreatest) {
    kvt_checking::Cut<64> words;
    words.add(uint64_t{0});
    words.add(" ");
    words.add(uint64_t{10});
    words.add(" ");
    words.add(UINT64_MAX);
    EXPECT_STREQ(words.text(), "0 10 18446744073709551615");
}

} // namespace
} // namespace kvt_test
