// SM_DATA.
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/sm_data.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_ftree_file_node) == 2);
static_assert(offsetof(vemra_ftree_file_node, lid) == 0);

static_assert(sizeof(vemra_ftree_file_data) == 16);
static_assert(offsetof(vemra_ftree_file_data, array_len) == 0);
static_assert(offsetof(vemra_ftree_file_data, file_nodes) == 8);

static_assert(sizeof(vemra_sm_data) == 32);
static_assert(offsetof(vemra_sm_data, job_id) == 0);
static_assert(offsetof(vemra_sm_data, data_type) == 8);
static_assert(offsetof(vemra_sm_data, status) == 12);
static_assert(offsetof(vemra_sm_data, ftree_data) == 16);
#endif

using ReadSmData = ReadMessage<vemra_sm_data>;

const std::string top_reader = "_kvt_txt_unpack_msg_vemra_sm_data";
const std::string data_reader = "_kvt_txt_unpack_msg_vemra_ftree_file_data";
const std::string node_reader = "_kvt_txt_unpack_msg_vemra_ftree_file_node";

std::string sm_data(const std::string &lines) {
    return message_text("SM_DATA", "  sm_data {\n" + lines + "  }\n");
}

std::string ftree_data(const std::string &lines) {
    return sm_data("    ftree_data {\n" + lines + "    }\n");
}

std::string node(unsigned lid) {
    return "      file_nodes {\n        lid: " + std::to_string(lid) + "\n      }\n";
}

/// Nodes with the LIDs 101, 102 and so on.
std::string nodes(unsigned count) {
    std::string text;
    for (unsigned i = 1; i <= count; ++i) {
        text += node(100 + i);
    }
    return text;
}

/// The LIDs of the nodes, as many as the count says.
std::vector<unsigned> lids(const vemra_sm_data &record) {
    std::vector<unsigned> lids;
    for (uint32_t i = 0; i < record.ftree_data.array_len; ++i) {
        lids.push_back(record.ftree_data.file_nodes[i].lid);
    }
    return lids;
}

/// 101 to 100 + `count`, without one of them.
std::vector<unsigned> lids_up_to(unsigned count, unsigned without = 0) {
    std::vector<unsigned> lids;
    for (unsigned i = 1; i <= count; ++i) {
        if (100 + i != without) {
            lids.push_back(100 + i);
        }
    }
    return lids;
}

const char full_text[] = "msg {\n"
                         "  type: SM_DATA\n"
                         "  sm_data {\n"
                         "    job_id: 18446744073709551615\n"
                         "    data_type: 1\n"
                         "    status: 4294967295\n"
                         "    ftree_data {\n"
                         "      array_len: 3\n"
                         "      file_nodes {\n"
                         "        lid: 7\n"
                         "      }\n"
                         "      file_nodes {\n"
                         "      }\n"
                         "      file_nodes {\n"
                         "        lid: 65535\n"
                         "      }\n"
                         "    }\n"
                         "  }\n"
                         "}\n";

// --- Writing -------------------------------------------------------------------------------------

TEST(SmData, IsWrittenToTheLetter) {
    vemra_ftree_file_node file_nodes[] = {{.lid = 7}, {.lid = 0}, {.lid = 65535}};
    const vemra_sm_data record = {.job_id = UINT64_MAX,
                                  .data_type = 1,
                                  .status = UINT32_MAX,
                                  .ftree_data = {.array_len = 3, .file_nodes = file_nodes}};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_SM_DATA, record), full_text);
}

TEST(SmData, AlwaysTellsDataTypeAndStatusAndAnEmptyTree) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_SM_DATA, vemra_sm_data{}), "msg {\n"
                                                                "  type: SM_DATA\n"
                                                                "  sm_data {\n"
                                                                "    data_type: 0\n"
                                                                "    status: 0\n"
                                                                "    ftree_data {\n"
                                                                "    }\n"
                                                                "  }\n"
                                                                "}\n");
}

