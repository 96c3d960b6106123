#include "model/needle.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "engine/read_line.h"

namespace kvt_tool {

namespace {

/// The number that a word is, in decimal or as 0x...
std::optional<uint64_t> number_of_word(std::string_view word) {
    const bool is_hexadecimal = word.starts_with("0x") || word.starts_with("0X");
    const char *begin = word.data() + (is_hexadecimal ? 2 : 0);
    const char *end = word.data() + word.size();
    uint64_t number = 0;
    const auto [after, error] = std::from_chars(begin, end, number, is_hexadecimal ? 16 : 10);
    return after == end && error == std::errc() ? std::optional(number) : std::nullopt;
}

bool contains(std::string_view text, std::string_view part) {
    return memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

bool is_word_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string_view longest_part(std::string_view text) {
    std::string_view longest;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(',', begin), text.size());
        if (end - begin > longest.size()) {
            longest = text.substr(begin, end - begin);
        }
        begin = end + 1;
    }
    return longest;
}

} // namespace

Needle::Needle(std::string_view text) : text_(text) {
    is_negative_ = text.starts_with('-');
    number_ = number_of_word(text.substr(is_negative_ ? 1 : 0));
    if (number_.has_value()) {
        part_ = std::to_string(*number_);
        number_ = is_negative_ ? -*number_ : *number_;
        is_negative_ = is_negative_ && number_ != uint64_t{0};
    } else {
        part_ = longest_part(text);
    }
}

bool Needle::may_be_in(std::string_view messages) const {
    return contains(messages, part_) ||
           (number_.has_value() && (contains(messages, "0x") || contains(messages, "0X")));
}

bool Needle::is_number(const Row &row, uint64_t number) const {
    if (number_ != number) {
        return false;
    }
    const bool is_below_zero = is_signed(row) && static_cast<int64_t>(number) < 0;
    return is_below_zero == is_negative_;
}

bool Needle::is_real(float value) const {
    // Every whole number below this one is a double.
    constexpr uint64_t limit = uint64_t{1} << 53;
    const uint64_t size = number_.has_value() ? (is_negative_ ? -*number_ : *number_) : limit;
    if (size < limit) {
        const auto wanted = static_cast<double>(size);
        return static_cast<double>(value) == (is_negative_ ? -wanted : wanted);
    }
    return text_ == exact_real(value) || text_ == plain_real(value);
}

bool Needle::is_in_text(std::string_view text) const {
    if (!number_.has_value()) {
        return contains(text, text_);
    }
    for (size_t at = 0; at < text.size();) {
        if (!is_word_character(text[at])) {
            ++at;
            continue;
        }
        const auto *const end = std::find_if_not(text.begin() + at, text.end(), is_word_character);
        const auto length = static_cast<size_t>(end - (text.begin() + at));
        if (!is_negative_ && number_of_word(text.substr(at, length)) == number_) {
            return true;
        }
        at += length;
    }
    return false;
}

bool Needle::is_in(const FoundField &found) const {
    if (found.index.has_value()) {
        return is_number(*found.row,
                         number_at(elements_of(*found.row, found.record), *found.index));
    }
    switch (shape_of(*found.row)) {
    case Shape::number:
        return is_number(*found.row, number_of(*found.row, found.record));
    case Shape::real:
        return is_real(real_of(*found.row, found.record));
    default:
        return is_in_text(text_of(*found.row, found.record));
    }
}

bool Needle::is_on_line(const Row &row, std::string_view line) const {
    switch (shape_of(row)) {
    case Shape::number:
    case Shape::numbers: {
        uint64_t number = 0;
        if (!kvt_str::scan_value(row, line.data(), number)) {
            return false;
        }
        const unsigned cut = 64 - bits_of(row);
        number = number << cut;
        number = is_signed(row) ? static_cast<uint64_t>(static_cast<int64_t>(number) >> cut)
                                : number >> cut;
        return is_number(row, number);
    }
    case Shape::real: {
        float value = 0;
        return kvt_str::scan_value(row, line.data(), value) && is_real(value);
    }
    default:
        return is_in_text(line.substr(key_of(row).size()));
    }
}

} // namespace kvt_tool
