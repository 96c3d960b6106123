// CREATE_RESERVATION, DELETE_RESERVATION, RESERVATION_INFO_REQUEST, RESERVATION_INFO_REPLY and
// PERSISTENT_RESERVATION_INFO.
#include <gtest/gtest.h>

#include <cstddef>

#include "kvt/messages/reservations.h"
#include "support/growth.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_reservation_resources) == 32);
static_assert(offsetof(vemra_reservation_resources, num_osts) == 0);
static_assert(offsetof(vemra_reservation_resources, num_groups) == 4);
static_assert(offsetof(vemra_reservation_resources, num_qps) == 8);
static_assert(offsetof(vemra_reservation_resources, num_trees) == 12);
static_assert(offsetof(vemra_reservation_resources, num_jobs) == 16);
static_assert(offsetof(vemra_reservation_resources, priority) == 20);
static_assert(offsetof(vemra_reservation_resources, percentage) == 24);
static_assert(offsetof(vemra_reservation_resources, sat) == 28);

static_assert(sizeof(vemra_create_reservation) == 56);
static_assert(offsetof(vemra_create_reservation, reservation_id) == 0);
static_assert(offsetof(vemra_create_reservation, pkey) == 8);
static_assert(offsetof(vemra_create_reservation, num_guids) == 12);
static_assert(offsetof(vemra_create_reservation, port_guids) == 16);
static_assert(offsetof(vemra_create_reservation, resources) == 24);

static_assert(sizeof(vemra_delete_reservation) == 16);
static_assert(offsetof(vemra_delete_reservation, reservation_id) == 0);
static_assert(offsetof(vemra_delete_reservation, force_delete) == 8);

static_assert(sizeof(vemra_reservation_info_request) == 16);
static_assert(offsetof(vemra_reservation_info_request, reservation_id) == 0);
static_assert(offsetof(vemra_reservation_info_request, full_info) == 8);

static_assert(sizeof(vemra_reservation_info) == 64);
static_assert(offsetof(vemra_reservation_info, reservation_id) == 0);
static_assert(offsetof(vemra_reservation_info, pkey) == 8);
static_assert(offsetof(vemra_reservation_info, state) == 12);
static_assert(offsetof(vemra_reservation_info, num_guids) == 16);
static_assert(offsetof(vemra_reservation_info, port_guids) == 24);
static_assert(offsetof(vemra_reservation_info, resources) == 32);

static_assert(sizeof(vemra_reservation_info_list) == 24);
static_assert(offsetof(vemra_reservation_info_list, reservation_list_len) == 0);
static_assert(offsetof(vemra_reservation_info_list, reservation_list) == 8);
static_assert(offsetof(vemra_reservation_info_list, status) == 16);
#endif

constexpr int32_t create_kind = VEMRA_MSG_TYPE_CREATE_RESERVATION;
constexpr int32_t delete_kind = VEMRA_MSG_TYPE_DELETE_RESERVATION;
constexpr int32_t request_kind = VEMRA_MSG_TYPE_RESERVATION_INFO_REQUEST;
constexpr int32_t reply_kind = VEMRA_MSG_TYPE_RESERVATION_INFO_REPLY;
constexpr int32_t info_kind = VEMRA_MSG_TYPE_PERSISTENT_RESERVATION_INFO;

std::string create_reservation(const std::string &lines) {
    return message_text("CREATE_RESERVATION", "  create_reservation {\n" + lines + "  }\n");
}

std::string delete_reservation(const std::string &lines) {
    return message_text("DELETE_RESERVATION", "  delete_reservation {\n" + lines + "  }\n");
}

std::string info_request(const std::string &lines) {
    return message_text("RESERVATION_INFO_REQUEST",
                        "  reservation_info_request {\n" + lines + "  }\n");
}

std::string info_reply(const std::string &lines) {
    return message_text("RESERVATION_INFO_REPLY", "  reservation_info_list {\n" + lines + "  }\n");
}

std::string reservation_info(const std::string &lines) {
    return message_text("PERSISTENT_RESERVATION_INFO", "  reservation_info {\n" + lines + "  }\n");
}

/// An element of a reply that owns nothing.
std::string listed(unsigned reservation_id) {
    return "    reservation_list {\n"
           "      reservation_id: " +
           std::to_string(reservation_id) +
           "\n"
           "      state: 2\n"
           "      resources {\n"
           "      }\n"
           "    }\n";
}

