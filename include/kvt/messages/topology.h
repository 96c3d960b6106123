/**
 * @file
 * The switches of the fabric and how they are connected.
 */
#ifndef KVT_MESSAGES_TOPOLOGY_H
#define KVT_MESSAGES_TOPOLOGY_H

#include <stdint.h>

/** TOPOLOGY_INFO_REQUEST: asks for the switches of some ports. */
typedef struct vemra_topology_info_request {
    uint32_t num_guids;   /**< elements of port_guids */
    uint64_t *port_guids; /**< num_guids GUIDs, or NULL; owned by the record */
} vemra_topology_info_request;

/** A switch and its connections; an element of TOPOLOGY_INFO_REPLY. */
typedef struct vemra_topology_switch_info {
    uint32_t id;           /**< identifier of the switch */
    char name[64];         /**< NUL-terminated; at most 63 bytes are read */
    uint32_t num_peer_ids; /**< elements of peer_ids */
    /** num_peer_ids identifiers of the switches that it is connected with, or NULL; owned by the
     *  switch. */
    uint32_t *peer_ids;
    uint32_t num_port_guids; /**< elements of port_guids */
    uint64_t *port_guids;    /**< num_port_guids GUIDs of its ports, or NULL; owned by the switch */
} vemra_topology_switch_info;

/** TOPOLOGY_INFO_REPLY: lists switches. */
typedef struct vemra_topology_info_list {
    uint32_t num_switches; /**< elements of switches */
    vemra_topology_switch_info
        *switches;   /**< num_switches switches, or NULL; owned by the record */
    uint32_t status; /**< a code of the message layer */
} vemra_topology_info_list;

#endif
