// Reads one message: recognises its kind, allocates its record and fills it.
#pragma once

#include <cstddef>

#include "engine/codec.h"
#include "message_codecs.h"

namespace kvt_str {

/// True when the text at `at` begins with the word that every message begins with.
bool begins_message(const char *at);

/// Room for a kind's name on the type line and its NUL. Longer names are cut: none is that long.
inline constexpr size_t type_name_capacity = 100;

/// Reads the name on the type line at `at`, as the C library's "type: %s" does: the name may stand
/// on a later line. Empty when the line is no type line.
void scan_type_name(const char *at, char (&name)[type_name_capacity]);

/// What differs between the two readers of messages when they fail.
struct MessageReader {
    const char *name;                          ///< of the function that logs
    const char *MessageCodec::*no_memory_text; ///< what it says of a record that it cannot allocate
};

/// Reads the message that begins at `at`. Returns the position of its envelope's closing line, and
/// the kind and the new record through `kind` and `record`. Returns null when the kind carries no
/// record or is not known, or when the record cannot be allocated: that is logged, `kind` is
/// undefined and `record` untouched, but null after a failed allocation.
const char *read_message(Input &input, const char *at, const MessageReader &reader,
                         const MessageKind *&kind, void **record);

} // namespace kvt_str
