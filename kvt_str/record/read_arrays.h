// Reads the rows that take several lines, or texts: runs of lines with one key.
//
// Each reader is given the position of the first line, and returns that of the first line that
// does not belong to it (behind its blanks, or not). Within a run only the key is tested: a brace
// in a later line does not end the block.
#pragma once

#include "record/row.h"

namespace kvt_str {

/// The arrays on the heap that one record has read so far: how many elements each really has, which
/// a count line may hide.
struct HeapArrays {
    uint64_t elements[most_heap_rows] = {};
    size_t first_lie[most_heap_rows] = {}; ///< where the lying counts of a run's elements begin
};

/// Reads an array of numbers into a new block, which replaces the array of an earlier run.
const char *_kvt_txt_unpack_primptr_uint16_t(Input &input, const Row &row, const char *at,
                                             void *record, unsigned indent, HeapArrays &heap);
const char *_kvt_txt_unpack_primptr_uint32_t(Input &input, const Row &row, const char *at,
                                             void *record, unsigned indent, HeapArrays &heap);
const char *_kvt_txt_unpack_primptr_uint64_t(Input &input, const Row &row, const char *at,
                                             void *record, unsigned indent, HeapArrays &heap);

/// Reads quoted lines into one string, each behind a comma, which replaces an earlier one. Of a
/// line at most 298 characters are taken, and what does not fit after the string's room was doubled
/// once is cut. The length stored counts the string's NUL.
const char *_kvt_txt_unpack_primptr_char(Input &input, const Row &row, const char *at,
                                         void *record);

/// Reads one quoted line into a character array, cut to leave room for its NUL. The array is
/// cleared first, even when the line has another key and is left where it is.
const char *_kvt_txt_unpack_primarray_char(Input &input, const Row &row, const char *at,
                                           void *record);

/// Reads lines into a byte array; a line that does not scan stores 0. Further lines than the array
/// has bytes are skipped.
const char *_kvt_txt_unpack_primarray_uint8_t(Input &input, const Row &row, const char *at,
                                              void *record, unsigned indent);

/// Reads blocks into new elements on the heap, which replace those of an earlier run.
const char *read_run(Input &input, const Row &row, const char *at, void *record, unsigned level,
                     HeapArrays &heap);

/// Reads blocks into the elements within the record, from the first on; further ones are skipped.
const char *read_slots(Input &input, const Row &row, const char *at, void *record, unsigned level);

/// Remembers every count of the record that differs from the elements that were read, where those
/// own something: the record may be an element that is replaced.
void remember_lying_counts(const Record &table, Input &input, void *record, HeapArrays &heap);

/// Makes every count of the record agree with the elements that were read: a greater count is
/// lowered; elements beyond a smaller one are released, and with the last one the array.
void make_counts_agree(const Record &table, void *record, const HeapArrays &heap);

} // namespace kvt_str
