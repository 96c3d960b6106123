// A picture of nodes and edges, before it is written in DOT.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "graph/dot.h"
#include "graph/graph.h"

namespace kvt_tool {

/// The level of a node that has none.
inline constexpr int no_level = -1;

struct GraphNode {
    std::string id;     ///< a word of DOT, made of our own letters and numbers
    std::string label;  ///< visible; newlines part its lines
    std::string detail; ///< the same at length, shown when the pointer rests on the node
    std::string_view fill = plain_fill;
    std::string_view shape = "box";
    std::string_view style = "filled";
    double border = 1;
    int level = no_level; ///< 0 is drawn at the bottom
    bool may_fold = true; ///< into one with others that have the same neighbours
    uint32_t folded = 1;  ///< how many nodes it stands for
};

struct GraphEdge {
    uint32_t from = 0; ///< index of a node
    uint32_t to = 0;
    std::string_view colour = faint_line;
    std::string_view style = "solid";
    uint64_t count = 1; ///< how many connections it stands for
};

struct Graph {
    Caption caption;
    std::vector<GraphNode> nodes;
    std::vector<GraphEdge> edges;
};

/// A node that the message names without telling of it.
GraphNode absent_node(std::string id, std::string label);

/// The legend's entry for such nodes.
LegendEntry absent_entry();

/// Makes edges with the same ends and looks one, in the order of their ends.
void merge_parallel_edges(Graph &graph);

/// Makes nodes one that look the same and have the same neighbours.
void fold_twins(Graph &graph);

/// The graph in DOT: with levels in rows, without levels by forces between the nodes. Folds
/// before that, when there are many nodes and `detail` allows it.
std::string graph_to_dot(Graph graph, Detail detail);

} // namespace kvt_tool
