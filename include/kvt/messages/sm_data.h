/**
 * @file
 * Subnet-manager data, the answer to vemra_request_sm_data.
 */
#ifndef KVT_MESSAGES_SM_DATA_H
#define KVT_MESSAGES_SM_DATA_H

#include <stdint.h>

/** A node of the fat-tree file; an element of vemra_ftree_file_data. */
typedef struct vemra_ftree_file_node {
    uint16_t lid; /**< LID of the node */
} vemra_ftree_file_node;

/** The nodes of the fat-tree file; a part of vemra_sm_data. */
typedef struct vemra_ftree_file_data {
    uint32_t array_len;                /**< elements of file_nodes */
    vemra_ftree_file_node *file_nodes; /**< array_len nodes, or NULL; owned by the record */
} vemra_ftree_file_data;

/** SM_DATA: subnet-manager data with the nodes of the fat-tree file. */
typedef struct vemra_sm_data {
    uint64_t job_id;                  /**< identifier of the job */
    uint32_t data_type;               /**< as in the request */
    uint32_t status;                  /**< a code of the message layer */
    vemra_ftree_file_data ftree_data; /**< the nodes of the fat-tree file */
} vemra_sm_data;

#endif
