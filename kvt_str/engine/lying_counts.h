// Counts that a line of the text has made to differ from the elements that are there.
//
// While a record is read, an element of it may go: a second run of the same key replaces the first.
// If that element has an array of its own, its count tells how many elements to release - unless a
// count line behind the array said otherwise. The count must stay as that line says, so the truth
// is kept here. Texts that a writer has written need no entry, and so no memory.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace kvt_str {

class LyingCounts {
public:
    LyingCounts() = default;

    ~LyingCounts() { std::free(entries_); }

    LyingCounts(const LyingCounts &) = delete;
    LyingCounts &operator=(const LyingCounts &) = delete;

    size_t size() const { return size_; }

    /// Remembers how many elements an array has. False when there is no memory for it.
    bool remember(const void *array, uint64_t elements) {
        if (size_ == capacity_) {
            const size_t capacity = capacity_ == 0 ? first_capacity : 2 * capacity_;
            void *grown = std::realloc(entries_, capacity * sizeof(Entry));
            if (grown == nullptr) {
                return false;
            }
            entries_ = static_cast<Entry *>(grown);
            capacity_ = capacity;
        }
        entries_[size_++] = {array, elements};
        return true;
    }

    /// Goes through the entries in the order in which they were made, which is that of the
    /// elements.
    class Cursor {
    public:
        Cursor(const LyingCounts &counts, size_t first) : counts_(counts), next_(first) {}

        /// The elements of an array whose own count says `count`.
        uint64_t elements_of(const void *array, uint64_t count) {
            return next_ < counts_.size_ && counts_.entries_[next_].array == array
                       ? counts_.entries_[next_++].elements
                       : count;
        }

    private:
        const LyingCounts &counts_;
        size_t next_;
    };

private:
    struct Entry {
        const void *array;
        uint64_t elements;
    };

    static constexpr size_t first_capacity = 16;

    Entry *entries_ = nullptr;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

} // namespace kvt_str
