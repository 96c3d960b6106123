// What kvt_msg_arr_from_str does, as literally as its description can be put into C: sscanf, the
// literal form of the records (literal_codec.h), and no short cuts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kvt_test {

struct LiteralSequence {
    int32_t result = -1;
    size_t envelopes = 0; ///< entries of the arrays, by the braces of the text
    std::vector<uint32_t> kinds;
    std::vector<std::string> texts;
    std::string error; ///< what is logged; empty for nothing
};

/// Splits a text that is not null.
LiteralSequence literal_sequence(const char *text, uint32_t length);

} // namespace kvt_test
