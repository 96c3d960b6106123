// EVENTS_REQUEST and EVENTS_REPLY.
#include <gtest/gtest.h>

#include <cstddef>

#include "kvt/messages/events.h"
#include "support/growth.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

/// An event that owns an entry and its two texts: four blocks with the event's storage aside.
std::string full_event(unsigned type) {
    return event("      event_type: " + std::to_string(type) + "\n" +
                 entry("        entry_name: \"name\"\n"
                       "        entry_value: \"value\"\n"));
}

const vemra_event_str_entry &first_entry(const ReadEvents &read) {
    return read->events[0].str_entry_list[0];
}

std::vector<uint64_t> event_types(const vemra_event_list &list) {
    std::vector<uint64_t> types;
    for (uint32_t i = 0; i < list.num_event; ++i) {
        types.push_back(list.events[i].event_type);
    }
    return types;
}

/// The value lengths of an event's entries, which tell them apart in the tests.
std::vector<uint64_t> value_lengths(const vemra_event &event) {
    std::vector<uint64_t> lengths;
    for (uint32_t i = 0; i < event.num_str_entry; ++i) {
        lengths.push_back(event.str_entry_list[i].value_len);
    }
    return lengths;
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
    const ReadEvents read(reply_kind, full_reply);
    ASSERT_EQ(read->num_event, 2U);
    const vemra_event &first = read->events[0];
    EXPECT_EQ(first.event_type, UINT32_MAX);
    ASSERT_EQ(first.num_str_entry, 2U);
    EXPECT_EQ(first.str_entry_list[0].entry_name_len, 7U);
    EXPECT_STREQ(first.str_entry_list[0].entry_name, "switch");
    EXPECT_EQ(first.str_entry_list[0].value_len, 13U);
    EXPECT_STREQ(first.str_entry_list[0].entry_value, "leaf { \\ 01,");
    EXPECT_EQ(first.str_entry_list[1].entry_name_len, 5U);
    EXPECT_STREQ(first.str_entry_list[1].entry_name, "port");
    EXPECT_EQ(first.str_entry_list[1].value_len, 3U);
    EXPECT_STREQ(first.str_entry_list[1].entry_value, "17");
    EXPECT_EQ(first.ts.seconds, UINT64_MAX);
    EXPECT_EQ(first.ts.useconds, 250000U);
    const vemra_event &second = read->events[1];
    EXPECT_EQ(second.event_type, 3U);
    EXPECT_EQ(second.num_str_entry, 0U);
    EXPECT_EQ(second.str_entry_list, nullptr);
    EXPECT_EQ(second.ts.seconds, 0U);
    EXPECT_EQ(second.ts.useconds, 1U);
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

TEST(Events, ANullArrayCountsAsNoElements) {
    vemra_event one = {};
    one.num_str_entry = 2;
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 1, .events = &one}),
              reply("    num_event: 1\n"
                    "    vemra_events {\n"
                    "      event_type: 0\n"
                    "      num_str_entry: 2\n"
                    "      ts {\n"
                    "      }\n"
                    "    }\n"));
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 2, .events = nullptr}),
              reply("    num_event: 2\n"));
}

TEST(Events, ANullOrEmptyTextHasNoLineAndReadsBackNullWithTheLengthOfItsLine) {
    char empty[] = "";
    vemra_event_str_entry entries[2] = {};
    entries[0].entry_name_len = 4;
    entries[0].value_len = 6;
    entries[1].entry_name_len = 5;
    entries[1].entry_name = empty;
    entries[1].value_len = 7;
    entries[1].entry_value = empty;
    vemra_event one = {};
    one.num_str_entry = 2;
    one.str_entry_list = entries;
    const std::string text = reply("    num_event: 1\n"
                                   "    vemra_events {\n"
                                   "      event_type: 0\n"
                                   "      num_str_entry: 2\n"
                                   "      str_entry_list {\n"
                                   "        entry_name_len: 4\n"
                                   "        value_len: 6\n"
                                   "      }\n"
                                   "      str_entry_list {\n"
                                   "        entry_name_len: 5\n"
                                   "        value_len: 7\n"
                                   "      }\n"
                                   "      ts {\n"
                                   "      }\n"
                                   "    }\n");
    EXPECT_EQ(to_text(reply_kind, vemra_event_list{.num_event = 1, .events = &one}), text);
    const ReadEvents read(reply_kind, text);
    ASSERT_EQ(read->events[0].num_str_entry, 2U);
    EXPECT_EQ(read->events[0].str_entry_list[0].entry_name, nullptr);
    EXPECT_EQ(read->events[0].str_entry_list[0].entry_name_len, 4U);
    EXPECT_EQ(read->events[0].str_entry_list[1].entry_value, nullptr);
    EXPECT_EQ(read->events[0].str_entry_list[1].value_len, 7U);
}

