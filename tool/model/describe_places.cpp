#include "model/describe_places.h"

#include <algorithm>

#include "kvt_check/nearest.h"
#include "model/columns.h"
#include "model/describe.h"

namespace kvt_tool {

namespace {

std::vector<FieldPlace> places_of_path(const std::string &text) {
    const auto path = FieldPath::parse(text);
    return std::holds_alternative<FieldPath>(path) ? std::get<FieldPath>(path).places()
                                                   : std::vector<FieldPlace>();
}

void consider_keys(kvt_checking::Nearest &nearest, const Record &table) {
    for (const Row &row : table.rows) {
        nearest.consider(key_of(row));
        if (row.element != nullptr) {
            consider_keys(nearest, *row.element);
        }
    }
}

/// What is wrong with a word that is neither a kind nor a key.
std::string unknown_word(std::string_view word) {
    std::vector<std::string> names = kinds_meant_by(word);
    if (names.empty()) {
        kvt_checking::Nearest nearest(word);
        for (const MessageKind &kind : kvt_str::message_kinds()) {
            if (kind.record != nullptr) {
                consider_keys(nearest, *kind.record);
            }
        }
        if (!nearest.word().empty()) {
            names.emplace_back(nearest.word());
        }
    }
    return "there is no kind, block or key '" + std::string(word) + "'" + suggestion_of(names);
}

} // namespace

std::variant<std::vector<FieldPlace>, std::string> places_of_word(std::string_view word) {
    const std::string text(word);
    std::vector<FieldPlace> places = places_of_path("**." + text);
    if (places.empty()) {
        places = places_of_path(text);
    }
    if (!places.empty()) {
        return places;
    }
    if (word.find_first_of(".[*") == std::string_view::npos) {
        return unknown_word(word);
    }
    return std::get<std::string>(FieldPath::parse(text));
}

std::string describe_places(const std::vector<FieldPlace> &places) {
    constexpr Columns::Side left = Columns::Side::left;
    Columns columns({left, left, left, left, left});
    columns.add({"KIND", "PATH", "VALUE", "DEFAULT", "WRITTEN"});
    std::vector<const Record *> records;
    for (const FieldPlace &place : places) {
        const Record *record = place.row != nullptr ? place.row->element : place.table;
        if (place.row != nullptr) {
            columns.add({place.kind->name, place.path, value_of(*place.table, *place.row),
                         default_of(*place.row), written(*place.row)});
        } else {
            columns.add({place.kind->name, place.path, "block " + std::string(place.table->name),
                         "-", "always"});
        }
        if (record != nullptr && std::ranges::find(records, record) == records.end()) {
            records.push_back(record);
        }
    }
    std::string text = columns.text();
    for (const Record *record : records) {
        text += "\nRecord " + std::string(record->name) + ":\n\n" + describe_record(*record);
    }
    return text;
}

} // namespace kvt_tool
