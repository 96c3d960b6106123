#include "record/table.h"
#include "records/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_timestamp,
    FIELD(seconds),
    FIELD(useconds));

RECORD(vemra_get_events_request,
    BLOCK(ts));

RECORD(vemra_event_str_entry,
    FIELD(entry_name_len),
    JOINED_TEXT(entry_name, entry_name_len),
    FIELD(value_len),
    JOINED_TEXT(entry_value, value_len));

RECORD(vemra_event,
    FIELD(event_type, always),
    FIELD(num_str_entry),
    RUN(str_entry_list, num_str_entry),
    BLOCK(ts));

RECORD(vemra_event_list,
    FIELD(num_event),
    RUN_AS("vemra_events", events, num_event));
// clang-format on

} // namespace kvt_str