// --- Names and values ----------------------------------------------------------------------------

TEST(Events, ATextOverridesTheLengthBeforeIt) {
    char name[] = "ab";
    vemra_event_str_entry one_entry = {};
    one_entry.entry_name_len = 99;
    one_entry.entry_name = name;
    vemra_event one = {};
    one.num_str_entry = 1;
    one.str_entry_list = &one_entry;
    const std::string text = to_text(reply_kind, vemra_event_list{.num_event = 1, .events = &one});
    EXPECT_NE(text.find("        entry_name_len: 99\n        entry_name: \"ab\"\n"),
              std::string::npos);
    const ReadEvents read(reply_kind, text);
    EXPECT_EQ(first_entry(read).entry_name_len, 3U);
    EXPECT_STREQ(first_entry(read).entry_name, "ab");
}

TEST(Events, ALengthBehindItsTextAndAnotherLineIsKept) {
    const ReadEvents read(reply_kind, reply_of_entry("        entry_name: \"ab\"\n"
                                                     "        value_len: 1\n"
                                                     "        entry_name_len: 50\n"
                                                     "        entry_value: \"abc\"\n"));
    EXPECT_EQ(first_entry(read).entry_name_len, 50U);
    EXPECT_STREQ(first_entry(read).entry_name, "ab");
    EXPECT_EQ(first_entry(read).value_len, 4U);
    EXPECT_STREQ(first_entry(read).entry_value, "abc");
}

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

TEST(Events, SeveralLinesAreJoinedWithCommas) {
    const ReadEvents read(reply_kind, reply_of_entry("        entry_name: \"a\"\n"
                                                     "        entry_name: \"b\"\n"
                                                     "        entry_value: \"one, two\"\n"
                                                     "        entry_value: \"\"\n"
                                                     "        entry_value: \"three\"\n"));
    EXPECT_STREQ(first_entry(read).entry_name, "a,b");
    EXPECT_EQ(first_entry(read).entry_name_len, 4U);
    EXPECT_STREQ(first_entry(read).entry_value, "one, two,three");
    EXPECT_EQ(first_entry(read).value_len, 15U);
}

TEST(Events, TextsThatDoNotScanAreNullOfLengthZero) {
    const ReadEvents read(reply_kind, reply_of_entry("        entry_name_len: 4\n"
                                                     "        entry_name: \"\"\n"
                                                     "        value_len: 4\n"
                                                     "        entry_value:\"no blank\"\n"));
    EXPECT_EQ(first_entry(read).entry_name, nullptr);
    EXPECT_EQ(first_entry(read).entry_name_len, 0U);
    EXPECT_EQ(first_entry(read).entry_value, nullptr);
    EXPECT_EQ(first_entry(read).value_len, 0U);
}

TEST(Events, ATextIsCutAtADoubleQuote) {
    const ReadEvents read(reply_kind, reply_of_entry("        entry_value: \"a \"b\" c\"\n"));
    EXPECT_STREQ(first_entry(read).entry_value, "a ");
}

