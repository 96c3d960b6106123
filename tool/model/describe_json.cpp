#include "model/describe_json.h"

#include <string>

#include "model/describe.h"

namespace kvt_tool {

namespace {

using Json = nlohmann::ordered_json;

const char *name_of(Shape shape) {
    switch (shape) {
    case Shape::number:
        return "number";
    case Shape::real:
        return "real";
    case Shape::text:
        return "text";
    case Shape::numbers:
        return "numbers";
    case Shape::block:
        return "block";
    case Shape::records:
        break;
    }
    return "blocks";
}

Json fields_of(const Record &table);

/// Adds what is known of a field to an object.
void add_field(Json &object, const Record &table, const Row &row) {
    const Shape shape = shape_of(row);
    object["key"] = key_of(row);
    object["shape"] = name_of(shape);
    if (shape == Shape::number || shape == Shape::numbers) {
        object["bits"] = bits_of(row);
        object["guid"] = is_guid(row);
    }
    if (const Row *counted = counted_by(table, row)) {
        object["counts"] = key_of(*counted);
    }
    object["value"] = value_of(table, row);
    object["default"] = default_of(row);
    object["written"] = written(row);
    if (row.element != nullptr) {
        object["record"] = row.element->name;
        object["fields"] = fields_of(*row.element);
    }
}

Json fields_of(const Record &table) {
    Json fields = Json::array();
    for (const Row &row : table.rows) {
        Json field = Json::object();
        add_field(field, table, row);
        fields.push_back(std::move(field));
    }
    return fields;
}

} // namespace

Json describe_as_json(const MessageKind &kind, bool with_fields) {
    Json object = {{"value", kind.value},
                   {"kind", kind.name},
                   {"block", nullptr},
                   {"record", nullptr},
                   {"purpose", purpose_of(kind)}};
    if (kind.record != nullptr) {
        object["block"] = kind.block;
        object["record"] = kind.record->name;
        if (with_fields) {
            object["fields"] = fields_of(*kind.record);
        }
    }
    return object;
}

Json describe_as_json(const FieldPlace &place) {
    Json object = {{"kind", place.kind->name}, {"path", place.path}};
    if (place.row != nullptr) {
        add_field(object, *place.table, *place.row);
    } else {
        object["record"] = place.table->name;
        object["fields"] = fields_of(*place.table);
    }
    return object;
}

} // namespace kvt_tool
