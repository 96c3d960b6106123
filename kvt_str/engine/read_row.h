// Reads the lines of one row, a step for each kind of row.
//
// A step is offered the line at `at` in one of two ways (Offer, read_block.h) and returns the
// position after what it took: `at` when that is nothing. A step that takes several lines reads
// each in its own form. Such a run ends at the first line that does not have the row's key; a brace
// in a line of it ends nothing.
//
// Called with a row that a loop comes to, a step is interpreted; called with a row that is known
// when compiling, it folds into straight code (unrolled.h).
#pragma once

#include <cstdlib>
#include <cstring>

#include "engine/growing_array.h"
#include "engine/joined_string.h"
#include "engine/read_block.h"
#include "engine/release.h"
#include "engine/text_limits.h"
#include "engine/trace_lines.h"

namespace kvt_str {

// --- One line ------------------------------------------------------------------------------------

KVT_FOLDED const char *read_number(BlockReader &block, const Row &row, const char *at,
                                   Offer offer) {
    if (offer == Offer::by_key) {
        return block.read_general_number(row, at);
    }
    const PlainNumber line = block.canonical_number(row, at);
    if (line.next == nullptr) {
        return at;
    }
    block.store_value(row, line.value);
    return line.next;
}

KVT_FOLDED const char *read_real(BlockReader &block, const Row &row, const char *at, Offer offer) {
    if (offer == Offer::by_key) {
        return block.read_general_real(row, at);
    }
    const char *digits = block.canonical_value(row, at);
    const PlainReal line = digits != nullptr ? read_plain_real(digits) : PlainReal{nullptr, 0};
    if (line.next == nullptr) {
        return at;
    }
    store(member_of(row, block.record), line.value);
    return line.next;
}

KVT_FOLDED const char *_kvt_txt_unpack_primarray_char(BlockReader &block, const Row &row,
                                                      const char *at, Offer offer) {
    char *member = member_of(row, block.record);
    if (offer == Offer::by_key) {
        return read_general_text(block.input, row, at, member);
    }
    const QuotedLine line = block.canonical_quoted(row, at, longest_text_value);
    if (line.next == nullptr) {
        return at;
    }
    const size_t room = row.capacity - size_t{1};
    std::memset(member, 0, row.capacity);
    copy_words(member, line.value.data(), line.value.size() < room ? line.value.size() : room);
    return line.next;
}

// --- Several lines -------------------------------------------------------------------------------

/// Stores an array or a run that was read, and frees what an earlier one of the row had.
/// `first_lie` is where the lying counts of its elements begin.
KVT_FOLDED void replace_array(BlockReader &block, const Row &row, const GrowingArray &array,
                              size_t first_lie) {
    char *member = member_of(row, block.record);
    if (void *earlier = load<void *>(member); earlier != nullptr) { // rarely: saves the call
        release_array(row, earlier, block.progress.true_counts.of(row), block.input.lying_counts);
    }
    store(member, array.block);
    store_count(row, block.record, array.count);
    block.progress.true_counts.of(row) = {array.count, first_lie};
}

template <typename Number>
KVT_FOLDED const char *read_numbers(BlockReader &block, const Row &row, const char *at,
                                    Offer offer) {
    PlainNumber line = block.canonical_number(row, at);
    if (line.next == nullptr && offer == Offer::in_order) {
        return at;
    }
    GrowingArray array{sizeof(Number)};
    Number value = 0; // of the last line that scanned
    for (;; line = block.canonical_number(row, at)) {
        if (line.next != nullptr) {
            at = line.next;
            value = static_cast<Number>(line.value);
        } else if (block.has_line_of(row, at)) {
            const GeneralNumber general = read_general_element(block.input, row, at, value);
            at = general.next;
            if (!general.scans) {
                continue;
            }
            value = static_cast<Number>(general.value);
        } else {
            break;
        }
        char *element = array.next();
        if (element != nullptr) {
            store(element, value);
            ++array.count;
            if (block.is_listened_to) {
                trace_element(row, array.count, value);
            }
        }
    }
    if (block.is_listened_to) {
        // An array without elements has no first one to show: 0 stands for it.
        trace_end_of_array(row, array.count, array.count != 0 ? load<Number>(array.block) : 0);
    }
    replace_array(block, row, array, block.input.lying_counts.size());
    return at;
}

KVT_FOLDED const char *_kvt_txt_unpack_primptr_uint16_t(BlockReader &block, const Row &row,
                                                        const char *at, Offer offer) {
    return read_numbers<uint16_t>(block, row, at, offer);
}

KVT_FOLDED const char *_kvt_txt_unpack_primptr_uint32_t(BlockReader &block, const Row &row,
                                                        const char *at, Offer offer) {
    return read_numbers<uint32_t>(block, row, at, offer);
}

KVT_FOLDED const char *_kvt_txt_unpack_primptr_uint64_t(BlockReader &block, const Row &row,
                                                        const char *at, Offer offer) {
    return read_numbers<uint64_t>(block, row, at, offer);
}

/// A line that does not scan stores 0. Further lines than the array has bytes are skipped.
KVT_FOLDED const char *_kvt_txt_unpack_primarray_uint8_t(BlockReader &block, const Row &row,
                                                         const char *at, Offer offer) {
    PlainNumber line = block.canonical_number(row, at);
    if (line.next == nullptr && offer == Offer::in_order) {
        return at;
    }
    char *member = member_of(row, block.record);
    if (row.has(clear_at_run)) {
        std::memset(member, 0, row.capacity);
    }
    unsigned taken = 0;
    for (;; line = block.canonical_number(row, at)) {
        uint64_t value = line.value;
        if (line.next != nullptr) {
            at = line.next;
        } else if (block.has_line_of(row, at)) {
            const GeneralNumber general = read_general_element(block.input, row, at, 0);
            at = general.next;
            value = general.scans ? general.value : 0;
        } else {
            break;
        }
        if (taken < row.capacity) {
            store(member + taken, static_cast<uint8_t>(value));
            ++taken;
            if (block.is_listened_to) {
                trace_byte(static_cast<uint8_t>(value));
            }
        }
    }
    if (block.is_listened_to && taken < row.capacity) {
        trace_end_of_bytes(row, skip_blanks(at));
    }
    return at;
}

/// Stores a joined string and its size with its NUL, and frees an earlier one.
KVT_FOLDED void replace_text(BlockReader &block, const Row &row, JoinedString &joined) {
    joined.finish();
    char *member = member_of(row, block.record);
    if (void *earlier = load<void *>(member); earlier != nullptr) { // rarely: saves the call
        std::free(earlier);
    }
    store(member, joined.text);
    store_count(row, block.record, joined.room.length);
}

KVT_FOLDED const char *_kvt_txt_unpack_primptr_char(BlockReader &block, const Row &row,
                                                    const char *at, Offer offer) {
    QuotedLine line = block.canonical_quoted(row, at, longest_joined_value);
    if (line.next == nullptr && offer == Offer::in_order) {
        return at;
    }
    JoinedString joined;
    unsigned count = 0;
    // The traces show the buffer that a value is scanned into. It is cleared once the value has
    // been added, so most of them show nothing, but a value for which there was no memory stays in
    // it.
    std::string_view buffered;
    for (;;) {
        if (line.next == nullptr) {
            line = read_general_quoted(block.input, row, at, buffered);
        }
        at = line.next;
        if (!line.value.empty()) {
            const bool joins = joined.append(line.value);
            buffered = joins ? std::string_view() : line.value;
            count += joins ? 1 : 0;
            if (block.is_listened_to && joins) {
                trace_joined_value(joined.text);
            }
        }
        // Mostly there is one line, so this comes before another try of the canonical form.
        if (!block.has_line_of(row, at)) {
            break;
        }
        line = block.canonical_quoted(row, at, longest_joined_value);
    }
    if (block.is_listened_to) {
        trace_end_of_joined(count, joined.text);
    }
    replace_text(block, row, joined);
    return at;
}

// --- Blocks --------------------------------------------------------------------------------------

KVT_FOLDED const char *read_block(BlockReader &block, const Row &row, const char *at, Offer offer) {
    const char *lines = offer == Offer::in_order ? block.canonical_value(row, at)
                                                 : block.input.after_general_line(at);
    if (lines == nullptr) {
        return at;
    }
    const Codec &element = block.codec.element_of(row);
    char *member = member_of(row, block.record);
    if (element.has_pointers) {
        // An earlier block of the same name goes, with its arrays. Counts that lie do no harm here:
        // what such arrays hold owns nothing in turn.
        release_members(element, member);
    }
    return element.unpack(block.input, lines, member, block.line_level());
}

/// Reads blocks into the places that `next_place` gives, and skips one when that is null. The first
/// line is looked at a second time: the compiler makes one look of both.
template <typename NextPlace>
KVT_FOLDED const char *read_elements(BlockReader &block, const Row &row, const char *at,
                                     const NextPlace &next_place) {
    const Codec &element = block.codec.element_of(row);
    for (;;) {
        const char *lines = block.canonical_value(row, at);
        if (lines == nullptr) {
            if (!block.has_line_of(row, at)) {
                return at;
            }
            at = skip_blanks(at);
            lines = block.input.after_general_line(at);
        }
        char *place = next_place();
        at = place != nullptr ? element.unpack(block.input, lines, place, block.line_level())
                              : block.input.text.find_block_end(at);
    }
}

/// Reads blocks into new elements on the heap, which replace those of an earlier run.
KVT_FOLDED const char *read_run(BlockReader &block, const Row &row, const char *at, Offer offer) {
    if (offer == Offer::in_order && block.canonical_value(row, at) == nullptr) {
        return at;
    }
    GrowingArray array{block.codec.element_of(row).size};
    const size_t first_lie = block.input.lying_counts.size();
    at = read_elements(block, row, at, [&]() KVT_FOLDED_LAMBDA {
        char *place = array.next();
        array.count += place != nullptr;
        return place;
    });
    replace_array(block, row, array, first_lie);
    return at;
}

/// Reads blocks into the elements within the record, from the first on; further ones are skipped.
KVT_FOLDED const char *read_slots(BlockReader &block, const Row &row, const char *at, Offer offer) {
    if (offer == Offer::in_order && block.canonical_value(row, at) == nullptr) {
        return at;
    }
    char *slots = member_of(row, block.record);
    unsigned in_use = 0;
    at = read_elements(block, row, at, [&]() KVT_FOLDED_LAMBDA {
        return in_use < row.capacity ? slots + size_t{in_use++} * block.codec.element_of(row).size
                                     : nullptr;
    });
    store_count(row, block.record, in_use);
    return at;
}

// --- Any row -------------------------------------------------------------------------------------

KVT_FOLDED const char *read_row(BlockReader &block, const Row &row, const char *at, Offer offer) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        return read_number(block, row, at, offer);
    case RowKind::real:
        return read_real(block, row, at, offer);
    case RowKind::text:
        return _kvt_txt_unpack_primarray_char(block, row, at, offer);
    case RowKind::joined_text:
        return _kvt_txt_unpack_primptr_char(block, row, at, offer);
    case RowKind::array16:
        return _kvt_txt_unpack_primptr_uint16_t(block, row, at, offer);
    case RowKind::array32:
        return _kvt_txt_unpack_primptr_uint32_t(block, row, at, offer);
    case RowKind::array64:
        return _kvt_txt_unpack_primptr_uint64_t(block, row, at, offer);
    case RowKind::bytes:
        return _kvt_txt_unpack_primarray_uint8_t(block, row, at, offer);
    case RowKind::block:
        return read_block(block, row, at, offer);
    case RowKind::run:
        return read_run(block, row, at, offer);
    case RowKind::slots:
        return read_slots(block, row, at, offer);
    }
    return at; // not reached: each kind has its case
}

} // namespace kvt_str
