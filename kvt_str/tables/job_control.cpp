#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_end_job,
    _kvt_txt_pack_msg_vemra_end_job, _kvt_txt_unpack_msg_vemra_end_job,
    at_levels(1),
    FIELD(job_id),
    FIELD(reservation_id));

RECORD(vemra_request_sm_data,
    _kvt_txt_pack_msg_vemra_request_sm_data, _kvt_txt_unpack_msg_vemra_request_sm_data,
    FIELD(job_id),
    FIELD(data_type, always));

RECORD(vemra_am_signal,
    _kvt_txt_pack_msg_vemra_am_signal, _kvt_txt_unpack_msg_vemra_am_signal,
    FIELD(flags));

RECORD(vemra_job_error,
    _kvt_txt_pack_msg_vemra_job_error, _kvt_txt_unpack_msg_vemra_job_error,
    FIELD(job_id),
    FIELD(vemra_job_id),
    FIELD(tree_id),
    FIELD(error, always),
    FIELD(type, always),
    FIELD(description));
// clang-format on

} // namespace kvt_str
