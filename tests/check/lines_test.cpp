// Lines that the reader skips or takes for others, and braces that it takes for others.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

TEST(CheckedLines, BeginWithAKeyOfTheirBlock) {
    EXPECT_EQ(found(begin_job("    job: 5\n    jobs_id: 5\n    x: 1\n")),
              "4:5 unknown-key 'job'\n5:5 unknown-key 'jobs_id'\n6:5 unknown-key 'x'\n");
    EXPECT_EQ(found(begin_job("    x-y.z : 1\n")), "4:5 unknown-key 'x-y.z'\n");
    EXPECT_EQ(found(begin_job("    hello world\n    \"text\"\n    : 5\n")),
              "4:5 stray-line 'hello world'\n5:5 stray-line '\"text\"'\n6:5 stray-line ': 5'\n");
    EXPECT_EQ(found(begin_job("    \rjob_id: 5\n")), "4:5 invisible '\r'\n");
    EXPECT_EQ(said_of(begin_job("    \rjob_id: 5\n")),
              "before 'job_id' stands what cannot be seen, '\\r': the reader skips this line; \\r "
              "is a carriage return\n");
    EXPECT_EQ(said_of(begin_job("    xyz: 1\n")),
              "'begin_job' knows no key 'xyz': the reader skips this line\n");
    EXPECT_EQ(
        said_of(begin_job("    jib_od: 1\n")),
        "'begin_job' knows no key 'jib_od': the reader skips this line; did you mean 'job_id'?"
        "\n");
    // Of another block.
    EXPECT_EQ(found(begin_job("    quota {\n      job_id: 5\n    }\n")),
              "5:7 unknown-key 'job_id'\n");
}

TEST(CheckedLines, MayBeBlankOrIndentedInAnyWay) {
    EXPECT_EQ(found(begin_job("\n \t\n\n\tjob_id: 5\n  uid: 3\n\v\n\f \n")), "");
    EXPECT_EQ(found("msg{\ntype:END_JOB\nend_job{\njob_id:5\n}\n}"), "");
    EXPECT_EQ(found("msg  {  \n\n  type: \t END_JOB \n\n  end_job\t{ \n  job_id: 5\n} \n } \n"),
              "");
    // The reader's lines are those of the writer, in any order.
    EXPECT_EQ(
        found(begin_job("    exclusive_lock: 1\n    job_id: 5\n    quota {\n    }\n    uid: 3\n")),
        "");
}

TEST(CheckedLines, OfALongerKeyAreTakenForTheShorterOne) {
    EXPECT_EQ(found(begin_job("    job_idx: 5\n")), "4:5 longer-key 'job_idx'\n");
    EXPECT_EQ(found(begin_job("    hosts_names: \"a\"\n")), "4:5 longer-key 'hosts_names'\n");
    EXPECT_EQ(found(begin_job("    port_guids_2: 5\n")), "4:5 longer-key 'port_guids_2'\n");
    EXPECT_EQ(found(begin_job("    quotas {\n      max_osts: 5\n    }\n")),
              "4:5 longer-key 'quotas'\n");
    EXPECT_EQ(found(begin_job("    quotas: 5\n    job_id: 3\n")), "4:5 longer-key 'quotas'\n");
    EXPECT_EQ(found(begin_job("    quotas\n      max_osts: 5\n    }\n")),
              "4:5 longer-key 'quotas'\n");
    EXPECT_EQ(found(begin_job("    job_idx {\n      a: 5\n    }\n    uid: 3\n")),
              "4:5 longer-key 'job_idx'\n");
    EXPECT_EQ(said_of(begin_job("    job_idd: 5\n")),
              "the reader takes 'job_idd' for 'job_id', and finds no value: the field stays 0; did "
              "you mean 'job_id'?\n");
    EXPECT_EQ(said_of(begin_job("    quotas {\n    }\n")),
              "the reader takes 'quotas' for 'quota'; did you mean 'quota'?\n");
}

