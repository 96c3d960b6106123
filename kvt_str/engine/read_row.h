// Reads the lines of one row where they are exactly as the writer writes them: the straight path.
//
// Such lines begin with the indentation of their level and the row's label, to the letter. So they
// belong to the row: no earlier key is a prefix of theirs, and a longer key cannot match, since
// keys hold neither colons nor blanks. But for the one that opens a block they hold no brace. What
// the straight path takes, it takes as the exact path would (read.cpp, read_arrays.cpp); all else
// it leaves.
//
// Each step is written once. Called with a row that a loop comes to, it is interpreted; called with
// a row that is known when compiling, it folds into straight code (unrolled.h).
#pragma once

#include <cstring>

#include "engine/member.h"
#include "engine/read_arrays.h"
#include "engine/read_line.h"
#include "engine/release.h"
#include "text/number.h"
#include "text/real.h"
#include "text/words.h"

namespace kvt_str {

/// What has been read of a record's block, beside the record itself.
struct Progress {
    CountedArrays heap;
    uint64_t shared = 0; ///< the value of the rows that share one
};

inline void store_value(const Row &row, void *record, Progress &progress, uint64_t value) {
    if (row.has(shared_value)) {
        progress.shared = value;
    }
    store_number(member_of(row, record), row.size, value);
}

/// A block of lines that is read on the straight path.
struct StraightBlock {
    Input &input;
    const Text text; ///< the input's, to be looked at: a copy, which stays in registers
    void *record;
    unsigned level; ///< of the lines

    KVT_FOLDED const char *value_of(const Row &row, const char *at) const {
        return behind_label(text, row.label, at, indent_of(level));
    }

    /// True when a run of the row goes on at `at`, in whatever form.
    KVT_FOLDED bool goes_on(const Row &row, const char *at) const {
        return has_key(row, text.skip_blanks(at));
    }
};

/// The number of a line of the row; null in any other line.
KVT_FOLDED PlainNumber number_of(const StraightBlock &block, const Row &row, const char *at) {
    const char *digits = block.value_of(row, at);
    if (digits == nullptr) {
        return {nullptr, 0};
    }
    const char *end = block.text.end();
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::bytes:
        return read_plain_number<1>(digits, end);
    case RowKind::number64:
    case RowKind::array64:
        return read_plain_number<8>(digits, end);
    default:
        return read_plain_number<4>(digits, end);
    }
}

KVT_FOLDED const char *take_number(const StraightBlock &block, const Row &row, const char *at,
                                   Progress &progress) {
    const PlainNumber number = number_of(block, row, at);
    if (number.next == nullptr) {
        return at;
    }
    store_value(row, block.record, progress, number.value);
    return number.next;
}

KVT_FOLDED const char *take_real(const StraightBlock &block, const Row &row, const char *at) {
    const char *digits = block.value_of(row, at);
    if (digits == nullptr) {
        return at;
    }
    const PlainReal real = read_plain_real(digits);
    if (real.next == nullptr) {
        return at;
    }
    store(member_of(row, block.record), real.value);
    return real.next;
}

/// The value of a quoted line, of up to `longest` characters. Empty for any other line.
KVT_FOLDED std::string_view quoted_value(const StraightBlock &block, const Row &row, const char *at,
                                         size_t longest) {
    const char *quote = block.value_of(row, at);
    if (quote == nullptr || *quote != '"') {
        return {};
    }
    const std::string_view value = plain_quoted(quote + 1, block.text.end());
    return value.size() <= longest ? value : std::string_view();
}

/// The line behind that of a quoted value: behind the second quote and the newline.
KVT_FOLDED const char *behind_quoted(std::string_view value) {
    return value.data() + value.size() + 2;
}

KVT_FOLDED const char *take_text(const StraightBlock &block, const Row &row, const char *at) {
    const std::string_view value = quoted_value(block, row, at, longest_text_value);
    if (value.empty()) {
        return at;
    }
    const size_t room = row.capacity - size_t{1};
    char *member = member_of(row, block.record);
    std::memset(member, 0, row.capacity);
    copy_words(member, value.data(), value.size() < room ? value.size() : room);
    return behind_quoted(value);
}

/// Takes a string of one line. The room for it is what several lines would begin with.
KVT_FOLDED const char *take_joined_text(const StraightBlock &block, const Row &row,
                                        const char *at) {
    const std::string_view value = quoted_value(block, row, at, longest_joined_value);
    if (value.empty() || block.goes_on(row, behind_quoted(value))) {
        return at;
    }
    auto *text = static_cast<char *>(std::calloc(first_lengths * value.size(), 1));
    if (text != nullptr) {
        copy_words(text, value.data(), value.size());
    }
    replace_text(row, block.record, text, text != nullptr ? value.size() + 1 : 0);
    return behind_quoted(value);
}

