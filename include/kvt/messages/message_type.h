/**
 * @file
 * The kinds of messages, and what holds for the records of all kinds.
 *
 * The text name of a kind is its constant without the prefix VEMRA_MSG_TYPE_.
 *
 * Numbers. The codec writes and reads a number as the machine sees it in memory, and does not
 * interpret it. Where a member's comment says "of the message layer", the programs that exchange
 * the messages agree on the unit or on the values; the codec knows neither. A flag is off when it
 * is 0 and on otherwise.
 *
 * Arrays. A pointer to an array has its count in another member of the record, which its comment
 * names. To write a record, the array must have at least as many elements as the count says. It may
 * be NULL beside any count: then no element is written, but the count is. In a record that
 * kvt_msg_from_str() made, an array without elements is NULL, and its count can be wrong: that
 * function's comment says when. Counts and elements agree when kvt_check() finds nothing in the
 * text, and in the texts that kvt_msg_arr_from_str() returns.
 *
 * Texts. A text in the record itself ends with a NUL, or fills its array: the writer goes no
 * further. What is read always ends with a NUL and is cut where it is longer. A text that a pointer
 * leads to ends with a NUL; NULL is written like an empty one. Its length stands in another member:
 * the writer writes it as it stands, the reader sets it, and nothing else uses it. An empty text is
 * not written, and reads back as an empty array or as NULL. kvt_msg_to_str() says which characters
 * a text must not hold.
 *
 * Ownership. The writer only reads a record; what its pointers lead to stays the caller's. A record
 * that kvt_msg_from_str() made owns all that its pointers lead to, at any depth, each allocated by
 * calloc or realloc. kvt_msg_release() frees it all with the record. A program may replace such a
 * pointer when it frees the old one and puts in one that free() takes, or NULL.
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
