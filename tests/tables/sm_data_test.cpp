// SM_DATA.
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "kvt/messages/sm_data.h"
#include "support/log_capture.h"
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

// --- Reading -------------------------------------------------------------------------------------

TEST(SmData, ReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_sm_data>(VEMRA_MSG_TYPE_SM_DATA, full_text), full_text);
}

TEST(SmData, AnEmptyTreeHasNoNodesAndNoArray) {
    const ReadSmData read(VEMRA_MSG_TYPE_SM_DATA, ftree_data(""));
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->ftree_data.array_len, 0U);
    EXPECT_EQ(read->ftree_data.file_nodes, nullptr);
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

} // namespace
} // namespace kvt_test
