#include "read_message.h"

#include <cstdlib>

#include "kvt/messages/message_type.h"
#include "record/log.h"
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

const char *read_message(Input &input, const char *at, const MessageReader &reader,
                         const MessageKind *&kind, void **record) {
    const char *type_line = next_line(at);
    char name[type_name_capacity];
    scan_type_name(type_line, name);
    kind = find_kind(name);
    if (kind == nullptr || kind->record == nullptr) {
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
    const Record &table = *kind->record;
    *record = std::calloc(1, table.size);
    if (*record == nullptr) {
        log(error_level, reader.name, kind->*reader.no_memory_text);
        return nullptr;
    }
    return skip_blanks(
        table.unpack(input, after_newline(next_line(type_line)), *record, message_level));
}

} // namespace kvt_str
