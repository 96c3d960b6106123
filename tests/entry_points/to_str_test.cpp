// kvt_msg_to_str and kvt_str_get_buf_size.
#include <gtest/gtest.h>

#include <cstring>

#include "kvt/messages/job_control.h"
#include "kvt/messages/topology.h"
#include "message_kinds.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "support/random_records.h"

namespace kvt_test {
namespace {

/// A printf pointer, as log lines show it.
std::string shown(const void *pointer) {
    char text[64];
    std::snprintf(text, sizeof text, "%p", pointer);
    return text;
}

std::vector<LogLine> one_error(const std::string &function, const std::string &text) {
    return {{function, 0, text}};
}

TEST(ToStr, AZeroedEndJobIsFiveLines) {
    const vemra_end_job record = {};
    char text[64];
    ASSERT_EQ(kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, &record, text), 0);
    EXPECT_STREQ(text, "msg {\n  type: END_JOB\n  end_job {\n  }\n}\n");
}

TEST(ToStr, AKindWithoutRecordGivesAnEmptyEnvelopeAndALogLine) {
    const struct {
        int32_t kind;
        const char *text;
    } cases[] = {
        {0, "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_NONE not yet implemented"},
        {24, "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_LAST not yet implemented"},
        {25, "Invalid value given for msg_type[25]"},
        {-1, "Invalid value given for msg_type[-1]"},
        {INT32_MAX, "Invalid value given for msg_type[2147483647]"},
        {INT32_MIN, "Invalid value given for msg_type[-2147483648]"},
    };

    for (const auto &c : cases) {
        LogCapture log(0);
        const vemra_end_job record = {.job_id = 1, .reservation_id = 1};
        char text[16];
        std::memset(text, '#', sizeof text);
        EXPECT_EQ(kvt_msg_to_str(c.kind, &record, text), 0);
        // Nine characters and not one more.
        EXPECT_EQ(std::string(text, sizeof text), std::string("msg {\n}\n\0#######", sizeof text));
        EXPECT_EQ(log.lines(), one_error("kvt_msg_to_str", c.text));
    }
}

char *watched_buffer = nullptr;
std::string seen_by_the_log;

void look_at_buffer(const char * /*file*/, int /*line*/, const char * /*func*/, int /*level*/,
                    const char * /*format*/, ...) {
    seen_by_the_log = watched_buffer;
}

TEST(ToStr, TheFirstLineIsThereWhenAKindWithoutRecordIsLogged) {
    char text[16] = "#########";
    watched_buffer = text;
    log_cb = look_at_buffer;
    log_level = 0;
    kvt_msg_to_str(25, text, text);
    log_cb = nullptr;
    EXPECT_EQ(seen_by_the_log, "msg {\n");
}

TEST(ToStr, ANullRecordOrBufferIsAnErrorAndNothingIsWritten) {
    LogCapture log(0);
    const vemra_end_job record = {};
    char text[4] = {'#', '#', '#', '#'};
    EXPECT_EQ(kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, nullptr, text), -1);
    EXPECT_EQ(std::string(text, 4), "####");
    EXPECT_EQ(kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, &record, nullptr), -1);
    EXPECT_EQ(kvt_msg_to_str(VEMRA_MSG_TYPE_NONE, nullptr, nullptr), -1);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "kvt_msg_to_str: No buffer[" + shown(text) + "] or msg[" +
                                   shown(nullptr) + "] was specified",
                               "kvt_msg_to_str: No buffer[" + shown(nullptr) + "] or msg[" +
                                   shown(&record) + "] was specified",
                               "kvt_msg_to_str: No buffer[" + shown(nullptr) + "] or msg[" +
                                   shown(nullptr) + "] was specified",
                           }));
}

TEST(ToStr, NobodyIsToldBelowTheThresholdOrWithoutACallback) {
    LogCapture log(-1);
    char text[16];
    const vemra_end_job record = {};
    kvt_msg_to_str(25, &record, text);
    EXPECT_TRUE(log.lines().empty());
    log_level = 0;
    const auto callback = log_cb;
    log_cb = nullptr;
    kvt_msg_to_str(25, &record, text);
    log_cb = callback;
    EXPECT_TRUE(log.lines().empty());
}

TEST(ToStr, LogLinesNameTheSourceFileWithoutItsFolder) {
    LogCapture log(0);
    kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, nullptr, nullptr);
    kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, nullptr);
    EXPECT_EQ(log.files(), (std::vector<std::string>{"write_message.cpp", "write_message.cpp"}));
}

TEST(ToStr, ANullArrayWithACountWritesTheCountAndNoElements) {
    vemra_topology_info_list record = {};
    record.num_switches = 4;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, record),
              message_text("TOPOLOGY_INFO_REPLY", "  topology_info_list {\n"
                                                  "    num_switches: 4\n"
                                                  "    status: 0\n"
                                                  "  }\n"));
    vemra_topology_info_request request = {};
    request.num_guids = UINT32_MAX;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST, request),
              message_text("TOPOLOGY_INFO_REQUEST", "  topology_info_request {\n"
                                                    "    num_guids: 4294967295\n"
                                                    "  }\n"));
}

TEST(Size, IsExactForAZeroedEndJob) {
    const vemra_end_job record = {};
    EXPECT_EQ(kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, &record), 41U);
}

