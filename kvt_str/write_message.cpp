#include "write_message.h"

#include <cstring>

#include "engine/log.h"
#include "kvt/messages/message_type.h"
#include "log_texts.h"
#include "message_codecs.h"
#include "text/words.h"

namespace kvt_str {

namespace {

constexpr char envelope_opening[] = "msg {\n";
constexpr char envelope_closing[] = "}\n";

/// What the size of a message without a record is said to be: the first line of its envelope.
constexpr uint32_t size_without_record = sizeof envelope_opening - 1;

/// Says that a value is no kind with a record.
void log_no_record(int32_t msg_type, const char *function, const char *text_of_none,
                   const char *text_of_last) {
    if (msg_type == VEMRA_MSG_TYPE_NONE) {
        log(error_level, function, text_of_none);
    } else if (msg_type == VEMRA_MSG_TYPE_LAST) {
        log(error_level, function, text_of_last);
    } else {
        log(error_level, function, log_texts::invalid_kind, msg_type);
    }
}

} // namespace

int32_t write_message(int32_t msg_type, const void *msg, char *buf) {
    static constexpr char self[] = "kvt_msg_to_str";
    if (msg == nullptr || buf == nullptr) {
        log(error_level, self, log_texts::no_write_buffer, static_cast<const void *>(buf), msg);
        return -1;
    }
    const MessageCodec *codec = find_message_codec(msg_type);
    char *out = buf;
    if (codec != nullptr) {
        out = copy_words(out, codec->head.data(), codec->head.size());
        out = codec->record->pack(msg, message_level, out);
    } else {
        std::memcpy(out, envelope_opening, sizeof envelope_opening);
        out += sizeof envelope_opening - 1;
        log_no_record(msg_type, self, log_texts::write_of_none, log_texts::write_of_last);
    }
    std::memcpy(out, envelope_closing, sizeof envelope_closing);
    return 0;
}

uint32_t measure_message(int32_t msg_type, const void *msg) {
    static constexpr char self[] = "kvt_str_get_buf_size";
    if (msg == nullptr) {
        log(error_level, self, log_texts::no_message_to_measure);
        return 0;
    }
    const MessageCodec *codec = find_message_codec(msg_type);
    if (codec == nullptr) {
        log_no_record(msg_type, self, log_texts::size_of_none, log_texts::size_of_last);
        const bool known = msg_type == VEMRA_MSG_TYPE_NONE || msg_type == VEMRA_MSG_TYPE_LAST;
        return known ? size_without_record : 0;
    }
    const uint64_t head = codec->head.size();
    const uint64_t block = codec->record->measure(msg, message_level);
    const uint64_t size = head + block + sizeof envelope_closing;
    return size <= UINT32_MAX ? static_cast<uint32_t>(size) : 0;
}

} // namespace kvt_str
