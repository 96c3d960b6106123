// The kinds of messages: name, record and constant texts of each.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "record/row.h"

namespace kvt_str {

struct MessageKind {
    uint32_t value;       ///< in the enumeration of kinds
    const char *name;     ///< as on the type line
    const Record *record; ///< null for a kind that carries none

    std::string_view head; ///< the lines up to the opening line of the record's block

    const char *no_memory;             ///< what kvt_msg_from_str logs when it cannot allocate
    const char *no_memory_in_sequence; ///< what kvt_msg_arr_from_str logs
};

/// All kinds, in the order of their values.
std::span<const MessageKind> message_kinds();

/// The kind of a value; null for a number that is none.
const MessageKind *find_kind(int32_t msg_type);

/// The kind of a name, which may go on behind the kind's own name; null for any other.
const MessageKind *find_kind(const char *name);

/// The level of a message's record block.
inline constexpr unsigned message_level = 1;

} // namespace kvt_str
