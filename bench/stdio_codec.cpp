#include "stdio_codec.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace kvt_bench {

namespace {

// --- Writing -------------------------------------------------------------------------------------

// Each stands for the lines of one member of `record`.
#define ALWAYS(key, format, member)                                                                \
    out += std::sprintf(out, "%*s" key ": " format "\n", indent, "", record.member)
#define NUMBER(key, format, member)                                                                \
    if (record.member != 0) {                                                                      \
        ALWAYS(key, format, member);                                                               \
    }                                                                                              \
    static_assert(true)
#define REAL(key, member)                                                                          \
    if (record.member != 0) {                                                                      \
        out +=                                                                                     \
            std::sprintf(out, "%*s" key ": %g\n", indent, "", static_cast<double>(record.member)); \
    }                                                                                              \
    static_assert(true)
#define TEXT(key, member)                                                                          \
    if (record.member[0] != '\0') {                                                                \
        ALWAYS(key, "\"%s\"", member);                                                             \
    }                                                                                              \
    static_assert(true)
#define ALLOCATED_TEXT(key, member)                                                                \
    if (record.member != nullptr) {                                                                \
        TEXT(key, member);                                                                         \
    }                                                                                              \
    static_assert(true)
#define ARRAY(key, format, member, count)                                                          \
    for (uint32_t i = 0; i < record.count; ++i) {                                                  \
        ALWAYS(key, format, member[i]);                                                            \
    }                                                                                              \
    static_assert(true)
#define BYTES(key, member, last)                                                                   \
    for (size_t i = 0; i < sizeof record.member && record.member[i] != (last); ++i) {              \
        ALWAYS(key, "%hhu", member[i]);                                                            \
    }                                                                                              \
    static_assert(true)
#define BLOCK(key, member)                                                                         \
    out += std::sprintf(out, "%*s" key " {\n", indent, "");                                        \
    out = write(out, indent + 2, record.member);                                                   \
    out += std::sprintf(out, "%*s}\n", indent, "")
#define RUN(key, member, count)                                                                    \
    for (size_t i = 0; i < record.count; ++i) {                                                    \
        BLOCK(key, member[i]);                                                                     \
    }                                                                                              \
    static_assert(true)

char *write(char *out, int indent, const vemra_end_job &record) {
    NUMBER("job_id", "%lu", job_id);
    NUMBER("reservation_id", "%lu", reservation_id);
    return out;
}

char *write(char *out, int indent, const vemra_quota &record) {
    NUMBER("max_osts", "%u", max_osts);
    NUMBER("user_data_per_ost", "%u", user_data_per_ost);
    NUMBER("max_buffers", "%u", max_buffers);
    NUMBER("max_groups", "%u", max_groups);
    NUMBER("max_qps", "%u", max_qps);
    return out;
}

char *write(char *out, int indent, const vemra_begin_job &record) {
    NUMBER("job_id", "%lu", job_id);
    NUMBER("uid", "%u", uid);
    NUMBER("priority", "%hhu", priority);
    REAL("quota_percentage", quota_percentage);
    BLOCK("quota", quota);
    NUMBER("hosts_len", "%u", hosts_len);
    ALLOCATED_TEXT("hosts", hosts);
    NUMBER("num_rails", "%hhu", num_rails);
    NUMBER("num_trees", "%hhu", num_trees);
    NUMBER("num_guids", "%u", num_guids);
    ARRAY("port_guids", "%lu", port_guids, num_guids);
    NUMBER("num_channels", "%hhu", num_channels);
    NUMBER("pkey", "%hu", pkey);
    NUMBER("enable_mcast", "%hhu", enable_mcast);
    NUMBER("req_feature_mask", "%lu", req_feature_mask);
    ALWAYS("reproducible_mode", "%u", reproducible_mode);
    ALWAYS("exclusive_lock", "%u", exclusive_lock);
    return out;
}

char *write(char *out, int indent, const vemra_qpc_options &record) {
    NUMBER("qkey", "%u", qkey);
    NUMBER("flow_label", "%u", flow_label);
    NUMBER("pkey", "%hu", pkey);
    NUMBER("sl", "%hhu", sl);
    NUMBER("tclass", "%hhu", tclass);
    NUMBER("rnr_mode", "%hhu", rnr_mode);
    NUMBER("rnr_retry_limit", "%hhu", rnr_retry_limit);
    NUMBER("local_ack_timeout", "%hhu", local_ack_timeout);
    NUMBER("timeout_retry_limit", "%hhu", timeout_retry_limit);
    return out;
}

char *write(char *out, int indent, const vemra_sd_info &record) {
    NUMBER("version", "%hhu", version);
    NUMBER("vemrad_id", "%lu", vemrad_id);
    NUMBER("addr_type", "%hhu", addr_type);
    TEXT("addr", addr);
    return out;
}

char *write(char *out, int indent, const ibv_gid &record) {
    NUMBER("subnet_prefix", "%llu", global.subnet_prefix);
    NUMBER("guid", "%llu", global.interface_id);
    return out;
}

char *write(char *out, int indent, const vemra_tree &record) {
    NUMBER("feature_mask", "%lu", feature_mask);
    NUMBER("tree_id", "%hu", tree_id);
    NUMBER("peer_tree_id", "%hu", peer_tree_id);
    NUMBER("max_qp_child_idxs", "%hhu", max_qp_child_idxs);
    BYTES("versions", versions, 0);
    BLOCK("mgid", mgid);
    BLOCK("quota", quota);
    NUMBER("control_path_version", "%hhu", control_path_version);
    return out;
}

char *write(char *out, int indent, const ibv_sa_path_rec &record) {
    BLOCK("dgid", dgid);
    BLOCK("sgid", sgid);
    NUMBER("dlid", "%hu", dlid);
    NUMBER("slid", "%hu", slid);
    NUMBER("raw_traffic", "%d", raw_traffic);
    NUMBER("flow_label", "%u", flow_label);
    NUMBER("hop_limit", "%hhu", hop_limit);
    NUMBER("traffic_class", "%hhu", traffic_class);
    NUMBER("reversible", "%d", reversible);
    NUMBER("numb_path", "%hhu", numb_path);
    NUMBER("pkey", "%hu", pkey);
    NUMBER("sl", "%hhu", sl);
    NUMBER("mtu_selector", "%hhu", mtu_selector);
    NUMBER("mtu", "%hhu", mtu);
    NUMBER("rate_selector", "%hhu", rate_selector);
    NUMBER("rate", "%hhu", rate);
    NUMBER("plt_selector", "%hhu", packet_life_time_selector);
    NUMBER("plt", "%hhu", packet_life_time);
    NUMBER("preference", "%hhu", preference);
    return out;
}

char *write(char *out, int indent, const vemra_tree_conn &record) {
    NUMBER("tree_id", "%hu", tree_id);
    NUMBER("vemrad_id", "%lu", vemrad_id);
    BYTES("qp_child_idxs", qp_child_idxs, 255);
    BLOCK("pr_sd_to_an", pr_sd_to_an);
    BLOCK("pr_an_to_sd", pr_an_to_sd);
    return out;
}

char *write(char *out, int indent, const vemra_tree_an &record) {
    NUMBER("guid", "%lu", guid);
    NUMBER("lid", "%hu", lid);
    NUMBER("tree_id", "%hu", tree_id);
    NUMBER("an_id", "%hu", an_id);
    NUMBER("parent_an_id", "%hu", parent_an_id);
    return out;
}

char *write(char *out, int indent, const vemra_job_data &record) {
    NUMBER("job_id", "%lu", job_id);
    NUMBER("master_vemrad_id", "%lu", master_vemrad_id);
    NUMBER("vemra_job_id", "%u", vemra_job_id);
    NUMBER("uid", "%u", uid);
    NUMBER("hosts_num", "%u", hosts_num);
    NUMBER("trees_num", "%u", trees_num);
    NUMBER("conns_num", "%u", conns_num);
    NUMBER("agg_nodes_num", "%lu", agg_nodes_num);
    BLOCK("qpc_opts", qpc_opts);
    BLOCK("sat_qpc_opts", sat_qpc_opts);
    RUN("hosts_sd_info", hosts_sd_info, hosts_num);
    RUN("trees", trees, trees_num);
    RUN("conns", conns, conns_num);
    RUN("agg_nodes", agg_nodes, agg_nodes_num);
    NUMBER("job_key", "%lu", job_key);
    NUMBER("reservation_id", "%lu", reservation_id);
    return out;
}

char *write(char *out, int indent, const vemra_topology_switch_info &record) {
    NUMBER("id", "%u", id);
    TEXT("name", name);
    NUMBER("num_peer_ids", "%u", num_peer_ids);
    ARRAY("peer_ids", "%u", peer_ids, num_peer_ids);
    NUMBER("num_port_guids", "%u", num_port_guids);
    ARRAY("port_guids", "%lu", port_guids, num_port_guids);
    return out;
}

char *write(char *out, int indent, const vemra_topology_info_list &record) {
    NUMBER("num_switches", "%u", num_switches);
    RUN("switches", switches, num_switches);
    ALWAYS("status", "%u", status);
    return out;
}

char *write(char *out, int indent, const vemra_timestamp &record) {
    NUMBER("seconds", "%lu", seconds);
    NUMBER("useconds", "%lu", useconds);
    return out;
}

char *write(char *out, int indent, const vemra_event_str_entry &record) {
    NUMBER("entry_name_len", "%u", entry_name_len);
    ALLOCATED_TEXT("entry_name", entry_name);
    NUMBER("value_len", "%u", value_len);
    ALLOCATED_TEXT("entry_value", entry_value);
    return out;
}

char *write(char *out, int indent, const vemra_event &record) {
    ALWAYS("event_type", "%u", event_type);
    NUMBER("num_str_entry", "%u", num_str_entry);
    RUN("str_entry_list", str_entry_list, num_str_entry);
    BLOCK("ts", ts);
    return out;
}

char *write(char *out, int indent, const vemra_event_list &record) {
    NUMBER("num_event", "%u", num_event);
    RUN("vemra_events", events, num_event);
    return out;
}

char *write(char *out, int indent, const vemra_resource_agg_tree &record) {
    NUMBER("tree_num", "%u", tree_num);
    ALWAYS("priority", "%u", priority);
    ALWAYS("tree_status", "%u", tree_status);
    return out;
}

char *write(char *out, int indent, const vemra_resource_link &record) {
    NUMBER("agg_node_guid", "%lu", agg_node_guid);
    NUMBER("port_num", "%u", port_num);
    ALWAYS("priority", "%u", priority);
    ALWAYS("link_status", "%u", link_status);
    NUMBER("active_jobs", "%hu", active_jobs);
    return out;
}

char *write(char *out, int indent, const vemra_resource_agg_node &record) {
    NUMBER("agg_node_guid", "%lu", agg_node_guid);
    ALWAYS("priority", "%u", priority);
    TEXT("ts", ts);
    ALWAYS("agg_node_status", "%u", agg_node_status);
    NUMBER("active_jobs", "%hu", active_jobs);
    NUMBER("trees_num", "%hu", trees_num);
    return out;
}

char *write(char *out, int indent, const vemra_resource_message &record) {
    ALWAYS("operation", "%u", operation);
    ALWAYS("feature_bitmask", "%u", feature_bitmask);
    NUMBER("agg_trees_num", "%u", agg_trees_num);
    RUN("agg_trees", agg_trees, agg_trees_num);
    NUMBER("links_num", "%u", links_num);
    RUN("links", links, links_num);
    NUMBER("agg_nodes_num", "%u", agg_nodes_num);
    RUN("agg_nodes", agg_nodes, agg_nodes_num);
    return out;
}

#undef ALWAYS
#undef NUMBER
#undef REAL
#undef TEXT
#undef ALLOCATED_TEXT
#undef ARRAY
#undef BYTES
#undef BLOCK
#undef RUN

// --- Reading -------------------------------------------------------------------------------------

bool begins_with(const char *at, const char *key) {
    return std::strncmp(at, key, std::strlen(key)) == 0;
}

const char *skip_blanks(const char *at) {
    while (*at == ' ' || *at == '\t' || *at == '\n') {
        ++at;
    }
    return at;
}

const char *next_line(const char *at) {
    const char *newline = std::strchr(at, '\n');
    return newline != nullptr ? skip_blanks(newline + 1) : at + std::strlen(at);
}

bool line_has(const char *at, char brace) {
    const char *newline = std::strchr(at, '\n');
    return newline != nullptr &&
           std::memchr(at, brace, static_cast<size_t>(newline - at)) != nullptr;
}

/// Steps over a line that no key takes, and over the block that it opens.
const char *skip(const char *at) {
    int depth = 0;
    do {
        depth += line_has(at, '{') ? 1 : 0;
        depth -= line_has(at, '}') ? 1 : 0;
        at = next_line(at);
    } while (depth > 0 && *at != '\0');
    return at;
}

/// sscanf on the text from the line on.
struct RestOfText {
    static int scan(const char *at, const char *format, void *value) {
        return std::sscanf(at, format, value);
    }
};

/// sscanf on a copy of the line.
struct CopyOfLine {
    static int scan(const char *at, const char *format, void *value) {
        char line[512];
        const char *newline = std::strchr(at, '\n');
        const size_t whole =
            newline != nullptr ? static_cast<size_t>(newline - at) : std::strlen(at);
        const size_t length = std::min(whole, sizeof line - 1);
        std::memcpy(line, at, length);
        line[length] = '\0';
        return std::sscanf(line, format, value);
    }
};

constexpr size_t longest_value = 298;

/// Adds a line of an allocated text: the first one is the text, others follow after commas.
void add_line(char *&text, uint32_t &size, const char *value) {
    const size_t old_length = text != nullptr ? std::strlen(text) : 0;
    const bool first = text == nullptr;
    text = static_cast<char *>(std::realloc(text, old_length + std::strlen(value) + 2));
    if (text == nullptr) {
        fail("out of memory");
    }
    std::strcpy(text + old_length, first ? "" : ",");
    std::strcat(text, value);
    size = static_cast<uint32_t>(std::strlen(text) + 1);
}

// Each stands for the lines of one member of `record`, within READ_BLOCK.
#define READ_BLOCK(...)                                                                            \
    at = next_line(at);                                                                            \
    while (*at != '\0' && !line_has(at, '}')) {                                                    \
        __VA_ARGS__                                                                                \
        at = skip(at);                                                                             \
    }                                                                                              \
    return next_line(at)
#define NUMBER(key, format, member)                                                                \
    if (begins_with(at, key)) {                                                                    \
        Scan::scan(at, key ":" format, &record.member);                                            \
        at = next_line(at);                                                                        \
        continue;                                                                                  \
    }
#define TEXT(key, member)                                                                          \
    if (begins_with(at, key)) {                                                                    \
        char value[longest_value + 1] = "";                                                        \
        Scan::scan(at, key ":%*[^\"]\"%298[^\"]\"", value);                                        \
        std::snprintf(record.member, sizeof record.member, "%s", value);                           \
        at = next_line(at);                                                                        \
        continue;                                                                                  \
    }
#define ALLOCATED_TEXT(key, member, length)                                                        \
    if (begins_with(at, key)) {                                                                    \
        std::free(record.member);                                                                  \
        record.member = nullptr;                                                                   \
        while (begins_with(at, key)) {                                                             \
            char value[longest_value + 1] = "";                                                    \
            if (Scan::scan(at, key ":%*[^\"]\"%298[^\"]\"", value) == 1) {                         \
                add_line(record.member, record.length, value);                                     \
            }                                                                                      \
            at = next_line(at);                                                                    \
        }                                                                                          \
        continue;                                                                                  \
    }
#define ARRAY(key, format, member, count_member)                                                   \
    if (begins_with(at, key)) {                                                                    \
        Growing<std::remove_pointer_t<decltype(record.member)>> array;                             \
        while (begins_with(at, key)) {                                                             \
            std::remove_pointer_t<decltype(record.member)> value = 0;                              \
            if (Scan::scan(at, key ":" format, &value) == 1) {                                     \
                array.add() = value;                                                               \
            }                                                                                      \
            at = next_line(at);                                                                    \
        }                                                                                          \
        std::free(record.member);                                                                  \
        record.member = array.elements();                                                          \
        record.count_member = static_cast<decltype(record.count_member)>(array.count());           \
        continue;                                                                                  \
    }
#define BYTES(key, member)                                                                         \
    if (begins_with(at, key)) {                                                                    \
        std::memset(record.member, 0, sizeof record.member);                                       \
        for (size_t i = 0; begins_with(at, key); ++i) {                                            \
            if (i < sizeof record.member) {                                                        \
                Scan::scan(at, key ":%hhu", &record.member[i]);                                    \
            }                                                                                      \
            at = next_line(at);                                                                    \
        }                                                                                          \
        continue;                                                                                  \
    }
#define BLOCK(key, member)                                                                         \
    if (begins_with(at, key)) {                                                                    \
        at = read<Scan>(at, record.member);                                                        \
        continue;                                                                                  \
    }
#define RUN(key, member, count_member)                                                             \
    if (begins_with(at, key)) {                                                                    \
        Growing<std::remove_pointer_t<decltype(record.member)>> elements;                          \
        while (begins_with(at, key)) {                                                             \
            at = read<Scan>(at, elements.add_cleared());                                           \
        }                                                                                          \
        std::free(record.member);                                                                  \
        record.member = elements.elements();                                                       \
        record.count_member = static_cast<decltype(record.count_member)>(elements.count());        \
        continue;                                                                                  \
    }

// clang-format off
template <typename Scan> const char *read(const char *at, vemra_end_job &record) {
    READ_BLOCK({
        NUMBER("job_id", "%lu", job_id)
        NUMBER("reservation_id", "%lu", reservation_id)
    });
}

template <typename Scan> const char *read(const char *at, vemra_quota &record) {
    READ_BLOCK({
        NUMBER("max_osts", "%u", max_osts)
        NUMBER("user_data_per_ost", "%u", user_data_per_ost)
        NUMBER("max_buffers", "%u", max_buffers)
        NUMBER("max_groups", "%u", max_groups)
        NUMBER("max_qps", "%u", max_qps)
    });
}

template <typename Scan> const char *read(const char *at, vemra_begin_job &record) {
    READ_BLOCK({
        NUMBER("job_id", "%lu", job_id)
        NUMBER("uid", "%u", uid)
        NUMBER("priority", "%hhu", priority)
        NUMBER("quota_percentage", "%f", quota_percentage)
        BLOCK("quota", quota)
        NUMBER("hosts_len", "%u", hosts_len)
        ALLOCATED_TEXT("hosts", hosts, hosts_len)
        NUMBER("num_rails", "%hhu", num_rails)
        NUMBER("num_trees", "%hhu", num_trees)
        NUMBER("num_guids", "%u", num_guids)
        ARRAY("port_guids", "%lu", port_guids, num_guids)
        NUMBER("num_channels", "%hhu", num_channels)
        NUMBER("pkey", "%hu", pkey)
        NUMBER("enable_mcast", "%hhu", enable_mcast)
        NUMBER("req_feature_mask", "%lu", req_feature_mask)
        NUMBER("reproducible_mode", "%u", reproducible_mode)
        NUMBER("exclusive_lock", "%u", exclusive_lock)
    });
}

template <typename Scan> const char *read(const char *at, vemra_qpc_options &record) {
    READ_BLOCK({
        NUMBER("qkey", "%u", qkey)
        NUMBER("flow_label", "%u", flow_label)
        NUMBER("pkey", "%hu", pkey)
        NUMBER("sl", "%hhu", sl)
        NUMBER("tclass", "%hhu", tclass)
        NUMBER("rnr_mode", "%hhu", rnr_mode)
        NUMBER("rnr_retry_limit", "%hhu", rnr_retry_limit)
        NUMBER("local_ack_timeout", "%hhu", local_ack_timeout)
        NUMBER("timeout_retry_limit", "%hhu", timeout_retry_limit)
    });
}

template <typename Scan> const char *read(const char *at, vemra_sd_info &record) {
    READ_BLOCK({
        NUMBER("version", "%hhu", version)
        NUMBER("vemrad_id", "%lu", vemrad_id)
        NUMBER("addr_type", "%hhu", addr_type)
        TEXT("addr", addr)
    });
}

template <typename Scan> const char *read(const char *at, ibv_gid &record) {
    READ_BLOCK({
        NUMBER("subnet_prefix", "%llu", global.subnet_prefix)
        NUMBER("guid", "%llu", global.interface_id)
    });
}

template <typename Scan> const char *read(const char *at, vemra_tree &record) {
    READ_BLOCK({
        NUMBER("feature_mask", "%lu", feature_mask)
        NUMBER("tree_id", "%hu", tree_id)
        NUMBER("peer_tree_id", "%hu", peer_tree_id)
        NUMBER("max_qp_child_idxs", "%hhu", max_qp_child_idxs)
        BYTES("versions", versions)
        BLOCK("mgid", mgid)
        BLOCK("quota", quota)
        NUMBER("control_path_version", "%hhu", control_path_version)
    });
}

template <typename Scan> const char *read(const char *at, ibv_sa_path_rec &record) {
    READ_BLOCK({
        BLOCK("dgid", dgid)
        BLOCK("sgid", sgid)
        NUMBER("dlid", "%hu", dlid)
        NUMBER("slid", "%hu", slid)
        NUMBER("raw_traffic", "%d", raw_traffic)
        NUMBER("flow_label", "%u", flow_label)
        NUMBER("hop_limit", "%hhu", hop_limit)
        NUMBER("traffic_class", "%hhu", traffic_class)
        NUMBER("reversible", "%d", reversible)
        NUMBER("numb_path", "%hhu", numb_path)
        NUMBER("pkey", "%hu", pkey)
        NUMBER("sl", "%hhu", sl)
        NUMBER("mtu_selector", "%hhu", mtu_selector)
        NUMBER("mtu", "%hhu", mtu)
        NUMBER("rate_selector", "%hhu", rate_selector)
        NUMBER("rate", "%hhu", rate)
        NUMBER("plt_selector", "%hhu", packet_life_time_selector)
        NUMBER("plt", "%hhu", packet_life_time)
        NUMBER("preference", "%hhu", preference)
    });
}

template <typename Scan> const char *read(const char *at, vemra_tree_conn &record) {
    READ_BLOCK({
        NUMBER("tree_id", "%hu", tree_id)
        NUMBER("vemrad_id", "%lu", vemrad_id)
        BYTES("qp_child_idxs", qp_child_idxs)
        BLOCK("pr_sd_to_an", pr_sd_to_an)
        BLOCK("pr_an_to_sd", pr_an_to_sd)
    });
}

template <typename Scan> const char *read(const char *at, vemra_tree_an &record) {
    READ_BLOCK({
        NUMBER("guid", "%lu", guid)
        NUMBER("lid", "%hu", lid)
        NUMBER("tree_id", "%hu", tree_id)
        NUMBER("an_id", "%hu", an_id)
        NUMBER("parent_an_id", "%hu", parent_an_id)
    });
}

template <typename Scan> const char *read(const char *at, vemra_job_data &record) {
    READ_BLOCK({
        NUMBER("job_id", "%lu", job_id)
        NUMBER("master_vemrad_id", "%lu", master_vemrad_id)
        NUMBER("vemra_job_id", "%u", vemra_job_id)
        NUMBER("uid", "%u", uid)
        NUMBER("hosts_num", "%u", hosts_num)
        NUMBER("trees_num", "%u", trees_num)
        NUMBER("conns_num", "%u", conns_num)
        NUMBER("agg_nodes_num", "%lu", agg_nodes_num)
        BLOCK("qpc_opts", qpc_opts)
        BLOCK("sat_qpc_opts", sat_qpc_opts)
        RUN("hosts_sd_info", hosts_sd_info, hosts_num)
        RUN("trees", trees, trees_num)
        RUN("conns", conns, conns_num)
        RUN("agg_nodes", agg_nodes, agg_nodes_num)
        NUMBER("job_key", "%lu", job_key)
        NUMBER("reservation_id", "%lu", reservation_id)
    });
}

template <typename Scan> const char *read(const char *at, vemra_topology_switch_info &record) {
    READ_BLOCK({
        NUMBER("id", "%u", id)
        TEXT("name", name)
        NUMBER("num_peer_ids", "%u", num_peer_ids)
        ARRAY("peer_ids", "%u", peer_ids, num_peer_ids)
        NUMBER("num_port_guids", "%u", num_port_guids)
        ARRAY("port_guids", "%lu", port_guids, num_port_guids)
    });
}

template <typename Scan> const char *read(const char *at, vemra_topology_info_list &record) {
    READ_BLOCK({
        NUMBER("num_switches", "%u", num_switches)
        RUN("switches", switches, num_switches)
        NUMBER("status", "%u", status)
    });
}

template <typename Scan> const char *read(const char *at, vemra_timestamp &record) {
    READ_BLOCK({
        NUMBER("seconds", "%lu", seconds)
        NUMBER("useconds", "%lu", useconds)
    });
}

template <typename Scan> const char *read(const char *at, vemra_event_str_entry &record) {
    READ_BLOCK({
        NUMBER("entry_name_len", "%u", entry_name_len)
        ALLOCATED_TEXT("entry_name", entry_name, entry_name_len)
        NUMBER("value_len", "%u", value_len)
        ALLOCATED_TEXT("entry_value", entry_value, value_len)
    });
}

template <typename Scan> const char *read(const char *at, vemra_event &record) {
    READ_BLOCK({
        NUMBER("event_type", "%u", event_type)
        NUMBER("num_str_entry", "%u", num_str_entry)
        RUN("str_entry_list", str_entry_list, num_str_entry)
        BLOCK("ts", ts)
    });
}

template <typename Scan> const char *read(const char *at, vemra_event_list &record) {
    READ_BLOCK({
        NUMBER("num_event", "%u", num_event)
        RUN("vemra_events", events, num_event)
    });
}

template <typename Scan> const char *read(const char *at, vemra_resource_agg_tree &record) {
    READ_BLOCK({
        NUMBER("tree_num", "%u", tree_num)
        NUMBER("priority", "%u", priority)
        NUMBER("tree_status", "%u", tree_status)
    });
}

template <typename Scan> const char *read(const char *at, vemra_resource_link &record) {
    READ_BLOCK({
        NUMBER("agg_node_guid", "%lu", agg_node_guid)
        NUMBER("port_num", "%u", port_num)
        NUMBER("priority", "%u", priority)
        NUMBER("link_status", "%u", link_status)
        NUMBER("active_jobs", "%hu", active_jobs)
    });
}

template <typename Scan> const char *read(const char *at, vemra_resource_agg_node &record) {
    READ_BLOCK({
        NUMBER("agg_node_guid", "%lu", agg_node_guid)
        NUMBER("priority", "%u", priority)
        TEXT("ts", ts)
        NUMBER("agg_node_status", "%u", agg_node_status)
        NUMBER("active_jobs", "%hu", active_jobs)
        NUMBER("trees_num", "%hu", trees_num)
    });
}

template <typename Scan> const char *read(const char *at, vemra_resource_message &record) {
    READ_BLOCK({
        NUMBER("operation", "%u", operation)
        NUMBER("feature_bitmask", "%u", feature_bitmask)
        NUMBER("agg_trees_num", "%u", agg_trees_num)
        RUN("agg_trees", agg_trees, agg_trees_num)
        NUMBER("links_num", "%u", links_num)
        RUN("links", links, links_num)
        NUMBER("agg_nodes_num", "%u", agg_nodes_num)
        RUN("agg_nodes", agg_nodes, agg_nodes_num)
    });
}

// clang-format on

#undef READ_BLOCK
#undef NUMBER
#undef TEXT
#undef ALLOCATED_TEXT
#undef ARRAY
#undef BYTES
#undef BLOCK
#undef RUN

// --- Messages ------------------------------------------------------------------------------------

template <typename Record> struct Names;
#define NAMES(record, type_name, block_name)                                                       \
    template <> struct Names<record> {                                                             \
        static constexpr char type[] = type_name;                                                  \
        static constexpr char block[] = block_name;                                                \
    }
NAMES(vemra_end_job, "END_JOB", "end_job");
NAMES(vemra_begin_job, "BEGIN_JOB", "begin_job");
NAMES(vemra_job_data, "JOB_DATA", "job_data");
NAMES(vemra_topology_info_list, "TOPOLOGY_INFO_REPLY", "topology_info_list");
NAMES(vemra_event_list, "EVENTS_REPLY", "event_list");
NAMES(vemra_resource_message, "RESOURCE_DATA", "resource_message");
#undef NAMES

template <typename Record, typename Scan> class StdioCodec final : public Codec {
public:
    void encode(const void *record) override {
        char *out = text_.get();
        out += std::sprintf(out, "msg {\n");
        out += std::sprintf(out, "  type: %s\n", Names<Record>::type);
        out += std::sprintf(out, "  %s {\n", Names<Record>::block);
        out = write(out, 4, *static_cast<const Record *>(record));
        out += std::sprintf(out, "  }\n");
        out += std::sprintf(out, "}\n");
        length_ = static_cast<size_t>(out - text_.get());
    }

    std::string_view encoded() const override { return {text_.get(), length_}; }

    void *decode(std::string_view document) override {
        const char *at = document.data();
        if (!begins_with(at, "msg")) {
            return nullptr;
        }
        at = next_line(at);
        char type[32] = "";
        if (Scan::scan(at, "type:%31s", type) != 1 || !begins_with(type, Names<Record>::type)) {
            return nullptr;
        }
        auto *record = allocate<Record>(1);
        read<Scan>(next_line(at), *record);
        return record;
    }

private:
    std::unique_ptr<char[]> text_ = std::make_unique_for_overwrite<char[]>(text_room);
    size_t length_ = 0;
};

template <typename Record> using RestCodec = StdioCodec<Record, RestOfText>;
template <typename Record> using LineCodec = StdioCodec<Record, CopyOfLine>;

} // namespace

std::unique_ptr<Codec> make_stdio_rest(int32_t kind) {
    return make_codec<RestCodec>(kind);
}

std::unique_ptr<Codec> make_stdio_line(int32_t kind) {
    return make_codec<LineCodec>(kind);
}

} // namespace kvt_bench
