#include "check_state.h"

namespace kvt_checking {

Line Check::look_at_line() {
    const Line line = cursor.look_at_line();
    if (line.ended && line.end[-1] == '\r' && !told_of_carriage_returns) {
        told_of_carriage_returns = true;
        findings.report(KVT_FINDING_CARRIAGE_RETURN, mark(line.end - 1, line.end),
                        "lines end with a carriage return and a newline: the reader takes the "
                        "carriage return for a character of its line, and an empty line for one "
                        "with a text; the writer writes none");
    }
    return line;
}

Place Check::find_quote(const char *at) {
    if (quote_.at == nullptr || quote_.at < at) {
        // From here() on, not from the quote before: no line above is counted twice either way.
        Cursor search = cursor;
        const char *quote = find_character('"', at, cursor.end());
        search.step_to(quote != nullptr ? quote : cursor.end());
        quote_ = search.here();
    }
    return quote_;
}

} // namespace kvt_checking
