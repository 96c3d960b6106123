// RESOURCE_DATA.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "kvt/messages/resource_data.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_resource_agg_tree) == 12);
static_assert(offsetof(vemra_resource_agg_tree, tree_num) == 0);
static_assert(offsetof(vemra_resource_agg_tree, priority) == 4);
static_assert(offsetof(vemra_resource_agg_tree, tree_status) == 8);

static_assert(sizeof(vemra_resource_link) == 24);
static_assert(offsetof(vemra_resource_link, agg_node_guid) == 0);
static_assert(offsetof(vemra_resource_link, port_num) == 8);
static_assert(offsetof(vemra_resource_link, priority) == 12);
static_assert(offsetof(vemra_resource_link, link_status) == 16);
static_assert(offsetof(vemra_resource_link, active_jobs) == 20);

static_assert(sizeof(vemra_resource_agg_node) == 120);
static_assert(offsetof(vemra_resource_agg_node, agg_node_guid) == 0);
static_assert(offsetof(vemra_resource_agg_node, priority) == 8);
static_assert(offsetof(vemra_resource_agg_node, ts) == 12);
static_assert(offsetof(vemra_resource_agg_node, agg_node_status) == 112);
static_assert(offsetof(vemra_resource_agg_node, active_jobs) == 116);
static_assert(offsetof(vemra_resource_agg_node, trees_num) == 118);

static_assert(sizeof(vemra_resource_message) == 56);
static_assert(offsetof(vemra_resource_message, operation) == 0);
static_assert(offsetof(vemra_resource_message, feature_bitmask) == 4);
static_assert(offsetof(vemra_resource_message, agg_trees_num) == 8);
static_assert(offsetof(vemra_resource_message, agg_trees) == 16);
static_assert(offsetof(vemra_resource_message, links_num) == 24);
static_assert(offsetof(vemra_resource_message, links) == 32);
static_assert(offsetof(vemra_resource_message, agg_nodes_num) == 40);
static_assert(offsetof(vemra_resource_message, agg_nodes) == 48);
#endif

constexpr int32_t kind = VEMRA_MSG_TYPE_RESOURCE_DATA;

using ReadResources = ReadMessage<vemra_resource_message>;

std::string resources(const std::string &lines) {
    return message_text("RESOURCE_DATA", "  resource_message {\n" + lines + "  }\n");
}

std::string agg_tree(const std::string &lines) {
    return "    agg_trees {\n" + lines + "    }\n";
}

std::string one_link(const std::string &lines) {
    return "    links {\n" + lines + "    }\n";
}

std::string agg_node(const std::string &lines) {
    return "    agg_nodes {\n" + lines + "    }\n";
}

/// A trace of the reader of a record.
LogLine trace(const std::string &record, const std::string &text) {
    const std::string reader = "_kvt_txt_unpack_msg_vemra_" + record;
    return {reader, 6, reader + " " + text + "\n"};
}

const char full_text[] = "msg {\n"
                         "  type: RESOURCE_DATA\n"
                         "  resource_message {\n"
                         "    operation: 4294967295\n"
                         "    feature_bitmask: 5\n"
                         "    agg_trees_num: 2\n"
                         "    agg_trees {\n"
                         "      tree_num: 1\n"
                         "      priority: 2\n"
                         "      tree_status: 3\n"
                         "    }\n"
                         "    agg_trees {\n"
                         "      tree_num: 4294967295\n"
                         "      priority: 4294967295\n"
                         "      tree_status: 4294967295\n"
                         "    }\n"
                         "    links_num: 1\n"
                         "    links {\n"
                         "      agg_node_guid: 18446744073709551615\n"
                         "      port_num: 40\n"
                         "      priority: 6\n"
                         "      link_status: 7\n"
                         "      active_jobs: 65535\n"
                         "    }\n"
                         "    agg_nodes_num: 1\n"
                         "    agg_nodes {\n"
                         "      agg_node_guid: 17870283321406128129\n"
                         "      priority: 8\n"
                         "      ts: \"2031-05-06 07:08:09, \\ local\"\n"
                         "      agg_node_status: 9\n"
                         "      active_jobs: 10\n"
                         "      trees_num: 65535\n"
                         "    }\n"
                         "  }\n"
                         "}\n";

// --- What is written and read back ---------------------------------------------------------------

