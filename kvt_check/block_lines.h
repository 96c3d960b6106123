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

    /// A text that was cleared is as one that was not seen.
    void forget(size_t row) { seen_ &= ~(uint64_t{1} << row); }

    /// The row has a line, if only one that could not be read.
    void note(size_t row) { noted_ |= uint64_t{1} << row; }

    /// A line of the run could not be read, and that was reported. The count was meant to include
    /// that line: it is not reported for the difference.
    void doubt(size_t row) { doubtful_ |= uint64_t{1} << row; }

    /// Where a row that was seen stood last, and its value.
    const Place &place(size_t row) const { return lines_[row].place; }

    uint64_t value(size_t row) const { return lines_[row].value; }

    /// Where a row that was seen stood first.
    size_t first_line(size_t row) const { return lines_[row].first_line; }

    /// Reports the counts that are not those of the elements, at their lines, and those that are
    /// not there, at the first element.
    void report_counts(Check &check) const;

private:
    struct Seen {
        Place place;
        uint64_t value;
        size_t first_line;
    };

    void report_count(Check &check, size_t counted, size_t count) const;
    void report_lone_count(Check &check, const Mark &mark, size_t counted, size_t count) const;
    void report_no_count(Check &check, size_t counted, size_t count) const;

    /// No record has as many (tests/check/table_limits_test.cpp).
    static constexpr size_t most_rows = 64;

    kvt_str::Rows rows_;
    uint64_t seen_ = 0;
    uint64_t noted_ = 0;
    uint64_t doubtful_ = 0;
    Seen lines_[most_rows]; ///< of the rows that were seen: the others are left as they are, since
                            ///< to clear them takes longer than to check a small block
};

} // namespace kvt_checking
