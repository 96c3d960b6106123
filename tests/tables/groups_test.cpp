// ALLOC_GROUPS, RELEASE_GROUPS and GROUPS_DATA.
#include <cstddef>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/groups.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

/// A group whose tree_id alone is set.
std::string tree(unsigned tree_id) {
    return group("      tree_id: " + std::to_string(tree_id) + "\n");
}

/// Groups with the tree_ids 11, 12 and so on.
std::string trees(unsigned count) {
    std::string text;
    for (unsigned i = 1; i <= count; ++i) {
        text += tree(10 + i);
    }
    return text;
}

/// The tree_ids of all four groups, in use or not.
template <typename Record> std::vector<unsigned> tree_ids(const Record &record) {
    std::vector<unsigned> ids;
    for (const auto &group : record.groups) {
        ids.push_back(group.tree_id);
    }
    return ids;
}

/// Lines of processes 1001, 1002 and so on.
std::string processes(unsigned count) {
    std::string text;
    for (unsigned i = 1; i <= count; ++i) {
        text += "    processes: " + std::to_string(1000 + i) + "\n";
    }
    return text;
}

/// The processes, as many as the count says.
std::vector<uint32_t> processes_of(const vemra_alloc_groups &record) {
    return {record.processes, record.processes + record.num_processes};
}

/// 1001 to 1000 + `count`, without one of them.
std::vector<uint32_t> processes_up_to(unsigned count, unsigned without = 0) {
    std::vector<uint32_t> processes;
    for (unsigned i = 1; i <= count; ++i) {
        if (1000 + i != without) {
            processes.push_back(1000 + i);
        }
    }
    return processes;
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

TEST(Groups, WithoutGroupsInUseNoneIsWritten) {
    vemra_release_groups record = {};
    record.job_id = 3;
    record.groups[0].tree_id = 4;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_RELEASE_GROUPS, record), release_groups("    job_id: 3\n"));
}

TEST(Groups, Of6GroupsInUseFourAreWrittenAndReadBack) {
    vemra_alloc_groups record = {};
    record.num_groups = 6;
    for (unsigned i = 0; i < 4; ++i) {
        record.groups[i].tree_id = static_cast<uint16_t>(11 + i);
    }
    const std::string text =
        alloc_groups("    num_groups: 6\n" + tree(11) + tree(12) + tree(13) + tree(14));
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_ALLOC_GROUPS, record), text);
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, text);
    EXPECT_EQ(read->num_groups, 4U);
    EXPECT_EQ(tree_ids(*read), (std::vector<unsigned>{11, 12, 13, 14}));
}

TEST(Groups, WithoutProcessesNeitherCountNorLineIsWrittenAndNoArrayRead) {
    uint32_t ranks[] = {5};
    vemra_alloc_groups record = {};
    record.tid = 1;
    record.processes = ranks;
    const std::string text = alloc_groups("    tid: 1\n");
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_ALLOC_GROUPS, record), text);
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, text);
    EXPECT_EQ(read->tid, 1U);
    EXPECT_EQ(read->num_processes, 0U);
    EXPECT_EQ(read->processes, nullptr);
}

// --- Reading -------------------------------------------------------------------------------------

TEST(Groups, AllocGroupsReadsEveryField) {
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, full_alloc_groups);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, UINT64_MAX);
    EXPECT_EQ(read->tid, 9223372036854775808U);
    EXPECT_EQ(read->num_groups, 2U);
    EXPECT_EQ(read->groups[0].subnet_prefix, 18338657682652659712U);
    EXPECT_EQ(read->groups[0].tree_id, 65535U);
    EXPECT_EQ(read->groups[0].num_osts, 16U);
    EXPECT_EQ(read->groups[1].subnet_prefix, 1U);
    EXPECT_EQ(read->groups[1].tree_id, 2U);
    EXPECT_EQ(read->groups[1].num_osts, 3U);
    EXPECT_EQ(read->num_processes, 3U);
    EXPECT_EQ(processes_of(*read), (std::vector<uint32_t>{0, 77, UINT32_MAX}));
}

