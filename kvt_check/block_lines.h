// What has been seen of a block: which rows, where, and what they say.
#pragma once

#include <cstdint>

#include "check_state.h"
#include "engine/row.h"

namespace kvt_checking {

class BlockLines {
public:
    // cppcheck-suppress uninitMemberVar // see lines_
    explicit BlockLines(const kvt_str::Record &table)
        : rows_(table.rows.first(table.rows.size() < most_rows ? table.rows.size() : most_rows)) {}

    kvt_str::Rows rows() const { return rows_; }

    bool has(size_t row) const { return (seen_ >> row & 1) != 0; }

    /// Remembers a line or the first line of a run, and its value: a number, the elements of a run
    /// or the size of a text. They take the place of those of an earlier line of the row.
    void remember(size_t row, const Place &place, uint64_t value) {
        lines_[row] = {place, value, has(row) ? lines_[row].first_line : place.line};
        seen_ |= uint64_t{1} << row;
    }

    /// A line of the run could not be read, and that was reported. The count was meant to include
    /// that line: it is not reported for the difference.
    void doubt(size_t row) { doubtful_ |= uint64_t{1} << row; }

    /// Where a row that was seen stood first.
    size_t first_line(size_t row) const { return lines_[row].first_line; }

    /// Reports the counts that are not those of the elements, at their lines.
    void report_counts(Check &check) const;

private:
    struct Seen {
        Place place;
        uint64_t value;
        size_t first_line;
    };

    void report_count(Check &check, size_t counted, size_t count) const;

    /// No record has as many (tests/check/table_limits_test.cpp).
    static constexpr size_t most_rows = 64;

    kvt_str::Rows rows_;
    uint64_t seen_ = 0;
    uint64_t doubtful_ = 0;
    Seen lines_[most_rows]; ///< of the rows that were seen: the others are left as they are, since
                            ///< to clear them takes longer than to check a small block
};

} // namespace kvt_checking
