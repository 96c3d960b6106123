// The kinds of messages: name, record and constant texts of each.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "engine/row.h"
#include "text/text.h"

namespace kvt_str {

struct MessageKind {
    uint32_t value;       ///< in the enumeration of kinds
    const char *name;     ///< as on the type line
    const char *block;    ///< the name of the record's block; null for a kind that carries none
    const Record *record; ///< null for a kind that carries none

    std::string_view head; ///< the lines up to the opening line of the record's block

    const char *no_memory;             ///< what kvt_msg_from_str logs when it cannot allocate
    const char *no_memory_in_sequence; ///< what kvt_msg_arr_from_str logs
};

/// All kinds, in the order of their values.
std::span<const MessageKind> message_kinds();

/// The kind of a value; null for a number that is none.
const MessageKind *find_kind(int32_t msg_type);

/// The kind of a name, which may go on after the kind's own name; null for any other.
const MessageKind *find_kind(const char *name);

/// The kind with a record whose message begins at `at` as the writer begins it, to the letter up to
/// the record's first line; null for any other text.
const MessageKind *find_straight_kind(const Text &text, const char *at);

} // namespace kvt_str
