// Which lines of a text have become which of another.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvt_tool {

using Lines = std::vector<std::string_view>;

/// The lines of a text with their newlines, which only the last one may lack.
Lines lines_of(std::string_view text);

/// Lines of A in whose place there are others in B; none on one side at most.
struct LineChange {
    size_t begin_a;
    size_t end_a; ///< after the last one
    size_t begin_b;
    size_t end_b;

    bool operator==(const LineChange &) const = default;
};

/// The changes that make B of A, in ascending order, with equal lines between them. They are as few
/// lines as possible where few are changed in a row: what has become quite another text is not
/// searched for the best way, so that time grows with the lengths of both and not with their
/// product. Takes memory in proportion to the number of lines.
std::vector<LineChange> diff_lines(std::span<const std::string_view> a,
                                   std::span<const std::string_view> b);

/// Both texts in one: lines of both begin with ' ', those of A alone with '-', those of B alone
/// with
/// '+'. After a last line without a newline there is one that says so, as in a unified diff.
std::string marked_lines(std::string_view a, std::string_view b);

} // namespace kvt_tool
