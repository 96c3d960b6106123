// Arrays and their counts, joined texts and their lengths, and lines that undo others.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

std::string repeat(const std::string &line, size_t times) {
    std::string lines;
    for (size_t i = 0; i < times; ++i) {
        lines += line;
    }
    return lines;
}

TEST(CheckedCounts, BeforeTheirElementsAreTheirNumber) {
    EXPECT_EQ(found(begin_job("    num_guids: 2\n    port_guids: 1\n    port_guids: 2\n")), "");
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    port_guids: 2\n")), "");
    EXPECT_EQ(found(begin_job("    num_guids: 3\n    port_guids: 1\n    port_guids: 2\n")),
              "4:5 wrong-count 'num_guids: 3'\n");
    EXPECT_EQ(
        found(topology("    num_switches: 1\n    switches {\n    }\n    switches {\n    }\n")),
        "4:5 wrong-count 'num_switches: 1'\n");
    EXPECT_EQ(found(message_of("RELEASE_GROUPS", "release_groups",
                               "    num_groups: 2\n    groups {\n    }\n")),
              "4:5 wrong-count 'num_groups: 2'\n");
    EXPECT_EQ(said_of(begin_job("    num_guids: 3\n    port_guids: 1\n    port_guids: 2\n")),
              "'num_guids' says 3, but 'port_guids' has 2 elements; the reader takes what is "
              "there\n");
}

TEST(CheckedCounts, AfterTheirElementsAreTheirNumber) {
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    uid: 1\n    num_guids: 1\n")), "");
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    uid: 1\n    num_guids: 2\n")),
              "6:5 late-count 'num_guids: 2'\n");
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    uid: 1\n    num_guids: 0\n")),
              "6:5 late-count 'num_guids: 0'\n");
    EXPECT_EQ(said_of(begin_job("    port_guids: 1\n    uid: 1\n    num_guids: 2\n")),
              "'num_guids' says 2, but 'port_guids' has 1 element; after it, the reader keeps the "
              "number; where it reads several messages, it takes what is there\n");
    // A number that its field cuts is what is left of it.
    EXPECT_EQ(found(begin_job("    num_guids: 4294967297\n    port_guids: 1\n")),
              "4:16 out-of-range '4294967297'\n");
    EXPECT_EQ(
        said_of(begin_job("    num_guids: -1\n    port_guids: 1\n")),
        "'num_guids' holds a number of 32 bits: the reader makes 4294967295 of '-1'\n"
        "'num_guids' says 4294967295, but 'port_guids' has 1 element; the reader takes what is "
        "there\n");
    // Directly after an array of blocks, a longer key is taken for one more of them.
    EXPECT_EQ(found(job_data("    trees {\n    }\n    trees_num: 1\n")),
              "6:5 key-in-array 'trees_num'\n");
    EXPECT_EQ(found(job_data("    trees {\n    }\n    trees_num: 2\n")),
              "6:5 key-in-array 'trees_num'\n6:5 late-count 'trees_num: 2'\n");
    EXPECT_EQ(found(job_data("    trees {\n    }\n    uid: 7\n    trees_num: 1\n")), "");
    EXPECT_EQ(found(job_data("    trees {\n    }\n    trees_old {\n    }\n    trees {\n    }\n")),
              "6:5 longer-key 'trees_old'\n");
    EXPECT_EQ(said_of(job_data("    trees {\n    }\n    trees_num: 1\n")),
              "directly after 'trees', the reader takes 'trees_num' for the name of one more of "
              "them, with all lines below up to the closing brace of 'job_data', and reads no "
              "message after this one\n");
}

TEST(CheckedCounts, HaveElements) {
    EXPECT_EQ(found(begin_job("    num_guids: 0\n")), "");
    EXPECT_EQ(found(begin_job("    num_guids: 1\n    uid: 3\n")),
              "4:5 lone-count 'num_guids: 1'\n");
    EXPECT_EQ(found(topology("    num_switches: 1000\n")), "4:5 lone-count 'num_switches: 1000'\n");
    EXPECT_EQ(found(message_of("ALLOC_GROUPS", "alloc_groups", "    num_groups: 1\n")),
              "4:5 lone-count 'num_groups: 1'\n");
    EXPECT_EQ(said_of(topology("    num_switches: 1000\n")),
              "'num_switches' says 1000, but there is no 'switches': the reader keeps the number, "
              "and promises what is not there; where it reads several messages, it makes it 0\n");
}

