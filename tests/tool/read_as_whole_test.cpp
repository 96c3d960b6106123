// What is said of a file that is read as a whole is what kvt_msg_arr_from_str does with it.
#include "io/read_as_whole.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "kvt/kvt_str.h"
#include "message_kinds.h"
#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "temporary_file.h"

namespace kvt_tool {
namespace {

const std::string end_job = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
const std::string not_closed = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n";
const std::string open_block = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n";

void expect_reading(const std::string &text, uint64_t messages, uint64_t all, uint64_t last,
                    uint64_t refused) {
    const WholeReading reading = read_as_whole(text);
    EXPECT_EQ(reading.messages, messages) << text;
    EXPECT_EQ(reading.all_messages, all) << text;
    EXPECT_EQ(reading.last_line, last) << text;
    EXPECT_EQ(reading.refused_line, refused) << text;
}

TEST(ReadAsWhole, TellsOfAllMessages) {
    expect_reading(end_job + "\n" + end_job, 2, 2, 8, 0);
    EXPECT_TRUE(read_as_whole(end_job).is_all());
}

TEST(ReadAsWhole, EndsAtAMessageThatIsNotClosed) {
    expect_reading(end_job + not_closed + end_job + end_job, 2, 4, 7, 0);
    expect_reading(open_block + end_job + end_job, 1, 3, 1, 0);
}

TEST(ReadAsWhole, OfAnUnknownKindReadsNothing) {
    expect_reading(end_job + "msg {\n  type: X\n}\n" + end_job, 1, 3, 1, 7);
    EXPECT_FALSE(read_as_whole(end_job + "msg {\n  type: X\n}\n").is_all());
}

TEST(ReadAsWhole, OfNoMessageIsRefusedAtItsFirstLine) {
    expect_reading("", 0, 0, 0, 1);
    expect_reading("\n" + end_job, 0, 1, 0, 1);
    expect_reading("words\n", 0, 0, 0, 1);
}

TEST(ReadAsWhole, DoesWhatTheCodecDoesWithChangedRandomTexts) {
    kvt_test::Random random(4);
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        for (int i = 0; kind.record != nullptr && i < 60; ++i) {
            kvt_test::OwnedRecord record(*kind.record);
            kvt_test::fill_randomly(*kind.record, record.get(), random);
            const std::string message =
                kvt_test::text_of_record(static_cast<int32_t>(kind.value), record.get());
            std::string text = end_job;
            text += kvt_test::mutate(kvt_test::mutate(message, *kind.record, random), *kind.record,
                                     random);
            text = text.c_str() + end_job;
            char **messages = nullptr;
            uint32_t *kinds = nullptr;
            int32_t count = 0;
            const int32_t result = kvt_msg_arr_from_str(
                text.c_str(), static_cast<uint32_t>(text.size()), &messages, &kinds, &count);
            const WholeReading reading = read_as_whole(text);
            ASSERT_EQ(reading.refused_line != 0, result != 0) << text;
            if (result == 0) {
                ASSERT_EQ(reading.messages, static_cast<uint64_t>(count)) << text;
                for (int32_t message_index = 0; message_index < count; ++message_index) {
                    std::free(messages[message_index]);
                }
                std::free(messages);
                std::free(kinds);
            }
        }
    }
}

TEST(ReadAsWhole, SaysHowManyMessagesAreLost) {
    const TemporaryFile open(end_job + not_closed + end_job + end_job);
    EXPECT_EQ(words_on_whole(open.name()),
              open.name() +
                  ": a program that reads the file as a whole, with kvt_msg_arr_from_str, gets 2 "
                  "of 4 messages, the last one at line 7\n");
    const TemporaryFile refused("msg {\n");
    EXPECT_EQ(words_on_whole(refused.name()),
              refused.name() +
                  ": a program that reads the file as a whole, with kvt_msg_arr_from_str, gets "
                  "none of 1 message: it is refused at line 1\n");
}

TEST(ReadAsWhole, SaysNothingWhereNothingIsLostOrNobodyKnows) {
    const TemporaryFile good(end_job);
    EXPECT_EQ(words_on_whole(good.name()), "");
    EXPECT_EQ(words_on_whole("-"), "");
    EXPECT_EQ(words_on_whole("/dev/null"), "");
}

} // namespace
} // namespace kvt_tool