TEST(Events, ASecondRunOfATextReplacesTheFirst) {
    MemoryWatch watch;
    {
        const ReadEvents read(reply_kind, reply_of_entry("        entry_name: \"first\"\n"
                                                         "        entry_value: \"first\"\n"
                                                         "        entry_name: \"x\"\n"
                                                         "        entry_value: \"\"\n"));
        EXPECT_STREQ(first_entry(read).entry_name, "x");
        EXPECT_EQ(first_entry(read).entry_name_len, 2U);
        EXPECT_EQ(first_entry(read).entry_value, nullptr);
        EXPECT_EQ(first_entry(read).value_len, 0U);
        EXPECT_EQ(watch.alive(), 4U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Events, AtMost298CharactersOfALineAreTaken) {
    for (const size_t length : {1U, 297U, 298U, 299U, 300U, 5000U}) {
        const ReadEvents read(reply_kind,
                              reply_of_entry("        entry_value: \"" + std::string(length, 'v') +
                                             "\"\n"
                                             "        entry_name: \"n\"\n"));
        const size_t taken = length < 298 ? length : 298;
        EXPECT_EQ(first_entry(read).entry_value, std::string(taken, 'v'));
        EXPECT_EQ(first_entry(read).value_len, taken + 1);
        EXPECT_STREQ(first_entry(read).entry_name, "n");
    }
}

TEST(Events, AValueThatIsTooLongForTheDoubledRoomIsCut) {
    // Room for 5 characters, then for 10: of the second value and its comma 7 characters fit.
    const std::string lines = "        entry_value: \"a\"\n"
                              "        entry_value: \"xxxxxxxxxxxxxxxxxxxx\"\n";
    const ReadEvents cut(reply_kind, reply_of_entry(lines));
    EXPECT_STREQ(first_entry(cut).entry_value, "a,xxxxxx");
    EXPECT_EQ(first_entry(cut).value_len, 9U);
    const ReadEvents longer(reply_kind, reply_of_entry(lines + "        entry_value: \"b\"\n"));
    EXPECT_STREQ(first_entry(longer).entry_value, "a,xxxxxxxb");
    EXPECT_EQ(first_entry(longer).value_len, 11U);
}

// --- Order and prefixes --------------------------------------------------------------------------

TEST(Events, LinesInReversedOrderReadTheSame) {
    EXPECT_EQ(read_and_write<vemra_event_list>(reply_kind, reply("    vemra_events {\n"
                                                                 "      ts {\n"
                                                                 "        useconds: 250000\n"
                                                                 "        seconds: 1900000000\n"
                                                                 "      }\n"
                                                                 "      str_entry_list {\n"
                                                                 "        entry_value: \"17\"\n"
                                                                 "        value_len: 3\n"
                                                                 "        entry_name: \"port\"\n"
                                                                 "      }\n"
                                                                 "      num_str_entry: 1\n"
                                                                 "      event_type: 6\n"
                                                                 "    }\n"
                                                                 "    num_event: 1\n")),
              reply("    num_event: 1\n"
                    "    vemra_events {\n"
                    "      event_type: 6\n"
                    "      num_str_entry: 1\n"
                    "      str_entry_list {\n"
                    "        entry_name_len: 5\n"
                    "        entry_name: \"port\"\n"
                    "        value_len: 3\n"
                    "        entry_value: \"17\"\n"
                    "      }\n"
                    "      ts {\n"
                    "        seconds: 1900000000\n"
                    "        useconds: 250000\n"
                    "      }\n"
                    "    }\n"));
}

TEST(Events, TheNameLengthIsNotTakenForAName) {
    LogCapture log;
    const ReadEvents read(reply_kind, reply_of_entry("        entry_name_len: 5\n"));
    EXPECT_EQ(first_entry(read).entry_name_len, 5U);
    EXPECT_EQ(first_entry(read).entry_name, nullptr);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{trace("event_str_entry", "p_msg->entry_name_len[0x5]")}));
}

TEST(Events, ABlockThatBeginsWithTsIsTakenForTheTime) {
    const ReadEvents read(reply_kind, reply(event("      tsunami {\n"
                                                  "        seconds: 5\n"
                                                  "      }\n")));
    ASSERT_EQ(read->num_event, 1U);
    EXPECT_EQ(read->events[0].ts.seconds, 5U);
}

TEST(Events, LongerKeysAreTakenForTheirPrefixes) {
    const ReadEvents read(reply_kind, reply("    num_event: 7\n"
                                            "    num_events: 8\n"
                                            "    vemra_events_too {\n"
                                            "      event_type: 5\n"
                                            "      event_types: 6\n"
                                            "    }\n"));
    EXPECT_EQ(event_types(*read), (std::vector<uint64_t>{5}));
}

TEST(Events, UnknownLinesAndBlocksAreSkipped) {
    const ReadEvents read(reply_kind,
                          reply("    later: 1\n" + event("      later {\n"
                                                         "        event_type: 9\n"
                                                         "      }\n"
                                                         "      ts {\n"
                                                         "        later: 1\n"
                                                         "        useconds: 2\n"
                                                         "      }\n" +
                                                         entry("        later {\n"
                                                               "        }\n"
                                                               "        value_len: 3\n"))));
    ASSERT_EQ(read->num_event, 1U);
    EXPECT_EQ(read->events[0].event_type, 0U);
    EXPECT_EQ(read->events[0].ts.useconds, 2U);
    EXPECT_EQ(value_lengths(read->events[0]), (std::vector<uint64_t>{3}));
}

TEST(Events, ASecondTimeIsReadOverTheFirst) {
    const ReadMessage<vemra_get_events_request> read(request_kind, request("    ts {\n"
                                                                           "      seconds: 1\n"
                                                                           "      useconds: 2\n"
                                                                           "    }\n"
                                                                           "    ts {\n"
                                                                           "      seconds: 3\n"
                                                                           "    }\n"));
    EXPECT_EQ(read->ts.seconds, 3U);
    EXPECT_EQ(read->ts.useconds, 0U);
}

