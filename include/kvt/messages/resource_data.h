/**
 * @file
 * The state of the fabric's resources.
 */
#ifndef KVT_MESSAGES_RESOURCE_DATA_H
#define KVT_MESSAGES_RESOURCE_DATA_H

#include <stdint.h>

/** An aggregation tree and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_agg_tree {
    uint32_t tree_num;    /**< number of the tree */
    uint32_t priority;    /**< its range and order are of the message layer */
    uint32_t tree_status; /**< a code of the message layer */
} vemra_resource_agg_tree;

/** A link and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_link {
    uint64_t agg_node_guid; /**< GUID of the aggregation node at the link */
    uint32_t port_num;      /**< number of the port */
    uint32_t priority;      /**< its range and order are of the message layer */
    uint32_t link_status;   /**< a code of the message layer */
    uint16_t active_jobs;   /**< number of active jobs on the link */
} vemra_resource_link;

/** An aggregation node and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_agg_node {
    uint64_t agg_node_guid; /**< GUID of the node */
    uint32_t priority;      /**< its range and order are of the message layer */
    char ts[100]; /**< a text of the message layer, NUL-terminated; at most 99 bytes are read */
    uint32_t agg_node_status; /**< a code of the message layer */
    uint16_t active_jobs;     /**< number of active jobs on the node */
    uint16_t trees_num;       /**< number of trees on the node */
} vemra_resource_agg_node;

/** RESOURCE_DATA: reports the state of trees, links and nodes. */
typedef struct vemra_resource_message {
    uint32_t operation;                 /**< a code of the message layer */
    uint32_t feature_bitmask;           /**< features, bits of the message layer */
    uint32_t agg_trees_num;             /**< elements of agg_trees */
    vemra_resource_agg_tree *agg_trees; /**< agg_trees_num trees, or NULL; owned by the record */
    uint32_t links_num;                 /**< elements of links */
    vemra_resource_link *links;         /**< links_num links, or NULL; owned by the record */
    uint32_t agg_nodes_num;             /**< elements of agg_nodes */
    vemra_resource_agg_node *agg_nodes; /**< agg_nodes_num nodes, or NULL; owned by the record */
} vemra_resource_message;

#endif
