// Topologies as graphs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "graph/kinds.h"
#include "graph/levels.h"
#include "graph_messages.h"

namespace kvt_tool {
namespace {

TEST(GraphTopology, ALinkThatBothEndsNameIsDrawnOnce) {
    const std::string dot = topology_dot(switch_block("1", "leaf1", {"101"}, true) +
                                         switch_block("2", "leaf2", {"101"}, true) +
                                         switch_block("101", "spine", {"1", "2"}));
    EXPECT_EQ(lines_with(dot, "label=\"") + lines_with(dot, "->"),
              "s1 [label=\"leaf1\", tooltip=\"switch 1: leaf1, 1 port GUID\", "
              "fillcolor=\"#d6ecf9\", shape=box, style=\"filled\"];\n"
              "s2 [label=\"leaf2\", tooltip=\"switch 2: leaf2, 1 port GUID\", "
              "fillcolor=\"#d6ecf9\", shape=box, style=\"filled\"];\n"
              "s101 [label=\"spine\", tooltip=\"switch 101: spine, 0 port GUIDs\", "
              "fillcolor=\"#fbe5bf\", shape=box, style=\"filled\"];\n"
              "s101 -> s1 [style=invis, weight=0];\n"
              "s101 -> s1 [color=\"#8c8c8c\"];\n"
              "s101 -> s2 [color=\"#8c8c8c\"];\n");
    EXPECT_NE(dot.find("3 switches, 2 links, status 0; levels are a guess"), std::string::npos);
}

TEST(GraphTopology, SwitchesThatAreNotThereAreFaint) {
    const std::string dot = topology_dot(switch_block("1", "leaf1", {"101"}, true));
    EXPECT_EQ(lines_with(dot, "s101 ["),
              "s101 [label=\"switch 101\", tooltip=\"switch 101\\nnot in the message\", "
              "fillcolor=\"white\", shape=box, style=\"filled,dashed\"];\n");
    EXPECT_NE(dot.find(">not in the message</TD>"), std::string::npos);
}

TEST(GraphTopology, ParallelLinksAreCounted) {
    const std::string dot = topology_dot(switch_block("1", "leaf", {"2", "2", "2"}, true) +
                                         switch_block("2", "spine", {"1", "1", "1"}));
    EXPECT_EQ(lines_with(dot, "×"), "s2 -> s1 [color=\"#8c8c8c\", tooltip=\"3×\", "
                                    "label=\"3×\", penwidth=1.5];\n");
}

TEST(GraphTopology, ALinkThatOneEndNamesIsDashed) {
    const std::string dot =
        topology_dot(switch_block("1", "leaf", {"2"}, true) + switch_block("2", "spine", {}));
    EXPECT_EQ(lines_with(dot, "dashed]"), "s2 -> s1 [color=\"#8c8c8c\", style=dashed];\n");
    EXPECT_NE(dot.find("dashed line: named by one end only"), std::string::npos);
}

TEST(GraphTopology, AnIdThatComesAgainIsTheSameSwitch) {
    const std::string dot =
        topology_dot(switch_block("1", "first", {"2"}) + switch_block("1", "again", {"3"}));
    EXPECT_EQ(lines_with(dot, "tooltip=\"switch 1:"),
              "s1 [label=\"first\", tooltip=\"switch 1: first, 0 port GUIDs\\nlisted again\", "
              "fillcolor=\"#d6ecf9\", shape=box, style=\"filled\"];\n");
}

TEST(GraphTopology, ANamelessSwitchShowsItsId) {
    EXPECT_NE(topology_dot(switch_block("5", "", {})).find("s5 [label=\"switch 5\""),
              std::string::npos);
}

TEST(GraphTopology, ASwitchMayBeItsOwnPeer) {
    const std::string dot = topology_dot(switch_block("1", "loop", {"1"}));
    EXPECT_EQ(lines_with(dot, "->"), "s1 -> s1 [color=\"#8c8c8c\", constraint=false];\n");
}

TEST(GraphTopology, HostileNamesAreQuoted) {
    vemra_topology_switch_info info = {};
    std::strcpy(info.name, "\"]; x -> y; \\\n\xff<b>&amp;");
    const vemra_topology_info_list list = {1, &info, 0};
    EXPECT_EQ(lines_with(topology_to_dot(list, "test", Detail::by_size), "s0 ["),
              R"(s0 [label="\"]; x -> y; \\\\x0a\\xff<b>&amp;amp;", )"
              R"(tooltip="switch 0: \"]; x -> y; \\\\\\\\x0a\\\\xff<b>&amp;amp;, 0 port GUIDs", )"
              "fillcolor=\"#d6ecf9\", shape=box, style=\"filled\"];\n");
}

