#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_timestamp, at_level(3),
    FIELD(seconds),
    FIELD(useconds));

RECORD(vemra_get_events_request,
    BLOCK(ts));

UNROLLED_RECORD(vemra_event_str_entry, at_level(3),
    FIELD(entry_name_len),
    JOINED_TEXT(entry_name, entry_name_len),
    FIELD(value_len),
    JOINED_TEXT(entry_value, value_len));

UNROLLED_RECORD(vemra_event, at_level(2),
    FIELD(event_type, always),
    FIELD(num_str_entry),
    RUN(str_entry_list, num_str_entry),
    BLOCK(ts));

UNROLLED_RECORD(vemra_event_list, at_level(1),
    FIELD(num_event),
    RUN_AS("vemra_events", events, num_event));
// clang-format on

} // namespace kvt_str
