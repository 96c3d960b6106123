// Records of any content that a caller may hand to the writer, made from the bytes of an input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/row.h"

namespace kvt_fuzz {

/// The bytes of an input, one after the other, and then zeros.
class Bytes {
public:
    Bytes(const uint8_t *data, size_t size) : at_(data), end_(data + size) {}

    uint8_t next() { return at_ != end_ ? *at_++ : uint8_t{0}; }

    void fill(char *out, size_t size);

    size_t left() const { return static_cast<size_t>(end_ - at_); }

private:
    const uint8_t *at_;
    const uint8_t *end_;
};

/// A record that the bytes choose, with arrays and strings in blocks of exactly their size: texts
/// need not be terminated, counts beside null and beside slots are any, and of a count of which the
/// writer takes only the low bits the others are any.
class RecordFromBytes {
public:
    RecordFromBytes(const kvt_str::Record &table, Bytes &bytes);

    void *get() const { return record_; }

private:
    char *allocate(size_t size);
    void fill(const kvt_str::Record &table, char *record);
    void fill_row(const kvt_str::Row &row, char *record);
    void fill_elements(const kvt_str::Row &row, char *record);
    void fill_string(const kvt_str::Row &row, char *record);

    Bytes &bytes_;
    std::vector<std::unique_ptr<char[]>> blocks_;
    void *record_;
};

} // namespace kvt_fuzz
