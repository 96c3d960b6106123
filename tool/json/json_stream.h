// Divides an input of JSON into its values: one to a line, one after the other, or in lists.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "io/unit.h"

namespace kvt_tool {

/// The values of an input. A list around them is taken away, as are the commas between them. Within
/// a value only strings, brackets and what may follow what are looked at: enough to tell where it
/// ends, and where it cannot go on.
///
/// A value that cannot go on ends there, or where a message seems to begin within it: on a line
/// that begins with "{" after at most four blanks, as the messages of a list do that is printed for
/// people. What follows up to such a line is passed over. So a broken message takes none along.
class JsonStream : UnitReader {
public:
    explicit JsonStream(ByteSource &input) : UnitReader(input) {}

    /// The next values, about a megabyte of them or a single larger one; null at the end.
    std::unique_ptr<UnitBatch> next();

private:
    /// What is known of the line that is being read: whether a message may begin on it.
    struct LineStart {
        static constexpr size_t most_blanks = 4;

        size_t blanks = 0;
        bool blank = true; ///< but for these, nothing has stood on it yet

        /// True for the brace that may begin a message.
        bool add(char character);
    };

    /// How far a value has been read.
    struct Scan {
        size_t begin = 0;
        size_t at = 0;
        size_t depth = 0;
        uint64_t objects = 0; ///< a bit for each level, the innermost lowest: 1 for an object
        bool in_string = false;
        bool escaped = false;
        char last = '\0'; ///< character but for blanks and strings; a string is its quote
        LineStart line = {0, false};
        size_t message = 0; ///< where a message seems to begin within it; 0 for none yet
    };

    /// What became of a value.
    enum class End : uint8_t {
        not_read, ///< is not in what has been read
        whole,    ///< it ends at the scan's place
        broken,   ///< it cannot go on there
    };

    bool skip_to_value(size_t &at);
    End find_end(Scan &scan) const;
    static End take_outside_of_strings(Scan &scan, char character);
    size_t end_of_broken(const Scan &scan);
    std::unique_ptr<UnitBatch> take_open_list();

    bool at_beginning_ = true; ///< nothing of the input has been looked at
    bool in_list_ = false;
    bool lost_ = false; ///< after a value that is broken: the next message is being looked for
    LineStart line_;    ///< while it is
};

} // namespace kvt_tool
