#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_mgmt_job_info_list_request,
    _kvt_txt_pack_msg_vemra_mgmt_job_info_list_request,
    _kvt_txt_unpack_msg_vemra_mgmt_job_info_list_request,
    BYTES(reserved, 0));

RECORD(vemra_mgmt_job_info,
    _kvt_txt_pack_msg_vemra_mgmt_job_info, _kvt_txt_unpack_msg_vemra_mgmt_job_info,
    FIELD(allocation_id),
    FIELD(external_job_id),
    FIELD(vemra_job_id),
    FIELD(start_time),
    FIELD(job_state, always),
    FIELD(num_local_connections),
    BYTES(reserved, 0),
    FIELD(reservation_id));

RECORD(vemra_mgmt_job_info_list,
    _kvt_txt_pack_msg_vemra_mgmt_job_info_list, _kvt_txt_unpack_msg_vemra_mgmt_job_info_list,
    FIELD(job_list_len),
    RUN(job_list, job_list_len));

RECORD(persistent_job_info,
    _kvt_txt_pack_msg_persistent_job_info, _kvt_txt_unpack_msg_persistent_job_info,
    FIELD(version),
    FIELD(job_id),
    FIELD(vemra_job_id),
    FIELD(addr_type),
    FIELD(addr),
    FIELD(reservation_id),
    FIELD(job_state, always),
    FIELD(exclusive_lock),
    FIELD(job_key),
    FIELD(priority),
    FIELD(num_host_guids),
    ARRAY(host_guids, num_host_guids),
    FIELD(num_channels_per_conn),
    FIELD(num_rails),
    FIELD(num_trees_req),
    FIELD(num_trees),
    ARRAY(tree_ids, num_trees));
// clang-format on

} // namespace kvt_str
