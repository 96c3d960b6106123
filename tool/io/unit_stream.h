// Divides texts into their messages, so that memory is bounded by the largest message, not by the
// input.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "io/unit.h"

namespace kvt_tool {

/// The sizes that a division depends on, in bytes. They are smaller for tests alone.
struct UnitSizes {
    size_t block = 1 << 20;     ///< what is read at once: no unit depends on it
    size_t long_unit = 1 << 20; ///< more than all but the largest messages
    size_t kept = 1 << 16;      ///< of a longer text outside of messages; less than long_unit
};

/// The units of an input. They depend on the input alone, and not on how it comes in pieces.
///
/// A unit ends where a line begins with "msg {" without indentation: the next message begins there,
/// even if the one before is not closed. Where no such line comes within `long_unit` bytes, it ends
/// after the line that closes the message, by its braces. More blanks than that are units of their
/// own. Text outside of messages ends at "msg {" with any indentation, and is dropped, but for its
/// beginning, where it is longer than that.
class UnitStream : UnitReader {
public:
    static constexpr size_t long_unit = UnitSizes().long_unit;

    /// `next` may be called again when it has thrown a std::bad_alloc.
    static constexpr bool goes_on_after_bad_alloc = true;

    explicit UnitStream(ByteSource &input, const UnitSizes &sizes = {})
        : UnitReader(input, sizes.block), sizes_(sizes) {}

    /// The next units, about a megabyte of them or a single larger one; null at the end.
    std::unique_ptr<UnitBatch> next();

private:
    /// What is known of the unit that begins at `start`.
    struct Scan {
        size_t start = 0;
        bool is_message = false; ///< it begins with "msg {"
        bool is_blank = false;   ///< more blanks than a long unit has characters begin here
        size_t searched =
            0;              ///< no message begins between `start` and here; the search goes on here
        size_t counted = 0; ///< up to here braces are counted, whole lines
        int64_t depth = 0;
        bool opened = false;
    };

    size_t find_opening(size_t word) const;
    bool may_begin_message(size_t start, bool &decided) const;
    void begin_unit(size_t start);
    size_t before_blanks(size_t searched) const;
    bool find_next_beginning(size_t &beginning);
    bool find_closing_line(size_t limit, size_t &end);
    bool find_end(size_t &end);
    std::unique_ptr<UnitBatch> take_units(const std::vector<size_t> &starts, size_t length);
    std::unique_ptr<UnitBatch> take_whole_units(std::vector<size_t> starts);
    std::unique_ptr<UnitBatch> take_cut();

    const UnitSizes sizes_;
    Scan scan_;
};

} // namespace kvt_tool
