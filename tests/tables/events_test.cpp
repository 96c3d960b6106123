// EVENTS_REQUEST and EVENTS_REPLY.
#include <gtest/gtest.h>

#include <cstddef>

#include "kvt/messages/events.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_timestamp) == 16);
static_assert(offsetof(vemra_timestamp, seconds) == 0);
static_assert(offsetof(vemra_timestamp, useconds) == 8);

static_assert(sizeof(vemra_get_events_request) == 16);
static_assert(offsetof(vemra_get_events_request, ts) == 0);

static_assert(sizeof(vemra_event_str_entry) == 32);
static_assert(offsetof(vemra_event_str_entry, entry_name_len) == 0);
static_assert(offsetof(vemra_event_str_entry, entry_name) == 8);
static_assert(offsetof(vemra_event_str_entry, value_len) == 16);
static_assert(offsetof(vemra_event_str_entry, entry_value) == 24);

static_assert(sizeof(vemra_event) == 32);
static_assert(offsetof(vemra_event, event_type) == 0);
static_assert(offsetof(vemra_event, num_str_entry) == 4);
static_assert(offsetof(vemra_event, str_entry_list) == 8);
static_assert(offsetof(vemra_event, ts) == 16);

static_assert(sizeof(vemra_event_list) == 16);
static_assert(offsetof(vemra_event_list, num_event) == 0);
static_assert(offsetof(vemra_event_list, events) == 8);
#endif

constexpr int32_t request_kind = VEMRA_MSG_TYPE_EVENTS_REQUEST;
constexpr int32_t reply_kind = VEMRA_MSG_TYPE_EVENTS_REPLY;

using ReadEvents = ReadMessage<vemra_event_list>;

std::string request(const std::string &lines) {
    return message_text("EVENTS_REQUEST", "  get_events_request {\n" + lines + "  }\n");
}

std::string reply(const std::string &lines) {
    return message_text("EVENTS_REPLY", "  event_list {\n" + lines + "  }\n");
}

std::string event(const std::string &lines) {
    return "    vemra_events {\n" + lines + "    }\n";
}

std::string entry(const std::string &lines) {
    return "      str_entry_list {\n" + lines + "      }\n";
}

/// A reply of one event of one entry.
std::string reply_of_entry(const std::string &lines) {
    return reply(event(entry(lines)));
}

const vemra_event_str_entry &first_entry(const ReadEvents &read) {
    return read->events[0].str_entry_list[0];
}

/// A trace of the reader of a record.
LogLine trace(const std::string &record, const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_msg_vemra_" + record;
    return {reader, 6, reader + " " + text + "\n"};
}

/// A trace of the reader of texts.
LogLine text_trace(const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_primptr_char";
    return {reader, 6, reader + " " + text + "\n"};
}

const char full_request[] = "msg {\n"
                            "  type: EVENTS_REQUEST\n"
                            "  get_events_request {\n"
                            "    ts {\n"
                            "      seconds: 18446744073709551615\n"
                            "      useconds: 999999\n"
                            "    }\n"
                            "  }\n"
                            "}\n";

const char full_reply[] = "msg {\n"
                          "  type: EVENTS_REPLY\n"
                          "  event_list {\n"
                          "    num_event: 2\n"
                          "    vemra_events {\n"
                          "      event_type: 4294967295\n"
                          "      num_str_entry: 2\n"
                          "      str_entry_list {\n"
                          "        entry_name_len: 7\n"
                          "        entry_name: \"switch\"\n"
                          "        value_len: 13\n"
                          "        entry_value: \"leaf { \\ 01,\"\n"
                          "      }\n"
                          "      str_entry_list {\n"
                          "        entry_name_len: 5\n"
                          "        entry_name: \"port\"\n"
                          "        value_len: 3\n"
                          "        entry_value: \"17\"\n"
                          "      }\n"
                          "      ts {\n"
                          "        seconds: 18446744073709551615\n"
                          "        useconds: 250000\n"
                          "      }\n"
                          "    }\n"
                          "    vemra_events {\n"
                          "      event_type: 3\n"
                          "      ts {\n"
                          "        useconds: 1\n"
                          "      }\n"
                          "    }\n"
                          "  }\n"
                          "}\n";

// --- What is written and read back ---------------------------------------------------------------

TEST(Events, TheRequestIsWrittenToTheLetterAndReadsEveryField) {
    EXPECT_EQ(to_text(request_kind,
                      vemra_get_events_request{.ts = {.seconds = UINT64_MAX, .useconds = 999999}}),
              full_request);
    const ReadMessage<vemra_get_events_request> read(request_kind, full_request);
    EXPECT_EQ(read->ts.seconds, UINT64_MAX);
    EXPECT_EQ(read->ts.useconds, 999999U);
}

TEST(Events, TheReplyIsWrittenToTheLetter) {
    char switch_name[] = "switch";
    char switch_value[] = "leaf { \\ 01,";
    char port_name[] = "port";
    char port_value[] = "17";
    vemra_event_str_entry entries[2] = {
        {.entry_name_len = 7,
         .entry_name = switch_name,
         .value_len = 13,
         .entry_value = switch_value},
        {.entry_name_len = 5, .entry_name = port_name, .value_len = 3, .entry_value = port_value}};
    vemra_event events[2] = {{.event_type = UINT32_MAX,
                              .num_str_entry = 2,
                              .str_entry_list = entries,
                              .ts = {.seconds = UINT64_MAX, .useconds = 250000}},
                             {.event_type = 3,
                              .num_str_entry = 0,
                              .str_entry_list = nullptr,
                              .ts = {.seconds = 0, .useconds = 1}}};
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 2, .events = events}), full_reply);
}