TEST(CheckedCounts, SayNothingMoreWhereAnElementIsWrong) {
    EXPECT_EQ(found(begin_job("    num_guids: 2\n    port_guids: 1\n    port_guids: x\n")),
              "6:17 not-a-number 'x'\n");
    EXPECT_EQ(found(begin_job("    num_guids: x\n    port_guids: 1\n")), "4:16 not-a-number 'x'\n");
}

TEST(CheckedArrays, AreInOnePlace) {
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    uid: 3\n    port_guids: 2\n")),
              "6:5 repeated-array 'port_guids: 2'\n");
    EXPECT_EQ(found(job_data("    trees {\n    }\n    uid: 3\n    trees {\n    }\n")),
              "7:5 repeated-array 'trees'\n");
    EXPECT_EQ(found(message_of("RELEASE_GROUPS", "release_groups",
                               "    groups {\n    }\n    job_id: 3\n    groups {\n    }\n")),
              "7:5 repeated-array 'groups'\n");
    EXPECT_EQ(found(job_data("    conns {\n      qp_child_idxs: 3\n      tree_id: 1\n"
                             "      qp_child_idxs: 4\n    }\n")),
              "7:7 repeated-array 'qp_child_idxs: 4'\n");
    EXPECT_EQ(said_of(begin_job("    port_guids: 1\n    uid: 3\n    port_guids: 2\n")),
              "'port_guids' begins once more: what stood above is lost\n");
    EXPECT_EQ(said_of(job_data("    trees {\n    }\n    uid: 3\n    trees {\n    }\n")),
              "'trees' begins once more: its blocks replace those above\n");
    EXPECT_EQ(said_of(message_of("JOB_INFO_REPLY", "mgmt_job_info_list",
                                 "    job_list {\n      reserved: 1\n      job_state: 1\n"
                                 "      reserved: 2\n    }\n")),
              "'reserved' begins once more: its lines replace the first ones above\n");
}

TEST(CheckedArrays, IgnoreBracesWithinThem) {
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    port_guids: 2 }\n    port_guids: 3\n")),
              "5:19 after-number '}'\n");
    EXPECT_EQ(found(begin_job("    port_guids: 1\n    port_guids { }\n    port_guids: 3\n")),
              "5:5 block-for-value 'port_guids { }'\n");
}

TEST(CheckedArrays, InTheRecordHaveAPlaceForEveryLine) {
    const std::string group = "    groups {\n    }\n";
    EXPECT_EQ(found(message_of("RELEASE_GROUPS", "release_groups", repeat(group, 4))), "");
    EXPECT_EQ(found(message_of("RELEASE_GROUPS", "release_groups",
                               "    num_groups: 4\n" + repeat(group, 6) + "    job_id: x\n")),
              "13:5 too-many 'groups {'\n17:13 not-a-number 'x'\n");
    EXPECT_EQ(found(message_of("RELEASE_GROUPS", "release_groups",
                               repeat(group, 4) + "    groups {\n" +
                                   message_of("END_JOB", "end_job", ""))),
              "12:5 too-many 'groups {'\n13:1 not-closed 'msg {'\n18:3 extra-brace '}'\n");

    const auto conns = [](const std::string &lines) {
        return job_data("    conns {\n" + lines + "    }\n");
    };
    EXPECT_EQ(found(conns(repeat("      qp_child_idxs: 7\n", 64))), "");
    EXPECT_EQ(found(conns(repeat("      qp_child_idxs: 7\n", 66))),
              "69:7 too-many 'qp_child_idxs: 7'\n");
    EXPECT_EQ(said_of(conns(repeat("      qp_child_idxs: 7\n", 65))),
              "'qp_child_idxs' has 64 places: the reader skips further lines\n");
    EXPECT_EQ(said_of(job_data("    trees {\n      versions: 1\n      versions: 2\n    }\n")),
              "'versions' has 1 place: the reader skips further lines\n");
    EXPECT_EQ(said_of(message_of("RELEASE_GROUPS", "release_groups", repeat(group, 5))),
              "'groups' has 4 places: the reader skips further blocks\n");
}

