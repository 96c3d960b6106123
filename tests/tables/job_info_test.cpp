// JOB_INFO_REQUEST, JOB_INFO_REPLY and PERSISTENT_JOB_INFO.
#include <cstddef>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/job_info.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_mgmt_job_info_list_request) == 8);
static_assert(offsetof(vemra_mgmt_job_info_list_request, reserved) == 0);

static_assert(sizeof(vemra_mgmt_job_info) == 56);
static_assert(offsetof(vemra_mgmt_job_info, allocation_id) == 0);
static_assert(offsetof(vemra_mgmt_job_info, external_job_id) == 8);
static_assert(offsetof(vemra_mgmt_job_info, vemra_job_id) == 16);
static_assert(offsetof(vemra_mgmt_job_info, start_time) == 24);
static_assert(offsetof(vemra_mgmt_job_info, job_state) == 32);
static_assert(offsetof(vemra_mgmt_job_info, num_local_connections) == 36);
static_assert(offsetof(vemra_mgmt_job_info, reserved) == 37);
static_assert(offsetof(vemra_mgmt_job_info, reservation_id) == 48);

static_assert(sizeof(vemra_mgmt_job_info_list) == 16);
static_assert(offsetof(vemra_mgmt_job_info_list, job_list_len) == 0);
static_assert(offsetof(vemra_mgmt_job_info_list, job_list) == 8);

static_assert(sizeof(persistent_job_info) == 208);
static_assert(offsetof(persistent_job_info, version) == 0);
static_assert(offsetof(persistent_job_info, job_id) == 8);
static_assert(offsetof(persistent_job_info, vemra_job_id) == 16);
static_assert(offsetof(persistent_job_info, addr_type) == 20);
static_assert(offsetof(persistent_job_info, addr) == 21);
static_assert(offsetof(persistent_job_info, reservation_id) == 152);
static_assert(offsetof(persistent_job_info, job_state) == 160);
static_assert(offsetof(persistent_job_info, exclusive_lock) == 164);
static_assert(offsetof(persistent_job_info, job_key) == 168);
static_assert(offsetof(persistent_job_info, priority) == 176);
static_assert(offsetof(persistent_job_info, num_host_guids) == 180);
static_assert(offsetof(persistent_job_info, host_guids) == 184);
static_assert(offsetof(persistent_job_info, num_channels_per_conn) == 192);
static_assert(offsetof(persistent_job_info, num_rails) == 193);
static_assert(offsetof(persistent_job_info, num_trees_req) == 194);
static_assert(offsetof(persistent_job_info, num_trees) == 196);
static_assert(offsetof(persistent_job_info, tree_ids) == 200);
#endif

using ReadRequest = ReadMessage<vemra_mgmt_job_info_list_request>;
using ReadList = ReadMessage<vemra_mgmt_job_info_list>;
using ReadJob = ReadMessage<persistent_job_info>;
using Bytes = std::vector<unsigned>;

std::string request(const std::string &lines) {
    return message_text("JOB_INFO_REQUEST", "  mgmt_job_info_list_request {\n" + lines + "  }\n");
}

std::string reply(const std::string &lines) {
    return message_text("JOB_INFO_REPLY", "  mgmt_job_info_list {\n" + lines + "  }\n");
}

std::string entry(const std::string &lines) {
    return "    job_list {\n" + lines + "    }\n";
}

std::string job(const std::string &lines) {
    return message_text("PERSISTENT_JOB_INFO", "  persistent_job_info {\n" + lines + "  }\n");
}

/// Lines of one key with the values `base` + 1, `base` + 2 and so on.
std::string lines_of(const std::string &key, uint64_t base, unsigned count) {
    std::string text;
    for (unsigned i = 1; i <= count; ++i) {
        text += "    " + key + ": " + std::to_string(base + i) + "\n";
    }
    return text;
}

/// Entries whose external_job_ids are 1001, 1002 and so on.
std::string entries(unsigned count) {
    std::string text;
    for (unsigned i = 1; i <= count; ++i) {
        text += entry("      external_job_id: " + std::to_string(1000 + i) + "\n");
    }
    return text;
}

/// `base` + 1 to `base` + `count`, without the `without`th.
std::vector<uint64_t> numbers(uint64_t base, unsigned count, unsigned without = 0) {
    std::vector<uint64_t> numbers;
    for (unsigned i = 1; i <= count; ++i) {
        if (i != without) {
            numbers.push_back(base + i);
        }
    }
    return numbers;
}

std::vector<uint64_t> external_ids(const vemra_mgmt_job_info_list &record) {
    std::vector<uint64_t> ids;
    for (uint64_t i = 0; i < record.job_list_len; ++i) {
        ids.push_back(record.job_list[i].external_job_id);
    }
    return ids;
}

std::vector<uint64_t> host_guids(const persistent_job_info &record) {
    return {record.host_guids, record.host_guids + record.num_host_guids};
}

std::vector<uint64_t> tree_ids(const persistent_job_info &record) {
    return {record.tree_ids, record.tree_ids + record.num_trees};
}

template <size_t size> Bytes bytes(const uint8_t (&array)[size]) {
    return {array, array + size};
}

