#include "message_table.h"

#include <cstring>
#include <iterator>

#include "kvt/messages/message_type.h"
#include "records/records.h"
#include "text/scanner.h"

namespace kvt_str {

namespace {

#define MESSAGE(name, block, record)                                                               \
    MessageKind {                                                                                  \
#name, &RecordOf < record> ::table, "msg {\n  type: " #name "\n",                          \
            make_label(KVT_BLANKS block " {\n"),                                                   \
            "kvt_msg_from_str: Failed to allocate memory for " #record " message",                 \
            "kvt_msg_arr_from_str: Failed to allocate memory for " #record " message"              \
    }
#define NO_RECORD(name)                                                                            \
    MessageKind {                                                                                  \
#name, nullptr, nullptr, {}, nullptr, nullptr                                              \
    }

// clang-format off
constexpr MessageKind kinds[] = {
    NO_RECORD(NONE),
    NO_RECORD(BEGIN_JOB),
    MESSAGE(END_JOB, "end_job", vemra_end_job),
    NO_RECORD(JOB_DATA),
    NO_RECORD(ALLOC_GROUPS),
    NO_RECORD(GROUPS_DATA),
    NO_RECORD(RELEASE_GROUPS),
    MESSAGE(REQ_SM_DATA, "request_sm_data", vemra_request_sm_data),
    NO_RECORD(SM_DATA),
    MESSAGE(JOB_ERROR, "job_error", vemra_job_error),
    MESSAGE(AM_SIGNAL, "am_signal", vemra_am_signal),
    NO_RECORD(JOB_INFO_REQUEST),
    NO_RECORD(JOB_INFO_REPLY),
    NO_RECORD(PERSISTENT_JOB_INFO),
    NO_RECORD(CREATE_RESERVATION),
    NO_RECORD(DELETE_RESERVATION),
    NO_RECORD(RESERVATION_INFO_REQUEST),
    NO_RECORD(RESERVATION_INFO_REPLY),
    NO_RECORD(PERSISTENT_RESERVATION_INFO),
    NO_RECORD(TOPOLOGY_INFO_REQUEST),
    NO_RECORD(TOPOLOGY_INFO_REPLY),
    NO_RECORD(EVENTS_REQUEST),
    NO_RECORD(EVENTS_REPLY),
    NO_RECORD(RESOURCE_DATA),
    NO_RECORD(LAST),
};
// clang-format on

static_assert(std::size(kinds) == VEMRA_MSG_TYPE_LAST + 1);

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

uint32_t value_of(const MessageKind &kind) {
    return static_cast<uint32_t>(&kind - kinds);
}

} // namespace kvt_str
