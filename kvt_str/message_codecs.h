// What the codec knows of each kind of message that carries a record, beside its table.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/codec.h"
#include "kvt/messages/message_type.h"
#include "message_kinds.h"

namespace kvt_str {

struct MessageCodec {
    std::string_view head; ///< the lines up to the opening line of the record's block
    const Codec *record;
    const char *no_memory;             ///< what kvt_msg_from_str logs when it cannot allocate
    const char *no_memory_in_sequence; ///< what kvt_msg_arr_from_str logs
};

inline constexpr uint32_t message_codec_count = VEMRA_MSG_TYPE_LAST - 1;

/// In the order of the kinds, of which the first carries no record.
extern const MessageCodec message_codecs[message_codec_count];

/// The codec of a value; null for one that is no kind with a record.
inline const MessageCodec *find_message_codec(int32_t msg_type) {
    const bool carries_a_record = msg_type > VEMRA_MSG_TYPE_NONE && msg_type < VEMRA_MSG_TYPE_LAST;
    return carries_a_record ? &message_codecs[static_cast<uint32_t>(msg_type) - 1] : nullptr;
}

/// Of a kind that carries a record.
inline const MessageCodec &message_codec_of(const MessageKind &kind) {
    return message_codecs[kind.value - 1];
}

} // namespace kvt_str
