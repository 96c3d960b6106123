// What a record looks like: one table of rows, in the order in which they are written and in which
// a line is tested against their keys. Writing, measuring, reading, releasing and checking walk
// these tables and know nothing else of any record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "text/label.h"

namespace kvt_str {

struct Record;

/// In groups that the predicates of Row rely on: numbers first, then single values, arrays on the
/// heap, and last what is written in blocks.
enum class RowKind : uint8_t {
    number8, ///< an unsigned number in the record
    number16,
    number32,
    number64,
    signed32,    ///< written with its sign, read as the unsigned number of the same bits
    real,        ///< a float
    text,        ///< a character array in the record, one quoted line
    joined_text, ///< a string on the heap and its length; several lines are joined with commas
    array16,     ///< an array of numbers on the heap and its count, one line an element
    array32,
    array64,
    bytes, ///< a byte array in the record, one line an element up to a terminator
    block, ///< a record within the record
    run,   ///< an array of records on the heap and its count, one block an element
    slots, ///< an array of records in the record and the number in use, one block an element
};

/// Particulars of a row, to be combined.
enum RowOptions : uint8_t {
    no_options = 0,
    always = 1,       ///< written also when zero
    shared_value = 2, ///< scanned into one value shared by all such rows of the record, which is
                      ///< stored whether the scan succeeded or not
    clear_at_run = 4, ///< a byte array that every run of lines clears first
    low_32_bits = 8,  ///< only the low 32 bits of the count tell how many elements are written
};

struct Row {
    Label label;            ///< the key and ": ", or " {" and a newline for blocks
    uint8_t key_length = 0; ///< of the key at the label's start
    RowKind kind = RowKind::number8;
    uint8_t options = no_options; ///< RowOptions
    uint8_t count_width = 0;      ///< bytes of the count, where there is one
    uint8_t terminator = 0;       ///< of a byte array: the value that ends it
    uint8_t index = 0;            ///< its place among the rows of its record
    uint8_t counted_index = 0;    ///< its place among those that count elements
    uint16_t capacity = 1;     ///< elements of the member, more than 1 for an array in the record
    uint32_t offset = 0;       ///< of the member
    uint32_t size = 0;         ///< of the member, in bytes
    uint32_t count_offset = 0; ///< of the count or length, where there is one
    const Record *element = nullptr; ///< the record of a block, run or slot

    constexpr bool is_number() const { return kind <= RowKind::signed32; }

    constexpr bool is_array() const { return kind >= RowKind::array16 && kind <= RowKind::array64; }

    /// An array or a run on the heap: its count tells how many elements there are.
    constexpr bool counts_elements() const { return is_array() || kind == RowKind::run; }

    /// The member is a pointer to a block on the heap.
    constexpr bool is_pointer() const { return counts_elements() || kind == RowKind::joined_text; }

    constexpr bool opens_block() const { return kind >= RowKind::block; }

    constexpr bool has(RowOptions option) const { return (options & option) != 0; }
};

/// A record's rows.
class Rows {
public:
    constexpr Rows(const Row *first, size_t count) : first_(first), count_(count) {}

    constexpr const Row *begin() const { return first_; }

    constexpr const Row *end() const { return first_ + count_; }

    constexpr size_t size() const { return count_; }

    constexpr Rows first(size_t count) const { return {first_, count}; }

    constexpr const Row &operator[](size_t i) const { return first_[i]; }

private:
    const Row *first_;
    size_t count_;
};

/// Particulars of how a record is read.
enum class Reading : uint8_t {
    cleared_and_traced,  ///< the record is cleared first, and what is read is traced
    merged_and_untraced, ///< the record is not cleared first, and nothing is traced: for records
                         ///< that own nothing and are no elements of a run, which lie in uncleared
                         ///< memory
};

/// The table of a record.
struct Record {
    const char *name;   ///< of the C type
    const char *reader; ///< name of the reader, as in the traces
    Rows rows;
    uint32_t size;     ///< of the C type, in bytes
    bool has_pointers; ///< a member is a pointer to the heap; those of records in it do not count
    Reading reading;
};

/// The rows that count elements in one record, at most.
inline constexpr size_t most_counted_rows = 4;

/// Where the table of a C type stands: `RecordOf<vemra_end_job>::table`.
template <typename Type> struct RecordOf { static const Record table; };

} // namespace kvt_str
