// Protobuf messages, filled from the plain records and taken over into them: in the binary form and
// in the text form. The message is kept and used again; that is faster here than an arena.
#pragma once

#include "codec.h"

namespace kvt_bench {

std::unique_ptr<Codec> make_protobuf(int32_t kind);
std::unique_ptr<Codec> make_protobuf_text(int32_t kind);

} // namespace kvt_bench
