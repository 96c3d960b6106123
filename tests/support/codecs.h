// The codecs of all tables that the tests know.
#pragma once

#include "engine/codec.h"

namespace kvt_test {

/// Of the record of a message, of a record in one, or of a record of the tests' own.
const kvt_str::Codec &codec_of(const kvt_str::Record &table);

} // namespace kvt_test
