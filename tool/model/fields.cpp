#include "model/fields.h"

#include <algorithm>
#include <cstring>

#include "engine/element_size.h"

namespace kvt_tool {

using namespace kvt_str;

Shape shape_of(const Row &row) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        return Shape::number;
    case RowKind::real:
        return Shape::real;
    case RowKind::text:
    case RowKind::joined_text:
        return Shape::text;
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
    case RowKind::bytes:
        return Shape::numbers;
    case RowKind::block:
        return Shape::block;
    case RowKind::run:
    case RowKind::slots:
        return Shape::records;
    }
    return Shape::number;
}

std::string_view key_of(const Row &row) {
    return {row.label.text, row.key_length};
}

const Row *find_row(const Record &table, std::string_view key) {
    const auto found = std::ranges::find(table.rows, key, key_of);
    return found != table.rows.end() ? &*found : nullptr;
}

unsigned bits_of(const Row &row) {
    return 8 * element_size(row);
}

bool is_signed(const Row &row) {
    return row.kind == RowKind::signed32;
}

bool is_guid(const Row &row) {
    const std::string_view key = key_of(row);
    return bits_of(row) == 64 &&
           (shape_of(row) == Shape::number || shape_of(row) == Shape::numbers) &&
           (key.ends_with("guid") || (key.ends_with("guids") && shape_of(row) == Shape::numbers));
}

uint64_t number_of(const Row &row, const void *record) {
    const char *member = member_of(row, record);
    return is_signed(row) ? static_cast<uint64_t>(int64_t{load<int32_t>(member)})
                          : load_number(member, row.size);
}

float real_of(const Row &row, const void *record) {
    return load<float>(member_of(row, record));
}

std::string_view text_of(const Row &row, const void *record) {
    const char *member = member_of(row, record);
    if (row.kind == RowKind::text) {
        return {member, strnlen(member, row.capacity)};
    }
    const char *text = load<const char *>(member);
    return text != nullptr ? text : "";
}

Elements elements_of(const Row &row, const void *record) {
    const char *member = member_of(row, record);
    const uint32_t size = element_size(row);
    switch (row.kind) {
    case RowKind::bytes: {
        const void *end = std::memchr(member, row.terminator, row.capacity);
        const char *first = member;
        return {first,
                end != nullptr ? static_cast<uint64_t>(static_cast<const char *>(end) - first)
                               : row.capacity,
                size};
    }
    case RowKind::block:
        return {member, 1, size};
    case RowKind::slots:
        return {member, std::min<uint64_t>(load_count(row, record), row.capacity), size};
    default: {
        const char *first = load<const char *>(member);
        const uint64_t count = load_count(row, record);
        const uint64_t written = row.has(low_32_bits) ? static_cast<uint32_t>(count) : count;
        return {first, first != nullptr ? written : 0, size};
    }
    }
}

uint64_t number_at(const Elements &numbers, uint64_t index) {
    return load_number(numbers.at(index), numbers.size);
}

const Row *counted_by(const Record &table, const Row &count) {
    if (!count.is_number()) {
        return nullptr;
    }
    const auto found = std::ranges::find_if(table.rows, [&](const Row &row) {
        return row.count_width != 0 && row.count_offset == count.offset;
    });
    return found != table.rows.end() ? &*found : nullptr;
}

uint64_t true_count(const Row &counted, const void *record) {
    if (counted.kind == RowKind::joined_text) {
        const std::string_view text = text_of(counted, record);
        return text.empty() ? 0 : text.size() + 1;
    }
    return elements_of(counted, record).count;
}

} // namespace kvt_tool
