#include "message_sequence.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "kvt/message_layer.h"
#include "read_message.h"
#include "text/scanner.h"
#include "text/wrapping.h"
#include "write_message.h"

namespace kvt_str {

namespace {

constexpr MessageReader sequence_reader = {"kvt_msg_arr_from_str",
                                           &MessageCodec::no_memory_in_sequence};

/// How many messages the arrays have room for at first.
constexpr size_t first_entries = 16;

/// The envelopes from `at` on by their braces. The messages that are read can be more, or fewer:
/// braces in quoted texts count here too.
size_t count_envelopes(const Text &text, const char *at) {
    size_t count = 0;
    for (; begins_message(at); at = text.find_block_end(at)) {
        ++count;
    }
    return count;
}

/// Makes room in an array, with zeros. False, with the array as it was, when there is no memory.
template <typename Entry> bool grow_array(Entry *&array, size_t before, size_t entries) {
    void *grown = array == nullptr ? std::calloc(entries, sizeof(Entry))
                                   : std::realloc(array, entries * sizeof(Entry));
    if (grown == nullptr) {
        return false;
    }
    array = static_cast<Entry *>(grown);
    std::memset(array + before, 0, (entries - before) * sizeof(Entry));
    return true;
}

} // namespace

MessageSequence::~MessageSequence() {
    for (; released_ < count_; ++released_) {
        kvt_msg_release(static_cast<int32_t>(kinds_[released_]), records_[released_]);
    }
    std::free(records_);
    std::free(texts_);
    std::free(kinds_);
}

bool MessageSequence::reserve(size_t entries) {
    if (!grow_array(records_, capacity_, entries) || !grow_array(texts_, capacity_, entries) ||
        !grow_array(kinds_, capacity_, entries)) {
        return false;
    }
    capacity_ = entries;
    return true;
}

KVT_WRAPPING bool MessageSequence::read(const char *begin, uint32_t length) {
    // The records only serve to write the texts and are released by their counts: both must be
    // safe, whatever the text says.
    Input input{Text(begin), Counts::agree};
    const char *closing;
    const char *at = begin;
    do {
        if (count_ == capacity_ && !reserve(capacity_ == 0 ? first_entries : 2 * capacity_)) {
            return false;
        }
        const MessageKind *kind;
        closing = read_message(input, at, sequence_reader, kind, &records_[count_]);
        if (closing == nullptr) {
            return false;
        }
        kinds_[count_++] = kind->value;
        // 32 bits wide on purpose: a length that ends within the message wraps, and reading goes
        // on.
        const auto remaining = length - static_cast<uint32_t>(closing - begin);
        at = next_message(closing, remaining);
    } while (at != nullptr && begins_message(at));
    // Canonical messages are one envelope each, by their braces.
    const size_t envelopes = input.canonical
                                 ? count_ + count_envelopes(input.text, next_line(closing))
                                 : count_envelopes(input.text, begin);
    return envelopes <= capacity_ || reserve(envelopes);
}

void MessageSequence::write_texts() {
    for (; released_ < count_; ++released_) {
        const auto kind = static_cast<int32_t>(kinds_[released_]);
        void *record = records_[released_];
        const uint32_t size = measure_message(kind, record);
        // A text whose size cannot be told is not written, like one that cannot be allocated.
        char *text = size != 0 ? static_cast<char *>(std::calloc(size, 1)) : nullptr;
        texts_[released_] = text;
        write_message(kind, record, text);
        kvt_msg_release(kind, record);
    }
}

char **MessageSequence::take_texts() {
    return std::exchange(texts_, nullptr);
}

uint32_t *MessageSequence::take_kinds() {
    return std::exchange(kinds_, nullptr);
}

} // namespace kvt_str
