/**
 * @file
 * The start of a job.
 */
#ifndef KVT_MESSAGES_JOB_START_H
#define KVT_MESSAGES_JOB_START_H

#include <stdint.h>

/** Limits of resources; a part of other records. */
typedef struct vemra_quota {
    uint32_t max_osts;          /**< upper limit of OSTs */
    uint32_t user_data_per_ost; /**< user data amount per OST */
    uint32_t max_buffers;       /**< upper limit of buffers */
    uint32_t max_groups;        /**< upper limit of groups */
    uint32_t max_qps;           /**< upper limit of queue pairs */
} vemra_quota;

/** BEGIN_JOB: starts a job. */
typedef struct vemra_begin_job {
    uint64_t job_id;
    uint32_t uid;
    uint8_t priority;
    float quota_percentage; /**< share of the resources, in percent */
    vemra_quota quota;
    uint32_t hosts_len; /**< size of hosts with its NUL */
    char *hosts;        /**< names separated by commas */
    uint8_t num_rails;
    uint8_t num_trees;
    uint32_t num_guids; /**< elements of port_guids */
    uint64_t *port_guids;
    uint8_t num_channels;
    uint16_t pkey; /**< partition key */
    uint8_t enable_mcast;
    uint64_t req_feature_mask; /**< requested feature bits */
    uint32_t reproducible_mode;
    uint32_t exclusive_lock;
} vemra_begin_job;

#endif
