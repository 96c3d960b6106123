#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_alloc_group,
    _kvt_txt_pack_msg_vemra_alloc_group, _kvt_txt_unpack_msg_vemra_alloc_group,
    FIELD(subnet_prefix),
    FIELD(tree_id),
    FIELD(num_osts));

RECORD(vemra_alloc_groups,
    _kvt_txt_pack_msg_vemra_alloc_groups, _kvt_txt_unpack_msg_vemra_alloc_groups,
    FIELD(job_id),
    FIELD(tid),
    FIELD(num_groups),
    SLOTS(groups, num_groups),
    FIELD(num_processes),
    ARRAY(processes, num_processes));

RECORD(vemra_release_group,
    _kvt_txt_pack_msg_vemra_release_group, _kvt_txt_unpack_msg_vemra_release_group,
    FIELD(subnet_prefix),
    FIELD(group_id),
    FIELD(tree_id));

RECORD(vemra_release_groups,
    _kvt_txt_pack_msg_vemra_release_groups, _kvt_txt_unpack_msg_vemra_release_groups,
    FIELD(job_id),
    FIELD(vemra_job_id),
    FIELD(num_groups),
    SLOTS(groups, num_groups));

RECORD(vemra_group_data,
    _kvt_txt_pack_msg_vemra_group_data, _kvt_txt_unpack_msg_vemra_group_data,
    FIELD(subnet_prefix),
    FIELD(group_id),
    FIELD(tree_idx),
    FIELD(tree_id),
    FIELD(mlid),
    FIELD(data_path_trim),
    BLOCK(mgid),
    BLOCK(quota));

RECORD(vemra_groups_data,
    _kvt_txt_pack_msg_vemra_groups_data, _kvt_txt_unpack_msg_vemra_groups_data,
    FIELD(job_id),
    FIELD(tid),
    FIELD(vemra_job_id),
    FIELD(num_groups),
    SLOTS(groups, num_groups));
// clang-format on

} // namespace kvt_str
