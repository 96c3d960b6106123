#include "engine/table.h"
#include "tables/records.h"

namespace kvt_str {

// clang-format off
UNROLLED_RECORD(vemra_end_job, at_level(1),
    FIELD(job_id),
    FIELD(reservation_id));

RECORD(vemra_request_sm_data,
    FIELD(job_id),
    FIELD(data_type, always));

RECORD(vemra_am_signal,
    FIELD(flags));

RECORD(vemra_job_error,
    FIELD(job_id),
    FIELD(vemra_job_id),
    FIELD(tree_id),
    FIELD(error, always),
    FIELD(type, always),
    FIELD(description));
// clang-format on

} // namespace kvt_str
