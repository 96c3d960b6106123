#include "graph/levels.h"

#include <algorithm>
#include <utility>

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
    Component with_ports(const Component &component) const;
    Component with_fewest_links(const Component &component, uint64_t slack) const;
    std::pair<size_t, int> misfit(const Component &component) const;
    void spread_from_fewest_links(const Component &component);
    void spread_in(const Component &component);
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

/// The switches that list ports; none when that tells nothing, since all do or none does.
Component Levels::with_ports(const Component &component) const {
    Component edge;
    for (const uint32_t index : component) {
        if (switches_[index].has_ports) {
            edge.push_back(index);
        }
    }
    return edge.size() < component.size() ? edge : Component();
}

/// The switches with the fewest links, and those with up to `slack` more.
Component Levels::with_fewest_links(const Component &component, uint64_t slack) const {
    uint64_t fewest = UINT64_MAX;
    for (const uint32_t index : component) {
        if (!switches_[index].is_absent) {
            fewest = std::min(fewest, switches_[index].links);
        }
    }
    slack += slack * fewest / 32;
    Component edge;
    for (const uint32_t index : component) {
        if (!switches_[index].is_absent && switches_[index].links <= fewest + slack) {
            edge.push_back(index);
        }
    }
    return edge;
}

/// How badly levels fit: links within a level, then the number of levels.
std::pair<size_t, int> Levels::misfit(const Component &component) const {
    size_t within = 0;
    int top = 0;
    for (const uint32_t index : component) {
        top = std::max(top, levels_[index]);
        for (const uint32_t peer : switches_[index].peers) {
            within += levels_[peer] == levels_[index] ? 1 : 0;
        }
    }
    return {within, top};
}

/// Takes the levels that fit best. Where links are down, not all switches at the edge have the
/// same number; but the more differ, the more likely they are not all at the edge.
void Levels::spread_from_fewest_links(const Component &component) {
    std::vector<int> best(component.size(), unknown);
    std::pair<size_t, int> least_misfit = {SIZE_MAX, 0};
    for (const uint64_t slack : {0U, 1U, 2U, 4U}) {
        constexpr int usual_top = 2;
        if (slack > 1 && least_misfit <= std::pair(size_t{0}, usual_top)) {
            break;
        }
        spread(with_fewest_links(component, slack));
        if (const auto now = misfit(component); now < least_misfit) {
            least_misfit = now;
            std::transform(component.begin(), component.end(), best.begin(),
                           [this](uint32_t index) { return levels_[index]; });
        }
        for (const uint32_t index : component) {
            levels_[index] = unknown;
        }
    }
    for (size_t i = 0; i < component.size(); ++i) {
        levels_[component[i]] = best[i];
    }
    turn_if_upside_down(component);
}

void Levels::spread_in(const Component &component) {
    const Component edge = with_ports(component);
    if (edge.empty()) {
        spread_from_fewest_links(component);
    } else {
        spread(edge);
    }
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

/// A tree has more leaves than roots; where both are as many, the leaves have more links.
void Levels::turn_if_upside_down(const Component &component) {
    int top = 0;
    for (const uint32_t index : component) {
        top = std::max(top, levels_[index]);
    }
    const auto weight_of = [&](int level) {
        std::pair<size_t, uint64_t> weight; // switches and links
        for (const uint32_t index : component) {
            if (!switches_[index].is_absent && levels_[index] == level) {
                ++weight.first;
                weight.second += switches_[index].links;
            }
        }
        return weight;
    };
    if (weight_of(top) > weight_of(0)) {
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
            spread_in(component_of(index));
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
