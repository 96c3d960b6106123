/**
 * @file
 * The state of the fabric's resources.
 */
#ifndef KVT_MESSAGES_RESOURCE_DATA_H
#define KVT_MESSAGES_RESOURCE_DATA_H

#include <stdint.h>

/** An aggregation tree and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_agg_tree {
    uint32_t tree_num;
    uint32_t priority;
    uint32_t tree_status;
} vemra_resource_agg_tree;

/** A link and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_link {
    uint64_t agg_node_guid; /**< the aggregation node at the link */
    uint32_t port_num;
    uint32_t priority;
    uint32_t link_status;
    uint16_t active_jobs;
} vemra_resource_link;

/** An aggregation node and its state; an element of RESOURCE_DATA. */
typedef struct vemra_resource_agg_node {
    uint64_t agg_node_guid;
    uint32_t priority;
    char ts[100]; /**< NUL-terminated */
    uint32_t agg_node_status;
    uint16_t active_jobs;
    uint16_t trees_num;
} vemra_resource_agg_node;

/** RESOURCE_DATA */
typedef struct vemra_resource_message {
    uint32_t operation;
    uint32_t feature_bitmask;
    uint32_t agg_trees_num; /**< elements of agg_trees */
    vemra_resource_agg_tree *agg_trees;
    uint32_t links_num; /**< elements of links */
    vemra_resource_link *links;
    uint32_t agg_nodes_num; /**< elements of agg_nodes */
    vemra_resource_agg_node *agg_nodes;
} vemra_resource_message;

#endif