/// An element of a reply with one port.
std::string listed_with_port(unsigned reservation_id) {
    return "    reservation_list {\n"
           "      reservation_id: " +
           std::to_string(reservation_id) +
           "\n"
           "      state: 2\n"
           "      num_guids: 1\n"
           "      port_guids: 7\n"
           "      resources {\n"
           "      }\n"
           "    }\n";
}

template <typename Record> std::vector<uint64_t> ports(const Record &record) {
    return {record.port_guids, record.port_guids + record.num_guids};
}

std::vector<uint64_t> listed_ids(const vemra_reservation_info_list &list) {
    std::vector<uint64_t> ids;
    for (uint64_t i = 0; i < list.reservation_list_len; ++i) {
        ids.push_back(list.reservation_list[i].reservation_id);
    }
    return ids;
}

/// A trace of the reader of a record.
LogLine trace(const std::string &record, const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_msg_vemra_" + record;
    return {reader, 6, reader + " " + text + "\n"};
}

/// A trace of the reader of GUIDs.
LogLine guids_trace(const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_primptr_uint64_t";
    return {reader, 6, reader + " " + text + "\n"};
}

const vemra_reservation_resources all_resources = {.num_osts = 64,
                                                   .num_groups = 16,
                                                   .num_qps = 4294967295U,
                                                   .num_trees = 4,
                                                   .num_jobs = 3,
                                                   .priority = 2,
                                                   .percentage = 75,
                                                   .sat = 255};

void expect_all_resources(const vemra_reservation_resources &resources) {
    EXPECT_EQ(resources.num_osts, 64U);
    EXPECT_EQ(resources.num_groups, 16U);
    EXPECT_EQ(resources.num_qps, 4294967295U);
    EXPECT_EQ(resources.num_trees, 4U);
    EXPECT_EQ(resources.num_jobs, 3U);
    EXPECT_EQ(resources.priority, 2U);
    EXPECT_EQ(resources.percentage, 75U);
    EXPECT_EQ(resources.sat, 255U);
}

const char full_create[] = "msg {\n"
                           "  type: CREATE_RESERVATION\n"
                           "  create_reservation {\n"
                           "    reservation_id: 18446744073709551615\n"
                           "    pkey: 32769\n"
                           "    num_guids: 2\n"
                           "    port_guids: 17870283321406128257\n"
                           "    port_guids: 0\n"
                           "    resources {\n"
                           "      num_osts: 64\n"
                           "      num_groups: 16\n"
                           "      num_qps: 4294967295\n"
                           "      num_trees: 4\n"
                           "      num_jobs: 3\n"
                           "      priority: 2\n"
                           "      percentage: 75\n"
                           "      sat: 255\n"
                           "    }\n"
                           "  }\n"
                           "}\n";

const char full_info[] = "msg {\n"
                         "  type: PERSISTENT_RESERVATION_INFO\n"
                         "  reservation_info {\n"
                         "    reservation_id: 7001\n"
                         "    pkey: 32769\n"
                         "    state: 2\n"
                         "    num_guids: 3\n"
                         "    port_guids: 11\n"
                         "    port_guids: 12\n"
                         "    port_guids: 18446744073709551615\n"
                         "    resources {\n"
                         "      num_osts: 64\n"
                         "      num_groups: 16\n"
                         "      num_qps: 4294967295\n"
                         "      num_trees: 4\n"
                         "      num_jobs: 3\n"
                         "      priority: 2\n"
                         "      percentage: 75\n"
                         "      sat: 255\n"
                         "    }\n"
                         "  }\n"
                         "}\n";

const char full_reply[] = "msg {\n"
                          "  type: RESERVATION_INFO_REPLY\n"
                          "  reservation_info_list {\n"
                          "    reservation_list_len: 2\n"
                          "    reservation_list {\n"
                          "      reservation_id: 7\n"
                          "      pkey: 32769\n"
                          "      state: 2\n"
                          "      num_guids: 2\n"
                          "      port_guids: 11\n"
                          "      port_guids: 12\n"
                          "      resources {\n"
                          "        num_osts: 64\n"
                          "        num_groups: 16\n"
                          "        num_qps: 4294967295\n"
                          "        num_trees: 4\n"
                          "        num_jobs: 3\n"
                          "        priority: 2\n"
                          "        percentage: 75\n"
                          "        sat: 255\n"
                          "      }\n"
                          "    }\n"
                          "    reservation_list {\n"
                          "      state: 0\n"
                          "      resources {\n"
                          "      }\n"
                          "    }\n"
                          "    status: 9\n"
                          "  }\n"
                          "}\n";

