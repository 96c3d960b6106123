// JOB_DATA: daemons, trees, connections, aggregation nodes and queue pair options.
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "kvt/messages/job_data.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_sd_info) == 152);
static_assert(offsetof(vemra_sd_info, version) == 0);
static_assert(offsetof(vemra_sd_info, vemrad_id) == 8);
static_assert(offsetof(vemra_sd_info, addr_type) == 16);
static_assert(offsetof(vemra_sd_info, addr) == 17);
static_assert(sizeof(vemra_sd_info::addr) == 128);

static_assert(sizeof(vemra_tree) == 56);
static_assert(offsetof(vemra_tree, feature_mask) == 0);
static_assert(offsetof(vemra_tree, tree_id) == 8);
static_assert(offsetof(vemra_tree, peer_tree_id) == 10);
static_assert(offsetof(vemra_tree, max_qp_child_idxs) == 12);
static_assert(offsetof(vemra_tree, versions) == 13);
static_assert(offsetof(vemra_tree, mgid) == 16);
static_assert(offsetof(vemra_tree, quota) == 32);
static_assert(offsetof(vemra_tree, control_path_version) == 52);

static_assert(sizeof(vemra_tree_conn) == 208);
static_assert(offsetof(vemra_tree_conn, tree_id) == 0);
static_assert(offsetof(vemra_tree_conn, vemrad_id) == 8);
static_assert(offsetof(vemra_tree_conn, qp_child_idxs) == 16);
static_assert(offsetof(vemra_tree_conn, pr_sd_to_an) == 80);
static_assert(offsetof(vemra_tree_conn, pr_an_to_sd) == 144);

static_assert(sizeof(vemra_tree_an) == 16);
static_assert(offsetof(vemra_tree_an, guid) == 0);
static_assert(offsetof(vemra_tree_an, lid) == 8);
static_assert(offsetof(vemra_tree_an, tree_id) == 10);
static_assert(offsetof(vemra_tree_an, an_id) == 12);
static_assert(offsetof(vemra_tree_an, parent_an_id) == 14);

static_assert(sizeof(vemra_qpc_options) == 16);
static_assert(offsetof(vemra_qpc_options, qkey) == 0);
static_assert(offsetof(vemra_qpc_options, flow_label) == 4);
static_assert(offsetof(vemra_qpc_options, pkey) == 8);
static_assert(offsetof(vemra_qpc_options, sl) == 10);
static_assert(offsetof(vemra_qpc_options, tclass) == 11);
static_assert(offsetof(vemra_qpc_options, rnr_mode) == 12);
static_assert(offsetof(vemra_qpc_options, rnr_retry_limit) == 13);
static_assert(offsetof(vemra_qpc_options, local_ack_timeout) == 14);
static_assert(offsetof(vemra_qpc_options, timeout_retry_limit) == 15);

static_assert(sizeof(vemra_job_data) == 128);
static_assert(offsetof(vemra_job_data, job_id) == 0);
static_assert(offsetof(vemra_job_data, master_vemrad_id) == 8);
static_assert(offsetof(vemra_job_data, vemra_job_id) == 16);
static_assert(offsetof(vemra_job_data, uid) == 20);
static_assert(offsetof(vemra_job_data, hosts_num) == 24);
static_assert(offsetof(vemra_job_data, trees_num) == 28);
static_assert(offsetof(vemra_job_data, conns_num) == 32);
static_assert(offsetof(vemra_job_data, agg_nodes_num) == 40);
static_assert(offsetof(vemra_job_data, qpc_opts) == 48);
static_assert(offsetof(vemra_job_data, sat_qpc_opts) == 64);
static_assert(offsetof(vemra_job_data, hosts_sd_info) == 80);
static_assert(offsetof(vemra_job_data, trees) == 88);
static_assert(offsetof(vemra_job_data, conns) == 96);
static_assert(offsetof(vemra_job_data, agg_nodes) == 104);
static_assert(offsetof(vemra_job_data, job_key) == 112);
static_assert(offsetof(vemra_job_data, reservation_id) == 120);
#endif

const char every_field[] = R"(msg {
  type: JOB_DATA
  job_data {
    job_id: 18446744073709551615
    master_vemrad_id: 9223372036854775809
    vemra_job_id: 4294967295
    uid: 1001
    hosts_num: 2
    trees_num: 1
    conns_num: 1
    agg_nodes_num: 2
    qpc_opts {
      qkey: 4294967295
      flow_label: 1048575
      pkey: 65535
      sl: 1
      tclass: 2
      rnr_mode: 3
      rnr_retry_limit: 4
      local_ack_timeout: 5
      timeout_retry_limit: 255
    }
    sat_qpc_opts {
      qkey: 11
      flow_label: 12
      pkey: 13
      sl: 14
      tclass: 15
      rnr_mode: 16
      rnr_retry_limit: 17
      local_ack_timeout: 18
      timeout_retry_limit: 19
    }
    hosts_sd_info {
      version: 1
      vemrad_id: 21
      addr_type: 2
      addr: "192.0.2.1"
    }
    hosts_sd_info {
      version: 255
      vemrad_id: 18446744073709551615
      addr_type: 3
      addr: "2001:db8::2"
    }
    trees {
      feature_mask: 9223372036854775808
      tree_id: 512
      peer_tree_id: 65535
      max_qp_child_idxs: 64
      versions: 7
      mgid {
        subnet_prefix: 31
        guid: 32
      }
      quota {
        max_osts: 33
        user_data_per_ost: 34
        max_buffers: 35
        max_groups: 36
        max_qps: 37
      }
      control_path_version: 38
    }
    conns {
      tree_id: 512
      vemrad_id: 21
      qp_child_idxs: 4
      qp_child_idxs: 0
      qp_child_idxs: 254
      pr_sd_to_an {
        dgid {
          subnet_prefix: 41
          guid: 42
        }
        sgid {
          subnet_prefix: 43
          guid: 44
        }
        dlid: 45
      }
      pr_an_to_sd {
        dgid {
          subnet_prefix: 43
          guid: 44
        }
        sgid {
          subnet_prefix: 41
          guid: 42
        }
        slid: 45
      }
    }
    agg_nodes {
      guid: 18446744073709551614
      lid: 51
      tree_id: 52
      an_id: 53
      parent_an_id: 54
    }
    agg_nodes {
      guid: 61
      lid: 65535
      tree_id: 65534
      an_id: 65533
      parent_an_id: 65532
    }
    job_key: 71
    reservation_id: 72
  }
}
)";

