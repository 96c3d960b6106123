#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_resource_agg_tree,
    _kvt_txt_pack_msg_vemra_resource_agg_tree, _kvt_txt_unpack_msg_vemra_resource_agg_tree,
    at_levels(2),
    FIELD(tree_num),
    FIELD(priority, always | shared_value),
    FIELD(tree_status, always | shared_value));

UNROLLED_RECORD(vemra_resource_link,
    _kvt_txt_pack_msg_vemra_resource_link, _kvt_txt_unpack_msg_vemra_resource_link,
    at_levels(2),
    FIELD(agg_node_guid),
    FIELD(port_num),
    FIELD(priority, always | shared_value),
    FIELD(link_status, always | shared_value),
    FIELD(active_jobs));

UNROLLED_RECORD(vemra_resource_agg_node,
    _kvt_txt_pack_msg_vemra_resource_agg_node, _kvt_txt_unpack_msg_vemra_resource_agg_node,
    at_levels(2),
    FIELD(agg_node_guid),
    FIELD(priority, always | shared_value),
    FIELD(ts),
    FIELD(agg_node_status, always | shared_value),
    FIELD(active_jobs),
    FIELD(trees_num));

UNROLLED_RECORD(vemra_resource_message,
    _kvt_txt_pack_msg_vemra_resource_message, _kvt_txt_unpack_msg_vemra_resource_message,
    at_levels(1),
    FIELD(operation, always | shared_value),
    FIELD(feature_bitmask, always | shared_value),
    FIELD(agg_trees_num),
    RUN(agg_trees, agg_trees_num),
    FIELD(links_num),
    RUN(links, links_num),
    FIELD(agg_nodes_num),
    RUN(agg_nodes, agg_nodes_num));
// clang-format on

} // namespace kvt_str
