// Reads the rows that take several lines, or texts, in whatever form the lines are: runs of lines
// with one key.
//
// Each reader is given the position of the first line, at its key or at the blanks before it, and
// returns that of the first line that does not belong to it, in the same way. Within a run only the
// key is tested: a brace in a later line does not end the block.
#pragma once

#include <cstdlib>

#include "engine/growing_array.h"
#include "engine/member.h"
#include "engine/row.h"

namespace kvt_str {

/// The arrays on the heap that one record has read so far: how many elements each really has, which
/// a count line may hide.
struct CountedArrays {
    uint64_t elements[most_counted_rows] = {};
    size_t first_lie[most_counted_rows] = {}; ///< where the lying counts of a run's elements begin
};

/// Reads an array of numbers into a new block, which replaces the array of an earlier run. `array`
/// holds the elements of the run that have been read already.
const char *_kvt_txt_unpack_primptr_uint16_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap, GrowingArray array);
const char *_kvt_txt_unpack_primptr_uint32_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap, GrowingArray array);
const char *_kvt_txt_unpack_primptr_uint64_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap, GrowingArray array);

/// Reads quoted lines into one string, each behind a comma, which replaces an earlier one. Of a
/// line at most longest_joined_value characters are taken, and what does not fit after the string's
/// room was doubled once is cut. The length stored counts the string's NUL.
const char *_kvt_txt_unpack_primptr_char(Input &input, const Row &row, const char *at,
                                         void *record);

/// What a value shares with its comma and NUL in the 300 characters that the format gives it.
inline constexpr size_t longest_joined_value = 298;

/// Reads one quoted line into a character array, cut to leave room for its NUL. The array is
/// cleared first, even when the line has another key and is left where it is.
const char *_kvt_txt_unpack_primarray_char(Input &input, const Row &row, const char *at,
                                           void *record);

/// The format takes no longer values into a character array; every array is shorter.
inline constexpr size_t longest_text_value = 199;

/// Reads lines into a byte array; a line that does not scan stores 0. Further lines than the array
/// has bytes are skipped.
const char *_kvt_txt_unpack_primarray_uint8_t(Input &input, const Row &row, const char *at,
                                              void *record);

/// Reads blocks into new elements on the heap, which replace those of an earlier run. `array` holds
/// the elements of the run that have been read already, and `first_lie` is the number of lying
/// counts before the run.
const char *read_run(Input &input, const Row &row, const char *at, void *record, unsigned level,
                     CountedArrays &heap, GrowingArray array, size_t first_lie);

/// Reads blocks into the elements within the record, from the first on; further ones are skipped.
const char *read_slots(Input &input, const Row &row, const char *at, void *record, unsigned level);

/// Stores a joined string and its size with its NUL, and frees an earlier one.
inline void replace_text(const Row &row, void *record, char *text, size_t size) {
    char *member = member_of(row, record);
    if (void *earlier = load<void *>(member); earlier != nullptr) { // rarely: saves the call
        std::free(earlier);
    }
    store(member, text);
    store_count(row, record, size);
}

/// Stores what a run has read and frees what an earlier run had.
void replace_array(const Row &row, const Input &input, void *record, CountedArrays &heap,
                   const GrowingArray &array, size_t first_lie);

/// Remembers every count of the record that differs from the elements that were read, where those
/// own something: the record may be an element that is replaced. A count that cannot be remembered
/// for want of memory is set to what was read.
void remember_lying_counts(const Record &table, Input &input, void *record,
                           const CountedArrays &heap);

/// Makes every count of the record agree with the elements that were read: a greater count is
/// lowered; elements beyond a smaller one are released, and with the last one the array.
void make_counts_agree(const Record &table, void *record, const CountedArrays &heap);

} // namespace kvt_str