TEST(CheckedBlocks, AreKnownToTheBlockAroundThem) {
    EXPECT_EQ(found(begin_job("    quato {\n      max_osts: 5\n      x {\n      }\n    }\n"
                              "    job_id: 5\n")),
              "4:5 unknown-block 'quato {'\n");
    EXPECT_EQ(found(begin_job("    {\n      max_osts: 5\n    }\n")), "4:5 unknown-block '{'\n");
    EXPECT_EQ(
        said_of(begin_job("    quato {\n    }\n")),
        "'begin_job' knows no block 'quato': the reader skips all of it; did you mean 'quota'?"
        "\n");
    EXPECT_EQ(said_of(begin_job("    {\n    }\n")),
              "'begin_job' knows no block '{': the reader skips all of it\n");
}

TEST(CheckedBlocks, AreNotOnOneLine) {
    EXPECT_EQ(found(begin_job("    job_id: 1\n    quota { }\n    uid: 3\n")),
              "5:5 one-line-block 'quota { }'\n");
    EXPECT_EQ(found(begin_job("    quota { max_osts: 5 }\n    uid: 3\n")),
              "4:5 one-line-block 'quota { max_osts: 5 }'\n");
    EXPECT_EQ(found(begin_job("    job_id: 1\n    x { }\n    uid: 3\n")),
              "5:5 one-line-block 'x { }'\n");
    EXPECT_EQ(found(begin_job("    job_id: 1\n    uid { }\n    pkey: 3\n")),
              "5:5 one-line-block 'uid { }'\n");
    EXPECT_EQ(found(job_data("    trees_num: 2\n    trees {}\n    trees {}\n")),
              "5:5 one-line-block 'trees {}'\n6:5 one-line-block 'trees {}'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job { }\n}\n"),
              "3:3 one-line-block 'end_job { }'\n");
}

TEST(CheckedBlocks, HaveABraceOnTheirFirstLine) {
    EXPECT_EQ(found(begin_job("    quota\n    {\n      max_osts: 5\n    }\n    job_id: 3\n")),
              "4:5 no-brace 'quota'\n");
    EXPECT_EQ(found(begin_job("    quota\n      max_osts: 5\n    }\n    job_id: 3\n")),
              "4:5 missing-brace 'quota'\n");
    EXPECT_EQ(found(begin_job("    quota: 5\n    job_id: 3\n")), "4:5 no-brace 'quota: 5'\n");
    EXPECT_EQ(found(begin_job("    quota of {\n      max_osts: 5\n    }\n    job_id: 3\n")),
              "4:5 no-brace 'quota of {'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job\n  {\n    job_id: 5\n  }\n}\n"),
              "3:3 no-brace 'end_job'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job\n    job_id: 5\n  }\n}\n"),
              "3:3 missing-brace 'end_job'\n");
    EXPECT_EQ(said_of(begin_job("    quota: 5\n")),
              "'quota' is a block: the reader takes the lines below for its own, up to the next "
              "closing brace\n");
}

TEST(CheckedBlocks, StandWhereABlockBelongs) {
    EXPECT_EQ(found(begin_job("    uid: 1\n    job_id {\n      x: 1\n    }\n    pkey: 3\n")),
              "5:5 block-for-value 'job_id {'\n");
    EXPECT_EQ(found(begin_job("    port_guids {\n    }\n    pkey: 3\n")),
              "4:5 block-for-value 'port_guids {'\n");
    EXPECT_EQ(
        said_of(begin_job("    job_id {\n    }\n")),
        "'job_id' is no block: the reader skips this line, and takes what follows for lines of "
        "'begin_job'\n");
}

