// The named routines of every record: the tables that they stand for are in the families' files
// beside this one. A trace begins with the name of the routine that it comes from.
#pragma once

#include <infiniband/sa.h>
#include <infiniband/verbs.h>

#include "engine/row.h"
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
PackRoutine _kvt_txt_pack_union_ibv_gid;
UnpackRoutine _kvt_txt_unpack_union_ibv_gid;

template <> const Record RecordOf<ibv_sa_path_rec>::table;
PackRoutine _kvt_txt_pack_struct_ibv_sa_path_rec;
UnpackRoutine _kvt_txt_unpack_struct_ibv_sa_path_rec;

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

// --- job_start.cpp -------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_quota>::table;
PackRoutine _kvt_txt_pack_msg_vemra_quota;
UnpackRoutine _kvt_txt_unpack_msg_vemra_quota;

template <> const Record RecordOf<vemra_begin_job>::table;
PackRoutine _kvt_txt_pack_msg_vemra_begin_job;
UnpackRoutine _kvt_txt_unpack_msg_vemra_begin_job;

// --- job_data.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_sd_info>::table;
PackRoutine _kvt_txt_pack_msg_vemra_sd_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_sd_info;

template <> const Record RecordOf<vemra_tree>::table;
PackRoutine _kvt_txt_pack_msg_vemra_tree;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree;

template <> const Record RecordOf<vemra_tree_conn>::table;
PackRoutine _kvt_txt_pack_msg_vemra_tree_conn;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree_conn;

template <> const Record RecordOf<vemra_tree_an>::table;
PackRoutine _kvt_txt_pack_msg_vemra_tree_an;
UnpackRoutine _kvt_txt_unpack_msg_vemra_tree_an;

template <> const Record RecordOf<vemra_qpc_options>::table;
PackRoutine _kvt_txt_pack_msg_vemra_qpc_options;
UnpackRoutine _kvt_txt_unpack_msg_vemra_qpc_options;

template <> const Record RecordOf<vemra_job_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_job_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_job_data;

// --- groups.cpp ----------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_alloc_group>::table;
PackRoutine _kvt_txt_pack_msg_vemra_alloc_group;
UnpackRoutine _kvt_txt_unpack_msg_vemra_alloc_group;

template <> const Record RecordOf<vemra_alloc_groups>::table;
PackRoutine _kvt_txt_pack_msg_vemra_alloc_groups;
UnpackRoutine _kvt_txt_unpack_msg_vemra_alloc_groups;

template <> const Record RecordOf<vemra_release_group>::table;
PackRoutine _kvt_txt_pack_msg_vemra_release_group;
UnpackRoutine _kvt_txt_unpack_msg_vemra_release_group;

template <> const Record RecordOf<vemra_release_groups>::table;
PackRoutine _kvt_txt_pack_msg_vemra_release_groups;
UnpackRoutine _kvt_txt_unpack_msg_vemra_release_groups;

template <> const Record RecordOf<vemra_group_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_group_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_group_data;

template <> const Record RecordOf<vemra_groups_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_groups_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_groups_data;

// --- sm_data.cpp ---------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_ftree_file_node>::table;
PackRoutine _kvt_txt_pack_msg_vemra_ftree_file_node;
UnpackRoutine _kvt_txt_unpack_msg_vemra_ftree_file_node;

template <> const Record RecordOf<vemra_ftree_file_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_ftree_file_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_ftree_file_data;

template <> const Record RecordOf<vemra_sm_data>::table;
PackRoutine _kvt_txt_pack_msg_vemra_sm_data;
UnpackRoutine _kvt_txt_unpack_msg_vemra_sm_data;

// --- job_info.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_mgmt_job_info_list_request>::table;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info_list_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info_list_request;

template <> const Record RecordOf<vemra_mgmt_job_info>::table;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info;

template <> const Record RecordOf<vemra_mgmt_job_info_list>::table;
PackRoutine _kvt_txt_pack_msg_vemra_mgmt_job_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_mgmt_job_info_list;

template <> const Record RecordOf<persistent_job_info>::table;
PackRoutine _kvt_txt_pack_msg_persistent_job_info;
UnpackRoutine _kvt_txt_unpack_msg_persistent_job_info;

// --- reservations.cpp ----------------------------------------------------------------------------

template <> const Record RecordOf<vemra_reservation_resources>::table;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_resources;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_resources;

template <> const Record RecordOf<vemra_create_reservation>::table;
PackRoutine _kvt_txt_pack_msg_vemra_create_reservation;
UnpackRoutine _kvt_txt_unpack_msg_vemra_create_reservation;

template <> const Record RecordOf<vemra_delete_reservation>::table;
PackRoutine _kvt_txt_pack_msg_vemra_delete_reservation;
UnpackRoutine _kvt_txt_unpack_msg_vemra_delete_reservation;

template <> const Record RecordOf<vemra_reservation_info_request>::table;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info_request;

template <> const Record RecordOf<vemra_reservation_info>::table;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info;

template <> const Record RecordOf<vemra_reservation_info_list>::table;
PackRoutine _kvt_txt_pack_msg_vemra_reservation_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_reservation_info_list;

// --- topology.cpp --------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_topology_info_request>::table;
PackRoutine _kvt_txt_pack_msg_vemra_topology_info_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_info_request;

template <> const Record RecordOf<vemra_topology_switch_info>::table;
PackRoutine _kvt_txt_pack_msg_vemra_topology_switch_info;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_switch_info;

template <> const Record RecordOf<vemra_topology_info_list>::table;
PackRoutine _kvt_txt_pack_msg_vemra_topology_info_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_topology_info_list;

// --- events.cpp ----------------------------------------------------------------------------------

template <> const Record RecordOf<vemra_timestamp>::table;
PackRoutine _kvt_txt_pack_msg_vemra_timestamp;
UnpackRoutine _kvt_txt_unpack_msg_vemra_timestamp;

template <> const Record RecordOf<vemra_get_events_request>::table;
PackRoutine _kvt_txt_pack_msg_vemra_get_events_request;
UnpackRoutine _kvt_txt_unpack_msg_vemra_get_events_request;

template <> const Record RecordOf<vemra_event_str_entry>::table;
PackRoutine _kvt_txt_pack_msg_vemra_event_str_entry;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event_str_entry;

template <> const Record RecordOf<vemra_event>::table;
PackRoutine _kvt_txt_pack_msg_vemra_event;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event;

template <> const Record RecordOf<vemra_event_list>::table;
PackRoutine _kvt_txt_pack_msg_vemra_event_list;
UnpackRoutine _kvt_txt_unpack_msg_vemra_event_list;

// --- resource_data.cpp ---------------------------------------------------------------------------

template <> const Record RecordOf<vemra_resource_agg_tree>::table;
PackRoutine _kvt_txt_pack_msg_vemra_resource_agg_tree;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_agg_tree;

template <> const Record RecordOf<vemra_resource_link>::table;
PackRoutine _kvt_txt_pack_msg_vemra_resource_link;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_link;

template <> const Record RecordOf<vemra_resource_agg_node>::table;
PackRoutine _kvt_txt_pack_msg_vemra_resource_agg_node;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_agg_node;

template <> const Record RecordOf<vemra_resource_message>::table;
PackRoutine _kvt_txt_pack_msg_vemra_resource_message;
UnpackRoutine _kvt_txt_unpack_msg_vemra_resource_message;

} // namespace kvt_str
