#include "model/record_content.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

#include "engine/member.h"
#include "model/hash.h"
#include "model/value_text.h"

namespace kvt_tool {

namespace {

uint64_t text_hash(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

bool same_reals(const Row &row, const void *a, const void *b) {
    // NaN is like NaN of the same sign, whose text is the same.
    return real_of(row, a) == real_of(row, b) ||
           (std::isnan(real_of(row, a)) && plain_value(row, a) == plain_value(row, b));
}

/// The indexes of the elements that are not left out.
std::vector<uint64_t> indexes_of(const Row &row, const void *record, const FieldSet &except) {
    std::vector<uint64_t> indexes;
    for (uint64_t i = 0; i < elements_of(row, record).count; ++i) {
        if (!except.has(row, record, i)) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

bool same_elements(const Row &row, const void *record_a, const void *record_b,
                   const FieldSet &except) {
    const Elements a = elements_of(row, record_a);
    const Elements b = elements_of(row, record_b);
    const auto same_element = [&](uint64_t i, uint64_t j) {
        return row.element != nullptr ? same_content(*row.element, a.at(i), b.at(j), except)
                                      : number_at(a, i) == number_at(b, j);
    };
    if (!except.empty()) {
        return std::ranges::equal(indexes_of(row, record_a, except),
                                  indexes_of(row, record_b, except), same_element);
    }
    if (a.count != b.count) {
        return false;
    }
    if (row.element == nullptr) {
        return a.count == 0 || std::memcmp(a.first, b.first, a.count * a.size) == 0;
    }
    for (uint64_t i = 0; i < a.count; ++i) {
        if (!same_element(i, i)) {
            return false;
        }
    }
    return true;
}

uint64_t elements_hash(const Row &row, const void *record, const FieldSet &except) {
    const Elements elements = elements_of(row, record);
    uint64_t hash = 0;
    uint64_t count = 0;
    for (uint64_t i = 0; i < elements.count; ++i) {
        if (!except.has(row, record, i)) {
            const uint64_t element = row.element != nullptr
                                         ? content_hash(*row.element, elements.at(i), except)
                                         : number_at(elements, i);
            hash = mix_in(hash, element);
            ++count;
        }
    }
    return mix_in(hash, count);
}

} // namespace

bool is_true_count(const Record &table, const Row &row, const void *record) {
    const Row *counted = counted_by(table, row);
    return counted != nullptr && number_of(row, record) == true_count(*counted, record);
}

bool same_value(const Row &row, const void *a, const void *b, const FieldSet &except) {
    if (except.has(row, a) || except.has(row, b)) {
        return true;
    }
    switch (shape_of(row)) {
    case Shape::number:
        return number_of(row, a) == number_of(row, b);
    case Shape::real:
        return same_reals(row, a, b);
    case Shape::text:
        return text_of(row, a) == text_of(row, b);
    default:
        return same_elements(row, a, b, except);
    }
}

uint64_t value_hash(const Row &row, const void *record, const FieldSet &except) {
    if (except.has(row, record)) {
        return 0;
    }
    switch (shape_of(row)) {
    case Shape::number:
        return number_of(row, record);
    case Shape::real:
        return text_hash(plain_value(row, record));
    case Shape::text:
        return text_hash(text_of(row, record));
    default:
        return elements_hash(row, record, except);
    }
}

bool same_content(const Record &table, const void *a, const void *b, const FieldSet &except) {
    return std::ranges::all_of(table.rows, [&](const Row &row) {
        return same_value(row, a, b, except) ||
               (!except.empty() && is_true_count(table, row, a) && is_true_count(table, row, b));
    });
}

uint64_t content_hash(const Record &table, const void *record, const FieldSet &except) {
    uint64_t hash = 0;
    for (const Row &row : table.rows) {
        const bool follows = !except.empty() && is_true_count(table, row, record);
        hash = mix_in(hash, follows ? 0 : value_hash(row, record, except));
    }
    return hash;
}

} // namespace kvt_tool
