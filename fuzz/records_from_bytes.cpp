#include "records_from_bytes.h"

#include <cstring>

#include "engine/element_size.h"
#include "engine/member.h"

namespace kvt_fuzz {

using namespace kvt_str;

void Bytes::fill(char *out, size_t size) {
    const size_t taken = size < left() ? size : left();
    if (taken != 0) {
        std::memcpy(out, at_, taken);
        at_ += taken;
    }
    std::memset(out + taken, 0, size - taken);
}

RecordFromBytes::RecordFromBytes(const Record &table, Bytes &bytes) : bytes_(bytes) {
    char *record = allocate(table.size);
    fill(table, record);
    record_ = record;
}

char *RecordFromBytes::allocate(size_t size) {
    blocks_.emplace_back(new char[size]());
    return blocks_.back().get();
}

void RecordFromBytes::fill(const Record &table, char *record) {
    for (const Row &row : table.rows) {
        // The row of a count comes before the one that it counts, which sets it.
        fill_row(row, record);
    }
}

void RecordFromBytes::fill_row(const Row &row, char *record) {
    char *member = member_of(row, record);
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
    case RowKind::real: {
        // One byte tells how many bytes the number has, so that small ones are frequent.
        const size_t width = bytes_.next() % (row.size + 1U);
        bytes_.fill(member, width);
        break;
    }
    case RowKind::text:
    case RowKind::bytes:
        bytes_.fill(member, bytes_.next() % (row.capacity + 1U));
        break;
    case RowKind::joined_text:
        fill_string(row, record);
        break;
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
    case RowKind::run:
        fill_elements(row, record);
        break;
    case RowKind::block:
        fill(*row.element, member);
        break;
    case RowKind::slots:
        for (size_t i = 0; i < row.capacity; ++i) {
            fill(*row.element, member + i * row.element->size);
        }
        break;
    }
}

void RecordFromBytes::fill_elements(const Row &row, char *record) {
    // The bytes are shared out: without any left there are no elements, so that no input makes a
    // record that is large out of proportion.
    const uint8_t choice = bytes_.next();
    if (choice == 0) {
        return; // null, beside any count
    }
    const uint64_t count = bytes_.left() == 0 ? 0 : choice < 240 ? choice % 4U : choice % 16U + 4U;
    const size_t size = element_size(row);
    char *elements = allocate(count * size);
    for (uint64_t i = 0; i < count; ++i) {
        if (row.kind == RowKind::run) {
            fill(*row.element, elements + i * size);
        } else {
            bytes_.fill(elements + i * size, size);
        }
    }
    store(member_of(row, record), elements);
    const uint64_t unused = row.has(low_32_bits) ? load_count(row, record) >> 32 << 32 : 0;
    store_count(row, record, unused | count);
}

void RecordFromBytes::fill_string(const Row &row, char *record) {
    const size_t length = bytes_.next();
    if (length == 0) {
        return; // null, beside any length
    }
    const size_t capacity = length - 1 + bytes_.next() % 8U;
    char *string = allocate(capacity + 1);
    bytes_.fill(string, capacity);
    // No more after the first NUL: the block ends with it.
    char *exact = allocate(std::strlen(string) + 1);
    std::strcpy(exact, string);
    store(member_of(row, record), exact);
}

} // namespace kvt_fuzz
