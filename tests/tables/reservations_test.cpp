// CREATE_RESERVATION, DELETE_RESERVATION, RESERVATION_INFO_REQUEST, RESERVATION_INFO_REPLY and
// PERSISTENT_RESERVATION_INFO.
#include <gtest/gtest.h>

#include <cstddef>

#include "kvt/messages/reservations.h"
#include "support/log_capture.h"
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
    EXPECT_EQ(read_and_write<vemra_create_reservation>(create_kind, full_create), full_create);
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
    EXPECT_EQ(read_and_write<vemra_reservation_info>(info_kind, full_info), full_info);
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
    EXPECT_EQ(read_and_write<vemra_reservation_info_list>(reply_kind, full_reply), full_reply);
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

// --- Order and prefixes --------------------------------------------------------------------------

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