std::string job_data(const std::string &lines) {
    return message_text("JOB_DATA", "  job_data {\n" + lines + "  }\n");
}

/// The two blocks that every written message has.
const std::string no_options = "    qpc_opts {\n    }\n    sat_qpc_opts {\n    }\n";

/// What every written tree has behind its first lines, and every connection.
const std::string no_mgid_no_quota = "      mgid {\n      }\n      quota {\n      }\n";
const std::string no_paths = "      pr_sd_to_an {\n        dgid {\n        }\n        sgid {\n"
                             "        }\n      }\n"
                             "      pr_an_to_sd {\n        dgid {\n        }\n        sgid {\n"
                             "        }\n      }\n";

std::string written(const vemra_job_data &record) {
    return to_text(VEMRA_MSG_TYPE_JOB_DATA, record);
}

struct ReadData : ReadMessage<vemra_job_data> {
    explicit ReadData(const std::string &text)
        : ReadMessage<vemra_job_data>(VEMRA_MSG_TYPE_JOB_DATA, text) {}
};

std::string block(const std::string &name, const std::string &lines) {
    return "    " + name + " {\n" + lines + "    }\n";
}

// --- Writing and reading -------------------------------------------------------------------------

TEST(JobData, IsWrittenToTheLetter) {
    vemra_sd_info hosts[2] = {
        {.version = 1, .vemrad_id = 21, .addr_type = 2, .addr = "192.0.2.1"},
        {.version = 255, .vemrad_id = UINT64_MAX, .addr_type = 3, .addr = "2001:db8::2"}};
    vemra_tree tree = {};
    tree.feature_mask = 9223372036854775808U;
    tree.tree_id = 512;
    tree.peer_tree_id = 65535;
    tree.max_qp_child_idxs = 64;
    tree.versions[0] = 7;
    tree.mgid.global.subnet_prefix = 31;
    tree.mgid.global.interface_id = 32;
    tree.quota = {.max_osts = 33,
                  .user_data_per_ost = 34,
                  .max_buffers = 35,
                  .max_groups = 36,
                  .max_qps = 37};
    tree.control_path_version = 38;
    vemra_tree_conn conn = {};
    conn.tree_id = 512;
    conn.vemrad_id = 21;
    std::memset(conn.qp_child_idxs, 255, sizeof conn.qp_child_idxs);
    conn.qp_child_idxs[0] = 4;
    conn.qp_child_idxs[1] = 0;
    conn.qp_child_idxs[2] = 254;
    conn.pr_sd_to_an.dgid.global.subnet_prefix = 41;
    conn.pr_sd_to_an.dgid.global.interface_id = 42;
    conn.pr_sd_to_an.sgid.global.subnet_prefix = 43;
    conn.pr_sd_to_an.sgid.global.interface_id = 44;
    conn.pr_sd_to_an.dlid = 45;
    conn.pr_an_to_sd.dgid = conn.pr_sd_to_an.sgid;
    conn.pr_an_to_sd.sgid = conn.pr_sd_to_an.dgid;
    conn.pr_an_to_sd.slid = 45;
    vemra_tree_an nodes[2] = {
        {.guid = UINT64_MAX - 1, .lid = 51, .tree_id = 52, .an_id = 53, .parent_an_id = 54},
        {.guid = 61, .lid = 65535, .tree_id = 65534, .an_id = 65533, .parent_an_id = 65532}};
    const vemra_job_data record = {.job_id = UINT64_MAX,
                                   .master_vemrad_id = 9223372036854775809U,
                                   .vemra_job_id = UINT32_MAX,
                                   .uid = 1001,
                                   .hosts_num = 2,
                                   .trees_num = 1,
                                   .conns_num = 1,
                                   .agg_nodes_num = 2,
                                   .qpc_opts = {.qkey = UINT32_MAX,
                                                .flow_label = 1048575,
                                                .pkey = 65535,
                                                .sl = 1,
                                                .tclass = 2,
                                                .rnr_mode = 3,
                                                .rnr_retry_limit = 4,
                                                .local_ack_timeout = 5,
                                                .timeout_retry_limit = 255},
                                   .sat_qpc_opts = {.qkey = 11,
                                                    .flow_label = 12,
                                                    .pkey = 13,
                                                    .sl = 14,
                                                    .tclass = 15,
                                                    .rnr_mode = 16,
                                                    .rnr_retry_limit = 17,
                                                    .local_ack_timeout = 18,
                                                    .timeout_retry_limit = 19},
                                   .hosts_sd_info = hosts,
                                   .trees = &tree,
                                   .conns = &conn,
                                   .agg_nodes = nodes,
                                   .job_key = 71,
                                   .reservation_id = 72};
    EXPECT_EQ(written(record), every_field);
}

