// TOPOLOGY_INFO_REQUEST and TOPOLOGY_INFO_REPLY.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "kvt/messages/topology.h"
#include "support/growth.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

/// A switch that owns two arrays.
std::string connected_switch(unsigned id) {
    return one_switch("      id: " + std::to_string(id) +
                      "\n"
                      "      num_peer_ids: 1\n"
                      "      peer_ids: 4\n"
                      "      num_port_guids: 1\n"
                      "      port_guids: 5\n");
}

std::vector<uint64_t> guids_of(const vemra_topology_info_request &record) {
    return {record.port_guids, record.port_guids + record.num_guids};
}

std::vector<uint64_t> ports_of(const vemra_topology_switch_info &record) {
    return {record.port_guids, record.port_guids + record.num_port_guids};
}

std::vector<uint64_t> peers_of(const vemra_topology_switch_info &record) {
    return {record.peer_ids, record.peer_ids + record.num_peer_ids};
}

std::vector<uint64_t> switch_ids(const vemra_topology_info_list &list) {
    std::vector<uint64_t> ids;
    for (uint32_t i = 0; i < list.num_switches; ++i) {
        ids.push_back(list.switches[i].id);
    }
    return ids;
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
    const ReadMessage<vemra_topology_info_list> read(reply_kind, full_reply);
    ASSERT_EQ(read->num_switches, 2U);
    EXPECT_EQ(read->status, 9U);
    const vemra_topology_switch_info &first = read->switches[0];
    EXPECT_EQ(first.id, UINT32_MAX);
    EXPECT_STREQ(first.name, "leaf {1, \\ row 2");
    EXPECT_EQ(peers_of(first), (std::vector<uint64_t>{2, 0, UINT32_MAX}));
    EXPECT_EQ(ports_of(first), (std::vector<uint64_t>{17870283321406128129U, 12}));
    const vemra_topology_switch_info &second = read->switches[1];
    EXPECT_EQ(second.id, 2U);
    EXPECT_STREQ(second.name, "");
    EXPECT_EQ(second.num_peer_ids, 0U);
    EXPECT_EQ(second.peer_ids, nullptr);
    EXPECT_EQ(second.num_port_guids, 0U);
    EXPECT_EQ(second.port_guids, nullptr);
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

TEST(Topology, ASwitchWithPeersButNoPortsWritesNoPortLine) {
    uint32_t peers[] = {4, 5};
    uint64_t unused_guid = 6;
    vemra_topology_switch_info leaf = {};
    leaf.num_peer_ids = 2;
    leaf.peer_ids = peers;
    leaf.port_guids = &unused_guid;
    EXPECT_EQ(to_text(reply_kind,
                      vemra_topology_info_list{.num_switches = 1, .switches = &leaf, .status = 0}),
              reply("    num_switches: 1\n"
                    "    switches {\n"
                    "      num_peer_ids: 2\n"
                    "      peer_ids: 4\n"
                    "      peer_ids: 5\n"
                    "    }\n"
                    "    status: 0\n"));
}

TEST(Topology, ANullArrayCountsAsNoElements) {
    vemra_topology_switch_info leaf = {};
    leaf.num_peer_ids = 2;
    leaf.num_port_guids = 3;
    EXPECT_EQ(to_text(reply_kind,
                      vemra_topology_info_list{.num_switches = 1, .switches = &leaf, .status = 0}),
              reply("    num_switches: 1\n"
                    "    switches {\n"
                    "      num_peer_ids: 2\n"
                    "      num_port_guids: 3\n"
                    "    }\n"
                    "    status: 0\n"));
    EXPECT_EQ(
        to_text(reply_kind,
                vemra_topology_info_list{.num_switches = 1, .switches = nullptr, .status = 0}),
        reply("    num_switches: 1\n    status: 0\n"));
    EXPECT_EQ(
        to_text(request_kind, vemra_topology_info_request{.num_guids = 2, .port_guids = nullptr}),
        request("    num_guids: 2\n"));
}

// --- Names ---------------------------------------------------------------------------------------

TEST(Topology, ANameOf63CharactersFitsAndOneOf64IsCut) {
    for (const size_t length : {1U, 62U, 63U, 64U, 199U, 200U, 3000U}) {
        const ReadMessage<vemra_topology_info_list> read(
            reply_kind, reply(one_switch("      name: \"" + std::string(length, 'n') +
                                         "\"\n"
                                         "      num_peer_ids: 4\n")));
        ASSERT_EQ(read->num_switches, 1U);
        EXPECT_EQ(std::string(read->switches[0].name), std::string(length < 63 ? length : 63, 'n'));
        EXPECT_EQ(read->switches[0].num_peer_ids, 4U);
    }
}

TEST(Topology, ANameWithoutItsNulIsWrittenUpToItsCapacity) {
    vemra_topology_switch_info leaf = {};
    std::memset(leaf.name, 'n', sizeof leaf.name);
    EXPECT_EQ(to_text(reply_kind,
                      vemra_topology_info_list{.num_switches = 1, .switches = &leaf, .status = 0}),
              reply("    num_switches: 1\n"
                    "    switches {\n"
                    "      name: \"" +
                    std::string(64, 'n') +
                    "\"\n"
                    "    }\n"
                    "    status: 0\n"));
}

TEST(Topology, ANameIsCutAtADoubleQuote) {
    const ReadMessage<vemra_topology_info_list> read(
        reply_kind, reply(one_switch("      name: \"leaf \"7\" left\"\n")));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_STREQ(read->switches[0].name, "leaf ");
}

TEST(Topology, ASecondNameIsReadOverTheFirst) {
    const ReadMessage<vemra_topology_info_list> read(
        reply_kind, reply(one_switch("      name: \"a long name\"\n"
                                     "      name: \"leaf\"\n") +
                          one_switch("      name: \"leaf\"\n"
                                     "      name: \"\"\n") +
                          one_switch("      name: \"leaf\"\n"
                                     "      name:\"no blank before it\"\n")));
    ASSERT_EQ(read->num_switches, 3U);
    EXPECT_EQ(std::string(read->switches[0].name, 11), std::string("leaf\0\0\0\0\0\0\0", 11));
    EXPECT_STREQ(read->switches[1].name, "");
    EXPECT_STREQ(read->switches[2].name, "");
}

// --- Order and prefixes --------------------------------------------------------------------------

TEST(Topology, LinesInReversedOrderReadTheSame) {
    EXPECT_EQ(read_and_write<vemra_topology_info_list>(reply_kind, reply("    status: 9\n"
                                                                         "    switches {\n"
                                                                         "      port_guids: 12\n"
                                                                         "      num_port_guids: 1\n"
                                                                         "      peer_ids: 2\n"
                                                                         "      peer_ids: 3\n"
                                                                         "      num_peer_ids: 2\n"
                                                                         "      name: \"leaf\"\n"
                                                                         "      id: 7\n"
                                                                         "    }\n"
                                                                         "    num_switches: 1\n")),
              reply("    num_switches: 1\n"
                    "    switches {\n"
                    "      id: 7\n"
                    "      name: \"leaf\"\n"
                    "      num_peer_ids: 2\n"
                    "      peer_ids: 2\n"
                    "      peer_ids: 3\n"
                    "      num_port_guids: 1\n"
                    "      port_guids: 12\n"
                    "    }\n"
                    "    status: 9\n"));
}

TEST(Topology, ALineThatBeginsWithIdIsTakenForIt) {
    LogCapture log;
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply(one_switch("      id: 7\n"
                                                                      "      idle: 8\n"
                                                                      "      id_of: 9\n")));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(read->switches[0].id, 7U);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>(3, trace("topology_switch_info", "p_msg->id[0x7]"))));
}

