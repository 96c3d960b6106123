#include "record/write.h"

#include <cstring>

#include "record/member.h"
#include "text/number.h"
#include "text/real.h"

namespace kvt_str {

namespace {

// Two places that a text can go to. The walk over the rows is the same for both, so that what is
// measured is what is written.

/// Stores the characters.
struct Storing {
    char *at;

    void put_label(const Label &label, unsigned indent) {
        at = copy_words(at, label.indented(indent), label.length + indent);
    }

    void put_characters(const char *characters, size_t length) {
        std::memcpy(at, characters, length);
        at += length;
    }

    void put_character(char character) { *at++ = character; }

    void put_digits(uint64_t number) { at = put_number(at, number); }

    void put_block(const Record &table, const void *record, const Label &opening, unsigned level) {
        at = table.pack(record, opening, level, at);
    }
};

/// Counts them.
struct Counting {
    uint64_t size;

    void put_label(const Label &label, unsigned indent) { size += label.length + indent; }

    void put_characters(const char * /*characters*/, size_t length) { size += length; }

    void put_character(char /*character*/) { ++size; }

    void put_digits(uint64_t number) { size += count_digits(number); }

    void put_block(const Record &table, const void *record, const Label &opening, unsigned level) {
        size += measure_block(table, record, opening, level);
    }
};

template <typename Out>
Out put_number_line(Out out, const Row &row, unsigned indent, uint64_t number) {
    out.put_label(row.label, indent);
    out.put_digits(number);
    out.put_character('\n');
    return out;
}

template <typename Out> Out put_number(Out out, const Row &row, unsigned indent, uint64_t number) {
    return number != 0 || row.has(always) ? put_number_line(out, row, indent, number) : out;
}

template <typename Out> Out put_signed(Out out, const Row &row, unsigned indent, int32_t number) {
    if (number >= 0) {
        return put_number(out, row, indent, static_cast<uint64_t>(number));
    }
    out.put_label(row.label, indent);
    out.put_character('-');
    out.put_digits(static_cast<uint64_t>(-int64_t{number}));
    out.put_character('\n');
    return out;
}

template <typename Out> Out put_real(Out out, const Row &row, unsigned indent, float value) {
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
Out put_quoted(Out out, const Row &row, unsigned indent, const char *text, size_t length) {
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
Out put_numbers(Out out, const Row &row, unsigned indent, const void *record) {
    const char *elements = load<const char *>(member_of(row, record));
    if (elements == nullptr) {
        return out;
    }
    const uint64_t count = load_count(row, record);
    for (uint64_t i = 0; i < count; ++i) {
        out = put_number_line(out, row, indent, load<Number>(elements + i * sizeof(Number)));
    }
    return out;
}

template <typename Out> Out put_bytes(Out out, const Row &row, unsigned indent, const char *bytes) {
    for (unsigned i = 0; i < row.capacity; ++i) {
        const auto byte = load<uint8_t>(bytes + i);
        if (byte == row.terminator) {
            break;
        }
        out = put_number_line(out, row, indent, byte);
    }
    return out;
}

template <typename Out>
Out put_elements(Out out, const Row &row, unsigned level, const char *elements, uint64_t count) {
    for (uint64_t i = 0; i < count; ++i) {
        out.put_block(*row.element, elements + i * row.element->size, row.label, level);
    }
    return out;
}

template <typename Out> Out put_run(Out out, const Row &row, unsigned level, const void *record) {
    const char *elements = load<const char *>(member_of(row, record));
    if (elements == nullptr) {
        return out;
    }
    const uint64_t count = load_count(row, record);
    return put_elements(out, row, level, elements,
                        row.has(low_32_bits) ? static_cast<uint32_t>(count) : count);
}

template <typename Out> Out put_slots(Out out, const Row &row, unsigned level, const void *record) {
    const uint64_t in_use = load_count(row, record);
    return put_elements(out, row, level, member_of(row, record),
                        in_use < row.capacity ? in_use : row.capacity);
}

template <typename Out> Out put_row(Out out, const Row &row, unsigned level, const void *record) {
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
        return put_numbers<uint32_t>(out, row, indent, record);
    case RowKind::array64:
        return put_numbers<uint64_t>(out, row, indent, record);
    case RowKind::bytes:
        return put_bytes(out, row, indent, member);
    case RowKind::block:
        return put_elements(out, row, level, member, 1);
    case RowKind::run:
        return put_run(out, row, level, record);
    case RowKind::slots:
        return put_slots(out, row, level, record);
    }
    return out;
}

template <typename Out>
Out put_record(Out out, const Record &table, const void *record, const Label &opening,
               unsigned level) {
    out.put_label(opening, indent_of(level));
    for (const Row &row : table.rows) {
        out = put_row(out, row, level + 1, record);
    }
    out.put_label(closing_label, indent_of(level));
    return out;
}

} // namespace

char *write_block(const Record &table, const void *record, const Label &opening, unsigned level,
                  char *out) {
    char *behind = put_record(Storing{out}, table, record, opening, level).at;
    *behind = '\0';
    return behind;
}

uint64_t measure_block(const Record &table, const void *record, const Label &opening,
                       unsigned level) {
    return put_record(Counting{0}, table, record, opening, level).size;
}

} // namespace kvt_str
