#include "model/field_path.h"

#include <algorithm>
#include <map>
#include <utility>

#include "model/block_text.h"

namespace kvt_tool {

namespace {

bool is_list(const Row &row) {
    return shape_of(row) == Shape::numbers || shape_of(row) == Shape::records;
}

bool is_record(const Row &row) {
    return row.element != nullptr;
}

} // namespace

std::string FoundField::value(GuidForm guids) const {
    if (block != nullptr) {
        return block_text(*block, content, guids);
    }
    return index.has_value() ? plain_element(*row, elements_of(*row, record), *index, guids)
                             : plain_value(*row, record, guids);
}

// --- Steps ---------------------------------------------------------------------------------------

FieldPath::Steps FieldPath::first_steps(const MessageKind &kind) const {
    const Step &first = steps_.front();
    const bool is_block_name = first.key == kind.block && !first.elements.has_value() &&
                               find_row(*kind.record, first.key) == nullptr;
    return with_skipped(is_block_name ? 2 : 1);
}

FieldPath::Steps FieldPath::with_skipped(Steps steps) const {
    for (size_t i = 0; i + 1 < steps_.size(); ++i) {
        if ((steps >> i & 1) != 0 && steps_[i].is_any_depth()) {
            steps |= Steps{2} << i;
        }
    }
    return steps;
}

FieldPath::Steps FieldPath::after(Steps steps, const Row &row, uint64_t index,
                                  uint64_t count) const {
    const size_t last = steps_.size() - 1;
    Steps next = 0;
    for (size_t i = 0; i <= last; ++i) {
        const Step &step = steps_[i];
        if ((steps >> i & 1) == 0) {
            continue;
        }
        if (step.is_any_depth()) {
            next |= is_record(row) ? Steps{1} << i : i == last ? end_of_path() : 0;
        } else if (step.key == key_of(row) && (i == last || is_record(row))) {
            if (step.elements.has_value()) {
                const ElementRange::Bounds bounds = step.elements->in(count);
                const bool is_meant = count == 0 || (index >= bounds.begin && index < bounds.end);
                if (!is_list(row) || !is_meant) {
                    continue;
                }
            }
            next |= Steps{2} << i;
        }
    }
    return with_skipped(next);
}

ElementRange::Bounds FieldPath::meant(Steps steps, const Row &row, uint64_t count) const {
    ElementRange::Bounds all = {count, 0};
    for (size_t i = 0; i < steps_.size(); ++i) {
        const Step &step = steps_[i];
        if ((steps >> i & 1) == 0 || (!step.is_any_depth() && step.key != key_of(row))) {
            continue;
        }
        const ElementRange::Bounds bounds =
            step.elements.has_value() ? step.elements->in(count) : ElementRange::Bounds{0, count};
        all = {std::min(all.begin, bounds.begin), std::max(all.end, bounds.end)};
    }
    return all;
}

bool FieldPath::lead_on(Steps steps, const Record &table) const {
    return std::ranges::any_of(table.rows, [&](const Row &row) {
        const Steps next = after(steps, row);
        return (next & end_of_path()) != 0 ||
               (next != 0 && is_record(row) && lead_on(next, *row.element));
    });
}

bool FieldPath::applies_to(const MessageKind &kind) const {
    if (kind.record == nullptr) {
        return false;
    }
    const Steps first = first_steps(kind);
    return first == end_of_path() || lead_on(first, *kind.record);
}

// --- Walks ---------------------------------------------------------------------------------------

/// Goes along a path through a record.
class FieldPathWalk {
public:
    FieldPathWalk(const FieldPath &path, const FieldPath::Callback &found)
        : path_(path), found_(found) {}

    void go(FieldPath::Steps steps, const Record &table, const void *record) {
        for (const Row &row : table.rows) {
            if (!leads_on(path_.after(steps, row), row)) {
                continue;
            }
            const size_t length = text_.size();
            if (length != 0) {
                text_ += '.';
            }
            text_ += key_of(row);
            if (is_list(row)) {
                go_through_list(steps, row, record);
            } else {
                const void *content = is_record(row) ? elements_of(row, record).first : nullptr;
                arrive(path_.after(steps, row), row, record, std::nullopt, content);
            }
            text_.resize(length);
        }
    }

private:
    using Steps = FieldPath::Steps;

    void go_through_list(Steps steps, const Row &row, const void *record) {
        const Elements elements = elements_of(row, record);
        const auto [begin, end] = path_.meant(steps, row, elements.count);
        const size_t before_index = text_.size();
        for (uint64_t i = begin; i < end; ++i) {
            const Steps next = path_.after(steps, row, i, elements.count);
            if (leads_on(next, row)) {
                text_.append("[").append(std::to_string(i)).append("]");
                arrive(next, row, record, i, elements.at(i));
                text_.resize(before_index);
            }
        }
    }

    void arrive(Steps next, const Row &row, const void *record, std::optional<uint64_t> index,
                const void *content) {
        if ((next & path_.end_of_path()) != 0) {
            found_({text_, &row, record, index, row.element, is_record(row) ? content : nullptr});
        }
        if (const Steps rest = next & ~path_.end_of_path(); rest != 0) {
            go(rest, *row.element, content);
        }
    }

    /// Whether the steps after a row have come to the path's end, or there is something in what
    /// the row holds for them.
    bool leads_on(Steps next, const Row &row) {
        if (next == 0 || (next & path_.end_of_path()) != 0) {
            return next != 0;
        }
        const auto [known, is_new] = known_.try_emplace({row.element, next}, false);
        if (is_new) {
            known->second = path_.lead_on(next, *row.element);
        }
        return known->second;
    }

    const FieldPath &path_;
    const FieldPath::Callback &found_;
    std::string text_;
    std::map<std::pair<const Record *, Steps>, bool> known_;
};

void FieldPath::each(const MessageKind &kind, const void *record, const Callback &found) const {
    if (kind.record == nullptr) {
        return;
    }
    const Steps first = first_steps(kind);
    if (first == end_of_path()) {
        found({kind.block, nullptr, record, std::nullopt, kind.record, record});
        return;
    }
    FieldPathWalk(*this, found).go(first, *kind.record, record);
}

std::vector<FieldPlace> FieldPath::places() const {
    std::vector<FieldPlace> all;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        const Steps first = first_steps(kind);
        if (first == end_of_path()) {
            all.push_back({&kind, kind.block, kind.record, nullptr});
            continue;
        }
        const std::function<void(Steps, const Record &, const std::string &)> add =
            [&](Steps steps, const Record &table, const std::string &path) {
                for (const Row &row : table.rows) {
                    const std::string own = path + "." + std::string(key_of(row));
                    const Steps next = after(steps, row);
                    if ((next & end_of_path()) != 0) {
                        all.push_back({&kind, own, &table, &row});
                    }
                    if ((next & ~end_of_path()) != 0) {
                        add(next & ~end_of_path(), *row.element, own);
                    }
                }
            };
        add(first, *kind.record, kind.block);
    }
    return all;
}

std::optional<FieldPath::Mismatch> FieldPath::mismatch_of(size_t step, const Record &table) const {
    const Row *row = find_row(table, steps_[step].key);
    if (row == nullptr) {
        return Mismatch{Mismatch::Reason::no_such_key, step, &table, nullptr};
    }
    if (steps_[step].elements.has_value() && !is_list(*row)) {
        return Mismatch{Mismatch::Reason::no_list, step, &table, row};
    }
    if (step + 1 < steps_.size() && !is_record(*row)) {
        return Mismatch{Mismatch::Reason::no_record, step, &table, row};
    }
    return std::nullopt;
}

} // namespace kvt_tool
