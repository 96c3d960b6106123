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

size_t check(const char *text, size_t length, const Wanted &wanted) {
    const char *begin = text != nullptr && length != 0 ? text : "";
    const char *end = begin != text ? begin : text + length;
    // The readers end at the first NUL.
    const void *nul = begin != end ? std::memchr(begin, '\0', length) : nullptr;
    const char *text_end = nul != nullptr ? static_cast<const char *>(nul) : end;

    const size_t first_line = wanted.options.first_line != 0 ? wanted.options.first_line : 1;
    Check check(Cursor(begin, text_end, first_line), Findings(begin, text_end, wanted));
    check_messages(check);
    // NULs at the end do not belong to the text: a string may be handed over with its own.
    if (!check.findings.stopped() && !is_all_nul(text_end, end)) {
        check.findings.report(KVT_FINDING_NUL, check.mark(text_end, text_end + 1),
                              "a NUL character ends the text for the reader: what follows is not "
                              "read");
    }
    return check.findings.count();
}

} // namespace

extern "C" {

size_t kvt_check(const char *text, size_t length, kvt_finding_callback *report, void *user) {
    return check(text, length, {.callback = report, .user = user});
}

size_t kvt_check_with(const char *text, size_t length, const kvt_check_options *options,
                      kvt_finding_callback *report, void *user) {
    Wanted wanted{.callback = report, .user = user};
    if (options != nullptr) {
        wanted.options = *options;
    }
    return check(text, length, wanted);
}

size_t kvt_check_losses(const char *text, size_t length) {
    return check(text, length, {.options = {KVT_SEVERITY_LOST, 0, 0}});
}

const char *kvt_finding_name(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->name : nullptr;
}

const char *kvt_finding_meaning(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->meaning : nullptr;
}

const char *kvt_finding_remedy(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->remedy : nullptr;
}

kvt_severity kvt_finding_severity(kvt_finding_kind kind) {
    const FindingKind *found = find_finding_kind(kind);
    return found != nullptr ? found->severity : KVT_SEVERITIES;
}

const char *kvt_severity_name(kvt_severity severity) {
    static constexpr const char *names[KVT_SEVERITIES] = {"style", "lost", "refused"};
    const auto index = static_cast<size_t>(severity);
    return index < KVT_SEVERITIES ? names[index] : nullptr;
}

kvt_finding_kind kvt_finding_of_name(const char *name) {
    const FindingKind *found = name != nullptr ? find_finding_kind(name) : nullptr;
    return found != nullptr ? found->kind : KVT_FINDING_KINDS;
}

} // extern "C"