const char full_list[] = "msg {\n"
                         "  type: JOB_INFO_REPLY\n"
                         "  mgmt_job_info_list {\n"
                         "    job_list_len: 2\n"
                         "    job_list {\n"
                         "      allocation_id: 18446744073709551615\n"
                         "      external_job_id: 1\n"
                         "      vemra_job_id: 4294967296\n"
                         "      start_time: 1700000000\n"
                         "      job_state: 4294967295\n"
                         "      num_local_connections: 255\n"
                         "      reserved: 11\n"
                         "      reserved: 12\n"
                         "      reserved: 13\n"
                         "      reserved: 14\n"
                         "      reserved: 15\n"
                         "      reserved: 16\n"
                         "      reserved: 17\n"
                         "      reserved: 18\n"
                         "      reserved: 19\n"
                         "      reserved: 20\n"
                         "      reserved: 255\n"
                         "      reservation_id: 2\n"
                         "    }\n"
                         "    job_list {\n"
                         "      allocation_id: 3\n"
                         "      external_job_id: 4\n"
                         "      vemra_job_id: 5\n"
                         "      start_time: 6\n"
                         "      job_state: 7\n"
                         "      num_local_connections: 8\n"
                         "      reserved: 9\n"
                         "      reservation_id: 10\n"
                         "    }\n"
                         "  }\n"
                         "}\n";

const char full_job[] = "msg {\n"
                        "  type: PERSISTENT_JOB_INFO\n"
                        "  persistent_job_info {\n"
                        "    version: 255\n"
                        "    job_id: 18446744073709551615\n"
                        "    vemra_job_id: 4294967295\n"
                        "    addr_type: 2\n"
                        "    addr: \"node001:4791, {rail 1\"\n"
                        "    reservation_id: 3\n"
                        "    job_state: 4\n"
                        "    exclusive_lock: 5\n"
                        "    job_key: 9223372036854775808\n"
                        "    priority: 6\n"
                        "    num_host_guids: 2\n"
                        "    host_guids: 18446744073709551615\n"
                        "    host_guids: 0\n"
                        "    num_channels_per_conn: 7\n"
                        "    num_rails: 8\n"
                        "    num_trees_req: 9\n"
                        "    num_trees: 3\n"
                        "    tree_ids: 65535\n"
                        "    tree_ids: 0\n"
                        "    tree_ids: 10\n"
                        "  }\n"
                        "}\n";

// --- The request ---------------------------------------------------------------------------------

TEST(JobInfoRequest, IsWrittenToTheLetterAndReadBack) {
    const vemra_mgmt_job_info_list_request record = {.reserved = {1, 2, 3, 4, 5, 6, 7, 255}};
    const char text[] = "msg {\n"
                        "  type: JOB_INFO_REQUEST\n"
                        "  mgmt_job_info_list_request {\n"
                        "    reserved: 1\n"
                        "    reserved: 2\n"
                        "    reserved: 3\n"
                        "    reserved: 4\n"
                        "    reserved: 5\n"
                        "    reserved: 6\n"
                        "    reserved: 7\n"
                        "    reserved: 255\n"
                        "  }\n"
                        "}\n";
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, record), text);
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, text);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(bytes(read->reserved), (Bytes{1, 2, 3, 4, 5, 6, 7, 255}));
}

TEST(JobInfoRequest, OfAZeroedRecordNothingIsWritten) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, vemra_mgmt_job_info_list_request{}),
              request(""));
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, request(""));
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(bytes(read->reserved), (Bytes{0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(JobInfoRequest, BytesBehindTheFirst0AreNotWritten) {
    const vemra_mgmt_job_info_list_request record = {.reserved = {3, 0, 5, 6, 7, 8, 9, 10}};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, record), request("    reserved: 3\n"));
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, request("    reserved: 3\n"));
    EXPECT_EQ(bytes(read->reserved), (Bytes{3, 0, 0, 0, 0, 0, 0, 0}));
    const vemra_mgmt_job_info_list_request hidden = {.reserved = {0, 5}};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, hidden), request(""));
}

TEST(JobInfoRequest, EightBytesAreReadAndFurtherLinesSkippedWithoutAWord) {
    const Bytes values = {101, 102, 103, 104, 105, 106, 107, 108};
    for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 20U, 21U}) {
        LogCapture log;
        const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST,
                               request(lines_of("reserved", 100, count)));
        Bytes expected(8, 0);
        for (unsigned i = 0; i < 8 && i < count; ++i) {
            expected[i] = values[i];
        }
        EXPECT_EQ(bytes(read->reserved), expected) << count;
        // One for each byte, and one at the end of a run that does not fill the array.
        EXPECT_EQ(log.lines().size(), count == 0 ? 0 : count < 8 ? count + 1 : 8U) << count;
    }
}

TEST(JobInfoRequest, AByteThatDoesNotScanIs0AndOneTooLargeIsCut) {
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, request("    reserved: 1\n"
                                                                    "    reserved: x\n"
                                                                    "    reserved: 259\n"
                                                                    "    reserved: -1\n"
                                                                    "    reserved_more: 5 }\n"
                                                                    "    reserved: 6\n"));
    EXPECT_EQ(bytes(read->reserved), (Bytes{1, 0, 3, 255, 0, 6, 0, 0}));
}

TEST(JobInfoRequest, ALaterRunOfBytesStartsWithTheFirstAndLeavesThoseItDoesNotReach) {
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, request("    reserved: 1\n"
                                                                    "    reserved: 2\n"
                                                                    "    reserved: 3\n"
                                                                    "    more: 1\n"
                                                                    "    reserved: 4\n"
                                                                    "    reserved: x\n"));
    EXPECT_EQ(bytes(read->reserved), (Bytes{4, 0, 3, 0, 0, 0, 0, 0}));
}

TEST(JobInfoRequest, TracesItsBytesTheirEndAndUnknownLines) {
    LogCapture log;
    const ReadRequest read(VEMRA_MSG_TYPE_JOB_INFO_REQUEST, request("    reserved: 254\n"
                                                                    "    reserved: x\n"
                                                                    "    more: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_vemra_mgmt_job_info_list_request";
    const std::string array = "_kvt_txt_unpack_primarray_uint8_t";
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  {array, 6, array + " txt unpack value[0xfe]\n"},
                  {array, 6, array + " txt unpack value[0x0]\n"},
                  {array, 6, array + " END ARRAY, key[reserved] array[more: 1\n  }\n}\n]\n"},
                  {reader, 6, reader + " mismatch, txt_msg[more: 1\n  }\n}\n]\n"},
              }));
}

