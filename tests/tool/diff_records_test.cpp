// What is told of two records that differ.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "diff/diff_records.h"
#include "diff/diff_text.h"
#include "support/messages.h"
#include "tables/records.h"

namespace kvt_tool {
namespace {

using namespace kvt_str;

std::string lines_of(const std::vector<Difference> &differences, const DiffForm &form = {}) {
    std::string lines;
    for (const Difference &difference : differences) {
        lines += difference_text(difference, form) + "\n";
    }
    return lines;
}

/// The differences between two messages of a kind, given by the lines of their blocks.
std::string diff(const char *kind_name, const std::string &a, const std::string &b,
                 const DiffForm &form = {}, const std::vector<FieldPath> &ignored_paths = {}) {
    const MessageKind &kind = *find_kind(kind_name);
    const auto text = [&](const std::string &lines) {
        return kvt_test::message_text(kind.name, std::string(kind.block) + " {\n" + lines + "}\n");
    };
    const auto value = static_cast<int32_t>(kind.value);
    const kvt_test::ReadMessage<char> record_a(value, text(a));
    const kvt_test::ReadMessage<char> record_b(value, text(b));
    FieldSet ignored;
    ignored.add(ignored_paths, kind, &*record_a);
    ignored.add(ignored_paths, kind, &*record_b);
    return lines_of(diff_records(*kind.record, &*record_a, &*record_b, ignored), form);
}

TEST(DiffRecords, NamesAChangedFieldByItsPath) {
    EXPECT_EQ(diff("JOB_DATA",
                   "conns {\n tree_id: 1\n }\n conns {\n tree_id: 2\n pr_sd_to_an {\n sl: 2\n }\n"
                   "}\n reservation_id: 7\n",
                   "conns {\n tree_id: 1\n }\n conns {\n tree_id: 2\n pr_sd_to_an {\n sl: 4\n }\n"
                   "}\n reservation_id: 8\n"),
              "conns[1].pr_sd_to_an.sl: 2 -> 4 (tree_id 2, vemrad_id 0)\n"
              "reservation_id: 7 -> 8\n");
}

TEST(DiffRecords, MatchesElementsByTheirIdentity) {
    EXPECT_EQ(diff("JOB_DATA",
                   "trees {\n tree_id: 5\n feature_mask: 1\n }\n trees {\n tree_id: 6\n }\n",
                   "trees {\n tree_id: 4\n }\n trees {\n tree_id: 5\n feature_mask: 9\n }\n"),
              "trees[0].feature_mask: 1 -> 9 (tree_id 5)\n"
              "- trees[1] (tree_id 6)\n"
              "+ trees[0] (tree_id 4)\n");
}

TEST(DiffRecords, ShowsIdentitiesOfSeveralFields) {
    EXPECT_EQ(diff("JOB_DATA", "conns {\n tree_id: 1\n vemrad_id: 99\n }\n",
                   "agg_nodes {\n guid: 783964675510836\n tree_id: 3\n }\n"),
              "- conns[0] (tree_id 1, vemrad_id 99)\n"
              "+ agg_nodes[0] (guid 0x0002c90300001234 = 783964675510836, tree_id 3)\n");
}

TEST(DiffRecords, TellsMovedElementsInOneLine) {
    EXPECT_EQ(
        diff("JOB_DATA",
             "trees {\n tree_id: 1\n }\n trees {\n tree_id: 2\n }\n trees {\n tree_id: 3\n}\n",
             "trees {\n tree_id: 3\n }\n trees {\n tree_id: 2\n }\n trees {\n tree_id: 1\n"
             "feature_mask: 8\n }\n"),
        "trees[0].feature_mask: 0 -> 8 (tree_id 1)\n"
        "trees: order differs\n");
}

TEST(DiffRecords, MatchesRepeatedIdentitiesEqualElementsFirstThenInOrder) {
    const std::string one = "trees {\n tree_id: 1\n feature_mask: 1\n }\n";
    const std::string two = "trees {\n tree_id: 1\n feature_mask: 2\n }\n";
    const std::string three = "trees {\n tree_id: 1\n feature_mask: 3\n }\n";
    const std::string four = "trees {\n tree_id: 1\n feature_mask: 4\n }\n";
    EXPECT_EQ(diff("JOB_DATA", one + two, three + one + two), "+ trees[0] (tree_id 1)\n");
    EXPECT_EQ(diff("JOB_DATA", one + two, three + four),
              "trees[0].feature_mask: 1 -> 3 (tree_id 1)\n"
              "trees[1].feature_mask: 2 -> 4 (tree_id 1)\n");
}

TEST(DiffRecords, TakesAnElementOfWhichOnlyTheIdentityDiffersForOneThatHasChanged) {
    EXPECT_EQ(diff("RESOURCE_DATA",
                   "links {\n agg_node_guid: 7\n port_num: 1\n }\n"
                   "links {\n agg_node_guid: 7\n port_num: 2\n active_jobs: 4\n }\n",
                   "links {\n agg_node_guid: 7\n port_num: 1\n }\n"
                   "links {\n agg_node_guid: 7\n port_num: 3\n active_jobs: 4\n }\n"),
              "links[1].port_num: 2 -> 3 (agg_node_guid 0x0000000000000007 = 7, port_num 2)\n");
    EXPECT_EQ(diff("RESOURCE_DATA",
                   "links {\n agg_node_guid: 7\n port_num: 2\n active_jobs: 4\n }\n",
                   "links {\n agg_node_guid: 7\n port_num: 3\n active_jobs: 5\n }\n"),
              "- links[0] (agg_node_guid 0x0000000000000007 = 7, port_num 2)\n"
              "+ links[0] (agg_node_guid 0x0000000000000007 = 7, port_num 3)\n");
}

TEST(DiffRecords, LooksForTheChangedElementFromBothNeighbours) {
    const std::string first = "trees {\n tree_id: 1\n }\n";
    const std::string added = "trees {\n tree_id: 8\n feature_mask: 1\n peer_tree_id: 2\n }\n";
    const std::string last = "trees {\n tree_id: 9\n }\n";
    EXPECT_EQ(diff("JOB_DATA", first + "trees {\n tree_id: 2\n }\n" + last,
                   first + added + "trees {\n tree_id: 3\n }\n" + last),
              "trees[1].tree_id: 2 -> 3 (tree_id 2)\n"
              "+ trees[1] (tree_id 8)\n");
}

TEST(DiffRecords, MatchesElementsWithoutIdentityByContentAndThenByPlace) {
    const std::string first = "vemra_events {\n event_type: 1\n ts {\n seconds: 10\n }\n }\n";
    const std::string second = "vemra_events {\n event_type: 2\n ts {\n seconds: 20\n }\n }\n";
    const std::string changed = "vemra_events {\n event_type: 2\n ts {\n seconds: 21\n }\n }\n";
    const std::string third = "vemra_events {\n event_type: 3\n }\n";
    EXPECT_EQ(diff("EVENTS_REPLY", first + second + first, third + first + changed + first),
              "vemra_events[1].ts.seconds: 20 -> 21\n"
              "+ vemra_events[0] (event_type 3)\n");
}

TEST(DiffRecords, MatchesEntriesByTheirNames) {
    EXPECT_EQ(
        diff("EVENTS_REPLY",
             "vemra_events {\n str_entry_list {\n entry_name: \"job\"\n entry_value: \"1\"\n"
             "}\n }\n",
             "vemra_events {\n str_entry_list {\n entry_name: \"up\"\n entry_value: \"x\"\n"
             "}\n str_entry_list {\n entry_name: \"job\"\n entry_value: \"two\"\n }\n }\n"),
        "vemra_events[0].str_entry_list[0].entry_value: \"1\" -> \"two\" (entry_name \"job\")\n"
        "+ vemra_events[0].str_entry_list[0] (entry_name \"up\")\n");
}

TEST(DiffRecords, MatchesNumbersByValue) {
    const auto guids = [](std::initializer_list<int> numbers) {
        std::string lines;
        for (const int number : numbers) {
            lines += "port_guids: " + std::to_string(number) + "\n";
        }
        return lines;
    };
    const auto of = [&](std::initializer_list<int> a, std::initializer_list<int> b) {
        return diff("TOPOLOGY_INFO_REQUEST", guids(a), guids(b));
    };
    EXPECT_EQ(of({1, 2, 3}, {9, 1, 2, 3}), "+ port_guids[0]: 0x0000000000000009\n");
    EXPECT_EQ(of({1, 2, 2, 3}, {1, 2, 3}), "- port_guids[2]: 0x0000000000000002\n");
    EXPECT_EQ(of({1, 2, 3}, {0, 1, 7, 3}),
              "port_guids[1]: 0x0000000000000002 -> 0x0000000000000007\n"
              "+ port_guids[0]: 0x0000000000000000\n");
    EXPECT_EQ(of({1, 2, 3, 2}, {2, 3, 2, 1}), "port_guids: order differs\n");
}

TEST(DiffRecords, NamesElementsAsPeopleDoToo) {
    EXPECT_EQ(diff("TOPOLOGY_INFO_REPLY",
                   "switches {\n id: 2\n name: \"leaf02\"\n peer_ids: 7\n }\n",
                   "switches {\n id: 2\n name: \"leaf02\"\n peer_ids: 8\n }\n"),
              "switches[0].peer_ids[0]: 7 -> 8 (id 2, name \"leaf02\")\n");
    EXPECT_EQ(diff("JOB_DATA",
                   "hosts_sd_info {\n vemrad_id: 9\n addr: \"192.0.2.7\"\n version: 1\n }\n",
                   "hosts_sd_info {\n vemrad_id: 9\n addr: \"192.0.2.8\"\n version: 1\n }\n"),
              "hosts_sd_info[0].addr: \"192.0.2.7\" -> \"192.0.2.8\" "
              "(vemrad_id 9, addr \"192.0.2.7\")\n");
}

TEST(DiffRecords, ShowsGuidsInTheFormThatIsWanted) {
    const std::string a = "links {\n agg_node_guid: 255\n port_num: 1\n }\n";
    const std::string b = "links {\n agg_node_guid: 256\n port_num: 1\n }\n";
    EXPECT_EQ(
        diff("RESOURCE_DATA", a, b, {.names = GuidForm::decimal, .values = GuidForm::decimal}),
        "links[0].agg_node_guid: 255 -> 256 (agg_node_guid 255, port_num 1)\n");
    EXPECT_EQ(diff("RESOURCE_DATA", a, b,
                   {.names = GuidForm::hexadecimal, .values = GuidForm::hexadecimal}),
              "links[0].agg_node_guid: 0x00000000000000ff -> 0x0000000000000100 "
              "(agg_node_guid 0x00000000000000ff, port_num 1)\n");
}

TEST(DiffRecords, HaveThePathsOfBothSides) {
    const kvt_test::ReadMessage<char> a(
        VEMRA_MSG_TYPE_JOB_DATA,
        kvt_test::message_text("JOB_DATA", "job_data {\n trees {\n tree_id: 5\n }\n }\n"));
    const kvt_test::ReadMessage<char> b(
        VEMRA_MSG_TYPE_JOB_DATA,
        kvt_test::message_text("JOB_DATA", "job_data {\n trees {\n tree_id: 4\n }\n"
                                           "trees {\n tree_id: 5\n feature_mask: 1\n }\n }\n"));
    const std::vector<Difference> found = diff_records(RecordOf<vemra_job_data>::table, &*a, &*b);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].a.path, "trees[0].feature_mask");
    EXPECT_EQ(found[0].b.path, "trees[1].feature_mask");
    EXPECT_EQ(found[1].a.path, "");
    EXPECT_EQ(found[1].b.path, "trees[0]");
}

