// Samples of fat trees.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "kvt/messages/message_type.h"
#include "kvt/messages/topology.h"
#include "message_kinds.h"
#include "samples.h"
#include "samples/sample.h"

namespace kvt_tool {
namespace {

std::set<uint32_t> peers_of(const vemra_topology_switch_info &info) {
    return {info.peer_ids, info.peer_ids + info.num_peer_ids};
}

TEST(SampleTopology, PeersAreSymmetric) {
    for (const uint32_t size : many_sizes()) {
        const auto message = sample_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, 1, size);
        const auto &list = record_of<vemra_topology_info_list>(message);
        ASSERT_EQ(list.num_switches, size);
        for (uint32_t i = 0; i < size; ++i) {
            const vemra_topology_switch_info &info = list.switches[i];
            ASSERT_EQ(info.id, i + 1);
            ASSERT_EQ(peers_of(info).size(), info.num_peer_ids) << "the same peer twice";
            for (const uint32_t peer : peers_of(info)) {
                ASSERT_TRUE(peer >= 1 && peer <= size && peer != info.id) << size << ' ' << info.id;
                ASSERT_TRUE(peers_of(list.switches[peer - 1]).contains(info.id)) << size;
            }
        }
    }
}

TEST(SampleTopology, EverySwitchReachesEveryOther) {
    for (const uint32_t size : many_sizes()) {
        const auto message = sample_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, 2, size);
        const auto &list = record_of<vemra_topology_info_list>(message);
        std::set<uint32_t> reached = {1};
        std::vector<uint32_t> open = {1};
        while (!open.empty()) {
            const uint32_t id = open.back();
            open.pop_back();
            for (const uint32_t peer : peers_of(list.switches[id - 1])) {
                if (reached.insert(peer).second) {
                    open.push_back(peer);
                }
            }
        }
        EXPECT_EQ(reached.size(), size);
    }
}

TEST(SampleTopology, SmallOnesHaveTwoLevels) {
    const auto message = sample_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, 1, 5);
    const auto &list = record_of<vemra_topology_info_list>(message);
    std::vector<std::string> names;
    for (uint32_t i = 0; i < list.num_switches; ++i) {
        names.emplace_back(list.switches[i].name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"leaf-1", "leaf-2", "leaf-3", "leaf-4", "spine-1"}));
    EXPECT_EQ(peers_of(list.switches[4]), (std::set<uint32_t>{1, 2, 3, 4}));
    EXPECT_EQ(list.switches[0].num_port_guids, 4U);
    EXPECT_EQ(list.switches[4].num_port_guids, 0U);
}

TEST(SampleTopology, LargeOnesHaveThreeLevels) {
    const auto message = sample_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, 1, 40);
    const auto &list = record_of<vemra_topology_info_list>(message);
    std::map<std::string, unsigned> levels;
    std::set<std::string> names;
    std::set<uint64_t> ports;
    for (uint32_t i = 0; i < list.num_switches; ++i) {
        const std::string name = list.switches[i].name;
        names.insert(name);
        ++levels[name.substr(0, name.find('-'))];
        for (uint32_t k = 0; k < list.switches[i].num_port_guids; ++k) {
            EXPECT_TRUE(ports.insert(list.switches[i].port_guids[k]).second);
        }
    }
    EXPECT_EQ(levels, (std::map<std::string, unsigned>{{"core", 5}, {"leaf", 23}, {"spine", 12}}));
    EXPECT_EQ(names.size(), 40U);
    EXPECT_EQ(ports.size(), 4U * 23);
}

} // namespace
} // namespace kvt_tool
