#include "io/problems.h"

#include <algorithm>
#include <cstdio>

namespace kvt_tool {

std::function<void()> before_saying;

ExitStatus worse(ExitStatus a, ExitStatus b) {
    return std::max(a, b);
}

void say(const std::string &lines) {
    std::fflush(stdout);
    if (before_saying) {
        before_saying();
    }
    std::fwrite(lines.data(), 1, lines.size(), stderr);
}

ExitStatus cannot_use(const std::string &name, const std::string &reason) {
    say("kvt: " + name + ": " + reason + "\n");
    return could_not_work;
}

} // namespace kvt_tool