TEST(ResourceData, IsWrittenToTheLetter) {
    vemra_resource_agg_tree trees[] = {
        {.tree_num = 1, .priority = 2, .tree_status = 3},
        {.tree_num = UINT32_MAX, .priority = UINT32_MAX, .tree_status = UINT32_MAX}};
    vemra_resource_link links[] = {{.agg_node_guid = UINT64_MAX,
                                    .port_num = 40,
                                    .priority = 6,
                                    .link_status = 7,
                                    .active_jobs = 65535}};
    vemra_resource_agg_node nodes[] = {{.agg_node_guid = 17870283321406128129U,
                                        .priority = 8,
                                        .ts = "2031-05-06 07:08:09, \\ local",
                                        .agg_node_status = 9,
                                        .active_jobs = 10,
                                        .trees_num = 65535}};
    const vemra_resource_message record = {.operation = UINT32_MAX,
                                           .feature_bitmask = 5,
                                           .agg_trees_num = 2,
                                           .agg_trees = trees,
                                           .links_num = 1,
                                           .links = links,
                                           .agg_nodes_num = 1,
                                           .agg_nodes = nodes};
    EXPECT_EQ(to_text(kind, record), full_text);
}

TEST(ResourceData, ReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_resource_message>(kind, full_text), full_text);
}

// --- What is left out ----------------------------------------------------------------------------

TEST(ResourceData, AZeroMessageTellsItsOperationAndFeatures) {
    const std::string text = resources("    operation: 0\n    feature_bitmask: 0\n");
    EXPECT_EQ(to_text(kind, vemra_resource_message{}), text);
    const ReadResources read(kind, text);
    EXPECT_EQ(read->operation, 0U);
    EXPECT_EQ(read->feature_bitmask, 0U);
    EXPECT_EQ(read->agg_trees_num, 0U);
    EXPECT_EQ(read->agg_trees, nullptr);
    EXPECT_EQ(read->links_num, 0U);
    EXPECT_EQ(read->links, nullptr);
    EXPECT_EQ(read->agg_nodes_num, 0U);
    EXPECT_EQ(read->agg_nodes, nullptr);
}

TEST(ResourceData, ZeroElementsTellTheirPriorityAndStatus) {
    vemra_resource_agg_tree tree = {};
    vemra_resource_link link = {};
    vemra_resource_agg_node node = {};
    const vemra_resource_message record = {.operation = 0,
                                           .feature_bitmask = 0,
                                           .agg_trees_num = 1,
                                           .agg_trees = &tree,
                                           .links_num = 1,
                                           .links = &link,
                                           .agg_nodes_num = 1,
                                           .agg_nodes = &node};
    EXPECT_EQ(to_text(kind, record), resources("    operation: 0\n"
                                               "    feature_bitmask: 0\n"
                                               "    agg_trees_num: 1\n"
                                               "    agg_trees {\n"
                                               "      priority: 0\n"
                                               "      tree_status: 0\n"
                                               "    }\n"
                                               "    links_num: 1\n"
                                               "    links {\n"
                                               "      priority: 0\n"
                                               "      link_status: 0\n"
                                               "    }\n"
                                               "    agg_nodes_num: 1\n"
                                               "    agg_nodes {\n"
                                               "      priority: 0\n"
                                               "      agg_node_status: 0\n"
                                               "    }\n"));
}

// --- Values that do not scan ---------------------------------------------------------------------

TEST(ResourceData, OperationAndFeaturesShareTheValueLastScanned) {
    const ReadResources features(kind, resources("    operation: 7\n    feature_bitmask: x\n"));
    EXPECT_EQ(features->operation, 7U);
    EXPECT_EQ(features->feature_bitmask, 7U);
    const ReadResources operation(kind, resources("    feature_bitmask: 9\n    operation 7\n"));
    EXPECT_EQ(operation->operation, 9U);
    EXPECT_EQ(operation->feature_bitmask, 9U);
    const ReadResources neither(kind, resources("    operation: x\n    feature_bitmask: 9\n"));
    EXPECT_EQ(neither->operation, 0U);
    EXPECT_EQ(neither->feature_bitmask, 9U);
    const ReadResources again(kind, resources("    operation: 7\n"
                                              "    feature_bitmask: 9\n"
                                              "    operation: x\n"));
    EXPECT_EQ(again->operation, 9U);
}

