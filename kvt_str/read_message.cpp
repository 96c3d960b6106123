#include "read_message.h"

#include <cstdlib>

#include "engine/log.h"
#include "kvt/messages/message_type.h"
#include "log_texts.h"
#include "text/digits.h"
#include "text/number.h"
#include "text/scanner.h"
#include "text/words.h"

namespace kvt_str {

bool begins_message(const char *at) {
    return begins_with(at, "msg", 3);
}

void scan_type_name(const char *at, char (&name)[type_name_capacity]) {
    static constexpr char key[] = "type:";
    size_t length = 0;
    if (begins_with(at, key, sizeof key - 1)) {
        at += sizeof key - 1;
        while (is_space(*at)) {
            ++at;
        }
        while (*at != '\0' && !is_space(*at) && length < type_name_capacity - 1) {
            name[length++] = *at++;
        }
    }
    name[length] = '\0';
}

namespace {

/// Finds the kind on the type line at `at`. Null when it carries no record or is not known, which
/// is logged.
const MessageKind *find_kind_on_line(const char *at, const MessageReader &reader) {
    char name[type_name_capacity];
    scan_type_name(at, name);
    const MessageKind *kind = find_kind(name);
    if (kind != nullptr && kind->record != nullptr) {
        return kind;
    }
    if (kind == find_kind(VEMRA_MSG_TYPE_NONE)) {
        log(error_level, reader.name, log_texts::read_of_none);
    } else if (kind == find_kind(VEMRA_MSG_TYPE_LAST)) {
        log(error_level, reader.name, log_texts::read_of_last);
    } else {
        log(error_level, reader.name, log_texts::read_of_unknown_name, name);
    }
    return nullptr;
}

/// The kind with a record whose message begins at `at` as the writer begins it, to the letter up to
/// the record's first line; null for any other text.
const MessageKind *find_canonical_kind(const Text &text, const char *at) {
    // Most kinds differ in the first eight characters of their names; every head has them.
    constexpr size_t name_offset = std::string_view("msg {\n  type: ").size();
    if (!text.has(at, name_offset + 8)) {
        return nullptr;
    }
    for (uint32_t i = 0; i < message_codec_count; ++i) {
        const std::string_view head = message_codecs[i].head;
        if (load_eight(at + name_offset) == load_eight(head.data() + name_offset) &&
            text.has(at, head.size()) && equal_words(at, head.data(), head.size())) {
            return find_kind(static_cast<int32_t>(i + 1));
        }
    }
    return nullptr;
}

} // namespace

const char *read_message(Input &input, const char *at, const MessageReader &reader,
                         const MessageKind *&kind, void **record) {
    const char *lines;
    kind = find_canonical_kind(input.text, at);
    if (kind != nullptr) {
        lines = at + message_codec_of(*kind).head.size();
    } else {
        input.canonical = false;
        const char *type_line = next_line(at);
        kind = find_kind_on_line(type_line, reader);
        if (kind == nullptr) {
            return nullptr;
        }
        lines = after_newline(next_line(type_line));
    }
    const MessageCodec &codec = message_codec_of(*kind);
    *record = std::calloc(1, codec.record->size);
    if (*record == nullptr) {
        log(error_level, reader.name, codec.*reader.no_memory_text);
        return nullptr;
    }
    const char *closing = skip_blanks(codec.record->unpack(input, lines, *record, message_level));
    input.canonical = input.canonical && closing[0] == '}' && closing[1] == '\n';
    return closing;
}

} // namespace kvt_str
