// What is wrong with an input, said on standard error as FILE:LINE: WHAT.
#pragma once

#include <string>

namespace kvt_tool {

/// How a command ends.
enum ExitStatus : int {
    all_well = 0,
    found_problems = 1, ///< in the content of an input
    could_not_work = 2, ///< an input could not be read, or the output not written
};

/// The worse of two.
ExitStatus worse(ExitStatus a, ExitStatus b);

/// Says that an input or output cannot be used, and why.
ExitStatus cannot_use(const std::string &name, const std::string &reason);

/// Says what is wrong with the content of an input.
ExitStatus report(const std::string &name, size_t line, const std::string &what);

} // namespace kvt_tool
