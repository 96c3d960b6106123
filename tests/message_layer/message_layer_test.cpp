// The ready-made message layer: its log function and its release function.
#include <gtest/gtest.h>

#include <cstdlib>

#include "kvt/messages/events.h"
#include "kvt/messages/job_start.h"
#include "message_kinds.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "support/random_records.h"

namespace kvt_test {
namespace {

TEST(MessageLayer, LogsNothingUnlessToldTo) {
    EXPECT_EQ(log_cb, nullptr);
    EXPECT_EQ(log_level, 0);
}

TEST(MessageLayer, PrintsErrorsWithTheirFunctionAndTracesAsTheyAre) {
    testing::internal::CaptureStderr();
    kvt_log_to_stderr("file.cpp", 7, "function", 0, "it is %d", 5);
    kvt_log_to_stderr("file.cpp", 8, "reader", 6, "reader field[0x%x]\n", 255U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "file.cpp:7: function: it is 5\n"
                                                      "file.cpp:8: reader field[0xff]\n");
}

TEST(MessageLayer, ReleasesNothingForANullRecordOrAKindWithoutRecord) {
    int not_on_the_heap = 0;
    kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, nullptr);
    for (const int32_t kind : {0, 24, 25, -1}) {
        kvt_msg_release(kind, &not_on_the_heap);
        kvt_msg_release(kind, nullptr);
    }
}

TEST(MessageLayer, ReleasesRandomRecordsOfEveryKindWithAllThatHangsFromThem) {
    Random random(11);
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        const auto value = static_cast<int32_t>(kind.value);
        for (int i = 0; i < 10; ++i) {
            OwnedRecord record(*kind.record);
            kvt_test::fill_randomly(*kind.record, record.get(), random);
            const std::string text = kvt_test::text_of_record(value, record.get());
            const MemoryWatch watch;
            void *read = nullptr;
            ASSERT_EQ(kvt_msg_from_str(0, 0, text.c_str(), &read), 0);
            EXPECT_GE(watch.alive(), 1U);
            kvt_msg_release(value, read);
            EXPECT_EQ(watch.alive(), 0U) << kind.name;
        }
    }
}

TEST(MessageLayer, ReleasesRecordsThatAreFilledInPart) {
    const MemoryWatch watch;
    const auto zeroed = [](size_t size) {
        return std::calloc(1, size);
    };
    // Null pointers, beside counts and without.
    auto *events = static_cast<vemra_event_list *>(zeroed(sizeof(vemra_event_list)));
    events->num_event = 5;
    kvt_msg_release(VEMRA_MSG_TYPE_EVENTS_REPLY, events);
    // Elements of which some are still zero.
    events = static_cast<vemra_event_list *>(zeroed(sizeof(vemra_event_list)));
    events->num_event = 2;
    events->events = static_cast<vemra_event *>(std::calloc(5, sizeof(vemra_event)));
    events->events[1].num_str_entry = 1;
    events->events[1].str_entry_list =
        static_cast<vemra_event_str_entry *>(zeroed(sizeof(vemra_event_str_entry)));
    events->events[1].str_entry_list[0].entry_value = static_cast<char *>(zeroed(1));
    kvt_msg_release(VEMRA_MSG_TYPE_EVENTS_REPLY, events);
    // Numbers are never walked: a count that is too great does no harm.
    auto *job = static_cast<vemra_begin_job *>(zeroed(sizeof(vemra_begin_job)));
    job->num_guids = UINT32_MAX;
    job->port_guids = static_cast<uint64_t *>(zeroed(sizeof(uint64_t)));
    job->hosts = static_cast<char *>(zeroed(1));
    kvt_msg_release(VEMRA_MSG_TYPE_BEGIN_JOB, job);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(MessageLayer, PrintsLinesOfUpTo1023CharactersWholeAndCutsLongerOnes) {
    const std::string longest(1023, 'x');
    testing::internal::CaptureStderr();
    kvt_log_to_stderr("file.cpp", 7, "function", 0, "%s", longest.c_str());
    kvt_log_to_stderr("file.cpp", 8, "function", 0, "%s%s", longest.c_str(), "yz");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "file.cpp:7: function: " + longest + "\nfile.cpp:8: function: " + longest + "\n");
}

} // namespace
} // namespace kvt_test
