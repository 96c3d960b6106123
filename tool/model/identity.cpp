#include "model/identity.h"

#include <initializer_list>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/hash.h"
#include "model/record_content.h"
#include "tables/records.h"

namespace kvt_tool {

namespace {

using Rows = std::vector<const Row *>;

template <typename Type>
std::pair<const Record *const, Rows> by(std::initializer_list<std::string_view> keys) {
    const Record &table = kvt_str::RecordOf<Type>::table;
    Rows rows;
    for (const std::string_view key : keys) {
        rows.push_back(find_row(table, key));
    }
    return {&table, std::move(rows)};
}

/// What stays the same as long as people say that it is the same thing, and no other thing of its
/// list has. A record with none is a mere value, a question without parameters, or one of a kind in
/// its message.
const std::unordered_map<const Record *, Rows> &identities() {
    static const std::unordered_map<const Record *, Rows> all = {
        // Messages. A job is asked for, described and ended by its number; groups in transactions.
        by<vemra_begin_job>({"job_id"}),
        by<vemra_end_job>({"job_id"}),
        by<vemra_job_data>({"job_id"}),
        by<vemra_alloc_groups>({"job_id", "tid"}),
        by<vemra_groups_data>({"job_id", "tid"}),
        by<vemra_release_groups>({"job_id"}),
        by<vemra_request_sm_data>({"job_id", "data_type"}),
        by<vemra_sm_data>({"job_id", "data_type"}),
        by<vemra_job_error>({"job_id", "tree_id"}),
        by<persistent_job_info>({"job_id"}),
        by<vemra_create_reservation>({"reservation_id"}),
        by<vemra_delete_reservation>({"reservation_id"}),
        by<vemra_reservation_info_request>({"reservation_id"}),
        by<vemra_reservation_info>({"reservation_id"}), // an element of lists, too

        // Elements. A daemon has one connection to each tree, an aggregation node one place in it.
        by<vemra_sd_info>({"vemrad_id"}),
        by<vemra_tree>({"tree_id"}),
        by<vemra_tree_conn>({"tree_id", "vemrad_id"}),
        by<vemra_tree_an>({"guid", "tree_id"}),
        by<vemra_alloc_group>({"subnet_prefix", "tree_id"}),
        by<vemra_group_data>({"subnet_prefix", "group_id", "tree_id"}),
        by<vemra_release_group>({"subnet_prefix", "group_id", "tree_id"}),
        by<vemra_ftree_file_node>({"lid"}),
        by<vemra_mgmt_job_info>({"external_job_id", "vemra_job_id"}),
        by<vemra_topology_switch_info>({"id"}),
        by<vemra_event_str_entry>({"entry_name"}),
        by<vemra_resource_agg_tree>({"tree_num"}),
        by<vemra_resource_link>({"agg_node_guid", "port_num"}),
        by<vemra_resource_agg_node>({"agg_node_guid"}),
    };
    return all;
}

/// What people call a thing whose identity is a mere number.
const Row *name_of(const Record &table) {
    static const std::unordered_map<const Record *, Rows> all = {
        by<vemra_sd_info>({"addr"}),
        by<vemra_topology_switch_info>({"name"}),
    };
    const auto found = all.find(&table);
    return found != all.end() ? found->second.front() : nullptr;
}

void append_field(std::string &text, const Row &row, const void *record, GuidForm guids) {
    if (!text.empty()) {
        text += ", ";
    }
    text.append(key_of(row)).append(" ").append(shown_value(row, record, guids));
}

bool tells_something(const Record &table, const Row &row, const void *record) {
    switch (shape_of(row)) {
    case Shape::number:
        return number_of(row, record) != 0 && counted_by(table, row) == nullptr;
    case Shape::text:
        return !text_of(row, record).empty();
    default:
        return false;
    }
}

} // namespace

std::span<const Row *const> identity_of(const Record &table) {
    const auto found = identities().find(&table);
    return found != identities().end() ? std::span<const Row *const>(found->second)
                                       : std::span<const Row *const>();
}

uint64_t identity_hash(const Record &table, const void *record) {
    uint64_t hash = 0;
    for (const Row *row : identity_of(table)) {
        hash = mix_in(hash, value_hash(*row, record));
    }
    return hash;
}

std::string identity_text(const Record &table, const void *record, GuidForm guids) {
    std::string text;
    for (const Row *row : identity_of(table)) {
        append_field(text, *row, record, guids);
    }
    const Row *name = name_of(table);
    if (name != nullptr && tells_something(table, *name, record)) {
        append_field(text, *name, record, guids);
    }
    return text;
}

std::string hint_text(const Record &table, const void *record, GuidForm guids) {
    constexpr size_t most_fields = 3;
    std::string text;
    size_t fields = 0;
    for (const Row &row : table.rows) {
        if (fields < most_fields && tells_something(table, row, record)) {
            append_field(text, row, record, guids);
            ++fields;
        }
    }
    return text;
}

} // namespace kvt_tool
