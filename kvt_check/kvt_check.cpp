// The entry points.
#include "kvt/kvt_check.h"

#include <cstring>

#include "check_state.h"
#include "finding_kinds.h"

namespace {

using namespace kvt_checking;

bool is_all_nul(const char *at, const char *end) {
    while (at != end && *at == '\0') {
        ++at;
    }
    return at == end;
}

} // namespace

extern "C" {

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

const char *kvt_finding_name(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->name : nullptr;
}

const char *kvt_finding_meaning(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->meaning : nullptr;
}

kvt_finding_kind kvt_finding_of_name(const char *name) {
    const FindingKind *found = name != nullptr ? find_finding_kind(name) : nullptr;
    return found != nullptr ? found->kind : KVT_FINDING_KINDS;
}

} // extern "C"
