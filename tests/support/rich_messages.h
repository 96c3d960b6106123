// Messages in which everything is there: every line of every table, with values that differ.
#pragma once

#include <string>
#include <vector>

#include "message_kinds.h"

namespace kvt_test {

/// The kinds that carry a record.
std::vector<const kvt_str::MessageKind *> kinds_with_record();

inline int32_t value_of(const kvt_str::MessageKind &kind) {
    return static_cast<int32_t>(kind.value);
}

/// Fills a zeroed record so that every row of its table is written: no number is 0 and no text
/// empty, neighbours differ, and every array, run and slots has `elements` elements, as far as it
/// has room for them.
void fill_richly(const kvt_str::Record &table, void *record, unsigned elements);

/// The text of such a record. Read and written again it is the same, but for the child indexes of
/// JOB_DATA, of which there are 64 then.
std::string rich_text(const kvt_str::MessageKind &kind, unsigned elements);

/// The keys of a table's count and length lines, those of the records in it too.
bool is_count_line(const kvt_str::Record &table, const std::string &line);

} // namespace kvt_test
