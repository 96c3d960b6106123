// ALLOC_GROUPS, RELEASE_GROUPS and GROUPS_DATA.
#include <cstddef>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/groups.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_alloc_group) == 16);
static_assert(offsetof(vemra_alloc_group, subnet_prefix) == 0);
static_assert(offsetof(vemra_alloc_group, tree_id) == 8);
static_assert(offsetof(vemra_alloc_group, num_osts) == 10);

static_assert(sizeof(vemra_alloc_groups) == 104);
static_assert(offsetof(vemra_alloc_groups, job_id) == 0);
static_assert(offsetof(vemra_alloc_groups, tid) == 8);
static_assert(offsetof(vemra_alloc_groups, num_groups) == 16);
static_assert(offsetof(vemra_alloc_groups, groups) == 24);
static_assert(offsetof(vemra_alloc_groups, num_processes) == 88);
static_assert(offsetof(vemra_alloc_groups, processes) == 96);

static_assert(sizeof(vemra_release_group) == 16);
static_assert(offsetof(vemra_release_group, subnet_prefix) == 0);
static_assert(offsetof(vemra_release_group, group_id) == 8);
static_assert(offsetof(vemra_release_group, tree_id) == 12);

static_assert(sizeof(vemra_release_groups) == 80);
static_assert(offsetof(vemra_release_groups, job_id) == 0);
static_assert(offsetof(vemra_release_groups, vemra_job_id) == 8);
static_assert(offsetof(vemra_release_groups, num_groups) == 12);
static_assert(offsetof(vemra_release_groups, groups) == 16);

static_assert(sizeof(vemra_group_data) == 64);
static_assert(offsetof(vemra_group_data, subnet_prefix) == 0);
static_assert(offsetof(vemra_group_data, group_id) == 8);
static_assert(offsetof(vemra_group_data, tree_idx) == 12);
static_assert(offsetof(vemra_group_data, tree_id) == 16);
static_assert(offsetof(vemra_group_data, mlid) == 20);
static_assert(offsetof(vemra_group_data, data_path_trim) == 22);
static_assert(offsetof(vemra_group_data, mgid) == 24);
static_assert(offsetof(vemra_group_data, quota) == 40);

static_assert(sizeof(vemra_groups_data) == 280);
static_assert(offsetof(vemra_groups_data, job_id) == 0);
static_assert(offsetof(vemra_groups_data, tid) == 8);
static_assert(offsetof(vemra_groups_data, vemra_job_id) == 16);
static_assert(offsetof(vemra_groups_data, num_groups) == 20);
static_assert(offsetof(vemra_groups_data, groups) == 24);
#endif

using ReadAlloc = ReadMessage<vemra_alloc_groups>;
using ReadRelease = ReadMessage<vemra_release_groups>;
using ReadData = ReadMessage<vemra_groups_data>;

std::string alloc_groups(const std::string &lines) {
    return message_text("ALLOC_GROUPS", "  alloc_groups {\n" + lines + "  }\n");
}

std::string release_groups(const std::string &lines) {
    return message_text("RELEASE_GROUPS", "  release_groups {\n" + lines + "  }\n");
}

std::string groups_data(const std::string &lines) {
    return message_text("GROUPS_DATA", "  groups_data {\n" + lines + "  }\n");
}

std::string group(const std::string &lines) {
    return "    groups {\n" + lines + "    }\n";
}

const char full_alloc_groups[] = "msg {\n"
                                 "  type: ALLOC_GROUPS\n"
                                 "  alloc_groups {\n"
                                 "    job_id: 18446744073709551615\n"
                                 "    tid: 9223372036854775808\n"
                                 "    num_groups: 2\n"
                                 "    groups {\n"
                                 "      subnet_prefix: 18338657682652659712\n"
                                 "      tree_id: 65535\n"
                                 "      num_osts: 16\n"
                                 "    }\n"
                                 "    groups {\n"
                                 "      subnet_prefix: 1\n"
                                 "      tree_id: 2\n"
                                 "      num_osts: 3\n"
                                 "    }\n"
                                 "    num_processes: 3\n"
                                 "    processes: 0\n"
                                 "    processes: 77\n"
                                 "    processes: 4294967295\n"
                                 "  }\n"
                                 "}\n";

const char full_release_groups[] = "msg {\n"
                                   "  type: RELEASE_GROUPS\n"
                                   "  release_groups {\n"
                                   "    job_id: 1\n"
                                   "    vemra_job_id: 4294967295\n"
                                   "    num_groups: 2\n"
                                   "    groups {\n"
                                   "      subnet_prefix: 18338657682652659712\n"
                                   "      group_id: 4294967294\n"
                                   "      tree_id: 65535\n"
                                   "    }\n"
                                   "    groups {\n"
                                   "      subnet_prefix: 2\n"
                                   "      group_id: 3\n"
                                   "      tree_id: 4\n"
                                   "    }\n"
                                   "  }\n"
                                   "}\n";

