// What a kind of finding is about, for people.
#pragma once

#include <string>

#include "kvt/kvt_check.h"

namespace kvt_tool {

/// A text in which the check finds something of the kind.
std::string example_of(kvt_finding_kind kind);

/// Name, severity and meaning of a kind, what is said of an example, and what to do. In a form that
/// is also Markdown.
std::string explain(kvt_finding_kind kind);

} // namespace kvt_tool
