#include "json_stream.h"

#include <utility>
#include <vector>

namespace kvt_tool {

namespace {

bool is_space(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

} // namespace

/// Skips what stands between values. False when no value begins in what has been read.
bool JsonStream::skip_to_value(size_t &at) {
    for (; at < pending_.size(); ++at) {
        const char character = pending_[at];
        if (at_beginning_ && character == '[') {
            in_list_ = true;
        } else if (!is_space(character) && !(in_list_ && (character == ',' || character == ']'))) {
            at_beginning_ = false;
            return true;
        }
        at_beginning_ = at_beginning_ && is_space(character);
    }
    return false;
}

/// Goes on to the end of the value. False when it is not in what has been read.
bool JsonStream::find_end(Scan &scan) const {
    for (; scan.at < pending_.size(); ++scan.at) {
        const char character = pending_[scan.at];
        if (character == '\n') {
            // No value but a new one has a brace without indentation: one that is broken does not
            // take those behind it along.
            if (scan.at + 1 == pending_.size() && !ended_) {
                return false;
            }
            if (scan.depth == 0 || pending_[scan.at + 1] == '{') {
                return true;
            }
        } else if (scan.in_string) {
            scan.in_string = scan.escaped || character != '"';
            scan.escaped = !scan.escaped && character == '\\';
        } else if (character == '"') {
            scan.in_string = true;
        } else if (character == '{' || character == '[') {
            ++scan.depth;
        } else if (scan.depth > 0) {
            scan.depth -= character == '}' || character == ']' ? 1 : 0;
            if (scan.depth == 0) {
                ++scan.at;
                return true;
            }
        } else if (scan.at > scan.begin &&
                   (is_space(character) || (in_list_ && (character == ',' || character == ']')))) {
            return true; // a number, a word or a string: no message, as the parser will say
        }
    }
    return ended_;
}

std::unique_ptr<UnitBatch> JsonStream::next() {
    fill();
    std::vector<std::pair<size_t, size_t>> parts;
    Scan scan;
    for (;;) {
        size_t begin = scan.at;
        if (!skip_to_value(begin)) {
            if (ended_) {
                break;
            }
            if (!parts.empty()) {
                return take(begin, std::move(parts));
            }
            drop(begin);
            scan = {};
            read_more();
            continue;
        }
        scan = {.begin = begin, .at = begin};
        bool found = find_end(scan);
        while (!found && parts.empty() && usable()) {
            read_more();
            found = find_end(scan);
        }
        if (!found) {
            break; // the next batch begins with it
        }
        parts.emplace_back(begin, scan.at);
    }
    if (parts.empty() || !usable()) {
        return nullptr;
    }
    const size_t length = parts.back().second;
    return take(length, std::move(parts));
}

} // namespace kvt_tool
