// What a search looks for: a number in either notation, or a text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/field_path.h"

namespace kvt_tool {

/// A number, in decimal or as 0x..., is any number of a field that has its value, and a word of a
/// text that is such a number. Any other needle is a part of a text.
class Needle {
public:
    explicit Needle(std::string_view text);

    /// False when no value in a text of messages can be it. Much faster than to read them: a number
    /// that stands there in an unusual form, such as 1e3 or a negative one that wraps, is missed.
    bool may_be_in(std::string_view messages) const;

    /// Whether it is a value that a path leads to.
    bool is_in(const FoundField &found) const;

    /// Whether it is the value on a line of a message's text. The line has the row's key.
    bool is_on_line(const Row &row, std::string_view line) const;

    /// A value that does not stand in most texts: the writer leaves it out.
    bool is_zero() const { return number_ == uint64_t{0}; }

private:
    bool is_number(const Row &row, uint64_t number) const;
    bool is_real(float value) const;
    bool is_in_text(std::string_view text) const;

    std::string text_;
    std::optional<uint64_t> number_; ///< extended by its sign
    bool is_negative_ = false;
    std::string part_; ///< that stands in every text that has the needle: a value can be joined of
                       ///< lines with commas between them
};

} // namespace kvt_tool
