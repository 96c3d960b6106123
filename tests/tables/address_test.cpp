// The InfiniBand addresses in messages: GIDs and path records.
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "kvt/messages/job_data.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(ibv_gid) == 16);
static_assert(offsetof(ibv_gid, global.subnet_prefix) == 0);
static_assert(offsetof(ibv_gid, global.interface_id) == 8);

static_assert(sizeof(ibv_sa_path_rec) == 64);
static_assert(offsetof(ibv_sa_path_rec, dgid) == 0);
static_assert(offsetof(ibv_sa_path_rec, sgid) == 16);
static_assert(offsetof(ibv_sa_path_rec, dlid) == 32);
static_assert(offsetof(ibv_sa_path_rec, slid) == 34);
static_assert(offsetof(ibv_sa_path_rec, raw_traffic) == 36);
static_assert(offsetof(ibv_sa_path_rec, flow_label) == 40);
static_assert(offsetof(ibv_sa_path_rec, hop_limit) == 44);
static_assert(offsetof(ibv_sa_path_rec, traffic_class) == 45);
static_assert(offsetof(ibv_sa_path_rec, reversible) == 48);
static_assert(offsetof(ibv_sa_path_rec, numb_path) == 52);
static_assert(offsetof(ibv_sa_path_rec, pkey) == 54);
static_assert(offsetof(ibv_sa_path_rec, sl) == 56);
static_assert(offsetof(ibv_sa_path_rec, mtu_selector) == 57);
static_assert(offsetof(ibv_sa_path_rec, mtu) == 58);
static_assert(offsetof(ibv_sa_path_rec, rate_selector) == 59);
static_assert(offsetof(ibv_sa_path_rec, rate) == 60);
static_assert(offsetof(ibv_sa_path_rec, packet_life_time_selector) == 61);
static_assert(offsetof(ibv_sa_path_rec, packet_life_time) == 62);
static_assert(offsetof(ibv_sa_path_rec, preference) == 63);
#endif

const std::string job_data_start = "    qpc_opts {\n    }\n    sat_qpc_opts {\n    }\n";

/// A message of one tree whose multicast group has these lines.
std::string message_of_gid(const std::string &lines) {
    return message_text("JOB_DATA", "  job_data {\n    trees_num: 1\n" + job_data_start +
                                        "    trees {\n      mgid {\n" + lines +
                                        "      }\n      quota {\n      }\n    }\n  }\n");
}

const std::string no_gids = "        dgid {\n        }\n        sgid {\n        }\n";

/// A message of one connection whose first path has these lines.
std::string message_of_path(const std::string &lines) {
    return message_text("JOB_DATA", "  job_data {\n    conns_num: 1\n" + job_data_start +
                                        "    conns {\n      pr_sd_to_an {\n" + lines +
                                        "      }\n      pr_an_to_sd {\n" + no_gids +
                                        "      }\n    }\n  }\n");
}

std::string written(const ibv_gid &gid) {
    vemra_tree tree = {};
    tree.mgid = gid;
    vemra_job_data record = {};
    record.trees_num = 1;
    record.trees = &tree;
    return to_text(VEMRA_MSG_TYPE_JOB_DATA, record);
}

std::string written(const ibv_sa_path_rec &path) {
    vemra_tree_conn conn = {};
    conn.qp_child_idxs[0] = 255;
    conn.pr_sd_to_an = path;
    vemra_job_data record = {};
    record.conns_num = 1;
    record.conns = &conn;
    return to_text(VEMRA_MSG_TYPE_JOB_DATA, record);
}

ibv_gid gid_of(uint64_t subnet_prefix, uint64_t interface_id) {
    ibv_gid gid = {};
    gid.global.subnet_prefix = subnet_prefix;
    gid.global.interface_id = interface_id;
    return gid;
}

/// What is read of a message of one tree, or of one connection.
ibv_gid read_gid(const std::string &text) {
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA, text);
    EXPECT_EQ(read->trees_num, 1U);
    return read->trees[0].mgid;
}

ibv_sa_path_rec read_path(const std::string &text) {
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA, text);
    EXPECT_EQ(read->conns_num, 1U);
    return read->conns[0].pr_sd_to_an;
}

// --- GIDs ----------------------------------------------------------------------------------------

