// kvt_msg_arr_from_str where memory or 32 bits do not suffice for what a short text asks for.
#include <gtest/gtest.h>

#include <cstdlib>

#include "kvt/messages/message_type.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

// The first message is read; the room for the others, which are not read, cannot be had.
TEST(SequenceLimits, EntriesForUnreadEnvelopesThatCannotBeAllocatedFailTheCall) {
    const std::string first = message_text("END_JOB", "  end_job {\n    job_id: 5\n  }\n");
    std::string text = first;
    for (int i = 0; i < 40; ++i) {
        text += first;
    }
    // Three arrays and a record are there by then; each of the arrays has to grow.
    for (size_t failing = 4; failing < 7; ++failing) {
        MemoryWatch watch;
        watch.fail(failing);
        char **msgs = nullptr;
        uint32_t *kinds = nullptr;
        int32_t count = -7;
        EXPECT_EQ(kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(first.size() - 1), &msgs,
                                       &kinds, &count),
                  -1);
        EXPECT_EQ(watch.failed(), 1U);
        EXPECT_EQ(watch.alive(), 0U);
        EXPECT_EQ(msgs, nullptr);
        EXPECT_EQ(kinds, nullptr);
        EXPECT_EQ(count, -7);
    }
}

// A connection that is read from 14 characters is written in 1,646: 64 child indexes of 0 and two
// paths. So many connections are read into some 550 MB, and just find room before it is doubled.
TEST(SequenceLimits, AMessageWhoseTextTakesFourGigabytesIsMissingFromTheTexts) {
    constexpr auto connections = static_cast<size_t>((uint64_t{1} << 32) / 1646 + 1);
    std::string text = "msg {\n  type: JOB_DATA\n  job_data {\n";
    for (size_t i = 0; i < connections; ++i) {
        text += "    conns {\n}\n";
    }
    text += "  }\n}\nmsg {\n  type: AM_SIGNAL\n  am_signal {\n  }\n}\n";
    LogCapture log(0);
    char **msgs = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &msgs, &kinds,
                                   &count),
              0);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(msgs[0], nullptr);
    EXPECT_EQ(kinds[0], static_cast<uint32_t>(VEMRA_MSG_TYPE_JOB_DATA));
    EXPECT_STREQ(msgs[1], "msg {\n  type: AM_SIGNAL\n  am_signal {\n  }\n}\n");
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].text.rfind("kvt_msg_to_str: No buffer[", 0), 0U);
    std::free(msgs[1]);
    std::free(msgs);
    std::free(kinds);
}

} // namespace
} // namespace kvt_test
