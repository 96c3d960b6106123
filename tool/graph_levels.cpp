#include "graph_levels.h"

#include <algorithm>

namespace kvt_tool {

namespace {

constexpr int unknown = -1;

using Component = std::vector<uint32_t>;

/// The levels of the switches, one part of the fabric after the other.
class Levels {
public:
    explicit Levels(const std::vector<FabricSwitch> &switches)
        : switches_(switches), levels_(switches.size(), unknown), seen_(switches.size(), false) {}

    std::optional<std::vector<int>> guess();

private:
    Component component_of(uint32_t start);
    Component edge_of(const Component &component) const;
    void spread(Component from);
    void turn_if_upside_down(const Component &component);
    void place_absent();
    bool is_hierarchy() const;

    const std::vector<FabricSwitch> &switches_;
    std::vector<int> levels_;
    std::vector<bool> seen_;
};

/// The switches that can be reached from one.
Component Levels::component_of(uint32_t start) {
    Component component = {start};
    seen_[start] = true;
    for (size_t next = 0; next < component.size(); ++next) {
        for (const uint32_t peer : switches_[component[next]].peers) {
            if (!seen_[peer]) {
                seen_[peer] = true;
                component.push_back(peer);
            }
        }
    }
    return component;
}

Component Levels::edge_of(const Component &component) const {
    Component edge;
    for (const uint32_t index : component) {
        if (switches_[index].has_ports) {
            edge.push_back(index);
        }
    }
    if (!edge.empty() && edge.size() < component.size()) {
        return edge;
    }
    uint64_t fewest = UINT64_MAX;
    for (const uint32_t index : component) {
        if (!switches_[index].is_absent) {
            fewest = std::min(fewest, switches_[index].links);
        }
    }
    // Some links may be down, so that not all at the edge have the same number.
    const uint64_t few = fewest + fewest / 8;
    edge.clear();
    for (const uint32_t index : component) {
        if (!switches_[index].is_absent && switches_[index].links <= few) {
            edge.push_back(index);
        }
    }
    return edge;
}

/// Gives all that can be reached from the edge its distance.
void Levels::spread(Component from) {
    for (const uint32_t index : from) {
        levels_[index] = 0;
    }
    for (size_t next = 0; next < from.size(); ++next) {
        const uint32_t index = from[next];
        for (const uint32_t peer : switches_[index].peers) {
            if (levels_[peer] == unknown) {
                levels_[peer] = levels_[index] + 1;
                from.push_back(peer);
            }
        }
    }
}

/// A tree has more leaves than roots.
void Levels::turn_if_upside_down(const Component &component) {
    int top = 0;
    bool ports_tell = false;
    for (const uint32_t index : component) {
        top = std::max(top, levels_[index]);
        ports_tell = ports_tell || switches_[index].has_ports != switches_[component[0]].has_ports;
    }
    const auto count = [&](int level) {
        return std::count_if(component.begin(), component.end(), [&](uint32_t index) {
            return !switches_[index].is_absent && levels_[index] == level;
        });
    };
    if (!ports_tell && count(top) > count(0)) {
        for (const uint32_t index : component) {
            levels_[index] = top - levels_[index];
        }
    }
}

/// What the top level lacks stands below it: more likely than a tree with still higher roots is one
/// of which not all leaves were asked for.
void Levels::place_absent() {
    int top = 0;
    for (uint32_t index = 0; index < switches_.size(); ++index) {
        top = switches_[index].is_absent ? top : std::max(top, levels_[index]);
    }
    for (uint32_t index = 0; index < switches_.size(); ++index) {
        if (switches_[index].is_absent && levels_[index] > top && top > 0) {
            levels_[index] = top - 1;
        }
    }
}

/// Links of a hierarchy lead from one level to another, but for a few.
bool Levels::is_hierarchy() const {
    size_t across = 0;
    size_t level = 0;
    for (uint32_t index = 0; index < switches_.size(); ++index) {
        for (const uint32_t peer : switches_[index].peers) {
            ++(levels_[peer] == levels_[index] ? level : across);
        }
    }
    return across >= 3 * level;
}

std::optional<std::vector<int>> Levels::guess() {
    for (uint32_t index = 0; index < switches_.size(); ++index) {
        if (!seen_[index] && !switches_[index].is_absent) {
            const Component component = component_of(index);
            spread(edge_of(component));
            turn_if_upside_down(component);
        }
    }
    place_absent();
    return is_hierarchy() ? std::optional(levels_) : std::nullopt;
}

} // namespace

std::optional<std::vector<int>> guess_levels(const std::vector<FabricSwitch> &switches) {
    return Levels(switches).guess();
}

} // namespace kvt_tool
