#include "message_table.h"

#include <cstring>
#include <iterator>
#include <string_view>

#include "kvt/messages/message_type.h"
#include "tables/records.h"
#include "text/digits.h"
#include "text/scanner.h"
#include "text/words.h"

namespace kvt_str {

namespace {

#define MESSAGE(name, block, record)                                                               \
    MessageKind {                                                                                  \
        VEMRA_MSG_TYPE_##name, #name, block, &RecordOf<record>::table,                             \
            "msg {\n  type: " #name "\n  " block " {\n",                                           \
            "kvt_msg_from_str: Failed to allocate memory for " #record " message",                 \
            "kvt_msg_arr_from_str: Failed to allocate memory for " #record " message"              \
    }
#define NO_RECORD(name)                                                                            \
    MessageKind {                                                                                  \
        VEMRA_MSG_TYPE_##name, #name, nullptr, nullptr, {}, nullptr, nullptr                       \
    }

// clang-format off
constexpr MessageKind kinds[] = {
    NO_RECORD(NONE),
    MESSAGE(BEGIN_JOB, "begin_job", vemra_begin_job),
    MESSAGE(END_JOB, "end_job", vemra_end_job),
    MESSAGE(JOB_DATA, "job_data", vemra_job_data),
    MESSAGE(ALLOC_GROUPS, "alloc_groups", vemra_alloc_groups),
    MESSAGE(GROUPS_DATA, "groups_data", vemra_groups_data),
    MESSAGE(RELEASE_GROUPS, "release_groups", vemra_release_groups),
    MESSAGE(REQ_SM_DATA, "request_sm_data", vemra_request_sm_data),
    MESSAGE(SM_DATA, "sm_data", vemra_sm_data),
    MESSAGE(JOB_ERROR, "job_error", vemra_job_error),
    MESSAGE(AM_SIGNAL, "am_signal", vemra_am_signal),
    MESSAGE(JOB_INFO_REQUEST, "mgmt_job_info_list_request", vemra_mgmt_job_info_list_request),
    MESSAGE(JOB_INFO_REPLY, "mgmt_job_info_list", vemra_mgmt_job_info_list),
    MESSAGE(PERSISTENT_JOB_INFO, "persistent_job_info", persistent_job_info),
    MESSAGE(CREATE_RESERVATION, "create_reservation", vemra_create_reservation),
    MESSAGE(DELETE_RESERVATION, "delete_reservation", vemra_delete_reservation),
    MESSAGE(RESERVATION_INFO_REQUEST, "reservation_info_request", vemra_reservation_info_request),
    MESSAGE(RESERVATION_INFO_REPLY, "reservation_info_list", vemra_reservation_info_list),
    MESSAGE(PERSISTENT_RESERVATION_INFO, "reservation_info", vemra_reservation_info),
    MESSAGE(TOPOLOGY_INFO_REQUEST, "topology_info_request", vemra_topology_info_request),
    MESSAGE(TOPOLOGY_INFO_REPLY, "topology_info_list", vemra_topology_info_list),
    MESSAGE(EVENTS_REQUEST, "get_events_request", vemra_get_events_request),
    MESSAGE(EVENTS_REPLY, "event_list", vemra_event_list),
    MESSAGE(RESOURCE_DATA, "resource_message", vemra_resource_message),
    NO_RECORD(LAST),
};

// clang-format on

constexpr bool rows_are_in_order() {
    for (size_t i = 0; i < std::size(kinds); ++i) {
        if (kinds[i].value != i) {
            return false;
        }
    }
    return true;
}

/// True when no name begins with an earlier one, which would take its texts.
constexpr bool names_are_reachable() {
    for (const MessageKind &later : kinds) {
        for (const MessageKind *earlier = kinds; earlier != &later; ++earlier) {
            if (std::string_view(later.name).starts_with(earlier->name)) {
                return false;
            }
        }
    }
    return true;
}

static_assert(std::size(kinds) == VEMRA_MSG_TYPE_LAST + 1, "one row for every kind");
static_assert(rows_are_in_order(), "a row stands at the place of its value");
static_assert(names_are_reachable(), "a name must not begin with an earlier one");

} // namespace

std::span<const MessageKind> message_kinds() {
    return kinds;
}

const MessageKind *find_kind(int32_t msg_type) {
    return static_cast<uint32_t>(msg_type) < std::size(kinds) ? &kinds[msg_type] : nullptr;
}

const MessageKind *find_kind(const char *name) {
    for (const MessageKind &kind : kinds) {
        if (begins_with(name, kind.name, std::strlen(kind.name))) {
            return &kind;
        }
    }
    return nullptr;
}

const MessageKind *find_straight_kind(const Text &text, const char *at) {
    // Most kinds differ in the first eight characters of their names; every head has them.
    constexpr size_t name_offset = std::string_view("msg {\n  type: ").size();
    if (!text.has(at, name_offset + 8)) {
        return nullptr;
    }
    for (const MessageKind &kind : kinds) {
        if (kind.record != nullptr &&
            load_eight(at + name_offset) == load_eight(kind.head.data() + name_offset) &&
            text.has(at, kind.head.size()) && equal_words(at, kind.head.data(), kind.head.size())) {
            return &kind;
        }
    }
    return nullptr;
}

} // namespace kvt_str