/// The differences that are left when paths are ignored.
std::string diff_but(std::initializer_list<const char *> ignored, const char *kind_name,
                     const std::string &a, const std::string &b) {
    std::vector<FieldPath> paths;
    for (const char *path : ignored) {
        paths.push_back(std::get<FieldPath>(FieldPath::parse(path)));
    }
    return diff(kind_name, a, b, {}, paths);
}

TEST(DiffRecords, LeaveOutWhatIsIgnored) {
    const std::string a = "trees {\n tree_id: 1\n feature_mask: 1\n mgid {\n guid: 1\n }\n }\n"
                          "trees {\n tree_id: 2\n feature_mask: 1\n }\n uid: 5\n";
    const std::string b = "trees {\n tree_id: 1\n feature_mask: 2\n mgid {\n guid: 2\n }\n }\n"
                          "trees {\n tree_id: 2\n feature_mask: 2\n }\n uid: 6\n";
    EXPECT_EQ(diff_but({"trees[*].feature_mask", "uid"}, "JOB_DATA", a, b),
              "trees[0].mgid.guid: 0x0000000000000001 -> 0x0000000000000002 (tree_id 1)\n");
    EXPECT_EQ(diff_but({"trees.mgid", "trees[1]", "uid"}, "JOB_DATA", a, b),
              "trees[0].feature_mask: 1 -> 2 (tree_id 1)\n");
    EXPECT_EQ(diff_but({"trees", "uid"}, "JOB_DATA", a, b), "");
    EXPECT_EQ(diff_but({"trees"}, "JOB_DATA", a, ""), "uid: 5 -> 0\n");
    EXPECT_EQ(diff_but({"trees"}, "JOB_DATA", "", b), "uid: 0 -> 6\n");
    EXPECT_EQ(diff_but({"trees[0]", "uid"}, "JOB_DATA", "trees {\n tree_id: 1\n }\n", b),
              "+ trees[1] (tree_id 2)\n");
    EXPECT_EQ(diff_but({"trees[0]", "uid"}, "JOB_DATA", a, "trees {\n tree_id: 1\n }\n"),
              "- trees[1] (tree_id 2)\n");
}

