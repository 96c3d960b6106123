// Floating-point values to and from text, in the form of the C locale whatever the process's is.
#pragma once

#include <cstddef>

namespace kvt_str {

/// Reads as the C library's "%f" does: exponents, "inf", "nan" and hexadecimal forms included.
/// Returns false, and leaves `value`, where that finds no number.
bool scan_real(const char *at, float &value);

/// A float's digits and the newline after them.
struct PlainReal {
    const char *next; ///< after the newline; null where something else stands
    float value;
};

/// Reads a number of a few digits, with a point between them or not, that a newline follows at
/// once: the form that percentages have. Null for any other text, some numbers among them.
PlainReal read_plain_real(const char *at);

/// Enough for any "%g" of a double: sign, 6 digits, point, exponent, NUL.
inline constexpr size_t real_capacity = 32;

/// Writes the value as "%g" does, with a NUL, into `out`. Returns the number of characters.
size_t format_real(float value, char (&out)[real_capacity]);

} // namespace kvt_str
