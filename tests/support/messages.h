// Messages as texts and records, through the codec's entry points.
#pragma once

#include <memory>
#include <string>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/exact_copy.h"

namespace kvt_test {

/// The envelope of a kind, by its text name, around the lines of a record's block.
inline std::string message_text(const std::string &kind, const std::string &block) {
    return "msg {\n  type: " + kind + "\n" + block + "}\n";
}

/// The text that the codec writes of a record, into a buffer of exactly the size that it promises.
/// "(size N)" when that is not the size of what it writes, "(not written)" when it refuses.
inline std::string text_of_record(int32_t kind, const void *record) {
    const uint32_t size = kvt_str_get_buf_size(kind, record);
    const std::unique_ptr<char[]> buffer(new char[size]);
    if (kvt_msg_to_str(kind, record, buffer.get()) != 0) {
        return "(not written)";
    }
    const std::string text(buffer.get());
    return text.size() + 1 == size ? text : "(size " + std::to_string(size) + ")";
}

template <typename Record> std::string to_text(int32_t kind, const Record &record) {
    return text_of_record(kind, &record);
}

/// A record read from a text, released with it. Before that, counts must agree with the elements
/// wherever elements own something.
template <typename Record> class ReadMessage {
public:
    ReadMessage(int32_t kind, const std::string &text) : kind_(kind) {
        result_ = kvt_msg_from_str(0, nullptr, exact_copy(text).get(), &record_);
    }

    ~ReadMessage() { kvt_msg_release(kind_, record_); }

    ReadMessage(const ReadMessage &) = delete;
    ReadMessage &operator=(const ReadMessage &) = delete;

    int32_t result() const { return result_; }

    Record *operator->() const { return static_cast<Record *>(record_); }

    Record &operator*() const { return *static_cast<Record *>(record_); }

private:
    int32_t kind_;
    int32_t result_ = -1;
    void *record_ = nullptr;
};

/// What a text becomes when it is read and written again. Where a test shows that a record with a
/// value of its own in every field is written as that text, this shows that the text is read into
/// that record.
template <typename Record> std::string read_and_write(int32_t kind, const std::string &text) {
    const ReadMessage<Record> message(kind, text);
    return message.result() == 0 ? to_text(kind, *message) : "(not read)";
}

} // namespace kvt_test
