// Writes one row of a record, and measures what writing it would take.
//
// Each step is written once. Called with a row that a loop comes to, it is interpreted; called with
// a row that is known when compiling, it folds into straight code (unrolled.h).
#pragma once

#include <cstring>

#include "engine/codec.h"
#include "engine/member.h"
#include "text/number.h"
#include "text/real.h"
#include "text/words.h"

namespace kvt_str {

// Two places that a text can go to. The steps are the same for both, so that what is measured is
// what is written.

/// Stores the characters.
struct Storing {
    char *at;

    KVT_FOLDED void put_label(const Label &label, unsigned indent) {
        at = copy_words(at, label.indented(indent), label.length + indent);
    }

    KVT_FOLDED void put_characters(const char *characters, size_t length) {
        at = copy_words(at, characters, length);
    }

    KVT_FOLDED void put_character(char character) { *at++ = character; }

    template <typename Number> KVT_FOLDED void put_digits_line(Number number) {
        at = put_number_line(at, number);
    }

    KVT_FOLDED void put_block(const Codec &codec, const void *record, unsigned level) {
        at = codec.pack(record, level, at);
    }
};

/// Measures how many they are.
struct Measuring {
    uint64_t size;

    KVT_FOLDED void put_label(const Label &label, unsigned indent) {
        size += label.length + indent;
    }

    KVT_FOLDED void put_characters(const char * /*characters*/, size_t length) { size += length; }

    KVT_FOLDED void put_character(char /*character*/) { ++size; }

    template <typename Number> KVT_FOLDED void put_digits_line(Number number) {
        size += count_digits(number) + 1;
    }

    KVT_FOLDED void put_block(const Codec &codec, const void *record, unsigned level) {
        size += codec.measure(record, level);
    }
};

template <typename Number, typename Out>
KVT_FOLDED Out put_number(Out out, const Row &row, unsigned indent, Number number) {
    if (number != 0 || row.has(always)) {
        out.put_label(row.label, indent);
        out.put_digits_line(number);
    }
    return out;
}

template <typename Out>
KVT_FOLDED Out put_signed(Out out, const Row &row, unsigned indent, int32_t number) {
    if (number >= 0) {
        return put_number(out, row, indent, static_cast<uint32_t>(number));
    }
    out.put_label(row.label, indent);
    out.put_character('-');
    out.put_digits_line(static_cast<uint32_t>(-int64_t{number}));
    return out;
}

template <typename Out>
KVT_FOLDED Out put_real(Out out, const Row &row, unsigned indent, float value) {
    if (value == 0.0F && !row.has(always)) {
        return out;
    }
    char characters[real_capacity];
    const size_t length = format_real(value, characters);
    out.put_label(row.label, indent);
    out.put_characters(characters, length);
    out.put_character('\n');
    return out;
}

template <typename Out>
KVT_FOLDED Out put_quoted(Out out, const Row &row, unsigned indent, const char *text,
                          size_t length) {
    if (length == 0) {
        return out;
    }
    out.put_label(row.label, indent);
    out.put_character('"');
    out.put_characters(text, length);
    out.put_character('"');
    out.put_character('\n');
    return out;
}

template <typename Number, typename Out>
KVT_FOLDED Out put_numbers(Out out, const Row &row, unsigned indent, const void *record) {
    const char *elements = load<const char *>(member_of(row, record));
    if (elements == nullptr) {
        return out;
    }
    const uint64_t count = load_count(row, record);
    for (uint64_t i = 0; i < count; ++i) {
        out.put_label(row.label, indent);
        out.put_digits_line(load<Number>(elements + i * sizeof(Number)));
    }
    return out;
}

template <typename Out>
KVT_FOLDED Out _kvt_txt_pack_primptr_uint32_t(Out out, const Row &row, unsigned indent,
                                              const void *record) {
    return put_numbers<uint32_t>(out, row, indent, record);
}

template <typename Out>
KVT_FOLDED Out _kvt_txt_pack_primptr_uint64_t(Out out, const Row &row, unsigned indent,
                                              const void *record) {
    return put_numbers<uint64_t>(out, row, indent, record);
}

template <typename Out>
KVT_FOLDED Out _kvt_txt_pack_primarray_uint8_t(Out out, const Row &row, unsigned indent,
                                               const char *bytes) {
    for (unsigned i = 0; i < row.capacity; ++i) {
        const auto byte = load<uint8_t>(bytes + i);
        if (byte == row.terminator) {
            break;
        }
        out.put_label(row.label, indent);
        out.put_digits_line(byte);
    }
    return out;
}

template <typename Out>
KVT_FOLDED Out put_elements(Out out, const Codec &codec, const Row &row, unsigned level,
                            const char *elements, uint64_t count) {
    const Codec &element = codec.element_of(row);
    for (uint64_t i = 0; i < count; ++i) {
        out.put_label(row.label, indent_of(level));
        out.put_block(element, elements + i * element.size, level);
    }
    return out;
}

template <typename Out>
KVT_FOLDED Out put_run(Out out, const Codec &codec, const Row &row, unsigned level,
                       const void *record) {
    const char *elements = load<const char *>(member_of(row, record));
    if (elements == nullptr) {
        return out;
    }
    const uint64_t count = load_count(row, record);
    return put_elements(out, codec, row, level, elements,
                        row.has(low_32_bits) ? static_cast<uint32_t>(count) : count);
}

template <typename Out>
KVT_FOLDED Out put_slots(Out out, const Codec &codec, const Row &row, unsigned level,
                         const void *record) {
    const uint64_t in_use = load_count(row, record);
    return put_elements(out, codec, row, level, member_of(row, record),
                        in_use < row.capacity ? in_use : row.capacity);
}

/// Puts the lines of a row of a codec's table, which stand at `level`.
template <typename Out>
KVT_FOLDED Out put_row(Out out, const Codec &codec, const Row &row, unsigned level,
                       const void *record) {
    const char *member = member_of(row, record);
    const unsigned indent = indent_of(level);
    switch (row.kind) {
    case RowKind::number8:
        return put_number(out, row, indent, load<uint8_t>(member));
    case RowKind::number16:
        return put_number(out, row, indent, load<uint16_t>(member));
    case RowKind::number32:
        return put_number(out, row, indent, load<uint32_t>(member));
    case RowKind::number64:
        return put_number(out, row, indent, load<uint64_t>(member));
    case RowKind::signed32:
        return put_signed(out, row, indent, load<int32_t>(member));
    case RowKind::real:
        return put_real(out, row, indent, load<float>(member));
    case RowKind::text:
        return put_quoted(out, row, indent, member, strnlen(member, row.capacity));
    case RowKind::joined_text: {
        const char *text = load<const char *>(member);
        return text != nullptr ? put_quoted(out, row, indent, text, std::strlen(text)) : out;
    }
    case RowKind::array16:
        return put_numbers<uint16_t>(out, row, indent, record);
    case RowKind::array32:
        return _kvt_txt_pack_primptr_uint32_t(out, row, indent, record);
    case RowKind::array64:
        return _kvt_txt_pack_primptr_uint64_t(out, row, indent, record);
    case RowKind::bytes:
        return _kvt_txt_pack_primarray_uint8_t(out, row, indent, member);
    case RowKind::block:
        return put_elements(out, codec, row, level, member, 1);
    case RowKind::run:
        return put_run(out, codec, row, level, record);
    case RowKind::slots:
        return put_slots(out, codec, row, level, record);
    }
    return out; // not reached: each kind has its case
}

} // namespace kvt_str