// --- Counts --------------------------------------------------------------------------------------

TEST(Events, ElementsOverrideAnEarlierCount) {
    const ReadEvents read(reply_kind,
                          reply("    num_event: 9\n" +
                                event("      num_str_entry: 9\n" + entry("        value_len: 1\n") +
                                      entry("        value_len: 2\n"))));
    ASSERT_EQ(read->num_event, 1U);
    EXPECT_EQ(value_lengths(read->events[0]), (std::vector<uint64_t>{1, 2}));
}

TEST(Events, ACountBehindItsElementsIsKept) {
    const ReadEvents read(
        reply_kind, reply(event(entry("        value_len: 1\n") + "      num_str_entry: 9\n") +
                          "    num_event: 8\n"));
    EXPECT_EQ(read->num_event, 8U);
    read->num_event = 1;
    EXPECT_EQ(read->events[0].num_str_entry, 9U);
    read->events[0].num_str_entry = 1;
    EXPECT_EQ(value_lengths(read->events[0]), (std::vector<uint64_t>{1}));
}

TEST(Events, ACountWithoutElementsIsKept) {
    const ReadEvents list(reply_kind, reply("    num_event: 8\n"));
    EXPECT_EQ(list->num_event, 8U);
    EXPECT_EQ(list->events, nullptr);
    const ReadEvents read(reply_kind, reply(event("      num_str_entry: 9\n")));
    ASSERT_EQ(read->num_event, 1U);
    EXPECT_EQ(read->events[0].num_str_entry, 9U);
    EXPECT_EQ(read->events[0].str_entry_list, nullptr);
}

