// Jobs as graphs.
#include <gtest/gtest.h>

#include "graph_messages.h"

namespace kvt_tool {
namespace {

std::string tree_block(const std::string &id, const std::string &peer = "0") {
    return "    trees {\n      tree_id: " + id + "\n      peer_tree_id: " + peer + "\n    }\n";
}

std::string agg_node(const std::string &number, const std::string &parent) {
    return "    agg_nodes {\n      guid: 100" + number + "\n      lid: 20" + number +
           "\n      tree_id: 1\n      an_id: " + number + "\n      parent_an_id: " + parent +
           "\n    }\n";
}

std::string host(const std::string &id, const std::string &address) {
    return "    hosts_sd_info {\n      vemrad_id: " + id + "\n      addr: \"" + address +
           "\"\n    }\n";
}

/// A connection whose path leads to a GUID and a LID.
std::string connection(const std::string &daemon, const std::string &guid,
                       const std::string &lid = "0") {
    return "    conns {\n      tree_id: 1\n      vemrad_id: " + daemon +
           "\n      pr_sd_to_an {\n        dgid {\n          guid: " + guid +
           "\n        }\n        dlid: " + lid + "\n      }\n    }\n";
}

TEST(GraphJob, NodesStandBelowTheirParentsAndHostsBelowTheirNodes) {
    const std::string dot = job_dot("    master_vemrad_id: 7\n" + host("7", "192.0.2.7") +
                                    host("8", "") + tree_block("1") + connection("7", "1002") +
                                    agg_node("2", "3") + agg_node("3", "0"));
    EXPECT_EQ(lines_with(dot, "label=\""),
              "t1 [label=\"tree 1\", tooltip=\"tree 1, peer tree 0\", fillcolor=\"#e69f00\", "
              "shape=ellipse, style=\"filled\"];\n"
              "a1_2 [label=\"AN 2\\nLID 202\", tooltip=\"aggregation node 2 of tree 1\\n"
              "0x00000000000003ea, LID 202\", fillcolor=\"#e69f00\", shape=box, "
              "style=\"filled\"];\n"
              "a1_3 [label=\"AN 3\\nLID 203\", tooltip=\"aggregation node 3 of tree 1\\n"
              "0x00000000000003eb, LID 203\", fillcolor=\"#e69f00\", shape=box, "
              "style=\"filled\"];\n"
              "d7 [label=\"192.0.2.7\", tooltip=\"daemon 0x0000000000000007, master\\n"
              "192.0.2.7\", fillcolor=\"#f2f2f2\", shape=box, style=\"filled,rounded\", "
              "penwidth=3.00];\n"
              "d8 [label=\"0x0000000000000008\", tooltip=\"daemon 0x0000000000000008\\n\", "
              "fillcolor=\"#f2f2f2\", shape=box, style=\"filled,rounded\"];\n");
    EXPECT_EQ(lines_with(dot, "color=\"#e69f00\"]") + lines_with(dot, "style=bold"),
              "a1_2 -> d7 [color=\"#e69f00\"];\n"
              "t1 -> a1_3 [color=\"#e69f00\", style=bold];\n"
              "a1_3 -> a1_2 [color=\"#e69f00\", style=bold];\n");
}

TEST(GraphJob, APathEndsByGuidOrLidInEitherOrderOfBytesOrElseAtTheTree) {
    const std::string nodes = tree_block("1") + agg_node("2", "0");
    const std::string at_node = "a1_2 -> d7 [color=\"#e69f00\"];\n";
    // 1002 is 0x3ea, 202 is 0xca.
    for (const std::string &path :
         {connection("7", "1002"), connection("7", "16862321429805268992"),
          connection("7", "5", "202"), connection("7", "0", "51712")}) {
        EXPECT_EQ(lines_with(job_dot(path + nodes), "-> d7 [color"), at_node) << path;
    }
    EXPECT_EQ(lines_with(job_dot(connection("7", "5") + nodes), "-> d7 [color"),
              "t1 -> d7 [color=\"#e69f00\"];\n");
}

TEST(GraphJob, WhatIsOnlyNamedIsFaint) {
    const std::string dot = job_dot(connection("9", "0") + agg_node("2", "5"));
    EXPECT_EQ(lines_with(dot, "filled,dashed"),
              "a1_5 [label=\"AN 5\", tooltip=\"AN 5\\nnot in the message\", fillcolor=\"white\", "
              "shape=box, style=\"filled,dashed\"];\n"
              "t1 [label=\"tree 1\", tooltip=\"tree 1\\nnot in the message\", "
              "fillcolor=\"white\", shape=ellipse, style=\"filled,dashed\"];\n"
              "d9 [label=\"daemon\\n0x0000000000000009\", tooltip=\"daemon\\n"
              "0x0000000000000009\\nnot in the message\", fillcolor=\"white\", shape=box, "
              "style=\"filled,dashed\"];\n");
}

TEST(GraphJob, ParentsInACircleAreCutAtOneNode) {
    const std::string dot = job_dot(tree_block("1") + agg_node("1", "2") + agg_node("2", "3") +
                                    agg_node("3", "1") + agg_node("4", "4"));
    EXPECT_EQ(lines_with(dot, "style=dotted"),
              "a1_3 -> a1_1 [color=\"#e69f00\", style=dotted];\n"
              "a1_4 -> a1_4 [color=\"#e69f00\", style=dotted, constraint=false];\n");
    EXPECT_NE(dot.find("dotted line: parent is below it"), std::string::npos);
}

TEST(GraphJob, ParentZeroIsNoneWhereItWouldCloseACircle) {
    const std::string dot = job_dot(tree_block("1") + agg_node("0", "3") + agg_node("3", "0"));
    EXPECT_EQ(lines_with(dot, "style=bold"), "t1 -> a1_3 [color=\"#e69f00\", style=bold];\n"
                                             "a1_3 -> a1_0 [color=\"#e69f00\", style=bold];\n");
    EXPECT_EQ(lines_with(dot, "dotted"), "");
}

TEST(GraphJob, PeerTreesAreJoinedOnce) {
    const std::string dot = job_dot(tree_block("1", "2") + tree_block("2", "1"));
    EXPECT_EQ(lines_with(dot, "style=dashed"),
              "t1 -> t2 [color=\"#555555\", style=dashed, constraint=false];\n");
}

TEST(GraphJob, WhatIsListedAgainIsTheSameNode) {
    const std::string dot = job_dot(host("7", "a") + host("7", "b") + tree_block("1") +
                                    tree_block("1") + agg_node("2", "0") + agg_node("2", "0"));
    EXPECT_EQ(lines_with(dot, "listed again"),
              "t1 [label=\"tree 1\", tooltip=\"tree 1, peer tree 0\\nlisted again\", "
              "fillcolor=\"#e69f00\", shape=ellipse, style=\"filled\"];\n"
              "a1_2 [label=\"AN 2\\nLID 202\", tooltip=\"aggregation node 2 of tree 1\\n"
              "0x00000000000003ea, LID 202\\nlisted again: 0x00000000000003ea\", "
              "fillcolor=\"#e69f00\", shape=box, style=\"filled\"];\n"
              "d7 [label=\"a\", tooltip=\"daemon 0x0000000000000007\\na\\nlisted again: b\", "
              "fillcolor=\"#f2f2f2\", shape=box, style=\"filled,rounded\"];\n");
}

TEST(GraphJob, HostsWithTheSameConnectionsAreFoldedButNotTheMaster) {
    std::string lines = "    master_vemrad_id: 1\n" + tree_block("1") + agg_node("2", "0");
    std::string connections;
    for (unsigned i = 1; i <= 90; ++i) {
        lines += host(std::to_string(i), "host" + std::to_string(i));
        connections += connection(std::to_string(i), "1002");
    }
    const std::string dot = job_dot(lines + connections);
    EXPECT_EQ(lines_with(dot, "-> d"),
              "a1_2 -> d1 [style=invis, weight=0];\n"
              "a1_2 -> d1 [color=\"#e69f00\"];\n"
              "a1_2 -> d2 [color=\"#e69f00\", tooltip=\"89×\", label=\"89×\", penwidth=2];\n");
    EXPECT_NE(dot.find("d2 [label=\"host2 … host90\\n(89 with the same links)\""),
              std::string::npos);
}

TEST(GraphJob, AnEmptyJobIsAnEmptyGraph) {
    EXPECT_EQ(lines_with(job_dot(""), "->"), "");
}

} // namespace
} // namespace kvt_tool
