// What would change in a file, in the form that patch(1) takes.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

namespace kvt_tool {

/// Puts together the changes of a file's parts, which come one after the other as marked_lines
/// (diff_lines.h) tells them. Holds no more than the hunk that is being made.
class UnifiedDiff {
public:
    /// `head` stands above the first hunk.
    explicit UnifiedDiff(std::string head = {}) : head_(std::move(head)) {}

    /// Takes the next part, which begins in this line of the file: another than the next one where
    /// something is left out. Returns what can be printed.
    std::string take(std::string_view marked, uint64_t first_line);

    /// The rest. The last line of the new text is left out, where it is empty: normal form has
    /// empty lines between messages, and none after the last one.
    std::string end();

    /// Whether something has changed, up to the end.
    bool differs() const { return differs_; }

private:
    static constexpr size_t context = 3; ///< equal lines about a change

    void add_line(std::string_view line);
    void release_held();
    void take_equal(std::string line);
    void take_change(std::string line);
    void close_hunk(size_t equal_lines);

    std::string head_;
    std::string held_; ///< from an empty line of the new text on, which may be the last one
    std::deque<std::string> equal_; ///< lines after the last change, as many as may be needed
    std::string hunk_;              ///< its lines; empty between hunks
    std::string done_;              ///< hunks that can be printed
    uint64_t next_line_ = 1;        ///< of the file, after what was taken
    uint64_t old_line_ = 1;         ///< of the next line that is not held
    uint64_t new_line_ = 1;
    uint64_t old_start_ = 0; ///< of the hunk
    uint64_t new_start_ = 0;
    bool differs_ = false;
};

} // namespace kvt_tool
