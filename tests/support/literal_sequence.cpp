#include "support/literal_sequence.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "engine/release.h"
#include "message_kinds.h"
#include "support/both_readers.h"
#include "support/literal_codec.h"
#include "support/literal_scanner.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

bool begins_with_msg(const char *at) {
    return std::strncmp(at, "msg", 3) == 0;
}

size_t literal_envelopes(const char *at) {
    size_t count = 0;
    do {
        at = literal_block_end(at);
        ++count;
    } while (begins_with_msg(at));
    return count;
}

/// The first kind whose name the type line's begins with; null for none.
const MessageKind *literal_kind(const char *name) {
    for (const MessageKind &kind : message_kinds()) {
        if (std::strncmp(name, kind.name, std::strlen(kind.name)) == 0) {
            return &kind;
        }
    }
    return nullptr;
}

std::string literal_message(const MessageKind &kind, const void *record) {
    return std::string("msg {\n  type: ") + kind.name + "\n" +
           literal_write(*kind.record, record, kind.block, message_level) + "}\n";
}

LiteralSequence failure(std::string error) {
    LiteralSequence nothing;
    nothing.error = std::move(error);
    return nothing;
}

} // namespace

LiteralSequence literal_sequence(const char *text, uint32_t length) {
    if (!begins_with_msg(text)) {
        return {};
    }
    LiteralSequence sequence;
    const char *at = text;
    do {
        const char *type_line = literal_next_line(at);
        char name[100] = {};
        std::sscanf(type_line, "type: %99s", name);
        const MessageKind *kind = literal_kind(name);
        if (kind == nullptr) {
            return failure(std::string("kvt_msg_from_str: Invalid value given for msg_type[") +
                           name + "]");
        }
        if (kind->record == nullptr) {
            return failure(std::string("kvt_msg_from_str: Support for VEMRA_MSG_TYPE_") +
                           kind->name + " not yet implemented");
        }
        void *record = std::calloc(1, kind->record->size);
        const char *closing = read_block_literally(*kind->record, literal_next_line(type_line),
                                                   record, CountsOf::a_sequence);
        sequence.kinds.push_back(kind->value);
        sequence.texts.push_back(literal_message(*kind, record));
        release_members(*kind->record, record);
        std::free(record);
        const uint32_t remaining = length - static_cast<uint32_t>(closing - text);
        at = remaining == 0 ? nullptr : literal_next_message(closing, remaining);
    } while (at != nullptr && begins_with_msg(at));
    sequence.result = 0;
    sequence.envelopes = literal_envelopes(text);
    return sequence;
}

} // namespace kvt_test
