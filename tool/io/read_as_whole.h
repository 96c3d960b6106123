// What becomes of a file when a program hands it to the codec as a whole. The command divides an
// input into messages by itself, and reads on after one that is broken; the codec does not.
#pragma once

#include <cstdint>
#include <string>

namespace kvt_tool {

/// What kvt_msg_arr_from_str makes of a text.
struct WholeReading {
    uint64_t messages = 0;     ///< that are read, from the first on
    uint64_t all_messages = 0; ///< that begin in the text
    uint64_t last_line = 0;    ///< where the last message that is read begins
    uint64_t refused_line = 0; ///< where a message begins for which it refuses the text; else 0

    bool is_all() const { return refused_line == 0 && messages == all_messages; }
};

WholeReading read_as_whole(const std::string &text);

/// A sentence about a file of which not all is read so. Empty where all is, or where nobody knows:
/// for a pipe, or a file that is too large to be kept in memory.
std::string words_on_whole(const std::string &input);

} // namespace kvt_tool
