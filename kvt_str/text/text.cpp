#include "text/text.h"

#include "text/boundary.h"
#include "text/chunk.h"
#include "text/scanner.h"
#include "text/wrapping.h"

namespace kvt_str {

namespace {

/// The value from `at` on when it ends at `stop` as a plain quoted one does.
std::string_view value_before(const char *stop, const char *at) {
    const bool is_plain = stop[0] == '"' && stop[1] == '\n';
    return is_plain ? std::string_view(at, static_cast<size_t>(stop - at)) : std::string_view();
}

} // namespace

std::string_view plain_quoted(const char *at, const char *end) {
    const char *stop = at;
    KVT_BOUNDARY(static_cast<size_t>(end - at) == Chunk::width - 1);
    KVT_BOUNDARY(static_cast<size_t>(end - at) == Chunk::width);
    for (; static_cast<size_t>(end - stop) >= Chunk::width; stop += Chunk::width) {
        const Chunk chunk(stop);
        const Chunk::Places stops =
            chunk.find('"') | chunk.find('{') | chunk.find('}') | chunk.find('\n');
        if (stops != 0) {
            return value_before(stop + Chunk::first(stops), at);
        }
    }
    while (*stop != '"' && *stop != '{' && *stop != '}' && *stop != '\n' && *stop != '\0') {
        ++stop;
    }
    return value_before(stop, at);
}

// A set is negated to find its lowest bit.
KVT_WRAPPING const char *Text::find_block_end(const char *at) const {
    ptrdiff_t depth = 0;
    KVT_BOUNDARY(static_cast<size_t>(end_ - at) == Chunk::width - 1);
    KVT_BOUNDARY(static_cast<size_t>(end_ - at) == Chunk::width);
    for (; has(at, Chunk::width); at += Chunk::width) {
        const Chunk chunk(at);
        const Chunk::Places opening = chunk.find('{');
        const Chunk::Places braces = opening | chunk.find('}');
        if (braces == 0 && depth != 0) {
            continue;
        }
        Chunk::Places rest = braces | chunk.find('\n');
        for (; rest != 0; rest &= rest - 1) {
            const Chunk::Places next = rest & -rest;
            if ((next & braces) != 0) {
                depth += (next & opening) != 0 ? 1 : -1;
            } else if (depth == 0) {
                return skip_blanks(at + Chunk::first(next));
            }
        }
    }
    return kvt_str::find_block_end(at, depth);
}

} // namespace kvt_str