const char full_groups_data[] = "msg {\n"
                                "  type: GROUPS_DATA\n"
                                "  groups_data {\n"
                                "    job_id: 1\n"
                                "    tid: 2\n"
                                "    vemra_job_id: 3\n"
                                "    num_groups: 2\n"
                                "    groups {\n"
                                "      subnet_prefix: 18338657682652659712\n"
                                "      group_id: 4\n"
                                "      tree_idx: 5\n"
                                "      tree_id: 65541\n"
                                "      mlid: 49153\n"
                                "      data_path_trim: 255\n"
                                "      mgid {\n"
                                "        subnet_prefix: 18446744073709551615\n"
                                "        guid: 6\n"
                                "      }\n"
                                "      quota {\n"
                                "        max_osts: 7\n"
                                "        user_data_per_ost: 8\n"
                                "        max_buffers: 9\n"
                                "        max_groups: 10\n"
                                "        max_qps: 4294967295\n"
                                "      }\n"
                                "    }\n"
                                "    groups {\n"
                                "      subnet_prefix: 11\n"
                                "      group_id: 12\n"
                                "      tree_idx: 13\n"
                                "      tree_id: 14\n"
                                "      mlid: 15\n"
                                "      data_path_trim: 16\n"
                                "      mgid {\n"
                                "        subnet_prefix: 17\n"
                                "        guid: 18\n"
                                "      }\n"
                                "      quota {\n"
                                "        max_osts: 19\n"
                                "        user_data_per_ost: 20\n"
                                "        max_buffers: 21\n"
                                "        max_groups: 22\n"
                                "        max_qps: 23\n"
                                "      }\n"
                                "    }\n"
                                "  }\n"
                                "}\n";

// --- Writing -------------------------------------------------------------------------------------

TEST(Groups, AllocGroupsIsWrittenToTheLetter) {
    uint32_t ranks[] = {0, 77, UINT32_MAX};
    vemra_alloc_groups record = {};
    record.job_id = UINT64_MAX;
    record.tid = 9223372036854775808U;
    record.num_groups = 2;
    record.groups[0] = {.subnet_prefix = 18338657682652659712U, .tree_id = 65535, .num_osts = 16};
    record.groups[1] = {.subnet_prefix = 1, .tree_id = 2, .num_osts = 3};
    record.num_processes = 3;
    record.processes = ranks;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_ALLOC_GROUPS, record), full_alloc_groups);
}

TEST(Groups, ReleaseGroupsIsWrittenToTheLetter) {
    vemra_release_groups record = {};
    record.job_id = 1;
    record.vemra_job_id = UINT32_MAX;
    record.num_groups = 2;
    record.groups[0] = {
        .subnet_prefix = 18338657682652659712U, .group_id = 4294967294U, .tree_id = 65535};
    record.groups[1] = {.subnet_prefix = 2, .group_id = 3, .tree_id = 4};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_RELEASE_GROUPS, record), full_release_groups);
}

TEST(Groups, GroupsDataIsWrittenToTheLetter) {
    vemra_groups_data record = {};
    record.job_id = 1;
    record.tid = 2;
    record.vemra_job_id = 3;
    record.num_groups = 2;
    vemra_group_data &first = record.groups[0];
    first.subnet_prefix = 18338657682652659712U;
    first.group_id = 4;
    first.tree_idx = 5;
    first.tree_id = 65541;
    first.mlid = 49153;
    first.data_path_trim = 255;
    first.mgid.global.subnet_prefix = UINT64_MAX;
    first.mgid.global.interface_id = 6;
    first.quota = {.max_osts = 7,
                   .user_data_per_ost = 8,
                   .max_buffers = 9,
                   .max_groups = 10,
                   .max_qps = UINT32_MAX};
    vemra_group_data &second = record.groups[1];
    second.subnet_prefix = 11;
    second.group_id = 12;
    second.tree_idx = 13;
    second.tree_id = 14;
    second.mlid = 15;
    second.data_path_trim = 16;
    second.mgid.global.subnet_prefix = 17;
    second.mgid.global.interface_id = 18;
    second.quota = {.max_osts = 19,
                    .user_data_per_ost = 20,
                    .max_buffers = 21,
                    .max_groups = 22,
                    .max_qps = 23};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_GROUPS_DATA, record), full_groups_data);
}

TEST(Groups, NothingIsWrittenOfZeroedRecords) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_ALLOC_GROUPS, vemra_alloc_groups{}), alloc_groups(""));
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_RELEASE_GROUPS, vemra_release_groups{}), release_groups(""));
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_GROUPS_DATA, vemra_groups_data{}), groups_data(""));
}

