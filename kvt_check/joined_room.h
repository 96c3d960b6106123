// How much of the lines of a joined text the reader keeps (JoinedString in engine/read_arrays.cpp):
// its arithmetic without its memory.
#pragma once

#include <cstddef>

#include "engine/growing_array.h"
#include "text/boundary.h"

namespace kvt_checking {

class JoinedRoom {
public:
    /// Adds a value. Returns how many of its characters, its comma not among them, are kept.
    size_t add(size_t value_length) {
        const size_t needed = reckoned_ + value_length + 2;
        KVT_BOUNDARY(needed == capacity_);
        if (needed > capacity_) {
            capacity_ = capacity_ == 0 ? kvt_str::first_lengths * value_length : 2 * capacity_;
        }
        reckoned_ = needed;
        const size_t kept = put(value_length);
        is_cut_ |= put(1) == 0;
        return kept;
    }

    /// The size of the text with its NUL, which takes the place of the last comma.
    size_t size() const { return length_; }

    /// The last value, or its comma, did not fit: the text's last character gives way to the NUL.
    bool is_cut() const { return is_cut_; }

private:
    size_t put(size_t characters) {
        const size_t room = capacity_ - 1 - length_;
        KVT_BOUNDARY(characters == room);
        const size_t added = characters < room ? characters : room;
        length_ += added;
        return added;
    }

    size_t capacity_ = 0;
    size_t reckoned_ = 0;
    size_t length_ = 0;
    bool is_cut_ = false;
};

} // namespace kvt_checking
