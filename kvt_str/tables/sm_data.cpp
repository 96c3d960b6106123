#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
RECORD(vemra_ftree_file_node,
    _kvt_txt_pack_msg_vemra_ftree_file_node, _kvt_txt_unpack_msg_vemra_ftree_file_node,
    FIELD(lid));

RECORD(vemra_ftree_file_data,
    _kvt_txt_pack_msg_vemra_ftree_file_data, _kvt_txt_unpack_msg_vemra_ftree_file_data,
    FIELD(array_len),
    RUN(file_nodes, array_len));

RECORD(vemra_sm_data,
    _kvt_txt_pack_msg_vemra_sm_data, _kvt_txt_unpack_msg_vemra_sm_data,
    FIELD(job_id),
    FIELD(data_type, always),
    FIELD(status, always),
    BLOCK(ftree_data));
// clang-format on

} // namespace kvt_str
