#include "text/scanner.h"

#include "text/boundary.h"

namespace kvt_str {

Line look_at_line(const char *at) {
    bool opens = false;
    bool closes = false;
    for (; *at != '\n'; ++at) {
        if (*at == '\0') {
            return {at, false, false};
        }
        opens |= *at == '{';
        closes |= *at == '}';
    }
    return {at + 1, opens, closes};
}

const char *find_block_end(const char *at) {
    return find_block_end(at, 0);
}

const char *find_block_end(const char *at, ptrdiff_t depth) {
    for (; *at != '\0'; ++at) {
        depth += (*at == '{') - (*at == '}');
        if (*at == '\n' && depth == 0) {
            return skip_blanks(at);
        }
    }
    return at;
}

const char *next_message(const char *at, uint32_t length) {
    // 64 bits wide: one step over a newline may lead one character past the greatest length.
    uint64_t distance = 0;
    for (;; ++distance) {
        if (distance == length || at[distance] == '\0') {
            return nullptr;
        }
        if (at[distance] == '\n') {
            break;
        }
    }
    ++distance;
    for (;;) {
        while (distance < length && (at[distance] == ' ' || at[distance] == '\t')) {
            ++distance;
        }
        KVT_BOUNDARY(distance == length);
        if (distance > length) {
            return nullptr;
        }
        if (at[distance] != '\n') {
            return at + distance;
        }
        ++distance;
    }
}

} // namespace kvt_str
