#include "messages.h"

#include <cstring>
#include <memory>

#include "kvt/kvt_str.h"
#include "property.h"
#include "read_message.h"

namespace kvt_fuzz {

using namespace kvt_str;

Message read_as(const char *text, Counts counts) {
    static constexpr MessageReader reader = {"read_as", &MessageCodec::no_memory};
    if (!begins_message(text)) {
        return {nullptr, nullptr};
    }
    Input input{Text(text), counts};
    Message message{};
    if (read_message(input, text, reader, message.kind, &message.record) == nullptr) {
        return {nullptr, nullptr};
    }
    return message;
}

std::string write_exactly(uint32_t kind, const void *record) {
    const auto type = static_cast<int32_t>(kind);
    const uint32_t size = kvt_str_get_buf_size(type, record);
    const std::unique_ptr<char[]> text(new char[size]);
    std::memset(text.get(), '#', size);
    expect(kvt_msg_to_str(type, record, text.get()) == 0, "a record of a kind is written");
    expect(strnlen(text.get(), size) == size - 1, "the size that is promised is that of the text");
    return text.get();
}

} // namespace kvt_fuzz
