#include "json/schema.h"

#include <cmath>
#include <vector>

#include "message_kinds.h"
#include "json/to_json.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

Json reference(const std::string &name) {
    return {{"$ref", "#/$defs/" + name}};
}

/// The definitions of values: each in all forms in which it may come.
Json value_definitions() {
    const Json digits = {{"type", "string"}, {"pattern", "^([0-9]{1,20}|0[xX][0-9a-fA-F]{1,16})$"}};
    Json definitions = Json::object();
    for (const unsigned bits : {8U, 16U, 32U, 64U}) {
        const uint64_t greatest = UINT64_MAX >> (64 - bits);
        const Json number = {{"type", "integer"}, {"minimum", 0}, {"maximum", greatest}};
        definitions["u" + std::to_string(bits)] = {{"anyOf", {number, digits}}};
    }
    definitions["i32"] = {{"anyOf",
                           {{{"type", "integer"}, {"minimum", INT32_MIN}, {"maximum", INT32_MAX}},
                            {{"type", "string"}, {"pattern", "^-?[0-9]{1,10}$"}}}}};
    definitions["real"] = {
        {"anyOf",
         {{{"type", "number"}},
          {{"type", "string"},
           {"pattern", "^(-?[0-9]+(\\.[0-9]+)?([eE][+-]?[0-9]+)?|-?NaN|-?Infinity)$"}}}}};
    definitions["text"] = {
        {"description", "a text that is no UTF-8 is an object with its bytes"},
        {"anyOf",
         {{{"type", "string"}},
          {{"type", "object"},
           {"properties", {{bytes_key, {{"type", "string"}, {"pattern", "^([0-9a-fA-F]{2})*$"}}}}},
           {"required", Json::array({bytes_key})},
           {"additionalProperties", false}}}}};
    return definitions;
}

std::string number_name(const Row &row) {
    return is_signed(row) ? "i32" : "u" + std::to_string(bits_of(row));
}

Json list_of(const Row &row, const std::string &element) {
    Json list = {{"type", "array"}, {"items", reference(element)}};
    if (row.kind == RowKind::bytes || row.kind == RowKind::slots) {
        list["maxItems"] = row.capacity;
    }
    return list;
}

Json value_schema(const Record &table, const Row &row) {
    switch (shape_of(row)) {
    case Shape::number: {
        Json number = reference(number_name(row));
        if (const Row *counted = counted_by(table, row)) {
            number["description"] =
                "follows from \"" + std::string(key_of(*counted)) + "\", and is left out then";
        }
        return number;
    }
    case Shape::real:
        return reference("real");
    case Shape::text: {
        Json text = reference("text");
        if (row.kind == RowKind::text) {
            text["maxLength"] = row.capacity - 1;
        }
        return text;
    }
    case Shape::numbers:
        return list_of(row, number_name(row));
    case Shape::block:
        return reference(row.element->name);
    case Shape::records:
        return list_of(row, row.element->name);
    }
    return {};
}

void define_record(const Record &table, Json &definitions) {
    if (definitions.contains(table.name)) {
        return;
    }
    Json properties = Json::object();
    for (const Row &row : table.rows) {
        properties[std::string(key_of(row))] = value_schema(table, row);
    }
    definitions[table.name] = {
        {"type", "object"}, {"properties", properties}, {"additionalProperties", false}};
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            define_record(*row.element, definitions);
        }
    }
}

} // namespace

std::string json_schema() {
    Json definitions = value_definitions();
    Json messages = Json::array();
    for (const MessageKind &kind : message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        define_record(*kind.record, definitions);
        messages.push_back(
            {{"type", "object"},
             {"properties",
              {{"type", {{"const", kind.name}}}, {kind.block, reference(kind.record->name)}}},
             {"required", {"type", kind.block}},
             {"additionalProperties", false}});
    }
    const Json schema = {
        {"$schema", "https://json-schema.org/draft/2020-12/schema"},
        {"title", "A message of the kvt_str codec"},
        {"description", "as \"kvt json --lines\" prints one on each line"},
        {"oneOf", messages},
        {"$defs", definitions},
    };
    return schema.dump(2) + "\n";
}

} // namespace kvt_tool
