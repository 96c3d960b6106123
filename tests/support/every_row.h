// Every row of every record, for tests of what holds for all rows of a kind: where the row stands,
// and texts with its lines, which are put together here by the rules of the format.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "engine/row.h"

namespace kvt_test {

/// A line that no record knows.
inline constexpr char unknown_line[] = "zz: 0\n";

/// A record and the level of its block, at which its lines may be taken by steps of their own.
struct Block {
    const kvt_str::Record *table;
    unsigned level;

    std::string name() const;        ///< for messages of tests
    std::string indentation() const; ///< of its lines
    /// "key: value" as the writer puts it.
    std::string line(const std::string &key, const std::string &value) const;
    std::string line(const std::string &key, uint64_t value) const;
    /// A block within it, around lines.
    std::string inner(const std::string &key, const std::string &lines) const;
    /// Lines and the block's own closing line.
    std::string closed(const std::string &lines) const;
};

/// A row of a block.
struct Place : Block {
    const kvt_str::Row *row;

    std::string name() const;
    std::string key() const;
    /// The record of the row's elements, where they stand.
    Block element() const;
    /// The row's line with a value.
    std::string says(const std::string &value) const;
    std::string says(uint64_t value) const;
    /// The row of the count or length that belongs to this row.
    Place count() const;

    bool has_count() const { return row->count_width != 0; }

    /// An element of an array, run or slots that holds a number of up to 8 bits: a line, or a block
    /// with the line of a number.
    std::string element_with(uint64_t number) const;
    /// The elements 1 to `last`.
    std::string elements(uint64_t last) const;
    /// Good lines for the row, with numbers and texts made of a number; elements own what they can.
    std::string full(uint64_t number) const;
};

/// True for the records that are read without traces and into what is there: the addresses.
bool is_address(const kvt_str::Record &table);

/// All blocks, at each level where messages or the tests' own records have them.
std::vector<Block> every_block();
/// Their rows that are of one of some kinds; all rows when none is given.
std::vector<Place> every_row(std::initializer_list<kvt_str::RowKind> kinds = {});
std::vector<Place> every_number();
std::vector<Place> every_array(); ///< of numbers, on the heap
std::vector<Place> every_array_or_run();
std::vector<Place> rows_of(const Block &block);
/// The number that tells elements of a record apart: the first one that counts nothing, or the
/// first one where all count something.
Place number_in(const Block &block);
/// True for a row that is the count or length of another one.
bool is_count(const Place &place);

/// Good lines for all rows of a block.
std::string full_lines(const Block &block, uint64_t number);

/// The lines that have a key, of those that stand at the level of a block's lines.
std::string lines_with_key(const Block &block, const std::string &lines, const std::string &key);

/// 1 to `last` without the dropped ones.
std::vector<uint64_t> one_to(uint64_t last, const std::vector<uint64_t> &dropped = {});

} // namespace kvt_test
