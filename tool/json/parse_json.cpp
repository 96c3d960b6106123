#include "json/parse_json.h"

#include <algorithm>
#include <utility>

#include "model/value_text.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

bool is_hexadecimal_digit(char character) {
    return is_digit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// True for what words and numbers consist of, also those that are none.
bool is_word_character(char character) {
    return is_digit(character) || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || character == '_' || character == '.' ||
           character == '+' || character == '-';
}

std::string in_quotes(std::string_view word) {
    constexpr size_t longest = 40;
    return quoted_text(word.substr(0, longest)) + (word.size() > longest ? "..." : "");
}

/// The first key of an object that has been there before; null when there is none.
const JsonValue *repeated_key(const std::vector<JsonValue> &members) {
    std::vector<std::pair<std::string, const JsonValue *>> keys;
    for (size_t i = 0; i < members.size(); i += 2) {
        keys.emplace_back(string_of(members[i]), &members[i]);
    }
    std::ranges::sort(keys);
    const JsonValue *first = nullptr;
    for (size_t i = 1; i < keys.size(); ++i) {
        if (keys[i].first == keys[i - 1].first && (first == nullptr || keys[i].second < first)) {
            first = keys[i].second;
        }
    }
    return first;
}

class Parser {
public:
    explicit Parser(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    JsonValue parse() {
        JsonValue value = take_value();
        skip_blanks();
        if (at_ != end_) {
            fail(at_, "something stands after the value");
        }
        return value;
    }

private:
    [[noreturn]] static void fail(const char *at, std::string what) {
        throw JsonProblem{at, std::move(what)};
    }

    /// The text ends where a value or a part of one belongs.
    [[noreturn]] void fail_at_end() const {
        if (open_.empty()) {
            fail(at_, "a value is missing");
        }
        fail(open_.back(), *open_.back() == '[' ? "this list is not closed: \"]\" is missing"
                                                : "this object is not closed: \"}\" is missing");
    }

    bool next_is(char character) const { return at_ != end_ && *at_ == character; }

    void skip_blanks() {
        while (at_ != end_ && is_json_blank(*at_)) {
            ++at_;
        }
    }

    /// Skips the blanks before something that belongs there.
    void go_to_next() {
        skip_blanks();
        if (at_ == end_) {
            fail_at_end();
        }
    }

    JsonValue value_from(const char *first, JsonKind kind) const {
        return {kind, {first, static_cast<size_t>(at_ - first)}, {}};
    }

    JsonValue take_value();
    JsonValue take_word();
    JsonValue take_number();
    void take_digits(const char *first, const char *where);
    JsonValue take_string();
    void take_escape(const char *first);
    void take_code_unit(const char *escape, uint32_t &unit);
    void take_character(const char *first);
    JsonValue take_list();
    JsonValue take_object();
    void take_member(std::vector<JsonValue> &members);
    bool enter();
    bool goes_on();
    bool leave();

    const char *at_;
    const char *end_;
    std::vector<const char *> open_; ///< where the lists and objects around begin
};

// --- Words and numbers ---------------------------------------------------------------------------

JsonValue Parser::take_word() {
    const char *first = at_;
    while (at_ != end_ && is_word_character(*at_)) {
        ++at_;
    }
    const std::string_view word(first, static_cast<size_t>(at_ - first));
    if (word == "null") {
        return value_from(first, JsonKind::null);
    }
    if (word == "true" || word == "false") {
        return value_from(first, JsonKind::boolean);
    }
    if (word.empty()) {
        const std::string character = quoted_text({first, 1});
        fail(first, character + " begins no value" +
                        (*first == '\''                   ? "; a string stands in double quotes"
                         : *first == '/' || *first == '#' ? "; JSON has no comments"
                                                          : ""));
    }
    fail(first, in_quotes(word) + " is no value of JSON; a word or another form of a number stands "
                                  "in double quotes");
}

/// Takes the digits of a number's part, of which there is one at least.
void Parser::take_digits(const char *first, const char *where) {
    if (at_ == end_ || !is_digit(*at_)) {
        fail(first, "this number lacks a digit " + std::string(where));
    }
    while (at_ != end_ && is_digit(*at_)) {
        ++at_;
    }
}

JsonValue Parser::take_number() {
    const char *first = at_;
    if (next_is('-')) {
        ++at_;
    }
    if (next_is('0')) {
        ++at_;
        if (at_ != end_ && is_digit(*at_)) {
            fail(first, "a number of JSON does not begin with 0; leave the 0 out");
        }
    } else {
        take_digits(first, "after its minus");
    }
    if (next_is('.')) {
        ++at_;
        take_digits(first, "after its point");
    }
    if (next_is('e') || next_is('E')) {
        ++at_;
        if (next_is('+') || next_is('-')) {
            ++at_;
        }
        take_digits(first, "after its \"e\"");
    }
    if (at_ != end_ && is_word_character(*at_)) {
        at_ = first;
        return take_word(); // which it is not, as that says
    }
    return value_from(first, JsonKind::number);
}

// --- Strings -------------------------------------------------------------------------------------

/// Takes the four digits of an escape.
void Parser::take_code_unit(const char *escape, uint32_t &unit) {
    unit = 0;
    for (int i = 0; i < 4; ++i, ++at_) {
        if (at_ == end_ || !is_hexadecimal_digit(*at_)) {
            fail(escape, "\\u wants four hexadecimal digits");
        }
        const uint32_t digit = static_cast<unsigned char>(*at_);
        unit = unit << 4 | (is_digit(*at_) ? digit - '0' : ((digit | 0x20) - 'a') + 10);
    }
}

void Parser::take_escape(const char *first) {
    const char *escape = at_++;
    if (at_ == end_) {
        fail(first, "this string is not closed: its second quote is missing");
    }
    const char letter = *at_++;
    if (letter != 'u') {
        if (std::string_view("\"\\/bfnrt").find(letter) == std::string_view::npos) {
            fail(escape, "no such escape; a backslash is written \\\\");
        }
        return;
    }
    uint32_t unit;
    take_code_unit(escape, unit);
    bool is_whole = unit < 0xD800 || unit > 0xDFFF;
    if (unit >= 0xD800 && unit < 0xDC00 && end_ - at_ >= 2 && at_[0] == '\\' && at_[1] == 'u') {
        at_ += 2;
        take_code_unit(escape, unit);
        is_whole = unit >= 0xDC00 && unit <= 0xDFFF;
    }
    if (!is_whole) {
        fail(escape, "half of a character: two \\u of a pair, from \\ud800 to \\udbff and from "
                     "\\udc00 to \\udfff, stand together");
    }
}

/// Takes a character that stands for itself.
void Parser::take_character(const char *first) {
    const auto byte = static_cast<unsigned char>(*at_);
    if (byte == '\n' || byte == '\r') {
        fail(first, "this string is not closed on its line; a newline within it is written \\n");
    }
    if (byte < 0x20) {
        fail(at_, "a control character; it is written \\u and four hexadecimal digits");
    }
    const size_t length = byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    const auto left = static_cast<size_t>(end_ - at_);
    if (byte >= 0x80 && (left < length || !is_utf8({at_, length}))) {
        fail(at_, "no UTF-8; the bytes of a text that is none are written {\"hex\": \"...\"}");
    }
    at_ += length;
}

JsonValue Parser::take_string() {
    const char *first = at_++;
    while (!next_is('"')) {
        if (at_ == end_) {
            fail(first, "this string is not closed: its second quote is missing");
        }
        if (*at_ == '\\') {
            take_escape(first);
        } else {
            take_character(first);
        }
    }
    ++at_;
    return value_from(first, JsonKind::string);
}

// --- Lists and objects ---------------------------------------------------------------------------

/// Enters a list or object. False when it is empty, and left again.
bool Parser::enter() {
    if (open_.size() == deepest_json) {
        fail(at_, "lists and objects are nested more than " + std::to_string(deepest_json) +
                      " deep: no message is");
    }
    open_.push_back(at_++);
    go_to_next();
    return !leave();
}

/// Leaves the innermost list or object, if that ends here.
bool Parser::leave() {
    const bool is_end = *at_ == (*open_.back() == '[' ? ']' : '}');
    if (is_end) {
        ++at_;
        open_.pop_back();
    }
    return is_end;
}

/// Goes on after a part of a list or object to the next part. False when it ends there.
bool Parser::goes_on() {
    go_to_next();
    const std::string closing = *open_.back() == '[' ? "\"]\"" : "\"}\"";
    if (leave()) {
        return false;
    }
    if (*at_ != ',') {
        fail(at_, "a comma or " + closing + " is missing before this");
    }
    const char *comma = at_++;
    go_to_next();
    if (leave()) {
        fail(comma, "nothing but " + closing + " follows this comma; remove it");
    }
    return true;
}

JsonValue Parser::take_list() {
    const char *first = at_;
    std::vector<JsonValue> elements;
    if (enter()) {
        do {
            elements.push_back(take_value());
        } while (goes_on());
    }
    JsonValue list = value_from(first, JsonKind::list);
    list.parts = std::move(elements);
    return list;
}

/// Takes a key and its value.
void Parser::take_member(std::vector<JsonValue> &members) {
    if (!next_is('"')) {
        fail(at_, "a key in double quotes belongs here");
    }
    members.push_back(take_string());
    go_to_next();
    if (*at_ != ':') {
        fail(at_,
             "a colon belongs between " + in_quotes(string_of(members.back())) + " and its value");
    }
    ++at_;
    members.push_back(take_value());
}

JsonValue Parser::take_object() {
    const char *first = at_;
    std::vector<JsonValue> members;
    if (enter()) {
        do {
            take_member(members);
        } while (goes_on());
    }
    if (const JsonValue *key = repeated_key(members)) {
        fail(key->source.data(),
             "this object has the key " + in_quotes(string_of(*key)) + " twice; remove one");
    }
    JsonValue object = value_from(first, JsonKind::object);
    object.parts = std::move(members);
    return object;
}

JsonValue Parser::take_value() {
    go_to_next();
    switch (*at_) {
    case '{':
        return take_object();
    case '[':
        return take_list();
    case '"':
        return take_string();
    default:
        return *at_ == '-' || is_digit(*at_) ? take_number() : take_word();
    }
}

} // namespace

JsonValue parse_json(std::string_view text) {
    return Parser(text).parse();
}

} // namespace kvt_tool
