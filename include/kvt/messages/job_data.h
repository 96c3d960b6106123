/**
 * @file
 * The data of a job: its daemons, trees, connections and aggregation nodes.
 */
#ifndef KVT_MESSAGES_JOB_DATA_H
#define KVT_MESSAGES_JOB_DATA_H

#include <infiniband/sa.h>
#include <infiniband/verbs.h>
#include <stdint.h>

#include "kvt/messages/job_start.h"

/** The daemon of one host. */
typedef struct vemra_sd_info {
    uint8_t version;
    uint64_t vemrad_id; /**< identifier of the daemon */
    uint8_t addr_type;  /**< kind of the address in addr */
    char addr[128];     /**< NUL-terminated */
} vemra_sd_info;

/** An aggregation tree. */
typedef struct vemra_tree {
    uint64_t feature_mask;
    uint16_t tree_id;
    uint16_t peer_tree_id;
    uint8_t max_qp_child_idxs;
    uint8_t versions[1]; /**< 0 for none */
    union ibv_gid mgid;  /**< multicast group */
    vemra_quota quota;
    uint8_t control_path_version;
} vemra_tree;

/** A connection between a daemon and an aggregation node. */
typedef struct vemra_tree_conn {
    uint16_t tree_id;
    uint64_t vemrad_id;
    uint8_t qp_child_idxs[64]; /**< 255 after the last one in use, where there are fewer than 64 */
    struct ibv_sa_path_rec pr_sd_to_an; /**< path from the daemon to the aggregation node */
    struct ibv_sa_path_rec pr_an_to_sd; /**< path back */
} vemra_tree_conn;

/** An aggregation node. */
typedef struct vemra_tree_an {
    uint64_t guid;
    uint16_t lid;
    uint16_t tree_id;
    uint16_t an_id;
    uint16_t parent_an_id;
} vemra_tree_an;

/** Options of queue pairs. */
typedef struct vemra_qpc_options {
    uint32_t qkey;
    uint32_t flow_label;
    uint16_t pkey;
    uint8_t sl;
    uint8_t tclass;
    uint8_t rnr_mode;
    uint8_t rnr_retry_limit;
    uint8_t local_ack_timeout;
    uint8_t timeout_retry_limit;
} vemra_qpc_options;

/** JOB_DATA: all that a job works with. */
typedef struct vemra_job_data {
    uint64_t job_id;
    uint64_t master_vemrad_id;
    uint32_t vemra_job_id; /**< the job's number within the aggregation service */
    uint32_t uid;
    uint32_t hosts_num;     /**< elements of hosts_sd_info */
    uint32_t trees_num;     /**< elements of trees */
    uint32_t conns_num;     /**< elements of conns */
    uint64_t agg_nodes_num; /**< elements of agg_nodes */
    vemra_qpc_options qpc_opts;
    vemra_qpc_options sat_qpc_opts;
    vemra_sd_info *hosts_sd_info;
    vemra_tree *trees;
    vemra_tree_conn *conns;
    vemra_tree_an *agg_nodes;
    uint64_t job_key;
    uint64_t reservation_id; /**< the reservation that the job runs in */
} vemra_job_data;

#endif
