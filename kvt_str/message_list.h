// The kinds of messages that carry a record, in the order of their values: one row a kind.
#pragma once

// clang-format off
/// Calls MESSAGE(name, block, record) for each kind: its name as on the type line, the name of its
/// record's block, and the record's C type.
#define KVT_MESSAGES(MESSAGE) \
    MESSAGE(BEGIN_JOB, "begin_job", vemra_begin_job) \
    MESSAGE(END_JOB, "end_job", vemra_end_job) \
    MESSAGE(JOB_DATA, "job_data", vemra_job_data) \
    MESSAGE(ALLOC_GROUPS, "alloc_groups", vemra_alloc_groups) \
    MESSAGE(GROUPS_DATA, "groups_data", vemra_groups_data) \
    MESSAGE(RELEASE_GROUPS, "release_groups", vemra_release_groups) \
    MESSAGE(REQ_SM_DATA, "request_sm_data", vemra_request_sm_data) \
    MESSAGE(SM_DATA, "sm_data", vemra_sm_data) \
    MESSAGE(JOB_ERROR, "job_error", vemra_job_error) \
    MESSAGE(AM_SIGNAL, "am_signal", vemra_am_signal) \
    MESSAGE(JOB_INFO_REQUEST, "mgmt_job_info_list_request", vemra_mgmt_job_info_list_request) \
    MESSAGE(JOB_INFO_REPLY, "mgmt_job_info_list", vemra_mgmt_job_info_list) \
    MESSAGE(PERSISTENT_JOB_INFO, "persistent_job_info", persistent_job_info) \
    MESSAGE(CREATE_RESERVATION, "create_reservation", vemra_create_reservation) \
    MESSAGE(DELETE_RESERVATION, "delete_reservation", vemra_delete_reservation) \
    MESSAGE(RESERVATION_INFO_REQUEST, "reservation_info_request", vemra_reservation_info_request) \
    MESSAGE(RESERVATION_INFO_REPLY, "reservation_info_list", vemra_reservation_info_list) \
    MESSAGE(PERSISTENT_RESERVATION_INFO, "reservation_info", vemra_reservation_info) \
    MESSAGE(TOPOLOGY_INFO_REQUEST, "topology_info_request", vemra_topology_info_request) \
    MESSAGE(TOPOLOGY_INFO_REPLY, "topology_info_list", vemra_topology_info_list) \
    MESSAGE(EVENTS_REQUEST, "get_events_request", vemra_get_events_request) \
    MESSAGE(EVENTS_REPLY, "event_list", vemra_event_list) \
    MESSAGE(RESOURCE_DATA, "resource_message", vemra_resource_message)
// clang-format on