TEST(JobData, ReadsEveryField) {
    const ReadData read(every_field);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, UINT64_MAX);
    EXPECT_EQ(read->master_vemrad_id, 9223372036854775809U);
    EXPECT_EQ(read->vemra_job_id, UINT32_MAX);
    EXPECT_EQ(read->uid, 1001U);
    EXPECT_EQ(read->job_key, 71U);
    EXPECT_EQ(read->reservation_id, 72U);

    EXPECT_EQ(read->qpc_opts.qkey, UINT32_MAX);
    EXPECT_EQ(read->qpc_opts.flow_label, 1048575U);
    EXPECT_EQ(read->qpc_opts.pkey, 65535U);
    EXPECT_EQ(read->qpc_opts.sl, 1U);
    EXPECT_EQ(read->qpc_opts.tclass, 2U);
    EXPECT_EQ(read->qpc_opts.rnr_mode, 3U);
    EXPECT_EQ(read->qpc_opts.rnr_retry_limit, 4U);
    EXPECT_EQ(read->qpc_opts.local_ack_timeout, 5U);
    EXPECT_EQ(read->qpc_opts.timeout_retry_limit, 255U);
    EXPECT_EQ(read->sat_qpc_opts.qkey, 11U);
    EXPECT_EQ(read->sat_qpc_opts.flow_label, 12U);
    EXPECT_EQ(read->sat_qpc_opts.pkey, 13U);
    EXPECT_EQ(read->sat_qpc_opts.sl, 14U);
    EXPECT_EQ(read->sat_qpc_opts.tclass, 15U);
    EXPECT_EQ(read->sat_qpc_opts.rnr_mode, 16U);
    EXPECT_EQ(read->sat_qpc_opts.rnr_retry_limit, 17U);
    EXPECT_EQ(read->sat_qpc_opts.local_ack_timeout, 18U);
    EXPECT_EQ(read->sat_qpc_opts.timeout_retry_limit, 19U);

    ASSERT_EQ(read->hosts_num, 2U);
    EXPECT_EQ(read->hosts_sd_info[0].version, 1U);
    EXPECT_EQ(read->hosts_sd_info[0].vemrad_id, 21U);
    EXPECT_EQ(read->hosts_sd_info[0].addr_type, 2U);
    EXPECT_STREQ(read->hosts_sd_info[0].addr, "192.0.2.1");
    EXPECT_EQ(read->hosts_sd_info[1].version, 255U);
    EXPECT_EQ(read->hosts_sd_info[1].vemrad_id, UINT64_MAX);
    EXPECT_EQ(read->hosts_sd_info[1].addr_type, 3U);
    EXPECT_STREQ(read->hosts_sd_info[1].addr, "2001:db8::2");

    ASSERT_EQ(read->trees_num, 1U);
    const vemra_tree &tree = read->trees[0];
    EXPECT_EQ(tree.feature_mask, 9223372036854775808U);
    EXPECT_EQ(tree.tree_id, 512U);
    EXPECT_EQ(tree.peer_tree_id, 65535U);
    EXPECT_EQ(tree.max_qp_child_idxs, 64U);
    EXPECT_EQ(tree.versions[0], 7U);
    EXPECT_EQ(tree.mgid.global.subnet_prefix, 31U);
    EXPECT_EQ(tree.mgid.global.interface_id, 32U);
    EXPECT_EQ(tree.quota.max_osts, 33U);
    EXPECT_EQ(tree.quota.user_data_per_ost, 34U);
    EXPECT_EQ(tree.quota.max_buffers, 35U);
    EXPECT_EQ(tree.quota.max_groups, 36U);
    EXPECT_EQ(tree.quota.max_qps, 37U);
    EXPECT_EQ(tree.control_path_version, 38U);

    ASSERT_EQ(read->conns_num, 1U);
    const vemra_tree_conn &conn = read->conns[0];
    EXPECT_EQ(conn.tree_id, 512U);
    EXPECT_EQ(conn.vemrad_id, 21U);
    EXPECT_EQ(conn.qp_child_idxs[0], 4U);
    EXPECT_EQ(conn.qp_child_idxs[1], 0U);
    EXPECT_EQ(conn.qp_child_idxs[2], 254U);
    EXPECT_EQ(conn.pr_sd_to_an.dgid.global.subnet_prefix, 41U);
    EXPECT_EQ(conn.pr_sd_to_an.dgid.global.interface_id, 42U);
    EXPECT_EQ(conn.pr_sd_to_an.sgid.global.subnet_prefix, 43U);
    EXPECT_EQ(conn.pr_sd_to_an.sgid.global.interface_id, 44U);
    EXPECT_EQ(conn.pr_sd_to_an.dlid, 45U);
    EXPECT_EQ(conn.pr_an_to_sd.dgid.global.subnet_prefix, 43U);
    EXPECT_EQ(conn.pr_an_to_sd.dgid.global.interface_id, 44U);
    EXPECT_EQ(conn.pr_an_to_sd.sgid.global.subnet_prefix, 41U);
    EXPECT_EQ(conn.pr_an_to_sd.sgid.global.interface_id, 42U);
    EXPECT_EQ(conn.pr_an_to_sd.slid, 45U);

    ASSERT_EQ(read->agg_nodes_num, 2U);
    EXPECT_EQ(read->agg_nodes[0].guid, UINT64_MAX - 1);
    EXPECT_EQ(read->agg_nodes[0].lid, 51U);
    EXPECT_EQ(read->agg_nodes[0].tree_id, 52U);
    EXPECT_EQ(read->agg_nodes[0].an_id, 53U);
    EXPECT_EQ(read->agg_nodes[0].parent_an_id, 54U);
    EXPECT_EQ(read->agg_nodes[1].guid, 61U);
    EXPECT_EQ(read->agg_nodes[1].lid, 65535U);
    EXPECT_EQ(read->agg_nodes[1].tree_id, 65534U);
    EXPECT_EQ(read->agg_nodes[1].an_id, 65533U);
    EXPECT_EQ(read->agg_nodes[1].parent_an_id, 65532U);
}

