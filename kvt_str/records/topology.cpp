#include "record/table.h"
#include "records/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_topology_info_request,
    FIELD(num_guids),
    ARRAY(port_guids, num_guids));

RECORD(vemra_topology_switch_info,
    FIELD(id),
    FIELD(name),
    FIELD(num_peer_ids),
    ARRAY(peer_ids, num_peer_ids),
    FIELD(num_port_guids),
    ARRAY(port_guids, num_port_guids));

RECORD(vemra_topology_info_list,
    FIELD(num_switches),
    RUN(switches, num_switches),
    FIELD(status, always));
// clang-format on

} // namespace kvt_str
