// The entry point.
#include "kvt/kvt_check.h"

#include <cstring>

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

namespace {

using namespace kvt_checking;

bool is_all_nul(const char *at, const char *end) {
    while (at != end && *at == '\0') {
        ++at;
    }
    return at == end;
}

} // namespace

size_t kvt_check(const char *text, size_t length, kvt_finding_callback *report, void *user) {
    const char *begin = text != nullptr && length != 0 ? text : "";
    const char *end = begin != text ? begin : text + length;
    // The readers end at the first NUL.
    const void *nul = begin != end ? std::memchr(begin, '\0', length) : nullptr;
    const char *text_end = nul != nullptr ? static_cast<const char *>(nul) : end;

    Check check{Cursor(begin, text_end), Findings(begin, text_end, report, user)};
    check_messages(check);
    // NULs at the end do not belong to the text: a string may be handed over with its own.
    if (!check.findings.stopped() && !is_all_nul(text_end, end)) {
        check.findings.report(KVT_FINDING_NUL, check.mark(text_end, text_end + 1),
                              "a NUL character ends the text for the reader: what follows is not "
                              "read");
    }
    return check.findings.count();
}
