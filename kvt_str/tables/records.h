// The named routines of every record: the tables that they stand for are in the families' files
// beside this one. A trace begins with the name of the routine that it comes from.
#pragma once

#include <infiniband/sa.h>
#include <infiniband/verbs.h>

#include "engine/codec.h"
#include "kvt/messages/events.h"
#include "kvt/messages/groups.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_info.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/reservations.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/sm_data.h"
#include "kvt/messages/topology.h"

namespace kvt_str {

// --- address.cpp ---------------------------------------------------------------------------------

template <> const Record RecordOf<ibv_gid>::table;
template <> const Codec CodecOf<ibv_gid>::codec;
PackRoutine _kvt_txt_pack_union_ibv_gid;
UnpackRoutine _kvt_txt_unpack_union_ibv_gid;

template <> const Record RecordOf<ibv_sa_path_rec>::table;
template <> const Codec CodecOf<ibv_sa_path_rec>::codec;
PackRoutine _kvt_txt_pack_struct_ibv_sa_path_rec;
UnpackRoutine _kvt_txt_unpack_struct_ibv_sa_path_rec;

// --- job_control.cpp -----------------------------------------------------------------------------

template <> const Record RecordOf<vemra_end_job>::table;
template <> const Codec CodecOf<vemra_end_job>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_end_job;
UnpackRoutine _kvt_txt_unpack_msg_vemra_end_job;

template <> const Record RecordOf<vemra_request_sm_data>::table;
template <> const Codec CodecOf<vemra_request_sm_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_request_sm_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_request_sm_data;

template <> const Record RecordOf<vemra_am_signal>::table;
template <> const Codec CodecOf<vemra_am_signal>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_am_signal;
UnpackRoutine _kvt_txt_unpack_msg_vemra_am_signal;

template <> const Record RecordOf<vemra_job_error>::table;
template <> const Codec CodecOf<vemra_job_error>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_job_error;
UnpackRoutine _kvt_txt_unpack_msg_vemra_job_error;

// --- job_start.cpp -------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_quota>::table;
template <> const Codec CodecOf<vemra_quota>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_quota;
UnpackRoutine _kvt_txt_unpack_msg_vemra_quota;

template <> const Record RecordOf<vemra_begin_job>::table;
template <> const Codec CodecOf<vemra_begin_job>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_begin_job;
UnpackRoutine _kvt_txt_unpack_msg_vemra_begin_job;

// --- job_data.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_sd_info>::table;
template <> const Codec CodecOf<vemra_sd_info>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_sd_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_sd_info;

template <> const Record RecordOf<vemra_tree>::table;
template <> const Codec CodecOf<vemra_tree>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_tree;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree;

template <> const Record RecordOf<vemra_tree_conn>::table;
template <> const Codec CodecOf<vemra_tree_conn>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_tree_conn;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree_conn;

template <> const Record RecordOf<vemra_tree_an>::table;
template <> const Codec CodecOf<vemra_tree_an>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_tree_an;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree_an;

template <> const Record RecordOf<vemra_qpc_options>::table;
template <> const Codec CodecOf<vemra_qpc_options>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_qpc_options;
UnpackRoutine _kvt_txt_unpack_msg_vemra_qpc_options;

template <> const Record RecordOf<vemra_job_data>::table;
template <> const Codec CodecOf<vemra_job_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_job_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_job_data;

// --- groups.cpp ----------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_alloc_group>::table;
template <> const Codec CodecOf<vemra_alloc_group>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_alloc_group;
UnpackRoutine _kvt_txt_unpack_msg_vemra_alloc_group;

template <> const Record RecordOf<vemra_alloc_groups>::table;
template <> const Codec CodecOf<vemra_alloc_groups>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_alloc_groups;
UnpackRoutine _kvt_txt_unpack_msg_vemra_alloc_groups;

template <> const Record RecordOf<vemra_release_group>::table;
template <> const Codec CodecOf<vemra_release_group>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_release_group;
UnpackRoutine _kvt_txt_unpack_msg_vemra_release_group;

template <> const Record RecordOf<vemra_release_groups>::table;
template <> const Codec CodecOf<vemra_release_groups>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_release_groups;
UnpackRoutine _kvt_txt_unpack_msg_vemra_release_groups;

template <> const Record RecordOf<vemra_group_data>::table;
template <> const Codec CodecOf<vemra_group_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_group_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_group_data;

template <> const Record RecordOf<vemra_groups_data>::table;
template <> const Codec CodecOf<vemra_groups_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_groups_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_groups_data;

// --- sm_data.cpp ---------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_ftree_file_node>::table;
template <> const Codec CodecOf<vemra_ftree_file_node>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_ftree_file_node;
UnpackRoutine _kvt_txt_unpack_msg_vemra_ftree_file_node;

template <> const Record RecordOf<vemra_ftree_file_data>::table;
template <> const Codec CodecOf<vemra_ftree_file_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_ftree_file_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_ftree_file_data;

template <> const Record RecordOf<vemra_sm_data>::table;
template <> const Codec CodecOf<vemra_sm_data>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_sm_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_sm_data;

// --- job_info.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_mgmt_job_info_list_request>::table;
template <> const Codec CodecOf<vemra_mgmt_job_info_list_request>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info_list_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info_list_request;

template <> const Record RecordOf<vemra_mgmt_job_info>::table;
template <> const Codec CodecOf<vemra_mgmt_job_info>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info;

template <> const Record RecordOf<vemra_mgmt_job_info_list>::table;
template <> const Codec CodecOf<vemra_mgmt_job_info_list>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info_list;

template <> const Record RecordOf<persistent_job_info>::table;
template <> const Codec CodecOf<persistent_job_info>::codec;
PackRoutine _kvt_txt_pack_msg_persistent_job_info;
UnpackRoutine _kvt_txt_unpack_msg_persistent_job_info;

// --- reservations.cpp ----------------------------------------------------------------------------

template <> const Record RecordOf<vemra_reservation_resources>::table;
template <> const Codec CodecOf<vemra_reservation_resources>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_resources;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_resources;

template <> const Record RecordOf<vemra_create_reservation>::table;
template <> const Codec CodecOf<vemra_create_reservation>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_create_reservation;
UnpackRoutine _kvt_txt_unpack_msg_vemra_create_reservation;

template <> const Record RecordOf<vemra_delete_reservation>::table;
template <> const Codec CodecOf<vemra_delete_reservation>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_delete_reservation;
UnpackRoutine _kvt_txt_unpack_msg_vemra_delete_reservation;

template <> const Record RecordOf<vemra_reservation_info_request>::table;
template <> const Codec CodecOf<vemra_reservation_info_request>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info_request;

template <> const Record RecordOf<vemra_reservation_info>::table;
template <> const Codec CodecOf<vemra_reservation_info>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info;

template <> const Record RecordOf<vemra_reservation_info_list>::table;
template <> const Codec CodecOf<vemra_reservation_info_list>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info_list;

// --- topology.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_topology_info_request>::table;
template <> const Codec CodecOf<vemra_topology_info_request>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_topology_info_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_info_request;

template <> const Record RecordOf<vemra_topology_switch_info>::table;
template <> const Codec CodecOf<vemra_topology_switch_info>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_topology_switch_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_switch_info;

template <> const Record RecordOf<vemra_topology_info_list>::table;
template <> const Codec CodecOf<vemra_topology_info_list>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_topology_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_info_list;

// --- events.cpp ----------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_timestamp>::table;
template <> const Codec CodecOf<vemra_timestamp>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_timestamp;
UnpackRoutine _kvt_txt_unpack_msg_vemra_timestamp;

template <> const Record RecordOf<vemra_get_events_request>::table;
template <> const Codec CodecOf<vemra_get_events_request>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_get_events_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_get_events_request;

template <> const Record RecordOf<vemra_event_str_entry>::table;
template <> const Codec CodecOf<vemra_event_str_entry>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_event_str_entry;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event_str_entry;

template <> const Record RecordOf<vemra_event>::table;
template <> const Codec CodecOf<vemra_event>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_event;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event;

template <> const Record RecordOf<vemra_event_list>::table;
template <> const Codec CodecOf<vemra_event_list>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_event_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event_list;

// --- resource_data.cpp ---------------------------------------------------------------------------

template <> const Record RecordOf<vemra_resource_agg_tree>::table;
template <> const Codec CodecOf<vemra_resource_agg_tree>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_resource_agg_tree;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_agg_tree;

template <> const Record RecordOf<vemra_resource_link>::table;
template <> const Codec CodecOf<vemra_resource_link>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_resource_link;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_link;

template <> const Record RecordOf<vemra_resource_agg_node>::table;
template <> const Codec CodecOf<vemra_resource_agg_node>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_resource_agg_node;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_agg_node;

template <> const Record RecordOf<vemra_resource_message>::table;
template <> const Codec CodecOf<vemra_resource_message>::codec;
PackRoutine _kvt_txt_pack_msg_vemra_resource_message;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_message;

} // namespace kvt_str
