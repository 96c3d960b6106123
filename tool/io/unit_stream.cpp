#include "io/unit_stream.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace kvt_tool {

namespace {

bool is_blank(char character) {
    return character == ' ' || character == '\t';
}

/// By how much a line may change the depth. The codec counts all braces of a line, or one of a
/// kind, or none after a key, as it depends on the block: a message that is taken for longer than
/// it is ends where the next one begins at the latest, but one that is cut short is lost.
int64_t greatest_change_of_depth(std::string_view line) {
    const auto opening = std::ranges::count(line, '{');
    const auto closing = std::ranges::count(line, '}');
    const size_t first = line.find_first_not_of(" \t");
    const bool begins_with_closing = first != std::string_view::npos && line[first] == '}';
    const int64_t opens = opening != 0 ? 1 : 0;
    const int64_t closes = begins_with_closing ? 1 : 0;
    return std::max<int64_t>(opening - closing, opens - closes);
}

} // namespace

/// Where the brace stands that makes a message of the word at `word`: after blanks only. The end
/// of what has been read when that may come, npos when it does not.
size_t UnitStream::find_opening(size_t word) const {
    const size_t farthest =
        word + 3 + sizes_.long_unit; // more blanks than that are none of a message
    size_t at = word + 3;
    while (at < pending_.size() && at < farthest && is_blank(pending_[at])) {
        ++at;
    }
    if (at == pending_.size()) {
        return ended_ ? std::string::npos : at;
    }
    return pending_[at] == '{' ? at : std::string::npos;
}

/// True when a message begins at `start`, after no more blanks than a long unit has characters.
/// `decided` tells whether what has been read shows it.
bool UnitStream::may_begin_message(size_t start, bool &decided) const {
    const size_t first = pending_.find_first_not_of(" \t\n", start);
    const size_t blanks = std::min(first, pending_.size()) - start;
    const size_t farthest = start + blanks + 3;
    const size_t brace = pending_.compare(start + blanks, 3, "msg") == 0
                             ? find_opening(start + blanks)
                             : std::string::npos;
    decided = ended_ || blanks > sizes_.long_unit ||
              (farthest <= pending_.size() && brace != pending_.size());
    return blanks <= sizes_.long_unit && brace != std::string::npos;
}

void UnitStream::begin_unit(size_t start) {
    bool decided = false;
    bool is_message = may_begin_message(start, decided);
    while (!decided) {
        read_more();
        is_message = may_begin_message(start, decided);
    }
    // Searched once for many short units: what holds for one message does for those within.
    const size_t searched = is_message && scan_.is_message ? scan_.searched : start;
    scan_ = Scan{.start = start, .is_message = is_message, .searched = searched, .counted = start};
    const size_t word = std::min(pending_.find_first_not_of(" \t\n", start), pending_.size());
    scan_.is_blank = word - start > sizes_.long_unit;
    if (is_message) {
        scan_.searched = std::max(searched, word + 3);
    }
}

/// What has been searched, without the blanks at its end: they may be the indentation of a word
/// that follows, if they are not too many.
size_t UnitStream::before_blanks(size_t searched) const {
    const size_t fewest = searched - std::min(searched, sizes_.long_unit);
    while (searched > fewest && is_blank(pending_[searched - 1])) {
        --searched;
    }
    return searched;
}

/// Finds where the next message begins after the unit's own beginning. False when none does in
/// what has been read.
bool UnitStream::find_next_beginning(size_t &beginning) {
    for (;;) {
        const char *text = pending_.data();
        const void *found =
            memmem(text + scan_.searched, pending_.size() - scan_.searched, "msg", 3);
        if (found == nullptr) {
            // The word may be cut by the end of what has been read.
            const size_t whole = pending_.size() - std::min<size_t>(pending_.size(), 2);
            scan_.searched = std::max(scan_.searched, whole);
            return false;
        }
        const auto word = static_cast<size_t>(static_cast<const char *>(found) - text);
        const size_t brace = find_opening(word);
        if (brace == pending_.size()) {
            scan_.searched = word;
            return false;
        }
        size_t line = word;
        while (!scan_.is_message && line > scan_.start && word - line < sizes_.long_unit &&
               is_blank(text[line - 1])) {
            --line;
        }
        if (line > scan_.start && text[line - 1] == '\n' && brace != std::string::npos) {
            scan_.searched = word; // this unit may end before it, and the next one find it again
            beginning = line;
            return true;
        }
        scan_.searched = word + 3;
    }
}

