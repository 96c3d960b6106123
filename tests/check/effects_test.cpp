// What a finding says that the reader does, compared with what the reader does: each text is read,
// by itself and as a text of several messages.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "check/found.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "kvt/messages/groups.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/resource_data.h"

namespace kvt_test {
namespace {

const std::string end_job = message_of("END_JOB", "end_job", "    job_id: 5\n");

/// The record that a text is read into, released at the end.
template <typename Record> class Read {
public:
    Read(int32_t kind, const std::string &text) : kind_(kind) {
        EXPECT_EQ(kvt_msg_from_str(0, nullptr, text.c_str(), &record_), 0) << text;
    }

    ~Read() {
        if (record_ != nullptr) {
            kvt_msg_release(kind_, record_);
        }
    }

    Read(const Read &) = delete;
    Read &operator=(const Read &) = delete;

    Record *operator->() { return static_cast<Record *>(record_); }

private:
    int32_t kind_;
    void *record_ = nullptr;
};

/// The messages of a text as the reader of several gives them; "refused" where it does not.
std::vector<std::string> read_all(const std::string &text) {
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &texts, &kinds,
                             &count) != 0) {
        return {"refused"};
    }
    std::vector<std::string> all;
    for (int32_t i = 0; i < count; ++i) {
        all.emplace_back(texts[i]);
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    return all;
}

bool says(const std::string &text, const std::string &words) {
    return said_of(text).find(words) != std::string::npos;
}

TEST(StatedEffects, OfAFieldThatStaysZero) {
    const std::string text = begin_job("    job_id: x\n    uid: 5\n    uid: x\n");
    EXPECT_EQ(said_of(text), "'x' is no number, and 'job_id' wants one: the field stays 0\n"
                             "'x' is no number, and 'uid' wants one: the field stays as it was\n");
    Read<vemra_begin_job> record(VEMRA_MSG_TYPE_BEGIN_JOB, text);
    EXPECT_EQ(record->job_id, 0U);
    EXPECT_EQ(record->uid, 5U);
}

TEST(StatedEffects, OfAValueThatIsShared) {
    const std::string text = message_of("RESOURCE_DATA", "resource_message",
                                        "    feature_bitmask: 7\n    operation: x\n");
    EXPECT_TRUE(says(text, "'operation' wants one: the field takes the value of a line before, 7"));
    Read<vemra_resource_message> record(VEMRA_MSG_TYPE_RESOURCE_DATA, text);
    EXPECT_EQ(record->operation, 7U);

    const std::string alone = message_of("RESOURCE_DATA", "resource_message", "    operation: x\n");
    EXPECT_TRUE(says(alone, "the field becomes 0"));
    EXPECT_EQ(Read<vemra_resource_message>(VEMRA_MSG_TYPE_RESOURCE_DATA, alone)->operation, 0U);
}

TEST(StatedEffects, OfAKeyThatComesAgain) {
    const std::string text = begin_job("    job_id: 1\n    job_id: 2\n    job_id: 3\n");
    EXPECT_EQ(said_of(text),
              "'job_id' stands here once more, with another value: that of line 4 is lost\n"
              "'job_id' stands here once more, with another value: that of line 5 is lost\n");
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text)->job_id, 3U);
    EXPECT_EQ(found(begin_job("    job_id: 1\n    job_id: +01\n")),
              "5:5 repeated-value 'job_id: +01'\n");
    EXPECT_EQ(found(begin_job("    quota_percentage: 5\n    quota_percentage: 5\n")),
              "5:5 repeated-value 'quota_percentage: 5'\n");
    EXPECT_EQ(found(begin_job("    quota_percentage: 5\n    quota_percentage: 6\n")),
              "5:5 repeated-key 'quota_percentage: 6'\n");
}

TEST(StatedEffects, OfATextThatComesAgain) {
    EXPECT_EQ(found(job_error("    description: \"a\"\n    description:  \"a\"\n")),
              "5:5 repeated-value 'description:  \"a\"'\n");
    EXPECT_EQ(found(job_error("    description: \"ab\"\n    description: \"cd\"\n")),
              "5:5 repeated-key 'description: \"cd\"'\n");
    const std::string emptied = job_error("    description: \"a\"\n    description: \"\"\n");
    EXPECT_EQ(found(emptied), "5:18 empty-text '\"\"'\n5:5 repeated-key 'description: \"\"'\n");
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, emptied)->description, "");
    // One that was cleared by a line that is not read is not there any more.
    const std::string cleared = job_error(
        "    description: \"a\"\n    description:\n    error: 1\n    description: \"a\"\n");
    EXPECT_TRUE(found(cleared).find("repeated") == std::string::npos) << found(cleared);
}

