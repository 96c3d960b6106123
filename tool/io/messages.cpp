#include "io/messages.h"

#include <cstdlib>

#include "model/end_marks.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

constexpr MessageReader tool_reader = {"kvt", &MessageCodec::no_memory};

/// The kind on a type line; null when there is none.
const MessageKind *find_kind_on_line(const char *type_line) {
    char name[type_name_capacity];
    scan_type_name(type_line, name);
    return find_kind(name);
}

/// Reads a message as read_message does, with the end marks of its byte arrays.
const char *read_with_end_marks(kvt_str::Input &input, const char *at, const MessageKind *&kind,
                                void **record) {
    const char *type_line = kvt_str::next_line(at);
    kind = find_kind_on_line(type_line);
    const Codec *codec = kind != nullptr ? codec_with_end_marks(*kind) : nullptr;
    if (codec == nullptr) {
        return read_message(input, at, tool_reader, kind, record);
    }
    *record = std::calloc(1, codec->size);
    if (*record == nullptr) {
        return nullptr;
    }
    const char *lines = after_newline(kvt_str::next_line(type_line));
    return skip_blanks(codec->unpack(input, lines, *record, message_level));
}

} // namespace

const char *find_next_message(const char *at) {
    do {
        at = kvt_str::next_line(at);
    } while (*at != '\0' && !begins_message(at));
    return at;
}

const char *read_one(kvt_str::Input &input, const char *at, const MessageKind *&kind, void **record,
                     bool &closed) {
    const char *after_record = read_with_end_marks(input, at, kind, record);
    if (after_record == nullptr) {
        return nullptr;
    }
    closed = *after_record == '}';
    if (closed) {
        return kvt_str::next_line(after_record);
    }
    return *after_record == '\0' || begins_message(after_record) ? after_record
                                                                 : find_next_message(after_record);
}

} // namespace kvt_tool
