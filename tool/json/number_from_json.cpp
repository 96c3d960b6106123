#include "json/number_from_json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/real.h"

namespace kvt_tool {

namespace {

// --- Whole numbers -------------------------------------------------------------------------------

enum class Likeness : uint8_t { whole, fraction, too_large, none };

/// What a spelling stands for.
struct Whole {
    Likeness likeness = Likeness::none;
    bool negative = false;
    uint64_t magnitude = 0;
};

/// Takes a number of digits and nothing else.
Whole from_digits(std::string_view digits, int base) {
    Whole whole;
    const char *end = digits.data() + digits.size();
    const auto [after, error] = std::from_chars(digits.data(), end, whole.magnitude, base);
    if (after == end && error != std::errc::invalid_argument) {
        whole.likeness = error == std::errc() ? Likeness::whole : Likeness::too_large;
    }
    return whole;
}

Whole whole_of_string(std::string_view string, bool takes_sign) {
    if (string.starts_with("0x") || string.starts_with("0X")) {
        return from_digits(string.substr(2), 16);
    }
    const bool negative = takes_sign && string.starts_with('-');
    Whole whole = from_digits(string.substr(negative ? 1 : 0), 10);
    whole.negative = negative;
    return whole;
}

/// A number of JSON, of any length: "12", "-0", "1.50e1".
Whole whole_of_number(std::string_view number) {
    const bool negative = number.starts_with('-');
    number.remove_prefix(negative ? 1 : 0);
    const size_t e = number.find_first_of("eE");
    int64_t exponent = 0;
    if (e != std::string_view::npos) {
        std::string_view digits = number.substr(e + 1);
        digits.remove_prefix(digits.starts_with('+') ? 1 : 0);
        const auto [after, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        // Beyond 64 bits it moves the point out of any text.
        constexpr int64_t beyond = int64_t{1} << 62;
        exponent = error == std::errc()      ? std::clamp(exponent, -beyond, beyond)
                   : digits.starts_with('-') ? -beyond
                                             : beyond;
    }
    number = number.substr(0, e);
    const size_t point = std::min(number.find('.'), number.size());
    std::string digits(number.substr(0, point));
    if (point < number.size()) {
        digits += number.substr(point + 1);
        exponent -= static_cast<int64_t>(number.size() - point - 1);
    }
    digits.erase(0, digits.find_first_not_of('0'));
    if (digits.empty()) {
        return {Likeness::whole, false, 0}; // -0 is 0
    }
    while (exponent < 0 && digits.ends_with('0')) {
        digits.pop_back();
        ++exponent;
    }
    constexpr size_t most_digits = 20; // of 64 bits
    if (exponent < 0) {
        return {Likeness::fraction, negative, 0};
    }
    if (exponent > static_cast<int64_t>(most_digits) || digits.size() > most_digits) {
        return {Likeness::too_large, negative, 0};
    }
    digits.append(static_cast<size_t>(exponent), '0');
    Whole whole = from_digits(digits, 10);
    whole.negative = negative;
    return whole;
}

std::string out_of_range(const JsonValue &json, const Row &row, uint64_t greatest) {
    return shown(json) + " does not fit into " + std::to_string(bits_of(row)) + " bits" +
           (is_signed(row) ? " with a sign; they hold " + std::to_string(INT32_MIN) + " to "
                           : "; the greatest number is ") +
           std::to_string(greatest);
}

// --- Floats --------------------------------------------------------------------------------------

/// What a spelling of JSON stands for; nothing for any other text.
std::optional<float> float_of(std::string_view spelling, bool &is_out_of_range) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (const auto &[name, value] : {std::pair<std::string_view, float>{"NaN", nan},
                                      {"-NaN", -nan},
                                      {"Infinity", infinity},
                                      {"-Infinity", -infinity}}) {
        if (spelling == name) {
            return value;
        }
    }
    // Of all that a conversion takes, the numbers of JSON: no other words, no hexadecimal forms.
    const size_t first = spelling.starts_with('-') ? 1 : 0;
    if (first == spelling.size() || spelling[first] < '0' || spelling[first] > '9') {
        return std::nullopt;
    }
    float value = 0;
    const char *end = spelling.data() + spelling.size();
    const auto [after, error] = std::from_chars(spelling.data(), end, value);
    if (after != end || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    is_out_of_range = error == std::errc::result_out_of_range;
    return value;
}

} // namespace

NumberFromJson<uint64_t> whole_from_json(const Row &row, const JsonValue &json) {
    if (json.kind != JsonKind::number && json.kind != JsonKind::string) {
        return {.problem = shown(json) + " is not a number"};
    }
    const bool takes_sign = is_signed(row);
    const Whole whole = json.kind == JsonKind::number
                            ? whole_of_number(json.source)
                            : whole_of_string(string_of(json), takes_sign);
    const uint64_t greatest = UINT64_MAX >> (64 - bits_of(row) + (takes_sign ? 1 : 0));
    switch (whole.likeness) {
    case Likeness::none:
        return {.problem = shown(json) + " is not a whole number; a string holds digits" +
                           (takes_sign ? ", with a minus before them or not"
                                       : ", or 0x and hexadecimal digits")};
    case Likeness::fraction:
        return {.problem = shown(json) + " is not a whole number"};
    case Likeness::too_large:
        return {.problem = out_of_range(json, row, greatest)};
    case Likeness::whole:
        break;
    }
    if (whole.negative && whole.magnitude != 0 && !takes_sign) {
        return {.problem = shown(json) + " is negative; the least number is 0"};
    }
    if (whole.magnitude > greatest + (whole.negative ? 1 : 0)) {
        return {.problem = out_of_range(json, row, greatest)};
    }
    const auto magnitude = static_cast<int64_t>(whole.magnitude); // of 31 bits where it matters
    return {.value = whole.negative ? static_cast<uint64_t>(-magnitude) : whole.magnitude};
}

NumberFromJson<float> real_from_json(const JsonValue &json) {
    std::optional<float> value;
    bool is_out_of_range = false;
    if (json.kind == JsonKind::number) {
        value = float_of(json.source, is_out_of_range);
    } else if (json.kind == JsonKind::string) {
        value = float_of(string_of(json), is_out_of_range);
    }
    if (!value.has_value()) {
        return {.problem = shown(json) + " is not a number" +
                           (json.kind == JsonKind::string
                                ? "; a string holds one, or NaN, -NaN, Infinity or -Infinity"
                                : "")};
    }
    if (is_out_of_range) {
        return {.problem = shown(json) + " does not fit into a float of 32 bits"};
    }
    char written[kvt_str::real_capacity];
    kvt_str::format_real(*value, written);
    float read = 0;
    kvt_str::scan_real(written, read);
    if (read != *value && !std::isnan(*value)) {
        return {.problem = shown(json) + " would be written as " + written +
                           "; six digits are kept, so round it"};
    }
    return {.value = *value};
}

} // namespace kvt_tool
