#include "message_kinds.h"

#include <cstring>
#include <iterator>
#include <string_view>

#include "kvt/messages/message_type.h"
#include "message_list.h"
#include "tables/records.h"
#include "text/scanner.h"

namespace kvt_str {

namespace {

#define KVT_NO_RECORD(name)                                                                        \
    MessageKind {                                                                                  \
        VEMRA_MSG_TYPE_##name, #name, nullptr, nullptr                                             \
    }
#define KVT_KIND(name, block, record)                                                              \
    MessageKind{VEMRA_MSG_TYPE_##name, #name, block, &RecordOf<record>::table},

constexpr MessageKind kinds[] = {
    KVT_NO_RECORD(NONE),
    KVT_MESSAGES(KVT_KIND) // each with its comma
    KVT_NO_RECORD(LAST),
};

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

MessageKinds message_kinds() {
    return {kinds, std::size(kinds)};
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

} // namespace kvt_str
