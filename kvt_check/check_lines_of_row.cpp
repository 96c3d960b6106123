// Rows that take several lines: arrays, joined texts and blocks. Within a run of lines the reader
// tests only for the row's key: braces and longer keys mean nothing to it.
#include "check_block.h"
#include "engine/joined_string.h"
#include "engine/text_limits.h"

namespace kvt_checking {

using namespace kvt_str;

/// True when a run of a row goes on at the next line. A line of another row, whose key begins with
/// that of this one, is reported, and left to be checked as what it is.
bool BlockCheck::goes_on(size_t index) {
    cursor_.skip_blanks();
    const Row &row = rows_[index];
    if (end_ != BlockEnd::none || findings_.stopped() || !cursor_.begins_with(key_of(row))) {
        return false;
    }
    const char *at = cursor_.at();
    const std::string_view word = first_word(at, cursor_.end());
    if (word.size() == row.key_length) {
        return true;
    }
    for (const Row &other : rows_) {
        if (key_of(other) == word) {
            if (row.opens_block()) {
                findings_.report(KVT_FINDING_KEY_IN_ARRAY, check_.mark(word), "directly after ",
                                 Quoted{key_of(row)}, ", the reader takes ", Quoted{word},
                                 " for the name of one more of them, with all lines below up to "
                                 "the closing brace of ",
                                 Quoted{frame_.name}, ", and reads no message after this one");
            } else {
                findings_.report(KVT_FINDING_KEY_IN_ARRAY, check_.mark(word), "directly after ",
                                 Quoted{key_of(row)}, ", the reader takes ", Quoted{word},
                                 " for one more of them, and finds no value");
            }
            return false;
        }
    }
    return true;
}

// --- Arrays and joined texts ---------------------------------------------------------------------

namespace {

/// What can go wrong with a line because of those above it.
class Run {
public:
    Run(Check &check, const Row &row) : check_(check), row_(row) {}

    /// Takes an element, or the place of one that is not read.
    void add(const Mark &mark, bool is_read, uint64_t value) {
        if (row_.kind == RowKind::bytes) {
            add_byte(mark, value);
        } else if (row_.kind == RowKind::joined_text) {
            if (is_read && value != 0) {
                add_text(mark, static_cast<size_t>(value));
            }
        } else {
            size_ += is_read;
        }
    }

    /// Tells of the value that ends the array where nothing stands after it. Lines that say 0 are
    /// never told.
    void finish() const {
        if (row_.kind == RowKind::bytes && row_.terminator != 0 && has_ended_ && !told_) {
            check_.findings.report(KVT_FINDING_END_MARK, end_mark_, uint64_t{row_.terminator},
                                   " ends ", Quoted{key_of(row_)},
                                   ": the reader takes it, but no line is written for it");
        }
    }

    /// The elements that were read, or the size of the text with its NUL.
    uint64_t size() const { return row_.kind == RowKind::joined_text ? room_.length : size_; }

private:
    /// A line that is not read counts as 0, and `value` is 0 then.
    void add_byte(const Mark &mark, uint64_t value) {
        if (size_ == row_.capacity) {
            check_.findings.report(
                KVT_FINDING_TOO_MANY, mark, Quoted{key_of(row_)}, " has ", uint64_t{row_.capacity},
                row_.capacity == 1 ? " place" : " places", ": the reader skips further lines");
        } else if (has_ended_ && !told_) {
            told_ = true;
            check_.findings.report(KVT_FINDING_AFTER_END, mark, uint64_t{row_.terminator}, " ends ",
                                   Quoted{key_of(row_)},
                                   ": what stands after it is not written any more");
        }
        if (value == row_.terminator && !has_ended_) {
            has_ended_ = true;
            end_mark_ = mark;
        }
        ++size_;
    }

    void add_text(const Mark &mark, size_t length) {
        const size_t wanted = room_.length + length + 1;
        room_.add(length);
        const bool is_cut = room_.length != wanted;
        if (told_) {
            return;
        }
        told_ = is_cut || room_.length > longest_joined_value + 1;
        if (is_cut) {
            check_.findings.report(KVT_FINDING_LONG_TEXT, mark, "the lines of ",
                                   Quoted{key_of(row_)},
                                   " have less room together than they take: the reader cuts this "
                                   "one");
        } else if (told_) {
            check_.findings.report(KVT_FINDING_LONG_TEXT, mark, "joined, ", Quoted{key_of(row_)},
                                   " has more than ", uint64_t{longest_joined_value},
                                   " bytes: it is written on one line, and cut when that is read");
        }
    }

