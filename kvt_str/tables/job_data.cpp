#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_sd_info,
    _kvt_txt_pack_msg_vemra_sd_info, _kvt_txt_unpack_msg_vemra_sd_info,
    at_levels(2),
    FIELD(version),
    FIELD(vemrad_id),
    FIELD(addr_type),
    FIELD(addr));

UNROLLED_RECORD(vemra_tree,
    _kvt_txt_pack_msg_vemra_tree, _kvt_txt_unpack_msg_vemra_tree,
    at_levels(2),
    FIELD(feature_mask),
    FIELD(tree_id),
    FIELD(peer_tree_id),
    FIELD(max_qp_child_idxs),
    BYTES(versions, 0),
    BLOCK(mgid),
    BLOCK(quota),
    FIELD(control_path_version));

UNROLLED_RECORD(vemra_tree_conn,
    _kvt_txt_pack_msg_vemra_tree_conn, _kvt_txt_unpack_msg_vemra_tree_conn,
    at_levels(2),
    FIELD(tree_id),
    FIELD(vemrad_id),
    BYTES(qp_child_idxs, 255, clear_at_run),
    BLOCK(pr_sd_to_an),
    BLOCK(pr_an_to_sd));

UNROLLED_RECORD(vemra_tree_an,
    _kvt_txt_pack_msg_vemra_tree_an, _kvt_txt_unpack_msg_vemra_tree_an,
    at_levels(2),
    FIELD(guid),
    FIELD(lid),
    FIELD(tree_id),
    FIELD(an_id),
    FIELD(parent_an_id));

UNROLLED_RECORD(vemra_qpc_options,
    _kvt_txt_pack_msg_vemra_qpc_options, _kvt_txt_unpack_msg_vemra_qpc_options,
    at_levels(2),
    FIELD(qkey),
    FIELD(flow_label),
    FIELD(pkey),
    FIELD(sl),
    FIELD(tclass),
    FIELD(rnr_mode),
    FIELD(rnr_retry_limit),
    FIELD(local_ack_timeout),
    FIELD(timeout_retry_limit));

UNROLLED_RECORD(vemra_job_data,
    _kvt_txt_pack_msg_vemra_job_data, _kvt_txt_unpack_msg_vemra_job_data,
    at_levels(1),
    FIELD(job_id),
    FIELD(master_vemrad_id),
    FIELD(vemra_job_id),
    FIELD(uid),
    FIELD(hosts_num),
    FIELD(trees_num),
    FIELD(conns_num),
    FIELD(agg_nodes_num),
    BLOCK(qpc_opts),
    BLOCK(sat_qpc_opts),
    RUN(hosts_sd_info, hosts_num),
    RUN(trees, trees_num),
    RUN(conns, conns_num),
    RUN(agg_nodes, agg_nodes_num),
    FIELD(job_key),
    FIELD(reservation_id));
// clang-format on

} // namespace kvt_str
