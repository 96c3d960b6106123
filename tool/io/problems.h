// What a command says on standard error.
#pragma once

#include <functional>
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

/// Says some lines on standard error, after all that is already on standard output, without what a
/// terminal takes for commands.
void say(const std::string &lines);

/// Says that an input or output cannot be used, and why.
ExitStatus cannot_use(const std::string &name, const std::string &reason);

/// Says that there is not enough memory to work on an input or output.
ExitStatus no_memory_for(const std::string &name);

/// What is done before anything appears on a terminal: a bar of progress is taken away.
extern std::function<void()> before_output;

} // namespace kvt_tool
