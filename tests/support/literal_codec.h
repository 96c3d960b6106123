// The format once more, as literally as its description can be put into C: sscanf on the rest of
// the text at every line, sprintf for every line, no short cuts. Slow, and quadratic for long
// texts. What the codec does is compared with it: texts, records and log lines.
#pragma once

#include <string>

#include "engine/codec.h"

namespace kvt_test {

/// Reads a record's block and returns the position of the first line after it, as the record's
/// reader does. Logs through log_cb.
const char *literal_read(const kvt_str::Record &table, const char *at, void *record,
                         kvt_str::Counts counts);

/// Writes a record's block under a name.
std::string literal_write(const kvt_str::Record &table, const void *record, const std::string &name,
                          unsigned level);

} // namespace kvt_test
