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

} // namespace kvt_checking
