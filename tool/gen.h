// kvt gen: prints sample messages.
#pragma once

#include <cstdint>

#include "message_kinds.h"
#include "problems.h"

namespace kvt_tool {

struct GenOptions {
    const kvt_str::MessageKind *kind = nullptr; ///< null for a mixed series
    uint64_t seed = 0;
    uint32_t size = 0;
    uint64_t count = 1;
};

/// Prints sample messages in normal form.
ExitStatus print_samples(const GenOptions &options);

} // namespace kvt_tool
