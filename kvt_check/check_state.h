// What the steps of one check share.
#pragma once

#include "cursor.h"
#include "finding_report.h"
#include "indentation.h"

namespace kvt_checking {

struct Check {
    Check(const Cursor &at, const Findings &to) : cursor(at), findings(to) {}

    Cursor cursor;
    Findings findings;
    Indentation indentation; ///< of the message
    bool told_of_carriage_returns = false;

    /// The line from here() on, where no blank stands. Tells of its carriage return when it is the
    /// first.
    Line look_at_line();

    /// The next double quote from `at` on, a position of the line of here() or below, or the end of
    /// the text. It is remembered, so that a text of many keys and few quotes is searched once.
    Place find_quote(const char *at);

    /// Marks all of a line from here() on.
    Mark mark(const Line &line) const { return {cursor.here(), line}; }

    /// Marks some of the line.
    Mark mark(const char *from, const char *to) const {
        return {cursor.here(), std::string_view(from, static_cast<size_t>(to - from))};
    }

    Mark mark(std::string_view marked) const { return {cursor.here(), marked}; }

private:
    Place quote_{nullptr, nullptr, 0};
};

/// Checks the lines of all messages (check_messages.cpp).
void check_messages(Check &check);

} // namespace kvt_checking