TEST(Events, ASecondRunReplacesTheFirstWithAllThatItOwns) {
    for (const std::string between : {"later: 1\n", "num_event: 0\n", "num_event: 99\n"}) {
        MemoryWatch watch;
        {
            const ReadEvents read(reply_kind,
                                  reply(full_event(1) + full_event(2) + between + full_event(3)));
            EXPECT_EQ(event_types(*read), (std::vector<uint64_t>{3}));
            EXPECT_EQ(watch.alive(), 5U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Events, ASecondRunOfEntriesReplacesTheFirstWithItsTexts) {
    for (const std::string between : {"later: 1\n", "num_str_entry: 0\n", "num_str_entry: 99\n"}) {
        MemoryWatch watch;
        {
            const ReadEvents read(reply_kind,
                                  reply(event(entry("        entry_name: \"one\"\n"
                                                    "        entry_value: \"1\"\n") +
                                              entry("        entry_name: \"two\"\n") + between +
                                              entry("        entry_name: \"three\"\n"))));
            ASSERT_EQ(read->events[0].num_str_entry, 1U);
            EXPECT_STREQ(first_entry(read).entry_name, "three");
            EXPECT_EQ(watch.alive(), 4U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Events, SixEventsGrowTheListOnce) {
    std::string events;
    for (unsigned type = 1; type <= 6; ++type) {
        events += event("      event_type: " + std::to_string(type) + "\n");
    }
    MemoryWatch watch;
    const ReadEvents read(reply_kind, reply(events));
    EXPECT_EQ(read->num_event, 6U);
    EXPECT_EQ(event_types(*read), one_to(6));
    EXPECT_EQ(watch.requests(), 1U + 2U);
    EXPECT_EQ(watch.largest(), 10 * sizeof(vemra_event));
}

// --- Growing -------------------------------------------------------------------------------------

const GrowingMember<vemra_event_list> growing_events = {
    reply_kind, 1,
    [](unsigned count) {
        std::string events;
        for (unsigned type = 1; type <= count; ++type) {
            events +=
                event("      ts {\n      }\n      event_type: " + std::to_string(type) + "\n");
        }
        return reply(events);
    },
    event_types};

const GrowingMember<vemra_event_list> growing_entries = {
    reply_kind, 2,
    [](unsigned count) {
        std::string entries;
        for (unsigned length = 1; length <= count; ++length) {
            entries += entry("        value_len: " + std::to_string(length) + "\n");
        }
        return reply(event(entries));
    },
    [](const vemra_event_list &list) {
        return value_lengths(list.events[0]);
    }};

TEST(Events, ArraysGrowByDoubling) {
    expect_growth_by_doubling(growing_events);
    expect_growth_by_doubling(growing_entries);
}

TEST(Events, FailedGrowthDropsElements) {
    expect_failed_growth_drops(growing_events);
    expect_failed_growth_drops(growing_entries);
}

/// An entry whose texts have lines for a, b, c and so on.
std::string lines_of_letters(const std::string &key, unsigned count) {
    std::string lines;
    for (unsigned i = 0; i < count; ++i) {
        lines += "        " + key + ": \"" + static_cast<char>('a' + i) + "\"\n";
    }
    return lines;
}

TEST(Events, TextsGrowByDoubling) {
    // Each line takes two characters and is reckoned as three: 5 hold 1 line, 10 hold 3, 20 hold 6.
    static const struct {
        unsigned lines;
        size_t requests;
        std::string text;
    } sizes[] = {{1, 1, "a"},
                 {2, 2, "a,b"},
                 {3, 2, "a,b,c"},
                 {4, 3, "a,b,c,d"},
                 {5, 3, "a,b,c,d,e"},
                 {6, 3, "a,b,c,d,e,f"},
                 {7, 4, "a,b,c,d,e,f,g"},
                 {10, 4, "a,b,c,d,e,f,g,h,i,j"},
                 {11, 4, "a,b,c,d,e,f,g,h,i,j,k"},
                 {20, 5, "a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q,r,s,t"},
                 {21, 5, "a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q,r,s,t,u"}};

    for (const auto &size : sizes) {
        SCOPED_TRACE(size.lines);
        MemoryWatch watch;
        {
            const ReadEvents name(reply_kind,
                                  reply_of_entry(lines_of_letters("entry_name", size.lines)));
            EXPECT_EQ(first_entry(name).entry_name, size.text);
            EXPECT_EQ(first_entry(name).entry_name_len, 2 * size.lines);
            EXPECT_EQ(watch.requests(), 3 + size.requests);
            const ReadEvents value(reply_kind,
                                   reply_of_entry(lines_of_letters("entry_value", size.lines)));
            EXPECT_EQ(first_entry(value).entry_value, size.text);
            EXPECT_EQ(first_entry(value).value_len, 2 * size.lines);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Events, FailedGrowthDropsLinesOfATextAndLaterLinesTryAgain) {
    static const struct {
        size_t first;
        size_t failing;
        std::string text;
    } failures[] = {{0, 1, "b,c,d,e,f,g,h"},
                    {0, 2, "c,d,e,f,g,h"},
                    {1, 1, "a,c,d,e,f,g,h"},
                    {1, 3, "a,e,f,g,h"},
                    {2, 1, "a,b,c,e,f,g,h"},
                    {3, 1, "a,b,c,d,e,f,h"},
                    {0, 8, ""},
                    {1, 7, "a"},
                    {4, 0, "a,b,c,d,e,f,g,h"}};

    MemoryWatch watch;
    for (const auto &failure : failures) {
        SCOPED_TRACE(failure.text);
        watch.fail(3 + failure.first, failure.failing);
        {
            const ReadEvents read(reply_kind, reply_of_entry(lines_of_letters("entry_value", 8)));
            EXPECT_EQ(watch.failed(), failure.failing);
            if (failure.text.empty()) {
                EXPECT_EQ(first_entry(read).entry_value, nullptr);
                EXPECT_EQ(first_entry(read).value_len, 0U);
            } else {
                EXPECT_EQ(first_entry(read).entry_value, failure.text);
                EXPECT_EQ(first_entry(read).value_len, failure.text.size() + 1);
            }
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Events, NothingLeaksWhicheverAllocationFails) {
    std::string events;
    for (unsigned type = 1; type <= 6; ++type) {
        events += full_event(type);
    }
    // The record, an array of entries and two texts of each event, and the list of events twice.
    expect_no_leak<vemra_event_list>(reply_kind, reply(events), 21);
}

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

TEST(Events, LinesOfATextThatDoNotScanAreTraced) {
    LogCapture log;
    const ReadEvents read(reply_kind,
                          reply_of_entry("        entry_name: \"" + std::string(60, 'n') +
                                         "\"\n"
                                         "        entry_name_len: 50\n"
                                         "        entry_value: \"\"\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            text_trace("dst_ptr[" + std::string(50, 'n') + "], value[]"),
            text_trace("missmatch, array[entry_name_len: 50\n        entry_value: \"\"\n      }], "
                       "frame_key[entry_name:%*[^\"]\"%[^\"]\"], value[]"),
            text_trace("END prim ptr, num_lements[0x1], array[0][0x6e]"),
            text_trace("missmatch, array[entry_value: \"\"\n      }\n    }\n  }\n}\n], "
                       "frame_key[entry_value:%*[^\"]\"%[^\"]\"], value[]"),
            text_trace("END prim ptr, num_lements[0x0], array[0][0x0]"),
        }));
}

} // namespace
} // namespace kvt_test
