// TOPOLOGY_INFO_REQUEST and TOPOLOGY_INFO_REPLY.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "kvt/messages/topology.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_topology_info_request) == 16);
static_assert(offsetof(vemra_topology_info_request, num_guids) == 0);
static_assert(offsetof(vemra_topology_info_request, port_guids) == 8);

static_assert(sizeof(vemra_topology_switch_info) == 96);
static_assert(offsetof(vemra_topology_switch_info, id) == 0);
static_assert(offsetof(vemra_topology_switch_info, name) == 4);
static_assert(offsetof(vemra_topology_switch_info, num_peer_ids) == 68);
static_assert(offsetof(vemra_topology_switch_info, peer_ids) == 72);
static_assert(offsetof(vemra_topology_switch_info, num_port_guids) == 80);
static_assert(offsetof(vemra_topology_switch_info, port_guids) == 88);

static_assert(sizeof(vemra_topology_info_list) == 24);
static_assert(offsetof(vemra_topology_info_list, num_switches) == 0);
static_assert(offsetof(vemra_topology_info_list, switches) == 8);
static_assert(offsetof(vemra_topology_info_list, status) == 16);
#endif

constexpr int32_t request_kind = VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST;
constexpr int32_t reply_kind = VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY;

std::string request(const std::string &lines) {
    return message_text("TOPOLOGY_INFO_REQUEST", "  topology_info_request {\n" + lines + "  }\n");
}

std::string reply(const std::string &lines) {
    return message_text("TOPOLOGY_INFO_REPLY", "  topology_info_list {\n" + lines + "  }\n");
}

std::string one_switch(const std::string &lines) {
    return "    switches {\n" + lines + "    }\n";
}

std::vector<uint64_t> guids_of(const vemra_topology_info_request &record) {
    return {record.port_guids, record.port_guids + record.num_guids};
}

/// A trace of the reader of a record.
LogLine trace(const std::string &record, const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_msg_vemra_" + record;
    return {reader, 6, reader + " " + text + "\n"};
}

/// A trace of a reader of an array or a text.
LogLine array_trace(const std::string &element, const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_" + element;
    return {reader, 6, reader + " " + text + "\n"};
}

const char full_request[] = "msg {\n"
                            "  type: TOPOLOGY_INFO_REQUEST\n"
                            "  topology_info_request {\n"
                            "    num_guids: 3\n"
                            "    port_guids: 17870283321406128129\n"
                            "    port_guids: 0\n"
                            "    port_guids: 18446744073709551615\n"
                            "  }\n"
                            "}\n";

const char full_reply[] = "msg {\n"
                          "  type: TOPOLOGY_INFO_REPLY\n"
                          "  topology_info_list {\n"
                          "    num_switches: 2\n"
                          "    switches {\n"
                          "      id: 4294967295\n"
                          "      name: \"leaf {1, \\ row 2\"\n"
                          "      num_peer_ids: 3\n"
                          "      peer_ids: 2\n"
                          "      peer_ids: 0\n"
                          "      peer_ids: 4294967295\n"
                          "      num_port_guids: 2\n"
                          "      port_guids: 17870283321406128129\n"
                          "      port_guids: 12\n"
                          "    }\n"
                          "    switches {\n"
                          "      id: 2\n"
                          "    }\n"
                          "    status: 9\n"
                          "  }\n"
                          "}\n";

// --- What is written and read back ---------------------------------------------------------------

TEST(Topology, TheRequestIsWrittenToTheLetterAndReadsEveryField) {
    uint64_t guids[] = {17870283321406128129U, 0, UINT64_MAX};
    EXPECT_EQ(
        to_text(request_kind, vemra_topology_info_request{.num_guids = 3, .port_guids = guids}),
        full_request);
    const ReadMessage<vemra_topology_info_request> read(request_kind, full_request);
    EXPECT_EQ(guids_of(*read), (std::vector<uint64_t>{17870283321406128129U, 0, UINT64_MAX}));
}

TEST(Topology, TheReplyIsWrittenToTheLetter) {
    uint32_t peers[] = {2, 0, UINT32_MAX};
    uint64_t guids[] = {17870283321406128129U, 12};
    vemra_topology_switch_info switches[2] = {};
    switches[0] = {.id = UINT32_MAX,
                   .name = "leaf {1, \\ row 2",
                   .num_peer_ids = 3,
                   .peer_ids = peers,
                   .num_port_guids = 2,
                   .port_guids = guids};
    switches[1].id = 2;
    EXPECT_EQ(
        to_text(reply_kind,
                vemra_topology_info_list{.num_switches = 2, .switches = switches, .status = 9}),
        full_reply);
}

TEST(Topology, TheReplyReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_topology_info_list>(reply_kind, full_reply), full_reply);
}

