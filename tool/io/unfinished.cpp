#include "io/unfinished.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <mutex>

namespace kvt_tool {

namespace {

char unfinished[PATH_MAX] = "";

extern "C" void remove_unfinished(int signal) {
    remove_unfinished_file();
    // The handler was for one signal: the next one of its kind ends the program.
    raise(signal);
}

/// Whether a signal ends the program where nobody handles it. SIGKILL does, too, and leaves no time
/// for anything.
bool is_ending(int signal) {
    static constexpr int others[] = {SIGKILL, SIGSTOP, SIGTSTP, SIGTTIN, SIGTTOU,
                                     SIGCONT, SIGCHLD, SIGURG,  SIGWINCH};
    return std::ranges::find(others, signal) == std::end(others);
}

void handle_ending_signals() {
    struct sigaction action = {};
    action.sa_handler = remove_unfinished;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        struct sigaction before = {};
        if (is_ending(signal) && sigaction(signal, nullptr, &before) == 0 &&
            (before.sa_flags & SA_SIGINFO) == 0 && before.sa_handler == SIG_DFL) {
            sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

void remember_unfinished(const std::string &name) {
    static std::once_flag once;
    std::call_once(once, handle_ending_signals);
    const size_t length = name.size() < sizeof unfinished ? name.size() : 0;
    unfinished[0] = '\0';
    std::copy_n(name.begin() + (length > 0 ? 1 : 0), length > 0 ? length - 1 : 0, unfinished + 1);
    unfinished[length] = '\0';
    unfinished[0] = length > 0 ? name[0] : '\0'; // last, so that the handler sees a whole name
}

void remove_unfinished_file() {
    if (unfinished[0] != '\0') {
        unlink(unfinished);
    }
}

SignalsHeld::SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalsHeld::~SignalsHeld() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

} // namespace kvt_tool
