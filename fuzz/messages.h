// Messages as the targets read and write them.
#pragma once

#include <string>

#include "engine/codec.h"
#include "message_kinds.h"

namespace kvt_fuzz {

/// A message that was read by the engine: what kvt_msg_from_str does with Counts::as_read, and
/// kvt_msg_arr_from_str does with Counts::agree.
struct Message {
    const kvt_str::MessageKind *kind; ///< null when there is no message
    void *record;                     ///< to be released
};

Message read_as(const char *text, kvt_str::Counts counts);

/// The text that the codec writes into a block of exactly the size that it promises: which must be
/// the size of the text.
std::string write_exactly(uint32_t kind, const void *record);

} // namespace kvt_fuzz
