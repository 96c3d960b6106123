#include <algorithm>
#include <map>
#include <span>

#include "graph/kinds.h"
#include "graph/levels.h"
#include "graph/nodes_and_edges.h"
#include "graph/text.h"

namespace kvt_tool {

namespace {

constexpr const char *level_fills[] = {"#d6ecf9", "#fbe5bf", "#d3efe6", "#f2dfea"};
constexpr size_t level_fill_count = std::size(level_fills);

/// How often two switches name each other.
struct Link {
    uint32_t low;  ///< the smaller index
    uint32_t high; ///< the greater one, or the same
    uint32_t by_low = 0;
    uint32_t by_high = 0;

    /// Parallel links, named by one end or by both.
    uint32_t count() const { return std::max(by_low, by_high); }
};

/// A reply as a graph of indices.
class Fabric {
public:
    explicit Fabric(const vemra_topology_info_list &list);

    Graph graph(const std::string &title) const;

private:
    uint32_t node_of(uint32_t id);
    void add_switch(const vemra_topology_switch_info &info);
    void add_peers(uint32_t from, std::span<const uint32_t> peer_ids);
    void join_links();
    std::vector<LegendEntry> legend(int top) const;
    bool has_one_end(const Link &link) const;

    std::map<uint32_t, uint32_t> index_of_id_;
    std::vector<GraphNode> nodes_;
    std::vector<FabricSwitch> switches_;
    std::vector<Link> links_;
    uint64_t link_count_ = 0;
    size_t absent_ = 0;
    std::string summary_;
};

uint32_t Fabric::node_of(uint32_t id) {
    const auto [place, is_new] = index_of_id_.try_emplace(id, static_cast<uint32_t>(nodes_.size()));
    if (is_new) {
        const std::string name = std::to_string(id);
        nodes_.push_back(absent_node("s" + name, "switch " + name));
        switches_.emplace_back().is_absent = true;
        ++absent_;
    }
    return place->second;
}

void Fabric::add_switch(const vemra_topology_switch_info &info) {
    const uint32_t index = node_of(info.id);
    FabricSwitch &fabric_switch = switches_[index];
    fabric_switch.has_ports = fabric_switch.has_ports || info.num_port_guids != 0;
    if (!fabric_switch.is_absent) {
        nodes_[index].detail += "\nlisted again";
        return;
    }
    --absent_;
    fabric_switch.is_absent = false;
    const std::string name = visible_array(info.name);
    const std::string id = "switch " + std::to_string(info.id);
    GraphNode node;
    node.id = nodes_[index].id;
    node.label = name.empty() ? id : shortened(name);
    node.detail = id + (name.empty() ? "" : ": " + name) + ", " +
                  counted(info.num_port_guids, "port GUID", "port GUIDs");
    nodes_[index] = std::move(node);
}

void Fabric::add_peers(uint32_t from, std::span<const uint32_t> peer_ids) {
    for (const uint32_t id : peer_ids) {
        const uint32_t to = node_of(id);
        links_.push_back(from <= to ? Link{from, to, 1, 0} : Link{to, from, 0, 1});
    }
}

/// Makes one link of all that join the same switches, and tells the switches of it.
void Fabric::join_links() {
    std::sort(links_.begin(), links_.end(), [](const Link &a, const Link &b) {
        return std::pair(a.low, a.high) < std::pair(b.low, b.high);
    });
    size_t kept = 0;
    for (const Link &link : links_) {
        if (kept != 0 && links_[kept - 1].low == link.low && links_[kept - 1].high == link.high) {
            links_[kept - 1].by_low += link.by_low;
            links_[kept - 1].by_high += link.by_high;
        } else {
            links_[kept++] = link;
        }
    }
    links_.erase(links_.begin() + static_cast<std::ptrdiff_t>(kept), links_.end());
    for (const Link &link : links_) {
        link_count_ += link.count();
        if (link.low != link.high) {
            for (const auto &[from, to] : {std::pair(link.low, link.high), {link.high, link.low}}) {
                switches_[from].peers.push_back(to);
                switches_[from].links += link.count();
            }
        }
    }
}

Fabric::Fabric(const vemra_topology_info_list &list) {
    const std::span infos(list.switches, list.num_switches);
    for (const vemra_topology_switch_info &info : infos) {
        add_switch(info);
    }
    const size_t listed = nodes_.size();
    for (const vemra_topology_switch_info &info : infos) {
        add_peers(node_of(info.id), {info.peer_ids, info.num_peer_ids});
    }
    join_links();
    summary_ = counted(listed, "switch", "switches") + ", " +
               counted(link_count_, "link", "links") + ", status " + std::to_string(list.status);
}

/// Both ends are in the message, but only one names the other.
bool Fabric::has_one_end(const Link &link) const {
    return link.low != link.high && (link.by_low == 0 || link.by_high == 0) &&
           !switches_[link.low].is_absent && !switches_[link.high].is_absent;
}

std::vector<LegendEntry> Fabric::legend(int top) const {
    std::vector<LegendEntry> entries;
    for (int level = 0; level <= top; ++level) {
        const std::string meaning =
            level == 0 ? "level 0 (edge)" : "level " + std::to_string(level);
        entries.push_back({meaning, level_fills[static_cast<size_t>(level) % level_fill_count]});
        if (entries.size() == level_fill_count) {
            break;
        }
    }
    if (absent_ != 0) {
        entries.push_back(absent_entry());
    }
    if (std::any_of(links_.begin(), links_.end(),
                    [this](const Link &link) { return has_one_end(link); })) {
        entries.push_back({"dashed line: named by one end only", "white", "white"});
    }
    return entries;
}

Graph Fabric::graph(const std::string &title) const {
    Graph graph;
    graph.nodes = nodes_;
    int top = no_level;
    if (const auto levels = guess_levels(switches_)) {
        for (size_t index = 0; index < nodes_.size(); ++index) {
            const int level = (*levels)[index];
            graph.nodes[index].level = level;
            if (!switches_[index].is_absent) {
                const size_t fill = static_cast<size_t>(level) % level_fill_count;
                graph.nodes[index].fill = level_fills[fill];
                top = std::max(top, level);
            }
        }
    }
    for (const Link &link : links_) {
        const bool absent = switches_[link.low].is_absent || switches_[link.high].is_absent;
        graph.edges.push_back({link.low, link.high, absent ? "#cccccc" : "#8c8c8c",
                               has_one_end(link) ? "dashed" : "solid", link.count()});
    }
    const std::string hint = top == no_level ? "" : "; levels are a guess";
    graph.caption = {title, summary_ + hint, legend(top)};
    return graph;
}

} // namespace

std::string topology_to_dot(const vemra_topology_info_list &list, const std::string &title,
                            Detail detail) {
    return graph_to_dot(Fabric(list).graph(title), detail);
}

} // namespace kvt_tool