// --- What is written and read back ---------------------------------------------------------------

TEST(Reservations, CreateReservationIsWrittenToTheLetter) {
    uint64_t guids[] = {17870283321406128257U, 0};
    const vemra_create_reservation record = {.reservation_id = UINT64_MAX,
                                             .pkey = 32769,
                                             .num_guids = 2,
                                             .port_guids = guids,
                                             .resources = all_resources};
    EXPECT_EQ(to_text(create_kind, record), full_create);
}

TEST(Reservations, CreateReservationReadsEveryField) {
    const ReadMessage<vemra_create_reservation> read(create_kind, full_create);
    EXPECT_EQ(read->reservation_id, UINT64_MAX);
    EXPECT_EQ(read->pkey, 32769U);
    EXPECT_EQ(ports(*read), (std::vector<uint64_t>{17870283321406128257U, 0}));
    expect_all_resources(read->resources);
}

TEST(Reservations, DeleteReservationIsWrittenToTheLetterAndReadsEveryField) {
    const std::string text = "msg {\n"
                             "  type: DELETE_RESERVATION\n"
                             "  delete_reservation {\n"
                             "    reservation_id: 7001\n"
                             "    force_delete: 255\n"
                             "  }\n"
                             "}\n";
    EXPECT_EQ(
        to_text(delete_kind, vemra_delete_reservation{.reservation_id = 7001, .force_delete = 255}),
        text);
    const ReadMessage<vemra_delete_reservation> read(delete_kind, text);
    EXPECT_EQ(read->reservation_id, 7001U);
    EXPECT_EQ(read->force_delete, 255U);
}

TEST(Reservations, TheRequestIsWrittenToTheLetterAndReadsEveryField) {
    const std::string text = "msg {\n"
                             "  type: RESERVATION_INFO_REQUEST\n"
                             "  reservation_info_request {\n"
                             "    reservation_id: 7001\n"
                             "    full_info: 4294967295\n"
                             "  }\n"
                             "}\n";
    EXPECT_EQ(to_text(request_kind, vemra_reservation_info_request{.reservation_id = 7001,
                                                                   .full_info = UINT32_MAX}),
              text);
    const ReadMessage<vemra_reservation_info_request> read(request_kind, text);
    EXPECT_EQ(read->reservation_id, 7001U);
    EXPECT_EQ(read->full_info, UINT32_MAX);
}

TEST(Reservations, ReservationInfoIsWrittenToTheLetter) {
    uint64_t guids[] = {11, 12, UINT64_MAX};
    const vemra_reservation_info record = {.reservation_id = 7001,
                                           .pkey = 32769,
                                           .state = 2,
                                           .num_guids = 3,
                                           .port_guids = guids,
                                           .resources = all_resources};
    EXPECT_EQ(to_text(info_kind, record), full_info);
}

TEST(Reservations, ReservationInfoReadsEveryField) {
    const ReadMessage<vemra_reservation_info> read(info_kind, full_info);
    EXPECT_EQ(read->reservation_id, 7001U);
    EXPECT_EQ(read->pkey, 32769U);
    EXPECT_EQ(read->state, 2U);
    EXPECT_EQ(ports(*read), (std::vector<uint64_t>{11, 12, UINT64_MAX}));
    expect_all_resources(read->resources);
}

TEST(Reservations, TheReplyIsWrittenToTheLetter) {
    uint64_t guids[] = {11, 12};
    vemra_reservation_info elements[2] = {};
    elements[0] = {.reservation_id = 7,
                   .pkey = 32769,
                   .state = 2,
                   .num_guids = 2,
                   .port_guids = guids,
                   .resources = all_resources};
    const vemra_reservation_info_list record = {
        .reservation_list_len = 2, .reservation_list = elements, .status = 9};
    EXPECT_EQ(to_text(reply_kind, record), full_reply);
}

TEST(Reservations, TheReplyReadsEveryField) {
    const ReadMessage<vemra_reservation_info_list> read(reply_kind, full_reply);
    ASSERT_EQ(read->reservation_list_len, 2U);
    EXPECT_EQ(read->status, 9U);
    const vemra_reservation_info &first = read->reservation_list[0];
    EXPECT_EQ(first.reservation_id, 7U);
    EXPECT_EQ(first.pkey, 32769U);
    EXPECT_EQ(first.state, 2U);
    EXPECT_EQ(ports(first), (std::vector<uint64_t>{11, 12}));
    expect_all_resources(first.resources);
    EXPECT_EQ(read->reservation_list[1].reservation_id, 0U);
    EXPECT_EQ(read->reservation_list[1].port_guids, nullptr);
}

