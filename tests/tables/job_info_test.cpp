// JOB_INFO_REQUEST, JOB_INFO_REPLY and PERSISTENT_JOB_INFO.
#include <cstddef>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/job_info.h"
#include "support/log_capture.h"
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
    EXPECT_EQ(read_and_write<vemra_mgmt_job_info_list>(VEMRA_MSG_TYPE_JOB_INFO_REPLY, full_list),
              full_list);
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

// --- The list: entries and their count -----------------------------------------------------------

TEST(JobInfoReply, ACountIsReadWith64Bits) {
    const ReadList read(VEMRA_MSG_TYPE_JOB_INFO_REPLY, reply("    job_list_len: 4294967296\n"));
    EXPECT_EQ(read->job_list_len, 4294967296U);
    EXPECT_EQ(read->job_list, nullptr);
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

TEST(PersistentJobInfo, ReadsEveryField) {
    EXPECT_EQ(read_and_write<persistent_job_info>(VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, full_job),
              full_job);
}

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

} // namespace
} // namespace kvt_test