TEST(JobData, ZeroIsWrittenAsTheTwoEmptyBlocksOfOptions) {
    const std::string text = job_data("    qpc_opts {\n"
                                      "    }\n"
                                      "    sat_qpc_opts {\n"
                                      "    }\n");
    vemra_job_data zero;
    std::memset(&zero, 0, sizeof zero);
    EXPECT_EQ(written(zero), text);
    const ReadData read(text);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(std::memcmp(&*read, &zero, sizeof zero), 0);
}

TEST(JobData, ElementsOfZerosTellTheirBlocksAlone) {
    vemra_sd_info host = {};
    vemra_tree tree = {};
    vemra_tree_conn conn = {};
    conn.qp_child_idxs[0] = 255;
    vemra_tree_an node = {};
    vemra_job_data record = {};
    record.hosts_num = record.trees_num = record.conns_num = 1;
    record.agg_nodes_num = 1;
    record.hosts_sd_info = &host;
    record.trees = &tree;
    record.conns = &conn;
    record.agg_nodes = &node;
    EXPECT_EQ(written(record), job_data("    hosts_num: 1\n"
                                        "    trees_num: 1\n"
                                        "    conns_num: 1\n"
                                        "    agg_nodes_num: 1\n"
                                        "    qpc_opts {\n"
                                        "    }\n"
                                        "    sat_qpc_opts {\n"
                                        "    }\n"
                                        "    hosts_sd_info {\n"
                                        "    }\n"
                                        "    trees {\n"
                                        "      mgid {\n"
                                        "      }\n"
                                        "      quota {\n"
                                        "      }\n"
                                        "    }\n"
                                        "    conns {\n"
                                        "      pr_sd_to_an {\n"
                                        "        dgid {\n"
                                        "        }\n"
                                        "        sgid {\n"
                                        "        }\n"
                                        "      }\n"
                                        "      pr_an_to_sd {\n"
                                        "        dgid {\n"
                                        "        }\n"
                                        "        sgid {\n"
                                        "        }\n"
                                        "      }\n"
                                        "    }\n"
                                        "    agg_nodes {\n"
                                        "    }\n"));
}

TEST(JobData, OptionsTellOnlyWhatIsNotZero) {
    vemra_job_data record = {};
    record.qpc_opts.tclass = 3;
    record.sat_qpc_opts.local_ack_timeout = 14;
    EXPECT_EQ(written(record), job_data("    qpc_opts {\n      tclass: 3\n    }\n"
                                        "    sat_qpc_opts {\n      local_ack_timeout: 14\n"
                                        "    }\n"));
}

TEST(JobData, SecondOptionsOfOneNameReplaceTheFirst) {
    const ReadData read(job_data("    qpc_opts {\n      qkey: 1\n      sl: 2\n    }\n"
                                 "    qpc_opts {\n      sl: 3\n    }\n"));
    EXPECT_EQ(read->qpc_opts.qkey, 0U);
    EXPECT_EQ(read->qpc_opts.sl, 3U);
    EXPECT_EQ(read->sat_qpc_opts.sl, 0U);
}

TEST(JobData, LinesAndBlocksMayComeInReversedOrder) {
    const ReadData read(job_data(R"(    reservation_id: 72
    job_key: 71
    agg_nodes {
      parent_an_id: 5
      an_id: 4
      tree_id: 3
      lid: 2
      guid: 1
    }
    conns {
      pr_an_to_sd {
        sl: 9
      }
      pr_sd_to_an {
        sl: 8
      }
      qp_child_idxs: 7
      qp_child_idxs: 255
      vemrad_id: 6
      tree_id: 5
    }
    trees {
      control_path_version: 8
      quota {
        max_qps: 7
      }
      mgid {
        guid: 6
        subnet_prefix: 5
      }
      versions: 4
      max_qp_child_idxs: 3
      peer_tree_id: 2
      tree_id: 1
      feature_mask: 9
    }
    hosts_sd_info {
      addr: "a"
      addr_type: 1
      vemrad_id: 2
      version: 3
    }
    sat_qpc_opts {
      timeout_retry_limit: 9
      local_ack_timeout: 8
      rnr_retry_limit: 7
      rnr_mode: 6
      tclass: 5
      sl: 4
      pkey: 3
      flow_label: 2
      qkey: 1
    }
    qpc_opts {
      qkey: 10
    }
    uid: 4
    vemra_job_id: 3
    master_vemrad_id: 2
    job_id: 1
)"));
    EXPECT_EQ(written(*read), job_data(R"(    job_id: 1
    master_vemrad_id: 2
    vemra_job_id: 3
    uid: 4
    hosts_num: 1
    trees_num: 1
    conns_num: 1
    agg_nodes_num: 1
    qpc_opts {
      qkey: 10
    }
    sat_qpc_opts {
      qkey: 1
      flow_label: 2
      pkey: 3
      sl: 4
      tclass: 5
      rnr_mode: 6
      rnr_retry_limit: 7
      local_ack_timeout: 8
      timeout_retry_limit: 9
    }
    hosts_sd_info {
      version: 3
      vemrad_id: 2
      addr_type: 1
      addr: "a"
    }
    trees {
      feature_mask: 9
      tree_id: 1
      peer_tree_id: 2
      max_qp_child_idxs: 3
      versions: 4
      mgid {
        subnet_prefix: 5
        guid: 6
      }
      quota {
        max_qps: 7
      }
      control_path_version: 8
    }
    conns {
      tree_id: 5
      vemrad_id: 6
      qp_child_idxs: 7
      pr_sd_to_an {
        dgid {
        }
        sgid {
        }
        sl: 8
      }
      pr_an_to_sd {
        dgid {
        }
        sgid {
        }
        sl: 9
      }
    }
    agg_nodes {
      guid: 1
      lid: 2
      tree_id: 3
      an_id: 4
      parent_an_id: 5
    }
    job_key: 71
    reservation_id: 72
)"));
}

TEST(JobData, ValuesThatDoNotScanLeaveZeroAndAreStillTaken) {
    const ReadData read(job_data("    job_id: x\n"
                                 "    vemra_job_id 4\n"
                                 "    uid: -\n"
                                 "    trees {\n"
                                 "      tree_id: {\n"
                                 "      peer_tree_id: 2\n"
                                 "    }\n"
                                 "    job_key: 5\n"));
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->vemra_job_id, 0U);
    EXPECT_EQ(read->uid, 0U);
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].tree_id, 0U);
    EXPECT_EQ(read->trees[0].peer_tree_id, 2U);
    EXPECT_EQ(read->job_key, 5U);
}

