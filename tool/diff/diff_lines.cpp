#include "diff/diff_lines.h"

#include <algorithm>
#include <cstdint>

namespace kvt_tool {

namespace {

/// Lines that are added or removed in a row before the best way is given up.
constexpr int64_t most_changes = 256;

/// The greedy comparison of E. Myers in linear space: from both ends at once, as far as equal lines
/// lead for 1, 2, 3, ... changes, until both meet. That is a point of a shortest way; what is on
/// either side of it is compared by itself.
class LineComparison {
public:
    LineComparison(std::span<const std::string_view> a, std::span<const std::string_view> b)
        : a_(a), b_(b), zero_(static_cast<int64_t>(b.size()) + 1),
          forward_(a.size() + b.size() + 3), backward_(forward_.size()) {}

    std::vector<LineChange> run() {
        compare({0, static_cast<int64_t>(a_.size()), 0, static_cast<int64_t>(b_.size())});
        return std::move(changes_);
    }

private:
    /// Lines of both, from a begin up to an end.
    struct Part {
        int64_t begin_a, end_a, begin_b, end_b;
    };

    /// A place between lines.
    struct Point {
        int64_t a, b;
    };

    /// The diagonals that one of the searches has reached: the same difference between the places
    /// in A and B.
    struct Reach {
        int64_t least, most;
    };

    bool equal(int64_t a, int64_t b) const {
        return a_[static_cast<size_t>(a)] == b_[static_cast<size_t>(b)];
    }

    int64_t &forward(int64_t diagonal) { return forward_[static_cast<size_t>(diagonal + zero_)]; }

    int64_t &backward(int64_t diagonal) { return backward_[static_cast<size_t>(diagonal + zero_)]; }

    void compare(Part part);
    Point find_point(const Part &part);
    bool step_forward(const Part &part, Reach &reach, const Reach &other, Point &met);
    bool step_backward(const Part &part, Reach &reach, const Reach &other, Point &met);
    Point furthest(const Part &part, const Reach &reach);
    void add(const Part &part);

