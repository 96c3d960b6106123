// kvt_msg_from_str.
#include <gtest/gtest.h>

#include "kvt/messages/events.h"
#include "kvt/messages/job_control.h"
#include "message_kinds.h"
#include "support/exact_copy.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "support/random_records.h"

namespace kvt_test {
namespace {

/// What a refused text does: the result, and what was stored and logged.
struct Refusal {
    int32_t result;
    bool untouched;
    std::vector<LogLine> log;
};

Refusal refuse(const std::string &text) {
    LogCapture log;
    int place = 0;
    void *record = &place;
    const int32_t result = kvt_msg_from_str(0, 0, exact_copy(text).get(), &record);
    return {result, record == &place, log.take()};
}

void expect_refused(const std::string &text, const std::string &logged) {
    const Refusal refusal = refuse(text);
    EXPECT_EQ(refusal.result, -1) << text;
    EXPECT_TRUE(refusal.untouched) << text;
    EXPECT_EQ(refusal.log, (std::vector<LogLine>{{"kvt_msg_from_str", 0, logged}})) << text;
}

TEST(FromStr, ReadsAMessageIntoARecordOfItsOwn) {
    const ReadMessage<vemra_end_job> read(VEMRA_MSG_TYPE_END_JOB, "msg {\n"
                                                                  "  type: END_JOB\n"
                                                                  "  end_job {\n"
                                                                  "    job_id: 5\n"
                                                                  "    reservation_id: 7\n"
                                                                  "  }\n"
                                                                  "}\n");
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 5U);
    EXPECT_EQ(read->reservation_id, 7U);
}

TEST(FromStr, AnythingMayBePassedForTheIgnoredArguments) {
    const char *text = "msg {\n  type: END_JOB\n  end_job {\n  }\n}\n";
    int object = 0;
    const uint64_t number = 7;
    void *records[5] = {};
    EXPECT_EQ(kvt_msg_from_str(0, 0, text, &records[0]), 0);
    EXPECT_EQ(kvt_msg_from_str(nullptr, NULL, text, &records[1]), 0);
    EXPECT_EQ(kvt_msg_from_str(&object, text, text, &records[2]), 0);
    EXPECT_EQ(kvt_msg_from_str(number, -1, text, &records[3]), 0);
    EXPECT_EQ(kvt_msg_from_str(VEMRA_MSG_TYPE_END_JOB, 'c', text, &records[4]), 0);
    for (void *record : records) {
        EXPECT_NE(record, nullptr);
        kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, record);
    }
}

TEST(FromStr, ANullTextOrAddressIsAnError) {
    LogCapture log;
    void *record = &log;
    const char text[] = "msg {\n";
    EXPECT_EQ(kvt_msg_from_str(0, 0, nullptr, &record), -1);
    EXPECT_EQ(record, &log);
    EXPECT_EQ(kvt_msg_from_str(0, 0, text, nullptr), -1);
    char expected[2][128];
    std::snprintf(expected[0], sizeof expected[0],
                  "kvt_msg_from_str: No buffer[%p] or msg[%p] was specified",
                  static_cast<void *>(nullptr), static_cast<void *>(&record));
    std::snprintf(expected[1], sizeof expected[1],
                  "kvt_msg_from_str: No buffer[%p] or msg[%p] was specified",
                  static_cast<const void *>(text), static_cast<void *>(nullptr));
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{{"kvt_msg_from_str", 0, expected[0]},
                                                 {"kvt_msg_from_str", 0, expected[1]}}));
}

TEST(FromStr, ATextThatDoesNotBeginWithMsgIsRefusedWithoutAWord) {
    for (const char *text : {"", " msg {\n", "\nmsg {\n", "MSG {\n", "ms", "message"}) {
        const Refusal refusal = refuse(text);
        const bool is_message = std::string(text) == "message";
        EXPECT_EQ(refusal.result, -1);
        EXPECT_TRUE(refusal.untouched);
        // Only "msg" is looked at.
        EXPECT_TRUE(refusal.log.empty() || !is_message);
    }
    expect_refused("msgs follow", "kvt_msg_from_str: Invalid value given for msg_type[]");
}

