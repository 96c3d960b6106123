#include "engine/read_block.h"

#include "engine/read_row.h"
#include "engine/settle_counts.h"

namespace kvt_str {

/// The first row whose key the line at `at` begins with, or null.
const Row *BlockReader::find_row(const char *at) const {
    for (const Row &row : codec.rows) {
        if (has_key(row, at)) {
            return &row;
        }
    }
    return nullptr;
}

void BlockReader::trace_value(const Row &row, unsigned value) const {
    if (codec.reading == Reading::cleared_and_traced) {
        trace(codec.reader, codec.trace_of(row), value);
    }
}

const char *BlockReader::read_general_number(const Row &row, const char *at) {
    uint64_t value = progress.shared;
    if (scan_value(row, at, value) || row.has(shared_value)) {
        store_value(row, value);
    }
    const char *next = input.after_general_line(at);
    trace_value(row, static_cast<unsigned>(load_number(member_of(row, record), row.size)));
    return next;
}

const char *BlockReader::read_general_real(const Row &row, const char *at) {
    auto value = load<float>(member_of(row, record));
    if (scan_value(row, at, value)) {
        store(member_of(row, record), value);
    }
    const char *next = input.after_general_line(at);
    // Shown without its fraction, and by its low 32 bits like any number. These are 0 in a float
    // that 64 bits do not hold; so is what is shown of an infinite one and of NaN.
    constexpr double least = -9223372036854775808.0; // -2^63
    const bool fits = value >= least && value < -least;
    trace_value(row, fits ? static_cast<unsigned>(static_cast<int64_t>(value)) : 0U);
    return next;
}

const char *BlockReader::read_lines(const char *at, bool first) {
    for (;; first = false) {
        if (!is_listened_to) {
            const char *start = at;
            for (const Row &row : codec.rows) {
                at = read_row(*this, row, at, Offer::in_order);
            }
            first = first && at == start;
            if (const char *end = after_closing_line(at); end != nullptr) {
                at = end;
                break;
            }
        }
        input.canonical = false;
        at = skip_blanks(at);
        if (*at == '\0') {
            break;
        }
        const Line line = look_at_line(at);
        // The first line is tried as a key before it is tested for the end; all others after.
        const Row *row = line.closes && !first ? nullptr : find_row(at);
        if (row != nullptr) {
            at = read_row(*this, *row, at, Offer::by_key);
        } else if (line.closes) {
            at = line.next;
            break;
        } else {
            if (codec.reading == Reading::cleared_and_traced) {
                trace(codec.reader, codec.mismatch, at);
            }
            at = line.opens ? text.find_block_end(at) : line.next;
        }
    }
    settle_counts(*this);
    return at;
}

const char *read_record(const Codec &codec, Input &input, const char *at, void *record,
                        unsigned level) {
    clear_record(codec, record);
    return BlockReader(input, codec, record, level).read_lines(at, true);
}

} // namespace kvt_str
