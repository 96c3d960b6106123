#include "json/record_from_json.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "engine/element_size.h"
#include "kvt_check/nearest.h"
#include "model/value_text.h"
#include "json/number_from_json.h"
#include "json/text_from_json.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

uint64_t number_from_json(const Row &row, const JsonValue &json, const JsonPath &path) {
    const NumberFromJson<uint64_t> number = whole_from_json(row, json);
    if (!number.problem.empty()) {
        path.fail(json, number.problem);
    }
    return number.value;
}

void fill_real(const Row &row, void *record, const JsonValue &json, const JsonPath &path) {
    const NumberFromJson<float> number = real_from_json(json);
    if (!number.problem.empty()) {
        path.fail(json, number.problem);
    }
    store(member_of(row, record), number.value);
}

void fill_text(const Row &row, void *record, const std::string &text) {
    char *member = member_of(row, record);
    if (row.kind == RowKind::text) {
        text.copy(member, text.size()); // the rest of the member is zero
    } else if (!text.empty()) {
        char *copy = strdup(text.c_str());
        if (copy == nullptr) {
            throw std::bad_alloc();
        }
        store(member, copy);
        store_count(row, record, text.size() + 1);
    }
}

// --- Lists ---------------------------------------------------------------------------------------

/// Room for the elements of a list. The count follows the elements, so that a record that is given
/// up half-way can be released.
char *make_room(const Row &row, void *record, const JsonValue &list, const JsonPath &path) {
    char *member = member_of(row, record);
    const size_t count = list.parts.size();
    if (row.kind == RowKind::bytes || row.kind == RowKind::slots) {
        if (count > row.capacity) {
            path.fail(list, std::to_string(count) + " elements where " +
                                std::to_string(row.capacity) + " fit; remove some");
        }
        return member;
    }
    auto *elements = static_cast<char *>(std::calloc(count, element_size(row)));
    if (elements == nullptr) {
        throw std::bad_alloc();
    }
    store(member, elements);
    return elements;
}

void fill_numbers(const Row &row, void *record, const JsonValue &list, const JsonPath &path) {
    const unsigned width = element_size(row);
    const size_t count = list.parts.size();
    char *numbers = make_room(row, record, list, path);
    for (size_t i = 0; i < count; ++i) {
        const JsonPath place(path, i);
        const uint64_t value = number_from_json(row, list.parts[i], place);
        if (row.kind == RowKind::bytes && value == row.terminator) {
            place.fail(list.parts[i],
                       std::to_string(value) + " ends such a list and cannot be in it; remove it");
        }
        store_number(numbers + i * width, width, value);
    }
    if (row.kind != RowKind::bytes) {
        store_count(row, record, count);
    } else if (count < row.capacity) {
        numbers[count] = static_cast<char>(row.terminator); // so that just these are written
    }
}

void fill_records(const Row &row, void *record, const JsonValue &list, const JsonPath &path) {
    char *elements = make_room(row, record, list, path);
    for (size_t i = 0; i < list.parts.size(); ++i) {
        store_count(row, record, i + 1);
        fill_record(*row.element, elements + i * row.element->size, list.parts[i],
                    JsonPath(path, i));
    }
}

void fill_list(const Row &row, void *record, const JsonValue &json, const JsonPath &path) {
    if (json.kind != JsonKind::list) {
        path.fail(json, shown(json) + " is not a list; brackets belong around it");
    }
    if (json.parts.empty()) {
        return;
    }
    if (row.element != nullptr) {
        fill_records(row, record, json, path);
    } else {
        fill_numbers(row, record, json, path);
    }
}

// --- Records -------------------------------------------------------------------------------------

void fill_row(const Row &row, void *record, const JsonValue &json, const JsonPath &path) {
    switch (shape_of(row)) {
    case Shape::number:
        store_number(member_of(row, record), row.size, number_from_json(row, json, path));
        return;
    case Shape::real:
        fill_real(row, record, json, path);
        return;
    case Shape::text:
        fill_text(row, record, text_from_json(row, json, path));
        return;
    case Shape::block:
        fill_record(*row.element, member_of(row, record), json, path);
        return;
    case Shape::numbers:
    case Shape::records:
        fill_list(row, record, json, path);
        return;
    }
}

/// A count or length follows from what it counts. One that says something else would be lost.
void check_count(const Row &row, const Row &counted, const void *record, const JsonValue &json,
                 const JsonPath &path) {
    const uint64_t said = number_from_json(row, json, path);
    const uint64_t there = true_count(counted, record);
    if (said != there) {
        const bool is_text = counted.kind == RowKind::joined_text;
        path.fail(json, std::to_string(said) + " does not agree with " +
                            quoted_text(key_of(counted)) +
                            (is_text ? ", which takes " : ", which has ") + std::to_string(there) +
                            (is_text      ? " bytes with its end"
                             : there == 1 ? " element"
                                          : " elements") +
                            "; leave it out");
    }
}

[[noreturn]] void fail_unknown(const Record &table, const JsonValue &key, const JsonPath &path) {
    const std::string name = string_of(key);
    kvt_checking::Nearest nearest(name);
    for (const Row &row : table.rows) {
        nearest.consider(key_of(row));
    }
    path.fail(key,
              "there is no field " + shown(key) +
                  (!nearest.word().empty() ? "; did you mean " + quoted_text(nearest.word()) + "?"
                                           : "; \"kvt describe\" lists the fields"));
}

} // namespace

void fill_record(const Record &table, void *record, const JsonValue &json, const JsonPath &path) {
    if (json.kind != JsonKind::object) {
        path.fail(json, shown(json) + " is not an object; braces belong around its fields");
    }
    // Without its terminator, a byte array of zeros would be full.
    for (const Row &row : table.rows) {
        if (row.kind == RowKind::bytes) {
            *member_of(row, record) = static_cast<char>(row.terminator);
        }
    }
    // Lists and texts set their counts, so what is said of these comes last.
    std::vector<std::pair<const Row *, const JsonValue *>> counts;
    for (size_t i = 0; i < json.parts.size(); i += 2) {
        const JsonValue &value = json.parts[i + 1];
        const Row *row = find_row(table, string_of(json.parts[i]));
        if (row == nullptr) {
            fail_unknown(table, json.parts[i], path);
        }
        if (value.kind == JsonKind::null) {
            continue;
        }
        if (counted_by(table, *row) != nullptr) {
            counts.emplace_back(row, &value);
        } else {
            fill_row(*row, record, value, JsonPath(&path, key_of(*row)));
        }
    }
    for (const auto &[row, value] : counts) {
        check_count(*row, *counted_by(table, *row), record, *value, JsonPath(&path, key_of(*row)));
    }
}

} // namespace kvt_tool
