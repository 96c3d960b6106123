// The sizes of elements, for what walks the tables from outside of the engine: the check, the
// command and the tests. The engine knows them from the C types of its steps.
#pragma once

#include <cstdint>

#include "engine/row.h"

namespace kvt_str {

/// Bytes of one element of an array, a byte array, a run or slots; of any other row, those of its
/// member.
inline uint32_t element_size(const Row &row) {
    switch (row.kind) {
    case RowKind::bytes:
        return 1;
    case RowKind::array16:
        return 2;
    case RowKind::array32:
        return 4;
    case RowKind::array64:
        return 8;
    default:
        return row.element != nullptr ? row.element->size : row.size;
    }
}

} // namespace kvt_str
