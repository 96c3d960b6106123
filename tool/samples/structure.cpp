// Connections with their paths, aggregation nodes, reservations, switches and resources: records
// whose elements fit together.
#include "samples/rules.h"

namespace kvt_tool {

namespace {

// Connections: those of all hosts in the first tree, then in the second one.

uint64_t host_of_connection(const Site &at) {
    return at.index % at.scene.size;
}

uint64_t daemon_id(const Site &at) {
    return at.scene.fabric.daemon_id(host_of_connection(at));
}

uint64_t tree_of_connection(const Site &at) {
    return at.scene.job.tree_id(at.index / at.scene.size);
}

/// The places after those in use are 0: so the reader leaves them, and so all 64 are written.
uint64_t child_index(const Site &at) {
    const uint64_t host = host_of_connection(*at.outer);
    const uint64_t used = 1 + at.scene.job.groups % 4;
    return at.index < used ? used * (host % Fabric::hosts_per_leaf) + at.index + 1 : 0;
}

// The addresses of GIDs and path records lie in the network's byte order in the memory, which the
// text shows as the number that a little-endian machine sees there.

uint64_t in_network_order(uint64_t value, unsigned bytes) {
    uint64_t turned = 0;
    for (unsigned i = 0; i < bytes; ++i) {
        turned = turned << 8 | (value >> (8 * i) & 0xff);
    }
    return turned;
}

/// Whether a value of a path is that of the host's end: by the block that it stands in.
bool is_at_host(std::string_view path, bool is_source) {
    return (path == "pr_sd_to_an") == is_source;
}

uint64_t leaf_of_connection(const Site &at) {
    return AggregationTree::leaf_of(host_of_connection(at));
}

template <bool is_source> uint64_t path_lid(const Site &at) {
    return in_network_order(is_at_host(at.key, is_source)
                                ? Fabric::host_lid(host_of_connection(at))
                                : Fabric::switch_lid(leaf_of_connection(at)),
                            2);
}

uint64_t path_pkey(const Site &at) {
    return in_network_order(at.scene.job.pkey, 2);
}

uint64_t path_flow_label(const Site & /*at*/) {
    return in_network_order(7, 4);
}

constexpr std::string_view multicast_block = "mgid";

uint64_t gid_prefix(const Site &at) {
    constexpr uint64_t multicast_prefix = 0xff12401bffff0000;
    return in_network_order(at.key == multicast_block ? multicast_prefix : Fabric::subnet_prefix,
                            8);
}

uint64_t gid_guid(const Site &at) {
    if (at.key == multicast_block) {
        return in_network_order(group_id(at), 8);
    }
    const bool is_source = at.key == "sgid";
    return in_network_order(is_at_host(at.outer->key, is_source)
                                ? at.scene.fabric.host_guid(host_of_connection(at))
                                : at.scene.fabric.switch_guid(leaf_of_connection(at)),
                            8);
}

// Aggregation nodes: those of the first tree, then of the second one, on the same switches.

uint64_t node_of(const Site &at) {
    return at.index % at.scene.nodes.nodes();
}

uint64_t node_parent_id(const Site &at) {
    const uint64_t parent = at.scene.nodes.parent_of(node_of(at));
    return parent != at.scene.nodes.nodes() ? parent + 1 : 0;
}

// Reservations: a single one has the ports of all hosts. In a list, each has a few of its own: with
// those of all hosts, the list would grow with the square of the size.

constexpr uint64_t most_ports_in_list = 8;

uint64_t reserved_ports(const Site &at) {
    return at.outer == nullptr ? at.scene.size : std::min(at.scene.size, most_ports_in_list);
}

uint64_t reserved_port(const Site &at) {
    return at.scene.fabric.host_guid(most_ports_in_list * at.outer->index + at.index);
}

// Resources: some aggregation nodes are down, and with them their links; some links are down by
// themselves. What is down has no jobs.

enum Topic : uint64_t { node_state = 1, link_state, tree_state, jobs_of_node };

constexpr uint64_t links_per_node = 3;

bool node_is_up(const Site &at, uint64_t node) {
    return at.scene.settled(node_state, node) % 16 != 0;
}

bool link_is_up(const Site &at) {
    return node_is_up(at, at.index / links_per_node) &&
           at.scene.settled(link_state, at.index) % 16 != 0;
}

uint64_t jobs_of(const Site &at, uint64_t node) {
    return node_is_up(at, node) ? at.scene.settled(jobs_of_node, node) % 6 : 0;
}

uint64_t resource_trees(const Site &at) {
    return std::min<uint64_t>(at.scene.size, 2 + at.scene.size / 16);
}

constexpr uint64_t state_up = 1;
constexpr uint64_t state_down = 4;

constexpr Rule<NumberRule> numbers[] = {
    // The data of a job.
    {"vemra_sd_info", "vemrad_id", daemon_id},
    {"vemra_tree_conn", "vemrad_id", daemon_id},
    {"vemra_tree", "peer_tree_id",
     [](const Site &at) -> uint64_t {
         return trees(at) == 2 ? at.scene.job.tree_id(at.index + 1) : 0;
     }},
    {"vemra_tree_conn", "tree_id", tree_of_connection},
    {"vemra_tree_conn", "qp_child_idxs", child_index},
    {"vemra_tree_an", "guid",
     [](const Site &at) -> uint64_t {
         return at.scene.fabric.switch_guid(node_of(at));
     }},
    {"vemra_tree_an", "lid",
     [](const Site &at) -> uint64_t {
         return Fabric::switch_lid(node_of(at));
     }},
    {"vemra_tree_an", "tree_id",
     [](const Site &at) -> uint64_t {
         return at.scene.job.tree_id(at.index / at.scene.nodes.nodes());
     }},
    {"vemra_tree_an", "an_id",
     [](const Site &at) -> uint64_t {
         return node_of(at) + 1;
     }},
    {"vemra_tree_an", "parent_an_id", node_parent_id},

    // Addresses and paths.
    {"ibv_gid", "subnet_prefix", gid_prefix},
    {"ibv_gid", "guid", gid_guid},
    {"ibv_sa_path_rec", "dlid", path_lid<false>},
    {"ibv_sa_path_rec", "slid", path_lid<true>},
    {"ibv_sa_path_rec", "raw_traffic", constant<0>},
    {"ibv_sa_path_rec", "flow_label", path_flow_label},
    {"ibv_sa_path_rec", "hop_limit", constant<1>},
    {"ibv_sa_path_rec", "traffic_class", constant<8>},
    {"ibv_sa_path_rec", "reversible", constant<1>},
    {"ibv_sa_path_rec", "numb_path", constant<1>},
    {"ibv_sa_path_rec", "pkey", path_pkey},
    {"ibv_sa_path_rec", "mtu_selector", constant<2>},  // exactly
    {"ibv_sa_path_rec", "mtu", constant<5>},           // 4096 bytes
    {"ibv_sa_path_rec", "rate_selector", constant<2>}, // exactly
    {"ibv_sa_path_rec", "rate", constant<16>},         // 100 Gb/s
    {"ibv_sa_path_rec", "plt_selector", constant<2>},  // exactly
    {"ibv_sa_path_rec", "plt", constant<18>},
    {"ibv_sa_path_rec", "preference", constant<0>},

    // Reservations.
    {"vemra_reservation_info", "port_guids", reserved_port},

    // Topology.
    {"vemra_topology_switch_info", "id", index_from_1},
    {"vemra_topology_switch_info", "peer_ids",
     [](const Site &at) -> uint64_t {
         return at.scene.switches.peer(at.outer->index, at.index) + 1;
     }},
    {"vemra_topology_switch_info", "port_guids",
     [](const Site &at) -> uint64_t {
         return at.scene.fabric.host_guid(Fabric::hosts_per_leaf * at.outer->index + at.index);
     }},

    // Resources.
    {"vemra_resource_agg_tree", "tree_num", index_from_1},
    {"vemra_resource_agg_tree", "tree_status",
     [](const Site &at) -> uint64_t {
         return at.scene.settled(tree_state, at.index) % 16 != 0 ? state_up : state_down;
     }},
    {"vemra_resource_link", "agg_node_guid",
     [](const Site &at) -> uint64_t {
         return at.scene.fabric.switch_guid(at.index / links_per_node);
     }},
    {"vemra_resource_link", "port_num",
     [](const Site &at) -> uint64_t {
         return at.index % links_per_node * 12 + 1;
     }},
    {"vemra_resource_link", "link_status",
     [](const Site &at) -> uint64_t {
         return link_is_up(at) ? state_up : state_down;
     }},
    {"vemra_resource_link", "active_jobs",
     [](const Site &at) -> uint64_t {
         return link_is_up(at) ? at.random(0, jobs_of(at, at.index / links_per_node)) : 0;
     }},
    {"vemra_resource_agg_node", "agg_node_guid",
     [](const Site &at) -> uint64_t {
         return at.scene.fabric.switch_guid(at.index);
     }},
    {"vemra_resource_agg_node", "agg_node_status",
     [](const Site &at) -> uint64_t {
         return node_is_up(at, at.index) ? state_up : state_down;
     }},
    {"vemra_resource_agg_node", "active_jobs",
     [](const Site &at) -> uint64_t {
         return jobs_of(at, at.index);
     }},
    {"vemra_resource_agg_node", "trees_num",
     [](const Site &at) -> uint64_t {
         return at.random(1, resource_trees(at));
     }},
};

constexpr Rule<NumberRule> counts[] = {
    {"vemra_tree_conn", "qp_child_idxs", constant<64>},
    {"vemra_job_data", "trees", trees},
    {"vemra_job_data", "conns",
     [](const Site &at) -> uint64_t {
         return trees(at) * at.scene.size;
     }},
    {"vemra_job_data", "agg_nodes",
     [](const Site &at) -> uint64_t {
         return trees(at) * at.scene.nodes.nodes();
     }},
    {"vemra_reservation_info", "port_guids", reserved_ports},
    {"vemra_topology_switch_info", "peer_ids",
     [](const Site &at) -> uint64_t {
         return at.scene.switches.peers(at.index);
     }},
    {"vemra_topology_switch_info", "port_guids",
     [](const Site &at) -> uint64_t {
         return at.scene.switches.is_leaf(at.index) ? Fabric::hosts_per_leaf : 0;
     }},
    {"vemra_resource_message", "agg_trees", resource_trees},
    {"vemra_resource_message", "links",
     [](const Site &at) -> uint64_t {
         return links_per_node * at.scene.size;
     }},
};

} // namespace

std::span<const Rule<NumberRule>> structure_numbers() {
    return numbers;
}

std::span<const Rule<NumberRule>> structure_counts() {
    return counts;
}

} // namespace kvt_tool