    std::span<const std::string_view> a_;
    std::span<const std::string_view> b_;
    int64_t zero_;                  ///< index of the diagonal 0
    std::vector<int64_t> forward_;  ///< the furthest place in A, for each diagonal
    std::vector<int64_t> backward_; ///< the same from the end
    std::vector<LineChange> changes_;
};

/// Goes one change further on each diagonal. `other` are those of the other search, where both can
/// meet after this step; empty where they cannot.
bool LineComparison::step_forward(const Part &part, Reach &reach, const Reach &other, Point &met) {
    // Beyond the corners there is nothing to reach; the diagonal beside them stays as it was.
    if (reach.least > part.begin_a - part.end_b) {
        forward(--reach.least - 1) = INT64_MIN;
    } else {
        ++reach.least;
    }
    if (reach.most < part.end_a - part.begin_b) {
        forward(++reach.most + 1) = INT64_MIN;
    } else {
        --reach.most;
    }
    for (int64_t diagonal = reach.most; diagonal >= reach.least; diagonal -= 2) {
        int64_t a = std::max(forward(diagonal - 1) + 1, forward(diagonal + 1));
        while (a < part.end_a && a - diagonal < part.end_b && equal(a, a - diagonal)) {
            ++a;
        }
        forward(diagonal) = a;
        if (other.least <= diagonal && diagonal <= other.most && backward(diagonal) <= a) {
            met = {a, a - diagonal};
            return true;
        }
    }
    return false;
}

bool LineComparison::step_backward(const Part &part, Reach &reach, const Reach &other, Point &met) {
    if (reach.least > part.begin_a - part.end_b) {
        backward(--reach.least - 1) = INT64_MAX;
    } else {
        ++reach.least;
    }
    if (reach.most < part.end_a - part.begin_b) {
        backward(++reach.most + 1) = INT64_MAX;
    } else {
        --reach.most;
    }
    for (int64_t diagonal = reach.most; diagonal >= reach.least; diagonal -= 2) {
        int64_t a = std::min(backward(diagonal - 1), backward(diagonal + 1) - 1);
        while (a > part.begin_a && a - diagonal > part.begin_b && equal(a - 1, a - diagonal - 1)) {
            --a;
        }
        backward(diagonal) = a;
        if (other.least <= diagonal && diagonal <= other.most && a <= forward(diagonal)) {
            met = {a, a - diagonal};
            return true;
        }
    }
    return false;
}

/// Where the search from the begin has left most lines behind it.
LineComparison::Point LineComparison::furthest(const Part &part, const Reach &reach) {
    Point best = {part.begin_a, part.begin_b};
    for (int64_t diagonal = reach.most; diagonal >= reach.least; diagonal -= 2) {
        const int64_t a = std::min({forward(diagonal), part.end_a, part.end_b + diagonal});
        if (a + a - diagonal > best.a + best.b) {
            best = {a, a - diagonal};
        }
    }
    return best;
}

/// A point of a shortest way, or of a good one, that is no corner of a part. Its first lines
/// differ, and so do its last ones.
LineComparison::Point LineComparison::find_point(const Part &part) {
    const int64_t first = part.begin_a - part.begin_b;
    const int64_t last = part.end_a - part.end_b;
    const bool is_odd = ((first - last) & 1) != 0;
    constexpr Reach none = {1, 0};
    Reach of_forward = {first, first};
    Reach of_backward = {last, last};
    forward(first) = part.begin_a;
    backward(last) = part.end_a;
    Point met = {};
    for (int64_t changes = 1;; ++changes) {
        if (step_forward(part, of_forward, is_odd ? of_backward : none, met) ||
            step_backward(part, of_backward, is_odd ? none : of_forward, met)) {
            return met;
        }
        if (changes == most_changes) {
            return furthest(part, of_forward);
        }
    }
}

void LineComparison::add(const Part &part) {
    const LineChange change = {static_cast<size_t>(part.begin_a), static_cast<size_t>(part.end_a),
                               static_cast<size_t>(part.begin_b), static_cast<size_t>(part.end_b)};
    if (!changes_.empty() && changes_.back().end_a == change.begin_a &&
        changes_.back().end_b == change.begin_b) {
        changes_.back().end_a = change.end_a;
        changes_.back().end_b = change.end_b;
    } else {
        changes_.push_back(change);
    }
}

void LineComparison::compare(Part part) {
    while (true) {
        while (part.begin_a < part.end_a && part.begin_b < part.end_b &&
               equal(part.begin_a, part.begin_b)) {
            ++part.begin_a;
            ++part.begin_b;
        }
        while (part.begin_a < part.end_a && part.begin_b < part.end_b &&
               equal(part.end_a - 1, part.end_b - 1)) {
            --part.end_a;
            --part.end_b;
        }
        if (part.begin_a == part.end_a || part.begin_b == part.end_b) {
            if (part.begin_a != part.end_a || part.begin_b != part.end_b) {
                add(part);
            }
            return;
        }
        const Point point = find_point(part);
        // What is before the point takes half of the changes at most, so that calls nest a few
        // levels deep only.
        compare({part.begin_a, point.a, part.begin_b, point.b});
        part.begin_a = point.a;
        part.begin_b = point.b;
    }
}

} // namespace

Lines lines_of(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const size_t newline = text.find('\n');
        const size_t length = newline == std::string_view::npos ? text.size() : newline + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

std::vector<LineChange> diff_lines(std::span<const std::string_view> a,
                                   std::span<const std::string_view> b) {
    return LineComparison(a, b).run();
}

std::string marked_lines(std::string_view a, std::string_view b) {
    const Lines lines_a = lines_of(a);
    const Lines lines_b = lines_of(b);
    std::string text;
    const auto add = [&](char mark, const Lines &lines, size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            text.append(1, mark).append(lines[i]);
            if (!lines[i].ends_with('\n')) {
                text += "\n\\ No newline at end of file\n";
            }
        }
    };
    size_t at = 0;
    for (const LineChange &change : diff_lines(lines_a, lines_b)) {
        add(' ', lines_a, at, change.begin_a);
        add('-', lines_a, change.begin_a, change.end_a);
        add('+', lines_b, change.begin_b, change.end_b);
        at = change.end_a;
    }
    add(' ', lines_a, at, lines_a.size());
    return text;
}

} // namespace kvt_tool
