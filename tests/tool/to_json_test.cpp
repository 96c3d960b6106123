// Messages as JSON.
#include "json/to_json.h"

#include <gtest/gtest.h>

#include <string>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "kvt/messages/message_type.h"

namespace kvt_tool {
namespace {

/// A message that is read from its text, in one of the forms of JSON.
std::string json_of(int32_t kind, const std::string &lines, const JsonForm &form = {}) {
    const MessageKind &known = *kvt_str::find_kind(kind);
    const std::string text =
        std::string("msg {\n  type: ") + known.name + "\n  x {\n" + lines + "  }\n}\n";
    void *record = nullptr;
    EXPECT_EQ(kvt_msg_from_str(0, nullptr, text.c_str(), &record), 0);
    const std::string json = to_json(known, record, form).dump();
    kvt_msg_release(kind, record);
    return json;
}

TEST(ToJson, HasWhatTheTextHas) {
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_JOB_ERROR, "tree_id: 3\nerror: 0\ndescription: \"a\\b\"\n"),
              R"({"type":"JOB_ERROR","job_error":{"tree_id":3,"error":0,"type":0,)"
              R"("description":"a\\b"}})");
}

TEST(ToJson, HasNumbersOf64BitsAsStrings) {
    const std::string lines = "job_id: 18446744073709551615\n";
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_END_JOB, lines),
              R"({"type":"END_JOB","end_job":{"job_id":"18446744073709551615"}})");
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_END_JOB, lines, {.plain_numbers = true}),
              R"({"type":"END_JOB","end_job":{"job_id":18446744073709551615}})");
}

TEST(ToJson, HasGuidsInHexadecimalWhenAsked) {
    const std::string lines = "port_guids: 1\nport_guids: 18446744073709551615\n";
    EXPECT_EQ(
        json_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST, lines, {.guids = GuidForm::hexadecimal}),
        R"({"type":"TOPOLOGY_INFO_REQUEST","topology_info_request":)"
        R"({"port_guids":["0x0000000000000001","0xffffffffffffffff"]}})");
}

TEST(ToJson, LeavesOutCountsThatFollowFromTheirLists) {
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_RELEASE_GROUPS, "groups {\n}\ngroups {\n}\n"),
              R"({"type":"RELEASE_GROUPS","release_groups":{"groups":[{},{}]}})");
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_RELEASE_GROUPS, "groups {\n}\nx: 1\nnum_groups: 9\n"),
              R"({"type":"RELEASE_GROUPS","release_groups":{"num_groups":9,)"
              R"("groups":[{},{},{},{}]}})");
}

TEST(ToJson, HasFloatsInTheirShortestForm) {
    EXPECT_NE(json_of(VEMRA_MSG_TYPE_BEGIN_JOB, "quota_percentage: 12.1\n").find(":12.1,"),
              std::string::npos);
    EXPECT_NE(json_of(VEMRA_MSG_TYPE_BEGIN_JOB, "quota_percentage: -inf\n").find("\"-Infinity\""),
              std::string::npos);
}

TEST(ToJson, HasTheBytesOfATextThatIsNoUtf8) {
    EXPECT_NE(json_of(VEMRA_MSG_TYPE_JOB_ERROR, "description: \"a\xFF\"\n")
                  .find(R"("description":{"hex":"61ff"})"),
              std::string::npos);
}

TEST(IsUtf8, TakesEveryLengthAndNothingElse) {
    for (const char *text : {"", "a", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                             "\xF4\x8F\xBF\xBF", "\xED\x9F\xBF", "\xE0\xA0\x80"}) {
        EXPECT_TRUE(is_utf8(text)) << text;
    }
    for (const char *text :
         {"\x80", "\xC0\x80", "\xC1\xBF", "\xC3", "\xE2\x82", "\xE0\x9F\xBF", "\xED\xA0\x80",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5", "\xC3\xC3", "a\xE2\x28\xA1", "\xFF"}) {
        EXPECT_FALSE(is_utf8(text));
    }
}

} // namespace
} // namespace kvt_tool
