// Finds the codec of a table, for what walks tables from outside of the engine: the command and the
// tests. The engine has the codecs of its records at hand.
#pragma once

#include "engine/codec.h"

namespace kvt_str {

/// The codec of a table, when it is that of `codec` or of a record in it; else null.
inline const Codec *find_codec(const Codec &codec, const Record &table) {
    if (codec.rows.begin() == table.rows.begin()) {
        return &codec;
    }
    for (const Row &row : codec.rows) {
        const Codec *found =
            row.element != nullptr ? find_codec(codec.element_of(row), table) : nullptr;
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

} // namespace kvt_str