// --- The list: writing and reading ---------------------------------------------------------------

TEST(JobInfoReply, IsWrittenToTheLetter) {
    vemra_mgmt_job_info jobs[] = {
        {.allocation_id = UINT64_MAX,
         .external_job_id = 1,
         .vemra_job_id = 4294967296,
         .start_time = 1700000000,
         .job_state = UINT32_MAX,
         .num_local_connections = 255,
         .reserved = {11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 255},
         .reservation_id = 2},
        {.allocation_id = 3,
         .external_job_id = 4,
         .vemra_job_id = 5,
         .start_time = 6,
         .job_state = 7,
         .num_local_connections = 8,
         .reserved = {9, 0, 1},
         .reservation_id = 10},
    };
    const vemra_mgmt_job_info_list record = {.job_list_len = 2, .job_list = jobs};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REPLY, record), full_list);
}

TEST(JobInfoReply, AnEmptyListIsAnEmptyBlockWhateverItPointsTo) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REPLY, vemra_mgmt_job_info_list{}), reply(""));
    vemra_mgmt_job_info jobs[1] = {};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                      vemra_mgmt_job_info_list{.job_list_len = 0, .job_list = jobs}),
              reply(""));
}

TEST(JobInfoReply, AZeroedEntryTellsItsJobStateAlone) {
    vemra_mgmt_job_info jobs[1] = {};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                      vemra_mgmt_job_info_list{.job_list_len = 1, .job_list = jobs}),
              reply("    job_list_len: 1\n"
                    "    job_list {\n"
                    "      job_state: 0\n"
                    "    }\n"));
}

TEST(JobInfoReply, ReadsEveryField) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, full_list);
    ASSERT_EQ(read.result(), 0);
    ASSERT_EQ(read->job_list_len, 2U);
    const vemra_mgmt_job_info &first = read->job_list[0];
    EXPECT_EQ(first.allocation_id, UINT64_MAX);
    EXPECT_EQ(first.external_job_id, 1U);
    EXPECT_EQ(first.vemra_job_id, 4294967296U);
    EXPECT_EQ(first.start_time, 1700000000U);
    EXPECT_EQ(first.job_state, UINT32_MAX);
    EXPECT_EQ(first.num_local_connections, 255U);
    EXPECT_EQ(bytes(first.reserved), (Bytes{11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 255}));
    EXPECT_EQ(first.reservation_id, 2U);
    const vemra_mgmt_job_info &second = read->job_list[1];
    EXPECT_EQ(second.allocation_id, 3U);
    EXPECT_EQ(second.external_job_id, 4U);
    EXPECT_EQ(second.vemra_job_id, 5U);
    EXPECT_EQ(second.start_time, 6U);
    EXPECT_EQ(second.job_state, 7U);
    EXPECT_EQ(second.num_local_connections, 8U);
    EXPECT_EQ(bytes(second.reserved), (Bytes{9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(second.reservation_id, 10U);
}

TEST(JobInfoReply, LinesOfAnEntryMayComeInAnyOrder) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                        reply(entry("      reservation_id: 1\n"
                                    "      reserved: 2\n"
                                    "      reserved: 3\n"
                                    "      num_local_connections: 4\n"
                                    "      job_state: 5\n"
                                    "      start_time: 6\n"
                                    "      vemra_job_id: 7\n"
                                    "      external_job_id: 8\n"
                                    "      allocation_id: 9\n")));
    ASSERT_EQ(read->job_list_len, 1U);
    const vemra_mgmt_job_info &first = read->job_list[0];
    EXPECT_EQ(first.reservation_id, 1U);
    EXPECT_EQ(bytes(first.reserved), (Bytes{2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(first.num_local_connections, 4U);
    EXPECT_EQ(first.job_state, 5U);
    EXPECT_EQ(first.start_time, 6U);
    EXPECT_EQ(first.vemra_job_id, 7U);
    EXPECT_EQ(first.external_job_id, 8U);
    EXPECT_EQ(first.allocation_id, 9U);
}

TEST(JobInfoReply, ElevenBytesOfAnEntryAreReadAndFurtherLinesSkipped) {
    for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 10U, 11U, 12U, 20U, 21U}) {
        const ReadList read(
            VEMRA_MSG_TYPE_JOB_INFO_REPLY,
            reply(entry(lines_of("reserved", 100, count) + "      reservation_id: 7\n")));
        Bytes expected(11, 0);
        for (unsigned i = 0; i < 11 && i < count; ++i) {
            expected[i] = 101 + i;
        }
        ASSERT_EQ(read->job_list_len, 1U);
        EXPECT_EQ(bytes(read->job_list[0].reserved), expected) << count;
        EXPECT_EQ(read->job_list[0].reservation_id, 7U);
    }
}

TEST(JobInfoReply, ALaterRunOfAnEntrysBytesLeavesThoseItDoesNotReach) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entry("      reserved: 1\n"
                                                                   "      reserved: 2\n"
                                                                   "      reserved: 3\n"
                                                                   "      job_state: 1\n"
                                                                   "      reserved: 4\n"
                                                                   "      reserved: x\n")));
    ASSERT_EQ(read->job_list_len, 1U);
    EXPECT_EQ(bytes(read->job_list[0].reserved), (Bytes{4, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(JobInfoReply, AnEntriesVemraJobIdHas64BitsAndThatOfAPersistentJob32) {
    const ReadList list(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                        reply(entry("      vemra_job_id: 4294967301\n")));
    ASSERT_EQ(list->job_list_len, 1U);
    EXPECT_EQ(list->job_list[0].vemra_job_id, 4294967301U);
    const ReadJob persistent(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO,
                             job("    vemra_job_id: 4294967301\n"));
    EXPECT_EQ(persistent->vemra_job_id, 5U);
}

TEST(JobInfoReply, AValueThatDoesNotScanLeavesTheFieldAsItWas) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply("    job_list_len: 3\n"
                                                             "    job_list_len: x\n"));
    EXPECT_EQ(read->job_list_len, 3U);
    const ReadList entries(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entry("      start_time: 5\n"
                                                                      "      start_time: x\n"
                                                                      "      job_state 4\n")));
    ASSERT_EQ(entries->job_list_len, 1U);
    EXPECT_EQ(entries->job_list[0].start_time, 5U);
    EXPECT_EQ(entries->job_list[0].job_state, 0U);
}

