#include "diff/unified_diff.h"

#include <algorithm>
#include <utility>

namespace kvt_tool {

namespace {

constexpr std::string_view no_newline = "\\ No newline at end of file\n";

/// The next line, with the one that says that it has no newline.
std::string_view first_line_of(std::string_view marked) {
    const size_t length = marked.find('\n') + 1;
    return marked.substr(0, marked.substr(length).starts_with('\\') ? length + no_newline.size()
                                                                    : length);
}

/// `12,3`, or `11,0` for no line after line 11.
std::string range(uint64_t start, uint64_t end) {
    const uint64_t count = end - start;
    return std::to_string(count != 0 ? start : start - 1) + "," + std::to_string(count);
}

} // namespace

void UnifiedDiff::close_hunk(size_t equal_lines) {
    if (hunk_.empty()) {
        return;
    }
    // The equal lines that do not belong to the hunk have been counted already.
    const size_t beyond = equal_.size() - equal_lines;
    for (; equal_lines != 0; --equal_lines) {
        hunk_ += equal_.front();
        equal_.pop_front();
    }
    done_ += std::exchange(head_, {}) + "@@ -" + range(old_start_, old_line_ - beyond) + " +" +
             range(new_start_, new_line_ - beyond) + " @@\n" + std::exchange(hunk_, {});
}

void UnifiedDiff::take_equal(std::string line) {
    equal_.push_back(std::move(line));
    ++old_line_;
    ++new_line_;
    if (equal_.size() > 2 * context) {
        close_hunk(context);
    }
    while (hunk_.empty() && equal_.size() > context) {
        equal_.pop_front();
    }
}

void UnifiedDiff::take_change(std::string line) {
    differs_ = true;
    if (hunk_.empty()) {
        old_start_ = old_line_ - equal_.size();
        new_start_ = new_line_ - equal_.size();
    }
    for (const std::string &equal : equal_) {
        hunk_ += equal;
    }
    equal_.clear();
    ++(line.front() == '-' ? old_line_ : new_line_);
    hunk_ += line;
}

void UnifiedDiff::add_line(std::string_view line) {
    if (line.front() == ' ') {
        take_equal(std::string(line));
    } else {
        take_change(std::string(line));
    }
}

void UnifiedDiff::release_held() {
    const std::string held = std::exchange(held_, {});
    for (std::string_view rest = held; !rest.empty();) {
        const std::string_view line = first_line_of(rest);
        add_line(line);
        rest.remove_prefix(line.size());
    }
}

std::string UnifiedDiff::take(std::string_view marked, uint64_t first_line) {
    if (first_line != next_line_) {
        release_held();
        close_hunk(std::min(equal_.size(), context));
        equal_.clear();
        old_line_ = next_line_ = first_line;
    }
    while (!marked.empty()) {
        const std::string_view line = first_line_of(marked);
        marked.remove_prefix(line.size());
        next_line_ += line.front() != '+' ? 1 : 0;
        if (line == " \n" || line == "+\n") {
            release_held();
            held_ = line;
        } else if (line.front() == '-' && !held_.empty()) {
            held_ += line;
        } else {
            release_held();
            add_line(line);
        }
    }
    return std::exchange(done_, {});
}

std::string UnifiedDiff::end() {
    if (held_.starts_with(' ')) {
        held_.front() = '-';
    } else if (held_.starts_with('+')) {
        held_.erase(0, 2);
    }
    release_held();
    close_hunk(std::min(equal_.size(), context));
    return std::exchange(done_, {});
}

} // namespace kvt_tool
