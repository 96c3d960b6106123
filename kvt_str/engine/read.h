// Reads records by a walk over their tables.
#pragma once

#include "engine/log.h"
#include "engine/read_row.h"
#include "engine/row.h"

namespace kvt_str {

/// Reads a record as UnpackRoutine says. Never fails: unknown lines and blocks are skipped, a value
/// that does not scan leaves its field as it was, an element that cannot be stored for want of
/// memory is dropped, and the text's NUL ends every block.
const char *read_record(const Record &table, Input &input, const char *at, void *record,
                        unsigned level);

/// Reads the rest of a record's block from the line at `at` on, as `progress` was left by the lines
/// before. `first` tells that there are none.
const char *read_rest(const Record &table, Input &input, const char *at, void *record,
                      unsigned level, Progress progress, bool first);

/// The straight path traces nothing.
inline bool is_straight_path_open() {
    return !listens(trace_level);
}

inline void clear_record(const Record &table, void *record) {
    if (table.reading == Reading::plain) {
        std::memset(record, 0, table.size);
    }
}

} // namespace kvt_str