TEST(Events, TheReplyReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_event_list>(reply_kind, full_reply), full_reply);
}

// --- What is left out ----------------------------------------------------------------------------

TEST(Events, ARequestWithoutATimeIsItsEmptyTimeAndReadsBackAsZero) {
    const std::string text = "msg {\n"
                             "  type: EVENTS_REQUEST\n"
                             "  get_events_request {\n"
                             "    ts {\n"
                             "    }\n"
                             "  }\n"
                             "}\n";
    EXPECT_EQ(to_text(request_kind, vemra_get_events_request{}), text);
    const ReadMessage<vemra_get_events_request> read(request_kind, text);
    EXPECT_EQ(read->ts.seconds, 0U);
    EXPECT_EQ(read->ts.useconds, 0U);
}

TEST(Events, AReplyWithoutEventsIsAnEmptyBlockAndReadsBackNull) {
    vemra_event unused = {};
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{}), reply(""));
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 0, .events = &unused}), reply(""));
    const ReadEvents read(reply_kind, reply(""));
    EXPECT_EQ(read->num_event, 0U);
    EXPECT_EQ(read->events, nullptr);
}

TEST(Events, AZeroEventTellsItsTypeAndItsEmptyTime) {
    vemra_event zero = {};
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 1, .events = &zero}),
              reply("    num_event: 1\n"
                    "    vemra_events {\n"
                    "      event_type: 0\n"
                    "      ts {\n"
                    "      }\n"
                    "    }\n"));
}

TEST(Events, AZeroEntryIsAnEmptyBlock) {
    vemra_event_str_entry zero = {};
    vemra_event one = {};
    one.num_str_entry = 1;
    one.str_entry_list = &zero;
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 1, .events = &one}),
              reply("    num_event: 1\n"
                    "    vemra_events {\n"
                    "      event_type: 0\n"
                    "      num_str_entry: 1\n"
                    "      str_entry_list {\n"
                    "      }\n"
                    "      ts {\n"
                    "      }\n"
                    "    }\n"));
}

// --- Names and values ----------------------------------------------------------------------------

TEST(Events, ANameLengthDirectlyBehindTheNameIsTakenByItAndAValueLengthIsKept) {
    const ReadEvents read(reply_kind, reply_of_entry("        entry_name: \"ab\"\n"
                                                     "        entry_name_len: 50\n"
                                                     "        entry_value: \"abc\"\n"
                                                     "        value_len: 50\n"));
    EXPECT_EQ(first_entry(read).entry_name_len, 3U);
    EXPECT_STREQ(first_entry(read).entry_name, "ab");
    EXPECT_EQ(first_entry(read).value_len, 50U);
    EXPECT_STREQ(first_entry(read).entry_value, "abc");
}

// --- Growing -------------------------------------------------------------------------------------

// --- Traces --------------------------------------------------------------------------------------

TEST(Events, TheRequestTracesItsTimeUnderItsReader) {
    LogCapture log;
    const ReadMessage<vemra_get_events_request> read(request_kind,
                                                     request("    later: 1\n"
                                                             "    ts {\n"
                                                             "      seconds: 4294967311\n"
                                                             "      later: 2\n"
                                                             "      useconds: 17\n"
                                                             "    }\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            trace("get_events_request",
                  "mismatch, txt_msg[later: 1\n    ts {\n      seconds: 4294967311\n      ]"),
            trace("timestamp", "p_msg->seconds[0xf]"),
            trace("timestamp", "mismatch, txt_msg[later: 2\n      useconds: 17\n    }\n  }\n}\n]"),
            trace("timestamp", "p_msg->useconds[0x11]"),
        }));
}

TEST(Events, TheReplyTracesEventsAndEntriesUnderTheirReaders) {
    LogCapture log;
    const ReadEvents read(reply_kind, reply("    num_event: 1\n"
                                            "    vemra_events {\n"
                                            "      event_type: 26\n"
                                            "      num_str_entry: 1\n"
                                            "      str_entry_list {\n"
                                            "        entry_name_len: 5\n"
                                            "        entry_name: \"port\"\n"
                                            "        entry_name: \"lane\"\n"
                                            "        value_len: 3\n"
                                            "        entry_value: \"\xc3\"\n"
                                            "        later: 1\n"
                                            "      }\n"
                                            "      later: 2\n"
                                            "      ts {\n"
                                            "        seconds: 9\n"
                                            "      }\n"
                                            "    }\n"
                                            "    later: 3\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            trace("event_list", "p_msg->num_event[0x1]"),
            trace("event", "p_msg->event_type[0x1a]"),
            trace("event", "p_msg->num_str_entry[0x1]"),
            trace("event_str_entry", "p_msg->entry_name_len[0x5]"),
            text_trace("dst_ptr[port,], value[]"),
            text_trace("dst_ptr[port,lane,], value[]"),
            text_trace("END prim ptr, num_lements[0x2], array[0][0x70]"),
            trace("event_str_entry", "p_msg->value_len[0x3]"),
            text_trace("dst_ptr[\xc3,], value[]"),
            text_trace("END prim ptr, num_lements[0x1], array[0][0xffffffffffffffc3]"),
            trace("event_str_entry",
                  "mismatch, txt_msg[later: 1\n      }\n      later: 2\n      ts {\n       ]"),
            trace("event", "mismatch, txt_msg[later: 2\n      ts {\n        seconds: 9\n"
                           "      }\n   ]"),
            trace("timestamp", "p_msg->seconds[0x9]"),
            trace("event_list", "mismatch, txt_msg[later: 3\n  }\n}\n]"),
        }));
}

} // namespace
} // namespace kvt_test
