// Files that are not to stay when a signal ends the program.
#pragma once

#include <csignal>
#include <string>

namespace kvt_tool {

/// The file that is removed when a signal ends the program; none for an empty name. It is one at a
/// time. Signals that are ignored, or handled by somebody else, stay so.
void remember_unfinished(const std::string &name);

/// Removes that file. May be called at any time, also where a signal is handled.
void remove_unfinished_file();

/// Holds signals back as long as it lives, from this thread and from those that it starts.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld &) = delete;
    SignalsHeld &operator=(const SignalsHeld &) = delete;

private:
    sigset_t before_;
};

} // namespace kvt_tool
