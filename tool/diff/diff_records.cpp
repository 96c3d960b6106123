#include "diff/diff_records.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "model/identity.h"
#include "model/match_elements.h"
#include "model/record_content.h"
#include "model/value_text.h"

namespace kvt_tool {

namespace {

using What = Difference::What;

/// The count of a list, or the length of a text, that says what is there.
bool is_true_count(const Record &table, const Row &row, const void *record) {
    const Row *counted = counted_by(table, row);
    return counted != nullptr && number_of(row, record) == true_count(*counted, record);
}

/// True when one field at most tells two records apart.
bool nearly_same(const Record &table, const void *a, const void *b) {
    size_t differing = 0;
    for (const Row &row : table.rows) {
        const bool follows = is_true_count(table, row, a) && is_true_count(table, row, b);
        if (!follows && !same_value(row, a, b) && ++differing > 1) {
            return false;
        }
    }
    return true;
}

/// Collects the differences of two records. Records nest a few levels deep, as their tables do.
class RecordComparison {
public:
    void compare(const Record &table, const void *a, const void *b);

    std::vector<Difference> take() { return std::move(differences_); }

private:
    /// Two lists of one row.
    struct Lists {
        const Row &row;
        Elements a;
        Elements b;
    };

    /// Something to be appended to the path while this lives.
    class Within {
    public:
        Within(RecordComparison &comparison, std::string_view key)
            : path_(comparison.path_), length_(path_.size()) {
            if (length_ != 0) {
                path_ += '.';
            }
            path_ += key;
        }

        Within(RecordComparison &comparison, uint64_t index)
            : path_(comparison.path_), length_(path_.size()) {
            path_.append("[").append(std::to_string(index)).append("]");
        }

        ~Within() { path_.resize(length_); }

        Within(const Within &) = delete;
        Within &operator=(const Within &) = delete;

    private:
        std::string &path_;
        size_t length_;
    };

    void compare_values(const Record &table, const Row &row, const void *a, const void *b);
    void compare_lists(const Lists &lists);
    void compare_elements(const Lists &lists, uint64_t a, uint64_t b);
    void one_sided(What what, const Row &row, const Elements &elements, uint64_t index);

    void report(What what, std::string before, std::string after, std::string identity = {}) {
        differences_.push_back(
            {what, path_, std::move(before), std::move(after), std::move(identity)});
    }

    std::string path_; ///< of what is compared
    std::vector<Difference> differences_;
};

ElementMatches match_numbers(const Elements &a, const Elements &b) {
    return match_elements({
        .count_a = a.count,
        .count_b = b.count,
        .same = [&](size_t i, size_t j) { return number_at(a, i) == number_at(b, j); },
        .content = [&](bool of_b, size_t i) { return number_at(of_b ? b : a, i); },
        .identity = {},
        .replaces = [](size_t, size_t) { return true; },
    });
}

ElementMatches match_records(const Record &table, const Elements &a, const Elements &b) {
    const bool identified = !identity_of(table).empty();
    ListPair lists = {
        .count_a = a.count,
        .count_b = b.count,
        .same = [&](size_t i, size_t j) { return same_content(table, a.at(i), b.at(j)); },
        .content = [&](bool of_b, size_t i) { return content_hash(table, (of_b ? b : a).at(i)); },
        .identity = {},
        .replaces = [&](size_t i,
                        size_t j) { return !identified || nearly_same(table, a.at(i), b.at(j)); },
    };
    if (identified) {
        lists.identity = [&](bool of_b, size_t i) {
            return identity_hash(table, (of_b ? b : a).at(i));
        };
    }
    return match_elements(lists);
}

void RecordComparison::compare_values(const Record &table, const Row &row, const void *a,
                                      const void *b) {
    if (same_value(row, a, b) || (is_true_count(table, row, a) && is_true_count(table, row, b))) {
        return;
    }
    const Within within(*this, key_of(row));
    std::string before = shown_value(row, a);
    std::string after = shown_value(row, b);
    if (before == after) { // floats, whose difference lies beyond the digits that are written
        before = exact_real(real_of(row, a));
        after = exact_real(real_of(row, b));
    }
    report(What::changed, std::move(before), std::move(after));
}

void RecordComparison::one_sided(What what, const Row &row, const Elements &elements,
                                 uint64_t index) {
    const Within within(*this, index);
    std::string value;
    std::string identity;
    if (row.element == nullptr) {
        value = shown_number(row, number_at(elements, index));
    } else {
        identity = identity_of(*row.element).empty()
                       ? hint_text(*row.element, elements.at(index))
                       : identity_text(*row.element, elements.at(index));
    }
    const bool removed = what == What::removed;
    report(what, removed ? value : "", removed ? "" : value, std::move(identity));
}

void RecordComparison::compare_elements(const Lists &lists, uint64_t a, uint64_t b) {
    const Within within(*this, a);
    if (lists.row.element != nullptr) {
        compare(*lists.row.element, lists.a.at(a), lists.b.at(b));
        return;
    }
    const uint64_t before = number_at(lists.a, a);
    const uint64_t after = number_at(lists.b, b);
    if (before != after) {
        report(What::changed, shown_number(lists.row, before), shown_number(lists.row, after));
    }
}

void RecordComparison::compare_lists(const Lists &lists) {
    const ElementMatches matches = lists.row.element != nullptr
                                       ? match_records(*lists.row.element, lists.a, lists.b)
                                       : match_numbers(lists.a, lists.b);
    for (size_t i = matches.same_at_begin; i < lists.a.count - matches.same_at_end; ++i) {
        if (matches.partner_of_a[i] != unmatched) {
            compare_elements(lists, i, matches.partner_of_a[i]);
        } else {
            one_sided(What::removed, lists.row, lists.a, i);
        }
    }
    for (size_t i = 0; i < lists.b.count; ++i) {
        if (matches.partner_of_b[i] == unmatched) {
            one_sided(What::added, lists.row, lists.b, i);
        }
    }
    if (!matches.in_order) {
        report(What::order, {}, {});
    }
}

void RecordComparison::compare(const Record &table, const void *a, const void *b) {
    for (const Row &row : table.rows) {
        switch (shape_of(row)) {
        case Shape::number:
        case Shape::real:
        case Shape::text:
            compare_values(table, row, a, b);
            break;
        case Shape::block: {
            const Within within(*this, key_of(row));
            compare(*row.element, elements_of(row, a).first, elements_of(row, b).first);
            break;
        }
        case Shape::numbers:
        case Shape::records: {
            const Within within(*this, key_of(row));
            compare_lists({row, elements_of(row, a), elements_of(row, b)});
            break;
        }
        }
    }
}

} // namespace

std::vector<Difference> diff_records(const Record &table, const void *a, const void *b) {
    RecordComparison comparison;
    comparison.compare(table, a, b);
    return comparison.take();
}

} // namespace kvt_tool