TEST(StatedEffects, OfATextThatIsTakenFromALineBelow) {
    const std::string text = job_error("    description: link down\n    error: 5\n    x: \"up\"\n");
    EXPECT_TRUE(says(text, "'link down' stands without quotes: the reader takes the text of line "
                           "6, 'up'"));
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, text)->description, "up");

    const std::string nothing = job_error("    description:\n    x: \"up\"\n");
    EXPECT_TRUE(says(nothing, "no value stands after 'description': the reader takes the text of "
                              "line 5, 'up'"));
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, nothing)->description, "up");

    const std::string open = job_error("    description: \"link\n    x: \"up\"\n");
    EXPECT_TRUE(says(open, "takes 'link\\n    x: '"));
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, open)->description,
                 "link\n    x: ");

    const std::string none = job_error("    description: link down\n    error: 5\n");
    EXPECT_TRUE(says(none, "'link down' stands without quotes: the text becomes empty"));
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, none)->description, "");
}

TEST(StatedEffects, OfALineOfAJoinedTextThatIsTakenFromBelow) {
    const std::string text = begin_job("    hosts: a\n    x: \"b\"\n");
    EXPECT_TRUE(says(text, "the reader takes the text of line 5, 'b'"));
    EXPECT_STREQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text)->hosts, "b");
}

TEST(StatedEffects, OfANumberThatIsTakenFromALineBelow) {
    const std::string text = begin_job("    job_id:\n\n  -5\n");
    EXPECT_TRUE(says(text, "the reader takes the number of line 6, '-5'"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text)->job_id, UINT64_MAX - 4);
    const std::string real = begin_job("    quota_percentage:\n.5\n");
    EXPECT_TRUE(says(real, "the reader takes the number of line 5, '.5'"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, real)->quota_percentage, 0.5F);
}

TEST(StatedEffects, OfANumberThatIsWrittenInAnotherWay) {
    const auto job_id = [](const std::string &value, const std::string &words) {
        const std::string text = begin_job("    job_id: " + value + "\n");
        EXPECT_TRUE(says(text, words)) << said_of(text);
        return Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text)->job_id;
    };
    EXPECT_EQ(job_id("0x10", "the reader takes the 0 of '0x10' alone; in decimal it is 16"), 0U);
    EXPECT_EQ(job_id("0xFFFFFFFFFFFFFFFF", "in decimal it is 18446744073709551615"), 0U);
    EXPECT_EQ(job_id("0x1FFFFFFFFFFFFFFFF", "skips what stands after it"), 0U);
    EXPECT_EQ(job_id("1,000", "takes '1' of '1,000' alone; without groups it is 1000"), 1U);
    EXPECT_EQ(job_id("1_000'000", "without groups it is 1000000"), 1U);
    EXPECT_EQ(job_id("1e6", "takes '1' of '1e6' alone"), 1U);
    EXPECT_EQ(job_id("5.5", "takes '5' of '5.5' alone"), 5U);
    EXPECT_EQ(job_id("5 hosts", "takes '5' and skips what stands after it, 'hosts'"), 5U);
    EXPECT_EQ(job_id("5 # five", "the format has no comments: the reader skips '# five'"), 5U);
    EXPECT_EQ(job_id("5 // five", "the format has no comments"), 5U);
    EXPECT_EQ(job_id("5 {", "no brace belongs here: the reader skips it"), 5U);
    EXPECT_EQ(job_id("5\xC2\xA0",
                     "skips what cannot be seen after it, '\\xc2\\xa0'; \\xc2\\xa0 is a "
                     "no-break space"),
              5U);
    EXPECT_EQ(job_id("\xEF\xBB\xBF"
                     "5",
                     "\\xef\\xbb\\xbf is a byte order mark"),
              0U);
    EXPECT_EQ(found(begin_job("    job_id: 5 hosts\n    uid: 5%\n    num_rails: 5, 6\n")),
              "4:15 unit 'hosts'\n5:11 unit '%'\n6:17 after-number ', 6'\n");
}

TEST(StatedEffects, OfCountsThatAreWrong) {
    const std::string early = begin_job("    num_guids: 3\n    port_guids: 1\n");
    EXPECT_TRUE(says(early, "the reader takes what is there"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, early)->num_guids, 1U);

    const std::string more = begin_job("    port_guids: 1\n    uid: 1\n    num_guids: 3\n");
    EXPECT_TRUE(says(more, "after it, the reader keeps the number; where it reads several "
                           "messages, it takes what is there"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, more)->num_guids, 3U);
    EXPECT_NE(read_all(more).at(0).find("num_guids: 1\n"), std::string::npos);

    const std::string fewer =
        begin_job("    port_guids: 7\n    port_guids: 8\n    uid: 1\n    num_guids: 1\n");
    EXPECT_TRUE(says(fewer, "it drops the last elements"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, fewer)->num_guids, 1U);
    EXPECT_EQ(read_all(fewer).at(0).find("port_guids: 8"), std::string::npos);

    const std::string lone = begin_job("    num_guids: 3\n");
    EXPECT_TRUE(says(lone, "where it reads several messages, it makes it 0"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, lone)->num_guids, 3U);
    EXPECT_EQ(read_all(lone).at(0).find("num_guids"), std::string::npos);
}

