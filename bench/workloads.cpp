#include "workloads.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kvt/kvt_str.h"
#include "kvt/messages/events.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/topology.h"

namespace kvt_bench {

namespace {

[[noreturn]] void fail(const char *what) {
    std::fprintf(stderr, "workloads: %s\n", what);
    std::exit(1);
}

/// The generator of all values: splitmix64, so that they are the same everywhere.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}

    uint64_t next() {
        state_ += 0x9E3779B97F4A7C15;
        uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return mixed ^ (mixed >> 31);
    }

    /// From `low` to `high`. The remainder's slight preference for low values does no harm here.
    template <typename Number = uint32_t> Number between(uint64_t low, uint64_t high) {
        return static_cast<Number>(low + next() % (high - low + 1));
    }

    /// Any 64 bits with 17 to 20 digits: nearly all have 19 or 20, one in twenty has 18, one in two
    /// hundred 17.
    uint64_t guid() {
        constexpr uint64_t first_of_17_digits = 10000000000000000;
        uint64_t value = next();
        while (value < first_of_17_digits) {
            value = next();
        }
        return value;
    }

    /// A number above 0 of 1 to `bits` bits, each length as likely as the others.
    uint64_t of_any_length(unsigned bits) {
        const auto shift = between(64 - bits, 63);
        return (next() | (uint64_t{1} << 63)) >> shift;
    }

