/**
 * @file
 * Jobs as management sees them.
 */
#ifndef KVT_MESSAGES_JOB_INFO_H
#define KVT_MESSAGES_JOB_INFO_H

#include <stdint.h>

/** JOB_INFO_REQUEST: asks for all jobs. */
typedef struct vemra_mgmt_job_info_list_request {
    uint8_t reserved[8]; /**< up to the first 0 */
} vemra_mgmt_job_info_list_request;

/** A job; an element of JOB_INFO_REPLY. */
typedef struct vemra_mgmt_job_info {
    uint64_t allocation_id;
    uint64_t external_job_id;
    uint64_t vemra_job_id; /**< 64 bits here, 32 in other records */
    uint64_t start_time;
    uint32_t job_state;
    uint8_t num_local_connections;
    uint8_t reserved[11]; /**< up to the first 0 */
    uint64_t reservation_id;
} vemra_mgmt_job_info;

/** JOB_INFO_REPLY: lists jobs. */
typedef struct vemra_mgmt_job_info_list {
    uint64_t job_list_len; /**< elements of job_list */
    vemra_mgmt_job_info *job_list;
} vemra_mgmt_job_info_list;

/** PERSISTENT_JOB_INFO: the stored description of one job. */
typedef struct persistent_job_info {
    uint8_t version;
    uint64_t job_id;
    uint32_t vemra_job_id;
    uint8_t addr_type; /**< kind of the address in addr */
    char addr[128];    /**< NUL-terminated */
    uint64_t reservation_id;
    uint32_t job_state;
    uint8_t exclusive_lock;
    uint64_t job_key;
    uint8_t priority;
    uint32_t num_host_guids; /**< elements of host_guids */
    uint64_t *host_guids;
    uint8_t num_channels_per_conn;
    uint8_t num_rails;
    uint8_t num_trees_req;
    uint32_t num_trees; /**< elements of tree_ids */
    uint16_t *tree_ids;
} persistent_job_info;

#endif