TEST(Reservations, AReplyOfOneReservationLeavesOutWhatIsZero) {
    uint64_t guid = 17870283321406128257U;
    vemra_reservation_info element = {};
    element.reservation_id = 7;
    element.state = 2;
    element.num_guids = 1;
    element.port_guids = &guid;
    element.resources.num_trees = 1;
    const vemra_reservation_info_list record = {
        .reservation_list_len = 1, .reservation_list = &element, .status = 0};
    EXPECT_EQ(to_text(reply_kind, record), "msg {\n"
                                           "  type: RESERVATION_INFO_REPLY\n"
                                           "  reservation_info_list {\n"
                                           "    reservation_list_len: 1\n"
                                           "    reservation_list {\n"
                                           "      reservation_id: 7\n"
                                           "      state: 2\n"
                                           "      num_guids: 1\n"
                                           "      port_guids: 17870283321406128257\n"
                                           "      resources {\n"
                                           "        num_trees: 1\n"
                                           "      }\n"
                                           "    }\n"
                                           "    status: 0\n"
                                           "  }\n"
                                           "}\n");
}

// --- What is left out ----------------------------------------------------------------------------

TEST(Reservations, AZeroCreateReservationIsItsEmptyResources) {
    EXPECT_EQ(to_text(create_kind, vemra_create_reservation{}),
              create_reservation("    resources {\n    }\n"));
}

TEST(Reservations, AZeroDeleteReservationIsAnEmptyBlockAndReadsBackAsZero) {
    const std::string text = delete_reservation("");
    EXPECT_EQ(to_text(delete_kind, vemra_delete_reservation{}), text);
    const ReadMessage<vemra_delete_reservation> read(delete_kind, text);
    EXPECT_EQ(read->reservation_id, 0U);
    EXPECT_EQ(read->force_delete, 0U);
}

TEST(Reservations, AZeroRequestIsAnEmptyBlock) {
    EXPECT_EQ(to_text(request_kind, vemra_reservation_info_request{}), info_request(""));
}

TEST(Reservations, AZeroReservationInfoTellsItsStateAndEmptyResources) {
    EXPECT_EQ(to_text(info_kind, vemra_reservation_info{}),
              reservation_info("    state: 0\n    resources {\n    }\n"));
}

TEST(Reservations, AReplyWithoutElementsTellsItsStatusAlone) {
    EXPECT_EQ(to_text(reply_kind, vemra_reservation_info_list{}), info_reply("    status: 0\n"));
    const ReadMessage<vemra_reservation_info_list> read(reply_kind, info_reply("    status: 0\n"));
    EXPECT_EQ(read->reservation_list_len, 0U);
    EXPECT_EQ(read->reservation_list, nullptr);
}

TEST(Reservations, ANullArrayCountsAsNoElements) {
    vemra_reservation_info record = {};
    record.num_guids = 2;
    EXPECT_EQ(to_text(info_kind, record),
              reservation_info("    state: 0\n    num_guids: 2\n    resources {\n    }\n"));
    vemra_reservation_info_list list = {};
    list.reservation_list_len = 2;
    EXPECT_EQ(to_text(reply_kind, list),
              info_reply("    reservation_list_len: 2\n    status: 0\n"));
}

TEST(Reservations, TheLow32BitsOfTheLengthTellHowManyElementsAreWritten) {
    vemra_reservation_info element = {};
    const vemra_reservation_info_list record = {
        .reservation_list_len = 4294967297U, .reservation_list = &element, .status = 0};
    EXPECT_EQ(to_text(reply_kind, record), info_reply("    reservation_list_len: 4294967297\n"
                                                      "    reservation_list {\n"
                                                      "      state: 0\n"
                                                      "      resources {\n"
                                                      "      }\n"
                                                      "    }\n"
                                                      "    status: 0\n"));
}

TEST(Reservations, AnEmptyBlockReadsAsAZeroRecord) {
    const ReadMessage<vemra_create_reservation> read(create_kind, create_reservation(""));
    EXPECT_EQ(to_text(create_kind, *read), create_reservation("    resources {\n    }\n"));
    const ReadMessage<vemra_reservation_info_list> list(reply_kind, info_reply(""));
    EXPECT_EQ(to_text(reply_kind, *list), info_reply("    status: 0\n"));
}

