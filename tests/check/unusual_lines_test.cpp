// Lines that hardly anybody writes: what cannot be seen where it means nothing, braces on a block's
// first line, texts without quotes one after the other.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

TEST(UnusualLines, ThatBeginInvisiblyHaveAKeyOnlyWhereTheBlockKnowsIt) {
    EXPECT_EQ(found(begin_job("    \xC2\xA0job_id: 5\n")), "4:5 invisible '\xC2\xA0'\n");
    EXPECT_EQ(found(begin_job("    \xC2\xA0word: 5\n")), "4:5 stray-line '\xC2\xA0word: 5'\n");
}

TEST(UnusualLines, ThatGoOnInvisiblyNeedAColonAllTheSame) {
    EXPECT_EQ(found(begin_job("    job_id\xC2\xA0: 5\n")), "4:11 invisible '\xC2\xA0'\n");
    EXPECT_EQ(found(begin_job("    job_id\xC2\xA0 5\n")), "4:5 no-colon 'job_id'\n");
}

TEST(UnusualLines, WithNothingThatCanBeSeenHaveNoNumber) {
    EXPECT_EQ(found(begin_job("    job_id: \xC2\xA0\x35\n")), "4:13 invisible '\xC2\xA0'\n");
    EXPECT_EQ(found(begin_job("    job_id: \xC2\xA0\n")), "4:13 not-a-number '\xC2\xA0'\n");
    EXPECT_EQ(found(begin_job("    job_id: \xC2\xA0x\n")), "4:13 not-a-number '\xC2\xA0x'\n");
}

TEST(UnusualLines, WithABlockAreTakenForTheirKeyAloneWhenTheyAreFirst) {
    const std::string one_line = "the reader knows blocks only over several lines: it takes ";
    EXPECT_EQ(said_of(begin_job("    job_id { }\n    uid: 3\n")),
              one_line + "this line for its key alone, in 'begin_job'\n");
    EXPECT_EQ(said_of(begin_job("    word { }\n    uid: 3\n")),
              one_line + "the closing brace for that of 'begin_job'\n");
    EXPECT_EQ(said_of(begin_job("    uid: 3\n    job_id { }\n")),
              one_line + "the closing brace for that of 'begin_job'\n");
}

TEST(UnusualLines, OfARecordThatIsNotClearedLeaveWhatIsThere) {
    EXPECT_EQ(said_of(job_data("    conns {\n      pr_sd_to_an {\n        dlid: x\n      }\n"
                               "    }\n")),
              "'x' is no number, and 'dlid' wants one: the field stays as it was\n");
}

TEST(UnusualTexts, OfSeveralLinesLoseTheirFirstLineToABraceUnlessItIsTheFirstOfTheBlock) {
    const std::string closes =
        "a brace counts also within quotes: the reader closes 'begin_job' at this line, and does "
        "not read the text\n";
    const std::string takes =
        "the reader takes the text here, but where it is written below another line the brace "
        "closes 'begin_job'\n";
    EXPECT_EQ(said_of(begin_job("    uid: 3\n    hosts: \"a } b\"\n")), closes);
    EXPECT_EQ(said_of(begin_job("    hosts: \"a } b\"\n    uid: 3\n")), takes);
    EXPECT_EQ(said_of(begin_job("    uid: 3\n    hosts: \"node\"\n    hosts: \"a } b\"\n")), takes);
}

TEST(UnusualTexts, WithoutQuotesTakeEachTheNextQuotesBelow) {
    EXPECT_EQ(said_of(job_error("    description: one\n    description: two\n    word: \"below\"\n"
                                "    description: three\n    word: \"end\"\n")),
              "'one' stands without quotes: the reader takes the text of line 6, 'below'\n"
              "'two' stands without quotes: the reader takes the text of line 6, 'below'\n"
              "'job_error' knows no key 'word': the reader skips this line\n"
              "'three' stands without quotes: the reader takes the text of line 8, 'end'\n"
              "'job_error' knows no key 'word': the reader skips this line\n");
}

TEST(UnusualTexts, HaveNoBraceAfterThem) {
    EXPECT_EQ(found(job_error("    description: \"a\" {\n")), "4:22 needless-brace '{'\n");
    EXPECT_EQ(said_of(job_error("    description: \"a\" {\n")),
              "no brace belongs here: the reader skips it\n");
}

TEST(UnusualTexts, ThatComeAgainAreComparedFromQuoteToQuote) {
    EXPECT_EQ(found(job_error("    description: \"a\"\n    description:\t \"a\"\n")),
              "5:5 repeated-value 'description:\t \"a\"'\n");
    EXPECT_EQ(found(job_error("    description: x \"a\"\n    description:   \"b\"\n")),
              "4:18 before-text 'x'\n5:5 repeated-key 'description:   \"b\"'\n");
}

TEST(UnusualArrays, MayHoldTheValueThatEndsThemTwice) {
    EXPECT_EQ(found(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request",
                               "    reserved: 0\n    reserved: 0\n")),
              "5:5 after-end 'reserved: 0'\n");
}

// A brace that stands less deep than the line that opens its block was probably meant for the block
// around. That is told where some other line shows that a brace is missing.

TEST(UnusualIndentation, OfABraceIsToldWhereAMessageIsSkipped) {
    const std::string next = message_of("END_JOB", "end_job", "");
    EXPECT_EQ(found("msg {\n  type: JOB_DATA\n  job_data {\n    trees {\n  }\n    word {\n" + next),
              "6:5 unknown-block 'word {'\n4:5 not-closed 'trees'\n");
}

TEST(UnusualIndentation, OfABraceIsToldWhereTheTextEndsInTheBlockAround) {
    EXPECT_EQ(found("msg {\n  type: JOB_DATA\n  job_data {\n    trees {\n  }\n    uid: 3\n"),
              "4:5 not-closed 'trees'\n");
}

TEST(UnusualIndentation, OfABraceAboveIsNotWhatABlockBelowIsWithout) {
    EXPECT_EQ(found(job_data("    trees {\n  }\n    conns {\n    uid: 3\n")),
              "6:5 not-closed 'conns'\n");
}

TEST(UnusualIndentation, OfALineIsNoSignOfABraceTooManyWhereTheBlockAroundKnowsItsKey) {
    const auto groups = [](const std::string &line) {
        return found(message_of("GROUPS_DATA", "groups_data",
                                "    groups {\n      mgid {\n      }\n" + line + "    }\n"));
    };
    EXPECT_EQ(groups("        subnet_prefix: 3\n"), "");
    EXPECT_EQ(groups("        guid: 3\n      }\n"), "6:7 extra-brace '}'\n");
}

} // namespace
} // namespace kvt_test
