// JSON by simdjson, which reads only: Debian's version, 3.0, has no writer for documents of one's
// own.
#pragma once

#include "codec.h"

namespace kvt_bench {

/// Reads with the On-Demand interface, whose parser is kept. Writes by RapidJSON, only to make the
/// document.
std::unique_ptr<Codec> make_simdjson(int32_t kind);

} // namespace kvt_bench