TEST(Groups, ZeroedGroupsInUseAreEmptyBlocksButForMgidAndQuota) {
    vemra_alloc_groups alloc = {};
    alloc.num_groups = 2;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc), alloc_groups("    num_groups: 2\n"
                                                                        "    groups {\n"
                                                                        "    }\n"
                                                                        "    groups {\n"
                                                                        "    }\n"));
    vemra_release_groups release = {};
    release.num_groups = 1;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_RELEASE_GROUPS, release), release_groups("    num_groups: 1\n"
                                                                              "    groups {\n"
                                                                              "    }\n"));
    vemra_groups_data data = {};
    data.num_groups = 1;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_GROUPS_DATA, data), groups_data("    num_groups: 1\n"
                                                                     "    groups {\n"
                                                                     "      mgid {\n"
                                                                     "      }\n"
                                                                     "      quota {\n"
                                                                     "      }\n"
                                                                     "    }\n"));
}

// --- Reading -------------------------------------------------------------------------------------

TEST(Groups, AllocGroupsReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_alloc_groups>(VEMRA_MSG_TYPE_ALLOC_GROUPS, full_alloc_groups),
              full_alloc_groups);
}

TEST(Groups, ReleaseGroupsReadsEveryField) {
    EXPECT_EQ(
        read_and_write<vemra_release_groups>(VEMRA_MSG_TYPE_RELEASE_GROUPS, full_release_groups),
        full_release_groups);
}

TEST(Groups, GroupsDataReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_groups_data>(VEMRA_MSG_TYPE_GROUPS_DATA, full_groups_data),
              full_groups_data);
}

TEST(Groups, AMgidIsTheBytesInMemoryOrder) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA,
                        groups_data(group("      mgid {\n"
                                          "        subnet_prefix: 33022\n"
                                          "        guid: 72057594037927936\n"
                                          "      }\n")));
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    const uint8_t raw[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
#else
    const uint8_t raw[16] = {0, 0, 0, 0, 0, 0, 0x80, 0xfe, 1, 0, 0, 0, 0, 0, 0, 0};
#endif
    EXPECT_EQ(std::memcmp(read->groups[0].mgid.raw, raw, sizeof raw), 0);
}

TEST(Groups, ATreeIdHas16BitsWhereGroupsAreAllocatedAndReleasedAnd32InTheirData) {
    const std::string lines = group("      tree_id: 65541\n");
    const ReadAlloc alloc(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(lines));
    EXPECT_EQ(alloc->groups[0].tree_id, 5U);
    const ReadRelease release(VEMRA_MSG_TYPE_RELEASE_GROUPS, release_groups(lines));
    EXPECT_EQ(release->groups[0].tree_id, 5U);
    const ReadData data(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(lines));
    EXPECT_EQ(data->groups[0].tree_id, 65541U);
}

// --- Traces --------------------------------------------------------------------------------------

TEST(Groups, AllocGroupsTracesEveryFieldUnderItsName) {
    LogCapture log;
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups("    job_id: 4294967311\n"
                                                                   "    tid: 2\n"
                                                                   "    num_groups: 3\n"
                                                                   "    groups {\n"
                                                                   "      subnet_prefix: 4\n"
                                                                   "      tree_id: 5\n"
                                                                   "      num_osts: 6\n"
                                                                   "      more: 1 {\n"
                                                                   "      }\n"
                                                                   "    }\n"
                                                                   "    num_processes: 7\n"
                                                                   "    processes: 4294967295\n"
                                                                   "    processes: x\n"
                                                                   "    processes: 16\n"
                                                                   "    more: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_vemra_alloc_groups";
    const std::string entry = "_kvt_txt_unpack_msg_vemra_alloc_group";
    const std::string array = "_kvt_txt_unpack_primptr_uint32_t";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {reader, 6, reader + " p_msg->job_id[0xf]\n"},
            {reader, 6, reader + " p_msg->tid[0x2]\n"},
            {reader, 6, reader + " p_msg->num_groups[0x3]\n"},
            {entry, 6, entry + " p_msg->subnet_prefix[0x4]\n"},
            {entry, 6, entry + " p_msg->tree_id[0x5]\n"},
            {entry, 6, entry + " p_msg->num_osts[0x6]\n"},
            {entry, 6,
             entry +
                 " mismatch, txt_msg[more: 1 {\n      }\n    }\n    num_processes: 7\n    p]\n"},
            {reader, 6, reader + " p_msg->num_processes[0x7]\n"},
            {array, 6, array + " element[1]=[0xffffffff]\n"},
            {array, 6,
             array + " missmatch, array[processes: x\n    processes: 16\n    more: 1\n  }\n}\n], "
                     "frame_key[processes:%u], value[ffffffff]\n"},
            {array, 6, array + " element[2]=[0x10]\n"},
            {array, 6, array + " END prim ptr, num_lements[0x2], array[0][0xffffffff]\n"},
            {reader, 6, reader + " mismatch, txt_msg[more: 1\n  }\n}\n]\n"},
        }));
}

