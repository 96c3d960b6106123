#include "problems.h"

#include <algorithm>
#include <cstdio>

namespace kvt_tool {

ExitStatus worse(ExitStatus a, ExitStatus b) {
    return std::max(a, b);
}

ExitStatus cannot_use(const std::string &name, const std::string &reason) {
    std::fprintf(stderr, "kvt: %s: %s\n", name.c_str(), reason.c_str());
    return could_not_work;
}

ExitStatus report(const std::string &name, size_t line, const std::string &what) {
    std::fprintf(stderr, "%s:%zu: %s\n", name.c_str(), line, what.c_str());
    return found_problems;
}

} // namespace kvt_tool
