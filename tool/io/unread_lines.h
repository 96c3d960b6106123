// The lines of messages that the reader does not take as they stand. They can only be compared as
// lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "io/unit.h"

namespace kvt_tool {

struct UnreadLine {
    uint64_t line;    ///< in its input, counted from 1
    std::string path; ///< of the block around it
    std::string text; ///< without the blanks around it
};

/// The lines of a unit that have findings, in their order, with all of a block that is skipped.
/// Where a finding says more of the lines below it than of its own, those are all lines of the
/// unit.
std::vector<UnreadLine> find_unread_lines(const Unit &unit);

} // namespace kvt_tool
