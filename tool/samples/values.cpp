#include "samples/rules.h"

namespace kvt_tool {

using namespace kvt_str;

Scene::Scene(uint64_t fabric_seed, uint32_t sample_size, uint64_t number, uint64_t step)
    : seed(fabric_seed), moment(step), size(sample_size), job_number(number), time(0),
      random(mixed(mixed(seed, number), step)), fabric(seed), job(seed, number), switches(size),
      nodes(size) {
    constexpr uint64_t seconds_between = 20;
    time = fabric.start_time() + seconds_between * step;
}

uint64_t index_from_1(const Site &at) {
    return at.index + 1;
}

uint64_t trees(const Site &at) {
    return std::min<uint64_t>(at.scene.size, 2);
}

uint64_t tree_id(const Site &at) {
    return at.scene.job.tree_id(at.index);
}

uint64_t group_id(const Site &at) {
    return 0x401000 + 4 * (at.scene.job.id % 0xffff) + at.index;
}

namespace {

template <uint64_t Job::*member> uint64_t of_job(const Site &at) {
    return at.scene.job.*member;
}

/// For lists of jobs: the sample's own job first, then those before it.
template <uint64_t Job::*member> uint64_t of_listed_job(const Site &at) {
    return Job(at.scene.seed, at.scene.job_number - at.index).*member;
}

/// For lists of reservations: every other job has one.
template <uint64_t Job::*member> uint64_t of_listed_reservation(const Site &at) {
    return Job(at.scene.seed, at.scene.job_number - 2 * at.index).*member;
}

/// Quotas of a job are powers of two.
template <uint64_t smallest> uint64_t scaled(const Site &at) {
    return smallest << at.scene.job.scale;
}

uint64_t index(const Site &at) {
    return at.index;
}

uint64_t host_guid(const Site &at) {
    return at.scene.fabric.host_guid(at.index);
}

uint64_t groups(const Site &at) {
    return std::min(at.scene.size, at.scene.job.groups);
}

uint64_t used_reservation(const Site &at) {
    return at.scene.job.is_in_reservation ? at.scene.job.reservation_id : 0;
}

uint64_t flag(const Site &at) {
    return at.random(0, 1);
}

/// Mostly 0, which is success.
uint64_t status(const Site &at) {
    return at.random(0, 9) != 0 ? 0 : at.random(1, 4);
}

constexpr Rule<NumberRule> numbers[] = {
    // Jobs and what they run in.
    {"", "job_id", of_job<&Job::id>},
    {"", "vemra_job_id", of_job<&Job::vemra_id>},
    {"", "uid", of_job<&Job::uid>},
    {"", "job_key", of_job<&Job::key>},
    {"", "tid", of_job<&Job::transaction>},
    {"", "job_state", between<0, 3>},
    {"", "reservation_id", used_reservation},
    {"", "pkey", of_job<&Job::pkey>},
    {"", "max_osts", scaled<16>},
    {"", "user_data_per_ost", constant<1024>},
    {"", "max_buffers", scaled<64>},
    {"", "max_groups", scaled<4>},
    {"", "max_qps", scaled<32>},
    {"", "num_rails", constant<1>},
    {"", "num_trees", trees},
    {"", "num_trees_req", trees},
    {"", "num_channels", constant<1>},
    {"", "num_channels_per_conn", constant<1>},
    {"", "enable_mcast", flag},
    {"", "req_feature_mask", constant<5>},
    {"", "reproducible_mode", flag},
    {"", "exclusive_lock", flag},
    {"", "reserved", between<1, 100>},
    {"vemra_begin_job", "priority", of_job<&Job::priority>},
    {"persistent_job_info", "priority", of_job<&Job::priority>},
    {"persistent_job_info", "version", constant<2>},
    {"persistent_job_info", "addr_type", constant<1>},
    {"persistent_job_info", "tree_ids", tree_id},
    {"vemra_mgmt_job_info", "allocation_id", of_listed_job<&Job::allocation_id>},
    {"vemra_mgmt_job_info", "external_job_id", of_listed_job<&Job::id>},
    {"vemra_mgmt_job_info", "vemra_job_id", of_listed_job<&Job::vemra_id>},
    {"vemra_mgmt_job_info", "start_time",
     [](const Site &at) -> uint64_t {
         return at.scene.time - 60 * at.index;
     }},
    {"vemra_mgmt_job_info", "num_local_connections", between<0, 64>},
    {"vemra_mgmt_job_info", "reservation_id",
     [](const Site &at) -> uint64_t {
         const Job job(at.scene.seed, at.scene.job_number - at.index);
         return job.is_in_reservation ? job.reservation_id : 0;
     }},
    {"", "port_guids", host_guid},
    {"", "host_guids", host_guid},
    {"", "error", between<1, 32>},
    {"", "type", between<1, 4>},
    {"", "flags", between<1, 15>},
    {"", "data_type", constant<1>},
    {"", "status", status},
    {"", "processes", index},
    {"vemra_ftree_file_node", "lid",
     [](const Site &at) -> uint64_t {
         return Fabric::host_lid(at.index);
     }},

    // The data of a job.
    {"", "master_vemrad_id",
     [](const Site &at) -> uint64_t {
         return at.scene.fabric.daemon_id(0);
     }},
    {"", "qkey",
     [](const Site &at) -> uint64_t {
         return 0x80010000 + at.scene.job.id % 0xffff;
     }},
    {"", "sl", constant<2>},
    {"", "tclass", constant<8>},
    {"", "flow_label", constant<7>},
    {"", "rnr_mode", constant<1>},
    {"", "rnr_retry_limit", constant<7>},
    {"", "local_ack_timeout", constant<18>},
    {"", "timeout_retry_limit", constant<6>},
    {"vemra_sd_info", "version", constant<2>},
    {"vemra_sd_info", "addr_type", constant<1>},
    {"vemra_tree", "feature_mask", constant<5>},
    {"", "tree_id", tree_id},
    {"", "max_qp_child_idxs", constant<40>},
    {"", "versions", constant<2>},
    {"", "control_path_version", constant<2>},

    // Groups.
    {"", "subnet_prefix", constant<Fabric::subnet_prefix>},
    {"", "group_id", group_id},
    {"", "tree_idx",
     [](const Site &at) -> uint64_t {
         return at.index % 2;
     }},
    {"", "mlid",
     [](const Site &at) -> uint64_t {
         return 0xc001 + group_id(at) % 0x3000;
     }},
    {"", "data_path_trim", flag},
    {"vemra_alloc_group", "num_osts", scaled<4>},

    // Reservations.
    {"vemra_create_reservation", "reservation_id", of_job<&Job::reservation_id>},
    {"vemra_create_reservation", "pkey", of_job<&Job::reservation_pkey>},
    {"vemra_delete_reservation", "reservation_id", of_job<&Job::reservation_id>},
    {"", "force_delete", flag},
    {"vemra_reservation_info_request", "reservation_id", of_job<&Job::reservation_id>},
    {"", "full_info", flag},
    {"vemra_reservation_info", "reservation_id", of_listed_reservation<&Job::reservation_id>},
    {"vemra_reservation_info", "pkey", of_listed_reservation<&Job::reservation_pkey>},
    {"", "state", between<0, 3>},
    {"vemra_reservation_resources", "num_osts", scaled<64>},
    {"vemra_reservation_resources", "num_groups", scaled<8>},
    {"vemra_reservation_resources", "num_qps", scaled<256>},
    {"vemra_reservation_resources", "num_trees", scaled<2>},
    {"vemra_reservation_resources", "num_jobs", scaled<2>},
    {"", "percentage",
     [](const Site &at) -> uint64_t {
         return 25 * at.random(1, 4);
     }},
    {"", "sat", flag},

    // Events.
    {"vemra_timestamp", "seconds",
     [](const Site &at) -> uint64_t {
         return at.scene.time + at.index;
     }},
    {"vemra_timestamp", "useconds", between<0, 999999>},
    {"", "event_type", between<1, 9>},

    // Resources.
    {"", "priority", between<0, 7>},
    {"", "operation", between<1, 3>},
    {"", "feature_bitmask", constant<7>},
};

// --- Counts of lists -----------------------------------------------------------------------------

constexpr Rule<NumberRule> counts[] = {
    {"", "groups", groups},
    {"", "tree_ids", trees},
    {"", "reserved", between<0, 3>},
    {"", "versions", constant<1>},
    {"", "str_entry_list", between<0, 4>},
};

/// The most particular rule, if there is one.
NumberRule *find_in_both(std::span<const Rule<NumberRule>> structure,
                         std::span<const Rule<NumberRule>> common, const Record &table,
                         std::string_view key) {
    NumberRule *found = find_rule(structure, table.name, key);
    if (found == nullptr) {
        found = find_rule(common, table.name, key);
    }
    return found != nullptr ? found : find_rule(common, "", key);
}

} // namespace

NumberRule *number_rule(const Record &table, std::string_view key) {
    NumberRule *found = find_in_both(structure_numbers(), numbers, table, key);
    return found != nullptr ? found : between<1, 100>;
}

NumberRule *count_rule(const Record &table, std::string_view key) {
    NumberRule *found = find_in_both(structure_counts(), counts, table, key);
    return found != nullptr ? found : [](const Site &at) -> uint64_t {
        return at.scene.size;
    };
}

} // namespace kvt_tool