TEST(JobInfoReply, UnknownLinesAndBlocksAreSkippedAtEachLevel) {
    const std::string unknown = "      more: 1\n"
                                "      more {\n"
                                "        external_job_id: 1\n"
                                "      }\n";
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                        reply(unknown + entry(unknown + "      external_job_id: 2\n") + unknown));
    EXPECT_EQ(external_ids(*read), (std::vector<uint64_t>{2}));
}

// --- The list: entries and their count -----------------------------------------------------------

TEST(JobInfoReply, TheEntriesThatAreThereDecideNotTheCountBeforeThem) {
    for (const char *count : {"0", "1", "9", "18446744073709551615"}) {
        const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                            reply("    job_list_len: " + std::string(count) + "\n" + entries(7)));
        EXPECT_EQ(read->job_list_len, 7U);
        EXPECT_EQ(external_ids(*read), numbers(1000, 7));
    }
}

TEST(JobInfoReply, ACountIsReadWith64Bits) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply("    job_list_len: 4294967296\n"));
    EXPECT_EQ(read->job_list_len, 4294967296U);
    EXPECT_EQ(read->job_list, nullptr);
}

TEST(JobInfoReply, ACountDirectlyBehindTheEntriesOpensOneMore) {
    // It takes the lines up to the next closing brace, here that of the list.
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY,
                        reply(entries(2) + "    job_list_len: 9\n"
                                           "    external_job_id: 5\n"));
    EXPECT_EQ(external_ids(*read), (std::vector<uint64_t>{1001, 1002, 5}));
}

TEST(JobInfoReply, ACountBehindTheEntriesAndAnotherLineIsKept) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entries(2) + "    more: 1\n"
                                                                          "    job_list_len: 1\n"));
    EXPECT_EQ(external_ids(*read), (std::vector<uint64_t>{1001}));
}

TEST(JobInfoReply, ACountIsNotTakenForAnEntry) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply("    job_list_len: 1\n"));
    EXPECT_EQ(read->job_list_len, 1U);
    EXPECT_EQ(read->job_list, nullptr);
}

TEST(JobInfoReply, ALaterRunOfEntriesReplacesTheEarlierOne) {
    const MemoryWatch watch;
    {
        const ReadList read(
            VEMRA_MSG_TYPE_JOB_INFO_REPLY,
            reply(entries(7) + "    more: 1\n" + entry("") + entry("      external_job_id: 3\n")));
        EXPECT_EQ(external_ids(*read), (std::vector<uint64_t>{0, 3}));
        EXPECT_EQ(watch.alive(), 2U); // the record and the later entries
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobInfoReply, AnyNumberOfEntriesIsReadInOrder) {
    for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 7U, 10U, 11U, 20U, 21U, 300U}) {
        const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entries(count)));
        EXPECT_EQ(read->job_list_len, count);
        EXPECT_EQ(external_ids(*read), numbers(1000, count));
    }
}

TEST(JobInfoReply, EntriesInRoomThatGrewAreCleared) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entries(5) + entry("") + entry("")));
    ASSERT_EQ(read->job_list_len, 7U);
    for (const unsigned i : {5U, 6U}) {
        const vemra_mgmt_job_info &empty = read->job_list[i];
        EXPECT_EQ(empty.allocation_id, 0U);
        EXPECT_EQ(empty.external_job_id, 0U);
        EXPECT_EQ(empty.vemra_job_id, 0U);
        EXPECT_EQ(empty.start_time, 0U);
        EXPECT_EQ(empty.job_state, 0U);
        EXPECT_EQ(empty.num_local_connections, 0U);
        EXPECT_EQ(bytes(empty.reserved), Bytes(11, 0));
        EXPECT_EQ(empty.reservation_id, 0U);
    }
}

TEST(JobInfoReply, RoomForEntriesIs5AndDoubles) {
    const struct {
        unsigned count;
        size_t requests; ///< the record's among them
        size_t largest;
    } cases[] = {{0, 1, sizeof(vemra_mgmt_job_info_list)},
                 {1, 2, 280},
                 {5, 2, 280},
                 {6, 3, 560},
                 {11, 4, 1120},
                 {21, 5, 2240}};

    for (const auto &[count, requests, largest] : cases) {
        const MemoryWatch watch;
        const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entries(count)));
        EXPECT_EQ(watch.requests(), requests) << count;
        EXPECT_EQ(watch.largest(), largest) << count;
    }
}

// The elements that are dropped when one request of the reading of 21 fails, counted from 1:
// request 0 is the record, 1 the room for 5 elements, 2 for 10, 3 for 20, 4 for 40.
const unsigned dropped_by_request[] = {0, 1, 6, 11, 21};

