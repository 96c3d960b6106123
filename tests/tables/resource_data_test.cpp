// RESOURCE_DATA.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "kvt/messages/resource_data.h"
#include "support/growth.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

std::vector<uint64_t> tree_numbers(const vemra_resource_message &record) {
    std::vector<uint64_t> numbers;
    for (uint32_t i = 0; i < record.agg_trees_num; ++i) {
        numbers.push_back(record.agg_trees[i].tree_num);
    }
    return numbers;
}

std::vector<uint64_t> link_guids(const vemra_resource_message &record) {
    std::vector<uint64_t> guids;
    for (uint32_t i = 0; i < record.links_num; ++i) {
        guids.push_back(record.links[i].agg_node_guid);
    }
    return guids;
}

std::vector<uint64_t> node_guids(const vemra_resource_message &record) {
    std::vector<uint64_t> guids;
    for (uint32_t i = 0; i < record.agg_nodes_num; ++i) {
        guids.push_back(record.agg_nodes[i].agg_node_guid);
    }
    return guids;
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
    const ReadResources read(kind, full_text);
    EXPECT_EQ(read->operation, UINT32_MAX);
    EXPECT_EQ(read->feature_bitmask, 5U);
    ASSERT_EQ(read->agg_trees_num, 2U);
    EXPECT_EQ(read->agg_trees[0].tree_num, 1U);
    EXPECT_EQ(read->agg_trees[0].priority, 2U);
    EXPECT_EQ(read->agg_trees[0].tree_status, 3U);
    EXPECT_EQ(read->agg_trees[1].tree_num, UINT32_MAX);
    EXPECT_EQ(read->agg_trees[1].priority, UINT32_MAX);
    EXPECT_EQ(read->agg_trees[1].tree_status, UINT32_MAX);
    ASSERT_EQ(read->links_num, 1U);
    EXPECT_EQ(read->links[0].agg_node_guid, UINT64_MAX);
    EXPECT_EQ(read->links[0].port_num, 40U);
    EXPECT_EQ(read->links[0].priority, 6U);
    EXPECT_EQ(read->links[0].link_status, 7U);
    EXPECT_EQ(read->links[0].active_jobs, 65535U);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_EQ(read->agg_nodes[0].agg_node_guid, 17870283321406128129U);
    EXPECT_EQ(read->agg_nodes[0].priority, 8U);
    EXPECT_STREQ(read->agg_nodes[0].ts, "2031-05-06 07:08:09, \\ local");
    EXPECT_EQ(read->agg_nodes[0].agg_node_status, 9U);
    EXPECT_EQ(read->agg_nodes[0].active_jobs, 10U);
    EXPECT_EQ(read->agg_nodes[0].trees_num, 65535U);
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

TEST(ResourceData, AnArrayOfZeroElementsIsNotWritten) {
    vemra_resource_agg_tree tree = {};
    vemra_resource_message record = {};
    record.agg_trees = &tree;
    EXPECT_EQ(to_text(kind, record), resources("    operation: 0\n    feature_bitmask: 0\n"));
}

TEST(ResourceData, ANullArrayCountsAsNoElements) {
    vemra_resource_message record = {};
    record.agg_trees_num = 1;
    record.links_num = 2;
    record.agg_nodes_num = 3;
    EXPECT_EQ(to_text(kind, record), resources("    operation: 0\n"
                                               "    feature_bitmask: 0\n"
                                               "    agg_trees_num: 1\n"
                                               "    links_num: 2\n"
                                               "    agg_nodes_num: 3\n"));
}

// --- The text of a node's time -------------------------------------------------------------------

TEST(ResourceData, ATimeWithoutItsNulIsWrittenUpToItsCapacity) {
    vemra_resource_agg_node node = {};
    std::memset(node.ts, 't', sizeof node.ts);
    vemra_resource_message record = {};
    record.agg_nodes_num = 1;
    record.agg_nodes = &node;
    EXPECT_EQ(to_text(kind, record), resources("    operation: 0\n"
                                               "    feature_bitmask: 0\n"
                                               "    agg_nodes_num: 1\n"
                                               "    agg_nodes {\n"
                                               "      priority: 0\n"
                                               "      ts: \"" +
                                               std::string(100, 't') +
                                               "\"\n"
                                               "      agg_node_status: 0\n"
                                               "    }\n"));
}

TEST(ResourceData, ATimeOf99CharactersFitsAndOneOf100IsCut) {
    for (const size_t length : {1U, 98U, 99U, 100U, 101U, 199U, 200U, 3000U}) {
        const ReadResources read(kind,
                                 resources(agg_node("      ts: \"" + std::string(length, 't') +
                                                    "\"\n"
                                                    "      trees_num: 4\n")));
        ASSERT_EQ(read->agg_nodes_num, 1U);
        EXPECT_EQ(std::string(read->agg_nodes[0].ts), std::string(length < 99 ? length : 99, 't'));
        EXPECT_EQ(read->agg_nodes[0].trees_num, 4U);
    }
}

TEST(ResourceData, ATimeIsCutAtADoubleQuote) {
    vemra_resource_agg_node node = {};
    std::strcpy(node.ts, "half \"past\" two");
    vemra_resource_message record = {};
    record.agg_nodes_num = 1;
    record.agg_nodes = &node;
    const std::string text = to_text(kind, record);
    EXPECT_NE(text.find("      ts: \"half \"past\" two\"\n"), std::string::npos);
    const ReadResources read(kind, text);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_STREQ(read->agg_nodes[0].ts, "half ");
}

TEST(ResourceData, ALineThatBeginsWithTsIsTakenForTheTime) {
    const ReadResources read(kind, resources(agg_node("      ts: \"early\"\n"
                                                      "      tsunami: \"late\"\n"
                                                      "      trees_num: 4\n") +
                                             agg_node("      ts: \"early\"\n"
                                                      "      ts: \"late\"\n")));
    ASSERT_EQ(read->agg_nodes_num, 2U);
    EXPECT_STREQ(read->agg_nodes[0].ts, "");
    EXPECT_EQ(read->agg_nodes[0].trees_num, 4U);
    EXPECT_STREQ(read->agg_nodes[1].ts, "late");
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

TEST(ResourceData, OtherFieldsThatDoNotScanStayZero) {
    const ReadResources read(kind, resources(agg_tree("      priority: 7\n"
                                                      "      tree_num: x\n") +
                                             "    agg_nodes_num: x\n" +
                                             one_link("      priority: 7\n"
                                                      "      agg_node_guid: x\n"
                                                      "      port_num: x\n"
                                                      "      active_jobs: x\n") +
                                             agg_node("      priority: 7\n"
                                                      "      agg_node_guid: x\n"
                                                      "      active_jobs: x\n"
                                                      "      trees_num: x\n")));
    ASSERT_EQ(read->agg_trees_num, 1U);
    EXPECT_EQ(read->agg_trees[0].tree_num, 0U);
    ASSERT_EQ(read->links_num, 1U);
    EXPECT_EQ(read->links[0].agg_node_guid, 0U);
    EXPECT_EQ(read->links[0].port_num, 0U);
    EXPECT_EQ(read->links[0].active_jobs, 0U);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_EQ(read->agg_nodes[0].agg_node_guid, 0U);
    EXPECT_EQ(read->agg_nodes[0].active_jobs, 0U);
    EXPECT_EQ(read->agg_nodes[0].trees_num, 0U);
}

TEST(ResourceData, NumbersAreCutToTheirWidth) {
    const ReadResources read(kind, resources("    operation: 4294967298\n" +
                                             one_link("      active_jobs: 65539\n") +
                                             agg_node("      trees_num: -1\n")));
    EXPECT_EQ(read->operation, 2U);
    ASSERT_EQ(read->links_num, 1U);
    EXPECT_EQ(read->links[0].active_jobs, 3U);
    ASSERT_EQ(read->agg_nodes_num, 1U);
    EXPECT_EQ(read->agg_nodes[0].trees_num, 65535U);
}

// --- Order and prefixes --------------------------------------------------------------------------

TEST(ResourceData, LinesInReversedOrderReadTheSame) {
    EXPECT_EQ(read_and_write<vemra_resource_message>(
                  kind, resources("    agg_nodes {\n"
                                  "      trees_num: 65535\n"
                                  "      active_jobs: 10\n"
                                  "      agg_node_status: 9\n"
                                  "      ts: \"2031-05-06 07:08:09, \\ local\"\n"
                                  "      priority: 8\n"
                                  "      agg_node_guid: 17870283321406128129\n"
                                  "    }\n"
                                  "    links {\n"
                                  "      active_jobs: 65535\n"
                                  "      link_status: 7\n"
                                  "      priority: 6\n"
                                  "      port_num: 40\n"
                                  "      agg_node_guid: 18446744073709551615\n"
                                  "    }\n"
                                  "    agg_nodes_num: 1\n"
                                  "    agg_trees {\n"
                                  "      tree_status: 3\n"
                                  "      priority: 2\n"
                                  "      tree_num: 1\n"
                                  "    }\n"
                                  "    agg_trees {\n"
                                  "      tree_status: 4294967295\n"
                                  "      priority: 4294967295\n"
                                  "      tree_num: 4294967295\n"
                                  "    }\n"
                                  "    links_num: 1\n"
                                  "    agg_trees_num: 2\n"
                                  "    feature_bitmask: 5\n"
                                  "    operation: 4294967295\n")),
              full_text);
}

TEST(ResourceData, ACountLineIsNotTakenForAnElement) {
    const ReadResources trees(kind, resources("    agg_trees_num: 3\n    operation: 1\n"));
    EXPECT_EQ(trees->agg_trees_num, 3U);
    EXPECT_EQ(trees->agg_trees, nullptr);
    EXPECT_EQ(trees->operation, 1U);
    const ReadResources links(kind, resources("    links_num: 3\n    operation: 1\n"));
    EXPECT_EQ(links->links_num, 3U);
    EXPECT_EQ(links->links, nullptr);
    EXPECT_EQ(links->operation, 1U);
    const ReadResources nodes(kind, resources("    agg_nodes_num: 3\n    operation: 1\n"));
    EXPECT_EQ(nodes->agg_nodes_num, 3U);
    EXPECT_EQ(nodes->agg_nodes, nullptr);
    EXPECT_EQ(nodes->operation, 1U);
}

TEST(ResourceData, ACountDirectlyBehindItsElementsIsOneMoreElement) {
    const ReadResources trees(kind,
                              resources(agg_tree("      tree_num: 1\n") + "    agg_trees_num: 9\n"
                                                                          "    tree_num: 5\n"
                                                                          "    operation: 4\n"));
    EXPECT_EQ(tree_numbers(*trees), (std::vector<uint64_t>{1, 5}));
    EXPECT_EQ(trees->operation, 0U);
    const ReadResources links(kind, resources(one_link("      agg_node_guid: 1\n") +
                                              "    links_num: 9\n"
                                              "    agg_node_guid: 5\n"
                                              "    operation: 4\n"));
    EXPECT_EQ(link_guids(*links), (std::vector<uint64_t>{1, 5}));
    EXPECT_EQ(links->operation, 0U);
    const ReadResources nodes(kind, resources(agg_node("      agg_node_guid: 1\n") +
                                              "    agg_nodes_num: 9\n"
                                              "    agg_node_guid: 5\n"
                                              "    operation: 4\n"));
    EXPECT_EQ(node_guids(*nodes), (std::vector<uint64_t>{1, 5}));
    EXPECT_EQ(nodes->operation, 0U);
}

TEST(ResourceData, ACountBehindItsElementsAndAnotherLineIsKept) {
    const ReadResources read(kind, resources(agg_tree("      tree_num: 1\n") +
                                             one_link("      agg_node_guid: 2\n") +
                                             agg_node("      agg_node_guid: 3\n") +
                                             "    agg_trees_num: 7\n"
                                             "    links_num: 8\n"
                                             "    operation: 4\n"
                                             "    agg_nodes_num: 0\n"));
    EXPECT_EQ(read->agg_trees_num, 7U);
    EXPECT_EQ(read->agg_trees[0].tree_num, 1U);
    EXPECT_EQ(read->links_num, 8U);
    EXPECT_EQ(read->links[0].agg_node_guid, 2U);
    EXPECT_EQ(read->agg_nodes_num, 0U);
    EXPECT_EQ(read->agg_nodes[0].agg_node_guid, 3U);
    EXPECT_EQ(read->operation, 4U);
}

TEST(ResourceData, ElementsOverrideAnEarlierCount) {
    std::string links;
    for (unsigned guid = 1; guid <= 7; ++guid) {
        links += one_link("      agg_node_guid: " + std::to_string(guid) + "\n");
    }
    MemoryWatch watch;
    const ReadResources read(kind, resources("    links_num: 3\n" + links));
    EXPECT_EQ(read->links_num, 7U);
    EXPECT_EQ(link_guids(*read), one_to(7));
    EXPECT_EQ(watch.requests(), 1U + 2U);
    EXPECT_EQ(watch.largest(), 10 * sizeof(vemra_resource_link));
}

TEST(ResourceData, ASecondRunReplacesTheFirst) {
    MemoryWatch watch;
    {
        const ReadResources read(
            kind,
            resources(agg_tree("      tree_num: 1\n") + agg_tree("      tree_num: 2\n") +
                      one_link("      agg_node_guid: 3\n") + agg_node("      agg_node_guid: 4\n") +
                      agg_tree("      tree_num: 5\n") + one_link("      agg_node_guid: 6\n") +
                      agg_node("      agg_node_guid: 7\n") + agg_node("      agg_node_guid: 8\n")));
        EXPECT_EQ(tree_numbers(*read), (std::vector<uint64_t>{5}));
        EXPECT_EQ(link_guids(*read), (std::vector<uint64_t>{6}));
        EXPECT_EQ(node_guids(*read), (std::vector<uint64_t>{7, 8}));
        EXPECT_EQ(watch.alive(), 4U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(ResourceData, UnknownLinesAndBlocksAreSkipped) {
    const ReadResources read(kind, resources("    later {\n"
                                             "      operation: 9\n"
                                             "    }\n" +
                                             agg_tree("      later: 1\n"
                                                      "      later {\n"
                                                      "        tree_num: 9\n"
                                                      "      }\n"
                                                      "      priority: 2\n") +
                                             "    feature_bitmask: 3\n"));
    EXPECT_EQ(read->operation, 0U);
    ASSERT_EQ(read->agg_trees_num, 1U);
    EXPECT_EQ(read->agg_trees[0].tree_num, 0U);
    EXPECT_EQ(read->agg_trees[0].priority, 2U);
    EXPECT_EQ(read->feature_bitmask, 3U);
}

// --- Growing -------------------------------------------------------------------------------------

const GrowingMember<vemra_resource_message> growing_trees = {
    kind, 1,
    [](unsigned count) {
        std::string elements;
        for (unsigned i = 1; i <= count; ++i) {
            elements += agg_tree("      tree_num: " + std::to_string(i) + "\n");
        }
        return resources(elements);
    },
    tree_numbers};

const GrowingMember<vemra_resource_message> growing_links = {
    kind, 1,
    [](unsigned count) {
        std::string elements;
        for (unsigned i = 1; i <= count; ++i) {
            elements += one_link("      agg_node_guid: " + std::to_string(i) + "\n");
        }
        return resources(elements);
    },
    link_guids};

const GrowingMember<vemra_resource_message> growing_nodes = {
    kind, 1,
    [](unsigned count) {
        std::string elements;
        for (unsigned i = 1; i <= count; ++i) {
            elements += agg_node("      agg_node_guid: " + std::to_string(i) + "\n");
        }
        return resources(elements);
    },
    node_guids};

TEST(ResourceData, ArraysGrowByDoubling) {
    expect_growth_by_doubling(growing_trees);
    expect_growth_by_doubling(growing_links);
    expect_growth_by_doubling(growing_nodes);
}

TEST(ResourceData, FailedGrowthDropsElements) {
    expect_failed_growth_drops(growing_trees);
    expect_failed_growth_drops(growing_links);
    expect_failed_growth_drops(growing_nodes);
}

TEST(ResourceData, NothingLeaksWhicheverAllocationFails) {
    expect_no_leak<vemra_resource_message>(kind, full_text, 4);
}

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

TEST(ResourceData, UnknownLinesAreTracedUnderTheReaderThatMeetsThem) {
    LogCapture log;
    const ReadResources read(kind,
                             resources(agg_tree("      tree: 1\n") + one_link("      link: 1\n") +
                                       agg_node("      node: 1\n") + "    message: 1\n"));
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            trace("resource_agg_tree",
                  "mismatch, txt_msg[tree: 1\n    }\n    links {\n      link: 1\n    }\n    ]"),
            trace("resource_link",
                  "mismatch, txt_msg[link: 1\n    }\n    agg_nodes {\n      node: 1\n    }\n]"),
            trace("resource_agg_node",
                  "mismatch, txt_msg[node: 1\n    }\n    message: 1\n  }\n}\n]"),
            trace("resource_message", "mismatch, txt_msg[message: 1\n  }\n}\n]"),
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
