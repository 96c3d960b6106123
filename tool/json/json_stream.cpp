#include "json/json_stream.h"

#include <algorithm>
#include <string_view>

#include "json/parse_json.h"

namespace kvt_tool {

bool JsonStream::LineStart::add(char character) {
    if (character == '\n') {
        *this = {};
        return false;
    }
    if (!blank) {
        return false;
    }
    blank = is_json_blank(character);
    blanks += blank ? 1 : 0;
    return character == '{' && blanks <= most_blanks;
}

/// Skips what stands between values. False when no value begins in what has been read.
bool JsonStream::skip_to_value(size_t &at) {
    for (; at < pending_.size(); ++at) {
        const char character = pending_[at];
        if (lost_) {
            lost_ = !line_.add(character);
            if (!lost_) {
                return true;
            }
        } else if (character == (in_list_ ? ']' : '[')) {
            in_list_ = !in_list_;
        } else if (!is_json_blank(character) && !(in_list_ && character == ',')) {
            return true;
        }
    }
    return false;
}

/// Takes a character of a value that stands in none of its strings. `whole` is said at what comes
/// after the value.
JsonStream::End JsonStream::take_outside_of_strings(Scan &scan, char character) {
    const bool in_object = (scan.objects & 1) != 0;
    const bool at_begin = scan.at == scan.begin;
    const bool is_opening = character == '{' || character == '[';
    const bool is_closing = character == '}' || character == ']';
    const bool is_separator = character == ',' || character == ':';
    if (scan.depth == 0 && !at_begin &&
        (is_opening || is_closing || is_separator || character == '"' ||
         is_json_blank(character))) {
        return End::whole; // of a number or a word: no message, as the parser will say
    }
    if (is_json_blank(character)) {
        return End::not_read;
    }
    const char last = scan.last;
    scan.last = character;
    if (is_opening) {
        const bool is_allowed =
            at_begin || last == ':' || last == '[' || (last == ',' && !in_object);
        if (!is_allowed || scan.depth == deepest_json) {
            return End::broken;
        }
        ++scan.depth;
        scan.objects = scan.objects << 1 | (character == '{' ? 1 : 0);
    } else if (is_closing) {
        if (scan.depth == 0 || in_object != (character == '}')) {
            return End::broken;
        }
        --scan.depth;
        scan.objects >>= 1;
        if (scan.depth == 0) {
            ++scan.at;
            return End::whole;
        }
    } else if (character == '"') {
        scan.in_string = true;
        return at_begin || last == ':' || last == ',' || last == '[' || last == '{' ? End::not_read
                                                                                    : End::broken;
    } else if (is_separator && scan.depth == 0) {
        return End::broken;
    }
    return End::not_read;
}

/// Goes on to the end of the value.
JsonStream::End JsonStream::find_end(Scan &scan) const {
    for (; scan.at < pending_.size(); ++scan.at) {
        const char character = pending_[scan.at];
        if (!scan.in_string) {
            if (scan.line.add(character) && scan.message == 0) {
                scan.message = scan.at;
            }
            const End end = take_outside_of_strings(scan, character);
            if (end != End::not_read) {
                return end;
            }
        } else if (character == '\n') {
            scan.line = {};
            return End::broken;
        } else {
            scan.in_string = scan.escaped || character != '"';
            scan.escaped = !scan.escaped && character == '\\';
            if (!scan.in_string && scan.depth == 0) {
                ++scan.at;
                return End::whole;
            }
        }
    }
    const bool is_word = scan.depth == 0 && !scan.in_string;
    return !ended_ ? End::not_read : is_word ? End::whole : End::broken;
}

/// Where a value ends that is broken: before a message that seems to begin within it, else where it
/// cannot go on.
size_t JsonStream::end_of_broken(const Scan &scan) {
    if (scan.message != 0) {
        return scan.message;
    }
    lost_ = true;
    line_ = scan.line;
    return std::min(scan.at + 1, pending_.size());
}

/// A list that is not closed is a value that the parser will not take.
std::unique_ptr<UnitBatch> JsonStream::take_open_list() {
    in_list_ = false;
    drop(pending_.size());
    pending_ = "[";
    return take(1, {{0, 1}});
}

std::unique_ptr<UnitBatch> JsonStream::next() {
    fill();
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (at_beginning_ && pending_.starts_with(byte_order_mark)) {
        drop(byte_order_mark.size());
    }
    at_beginning_ = false;
    std::vector<std::pair<size_t, size_t>> parts;
    size_t at = 0;
    for (;;) {
        if (!skip_to_value(at)) {
            if (!parts.empty()) {
                return take(at, std::move(parts));
            }
            drop(at);
            at = 0;
            if (ended_ || !read_more()) {
                break;
            }
            continue;
        }
        Scan scan{.begin = at, .at = at};
        End end = find_end(scan);
        while (end == End::not_read && parts.empty()) {
            read_more(); // at the end of the input a value ends, too
            end = find_end(scan);
        }
        if (end == End::not_read) {
            return take(at, std::move(parts)); // the next batch begins with it
        }
        if (!usable()) {
            return nullptr;
        }
        const size_t after = end == End::whole ? scan.at : end_of_broken(scan);
        parts.emplace_back(at, after);
        at = after;
    }
    // Of a list in which a value is broken, the end may have been passed over.
    return usable() && in_list_ && !lost_ ? take_open_list() : nullptr;
}

} // namespace kvt_tool
