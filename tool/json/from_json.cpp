#include "json/from_json.h"

#include <cstdlib>
#include <new>
#include <vector>

#include "kvt/kvt_check.h"
#include "kvt_check/nearest.h"
#include "model/value_text.h"
#include "model/write_text.h"
#include "json/json_path.h"
#include "json/parse_json.h"
#include "json/record_from_json.h"

namespace kvt_tool {

namespace {

/// Messages of these kinds have records.
std::vector<std::string_view> kind_names() {
    std::vector<std::string_view> names;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            names.emplace_back(kind.name);
        }
    }
    return names;
}

const JsonValue &type_of(const JsonValue &message) {
    if (message.kind != JsonKind::object) {
        throw JsonProblem{message.source.data(), shown(message) +
                                                     " is not a message: an object with a "
                                                     "\"type\" and the block of its kind"};
    }
    for (size_t i = 0; i < message.parts.size(); i += 2) {
        if (string_of(message.parts[i]) == "type") {
            return message.parts[i + 1];
        }
    }
    throw JsonProblem{message.source.data(),
                      "this object has no \"type\", which tells the kind of a message"};
}

const MessageKind &kind_from_json(const JsonValue &message) {
    const JsonValue &type = type_of(message);
    const std::string name = type.kind == JsonKind::string ? string_of(type) : "";
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr && name == kind.name) {
            return kind;
        }
    }
    kvt_checking::Nearest nearest(name);
    for (const std::string_view known : kind_names()) {
        nearest.consider(known);
    }
    JsonPath(nullptr, "type")
        .fail(type,
              shown(type) + " is not a kind of message; " +
                  (!nearest.word().empty() ? "did you mean " + quoted_text(nearest.word()) + "?"
                                           : "\"kvt describe\" lists them"));
}

} // namespace

OwnedMessage from_json(const JsonValue &message) {
    const MessageKind &kind = kind_from_json(message);
    void *record = std::calloc(1, kind.record->size);
    if (record == nullptr) {
        throw std::bad_alloc();
    }
    OwnedMessage made(kind, record);
    for (size_t i = 0; i < message.parts.size(); i += 2) {
        const JsonValue &key = message.parts[i];
        const std::string name = string_of(key);
        if (name == kind.block) {
            fill_record(*kind.record, made.record(), message.parts[i + 1],
                        JsonPath(nullptr, kind.block));
        } else if (name != "type") {
            throw JsonProblem{key.source.data(),
                              "a message of the kind " + std::string(kind.name) + " has no " +
                                  shown(key) + ", only \"type\" and " + quoted_text(kind.block)};
        }
    }
    return made;
}

void refuse_findings(std::string_view text, const char *at) {
    std::string found;
    const auto add = [](const kvt_finding *finding, void *user) {
        *static_cast<std::string *>(user) = std::string(finding->path) + ": " + finding->message;
        return 1;
    };
    if (kvt_check(text.data(), text.size(), add, &found) != 0) {
        throw JsonProblem{at, "the text of this message would not be read as it stands: " + found};
    }
}

std::string text_of_json(std::string_view json) {
    const JsonValue message = parse_json(json);
    const OwnedMessage made = from_json(message);
    std::string text;
    if (!add_text(made.kind(), made.record(), text)) {
        throw JsonProblem{message.source.data(), "the text of this message takes 4 GiB or more"};
    }
    refuse_findings(text, message.source.data());
    return text;
}

} // namespace kvt_tool
