// What is said of single keys and blocks.
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "kvt/messages/message_type.h"
#include "model/describe_json.h"
#include "model/describe_places.h"

namespace kvt_tool {
namespace {

using Places = std::vector<FieldPlace>;

std::string described(std::string_view word) {
    const std::variant<Places, std::string> places = places_of_word(word);
    return std::holds_alternative<Places>(places) ? describe_places(std::get<Places>(places))
                                                  : std::get<std::string>(places);
}

std::string paths_of(std::string_view word) {
    std::string paths;
    const Places places = std::get<Places>(places_of_word(word));
    for (const FieldPlace &place : places) {
        paths += place.path + "\n";
    }
    return paths;
}

TEST(DescribePlaces, ABlockIsShownWithItsKeys) {
    EXPECT_EQ(described("ftree_data"),
              "KIND     PATH                VALUE                        DEFAULT       WRITTEN\n"
              "SM_DATA  sm_data.ftree_data  block vemra_ftree_file_data  all defaults  always\n"
              "\n"
              "Record vemra_ftree_file_data:\n"
              "\n"
              "KEY           VALUE                                             "
              "DEFAULT  WRITTEN\n"
              "array_len     number, 32 bits; count of file_nodes              "
              "0        if not 0\n"
              "file_nodes {  blocks vemra_ftree_file_node; count in array_len  "
              "none     one block each\n"
              "  lid         number, 16 bits                                   "
              "0        if not 0\n"
              "}\n");
}

TEST(DescribePlaces, AKeyIsShownWhereverItStands) {
    EXPECT_EQ(paths_of("file_nodes.lid"), "sm_data.ftree_data.file_nodes.lid\n");
    EXPECT_EQ(paths_of("sm_data.ftree_data"), "sm_data.ftree_data\n");
    EXPECT_EQ(paths_of("data_type"), "request_sm_data.data_type\nsm_data.data_type\n");
    const std::string text = described("data_type");
    EXPECT_EQ(text.find("Record"), std::string::npos) << text;
    EXPECT_NE(text.find("\nSM_DATA      sm_data.data_type          number, 32 bits  0"),
              std::string::npos)
        << text;
}

TEST(DescribePlaces, ARecordOfSeveralBlocksIsShownOnce) {
    const std::string text = described("quota");
    EXPECT_EQ(text.find("Record "), text.rfind("Record ")) << text;
    EXPECT_NE(text.find("max_osts"), std::string::npos) << text;
}

TEST(DescribePlaces, AWordThatIsNoneIsSaidWithItsNeighbour) {
    EXPECT_EQ(described("qouta"), "there is no kind, block or key 'qouta'; did you mean quota?");
    EXPECT_EQ(described("job_dta"),
              "there is no kind, block or key 'job_dta'; did you mean JOB_DATA?");
    EXPECT_EQ(described("xyzzyxyzzy"),
              "there is no kind, block or key 'xyzzyxyzzy'; kvt describe lists all");
    EXPECT_EQ(described("job_data.con"), "column 10: \"job_data\" has no field \"con\"");
}

TEST(DescribeJson, OfAKindHasAllFields) {
    const auto json = describe_as_json(*kvt_str::find_kind(VEMRA_MSG_TYPE_SM_DATA), true);
    EXPECT_EQ(json["kind"], "SM_DATA");
    EXPECT_EQ(json["value"], 8);
    EXPECT_EQ(json["block"], "sm_data");
    EXPECT_EQ(json["fields"][0]["key"], "job_id");
    EXPECT_EQ(json["fields"][0]["bits"], 64);
    const auto &data = json["fields"][3];
    EXPECT_EQ(data["shape"], "block");
    EXPECT_EQ(data["fields"][0]["counts"], "file_nodes");
    EXPECT_EQ(data["fields"][1]["shape"], "blocks");
    EXPECT_EQ(data["fields"][1]["fields"][0]["key"], "lid");
    const auto bare = describe_as_json(*kvt_str::find_kind(VEMRA_MSG_TYPE_SM_DATA), false);
    EXPECT_FALSE(bare.contains("fields"));
    EXPECT_EQ(describe_as_json(*kvt_str::find_kind(VEMRA_MSG_TYPE_NONE), true)["block"], nullptr);
}

TEST(DescribeJson, OfAPlaceHasKindPathAndField) {
    const auto places = std::get<Places>(places_of_word("port_guids"));
    const auto json = describe_as_json(places.front());
    EXPECT_EQ(json["kind"], places.front().kind->name);
    EXPECT_EQ(json["path"], places.front().path);
    EXPECT_EQ(json["shape"], "numbers");
    EXPECT_EQ(json["guid"], true);
    const auto whole = describe_as_json(std::get<Places>(places_of_word("end_job")).front());
    EXPECT_EQ(whole["fields"].size(), 2U);
}

} // namespace
} // namespace kvt_tool
