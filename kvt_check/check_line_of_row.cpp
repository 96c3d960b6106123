// One line of a row: its key, its colon and its value, and what becomes of the field where the
// reader takes none.
#include "check_block.h"
#include "engine/text_limits.h"
#include "invisible.h"

namespace kvt_checking {

using namespace kvt_str;

/// What becomes of a field or element whose line the reader cannot use: the end of a sentence.
Unread BlockCheck::unread_of(size_t index) const {
    const Row &row = rows_[index];
    if (row.has(shared_value)) {
        return last_shared_ < rows_.size() ? Unread{"the field takes the value of a line before, ",
                                                    true, lines_.value(last_shared_)}
                                           : Unread{"the field becomes 0"};
    }
    switch (row.kind) {
    case RowKind::bytes:
        return {"it counts as 0"};
    case RowKind::text:
        return {"the text becomes empty"};
    case RowKind::joined_text:
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
        return {"there is no element for it"};
    default: {
        // A block that is merged with an earlier one has its values.
        const bool has_value =
            lines_.has(index) || frame_.table.reading != Reading::cleared_and_traced;
        return has_value ? Unread{"the field stays as it was"} : Unread{"the field stays 0"};
    }
    }
}

/// Checks that a key is followed by a colon at once. False where the reader finds no value, and the
/// line, with the block that it opens, has been skipped.
bool BlockCheck::check_key(size_t index, const Line &line) {
    const Row &row = rows_[index];
    const std::string_view word = first_word(line.at, line.end);
    const char *after = line.at + row.key_length;
    if (has_character(after, line, ':')) {
        return true;
    }
    const char *next = skip_blanks_in_line(line.at + word.size(), line);
    const char *seen = skip_invisible(next, line.end);
    const bool is_block = has_character(next, line, '{');
    if (word.size() > row.key_length) {
        findings_.suggest(KVT_FINDING_LONGER_KEY, check_.mark(word), nearest_key(word),
                          "the reader takes ", Quoted{word}, " for ", Quoted{key_of(row)},
                          ", and finds no value: ", unread_of(index));
    } else if (is_block) {
        findings_.report(KVT_FINDING_BLOCK_FOR_VALUE, check_.mark(line), Quoted{word},
                         " is no block: the reader skips this line, and takes what follows for "
                         "lines of ",
                         Quoted{frame_.name});
    } else if (seen != next && has_character(seen, line, ':')) {
        const std::string_view between(next, static_cast<size_t>(seen - next));
        findings_.report(KVT_FINDING_INVISIBLE, check_.mark(between), "between ", Quoted{word},
                         " and its colon stands what cannot be seen, ", Quoted{between},
                         ": the reader finds no value: ", unread_of(index));
    } else {
        findings_.report(KVT_FINDING_NO_COLON, check_.mark(word),
                         has_character(next, line, ':') ? "a blank stands between "
                                                        : "no colon follows ",
                         Quoted{word}, has_character(next, line, ':') ? " and its colon" : "",
                         ": the reader finds no value: ", unread_of(index));
    }
    if (is_block && !line.closes) {
        skip_block();
    } else {
        cursor_.step_over_line();
    }
    return false;
}

/// `closes` tells that a closing brace of the line closes the block for the reader.
BlockCheck::Value BlockCheck::check_after_colon(size_t index, const Line &line, bool closes) {
    const Row &row = rows_[index];
    switch (row.kind) {
    case RowKind::real:
        return {check_real(check_, row, line, unread_of(index)), 0};
    case RowKind::text:
    case RowKind::joined_text: {
        const size_t longest =
            row.kind == RowKind::joined_text ? longest_joined_value : row.capacity - size_t{1};
        const TextLine text =
            check_text(check_, row, line, {longest, unread_of(index), frame_.name, closes});
        return {text.is_read, text.value.size()};
    }
    default: {
        uint64_t number = 0;
        const bool has_number = check_number(check_, row, line, unread_of(index), number);
        return {has_number, number};
    }
    }
}

BlockCheck::Value BlockCheck::check_value(size_t index, const Line &line, bool closes) {
    lines_.note(index);
    if (!check_key(index, line)) {
        return {false, 0};
    }
    const Value value = check_after_colon(index, line, closes);
    cursor_.step_over_line();
    return value;
}

} // namespace kvt_checking