// --- Texts and byte arrays of elements -----------------------------------------------------------

TEST(JobData, AddrTypeIsNeverTakenForAddr) {
    const std::string type = "      addr_type: 4\n";
    const std::string addr = "      addr: \"192.0.2.1\"\n";
    for (const std::string &lines : {type + addr, addr + type}) {
        const ReadData read(job_data(block("hosts_sd_info", lines)));
        ASSERT_EQ(read->hosts_num, 1U);
        EXPECT_EQ(read->hosts_sd_info[0].addr_type, 4U);
        EXPECT_STREQ(read->hosts_sd_info[0].addr, "192.0.2.1");
    }
    const ReadData alone(job_data(block("hosts_sd_info", type)));
    EXPECT_EQ(alone->hosts_sd_info[0].addr_type, 4U);
    EXPECT_STREQ(alone->hosts_sd_info[0].addr, "");
}

TEST(JobData, AHostWithoutAddressHasNoAddrLine) {
    vemra_sd_info host = {.version = 1, .vemrad_id = 2, .addr_type = 3, .addr = ""};
    vemra_job_data record = {};
    record.hosts_num = 1;
    record.hosts_sd_info = &host;
    EXPECT_EQ(written(record),
              job_data("    hosts_num: 1\n" + no_options +
                       "    hosts_sd_info {\n      version: 1\n      vemrad_id: 2\n"
                       "      addr_type: 3\n    }\n"));
}

TEST(JobData, AnAddressOf127CharactersFitsAndALongerOneIsCut) {
    for (const size_t length : {126U, 127U, 128U, 199U, 200U, 3000U}) {
        const ReadData read(
            job_data(block("hosts_sd_info", "      addr: \"" + std::string(length, 'a') +
                                                "\"\n      version: 3\n")));
        ASSERT_EQ(read->hosts_num, 1U);
        EXPECT_EQ(std::string(read->hosts_sd_info[0].addr),
                  std::string(length < 127 ? length : 127, 'a'));
        EXPECT_EQ(read->hosts_sd_info[0].version, 3U);
    }
}

TEST(JobData, AnAddressThatFillsItsFieldIsWrittenWhole) {
    vemra_sd_info host = {};
    std::memset(host.addr, 'a', sizeof host.addr);
    vemra_job_data record = {};
    record.hosts_num = 1;
    record.hosts_sd_info = &host;
    EXPECT_EQ(written(record),
              job_data("    hosts_num: 1\n" + no_options +
                       block("hosts_sd_info", "      addr: \"" + std::string(128, 'a') + "\"\n")));
}

TEST(JobData, ASecondAddressCountsAndAFailedOneLeavesNone) {
    const ReadData second(job_data(
        block("hosts_sd_info", "      addr: \"first\"\n      addr: \"2nd\"\n      version: 1\n")));
    EXPECT_STREQ(second->hosts_sd_info[0].addr, "2nd");
    const ReadData failed(job_data(
        block("hosts_sd_info", "      addr: \"first\"\n      addr: \"\"\n      version: 1\n")));
    EXPECT_STREQ(failed->hosts_sd_info[0].addr, "");
    EXPECT_EQ(failed->hosts_sd_info[0].version, 1U);
}

std::string conn_with_indexes(const std::vector<unsigned> &indexes) {
    std::string lines;
    for (const unsigned index : indexes) {
        lines += "      qp_child_idxs: " + std::to_string(index) + "\n";
    }
    return job_data("    conns_num: 1\n" + no_options + block("conns", lines + no_paths));
}

TEST(JobData, ChildIndexesAreWrittenUpToTheFirst255) {
    vemra_tree_conn conn = {};
    vemra_job_data record = {};
    record.conns_num = 1;
    record.conns = &conn;
    conn.qp_child_idxs[0] = 4;
    conn.qp_child_idxs[1] = 9;
    conn.qp_child_idxs[2] = 255;
    conn.qp_child_idxs[3] = 1;
    EXPECT_EQ(written(record), conn_with_indexes({4, 9}));
    conn.qp_child_idxs[0] = 255;
    EXPECT_EQ(written(record), conn_with_indexes({}));
    std::vector<unsigned> all;
    for (unsigned i = 0; i < 64; ++i) {
        conn.qp_child_idxs[i] = static_cast<uint8_t>(254 - i);
        all.push_back(254 - i);
    }
    EXPECT_EQ(written(record), conn_with_indexes(all));
}