TEST(Address, AGidIsWrittenToTheLetter) {
    EXPECT_EQ(written(gid_of(18338657682652659712U, UINT64_MAX)),
              message_text("JOB_DATA", "  job_data {\n"
                                       "    trees_num: 1\n"
                                       "    qpc_opts {\n"
                                       "    }\n"
                                       "    sat_qpc_opts {\n"
                                       "    }\n"
                                       "    trees {\n"
                                       "      mgid {\n"
                                       "        subnet_prefix: 18338657682652659712\n"
                                       "        guid: 18446744073709551615\n"
                                       "      }\n"
                                       "      quota {\n"
                                       "      }\n"
                                       "    }\n"
                                       "  }\n"));
}

TEST(Address, AGidTellsOnlyTheHalvesThatAreNotZero) {
    EXPECT_EQ(written(gid_of(0, 0)), message_of_gid(""));
    EXPECT_EQ(written(gid_of(7, 0)), message_of_gid("        subnet_prefix: 7\n"));
    EXPECT_EQ(written(gid_of(0, 8)), message_of_gid("        guid: 8\n"));
}

#if defined(__x86_64__)
TEST(Address, NumbersAreThoseThatLieInMemory) {
    // fe80::1 and a LID of 1, as they go over a network.
    const ibv_gid gid = {.raw = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}};
    const std::string gid_text =
        message_of_gid("        subnet_prefix: 33022\n        guid: 72057594037927936\n");
    EXPECT_EQ(written(gid), gid_text);
    const ibv_gid read = read_gid(gid_text);
    EXPECT_EQ(std::memcmp(&read, &gid, sizeof gid), 0);

    ibv_sa_path_rec path = {};
    const uint8_t lid[] = {0, 1};
    std::memcpy(&path.dlid, lid, sizeof lid);
    const std::string path_text = message_of_path(no_gids + "        dlid: 256\n");
    EXPECT_EQ(written(path), path_text);
    EXPECT_EQ(read_path(path_text).dlid, path.dlid);
}
#endif

TEST(Address, AHalfThatDoesNotScanTakesTheValueOfTheLineBefore) {
    const ibv_gid guid = read_gid(message_of_gid("        subnet_prefix: 5\n        guid: x\n"));
    EXPECT_EQ(guid.global.subnet_prefix, 5U);
    EXPECT_EQ(guid.global.interface_id, 5U);
    const ibv_gid prefix =
        read_gid(message_of_gid("        guid: 6\n        subnet_prefix 7\n        guid: 8\n"));
    EXPECT_EQ(prefix.global.subnet_prefix, 6U);
    EXPECT_EQ(prefix.global.interface_id, 8U);
    const ibv_gid both = read_gid(message_of_gid("        guid: 6\n"
                                                 "        subnet_prefix: 7\n"
                                                 "        guidance: 8\n"));
    EXPECT_EQ(both.global.interface_id, 7U);
}

TEST(Address, EveryGidBeginsWithAValueOfZeroToTake) {
    const ibv_sa_path_rec path = read_path(message_of_path("        dgid {\n"
                                                           "          guid: 9\n"
                                                           "        }\n"
                                                           "        sgid {\n"
                                                           "          guid: x\n"
                                                           "        }\n"));
    EXPECT_EQ(path.dgid.global.interface_id, 9U);
    EXPECT_EQ(path.sgid.global.interface_id, 0U);
}

TEST(Address, ASecondGidOfOneNameAddsToTheFirst) {
    const ibv_sa_path_rec path = read_path(message_of_path("        dgid {\n"
                                                           "          subnet_prefix: 1\n"
                                                           "          guid: 2\n"
                                                           "        }\n"
                                                           "        dgid {\n"
                                                           "          guid: 3\n"
                                                           "        }\n"));
    EXPECT_EQ(path.dgid.global.subnet_prefix, 1U);
    EXPECT_EQ(path.dgid.global.interface_id, 3U);
}

// --- Path records --------------------------------------------------------------------------------

const char every_field[] = R"(msg {
  type: JOB_DATA
  job_data {
    conns_num: 1
    qpc_opts {
    }
    sat_qpc_opts {
    }
    conns {
      pr_sd_to_an {
        dgid {
          subnet_prefix: 18338657682652659712
          guid: 1
        }
        sgid {
          subnet_prefix: 18338657682652659712
          guid: 2
        }
        dlid: 65535
        slid: 3
        raw_traffic: 2147483647
        flow_label: 4294967295
        hop_limit: 255
        traffic_class: 254
        reversible: -2147483648
        numb_path: 253
        pkey: 65534
        sl: 4
        mtu_selector: 5
        mtu: 6
        rate_selector: 7
        rate: 8
        plt_selector: 9
        plt: 10
        preference: 252
      }
      pr_an_to_sd {
        dgid {
        }
        sgid {
        }
      }
    }
  }
}
)";

