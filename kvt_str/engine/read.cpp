#include "engine/read.h"

#include "engine/log.h"
#include "engine/member.h"
#include "engine/read_arrays.h"
#include "engine/read_line.h"
#include "engine/read_row.h"
#include "text/real.h"

namespace kvt_str {

namespace {

/// The exact path: the reading of one record's block, in whatever form its lines are.
class BlockReader {
public:
    BlockReader(const Record &table, Input &input, void *record, unsigned level,
                const Progress &progress)
        : table_(table), input_(input), record_(record), level_(level + 1), progress_(progress) {}

    /// Reads the lines from `at` to the closing line. `first` tells that the one at `at` is the
    /// first behind the opening line.
    const char *read_lines(const char *at, bool first);

private:
    const char *take_straight_lines(const char *at);

    const Row *find_row(const char *at) const;
    const char *take_row(const Row &row, const char *at, const char *next);
    void scan_number_of(const Row &row, const char *at);
    void scan_real_of(const Row &row, const char *at);
    void trace_value(const Row &row) const;
    void trace_mismatch(const char *at) const;

    const Record &table_;
    Input &input_;
    void *record_;
    unsigned level_; ///< of the lines
    Progress progress_;
};

/// Takes the lines that are as the writer writes them, up to the first one that is not. Returns the
/// position of that.
const char *BlockReader::take_straight_lines(const char *at) {
    const StraightBlock block{input_, input_.text, record_, level_};
    for (const Row &row : table_.rows) {
        at = take_straight(block, row, at, progress_);
    }
    return at;
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
        // Shown without its fraction, and by its low 32 bits like any number. These are 0 in a
        // float that 64 bits do not hold; so is what is shown of an infinite one and of NaN.
        const auto value = static_cast<double>(load<float>(member));
        constexpr double least = -9223372036854775808.0; // -2^63
        const bool fits = value >= least && value < -least;
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

void BlockReader::scan_number_of(const Row &row, const char *at) {
    uint64_t value = progress_.shared;
    if (scan_value(row, at, value) || row.has(shared_value)) {
        store_value(row, record_, progress_, value);
    }
}

void BlockReader::scan_real_of(const Row &row, const char *at) {
    float value;
    if (at[row.key_length] == ':' && scan_real(at + row.key_length + 1, value)) {
        store(member_of(row, record_), value);
    }
}

/// Takes the line at `at`, which has the row's key, and what belongs to it below; `next` is the
/// start of the next line. Returns the position behind what it took.
const char *BlockReader::take_row(const Row &row, const char *at, const char *next) {
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
        return _kvt_txt_unpack_primptr_uint16_t(input_, row, at, record_, progress_.heap,
                                                {sizeof(uint16_t)});
    case RowKind::array32:
        return _kvt_txt_unpack_primptr_uint32_t(input_, row, at, record_, progress_.heap,
                                                {sizeof(uint32_t)});
    case RowKind::array64:
        return _kvt_txt_unpack_primptr_uint64_t(input_, row, at, record_, progress_.heap,
                                                {sizeof(uint64_t)});
    case RowKind::bytes:
        return _kvt_txt_unpack_primarray_uint8_t(input_, row, at, record_);
    case RowKind::block:
        return read_inner_block(input_, row, next, record_, level_);
    case RowKind::run:
        return read_run(input_, row, at, record_, level_, progress_.heap, {row.element->size},
                        input_.lying_counts.size());
    case RowKind::slots:
        return read_slots(input_, row, at, record_, level_);
    }
    return next; // not reached: each kind has its case
}

/// Sees to the counts that lie, once a record is read. Nothing replaces the record of a message.
void settle_counts(const Record &table, Input &input, void *record, const CountedArrays &heap,
                   unsigned level) {
    if (input.counts == Counts::agree) {
        make_counts_agree(table, record, heap);
    } else if (level > message_level) {
        remember_lying_counts(table, input, record, heap);
    }
}

const char *BlockReader::read_lines(const char *at, bool first) {
    for (;; first = false) {
        if (is_straight_path_open()) {
            const char *behind = take_straight_lines(at);
            first = first && behind == at;
            at = behind;
            behind = behind_label(input_.text, closing_label, at, indent_of(level_ - 1));
            if (behind != nullptr) {
                at = behind;
                break;
            }
        }
        input_.straight = false;
        at = skip_blanks(at);
        if (*at == '\0') {
            break;
        }
        const Line line = look_at_line(at);
        // The first line is tried as a key before it is tested for the end; all others after.
        const Row *row = line.closes && !first ? nullptr : find_row(at);
        if (row != nullptr) {
            at = take_row(*row, at, line.next);
        } else if (line.closes) {
            at = line.next;
            break;
        } else {
            trace_mismatch(at);
            at = line.opens ? input_.text.find_block_end(at) : line.next;
        }
    }
    settle_counts(table_, input_, record_, progress_.heap, level_ - 1);
    return at;
}

} // namespace

const char *read_record(const Record &table, Input &input, const char *at, void *record,
                        unsigned level) {
    clear_record(table, record);
    return BlockReader(table, input, record, level, Progress()).read_lines(at, true);
}

const char *read_rest(const Record &table, Input &input, const char *at, void *record,
                      unsigned level, Progress progress, bool first) {
    return BlockReader(table, input, record, level, progress).read_lines(at, first);
}

} // namespace kvt_str