TEST(JobData, ChildIndexesThatAreNotThereAreReadAsZero) {
    const ReadData read(conn_with_indexes({4, 9}));
    ASSERT_EQ(read->conns_num, 1U);
    const uint8_t expected[64] = {4, 9};
    EXPECT_EQ(std::memcmp(read->conns[0].qp_child_idxs, expected, 64), 0);
}

TEST(JobData, AtMost64ChildIndexesAreTaken) {
    for (const unsigned count : {1U, 4U, 5U, 6U, 63U, 64U, 65U, 70U}) {
        std::vector<unsigned> indexes;
        uint8_t expected[64] = {};
        for (unsigned i = 0; i < count; ++i) {
            indexes.push_back(255 - i);
            if (i < 64) {
                expected[i] = static_cast<uint8_t>(255 - i);
            }
        }
        const ReadData read(conn_with_indexes(indexes));
        ASSERT_EQ(read->conns_num, 1U);
        EXPECT_EQ(std::memcmp(read->conns[0].qp_child_idxs, expected, 64), 0);
        EXPECT_EQ(read->conns[0].pr_sd_to_an.dlid, 0U);
    }
}

TEST(JobData, EveryRunOfChildIndexesClearsThemAll) {
    const ReadData read(job_data(block("conns", "      qp_child_idxs: 4\n"
                                                "      qp_child_idxs: 9\n"
                                                "      tree_id: 1\n"
                                                "      qp_child_idxs: 5\n")));
    ASSERT_EQ(read->conns_num, 1U);
    const uint8_t expected[64] = {5};
    EXPECT_EQ(std::memcmp(read->conns[0].qp_child_idxs, expected, 64), 0);
}

TEST(JobData, AChildIndexThatDoesNotScanIsZeroAndTakesItsPlace) {
    const ReadData read(job_data(block("conns", "      qp_child_idxs: 4\n"
                                                "      qp_child_idxs: x\n"
                                                "      qp_child_idxs 8\n"
                                                "      qp_child_idxs: 261\n"
                                                "      tree_id: 1\n")));
    ASSERT_EQ(read->conns_num, 1U);
    const uint8_t expected[64] = {4, 0, 0, 5};
    EXPECT_EQ(std::memcmp(read->conns[0].qp_child_idxs, expected, 64), 0);
    EXPECT_EQ(read->conns[0].tree_id, 1U);
}

TEST(JobData, AVersionOfZeroHasNoLine) {
    vemra_tree tree = {};
    vemra_job_data record = {};
    record.trees_num = 1;
    record.trees = &tree;
    EXPECT_EQ(written(record),
              job_data("    trees_num: 1\n" + no_options + block("trees", no_mgid_no_quota)));
    tree.versions[0] = 255;
    EXPECT_EQ(written(record),
              job_data("    trees_num: 1\n" + no_options +
                       block("trees", "      versions: 255\n" + no_mgid_no_quota)));
}

TEST(JobData, OnlyTheFirstVersionOfARunIsTaken) {
    const ReadData read(job_data(block("trees", "      versions: 3\n"
                                                "      versions: 4\n"
                                                "      versions: 5\n"
                                                "      tree_id: 1\n")));
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].versions[0], 3U);
    EXPECT_EQ(read->trees[0].tree_id, 1U);
}

TEST(JobData, ALaterVersionOverwritesTheFirstAndOneThatDoesNotScanStoresZero) {
    const ReadData later(job_data(block("trees", "      versions: 3\n"
                                                 "      tree_id: 1\n"
                                                 "      versions: 4\n")));
    EXPECT_EQ(later->trees[0].versions[0], 4U);
    const ReadData failed(job_data(block("trees", "      versions: 3\n"
                                                  "      tree_id: 1\n"
                                                  "      versions: x\n")));
    EXPECT_EQ(failed->trees[0].versions[0], 0U);
}

TEST(JobData, KeysThatEndAsOthersKeepApart) {
    const ReadData read(job_data("    vemra_job_id: 1\n"
                                 "    sat_qpc_opts {\n      sl: 2\n    }\n" +
                                 block("trees", "      peer_tree_id: 3\n") +
                                 block("agg_nodes", "      parent_an_id: 4\n")));
    EXPECT_EQ(read->vemra_job_id, 1U);
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->sat_qpc_opts.sl, 2U);
    EXPECT_EQ(read->qpc_opts.sl, 0U);
    EXPECT_EQ(read->trees[0].peer_tree_id, 3U);
    EXPECT_EQ(read->trees[0].tree_id, 0U);
    EXPECT_EQ(read->agg_nodes[0].parent_an_id, 4U);
    EXPECT_EQ(read->agg_nodes[0].an_id, 0U);
}

TEST(JobData, ASecondQuotaOfATreeReplacesTheFirstAndASecondGroupAddsToIt) {
    const ReadData read(job_data(block("trees", "      quota {\n        max_osts: 1\n      }\n"
                                                "      mgid {\n        guid: 2\n      }\n"
                                                "      quota {\n        max_qps: 3\n      }\n"
                                                "      mgid {\n        subnet_prefix: 4\n"
                                                "      }\n")));
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].quota.max_osts, 0U);
    EXPECT_EQ(read->trees[0].quota.max_qps, 3U);
    EXPECT_EQ(read->trees[0].mgid.global.interface_id, 2U);
    EXPECT_EQ(read->trees[0].mgid.global.subnet_prefix, 4U);
}

// --- Lines that belong to no key, and ends -------------------------------------------------------

