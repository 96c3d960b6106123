#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_topology_info_request,
    _kvt_txt_pack_msg_vemra_topology_info_request, _kvt_txt_unpack_msg_vemra_topology_info_request,
    FIELD(num_guids),
    ARRAY(port_guids, num_guids));

UNROLLED_RECORD(vemra_topology_switch_info,
    _kvt_txt_pack_msg_vemra_topology_switch_info, _kvt_txt_unpack_msg_vemra_topology_switch_info,
    at_levels(2),
    FIELD(id),
    FIELD(name),
    FIELD(num_peer_ids),
    ARRAY(peer_ids, num_peer_ids),
    FIELD(num_port_guids),
    ARRAY(port_guids, num_port_guids));

UNROLLED_RECORD(vemra_topology_info_list,
    _kvt_txt_pack_msg_vemra_topology_info_list, _kvt_txt_unpack_msg_vemra_topology_info_list,
    at_levels(1),
    FIELD(num_switches),
    RUN(switches, num_switches),
    FIELD(status, always));
// clang-format on

} // namespace kvt_str
