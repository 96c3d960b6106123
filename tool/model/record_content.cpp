#include "model/record_content.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <string_view>

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

bool same_elements(const Row &row, const void *record_a, const void *record_b) {
    const Elements a = elements_of(row, record_a);
    const Elements b = elements_of(row, record_b);
    if (a.count != b.count) {
        return false;
    }
    if (row.element == nullptr) {
        return a.count == 0 || std::memcmp(a.first, b.first, a.count * a.size) == 0;
    }
    for (uint64_t i = 0; i < a.count; ++i) {
        if (!same_content(*row.element, a.at(i), b.at(i))) {
            return false;
        }
    }
    return true;
}

uint64_t elements_hash(const Row &row, const void *record) {
    const Elements elements = elements_of(row, record);
    uint64_t hash = elements.count;
    for (uint64_t i = 0; i < elements.count; ++i) {
        hash = mix_in(hash, row.element != nullptr ? content_hash(*row.element, elements.at(i))
                                                   : number_at(elements, i));
    }
    return hash;
}

} // namespace

bool same_value(const Row &row, const void *a, const void *b) {
    switch (shape_of(row)) {
    case Shape::number:
        return number_of(row, a) == number_of(row, b);
    case Shape::real:
        return same_reals(row, a, b);
    case Shape::text:
        return text_of(row, a) == text_of(row, b);
    default:
        return same_elements(row, a, b);
    }
}

uint64_t value_hash(const Row &row, const void *record) {
    switch (shape_of(row)) {
    case Shape::number:
        return number_of(row, record);
    case Shape::real:
        return text_hash(plain_value(row, record));
    case Shape::text:
        return text_hash(text_of(row, record));
    default:
        return elements_hash(row, record);
    }
}

bool same_content(const Record &table, const void *a, const void *b) {
    return std::ranges::all_of(table.rows, [&](const Row &row) { return same_value(row, a, b); });
}

uint64_t content_hash(const Record &table, const void *record) {
    uint64_t hash = 0;
    for (const Row &row : table.rows) {
        hash = mix_in(hash, value_hash(row, record));
    }
    return hash;
}

} // namespace kvt_tool
