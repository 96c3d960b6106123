#include "model/kind_counts.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "kvt/messages/message_type.h"
#include "model/columns.h"
#include "model/fields.h"

namespace kvt_tool {

using namespace kvt_str;

// --- Sizes ---------------------------------------------------------------------------------------

size_t SizeHistogram::bucket_of(uint64_t size) {
    if (size < steps) {
        return static_cast<size_t>(size);
    }
    // The five highest bits: the first one is always set, the other four tell the step.
    const auto shift = static_cast<unsigned>(std::bit_width(size)) - 5;
    return shift * steps + static_cast<size_t>(size >> shift);
}

uint64_t SizeHistogram::largest_in(size_t bucket) {
    if (bucket < steps) {
        return bucket;
    }
    const size_t shift = bucket / steps - 1;
    const uint64_t first = uint64_t{steps + bucket % steps} << shift;
    return first + ((uint64_t{1} << shift) - 1);
}

void SizeHistogram::add(uint64_t size) {
    ++counts_[bucket_of(size)];
    ++count_;
    sum_ += size;
    smallest_ = std::min(smallest_, size);
    largest_ = std::max(largest_, size);
}

void SizeHistogram::merge(const SizeHistogram &other) {
    for (size_t i = 0; i < buckets; ++i) {
        counts_[i] += other.counts_[i];
    }
    count_ += other.count_;
    sum_ += other.sum_;
    smallest_ = std::min(smallest_, other.smallest_);
    largest_ = std::max(largest_, other.largest_);
}

double SizeHistogram::mean() const {
    return count_ != 0 ? static_cast<double>(sum_) / static_cast<double>(count_) : 0;
}

uint64_t SizeHistogram::quantile(unsigned percent) const {
    // So many sizes must not exceed it. Divided before it is multiplied, it cannot overflow.
    const uint64_t wanted = count_ / 100 * percent + (count_ % 100 * percent + 99) / 100;
    uint64_t seen = 0;
    for (size_t i = 0; i < buckets; ++i) {
        seen += counts_[i];
        if (seen >= wanted && seen != 0) {
            return std::clamp(largest_in(i), smallest(), largest());
        }
    }
    return 0;
}

// --- Elements ------------------------------------------------------------------------------------

namespace {

/// The rows of a record after which there are elements, at whatever depth. So records that hold no
/// lists, of which there are many, need not be looked at.
struct ListRows {
    struct ListRow {
        const Row *row;
        bool counts;          ///< is a list itself, and no block
        const ListRows *rows; ///< of its elements; null where these hold no lists
    };

