#include "tool/diff_promise.h"

#include <algorithm>
#include <map>
#include <variant>
#include <vector>

#include "diff/diff_records.h"
#include "diff/diff_text.h"
#include "model/field_path.h"
#include "model/record_content.h"
#include "model/write_text.h"

namespace kvt_test {

using namespace kvt_tool;

namespace {

using What = Difference::What;

/// Where a path leads to; several places for a list.
std::vector<FoundField> follow(const std::string &path, const MessageKind &kind,
                               const void *record) {
    std::vector<FoundField> places;
    const auto parsed = FieldPath::parse(path);
    if (const auto *known = std::get_if<FieldPath>(&parsed)) {
        known->each(kind, record, [&](const FoundField &found) { places.push_back(found); });
    }
    return places;
}

/// True when the path of a place leads there and nowhere else.
bool leads_there(const DifferencePlace &place, const MessageKind &kind, const void *record) {
    const std::vector<FoundField> found = follow(place.path, kind, record);
    return found.size() == 1 && found[0].record == place.record && found[0].index == place.index;
}

bool values_differ(const Difference &difference) {
    const Row &row = *difference.row;
    if (difference.a.index.has_value()) {
        return number_at(elements_of(row, difference.a.record), *difference.a.index) !=
               number_at(elements_of(row, difference.b.record), *difference.b.index);
    }
    return !same_value(row, difference.a.record, difference.b.record);
}

/// True when the lists have the same number of elements that both have, and yet differ.
bool orders_differ(const Difference &difference) {
    return difference.a.path.ends_with(key_of(*difference.row)) &&
           difference.b.path.ends_with(key_of(*difference.row)) &&
           !same_value(*difference.row, difference.a.record, difference.b.record);
}

bool is_one(const Difference &difference, const MessageKind &kind, const void *a, const void *b) {
    const bool in_a = leads_there(difference.a, kind, a);
    const bool in_b = leads_there(difference.b, kind, b);
    switch (difference.what) {
    case What::changed:
        return in_a && in_b && values_differ(difference);
    case What::removed:
        return in_a && difference.b == DifferencePlace();
    case What::added:
        return in_b && difference.a == DifferencePlace();
    case What::order:
        return orders_differ(difference);
    }
    return false;
}

/// True when the lists of a message's own record are as long as what is told of them.
bool lengths_are_told(const MessageKind &kind, const void *a, const void *b,
                      const std::vector<Difference> &differences) {
    for (const Row &row : kind.record->rows) {
        if (shape_of(row) != Shape::numbers && shape_of(row) != Shape::records) {
            continue;
        }
        uint64_t count_a = elements_of(row, a).count;
        uint64_t count_b = elements_of(row, b).count;
        for (const Difference &difference : differences) {
            if (difference.row == &row &&
                difference.place().record == (difference.what == What::removed ? a : b)) {
                count_a -= difference.what == What::removed ? 1 : 0;
                count_b -= difference.what == What::added ? 1 : 0;
            }
        }
        if (count_a != count_b) {
            return false;
        }
    }
    return true;
}

/// The places of differences, in an order of their own.
std::vector<std::string> places_of(const std::vector<Difference> &differences, bool exchanged) {
    std::vector<std::string> places;
    for (const Difference &difference : differences) {
        const std::string &a = (exchanged ? difference.b : difference.a).path;
        const std::string &b = (exchanged ? difference.a : difference.b).path;
        places.push_back(a + " -> " + b + (difference.what == What::order ? " order" : ""));
    }
    std::ranges::sort(places);
    return places;
}

std::string text_of(const MessageKind &kind, const void *record) {
    std::string text;
    add_text(kind, record, text);
    return text;
}

} // namespace

std::string broken_diff_promise(const MessageKind &kind, const void *a, const void *b) {
    const Record &table = *kind.record;
    if (!diff_records(table, a, a).empty() || !diff_records(table, b, b).empty()) {
        return "a record differs from itself";
    }
    const std::vector<Difference> differences = diff_records(table, a, b);
    const bool written_alike = text_of(kind, a) == text_of(kind, b);
    if (differences.empty() && !written_alike) {
        return "no differences, though both are not written alike";
    }
    for (const Difference &difference : differences) {
        const std::string text = difference_text(difference);
        if (!is_one(difference, kind, a, b)) {
            return "this is no difference: " + text;
        }
        if (written_alike && shape_of(*difference.row) != Shape::real) {
            return "both are written alike, and yet: " + text;
        }
    }
    if (!lengths_are_told(kind, a, b, differences)) {
        return "elements are not told";
    }
    if (places_of(differences, true) != places_of(diff_records(table, b, a), false)) {
        return "the other way round other things differ";
    }
    return {};
}

} // namespace kvt_test
