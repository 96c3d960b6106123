/**
 * @file
 * Events and their time.
 */
#ifndef KVT_MESSAGES_EVENTS_H
#define KVT_MESSAGES_EVENTS_H

#include <stdint.h>

/** A point in time, from the epoch of the message layer; the codec does not interpret it. */
typedef struct vemra_timestamp {
    uint64_t seconds;  /**< seconds */
    uint64_t useconds; /**< microseconds; the codec does not keep them below a second */
} vemra_timestamp;

/** EVENTS_REQUEST */
typedef struct vemra_get_events_request {
    vemra_timestamp ts; /**< what it asks for is up to the message layer */
} vemra_get_events_request;

/** A name and a value. */
typedef struct vemra_event_str_entry {
    uint32_t entry_name_len; /**< size of entry_name with its NUL, in bytes */
    char *entry_name;        /**< NUL-terminated, or NULL; owned by the entry */
    uint32_t value_len;      /**< size of entry_value with its NUL, in bytes */
    char *entry_value;       /**< NUL-terminated, or NULL; owned by the entry */
} vemra_event_str_entry;

/** An event, with names and values; an element of EVENTS_REPLY. */
typedef struct vemra_event {
    uint32_t event_type;    /**< a code of the message layer */
    uint32_t num_str_entry; /**< elements of str_entry_list */
    /** num_str_entry entries, or NULL; owned by the event. */
    vemra_event_str_entry *str_entry_list;
    vemra_timestamp ts; /**< when the event happened */
} vemra_event;

/** EVENTS_REPLY */
typedef struct vemra_event_list {
    uint32_t num_event;  /**< elements of events */
    vemra_event *events; /**< num_event events, or NULL; owned by the record */
} vemra_event_list;

#endif
