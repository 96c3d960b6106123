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
    const Row *find_plain_row(const Row *first, const char *at, const char *&value) const;
    const Row *find_row(const char *at) const;

    const Row *rows_end() const { return table_.rows.data() + table_.rows.size(); }

    void take_number(const Row &row, const char *at);
    void take_real(const Row &row, const char *at);
    const char *take_block(const Row &row, const char *at);
    const char *take_row(const Row &row, const char *at);
    void store_plain_number(const Row &row, uint64_t value);
    void trace_value(const Row &row) const;
    void trace_mismatch(const char *at) const;

    const Record &table_;
    Input &input_;
    void *record_;
    unsigned level_; ///< of the lines
    uint64_t shared_ = 0;
    HeapArrays heap_;
};

/// The row, from `first` on, whose label the line at `at` begins with in the writer's form. Such a
/// line belongs to that row: no other key is a prefix of it, since no table has a key that an
/// earlier one is a prefix of, and none that goes on behind the label's.
const Row *BlockReader::find_plain_row(const Row *first, const char *at, const char *&value) const {
    for (const Row *row = first; row != rows_end(); ++row) {
        value = behind_label(input_, *row, at, indent_of(level_));
        if (value != nullptr) {
            return row;
        }
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

void BlockReader::store_plain_number(const Row &row, uint64_t value) {
    if (row.has(shared_value)) {
        shared_ = value;
    }
    store_number(member_of(row, record_), row.size, value);
}

void BlockReader::take_number(const Row &row, const char *at) {
    uint64_t value;
    if (scan_value(row, at, value)) {
        store_plain_number(row, value);
    } else if (row.has(shared_value)) {
        store_number(member_of(row, record_), row.size, shared_);
    }
}

void BlockReader::take_real(const Row &row, const char *at) {
    float value;
    if (at[row.key_length] == ':' && scan_real(at + row.key_length + 1, value)) {
        store(member_of(row, record_), value);
    }
}

const char *BlockReader::take_block(const Row &row, const char *at) {
    char *member = member_of(row, record_);
    if (row.element->owns_heap) {
        // An earlier block of the same name goes, with its arrays. Counts that lie do no harm here:
        // what such arrays hold owns nothing in turn.
        release_members(*row.element, member);
    }
    return row.element->unpack(input_, at, member, level_);
}

/// Takes the line at `at`, which has the row's key, and what follows it in a run or block.
const char *BlockReader::take_row(const Row &row, const char *at) {
    const unsigned indent = indent_of(level_);
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        take_number(row, at);
        break;
    case RowKind::real:
        take_real(row, at);
        break;
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
        return take_block(row, at);
    case RowKind::run:
        return read_run(input_, row, at, record_, level_, heap_);
    case RowKind::slots:
        return read_slots(input_, row, at, record_, level_);
    }
    const char *next = after_newline(at);
    trace_value(row);
    return next;
}

const char *BlockReader::read_lines(const char *at) {
    // The writer's texts go through the rows in order: the next line is expected to be that of the
    // next row, or of one a little further on.
    const Row *expected = table_.rows.data();
    for (bool first = true;; first = false) {
        const char *value = nullptr;
        const Row *row = find_plain_row(expected, at, value);
        if (row != nullptr && row->is_number()) {
            uint64_t number;
            const char *next = read_plain_number(value, input_.text.end(), number);
            if (next != nullptr) {
                store_plain_number(*row, number);
                trace_value(*row);
                expected = row + 1;
                at = next;
                continue;
            }
        }
        // The label of a block is a whole line, and holds no closing brace.
        if (row == nullptr || !row->opens_block()) {
            const char *start = at;
            at = skip_blanks(at);
            if (*at == '\0') {
                break;
            }
            const Line line = look_at_line(at);
            // The first line is tried as a key before it is tested for the end; all others after.
            row = line.closes && !first ? nullptr : find_row(at);
            if (row == nullptr) {
                if (line.closes) {
                    at = line.next;
                    break;
                }
                trace_mismatch(at);
                at = line.opens ? find_block_end(at) : line.next;
                continue;
            }
            // Lines of arrays are compared with their indentation.
            at = row->is_array() || row->kind == RowKind::bytes ? start : at;
        }
        at = take_row(*row, at);
        expected = row + 1;
    }
    if (input_.counts == Counts::agree) {
        make_counts_agree(table_, record_, heap_);
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
    return reader.read_lines(after_newline(at));
}

} // namespace kvt_str