TEST(FromStr, KindsWithoutARecordAreRefused) {
    expect_refused("msg {\n  type: NONE\n}\n",
                   "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_NONE not yet implemented");
    expect_refused("msg {\n  type: LAST\n}\n",
                   "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_LAST not yet implemented");
    expect_refused("msg {\n  type: NONESUCH\n}\n",
                   "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_NONE not yet implemented");
}

TEST(FromStr, UnknownAndMissingNamesAreRefused) {
    expect_refused("msg {\n  type: FOO\n}\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[FOO]");
    expect_refused("msg {\n  type: END_JO\n}\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[END_JO]");
    expect_refused("msg {\n  type: end_job\n}\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[end_job]");
    expect_refused("msg {\n}\n", "kvt_msg_from_str: Invalid value given for msg_type[]");
    expect_refused("msg", "kvt_msg_from_str: Invalid value given for msg_type[]");
    expect_refused("msg {\n  type:", "kvt_msg_from_str: Invalid value given for msg_type[]");
    expect_refused("msg {\n  type: \t\n ", "kvt_msg_from_str: Invalid value given for msg_type[]");
    expect_refused("msg {\n  type : END_JOB\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[]");
}

TEST(FromStr, OnlyTheFirstLineAfterTheOpeningCanBeTheTypeLine) {
    expect_refused("msg {\n  version: 1\n  type: END_JOB\n  end_job {\n  }\n}\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[]");
}

TEST(FromStr, ANameIsCutAt99Characters) {
    expect_refused("msg {\n  type: " + std::string(98, 'N') + "\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[" + std::string(98, 'N') +
                       "]");
    expect_refused("msg {\n  type: " + std::string(100000, 'N') + "\n",
                   "kvt_msg_from_str: Invalid value given for msg_type[" + std::string(99, 'N') +
                       "]");
}

TEST(FromStr, ANameMayGoOn) {
    const ReadMessage<vemra_end_job> read(
        VEMRA_MSG_TYPE_END_JOB,
        "msg {\n  type: END_JOB_TWICE\n  end_job {\n    job_id: 5\n  }\n}\n");
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 5U);
}

TEST(FromStr, BlankLinesAndTheNameOfTheBlockDoNotMatter) {
    const ReadMessage<vemra_end_job> read(
        VEMRA_MSG_TYPE_END_JOB,
        "msg anything\n\n\t\ntype:END_JOB }\n \n any_name\n\tjob_id: 5\n}\n");
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 5U);
}

// The scan for the name goes on over the newline, the position does not: the line with the name is
// then taken for the opening line of the block.
TEST(FromStr, TheNameMayStandOnTheNextLine) {
    const ReadMessage<vemra_end_job> read(VEMRA_MSG_TYPE_END_JOB,
                                          "msg {\n  type:\r\n END_JOB\n    job_id: 5\n  }\n}\n");
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 5U);
}

TEST(FromStr, EveryNameIsReadAsItsKindAndLogsItsRecordWhenItCannotBeAllocated) {
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        const std::string text = message_text(kind.name, "  block {\n  }\n");
        LogCapture log(0);
        MemoryWatch watch;
        watch.fail(0);
        void *record = &log;
        EXPECT_EQ(kvt_msg_from_str(0, 0, text.c_str(), &record), -1);
        EXPECT_EQ(record, nullptr);
        EXPECT_EQ(log.lines(),
                  (std::vector<LogLine>{{"kvt_msg_from_str", 0,
                                         std::string("kvt_msg_from_str: Failed to allocate memory "
                                                     "for ") +
                                             kind.record->name + " message"}}));
    }
}