// --- Order and prefixes --------------------------------------------------------------------------

TEST(Reservations, LinesInReversedOrderReadTheSame) {
    EXPECT_EQ(read_and_write<vemra_create_reservation>(
                  create_kind, create_reservation("    resources {\n"
                                                  "      sat: 255\n"
                                                  "      percentage: 75\n"
                                                  "      priority: 2\n"
                                                  "      num_jobs: 3\n"
                                                  "      num_trees: 4\n"
                                                  "      num_qps: 4294967295\n"
                                                  "      num_groups: 16\n"
                                                  "      num_osts: 64\n"
                                                  "    }\n"
                                                  "    port_guids: 17870283321406128257\n"
                                                  "    port_guids: 0\n"
                                                  "    num_guids: 2\n"
                                                  "    pkey: 32769\n"
                                                  "    reservation_id: 18446744073709551615\n")),
              full_create);
    EXPECT_EQ(
        read_and_write<vemra_reservation_info_list>(
            reply_kind, info_reply(listed(1) + "    status: 3\n    reservation_list_len: 1\n")),
        info_reply("    reservation_list_len: 1\n" + listed(1) + "    status: 3\n"));
}

TEST(Reservations, TheLengthLineIsNotTakenForAnElement) {
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply("    reservation_list_len: 3\n    status: 1\n"));
    EXPECT_EQ(read->reservation_list_len, 3U);
    EXPECT_EQ(read->reservation_list, nullptr);
    EXPECT_EQ(read->status, 1U);
}

TEST(Reservations, ALongerKeyThanSatIsTakenForItAndDoesNotScan) {
    LogCapture log;
    const ReadMessage<vemra_create_reservation> read(create_kind,
                                                     create_reservation("    resources {\n"
                                                                        "      saturation: 3\n"
                                                                        "    }\n"
                                                                        "    pkey: 1\n"));
    EXPECT_EQ(read->resources.sat, 0U);
    EXPECT_EQ(read->pkey, 1U);
    EXPECT_EQ(log.lines()[0], trace("reservation_resources", "p_msg->sat[0x0]"));
}

TEST(Reservations, CreateReservationKnowsNoState) {
    LogCapture log;
    const ReadMessage<vemra_create_reservation> read(
        create_kind, create_reservation("    state: 2\n    pkey: 1\n"));
    EXPECT_EQ(read->pkey, 1U);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  trace("create_reservation", "mismatch, txt_msg[state: 2\n    pkey: 1\n  }\n}\n]"),
                  trace("create_reservation", "p_msg->pkey[0x1]"),
              }));
}

// --- Arrays and counts ---------------------------------------------------------------------------

TEST(Reservations, TheNumberOfPortLinesOverridesAnEarlierCount) {
    const ReadMessage<vemra_create_reservation> read(create_kind,
                                                     create_reservation("    num_guids: 5\n"
                                                                        "    port_guids: 11\n"
                                                                        "    port_guids: 12\n"));
    EXPECT_EQ(ports(*read), (std::vector<uint64_t>{11, 12}));
}

TEST(Reservations, ACountBehindThePortsOrWithoutThemIsKept) {
    const ReadMessage<vemra_reservation_info> behind(info_kind,
                                                     reservation_info("    port_guids: 11\n"
                                                                      "    port_guids: 12\n"
                                                                      "    num_guids: 7\n"));
    EXPECT_EQ(behind->num_guids, 7U);
    EXPECT_EQ(behind->port_guids[1], 12U);
    const ReadMessage<vemra_reservation_info> alone(info_kind,
                                                    reservation_info("    num_guids: 7\n"));
    EXPECT_EQ(alone->num_guids, 7U);
    EXPECT_EQ(alone->port_guids, nullptr);
}

