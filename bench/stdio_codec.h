// The format by the C library alone, written as plain as its description suggests: one sprintf, or
// one sscanf, for each line. All speeds are told as multiples of these.
#pragma once

#include "codec.h"

namespace kvt_bench {

/// Writes with sprintf. Reads with sscanf on the rest of the text, which the C library measures
/// anew at every call.
std::unique_ptr<Codec> make_stdio_rest(int32_t kind);

/// Writes with sprintf. Reads with sscanf on a copy of the line.
std::unique_ptr<Codec> make_stdio_line(int32_t kind);

} // namespace kvt_bench