/// Takes lines of an array as long as they are straight. When the run goes on behind them in
/// another form, `read_exactly` takes its rest.
template <typename Number>
KVT_FOLDED const char *take_numbers(const StraightBlock &block, const Row &row, const char *at,
                                    Progress &progress,
                                    decltype(_kvt_txt_unpack_primptr_uint64_t) &read_exactly) {
    PlainNumber number = number_of(block, row, at);
    if (number.next == nullptr) {
        return at;
    }
    GrowingArray array{sizeof(Number)};
    do {
        char *element = array.next();
        if (element != nullptr) {
            store(element, static_cast<Number>(number.value));
            ++array.count;
        }
        at = number.next;
        number = number_of(block, row, at);
    } while (number.next != nullptr);
    if (block.goes_on(row, at)) {
        return read_exactly(block.input, row, at, block.record, progress.heap, array);
    }
    replace_array(row, block.input, block.record, progress.heap, array,
                  block.input.lying_counts.size());
    return at;
}

/// Takes lines of a byte array, or leaves the run when not all of them are straight.
KVT_FOLDED const char *take_bytes(const StraightBlock &block, const Row &row, const char *at) {
    PlainNumber number = number_of(block, row, at);
    if (number.next == nullptr) {
        return at;
    }
    const char *start = at;
    char *member = member_of(row, block.record);
    if (row.has(clear_at_run)) {
        std::memset(member, 0, row.capacity);
    }
    for (unsigned i = 0; i < row.capacity && number.next != nullptr; ++i) {
        store(member + i, static_cast<uint8_t>(number.value));
        at = number.next;
        number = number_of(block, row, at);
    }
    return block.goes_on(row, at)
               ? _kvt_txt_unpack_primarray_uint8_t(block.input, row, start, block.record)
               : at;
}

/// Reads the block of a record within the record, from its first line.
KVT_FOLDED const char *read_inner_block(Input &input, const Row &row, const char *lines,
                                        void *record, unsigned level) {
    char *member = member_of(row, record);
    if (row.element->owns_heap) {
        // An earlier block of the same name goes, with its arrays. Counts that lie do no harm here:
        // what such arrays hold owns nothing in turn.
        release_members(*row.element, member);
    }
    return row.element->unpack(input, lines, member, level);
}

KVT_FOLDED const char *take_block(const StraightBlock &block, const Row &row, const char *at) {
    const char *lines = block.value_of(row, at);
    return lines != nullptr ? read_inner_block(block.input, row, lines, block.record, block.level)
                            : at;
}

/// Takes blocks as long as their opening lines are straight, and then the run's rest.
KVT_FOLDED const char *take_run(const StraightBlock &block, const Row &row, const char *at,
                                Progress &progress) {
    const char *lines = block.value_of(row, at);
    if (lines == nullptr) {
        return at;
    }
    GrowingArray array{row.element->size};
    const size_t first_lie = block.input.lying_counts.size();
    for (; lines != nullptr; lines = block.value_of(row, at)) {
        char *element = array.next();
        if (element == nullptr) {
            block.input.straight = false;
            at = block.text.find_block_end(at);
            break;
        }
        at = row.element->unpack(block.input, lines, element, block.level);
        ++array.count;
    }
    if (block.goes_on(row, at)) {
        return read_run(block.input, row, skip_blanks(at), block.record, block.level, progress.heap,
                        array, first_lie);
    }
    replace_array(row, block.input, block.record, progress.heap, array, first_lie);
    return at;
}

KVT_FOLDED const char *take_slots(const StraightBlock &block, const Row &row, const char *at) {
    return block.value_of(row, at) != nullptr
               ? read_slots(block.input, row, at, block.record, block.level)
               : at;
}

/// Takes the lines of a row that begin at `at`. Returns the position behind what it took: `at` when
/// that is nothing.
KVT_FOLDED const char *take_straight(const StraightBlock &block, const Row &row, const char *at,
                                     Progress &progress) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        return take_number(block, row, at, progress);
    case RowKind::real:
        return take_real(block, row, at);
    case RowKind::text:
        return take_text(block, row, at);
    case RowKind::joined_text:
        return take_joined_text(block, row, at);
    case RowKind::array16:
        return take_numbers<uint16_t>(block, row, at, progress, _kvt_txt_unpack_primptr_uint16_t);
    case RowKind::array32:
        return take_numbers<uint32_t>(block, row, at, progress, _kvt_txt_unpack_primptr_uint32_t);
    case RowKind::array64:
        return take_numbers<uint64_t>(block, row, at, progress, _kvt_txt_unpack_primptr_uint64_t);
    case RowKind::bytes:
        return take_bytes(block, row, at);
    case RowKind::block:
        return take_block(block, row, at);
    case RowKind::run:
        return take_run(block, row, at, progress);
    case RowKind::slots:
        return take_slots(block, row, at);
    }
    return at; // not reached: each kind has its case
}

} // namespace kvt_str
