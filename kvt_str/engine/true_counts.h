// How many elements the arrays of records that are being read really have, which a count line may
// hide.
//
// While a record is read, what it has read may go: a second run of the same key replaces the first.
// Then the true counts tell what to release. Those of the record itself are at hand (TrueCount). An
// element of a run may have an array of its own whose count line lies; that count must stay as the
// line says, so the truth is kept aside (LyingCounts). Texts that a writer has written need no
// entry, and so no memory.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "engine/row.h"

namespace kvt_str {

/// Of one array or run.
struct TrueCount {
    uint64_t elements = 0;
    size_t first_lie = 0; ///< where the lying counts of the elements of a run begin
};

/// Of all arrays and runs of a record, by their counted_index.
struct TrueCounts {
    TrueCount rows[most_counted_rows] = {};

    TrueCount &of(const Row &row) { return rows[row.counted_index]; }

    const TrueCount &of(const Row &row) const { return rows[row.counted_index]; }
};

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
