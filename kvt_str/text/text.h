// A text that is being read, front to back.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "text/boundary.h"
#include "text/digits.h"
#include "text/folded.h"
#include "text/scanner.h"

namespace kvt_str {

class Text {
public:
    explicit Text(const char *begin) : end_(begin + std::strlen(begin)) {}

    /// The text's NUL. Wide loads must not reach past it.
    const char *end() const { return end_; }

    bool has(const char *at, size_t characters) const {
        return static_cast<size_t>(end_ - at) >= characters;
    }

    /// The character after the newline of the line at `at`, or end(): as after_newline of the
    /// scanner, and faster for all but short lines.
    const char *after_line(const char *at) const {
        const void *newline = std::memchr(at, '\n', static_cast<size_t>(end_ - at));
        return newline != nullptr ? static_cast<const char *>(newline) + 1 : end_;
    }

    /// The first double quote at or after `at`, or end(). Positions asked for must not go back: a
    /// quote that was found, and that there is none, is remembered, so that a text of many keys
    /// and few quotes is searched once and not at every key.
    const char *find_quote(const char *at) {
        if (quote_ == nullptr || quote_ < at) {
            const void *found = std::memchr(at, '"', static_cast<size_t>(end_ - at));
            quote_ = found != nullptr ? static_cast<const char *>(found) : end_;
        }
        return quote_;
    }

    /// Reads the value of a quoted line, given the position after its key: as the C library's
    /// `:%*[^"]"%[^"]"` does, bounded to `limit` characters. That wants a colon, at least one
    /// character before the first quote, and at least one after it; all may lie on later lines,
    /// and the end of the text serves for the second quote. Empty where it does not match.
    std::string_view scan_quoted(const char *after_key, size_t limit) {
        if (after_key[0] != ':' || after_key[1] == '"') {
            return {};
        }
        const char *quote = find_quote(after_key + 1);
        if (quote == end_) {
            return {};
        }
        const char *value = quote + 1;
        const size_t rest = static_cast<size_t>(end_ - value);
        const size_t most = rest < limit ? rest : limit;
        const void *closing = std::memchr(value, '"', most);
        const size_t length = closing != nullptr
                                  ? static_cast<size_t>(static_cast<const char *>(closing) - value)
                                  : most;
        KVT_BOUNDARY(rest == limit);
        KVT_BOUNDARY(length == limit - 1);
        KVT_BOUNDARY(length == limit);
        return {value, length};
    }

    /// As skip_blanks of the scanner, and faster for the indentation of a line.
    KVT_FOLDED const char *skip_blanks(const char *at) const {
        KVT_BOUNDARY(end_ - at == 7);
        KVT_BOUNDARY(end_ - at == 8);
        if (has(at, 8)) {
            at += std::countr_zero(load_eight(at) ^ in_each_byte(' ')) / 8;
        }
        return kvt_str::skip_blanks(at);
    }

    /// As find_block_end of the scanner, and faster.
    const char *find_block_end(const char *at) const;

private:
    const char *end_;
    const char *quote_ = nullptr;
};

/// The value of a quoted line in the writer's form, given the position after its first quote: one
/// character at least, no newline, no brace, and a newline after the second quote. Empty
/// for any other line. `end` is the text's NUL.
std::string_view plain_quoted(const char *at, const char *end);

} // namespace kvt_str
