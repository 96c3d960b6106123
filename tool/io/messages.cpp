#include "io/messages.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

constexpr MessageReader tool_reader = {"kvt", &MessageCodec::no_memory};

} // namespace

const char *find_next_message(const char *at) {
    do {
        at = kvt_str::next_line(at);
    } while (*at != '\0' && !begins_message(at));
    return at;
}

const char *read_one(kvt_str::Input &input, const char *at, const MessageKind *&kind, void **record,
                     bool &closed) {
    const char *after_record = read_message(input, at, tool_reader, kind, record);
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
