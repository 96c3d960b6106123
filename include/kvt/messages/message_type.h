/**
 * @file
 * The kinds of messages. The text name of a kind is its constant without the
 * prefix VEMRA_MSG_TYPE_.
 */
#ifndef KVT_MESSAGES_MESSAGE_TYPE_H
#define KVT_MESSAGES_MESSAGE_TYPE_H

/** A kind of message; beside each its record. */
typedef enum vemra_msg_type {
    VEMRA_MSG_TYPE_NONE = 0,                         /**< no record */
    VEMRA_MSG_TYPE_BEGIN_JOB = 1,                    /**< vemra_begin_job */
    VEMRA_MSG_TYPE_END_JOB = 2,                      /**< vemra_end_job */
    VEMRA_MSG_TYPE_JOB_DATA = 3,                     /**< vemra_job_data */
    VEMRA_MSG_TYPE_ALLOC_GROUPS = 4,                 /**< vemra_alloc_groups */
    VEMRA_MSG_TYPE_GROUPS_DATA = 5,                  /**< vemra_groups_data */
    VEMRA_MSG_TYPE_RELEASE_GROUPS = 6,               /**< vemra_release_groups */
    VEMRA_MSG_TYPE_REQ_SM_DATA = 7,                  /**< vemra_request_sm_data */
    VEMRA_MSG_TYPE_SM_DATA = 8,                      /**< vemra_sm_data */
    VEMRA_MSG_TYPE_JOB_ERROR = 9,                    /**< vemra_job_error */
    VEMRA_MSG_TYPE_AM_SIGNAL = 10,                   /**< vemra_am_signal */
    VEMRA_MSG_TYPE_JOB_INFO_REQUEST = 11,            /**< vemra_mgmt_job_info_list_request */
    VEMRA_MSG_TYPE_JOB_INFO_REPLY = 12,              /**< vemra_mgmt_job_info_list */
    VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO = 13,         /**< persistent_job_info */
    VEMRA_MSG_TYPE_CREATE_RESERVATION = 14,          /**< vemra_create_reservation */
    VEMRA_MSG_TYPE_DELETE_RESERVATION = 15,          /**< vemra_delete_reservation */
    VEMRA_MSG_TYPE_RESERVATION_INFO_REQUEST = 16,    /**< vemra_reservation_info_request */
    VEMRA_MSG_TYPE_RESERVATION_INFO_REPLY = 17,      /**< vemra_reservation_info_list */
    VEMRA_MSG_TYPE_PERSISTENT_RESERVATION_INFO = 18, /**< vemra_reservation_info */
    VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST = 19,       /**< vemra_topology_info_request */
    VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY = 20,         /**< vemra_topology_info_list */
    VEMRA_MSG_TYPE_EVENTS_REQUEST = 21,              /**< vemra_get_events_request */
    VEMRA_MSG_TYPE_EVENTS_REPLY = 22,                /**< vemra_event_list */
    VEMRA_MSG_TYPE_RESOURCE_DATA = 23,               /**< vemra_resource_message */
    VEMRA_MSG_TYPE_LAST = 24                         /**< end marker, no record */
} vemra_msg_type;

#endif
