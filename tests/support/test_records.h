// Records of the tests' own: together they have every kind of row that the format knows.
#pragma once

#include <cstdint>

#include "engine/codec.h"

extern "C" {

typedef struct test_entry {
    uint32_t id;
    uint32_t name_len;
    char *name;
    uint32_t num_small;
    uint16_t *small;
} test_entry;

/* Neither cleared nor traced, with a value that its fields share. */
typedef struct test_address {
    uint64_t prefix;
    uint64_t guid;
    uint32_t plain;
} test_address;

typedef struct test_slot {
    uint16_t tree_idx;
    uint32_t tree_id;
} test_slot;

typedef struct test_everything {
    uint8_t byte;
    uint16_t word;
    uint32_t number;
    uint32_t number_always;
    uint64_t large;
    int32_t signed_number;
    float share_exact;
    uint32_t share;
    uint32_t mode;
    char text[64];
    uint32_t hosts_len;
    char *hosts;
    uint32_t num_shorts;
    uint16_t *shorts;
    uint32_t num_ids;
    uint32_t *ids;
    uint32_t num_guids;
    uint64_t *guids;
    uint8_t indexes[64];
    uint8_t reserved[3];
    test_address address;
    uint64_t entries_len;
    test_entry *entries;
    uint8_t num_slots;
    test_slot slots[4];
} test_everything;

/* A record whose elements hold elements of their own. */
typedef struct test_group {
    uint32_t num_entries;
    test_entry *entries;
} test_group;

typedef struct test_tree {
    uint32_t groups_num;
    test_group *groups;
    uint64_t others_num;
    test_slot *others;
} test_tree;
}

namespace kvt_str {

#define DECLARE_TEST_RECORD(type)                                                                  \
    template <> const Record RecordOf<type>::table;                                                \
    template <> const Codec CodecOf<type>::codec;                                                  \
    PackRoutine _kvt_txt_pack_msg_##type;                                                          \
    UnpackRoutine _kvt_txt_unpack_msg_##type

DECLARE_TEST_RECORD(test_entry);
DECLARE_TEST_RECORD(test_address);
DECLARE_TEST_RECORD(test_slot);
DECLARE_TEST_RECORD(test_everything);
DECLARE_TEST_RECORD(test_group);
DECLARE_TEST_RECORD(test_tree);

} // namespace kvt_str
