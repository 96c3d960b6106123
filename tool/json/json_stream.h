// Divides an input of JSON into its values: one to a line, one after the other, or in a list.
#pragma once

#include <memory>

#include "io/unit.h"

namespace kvt_tool {

/// The values of an input. A list around them is taken away, as are the commas between them; what
/// is within a value is not looked at, but for where it ends.
class JsonStream : UnitReader {
public:
    explicit JsonStream(InputFile &input) : UnitReader(input) {}

    /// The next values, about a megabyte of them or a single larger one; null at the end.
    std::unique_ptr<UnitBatch> next();

private:
    /// Where within a value the scan is.
    struct Scan {
        size_t begin = 0;
        size_t at = 0;
        size_t depth = 0;
        bool in_string = false;
        bool escaped = false;
    };

    bool skip_to_value(size_t &at);
    bool find_end(Scan &scan) const;
    std::unique_ptr<UnitBatch> take_open_list();

    bool at_beginning_ = true; ///< nothing but blanks so far
    bool in_list_ = false;
};

} // namespace kvt_tool
