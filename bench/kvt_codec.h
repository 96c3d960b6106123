// The codec that this project is about, as a contender.
#pragma once

#include "codec.h"

namespace kvt_bench {

std::unique_ptr<Codec> make_kvt_str(int32_t kind);

} // namespace kvt_bench
