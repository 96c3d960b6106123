// Records field by field, through their tables: what conversions, comparisons and counts walk.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/member.h"
#include "engine/row.h"
#include "message_kinds.h"

namespace kvt_tool {

using kvt_str::MessageKind;
using kvt_str::Record;
using kvt_str::Row;
using kvt_str::RowKind;

/// What a field is to people: the rows' kinds without their widths and places.
enum class Shape : uint8_t {
    number,  ///< a whole number
    real,    ///< a float
    text,    ///< a string, in the record or on the heap
    numbers, ///< a list of whole numbers
    block,   ///< one record
    records, ///< a list of records
};

Shape shape_of(const Row &row);

/// The key, without the blanks and the colon of its line.
std::string_view key_of(const Row &row);

/// The row of a key; null when the table has none.
const Row *find_row(const Record &table, std::string_view key);

/// Bits of a number, or of each number of a list.
unsigned bits_of(const Row &row);

/// True for a number that is written with its sign.
bool is_signed(const Row &row);

/// True for what identifies a port, a node or a switch of the fabric, and is shown in hexadecimal.
bool is_guid(const Row &row);

/// A number, 64 bits wide; one with a sign is extended by it.
uint64_t number_of(const Row &row, const void *record);

float real_of(const Row &row, const void *record);

/// A text without its NUL; empty where there is none.
std::string_view text_of(const Row &row, const void *record);

/// The elements of a list, or the record of a block, one after the other.
struct Elements {
    const char *first;
    uint64_t count;
    uint32_t size; ///< of one, in bytes

    const char *at(uint64_t index) const { return first + index * size; }
};

/// Those that the writer writes: of a byte array up to its terminator, of slots as many as there
/// is room for, none for a null pointer.
Elements elements_of(const Row &row, const void *record);

/// An element of a list of numbers.
uint64_t number_at(const Elements &numbers, uint64_t index);

/// The list or text whose count or length a row holds; null for any other row.
const Row *counted_by(const Record &table, const Row &count);

/// What the count of a list, or the length of a text, is after its elements have been read.
uint64_t true_count(const Row &counted, const void *record);

} // namespace kvt_tool
