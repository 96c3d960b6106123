// The traces of rows that take several lines, or texts. Each does nothing while nobody listens.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/row.h"

namespace kvt_str {

/// An element of an array was read: the last of `count`.
void trace_element(const Row &row, uint64_t count, uint64_t value);
/// The line at `at` of an array does not scan; `last` is the value of the last line that did.
void trace_mismatch_of_array(const Row &row, const char *at, uint64_t last);
/// An array has ended with `count` elements.
void trace_end_of_array(const Row &row, uint64_t count, uint64_t first);

/// A byte of a byte array was read.
void trace_byte(uint8_t value);
/// A byte array has ended before it was full, at the line at `at`.
void trace_end_of_bytes(const Row &row, const char *at);

/// A character array was read.
void trace_text(const char *text);
/// The line at `at` does not have the key of the character array.
void trace_text_of_another_key(const Row &row, const char *at);

/// A value was added to a joined text.
void trace_joined_value(const char *text);
/// The line at `at` of a joined text does not scan; `buffered` is what a value is scanned over.
void trace_mismatch_of_joined(const Row &row, const char *at, std::string_view buffered);
/// A joined text has ended with `count` values; it is null where that is 0.
void trace_end_of_joined(unsigned count, const char *text);

} // namespace kvt_str