TEST(CheckedArrays, EndAtTheValueThatEndsThem) {
    const auto conns = [](const std::string &lines) {
        return job_data("    conns {\n" + lines + "    }\n");
    };
    EXPECT_EQ(found(conns("      qp_child_idxs: 7\n      qp_child_idxs: 255\n")),
              "6:7 end-mark 'qp_child_idxs: 255'\n");
    EXPECT_EQ(found(conns("      qp_child_idxs: 7\n      qp_child_idxs: 255\n"
                          "      qp_child_idxs: 8\n      qp_child_idxs: 9\n")),
              "7:7 after-end 'qp_child_idxs: 8'\n");
    EXPECT_EQ(found(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request",
                               "    reserved: 1\n    reserved: 0\n    reserved: 2\n")),
              "6:5 after-end 'reserved: 2'\n");
    EXPECT_EQ(said_of(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request",
                                 "    reserved: 0\n    reserved: 2\n")),
              "0 ends 'reserved': what stands after it is not written any more\n");
    EXPECT_EQ(found(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request",
                               "    reserved: 256\n    reserved: 2\n")),
              "4:15 out-of-range '256'\n5:5 after-end 'reserved: 2'\n");
}

TEST(CheckedLengths, CountTheTextAndItsEnd) {
    EXPECT_EQ(found(begin_job("    hosts_len: 5\n    hosts: \"node\"\n")), "");
    EXPECT_EQ(found(begin_job("    hosts: \"node\"\n    uid: 1\n    hosts_len: 5\n")), "");
    EXPECT_EQ(found(begin_job("    hosts_len: 10\n    hosts: \"node\"\n    hosts: \"edge\"\n")),
              "");
    EXPECT_EQ(found(begin_job("    hosts_len: 4\n    hosts: \"node\"\n")),
              "4:5 wrong-length 'hosts_len: 4'\n");
    EXPECT_EQ(found(begin_job("    hosts: \"node\"\n    uid: 1\n    hosts_len: 4\n")),
              "6:5 wrong-length 'hosts_len: 4'\n");
    EXPECT_EQ(found(begin_job("    hosts_len: 4\n")), "4:5 lone-count 'hosts_len: 4'\n");
    EXPECT_EQ(found(begin_job("    hosts: \"node\"\n    hosts_len: 5\n")),
              "5:5 key-in-array 'hosts_len'\n");
    EXPECT_EQ(said_of(begin_job("    hosts_len: 4\n    hosts: \"node\"\n")),
              "'hosts_len' says 4, but 'hosts' takes 5 with its end; the reader takes what is "
              "there\n");
    EXPECT_EQ(
        said_of(begin_job("    hosts: \"node\"\n    hosts_len: 5\n")),
        "directly after 'hosts', the reader takes 'hosts_len' for one more of them, and finds "
        "no value\n");
}

TEST(CheckedJoinedTexts, HaveRoomForTheirLines) {
    // Room for five times the first line, doubled once for a line that needs it.
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"bcdef\"\n")), "");
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"bcdefghi\"\n")),
              "5:5 long-text 'hosts: \"bcdefghi\"'\n");
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"bcdefghi\"\n    hosts: \"jkl\"\n")),
              "5:5 long-text 'hosts: \"bcdefghi\"'\n");
    EXPECT_EQ(said_of(begin_job("    hosts: \"a\"\n    hosts: \"bcdefghi\"\n")),
              "the lines of 'hosts' have less room together than they take: the reader cuts this "
              "one\n");
    const std::string half = "    hosts: \"" + std::string(149, 'x') + "\"\n";
    EXPECT_EQ(found(begin_job(repeat(half, 1) + "    hosts: \"" + std::string(148, 'y') + "\"\n")),
              "");
    EXPECT_EQ(
        said_of(begin_job(half + half)),
        "joined, 'hosts' has more than 298 bytes: it is written on one line, and cut when that "
        "is read\n");
}

