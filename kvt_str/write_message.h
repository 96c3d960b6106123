// Writes one message, and measures what writing it would take.
#pragma once

#include <cstdint>

namespace kvt_str {

/// As kvt_msg_to_str, whose work it does and under whose name it logs.
int32_t write_message(int32_t msg_type, const void *msg, char *buf);

/// As kvt_str_get_buf_size, in the same way.
uint32_t measure_message(int32_t msg_type, const void *msg);

} // namespace kvt_str