    /// Makes one value in four 0.
    template <typename Number> void clear_some(Number &number) {
        if (between(0, 3) == 0) {
            number = 0;
        }
    }

private:
    uint64_t state_;
};

template <typename Element> Element *allocate(size_t count) {
    void *elements = std::calloc(count, sizeof(Element));
    if (elements == nullptr) {
        fail("out of memory");
    }
    return static_cast<Element *>(elements);
}

uint32_t scaled(uint32_t count, Scale scale) {
    return std::max(1U, count * scale.times / scale.parts);
}

/// A text on the heap, and its size with its NUL.
char *duplicate(const std::string &text, uint32_t &size) {
    size = static_cast<uint32_t>(text.size() + 1);
    char *copy = allocate<char>(size);
    std::memcpy(copy, text.c_str(), size);
    return copy;
}

template <size_t capacity> void copy_text(char (&out)[capacity], const std::string &text) {
    std::memcpy(out, text.c_str(), std::min(text.size(), capacity - 1));
}

uint64_t *make_guids(uint32_t count, Random &random) {
    auto *guids = allocate<uint64_t>(count);
    std::generate_n(guids, count, [&] { return random.guid(); });
    return guids;
}

__attribute__((format(printf, 1, 2))) std::string print(const char *format, ...) {
    std::array<char, 128> text{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    return text.data();
}

vemra_quota make_quota(Random &random) {
    return {.max_osts = random.between(16, 512),
            .user_data_per_ost = random.between(256, 2048),
            .max_buffers = random.between(64, 1024),
            .max_groups = random.between(8, 64),
            .max_qps = random.between(32, 256)};
}

// --- W1 ------------------------------------------------------------------------------------------

/// Numbers of a job and a reservation, 7 and 4 digits. Nothing in it can be scaled.
Message make_end_job(Scale) {
    auto *job = allocate<vemra_end_job>(1);
    job->job_id = 4711001;
    job->reservation_id = 1031;
    return {VEMRA_MSG_TYPE_END_JOB, job};
}

// --- W2 ------------------------------------------------------------------------------------------

/// Hosts as "node001,node002": of 33 such names, 263 characters, a reader takes all, since it takes
/// at most 298 of a line.
std::string host_names(uint32_t count, uint32_t first) {
    std::string names;
    for (uint32_t i = 0; i < count; ++i) {
        names += print("%snode%03u", i == 0 ? "" : ",", (first + i) % 1000);
    }
    return names;
}

vemra_begin_job *new_begin_job(Random &random, uint32_t hosts, uint32_t guids) {
    // Shares with at most 3 digits, such as "12.5".
    const auto quota_percentage = static_cast<float>(random.between(1, 199)) / 2;
    auto *job = allocate<vemra_begin_job>(1);
    job->job_id = random.between<uint64_t>(1000000, 9999999);
    job->uid = random.between(1000, 9999);
    job->priority = random.between<uint8_t>(1, 9);
    job->quota_percentage = quota_percentage;
    job->quota = make_quota(random);
    job->hosts = duplicate(host_names(hosts, random.between(1, 900)), job->hosts_len);
    job->num_rails = random.between<uint8_t>(1, 4);
    job->num_trees = random.between<uint8_t>(1, 4);
    job->num_guids = guids;
    job->port_guids = make_guids(guids, random);
    job->num_channels = random.between<uint8_t>(1, 4);
    job->pkey = random.between<uint16_t>(1, 0x7FFF);
    job->enable_mcast = 1;
    job->req_feature_mask = random.between<uint64_t>(1, 255);
    job->reproducible_mode = random.between(0, 1);
    job->exclusive_lock = random.between(0, 1);
    return job;
}

/// All fields set. The host names are one text and are not scaled.
Message make_begin_job(Scale scale) {
    Random random(2);
    return {VEMRA_MSG_TYPE_BEGIN_JOB, new_begin_job(random, 33, scaled(64, scale))};
}

// --- W3 ------------------------------------------------------------------------------------------

constexpr uint64_t local_subnet_prefix = 33022; // fe80::/64 in network order, as a number in memory

vemra_qpc_options make_qpc_options(Random &random) {
    return {.qkey = random.between(0x80000000, 0xFFFFFFFF),
            .flow_label = random.between(1, 9),
            .pkey = random.between<uint16_t>(1, 0x7FFF),
            .sl = random.between<uint8_t>(1, 15),
            .tclass = random.between<uint8_t>(1, 255),
            .rnr_mode = 1,
            .rnr_retry_limit = 7,
            .local_ack_timeout = 16,
            .timeout_retry_limit = 7};
}

/// What a subnet manager answers: no raw traffic, no flow label, no preference.
ibv_sa_path_rec make_path(uint64_t from, uint64_t to, uint16_t from_lid, uint16_t to_lid,
                          Random &random) {
    ibv_sa_path_rec path{};
    path.dgid.global.subnet_prefix = local_subnet_prefix;
    path.dgid.global.interface_id = to;
    path.sgid.global.subnet_prefix = local_subnet_prefix;
    path.sgid.global.interface_id = from;
    path.dlid = to_lid;
    path.slid = from_lid;
    path.hop_limit = random.between<uint8_t>(1, 255);
    path.traffic_class = random.between<uint8_t>(1, 255);
    path.reversible = 1;
    path.numb_path = 1;
    path.pkey = 0xFFFF;
    path.sl = random.between<uint8_t>(1, 15);
    path.mtu_selector = 2;
    path.mtu = 5;
    path.rate_selector = 2;
    path.rate = random.between<uint8_t>(1, 22);
    path.packet_life_time_selector = 2;
    path.packet_life_time = random.between<uint8_t>(1, 20);
    return path;
}

vemra_sd_info make_host(uint32_t i, Random &random) {
    vemra_sd_info host{};
    host.version = 2;
    host.vemrad_id = random.guid();
    host.addr_type = 1;
    copy_text(host.addr, print("192.0.2.%u", i % 256));
    return host;
}

vemra_tree make_tree(uint32_t i, Random &random) {
    vemra_tree tree{};
    tree.feature_mask = random.between<uint64_t>(1, 255);
    tree.tree_id = static_cast<uint16_t>(i + 1);
    tree.peer_tree_id = static_cast<uint16_t>(i + 513);
    tree.max_qp_child_idxs = 40;
    tree.versions[0] = 2;
    tree.mgid.global.subnet_prefix = random.guid();
    tree.mgid.global.interface_id = random.guid();
    tree.quota = make_quota(random);
    tree.control_path_version = 2;
    return tree;
}

constexpr size_t children_of_conn = 4;
constexpr uint8_t no_child = 255;

vemra_tree_conn make_conn(uint32_t trees, Random &random) {
    const uint64_t daemon = random.guid();
    const uint64_t node = random.guid();
    const auto daemon_lid = random.between<uint16_t>(1, 0xBFFF);
    const auto node_lid = random.between<uint16_t>(1, 0xBFFF);
    vemra_tree_conn conn{};
    conn.tree_id = random.between<uint16_t>(1, trees);
    conn.vemrad_id = daemon;
    std::ranges::fill(conn.qp_child_idxs, no_child);
    std::generate_n(conn.qp_child_idxs, children_of_conn,
                    [&] { return random.between<uint8_t>(0, 39); });
    conn.pr_sd_to_an = make_path(daemon, node, daemon_lid, node_lid, random);
    conn.pr_an_to_sd = make_path(node, daemon, node_lid, daemon_lid, random);
    return conn;
}

vemra_tree_an make_agg_node(uint32_t i, uint32_t trees, Random &random) {
    return {.guid = random.guid(),
            .lid = random.between<uint16_t>(1, 0xBFFF),
            .tree_id = random.between<uint16_t>(1, trees),
            .an_id = static_cast<uint16_t>(i + 1),
            .parent_an_id = static_cast<uint16_t>(i / 4)};
}

Message make_job_data(Scale scale) {
    Random random(3);
    auto *job = allocate<vemra_job_data>(1);
    job->job_id = 4711001;
    job->master_vemrad_id = random.guid();
    job->vemra_job_id = 17;
    job->uid = 2041;
    job->qpc_opts = make_qpc_options(random);
    job->sat_qpc_opts = make_qpc_options(random);
    job->hosts_num = scaled(128, scale);
    job->hosts_sd_info = allocate<vemra_sd_info>(job->hosts_num);
    for (uint32_t i = 0; i < job->hosts_num; ++i) {
        job->hosts_sd_info[i] = make_host(i, random);
    }
    job->trees_num = scaled(4, scale);
    job->trees = allocate<vemra_tree>(job->trees_num);
    for (uint32_t i = 0; i < job->trees_num; ++i) {
        job->trees[i] = make_tree(i, random);
    }
    job->conns_num = scaled(512, scale);
    job->conns = allocate<vemra_tree_conn>(job->conns_num);
    for (uint32_t i = 0; i < job->conns_num; ++i) {
        job->conns[i] = make_conn(job->trees_num, random);
    }
    job->agg_nodes_num = scaled(64, scale);
    job->agg_nodes = allocate<vemra_tree_an>(job->agg_nodes_num);
    for (uint32_t i = 0; i < job->agg_nodes_num; ++i) {
        job->agg_nodes[i] = make_agg_node(i, job->trees_num, random);
    }
    job->job_key = random.guid();
    job->reservation_id = 31;
    return {VEMRA_MSG_TYPE_JOB_DATA, job};
}

// --- W4 ------------------------------------------------------------------------------------------

/// Peers have one to four digits, most of them four. Only the switches are scaled.
Message make_topology(Scale scale) {
    constexpr uint32_t ports = 36;
    Random random(4);
    auto *topology = allocate<vemra_topology_info_list>(1);
    topology->num_switches = scaled(1000, scale);
    topology->switches = allocate<vemra_topology_switch_info>(topology->num_switches);
    for (uint32_t i = 0; i < topology->num_switches; ++i) {
        vemra_topology_switch_info &one = topology->switches[i];
        one.id = i + 1;
        copy_text(one.name, print("switch%04u", i + 1));
        one.num_peer_ids = ports;
        one.peer_ids = allocate<uint32_t>(ports);
        std::generate_n(one.peer_ids, ports, [&] { return random.between(1, 4000); });
        one.num_port_guids = ports;
        one.port_guids = make_guids(ports, random);
    }
    return {VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, topology};
}

// --- W5 ------------------------------------------------------------------------------------------

vemra_event_str_entry make_entry(const std::string &name, const std::string &value) {
    vemra_event_str_entry entry{};
    entry.entry_name = duplicate(name, entry.entry_name_len);
    entry.entry_value = duplicate(value, entry.value_len);
    return entry;
}

/// Names of 4 to 9 characters and values of 7 to 20. Only the events are scaled.
Message make_events(Scale scale) {
    constexpr uint32_t entries = 4;
    Random random(5);
    auto *list = allocate<vemra_event_list>(1);
    list->num_event = scaled(1000, scale);
    list->events = allocate<vemra_event>(list->num_event);
    for (uint32_t i = 0; i < list->num_event; ++i) {
        vemra_event &event = list->events[i];
        event.event_type = random.between(0, 12);
        event.num_str_entry = entries;
        event.str_entry_list = allocate<vemra_event_str_entry>(entries);
        const uint32_t node = random.between(1, 999);
        const uint64_t guid = random.guid();
        const uint32_t lane = random.between(0, 3);
        event.str_entry_list[0] = make_entry("host", print("node%03u", node));
        event.str_entry_list[1] =
            make_entry("port_guid", print("%llu", static_cast<unsigned long long>(guid)));
        event.str_entry_list[2] = make_entry("switch", print("switch%04u", node));
        event.str_entry_list[3] = make_entry("reason", print("link down, lane %u", lane));
        event.ts.seconds = 1893456000 + i;
        event.ts.useconds = random.between<uint64_t>(0, 999999);
    }
    return {VEMRA_MSG_TYPE_EVENTS_REPLY, list};
}

// --- W6 ------------------------------------------------------------------------------------------

Message make_resources(Scale scale) {
    Random random(6);
    auto *resources = allocate<vemra_resource_message>(1);
    resources->operation = 2;
    resources->feature_bitmask = 7;
    resources->agg_trees_num = scaled(1000, scale);
    resources->agg_trees = allocate<vemra_resource_agg_tree>(resources->agg_trees_num);
    for (uint32_t i = 0; i < resources->agg_trees_num; ++i) {
        resources->agg_trees[i] = {.tree_num = i + 1,
                                   .priority = random.between(0, 9),
                                   .tree_status = random.between(0, 5)};
    }
    resources->links_num = scaled(2000, scale);
    resources->links = allocate<vemra_resource_link>(resources->links_num);
    for (uint32_t i = 0; i < resources->links_num; ++i) {
        resources->links[i] = {.agg_node_guid = random.guid(),
                               .port_num = random.between(1, 64),
                               .priority = random.between(0, 9),
                               .link_status = random.between(0, 5),
                               .active_jobs = random.between<uint16_t>(1, 9)};
    }
    resources->agg_nodes_num = scaled(1000, scale);
    resources->agg_nodes = allocate<vemra_resource_agg_node>(resources->agg_nodes_num);
    for (uint32_t i = 0; i < resources->agg_nodes_num; ++i) {
        vemra_resource_agg_node &node = resources->agg_nodes[i];
        node.agg_node_guid = random.guid();
        node.priority = random.between(0, 9);
        copy_text(node.ts, print("2030-01-01 00:%02u:%02u", i / 60 % 60, i % 60));
        node.agg_node_status = random.between(0, 5);
        node.active_jobs = random.between<uint16_t>(1, 9);
        node.trees_num = random.between<uint16_t>(1, 4);
    }
    return {VEMRA_MSG_TYPE_RESOURCE_DATA, resources};
}

// --- Small messages in rotation ------------------------------------------------------------------

/// An END_JOB whose two numbers have any length, 1 to 20 digits and 1 to 10 digits. One in four has
/// no reservation.
Message make_any_end_job(Random &random) {
    auto *job = allocate<vemra_end_job>(1);
    job->job_id = random.of_any_length(64);
    job->reservation_id = random.of_any_length(32);
    random.clear_some(job->reservation_id);
    return {VEMRA_MSG_TYPE_END_JOB, job};
}

/// A BEGIN_JOB with 1 to 4 hosts and 1 to 8 port_guids. Numbers have any length, and one in four of
/// those that need not be there is not.
Message make_any_begin_job(Random &random) {
    const auto hosts = random.between(1, 4);
    const auto guids = random.between(1, 8);
    vemra_begin_job *job = new_begin_job(random, hosts, guids);
    job->job_id = random.of_any_length(64);
    job->req_feature_mask = random.of_any_length(64);
    for (uint32_t *limit : {&job->uid, &job->quota.max_osts, &job->quota.user_data_per_ost,
                            &job->quota.max_buffers, &job->quota.max_groups, &job->quota.max_qps}) {
        *limit = static_cast<uint32_t>(random.of_any_length(32));
        random.clear_some(*limit);
    }
    for (uint8_t *number : {&job->priority, &job->num_rails, &job->num_trees, &job->num_channels,
                            &job->enable_mcast}) {
        random.clear_some(*number);
    }
    random.clear_some(job->pkey);
    random.clear_some(job->quota_percentage);
    return {VEMRA_MSG_TYPE_BEGIN_JOB, job};
}

// -------------------------------------------------------------------------------------------------

/// A text that cannot be read back whole would be measured as something else than it says.
void check_reads_back(const Message &message) {
    const std::string text = message.text();
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text.c_str(), &record) != 0) {
        fail("a text cannot be read back");
    }
    Message read(message.kind(), record);
    if (text_of_read(read) != text) {
        fail("a text is another one after it was read back");
    }
}