TEST(SmData, WithACountOf0NoNodeIsLookedAt) {
    vemra_ftree_file_node file_nodes[] = {{.lid = 7}};
    vemra_sm_data record = {};
    record.job_id = 3;
    record.ftree_data.file_nodes = file_nodes;
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_SM_DATA, record), sm_data("    job_id: 3\n"
                                                               "    data_type: 0\n"
                                                               "    status: 0\n"
                                                               "    ftree_data {\n"
                                                               "    }\n"));
}

TEST(SmData, SixNodesAreWrittenAsSixBlocksInOrder) {
    vemra_ftree_file_node file_nodes[] = {{1}, {2}, {3}, {4}, {5}, {6}};
    vemra_sm_data record = {};
    record.ftree_data = {.array_len = 6, .file_nodes = file_nodes};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_SM_DATA, record),
              sm_data("    data_type: 0\n"
                      "    status: 0\n"
                      "    ftree_data {\n"
                      "      array_len: 6\n" +
                      node(1) + node(2) + node(3) + node(4) + node(5) + node(6) + "    }\n"));
}

// --- Reading -------------------------------------------------------------------------------------

TEST(SmData, ReadsEveryField) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, full_text);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, UINT64_MAX);
    EXPECT_EQ(read->data_type, 1U);
    EXPECT_EQ(read->status, UINT32_MAX);
    EXPECT_EQ(read->ftree_data.array_len, 3U);
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{7, 0, 65535}));
}

TEST(SmData, AnEmptyTreeHasNoNodesAndNoArray) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(""));
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->ftree_data.array_len, 0U);
    EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
}

TEST(SmData, AnEmptyMessageIsAZeroedRecord) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data(""));
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->data_type, 0U);
    EXPECT_EQ(read->status, 0U);
    EXPECT_EQ(read->ftree_data.array_len, 0U);
    EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
}

TEST(SmData, ANodeWithoutALidIsANodeWithLid0) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA,
                          ftree_data("      file_nodes {\n      }\n" + node(9)));
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{0, 9}));
}

TEST(SmData, LinesMayComeInAnyOrder) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data("    ftree_data {\n" + nodes(2) +
                                                          "    }\n"
                                                          "    status: 4\n"
                                                          "    data_type: 3\n"
                                                          "    job_id: 2\n"));
    EXPECT_EQ(read->job_id, 2U);
    EXPECT_EQ(read->data_type, 3U);
    EXPECT_EQ(read->status, 4U);
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{101, 102}));
}

TEST(SmData, AValueThatDoesNotScanLeavesTheFieldAsItWas) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data("    status: 4\n"
                                                          "    status: x\n"
                                                          "    job_id 5\n"
                                                          "    ftree_data {\n"
                                                          "      file_nodes {\n"
                                                          "        lid: 6\n"
                                                          "        lid: y\n"
                                                          "      }\n"
                                                          "      file_nodes {\n"
                                                          "        lid: y\n"
                                                          "      }\n"
                                                          "    }\n"));
    EXPECT_EQ(read->status, 4U);
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{6, 0}));
}

TEST(SmData, ALidIsCutTo16Bits) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(node(65536 + 12)));
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{12}));
}

TEST(SmData, UnknownLinesAndBlocksAreSkippedAtEachLevel) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data("    more {\n"
                                                          "      job_id: 1\n"
                                                          "    }\n"
                                                          "    job_id: 2\n"
                                                          "    ftree_data {\n"
                                                          "      more: 1\n"
                                                          "      more {\n"
                                                          "        array_len: 1\n"
                                                          "      }\n"
                                                          "      file_nodes {\n"
                                                          "        more: 1\n"
                                                          "        more {\n"
                                                          "          lid: 1\n"
                                                          "        }\n"
                                                          "        lid: 3\n"
                                                          "      }\n"
                                                          "    }\n"
                                                          "    status: 4\n"));
    EXPECT_EQ(read->job_id, 2U);
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{3}));
    EXPECT_EQ(read->status, 4U);
}

// --- The array of nodes and its count ------------------------------------------------------------