TEST(Reservations, ASecondRunOfPortsReplacesTheFirst) {
    MemoryWatch watch;
    {
        const ReadMessage<vemra_reservation_info> read(info_kind,
                                                       reservation_info("    port_guids: 11\n"
                                                                        "    port_guids: 12\n"
                                                                        "    pkey: 1\n"
                                                                        "    port_guids: 13\n"));
        EXPECT_EQ(ports(*read), (std::vector<uint64_t>{13}));
        EXPECT_EQ(watch.alive(), 2U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Reservations, ABraceWithinARunOfPortsEndsNothing) {
    const ReadMessage<vemra_create_reservation> read(create_kind,
                                                     create_reservation("    port_guids: 11\n"
                                                                        "    port_guids: 12 }\n"
                                                                        "    pkey: 1\n"));
    EXPECT_EQ(ports(*read), (std::vector<uint64_t>{11, 12}));
    EXPECT_EQ(read->pkey, 1U);
}

TEST(Reservations, ABraceBehindAKeyEndsTheBlockExceptOnItsFirstLine) {
    const ReadMessage<vemra_delete_reservation> read(delete_kind,
                                                     delete_reservation("    reservation_id: 5 }\n"
                                                                        "    force_delete: 1 }\n"));
    EXPECT_EQ(read->reservation_id, 5U);
    EXPECT_EQ(read->force_delete, 0U);
}

TEST(Reservations, UnknownLinesAndBlocksAreSkipped) {
    const ReadMessage<vemra_create_reservation> read(
        create_kind, create_reservation("    later: 1\n"
                                        "    later {\n"
                                        "      pkey: 9\n"
                                        "      deeper {\n"
                                        "        reservation_id: 9\n"
                                        "      }\n"
                                        "    }\n"
                                        "    resources {\n"
                                        "      deeper {\n"
                                        "        num_qps: 9\n"
                                        "      }\n"
                                        "      num_jobs: 3\n"
                                        "    }\n"
                                        "    reservation_id: 5\n"));
    EXPECT_EQ(read->pkey, 0U);
    EXPECT_EQ(read->resources.num_qps, 0U);
    EXPECT_EQ(read->resources.num_jobs, 3U);
    EXPECT_EQ(read->reservation_id, 5U);
}

TEST(Reservations, ASecondResourcesBlockIsReadOverTheFirst) {
    const ReadMessage<vemra_create_reservation> read(create_kind,
                                                     create_reservation("    resources {\n"
                                                                        "      num_osts: 1\n"
                                                                        "      sat: 1\n"
                                                                        "    }\n"
                                                                        "    resources {\n"
                                                                        "      num_osts: 2\n"
                                                                        "    }\n"));
    EXPECT_EQ(read->resources.num_osts, 2U);
    EXPECT_EQ(read->resources.sat, 0U);
}

TEST(Reservations, NumbersAreCutToTheirWidth) {
    const ReadMessage<vemra_create_reservation> read(create_kind,
                                                     create_reservation("    pkey: 65538\n"
                                                                        "    resources {\n"
                                                                        "      sat: 258\n"
                                                                        "    }\n"));
    EXPECT_EQ(read->pkey, 2U);
    EXPECT_EQ(read->resources.sat, 2U);
    const ReadMessage<vemra_delete_reservation> forced(delete_kind,
                                                       delete_reservation("force_delete: 256\n"));
    EXPECT_EQ(forced->force_delete, 0U);
}

TEST(Reservations, ARunOfElementsOverridesAnEarlierLength) {
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply("    reservation_list_len: 9\n" + listed(1) + listed(2)));
    EXPECT_EQ(listed_ids(*read), (std::vector<uint64_t>{1, 2}));
}

TEST(Reservations, ALengthBehindTheElementsAndAnotherLineOverridesTheirNumber) {
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply(listed(1) + listed(2) +
                               "    status: 4\n    reservation_list_len: 8589934593\n"));
    EXPECT_EQ(read->reservation_list_len, 8589934593U);
    EXPECT_EQ(read->status, 4U);
    EXPECT_EQ(read->reservation_list[1].reservation_id, 2U);
    read->reservation_list_len = 2;
}

TEST(Reservations, ALengthDirectlyBehindTheElementsIsOneMoreElement) {
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply(listed(1) + "    reservation_list_len: 9\n"
                                           "    reservation_id: 5\n"
                                           "    status: 4\n"));
    EXPECT_EQ(listed_ids(*read), (std::vector<uint64_t>{1, 5}));
    EXPECT_EQ(read->status, 0U);
}

