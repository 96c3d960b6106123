// kvt show: the values at a field path.
#pragma once

#include <string>
#include <vector>

#include "field_path.h"
#include "problems.h"

namespace kvt_tool {

struct ShowOptions {
    bool with_paths = false; ///< each value after its input, line and path
    unsigned threads = 1;
};

/// Prints what a path leads to in the messages of all inputs, one value on a line. Messages of
/// kinds that do not have the field are passed over; when no message has it, that is a problem.
ExitStatus show_fields(const std::vector<std::string> &inputs, const FieldPath &path,
                       const ShowOptions &options);

} // namespace kvt_tool
