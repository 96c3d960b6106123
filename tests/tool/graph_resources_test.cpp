// Resources as graphs.
#include <gtest/gtest.h>

#include "graph_messages.h"

namespace kvt_tool {
namespace {

std::string link_block(const std::string &guid, const std::string &port,
                       const std::string &status) {
    return "    links {\n      agg_node_guid: " + guid + "\n      port_num: " + port +
           "\n      link_status: " + status + "\n    }\n";
}

std::string node_block(const std::string &guid, const std::string &status,
                       const std::string &time = "12:00") {
    return "    agg_nodes {\n      agg_node_guid: " + guid + "\n      ts: \"" + time +
           "\"\n      agg_node_status: " + status + "\n      active_jobs: 3\n      trees_num: 1\n" +
           "    }\n";
}

TEST(GraphResources, TreesHaveTheColourOfTheirStatus) {
    EXPECT_EQ(lines_with(resources_dot("    agg_trees {\n      tree_num: 4\n      priority: 2\n"
                                       "      tree_status: 1\n    }\n"),
                         "t0 ["),
              "t0 [label=\"tree 4\", tooltip=\"tree 4\\nstatus 1, priority 2\", "
              "fillcolor=\"#e69f00\", shape=ellipse, style=filled, sortv=1];\n");
}

TEST(GraphResources, LinksStandAtTheirNodeByTheirPorts) {
    EXPECT_EQ(
        lines_with(resources_dot(link_block("16", "37", "2") + node_block("16", "1")), "n0 ["),
        "n0 [label=<<TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"2\" "
        "COLOR=\"#555555\"><TR><TD BGCOLOR=\"#e69f00\"><FONT FACE=\"monospace\">"
        "0x0000000000000010</FONT><BR/>1 tree, 3 jobs</TD></TR><TR><TD BORDER=\"0\" "
        "CELLPADDING=\"0\"><TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"0\" "
        "CELLPADDING=\"2\"><TR><TD BGCOLOR=\"#2fb38c\">37</TD></TR></TABLE></TD></TR></TABLE>>, "
        "tooltip=\"0x0000000000000010\\nstatus 1, priority 0, 1 tree, 3 jobs\\n12:00\\n"
        "port 37: status 2, priority 0, 0 jobs\", sortv=1];\n");
}

TEST(GraphResources, ANodeThatOnlyLinksNameIsFaint) {
    const std::string dot = resources_dot(link_block("16", "1", "0"));
    EXPECT_NE(lines_with(dot, "n0 [").find("<TD STYLE=\"dashed\" COLOR=\"#aaaaaa\">"),
              std::string::npos);
    EXPECT_NE(dot.find(">not in the message</TD>"), std::string::npos);
}

TEST(GraphResources, ANodeThatComesAgainIsTheSameNode) {
    const std::string dot = resources_dot(node_block("16", "1") + node_block("16", "2"));
    EXPECT_NE(lines_with(dot, "n0 [").find("listed 2 times"), std::string::npos);
    EXPECT_EQ(lines_with(dot, "n1 ["), "");
}

TEST(GraphResources, EveryStatusIsInTheLegend) {
    const std::string dot = resources_dot(node_block("16", "110") + link_block("16", "1", "0"));
    EXPECT_NE(dot.find("<TD BGCOLOR=\"#56b4e9\" COLOR=\"#555555\" STYLE=\"solid\">status 0</TD>"
                       "<TD BGCOLOR=\"#e69f00\" COLOR=\"#555555\" STYLE=\"solid\">status 110</TD>"),
              std::string::npos);
}

TEST(GraphResources, ColoursThatAreUsedUpBecomeGrey) {
    std::string nodes;
    for (unsigned i = 0; i < 9; ++i) {
        nodes += node_block(std::to_string(i), std::to_string(i));
    }
    const std::string dot = resources_dot(nodes);
    EXPECT_NE(dot.find("status 6</TD><TD BGCOLOR=\"#c0c0c0\" COLOR=\"#555555\" STYLE=\"solid\">"
                       "another status</TD>"),
              std::string::npos);
    EXPECT_NE(lines_with(dot, "n8 [").find("<TD BGCOLOR=\"#c0c0c0\">"), std::string::npos);
}

TEST(GraphResources, ManyLinksAreCountedByStatus) {
    std::string links;
    for (unsigned i = 0; i < 2501; ++i) {
        links += link_block("16", std::to_string(i), i < 2500 ? "1" : "2");
    }
    const std::string dot = resources_dot(node_block("16", "1") + links);
    EXPECT_NE(dot.find("<TD BGCOLOR=\"#e69f00\">2500×</TD><TD BGCOLOR=\"#2fb38c\">1×</TD>"),
              std::string::npos);
}

TEST(GraphResources, HostileTimesAreQuoted) {
    EXPECT_NE(resources_dot(node_block("16", "1", "\\N<b>\n&")).find(R"(\\\\N<b>\\\\x0a&amp;)"),
              std::string::npos);
}

} // namespace
} // namespace kvt_tool
