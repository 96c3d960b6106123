// Graphs as pictures; that what the tool writes is DOT, whatever the messages hold.
#include <cgraph.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "graph/kinds.h"
#include "graph_messages.h"

namespace kvt_tool {
namespace {

bool is_dot(const std::string &text) {
    Agraph_t *graph = agmemread(text.c_str());
    if (graph == nullptr) {
        return false;
    }
    agclose(graph);
    return true;
}

std::string small_topology() {
    return topology_dot(switch_block("1", "leaf", {"2"}, true) + switch_block("2", "spine", {"1"}));
}

TEST(GraphRender, ThreeKindsCanBeDrawn) {
    std::string names;
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        names += has_graph(kind) ? std::string(kind.name) + "\n" : "";
    }
    EXPECT_EQ(names, "JOB_DATA\nTOPOLOGY_INFO_REPLY\nRESOURCE_DATA\n");
}

TEST(GraphRender, DrawsSvgPngAndPdf) {
    std::string reason;
    const auto svg = render(small_topology(), "svg", reason);
    ASSERT_TRUE(svg.has_value()) << reason;
    EXPECT_NE(svg->find("<svg"), std::string::npos);
    EXPECT_NE(svg->find(">spine<"), std::string::npos);
    const auto png = render(small_topology(), "png", reason);
    ASSERT_TRUE(png.has_value()) << reason;
    EXPECT_EQ(png->substr(0, 8), "\x89PNG\r\n\x1a\n");
    const auto pdf = render(small_topology(), "pdf", reason);
    ASSERT_TRUE(pdf.has_value()) << reason;
    EXPECT_EQ(pdf->substr(0, 5), "%PDF-");
}

TEST(GraphRender, SaysWhatFormatsThereAre) {
    std::string reason;
    EXPECT_EQ(render(small_topology(), "jpeg2000", reason), std::nullopt);
    EXPECT_EQ(reason.find("not one of the formats: "), 0U) << reason;
    EXPECT_NE(reason.find(" svg "), std::string::npos) << reason;
}

TEST(GraphRender, SaysWhatIsNoDot) {
    std::string reason;
    EXPECT_EQ(render("digraph {", "svg", reason), std::nullopt);
    EXPECT_NE(reason.find("syntax error"), std::string::npos) << reason;
    EXPECT_EQ(render("", "svg", reason), std::nullopt);
    EXPECT_EQ(reason, "no text in the DOT language");
}

TEST(GraphRender, SaysWhatLayoutIsNotThere) {
    std::string reason;
    EXPECT_EQ(render("digraph { layout=nonesuch; a }", "svg", reason), std::nullopt);
    EXPECT_NE(reason.find("nonesuch"), std::string::npos) << reason;
}

TEST(GraphRender, EmptyMessagesCanBeDrawn) {
    for (const std::string &dot : {topology_dot(""), job_dot(""), resources_dot("")}) {
        std::string reason;
        EXPECT_NE(render(dot, "svg", reason), std::nullopt) << reason;
    }
}

/// Small numbers, so that ids come again and parents form circles, and any bytes in names.
class Hostile {
public:
    explicit Hostile(unsigned seed) : random_(seed) {}

    uint16_t number() { return static_cast<uint16_t>(random_() % 7); }

    template <size_t Capacity> void fill(char (&text)[Capacity]) {
        constexpr char awkward[] = "\"\\<>&;{}[]\n\t\r\x7f\xff\xc3\xa4N";
        for (char &c : text) {
            c = awkward[random_() % sizeof awkward];
        }
    }

private:
    std::mt19937 random_;
};

/// Draws what it can; SVG is no place for a control character.
void expect_drawn(const std::string &dot) {
    ASSERT_TRUE(is_dot(dot)) << dot;
    std::string reason;
    const auto svg = render(dot, "svg", reason);
    ASSERT_TRUE(svg.has_value()) << reason << dot;
    EXPECT_EQ(svg->find_first_of("\r\x01\x7f\xff"), std::string::npos);
}

TEST(GraphRender, HostileTopologiesAreDot) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        Hostile hostile(seed);
        std::vector<vemra_topology_switch_info> switches(hostile.number());
        std::vector<uint32_t> peers(6);
        for (auto &info : switches) {
            info.id = hostile.number();
            hostile.fill(info.name);
            info.num_peer_ids = static_cast<uint32_t>(hostile.number() % peers.size());
            info.peer_ids = peers.data();
        }
        for (uint32_t &peer : peers) {
            peer = hostile.number();
        }
        expect_drawn(topology_to_dot({static_cast<uint32_t>(switches.size()), switches.data(), 0},
                                     "\"<&\xff\\", Detail::by_size));
    }
}