    std::vector<ListRow> rows;
};

class AllListRows {
public:
    const ListRows *of(const Record &table) {
        const auto known = known_.find(&table);
        if (known != known_.end()) {
            return known->second.get();
        }
        auto made = std::make_unique<ListRows>();
        for (const Row &row : table.rows) {
            const Shape shape = shape_of(row);
            const ListRows *within = row.element != nullptr ? of(*row.element) : nullptr;
            const bool counts = shape == Shape::numbers || shape == Shape::records;
            if (counts || within != nullptr) {
                made->rows.push_back({&row, counts, within});
            }
        }
        if (made->rows.empty()) {
            made.reset();
        }
        return (known_[&table] = std::move(made)).get();
    }

private:
    std::unordered_map<const Record *, std::unique_ptr<ListRows>> known_;
};

uint64_t count_elements(const ListRows &lists, const void *record) {
    uint64_t count = 0;
    for (const ListRows::ListRow &list : lists.rows) {
        const Elements elements = elements_of(*list.row, record);
        count += list.counts ? elements.count : 0;
        for (uint64_t i = 0; list.rows != nullptr && i < elements.count; ++i) {
            count += count_elements(*list.rows, elements.at(i));
        }
    }
    return count;
}

} // namespace

uint64_t count_elements(const Record &table, const void *record) {
    thread_local AllListRows all;
    const ListRows *lists = all.of(table);
    return lists != nullptr ? count_elements(*lists, record) : 0;
}

// --- KindCounts ----------------------------------------------------------------------------------

KindCounts::KindCounts() : kinds_(VEMRA_MSG_TYPE_LAST + 1) {}

void KindCounts::add(const MessageKind &kind, const void *record, uint64_t text_bytes) {
    std::unique_ptr<Counts> &counts = kinds_[kind.value];
    if (counts == nullptr) {
        counts = std::make_unique<Counts>();
    }
    counts->sizes.add(text_bytes);
    if (kind.record != nullptr && record != nullptr) {
        counts->elements += count_elements(*kind.record, record);
    }
}

void KindCounts::merge(const KindCounts &other) {
    for (size_t i = 0; i < kinds_.size(); ++i) {
        if (other.kinds_[i] == nullptr) {
            continue;
        }
        if (kinds_[i] == nullptr) {
            kinds_[i] = std::make_unique<Counts>();
        }
        kinds_[i]->sizes.merge(other.kinds_[i]->sizes);
        kinds_[i]->elements += other.kinds_[i]->elements;
    }
}

KindCounts::Counts KindCounts::total() const {
    Counts sum;
    for (const std::unique_ptr<Counts> &counts : kinds_) {
        if (counts != nullptr) {
            sum.sizes.merge(counts->sizes);
            sum.elements += counts->elements;
        }
    }
    return sum;
}

std::string human_size(double bytes) {
    static constexpr const char *units[] = {"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    size_t unit = 0;
    // What is rounded to 1000 has one digit too many, too.
    while (bytes >= (unit == 0 ? 999.5 : 999.95) && unit + 1 < std::size(units)) {
        bytes /= 1024;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, units[unit]);
    return text;
}

namespace {

std::vector<std::string> line_of(std::string name, const SizeHistogram &sizes, uint64_t elements) {
    const auto shown = [&](uint64_t size) {
        return sizes.count() != 0 ? human_size(static_cast<double>(size)) : "-";
    };
    return {std::move(name),
            std::to_string(sizes.count()),
            human_size(static_cast<double>(sizes.sum())),
            std::to_string(elements),
            shown(sizes.smallest()),
            sizes.count() != 0 ? human_size(sizes.mean()) : "-",
            shown(sizes.quantile(50)),
            shown(sizes.quantile(90)),
            shown(sizes.quantile(99)),
            shown(sizes.largest())};
}

nlohmann::ordered_json json_of(const SizeHistogram &sizes, uint64_t elements) {
    nlohmann::ordered_json object = {{"messages", sizes.count()},
                                     {"bytes", sizes.sum()},
                                     {"elements", elements},
                                     {"size", nullptr}};
    if (sizes.count() != 0) {
        object["size"] = {{"smallest", sizes.smallest()}, {"mean", sizes.mean()},
                          {"p50", sizes.quantile(50)},    {"p90", sizes.quantile(90)},
                          {"p99", sizes.quantile(99)},    {"largest", sizes.largest()}};
    }
    return object;
}

} // namespace

std::string KindCounts::table() const {
    std::vector<Columns::Side> sides(10, Columns::Side::right);
    sides.front() = Columns::Side::left;
    Columns lines(std::move(sides));
    lines.add({"KIND", "MESSAGES", "BYTES", "ELEMENTS", "SMALLEST", "MEAN", "50 %", "90 %", "99 %",
               "LARGEST"});
    for (const MessageKind &kind : message_kinds()) {
        if (const Counts *counts = kinds_[kind.value].get()) {
            lines.add(line_of(kind.name, counts->sizes, counts->elements));
        }
    }
    const Counts sum = total();
    lines.add(line_of("total", sum.sizes, sum.elements));
    return lines.text();
}

std::string KindCounts::json() const {
    nlohmann::ordered_json kinds = nlohmann::ordered_json::object();
    for (const MessageKind &kind : message_kinds()) {
        if (const Counts *counts = kinds_[kind.value].get()) {
            kinds[kind.name] = json_of(counts->sizes, counts->elements);
        }
    }
    const Counts sum = total();
    return nlohmann::ordered_json{{"kinds", kinds}, {"total", json_of(sum.sizes, sum.elements)}}
        .dump(2);
}

} // namespace kvt_tool
