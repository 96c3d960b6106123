// Steps through a text of a known length, as the reader's scanner steps through one that ends with
// a NUL (text/scanner.h). The end of the text ends every line and every block; a brace counts only
// in a line that a newline ends.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "text/number.h"
#include "text/scanner.h"

namespace kvt_checking {

/// A position in the text, and its line.
struct Place {
    const char *at;
    const char *line_start;
    size_t line; ///< from 1
};

/// How deep what stands at a position is indented, in characters.
inline size_t indent_of(const Place &place) {
    return static_cast<size_t>(place.at - place.line_start);
}

/// A line from a position on, without its newline.
struct Line {
    const char *at;
    const char *end;
    bool opens;  ///< the line holds "{"
    bool closes; ///< the line holds "}"
    bool ended;  ///< by a newline
};

/// What the reader's conversions and its scanner skip, together. A carriage return, form feed or
/// vertical tab that stands at the end of a line, or before a value, is no loss.
inline const char *skip_spaces(const char *at, const char *end) {
    while (at != end && kvt_str::is_space(*at)) {
        ++at;
    }
    return at;
}

/// The same on the text from a position on, without trailing spaces.
inline std::string_view trimmed(const char *at, const char *end) {
    at = skip_spaces(at, end);
    while (at != end && kvt_str::is_space(end[-1])) {
        --end;
    }
    return {at, static_cast<size_t>(end - at)};
}

inline bool is_word_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || kvt_str::is_digit(c) || c == '_' ||
           c == '-' || c == '.';
}

inline const char *find_character(char wanted, const char *at, const char *end) {
    return at != end
               ? static_cast<const char *>(std::memchr(at, wanted, static_cast<size_t>(end - at)))
               : nullptr;
}

inline bool has_brace(const char *at, const char *end) {
    return find_character('{', at, end) != nullptr || find_character('}', at, end) != nullptr;
}

/// The word that a line begins with; empty where it begins with something else.
inline std::string_view first_word(const char *at, const char *end) {
    const char *after = at;
    while (after != end && is_word_character(*after)) {
        ++after;
    }
    return {at, static_cast<size_t>(after - at)};
}

/// Within a line, to what is neither a space nor a tab.
inline const char *skip_blanks_in_line(const char *at, const Line &line) {
    while (at != line.end && (*at == ' ' || *at == '\t')) {
        ++at;
    }
    return at;
}

inline bool has_character(const char *at, const Line &line, char wanted) {
    return at != line.end && *at == wanted;
}

/// True for a line that opens a message: "msg {".
bool opens_message(const char *at, const char *end);

class Cursor {
public:
    Cursor(const char *begin, const char *end, size_t first_line = 1)
        : end_(end), here_{begin, begin, first_line} {}

    const Place &here() const { return here_; }

    const char *at() const { return here_.at; }

    const char *end() const { return end_; }

    bool at_end() const { return here_.at == end_; }

    bool has(size_t characters) const { return static_cast<size_t>(end_ - here_.at) >= characters; }

    bool begins_with(std::string_view word) const {
        return has(word.size()) && std::memcmp(here_.at, word.data(), word.size()) == 0;
    }

    /// Skips blanks and newlines, to the first character that is neither.
    void skip_blanks() {
        for (; here_.at != end_ && kvt_str::is_blank(*here_.at); ++here_.at) {
            if (*here_.at == '\n') {
                begin_line(here_.at + 1);
            }
        }
    }

    /// Steps to the line that begins at `start`, after the newline of the line of here().
    void step_to_line(const char *start) {
        here_.at = start;
        begin_line(start);
    }

    /// Steps forward to any character.
    void step_to(const char *to);

    /// Steps after the newline of the line.
    void step_over_line();

    /// Skips the block that the line opens, as find_block_end does, but no further than to a line
    /// within it that opens a message: false where it stops at such a line.
    bool skip_block();

    Line look_at_line() const;

private:
    void begin_line(const char *start) {
        here_.line_start = start;
        ++here_.line;
    }

    const char *end_;
    Place here_;
};

} // namespace kvt_checking
