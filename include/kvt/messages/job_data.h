/**
 * @file
 * The data of a job: its daemons, trees, connections and aggregation nodes.
 *
 * GIDs and path records are the types of the InfiniBand verbs, whose members of more than a byte
 * lie in memory in the order of the network. The codec does not convert them: it writes the number
 * that the machine sees there, and stores what it reads. So on a little-endian machine the LID 1 of
 * a path record is the line "dlid: 256", and texts go only between machines of one byte order.
 * Units within a path record are those of the verbs. All other numbers, also GUIDs, LIDs and keys,
 * are numbers of the machine to the codec.
 */
#ifndef KVT_MESSAGES_JOB_DATA_H
#define KVT_MESSAGES_JOB_DATA_H

#include <infiniband/sa.h>
#include <infiniband/verbs.h>
#include <stdint.h>

#include "kvt/messages/job_start.h"

/** The daemon of one host. */
typedef struct vemra_sd_info {
    uint8_t version;    /**< a version of the message layer */
    uint64_t vemrad_id; /**< identifier of the daemon */
    uint8_t addr_type;  /**< kind of the address in addr, a code of the message layer */
    char addr[128];     /**< the address as text, NUL-terminated; at most 127 bytes are read */
} vemra_sd_info;

/** An aggregation tree. */
typedef struct vemra_tree {
    uint64_t feature_mask;        /**< features, bits of the message layer */
    uint16_t tree_id;             /**< identifier of the tree */
    uint16_t peer_tree_id;        /**< identifier of its peer tree */
    uint8_t max_qp_child_idxs;    /**< upper limit of child indexes */
    uint8_t versions[1];          /**< a version of the message layer, 0 for none */
    union ibv_gid mgid;           /**< multicast group, in the order of the network */
    vemra_quota quota;            /**< limits of the tree's resources */
    uint8_t control_path_version; /**< a version of the message layer */
} vemra_tree;

/** A connection between a daemon and an aggregation node. */
typedef struct vemra_tree_conn {
    uint16_t tree_id;   /**< identifier of the tree */
    uint64_t vemrad_id; /**< identifier of the daemon */
    /** Child indexes. The writer ends at the first 255, or after all 64. The reader does not put
     *  the 255 back: places without a line are 0, and 0 is an index as any other. */
    uint8_t qp_child_idxs[64];
    struct ibv_sa_path_rec pr_sd_to_an; /**< path from the daemon to the aggregation node */
    struct ibv_sa_path_rec pr_an_to_sd; /**< path back */
} vemra_tree_conn;

/** An aggregation node. */
typedef struct vemra_tree_an {
    uint64_t guid;         /**< GUID of the node */
    uint16_t lid;          /**< LID of the node */
    uint16_t tree_id;      /**< identifier of the tree */
    uint16_t an_id;        /**< identifier of the node */
    uint16_t parent_an_id; /**< identifier of its parent node */
} vemra_tree_an;

/** Options of queue pairs. The codec interprets none: units and modes are of the message layer. */
typedef struct vemra_qpc_options {
    uint32_t qkey;               /**< queue key */
    uint32_t flow_label;         /**< flow label */
    uint16_t pkey;               /**< partition key */
    uint8_t sl;                  /**< service level */
    uint8_t tclass;              /**< traffic class */
    uint8_t rnr_mode;            /**< mode of receiver not ready, a code of the message layer */
    uint8_t rnr_retry_limit;     /**< upper limit of retries when the receiver is not ready */
    uint8_t local_ack_timeout;   /**< in the unit of the message layer */
    uint8_t timeout_retry_limit; /**< upper limit of retries after a timeout */
} vemra_qpc_options;

/** JOB_DATA: all that a job works with. */
typedef struct vemra_job_data {
    uint64_t job_id;                /**< identifier of the job */
    uint64_t master_vemrad_id;      /**< identifier of the master daemon */
    uint32_t vemra_job_id;          /**< the job's number within the aggregation service */
    uint32_t uid;                   /**< user id */
    uint32_t hosts_num;             /**< elements of hosts_sd_info */
    uint32_t trees_num;             /**< elements of trees */
    uint32_t conns_num;             /**< elements of conns */
    uint64_t agg_nodes_num;         /**< elements of agg_nodes */
    vemra_qpc_options qpc_opts;     /**< options of queue pairs */
    vemra_qpc_options sat_qpc_opts; /**< a second set of them */
    vemra_sd_info *hosts_sd_info;   /**< hosts_num daemons, or NULL; owned by the record */
    vemra_tree *trees;              /**< trees_num trees, or NULL; owned by the record */
    vemra_tree_conn *conns;         /**< conns_num connections, or NULL; owned by the record */
    vemra_tree_an *agg_nodes;       /**< agg_nodes_num nodes, or NULL; owned by the record */
    uint64_t job_key;               /**< key of the job */
    uint64_t reservation_id;        /**< the reservation that the job runs in */
} vemra_job_data;

#endif
