// The aggregation nodes of a job, each below its parent.
#pragma once

#include <cstdint>
#include <vector>

namespace kvt_tool {

inline constexpr uint32_t no_node = UINT32_MAX;

/// An aggregation node of the message, or one that is only named as a parent.
struct AggNode {
    uint32_t place; ///< among the nodes of the graph
    uint16_t tree_id;
    uint16_t parent_number;
    bool is_absent = false;
    uint32_t parent = no_node;  ///< its index
    bool ends_a_circle = false; ///< its parent is below it
    int depth = -1;             ///< below its root
};

/// Finds the circles that parents form and cuts each: where a parent is number 0, which then meant
/// none, and otherwise at a node that is marked as ending a circle.
void cut_circles(std::vector<AggNode> &nodes);

/// Gives each node its depth, when circles are cut.
void count_depths(std::vector<AggNode> &nodes);

} // namespace kvt_tool
