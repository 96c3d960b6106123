// What must hold for every table: checked when it is compiled. A Source has the record's type and
// its rows (table.h).
#pragma once

#include <cstddef>
#include <utility>

#include "engine/row.h"

namespace kvt_str {

constexpr bool is_prefix(const Label &key, size_t key_length, const Label &other, size_t length) {
    if (key_length > length) {
        return false;
    }
    for (size_t i = 0; i < key_length; ++i) {
        if (key.text[i] != other.text[i]) {
            return false;
        }
    }
    return true;
}

/// No key can be captured by an earlier one, of which it would be a continuation.
template <size_t count> constexpr bool keys_reachable(const Row (&rows)[count]) {
    for (size_t i = 0; i < count; ++i) {
        for (size_t j = i + 1; j < count; ++j) {
            if (is_prefix(rows[i].label, rows[i].key_length, rows[j].label, rows[j].key_length)) {
                return false;
            }
        }
    }
    return true;
}

/// Keys are compared in words, and shown in traces by a buffer of their own; and a label, which
/// goes on with a colon or a blank, is the beginning of no other row's line.
template <size_t count> constexpr bool keys_are_plain(const Row (&rows)[count]) {
    for (const Row &row : rows) {
        if (row.key_length < 2 || row.key_length > 99) {
            return false;
        }
        for (size_t i = 0; i < row.key_length; ++i) {
            const char c = row.label.text[i];
            if (!(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') && c != '_') {
                return false;
            }
        }
    }
    return true;
}

/// Stands for a value of any type, to count the initializers that a struct takes.
struct AnyValue {
    template <typename Any> constexpr operator Any() const noexcept;
};

template <typename Type, size_t... i>
constexpr bool takes_initializers(std::index_sequence<i...> /*unused*/) {
    return requires {
        Type{(static_cast<void>(i), AnyValue{})...};
    };
}

/// Every member of the struct has its row: the rows are of different members, and either fill it
/// to the last byte or are as many as the struct takes initializers (arrays count by element).
template <typename Source> constexpr bool rows_cover_struct() {
    size_t bytes = 0;
    constexpr size_t initializers = [] {
        size_t sum = 0;
        for (const Row &row : Source::rows) {
            sum += row.capacity;
        }
        return sum;
    }();
    for (const Row &row : Source::rows) {
        bytes += row.size;
        for (const Row &other : Source::rows) {
            if (&row != &other && row.offset < other.offset + other.size &&
                other.offset < row.offset + row.size) {
                return false;
            }
        }
    }
    return bytes == sizeof(typename Source::Type) ||
           !takes_initializers<typename Source::Type>(std::make_index_sequence<initializers + 1>{});
}

template <typename Source> constexpr bool has_pointers() {
    for (const Row &row : Source::rows) {
        if (row.is_pointer()) {
            return true;
        }
    }
    return false;
}

template <typename Source> constexpr size_t count_counted_rows() {
    size_t count = 0;
    for (const Row &row : Source::rows) {
        count += row.counts_elements();
    }
    return count;
}

} // namespace kvt_str
