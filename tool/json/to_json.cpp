#include "json/to_json.h"

#include <charconv>
#include <cmath>
#include <string>

#include "kvt_check/characters.h"
#include "model/hexadecimal.h"
#include "model/value_text.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

Json record_to_json(const Record &table, const void *record, const JsonForm &form);

Json number_to_json(const Row &row, uint64_t value, const JsonForm &form) {
    if (is_signed(row)) {
        return static_cast<int64_t>(value);
    }
    if (form.guids == GuidForm::hexadecimal && is_guid(row)) {
        return guid_text(value);
    }
    // Programs that keep numbers as floats would lose digits beyond 53 bits.
    return bits_of(row) < 64 || form.plain_numbers ? Json(value) : Json(std::to_string(value));
}

Json real_to_json(float value) {
    if (std::isnan(value)) {
        return std::signbit(value) ? "-NaN" : "NaN"; // the text form has both
    }
    if (std::isinf(value)) {
        return value > 0 ? "Infinity" : "-Infinity";
    }
    // The shortest digits that tell the float, not those of the double next to it.
    const std::string digits = exact_real(value);
    double shortest = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), shortest);
    return shortest;
}

Json text_to_json(std::string_view text) {
    if (is_utf8(text)) {
        return text;
    }
    std::string digits;
    for (const char byte : text) {
        digits += hexadecimal(static_cast<unsigned char>(byte), 2);
    }
    return Json{{bytes_key, digits}};
}

Json element_to_json(const Row &row, const Elements &elements, uint64_t index,
                     const JsonForm &form) {
    return row.element != nullptr ? record_to_json(*row.element, elements.at(index), form)
                                  : number_to_json(row, number_at(elements, index), form);
}

Json list_to_json(const Row &row, const Elements &elements, const JsonForm &form) {
    Json list = Json::array();
    list.get_ref<Json::array_t &>().reserve(elements.count);
    for (uint64_t i = 0; i < elements.count; ++i) {
        list.push_back(element_to_json(row, elements, i, form));
    }
    return list;
}

Json value_to_json(const Row &row, const void *record, const JsonForm &form) {
    switch (shape_of(row)) {
    case Shape::number:
        return number_to_json(row, number_of(row, record), form);
    case Shape::real:
        return real_to_json(real_of(row, record));
    case Shape::text:
        return text_to_json(text_of(row, record));
    case Shape::block:
        return record_to_json(*row.element, elements_of(row, record).first, form);
    case Shape::numbers:
    case Shape::records:
        return list_to_json(row, elements_of(row, record), form);
    }
    return nullptr;
}

/// True when a row says something that the others do not.
bool is_told(const Record &table, const Row &row, const void *record) {
    switch (shape_of(row)) {
    case Shape::number: {
        const Row *counted = counted_by(table, row);
        const uint64_t value = number_of(row, record);
        return counted != nullptr ? value != true_count(*counted, record)
                                  : value != 0 || row.has(always);
    }
    case Shape::real:
        return real_of(row, record) != 0 || row.has(always);
    case Shape::text:
        return !text_of(row, record).empty();
    case Shape::block:
        return true;
    case Shape::numbers:
    case Shape::records:
        return elements_of(row, record).count != 0;
    }
    return true;
}

Json record_to_json(const Record &table, const void *record, const JsonForm &form) {
    Json object = Json::object();
    for (const Row &row : table.rows) {
        if (is_told(table, row, record)) {
            object[std::string(key_of(row))] = value_to_json(row, record, form);
        }
    }
    return object;
}

} // namespace

Json to_json(const MessageKind &kind, const void *record, const JsonForm &form) {
    return {{"type", kind.name}, {kind.block, record_to_json(*kind.record, record, form)}};
}

Json field_to_json(const Row &row, const void *record, std::optional<uint64_t> index,
                   const JsonForm &form) {
    return index.has_value() ? element_to_json(row, elements_of(row, record), *index, form)
                             : value_to_json(row, record, form);
}

Json to_json(const FoundField &found, const JsonForm &form) {
    return found.block != nullptr ? record_to_json(*found.block, found.content, form)
                                  : field_to_json(*found.row, found.record, found.index, form);
}

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const kvt_checking::Character character = kvt_checking::first_character(text);
        if (!character.is_valid) {
            return false;
        }
        text.remove_prefix(character.bytes);
    }
    return true;
}

} // namespace kvt_tool