TEST(GraphTopology, AFabricWithoutLevelsIsLaidOutByForces) {
    const std::string dot =
        topology_dot(switch_block("1", "a", {"2", "3"}) + switch_block("2", "b", {"1", "3"}) +
                     switch_block("3", "c", {"1", "2"}));
    EXPECT_NE(dot.find("layout=neato"), std::string::npos);
    EXPECT_EQ(dot.find("rank=same"), std::string::npos);
    EXPECT_EQ(dot.find("levels"), std::string::npos);
}

TEST(GraphTopology, SwitchesWithTheSameLinksAreFoldedInLargeFabrics) {
    std::string lines;
    std::vector<std::string> leaves;
    for (unsigned leaf = 1; leaf <= 80; ++leaf) {
        leaves.push_back(std::to_string(leaf));
        lines += switch_block(leaves.back(), "leaf" + leaves.back(), {"101", "102"}, true);
    }
    lines += switch_block("101", "spine1", leaves) + switch_block("102", "spine2", leaves);
    const std::string folded = topology_dot(lines);
    EXPECT_NE(folded.find("s1 [label=\"leaf1 … leaf80\\n(80 with the same links)\""),
              std::string::npos);
    EXPECT_EQ(lines_with(folded, "×"), "s101 -> s1 [color=\"#8c8c8c\", tooltip=\"160×\", "
                                       "label=\"160×\", penwidth=2];\n");
    const std::string all = dot_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY,
                                   "  topology_info_list {\n" + lines + "  }\n", Detail::all);
    EXPECT_NE(all.find("s80 [label=\"leaf80\""), std::string::npos);
}

/// A fabric of switches with these peers, each link named at one end.
std::vector<FabricSwitch> fabric_of(size_t count,
                                    const std::vector<std::pair<uint32_t, uint32_t>> &links) {
    std::vector<FabricSwitch> fabric(count);
    for (const auto &[from, to] : links) {
        fabric[from].peers.push_back(to);
        fabric[to].peers.push_back(from);
        ++fabric[from].links;
        ++fabric[to].links;
    }
    return fabric;
}

TEST(GraphLevels, SwitchesWithTheFewestLinksAreAtTheEdge) {
    const auto fabric = fabric_of(5, {{0, 3}, {0, 4}, {1, 3}, {1, 4}, {2, 3}, {2, 4}});
    EXPECT_EQ(guess_levels(fabric), (std::vector<int>{0, 0, 0, 1, 1}));
}

TEST(GraphLevels, OfTwoEndsTheLargerIsTheEdge) {
    // Two cores, which have the fewest links, four switches between, six leaves.
    std::vector<std::pair<uint32_t, uint32_t>> links = {{0, 2}, {0, 3}, {1, 4}, {1, 5}};
    for (uint32_t leaf = 6; leaf < 12; ++leaf) {
        for (uint32_t between = 2; between < 6; ++between) {
            links.emplace_back(between, leaf);
        }
    }
    EXPECT_EQ(guess_levels(fabric_of(12, links)),
              (std::vector<int>{2, 2, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0}));
}

TEST(GraphLevels, LinksMayBeDown) {
    // 24 leaves, two of which lack one of their 10 links.
    std::vector<std::pair<uint32_t, uint32_t>> links;
    for (uint32_t leaf = 0; leaf < 24; ++leaf) {
        for (uint32_t spine = leaf < 2 ? 25 : 24; spine < 34; ++spine) {
            links.emplace_back(leaf, spine);
        }
    }
    std::vector<int> levels(34, 0);
    std::fill(levels.begin() + 24, levels.end(), 1);
    EXPECT_EQ(guess_levels(fabric_of(34, links)), levels);
}

TEST(GraphLevels, PortsTellTheEdge) {
    auto fabric = fabric_of(4, {{0, 2}, {0, 3}, {1, 2}, {1, 3}});
    EXPECT_EQ(guess_levels(fabric), std::nullopt) << "a ring";
    fabric[2].has_ports = fabric[3].has_ports = true;
    EXPECT_EQ(guess_levels(fabric), (std::vector<int>{1, 1, 0, 0}));
}

TEST(GraphLevels, WhatTheTopLacksIsBelowIt) {
    auto fabric = fabric_of(4, {{0, 2}, {1, 2}, {3, 2}});
    fabric[0].has_ports = fabric[1].has_ports = true;
    fabric[3].is_absent = true;
    EXPECT_EQ(guess_levels(fabric), (std::vector<int>{0, 0, 1, 0}));
}

TEST(GraphLevels, AFabricMayBeEmptyOrInParts) {
    EXPECT_EQ(guess_levels({}), std::vector<int>());
    EXPECT_EQ(guess_levels(fabric_of(5, {{0, 2}, {1, 2}})), (std::vector<int>{0, 0, 1, 0, 0}));
}

} // namespace
} // namespace kvt_tool
