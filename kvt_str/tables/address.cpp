#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
// The InfiniBand address records, with the layout that the verbs headers give them. Numbers are
// written and read as they lie in memory, without a change of byte order. Their readers trace
// nothing, and do not clear: a second block of the same name goes on where the first one ended.
DEFINE_RECORD(ibv_gid,
    _kvt_txt_pack_union_ibv_gid, _kvt_txt_unpack_union_ibv_gid,
    Reading::merged_and_untraced, at_levels(3, 4),
    FIELD_AS("subnet_prefix", global.subnet_prefix, shared_value),
    FIELD_AS("guid", global.interface_id, shared_value));

DEFINE_RECORD(ibv_sa_path_rec,
    _kvt_txt_pack_struct_ibv_sa_path_rec, _kvt_txt_unpack_struct_ibv_sa_path_rec,
    Reading::merged_and_untraced, at_levels(3),
    BLOCK(dgid),
    BLOCK(sgid),
    FIELD(dlid),
    FIELD(slid),
    FIELD(raw_traffic),
    FIELD(flow_label),
    FIELD(hop_limit),
    FIELD(traffic_class),
    FIELD(reversible),
    FIELD(numb_path),
    FIELD(pkey),
    FIELD(sl),
    FIELD(mtu_selector),
    FIELD(mtu),
    FIELD(rate_selector),
    FIELD(rate),
    FIELD_AS("plt_selector", packet_life_time_selector),
    FIELD_AS("plt", packet_life_time),
    FIELD(preference));
// clang-format on

} // namespace kvt_str
