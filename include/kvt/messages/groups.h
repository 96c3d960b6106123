/**
 * @file
 * The aggregation groups of a running job: asked for, granted, given back.
 *
 * The groups stand in the record itself, in an array of VEMRA_MAX_GROUPS. num_groups says how many
 * of them are in use. The writer writes that number as it is, and no more groups than there are
 * places. After reading it can be greater than VEMRA_MAX_GROUPS: compare before you walk them.
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
    uint64_t subnet_prefix; /**< subnet prefix of the group */
    uint16_t tree_id;       /**< identifier of the tree */
    uint16_t num_osts;      /**< number of OSTs */
} vemra_alloc_group;

/** ALLOC_GROUPS: asks for groups. */
typedef struct vemra_alloc_groups {
    uint64_t job_id;                            /**< identifier of the job */
    uint64_t tid;                               /**< an identifier of the message layer */
    uint8_t num_groups;                         /**< entries of groups in use */
    vemra_alloc_group groups[VEMRA_MAX_GROUPS]; /**< the groups that are asked for */
    uint32_t num_processes;                     /**< elements of processes */
    /** num_processes numbers of the message layer, or NULL; owned by the record. */
    uint32_t *processes;
} vemra_alloc_groups;

/** A group that is given back; an element of RELEASE_GROUPS. */
typedef struct vemra_release_group {
    uint64_t subnet_prefix; /**< subnet prefix of the group */
    uint32_t group_id;      /**< identifier of the group */
    uint16_t tree_id;       /**< identifier of the tree */
} vemra_release_group;

/** RELEASE_GROUPS: gives groups back. */
typedef struct vemra_release_groups {
    uint64_t job_id;                              /**< identifier of the job */
    uint32_t vemra_job_id;                        /**< its number within the aggregation service */
    uint8_t num_groups;                           /**< entries of groups in use */
    vemra_release_group groups[VEMRA_MAX_GROUPS]; /**< the groups that are given back */
} vemra_release_groups;

/** A group that was granted; an element of GROUPS_DATA. */
typedef struct vemra_group_data {
    uint64_t subnet_prefix; /**< subnet prefix of the group */
    uint32_t group_id;      /**< identifier of the group */
    uint16_t tree_idx;      /**< an index of the message layer */
    uint32_t tree_id;       /**< identifier of the tree; 16 bits in other records */
    uint16_t mlid;          /**< multicast LID */
    uint8_t data_path_trim; /**< a code of the message layer */
    /** Multicast group. Its halves lie in memory in the order of the network; the codec writes the
     *  numbers that the machine sees there, without a conversion. */
    union ibv_gid mgid;
    vemra_quota quota; /**< limits of the group's resources */
} vemra_group_data;

/** GROUPS_DATA: describes the groups granted. */
typedef struct vemra_groups_data {
    uint64_t job_id;                           /**< identifier of the job */
    uint64_t tid;                              /**< an identifier of the message layer */
    uint32_t vemra_job_id;                     /**< its number within the aggregation service */
    uint8_t num_groups;                        /**< entries of groups in use */
    vemra_group_data groups[VEMRA_MAX_GROUPS]; /**< the groups that were granted */
} vemra_groups_data;

#endif
