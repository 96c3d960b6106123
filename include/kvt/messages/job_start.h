/**
 * @file
 * The start of a job.
 */
#ifndef KVT_MESSAGES_JOB_START_H
#define KVT_MESSAGES_JOB_START_H

#include <stdint.h>

/** Limits of resources, each in the unit of the message layer; a part of other records. */
typedef struct vemra_quota {
    uint32_t max_osts;          /**< upper limit of OSTs */
    uint32_t user_data_per_ost; /**< user data amount per OST */
    uint32_t max_buffers;       /**< upper limit of buffers */
    uint32_t max_groups;        /**< upper limit of groups */
    uint32_t max_qps;           /**< upper limit of queue pairs */
} vemra_quota;

/** BEGIN_JOB: starts a job. */
typedef struct vemra_begin_job {
    uint64_t job_id;            /**< identifier of the job */
    uint32_t uid;               /**< user id */
    uint8_t priority;           /**< of the job; its range and order are of the message layer */
    float quota_percentage;     /**< share of the resources, in percent, written with six digits */
    vemra_quota quota;          /**< limits of the job's resources */
    uint32_t hosts_len;         /**< size of hosts with its NUL, in bytes */
    char *hosts;                /**< names with commas between them, or NULL; owned by the record */
    uint8_t num_rails;          /**< number of rails */
    uint8_t num_trees;          /**< number of trees */
    uint32_t num_guids;         /**< elements of port_guids */
    uint64_t *port_guids;       /**< num_guids GUIDs of ports, or NULL; owned by the record */
    uint8_t num_channels;       /**< number of channels */
    uint16_t pkey;              /**< partition key */
    uint8_t enable_mcast;       /**< flag: multicast is wanted */
    uint64_t req_feature_mask;  /**< requested features, bits of the message layer */
    uint32_t reproducible_mode; /**< mode of reproducible results, a code of the message layer */
    uint32_t exclusive_lock;    /**< the lock that is asked for, a code of the message layer */
} vemra_begin_job;

#endif
