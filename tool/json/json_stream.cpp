#include "json/json_stream.h"

#include <string_view>
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
            at_beginning_ = false;
        } else if (in_list_ && character == ']') {
            in_list_ = false;
        } else if (!is_space(character) && !(in_list_ && character == ',')) {
            at_beginning_ = false;
            return true;
        }
    }
    return false;
}

/// Goes on to the end of the value. False when it is not in what has been read.
bool JsonStream::find_end(Scan &scan) const {
    for (; scan.at < pending_.size(); ++scan.at) {
        const char character = pending_[scan.at];
        if (character == '\n') {
            // On a line of its own, and with its first key beside the brace, begins a new message:
            // one that is broken does not take those after it along.
            if (scan.at + 2 >= pending_.size() && !ended_) {
                return false;
            }
            if (scan.depth == 0 || pending_.compare(scan.at + 1, 2, "{\"") == 0) {
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
    std::vector<std::pair<size_t, size_t>> parts;
    Scan scan;
    for (;;) {
        size_t begin = scan.at;
        if (!skip_to_value(begin)) {
            if (!parts.empty()) {
                return take(begin, std::move(parts));
            }
            if (ended_) {
                break;
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
    if (!usable()) {
        return nullptr;
    }
    if (parts.empty()) {
        return in_list_ ? take_open_list() : nullptr;
    }
    const size_t length = parts.back().second;
    return take(length, std::move(parts));
}

} // namespace kvt_tool