TEST(Topology, CountsAndArraysOfASwitchDoNotTakeEachOthersLines) {
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply(one_switch("      num_port_guids: 3\n"
                                                                      "      num_peer_ids: 4\n")));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(read->switches[0].num_port_guids, 3U);
    EXPECT_EQ(read->switches[0].num_peer_ids, 4U);
    EXPECT_EQ(read->switches[0].port_guids, nullptr);
    EXPECT_EQ(read->switches[0].peer_ids, nullptr);
}

TEST(Topology, UnknownLinesAndBlocksAreSkipped) {
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply("    racks {\n"
                                                           "      switches {\n"
                                                           "      }\n"
                                                           "    }\n" +
                                                           one_switch("      rack {\n"
                                                                      "        id: 9\n"
                                                                      "      }\n"
                                                                      "      color: 3\n"
                                                                      "      name: \"leaf\"\n") +
                                                           "    color: 3\n"
                                                           "    status: 1\n"));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(read->switches[0].id, 0U);
    EXPECT_STREQ(read->switches[0].name, "leaf");
    EXPECT_EQ(read->status, 1U);
}

// --- Arrays and counts ---------------------------------------------------------------------------

TEST(Topology, TheNumberOfLinesOverridesAnEarlierCount) {
    const ReadMessage<vemra_topology_info_request> guids(request_kind,
                                                         request("    num_guids: 5\n"
                                                                 "    port_guids: 1\n"
                                                                 "    port_guids: 2\n"));
    EXPECT_EQ(guids_of(*guids), (std::vector<uint64_t>{1, 2}));
    const ReadMessage<vemra_topology_info_list> read(
        reply_kind, reply("    num_switches: 9\n" + one_switch("      num_peer_ids: 6\n"
                                                               "      peer_ids: 3\n"
                                                               "      num_port_guids: 7\n"
                                                               "      port_guids: 4\n")));
    ASSERT_EQ(read->num_switches, 1U);
    EXPECT_EQ(peers_of(read->switches[0]), (std::vector<uint64_t>{3}));
    EXPECT_EQ(ports_of(read->switches[0]), (std::vector<uint64_t>{4}));
}

