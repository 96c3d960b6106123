// The sentences of findings, put together in a room of their own.
#include "finding_words.h"

#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

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

TEST(FindingWords, ShowABrokenByteBeforeTheirCut) {
    // The cut stands before x: what begins no character is not taken for a part of one.
    for (const size_t before : {57U, 58U, 59U}) {
        const std::string some(before, 'y');
        const std::string rest(59 - before, 'y');
        EXPECT_EQ(said_of(begin_job("    job_id: " + some + "\x80" + rest + "x\n")),
                  "'" + some + "\\x80" + rest +
                      "...' is no number, and 'job_id' wants one: the field stays 0\n");
    }
}

} // namespace
} // namespace kvt_test
