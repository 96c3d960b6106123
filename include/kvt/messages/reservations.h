/**
 * @file
 * Reservations of ports and resources.
 */
#ifndef KVT_MESSAGES_RESERVATIONS_H
#define KVT_MESSAGES_RESERVATIONS_H

#include <stdint.h>

/** Amounts of resources; a part of other records. */
typedef struct vemra_reservation_resources {
    uint32_t num_osts;
    uint32_t num_groups;
    uint32_t num_qps; /**< queue pairs */
    uint32_t num_trees;
    uint32_t num_jobs;
    uint32_t priority;
    uint32_t percentage; /**< share of the resources */
    uint8_t sat;
} vemra_reservation_resources;

/** CREATE_RESERVATION */
typedef struct vemra_create_reservation {
    uint64_t reservation_id;
    uint16_t pkey;
    uint32_t num_guids; /**< elements of port_guids */
    uint64_t *port_guids;
    vemra_reservation_resources resources;
} vemra_create_reservation;

/** DELETE_RESERVATION */
typedef struct vemra_delete_reservation {
    uint64_t reservation_id;
    uint8_t force_delete; /**< not 0: forced */
} vemra_delete_reservation;

/** RESERVATION_INFO_REQUEST */
typedef struct vemra_reservation_info_request {
    uint64_t reservation_id;
    uint32_t full_info; /**< not 0: the full information */
} vemra_reservation_info_request;

/** PERSISTENT_RESERVATION_INFO, and an element of RESERVATION_INFO_REPLY. */
typedef struct vemra_reservation_info {
    uint64_t reservation_id;
    uint16_t pkey;
    uint32_t state;
    uint32_t num_guids; /**< elements of port_guids */
    uint64_t *port_guids;
    vemra_reservation_resources resources;
} vemra_reservation_info;

/** RESERVATION_INFO_REPLY */
typedef struct vemra_reservation_info_list {
    uint64_t reservation_list_len; /**< elements of reservation_list, fewer than 2^32 */
    vemra_reservation_info *reservation_list;
    uint32_t status;
} vemra_reservation_info_list;

#endif