TEST(StatedEffects, OfCountsThatNobodyMakesRight) {
    const std::string length = begin_job("    hosts: \"node\"\n    uid: 1\n    hosts_len: 4\n");
    EXPECT_TRUE(says(length, "after it, the reader keeps the number as it stands"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, length)->hosts_len, 4U);
    EXPECT_NE(read_all(length).at(0).find("hosts_len: 4\n"), std::string::npos);
    const std::string groups =
        message_of("RELEASE_GROUPS", "release_groups", "    num_groups: 2\n");
    EXPECT_TRUE(says(groups, "there is no 'groups': the reader keeps the number"));
    EXPECT_FALSE(says(groups, "several"));
    EXPECT_NE(read_all(groups).at(0).find("num_groups: 2\n"), std::string::npos);
}

TEST(StatedEffects, OfACountDirectlyAfterItsElements) {
    const std::string text = message_of("RESOURCE_DATA", "resource_message",
                                        "    links {\n      port_num: 3\n    }\n    links_num: 1\n"
                                        "    agg_nodes {\n      priority: 2\n    }\n");
    EXPECT_TRUE(says(text, "the reader takes 'links_num' for the name of one more of them, with "
                           "all lines below up to the closing brace of 'resource_message', and "
                           "reads no message after this one"));
    Read<vemra_resource_message> record(VEMRA_MSG_TYPE_RESOURCE_DATA, text);
    EXPECT_EQ(record->links_num, 2U);
    EXPECT_EQ(record->agg_nodes_num, 0U);
    EXPECT_EQ(read_all(text + end_job).size(), 1U);
}

TEST(StatedEffects, OfBracesInTexts) {
    const std::string closing =
        job_error("    error: 5\n    description: \"a } b\"\n    type: 7\n");
    EXPECT_TRUE(says(closing, "the reader closes 'job_error' at this line, and does not read the "
                              "text"));
    Read<vemra_job_error> record(VEMRA_MSG_TYPE_JOB_ERROR, closing);
    EXPECT_STREQ(record->description, "");
    EXPECT_EQ(record->type, 0U);

    const std::string opening =
        job_error("    error: 5\n    description: \"a { b\"\n    type: 7\n");
    EXPECT_EQ(found(opening), "5:19 open-brace-in-text 'a { b'\n");
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, opening)->description, "a { b");
    EXPECT_EQ(read_all(opening + end_job).size(), 2U);

    const std::string first = job_error("    description: \"a } b\"\n    error: 5\n");
    EXPECT_TRUE(says(first, "the reader takes the text here"));
    EXPECT_STREQ(Read<vemra_job_error>(VEMRA_MSG_TYPE_JOB_ERROR, first)->description, "a } b");
    EXPECT_NE(found(read_all(first).at(0)), "");

    // Within an array the reader looks for no brace.
    const std::string in_run =
        begin_job("    job_id: 1\n    hosts: \"abc\"\n    hosts: \"d } e\"\n");
    EXPECT_TRUE(says(in_run, "the reader takes the text here"));
    EXPECT_STREQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, in_run)->hosts, "abc,d } e");
}

TEST(StatedEffects, OfBlocksOnOneLine) {
    const std::string closing = begin_job("    job_id: 1\n    quota { }\n    uid: 3\n");
    EXPECT_TRUE(says(closing, "it takes the closing brace for that of 'begin_job'"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, closing)->uid, 0U);
    const std::string opening = begin_job("    quota { }\n    max_osts: 3\n");
    EXPECT_TRUE(says(opening, "it takes the lines below, up to a closing brace, for those of "
                              "'quota'"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, opening)->quota.max_osts, 3U);
}

TEST(StatedEffects, OfBlocksWithoutABrace) {
    const std::string missing = begin_job("    quota\n      max_osts: 5\n    }\n    uid: 3\n");
    EXPECT_EQ(found(missing), "4:5 missing-brace 'quota'\n");
    Read<vemra_begin_job> read(VEMRA_MSG_TYPE_BEGIN_JOB, missing);
    EXPECT_EQ(read->quota.max_osts, 5U);
    EXPECT_EQ(read->uid, 3U);
    const std::string below = begin_job("    quota\n    {\n      max_osts: 5\n    }\n    uid: 3\n");
    EXPECT_TRUE(says(below, "the reader opens the block all the same, and skips what the brace "
                            "below opens"));
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, below)->quota.max_osts, 0U);
}

