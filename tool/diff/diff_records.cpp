#include "diff/diff_records.h"

#include <utility>

#include "model/identity.h"
#include "model/match_elements.h"
#include "model/record_content.h"

namespace kvt_tool {

namespace {

using What = Difference::What;

/// True when one field at most tells two records apart.
bool nearly_same(const Record &table, const void *a, const void *b, const FieldSet &ignored) {
    size_t differing = 0;
    for (const Row &row : table.rows) {
        const bool follows = is_true_count(table, row, a) && is_true_count(table, row, b);
        if (!follows && !same_value(row, a, b, ignored) && ++differing > 1) {
            return false;
        }
    }
    return true;
}

/// Collects the differences of two records. Records nest a few levels deep, as their tables do.
class RecordComparison {
public:
    explicit RecordComparison(const FieldSet &ignored) : ignored_(ignored) {}

    void compare(const Record &table, const void *a, const void *b);

    std::vector<Difference> take() { return std::move(differences_); }

private:
    /// The lists of one row in two records.
    struct Lists {
        const Row &row;
        const void *record_a;
        const void *record_b;
        Elements a = elements_of(row, record_a);
        Elements b = elements_of(row, record_b);
    };

    /// Something to be appended to both paths while this lives.
    class Within {
    public:
        Within(RecordComparison &comparison, std::string_view key) : Within(comparison) {
            for (std::string *path : {&comparison.path_a_, &comparison.path_b_}) {
                path->append(path->empty() ? "" : ".").append(key);
            }
        }

        Within(RecordComparison &comparison, uint64_t index_a, uint64_t index_b)
            : Within(comparison) {
            comparison.path_a_.append("[").append(std::to_string(index_a)).append("]");
            comparison.path_b_.append("[").append(std::to_string(index_b)).append("]");
        }

        ~Within() {
            comparison_.path_a_.resize(length_a_);
            comparison_.path_b_.resize(length_b_);
        }

        Within(const Within &) = delete;
        Within &operator=(const Within &) = delete;

    private:
        explicit Within(RecordComparison &comparison)
            : comparison_(comparison), length_a_(comparison.path_a_.size()),
              length_b_(comparison.path_b_.size()) {}

        RecordComparison &comparison_;
        size_t length_a_;
        size_t length_b_;
    };

    ElementMatches match(const Lists &lists) const;
    ElementMatches match_records(const Lists &lists) const;
    bool is_ignored(const Lists &lists) const;
    void compare_values(const Record &table, const Row &row, const void *a, const void *b);
    void compare_lists(const Lists &lists);
    void compare_elements(const Lists &lists, uint64_t a, uint64_t b);
    void report_one_sided(What what, const Lists &lists, uint64_t index);

    void report(What what, const Row &row, DifferencePlace a, DifferencePlace b) {
        differences_.push_back({what, &row, std::move(a), std::move(b), within_});
    }