TEST(Topology, ACountBehindItsElementsIsKept) {
    const ReadMessage<vemra_topology_info_request> guids(request_kind,
                                                         request("    port_guids: 1\n"
                                                                 "    num_guids: 5\n"));
    EXPECT_EQ(guids->num_guids, 5U);
    EXPECT_EQ(guids->port_guids[0], 1U);
    const ReadMessage<vemra_topology_info_list> read(reply_kind,
                                                     reply(one_switch("      peer_ids: 3\n"
                                                                      "      num_peer_ids: 6\n"
                                                                      "      port_guids: 4\n"
                                                                      "      num_port_guids: 0\n") +
                                                           "    num_switches: 9\n"));
    EXPECT_EQ(read->num_switches, 9U);
    read->num_switches = 1;
    EXPECT_EQ(read->switches[0].num_peer_ids, 6U);
    EXPECT_EQ(read->switches[0].peer_ids[0], 3U);
    EXPECT_EQ(read->switches[0].num_port_guids, 0U);
    EXPECT_EQ(read->switches[0].port_guids[0], 4U);
}

TEST(Topology, ACountWithoutElementsIsKept) {
    const ReadMessage<vemra_topology_info_list> read(reply_kind, reply("    num_switches: 4\n"
                                                                       "    status: 1\n"));
    EXPECT_EQ(read->num_switches, 4U);
    EXPECT_EQ(read->switches, nullptr);
    const ReadMessage<vemra_topology_info_request> guids(request_kind,
                                                         request("    num_guids: 4\n"));
    EXPECT_EQ(guids->num_guids, 4U);
    EXPECT_EQ(guids->port_guids, nullptr);
}

