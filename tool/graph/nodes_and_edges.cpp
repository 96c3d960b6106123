#include "graph/nodes_and_edges.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "graph/text.h"

namespace kvt_tool {

namespace {

/// More nodes than these are folded where they can be.
constexpr size_t fold_above = 80;

/// How a graph of some size looks.
struct Scale {
    size_t nodes;
    size_t widest; ///< nodes of the widest level
    size_t edges;
    bool has_levels;

    bool is_small() const { return nodes <= fold_above; }

    bool has_labels() const { return nodes <= 400; }

    bool has_counts() const { return edges <= 100; }
};

std::map<int, std::vector<uint32_t>, std::greater<>> nodes_by_level(const Graph &graph) {
    std::map<int, std::vector<uint32_t>, std::greater<>> levels;
    for (uint32_t node = 0; node < graph.nodes.size(); ++node) {
        levels[graph.nodes[node].level].push_back(node);
    }
    return levels;
}

Scale scale_of(const Graph &graph) {
    size_t widest = 0;
    const auto levels = nodes_by_level(graph);
    for (const auto &[level, nodes] : levels) {
        widest = std::max(widest, nodes.size());
    }
    return {graph.nodes.size(), widest, graph.edges.size(),
            levels.empty() || levels.rbegin()->first != no_level};
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%d.%02d", static_cast<int>(value),
                  static_cast<int>(value * 100) % 100);
    return text;
}

/// The layout: rows as long as that takes seconds, forces otherwise. The bounds on rows are those
/// under which 10,000 edges took 4 s; without them it was twice that.
DotAttributes graph_attributes(const Scale &scale) {
    constexpr size_t most_edges_in_rows = 12000;
    constexpr size_t most_nodes_in_rows = 3000;
    DotAttributes attributes = {{"outputorder", "edgesfirst"}};
    if (!scale.has_levels || scale.edges > most_edges_in_rows || scale.nodes > most_nodes_in_rows) {
        attributes.push_back({"layout", scale.nodes <= 200 ? "neato" : "sfdp"});
        attributes.push_back({"splines", scale.edges <= 400 ? "true" : "false"});
        attributes.push_back({"K", scale.is_small() ? "0.6" : "1.2"});
        attributes.push_back({"overlap", scale.nodes <= 1000 ? "prism" : "true"});
        return attributes;
    }
    attributes.push_back({"layout", "dot"});
    attributes.push_back({"splines", scale.edges <= 400 ? "true" : "false"});
    attributes.push_back({"nodesep", scale.is_small() ? "0.15" : "0.05"});
    attributes.push_back({"ranksep", scale.is_small() ? "0.8" : "2"});
    if (scale.widest > 12) { // labels are wider than high, so columns are shorter than rows
        attributes.push_back({"rankdir", "LR"});
        attributes.push_back({"ratio", scale.widest > 40 ? "1.4" : "0.8"});
    }
    if (scale.edges > 1000) {
        attributes.insert(attributes.end(),
                          {{"mclimit", "0.1"}, {"nslimit", "0.1"}, {"nslimit1", "0.1"}});
    }
    return attributes;
}

DotAttributes node_attributes(const GraphNode &node, const Scale &scale) {
    const bool labelled = scale.has_labels() || node.folded > 1;
    DotAttributes attributes = {{"label", labelled ? quoted(node.label) : "\"\""},
                                {"tooltip", quoted_tooltip(node.detail)},
                                {"fillcolor", quoted(node.fill)},
                                {"shape", std::string(node.shape)},
                                {"style", quoted(node.style)}};
    if (node.border != 1) {
        attributes.push_back({"penwidth", number(node.border)});
    }
    return attributes;
}

DotAttributes edge_attributes(const GraphEdge &edge, const Scale &scale, bool level) {
    const std::string paler = scale.edges > 2000 ? "60" : scale.edges > 400 ? "a0" : "";
    DotAttributes attributes = {{"color", quoted(std::string(edge.colour) + paler)}};
    if (edge.style != "solid") {
        attributes.push_back({"style", std::string(edge.style)});
    }
    if (edge.count > 1) {
        const std::string times = std::to_string(edge.count) + "×";
        attributes.push_back({"tooltip", quoted_tooltip(times)});
        // Graphviz 2.42 frees memory twice over the label of an edge within the first row.
        if (scale.has_counts() && !level) {
            attributes.push_back({"label", quoted(times)});
        }
        attributes.push_back({"penwidth", edge.count < 10 ? "1.5" : "2"});
    }
    if (level) {
        attributes.push_back({"constraint", "false"});
    }
    return attributes;
}

/// Puts the nodes of each level in one row, and the rows one below the other also where no edge
/// joins them.
void write_rows(DotText &text, const Graph &graph) {
    const std::string *above = nullptr;
    for (const auto &[level, nodes] : nodes_by_level(graph)) {
        text.open("", {{"rank", "same"}});
        for (const uint32_t node : nodes) {
            text.node(graph.nodes[node].id, {});
        }
        text.close();
        const std::string &first = graph.nodes[nodes.front()].id;
        if (above != nullptr) {
            text.edge(*above, first, {{"style", "invis"}, {"weight", "0"}});
        }
        above = &first;
    }
}

} // namespace

GraphNode absent_node(std::string id, std::string label) {
    GraphNode node;
    node.id = std::move(id);
    node.detail = label + "\nnot in the message";
    node.label = std::move(label);
    node.fill = "white";
    node.style = "filled,dashed";
    return node;
}

LegendEntry absent_entry() {
    return {"not in the message", "white", faint_line, "dashed"};
}

std::string graph_to_dot(Graph graph, Detail detail) {
    merge_parallel_edges(graph);
    if (detail == Detail::by_size && graph.nodes.size() > fold_above) {
        fold_twins(graph);
    }
    const Scale scale = scale_of(graph);
    graph.caption.font_size = static_cast<unsigned>(14 + std::min<size_t>(scale.widest, 500) /
                                                             (scale.has_levels ? 6 : 20));
    DotText text(graph.caption, graph_attributes(scale));
    text.defaults("node", {{"fontsize", scale.is_small() ? "11" : "8"},
                           {"margin", scale.is_small() ? "\"0.08,0.04\"" : "\"0.03,0.02\""},
                           {"width", "0.1"},
                           {"height", "0.1"},
                           {"color", quoted(plain_line)}});
    text.defaults("edge", {{"dir", "none"}, {"fontsize", "9"}, {"fontcolor", quoted(plain_line)}});
    for (const GraphNode &node : graph.nodes) {
        text.node(node.id, node_attributes(node, scale));
    }
    if (scale.has_levels) {
        write_rows(text, graph);
    }
    for (const GraphEdge &edge : graph.edges) {
        const GraphNode *upper = &graph.nodes[edge.from];
        const GraphNode *lower = &graph.nodes[edge.to];
        if (upper->level < lower->level) {
            std::swap(upper, lower);
        }
        const bool level = scale.has_levels && upper->level == lower->level;
        text.edge(upper->id, lower->id, edge_attributes(edge, scale, level));
    }
    return text.finish();
}

} // namespace kvt_tool
