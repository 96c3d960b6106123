#include "io/problems.h"

#include <algorithm>
#include <cstdio>

#include "model/printable.h"

namespace kvt_tool {

std::function<void()> before_output;

ExitStatus worse(ExitStatus a, ExitStatus b) {
    return std::max(a, b);
}

void say(const std::string &lines) {
    std::fflush(stdout);
    if (before_output) {
        before_output();
    }
    const std::string shown = printable(lines, "\n\t");
    std::fwrite(shown.data(), 1, shown.size(), stderr);
}

ExitStatus cannot_use(const std::string &name, const std::string &reason) {
    say("kvt: " + name + ": " + reason + "\n");
    return could_not_work;
}

ExitStatus no_memory_for(const std::string &name) {
    return cannot_use(name, "there is not enough memory");
}

} // namespace kvt_tool