TEST(CheckedKeys, StandOnceInABlock) {
    EXPECT_EQ(found(begin_job("    job_id: 1\n    uid: 2\n    job_id: 1\n")),
              "6:5 repeated-value 'job_id: 1'\n");
    EXPECT_EQ(found(begin_job("    quota_percentage: 5\n    quota_percentage: 6\n")),
              "5:5 repeated-key 'quota_percentage: 6'\n");
    EXPECT_EQ(found(job_error("    description: \"a\"\n    description: \"b\"\n")),
              "5:5 repeated-key 'description: \"b\"'\n");
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    uid: 2\n    hosts: \"b\"\n")),
              "6:5 repeated-key 'hosts: \"b\"'\n");
    // One that was not read is not replaced.
    EXPECT_EQ(found(begin_job("    job_id: x\n    job_id: 1\n")), "4:13 not-a-number 'x'\n");
    EXPECT_EQ(said_of(begin_job("    job_id: 1\n    job_id: 2\n")),
              "'job_id' stands here once more, with another value: that of line 4 is lost\n");
}

TEST(CheckedBlocks, StandOnceInABlock) {
    EXPECT_EQ(
        found(begin_job("    quota {\n    }\n    uid: 1\n    quota {\n      max_qps: 1\n    }\n")),
        "7:5 repeated-block 'quota'\n");
    EXPECT_EQ(said_of(begin_job("    quota {\n    }\n    quota {\n    }\n")),
              "'quota' stands here once more: it replaces the one above\n");
    EXPECT_EQ(
        said_of(job_data("    trees {\n      mgid {\n      }\n      mgid {\n      }\n    }\n")),
        "'mgid' stands here once more: it adds to the one above\n");
}

TEST(CheckedCounts, OfABlockThatIsNotClosedAreNotCompared) {
    const std::string open = "msg {\n  type: BEGIN_JOB\n  begin_job {\n    num_guids: 3\n";
    EXPECT_EQ(found(open), "5:1 not-closed ''\n");
    EXPECT_EQ(found(open + message_of("END_JOB", "end_job", "")), "5:1 not-closed 'msg {'\n");
}

TEST(CheckedLengths, AfterTheirTextAreKept) {
    EXPECT_EQ(said_of(begin_job("    hosts: \"node\"\n    uid: 1\n    hosts_len: 4\n")),
              "'hosts_len' says 4, but 'hosts' takes 5 with its end; after it, the reader keeps "
              "the number as it stands\n");
}

TEST(CheckedJoinedTexts, HaveJustTheRoomOfTheReader) {
    // Of ten characters two are taken, and the last one is for the end.
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"bcdefg\"\n")), "");
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"bcdefgh\"\n")),
              "5:5 long-text 'hosts: \"bcdefgh\"'\n");
    // What is reckoned for a value is one more than it takes, so that the room is doubled early.
    EXPECT_EQ(found(begin_job("    hosts: \"ab\"\n    hosts: \"cdefgh\"\n")), "");
    EXPECT_EQ(found(begin_job("    hosts: \"a\"\n    hosts: \"b\"\n    hosts: \"cdefg\"\n")), "");
}

TEST(CheckedArrays, OfBytesMayEndWithALineThatIsNotRead) {
    EXPECT_EQ(found(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request",
                               "    reserved: x\n    reserved: 2\n")),
              "4:15 not-a-number 'x'\n5:5 after-end 'reserved: 2'\n");
}

TEST(CheckedKeys, OfATextThatIsNotReadMayComeAgain) {
    EXPECT_EQ(found(job_error("    description: \"\"\n    description: \"b\"\n")),
              "4:18 empty-text '\"\"'\n");
}

} // namespace
} // namespace kvt_test
