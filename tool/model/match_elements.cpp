#include "model/match_elements.h"

#include <algorithm>
#include <utility>

namespace kvt_tool {

namespace {

class Matcher {
public:
    explicit Matcher(const ListPair &lists)
        : lists_(lists), matches_{std::vector<size_t>(lists.count_a, unmatched),
                                  std::vector<size_t>(lists.count_b, unmatched)} {}

    ElementMatches match();

private:
    /// Hashes of elements without a partner, each with its index, in ascending order.
    using Hashes = std::vector<std::pair<uint64_t, size_t>>;
    using Hash = std::function<uint64_t(bool of_b, size_t index)>;

    void pair(size_t a, size_t b) {
        matches_.partner_of_a[a] = b;
        matches_.partner_of_b[b] = a;
    }

    void match_ends();
    Hashes hashes(bool of_b, const Hash &hash) const;
    void match_by(const Hash &hash);
    void match_after_neighbours();
    void match_before_neighbours();
    bool partners_ascend() const;

    const ListPair &lists_;
    ElementMatches matches_;
    size_t begin_ = 0; ///< of what lies between the equal ends, in both
    size_t end_a_ = lists_.count_a;
    size_t end_b_ = lists_.count_b;
};

void Matcher::match_ends() {
    while (begin_ < end_a_ && begin_ < end_b_ && lists_.same(begin_, begin_)) {
        pair(begin_, begin_);
        ++begin_;
    }
    while (end_a_ > begin_ && end_b_ > begin_ && lists_.same(end_a_ - 1, end_b_ - 1)) {
        pair(--end_a_, --end_b_);
    }
    matches_.same_at_begin = begin_;
    matches_.same_at_end = lists_.count_a - end_a_;
}

Matcher::Hashes Matcher::hashes(bool of_b, const Hash &hash) const {
    const std::vector<size_t> &partners = of_b ? matches_.partner_of_b : matches_.partner_of_a;
    Hashes found;
    for (size_t i = begin_; i < (of_b ? end_b_ : end_a_); ++i) {
        if (partners[i] == unmatched) {
            found.emplace_back(hash(of_b, i), i);
        }
    }
    // Sorted, not in a hash table: no text makes it slower than others.
    std::ranges::sort(found);
    return found;
}

void Matcher::match_by(const Hash &hash) {
    const Hashes of_a = hashes(false, hash);
    const Hashes of_b = hashes(true, hash);
    auto a = of_a.begin();
    auto b = of_b.begin();
    while (a != of_a.end() && b != of_b.end()) {
        if (a->first == b->first) {
            pair((a++)->second, (b++)->second);
        } else {
            ++(a->first < b->first ? a : b);
        }
    }
}

// Both go on in step, so that the lists may be exchanged: an element is tried with the one that is
// as far from the neighbour.

void Matcher::match_after_neighbours() {
    size_t b = begin_;
    for (size_t a = begin_; a < end_a_; ++a) {
        const size_t partner = matches_.partner_of_a[a];
        if (partner != unmatched) {
            b = partner + 1;
        } else if (b < end_b_ && matches_.partner_of_b[b] == unmatched) {
            if (lists_.replaces(a, b)) {
                pair(a, b);
            }
            ++b;
        }
    }
}

void Matcher::match_before_neighbours() {
    size_t b = end_b_; // after the one that is tried
    for (size_t a = end_a_; a-- > begin_;) {
        const size_t partner = matches_.partner_of_a[a];
        if (partner != unmatched) {
            b = partner;
        } else if (b > begin_ && matches_.partner_of_b[b - 1] == unmatched) {
            if (lists_.replaces(a, b - 1)) {
                pair(a, b - 1);
            }
            --b;
        }
    }
}

bool Matcher::partners_ascend() const {
    size_t least = 0;
    for (const size_t partner : matches_.partner_of_a) {
        if (partner == unmatched) {
            continue;
        }
        if (partner < least) {
            return false;
        }
        least = partner;
    }
    return true;
}

ElementMatches Matcher::match() {
    match_ends();
    match_by(lists_.content);
    if (lists_.identity) {
        match_by(lists_.identity);
    }
    match_after_neighbours();
    match_before_neighbours();
    matches_.in_order = partners_ascend();
    return std::move(matches_);
}

} // namespace

ElementMatches match_elements(const ListPair &lists) {
    return Matcher(lists).match();
}

} // namespace kvt_tool