TEST(JobData, AnUnknownBlockInAConnectionIsSkippedWhole) {
    LogCapture log;
    const ReadData read(job_data(block("conns", "      tree_id: 1\n"
                                                "      extra {\n"
                                                "        vemrad_id: 98\n"
                                                "        deeper {\n"
                                                "        }\n"
                                                "      }\n"
                                                "      vemrad_id: 2\n")));
    ASSERT_EQ(read->conns_num, 1U);
    EXPECT_EQ(read->conns[0].vemrad_id, 2U);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "_kvt_txt_unpack_msg_vemra_tree_conn p_msg->tree_id[0x1]\n",
                               "_kvt_txt_unpack_msg_vemra_tree_conn mismatch, "
                               "txt_msg[extra {\n        vemrad_id: 98\n        deeper {\n   ]\n",
                               "_kvt_txt_unpack_msg_vemra_tree_conn p_msg->vemrad_id[0x2]\n",
                           }));
}

TEST(JobData, UnknownLinesAndBlocksAreSkippedEverywhere) {
    const std::string unknown = "colour: 5\n  extra {\n  uid: 9\n  sl: 9\n  tree_id: 9\n"
                                "  version: 9\n  }\n";
    const ReadData read(job_data(unknown + "qpc_opts {\n" + unknown + "sl: 1\n}\n" + //
                                 "hosts_sd_info {\n" + unknown + "version: 2\n}\n" + //
                                 "trees {\n" + unknown + "tree_id: 3\n}\n" +         //
                                 "agg_nodes {\n" + unknown + "tree_id: 4\n}\n" +     //
                                 "uid: 5\n"));
    EXPECT_EQ(read->qpc_opts.sl, 1U);
    ASSERT_EQ(read->hosts_num, 1U);
    EXPECT_EQ(read->hosts_sd_info[0].version, 2U);
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].tree_id, 3U);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_EQ(read->agg_nodes[0].tree_id, 4U);
    EXPECT_EQ(read->uid, 5U);
}

TEST(JobData, AnUnknownBlockOfOneLineEndsTheElementThatHoldsIt) {
    const ReadData read(job_data("    trees {\n      tree_id: 1\n      extra { }\n"
                                 "    uid: 4\n"
                                 "    job_key: 9\n"));
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].tree_id, 1U);
    EXPECT_EQ(read->uid, 4U);
    EXPECT_EQ(read->job_key, 9U);
}

// --- Traces --------------------------------------------------------------------------------------

const std::string data_reader = "_kvt_txt_unpack_msg_vemra_job_data";
const std::string options_reader = "_kvt_txt_unpack_msg_vemra_qpc_options";
const std::string host_reader = "_kvt_txt_unpack_msg_vemra_sd_info";
const std::string tree_reader = "_kvt_txt_unpack_msg_vemra_tree";
const std::string quota_reader = "_kvt_txt_unpack_msg_vemra_quota";
const std::string conn_reader = "_kvt_txt_unpack_msg_vemra_tree_conn";
const std::string node_reader = "_kvt_txt_unpack_msg_vemra_tree_an";
const std::string text_reader = "_kvt_txt_unpack_primarray_char";
const std::string byte_reader = "_kvt_txt_unpack_primarray_uint8_t";

/// What a reader traces, behind its name.
LogLine traced(const std::string &reader, const std::string &text) {
    return {reader, 6, reader + " " + text + "\n"};
}