TEST(SmData, TheNodesThatAreThereDecideNotTheCountBeforeThem) {
    for (const char *count : {"0", "2", "9", "4294967295"}) {
        const ReadSmData read(
            VEMRA_MSG_TYPE_SM_DATA,
            ftree_data("      array_len: " + std::string(count) + "\n" + nodes(3)));
        EXPECT_EQ(lids(*read), (std::vector<unsigned>{101, 102, 103})) << count;
    }
}

TEST(SmData, ACountBehindTheNodesIsKept) {
    // Directly behind them, and with another line between.
    for (const char *between : {"", "      more: 1\n"}) {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA,
                              ftree_data(nodes(3) + between + "      array_len: 2\n"));
        EXPECT_EQ(lids(*read), (std::vector<unsigned>{101, 102}));
    }
}

TEST(SmData, ACountWithoutNodesIsKept) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data("      array_len: 5\n"));
    EXPECT_EQ(read->ftree_data.array_len, 5U);
    EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
}

TEST(SmData, ALaterRunOfNodesReplacesTheEarlierOne) {
    const MemoryWatch watch;
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA,
                              ftree_data(nodes(7) + "      more: 1\n" + node(8) + node(9)));
        EXPECT_EQ(lids(*read), (std::vector<unsigned>{8, 9}));
        EXPECT_EQ(watch.alive(), 2U); // the record and the later array
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(SmData, ALaterTreeReplacesTheEarlierOneWithItsNodes) {
    const MemoryWatch watch;
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data("    ftree_data {\n" + nodes(7) +
                                                              "    }\n"
                                                              "    ftree_data {\n"
                                                              "    }\n"));
        EXPECT_EQ(read->ftree_data.array_len, 0U);
        EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
        EXPECT_EQ(watch.alive(), 1U); // the record
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(SmData, ALineThatBeginsWithFileNodesOpensANode) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data("      file_nodes_of_rack_1 {\n"
                                                             "        lid: 1\n"
                                                             "      }\n"
                                                             "      file_nodes: 2\n"
                                                             "        lid: 3\n"
                                                             "      }\n"));
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{1, 3}));
}

TEST(SmData, AnyNumberOfNodesIsReadInOrder) {
    for (const unsigned count : {0U, 1U, 4U, 5U, 6U, 10U, 11U, 20U, 21U, 300U}) {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(count)));
        EXPECT_EQ(read->ftree_data.array_len, count);
        EXPECT_EQ(lids(*read), lids_up_to(count));
    }
}

TEST(SmData, RoomForNodesIs5AndDoubles) {

    const struct {
        unsigned count;
        size_t requests; ///< the record's among them
        size_t largest;
    } cases[] = {{0, 1, sizeof(vemra_sm_data)},
                 {1, 2, sizeof(vemra_sm_data)},
                 {5, 2, sizeof(vemra_sm_data)},
                 {6, 3, sizeof(vemra_sm_data)},
                 {11, 4, 40},
                 {21, 5, 80}};

    for (const auto &[count, requests, largest] : cases) {
        const MemoryWatch watch;
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(count)));
        EXPECT_EQ(watch.requests(), requests) << count;
        EXPECT_EQ(watch.largest(), largest) << count;
    }
}

TEST(SmData, ANodeWithoutMemoryIsDroppedAndTheNextTriesAgain) {
    // Request 0 is the record, 1 the room for 5 nodes, 2 for 10, 3 for 20, 4 for 40.
    const unsigned dropped[] = {0, 101, 106, 111, 121};
    MemoryWatch watch;
    watch.fail(0);
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(21)));
        EXPECT_EQ(read.result(), -1);
    }
    EXPECT_EQ(watch.alive(), 0U);
    for (unsigned request = 1; request <= 4; ++request) {
        watch.fail(request);
        {
            const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(21)));
            ASSERT_EQ(read.result(), 0);
            EXPECT_EQ(lids(*read), lids_up_to(21, dropped[request]));
        }
        EXPECT_EQ(watch.failed(), 1U);
        EXPECT_EQ(watch.alive(), 0U);
    }
    watch.fail(5);
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(21)));
        EXPECT_EQ(lids(*read), lids_up_to(21));
    }
    EXPECT_EQ(watch.failed(), 0U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(SmData, ADroppedNodeIsSkippedWholeAndUntraced) {
    LogCapture log;
    MemoryWatch watch;
    watch.fail(1, 2);
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA,
                          ftree_data("      file_nodes {\n"
                                     "        lid: 1\n"
                                     "        more {\n"
                                     "          lid: 2\n"
                                     "        }\n"
                                     "      }\n" +
                                     node(3) + node(4) + "      array_len: 1\n"));
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{4}));
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {node_reader, 6, node_reader + " p_msg->lid[0x4]\n"},
                               {data_reader, 6, data_reader + " p_msg->array_len[0x1]\n"},
                           }));
}

