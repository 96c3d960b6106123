// Splits a text of several messages into texts of one message each.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvt_str {

/// The messages of a text: first as records, then as texts.
class MessageSequence {
public:
    MessageSequence() = default;
    ~MessageSequence();
    MessageSequence(const MessageSequence &) = delete;
    MessageSequence &operator=(const MessageSequence &) = delete;

    /// Reads the messages from `begin`, where one begins, as many as begin within `length`. The
    /// arrays have an entry for every envelope of the text, also after `length`. False when
    /// a message is bad, which is logged, or memory runs out.
    bool read(const char *begin, uint32_t length);

    /// Writes every record as a text of its own, and releases it.
    void write_texts();

    /// Hands the arrays over to the caller, who frees them and the texts.
    char **take_texts();
    uint32_t *take_kinds();

    size_t count() const { return count_; }

private:
    bool reserve(size_t entries);

    void **records_ = nullptr;
    char **texts_ = nullptr;
    uint32_t *kinds_ = nullptr;
    size_t capacity_ = 0;
    size_t count_ = 0;    ///< messages read
    size_t released_ = 0; ///< of these, records that are released
};

} // namespace kvt_str
