#include "json/from_json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <set>
#include <utility>
#include <vector>

#include "engine/element_size.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// Where in a message a value stands, such as "job_data.conns[3].tree_id".
class Path {
public:
    explicit Path(std::string text) : text_(std::move(text)) {}

    Path field(std::string_view key) const { return Path(text_ + "." + std::string(key)); }

    Path element(size_t index) const { return Path(text_ + "[" + std::to_string(index) + "]"); }

    [[noreturn]] void fail(const std::string &what) const {
        throw JsonProblem{0, text_ + ": " + what};
    }

private:
    std::string text_;
};

void fill_record(const Record &table, void *record, const Json &json, const Path &path);

/// A value as it is shown in what is said of it.
std::string excerpt(const Json &json) {
    constexpr size_t longest = 40;
    if (json.is_array() || json.is_object()) {
        return json.is_array() ? "a list" : "an object";
    }
    if (json.is_string() && json.get_ref<const std::string &>().size() > longest) {
        return "a string of " + std::to_string(json.get_ref<const std::string &>().size()) +
               " bytes";
    }
    return json.dump();
}

/// A key as it is shown: it may hold anything.
std::string shown_key(const std::string &key) {
    return excerpt(Json(key));
}

// --- Numbers -------------------------------------------------------------------------------------

/// A number that is written in a string, in decimal or as 0x and hexadecimal digits.
bool parse_number(std::string_view digits, uint64_t &value) {
    const bool is_hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    const char *begin = digits.data() + (is_hexadecimal ? 2 : 0);
    const char *end = digits.data() + digits.size();
    const auto [after, error] = std::from_chars(begin, end, value, is_hexadecimal ? 16 : 10);
    return error == std::errc() && after == end;
}

uint64_t signed_from_json(const Json &json, const Path &path) {
    int64_t value = 0;
    if (json.is_number_unsigned()) {
        value = static_cast<int64_t>(std::min<uint64_t>(json.get<uint64_t>(), INT64_MAX));
    } else if (json.is_number_integer()) {
        value = json.get<int64_t>();
    } else if (json.is_string()) {
        const auto &digits = json.get_ref<const std::string &>();
        const char *end = digits.data() + digits.size();
        const auto [after, error] = std::from_chars(digits.data(), end, value);
        if (error != std::errc() || after != end) {
            path.fail(excerpt(json) + " is not a whole number");
        }
    } else {
        path.fail(excerpt(json) + " is not a whole number");
    }
    if (value < INT32_MIN || value > INT32_MAX) {
        path.fail(excerpt(json) + " does not fit into 32 bits with a sign");
    }
    return static_cast<uint64_t>(value);
}

uint64_t number_from_json(const Row &row, const Json &json, const Path &path) {
    if (is_signed(row)) {
        return signed_from_json(json, path);
    }
    constexpr double exact_below = 1ULL << 53; // a float with more has lost digits already
    uint64_t value = 0;
    if (json.is_number_unsigned() || json == 0) {
        value = json.get<uint64_t>();
    } else if (json.is_number_float() && json >= 0.0 && json < exact_below &&
               json.get<double>() == std::floor(json.get<double>())) {
        value = static_cast<uint64_t>(json.get<double>());
    } else if (json.is_number() && json < 0) {
        path.fail(excerpt(json) + " is negative");
    } else if (!json.is_string() || !parse_number(json.get_ref<const std::string &>(), value)) {
        path.fail(excerpt(json) + " is not a whole number of at most 64 bits");
    }
    const unsigned bits = bits_of(row);
    if (bits < 64 && value >> bits != 0) {
        path.fail(excerpt(json) + " does not fit into " + std::to_string(bits) + " bits");
    }
    return value;
}

float real_from_json(const Json &json, const Path &path) {
    if (json.is_number()) {
        const double value = json.get<double>();
        // The shortest digits of the greatest float are a little more than it.
        constexpr double rounded_to_infinity = 0x1.ffffffp127;
        constexpr double rounded_to_zero = 0x1p-150;
        const double size = std::fabs(value);
        if (size == 0 || (size > rounded_to_zero && size < rounded_to_infinity)) {
            return static_cast<float>(value);
        }
        path.fail(excerpt(json) + " does not fit into 32 bits");
    }
    if (json == "NaN" || json == "-NaN") {
        return std::copysign(std::numeric_limits<float>::quiet_NaN(), json == "NaN" ? 1.0F : -1.0F);
    }
    if (json == "Infinity" || json == "-Infinity") {
        const float infinity = std::numeric_limits<float>::infinity();
        return json == "Infinity" ? infinity : -infinity;
    }
    path.fail(excerpt(json) + " is not a number");
}

// --- Texts ---------------------------------------------------------------------------------------