TEST(SmData, WhenNothingGrowsTheFirst5NodesStay) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(nodes(21)));
        EXPECT_EQ(lids(*read), lids_up_to(5));
    }
    EXPECT_EQ(watch.failed(), 16U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(SmData, WithoutMemoryForAnyNodeThereIsNoArray) {
    MemoryWatch watch;
    watch.fail(1, 3);
    {
        const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA,
                              ftree_data("      array_len: 3\n" + nodes(3)));
        EXPECT_EQ(read->ftree_data.array_len, 0U);
        EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Traces --------------------------------------------------------------------------------------

TEST(SmData, EveryReaderTracesEveryFieldUnderItsName) {
    LogCapture log;
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, "msg {\n"
                                                  "  type: SM_DATA\n"
                                                  "  sm_data {\n"
                                                  "    job_id: 4294967311\n"
                                                  "    data_type: 2\n"
                                                  "    status: 4294967295\n"
                                                  "    ftree_data {\n"
                                                  "      array_len: 9\n"
                                                  "      file_nodes {\n"
                                                  "        lid: 65535\n"
                                                  "      }\n"
                                                  "      file_nodes {\n"
                                                  "      }\n"
                                                  "      file_nodes {\n"
                                                  "        lid: x\n"
                                                  "      }\n"
                                                  "    }\n"
                                                  "  }\n"
                                                  "}\n");
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {top_reader, 6, top_reader + " p_msg->job_id[0xf]\n"},
                               {top_reader, 6, top_reader + " p_msg->data_type[0x2]\n"},
                               {top_reader, 6, top_reader + " p_msg->status[0xffffffff]\n"},
                               {data_reader, 6, data_reader + " p_msg->array_len[0x9]\n"},
                               {node_reader, 6, node_reader + " p_msg->lid[0xffff]\n"},
                               {node_reader, 6, node_reader + " p_msg->lid[0x0]\n"},
                           }));
}

TEST(SmData, UnknownLinesAreTracedWithTheirLevelsReader) {
    LogCapture log;
    const std::string long_line(60, 'm');
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, sm_data("    " + long_line +
                                                          "\n"
                                                          "    ftree_data {\n"
                                                          "      more: 1\n"
                                                          "      more {\n"
                                                          "        array_len: 1\n"
                                                          "      }\n"
                                                          "      file_nodes {\n"
                                                          "        more {\n"
                                                          "        }\n"
                                                          "      }\n"
                                                          "    }\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {top_reader, 6, top_reader + " mismatch, txt_msg[" + std::string(50, 'm') + "]\n"},
            {data_reader, 6,
             data_reader +
                 " mismatch, txt_msg[more: 1\n      more {\n        array_len: 1\n      }\n]\n"},
            {data_reader, 6,
             data_reader +
                 " mismatch, txt_msg[more {\n        array_len: 1\n      }\n      file_nod]\n"},
            {node_reader, 6,
             node_reader + " mismatch, txt_msg[more {\n        }\n      }\n    }\n  }\n}\n]\n"},
        }));
}

TEST(SmData, NothingIsTracedBelowLevel6) {
    LogCapture log(5);
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, full_text);
    EXPECT_EQ(lids(*read), (std::vector<unsigned>{7, 0, 65535}));
    EXPECT_EQ(log.lines(), std::vector<LogLine>{});
}

} // namespace
} // namespace kvt_test
