// The kinds of messages: name, block and record of each.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/row.h"

namespace kvt_str {

struct MessageKind {
    uint32_t value;       ///< in the enumeration of kinds
    const char *name;     ///< as on the type line
    const char *block;    ///< the name of the record's block; null for a kind that carries none
    const Record *record; ///< null for a kind that carries none
};

struct MessageKinds {
    const MessageKind *first;
    size_t count;

    const MessageKind *begin() const { return first; }

    const MessageKind *end() const { return first + count; }
};

/// All kinds, in the order of their values.
MessageKinds message_kinds();

/// The kind of a value; null for a number that is none.
const MessageKind *find_kind(int32_t msg_type);

/// The kind of a name, which may go on after the kind's own name; null for any other.
const MessageKind *find_kind(const char *name);

} // namespace kvt_str
