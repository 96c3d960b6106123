// JSON by RapidJSON.
#pragma once

#include "codec.h"

namespace kvt_bench {

/// Writes with the Writer, keys and values straight from the record. Reads with the SAX Reader, in
/// situ in a copy of the document: that is faster than its other forms, the copy included.
std::unique_ptr<Codec> make_rapidjson(int32_t kind);

} // namespace kvt_bench