TEST(StatedEffects, OfMessagesThatAreNotClosed) {
    const std::string open = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n";
    EXPECT_TRUE(says(open + end_job + end_job,
                     "the reader takes the message, and those below, for unknown blocks, and skips "
                     "them"));
    EXPECT_EQ(read_all(open + end_job + end_job).size(), 1U);
    EXPECT_TRUE(says(open + "  }\n" + end_job + end_job,
                     "the reader takes this line for its closing brace, and reads neither this "
                     "message nor those below"));
    EXPECT_EQ(read_all(open + "  }\n" + end_job + end_job).size(), 1U);
    EXPECT_TRUE(says(open + "}\n" + end_job,
                     "'end_job' is not closed: by the indentation its brace belongs before line 5; "
                     "the reader takes what follows for its lines, and reads no message after this "
                     "one"));
    EXPECT_EQ(read_all(open + "}\n" + end_job).size(), 1U);
    EXPECT_EQ(read_all(open + "    x {\n" + end_job + end_job).size(), 1U);
    EXPECT_TRUE(says(end_job + "}\n" + end_job, "the reader reads no message after this one"));
    EXPECT_EQ(read_all(end_job + "}\n" + end_job).size(), 1U);
}

TEST(StatedEffects, OfAKindOnTheLineBelow) {
    const std::string text = "msg {\n  type:\n  END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
    EXPECT_TRUE(says(text, "the reader takes 'END_JOB' from a line below, and does not read the "
                           "block after it"));
    EXPECT_EQ(Read<vemra_end_job>(VEMRA_MSG_TYPE_END_JOB, text)->job_id, 0U);
}

TEST(StatedEffects, OfWhatIsOutsideOfMessages) {
    EXPECT_TRUE(says(end_job + "x\n" + end_job, "the reader stops here, and reads nothing below"));
    EXPECT_EQ(read_all(end_job + "x\n" + end_job).size(), 1U);
    const std::string in_place_of_a_brace =
        "msg {\n  type: END_JOB\n  end_job {\n  }\n  x: 5\n" + end_job;
    EXPECT_TRUE(says(in_place_of_a_brace, "the reader takes this line for that, and skips it"));
    EXPECT_EQ(read_all(in_place_of_a_brace).size(), 2U);
    EXPECT_TRUE(says("msg {\n  type: END_JOB\n  end_job {\n  }\n  x: 5\n}\n" + end_job,
                     "the reader takes this line for that, and stops"));
    EXPECT_EQ(read_all("msg {\n  type: END_JOB\n  end_job {\n  }\n  x: 5\n}\n" + end_job).size(),
              1U);
}

TEST(StatedEffects, OfAnArrayThatEndsInTheMiddle) {
    const auto conns = [](const std::string &lines) {
        return job_data("    conns_num: 1\n    conns {\n" + lines + "    }\n");
    };
    const std::string ended = conns("      qp_child_idxs: 7\n      qp_child_idxs: 255\n");
    EXPECT_EQ(found(ended), "7:7 end-mark 'qp_child_idxs: 255'\n");
    const std::string written = read_all(ended).at(0);
    EXPECT_NE(written.find("      qp_child_idxs: 7\n"), std::string::npos);
    EXPECT_EQ(written.find("255"), std::string::npos);
    const std::string on = conns("      qp_child_idxs: 255\n      qp_child_idxs: 8\n");
    EXPECT_EQ(found(on), "7:7 after-end 'qp_child_idxs: 8'\n");
    EXPECT_EQ(read_all(on).at(0).find("qp_child_idxs"), std::string::npos);
}

TEST(StatedEffects, OfACountThatIsMissing) {
    const auto all = [](const std::string &text) {
        std::string names;
        const auto add = [](const kvt_finding *finding, void *user) {
            *static_cast<std::string *>(user) +=
                std::string(finding->name) + ": " + finding->message;
            return 0;
        };
        kvt_check(text.data(), text.size(), add, &names);
        return names;
    };
    const std::string text = begin_job("    port_guids: 1\n    port_guids: 2\n");
    EXPECT_EQ(all(text), "no-count: no line says 'num_guids': the reader takes it from what is "
                         "there, 2");
    EXPECT_EQ(Read<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text)->num_guids, 2U);
    // A count that cannot be read is there.
    EXPECT_EQ(all(begin_job("    num_guids: x\n    port_guids: 1\n")).find("no-count"),
              std::string::npos);
}

} // namespace
} // namespace kvt_test
