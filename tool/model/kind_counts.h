// kvt stat: how many messages there are, and how large they are, by kind.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "message_kinds.h"

namespace kvt_tool {

using kvt_str::MessageKind;

/// The distribution of some sizes, in bounded memory: sixteen buckets for every power of two.
class SizeHistogram {
public:
    void add(uint64_t size);
    void merge(const SizeHistogram &other);

    uint64_t count() const { return count_; }

    uint64_t sum() const { return sum_; }

    /// These four are 0 where there is no size.
    uint64_t smallest() const { return count_ != 0 ? smallest_ : 0; }

    uint64_t largest() const { return largest_; }

    double mean() const;

    /// The size that so many percent of all do not exceed: exact below 32, otherwise up to a
    /// sixteenth too large.
    uint64_t quantile(unsigned percent) const;

private:
    static constexpr size_t steps = 16;
    /// Sizes below 16 have a bucket each, as have the steps of each power of two from 2^4 to 2^63.
    static constexpr size_t buckets = steps + (64 - 4) * steps;

    static size_t bucket_of(uint64_t size);
    static uint64_t largest_in(size_t bucket);

    std::array<uint64_t, buckets> counts_ = {};
    uint64_t count_ = 0;
    uint64_t sum_ = 0;
    uint64_t smallest_ = UINT64_MAX;
    uint64_t largest_ = 0;
};

/// Counts messages by kind. One object belongs to one thread; several are merged.
class KindCounts {
public:
    KindCounts();

    /// Counts a message. `text_bytes` is the length of its text. The record is null for a kind that
    /// carries none.
    void add(const MessageKind &kind, const void *record, uint64_t text_bytes);

    void merge(const KindCounts &other);

    /// For a terminal: a line for each kind that was seen, and one for the total.
    std::string table() const;

    /// The same as a JSON object, in bytes and without a newline at its end:
    ///
    ///     {"kinds": {"END_JOB": {"messages": 1, "bytes": 90, "elements": 0,
    ///                            "size": {"smallest": 90, "mean": 90.0, "p50": 90, "p90": 90,
    ///                                     "p99": 90, "largest": 90}}, ...},
    ///      "total": {"messages": ...}}
    ///
    /// "size" is null where there are no messages.
    std::string json() const;

private:
    struct Counts {
        SizeHistogram sizes;
        uint64_t elements = 0;
    };

    Counts total() const;

    /// By value; null for a kind that was not seen.
    std::vector<std::unique_ptr<Counts>> kinds_;
};

/// The elements of all lists in a record, and of those within their elements.
uint64_t count_elements(const kvt_str::Record &table, const void *record);

/// A number of bytes in at most four digits and a unit: 999 B, 1.5 KiB, 12.0 MiB.
std::string human_size(double bytes);

} // namespace kvt_tool