TEST(JobData, EveryFieldIsTracedInTheOrderOfTheText) {
    LogCapture log;
    const ReadData read(every_field);
    EXPECT_EQ(
        log.take(),
        (std::vector<LogLine>{
            traced(data_reader, "p_msg->job_id[0xffffffff]"),
            traced(data_reader, "p_msg->master_vemrad_id[0x1]"),
            traced(data_reader, "p_msg->vemra_job_id[0xffffffff]"),
            traced(data_reader, "p_msg->uid[0x3e9]"),
            traced(data_reader, "p_msg->hosts_num[0x2]"),
            traced(data_reader, "p_msg->trees_num[0x1]"),
            traced(data_reader, "p_msg->conns_num[0x1]"),
            traced(data_reader, "p_msg->agg_nodes_num[0x2]"),
            traced(options_reader, "p_msg->qkey[0xffffffff]"),
            traced(options_reader, "p_msg->flow_label[0xfffff]"),
            traced(options_reader, "p_msg->pkey[0xffff]"),
            traced(options_reader, "p_msg->sl[0x1]"),
            traced(options_reader, "p_msg->tclass[0x2]"),
            traced(options_reader, "p_msg->rnr_mode[0x3]"),
            traced(options_reader, "p_msg->rnr_retry_limit[0x4]"),
            traced(options_reader, "p_msg->local_ack_timeout[0x5]"),
            traced(options_reader, "p_msg->timeout_retry_limit[0xff]"),
            traced(options_reader, "p_msg->qkey[0xb]"),
            traced(options_reader, "p_msg->flow_label[0xc]"),
            traced(options_reader, "p_msg->pkey[0xd]"),
            traced(options_reader, "p_msg->sl[0xe]"),
            traced(options_reader, "p_msg->tclass[0xf]"),
            traced(options_reader, "p_msg->rnr_mode[0x10]"),
            traced(options_reader, "p_msg->rnr_retry_limit[0x11]"),
            traced(options_reader, "p_msg->local_ack_timeout[0x12]"),
            traced(options_reader, "p_msg->timeout_retry_limit[0x13]"),
            traced(host_reader, "p_msg->version[0x1]"),
            traced(host_reader, "p_msg->vemrad_id[0x15]"),
            traced(host_reader, "p_msg->addr_type[0x2]"),
            traced(text_reader, "txt unpack value[192.0.2.1]"),
            traced(host_reader, "p_msg->version[0xff]"),
            traced(host_reader, "p_msg->vemrad_id[0xffffffff]"),
            traced(host_reader, "p_msg->addr_type[0x3]"),
            traced(text_reader, "txt unpack value[2001:db8::2]"),
            traced(tree_reader, "p_msg->feature_mask[0x0]"),
            traced(tree_reader, "p_msg->tree_id[0x200]"),
            traced(tree_reader, "p_msg->peer_tree_id[0xffff]"),
            traced(tree_reader, "p_msg->max_qp_child_idxs[0x40]"),
            traced(byte_reader, "txt unpack value[0x7]"),
            traced(quota_reader, "p_msg->max_osts[0x21]"),
            traced(quota_reader, "p_msg->user_data_per_ost[0x22]"),
            traced(quota_reader, "p_msg->max_buffers[0x23]"),
            traced(quota_reader, "p_msg->max_groups[0x24]"),
            traced(quota_reader, "p_msg->max_qps[0x25]"),
            traced(tree_reader, "p_msg->control_path_version[0x26]"),
            traced(conn_reader, "p_msg->tree_id[0x200]"),
            traced(conn_reader, "p_msg->vemrad_id[0x15]"),
            traced(byte_reader, "txt unpack value[0x4]"),
            traced(byte_reader, "txt unpack value[0x0]"),
            traced(byte_reader, "txt unpack value[0xfe]"),
            traced(byte_reader,
                   "END ARRAY, key[qp_child_idxs] array[pr_sd_to_an {\n        dgid {\n          "
                   "subnet_pref]"),
            traced(node_reader, "p_msg->guid[0xfffffffe]"),
            traced(node_reader, "p_msg->lid[0x33]"),
            traced(node_reader, "p_msg->tree_id[0x34]"),
            traced(node_reader, "p_msg->an_id[0x35]"),
            traced(node_reader, "p_msg->parent_an_id[0x36]"),
            traced(node_reader, "p_msg->guid[0x3d]"),
            traced(node_reader, "p_msg->lid[0xffff]"),
            traced(node_reader, "p_msg->tree_id[0xfffe]"),
            traced(node_reader, "p_msg->an_id[0xfffd]"),
            traced(node_reader, "p_msg->parent_an_id[0xfffc]"),
            traced(data_reader, "p_msg->job_key[0x47]"),
            traced(data_reader, "p_msg->reservation_id[0x48]"),
        }));
}

TEST(JobData, UnknownLinesAreTracedByTheReaderThatMeetsThem) {
    LogCapture log;
    const ReadData read(
        job_data("unknown_line_of_the_whole_message_0123456789_x: 1\n"
                 "qpc_opts {\nunknown_line_of_options_0123456789_0123456789_x: 1\n"
                 "}\n"
                 "hosts_sd_info {\nunknown_line_of_a_host_0123456789_0123456789_xx: "
                 "1\n}\n"
                 "trees {\nunknown_line_of_a_tree_0123456789_0123456789_xx: 1\n}\n"
                 "conns {\nunknown_line_of_a_conn_0123456789_0123456789_xx: 1\n}\n"
                 "agg_nodes {\nunknown_line_of_a_node_0123456789_0123456789_xx: 1\n"
                 "}\n"));
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  traced(data_reader,
                         "mismatch, txt_msg[unknown_line_of_the_whole_message_0123456789_x: 1\n]"),
                  traced(options_reader,
                         "mismatch, txt_msg[unknown_line_of_options_0123456789_0123456789_x: 1]"),
                  traced(host_reader,
                         "mismatch, txt_msg[unknown_line_of_a_host_0123456789_0123456789_xx: 1]"),
                  traced(tree_reader,
                         "mismatch, txt_msg[unknown_line_of_a_tree_0123456789_0123456789_xx: 1]"),
                  traced(conn_reader,
                         "mismatch, txt_msg[unknown_line_of_a_conn_0123456789_0123456789_xx: 1]"),
                  traced(node_reader,
                         "mismatch, txt_msg[unknown_line_of_a_node_0123456789_0123456789_xx: 1]"),
              }));
}

TEST(JobData, FieldsThatDoNotScanAreTracedAsTheyStay) {
    LogCapture log;
    const ReadData read(job_data("    uid: x\n"
                                 "    agg_nodes_num: 3\n"
                                 "    agg_nodes_num: x\n"
                                 "    hosts_sd_info {\n      addr: \"\"\n    }\n"));
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              traced(data_reader, "p_msg->uid[0x0]"),
                              traced(data_reader, "p_msg->agg_nodes_num[0x3]"),
                              traced(data_reader, "p_msg->agg_nodes_num[0x3]"),
                              traced(text_reader, "txt unpack value[]"),
                          }));
}

TEST(JobData, ByteArraysThatAreFullEndWithoutATrace) {
    LogCapture log;
    const std::vector<unsigned> indexes(66, 8);
    const ReadData read(conn_with_indexes(indexes));
    std::vector<LogLine> expected(64, traced(byte_reader, "txt unpack value[0x8]"));
    expected.insert(expected.begin(), traced(data_reader, "p_msg->conns_num[0x1]"));
    EXPECT_EQ(log.take(), expected);
    const ReadData tree(job_data(block("trees", "      versions: 3\n"
                                                "      versions: 4\n"
                                                "      tree_id: 1\n"
                                                "      versions: x\n")));
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              traced(byte_reader, "txt unpack value[0x3]"),
                              traced(tree_reader, "p_msg->tree_id[0x1]"),
                              traced(byte_reader, "txt unpack value[0x0]"),
                          }));
}

} // namespace
} // namespace kvt_test