TEST(CheckedBraces, StandAlone) {
    EXPECT_EQ(found(begin_job("    quota { max_osts: 5\n      max_qps: 3\n    }\n")),
              "4:13 beside-brace 'max_osts: 5'\n");
    EXPECT_EQ(found(begin_job("    quota {\n    } job_id: 5\n")), "5:7 beside-brace 'job_id: 5'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  } }\n}\n"),
              "5:5 beside-brace '}'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n  }\n} end\n"),
              "5:3 beside-brace 'end'\n");
    EXPECT_EQ(found("msg { message\n  type: END_JOB\n  end_job { job\n  }\n}\n"),
              "1:7 beside-brace 'message'\n3:13 beside-brace 'job'\n");
    // With a value before it, a brace closes the block and the value is lost: on the first line the
    // other way about.
    EXPECT_EQ(found(begin_job("    quota {\n      max_osts: 5\n      max_qps: 3 }\n    uid: 3\n")),
              "6:7 beside-brace 'max_qps: 3'\n");
    EXPECT_EQ(found(begin_job("    quota {\n      max_qps: 3 }\n    uid: 3\n")),
              "5:7 beside-brace 'max_qps: 3'\n");
    EXPECT_EQ(said_of(begin_job("    quota {\n      x: 3 }\n    uid: 3\n")),
              "the reader closes the block at this line, and does not read what stands before the "
              "brace\n");
    EXPECT_EQ(said_of(begin_job("    quota {\n      max_osts: 5\n      max_qps: 3 }\n")),
              "the reader closes the block at this line, and does not read what stands before the "
              "brace\n");
    EXPECT_EQ(said_of(begin_job("    quota {\n      max_qps: 3 }\n")),
              "the reader takes this line for its key alone, and does not see that the brace after "
              "it closes the block\n");
}

TEST(CheckedBraces, AfterTextsAreNotPartOfThem) {
    EXPECT_EQ(found(job_error("    error: 1\n    description: \"a\" }\n") + "}\n"),
              "5:5 beside-brace 'description: \"a\"'\n7:1 extra-brace '}'\n");
    EXPECT_EQ(found(job_error("    error: 1\n    description {\"a\"}\n")),
              "5:5 one-line-block 'description {\"a\"}'\n");
    EXPECT_EQ(found(job_error("    error: 1\n    x: \"}\"\n")),
              "5:5 beside-brace 'x: \"'\n7:1 extra-brace '}'\n");
}

TEST(CheckedBlocks, AreClosed) {
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n"),
              "6:1 not-closed ''\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n"), "5:1 not-closed ''\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }"),
              "5:3 not-closed '}'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    x {\n"),
              "4:5 unknown-block 'x {'\n5:1 not-closed ''\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n"), "3:1 not-closed ''\n");
    EXPECT_EQ(found("msg {\n"), "2:1 no-type ''\n");
    EXPECT_EQ(found("msg"), "1:1 missing-brace 'msg'\n1:4 no-type ''\n");
    EXPECT_EQ(
        said_of("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }"),
        "the reader sees a brace only in a line that ends with a newline: the block 'end_job' is "
        "not closed\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n  end_job {\n"),
              "the text ends here, but the block 'end_job' of line 3 is not closed\n");
}

TEST(CheckedBlocks, AreClosedBeforeTheNextMessage) {
    const std::string next = message_of("END_JOB", "end_job", "    job_id: x\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n" + next),
              "5:1 not-closed 'msg {'\n8:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n" + next),
              "6:1 not-closed 'msg {'\n9:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    x {\n\n" + next),
              "4:5 unknown-block 'x {'\n6:1 not-closed 'msg {'\n9:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: JOB_DATA\n  job_data {\n    trees {\n      mgid {\n" + next),
              "6:1 not-closed 'msg {'\n9:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n" + next),
              "3:1 no-block 'msg {'\n6:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n" + next), "2:1 no-type 'msg {'\n5:13 not-a-number 'x'\n");
    EXPECT_EQ(
        said_of("msg {\n  type: END_JOB\n  end_job {\n" + message_of("END_JOB", "end_job", "")),
        "a message begins here, but the block 'end_job' of line 3 is not closed: the reader takes "
        "the message, and those below, for unknown blocks, and skips them\n");
    // A key of a newer version that begins like a message does not.
    EXPECT_EQ(found(begin_job("    msg_count: 5\n    msg: 5\n    msgs {\n    }\n")),
              "4:5 unknown-key 'msg_count'\n5:5 unknown-key 'msg'\n6:5 unknown-block 'msgs {'\n");
}