TEST(GraphRender, HostileJobsAreDot) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        Hostile hostile(seed);
        std::vector<vemra_sd_info> hosts(hostile.number());
        std::vector<vemra_tree> trees(hostile.number());
        std::vector<vemra_tree_conn> conns(hostile.number());
        std::vector<vemra_tree_an> nodes(hostile.number() * size_t{2});
        for (auto &host : hosts) {
            host.vemrad_id = hostile.number();
            hostile.fill(host.addr);
        }
        for (auto &tree : trees) {
            tree.tree_id = hostile.number();
            tree.peer_tree_id = hostile.number();
        }
        for (auto &conn : conns) {
            conn.tree_id = hostile.number();
            conn.vemrad_id = hostile.number();
            conn.pr_sd_to_an.dlid = hostile.number();
        }
        for (auto &node : nodes) {
            node = {hostile.number(), hostile.number(), static_cast<uint16_t>(hostile.number() % 2),
                    hostile.number(), hostile.number()};
        }
        vemra_job_data job = {};
        job.hosts_num = static_cast<uint32_t>(hosts.size());
        job.hosts_sd_info = hosts.data();
        job.trees_num = static_cast<uint32_t>(trees.size());
        job.trees = trees.data();
        job.conns_num = static_cast<uint32_t>(conns.size());
        job.conns = conns.data();
        job.agg_nodes_num = nodes.size();
        job.agg_nodes = nodes.data();
        expect_drawn(job_to_dot(job, "\"<&\xff\\", Detail::by_size));
    }
}

TEST(GraphRender, HostileResourcesAreDot) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        Hostile hostile(seed);
        std::vector<vemra_resource_agg_node> nodes(hostile.number());
        std::vector<vemra_resource_link> links(hostile.number());
        for (auto &node : nodes) {
            node.agg_node_guid = hostile.number();
            hostile.fill(node.ts);
        }
        for (auto &link : links) {
            link = {hostile.number(), hostile.number(), 0, hostile.number(), 0};
        }
        const vemra_resource_message message = {0,
                                                0,
                                                0,
                                                nullptr,
                                                static_cast<uint32_t>(links.size()),
                                                links.data(),
                                                static_cast<uint32_t>(nodes.size()),
                                                nodes.data()};
        expect_drawn(resources_to_dot(message, "\"<&\xff\\", Detail::by_size));
    }
}

/// Many switches, each with 36 peers, must not take more than a moment; the time itself is not
/// measured here, but any growth faster than the message's would exceed the test's.
TEST(GraphRender, AHundredThousandSwitchesBecomeDot) {
    constexpr uint32_t count = 100000;
    std::vector<vemra_topology_switch_info> switches(count);
    std::vector<uint32_t> peers(size_t{count} * 4);
    for (uint32_t i = 0; i < count; ++i) {
        switches[i].id = i;
        switches[i].num_peer_ids = 4;
        switches[i].peer_ids = &peers[size_t{i} * 4];
        for (uint32_t k = 0; k < 4; ++k) {
            switches[i].peer_ids[k] = (i * 7919 + k * 104729) % (2 * count);
        }
    }
    const std::string dot = topology_to_dot({count, switches.data(), 0}, "test", Detail::by_size);
    EXPECT_NE(dot.find("100000 switches"), std::string::npos);
}

TEST(GraphRender, WhatIsTooLargeIsNotTried) {
    std::string dot = "digraph { layout=sfdp; n800000 }";
    dot.pop_back();
    for (unsigned i = 0; i < 800000; ++i) {
        dot += "n" + std::to_string(i) + ";";
    }
    std::string reason;
    EXPECT_EQ(render(dot + "}", "svg", reason), std::nullopt);
    EXPECT_EQ(reason, "too large to be drawn: 800001 nodes, 0 edges");
}

} // namespace
} // namespace kvt_tool