TEST(Groups, ReleaseGroupsReadsEveryField) {
    const ReadRelease read(VEMRA_MSG_TYPE_RELEASE_GROUPS, full_release_groups);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 1U);
    EXPECT_EQ(read->vemra_job_id, UINT32_MAX);
    EXPECT_EQ(read->num_groups, 2U);
    EXPECT_EQ(read->groups[0].subnet_prefix, 18338657682652659712U);
    EXPECT_EQ(read->groups[0].group_id, 4294967294U);
    EXPECT_EQ(read->groups[0].tree_id, 65535U);
    EXPECT_EQ(read->groups[1].subnet_prefix, 2U);
    EXPECT_EQ(read->groups[1].group_id, 3U);
    EXPECT_EQ(read->groups[1].tree_id, 4U);
}

TEST(Groups, GroupsDataReadsEveryField) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, full_groups_data);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 1U);
    EXPECT_EQ(read->tid, 2U);
    EXPECT_EQ(read->vemra_job_id, 3U);
    EXPECT_EQ(read->num_groups, 2U);
    const vemra_group_data &first = read->groups[0];
    EXPECT_EQ(first.subnet_prefix, 18338657682652659712U);
    EXPECT_EQ(first.group_id, 4U);
    EXPECT_EQ(first.tree_idx, 5U);
    EXPECT_EQ(first.tree_id, 65541U);
    EXPECT_EQ(first.mlid, 49153U);
    EXPECT_EQ(first.data_path_trim, 255U);
    EXPECT_EQ(first.mgid.global.subnet_prefix, UINT64_MAX);
    EXPECT_EQ(first.mgid.global.interface_id, 6U);
    EXPECT_EQ(first.quota.max_osts, 7U);
    EXPECT_EQ(first.quota.user_data_per_ost, 8U);
    EXPECT_EQ(first.quota.max_buffers, 9U);
    EXPECT_EQ(first.quota.max_groups, 10U);
    EXPECT_EQ(first.quota.max_qps, UINT32_MAX);
    const vemra_group_data &second = read->groups[1];
    EXPECT_EQ(second.subnet_prefix, 11U);
    EXPECT_EQ(second.group_id, 12U);
    EXPECT_EQ(second.tree_idx, 13U);
    EXPECT_EQ(second.tree_id, 14U);
    EXPECT_EQ(second.mlid, 15U);
    EXPECT_EQ(second.data_path_trim, 16U);
    EXPECT_EQ(second.mgid.global.subnet_prefix, 17U);
    EXPECT_EQ(second.mgid.global.interface_id, 18U);
    EXPECT_EQ(second.quota.max_osts, 19U);
    EXPECT_EQ(second.quota.user_data_per_ost, 20U);
    EXPECT_EQ(second.quota.max_buffers, 21U);
    EXPECT_EQ(second.quota.max_groups, 22U);
    EXPECT_EQ(second.quota.max_qps, 23U);
    EXPECT_EQ(tree_ids(*read), (std::vector<unsigned>{65541, 14, 0, 0}));
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

TEST(Groups, TreeIdxAndTreeIdDoNotTakeEachOthersLines) {
    const ReadData idx(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(group("      tree_idx: 5\n")));
    EXPECT_EQ(idx->groups[0].tree_idx, 5U);
    EXPECT_EQ(idx->groups[0].tree_id, 0U);
    const ReadData id(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(group("      tree_id: 6\n")));
    EXPECT_EQ(id->groups[0].tree_idx, 0U);
    EXPECT_EQ(id->groups[0].tree_id, 6U);
    // In a record that knows no tree_idx, tree_id captures its line, where it does not scan.
    const ReadAlloc alloc(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(group("      tree_idx: 5\n")));
    EXPECT_EQ(alloc->groups[0].tree_id, 0U);
}

