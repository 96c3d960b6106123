#include "graph/agg_nodes.h"

namespace kvt_tool {

namespace {

void cut_circle(std::vector<AggNode> &nodes, uint32_t last) {
    uint32_t at = last;
    do {
        if (nodes[at].parent_number == 0) {
            nodes[at].parent = no_node;
            return;
        }
        at = nodes[at].parent;
    } while (at != last);
    nodes[last].ends_a_circle = true;
}

} // namespace

void cut_circles(std::vector<AggNode> &nodes) {
    std::vector<uint32_t> walk_of(nodes.size(), no_node); // the walk upwards that came by first
    for (uint32_t walk = 0; walk < nodes.size(); ++walk) {
        uint32_t at = walk;
        while (at != no_node && walk_of[at] == no_node) {
            walk_of[at] = walk;
            const uint32_t parent = nodes[at].parent;
            if (parent != no_node && walk_of[parent] == walk) {
                cut_circle(nodes, at);
            }
            at = parent;
        }
    }
}

void count_depths(std::vector<AggNode> &nodes) {
    std::vector<uint32_t> way; // up to a node whose depth is known, or to a root
    for (uint32_t start = 0; start < nodes.size(); ++start) {
        int depth = -1;
        for (uint32_t at = start; at != no_node;) {
            const AggNode &node = nodes[at];
            if (node.depth >= 0) {
                depth = node.depth;
                break;
            }
            way.push_back(at);
            at = node.ends_a_circle ? no_node : node.parent;
        }
        for (; !way.empty(); way.pop_back()) {
            nodes[way.back()].depth = ++depth;
        }
    }
}

} // namespace kvt_tool
