/**
 * @file
 * The aggregation groups of a running job: asked for, granted, given back.
 */
#ifndef KVT_MESSAGES_GROUPS_H
#define KVT_MESSAGES_GROUPS_H

#include <infiniband/verbs.h>
#include <stdint.h>

#include "kvt/messages/job_start.h"

/** Groups in one message, at most. */
enum { VEMRA_MAX_GROUPS = 4 };

/** A group that is asked for; an element of ALLOC_GROUPS. */
typedef struct vemra_alloc_group {
    uint64_t subnet_prefix;
    uint16_t tree_id;
    uint16_t num_osts;
} vemra_alloc_group;

/** ALLOC_GROUPS: asks for groups. */
typedef struct vemra_alloc_groups {
    uint64_t job_id;
    uint64_t tid;
    uint8_t num_groups; /**< entries of groups in use */
    vemra_alloc_group groups[VEMRA_MAX_GROUPS];
    uint32_t num_processes; /**< elements of processes */
    uint32_t *processes;
} vemra_alloc_groups;

/** A group that is given back; an element of RELEASE_GROUPS. */
typedef struct vemra_release_group {
    uint64_t subnet_prefix;
    uint32_t group_id;
    uint16_t tree_id;
} vemra_release_group;

/** RELEASE_GROUPS: gives groups back. */
typedef struct vemra_release_groups {
    uint64_t job_id;
    uint32_t vemra_job_id;
    uint8_t num_groups; /**< entries of groups in use */
    vemra_release_group groups[VEMRA_MAX_GROUPS];
} vemra_release_groups;

/** A group that was granted; an element of GROUPS_DATA. */
typedef struct vemra_group_data {
    uint64_t subnet_prefix;
    uint32_t group_id;
    uint16_t tree_idx;
    uint32_t tree_id;
    uint16_t mlid; /**< multicast LID */
    uint8_t data_path_trim;
    union ibv_gid mgid;
    vemra_quota quota;
} vemra_group_data;

/** GROUPS_DATA: describes the groups granted. */
typedef struct vemra_groups_data {
    uint64_t job_id;
    uint64_t tid;
    uint32_t vemra_job_id;
    uint8_t num_groups; /**< entries of groups in use */
    vemra_group_data groups[VEMRA_MAX_GROUPS];
} vemra_groups_data;

#endif