    Check &check_;
    const Row &row_;
    uint64_t size_ = 0;
    JoinedRoom room_;
    bool has_ended_ = false;
    bool told_ = false;
    Mark end_mark_{check_.cursor.here(), std::string_view()}; ///< where the array has ended
};

} // namespace

void BlockCheck::check_array(size_t index) {
    const Row &row = rows_[index];
    const Place place = cursor_.here();
    if (lines_.has(index)) {
        const bool adds = row.kind == RowKind::bytes && !row.has(clear_at_run);
        findings_.report(row.kind == RowKind::joined_text ? KVT_FINDING_REPEATED_KEY
                                                          : KVT_FINDING_REPEATED_ARRAY,
                         check_.mark(check_.look_at_line()).again(lines_.first_line(index)),
                         Quoted{key_of(row)},
                         adds ? " begins once more: its lines replace the first ones above"
                              : " begins once more: what stood above is lost");
    }
    Run run(check_, row);
    bool is_in_run = false; // there the reader does not look for braces
    do {
        uint64_t value = 0;
        if (const char *end = plain_value(row, value); end != nullptr) {
            const char *at = cursor_.at();
            run.add(check_.mark(at, end), true, value);
            cursor_.step_to_line(end + 1);
        } else {
            const Line line = check_.look_at_line();
            const Mark mark = check_.mark(line);
            const Value read = check_value(index, line, line.closes && !first_ && !is_in_run);
            run.add(mark, read.is_read, read.value);
            if (!read.is_read) {
                lines_.doubt(index);
            }
        }
        is_in_run = true;
    } while (goes_on(index));
    run.finish();
    lines_.remember(index, place, run.size());
}

// --- Blocks --------------------------------------------------------------------------------------

/// Checks the opening line of a block, and steps to the first line in it. False where the line
/// opens none, and has been skipped. `closes` tells that a closing brace of the line closes the
/// block around for the reader.
bool BlockCheck::check_opening(const Row &row, const Line &line, bool closes) {
    const std::string_view word = first_word(line.at, line.end);
    const bool is_longer = word.size() > row.key_length;
    if (is_longer) {
        findings_.suggest(KVT_FINDING_LONGER_KEY, check_.mark(word), nearest_key(word),
                          "the reader takes ", Quoted{word}, " for ", Quoted{key_of(row)});
    }
    if (is_balanced(line)) {
        report_one_line_block(check_, line,
                              closes
                                  ? "takes the closing brace for that of "
                                  : "takes the lines below, up to a closing brace, for those of ",
                              closes ? frame_.name : key_of(row));
        cursor_.step_over_line();
        return false;
    }
    const char *after = skip_blanks_in_line(line.at + word.size(), line);
    if (has_character(after, line, '{')) {
        check_after_brace(check_, after, line);
        cursor_.step_over_line();
        return true;
    }
    if (has_character(after, line, ':')) {
        if (!is_longer) {
            findings_.report(KVT_FINDING_NO_BRACE, check_.mark(line), Quoted{word},
                             " is a block: the reader takes the lines below for its own, up to the "
                             "next closing brace");
        }
        cursor_.step_over_line();
        return false;
    }
    const Mark mark = check_.mark(line);
    const bool is_alone = trimmed(after, line.end).empty();
    cursor_.step_over_line();
    cursor_.skip_blanks();
    const bool is_below = !line.opens && cursor_.begins_with("{");
    if (!is_longer) {
        report_no_brace(check_, mark, word, is_alone, is_below);
    }
    if (is_below) {
        cursor_.step_over_line();
    }
    return true;
}

void BlockCheck::enter(const Row &row, const Place &opening, bool is_element, size_t element) {
    const Frame frame{&frame_, *row.element, key_of(row), opening, is_element, element};
    const BlockEnd end = BlockCheck(check_, *row.element, frame).check_lines();
    if (end == BlockEnd::text_end || end == BlockEnd::next_message) {
        end_ = end;
    }
}

void BlockCheck::check_blocks(size_t index) {
    const Row &row = rows_[index];
    const bool is_run = row.kind != RowKind::block;
    const Place place = cursor_.here();
    const std::string_view opening{row.label.text, row.label.length};
    const Mark first = check_.mark(place.at, place.at + row.key_length);
    if (lines_.has(index)) {
        findings_.report(is_run ? KVT_FINDING_REPEATED_ARRAY : KVT_FINDING_REPEATED_BLOCK,
                         first.again(lines_.first_line(index)), Quoted{key_of(row)},
                         is_run ? " begins once more: its blocks replace those above"
                         : row.element->reading == Reading::cleared_and_traced
                             ? " stands here once more: it replaces the one above"
                             : " stands here once more: it adds to the one above");
    }
    size_t elements = 0;
    bool told = false;
    do {
        if (row.kind == RowKind::slots && elements == row.capacity) {
            if (!told) {
                told = true;
                findings_.report(KVT_FINDING_TOO_MANY, check_.mark(check_.look_at_line()),
                                 Quoted{key_of(row)}, " has ", uint64_t{row.capacity},
                                 " places: the reader skips further blocks");
            }
            skip_block();
            continue;
        }
        bool opened = true;
        const Place here = cursor_.here();
        if (cursor_.begins_with(opening)) {
            cursor_.step_to_line(cursor_.at() + opening.size());
        } else {
            opened = check_opening(row, check_.look_at_line(), !first_ && elements == 0);
        }
        if (opened) {
            enter(row, here, is_run, elements);
        }
        ++elements;
    } while (is_run && goes_on(index));
    lines_.remember(index, place, elements);
}

} // namespace kvt_checking
