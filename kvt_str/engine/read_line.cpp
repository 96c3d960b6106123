#include "engine/read_line.h"

#include <cstring>

#include "engine/text_limits.h"
#include "engine/trace_lines.h"

namespace kvt_str {

GeneralNumber read_general_element(Input &input, const Row &row, const char *at, uint64_t last) {
    at = skip_blanks(at);
    GeneralNumber number = {input.after_general_line(at), false, 0};
    number.scans = scan_value(row, at, number.value);
    if (!number.scans && row.is_array()) {
        trace_mismatch_of_array(row, at, last);
    }
    return number;
}

QuotedLine read_general_quoted(Input &input, const Row &row, const char *at,
                               std::string_view buffered) {
    at = skip_blanks(at);
    const QuotedLine line = {input.after_general_line(at),
                             input.text.scan_quoted(at + row.key_length, longest_joined_value)};
    if (line.value.empty()) {
        trace_mismatch_of_joined(row, at, buffered);
    }
    return line;
}

const char *read_general_text(Input &input, const Row &row, const char *at, char *member) {
    std::memset(member, 0, row.capacity);
    at = skip_blanks(at);
    if (!has_key(row, at)) {
        trace_text_of_another_key(row, at);
        return at;
    }
    const std::string_view value = input.text.scan_quoted(at + row.key_length, longest_text_value);
    const size_t room = row.capacity - size_t{1};
    if (!value.empty()) {
        std::memcpy(member, value.data(), value.size() < room ? value.size() : room);
    }
    at = input.after_general_line(at);
    trace_text(member);
    return at;
}

} // namespace kvt_str
