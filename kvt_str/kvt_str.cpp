// The entry points: the only names that the library exports.
#include "kvt/kvt_str.h"

#include <cstring>

#include "engine/log.h"
#include "message_sequence.h"
#include "message_table.h"
#include "read_message.h"
#include "text/scanner.h"
#include "text/words.h"

namespace {

using namespace kvt_str;

constexpr char envelope_opening[] = "msg {\n";
constexpr char envelope_closing[] = "}\n";

/// What the size of a message without a record is said to be: the first line of its envelope.
constexpr uint32_t size_without_record = sizeof envelope_opening - 1;

/// What an entry point logs of a kind that carries no record.
struct NoRecordTexts {
    const char *none;
    const char *last;
};

/// The kind of a value when it carries a record, else null.
const MessageKind *find_kind_with_record(int32_t msg_type) {
    const MessageKind *kind = find_kind(msg_type);
    return kind != nullptr && kind->record != nullptr ? kind : nullptr;
}

/// Says that a value is no kind with a record.
void log_no_record(int32_t msg_type, const char *function, const NoRecordTexts &texts) {
    if (msg_type == VEMRA_MSG_TYPE_NONE) {
        log(error_level, function, texts.none);
    } else if (msg_type == VEMRA_MSG_TYPE_LAST) {
        log(error_level, function, texts.last);
    } else {
        log(error_level, function, "Invalid value given for msg_type[%d]", msg_type);
    }
}

} // namespace

extern "C" {

int32_t kvt_msg_to_str(int32_t msg_type, const void *msg, char *buf) {
    static constexpr char self[] = "kvt_msg_to_str";
    // These name another writer than this one: readers of logs know them so.
    static constexpr NoRecordTexts no_record = {
        "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_NONE not yet implemented",
        "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_LAST not yet implemented"};
    if (msg == nullptr || buf == nullptr) {
        log(error_level, self, "kvt_msg_to_str: No buffer[%p] or msg[%p] was specified",
            static_cast<const void *>(buf), msg);
        return -1;
    }
    const MessageKind *kind = find_kind_with_record(msg_type);
    char *out = buf;
    if (kind != nullptr) {
        out = copy_words(out, kind->head.data(), kind->head.size());
        out = kind->record->pack(msg, message_level, out);
    } else {
        std::memcpy(out, envelope_opening, sizeof envelope_opening);
        out += sizeof envelope_opening - 1;
        log_no_record(msg_type, self, no_record);
    }
    std::memcpy(out, envelope_closing, sizeof envelope_closing);
    return 0;
}

uint32_t kvt_str_get_buf_size(int32_t msg_type, const void *msg) {
    static constexpr char self[] = "kvt_str_get_buf_size";
    static constexpr NoRecordTexts no_record = {
        "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_NONE not yet implemented",
        "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_LAST not yet implemented"};
    if (msg == nullptr) {
        log(error_level, self, "kvt_str_get_buf_size: No message was specified");
        return 0;
    }
    const MessageKind *kind = find_kind_with_record(msg_type);
    if (kind == nullptr) {
        log_no_record(msg_type, self, no_record);
        const bool known = msg_type == VEMRA_MSG_TYPE_NONE || msg_type == VEMRA_MSG_TYPE_LAST;
        return known ? size_without_record : 0;
    }
    const uint64_t size =
        kind->head.size() + kind->record->measure(msg, message_level) + sizeof envelope_closing;
    return size <= UINT32_MAX ? static_cast<uint32_t>(size) : 0;
}

int32_t kvt_msg_from_str(kvt_ignored /*ignored1*/, kvt_ignored /*ignored2*/, const char *buf,
                         void **msg) {
    static constexpr MessageReader self = {"kvt_msg_from_str", &MessageKind::no_memory};
    if (buf == nullptr || msg == nullptr) {
        log(error_level, self.name, "kvt_msg_from_str: No buffer[%p] or msg[%p] was specified",
            static_cast<const void *>(buf), static_cast<const void *>(msg));
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
        // The text names the single reader: readers of logs know it so.
        log(error_level, "kvt_msg_arr_from_str",
            "kvt_msg_from_str: No buffer[%p] or msgs[%p] was specified",
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
