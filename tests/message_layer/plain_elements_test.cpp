// Elements that own nothing are released with their array: nobody walks them.
#include <gtest/gtest.h>

#include "kvt/messages/job_info.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

// A walk to the end of the count would take years.
TEST(PlainElements, AreReleasedAtOnceWhateverTheirCountSays) {
    const std::string text =
        message_text("JOB_INFO_REPLY", "  mgmt_job_info_list {\n"
                                       "    job_list {\n"
                                       "    }\n"
                                       "    x: 1\n"
                                       "    job_list_len: 18446744073709551615\n"
                                       "  }\n");
    const MemoryWatch watch;
    {
        const ReadMessage<vemra_mgmt_job_info_list> read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, text);
        ASSERT_EQ(read.result(), 0);
        EXPECT_EQ(read->job_list_len, UINT64_MAX);
        EXPECT_NE(read->job_list, nullptr);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

} // namespace
} // namespace kvt_test
