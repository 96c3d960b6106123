#include "tool/json_promise.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "kvt/kvt_check.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "model/owned_message.h"
#include "model/write_text.h"
#include "support/random_records.h"
#include "json/from_json.h"
#include "json/parse_json.h"

namespace kvt_test {

using namespace kvt_tool;

namespace {

size_t count_findings(const std::string &text) {
    return kvt_check(text.data(), text.size(), nullptr, nullptr);
}

std::string text_of(const OwnedMessage &message) {
    std::string text;
    add_text(message.kind(), message.record(), text);
    return text;
}

std::string broken_by_problem(const std::string &json, const JsonProblem &problem) {
    if (problem.at < json.data() || problem.at > json.data() + json.size()) {
        return "a refusal names a place outside of the text";
    }
    const bool can_be_printed = std::ranges::all_of(
        problem.what, [](char c) { return static_cast<unsigned char>(c) >= ' ' && c != '\x7F'; });
    return !problem.what.empty() && can_be_printed ? "" : "a refusal cannot be printed";
}

/// True when a number is too large for the library, which refuses it.
bool has_huge_number(const JsonValue &value) {
    return (value.kind == JsonKind::number &&
            std::abs(std::strtod(std::string(value.source).c_str(), nullptr)) > 1e300) ||
           std::ranges::any_of(value.parts, has_huge_number);
}

bool is_same(const JsonValue &value, const Json &expected) {
    switch (value.kind) {
    case JsonKind::null:
        return expected.is_null();
    case JsonKind::boolean:
        return expected.is_boolean() && expected.dump() == value.source;
    case JsonKind::number:
        return expected.is_number();
    case JsonKind::string:
        return expected.is_string() && expected.get<std::string>() == string_of(value);
    case JsonKind::list:
        return expected.is_array() && std::ranges::equal(value.parts, expected, is_same);
    case JsonKind::object:
        break;
    }
    if (!expected.is_object() || expected.size() * 2 != value.parts.size()) {
        return false;
    }
    size_t i = 0;
    return std::ranges::all_of(expected.items(), [&](const auto &member) {
        const JsonValue &key = value.parts[i++];
        return string_of(key) == member.key() && is_same(value.parts[i++], member.value());
    });
}

/// The library ends a text at a NUL, and passes over a byte order mark.
bool is_to_be_compared(const std::string &json) {
    return json.find('\0') == std::string::npos && !json.starts_with('\xEF');
}

std::string broken_by_reading(const OwnedMessage &made, const std::string &text) {
    void *record = nullptr;
    if (kvt_msg_from_str(0, nullptr, text.c_str(), &record) != 0) {
        return "the text is not read: " + text;
    }
    const OwnedMessage read(made.kind(), record);
    const std::string difference =
        first_difference(*made.kind().record, made.record(), read.record());
    if (!difference.empty()) {
        return "the text is read with another " + difference + ": " + text;
    }
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &texts, &kinds,
                             &count) != 0) {
        return "the text is not read as messages: " + text;
    }
    const bool is_one = count == 1 && kinds[0] == made.kind().value;
    std::for_each_n(texts, count, [](char *one) { std::free(one); });
    std::free(texts);
    std::free(kinds);
    return is_one ? "" : "the text is not read as one message: " + text;
}

} // namespace

std::string broken_by_from_json(const std::string &json) {
    const bool is_json = Json::accept(json);
    std::optional<JsonValue> value;
    try {
        value = parse_json(json);
    } catch (const JsonProblem &problem) {
        const bool may_be_json = problem.what.find("twice") != std::string::npos ||
                                 problem.what.find("nested") != std::string::npos;
        if (is_json && is_to_be_compared(json) && !may_be_json) {
            return "JSON is refused: " + problem.what;
        }
        return broken_by_problem(json, problem);
    }
    if (is_to_be_compared(json) && !has_huge_number(*value)) {
        if (!is_json) {
            return "what is no JSON is taken";
        }
        if (!is_same(*value, Json::parse(json))) {
            return "a value is taken as another";
        }
    }
    try {
        const OwnedMessage made = from_json(*value);
        const std::string text = text_of(made);
        if (count_findings(text) != 0) {
            return "the text has findings: " + text;
        }
        const std::string broken = broken_by_reading(made, text);
        return broken.empty() ? broken_there_and_back(made.kind(), made.record(), {}) : broken;
    } catch (const JsonProblem &problem) {
        return broken_by_problem(json, problem);
    }
}

std::string broken_there_and_back(const MessageKind &kind, const void *record,
                                  const JsonForm &form) {
    std::string text;
    add_text(kind, record, text);
    const std::string json = to_json(kind, record, form).dump();
    try {
        const OwnedMessage made = from_json(parse_json(json));
        return text_of(made) == text ? "" : "a message comes back as another: " + json;
    } catch (const JsonProblem &problem) {
        if (count_findings(text) != 0) {
            return "";
        }
        // Without a finding, only digits of floats are lost.
        void *read = nullptr;
        kvt_msg_from_str(0, nullptr, text.c_str(), &read);
        const OwnedMessage owner(kind, read);
        return !first_difference(*kind.record, record, read).empty()
                   ? ""
                   : "a message is refused without a cause: " + problem.what + ": " + json;
    }
}

} // namespace kvt_test