template <Message (*make)(Scale)> Message make_checked(Scale scale) {
    Message message = make(scale);
    check_reads_back(message);
    return message;
}

template <typename Make> std::vector<Message> make_rotation(Make make) {
    constexpr size_t rotation_length = 1024;
    std::vector<Message> messages;
    for (size_t i = 0; i < rotation_length; ++i) {
        messages.push_back(make());
        check_reads_back(messages.back());
    }
    return messages;
}

} // namespace

std::string Message::text() const {
    const uint32_t size = kvt_str_get_buf_size(kind(), record());
    if (size == 0) {
        fail("a message has no text");
    }
    std::string text(size, '\0');
    kvt_msg_to_str(kind(), record(), text.data());
    text.pop_back(); // the NUL
    return text;
}

std::string text_of_read(Message &message) {
    if (message.kind() == VEMRA_MSG_TYPE_JOB_DATA) {
        const auto *job = static_cast<const vemra_job_data *>(message.record());
        for (vemra_tree_conn &conn : std::span(job->conns, job->conns_num)) {
            conn.qp_child_idxs[children_of_conn] = no_child;
        }
    }
    return message.text();
}

std::span<const Workload> workloads() {
    static constexpr Workload all[] = {
        {"W1", make_checked<make_end_job>},  {"W2", make_checked<make_begin_job>},
        {"W3", make_checked<make_job_data>}, {"W4", make_checked<make_topology>},
        {"W5", make_checked<make_events>},   {"W6", make_checked<make_resources>},
    };
    return all;
}

std::vector<Message> end_jobs() {
    Random random(7);
    return make_rotation([&] { return make_any_end_job(random); });
}

std::vector<Message> begin_jobs() {
    Random random(8);
    return make_rotation([&] { return make_any_begin_job(random); });
}

} // namespace kvt_bench
