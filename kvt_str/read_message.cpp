#include "read_message.h"

#include <cstdlib>

#include "engine/log.h"
#include "kvt/messages/message_type.h"
#include "text/number.h"
#include "text/scanner.h"

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
    // Both readers of messages log these under the single reader's name.
    if (kind == find_kind(VEMRA_MSG_TYPE_NONE)) {
        log(error_level, reader.name,
            "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_NONE not yet implemented");
    } else if (kind == find_kind(VEMRA_MSG_TYPE_LAST)) {
        log(error_level, reader.name,
            "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_LAST not yet implemented");
    } else {
        log(error_level, reader.name, "kvt_msg_from_str: Invalid value given for msg_type[%s]",
            name);
    }
    return nullptr;
}

} // namespace

const char *read_message(Input &input, const char *at, const MessageReader &reader,
                         const MessageKind *&kind, void **record) {
    const char *lines;
    kind = find_straight_kind(input.text, at);
    if (kind != nullptr) {
        lines = at + kind->head.size();
    } else {
        input.straight = false;
        const char *type_line = next_line(at);
        kind = find_kind_on_line(type_line, reader);
        if (kind == nullptr) {
            return nullptr;
        }
        lines = after_newline(next_line(type_line));
    }
    const Record &table = *kind->record;
    *record = std::calloc(1, table.size);
    if (*record == nullptr) {
        log(error_level, reader.name, kind->*reader.no_memory_text);
        return nullptr;
    }
    const char *closing = skip_blanks(table.unpack(input, lines, *record, message_level));
    input.straight = input.straight && closing[0] == '}' && closing[1] == '\n';
    return closing;
}

} // namespace kvt_str
