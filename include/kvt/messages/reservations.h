/**
 * @file
 * Reservations of ports and resources.
 */
#ifndef KVT_MESSAGES_RESERVATIONS_H
#define KVT_MESSAGES_RESERVATIONS_H

#include <stdint.h>

/** Amounts of resources; a part of other records. */
typedef struct vemra_reservation_resources {
    uint32_t num_osts;   /**< number of OSTs */
    uint32_t num_groups; /**< number of groups */
    uint32_t num_qps;    /**< number of queue pairs */
    uint32_t num_trees;  /**< number of aggregation trees */
    uint32_t num_jobs;   /**< number of jobs */
    uint32_t priority;   /**< of the reservation; its range and order are of the message layer */
    uint32_t percentage; /**< share of the resources, in percent */
    uint8_t sat;         /**< a setting of the message layer */
} vemra_reservation_resources;

/** CREATE_RESERVATION: asks for a reservation. */
typedef struct vemra_create_reservation {
    uint64_t reservation_id;               /**< identifier of the reservation */
    uint16_t pkey;                         /**< partition key */
    uint32_t num_guids;                    /**< elements of port_guids */
    uint64_t *port_guids;                  /**< num_guids GUIDs, or NULL; owned by the record */
    vemra_reservation_resources resources; /**< what is asked for */
} vemra_create_reservation;

/** DELETE_RESERVATION: deletes a reservation. */
typedef struct vemra_delete_reservation {
    uint64_t reservation_id; /**< the reservation to delete */
    uint8_t force_delete;    /**< flag: delete it by force */
} vemra_delete_reservation;

/** RESERVATION_INFO_REQUEST: asks about a reservation. */
typedef struct vemra_reservation_info_request {
    uint64_t reservation_id; /**< the reservation asked about */
    uint32_t full_info;      /**< flag: the full information is wanted */
} vemra_reservation_info_request;

/** PERSISTENT_RESERVATION_INFO, and an element of RESERVATION_INFO_REPLY. */
typedef struct vemra_reservation_info {
    uint64_t reservation_id;               /**< identifier of the reservation */
    uint16_t pkey;                         /**< partition key */
    uint32_t state;                        /**< a code of the message layer */
    uint32_t num_guids;                    /**< elements of port_guids */
    uint64_t *port_guids;                  /**< num_guids GUIDs, or NULL; owned by the record */
    vemra_reservation_resources resources; /**< what is reserved */
} vemra_reservation_info;

/** RESERVATION_INFO_REPLY: lists reservations. */
typedef struct vemra_reservation_info_list {
    /** Elements of reservation_list, fewer than 2^32: the writer takes the low 32 bits for their
     *  number. */
    uint64_t reservation_list_len;
    /** reservation_list_len reservations, or NULL; owned by the record. */
    vemra_reservation_info *reservation_list;
    uint32_t status; /**< a code of the message layer */
} vemra_reservation_info_list;

#endif