TEST(DiffRecords, LeaveOutTheNumbersOfAnIgnoredList) {
    const std::string a = "port_guids: 1\n port_guids: 2\n port_guids: 3\n";
    const std::string b = "port_guids: 3\n port_guids: 9\n port_guids: 1\n port_guids: 4\n";
    EXPECT_EQ(diff_but({"port_guids"}, "TOPOLOGY_INFO_REQUEST", a, b), "");
    EXPECT_EQ(diff_but({"port_guids[1]"}, "TOPOLOGY_INFO_REQUEST", a,
                       "port_guids: 1\n"
                       "port_guids: 7\n"
                       "port_guids: 3\n"),
              "");
}

TEST(DiffRecords, MatchElementsByWhatIsNotIgnored) {
    const auto event = [](int type, int seconds) {
        return "vemra_events {\n event_type: " + std::to_string(type) +
               "\n ts {\n seconds: " + std::to_string(seconds) + "\n }\n }\n";
    };
    EXPECT_EQ(diff_but({"vemra_events[*].ts"}, "EVENTS_REPLY", event(1, 10) + event(2, 11),
                       event(3, 20) + event(1, 21) + event(2, 22) + event(4, 23)),
              "+ vemra_events[0] (event_type 3)\n"
              "+ vemra_events[3] (event_type 4)\n");
}