TEST(Topology, AClosingBraceInANameEndsTheSwitch) {
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply(one_switch("      id: 1\n"
                                                                      "      name: \"leaf}\"\n")));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(read->switches[0].id, 1U);
    EXPECT_STREQ(read->switches[0].name, "");
}

// --- What is left out ----------------------------------------------------------------------------

TEST(Topology, ARequestWithoutGuidsIsAnEmptyBlockAndReadsBackNull) {
    EXPECT_EQ(to_text(request_kind, vemra_topology_info_request{}), request(""));
    const ReadMessage<vemra_topology_info_request> read(request_kind, request(""));
    EXPECT_EQ(read->num_guids, 0U);
    EXPECT_EQ(read->port_guids, nullptr);
}

TEST(Topology, AReplyWithoutSwitchesTellsItsStatusAlone) {
    EXPECT_EQ(to_text(reply_kind, vemra_topology_info_list{}), reply("    status: 0\n"));
    const ReadMessage<vemra_topology_info_list> read(reply_kind, reply("    status: 0\n"));
    EXPECT_EQ(read->num_switches, 0U);
    EXPECT_EQ(read->switches, nullptr);
}

TEST(Topology, AZeroSwitchIsAnEmptyBlock) {
    vemra_topology_switch_info zero = {};
    const std::string text = reply("    num_switches: 1\n"
                                   "    switches {\n"
                                   "    }\n"
                                   "    status: 0\n");
    EXPECT_EQ(to_text(reply_kind,
                      vemra_topology_info_list{.num_switches = 1, .switches = &zero, .status = 0}),
              text);
    const ReadMessage<vemra_topology_info_list> read(reply_kind, text);
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(read->switches[0].id, 0U);
    EXPECT_EQ(read->status, 0U);
}

// --- Growing -------------------------------------------------------------------------------------

// --- Traces --------------------------------------------------------------------------------------

TEST(Topology, TheRequestTracesWhatItReads) {
    LogCapture log;
    const ReadMessage<vemra_topology_info_request> read(request_kind, request("    num_guids: 2\n"
                                                                              "    port_guids: x\n"
                                                                              "    port_guids: 31\n"
                                                                              "    unknown: 1\n"));
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  trace("topology_info_request", "p_msg->num_guids[0x2]"),
                  array_trace("primptr_uint64_t",
                              "missmatch, array[port_guids: x\n    port_guids: 31\n    unknown: 1\n"
                              "  ], frame_key[port_guids:%lu], value[0]"),
                  array_trace("primptr_uint64_t", "element[1]=[0x1f]"),
                  array_trace("primptr_uint64_t", "END prim ptr, num_lements[0x1], array[0][0x1f]"),
                  trace("topology_info_request", "mismatch, txt_msg[unknown: 1\n  }\n}\n]"),
              }));
}

TEST(Topology, TheReplyTracesItsSwitchesUnderTheirReader) {
    LogCapture log;
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply("    num_switches: 2\n"
                                                           "    switches {\n"
                                                           "      id: 26\n"
                                                           "      name: \"leaf\"\n"
                                                           "      num_peer_ids: 3\n"
                                                           "      peer_ids: 17\n"
                                                           "      peer_ids: 18\n"
                                                           "      peer_ids: x\n"
                                                           "      num_port_guids: 4\n"
                                                           "      port_guids: 4294967296\n"
                                                           "      unknown: 1\n"
                                                           "    }\n"
                                                           "    unknown: 2\n"
                                                           "    status: 10\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            trace("topology_info_list", "p_msg->num_switches[0x2]"),
            trace("topology_switch_info", "p_msg->id[0x1a]"),
            array_trace("primarray_char", "txt unpack value[leaf]"),
            trace("topology_switch_info", "p_msg->num_peer_ids[0x3]"),
            array_trace("primptr_uint32_t", "element[1]=[0x11]"),
            array_trace("primptr_uint32_t", "element[2]=[0x12]"),
            array_trace("primptr_uint32_t",
                        "missmatch, array[peer_ids: x\n      num_port_guids: 4\n"
                        "      port_gui], frame_key[peer_ids:%u], value[12]"),
            array_trace("primptr_uint32_t", "END prim ptr, num_lements[0x2], array[0][0x11]"),
            trace("topology_switch_info", "p_msg->num_port_guids[0x4]"),
            array_trace("primptr_uint64_t", "element[1]=[0x100000000]"),
            array_trace("primptr_uint64_t",
                        "END prim ptr, num_lements[0x1], array[0][0x100000000]"),
            trace("topology_switch_info",
                  "mismatch, txt_msg[unknown: 1\n    }\n    unknown: 2\n    status: 10\n  }]"),
            trace("topology_info_list", "mismatch, txt_msg[unknown: 2\n    status: 10\n  }\n}\n]"),
            trace("topology_info_list", "p_msg->status[0xa]"),
        }));
}

} // namespace
} // namespace kvt_test
