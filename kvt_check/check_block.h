// Checks the lines of a record's block, and of the blocks in it: the loop of the reader
// (BlockReader::read_lines in engine/read_block.cpp) over the same tables.
#pragma once

#include <string_view>

#include "block_lines.h"
#include "check_state.h"
#include "check_value.h"
#include "engine/row.h"

namespace kvt_checking {

/// How far a block has been checked.
enum class BlockEnd {
    none,         ///< it goes on
    closed,       ///< at a line with its brace
    text_end,     ///< with the text; that is reported
    next_message, ///< at a line that opens a message, where the cursor stands; that is reported
    missing,      ///< at a line of a block around, where the cursor stands; that is reported
};

/// Checks the block of one record from the line after its opening line to its closing line.
///
/// The steps are given the cursor at the first line of what they check, and leave it at the line
/// after, or at the blanks before that.
class BlockCheck {
public:
    BlockCheck(Check &check, const kvt_str::Record &table, const Frame &frame)
        : check_(check), findings_(check.findings), cursor_(check.cursor), lines_(table),
          rows_(lines_.rows()), frame_(frame) {}

    BlockEnd check_lines();

private:
    // check_block.cpp: the loop, and single lines.
    void check_line();
    bool take_plain_line();
    size_t find_exact_row(const char *at);
    size_t find_row(const char *at) const;
    void check_row(size_t index, const Line &line);
    void check_single(size_t index, const Line &line);
    void check_unknown(const Line &line);
    void check_closing(size_t index, const Line &line);
    bool check_belonging(size_t index, const Line &line);
    bool close(const Place &brace);
    void report_open();
    void skip_block();
    std::string_view nearest_key(std::string_view word) const;

    /// What the reader takes from a line of a row whose values are lines.
    struct Value {
        bool is_read;
        uint64_t value; ///< the number, or the length of the text
    };

    bool is_same(const kvt_str::Row &row, const Place &earlier, const Line &line,
                 uint64_t value) const;
    Unread unread_of(size_t index) const;

    // check_lines_of_row.cpp: rows that take several lines.
    void check_array(size_t index);
    void check_blocks(size_t index);
    bool check_opening(const kvt_str::Row &row, const Line &line, bool closes);
    void enter(const kvt_str::Row &row, const Place &opening, bool is_element, size_t element);
    bool goes_on(size_t index);

    Value check_value(size_t index, const Line &line, bool closes);
    Value check_after_colon(size_t index, const Line &line, bool closes);
    bool check_key(size_t index, const Line &line);
    const char *plain_value(const kvt_str::Row &row, uint64_t &value) const;

    Check &check_;
    Findings &findings_;
    Cursor &cursor_;
    BlockLines lines_;
    kvt_str::Rows rows_;
    const Frame &frame_;
    size_t expected_ = 0; ///< the row that the next line has when lines are in the writer's order
    bool first_ = true;   ///< no line of the block has been checked yet
    bool told_of_missing_ = false;
    size_t last_shared_ = SIZE_MAX; ///< the row of a shared value that was read last
    BlockEnd end_ = BlockEnd::none;
};

// braces.cpp

/// True for a line whose braces close all that they open, such as "x { }".
bool is_balanced(const Line &line);

/// Reports such a line; `effect` and a name are what the reader does with it.
void report_one_line_block(Check &check, const Line &line, std::string_view effect,
                           std::string_view name);

/// Reports a block whose brace is missing by the indentation.
void report_missing(Check &check, const Indentation::Missing &missing);

/// Reports a brace that is too many: it closes a block whose lines go on, or comes after a message
/// where there is no such block.
void report_extra(Check &check, const Place &brace, std::string_view block);

/// Reports the opening line of a block without its brace. `is_alone` tells that nothing stands
/// after the name, `is_below` that the brace stands on the line below.
void report_no_brace(Check &check, const Mark &mark, std::string_view name, bool is_alone,
                     bool is_below);

/// Reports what stands after the brace that a line begins with.
void check_after_brace(Check &check, const char *brace, const Line &line);

} // namespace kvt_checking
