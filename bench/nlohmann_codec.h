// JSON by nlohmann-json, through its documents: there is no other way to write with it.
#pragma once

#include "codec.h"

namespace kvt_bench {

std::unique_ptr<Codec> make_nlohmann(int32_t kind);

} // namespace kvt_bench