TEST(Topology, ASecondRunOfNumbersReplacesTheFirst) {
    MemoryWatch watch;
    {
        const ReadMessage<vemra_topology_info_list> read(
            reply_kind, reply(one_switch("      peer_ids: 1\n"
                                         "      peer_ids: 2\n"
                                         "      port_guids: 3\n"
                                         "      peer_ids: 4\n"
                                         "      port_guids: 5\n"
                                         "      port_guids: 6\n")));
        ASSERT_EQ(read->num_switches, 1U);
        EXPECT_EQ(peers_of(read->switches[0]), (std::vector<uint64_t>{4}));
        EXPECT_EQ(ports_of(read->switches[0]), (std::vector<uint64_t>{5, 6}));
        EXPECT_EQ(watch.alive(), 4U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Topology, ASecondRunOfSwitchesReplacesTheFirstWithItsArrays) {
    for (const std::string between :
         {"    status: 1\n", "    num_switches: 0\n", "    num_switches: 99\n"}) {
        MemoryWatch watch;
        {
            const ReadMessage<vemra_topology_info_list> read(
                reply_kind,
                reply(connected_switch(1) + connected_switch(2) + between + connected_switch(3)));
            EXPECT_EQ(switch_ids(*read), (std::vector<uint64_t>{3}));
            EXPECT_EQ(watch.alive(), 4U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Topology, ElevenSwitchesGrowTheListTwice) {
    std::string switches;
    for (unsigned id = 1; id <= 11; ++id) {
        switches += one_switch("      id: " + std::to_string(id) + "\n");
    }
    MemoryWatch watch;
    const ReadMessage<vemra_topology_info_list> read(reply_kind, reply(switches));
    EXPECT_EQ(read->num_switches, 11U);
    EXPECT_EQ(switch_ids(*read), one_to(11));
    EXPECT_EQ(watch.requests(), 1U + 3U);
    EXPECT_EQ(watch.largest(), 20 * sizeof(vemra_topology_switch_info));
}

// --- Growing -------------------------------------------------------------------------------------

/// A line for each number from 1 on.
std::string lines_of(const std::string &key, unsigned count) {
    std::string lines;
    for (unsigned i = 1; i <= count; ++i) {
        lines += key + ": " + std::to_string(i) + "\n";
    }
    return lines;
}

const GrowingMember<vemra_topology_info_request> guids_of_request = {
    request_kind, 1, [](unsigned count) { return request(lines_of("    port_guids", count)); },
    guids_of};

const GrowingMember<vemra_topology_info_list> peers_of_switch = {
    reply_kind, 2,
    [](unsigned count) { return reply(one_switch(lines_of("      peer_ids", count))); },
    [](const vemra_topology_info_list &list) {
        return peers_of(list.switches[0]);
    }};

const GrowingMember<vemra_topology_info_list> ports_of_switch = {
    reply_kind, 2,
    [](unsigned count) { return reply(one_switch(lines_of("      port_guids", count))); },
    [](const vemra_topology_info_list &list) {
        return ports_of(list.switches[0]);
    }};

const GrowingMember<vemra_topology_info_list> switches_of_reply = {
    reply_kind, 1,
    [](unsigned count) {
        std::string switches;
        for (unsigned id = 1; id <= count; ++id) {
            switches +=
                one_switch("      deeper {\n      }\n      id: " + std::to_string(id) + "\n");
        }
        return reply(switches);
    },
    switch_ids};

TEST(Topology, ArraysGrowByDoubling) {
    expect_growth_by_doubling(guids_of_request);
    expect_growth_by_doubling(peers_of_switch);
    expect_growth_by_doubling(ports_of_switch);
    expect_growth_by_doubling(switches_of_reply);
}

TEST(Topology, FailedGrowthDropsElements) {
    expect_failed_growth_drops(guids_of_request);
    expect_failed_growth_drops(peers_of_switch);
    expect_failed_growth_drops(ports_of_switch);
    expect_failed_growth_drops(switches_of_reply);
}

TEST(Topology, NothingLeaksWhicheverAllocationFails) {
    std::string switches;
    for (unsigned id = 1; id <= 6; ++id) {
        switches += connected_switch(id);
    }
    // The record, two arrays of each switch, and the list of switches twice.
    expect_no_leak<vemra_topology_info_list>(reply_kind, reply(switches), 15);
}

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
