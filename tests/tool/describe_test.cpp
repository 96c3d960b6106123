// What the tables say, for people.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "kvt/messages/message_type.h"
#include "model/describe.h"

namespace kvt_tool {
namespace {

const MessageKind &kind_of(int32_t value) {
    return *kvt_str::find_kind(value);
}

TEST(Describe, AKindHasItsKeysInColumns) {
    EXPECT_EQ(describe_kind(kind_of(VEMRA_MSG_TYPE_SM_DATA)),
              "SM_DATA, kind 8\n"
              "Data of the subnet manager: the nodes of the fat tree, by LID.\n"
              "Block sm_data, record vemra_sm_data.\n"
              "\n"
              "KEY             VALUE                                             "
              "DEFAULT       WRITTEN\n"
              "job_id          number, 64 bits                                   "
              "0             if not 0\n"
              "data_type       number, 32 bits                                   "
              "0             always\n"
              "status          number, 32 bits                                   "
              "0             always\n"
              "ftree_data {    block vemra_ftree_file_data                       "
              "all defaults  always\n"
              "  array_len     number, 32 bits; count of file_nodes              "
              "0             if not 0\n"
              "  file_nodes {  blocks vemra_ftree_file_node; count in array_len  "
              "none          one block each\n"
              "    lid         number, 16 bits                                   "
              "0             if not 0\n"
              "  }\n"
              "}\n");
}

TEST(Describe, ABlockThatComesAgainIsShownOnce) {
    const std::string text = describe_kind(kind_of(VEMRA_MSG_TYPE_JOB_DATA));
    EXPECT_NE(text.find("\nqpc_opts {  "), std::string::npos) << text;
    EXPECT_NE(text.find("\nsat_qpc_opts { as above }  "), std::string::npos) << text;
    EXPECT_EQ(text.find("traffic_class"), text.rfind("traffic_class")) << text;
}

TEST(Describe, AKindWithoutARecordHasOnlyItsPurpose) {
    EXPECT_EQ(describe_kind(kind_of(VEMRA_MSG_TYPE_NONE)),
              "NONE, kind 0\nStands for no message; carries no record.\n");
}

TEST(Describe, LinesHaveNoBlanksAtTheirEnds) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        EXPECT_EQ(describe_kind(kind).find(" \n"), std::string::npos);
    }
    EXPECT_EQ(list_kinds(true).find(" \n"), std::string::npos);
}

/// Whether a line of a text has a part.
bool has_line(const std::string &text, const std::string &part) {
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.find(part) != std::string::npos) {
            return true;
        }
    }
    return false;
}

TEST(Describe, ListsAndTextsTellWhatEndsOrCountsThem) {
    const std::string job = describe_kind(kind_of(VEMRA_MSG_TYPE_JOB_DATA));
    EXPECT_TRUE(has_line(job, "at most 64 numbers, 8 bits; 255 ends them ")) << job;
    EXPECT_TRUE(has_line(job, "at most 1 number, 8 bits; 0 ends them ")) << job;
    const std::string events = describe_kind(kind_of(VEMRA_MSG_TYPE_EVENTS_REPLY));
    EXPECT_TRUE(has_line(events, "number, 32 bits; length + 1 of entry_value ")) << events;
    EXPECT_TRUE(has_line(events, "texts, joined with commas; length in value_len ")) << events;
    const std::string groups = describe_kind(kind_of(VEMRA_MSG_TYPE_ALLOC_GROUPS));
    EXPECT_TRUE(has_line(groups, "at most 4 blocks vemra_alloc_group; count in num_groups "));
    EXPECT_TRUE(has_line(groups, "number, 8 bits; count of groups ")) << groups;
}

TEST(Describe, KindsHaveALineAndTheirPurpose) {
    std::istringstream lines(list_kinds(true));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "VALUE  KIND                         BLOCK                       RECORD");
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        std::getline(lines, line);
        EXPECT_TRUE(line.starts_with(std::to_string(kind.value) + " ")) << line;
        EXPECT_NE(line.find(std::string(" ") + kind.name + " "), std::string::npos) << line;
        std::getline(lines, line);
        EXPECT_EQ(line, "       " + std::string(purpose_of(kind)));
    }
    EXPECT_FALSE(std::getline(lines, line));
}

TEST(Describe, EveryKindHasAPurposeOfItsOwnInOneLine) {
    std::set<std::string_view> seen;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        const std::string_view purpose = purpose_of(kind);
        EXPECT_TRUE(seen.insert(purpose).second) << purpose;
        EXPECT_TRUE(purpose.size() > 10 && purpose.size() < 80) << purpose;
        EXPECT_EQ(purpose.find('\n'), std::string_view::npos);
        EXPECT_EQ(purpose.back(), '.');
    }
}

// --- Words of the command line -------------------------------------------------------------------

TEST(DescribeWords, NameKindsInAnyCaseAndByTheirBlocks) {
    EXPECT_EQ(kind_of_word("JOB_DATA"), &kind_of(VEMRA_MSG_TYPE_JOB_DATA));
    EXPECT_EQ(kind_of_word("Job_Data"), &kind_of(VEMRA_MSG_TYPE_JOB_DATA));
    EXPECT_EQ(kind_of_word("mgmt_job_info_list"), &kind_of(VEMRA_MSG_TYPE_JOB_INFO_REPLY));
    EXPECT_EQ(kind_of_word("Resource_Message"), &kind_of(VEMRA_MSG_TYPE_RESOURCE_DATA));
    EXPECT_EQ(kind_of_word("none"), &kind_of(VEMRA_MSG_TYPE_NONE));
    EXPECT_EQ(kind_of_word("JOB_DATA_2"), nullptr);
    EXPECT_EQ(kind_of_word("JOB"), nullptr);
    EXPECT_EQ(kind_of_word(""), nullptr);
}

using Names = std::vector<std::string>;

TEST(DescribeWords, ThatAreMistypedAreNearTheirKinds) {
    EXPECT_EQ(kinds_meant_by("JOBDATA").front(), "JOB_DATA");
    EXPECT_EQ(kinds_meant_by("job_dta").front(), "JOB_DATA");
    EXPECT_EQ(kinds_meant_by("begin-job"), Names{"BEGIN_JOB"});
    EXPECT_EQ(kinds_meant_by("event_lst").front(), "EVENTS_REPLY");
    EXPECT_EQ(kinds_meant_by("topology"), (Names{"TOPOLOGY_INFO_REQUEST", "TOPOLOGY_INFO_REPLY"}));
    EXPECT_EQ(kinds_meant_by("reservation").size(), 4U);
    EXPECT_EQ(kinds_meant_by("xyzzyxyzzy"), Names{});
    EXPECT_EQ(kinds_meant_by(std::string(100000, 'x')), Names{});
}

TEST(DescribeWords, ThatAreUnknownAreSaidWithTheirNeighbours) {
    EXPECT_EQ(unknown_kind("begin-job"), "there is no kind 'begin-job'; did you mean BEGIN_JOB?");
    EXPECT_EQ(unknown_kind("topology"), "there is no kind 'topology'; did you mean "
                                        "TOPOLOGY_INFO_REQUEST or TOPOLOGY_INFO_REPLY?");
    EXPECT_EQ(unknown_kind("xyzzyxyzzy"), "there is no kind 'xyzzyxyzzy'; kvt describe lists all");
}

} // namespace
} // namespace kvt_tool