TEST(Reservations, ASecondRunOfElementsReplacesTheFirst) {
    for (const std::string between :
         {"    status: 4\n", "    status: 4\n    reservation_list_len: 0\n",
          "    status: 4\n    reservation_list_len: 99\n"}) {
        MemoryWatch watch;
        {
            const ReadMessage<vemra_reservation_info_list> read(
                reply_kind, info_reply(listed_with_port(1) + listed_with_port(2) + between +
                                       listed_with_port(3)));
            EXPECT_EQ(listed_ids(*read), (std::vector<uint64_t>{3}));
            EXPECT_EQ(watch.alive(), 3U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Reservations, TwelveElementsGrowTheListTwice) {
    std::string elements;
    for (unsigned id = 1; id <= 12; ++id) {
        elements += listed(id);
    }
    MemoryWatch watch;
    const ReadMessage<vemra_reservation_info_list> read(reply_kind, info_reply(elements));
    EXPECT_EQ(read->reservation_list_len, 12U);
    EXPECT_EQ(listed_ids(*read), one_to(12));
    EXPECT_EQ(watch.requests(), 1U + 3U);
    EXPECT_EQ(watch.largest(), 20 * sizeof(vemra_reservation_info));
}

// --- Growing -------------------------------------------------------------------------------------

std::string port_lines(unsigned count) {
    std::string lines;
    for (unsigned i = 1; i <= count; ++i) {
        lines += "    port_guids: " + std::to_string(i) + "\n";
    }
    return lines;
}

const GrowingMember<vemra_create_reservation> created_ports = {
    create_kind, 1, [](unsigned count) { return create_reservation(port_lines(count)); },
    [](const vemra_create_reservation &record) {
        return ports(record);
    }};

const GrowingMember<vemra_reservation_info> info_ports = {
    info_kind, 1, [](unsigned count) { return reservation_info(port_lines(count)); },
    [](const vemra_reservation_info &record) {
        return ports(record);
    }};

const GrowingMember<vemra_reservation_info_list> listed_ports = {
    reply_kind, 2,
    [](unsigned count) {
        return info_reply("    reservation_list {\n" + port_lines(count) + "    }\n");
    },
    [](const vemra_reservation_info_list &list) {
        return ports(list.reservation_list[0]);
    }};

const GrowingMember<vemra_reservation_info_list> elements_of_reply = {
    reply_kind, 1,
    [](unsigned count) {
        std::string elements;
        for (unsigned id = 1; id <= count; ++id) {
            elements += listed(id);
        }
        return info_reply(elements);
    },
    listed_ids};

TEST(Reservations, ArraysGrowByDoubling) {
    expect_growth_by_doubling(created_ports);
    expect_growth_by_doubling(info_ports);
    expect_growth_by_doubling(listed_ports);
    expect_growth_by_doubling(elements_of_reply);
}

TEST(Reservations, FailedGrowthDropsElements) {
    expect_failed_growth_drops(created_ports);
    expect_failed_growth_drops(info_ports);
    expect_failed_growth_drops(listed_ports);
    expect_failed_growth_drops(elements_of_reply);
}

TEST(Reservations, NothingLeaksWhicheverAllocationFails) {
    expect_no_leak<vemra_create_reservation>(create_kind, full_create, 2);
    expect_no_leak<vemra_reservation_info>(info_kind, full_info, 2);
    expect_no_leak<vemra_reservation_info_list>(reply_kind, full_reply, 3);
}

TEST(Reservations, AnElementReadIntoGrownStorageIsClearedFirst) {
    // The second run gets storage that the first one, with all fields set, may have used.
    std::string full;
    std::string empty;
    for (unsigned id = 1; id <= 6; ++id) {
        full += listed_with_port(id);
        empty += "    reservation_list {\n    }\n";
    }
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply(full + "    status: 1\n" + empty));
    ASSERT_EQ(read->reservation_list_len, 6U);
    EXPECT_EQ(read->reservation_list[5].reservation_id, 0U);
    EXPECT_EQ(read->reservation_list[5].state, 0U);
    EXPECT_EQ(read->reservation_list[5].num_guids, 0U);
    EXPECT_EQ(read->reservation_list[5].port_guids, nullptr);
}

// --- Traces --------------------------------------------------------------------------------------

TEST(Reservations, CreateReservationTracesWhatItReads) {
    LogCapture log;
    const ReadMessage<vemra_create_reservation> read(create_kind, full_create);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  trace("create_reservation", "p_msg->reservation_id[0xffffffff]"),
                  trace("create_reservation", "p_msg->pkey[0x8001]"),
                  trace("create_reservation", "p_msg->num_guids[0x2]"),
                  guids_trace("element[1]=[0xf800000000000081]"),
                  guids_trace("element[2]=[0x0]"),
                  guids_trace("END prim ptr, num_lements[0x2], array[0][0xf800000000000081]"),
                  trace("reservation_resources", "p_msg->num_osts[0x40]"),
                  trace("reservation_resources", "p_msg->num_groups[0x10]"),
                  trace("reservation_resources", "p_msg->num_qps[0xffffffff]"),
                  trace("reservation_resources", "p_msg->num_trees[0x4]"),
                  trace("reservation_resources", "p_msg->num_jobs[0x3]"),
                  trace("reservation_resources", "p_msg->priority[0x2]"),
                  trace("reservation_resources", "p_msg->percentage[0x4b]"),
                  trace("reservation_resources", "p_msg->sat[0xff]"),
              }));
}

