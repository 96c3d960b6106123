// The formats of the traces of a record's numbers and floats, such as
// "_kvt_txt_unpack_msg_vemra_end_job p_msg->job_id[0x%x]\n", made when its table is compiled.
#pragma once

#include <cstddef>
#include <iterator>

#include "engine/row.h"
#include "log_texts.h"

namespace kvt_str {

constexpr bool traces_value(const Row &row) {
    return row.is_number() || row.kind == RowKind::real;
}

/// `Source` has the name of the reader, and the finished table.
template <typename Source> struct Traces {
    static constexpr const Rows &rows = Source::Table::rows;

    static constexpr size_t total = [] {
        size_t sum = 0;
        for (const Row &row : rows) {
            if (traces_value(row)) {
                sum += std::size(Source::reader) - 1 + std::size(log_texts::trace_member) - 1 +
                       row.key_length + std::size(log_texts::trace_value);
            }
        }
        return sum;
    }();

    struct Pool {
        char at[total + 1];
    };

    /// All formats, one after the other.
    static constexpr Pool pool = [] {
        Pool result{};
        char *end = result.at;
        const auto append = [&](const char *text, size_t length) {
            for (size_t i = 0; i < length; ++i) {
                *end++ = text[i];
            }
        };
        for (const Row &row : rows) {
            if (traces_value(row)) {
                append(Source::reader, std::size(Source::reader) - 1);
                append(log_texts::trace_member, std::size(log_texts::trace_member) - 1);
                append(row.label.text, row.key_length);
                append(log_texts::trace_value, std::size(log_texts::trace_value)); // its NUL too
            }
        }
        return result;
    }();

    struct Formats {
        const char *at[Source::Table::row_count];
    };

    static constexpr Formats formats = [] {
        Formats result{};
        const char *format = pool.at;
        for (size_t i = 0; i < rows.size(); ++i) {
            if (traces_value(rows[i])) {
                result.at[i] = format;
                while (*format++ != '\0') {
                }
            }
        }
        return result;
    }();
};

} // namespace kvt_str
