#include "record/read.h"

#include <cstring>

#include "record/log.h"
#include "record/member.h"
#include "record/read_arrays.h"
#include "record/read_line.h"
#include "record/release.h"
#include "text/real.h"

namespace kvt_str {

namespace {

/// The reading of one record's block.
class BlockReader {
public:
    BlockReader(const Record &table, Input &input, void *record, unsigned level)
        : table_(table), input_(input), record_(record), level_(level + 1) {}

    /// Reads the lines from `at`, the first one behind the opening line, to the closing line.
    const char *read_lines(const char *at);

private:
    const char *take_plain_line(const char *at);

    const Row *rows_end() const { return table_.rows.data() + table_.rows.size(); }

    const Row *find_row(const char *at) const;
    const char *take_row(const Row &row, const char *at, const char *next);
    const char *take_blocks(const Row &row, const char *at);
    void scan_number_of(const Row &row, const char *at);
    void scan_real_of(const Row &row, const char *at);
    void store_value(const Row &row, uint64_t value);
    void trace_value(const Row &row) const;
    void trace_mismatch(const char *at) const;

    const Record &table_;
    Input &input_;
    void *record_;
    unsigned level_; ///< of the lines
    /// The writer's texts go through the rows in order: the next line is expected to be that of
    /// this row, or of one behind it.
    const Row *expected_ = table_.rows.data();
    uint64_t shared_ = 0; ///< the value of the rows that share one
    HeapArrays heap_;
};

/// Takes the line at `at`, its first character, when it is in the writer's form to the letter: a
/// number, or the opening of a block. Returns the position behind what it took; null, with nothing
/// done, for any other line.
///
/// Such a line belongs to the row whose label it has: no table has a key that an earlier one is a
/// prefix of, and no key goes on behind the label's. It holds no closing brace.
const char *BlockReader::take_plain_line(const char *at) {
    for (const Row *row = expected_; row != rows_end(); ++row) {
        const char *value = behind_label(input_, *row, at, indent_of(level_));
        if (value == nullptr) {
            continue;
        }
        if (row->opens_block()) {
            expected_ = row + 1;
            return take_blocks(*row, at);
        }
        uint64_t number;
        const char *next =
            row->is_number() ? read_plain_number(value, input_.text.end(), number) : nullptr;
        if (next != nullptr) {
            expected_ = row + 1;
            store_value(*row, number);
            trace_value(*row);
        }
        return next;
    }
    return nullptr;
}

/// The first row whose key the line at `at` begins with, or null.
const Row *BlockReader::find_row(const char *at) const {
    for (const Row &row : table_.rows) {
        if (has_key(row, at)) {
            return &row;
        }
    }
    return nullptr;
}

void BlockReader::trace_value(const Row &row) const {
    if (!table_.is_traced() || !listens(trace_level)) {
        return;
    }
    const char *member = member_of(row, record_);
    if (row.kind == RowKind::real) {
        // Shown without its fraction; 0 where neither a signed nor an unsigned number of 32 bits
        // holds it.
        const auto value = static_cast<double>(load<float>(member));
        const bool fits = value > -2147483649.0 && value < 4294967296.0;
        trace(table_.reader, row.trace,
              fits ? static_cast<unsigned>(static_cast<int64_t>(value)) : 0U);
    } else {
        trace(table_.reader, row.trace, static_cast<unsigned>(load_number(member, row.size)));
    }
}

void BlockReader::trace_mismatch(const char *at) const {
    if (table_.is_traced()) {
        trace(table_.reader, table_.mismatch, at);
    }
}

void BlockReader::store_value(const Row &row, uint64_t value) {
    if (row.has(shared_value)) {
        shared_ = value;
    }
    store_number(member_of(row, record_), row.size, value);
}

void BlockReader::scan_number_of(const Row &row, const char *at) {
    uint64_t value = shared_;
    if (scan_value(row, at, value) || row.has(shared_value)) {
        store_value(row, value);
    }
}

void BlockReader::scan_real_of(const Row &row, const char *at) {
    float value;
    if (at[row.key_length] == ':' && scan_real(at + row.key_length + 1, value)) {
        store(member_of(row, record_), value);
    }
}

/// Takes the block or the blocks of a row, whose first opening line is at `at`.
const char *BlockReader::take_blocks(const Row &row, const char *at) {
    if (row.kind == RowKind::run) {
        return read_run(input_, row, at, record_, level_, heap_);
    }
    if (row.kind == RowKind::slots) {
        return read_slots(input_, row, at, record_, level_);
    }
    char *member = member_of(row, record_);
    if (row.element->owns_heap) {
        // An earlier block of the same name goes, with its arrays. Counts that lie do no harm here:
        // what such arrays hold owns nothing in turn.
        release_members(*row.element, member);
    }
    return row.element->unpack(input_, at, member, level_);
}

/// Takes the line at `at`, which has the row's key, and what belongs to it below; `next` is the
/// start of the next line. Returns the position behind what it took.
const char *BlockReader::take_row(const Row &row, const char *at, const char *next) {
    const unsigned indent = indent_of(level_);
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        scan_number_of(row, at);
        trace_value(row);
        return next;
    case RowKind::real:
        scan_real_of(row, at);
        trace_value(row);
        return next;
    case RowKind::text:
        return _kvt_txt_unpack_primarray_char(input_, row, at, record_);
    case RowKind::joined_text:
        return _kvt_txt_unpack_primptr_char(input_, row, at, record_);
    case RowKind::array16:
        return _kvt_txt_unpack_primptr_uint16_t(input_, row, at, record_, indent, heap_);
    case RowKind::array32:
        return _kvt_txt_unpack_primptr_uint32_t(input_, row, at, record_, indent, heap_);
    case RowKind::array64:
        return _kvt_txt_unpack_primptr_uint64_t(input_, row, at, record_, indent, heap_);
    case RowKind::bytes:
        return _kvt_txt_unpack_primarray_uint8_t(input_, row, at, record_, indent);
    case RowKind::block:
    case RowKind::run:
    case RowKind::slots:
        return take_blocks(row, at);
    }
    return next;
}

const char *BlockReader::read_lines(const char *at) {
    for (bool first = true;; first = false) {
        const char *behind_plain = take_plain_line(at);
        if (behind_plain != nullptr) {
            at = behind_plain;
            continue;
        }
        const char *start = at;
        at = skip_blanks(at);
        if (*at == '\0') {
            break;
        }
        const Line line = look_at_line(at);
        // The first line is tried as a key before it is tested for the end; all others after.
        const Row *row = line.closes && !first ? nullptr : find_row(at);
        if (row != nullptr) {
            // Further lines of arrays are compared with their indentation: so is the first.
            const bool is_array = row->is_array() || row->kind == RowKind::bytes;
            at = take_row(*row, is_array ? start : at, line.next);
            expected_ = row + 1;
        } else if (line.closes) {
            at = line.next;
            break;
        } else {
            trace_mismatch(at);
            at = line.opens ? find_block_end(at) : line.next;
        }
    }
    if (input_.counts == Counts::agree) {
        make_counts_agree(table_, record_, heap_);
    } else {
        remember_lying_counts(table_, input_, record_, heap_);
    }
    return at;
}

} // namespace

const char *read_block(const Record &table, Input &input, const char *at, void *record,
                       unsigned level) {
    if (table.reading == Reading::plain) {
        std::memset(record, 0, table.size);
    }
    BlockReader reader(table, input, record, level);
    return reader.read_lines(input.text.after_line(at));
}

} // namespace kvt_str