TEST(Address, APathIsWrittenToTheLetter) {
    ibv_sa_path_rec path = {};
    path.dgid = gid_of(18338657682652659712U, 1);
    path.sgid = gid_of(18338657682652659712U, 2);
    path.dlid = 65535;
    path.slid = 3;
    path.raw_traffic = INT32_MAX;
    path.flow_label = UINT32_MAX;
    path.hop_limit = 255;
    path.traffic_class = 254;
    path.reversible = INT32_MIN;
    path.numb_path = 253;
    path.pkey = 65534;
    path.sl = 4;
    path.mtu_selector = 5;
    path.mtu = 6;
    path.rate_selector = 7;
    path.rate = 8;
    path.packet_life_time_selector = 9;
    path.packet_life_time = 10;
    path.preference = 252;
    EXPECT_EQ(written(path), every_field);
}

TEST(Address, EveryFieldOfAPathIsRead) {
    EXPECT_EQ(written(read_path(every_field)), every_field);
}

TEST(Address, APathOfZerosTellsItsTwoGidsAlone) {
    EXPECT_EQ(written(ibv_sa_path_rec{}), message_of_path("        dgid {\n"
                                                          "        }\n"
                                                          "        sgid {\n"
                                                          "        }\n"));
    ibv_sa_path_rec zero;
    std::memset(&zero, 0, sizeof zero);
    const ibv_sa_path_rec read = read_path(message_of_path(no_gids));
    EXPECT_EQ(std::memcmp(&read, &zero, sizeof zero), 0);
}

TEST(Address, TheOtherPathIsWrittenAndReadLikeTheFirst) {
    const std::string text = message_text("JOB_DATA", "  job_data {\n"
                                                      "    conns_num: 1\n" +
                                                          job_data_start +
                                                          "    conns {\n"
                                                          "      pr_sd_to_an {\n" +
                                                          no_gids +
                                                          "        sl: 1\n"
                                                          "      }\n"
                                                          "      pr_an_to_sd {\n" +
                                                          no_gids +
                                                          "        sl: 2\n"
                                                          "      }\n"
                                                          "    }\n"
                                                          "  }\n");
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA, text);
    ASSERT_EQ(read->conns_num, 1U);
    EXPECT_EQ(read->conns[0].pr_sd_to_an.sl, 1U);
    EXPECT_EQ(read->conns[0].pr_an_to_sd.sl, 2U);
    read->conns[0].qp_child_idxs[0] = 255;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_DATA, *read), text);
}

/// A key and a longer one that begins with it.
struct KeyPair {
    const char *longer;
    unsigned (*longer_value)(const ibv_sa_path_rec &);
    const char *shorter;
    unsigned (*shorter_value)(const ibv_sa_path_rec &);
};

// --- Traces --------------------------------------------------------------------------------------

TEST(Address, NothingOfAGidOrPathIsTraced) {
    LogCapture log;
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA,
                                           message_text("JOB_DATA", "  job_data {\n"
                                                                    "    conns {\n"
                                                                    "      pr_sd_to_an {\n"
                                                                    "        dgid {\n"
                                                                    "          subnet_prefix: 1\n"
                                                                    "          guid: x\n"
                                                                    "          colour: 5\n"
                                                                    "          extra {\n"
                                                                    "          }\n"
                                                                    "        }\n"
                                                                    "        colour: 5\n"
                                                                    "        extra {\n"
                                                                    "        }\n"
                                                                    "        dlid: 3\n"
                                                                    "        reversible: -1\n"
                                                                    "        plt: x\n"
                                                                    "      }\n"
                                                                    "      tree_id: 4\n"
                                                                    "    }\n"
                                                                    "  }\n"));
    EXPECT_EQ(read->conns_num, 1U);
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              {"_kvt_txt_unpack_msg_vemra_tree_conn", 6,
                               "_kvt_txt_unpack_msg_vemra_tree_conn p_msg->tree_id[0x4]\n"},
                          }));
}

} // namespace
} // namespace kvt_test
