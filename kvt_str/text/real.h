// Floating-point values to and from text, in the form of the C locale whatever the process's is.
#pragma once

#include <cstddef>

namespace kvt_str {

/// Reads as the C library's "%f" does: exponents, "inf", "nan" and hexadecimal forms included.
/// Returns false, and leaves `value`, where that finds no number.
bool scan_real(const char *at, float &value);

/// Enough for any "%g" of a double: sign, 6 digits, point, exponent, NUL.
inline constexpr size_t real_capacity = 32;

/// Writes the value as "%g" does, with a NUL, into `out`. Returns the number of characters.
size_t format_real(float value, char (&out)[real_capacity]);

} // namespace kvt_str