TEST(DiffRecords, ReportsCountsOnlyWhereTheyLie) {
    const std::string slots = "groups {\n group_id: 1\n}\n groups {\n group_id: 2\n}\n"
                              "groups {\n group_id: 3\n}\n groups {\n group_id: 4\n}\n";
    EXPECT_EQ(diff("GROUPS_DATA", slots + "num_groups: 4\n", slots + "num_groups: 200\n"),
              "num_groups: 4 -> 200\n");
    EXPECT_EQ(diff("BEGIN_JOB", "hosts: \"ab\"\n", "hosts: \"abc\"\n"),
              "hosts: \"ab\" -> \"abc\"\n");
    EXPECT_EQ(diff("BEGIN_JOB", "hosts: \"ab\"\n", "hosts: \"ab\"\n num_rails: 0\n hosts_len: 4\n"),
              "hosts_len: 3 -> 4\n");
}

TEST(DiffRecords, ShowsTextsInOneLine) {
    EXPECT_EQ(diff("JOB_ERROR", "description: \"a\\b\tc\n\x1B[31m\x7F\"\n",
                   "description: \"\xC3\xA9\xC3 \xED\xA0\x80\xC2\x9F\"\n"),
              "description: \"a\\\\b\\tc\\n\\x1b[31m\\x7f\" -> "
              "\"\xC3\xA9\\xc3 \\xed\\xa0\\x80\\xc2\\x9f\"\n");
}

TEST(DiffRecords, ShowsSigns) {
    EXPECT_EQ(
        diff("JOB_DATA", "conns {\n pr_an_to_sd {\n raw_traffic: -2\n }\n }\n", "conns {\n }\n"),
        "conns[0].pr_an_to_sd.raw_traffic: -2 -> 0 (tree_id 0, vemrad_id 0)\n");
}

TEST(DiffRecords, SeesEveryFloatAndShowsTheDigitsThatTellTwoApart) {
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: 12.34567\n", "quota_percentage: 12.345672\n"),
              "quota_percentage: 12.34567 -> 12.345672\n");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: 1\n", "quota_percentage: 1.0000002\n"),
              "quota_percentage: 1 -> 1.0000002\n");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: 12.34567\n", "quota_percentage: 13\n"),
              "quota_percentage: 12.3457 -> 13\n");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: 12.50\n", "quota_percentage: 1.25e1\n"), "");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: nan\n", "quota_percentage: -nan\n"),
              "quota_percentage: nan -> -nan\n");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: -0\n", ""), "");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: nan\n", "quota_percentage: nan\n"), "");
    EXPECT_EQ(diff("BEGIN_JOB", "quota_percentage: 12.5\n", "quota_percentage: -0\n"),
              "quota_percentage: 12.5 -> 0\n");
}

TEST(DiffRecords, IgnoresWhatTheWriterDoesNotWrite) {
    vemra_tree_conn a = {};
    vemra_tree_conn b = {};
    a.qp_child_idxs[1] = b.qp_child_idxs[1] = 255;
    a.qp_child_idxs[2] = 7;
    EXPECT_EQ(lines_of(diff_records(RecordOf<vemra_tree_conn>::table, &a, &b)), "");
}

TEST(DiffRecords, TakesNoMoreTimeForLongListsInAnotherOrder) {
    constexpr uint32_t count = 200'000;
    std::vector<uint64_t> ascending(count);
    std::vector<uint64_t> descending(count);
    for (uint32_t i = 0; i < count; ++i) {
        ascending[i] = i;
        descending[i] = count - 1 - i;
    }
    const vemra_topology_info_request a = {count, ascending.data()};
    const vemra_topology_info_request b = {count, descending.data()};
    EXPECT_EQ(lines_of(diff_records(RecordOf<vemra_topology_info_request>::table, &a, &b)),
              "port_guids: order differs\n");
}

} // namespace
} // namespace kvt_tool
