#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_timestamp,
    _kvt_txt_pack_msg_vemra_timestamp, _kvt_txt_unpack_msg_vemra_timestamp,
    at_levels(3),
    FIELD(seconds),
    FIELD(useconds));

RECORD(vemra_get_events_request,
    _kvt_txt_pack_msg_vemra_get_events_request, _kvt_txt_unpack_msg_vemra_get_events_request,
    BLOCK(ts));

UNROLLED_RECORD(vemra_event_str_entry,
    _kvt_txt_pack_msg_vemra_event_str_entry, _kvt_txt_unpack_msg_vemra_event_str_entry,
    at_levels(3),
    FIELD(entry_name_len),
    JOINED_TEXT(entry_name, entry_name_len),
    FIELD(value_len),
    JOINED_TEXT(entry_value, value_len));

UNROLLED_RECORD(vemra_event,
    _kvt_txt_pack_msg_vemra_event, _kvt_txt_unpack_msg_vemra_event,
    at_levels(2),
    FIELD(event_type, always),
    FIELD(num_str_entry),
    RUN(str_entry_list, num_str_entry),
    BLOCK(ts));

UNROLLED_RECORD(vemra_event_list,
    _kvt_txt_pack_msg_vemra_event_list, _kvt_txt_unpack_msg_vemra_event_list,
    at_levels(1),
    FIELD(num_event),
    RUN_AS("vemra_events", events, num_event));
// clang-format on

} // namespace kvt_str
