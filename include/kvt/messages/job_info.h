/**
 * @file
 * Jobs as management sees them.
 */
#ifndef KVT_MESSAGES_JOB_INFO_H
#define KVT_MESSAGES_JOB_INFO_H

#include <stdint.h>

/** JOB_INFO_REQUEST: asks for all jobs. */
typedef struct vemra_mgmt_job_info_list_request {
    uint8_t reserved[8]; /**< bytes of the message layer, used up to the first 0 */
} vemra_mgmt_job_info_list_request;

/** A job; an element of JOB_INFO_REPLY. */
typedef struct vemra_mgmt_job_info {
    uint64_t allocation_id;   /**< identifier of the allocation */
    uint64_t external_job_id; /**< external identifier of the job */
    uint64_t vemra_job_id;    /**< its number within the service; 32 bits in other records */
    /** When the job started, in the unit of the message layer and from its epoch; the codec does
     *  not interpret it. */
    uint64_t start_time;
    uint32_t job_state;            /**< a code of the message layer */
    uint8_t num_local_connections; /**< number of local connections */
    uint8_t reserved[11];          /**< bytes of the message layer, used up to the first 0 */
    uint64_t reservation_id;       /**< the reservation that the job runs in */
} vemra_mgmt_job_info;

/** JOB_INFO_REPLY: lists jobs. */
typedef struct vemra_mgmt_job_info_list {
    uint64_t job_list_len;         /**< elements of job_list */
    vemra_mgmt_job_info *job_list; /**< job_list_len jobs, or NULL; owned by the record */
} vemra_mgmt_job_info_list;

/** PERSISTENT_JOB_INFO: the stored description of one job. */
typedef struct persistent_job_info {
    uint8_t version;         /**< of the stored description */
    uint64_t job_id;         /**< identifier of the job */
    uint32_t vemra_job_id;   /**< the job's number within the aggregation service */
    uint8_t addr_type;       /**< kind of the address in addr, a code of the message layer */
    char addr[128];          /**< the address as text, NUL-terminated; at most 127 bytes are read */
    uint64_t reservation_id; /**< the reservation that the job runs in */
    uint32_t job_state;      /**< a code of the message layer */
    uint8_t exclusive_lock;  /**< flag: the job has an exclusive lock */
    uint64_t job_key;        /**< key of the job */
    uint8_t priority;        /**< of the job; its range and order are of the message layer */
    uint32_t num_host_guids; /**< elements of host_guids */
    uint64_t *host_guids;    /**< num_host_guids GUIDs, or NULL; owned by the record */
    uint8_t num_channels_per_conn; /**< channels of each connection */
    uint8_t num_rails;             /**< number of rails */
    uint8_t num_trees_req;         /**< number of trees that were asked for */
    uint32_t num_trees;            /**< elements of tree_ids */
    uint16_t *tree_ids;            /**< num_trees identifiers, or NULL; owned by the record */
} persistent_job_info;

#endif
