// The messages of a unit, one after the other.
#pragma once

#include <algorithm>
#include <cstdint>

#include "io/unit_stream.h"
#include "kvt/message_layer.h"
#include "message_kinds.h"
#include "read_message.h"
#include "text/scanner.h"

namespace kvt_tool {

/// A message that has been read. The record is released when the work on it is done.
struct ReadMessage {
    const kvt_str::MessageKind &kind;
    void *record; ///< to be set to null when it is taken over
    const Unit &unit;
    const char *begin; ///< in the unit's text
    const char *end;   ///< after its closing line, and after the blank lines below
    uint64_t line;     ///< of its begin, in the input
};

/// The first line that begins a message, from the line after `at` on, or the text's end.
const char *find_next_message(const char *at);

/// Reads the message at `at`. Returns where it ends, or null when it cannot be read. `closed` tells
/// whether its last line is its own closing line.
const char *read_one(kvt_str::Input &input, const char *at, const kvt_str::MessageKind *&kind,
                     void **record, bool &closed);

/// Calls `work(ReadMessage &)` for each message of a unit that can be read. Counts in the
/// records agree with the elements. Returns whether that was all of the unit: no text outside of
/// messages, none that cannot be read or is not closed, no NUL within. Lines that the reader does
/// not know are no matter here: the check tells of them.
template <typename Work> bool read_messages(const Unit &unit, Work work) {
    kvt_str::Input input{kvt_str::Text(unit.text), kvt_str::Counts::agree};
    bool complete = input.text.end() == unit.text + unit.length;
    uint64_t line = unit.first_line;
    const char *counted = unit.text;
    for (const char *at = kvt_str::skip_blanks(unit.text); *at != '\0';) {
        line += static_cast<uint64_t>(std::count(counted, at, '\n'));
        counted = at;
        if (!kvt_str::begins_message(at)) {
            complete = false;
            at = find_next_message(at);
            continue;
        }
        const kvt_str::MessageKind *kind = nullptr;
        void *record = nullptr;
        bool closed = false;
        const char *end = read_one(input, at, kind, &record, closed);
        complete = complete && end != nullptr && closed;
        if (end == nullptr) {
            at = find_next_message(at);
            continue;
        }
        ReadMessage message{*kind, record, unit, at, end, line};
        work(message);
        if (message.record != nullptr) {
            kvt_msg_release(static_cast<int32_t>(kind->value), message.record);
        }
        at = end;
    }
    return complete;
}

} // namespace kvt_tool