TEST(ResourceData, PriorityAndStatusOfAnElementShareTheValueLastScanned) {
    const ReadResources read(kind, resources(agg_tree("      tree_num: 5\n"
                                                      "      priority: 7\n"
                                                      "      tree_status: x\n") +
                                             one_link("      port_num: 5\n"
                                                      "      link_status: 8\n"
                                                      "      priority: x\n") +
                                             agg_node("      priority: 9\n"
                                                      "      trees_num: 5\n"
                                                      "      agg_node_status: x\n")));
    ASSERT_EQ(read->agg_trees_num, 1U);
    EXPECT_EQ(read->agg_trees[0].priority, 7U);
    EXPECT_EQ(read->agg_trees[0].tree_status, 7U);
    ASSERT_EQ(read->links_num, 1U);
    EXPECT_EQ(read->links[0].link_status, 8U);
    EXPECT_EQ(read->links[0].priority, 8U);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_EQ(read->agg_nodes[0].priority, 9U);
    EXPECT_EQ(read->agg_nodes[0].agg_node_status, 9U);
}

TEST(ResourceData, TheSharedValueStartsAtZeroForEachElement) {
    const ReadResources read(
        kind, resources("    operation: 3\n" + agg_tree("      priority: 7\n") +
                        agg_tree("      tree_status: x\n") + one_link("      priority: 7\n") +
                        one_link("      link_status: x\n") + agg_node("      priority: 7\n") +
                        agg_node("      agg_node_status: x\n") + "    feature_bitmask: x\n"));
    ASSERT_EQ(read->agg_trees_num, 2U);
    EXPECT_EQ(read->agg_trees[1].tree_status, 0U);
    ASSERT_EQ(read->links_num, 2U);
    EXPECT_EQ(read->links[1].link_status, 0U);
    ASSERT_EQ(read->agg_nodes_num, 2U);
    EXPECT_EQ(read->agg_nodes[1].agg_node_status, 0U);
    // The message's own value is not that of its elements.
    EXPECT_EQ(read->feature_bitmask, 3U);
}

// --- Growing -------------------------------------------------------------------------------------

// --- Traces --------------------------------------------------------------------------------------

TEST(ResourceData, TheMessageAndItsElementsAreTracedUnderTheirReaders) {
    LogCapture log;
    const ReadResources read(kind, full_text);
    EXPECT_EQ(log.lines(),
              (std::vector<LogLine>{
                  trace("resource_message", "p_msg->operation[0xffffffff]"),
                  trace("resource_message", "p_msg->feature_bitmask[0x5]"),
                  trace("resource_message", "p_msg->agg_trees_num[0x2]"),
                  trace("resource_agg_tree", "p_msg->tree_num[0x1]"),
                  trace("resource_agg_tree", "p_msg->priority[0x2]"),
                  trace("resource_agg_tree", "p_msg->tree_status[0x3]"),
                  trace("resource_agg_tree", "p_msg->tree_num[0xffffffff]"),
                  trace("resource_agg_tree", "p_msg->priority[0xffffffff]"),
                  trace("resource_agg_tree", "p_msg->tree_status[0xffffffff]"),
                  trace("resource_message", "p_msg->links_num[0x1]"),
                  trace("resource_link", "p_msg->agg_node_guid[0xffffffff]"),
                  trace("resource_link", "p_msg->port_num[0x28]"),
                  trace("resource_link", "p_msg->priority[0x6]"),
                  trace("resource_link", "p_msg->link_status[0x7]"),
                  trace("resource_link", "p_msg->active_jobs[0xffff]"),
                  trace("resource_message", "p_msg->agg_nodes_num[0x1]"),
                  trace("resource_agg_node", "p_msg->agg_node_guid[0x1]"),
                  trace("resource_agg_node", "p_msg->priority[0x8]"),
                  {"_kvt_txt_unpack_primarray_char", 6,
                   "_kvt_txt_unpack_primarray_char txt unpack value[2031-05-06 07:08:09, "
                   "\\ local]\n"},
                  trace("resource_agg_node", "p_msg->agg_node_status[0x9]"),
                  trace("resource_agg_node", "p_msg->active_jobs[0xa]"),
                  trace("resource_agg_node", "p_msg->trees_num[0xffff]"),
              }));
}

TEST(ResourceData, AValueThatDoesNotScanIsTracedAsTheSharedOne) {
    LogCapture log;
    const ReadResources read(kind, resources("    operation: 26\n    feature_bitmask: x\n"));
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               trace("resource_message", "p_msg->operation[0x1a]"),
                               trace("resource_message", "p_msg->feature_bitmask[0x1a]"),
                           }));
}

} // namespace
} // namespace kvt_test