TEST(JobInfoReply, AnEntryWithoutMemoryIsDroppedAndTheNextTriesAgain) {
    const std::string text = reply("    job_list_len: 21\n" + entries(21));
    MemoryWatch watch;
    watch.fail(0);
    {
        const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, text);
        EXPECT_EQ(read.result(), -1);
    }
    EXPECT_EQ(watch.alive(), 0U);
    for (unsigned i = 1; i <= 5; ++i) {
        watch.fail(i);
        {
            const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, text);
            ASSERT_EQ(read.result(), 0);
            EXPECT_EQ(external_ids(*read), numbers(1000, 21, i < 5 ? dropped_by_request[i] : 0));
        }
        EXPECT_EQ(watch.failed(), i < 5 ? 1U : 0U);
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobInfoReply, WhenNothingGrowsTheFirst5EntriesStay) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entries(21)));
        EXPECT_EQ(external_ids(*read), numbers(1000, 5));
    }
    EXPECT_EQ(watch.failed(), 16U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobInfoReply, ADroppedEntryIsSkippedWholeAndUntraced) {
    LogCapture log;
    MemoryWatch watch;
    watch.fail(1, 2);
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply(entry("      job_state: 1\n"
                                                                   "      more {\n"
                                                                   "      }\n") +
                                                             entries(2)));
    EXPECT_EQ(external_ids(*read), (std::vector<uint64_t>{1002}));
    const std::string element = "_kvt_txt_unpack_msg_vemra_mgmt_job_info";
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {element, 6, element + " p_msg->external_job_id[0x3ea]\n"},
                           }));
}

TEST(JobInfoReply, TracesEveryFieldUnderItsName) {
    LogCapture log;
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply("    job_list_len: 4294967311\n"
                                                             "    job_list {\n"
                                                             "      allocation_id: 1\n"
                                                             "      external_job_id: 2\n"
                                                             "      vemra_job_id: 4294967299\n"
                                                             "      start_time: 4\n"
                                                             "      job_state: 5\n"
                                                             "      num_local_connections: 6\n"
                                                             "      reserved: 7\n"
                                                             "      reservation_id: 8\n"
                                                             "      more: 1\n"
                                                             "    }\n"
                                                             "    more: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_vemra_mgmt_job_info_list";
    const std::string element = "_kvt_txt_unpack_msg_vemra_mgmt_job_info";
    const std::string array = "_kvt_txt_unpack_primarray_uint8_t";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {reader, 6, reader + " p_msg->job_list_len[0xf]\n"},
            {element, 6, element + " p_msg->allocation_id[0x1]\n"},
            {element, 6, element + " p_msg->external_job_id[0x2]\n"},
            {element, 6, element + " p_msg->vemra_job_id[0x3]\n"},
            {element, 6, element + " p_msg->start_time[0x4]\n"},
            {element, 6, element + " p_msg->job_state[0x5]\n"},
            {element, 6, element + " p_msg->num_local_connections[0x6]\n"},
            {array, 6, array + " txt unpack value[0x7]\n"},
            {array, 6,
             array + " END ARRAY, key[reserved] array[reservation_id: 8\n      more: 1\n    }\n    "
                     "more: 1\n]\n"},
            {element, 6, element + " p_msg->reservation_id[0x8]\n"},
            {element, 6, element + " mismatch, txt_msg[more: 1\n    }\n    more: 1\n  }\n}\n]\n"},
            {reader, 6, reader + " mismatch, txt_msg[more: 1\n  }\n}\n]\n"},
        }));
}

// --- The persistent job: writing and reading -----------------------------------------------------

TEST(PersistentJobInfo, IsWrittenToTheLetter) {
    uint64_t guids[] = {UINT64_MAX, 0};
    uint16_t trees[] = {65535, 0, 10};
    const persistent_job_info record = {.version = 255,
                                        .job_id = UINT64_MAX,
                                        .vemra_job_id = UINT32_MAX,
                                        .addr_type = 2,
                                        .addr = "node001:4791, {rail 1",
                                        .reservation_id = 3,
                                        .job_state = 4,
                                        .exclusive_lock = 5,
                                        .job_key = 9223372036854775808U,
                                        .priority = 6,
                                        .num_host_guids = 2,
                                        .host_guids = guids,
                                        .num_channels_per_conn = 7,
                                        .num_rails = 8,
                                        .num_trees_req = 9,
                                        .num_trees = 3,
                                        .tree_ids = trees};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, record), full_job);
}

TEST(PersistentJobInfo, OfAZeroedRecordOnlyTheJobStateIsWritten) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, persistent_job_info{}),
              "msg {\n"
              "  type: PERSISTENT_JOB_INFO\n"
              "  persistent_job_info {\n"
              "    job_state: 0\n"
              "  }\n"
              "}\n");
}

TEST(PersistentJobInfo, ArraysWithACountOf0AreNotWritten) {
    uint64_t guids[] = {1};
    uint16_t trees[] = {2};
    persistent_job_info record = {};
    record.host_guids = guids;
    record.tree_ids = trees;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, record), job("    job_state: 0\n"));
}

TEST(PersistentJobInfo, AnAddressWithoutItsNulIsWrittenUpToItsCapacity) {
    persistent_job_info record = {};
    std::memset(record.addr, 'a', sizeof record.addr);
    record.reservation_id = 1;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, record),
              job("    addr: \"" + std::string(128, 'a') +
                  "\"\n"
                  "    reservation_id: 1\n"
                  "    job_state: 0\n"));
}