TEST(FromStr, OnlyTheFirstLineOfABlockIsReadWhenItAlsoHoldsItsEnd) {
    const auto job_id_of = [](const std::string &lines) {
        const ReadMessage<vemra_end_job> read(
            VEMRA_MSG_TYPE_END_JOB, message_text("END_JOB", "  end_job {\n" + lines + "  }\n"));
        return read->job_id;
    };
    EXPECT_EQ(job_id_of("    job_id: 5 }\n"), 5U);
    EXPECT_EQ(job_id_of("    reservation_id: 1\n    job_id: 5 }\n"), 0U);
    // Its brace does not count then.
    EXPECT_EQ(job_id_of("    reservation_id: 1 }\n    job_id: 5\n"), 5U);
    EXPECT_EQ(job_id_of("    } job_id: 1\n    job_id: 5\n"), 0U);
    EXPECT_EQ(job_id_of("    unknown { }\n    job_id: 5\n"), 0U);
}

TEST(FromStr, BlankLinesMayStandBetweenTheBlocksOfARun) {
    const std::string event = "    vemra_events {\n      event_type: 7\n    }\n";
    const ReadMessage<vemra_event_list> list(
        VEMRA_MSG_TYPE_EVENTS_REPLY,
        message_text("EVENTS_REPLY", "  event_list {\n" + event + " \n\n" + event + "  }\n"));
    ASSERT_EQ(list->num_event, 2U);
    EXPECT_EQ(list->events[0].event_type, 7U);
    EXPECT_EQ(list->events[1].event_type, 7U);
}

TEST(FromStr, UnknownLinesAndBlocksAreSkippedWithATrace) {
    LogCapture log;
    const ReadMessage<vemra_end_job> read(VEMRA_MSG_TYPE_END_JOB,
                                          message_text("END_JOB", "  end_job {\n"
                                                                  "    colour: 1\n"
                                                                  "    box {\n"
                                                                  "      job_id: 1\n"
                                                                  "      inner {\n"
                                                                  "      }\n"
                                                                  "    }\n"
                                                                  "    job_id: 5\n"
                                                                  "  }\n"));
    EXPECT_EQ(read->job_id, 5U);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "_kvt_txt_unpack_msg_vemra_end_job mismatch, txt_msg[colour: 1\n"
                               "    box {\n      job_id: 1\n      inner {\n]\n",
                               "_kvt_txt_unpack_msg_vemra_end_job mismatch, txt_msg[box {\n"
                               "      job_id: 1\n      inner {\n      }\n    }\n]\n",
                               "_kvt_txt_unpack_msg_vemra_end_job p_msg->job_id[0x5]\n",
                           }));
}

TEST(FromStr, TracesAreOnlyMadeAtLevelSix) {
    LogCapture log(5);
    const ReadMessage<vemra_end_job> read(
        VEMRA_MSG_TYPE_END_JOB,
        message_text("END_JOB", "  end_job {\n    job_id: 5\n    x: 1\n  }\n"));
    EXPECT_TRUE(log.lines().empty());
}

TEST(FromStr, TheEndOfTheTextEndsEveryBlock) {
    const std::string text = "msg {\n"
                             "  type: JOB_ERROR\n"
                             "  job_error {\n"
                             "    job_id: 12\n"
                             "    error: 345\n"
                             "    description: \"so\"\n"
                             "  }\n"
                             "}\n";
    const size_t name_is_there = text.find("ERROR") + 5;
    for (size_t length = 0; length <= text.size(); ++length) {
        const ReadMessage<vemra_job_error> read(VEMRA_MSG_TYPE_JOB_ERROR, text.substr(0, length));
        ASSERT_EQ(read.result(), length < name_is_there ? -1 : 0) << length;
        if (length < name_is_there) {
            continue;
        }
        const auto has = [&](const char *part) {
            return length >= text.find(part);
        };
        EXPECT_EQ(read->job_id, has("12\n") ? has("2\n") ? has("\n    error") ? 12U : 1U : 0U : 0U)
            << length;
        EXPECT_EQ(read->error, has("\n    desc")    ? 345U
                               : has("5\n    desc") ? 34U
                               : has("45\n")        ? 3U
                                                    : 0U)
            << length;
        EXPECT_STREQ(read->description, has("\"\n  }") ? "so" : has("o\"\n") ? "s" : "") << length;
    }
}

} // namespace
} // namespace kvt_test
