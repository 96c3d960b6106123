// kvt fmt: messages in normal form.
#pragma once

#include <string>
#include <vector>

#include "problems.h"

namespace kvt_tool {

struct FormatOptions {
    enum class To {
        standard_output,
        their_files, ///< which are replaced
        nowhere,     ///< the names of files that are not in normal form are printed
    };

    To to = To::standard_output;
    bool lossy = false; ///< files are replaced also where something of them is lost
    unsigned threads = 1;
};

/// Formats the messages of all inputs, with an empty line between messages.
ExitStatus format_messages(const std::vector<std::string> &inputs, const FormatOptions &options);

} // namespace kvt_tool