TEST(Groups, ReleaseGroupsTracesEveryFieldUnderItsName) {
    LogCapture log;
    const ReadRelease read(VEMRA_MSG_TYPE_RELEASE_GROUPS, release_groups("    job_id: 1\n"
                                                                         "    vemra_job_id: 2\n"
                                                                         "    num_groups: 3\n"
                                                                         "    groups {\n"
                                                                         "      subnet_prefix: 4\n"
                                                                         "      group_id: 5\n"
                                                                         "      tree_id: 6\n"
                                                                         "      num_osts: 1\n"
                                                                         "    }\n"
                                                                         "    tid: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_vemra_release_groups";
    const std::string entry = "_kvt_txt_unpack_msg_vemra_release_group";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {reader, 6, reader + " p_msg->job_id[0x1]\n"},
            {reader, 6, reader + " p_msg->vemra_job_id[0x2]\n"},
            {reader, 6, reader + " p_msg->num_groups[0x3]\n"},
            {entry, 6, entry + " p_msg->subnet_prefix[0x4]\n"},
            {entry, 6, entry + " p_msg->group_id[0x5]\n"},
            {entry, 6, entry + " p_msg->tree_id[0x6]\n"},
            {entry, 6, entry + " mismatch, txt_msg[num_osts: 1\n    }\n    tid: 1\n  }\n}\n]\n"},
            {reader, 6, reader + " mismatch, txt_msg[tid: 1\n  }\n}\n]\n"},
        }));
}

TEST(Groups, GroupsDataTracesEveryFieldUnderItsNameButNothingOfAMgid) {
    LogCapture log;
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data("    job_id: 1\n"
                                                                "    tid: 2\n"
                                                                "    vemra_job_id: 3\n"
                                                                "    num_groups: 4\n"
                                                                "    groups {\n"
                                                                "      subnet_prefix: 5\n"
                                                                "      group_id: 6\n"
                                                                "      tree_idx: 7\n"
                                                                "      tree_id: 65541\n"
                                                                "      mlid: 49153\n"
                                                                "      data_path_trim: 8\n"
                                                                "      mgid {\n"
                                                                "        subnet_prefix: 9\n"
                                                                "        guid: 10\n"
                                                                "        more: 1\n"
                                                                "      }\n"
                                                                "      quota {\n"
                                                                "        max_osts: 11\n"
                                                                "        user_data_per_ost: 12\n"
                                                                "        max_buffers: 13\n"
                                                                "        max_groups: 14\n"
                                                                "        max_qps: 15\n"
                                                                "        more: 1\n"
                                                                "      }\n"
                                                                "      num_osts: 1\n"
                                                                "    }\n"
                                                                "    processes: 1\n"));
    const std::string reader = "_kvt_txt_unpack_msg_vemra_groups_data";
    const std::string entry = "_kvt_txt_unpack_msg_vemra_group_data";
    const std::string quota = "_kvt_txt_unpack_msg_vemra_quota";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {reader, 6, reader + " p_msg->job_id[0x1]\n"},
            {reader, 6, reader + " p_msg->tid[0x2]\n"},
            {reader, 6, reader + " p_msg->vemra_job_id[0x3]\n"},
            {reader, 6, reader + " p_msg->num_groups[0x4]\n"},
            {entry, 6, entry + " p_msg->subnet_prefix[0x5]\n"},
            {entry, 6, entry + " p_msg->group_id[0x6]\n"},
            {entry, 6, entry + " p_msg->tree_idx[0x7]\n"},
            {entry, 6, entry + " p_msg->tree_id[0x10005]\n"},
            {entry, 6, entry + " p_msg->mlid[0xc001]\n"},
            {entry, 6, entry + " p_msg->data_path_trim[0x8]\n"},
            {quota, 6, quota + " p_msg->max_osts[0xb]\n"},
            {quota, 6, quota + " p_msg->user_data_per_ost[0xc]\n"},
            {quota, 6, quota + " p_msg->max_buffers[0xd]\n"},
            {quota, 6, quota + " p_msg->max_groups[0xe]\n"},
            {quota, 6, quota + " p_msg->max_qps[0xf]\n"},
            {quota, 6,
             quota +
                 " mismatch, txt_msg[more: 1\n      }\n      num_osts: 1\n    }\n    proces]\n"},
            {entry, 6,
             entry + " mismatch, txt_msg[num_osts: 1\n    }\n    processes: 1\n  }\n}\n]\n"},
            {reader, 6, reader + " mismatch, txt_msg[processes: 1\n  }\n}\n]\n"},
        }));
}

} // namespace
} // namespace kvt_test