TEST(Size, OfRandomRecordsOfEveryKindIsThatOfTheirText) {
    Random random(6);
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        for (int i = 0; i < 50; ++i) {
            OwnedRecord record(*kind.record);
            fill_randomly(*kind.record, record.get(), random);
            const auto value = static_cast<int32_t>(kind.value);
            const uint32_t size = kvt_str_get_buf_size(value, record.get());
            const std::unique_ptr<char[]> text(new char[size]);
            ASSERT_EQ(kvt_msg_to_str(value, record.get(), text.get()), 0);
            ASSERT_EQ(std::strlen(text.get()) + 1, size) << kind.name;
        }
    }
}

TEST(Size, IsZeroForANullRecordAndAnUnknownKind) {
    LogCapture log(0);
    const vemra_end_job record = {};
    EXPECT_EQ(kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, nullptr), 0U);
    EXPECT_EQ(kvt_str_get_buf_size(25, &record), 0U);
    EXPECT_EQ(kvt_str_get_buf_size(-1, &record), 0U);
    const std::string self = "kvt_str_get_buf_size";
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {self, 0, "kvt_str_get_buf_size: No message was specified"},
                               {self, 0, "Invalid value given for msg_type[25]"},
                               {self, 0, "Invalid value given for msg_type[-1]"},
                           }));
}

TEST(Size, IsSixForTheKindsWithoutRecord) {
    LogCapture log(0);
    const vemra_end_job record = {};
    EXPECT_EQ(kvt_str_get_buf_size(VEMRA_MSG_TYPE_NONE, &record), 6U);
    EXPECT_EQ(kvt_str_get_buf_size(VEMRA_MSG_TYPE_LAST, &record), 6U);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_NONE not yet implemented",
                  "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_LAST not yet implemented"}));
}

// One switch with as many peers as make a text longer than 32 bits can tell: every peer line is
// "      peer_ids: 4294967295" and a newline, 27 characters.
TEST(Size, IsZeroForATextOfFourGigabytes) {
    constexpr auto peers = static_cast<size_t>((uint64_t{1} << 32) / 27 + 1);
    std::vector<uint32_t> peer_ids(peers, UINT32_MAX);
    vemra_topology_switch_info sw = {};
    sw.num_peer_ids = static_cast<uint32_t>(peers);
    sw.peer_ids = peer_ids.data();
    vemra_topology_info_list record = {};
    record.num_switches = 1;
    record.switches = &sw;
    EXPECT_EQ(kvt_str_get_buf_size(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, &record), 0U);
    sw.num_peer_ids -= 20;
    EXPECT_GT(kvt_str_get_buf_size(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, &record), UINT32_MAX - 600U);
}

TEST(Size, NothingIsAllocatedToSizeOrToWrite) {
    Random random(7);
    const kvt_str::Record &table = *kvt_str::find_kind(VEMRA_MSG_TYPE_JOB_DATA)->record;
    OwnedRecord record(table);
    fill_randomly(table, record.get(), random);
    const MemoryWatch watch;
    const uint32_t size = kvt_str_get_buf_size(VEMRA_MSG_TYPE_JOB_DATA, record.get());
    const std::unique_ptr<char[]> text(new char[size]);
    kvt_msg_to_str(VEMRA_MSG_TYPE_JOB_DATA, record.get(), text.get());
    EXPECT_EQ(watch.requests(), 0U);
}

// A text with as many peers as are needed, and with a name for the characters that are left.
TEST(Size, OfATextIsToldUpToTheGreatestNumberOf32BitsInGigabytes) {
    constexpr auto peers = static_cast<uint32_t>((uint64_t{1} << 32) / 27);
    std::vector<uint32_t> peer_ids(peers, UINT32_MAX);
    vemra_topology_switch_info sw = {};
    sw.num_peer_ids = peers - 20;
    sw.peer_ids = peer_ids.data();
    vemra_topology_info_list record = {};
    record.num_switches = 1;
    record.switches = &sw;
    const auto size = [&] {
        return kvt_str_get_buf_size(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, &record);
    };
    const uint32_t some = size();
    constexpr uint32_t name_line = sizeof "      name: \"\"\n" - 1;
    const uint32_t more_peers = (UINT32_MAX - some - name_line - 1) / 27;
    const uint32_t name_length = UINT32_MAX - some - name_line - 27 * more_peers;
    ASSERT_GT(name_length, 0U);
    ASSERT_LT(name_length, 60U);
    ASSERT_LE(more_peers, 20U);
    sw.num_peer_ids += more_peers;
    std::memset(sw.name, 'n', name_length);
    EXPECT_EQ(size(), UINT32_MAX);
    sw.name[name_length] = 'n';
    EXPECT_EQ(size(), 0U);
}

int line_of_the_log = 0;

void take_line(const char * /*file*/, int line, const char * /*func*/, int /*level*/,
               const char * /*format*/, ...) {
    line_of_the_log = line;
}

TEST(ToStr, LogLinesNameTheLineInTheSourceFileThatTheyComeFrom) {
    log_cb = take_line;
    log_level = 0;
    kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, nullptr, nullptr);
    const int of_the_writer = line_of_the_log;
    kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, nullptr);
    const int of_the_size = line_of_the_log;
    log_cb = nullptr;
    EXPECT_GT(of_the_writer, 1);
    EXPECT_GT(of_the_size, 1);
    EXPECT_NE(of_the_size, of_the_writer);
}

} // namespace
} // namespace kvt_test
