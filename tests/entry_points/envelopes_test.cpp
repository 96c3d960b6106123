// kvt_msg_arr_from_str's arrays have an entry for every envelope that the braces of the text make,
// which may be more than the messages that are read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "kvt/kvt_str.h"
#include "support/exact_copy.h"
#include "support/memory_watch.h"

namespace kvt_test {
namespace {

/// Splits a text and looks at an entry for every envelope: those after the messages are zero.
void expect_entries(const std::string &text, int32_t messages, int32_t envelopes) {
    SCOPED_TRACE(text.substr(0, 100));
    char **msgs = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    ASSERT_EQ(kvt_msg_arr_from_str(exact_copy(text).get(), static_cast<uint32_t>(text.size()),
                                   &msgs, &kinds, &count),
              0);
    ASSERT_EQ(count, messages);
    int32_t found = 0;
    for (const char *at = text.c_str(); std::strncmp(at, "msg", 3) == 0; ++found) {
        at = find_end_msg(at);
    }
    ASSERT_EQ(found, envelopes);
    for (int32_t i = 0; i < envelopes; ++i) {
        EXPECT_EQ(msgs[i] != nullptr, i < count);
        EXPECT_EQ(kinds[i] != 0, i < count);
        std::free(msgs[i]);
    }
    std::free(msgs);
    std::free(kinds);
}

std::string repeat(int times, const std::string &text) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

const std::string end_job = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";

// The text closes two blocks and opens two; what stands after its first line is skipped as a block
// and as further lines of the record, up to the end of the whole text.
TEST(Envelopes, OfBracesInAQuotedTextHaveEntriesWithoutAMessage) {
    const std::string quoted = "msg {\n  type: JOB_ERROR\n  job_error {\n"
                               "    description: \"}}\nmsg {{\"\n  }\n}\n";
    expect_entries(quoted + repeat(40, end_job), 1, 42);
}

TEST(Envelopes, OfBracesAfterTheTypeHaveEntriesWithoutAMessage) {
    const std::string two = "msg {\n  type: END_JOB }\nmsg { {\n    job_id: 5\n  }\n}\n";
    expect_entries(repeat(40, two), 40, 80);
}

// Reading ends where another line stands in the place of the envelope's closing line; the braces go
// on.
TEST(Envelopes, AfterALineBeforeTheClosingLineHaveEntriesWithoutAMessage) {
    const std::string odd = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\nx\n}\n";
    expect_entries(odd + repeat(40, end_job), 1, 41);
}

/// Lines for within a block: they close it and two more, and open as many under another name.
const std::string braces = "    }}}\nmsg {{{\n";

TEST(Envelopes, OfASkippedBlockHaveEntriesWithoutAMessage) {
    const std::string unknown = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n    x {\n" +
                                braces + "    }\n  }\n}\n";
    expect_entries(repeat(40, unknown), 40, 80);
}

TEST(Envelopes, OfAFurtherSlotHaveEntriesWithoutAMessage) {
    const std::string slots = "msg {\n  type: RELEASE_GROUPS\n  release_groups {\n" +
                              repeat(4, "    groups {\n    }\n") + "    groups {\n" + braces +
                              "    }\n  }\n}\n";
    expect_entries(repeat(40, slots), 40, 80);
}

TEST(Envelopes, OfADroppedElementHaveEntriesWithoutAMessage) {
    for (const char *opening : {"    job_list {\n", "\tjob_list {\n"}) {
        const std::string dropped = "msg {\n  type: JOB_INFO_REPLY\n  mgmt_job_info_list {\n" +
                                    repeat(5, "    job_list {\n    }\n") + opening + braces +
                                    "    }\n  }\n}\n";
        MemoryWatch watch;
        watch.fail(5); // three arrays, the record, the run; then its growth
        expect_entries(dropped + repeat(15, end_job), 16, 17);
        EXPECT_EQ(watch.failed(), 1U);
        EXPECT_EQ(watch.alive(), 0U);
    }
}

// The brace of the later line opens nothing for the reader, and one block more for the count. So
// the envelope ends with the line after the message, which ends the reading.
TEST(Envelopes, OfABraceInALaterLineOfARunHaveEntriesWithoutAMessage) {
    for (const char *lines :
         {"    port_guids: 1\n    port_guids: 2 {\n", "    hosts: \"a\"\n    hosts: \"b{\"\n"}) {
        const std::string run =
            std::string("msg {\n  type: BEGIN_JOB\n  begin_job {\n") + lines + "  }\n}\n}\n";
        expect_entries(run + repeat(40, end_job), 1, 41);
    }
    const std::string bytes = "msg {\n  type: JOB_DATA\n  job_data {\n    conns {\n"
                              "      qp_child_idxs: 1\n      qp_child_idxs: 2 {\n"
                              "    }\n  }\n}\n}\n";
    expect_entries(bytes + repeat(40, end_job), 1, 41);
}

} // namespace
} // namespace kvt_test