TEST(PersistentJobInfo, ReadsEveryField) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, full_job);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->version, 255U);
    EXPECT_EQ(read->job_id, UINT64_MAX);
    EXPECT_EQ(read->vemra_job_id, UINT32_MAX);
    EXPECT_EQ(read->addr_type, 2U);
    EXPECT_STREQ(read->addr, "node001:4791, {rail 1");
    EXPECT_EQ(read->reservation_id, 3U);
    EXPECT_EQ(read->job_state, 4U);
    EXPECT_EQ(read->exclusive_lock, 5U);
    EXPECT_EQ(read->job_key, 9223372036854775808U);
    EXPECT_EQ(read->priority, 6U);
    EXPECT_EQ(read->num_host_guids, 2U);
    EXPECT_EQ(host_guids(*read), (std::vector<uint64_t>{UINT64_MAX, 0}));
    EXPECT_EQ(read->num_channels_per_conn, 7U);
    EXPECT_EQ(read->num_rails, 8U);
    EXPECT_EQ(read->num_trees_req, 9U);
    EXPECT_EQ(read->num_trees, 3U);
    EXPECT_EQ(tree_ids(*read), (std::vector<uint64_t>{65535, 0, 10}));
}

TEST(PersistentJobInfo, LinesMayComeInAnyOrder) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    tree_ids: 1\n"
                                                               "    tree_ids: 2\n"
                                                               "    num_trees: 2\n"
                                                               "    num_trees_req: 3\n"
                                                               "    num_rails: 4\n"
                                                               "    num_channels_per_conn: 5\n"
                                                               "    host_guids: 6\n"
                                                               "    host_guids: 7\n"
                                                               "    num_host_guids: 2\n"
                                                               "    priority: 8\n"
                                                               "    job_key: 9\n"
                                                               "    exclusive_lock: 10\n"
                                                               "    job_state: 11\n"
                                                               "    reservation_id: 12\n"
                                                               "    addr: \"node002\"\n"
                                                               "    addr_type: 13\n"
                                                               "    vemra_job_id: 14\n"
                                                               "    job_id: 15\n"
                                                               "    version: 16\n"));
    EXPECT_EQ(tree_ids(*read), (std::vector<uint64_t>{1, 2}));
    EXPECT_EQ(read->num_trees_req, 3U);
    EXPECT_EQ(read->num_rails, 4U);
    EXPECT_EQ(read->num_channels_per_conn, 5U);
    EXPECT_EQ(host_guids(*read), (std::vector<uint64_t>{6, 7}));
    EXPECT_EQ(read->priority, 8U);
    EXPECT_EQ(read->job_key, 9U);
    EXPECT_EQ(read->exclusive_lock, 10U);
    EXPECT_EQ(read->job_state, 11U);
    EXPECT_EQ(read->reservation_id, 12U);
    EXPECT_STREQ(read->addr, "node002");
    EXPECT_EQ(read->addr_type, 13U);
    EXPECT_EQ(read->vemra_job_id, 14U);
    EXPECT_EQ(read->job_id, 15U);
    EXPECT_EQ(read->version, 16U);
}

TEST(PersistentJobInfo, AddrTypeAndAddrDoNotTakeEachOthersLines) {
    const ReadJob type(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr: \"a\"\n"
                                                               "    addr_type: 3\n"));
    EXPECT_EQ(type->addr_type, 3U);
    EXPECT_STREQ(type->addr, "a");
    const ReadJob quoted(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr_type: \"b\"\n"));
    EXPECT_EQ(quoted->addr_type, 0U);
    EXPECT_STREQ(quoted->addr, "");
    const ReadJob plain(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr: 4\n"));
    EXPECT_EQ(plain->addr_type, 0U);
}

TEST(PersistentJobInfo, NumTreesReqAndNumTreesDoNotTakeEachOthersLines) {
    const ReadJob requested(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    num_trees_req: 3\n"));
    EXPECT_EQ(requested->num_trees_req, 3U);
    EXPECT_EQ(requested->num_trees, 0U);
    const ReadJob counted(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    num_trees: 4\n"));
    EXPECT_EQ(counted->num_trees_req, 0U);
    EXPECT_EQ(counted->num_trees, 4U);
    const ReadJob both(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    num_trees: 4\n"
                                                               "    num_trees_req: 3\n"));
    EXPECT_EQ(both->num_trees_req, 3U);
    EXPECT_EQ(both->num_trees, 4U);
}

TEST(PersistentJobInfo, JobIdDoesNotTakeTheLineOfVemraJobId) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    vemra_job_id: 2\n"));
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->vemra_job_id, 2U);
}

TEST(PersistentJobInfo, AnAddressOf127CharactersFitsAndOneOf128IsCut) {
    for (const size_t length : {126U, 127U, 128U, 150U, 199U, 200U, 5000U}) {
        const ReadJob read(
            VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO,
            job("    addr: \"" + std::string(length, 'a') + "\"\n    reservation_id: 3\n"));
        EXPECT_EQ(std::string(read->addr), std::string(length < 127 ? length : 127, 'a'));
        EXPECT_EQ(read->reservation_id, 3U);
    }
}

TEST(PersistentJobInfo, ALaterAddressReplacesTheEarlierOneAndAFailedOneEmptiesIt) {
    const ReadJob later(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr: \"long before\"\n"
                                                                "    addr: \"short\"\n"));
    EXPECT_STREQ(later->addr, "short");
    const ReadJob failed(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr: \"before\"\n"
                                                                 "    addr: \"\"\n"
                                                                 "    job_state: 1\n"));
    EXPECT_STREQ(failed->addr, "");
    EXPECT_EQ(failed->job_state, 1U);
}

