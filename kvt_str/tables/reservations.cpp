#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_reservation_resources,
    _kvt_txt_pack_msg_vemra_reservation_resources, _kvt_txt_unpack_msg_vemra_reservation_resources,
    FIELD(num_osts),
    FIELD(num_groups),
    FIELD(num_qps),
    FIELD(num_trees),
    FIELD(num_jobs),
    FIELD(priority),
    FIELD(percentage),
    FIELD(sat));

RECORD(vemra_create_reservation,
    _kvt_txt_pack_msg_vemra_create_reservation, _kvt_txt_unpack_msg_vemra_create_reservation,
    FIELD(reservation_id),
    FIELD(pkey),
    FIELD(num_guids),
    ARRAY(port_guids, num_guids),
    BLOCK(resources));

RECORD(vemra_delete_reservation,
    _kvt_txt_pack_msg_vemra_delete_reservation, _kvt_txt_unpack_msg_vemra_delete_reservation,
    FIELD(reservation_id),
    FIELD(force_delete));

RECORD(vemra_reservation_info_request,
    _kvt_txt_pack_msg_vemra_reservation_info_request,
    _kvt_txt_unpack_msg_vemra_reservation_info_request,
    FIELD(reservation_id),
    FIELD(full_info));

RECORD(vemra_reservation_info,
    _kvt_txt_pack_msg_vemra_reservation_info, _kvt_txt_unpack_msg_vemra_reservation_info,
    FIELD(reservation_id),
    FIELD(pkey),
    FIELD(state, always),
    FIELD(num_guids),
    ARRAY(port_guids, num_guids),
    BLOCK(resources));

RECORD(vemra_reservation_info_list,
    _kvt_txt_pack_msg_vemra_reservation_info_list, _kvt_txt_unpack_msg_vemra_reservation_info_list,
    FIELD(reservation_list_len),
    RUN(reservation_list, reservation_list_len, low_32_bits),
    FIELD(status, always));
// clang-format on

} // namespace kvt_str