TEST(CheckedLines, MayBeCutAfterTheirKeyByTheEndOfTheText) {
    const std::string head = "msg {\n  type: BEGIN_JOB\n  begin_job {\n";
    EXPECT_EQ(found(head + "    job_id"), "4:5 no-colon 'job_id'\n4:11 not-closed ''\n");
    EXPECT_EQ(found(head + "    port_guids"), "4:5 no-colon 'port_guids'\n4:15 not-closed ''\n");
}

TEST(CheckedBlocks, AreNotOnALineWhoseBracesCloseBeforeTheyOpen) {
    EXPECT_EQ(found(begin_job("    job_id: 1\n    x } {\n")),
              "5:5 beside-brace 'x'\n7:1 extra-brace '}'\n");
    EXPECT_EQ(found(begin_job("    job_id: 1\n    quota { } x\n    uid: 3\n")),
              "5:5 one-line-block 'quota { } x'\n");
}

TEST(CheckedBlocks, OnOneLineAreExplained) {
    EXPECT_EQ(said_of(begin_job("    job_id: 1\n    quota { }\n")),
              "the reader knows blocks only over several lines: it takes the closing brace for "
              "that of 'begin_job'\n");
}

TEST(CheckedBlocks, WithoutABraceAreExplained) {
    EXPECT_EQ(said_of(begin_job("    quota\n    }\n")),
              "no brace follows 'quota' on its line: the reader opens the block all the same\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n  end_job\n  {\n  }\n}\n"),
              "no brace follows 'end_job' on its line: the reader opens the block all the same, "
              "and skips what the brace below opens\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job of {\n    job_id: 5\n  }\n}\n"),
              "3:3 no-brace 'end_job of {'\n");
    // The brace is there, but not where it belongs: one below is another.
    EXPECT_EQ(found(begin_job("    quota of {\n      {\n      }\n    }\n    job_id: 3\n")),
              "4:5 no-brace 'quota of {'\n5:7 unknown-block '{'\n");
}

TEST(CheckedBraces, InQuotesStandAfterAKeyAndBetweenTheFirstTwo) {
    EXPECT_EQ(found(job_error("    error: 1\n    description: } \"a\"\n")),
              "5:5 beside-brace 'description:'\n7:1 extra-brace '}'\n");
    EXPECT_EQ(found(begin_job("    job_id: 1\n    quota \"}\"\n")),
              "5:5 beside-brace 'quota \"'\n7:1 extra-brace '}'\n");
}

TEST(CheckedBraces, BesideWhichSomethingStandsAreExplained) {
    EXPECT_EQ(said_of(begin_job("    quota { x\n    }\n")),
              "the reader skips what stands after the brace, 'x'\n");
    // A first line is only taken for its key where it has one.
    EXPECT_EQ(said_of(begin_job("    quota {\n      x: 1 }\n")),
              "the reader closes the block at this line, and does not read what stands before the "
              "brace\n");
}

TEST(CheckedBlocks, ThatAreNotClosedAreExplained) {
    const std::string next = message_of("END_JOB", "end_job", "");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n"),
              "the text ends here, but the message of line 1 is not closed\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n  end_job {\n  }\n" + next),
              "a message begins here, but that of line 1 is not closed: the reader takes this line "
              "for its closing brace, and reads neither this message nor those below\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n  end_job {\n    x {\n" + next),
              "'end_job' knows no block 'x': the reader skips all of it\na message begins here, "
              "but a block above is not closed: the reader skips the message, and those below, "
              "with the block\n");
}

TEST(CheckedLines, OfTheWordOfAMessageAloneOpenNone) {
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\nmsg\n  }\n}\n"),
              "5:1 stray-line 'msg'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n  }\nmsg\n}\n"), "5:1 outside 'msg'\n");
}

TEST(CheckedBlocks, AreClosedBeforeAMessageWithATabBeforeItsBrace) {
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\nmsg\t{\n"
                    "  type: END_JOB\n  end_job {\n    job_id: x\n  }\n}\n"),
              "5:1 not-closed 'msg\t{'\n8:13 not-a-number 'x'\n");
}

} // namespace
} // namespace kvt_test
