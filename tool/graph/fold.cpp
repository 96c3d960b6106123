#include <algorithm>
#include <map>
#include <tuple>

#include "graph/nodes_and_edges.h"
#include "graph/text.h"
#include "model/hash.h"

namespace kvt_tool {

namespace {

/// What an edge is, seen from one of its nodes: the other one, whether it leads there, its colour
/// and style, and its count.
using Neighbour = std::tuple<uint32_t, bool, std::string_view, std::string_view, uint64_t>;

std::vector<std::vector<Neighbour>> neighbours_of(const Graph &graph) {
    std::vector<std::vector<Neighbour>> neighbours(graph.nodes.size());
    for (const GraphEdge &edge : graph.edges) {
        neighbours[edge.from].emplace_back(edge.to, true, edge.colour, edge.style, edge.count);
        neighbours[edge.to].emplace_back(edge.from, false, edge.colour, edge.style, edge.count);
    }
    for (std::vector<Neighbour> &list : neighbours) {
        std::sort(list.begin(), list.end());
    }
    return neighbours;
}

bool look_the_same(const GraphNode &a, const GraphNode &b) {
    return a.may_fold && b.may_fold && a.level == b.level && a.fill == b.fill &&
           a.shape == b.shape && a.style == b.style;
}

uint64_t hash_of(const std::vector<Neighbour> &list) {
    uint64_t hash = list.size();
    for (const Neighbour &neighbour : list) {
        hash = mix_in(hash, std::get<0>(neighbour));
    }
    return hash;
}

/// The first node that each node may be folded into; itself, if there is none before it.
std::vector<uint32_t> first_twins(const Graph &graph) {
    const std::vector<std::vector<Neighbour>> neighbours = neighbours_of(graph);
    const auto count = static_cast<uint32_t>(graph.nodes.size());
    std::vector<uint64_t> hashes(count);
    std::vector<uint32_t> order(count);
    for (uint32_t node = 0; node < count; ++node) {
        hashes[node] = hash_of(neighbours[node]);
        order[node] = node;
    }
    // Equal hashes with different neighbours cost a picture some folds, never a wrong one.
    std::stable_sort(order.begin(), order.end(),
                     [&](uint32_t a, uint32_t b) { return hashes[a] < hashes[b]; });
    std::vector<uint32_t> first(count);
    std::map<std::pair<int, std::string_view>, uint32_t> open;
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t node = order[i];
        if (i == 0 || hashes[node] != hashes[order[i - 1]]) {
            open.clear();
        }
        const auto [twin, is_new] =
            open.try_emplace({graph.nodes[node].level, graph.nodes[node].fill}, node);
        const bool folds = !is_new && look_the_same(graph.nodes[node], graph.nodes[twin->second]) &&
                           neighbours[node] == neighbours[twin->second];
        first[node] = folds ? twin->second : node;
        if (!is_new && !folds) {
            twin->second = node;
        }
    }
    return first;
}

} // namespace

void merge_parallel_edges(Graph &graph) {
    std::vector<GraphEdge> &edges = graph.edges;
    const auto key = [](const GraphEdge &edge) {
        return std::tie(edge.from, edge.to, edge.colour, edge.style);
    };
    std::sort(edges.begin(), edges.end(),
              [key](const GraphEdge &a, const GraphEdge &b) { return key(a) < key(b); });
    size_t kept = 0;
    for (const GraphEdge &edge : edges) {
        GraphEdge *last = kept != 0 ? &edges[kept - 1] : nullptr;
        if (last != nullptr && key(*last) == key(edge)) {
            last->count += edge.count;
        } else {
            edges[kept++] = edge;
        }
    }
    edges.resize(kept);
}

void fold_twins(Graph &graph) {
    const std::vector<uint32_t> first = first_twins(graph);
    constexpr size_t longest_detail = 4000;
    std::vector<uint32_t> place(first.size());
    std::vector<GraphNode> kept;
    std::vector<std::string> last_label;
    for (uint32_t node = 0; node < first.size(); ++node) {
        GraphNode &now = graph.nodes[node];
        if (first[node] == node) {
            place[node] = static_cast<uint32_t>(kept.size());
            kept.push_back(std::move(now));
            last_label.emplace_back();
            continue;
        }
        place[node] = place[first[node]];
        GraphNode &twin = kept[place[node]];
        ++twin.folded;
        last_label[place[node]] = now.label;
        if (twin.detail.size() < longest_detail) {
            twin.detail += "\n" + now.detail;
        }
    }
    for (uint32_t node = 0; node < kept.size(); ++node) {
        if (kept[node].folded > 1) {
            kept[node].label += " … " + last_label[node] + "\n(" +
                                std::to_string(kept[node].folded) + " with the same links)";
        }
    }
    graph.nodes = std::move(kept);
    for (GraphEdge &edge : graph.edges) {
        edge.from = place[edge.from];
        edge.to = place[edge.to];
    }
    merge_parallel_edges(graph);
}

} // namespace kvt_tool
