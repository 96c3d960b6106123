// Samples whose elements fit together: the data of jobs, reservations, resources.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kvt/messages/job_data.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/reservations.h"
#include "kvt/messages/resource_data.h"
#include "message_kinds.h"
#include "samples.h"
#include "samples/sample.h"

namespace kvt_tool {
namespace {

// --- The data of a job ---------------------------------------------------------------------------

using TreeNodes = std::map<uint16_t, const vemra_tree_an *>;

/// The nodes of each tree by their identifiers.
std::map<uint16_t, TreeNodes> nodes_of(const vemra_job_data &data) {
    std::map<uint16_t, TreeNodes> trees;
    for (uint64_t i = 0; i < data.agg_nodes_num; ++i) {
        const vemra_tree_an &node = data.agg_nodes[i];
        EXPECT_TRUE(trees[node.tree_id].emplace(node.an_id, &node).second) << node.an_id;
    }
    return trees;
}

/// A number of path records and GIDs, which the text shows as a little-endian machine sees it.
template <typename Number> Number turned(Number value) {
    Number result = 0;
    for (size_t i = 0; i < sizeof value; ++i) {
        result = static_cast<Number>(result << 8 | (value >> (8 * i) & 0xff));
    }
    return result;
}

bool same(const ibv_gid &a, const ibv_gid &b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(SampleJobData, AggregationNodesMakeATreeEach) {
    for (const uint32_t size : many_sizes()) {
        const auto message = sample_of(VEMRA_MSG_TYPE_JOB_DATA, size, size);
        const auto &data = record_of<vemra_job_data>(message);
        const auto trees = nodes_of(data);
        ASSERT_EQ(trees.size(), data.trees_num);
        for (uint32_t i = 0; i < data.trees_num; ++i) {
            ASSERT_TRUE(trees.contains(data.trees[i].tree_id));
        }
        for (const auto &[tree_id, nodes] : trees) {
            size_t roots = 0;
            for (const auto &[id, node] : nodes) {
                ASSERT_NE(id, 0);
                roots += node->parent_an_id == 0 ? 1 : 0;
                size_t steps = 0;
                for (const vemra_tree_an *at = node; at->parent_an_id != 0;) {
                    ASSERT_TRUE(nodes.contains(at->parent_an_id)) << "no parent";
                    at = nodes.at(at->parent_an_id);
                    ASSERT_LE(++steps, nodes.size()) << "a cycle";
                }
            }
            EXPECT_EQ(roots, 1U) << size << ' ' << tree_id;
        }
    }
}

TEST(SampleJobData, OfTheLargestSizeHasEveryIdentifierOnce) {
    const auto message = sample_of(VEMRA_MSG_TYPE_JOB_DATA, 1, largest_sample_size);
    const auto &data = record_of<vemra_job_data>(message);
    std::set<uint16_t> hosts;
    for (uint32_t i = 0; i < data.hosts_num; ++i) {
        hosts.insert(turned<uint16_t>(data.conns[i].pr_sd_to_an.slid));
    }
    EXPECT_EQ(hosts.size(), largest_sample_size);
    constexpr uint16_t largest_unicast_lid = 0xbfff;
    EXPECT_LE(*hosts.rbegin(), largest_unicast_lid);
    for (const auto &tree : nodes_of(data)) {
        for (const auto &node : tree.second) {
            ASSERT_FALSE(hosts.contains(node.second->lid));
        }
    }
}

TEST(SampleJobData, PeersOfTreesAreEachOther) {
    const auto message = sample_of(VEMRA_MSG_TYPE_JOB_DATA, 1, 8);
    const auto &data = record_of<vemra_job_data>(message);
    ASSERT_EQ(data.trees_num, 2U);
    EXPECT_EQ(data.trees[0].peer_tree_id, data.trees[1].tree_id);
    EXPECT_EQ(data.trees[1].peer_tree_id, data.trees[0].tree_id);
    const auto one = sample_of(VEMRA_MSG_TYPE_JOB_DATA, 1, 1);
    EXPECT_EQ(record_of<vemra_job_data>(one).trees_num, 1U);
    EXPECT_EQ(record_of<vemra_job_data>(one).trees[0].peer_tree_id, 0U);
}

TEST(SampleJobData, EveryHostIsConnectedToALeafOfEveryTree) {
    for (const uint32_t size : many_sizes()) {
        const auto message = sample_of(VEMRA_MSG_TYPE_JOB_DATA, size, size);
        const auto &data = record_of<vemra_job_data>(message);
        const auto trees = nodes_of(data);
        std::map<uint64_t, uint16_t> lids;
        for (uint32_t i = 0; i < data.hosts_num; ++i) {
            lids[data.hosts_sd_info[i].vemrad_id] = 0;
        }
        ASSERT_EQ(lids.size(), size);
        ASSERT_TRUE(lids.contains(data.master_vemrad_id));
        std::set<std::pair<uint16_t, uint64_t>> connected;
        for (uint32_t i = 0; i < data.conns_num; ++i) {
            const vemra_tree_conn &conn = data.conns[i];
            const ibv_sa_path_rec &there = conn.pr_sd_to_an;
            const ibv_sa_path_rec &back = conn.pr_an_to_sd;
            ASSERT_TRUE(lids.contains(conn.vemrad_id));
            ASSERT_TRUE(connected.emplace(conn.tree_id, conn.vemrad_id).second);
            ASSERT_TRUE(same(there.dgid, back.sgid) && same(there.sgid, back.dgid));
            ASSERT_TRUE(there.dlid == back.slid && there.slid == back.dlid);
            ASSERT_TRUE(there.sl == back.sl && there.mtu == back.mtu && there.rate == back.rate);
            const TreeNodes &nodes = trees.at(conn.tree_id);
            const auto leaf = std::ranges::find_if(nodes, [&](const auto &node) {
                return node.second->lid == turned<uint16_t>(there.dlid);
            });
            ASSERT_NE(leaf, nodes.end());
            ASSERT_EQ(turned<uint64_t>(there.dgid.global.interface_id), leaf->second->guid);
            ASSERT_TRUE(std::ranges::none_of(nodes, [&](const auto &node) {
                return node.second->parent_an_id == leaf->first;
            })) << "not a leaf";
            ASSERT_EQ(turned<uint64_t>(there.sgid.global.interface_id), conn.vemrad_id);
            ASSERT_EQ(turned<uint64_t>(there.sgid.global.subnet_prefix), 0xfe80000000000000);
            uint16_t &lid = lids[conn.vemrad_id];
            ASSERT_TRUE(lid == 0 || lid == there.slid) << "two LIDs of one host";
            lid = there.slid;
            for (const auto &node : nodes) {
                ASSERT_NE(node.second->lid, turned<uint16_t>(lid)) << "LID of a host and a switch";
            }
        }
        ASSERT_EQ(connected.size(), size_t{data.trees_num} * size);
    }
}

TEST(SampleJobData, ConnectionsHaveAFewChildrenAndAllPlacesOfThem) {
    for (uint64_t seed = 0; seed < 20; ++seed) {
        const auto message = sample_of(VEMRA_MSG_TYPE_JOB_DATA, seed, 9);
        const auto &data = record_of<vemra_job_data>(message);
        for (uint32_t i = 0; i < data.conns_num; ++i) {
            const uint8_t *places = data.conns[i].qp_child_idxs;
            const auto used = std::count_if(places, places + 64, [](uint8_t p) { return p != 0; });
            EXPECT_TRUE(used >= 1 && used <= 4 && places[0] != 0) << used;
            EXPECT_EQ(std::count(places, places + 64, 255), 0);
        }
    }
}

// --- Reservations --------------------------------------------------------------------------------

TEST(SampleReservations, OfAListAreTheOwnOneAndThoseBeforeIt) {
    for (const uint64_t index : {0U, 1U, 7U}) {
        const auto own =
            make_sample(*kvt_str::find_kind(VEMRA_MSG_TYPE_CREATE_RESERVATION), {3, 20, index});
        const auto reply =
            make_sample(*kvt_str::find_kind(VEMRA_MSG_TYPE_RESERVATION_INFO_REPLY), {3, 20, index});
        const auto &list = record_of<vemra_reservation_info_list>(reply);
        const auto &first = record_of<vemra_create_reservation>(own);
        std::set<uint64_t> ports;
        ASSERT_EQ(list.reservation_list_len, 20U);
        for (uint32_t i = 0; i < 20; ++i) {
            const vemra_reservation_info &info = list.reservation_list[i];
            EXPECT_EQ(info.reservation_id, first.reservation_id - i);
            EXPECT_GE(info.pkey, 0x8001);
            EXPECT_EQ(info.num_guids, 8U);
            for (uint32_t k = 0; k < info.num_guids; ++k) {
                EXPECT_TRUE(ports.insert(info.port_guids[k]).second) << "reserved twice";
            }
        }
    }
}

TEST(SampleReservations, HaveTheSamePortsWhereverTheyAreAlone) {
    const auto own =
        make_sample(*kvt_str::find_kind(VEMRA_MSG_TYPE_CREATE_RESERVATION), {3, 20, 5});
    const auto stored =
        make_sample(*kvt_str::find_kind(VEMRA_MSG_TYPE_PERSISTENT_RESERVATION_INFO), {3, 20, 5});
    const auto &created = record_of<vemra_create_reservation>(own);
    const auto &info = record_of<vemra_reservation_info>(stored);
    EXPECT_EQ(info.reservation_id, created.reservation_id);
    EXPECT_EQ(info.pkey, created.pkey);
    EXPECT_EQ((std::vector<uint64_t>(info.port_guids, info.port_guids + info.num_guids)),
              (std::vector<uint64_t>(created.port_guids, created.port_guids + created.num_guids)));
}

// --- Resources -----------------------------------------------------------------------------------

TEST(SampleResources, LinksAreOfNodesAndAgreeWithThem) {
    size_t down = 0;
    for (const uint32_t size : many_sizes()) {
        const auto message = sample_of(VEMRA_MSG_TYPE_RESOURCE_DATA, size, size);
        const auto &data = record_of<vemra_resource_message>(message);
        ASSERT_EQ(data.agg_nodes_num, size);
        std::map<uint64_t, const vemra_resource_agg_node *> nodes;
        for (uint32_t i = 0; i < data.agg_nodes_num; ++i) {
            const vemra_resource_agg_node &node = data.agg_nodes[i];
            ASSERT_TRUE(nodes.emplace(node.agg_node_guid, &node).second);
            ASSERT_TRUE(node.trees_num >= 1 && node.trees_num <= data.agg_trees_num);
            ASSERT_TRUE(node.agg_node_status == 1 || node.active_jobs == 0);
            ASSERT_EQ(std::string(node.ts).size(), std::string("2030-01-01 00:00:12").size());
            down += node.agg_node_status != 1 ? 1 : 0;
        }
        std::set<std::pair<uint64_t, uint32_t>> ports;
        for (uint32_t i = 0; i < data.links_num; ++i) {
            const vemra_resource_link &link = data.links[i];
            ASSERT_TRUE(nodes.contains(link.agg_node_guid));
            ASSERT_TRUE(ports.emplace(link.agg_node_guid, link.port_num).second);
            const vemra_resource_agg_node &node = *nodes[link.agg_node_guid];
            ASSERT_LE(link.active_jobs, node.active_jobs);
            ASSERT_TRUE(node.agg_node_status == 1 || link.link_status != 1);
        }
        ASSERT_EQ(ports.size(), size_t{3} * size);
    }
    EXPECT_GT(down, 0U);
}

} // namespace
} // namespace kvt_tool
