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

TEST(Address, AGidIsReadInAnyOrderOfItsLines) {
    const std::string prefix = "        subnet_prefix: 18338657682652659712\n";
    const std::string guid = "        guid: 18446744073709551615\n";
    for (const std::string &lines : {prefix + guid, guid + prefix}) {
        const ibv_gid gid = read_gid(message_of_gid(lines));
        EXPECT_EQ(gid.global.subnet_prefix, 18338657682652659712U);
        EXPECT_EQ(gid.global.interface_id, UINT64_MAX);
    }
}

TEST(Address, AGidWithoutLinesIsReadAsZero) {
    const ibv_gid gid = read_gid(message_of_gid(""));
    EXPECT_EQ(gid.global.subnet_prefix, 0U);
    EXPECT_EQ(gid.global.interface_id, 0U);
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

TEST(Address, AHalfThatDoesNotScanIsZeroOnTheFirstLine) {
    const ibv_gid prefix = read_gid(message_of_gid("        subnet_prefix: x\n        guid: 5\n"));
    EXPECT_EQ(prefix.global.subnet_prefix, 0U);
    EXPECT_EQ(prefix.global.interface_id, 5U);
    const ibv_gid guid = read_gid(message_of_gid("        guid: x\n"));
    EXPECT_EQ(guid.global.interface_id, 0U);
}

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

TEST(Address, UnknownLinesAndBlocksInAGidAreSkipped) {
    const ibv_gid gid = read_gid(message_of_gid("        colour: 5\n"
                                                "        subnet_prefix: 1\n"
                                                "        extra {\n"
                                                "          subnet_prefix: 98\n"
                                                "          guid: 99\n"
                                                "        }\n"
                                                "        guid: 2\n"));
    EXPECT_EQ(gid.global.subnet_prefix, 1U);
    EXPECT_EQ(gid.global.interface_id, 2U);
}

TEST(Address, AKeyWithAClosingBraceIsReadOnTheFirstLineAlone) {
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA,
                                           message_text("JOB_DATA", "  job_data {\n"
                                                                    "    trees {\n"
                                                                    "      mgid {\n"
                                                                    "        subnet_prefix: 1 }\n"
                                                                    "        guid: 2 }\n"
                                                                    "      tree_id: 3\n"
                                                                    "    }\n"
                                                                    "    uid: 4\n"
                                                                    "  }\n"));
    ASSERT_EQ(read->trees_num, 1U);
    EXPECT_EQ(read->trees[0].mgid.global.subnet_prefix, 1U);
    EXPECT_EQ(read->trees[0].mgid.global.interface_id, 0U);
    EXPECT_EQ(read->trees[0].tree_id, 3U);
    EXPECT_EQ(read->uid, 4U);
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
    const ibv_sa_path_rec path = read_path(every_field);
    EXPECT_EQ(path.dgid.global.subnet_prefix, 18338657682652659712U);
    EXPECT_EQ(path.dgid.global.interface_id, 1U);
    EXPECT_EQ(path.sgid.global.subnet_prefix, 18338657682652659712U);
    EXPECT_EQ(path.sgid.global.interface_id, 2U);
    EXPECT_EQ(path.dlid, 65535U);
    EXPECT_EQ(path.slid, 3U);
    EXPECT_EQ(path.raw_traffic, INT32_MAX);
    EXPECT_EQ(path.flow_label, UINT32_MAX);
    EXPECT_EQ(path.hop_limit, 255U);
    EXPECT_EQ(path.traffic_class, 254U);
    EXPECT_EQ(path.reversible, INT32_MIN);
    EXPECT_EQ(path.numb_path, 253U);
    EXPECT_EQ(path.pkey, 65534U);
    EXPECT_EQ(path.sl, 4U);
    EXPECT_EQ(path.mtu_selector, 5U);
    EXPECT_EQ(path.mtu, 6U);
    EXPECT_EQ(path.rate_selector, 7U);
    EXPECT_EQ(path.rate, 8U);
    EXPECT_EQ(path.packet_life_time_selector, 9U);
    EXPECT_EQ(path.packet_life_time, 10U);
    EXPECT_EQ(path.preference, 252U);
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

TEST(Address, APathIsReadInReversedOrderOfItsLines) {
    const ibv_sa_path_rec path = read_path(message_of_path("        preference: 18\n"
                                                           "        plt: 17\n"
                                                           "        plt_selector: 16\n"
                                                           "        rate: 15\n"
                                                           "        rate_selector: 14\n"
                                                           "        mtu: 13\n"
                                                           "        mtu_selector: 12\n"
                                                           "        sl: 11\n"
                                                           "        pkey: 10\n"
                                                           "        numb_path: 9\n"
                                                           "        reversible: 8\n"
                                                           "        traffic_class: 7\n"
                                                           "        hop_limit: 6\n"
                                                           "        flow_label: 5\n"
                                                           "        raw_traffic: 4\n"
                                                           "        slid: 3\n"
                                                           "        dlid: 2\n"
                                                           "        sgid {\n"
                                                           "          guid: 1\n"
                                                           "        }\n"
                                                           "        dgid {\n"
                                                           "          guid: 19\n"
                                                           "        }\n"));
    EXPECT_EQ(written(path), message_of_path("        dgid {\n"
                                             "          guid: 19\n"
                                             "        }\n"
                                             "        sgid {\n"
                                             "          guid: 1\n"
                                             "        }\n"
                                             "        dlid: 2\n"
                                             "        slid: 3\n"
                                             "        raw_traffic: 4\n"
                                             "        flow_label: 5\n"
                                             "        hop_limit: 6\n"
                                             "        traffic_class: 7\n"
                                             "        reversible: 8\n"
                                             "        numb_path: 9\n"
                                             "        pkey: 10\n"
                                             "        sl: 11\n"
                                             "        mtu_selector: 12\n"
                                             "        mtu: 13\n"
                                             "        rate_selector: 14\n"
                                             "        rate: 15\n"
                                             "        plt_selector: 16\n"
                                             "        plt: 17\n"
                                             "        preference: 18\n"));
}

TEST(Address, SlIsNotTakenForSlid) {
    ibv_sa_path_rec path = {};
    path.sl = 5;
    const std::string text = message_of_path(no_gids + "        sl: 5\n");
    EXPECT_EQ(written(path), text);
    const ibv_sa_path_rec read = read_path(text);
    EXPECT_EQ(read.sl, 5U);
    EXPECT_EQ(read.slid, 0U);
}

/// A key and a longer one that begins with it.
struct KeyPair {
    const char *longer;
    unsigned (*longer_value)(const ibv_sa_path_rec &);
    const char *shorter;
    unsigned (*shorter_value)(const ibv_sa_path_rec &);
};

template <auto member> unsigned value_of(const ibv_sa_path_rec &path) {
    return path.*member;
}

const KeyPair key_pairs[] = {
    {"slid", value_of<&ibv_sa_path_rec::slid>, "sl", value_of<&ibv_sa_path_rec::sl>},
    {"mtu_selector", value_of<&ibv_sa_path_rec::mtu_selector>, "mtu",
     value_of<&ibv_sa_path_rec::mtu>},
    {"rate_selector", value_of<&ibv_sa_path_rec::rate_selector>, "rate",
     value_of<&ibv_sa_path_rec::rate>},
    {"plt_selector", value_of<&ibv_sa_path_rec::packet_life_time_selector>, "plt",
     value_of<&ibv_sa_path_rec::packet_life_time>},
};

TEST(Address, KeysThatBeginWithOthersKeepApart) {
    for (const KeyPair &pair : key_pairs) {
        const std::string longer = std::string("        ") + pair.longer + ": 7\n";
        const std::string shorter = std::string("        ") + pair.shorter + ": 9\n";
        const ibv_sa_path_rec longer_alone = read_path(message_of_path(longer));
        EXPECT_EQ(pair.longer_value(longer_alone), 7U) << pair.longer;
        EXPECT_EQ(pair.shorter_value(longer_alone), 0U) << pair.longer;
        const ibv_sa_path_rec shorter_alone = read_path(message_of_path(shorter));
        EXPECT_EQ(pair.longer_value(shorter_alone), 0U) << pair.longer;
        EXPECT_EQ(pair.shorter_value(shorter_alone), 9U) << pair.longer;
        for (const std::string &lines : {longer + shorter, shorter + longer}) {
            const ibv_sa_path_rec both = read_path(message_of_path(lines));
            EXPECT_EQ(pair.longer_value(both), 7U) << pair.longer;
            EXPECT_EQ(pair.shorter_value(both), 9U) << pair.longer;
        }
    }
}

TEST(Address, SignedFieldsKeepTheirBits) {
    ibv_sa_path_rec path = {};
    path.raw_traffic = -1;
    path.reversible = -2;
    const std::string text =
        message_of_path(no_gids + "        raw_traffic: -1\n        reversible: -2\n");
    EXPECT_EQ(written(path), text);
    const ibv_sa_path_rec read = read_path(text);
    EXPECT_EQ(read.raw_traffic, -1);
    EXPECT_EQ(read.reversible, -2);
    // The unsigned numbers of the same bits are read to the same.
    const ibv_sa_path_rec of_unsigned = read_path(
        message_of_path("        raw_traffic: 4294967295\n        reversible: 4294967294\n"));
    EXPECT_EQ(of_unsigned.raw_traffic, -1);
    EXPECT_EQ(of_unsigned.reversible, -2);
}

TEST(Address, NumbersOfAPathAreCutToTheirWidth) {
    const ibv_sa_path_rec path = read_path(message_of_path("        dlid: 65537\n"
                                                           "        slid: -1\n"
                                                           "        raw_traffic: 4294967298\n"
                                                           "        flow_label: 4294967299\n"
                                                           "        hop_limit: 260\n"
                                                           "        sl: 256\n"));
    EXPECT_EQ(path.dlid, 1U);
    EXPECT_EQ(path.slid, 65535U);
    EXPECT_EQ(path.raw_traffic, 2);
    EXPECT_EQ(path.flow_label, 3U);
    EXPECT_EQ(path.hop_limit, 4U);
    EXPECT_EQ(path.sl, 0U);
}

TEST(Address, AFieldOfAPathThatDoesNotScanKeepsItsValue) {
    const ibv_sa_path_rec path = read_path(message_of_path("        dlid: 5\n"
                                                           "        dlid: x\n"
                                                           "        slid: y\n"
                                                           "        reversible: -3\n"
                                                           "        reversible: z\n"
                                                           "        mtu 4\n"
                                                           "        rate: 6\n"));
    EXPECT_EQ(path.dlid, 5U);
    EXPECT_EQ(path.slid, 0U);
    EXPECT_EQ(path.reversible, -3);
    EXPECT_EQ(path.mtu, 0U);
    EXPECT_EQ(path.rate, 6U);
}

TEST(Address, ASecondPathOfOneNameAddsToTheFirst) {
    const ReadMessage<vemra_job_data> read(VEMRA_MSG_TYPE_JOB_DATA,
                                           message_text("JOB_DATA", "  job_data {\n"
                                                                    "    conns {\n"
                                                                    "      pr_sd_to_an {\n"
                                                                    "        sl: 1\n"
                                                                    "        mtu: 2\n"
                                                                    "      }\n"
                                                                    "      pr_sd_to_an {\n"
                                                                    "        mtu: 3\n"
                                                                    "      }\n"
                                                                    "    }\n"
                                                                    "  }\n"));
    ASSERT_EQ(read->conns_num, 1U);
    EXPECT_EQ(read->conns[0].pr_sd_to_an.sl, 1U);
    EXPECT_EQ(read->conns[0].pr_sd_to_an.mtu, 3U);
}

TEST(Address, UnknownLinesAndBlocksInAPathAreSkipped) {
    const ibv_sa_path_rec path = read_path(message_of_path("        colour: 5\n"
                                                           "        dlid: 1\n"
                                                           "        extra {\n"
                                                           "          dlid: 98\n"
                                                           "          dgid {\n"
                                                           "            guid: 99\n"
                                                           "          }\n"
                                                           "        }\n"
                                                           "        slid: 2\n"));
    EXPECT_EQ(path.dlid, 1U);
    EXPECT_EQ(path.slid, 2U);
    EXPECT_EQ(path.dgid.global.interface_id, 0U);
}

TEST(Address, TheEndOfTheTextEndsGidAndPath) {
    const std::string start = "msg {\n  type: JOB_DATA\n  job_data {\n    conns {\n"
                              "      pr_sd_to_an {\n        dgid {\n          guid: 5\n";
    const ibv_sa_path_rec in_gid = read_path(start);
    EXPECT_EQ(in_gid.dgid.global.interface_id, 5U);
    const ibv_sa_path_rec in_path = read_path(start + "        }\n        sl: 6");
    EXPECT_EQ(in_path.dgid.global.interface_id, 5U);
    EXPECT_EQ(in_path.sl, 6U);
}

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
