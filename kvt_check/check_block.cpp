#include "check_block.h"

#include <algorithm>

#include "engine/text_limits.h"
#include "invisible.h"
#include "nearest.h"

namespace kvt_checking {

using namespace kvt_str;

std::string_view BlockCheck::nearest_key(std::string_view word) const {
    if (!findings_.is_watched()) {
        return {};
    }
    Nearest nearest(word);
    for (const Row &row : rows_) {
        nearest.consider(key_of(row));
    }
    return nearest.word();
}

/// The row whose key the line at `at` has, with a colon or a blank after it; rows_.size() for
/// none. No earlier key is a prefix of it, so that the reader takes the same.
size_t BlockCheck::find_exact_row(const char *at) {
    const auto left = static_cast<size_t>(cursor_.end() - at);
    for (size_t i = 0; i < rows_.size(); ++i) {
        const size_t index =
            expected_ + i < rows_.size() ? expected_ + i : expected_ + i - rows_.size();
        const Row &row = rows_[index];
        if (left > row.key_length && *at == *row.label.text &&
            std::memcmp(at, row.label.text, row.key_length) == 0 &&
            !is_word_character(at[row.key_length])) {
            return index;
        }
    }
    return rows_.size();
}

/// The first row whose key the line at `at` begins with, as the reader finds it; rows_.size() for
/// none.
size_t BlockCheck::find_row(const char *at) const {
    const auto left = static_cast<size_t>(cursor_.end() - at);
    for (size_t index = 0; index < rows_.size(); ++index) {
        const Row &row = rows_[index];
        if (left >= row.key_length && std::memcmp(at, row.label.text, row.key_length) == 0) {
            return index;
        }
    }
    return rows_.size();
}

/// The end of the line when it is one of the row, in the writer's form but for its blanks; else
/// null. `value` is the number, or the length of the text.
const char *BlockCheck::plain_value(const Row &row, uint64_t &value) const {
    const char *end = cursor_.end();
    const char *at = cursor_.at() + row.key_length;
    if (at == end || *at != ':') {
        return nullptr;
    }
    at += end - at > 1 && at[1] == ' ' ? 2 : 1;
    switch (row.kind) {
    case RowKind::real:
        return end_of_plain_real(at, end);
    case RowKind::text:
        return at[-1] == ' ' ? end_of_plain_text(at, end, row.capacity - size_t{1}) : nullptr;
    case RowKind::joined_text: {
        const char *after =
            at[-1] == ' ' ? end_of_plain_text(at, end, longest_joined_value) : nullptr;
        value = after != nullptr ? static_cast<uint64_t>(after - at - 2) : 0;
        return after;
    }
    default:
        return end_of_plain_number(at, end, greatest_of(row), value);
    }
}

/// Takes the lines of a row that begin with one as the writer writes it, but for its blanks. False
/// where the line is another.
bool BlockCheck::take_plain_line() {
    const char *at = cursor_.at();
    const size_t index = find_exact_row(at);
    if (index == rows_.size()) {
        return false;
    }
    const Row &row = rows_[index];
    if (row.opens_block()) {
        if (cursor_.begins_with({row.label.text, row.label.length})) {
            check_blocks(index);
            expected_ = index + 1 == rows_.size() ? 0 : index + 1;
            return true;
        }
        return false;
    }
    uint64_t value = 0;
    const char *end = plain_value(row, value);
    if (end == nullptr) {
        return false;
    }
    expected_ = index + 1 == rows_.size() ? 0 : index + 1;
    if (row.kind >= RowKind::joined_text) {
        check_array(index);
        return true;
    }
    if (lines_.has(index)) {
        return false;
    }
    if (row.kind == RowKind::text) {
        value =
            static_cast<uint64_t>(end - cursor_.at() - row.key_length) - 4; // : and blank, quotes
    }
    if (row.has(shared_value)) {
        last_shared_ = index;
    }
    lines_.remember(index, cursor_.here(), value);
    cursor_.step_to_line(end + 1);
    return true;
}

/// Checks a line that has a row's key, and those below that belong to it.
void BlockCheck::check_row(size_t index, const Line &line) {
    const Row &row = rows_[index];
    if (row.opens_block()) {
        check_blocks(index);
    } else if (row.kind >= RowKind::joined_text) {
        check_array(index);
    } else {
        check_single(index, line);
    }
}

/// True when two lines of a row, both read and with the same value as far as that is remembered,
/// say the same.
bool BlockCheck::is_same(const Row &row, const Place &earlier, const Line &line,
                         uint64_t value) const {
    const char *end = cursor_.end();
    const char *first = earlier.at + row.key_length + 1;
    const char *second = line.at + row.key_length + 1;
    if (row.kind == RowKind::real) {
        return real_at(skip_spaces(first, end), end) == real_at(skip_spaces(second, end), end);
    }
    if (row.kind == RowKind::text) {
        // Both have been read, so that both have quotes.
        return std::string_view(std::find(first, end, '"') + 1, value) ==
               std::string_view(std::find(second, end, '"') + 1, value);
    }
    return true;
}

void BlockCheck::check_single(size_t index, const Line &line) {
    const Row &row = rows_[index];
    const Place place = cursor_.here();
    const Mark mark = check_.mark(line);
    const Value value = check_value(index, line, line.closes && !first_);
    if (!value.is_read) {
        if (row.kind == RowKind::text) {
            lines_.forget(index); // it was cleared
        }
        return;
    }
    if (row.has(shared_value)) {
        last_shared_ = index;
    }
    if (lines_.has(index)) {
        const Place earlier = lines_.place(index);
        if (lines_.value(index) == value.value && is_same(row, earlier, line, value.value)) {
            findings_.report(KVT_FINDING_REPEATED_VALUE, mark.again(lines_.first_line(index)),
                             Quoted{key_of(row)}, " stands here once more, with the same value");
        } else {
            findings_.report(KVT_FINDING_REPEATED_KEY, mark.again(lines_.first_line(index)),
                             Quoted{key_of(row)},
                             " stands here once more, with another value: that of line ",
                             uint64_t{earlier.line}, " is lost");
        }
    }
    lines_.remember(index, place, value.value);
    if (row.kind == RowKind::text && value.value == 0) {
        lines_.forget(index); // as if the line were not there
    }
}

/// Skips a block that the reader, or whoever wrote it, takes for one.
void BlockCheck::skip_block() {
    if (!cursor_.skip_block()) {
        if (check_.indentation.has_missing()) {
            report_missing(check_, check_.indentation.first_missing());
        } else {
            findings_.report(KVT_FINDING_NOT_CLOSED, check_.mark(check_.look_at_line()),
                             "a message begins here, but a block above is not closed: the reader "
                             "skips the message, and those below, with the block");
        }
        end_ = BlockEnd::next_message;
    }
}

/// Checks a line that begins with no key.
void BlockCheck::check_unknown(const Line &line) {
    const std::string_view word = first_word(line.at, line.end);
    if (opens_message(line.at, line.end)) {
        report_open();
        end_ = BlockEnd::next_message;
        return;
    }
    if (line.opens) {
        findings_.suggest(KVT_FINDING_UNKNOWN_BLOCK, check_.mark(line), nearest_key(word),
                          Quoted{frame_.name}, " knows no block ",
                          Quoted{word.empty() ? trimmed(line.at, line.end) : word},
                          ": the reader skips all of it");
        skip_block();
        return;
    }
    const std::string_view text = trimmed(line.at, line.end);
    if (!line.ended && text.find('}') != std::string_view::npos) {
        findings_.report(KVT_FINDING_NOT_CLOSED, check_.mark(line),
                         "the reader sees a brace only in a line that ends with a newline: the "
                         "block ",
                         Quoted{frame_.name}, " is not closed");
        end_ = BlockEnd::text_end;
    } else if (!word.empty() &&
               has_character(skip_blanks_in_line(word.data() + word.size(), line), line, ':')) {
        findings_.suggest(KVT_FINDING_UNKNOWN_KEY, check_.mark(word), nearest_key(word),
                          Quoted{frame_.name}, " knows no key ", Quoted{word},
                          ": the reader skips this line");
    } else if (is_comment(text)) {
        report_comment(check_, text);
    } else if (!text.empty()) {
        // A character that is no blank to the scanner, such as a carriage return, may be the
        // reason.
        const std::string_view whole(line.at,
                                     static_cast<size_t>(text.data() + text.size() - line.at));
        const char *seen = skip_invisible(line.at, line.end);
        const std::string_view key = first_word(seen, line.end);
        if (seen != line.at && knows(frame_.table, key)) {
            findings_.report(KVT_FINDING_INVISIBLE,
                             check_.mark({line.at, static_cast<size_t>(seen - line.at)}), "before ",
                             Quoted{key}, " stands what cannot be seen, ",
                             Quoted{{line.at, static_cast<size_t>(seen - line.at)}},
                             ": the reader skips this line");
            cursor_.step_over_line();
            return;
        }
        findings_.report(KVT_FINDING_STRAY_LINE, check_.mark(whole), Quoted{whole},
                         " begins with no key: the reader skips this line");
    }
    cursor_.step_over_line();
}

namespace {

/// True when all braces of a line stand between its first two quotes.
bool has_braces_in_quotes_only(const Line &line) {
    const char *first = find_character('"', line.at, line.end);
    const char *second = first != nullptr ? find_character('"', first + 1, line.end) : nullptr;
    return second != nullptr && !has_brace(line.at, first) && !has_brace(second, line.end);
}

} // namespace

/// Checks a line with a closing brace, which closes the block for the reader unless it is the first
/// line and has a key.
void BlockCheck::check_closing(size_t index, const Line &line) {
    const bool has_row = index != rows_.size();
    if (*line.at == '}') {
        check_after_brace(check_, line.at, line);
        const Place brace = cursor_.here();
        cursor_.step_over_line();
        close(brace);
        return;
    }
    if (has_row && !rows_[index].opens_block() && has_braces_in_quotes_only(line)) {
        check_row(index, line);
        return;
    }
    if (is_balanced(line)) {
        if (has_row && rows_[index].opens_block()) {
            check_row(index, line);
            return;
        }
        report_one_line_block(check_, line,
                              first_ && has_row ? "takes this line for its key alone, in "
                                                : "takes the closing brace for that of ",
                              frame_.name);
        cursor_.step_over_line();
        return;
    }
    const std::string_view before = trimmed(line.at, find_character('}', line.at, line.end));
    findings_.report(KVT_FINDING_BESIDE_BRACE, check_.mark(before),
                     first_ && has_row ? "the reader takes this line for its key alone, and "
                                         "does not see that the brace after it closes the block"
                                       : "the reader closes the block at this line, and does "
                                         "not read what stands before the brace");
    cursor_.step_over_line();
    end_ = BlockEnd::closed;
}

/// Ends the block when the line is one of a block around: then its own brace is missing. True when
/// there is nothing more to be checked here.
bool BlockCheck::check_belonging(size_t index, const Line &line) {
    const std::string_view word = first_word(line.at, line.end);
    const bool is_known = index != rows_.size() && key_of(rows_[index]) == word;
    if (line.closes || is_known || told_of_missing_ ||
        !is_of_block_around(cursor_.here(), word, frame_)) {
        return false;
    }
    told_of_missing_ = true;
    report_missing(check_, check_.indentation.missing(frame_, cursor_.here().line));
    if (findings_.follows_reader()) {
        return false;
    }
    end_ = BlockEnd::missing;
    return true;
}

void BlockCheck::check_line() {
    if (take_plain_line()) {
        return;
    }
    const Line line = check_.look_at_line();
    const size_t index = find_row(line.at);
    if (check_belonging(index, line)) {
        return;
    }
    if (line.closes) {
        check_closing(index, line);
    } else if (index != rows_.size()) {
        check_row(index, line);
    } else {
        check_unknown(line);
    }
}

/// Closes the block at a brace, after which the cursor stands, unless its lines go on below: then
/// the brace is one too many.
bool BlockCheck::close(const Place &brace) {
    check_.indentation.see_brace(brace, frame_);
    cursor_.skip_blanks();
    const std::string_view word = first_word(cursor_.at(), cursor_.end());
    end_ = BlockEnd::closed;
    if (!word.empty() && is_still_of_block(cursor_.here(), word, frame_)) {
        report_extra(check_, check_.indentation.take_extra(brace), frame_.name);
        if (!findings_.follows_reader()) {
            end_ = BlockEnd::none;
        }
    }
    return end_ == BlockEnd::closed;
}

/// Reports that the block is not closed where the cursor stands: at the end of the text, or where a
/// message begins.
void BlockCheck::report_open() {
    if (check_.indentation.has_missing()) {
        report_missing(check_, check_.indentation.first_missing());
    } else if (cursor_.at_end()) {
        findings_.report(KVT_FINDING_NOT_CLOSED,
                         check_.mark(cursor_.at(), cursor_.at()).again(frame_.opening.line),
                         "the text ends here, but the block ", Quoted{frame_.name}, " of line ",
                         uint64_t{frame_.opening.line}, " is not closed");
    } else {
        findings_.report(KVT_FINDING_NOT_CLOSED,
                         check_.mark(check_.look_at_line()).again(frame_.opening.line),
                         "a message begins here, but the block ", Quoted{frame_.name}, " of line ",
                         uint64_t{frame_.opening.line},
                         " is not closed: the reader takes the message, and those below, for "
                         "unknown blocks, and skips them");
    }
}

BlockEnd BlockCheck::check_lines() {
    findings_.frame = &frame_;
    for (; end_ == BlockEnd::none; first_ = false) {
        cursor_.skip_blanks();
        if (cursor_.begins_with("}\n")) {
            const Place brace = cursor_.here();
            cursor_.step_to_line(cursor_.at() + 2);
            close(brace);
        } else if (cursor_.at_end()) {
            report_open();
            end_ = BlockEnd::text_end;
        } else if (findings_.stopped()) {
            end_ = BlockEnd::text_end;
        } else {
            check_line();
        }
    }
    if (end_ == BlockEnd::closed || end_ == BlockEnd::missing) {
        lines_.report_counts(check_);
    }
    findings_.frame = frame_.around;
    return end_;
}

} // namespace kvt_checking
