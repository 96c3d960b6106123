#include <algorithm>
#include <map>
#include <set>
#include <span>

#include "graph/agg_nodes.h"
#include "graph/kinds.h"
#include "graph/nodes_and_edges.h"
#include "graph/text.h"
#include "model/hexadecimal.h"

namespace kvt_tool {

namespace {

/// An aggregation node by its tree and its number in there, or by its tree and its LID or GUID.
using InTree = std::pair<uint16_t, uint64_t>;

std::vector<uint32_t> tree_ids(const vemra_job_data &job) {
    std::vector<uint32_t> ids;
    for (const vemra_tree &tree : std::span(job.trees, job.trees_num)) {
        ids.push_back(tree.tree_id);
    }
    for (const vemra_tree_an &node : std::span(job.agg_nodes, job.agg_nodes_num)) {
        ids.push_back(node.tree_id);
    }
    for (const vemra_tree_conn &conn : std::span(job.conns, job.conns_num)) {
        ids.push_back(conn.tree_id);
    }
    return ids;
}

/// A job as nodes and edges. Daemons stand at the bottom, trees at the top, and between them the
/// aggregation nodes, each below its parent.
class JobGraph {
public:
    explicit JobGraph(const vemra_job_data &job);

    Graph graph(const std::string &title);

private:
    uint32_t add(GraphNode node);
    uint32_t tree(uint16_t id);
    uint32_t daemon(uint64_t id);
    void add_trees();
    void add_agg_nodes();
    void add_daemons();
    uint32_t parent_of(uint32_t index);
    void find_parents();
    void place_in_levels();
    void join_trees();
    void connect_daemons();
    uint32_t end_of(const vemra_tree_conn &conn);
    Caption caption(const std::string &title) const;

