#include "kinds.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "message_kinds.h"

namespace kvt_tool {

ExitStatus list_kinds() {
    std::printf("%-6s %-28s %s\n", "VALUE", "KIND", "RECORD");
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        std::printf("%-6u %-28s %s\n", kind.value, kind.name,
                    kind.record != nullptr ? kind.record->name : "-");
    }
    return std::fflush(stdout) == 0 ? all_well
                                    : cannot_use("standard output", std::strerror(errno));
}

} // namespace kvt_tool