std::string bytes_from_json(const Json &json, const Path &path) {
    const auto &digits = json.get_ref<const std::string &>();
    std::string bytes;
    for (size_t i = 0; i < digits.size(); i += 2) {
        unsigned value = 0;
        const char *begin = digits.data() + i;
        const char *end = begin + std::min<size_t>(2, digits.size() - i);
        if (std::from_chars(begin, end, value, 16).ptr != begin + 2) {
            path.fail(excerpt(json) + " are not pairs of hexadecimal digits");
        }
        bytes += static_cast<char>(value);
    }
    return bytes;
}

std::string text_from_json(const Json &json, const Path &path) {
    std::string text;
    if (json.is_string()) {
        text = json.get<std::string>();
    } else if (json.is_object() && json.size() == 1 && json.contains(bytes_key) &&
               json[bytes_key].is_string()) {
        text = bytes_from_json(json[bytes_key], path);
    } else {
        path.fail(excerpt(json) + " is not a text");
    }
    if (text.find('\0') != std::string::npos) {
        path.fail("a text cannot hold a NUL");
    }
    return text;
}

void fill_text(const Row &row, void *record, const std::string &text, const Path &path) {
    char *member = member_of(row, record);
    if (row.kind == RowKind::text) {
        if (text.size() >= row.capacity) {
            path.fail("a text of " + std::to_string(text.size()) + " bytes where " +
                      std::to_string(row.capacity - 1) + " fit");
        }
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
char *make_room(const Row &row, void *record, size_t count, const Path &path) {
    char *member = member_of(row, record);
    if (row.kind == RowKind::bytes || row.kind == RowKind::slots) {
        if (count > row.capacity) {
            path.fail(std::to_string(count) + " elements where " + std::to_string(row.capacity) +
                      " fit");
        }
        return member;
    }
    const size_t size = element_size(row);
    auto *elements = static_cast<char *>(std::calloc(count, size));
    if (elements == nullptr) {
        throw std::bad_alloc();
    }
    store(member, elements);
    return elements;
}

void fill_numbers(const Row &row, void *record, const Json &list, const Path &path) {
    const unsigned width = element_size(row);
    char *numbers = make_room(row, record, list.size(), path);
    for (size_t i = 0; i < list.size(); ++i) {
        const uint64_t value = number_from_json(row, list[i], path.element(i));
        if (row.kind == RowKind::bytes && value == row.terminator) {
            path.element(i).fail(std::to_string(value) + " ends such a list, and cannot be in it");
        }
        store_number(numbers + i * width, width, value);
    }
    if (row.kind != RowKind::bytes) {
        store_count(row, record, list.size());
    } else if (list.size() < row.capacity) {
        numbers[list.size()] = static_cast<char>(row.terminator);
    }
}

void fill_records(const Row &row, void *record, const Json &list, const Path &path) {
    char *elements = make_room(row, record, list.size(), path);
    for (size_t i = 0; i < list.size(); ++i) {
        store_count(row, record, i + 1);
        fill_record(*row.element, elements + i * row.element->size, list[i], path.element(i));
    }
}

// --- Records -------------------------------------------------------------------------------------

void fill_row(const Row &row, void *record, const Json &json, const Path &path) {
    switch (shape_of(row)) {
    case Shape::number:
        store_number(member_of(row, record), row.size, number_from_json(row, json, path));
        return;
    case Shape::real:
        store(member_of(row, record), real_from_json(json, path));
        return;
    case Shape::text:
        fill_text(row, record, text_from_json(json, path), path);
        return;
    case Shape::block:
        fill_record(*row.element, member_of(row, record), json, path);
        return;
    case Shape::numbers:
    case Shape::records:
        if (!json.is_array()) {
            path.fail(excerpt(json) + " is not a list");
        }
        if (!json.empty() && row.element != nullptr) {
            fill_records(row, record, json, path);
        } else if (!json.empty()) {
            fill_numbers(row, record, json, path);
        }
        return;
    }
}

/// A count that stands in the JSON. Nobody may trust one that promises more elements than there
/// are.
void fill_count(const Row &row, const Row &counted, void *record, const Json &json,
                const Path &path) {
    const uint64_t count = number_from_json(row, json, path);
    if (counted.counts_elements() && count != true_count(counted, record)) {
        path.fail(std::to_string(count) + " elements are said, but there are " +
                  std::to_string(true_count(counted, record)));
    }
    store_number(member_of(row, record), row.size, count);
}

void fill_record(const Record &table, void *record, const Json &json, const Path &path) {
    if (!json.is_object()) {
        path.fail(excerpt(json) + " is not an object");
    }
    // Without its terminator, a byte array of zeros would be full.
    for (const Row &row : table.rows) {
        if (row.kind == RowKind::bytes) {
            *member_of(row, record) = static_cast<char>(row.terminator);
        }
    }
    // Lists and texts set their counts, so what is said of these comes last.
    std::vector<std::pair<const Row *, const Json *>> counts;
    for (const auto &[key, value] : json.items()) {
        const Row *row = find_row(table, key);
        if (row == nullptr) {
            path.fail("there is no field " + shown_key(key));
        }
        if (value.is_null()) {
            continue;
        }
        if (counted_by(table, *row) != nullptr) {
            counts.emplace_back(row, &value);
        } else {
            fill_row(*row, record, value, path.field(key));
        }
    }
    for (const auto &[row, value] : counts) {
        fill_count(*row, *counted_by(table, *row), record, *value, path.field(key_of(*row)));
    }
}

const MessageKind &kind_from_json(const Json &message) {
    if (!message.is_object() || !message.contains("type") || !message["type"].is_string()) {
        throw JsonProblem{0, "not an object with a \"type\": " + excerpt(message)};
    }
    const auto &name = message["type"].get_ref<const std::string &>();
    for (const MessageKind &kind : message_kinds()) {
        if (kind.record != nullptr && name == kind.name) {
            return kind;
        }
    }
    throw JsonProblem{0, excerpt(message["type"]) +
                             " is not a kind of message; \"kvt describe\" lists them"};
}

} // namespace

namespace {

/// Builds a value from what the parser finds. The library's own builder looks through all elements
/// of a list after each of them, and through all keys of an object before each.
class Builder : public nlohmann::json_sax<Json> {
public:
    explicit Builder(std::string_view text) : text_(text) {}

    Json take() { return std::move(value_); }

    bool null() override { return add(nullptr); }

    bool boolean(bool value) override { return add(value); }

    bool number_integer(int64_t value) override { return add(value); }

    bool number_unsigned(uint64_t value) override { return add(value); }

    bool number_float(double value, const std::string &) override { return add(value); }

    bool string(std::string &value) override { return add(std::move(value)); }

    bool binary(Json::binary_t &) override { return false; }

    bool start_object(size_t) override { return open(Json::object()); }

    bool start_array(size_t) override { return open(Json::array()); }

    bool end_object() override { return close(); }

    bool end_array() override { return close(); }

    bool key(std::string &key) override {
        if (!open_.back().keys.insert(key).second) {
            throw JsonProblem{0, "an object has the key " + shown_key(key) + " twice"};
        }
        key_ = std::move(key);
        return true;
    }

    bool parse_error(size_t position, const std::string &,
                     const nlohmann::detail::exception &error) override {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: what is wrong"
        const std::string_view what = error.what();
        const size_t colon = what.find(": ");
        const size_t end = std::min(position == 0 ? 0 : position - 1, text_.size());
        const auto lines =
            std::count(text_.begin(), text_.begin() + static_cast<ptrdiff_t>(end), '\n');
        throw JsonProblem{
            static_cast<size_t>(lines) + 1,
            std::string(what.substr(colon == std::string_view::npos ? 0 : colon + 2))};
    }

private:
    /// More than any record has by far; what is deeper is no message, and would only fill the
    /// stack.
    static constexpr size_t deepest = 64;

    struct Open {
        Json *value;
        std::set<std::string> keys; ///< of an object, so far
    };

    Json *place(Json &&value) {
        if (open_.empty()) {
            value_ = std::move(value);
            return &value_;
        }
        if (open_.back().value->is_array()) {
            auto &list = open_.back().value->get_ref<Json::array_t &>();
            return &list.emplace_back(std::move(value));
        }
        auto &members = static_cast<Json::object_t::Container &>(
            open_.back().value->get_ref<Json::object_t &>());
        return &members.emplace_back(std::move(key_), std::move(value)).second;
    }

    bool add(Json value) {
        place(std::move(value));
        return true;
    }

    bool open(Json &&value) {
        if (open_.size() == deepest) {
            throw JsonProblem{0, "lists and objects are nested more than " +
                                     std::to_string(deepest) + " deep"};
        }
        open_.push_back({place(std::move(value)), {}});
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    std::string_view text_;
    Json value_;
    std::vector<Open> open_; ///< the lists and objects around
    std::string key_;
};

} // namespace

Json parse_json(std::string_view text) {
    Builder builder(text);
    Json::sax_parse(text.begin(), text.end(), &builder);
    return builder.take();
}

OwnedMessage from_json(const Json &message) {
    const MessageKind &kind = kind_from_json(message);
    void *record = std::calloc(1, kind.record->size);
    if (record == nullptr) {
        throw std::bad_alloc();
    }
    OwnedMessage made(kind, record);
    for (const auto &[key, value] : message.items()) {
        if (key == kind.block) {
            fill_record(*kind.record, made.record(), value, Path(key));
        } else if (key != "type") {
            throw JsonProblem{0, "there is no " + shown_key(key) + " in a message of the kind " +
                                     kind.name + ", only \"" + kind.block + "\""};
        }
    }
    return made;
}

} // namespace kvt_tool