    const vemra_job_data &job_;
    Colours colours_;
    Graph graph_;
    std::map<uint16_t, uint32_t> trees_;
    std::map<uint64_t, uint32_t> daemons_;
    std::map<InTree, uint32_t> by_number_; ///< indices of agg_nodes_
    std::map<InTree, uint32_t> by_guid_;
    std::map<InTree, uint32_t> by_lid_;
    std::vector<AggNode> agg_nodes_;
    bool has_absent_ = false;
};

JobGraph::JobGraph(const vemra_job_data &job) : job_(job), colours_("tree", tree_ids(job)) {}

uint32_t JobGraph::add(GraphNode node) {
    graph_.nodes.push_back(std::move(node));
    return static_cast<uint32_t>(graph_.nodes.size() - 1);
}

uint32_t JobGraph::tree(uint16_t id) {
    const auto [place, is_new] = trees_.try_emplace(id, no_node);
    if (is_new) {
        GraphNode node = absent_node("t" + std::to_string(id), "tree " + std::to_string(id));
        node.shape = "ellipse";
        node.may_fold = false;
        has_absent_ = true;
        place->second = add(std::move(node));
    }
    return place->second;
}

uint32_t JobGraph::daemon(uint64_t id) {
    const auto [place, is_new] = daemons_.try_emplace(id, no_node);
    if (is_new) {
        has_absent_ = true;
        place->second = add(absent_node("d" + std::to_string(id), "daemon\n" + guid_text(id)));
    }
    return place->second;
}

void JobGraph::add_trees() {
    for (const vemra_tree &info : std::span(job_.trees, job_.trees_num)) {
        const auto [place, is_new] = trees_.try_emplace(info.tree_id, no_node);
        if (!is_new) {
            graph_.nodes[place->second].detail += "\nlisted again";
            continue;
        }
        GraphNode node;
        node.id = "t" + std::to_string(info.tree_id);
        node.label = "tree " + std::to_string(info.tree_id);
        node.detail = node.label + ", peer tree " + std::to_string(info.peer_tree_id);
        node.fill = colours_.of(info.tree_id);
        node.shape = "ellipse";
        node.may_fold = false;
        place->second = add(std::move(node));
    }
}

void JobGraph::add_agg_nodes() {
    for (const vemra_tree_an &info : std::span(job_.agg_nodes, job_.agg_nodes_num)) {
        const auto index = static_cast<uint32_t>(agg_nodes_.size());
        const auto [place, is_new] = by_number_.try_emplace({info.tree_id, info.an_id}, index);
        if (!is_new) {
            graph_.nodes[agg_nodes_[place->second].place].detail +=
                "\nlisted again: " + guid_text(info.guid);
            continue;
        }
        GraphNode node;
        node.id = "a" + std::to_string(info.tree_id) + "_" + std::to_string(info.an_id);
        node.label = "AN " + std::to_string(info.an_id) + "\nLID " + std::to_string(info.lid);
        node.detail = "aggregation node " + std::to_string(info.an_id) + " of tree " +
                      std::to_string(info.tree_id) + "\n" + guid_text(info.guid) + ", LID " +
                      std::to_string(info.lid);
        node.fill = colours_.of(info.tree_id);
        node.may_fold = false;
        const uint32_t place_in_graph = add(std::move(node));
        agg_nodes_.push_back({place_in_graph, info.tree_id, info.parent_an_id});
        by_guid_.try_emplace({info.tree_id, info.guid}, place_in_graph);
        by_lid_.try_emplace({info.tree_id, info.lid}, place_in_graph);
    }
}

void JobGraph::add_daemons() {
    for (const vemra_sd_info &info : std::span(job_.hosts_sd_info, job_.hosts_num)) {
        const auto [place, is_new] = daemons_.try_emplace(info.vemrad_id, no_node);
        const std::string address = visible_array(info.addr);
        if (!is_new) {
            graph_.nodes[place->second].detail += "\nlisted again: " + address;
            continue;
        }
        const bool master = info.vemrad_id == job_.master_vemrad_id;
        GraphNode node;
        node.id = "d" + std::to_string(info.vemrad_id);
        node.label = address.empty() ? guid_text(info.vemrad_id) : shortened(address);
        node.detail =
            "daemon " + guid_text(info.vemrad_id) + (master ? ", master" : "") + "\n" + address;
        node.style = "filled,rounded";
        node.border = master ? 3 : 1;
        node.may_fold = !master;
        place->second = add(std::move(node));
    }
}

/// The index of a node's parent, which becomes an absent node if it is not in the message; no_node
/// for a root. Number 0 is no parent where no node has it, or for the node itself.
uint32_t JobGraph::parent_of(uint32_t index) {
    const uint16_t tree_id = agg_nodes_[index].tree_id;
    const uint16_t number = agg_nodes_[index].parent_number;
    const auto found = by_number_.find({tree_id, number});
    if (found != by_number_.end()) {
        return found->second == index && number == 0 ? no_node : found->second;
    }
    if (number == 0) {
        return no_node;
    }
    const std::string name = std::to_string(number);
    GraphNode node = absent_node("a" + std::to_string(tree_id) + "_" + name, "AN " + name);
    node.may_fold = false;
    has_absent_ = true;
    const auto absent = static_cast<uint32_t>(agg_nodes_.size());
    by_number_[{tree_id, number}] = absent;
    agg_nodes_.push_back({add(std::move(node)), tree_id, 0, true});
    return absent;
}

void JobGraph::find_parents() {
    const auto listed = static_cast<uint32_t>(agg_nodes_.size());
    for (uint32_t index = 0; index < listed; ++index) {
        const uint32_t parent = parent_of(index); // which may add a node
        agg_nodes_[index].parent = parent;
    }
    cut_circles(agg_nodes_);
    count_depths(agg_nodes_);
}

/// Trees at the top, daemons at the bottom.
void JobGraph::place_in_levels() {
    int deepest = -1;
    for (const AggNode &node : agg_nodes_) {
        deepest = std::max(deepest, node.depth);
    }
    for (const AggNode &node : agg_nodes_) {
        graph_.nodes[node.place].level = 1 + deepest - node.depth;
    }
    for (const auto &[id, place] : trees_) {
        graph_.nodes[place].level = deepest + 2;
    }
    for (const auto &[id, place] : daemons_) {
        graph_.nodes[place].level = 0;
    }
}

void JobGraph::join_trees() {
    for (const AggNode &node : agg_nodes_) {
        const uint32_t upper =
            node.parent != no_node ? agg_nodes_[node.parent].place : tree(node.tree_id);
        graph_.edges.push_back(
            {upper, node.place, colours_.of(node.tree_id), node.ends_a_circle ? "dotted" : "bold"});
    }
    std::set<std::pair<uint32_t, uint32_t>> peers; // once, though both may name each other
    for (const vemra_tree &info : std::span(job_.trees, job_.trees_num)) {
        const auto peer = trees_.find(info.peer_tree_id);
        if (info.peer_tree_id != 0 && peer != trees_.end() && info.peer_tree_id != info.tree_id) {
            const uint32_t own = tree(info.tree_id);
            peers.emplace(std::min(own, peer->second), std::max(own, peer->second));
        }
    }
    for (const auto &[low, high] : peers) {
        graph_.edges.push_back({low, high, plain_line, "dashed"});
    }
}

/// Where a connection ends: the aggregation node of its tree that its path leads to, or, when the
/// message does not have that, the tree. Paths hold their numbers as they go over the wire, so they
/// may have the other order of bytes.
uint32_t JobGraph::end_of(const vemra_tree_conn &conn) {
    const uint64_t guid = conn.pr_sd_to_an.dgid.global.interface_id;
    for (const uint64_t either : {guid, __builtin_bswap64(guid)}) {
        const auto found = by_guid_.find({conn.tree_id, either});
        if (either != 0 && found != by_guid_.end()) {
            return found->second;
        }
    }
    const uint16_t lid = conn.pr_sd_to_an.dlid;
    for (const uint16_t either : {lid, __builtin_bswap16(lid)}) {
        const auto found = by_lid_.find({conn.tree_id, either});
        if (either != 0 && found != by_lid_.end()) {
            return found->second;
        }
    }
    return tree(conn.tree_id);
}

void JobGraph::connect_daemons() {
    for (const vemra_tree_conn &conn : std::span(job_.conns, job_.conns_num)) {
        const uint32_t upper = end_of(conn);
        graph_.edges.push_back({upper, daemon(conn.vemrad_id), colours_.of(conn.tree_id), "solid"});
    }
}

Caption JobGraph::caption(const std::string &title) const {
    const std::string summary =
        "job " + std::to_string(job_.job_id) + ": " + counted(job_.hosts_num, "host", "hosts") +
        ", " + counted(job_.trees_num, "tree", "trees") + ", " +
        counted(job_.agg_nodes_num, "aggregation node (AN)", "aggregation nodes (AN)") + ", " +
        counted(job_.conns_num, "connection", "connections");
    std::vector<LegendEntry> legend = colours_.legend();
    legend.push_back({"host (thick border: master)", plain_fill, plain_line, "rounded"});
    if (has_absent_) {
        legend.push_back(absent_entry());
    }
    if (std::any_of(agg_nodes_.begin(), agg_nodes_.end(),
                    [](const AggNode &node) { return node.ends_a_circle; })) {
        legend.push_back({"dotted line: parent is below it", "white", "white"});
    }
    return {title, summary, std::move(legend)};
}

Graph JobGraph::graph(const std::string &title) {
    add_trees();
    add_agg_nodes();
    add_daemons();
    find_parents();
    join_trees();
    connect_daemons();
    place_in_levels();
    graph_.caption = caption(title);
    return std::move(graph_);
}

} // namespace

std::string job_to_dot(const vemra_job_data &job, const std::string &title, Detail detail) {
    return graph_to_dot(JobGraph(job).graph(title), detail);
}

} // namespace kvt_tool