TEST(Groups, LinesMayComeInAnyOrder) {
    const ReadData data(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data("    groups {\n"
                                                                "      quota {\n"
                                                                "        max_qps: 5\n"
                                                                "        max_groups: 4\n"
                                                                "        max_buffers: 3\n"
                                                                "        user_data_per_ost: 2\n"
                                                                "        max_osts: 1\n"
                                                                "      }\n"
                                                                "      mgid {\n"
                                                                "        guid: 7\n"
                                                                "        subnet_prefix: 6\n"
                                                                "      }\n"
                                                                "      data_path_trim: 8\n"
                                                                "      mlid: 9\n"
                                                                "      tree_id: 10\n"
                                                                "      tree_idx: 11\n"
                                                                "      group_id: 12\n"
                                                                "      subnet_prefix: 13\n"
                                                                "    }\n"
                                                                "    vemra_job_id: 14\n"
                                                                "    tid: 15\n"
                                                                "    job_id: 16\n"));
    const vemra_group_data &first = data->groups[0];
    EXPECT_EQ(first.quota.max_qps, 5U);
    EXPECT_EQ(first.quota.max_groups, 4U);
    EXPECT_EQ(first.quota.max_buffers, 3U);
    EXPECT_EQ(first.quota.user_data_per_ost, 2U);
    EXPECT_EQ(first.quota.max_osts, 1U);
    EXPECT_EQ(first.mgid.global.subnet_prefix, 6U);
    EXPECT_EQ(first.mgid.global.interface_id, 7U);
    EXPECT_EQ(first.data_path_trim, 8U);
    EXPECT_EQ(first.mlid, 9U);
    EXPECT_EQ(first.tree_id, 10U);
    EXPECT_EQ(first.tree_idx, 11U);
    EXPECT_EQ(first.group_id, 12U);
    EXPECT_EQ(first.subnet_prefix, 13U);
    EXPECT_EQ(data->vemra_job_id, 14U);
    EXPECT_EQ(data->tid, 15U);
    EXPECT_EQ(data->job_id, 16U);
    EXPECT_EQ(data->num_groups, 1U);

    const ReadAlloc alloc(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(processes(2) + trees(2) +
                                                                    "    tid: 2\n"
                                                                    "    job_id: 1\n"));
    EXPECT_EQ(processes_of(*alloc), (std::vector<uint32_t>{1001, 1002}));
    EXPECT_EQ(alloc->num_groups, 2U);
    EXPECT_EQ(tree_ids(*alloc), (std::vector<unsigned>{11, 12, 0, 0}));
    EXPECT_EQ(alloc->tid, 2U);
    EXPECT_EQ(alloc->job_id, 1U);
}

TEST(Groups, AValueThatDoesNotScanLeavesTheFieldAsItWas) {
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups("    tid: 4\n"
                                                                   "    tid: x\n"
                                                                   "    job_id 5\n" +
                                                                   group("      num_osts: 6\n"
                                                                         "      num_osts: -\n"
                                                                         "      tree_id: y\n")));
    EXPECT_EQ(read->tid, 4U);
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->groups[0].num_osts, 6U);
    EXPECT_EQ(read->groups[0].tree_id, 0U);
}

TEST(Groups, ALineOfAMgidThatDoesNotScanStoresTheLineBefore) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(group("      mgid {\n"
                                                                      "        subnet_prefix: x\n"
                                                                      "        guid: 8\n"
                                                                      "      }\n") +
                                                                group("      mgid {\n"
                                                                      "        subnet_prefix: 9\n"
                                                                      "        guid: x\n"
                                                                      "      }\n")));
    EXPECT_EQ(read->groups[0].mgid.global.subnet_prefix, 0U);
    EXPECT_EQ(read->groups[0].mgid.global.interface_id, 8U);
    EXPECT_EQ(read->groups[1].mgid.global.subnet_prefix, 9U);
    EXPECT_EQ(read->groups[1].mgid.global.interface_id, 9U);
}

