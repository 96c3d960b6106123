#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_quota,
    _kvt_txt_pack_msg_vemra_quota, _kvt_txt_unpack_msg_vemra_quota,
    at_levels(2, 3),
    FIELD(max_osts),
    FIELD(user_data_per_ost),
    FIELD(max_buffers),
    FIELD(max_groups),
    FIELD(max_qps));

UNROLLED_RECORD(vemra_begin_job,
    _kvt_txt_pack_msg_vemra_begin_job, _kvt_txt_unpack_msg_vemra_begin_job,
    at_levels(1),
    FIELD(job_id),
    FIELD(uid),
    FIELD(priority),
    FIELD(quota_percentage),
    BLOCK(quota),
    FIELD(hosts_len),
    JOINED_TEXT(hosts, hosts_len),
    FIELD(num_rails),
    FIELD(num_trees),
    FIELD(num_guids),
    ARRAY(port_guids, num_guids),
    FIELD(num_channels),
    FIELD(pkey),
    FIELD(enable_mcast),
    FIELD(req_feature_mask),
    FIELD(reproducible_mode, always),
    FIELD(exclusive_lock, always));
// clang-format on

} // namespace kvt_str
