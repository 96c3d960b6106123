// What the steps of one check share.
#pragma once

#include "cursor.h"
#include "finding_report.h"

namespace kvt_checking {

struct Check {
    Cursor cursor;
    Findings findings;
    bool told_of_carriage_returns = false;

    /// The line from here() on, where no blank stands. Tells of its carriage return when it is the
    /// first.
    Line look_at_line();

    /// Marks all of a line from here() on.
    Mark mark(const Line &line) const { return {cursor.here(), line}; }

    /// Marks some of the line.
    Mark mark(const char *from, const char *to) const {
        return {cursor.here(), std::string_view(from, static_cast<size_t>(to - from))};
    }

    Mark mark(std::string_view marked) const { return {cursor.here(), marked}; }
};

/// Checks the lines of all messages (check_messages.cpp).
void check_messages(Check &check);

} // namespace kvt_checking
