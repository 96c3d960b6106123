// The sentence of a finding, put together in a room of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "kvt/kvt_check.h"

namespace kvt_checking {

/// A text that is put together in a room, and cut where that ends.
template <size_t room> class Cut {
public:
    void add(std::string_view text) {
        const size_t left = room - 1 - size_;
        const size_t added = text.size() < left ? text.size() : left;
        if (added != 0) {
            std::memcpy(text_ + size_, text.data(), added);
            size_ += added;
        }
    }

    void add(uint64_t number) {
        char digits[20];
        size_t first = sizeof digits;
        do {
            digits[--first] = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number != 0);
        add({digits + first, sizeof digits - first});
    }

    /// Ends with a NUL.
    const char *text() const { return text_; }

private:
    char text_[room] = {};
    size_t size_ = 0;
};

/// The first characters of a text, at most so many. Not std::string_view::substr: that may throw,
/// and C programs link this without a C++ runtime.
constexpr std::string_view first_of(std::string_view text, size_t most) {
    return {text.data(), text.size() < most ? text.size() : most};
}

/// Some of the checked text, to be shown between quotes: what cannot be printed is made visible,
/// and what is long is cut.
struct Quoted {
    std::string_view text;
};

/// What becomes of a field whose line the reader cannot use.
struct Unread {
    std::string_view words;
    bool has_number = false;
    uint64_t number = 0; ///< stands after the words
};

/// The known word that was probably meant; nothing is said where there is none.
struct Suggestion {
    std::string_view word;
};

/// A sentence of parts. Where one of them shows an invisible character, its name stands at the end.
class Words : public Cut<KVT_FINDING_MESSAGE_ROOM> {
public:
    template <typename... Parts> explicit Words(const Parts &...parts) {
        (add(parts), ...);
        add_name();
    }

private:
    using Cut::add;
    void add(Quoted quoted);
    void add(Unread unread);
    void add(Suggestion suggestion);
    void add_escaped(unsigned char byte);
    void add_escaped(std::string_view bytes);
    void add_name();

    std::string_view invisible_; ///< the first one that was shown
    std::string_view name_;
};

} // namespace kvt_checking