TEST(Groups, ASecondMgidMergesIntoTheFirstAndASecondQuotaReplacesIt) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(group("      mgid {\n"
                                                                      "        subnet_prefix: 1\n"
                                                                      "        guid: 2\n"
                                                                      "      }\n"
                                                                      "      quota {\n"
                                                                      "        max_osts: 3\n"
                                                                      "        max_qps: 4\n"
                                                                      "      }\n"
                                                                      "      mgid {\n"
                                                                      "        guid: 5\n"
                                                                      "      }\n"
                                                                      "      quota {\n"
                                                                      "        max_qps: 6\n"
                                                                      "      }\n")));
    const vemra_group_data &first = read->groups[0];
    EXPECT_EQ(first.mgid.global.subnet_prefix, 1U);
    EXPECT_EQ(first.mgid.global.interface_id, 5U);
    EXPECT_EQ(first.quota.max_osts, 0U);
    EXPECT_EQ(first.quota.max_qps, 6U);
}

// --- The run of groups and its count -------------------------------------------------------------

TEST(Groups, TheGroupsThatAreThereDecideNotTheCountBeforeThem) {
    for (const char *count : {"0", "1", "3", "255"}) {
        const std::string lines = "    num_groups: " + std::string(count) + "\n" + trees(2);
        const ReadAlloc alloc(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(lines));
        EXPECT_EQ(alloc->num_groups, 2U);
        const ReadRelease release(VEMRA_MSG_TYPE_RELEASE_GROUPS, release_groups(lines));
        EXPECT_EQ(release->num_groups, 2U);
        const ReadData data(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(lines));
        EXPECT_EQ(data->num_groups, 2U);
    }
}

TEST(Groups, ACountBehindTheGroupsOrWithoutAnyIsKept) {
    const ReadAlloc behind(VEMRA_MSG_TYPE_ALLOC_GROUPS,
                           alloc_groups(trees(2) + "    num_groups: 9\n"));
    EXPECT_EQ(behind->num_groups, 9U);
    EXPECT_EQ(tree_ids(*behind), (std::vector<unsigned>{11, 12, 0, 0}));
    const ReadRelease later(VEMRA_MSG_TYPE_RELEASE_GROUPS,
                            release_groups(trees(2) + "    job_id: 1\n    num_groups: 1\n"));
    EXPECT_EQ(later->num_groups, 1U);
    const ReadData alone(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data("    num_groups: 3\n"));
    EXPECT_EQ(alone->num_groups, 3U);
    EXPECT_EQ(tree_ids(*alone), (std::vector<unsigned>{0, 0, 0, 0}));
}

TEST(Groups, FourGroupsFitAndFurtherOnesAreSkippedWithoutAWord) {
    for (const unsigned count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 10U, 21U}) {
        std::vector<unsigned> expected = {0, 0, 0, 0};
        for (unsigned i = 0; i < 4 && i < count; ++i) {
            expected[i] = 11 + i;
        }
        LogCapture log;
        const ReadAlloc alloc(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(trees(count)));
        EXPECT_EQ(alloc->num_groups, count < 4 ? count : 4);
        EXPECT_EQ(tree_ids(*alloc), expected);
        EXPECT_EQ(log.take().size(), count < 4 ? count : 4);
        const ReadRelease release(VEMRA_MSG_TYPE_RELEASE_GROUPS, release_groups(trees(count)));
        EXPECT_EQ(release->num_groups, count < 4 ? count : 4);
        EXPECT_EQ(tree_ids(*release), expected);
        EXPECT_EQ(log.take().size(), count < 4 ? count : 4);
        const ReadData data(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(trees(count)));
        EXPECT_EQ(data->num_groups, count < 4 ? count : 4);
        EXPECT_EQ(tree_ids(*data), expected);
        EXPECT_EQ(log.take().size(), count < 4 ? count : 4);
    }
}

TEST(Groups, AFurtherGroupIsSkippedWithTheBlocksInIt) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data("    num_groups: 9\n" + trees(4) +
                                                                group("      mgid {\n"
                                                                      "        guid: 1\n"
                                                                      "      }\n"
                                                                      "      tree_id: 15\n"
                                                                      "      quota {\n"
                                                                      "      }\n") +
                                                                tree(16) + "    tid: 3\n"));
    EXPECT_EQ(read->num_groups, 4U);
    EXPECT_EQ(tree_ids(*read), (std::vector<unsigned>{11, 12, 13, 14}));
    EXPECT_EQ(read->tid, 3U);
}