TEST(Reservations, DeleteReservationAndTheRequestTraceWhatTheyRead) {
    LogCapture log;
    const ReadMessage<vemra_delete_reservation> read(
        delete_kind,
        delete_reservation("    reservation_id: 17\n    force_delete: 1\n    full_info: 1\n"));
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  trace("delete_reservation", "p_msg->reservation_id[0x11]"),
                  trace("delete_reservation", "p_msg->force_delete[0x1]"),
                  trace("delete_reservation", "mismatch, txt_msg[full_info: 1\n  }\n}\n]"),
              }));
    const ReadMessage<vemra_reservation_info_request> request(
        request_kind,
        info_request("    reservation_id: 17\n    full_info: 1\n    force_delete: 1\n"));
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  trace("reservation_info_request", "p_msg->reservation_id[0x11]"),
                  trace("reservation_info_request", "p_msg->full_info[0x1]"),
                  trace("reservation_info_request", "mismatch, txt_msg[force_delete: 1\n  }\n}\n]"),
              }));
}

TEST(Reservations, ReservationInfoTracesPortsThatDoNotScan) {
    LogCapture log;
    const ReadMessage<vemra_reservation_info> read(info_kind,
                                                   reservation_info("    reservation_id: 17\n"
                                                                    "    pkey: 1\n"
                                                                    "    state: 2\n"
                                                                    "    num_guids: 3\n"
                                                                    "    port_guids: 31\n"
                                                                    "    port_guids: x\n"
                                                                    "    resources {\n"
                                                                    "      unknown: 1\n"
                                                                    "    }\n"
                                                                    "    port_guids 7\n"
                                                                    "    unknown: 1\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            trace("reservation_info", "p_msg->reservation_id[0x11]"),
            trace("reservation_info", "p_msg->pkey[0x1]"),
            trace("reservation_info", "p_msg->state[0x2]"),
            trace("reservation_info", "p_msg->num_guids[0x3]"),
            guids_trace("element[1]=[0x1f]"),
            guids_trace("missmatch, array[port_guids: x\n    resources {\n      unknown: 1\n   ], "
                        "frame_key[port_guids:%lu], value[1f]"),
            guids_trace("END prim ptr, num_lements[0x1], array[0][0x1f]"),
            trace("reservation_resources",
                  "mismatch, txt_msg[unknown: 1\n    }\n    port_guids 7\n    unknown: 1\n ]"),
            guids_trace("missmatch, array[port_guids 7\n    unknown: 1\n  }\n}\n], "
                        "frame_key[port_guids:%lu], value[0]"),
            guids_trace("END prim ptr, num_lements[0x0], array[0][0x0]"),
            trace("reservation_info", "mismatch, txt_msg[unknown: 1\n  }\n}\n]"),
        }));
    EXPECT_EQ(read->port_guids, nullptr);
    EXPECT_EQ(read->num_guids, 0U);
}

TEST(Reservations, TheReplyTracesItsElementsUnderTheirReader) {
    LogCapture log;
    const ReadMessage<vemra_reservation_info_list> read(
        reply_kind, info_reply("    reservation_list_len: 4294967297\n" + listed(5) +
                               "    status: 15\n    unknown: 1\n"));
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  trace("reservation_info_list", "p_msg->reservation_list_len[0x1]"),
                  trace("reservation_info", "p_msg->reservation_id[0x5]"),
                  trace("reservation_info", "p_msg->state[0x2]"),
                  trace("reservation_info_list", "p_msg->status[0xf]"),
                  trace("reservation_info_list", "mismatch, txt_msg[unknown: 1\n  }\n}\n]"),
              }));
}

} // namespace
} // namespace kvt_test
