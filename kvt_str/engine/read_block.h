// Reads the block of a record, line by line.
#pragma once

#include <cstring>

#include "engine/codec.h"
#include "engine/log.h"
#include "engine/member.h"
#include "engine/read_line.h"

namespace kvt_str {

/// How a line is offered to the step of a row (read_row.h).
enum class Offer : uint8_t {
    in_order, ///< the row is next: the step takes the line if it is a canonical one of the row
    by_key,   ///< the line has the row's key: the step takes it, whatever its form
};

/// What reads one block, and what it has read so far.
class BlockReader {
public:
    Input &input;
    const Text text; ///< a copy of the input's, which stays in registers where only folded steps
                     ///< look at it
    const Codec &codec;
    void *const record;
    const unsigned level;      ///< of the block
    const bool is_listened_to; ///< traces are listened to: then no line counts as canonical, since
                               ///< only the general form is traced

    struct {
        TrueCounts true_counts;
        uint64_t shared = 0; ///< the value of the rows that share one
    } progress;

    KVT_FOLDED BlockReader(Input &from, const Codec &how, void *into, unsigned block_level)
        : input(from), text(from.text), codec(how), record(into), level(block_level),
          is_listened_to(listens(trace_level)) {}

    /// Reads the lines from `at` to the closing line. `first` tells that the one at `at` is the
    /// first after the opening line. Never fails: unknown lines and blocks are skipped, a value
    /// that does not scan leaves its field as it was, an element that cannot be stored for want of
    /// memory is dropped, and the text's NUL ends every block. Returns as UnpackRoutine does.
    const char *read_lines(const char *at, bool first);

    // What the steps of the rows are made of.

    KVT_FOLDED unsigned line_level() const { return level + 1; }

    KVT_FOLDED const char *after_closing_line(const char *at) const {
        return after_label(text, closing_label, at, indent_of(level));
    }

    /// The value of a line that begins as a canonical one of the row; null for any other line.
    KVT_FOLDED const char *canonical_value(const Row &row, const char *at) const {
        return is_listened_to ? nullptr : after_label(text, row.label, at, indent_of(line_level()));
    }

    KVT_FOLDED PlainNumber canonical_number(const Row &row, const char *at) const {
        const char *digits = canonical_value(row, at);
        return digits != nullptr ? plain_number_of(row, digits, text.end())
                                 : PlainNumber{nullptr, 0};
    }

    KVT_FOLDED QuotedLine canonical_quoted(const Row &row, const char *at, size_t longest) const {
        const char *quote = canonical_value(row, at);
        return quote != nullptr ? plain_quoted_line(quote, text.end(), longest)
                                : QuotedLine{nullptr, {}};
    }

    /// True when the lines of a row go on at `at`, in whatever form.
    KVT_FOLDED bool has_line_of(const Row &row, const char *at) const {
        return has_key(row, text.skip_blanks(at));
    }

    KVT_FOLDED void store_value(const Row &row, uint64_t value) {
        if (row.has(shared_value)) {
            progress.shared = value;
        }
        store_number(member_of(row, record), row.size, value);
    }

    // The general form of the rows that take one line: `at` is at the row's key.

    const char *read_general_number(const Row &row, const char *at);
    const char *read_general_real(const Row &row, const char *at);

private:
    const Row *find_row(const char *at) const;
    void trace_value(const Row &row, unsigned value) const;
};

KVT_FOLDED void clear_record(const Codec &codec, void *record) {
    if (codec.reading == Reading::cleared_and_traced) {
        std::memset(record, 0, codec.size);
    }
}

/// Reads a record as UnpackRoutine says, by a walk over its table.
const char *read_record(const Codec &codec, Input &input, const char *at, void *record,
                        unsigned level);

} // namespace kvt_str