TEST(PersistentJobInfo, AnAddressWithAClosingBraceIsReadOnTheFirstLineOnly) {
    const ReadJob first(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    addr: \"port {1}\"\n"
                                                                "    job_state: 1\n"));
    EXPECT_STREQ(first->addr, "port {1}");
    EXPECT_EQ(first->job_state, 1U);
    const ReadJob later(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    version: 2\n"
                                                                "    addr: \"port {1}\"\n"
                                                                "    job_state: 1\n"));
    EXPECT_EQ(later->version, 2U);
    EXPECT_STREQ(later->addr, "");
    EXPECT_EQ(later->job_state, 0U);
}

TEST(PersistentJobInfo, AValueThatDoesNotScanLeavesTheFieldAsItWasAndOneTooLargeIsCut) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    priority: 3\n"
                                                               "    priority: x\n"
                                                               "    job_key 4\n"
                                                               "    num_rails: 257\n"
                                                               "    version: -1\n"));
    EXPECT_EQ(read->priority, 3U);
    EXPECT_EQ(read->job_key, 0U);
    EXPECT_EQ(read->num_rails, 1U);
    EXPECT_EQ(read->version, 255U);
}

TEST(PersistentJobInfo, UnknownLinesAndBlocksAreSkipped) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    more: 1\n"
                                                               "    job_id: 2\n"
                                                               "    more {\n"
                                                               "      job_id: 1\n"
                                                               "      more {\n"
                                                               "      }\n"
                                                               "    }\n"
                                                               "    tree_ids: 3\n"
                                                               "    more: 1\n"
                                                               "    job_key: 4\n"));
    EXPECT_EQ(read->job_id, 2U);
    EXPECT_EQ(tree_ids(*read), (std::vector<uint64_t>{3}));
    EXPECT_EQ(read->job_key, 4U);
}

// --- The persistent job: its arrays and their counts ---------------------------------------------

/// What is tested for both arrays.
struct JobArray {
    const char *key;
    const char *count_key;
    uint64_t base; ///< of the values in the tests
    std::vector<uint64_t> (*values)(const persistent_job_info &);

    std::string lines(unsigned count) const { return lines_of(key, base, count); }

    std::string count_line(const std::string &count) const {
        return "    " + std::string(count_key) + ": " + count + "\n";
    }
};

const JobArray job_arrays[] = {
    {"host_guids", "num_host_guids", 10376293541461622784U, host_guids},
    {"tree_ids", "num_trees", 65000, tree_ids},
};

TEST(PersistentJobInfo, TheElementsThatAreThereDecideNotTheCountBeforeThem) {
    for (const JobArray &array : job_arrays) {
        for (const char *count : {"0", "1", "5", "4294967295"}) {
            const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO,
                               job(array.count_line(count) + array.lines(2)));
            EXPECT_EQ(array.values(*read), numbers(array.base, 2)) << array.key << count;
        }
    }
}

TEST(PersistentJobInfo, ACountWithoutElementsIsKept) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    num_host_guids: 5\n"
                                                               "    num_trees: 6\n"));
    EXPECT_EQ(read->num_host_guids, 5U);
    EXPECT_EQ(read->host_guids, nullptr);
    EXPECT_EQ(read->num_trees, 6U);
    EXPECT_EQ(read->tree_ids, nullptr);
}

TEST(PersistentJobInfo, ACountBehindTheElementsIsKept) {
    // Directly behind them, and with another line between.
    for (const std::string between : {"", "    job_state: 1\n"}) {
        const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    host_guids: 1\n"
                                                                   "    host_guids: 2\n" +
                                                                   between +
                                                                   "    num_host_guids: 5\n"
                                                                   "    tree_ids: 3\n"
                                                                   "    tree_ids: 4\n" +
                                                                   between + "    num_trees: 1\n"));
        EXPECT_EQ(read->num_host_guids, 5U);
        ASSERT_NE(read->host_guids, nullptr);
        EXPECT_EQ(read->host_guids[0], 1U);
        EXPECT_EQ(read->host_guids[1], 2U);
        EXPECT_EQ(tree_ids(*read), (std::vector<uint64_t>{3}));
    }
}

TEST(PersistentJobInfo, ALaterRunReplacesTheEarlierOne) {
    for (const JobArray &array : job_arrays) {
        const MemoryWatch watch;
        {
            const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO,
                               job(array.lines(7) + "    job_state: 1\n" + array.lines(2)));
            EXPECT_EQ(array.values(*read), numbers(array.base, 2)) << array.key;
            EXPECT_EQ(watch.alive(), 2U); // the record and the later array
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(PersistentJobInfo, AnyNumberOfElementsIsReadInOrder) {
    for (const JobArray &array : job_arrays) {
        for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 10U, 11U, 20U, 21U, 300U}) {
            const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job(array.lines(count)));
            EXPECT_EQ(array.values(*read), numbers(array.base, count)) << array.key << count;
        }
    }
}

TEST(PersistentJobInfo, InARunOnlyTheKeyIsTested) {
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    host_guids: 1\n"
                                                               "    host_guids: 2 }\n"
                                                               "    host_guids_more: 3\n"
                                                               "    tree_ids: 65537\n"
                                                               "    tree_ids: 4 }\n"
                                                               "    tree_ids:-1\n"
                                                               "    job_state: 5\n"));
    EXPECT_EQ(host_guids(*read), (std::vector<uint64_t>{1, 2}));
    EXPECT_EQ(tree_ids(*read), (std::vector<uint64_t>{1, 4, 65535}));
    EXPECT_EQ(read->job_state, 5U);
}

