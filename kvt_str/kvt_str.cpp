// The entry points: the only names that the library exports.
#include "kvt/kvt_str.h"

#include "engine/log.h"
#include "log_texts.h"
#include "message_sequence.h"
#include "read_message.h"
#include "text/scanner.h"
#include "write_message.h"

using namespace kvt_str;

extern "C" {

int32_t kvt_msg_to_str(int32_t msg_type, const void *msg, char *buf) {
    return write_message(msg_type, msg, buf);
}

uint32_t kvt_str_get_buf_size(int32_t msg_type, const void *msg) {
    return measure_message(msg_type, msg);
}

int32_t kvt_msg_from_str(kvt_ignored /*ignored1*/, kvt_ignored /*ignored2*/, const char *buf,
                         void **msg) {
    static constexpr MessageReader self = {"kvt_msg_from_str", &MessageCodec::no_memory};
    if (buf == nullptr || msg == nullptr) {
        log(error_level, self.name, log_texts::no_text_to_read, static_cast<const void *>(buf),
            static_cast<const void *>(msg));
        return -1;
    }
    if (!begins_message(buf)) {
        return -1;
    }
    Input input{Text(buf), Counts::as_read};
    const MessageKind *kind;
    return read_message(input, buf, self, kind, msg) != nullptr ? 0 : -1;
}

int32_t kvt_msg_arr_from_str(const char *buf, uint32_t length, char ***msgs, uint32_t **kinds,
                             int32_t *count) {
    if (buf == nullptr || msgs == nullptr) {
        log(error_level, "kvt_msg_arr_from_str", log_texts::no_texts_to_read,
            static_cast<const void *>(buf), static_cast<const void *>(msgs));
        return -1;
    }
    MessageSequence sequence;
    if (!begins_message(buf) || !sequence.read(buf, length)) {
        return -1;
    }
    sequence.write_texts();
    *msgs = sequence.take_texts();
    if (kinds != nullptr) {
        *kinds = sequence.take_kinds();
    }
    if (count != nullptr) {
        *count = static_cast<int32_t>(sequence.count());
    }
    return 0;
}

char *next_msg(const char *text, uint32_t length) {
    return text != nullptr && length != 0 ? const_cast<char *>(next_message(text, length))
                                          : nullptr;
}

char *next_line(const char *text) {
    return text != nullptr ? const_cast<char *>(kvt_str::next_line(text)) : nullptr;
}

int check_start_msg(const char *text) {
    return text != nullptr && look_at_line(text).opens ? 1 : 0;
}

int check_end_msg(const char *text) {
    return text != nullptr && look_at_line(text).closes ? 1 : 0;
}

char *find_end_msg(const char *text) {
    return text != nullptr ? const_cast<char *>(find_block_end(text)) : nullptr;
}

} // extern "C"
