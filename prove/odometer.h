// A number in decimal that is counted up as a child counts: no arithmetic but "one more".
#pragma once

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace kvt_prove {

/// Keeps its digits, zeros first, right before a place in memory.
class Odometer {
public:
    static constexpr size_t capacity = 24;

    Odometer(char *end, uint64_t number) : end_(end) { show(number); }

    void show(uint64_t number) {
        char digits[capacity + 1];
        std::snprintf(digits, sizeof digits, "%0*" PRIu64, static_cast<int>(capacity), number);
        std::memcpy(end_ - capacity, digits, capacity);
        length_ = capacity;
        while (length_ > 1 && *begin() == '0') {
            --length_;
        }
    }

    void step() {
        char *digit = end_ - 1;
        for (; *digit == '9'; --digit) {
            *digit = '0';
        }
        ++*digit;
        if (digit < begin()) {
            ++length_;
        }
    }

    size_t length() const { return length_; }

    /// The first digit: no zero, but for the number 0.
    char *begin() const { return end_ - length_; }

    char *end() const { return end_; }

private:
    char *end_;
    size_t length_ = 1;
};

} // namespace kvt_prove
