// Reads one line of a row, in either of two forms.
//
// The canonical form is that of nearly all lines of the writer: the indentation of the level and
// the row's label, to the letter, a plain value, a newline. It is compared in a few words, and
// inlined. Such a line belongs to the row: no earlier key is a prefix of its key, and a longer key
// cannot match, since keys hold neither colons nor blanks. It holds no brace, but for the line that
// opens a block. Negative numbers, long floats and texts with a brace are left to the general form.
//
// The general form is all else that begins with the row's key, after any blanks. It is read as the
// C library's scan conversions do, is traced, and is a call.
#pragma once

#include <string_view>

#include "engine/codec.h"
#include "text/number.h"
#include "text/real.h"
#include "text/scanner.h"
#include "text/words.h"

namespace kvt_str {

/// True when the line at `at`, which is not a blank, begins with the row's key. It may go on in any
/// way: a key takes every line that it is a prefix of.
inline bool has_key(const Row &row, const char *at) {
    return begins_with(at, row.label.text, row.key_length);
}

// --- Canonical -----------------------------------------------------------------------------------

/// The position after a label that stands at `at`, a line's first character, as the writer puts it
/// there: indentation and label to the letter, four characters at least. Null where anything else
/// stands.
KVT_FOLDED const char *after_label(const Text &text, const Label &label, const char *at,
                                   unsigned indent) {
    const unsigned length = indent + label.length;
    return text.has(at, length) && equal_words(at, label.indented(indent), length) ? at + length
                                                                                   : nullptr;
}

/// The number of a line whose digits begin at `at`, by the width of the row's numbers; null where
/// anything but plain digits and a newline stands.
KVT_FOLDED PlainNumber plain_number_of(const Row &row, const char *at, const char *end) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::bytes:
        return read_plain_number<1>(at, end);
    case RowKind::number64:
    case RowKind::array64:
        return read_plain_number<8>(at, end);
    default:
        return read_plain_number<4>(at, end);
    }
}

/// A quoted line.
struct QuotedLine {
    const char *next; ///< the line after it; null where no such line stands
    std::string_view value;
};

/// The value of a line whose quote stands at `at`, not empty and of up to `longest` characters;
/// null where anything else stands.
KVT_FOLDED QuotedLine plain_quoted_line(const char *at, const char *end, size_t longest) {
    if (*at == '"') {
        const std::string_view value = plain_quoted(at + 1, end);
        if (!value.empty() && value.size() <= longest) {
            return {value.data() + value.size() + 2, value};
        }
    }
    return {nullptr, {}};
}

// --- General -------------------------------------------------------------------------------------

/// Scans the number of a line that has the row's key, in any form that the C library takes for
/// "key:%lu". The colon must follow the key at once. False, with `value` left, where it does not
/// scan.
inline bool scan_value(const Row &row, const char *at, uint64_t &value) {
    const char *after_key = at + row.key_length;
    return *after_key == ':' && scan_number(after_key + 1, value);
}

/// The same for a float and "key:%f".
inline bool scan_value(const Row &row, const char *at, float &value) {
    const char *after_key = at + row.key_length;
    return *after_key == ':' && scan_real(after_key + 1, value);
}

/// A number of a general line.
struct GeneralNumber {
    const char *next; ///< the line after it
    bool scans;
    uint64_t value; ///< where it scans
};

/// Reads a line of an array, from the blanks before its key on. Where it does not scan, a mismatch
/// of an array on the heap is traced, which shows the value of the `last` line that did.
GeneralNumber read_general_element(Input &input, const Row &row, const char *at, uint64_t last);

/// Reads a line of a joined text, from the blanks before its key on. Where it does not scan, the
/// value is empty, and a mismatch is traced, which shows what is `buffered`.
QuotedLine read_general_quoted(Input &input, const Row &row, const char *at,
                               std::string_view buffered);

/// Reads a line of a character array, which is cleared first, and cuts the value to leave room for
/// its NUL. A line that has another key is left where it is.
const char *read_general_text(Input &input, const Row &row, const char *at, char *member);

} // namespace kvt_str
