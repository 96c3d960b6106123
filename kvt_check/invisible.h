// Characters that cannot be seen, and that the reader does not take for blanks.
#pragma once

#include <cstddef>
#include <string_view>

namespace kvt_checking {

struct Invisible {
    std::string_view name; ///< such as "a no-break space"; empty where a character can be seen
    size_t bytes = 0;
};

/// The character that a text begins with, which has one byte at least. Blanks, tabs and newlines
/// are not told: those may stand anywhere.
Invisible invisible_at(const char *at, const char *end);

/// Steps over invisible characters and what the reader takes for blanks.
const char *skip_invisible(const char *at, const char *end);

} // namespace kvt_checking
