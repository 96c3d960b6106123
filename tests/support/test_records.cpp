#include "support/test_records.h"

#include "engine/table.h"

namespace kvt_str {

// clang-format off
// The first ones are unrolled, the last two are walked.
UNROLLED_RECORD(test_entry,
    _kvt_txt_pack_msg_test_entry, _kvt_txt_unpack_msg_test_entry,
    at_levels(2),
    FIELD(id),
    FIELD(name_len),
    JOINED_TEXT(name, name_len),
    FIELD(num_small),
    ARRAY(small, num_small));

DEFINE_RECORD(test_address,
    _kvt_txt_pack_msg_test_address, _kvt_txt_unpack_msg_test_address,
    Reading::merged_and_untraced, at_levels(2),
    FIELD(prefix, shared_value),
    FIELD(guid, shared_value),
    FIELD(plain));

UNROLLED_RECORD(test_slot,
    _kvt_txt_pack_msg_test_slot, _kvt_txt_unpack_msg_test_slot,
    at_levels(2),
    FIELD(tree_idx),
    FIELD(tree_id));

UNROLLED_RECORD(test_everything,
    _kvt_txt_pack_msg_test_everything, _kvt_txt_unpack_msg_test_everything,
    at_levels(1, 3),
    FIELD(byte),
    FIELD(word),
    FIELD(number_always, always),
    FIELD(number),
    FIELD(large),
    FIELD(signed_number),
    FIELD(share_exact),
    FIELD(share, shared_value),
    FIELD(mode, always | shared_value),
    FIELD(text),
    FIELD(hosts_len),
    JOINED_TEXT(hosts, hosts_len),
    FIELD(num_shorts),
    ARRAY(shorts, num_shorts),
    FIELD(num_ids),
    ARRAY(ids, num_ids),
    FIELD(num_guids),
    ARRAY(guids, num_guids),
    BYTES(indexes, 255, clear_at_run),
    BYTES(reserved, 0),
    BLOCK(address),
    FIELD(entries_len),
    RUN(entries, entries_len, low_32_bits),
    FIELD(num_slots),
    SLOTS(slots, num_slots));

RECORD(test_group,
    _kvt_txt_pack_msg_test_group, _kvt_txt_unpack_msg_test_group,
    FIELD(num_entries),
    RUN(entries, num_entries));

RECORD(test_tree,
    _kvt_txt_pack_msg_test_tree, _kvt_txt_unpack_msg_test_tree,
    FIELD(groups_num),
    RUN(groups, groups_num),
    FIELD(others_num),
    RUN_AS("other_slots", others, others_num));
// clang-format on

} // namespace kvt_str
