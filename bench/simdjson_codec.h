// JSON by simdjson, which reads only: Debian's version, 3.0, has no writer for documents of one's
// own.
#pragma once

#include "codec.h"

namespace kvt_bench {

/// Reads with the On-Demand interface, whose parser is kept. Writes by RapidJSON, only to make the
/// document.
std::unique_ptr<Codec> make_simdjson(int32_t kind);

/// The same, built for processors with AVX2. simdjson chooses when it runs only how it finds the
/// structure of a document; its reading of values is inlined, as what it is built for.
std::unique_ptr<Codec> make_simdjson_avx2(int32_t kind);

} // namespace kvt_bench