/// Finds the end of the line that closes the message, before `limit`.
bool UnitStream::find_closing_line(size_t limit, size_t &end) {
    while (scan_.counted < limit) {
        const char *start = pending_.data() + scan_.counted;
        const auto *newline =
            static_cast<const char *>(std::memchr(start, '\n', limit - scan_.counted));
        if (newline == nullptr) {
            return false;
        }
        const std::string_view line(start, static_cast<size_t>(newline - start));
        scan_.depth += greatest_change_of_depth(line);
        scan_.opened = scan_.opened || line.find('{') != std::string_view::npos;
        scan_.counted += line.size() + 1;
        if (scan_.opened && scan_.depth <= 0) {
            end = scan_.counted;
            return true;
        }
    }
    return false;
}

/// Finds the end of the unit. False when it is not in what has been read.
bool UnitStream::find_end(size_t &end) {
    if (scan_.is_blank) {
        end = scan_.start + sizes_.long_unit;
        return true;
    }
    const bool another = find_next_beginning(end);
    const size_t known = another ? end : scan_.searched;
    size_t closed;
    if (scan_.is_message && known - scan_.start > sizes_.long_unit &&
        find_closing_line(known, closed)) {
        end = closed;
        return true;
    }
    return another;
}

std::unique_ptr<UnitBatch> UnitStream::take_units(const std::vector<size_t> &starts,
                                                  size_t length) {
    std::vector<std::pair<size_t, size_t>> parts;
    for (size_t i = 0; i < starts.size(); ++i) {
        parts.emplace_back(starts[i], i + 1 < starts.size() ? starts[i + 1] : length);
    }
    return take(length, std::move(parts));
}

/// Takes all units but the last, whose end is not known yet.
std::unique_ptr<UnitBatch> UnitStream::take_whole_units(std::vector<size_t> starts) {
    const size_t length = starts.back();
    starts.pop_back();
    return take_units(starts, length);
}

/// Takes the beginning of text outside of messages, and drops the rest of it.
std::unique_ptr<UnitBatch> UnitStream::take_cut() {
    auto batch = take(sizes_.kept, {{0, sizes_.kept}}, true);
    scan_ = {};
    size_t beginning;
    while (!find_next_beginning(beginning)) {
        const size_t searched = before_blanks(scan_.searched);
        drop(searched > 0 ? searched - 1 : 0);
        scan_.searched = 0;
        if (!read_more()) {
            drop(pending_.size());
            return batch;
        }
    }
    drop(beginning);
    return batch;
}

std::unique_ptr<UnitBatch> UnitStream::next() {
    fill();
    if (!usable() || pending_.empty()) {
        return nullptr;
    }
    std::vector<size_t> starts = {0};
    scan_ = {};
    begin_unit(0);
    for (;;) {
        size_t end = 0;
        const bool found = find_end(end);
        const size_t known = found ? end : before_blanks(scan_.searched);
        if (!scan_.is_message && known - scan_.start > sizes_.long_unit) {
            // The units before it are handed out first.
            return starts.size() == 1 ? take_cut() : take_whole_units(starts);
        }
        if (found) {
            begin_unit(end);
            if (end == pending_.size()) {
                return take_units(starts, end);
            }
            starts.push_back(end);
        } else if (ended_) {
            return take_units(starts, pending_.size());
        } else if (starts.size() > 1) {
            return take_whole_units(starts);
        } else {
            read_more();
        }
    }
}

} // namespace kvt_tool
