#include "cursor.h"

namespace kvt_checking {

bool opens_message(const char *at, const char *end) {
    if (end - at < 4 || std::memcmp(at, "msg", 3) != 0) {
        return false;
    }
    const char *brace = at + 3;
    while (brace != end && (*brace == ' ' || *brace == '\t')) {
        ++brace;
    }
    return brace != end && *brace == '{';
}

void Cursor::step_to(const char *to) {
    while (const char *newline = find_character('\n', here_.at, to)) {
        step_to_line(newline + 1);
    }
    here_.at = to;
}

void Cursor::step_over_line() {
    const void *newline = std::memchr(here_.at, '\n', static_cast<size_t>(end_ - here_.at));
    if (newline != nullptr) {
        step_to_line(static_cast<const char *>(newline) + 1);
    } else {
        here_.at = end_;
    }
}

bool Cursor::skip_block() {
    ptrdiff_t depth = 0;
    for (; here_.at != end_; ++here_.at) {
        depth += (*here_.at == '{') - (*here_.at == '}');
        if (*here_.at == '\n') {
            skip_blanks();
            if (depth == 0) {
                return true;
            }
            if (opens_message(here_.at, end_)) {
                return false;
            }
            --here_.at; // the loop looks at this character next
        }
    }
    return true;
}

Line Cursor::look_at_line() const {
    const size_t rest = static_cast<size_t>(end_ - here_.at);
    const void *newline = std::memchr(here_.at, '\n', rest);
    Line line{here_.at, end_, false, false, newline != nullptr};
    if (newline != nullptr) {
        line.end = static_cast<const char *>(newline);
        const auto length = static_cast<size_t>(line.end - line.at);
        line.opens = std::memchr(line.at, '{', length) != nullptr;
        line.closes = std::memchr(line.at, '}', length) != nullptr;
    }
    return line;
}

} // namespace kvt_checking