    const FieldSet &ignored_;
    std::string path_a_; ///< of what is compared
    std::string path_b_;
    std::vector<Enclosing> within_;
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

ElementMatches RecordComparison::match_records(const Lists &lists) const {
    const Record &table = *lists.row.element;
    const Elements &a = lists.a;
    const Elements &b = lists.b;
    const bool identified = !identity_of(table).empty();
    ListPair pair = {
        .count_a = a.count,
        .count_b = b.count,
        .same = [&](size_t i, size_t j) { return same_content(table, a.at(i), b.at(j), ignored_); },
        .content = [&](bool of_b,
                       size_t i) { return content_hash(table, (of_b ? b : a).at(i), ignored_); },
        .identity = {},
        .replaces =
            [&](size_t i, size_t j) {
                return !identified || nearly_same(table, a.at(i), b.at(j), ignored_);
            },
    };
    if (identified) {
        pair.identity = [&](bool of_b, size_t i) {
            return identity_hash(table, (of_b ? b : a).at(i));
        };
    }
    return match_elements(pair);
}

ElementMatches RecordComparison::match(const Lists &lists) const {
    return lists.row.element != nullptr ? match_records(lists) : match_numbers(lists.a, lists.b);
}

/// True when nothing of two lists is to be compared.
bool RecordComparison::is_ignored(const Lists &lists) const {
    const auto all_ignored = [&](const void *record, uint64_t count) {
        uint64_t i = 0;
        while (i < count && ignored_.has(lists.row, record, i)) {
            ++i;
        }
        return i == count;
    };
    return !ignored_.empty() && all_ignored(lists.record_a, lists.a.count) &&
           all_ignored(lists.record_b, lists.b.count);
}

void RecordComparison::compare_values(const Record &table, const Row &row, const void *a,
                                      const void *b) {
    if (!same_value(row, a, b) && !(is_true_count(table, row, a) && is_true_count(table, row, b))) {
        const Within within(*this, key_of(row));
        report(What::changed, row, {path_a_, a, {}}, {path_b_, b, {}});
    }
}

void RecordComparison::report_one_sided(What what, const Lists &lists, uint64_t index) {
    const Within within(*this, index, index);
    const bool of_a = what == What::removed;
    const size_t depth = within_.size();
    if (lists.row.element != nullptr) {
        within_.push_back({&lists.row, (of_a ? lists.a : lists.b).at(index)});
    }
    if (of_a) {
        report(what, lists.row, {path_a_, lists.record_a, index}, {});
    } else {
        report(what, lists.row, {}, {path_b_, lists.record_b, index});
    }
    within_.resize(depth);
}

void RecordComparison::compare_elements(const Lists &lists, uint64_t a, uint64_t b) {
    const Within within(*this, a, b);
    if (lists.row.element != nullptr) {
        within_.push_back({&lists.row, lists.a.at(a)});
        compare(*lists.row.element, lists.a.at(a), lists.b.at(b));
        within_.pop_back();
    } else if (number_at(lists.a, a) != number_at(lists.b, b)) {
        report(What::changed, lists.row, {path_a_, lists.record_a, a},
               {path_b_, lists.record_b, b});
    }
}

void RecordComparison::compare_lists(const Lists &lists) {
    if (is_ignored(lists)) {
        return;
    }
    const auto ignored_in_a = [&](uint64_t i) {
        return ignored_.has(lists.row, lists.record_a, i);
    };
    const auto ignored_in_b = [&](uint64_t i) {
        return ignored_.has(lists.row, lists.record_b, i);
    };
    const ElementMatches matches = match(lists);
    for (size_t i = matches.same_at_begin; i < lists.a.count - matches.same_at_end; ++i) {
        const size_t partner = matches.partner_of_a[i];
        if (ignored_in_a(i) || (partner != unmatched && ignored_in_b(partner))) {
            continue;
        }
        if (partner != unmatched) {
            compare_elements(lists, i, partner);
        } else {
            report_one_sided(What::removed, lists, i);
        }
    }
    for (size_t i = 0; i < lists.b.count; ++i) {
        if (matches.partner_of_b[i] == unmatched && !ignored_in_b(i)) {
            report_one_sided(What::added, lists, i);
        }
    }
    if (!matches.in_order) {
        report(What::order, lists.row, {path_a_, lists.record_a, {}},
               {path_b_, lists.record_b, {}});
    }
}

void RecordComparison::compare(const Record &table, const void *a, const void *b) {
    for (const Row &row : table.rows) {
        if (ignored_.has(row, a) || ignored_.has(row, b)) {
            continue;
        }
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
            compare_lists({row, a, b});
            break;
        }
        }
    }
}

} // namespace

std::vector<Difference> diff_records(const Record &table, const void *a, const void *b,
                                     const FieldSet &ignored) {
    RecordComparison comparison(ignored);
    comparison.compare(table, a, b);
    return comparison.take();
}

} // namespace kvt_tool