TEST(PersistentJobInfo, AnElementWithoutMemoryIsDroppedAndTheNextTriesAgain) {
    for (const JobArray &array : job_arrays) {
        MemoryWatch watch;
        for (unsigned i = 0; i <= 5; ++i) {
            watch.fail(i);
            {
                const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job(array.lines(21)));
                ASSERT_EQ(read.result(), i == 0 ? -1 : 0);
                if (i != 0) {
                    EXPECT_EQ(array.values(*read),
                              numbers(array.base, 21, i < 5 ? dropped_by_request[i] : 0))
                        << array.key << i;
                }
            }
            EXPECT_EQ(watch.failed(), i < 5 ? 1U : 0U);
            EXPECT_EQ(watch.alive(), 0U);
        }
    }
}

TEST(PersistentJobInfo, WhenNothingGrowsTheFirst5ElementsStay) {
    for (const JobArray &array : job_arrays) {
        MemoryWatch watch;
        watch.fail_all_growth();
        {
            const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job(array.lines(21)));
            EXPECT_EQ(array.values(*read), numbers(array.base, 5)) << array.key;
        }
        EXPECT_EQ(watch.failed(), 16U);
        EXPECT_EQ(watch.alive(), 0U);
    }
}

// --- The persistent job: traces ------------------------------------------------------------------

TEST(PersistentJobInfo, TracesEveryFieldUnderItsName) {
    LogCapture log;
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO,
                       job("    version: 1\n"
                           "    job_id: 4294967298\n"
                           "    vemra_job_id: 3\n"
                           "    addr_type: 4\n"
                           "    addr: \"" +
                           std::string(60, 'a') +
                           "\"\n"
                           "    reservation_id: 5\n"
                           "    job_state: 6\n"
                           "    exclusive_lock: 7\n"
                           "    job_key: 8\n"
                           "    priority: 9\n"
                           "    num_host_guids: 10\n"
                           "    host_guids: 18446744073709551615\n"
                           "    host_guids: x\n"
                           "    host_guids: 16\n"
                           "    num_channels_per_conn: 11\n"
                           "    num_rails: 12\n"
                           "    num_trees_req: 13\n"
                           "    num_trees: 14\n"
                           "    tree_ids: x\n"
                           "    tree_ids: 65535\n"
                           "    more: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_persistent_job_info";
    const std::string text = "_kvt_txt_unpack_primarray_char";
    const std::string array64 = "_kvt_txt_unpack_primptr_uint64_t";
    const std::string array16 = "_kvt_txt_unpack_primptr_uint16_t";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {reader, 6, reader + " p_msg->version[0x1]\n"},
            {reader, 6, reader + " p_msg->job_id[0x2]\n"},
            {reader, 6, reader + " p_msg->vemra_job_id[0x3]\n"},
            {reader, 6, reader + " p_msg->addr_type[0x4]\n"},
            {text, 6, text + " txt unpack value[" + std::string(50, 'a') + "]\n"},
            {reader, 6, reader + " p_msg->reservation_id[0x5]\n"},
            {reader, 6, reader + " p_msg->job_state[0x6]\n"},
            {reader, 6, reader + " p_msg->exclusive_lock[0x7]\n"},
            {reader, 6, reader + " p_msg->job_key[0x8]\n"},
            {reader, 6, reader + " p_msg->priority[0x9]\n"},
            {reader, 6, reader + " p_msg->num_host_guids[0xa]\n"},
            {array64, 6, array64 + " element[1]=[0xffffffffffffffff]\n"},
            {array64, 6,
             array64 + " missmatch, array[host_guids: x\n    host_guids: 16\n    num_channels_], "
                       "frame_key[host_guids:%lu], value[ffffffffffffffff]\n"},
            {array64, 6, array64 + " element[2]=[0x10]\n"},
            {array64, 6,
             array64 + " END prim ptr, num_lements[0x2], array[0][0xffffffffffffffff]\n"},
            {reader, 6, reader + " p_msg->num_channels_per_conn[0xb]\n"},
            {reader, 6, reader + " p_msg->num_rails[0xc]\n"},
            {reader, 6, reader + " p_msg->num_trees_req[0xd]\n"},
            {reader, 6, reader + " p_msg->num_trees[0xe]\n"},
            {array16, 6,
             array16 +
                 " missmatch, array[tree_ids: x\n    tree_ids: 65535\n    more: 1\n  }\n}\n], "
                 "frame_key[tree_ids:%hu], value[0]\n"},
            {array16, 6, array16 + " element[1]=[0xffff]\n"},
            {array16, 6, array16 + " END prim ptr, num_lements[0x1], array[0][0xffff]\n"},
            {reader, 6, reader + " mismatch, txt_msg[more: 1\n  }\n}\n]\n"},
        }));
}

TEST(PersistentJobInfo, AnArrayWithoutOneGoodElementEndsWith0InItsTraceAndNoArray) {
    LogCapture log;
    const ReadJob read(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, job("    host_guids: x\n"
                                                               "    tree_ids: y\n"));
    EXPECT_EQ(read->num_host_guids, 0U);
    EXPECT_EQ(read->host_guids, nullptr);
    EXPECT_EQ(read->num_trees, 0U);
    EXPECT_EQ(read->tree_ids, nullptr);
    const std::string array64 = "_kvt_txt_unpack_primptr_uint64_t";
    const std::string array16 = "_kvt_txt_unpack_primptr_uint16_t";
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  {array64, 6,
                   array64 + " missmatch, array[host_guids: x\n    tree_ids: y\n  }\n}\n], "
                             "frame_key[host_guids:%lu], value[0]\n"},
                  {array64, 6, array64 + " END prim ptr, num_lements[0x0], array[0][0x0]\n"},
                  {array16, 6,
                   array16 + " missmatch, array[tree_ids: y\n  }\n}\n], "
                             "frame_key[tree_ids:%hu], value[0]\n"},
                  {array16, 6, array16 + " END prim ptr, num_lements[0x0], array[0][0x0]\n"},
              }));
}

} // namespace
} // namespace kvt_test
