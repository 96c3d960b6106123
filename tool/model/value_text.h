// Values of fields as text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/fields.h"

namespace kvt_tool {

/// How GUIDs are shown. The text form has them in decimal, other tools of a fabric in hexadecimal.
enum class GuidForm : uint8_t {
    decimal,
    hexadecimal, ///< `0x0002c90300001234`
    both,        ///< `0x0002c90300001234 = 783964675510836`
};

/// A number, real or text as the writer writes it, without key, quotes and newline, but for the
/// form of GUIDs. Numbers that are 0 are "0" also where the writer leaves their line out.
std::string plain_value(const Row &row, const void *record, GuidForm guids = GuidForm::decimal);

/// An element of a list of numbers, in the same way.
std::string plain_element(const Row &row, const Elements &numbers, uint64_t index,
                          GuidForm guids = GuidForm::decimal);

/// A number as people read it: GUIDs in their form, others in decimal.
std::string shown_number(const Row &row, uint64_t number, GuidForm guids = GuidForm::hexadecimal);

/// A number, real or text as people read it: numbers as above, texts in double quotes.
std::string shown_value(const Row &row, const void *record, GuidForm guids = GuidForm::hexadecimal);

/// A float as the writer writes it.
std::string plain_real(float value);

/// A float in the fewest digits that tell it from all others.
std::string exact_real(float value);

/// A text in double quotes. Quotes, backslashes and what does not print are escaped, so that it
/// takes one line and does nothing to a terminal; characters of UTF-8 stay as they are.
std::string quoted_text(std::string_view text);

} // namespace kvt_tool
