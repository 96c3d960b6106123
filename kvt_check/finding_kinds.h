// The kinds of findings: names, severities and what is said of them in general.
#pragma once

#include "kvt/kvt_check.h"

namespace kvt_checking {

struct FindingKind {
    kvt_finding_kind kind;
    kvt_severity severity;
    const char *name;
    const char *meaning;
    const char *remedy;
};

/// Null for a number that is no kind.
const FindingKind *find_finding_kind(kvt_finding_kind kind);

/// Null for another name.
const FindingKind *find_finding_kind(const char *name);

} // namespace kvt_checking
