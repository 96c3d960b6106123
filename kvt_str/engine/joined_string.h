// A text on the heap that several lines make up: it grows by a value and a comma at a time.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "text/boundary.h"
#include "text/words.h"

namespace kvt_str {

/// The room of a joined string, without its memory. What is reckoned for a value is one character
/// more than it takes, and the room is doubled at most once for it: both decide where a long value
/// is cut.
struct JoinedRoom {
    size_t capacity = 0; ///< 0 until there is a string
    size_t length = 0;
    size_t reckoned = 0;

    /// The first capacity, in lengths of the first value.
    static constexpr size_t first_lengths = 5;

    /// The capacity that a further value wants.
    size_t capacity_for(size_t value_length) const {
        return reckoned + value_length + 2 <= capacity ? capacity
               : capacity == 0                         ? first_lengths * value_length
                                                       : 2 * capacity;
    }

    /// Adds a value and its comma, in the capacity that it wants. Returns how many characters of
    /// the value there is room for, beside the NUL; the comma has room only after all of them.
    size_t add(size_t value_length) {
        capacity = capacity_for(value_length);
        reckoned += value_length + 2;
        const size_t room = capacity - 1 - length;
        KVT_BOUNDARY(reckoned == capacity);
        KVT_BOUNDARY(value_length == room);
        KVT_BOUNDARY(value_length + 1 == room);
        const bool fits = value_length < room;
        const size_t kept = fits ? value_length : room;
        length += kept + (fits ? 1 : 0);
        return kept;
    }
};

struct JoinedString {
    char *text = nullptr;
    JoinedRoom room;

    /// Appends a value, not empty, and a comma, as far as there is room. False when there is no
    /// memory.
    KVT_FOLDED bool append(std::string_view value) {
        const size_t reckoned = room.reckoned; // grows with every value that is appended
        *this = text == nullptr ? begun(value) : appended(*this, value);
        return room.reckoned != reckoned;
    }

    /// The last comma gives way to the NUL, so that the length becomes that of the string with its
    /// NUL. A string that was cut loses its last character in place of the comma.
    KVT_FOLDED void finish() const {
        if (text != nullptr) {
            text[room.length - 1] = '\0';
        }
    }

private:
    /// Mostly the first value is the only one. It has room, its comma too.
    KVT_FOLDED static JoinedString begun(std::string_view value) {
        const size_t capacity = JoinedRoom().capacity_for(value.size());
        auto *text = static_cast<char *>(std::calloc(capacity, 1));
        if (text == nullptr) {
            return {};
        }
        *copy_words(text, value.data(), value.size()) = ',';
        return {text, {capacity, value.size() + 1, value.size() + 2}};
    }

    /// By value, so that a string of one value stays in registers.
    [[gnu::noinline]] static JoinedString appended(JoinedString string, std::string_view value) {
        const size_t capacity = string.room.capacity_for(value.size());
        if (capacity != string.room.capacity) {
            void *moved = std::realloc(string.text, capacity);
            if (moved == nullptr) {
                return string;
            }
            string.text = static_cast<char *>(moved);
        }
        char *end = string.text + string.room.length;
        end = copy_words(end, value.data(), string.room.add(value.size()));
        if (end != string.text + string.room.length) {
            *end++ = ',';
        }
        *end = '\0';
        return string;
    }
};

} // namespace kvt_str