TEST(Groups, ALaterRunStartsWithTheFirstGroupAgainAndLeavesThoseItDoesNotReach) {
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS,
                         alloc_groups(group("      subnet_prefix: 1\n"
                                            "      tree_id: 2\n"
                                            "      num_osts: 3\n") +
                                      tree(4) + "    tid: 5\n" + tree(6)));
    EXPECT_EQ(read->num_groups, 1U);
    EXPECT_EQ(read->groups[0].subnet_prefix, 0U);
    EXPECT_EQ(read->groups[0].tree_id, 6U);
    EXPECT_EQ(read->groups[0].num_osts, 0U);
    EXPECT_EQ(read->groups[1].tree_id, 4U);
}

TEST(Groups, ALaterGroupsMgidIsClearedBeforeItIsRead) {
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA, groups_data(group("      mgid {\n"
                                                                      "        guid: 2\n"
                                                                      "      }\n") +
                                                                "    tid: 5\n" +
                                                                group("      mgid {\n"
                                                                      "        subnet_prefix: 1\n"
                                                                      "      }\n")));
    EXPECT_EQ(read->groups[0].mgid.global.subnet_prefix, 1U);
    EXPECT_EQ(read->groups[0].mgid.global.interface_id, 0U);
}

TEST(Groups, ALineThatBeginsWithGroupsOpensAGroup) {
    const ReadRelease read(VEMRA_MSG_TYPE_RELEASE_GROUPS, release_groups("    groups_of_rack_1 {\n"
                                                                         "      tree_id: 1\n"
                                                                         "    }\n"
                                                                         "    groups: 2\n"
                                                                         "      tree_id: 3\n"
                                                                         "    }\n"
                                                                         "    job_id: 4\n"));
    EXPECT_EQ(read->num_groups, 2U);
    EXPECT_EQ(tree_ids(*read), (std::vector<unsigned>{1, 3, 0, 0}));
    EXPECT_EQ(read->job_id, 4U);
}

TEST(Groups, UnknownLinesAndBlocksAreSkippedAtEachLevel) {
    const std::string unknown = "      more: 1\n"
                                "      more {\n"
                                "        tree_id: 1\n"
                                "        job_id: 1\n"
                                "        guid: 1\n"
                                "        max_qps: 1\n"
                                "      }\n";
    const ReadData read(VEMRA_MSG_TYPE_GROUPS_DATA,
                        groups_data(unknown + "    job_id: 2\n" +
                                    group(unknown + "      mgid {\n" + unknown +
                                          "        guid: 3\n"
                                          "      }\n"
                                          "      quota {\n" +
                                          unknown +
                                          "        max_qps: 4\n"
                                          "      }\n"
                                          "      tree_id: 5\n") +
                                    "    tid: 6\n"));
    EXPECT_EQ(read->job_id, 2U);
    EXPECT_EQ(read->num_groups, 1U);
    EXPECT_EQ(read->groups[0].mgid.global.interface_id, 3U);
    EXPECT_EQ(read->groups[0].quota.max_qps, 4U);
    EXPECT_EQ(read->groups[0].tree_id, 5U);
    EXPECT_EQ(read->tid, 6U);
}

// --- The array of processes and its count --------------------------------------------------------

TEST(Groups, TheProcessesThatAreThereDecideNotTheCountBeforeThem) {
    for (const char *count : {"0", "1", "5", "4294967295"}) {
        const ReadAlloc read(
            VEMRA_MSG_TYPE_ALLOC_GROUPS,
            alloc_groups("    num_processes: " + std::string(count) + "\n" + processes(3)));
        EXPECT_EQ(processes_of(*read), (std::vector<uint32_t>{1001, 1002, 1003})) << count;
    }
}

TEST(Groups, ACountBehindTheProcessesIsKept) {
    // Directly behind them, and with another line between.
    for (const char *between : {"", "    tid: 1\n"}) {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS,
                             alloc_groups(processes(3) + between + "    num_processes: 9\n"));
        EXPECT_EQ(read->num_processes, 9U);
        ASSERT_NE(read->processes, nullptr);
        EXPECT_EQ(read->processes[0], 1001U);
        EXPECT_EQ(read->processes[2], 1003U);
    }
}

