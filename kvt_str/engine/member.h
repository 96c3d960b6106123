// Access to a record's members through its rows.
#pragma once

#include <cstdint>
#include <cstring>

#include "engine/row.h"

namespace kvt_str {

template <typename Value> Value load(const void *at) {
    Value value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <typename Value> void store(void *at, Value value) {
    std::memcpy(at, &value, sizeof value);
}

/// The member of a row.
inline const char *member_of(const Row &row, const void *record) {
    return static_cast<const char *>(record) + row.offset;
}

inline char *member_of(const Row &row, void *record) {
    return static_cast<char *>(record) + row.offset;
}

/// An unsigned number of `width` bytes.
inline uint64_t load_number(const void *at, unsigned width) {
    switch (width) {
    case 1:
        return load<uint8_t>(at);
    case 2:
        return load<uint16_t>(at);
    case 4:
        return load<uint32_t>(at);
    default:
        return load<uint64_t>(at);
    }
}

/// Stores the low bytes of a number, as a scan into a variable of that width does.
inline void store_number(void *at, unsigned width, uint64_t value) {
    switch (width) {
    case 1:
        store(at, static_cast<uint8_t>(value));
        break;
    case 2:
        store(at, static_cast<uint16_t>(value));
        break;
    case 4:
        store(at, static_cast<uint32_t>(value));
        break;
    default:
        store(at, value);
        break;
    }
}

inline uint64_t load_count(const Row &row, const void *record) {
    return load_number(static_cast<const char *>(record) + row.count_offset, row.count_width);
}

inline void store_count(const Row &row, void *record, uint64_t count) {
    store_number(static_cast<char *>(record) + row.count_offset, row.count_width, count);
}

} // namespace kvt_str
