// The named routines of every record: the tables that they stand for are in the families' files
// beside this one. A trace begins with the name of the routine that it comes from.
#pragma once

#include "kvt/messages/job_control.h"
#include "record/row.h"

namespace kvt_str {

// --- job_control.cpp -----------------------------------------------------------------------------

template <> const Record RecordOf<vemra_end_job>::table;
PackRoutine _kvt_txt_pack_msg_vemra_end_job;
UnpackRoutine _kvt_txt_unpack_msg_vemra_end_job;

template <> const Record RecordOf<vemra_request_sm_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_request_sm_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_request_sm_data;

template <> const Record RecordOf<vemra_am_signal>::table;
PackRoutine _kvt_txt_pack_msg_vemra_am_signal;
UnpackRoutine _kvt_txt_unpack_msg_vemra_am_signal;

template <> const Record RecordOf<vemra_job_error>::table;
PackRoutine _kvt_txt_pack_msg_vemra_job_error;
UnpackRoutine _kvt_txt_unpack_msg_vemra_job_error;

} // namespace kvt_str