TEST(Groups, ACountWithoutProcessesIsKept) {
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups("    num_processes: 5\n"));
    EXPECT_EQ(read->num_processes, 5U);
    EXPECT_EQ(read->processes, nullptr);
}

TEST(Groups, ALaterRunOfProcessesReplacesTheEarlierOne) {
    const MemoryWatch watch;
    {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS,
                             alloc_groups(processes(7) + "    tid: 1\n    processes: 8\n"));
        EXPECT_EQ(processes_of(*read), (std::vector<uint32_t>{8}));
        EXPECT_EQ(watch.alive(), 2U); // the record and the later array
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Groups, ALaterRunWithoutOneGoodProcessLeavesNoArray) {
    const MemoryWatch watch;
    {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS,
                             alloc_groups(processes(7) + "    tid: 1\n    processes: x\n"));
        EXPECT_EQ(read->num_processes, 0U);
        EXPECT_EQ(read->processes, nullptr);
        EXPECT_EQ(watch.alive(), 1U); // the record
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Groups, InARunOfProcessesOnlyTheKeyIsTested) {
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups("    processes: 6\n"
                                                                   "    processes: 7 }\n"
                                                                   "    processes_more: 8\n"
                                                                   "    processes:-1\n"
                                                                   "    tid: 9\n"));
    EXPECT_EQ(processes_of(*read), (std::vector<uint32_t>{6, 7, UINT32_MAX}));
    EXPECT_EQ(read->tid, 9U);
}

TEST(Groups, AnyNumberOfProcessesIsReadInOrder) {
    for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 10U, 11U, 20U, 21U, 300U}) {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(processes(count)));
        EXPECT_EQ(read->num_processes, count);
        EXPECT_EQ(processes_of(*read), processes_up_to(count));
    }
}

TEST(Groups, AProcessWithoutMemoryIsDroppedAndTheNextTriesAgain) {
    // Request 0 is the record, 1 the room for 5 processes, 2 for 10, 3 for 20, 4 for 40.
    const unsigned dropped[] = {0, 1001, 1006, 1011, 1021};
    const std::string text = alloc_groups(processes(21));
    MemoryWatch watch;
    watch.fail(0);
    {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, text);
        EXPECT_EQ(read.result(), -1);
    }
    EXPECT_EQ(watch.alive(), 0U);
    for (unsigned request = 1; request <= 4; ++request) {
        watch.fail(request);
        {
            const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, text);
            ASSERT_EQ(read.result(), 0);
            EXPECT_EQ(processes_of(*read), processes_up_to(21, dropped[request]));
        }
        EXPECT_EQ(watch.failed(), 1U);
        EXPECT_EQ(watch.alive(), 0U);
    }
    watch.fail(5);
    {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, text);
        EXPECT_EQ(processes_of(*read), processes_up_to(21));
    }
    EXPECT_EQ(watch.failed(), 0U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Groups, WhenNothingGrowsTheFirst5ProcessesStay) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups(processes(21)));
        EXPECT_EQ(processes_of(*read), processes_up_to(5));
    }
    EXPECT_EQ(watch.failed(), 16U);
    EXPECT_EQ(watch.alive(), 0U);
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

TEST(Groups, ProcessesThatAreDroppedAreNotTraced) {
    LogCapture log;
    MemoryWatch watch;
    watch.fail(1, 2);
    const ReadAlloc read(VEMRA_MSG_TYPE_ALLOC_GROUPS, alloc_groups("    processes: 1\n"
                                                                   "    processes: 2\n"
                                                                   "    processes: x\n"));
    const std::string array = "_kvt_txt_unpack_primptr_uint32_t";
    EXPECT_EQ(read->num_processes, 0U);
    EXPECT_EQ(read->processes, nullptr);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  {array, 6,
                   array + " missmatch, array[processes: x\n  }\n}\n], "
                           "frame_key[processes:%u], value[2]\n"},
                  {array, 6, array + " END prim ptr, num_lements[0x0], array[0][0x0]\n"},
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
