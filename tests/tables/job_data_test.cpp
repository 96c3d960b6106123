// JOB_DATA: daemons, trees, connections, aggregation nodes and queue pair options.
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "kvt/messages/job_data.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

/// What every written tree has after its first lines, and every connection.
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
    ASSERT_EQ(read->conns_num, 1U);
    // Child indexes that have no line are read as 0, which does not end them.
    read->conns[0].qp_child_idxs[3] = 255;
    EXPECT_EQ(written(*read), every_field);
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

// --- Texts and byte arrays of elements -----------------------------------------------------------

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

TEST(JobData, EveryRunOfChildIndexesClearsThemAll) {
    const ReadData read(job_data(block("conns", "      qp_child_idxs: 4\n"
                                                "      qp_child_idxs: 9\n"
                                                "      tree_id: 1\n"
                                                "      qp_child_idxs: 5\n")));
    ASSERT_EQ(read->conns_num, 1U);
    const uint8_t expected[64] = {5};
    EXPECT_EQ(std::memcmp(read->conns[0].qp_child_idxs, expected, 64), 0);
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

// --- Counts that stand after their elements ------------------------------------------------------

const std::string two_trees = "    trees {\n      tree_id: 1\n    }\n"
                              "    trees {\n      tree_id: 2\n    }\n";

// "hosts_num" does not begin with "hosts_sd_info".
TEST(JobData, HostsNumDirectlyAfterTheHostsIsTheCount) {
    ReadData read(job_data("    hosts_sd_info {\n      vemrad_id: 3\n    }\n"
                           "    hosts_num: 7\n    job_key: 9\n"));
    EXPECT_EQ(read->hosts_num, 7U);
    EXPECT_EQ(read->hosts_sd_info[0].vemrad_id, 3U);
    EXPECT_EQ(read->job_key, 9U);
}

// "trees_num" begins with "trees": what follows it is the inside of a tree, up to a closing brace.
TEST(JobData, TreesNumDirectlyAfterTheTreesOpensOneMore) {
    LogCapture log;
    const ReadData read(job_data(two_trees + "    trees_num: 7\n    job_key: 9\n"
                                             "      tree_id: 55\n    }\n"
                                             "    reservation_id: 8\n"));
    ASSERT_EQ(read->trees_num, 3U);
    EXPECT_EQ(read->trees[2].tree_id, 55U);
    EXPECT_EQ(read->job_key, 0U);
    EXPECT_EQ(read->reservation_id, 8U);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "_kvt_txt_unpack_msg_vemra_tree p_msg->tree_id[0x1]\n",
                               "_kvt_txt_unpack_msg_vemra_tree p_msg->tree_id[0x2]\n",
                               "_kvt_txt_unpack_msg_vemra_tree mismatch, "
                               "txt_msg[job_key: 9\n      tree_id: 55\n    }\n    reservation]\n",
                               "_kvt_txt_unpack_msg_vemra_tree p_msg->tree_id[0x37]\n",
                               "_kvt_txt_unpack_msg_vemra_job_data p_msg->reservation_id[0x8]\n",
                           }));
}

TEST(JobData, TreesNumAtTheEndTakesTheEndOfTheMessageForItsOwn) {
    const ReadData read(job_data(two_trees + "    trees_num: 7\n    job_key: 9\n" +
                                 "    conns {\n      tree_id: 4\n    }\n"));
    ASSERT_EQ(read->trees_num, 3U);
    EXPECT_EQ(read->trees[2].tree_id, 0U);
    EXPECT_EQ(read->job_key, 0U);
    EXPECT_EQ(read->conns, nullptr);
}

TEST(JobData, TreesNumThatFindsNoMemoryForATreeIsSkippedAlone) {
    MemoryWatch watch;
    watch.fail(2); // after the record and the room for five trees
    std::string five;
    for (int i = 0; i < 5; ++i) {
        five += "    trees {\n      tree_id: 1\n    }\n";
    }
    const ReadData read(job_data(five + "    trees_num: 7\n    job_key: 9\n"));
    EXPECT_EQ(watch.failed(), 1U);
    EXPECT_EQ(read->trees_num, 5U);
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

/// What a reader traces, after its name.
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

} // namespace
} // namespace kvt_test
