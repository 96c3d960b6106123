// The formats of the traces of a record's fields, made when its table is compiled.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>

#include "engine/row.h"

namespace kvt_str {

inline constexpr char trace_member[] = " p_msg->";
inline constexpr char trace_value[] = "[0x%x]\n";

constexpr bool traces_value(const Row &row) {
    return row.is_number() || row.kind == RowKind::real;
}

/// The formats of the traces of a record's numbers and floats, such as
/// "_kvt_txt_unpack_msg_vemra_end_job p_msg->job_id[0x%x]\n", one after the other.
template <typename Source> struct Traces {
    static constexpr size_t total = [] {
        size_t sum = 0;
        for (const Row &row : Source::rows) {
            if (traces_value(row)) {
                sum += std::size(Source::reader) - 1 + std::size(trace_member) - 1 +
                       row.key_length + std::size(trace_value);
            }
        }
        return sum;
    }();

    static constexpr auto characters = [] {
        std::array<char, total + 1> pool{};
        size_t used = 0;
        const auto append = [&](const char *text, size_t length) {
            for (size_t i = 0; i < length; ++i) {
                pool[used++] = text[i];
            }
        };
        for (const Row &row : Source::rows) {
            if (traces_value(row)) {
                append(Source::reader, std::size(Source::reader) - 1);
                append(trace_member, std::size(trace_member) - 1);
                append(row.label.text, row.key_length);
                append(trace_value, std::size(trace_value)); // its NUL too
            }
        }
        return pool;
    }();
};

} // namespace kvt_str
