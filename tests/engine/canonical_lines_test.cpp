// Where lines stop being what the writer writes: texts that are canonical almost to their end.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <malloc.h>

#include "kvt/messages/events.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_info.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

std::string numbered_lines(const std::string &key, unsigned count) {
    std::string lines;
    for (unsigned i = 1; i <= count; ++i) {
        lines += "      " + key + ": " + std::to_string(i) + "\n";
    }
    return lines;
}

// Nothing but the next member would show a byte too many: it lies within the same record.
TEST(CanonicalLines, ALineMoreThanABytesArrayHoldsLeavesTheNextMember) {
    const ReadMessage<vemra_job_data> job(
        VEMRA_MSG_TYPE_JOB_DATA,
        message_text("JOB_DATA", "  job_data {\n    conns {\n" +
                                     numbered_lines("qp_child_idxs", 66) + "    }\n  }\n"));
    ASSERT_EQ(job->conns_num, 1U);
    EXPECT_EQ(job->conns[0].qp_child_idxs[63], 64U);
    const ibv_sa_path_rec none = {};
    EXPECT_EQ(std::memcmp(&job->conns[0].pr_sd_to_an, &none, sizeof none), 0);

    const ReadMessage<vemra_mgmt_job_info_list> list(
        VEMRA_MSG_TYPE_JOB_INFO_REPLY,
        message_text("JOB_INFO_REPLY", "  mgmt_job_info_list {\n    job_list {\n" +
                                           numbered_lines("reserved", 13) + "    }\n  }\n"));
    ASSERT_EQ(list->job_list_len, 1U);
    EXPECT_EQ(list->job_list[0].reserved[10], 11U);
    EXPECT_EQ(list->job_list[0].reservation_id, 0U);
}

std::string event(unsigned entries, const std::string &rest) {
    std::string text = "    vemra_events {\n      event_type: 1\n";
    for (unsigned i = 0; i < entries; ++i) {
        text += "      str_entry_list {\n        entry_name: \"n\"\n        entry_value: \"v\"\n"
                "      }\n";
    }
    return text + rest + "    }\n";
}

TEST(CanonicalLines, EachOfSeveralReplacedRunsIsReleasedByItsOwnTrueLengths) {
    const MemoryWatch watch;
    {
        const ReadMessage<vemra_event_list> list(
            VEMRA_MSG_TYPE_EVENTS_REPLY,
            message_text("EVENTS_REPLY", "  event_list {\n" + event(2, "      num_str_entry: 0\n") +
                                             "    unknown: 1\n" +
                                             event(3, "      num_str_entry: 0\n") +
                                             "    unknown: 1\n" + event(1, "") + "  }\n"));
        ASSERT_EQ(list->num_event, 1U);
        EXPECT_EQ(list->events[0].num_str_entry, 1U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(CanonicalLines, AnOpeningLineMayGoOnBehindWhatTheWriterWrites) {
    for (const char *opening : {"  end_job {\n", "  end_job {  \n", "  end_job { x: 1\n",
                                "  end_job extra {\n", "  end_jobs {\n", "  end_job\n"}) {
        const ReadMessage<vemra_end_job> job(
            VEMRA_MSG_TYPE_END_JOB,
            message_text("END_JOB", opening + std::string("    job_id: 5\n  }\n")));
        EXPECT_EQ(job->job_id, 5U) << opening;
    }
}

// The record ends at its first closing brace, which closes the envelope too: the braces see 41
// envelopes where the reader sees one message.
TEST(CanonicalLines, EnvelopesThatOnlyTheBracesSeeHaveTheirEntries) {
    std::string text = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 0}}\n";
    for (int i = 0; i < 40; ++i) {
        text += "msg\n";
    }
    text += "  }\n}\n";
    size_t envelopes = 0;
    for (const char *at = text.c_str(); std::strncmp(at, "msg", 3) == 0; at = find_end_msg(at)) {
        ++envelopes;
    }
    ASSERT_EQ(envelopes, 41U);
    char **msgs = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &msgs, &kinds,
                                   &count),
              0);
    EXPECT_EQ(count, 1);
    EXPECT_GE(malloc_usable_size(msgs), envelopes * sizeof *msgs);
    EXPECT_GE(malloc_usable_size(kinds), envelopes * sizeof *kinds);
    std::free(msgs[0]);
    std::free(msgs);
    std::free(kinds);
}

} // namespace
} // namespace kvt_test
