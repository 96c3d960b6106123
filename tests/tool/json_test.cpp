// Messages as JSON and back.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvt/kvt_str.h"
#include "kvt/messages/groups.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_start.h"
#include "model/write_text.h"
#include "support/random_records.h"
#include "temporary_file.h"
#include "json/from_json.h"
#include "json/json_stream.h"
#include "json/to_json.h"

namespace kvt_tool {
namespace {

using kvt_test::OwnedRecord;
using kvt_test::Random;

const MessageKind &kind_of(int32_t value) {
    return *kvt_str::find_kind(value);
}

std::string text_of(const MessageKind &kind, const void *record) {
    std::string text;
    EXPECT_TRUE(add_text(kind, record, text));
    return text;
}

/// A message that is read from its text, in one of the forms of JSON.
std::string json_of(int32_t kind, const std::string &lines, const JsonForm &form = {}) {
    const std::string text =
        std::string("msg {\n  type: ") + kind_of(kind).name + "\n  x {\n" + lines + "  }\n}\n";
    void *record = nullptr;
    EXPECT_EQ(kvt_msg_from_str(0, 0, text.c_str(), &record), 0);
    const std::string json = to_json(kind_of(kind), record, form).dump();
    kvt_msg_release(kind, record);
    return json;
}

/// What is wrong with a JSON text; empty when it is a message.
std::string problem_of(const std::string &json) {
    try {
        from_json(parse_json(json));
        return "";
    } catch (const JsonProblem &problem) {
        return std::to_string(problem.line) + ": " + problem.what;
    }
}

/// The record's lines in the text that is made of a JSON text.
std::string lines_of(const std::string &json) {
    const OwnedMessage made = from_json(parse_json(json));
    const std::string text = text_of(made.kind(), made.record());
    const size_t begin = text.find('\n', text.find('\n', text.find('\n') + 1) + 1) + 1;
    return text.substr(begin, text.size() - begin - std::strlen("  }\n}\n\n"));
}

// --- To JSON -------------------------------------------------------------------------------------

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
    EXPECT_EQ(json_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST, lines, {.hexadecimal_guids = true}),
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

// --- From JSON -----------------------------------------------------------------------------------

TEST(FromJson, TakesEveryFormOfANumber) {
    for (const char *number : {"17", "\"17\"", "\"0x11\"", "\"0X0000000000000011\""}) {
        EXPECT_EQ(
            lines_of(std::string(R"({"type":"END_JOB","end_job":{"job_id":)") + number + "}}"),
            "    job_id: 17\n");
    }
}

TEST(FromJson, TakesNullForAFieldThatIsMissing) {
    EXPECT_EQ(lines_of(R"({"type":"END_JOB","end_job":{"job_id":null,"reservation_id":1}})"),
              "    reservation_id: 1\n");
}

TEST(FromJson, SetsCountsByTheirLists) {
    EXPECT_EQ(lines_of(R"({"type":"TOPOLOGY_INFO_REQUEST",
                           "topology_info_request":{"port_guids":[7,"8"]}})"),
              "    num_guids: 2\n    port_guids: 7\n    port_guids: 8\n");
}

TEST(FromJson, TakesCountsThatAgree) {
    EXPECT_EQ(problem_of(R"({"type":"TOPOLOGY_INFO_REQUEST",
                             "topology_info_request":{"num_guids":1,"port_guids":[7]}})"),
              "");
    EXPECT_EQ(problem_of(R"({"type":"TOPOLOGY_INFO_REQUEST",
                             "topology_info_request":{"num_guids":2,"port_guids":[7]}})"),
              "0: topology_info_request.num_guids: 2 elements are said, but there are 1");
}

TEST(FromJson, SaysWhatARecordCannotHold) {
    const auto end_job = [](const std::string &fields) {
        return problem_of(R"({"type":"END_JOB","end_job":{)" + fields + "}}");
    };
    EXPECT_EQ(end_job(R"("job":1)"), R"(0: end_job: there is no field "job")");
    EXPECT_EQ(end_job(R"("job_id":-1)"), "0: end_job.job_id: -1 is negative");
    EXPECT_EQ(end_job(R"("job_id":1.5)"),
              "0: end_job.job_id: 1.5 is not a whole number of at most 64 bits");
    EXPECT_EQ(end_job(R"("job_id":"18446744073709551616")"),
              "0: end_job.job_id: \"18446744073709551616\" is not a whole number of at most 64 "
              "bits");
    EXPECT_EQ(end_job(R"("job_id":true)"),
              "0: end_job.job_id: true is not a whole number of at most 64 bits");
    EXPECT_EQ(end_job(R"("job_id":1,"job_id":2)"), "0: an object has the key \"job_id\" twice");
    EXPECT_EQ(problem_of(R"({"type":"JOB_ERROR","job_error":{"tree_id":65536}})"),
              "0: job_error.tree_id: 65536 does not fit into 16 bits");
    EXPECT_EQ(problem_of(R"({"type":"JOB_ERROR","job_error":{"description":")" +
                         std::string(128, 'x') + "\"}}"),
              "0: job_error.description: a text of 128 bytes where 127 fit");
    EXPECT_EQ(problem_of(R"({"type":"JOB_ERROR","job_error":{"description":"a\u0000"}})"),
              "0: job_error.description: a text cannot hold a NUL");
    EXPECT_EQ(problem_of(R"({"type":"RELEASE_GROUPS","release_groups":
                             {"groups":[{},{},{},{},{}]}})"),
              "0: release_groups.groups: 5 elements where 4 fit");
    EXPECT_EQ(problem_of(R"({"type":"JOB_DATA","job_data":{"conns":[{},
                             {"qp_child_idxs":[1,255]}]}})"),
              "0: job_data.conns[1].qp_child_idxs[1]: 255 ends such a list, and cannot be in it");
}

TEST(FromJson, IsNotLedAstrayByWhatIsDeepOrLong) {
    const std::string deep(100000, '[');
    EXPECT_EQ(problem_of(deep), "0: lists and objects are nested more than 64 deep");
    std::string list = R"({"type":"JOB_DATA","job_data":{"conns":[{})";
    std::string keys = R"({"type":"END_JOB","end_job":{"k":0)";
    for (int i = 0; i < 300000; ++i) {
        list += ",{}";
        keys += ",\"k" + std::to_string(i) + "\":1";
    }
    EXPECT_EQ(problem_of(list + "]}}"), "");
    EXPECT_EQ(problem_of(keys + "}}"), "0: end_job: there is no field \"k\"");
}

TEST(FromJson, TakesWholeNumbersInOtherSpellings) {
    for (const char *number : {"5.0", "5e0", "500e-2"}) {
        EXPECT_EQ(
            lines_of(std::string(R"({"type":"END_JOB","end_job":{"job_id":)") + number + "}}"),
            "    job_id: 5\n");
    }
    EXPECT_EQ(lines_of(R"({"type":"END_JOB","end_job":{"job_id":-0,"reservation_id":0.0}})"), "");
    EXPECT_NE(problem_of(R"({"type":"END_JOB","end_job":{"job_id":1e16}})"), "");
}

TEST(FromJson, ShowsKeysWithoutTheirControlCharacters) {
    EXPECT_EQ(problem_of(R"({"type":"END_JOB","end_job":{"a\u0000\u001b":1}})"),
              R"(0: end_job: there is no field "a\u0000\u001b")");
}

TEST(Json, KeepsEveryFloat) {
    for (const char *value :
         {"3.4028235e38", "-3.4028235e38", "1e-45", "-0.0", "0.1", "16777217"}) {
        const std::string text = std::string("quota_percentage: ") + value + "\n";
        const std::string json = json_of(VEMRA_MSG_TYPE_BEGIN_JOB, text);
        EXPECT_EQ(problem_of(json), "") << json;
    }
    EXPECT_NE(lines_of(json_of(VEMRA_MSG_TYPE_BEGIN_JOB, "quota_percentage: -nan\n"))
                  .find("quota_percentage: -nan\n"),
              std::string::npos);
}

TEST(FromJson, SaysWhatIsNoMessage) {
    EXPECT_EQ(problem_of("5"), "0: not an object with a \"type\": 5");
    EXPECT_EQ(problem_of(R"({"type":"NONE"})"),
              "0: \"NONE\" is not a kind of message; \"kvt describe\" lists them");
    EXPECT_EQ(problem_of(R"({"type":"END_JOB","job_data":{}})"),
              "0: there is no \"job_data\" in a message of the kind END_JOB, only \"end_job\"");
    EXPECT_EQ(problem_of("{\"type\":\n\"END_JOB\",\n,}").substr(0, 3), "3: ");
}

TEST(FromJson, EndsAByteArrayThatIsNotFull) {
    EXPECT_NE(lines_of(R"({"type":"JOB_DATA","job_data":{"conns":[{"qp_child_idxs":[1,2]}]}})")
                  .find("      qp_child_idxs: 1\n      qp_child_idxs: 2\n      pr_sd_to_an {"),
              std::string::npos);
    EXPECT_EQ(lines_of(R"({"type":"JOB_DATA","job_data":{"conns":[{}]}})").find("qp_child"),
              std::string::npos);
}

TEST(Json, KeepsRandomRecordsOfEveryKindInEveryForm) {
    Random random(1);
    for (int round = 0; round < 300; ++round) {
        for (const MessageKind &kind : kvt_str::message_kinds()) {
            if (kind.record == nullptr) {
                continue;
            }
            OwnedRecord record(*kind.record);
            kvt_test::fill_randomly(*kind.record, record.get(), random);
            const JsonForm form = {random() % 2 == 0, random() % 2 == 0};
            const std::string json = to_json(kind, record.get(), form).dump();
            const OwnedMessage made = from_json(parse_json(json));
            ASSERT_EQ(text_of(kind, record.get()), text_of(made.kind(), made.record())) << json;
        }
    }
}

// --- Streams of JSON -----------------------------------------------------------------------------

std::vector<std::string> values_of(const std::string &content) {
    const TemporaryFile file(content);
    InputFile input(file.name());
    JsonStream stream(input);
    std::vector<std::string> values;
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) {
            values.push_back(std::to_string(unit.first_line) + ": " +
                             std::string(unit.text, unit.length));
        });
    }
    return values;
}

using Values = std::vector<std::string>;

TEST(JsonStream, TakesValuesOnLinesOneAfterTheOtherAndInAList) {
    const Values values = {"1: {\"a\": [1, \"}\\\"\"]}", "2: {}", "2: {\"b\": {}}"};
    EXPECT_EQ(values_of("{\"a\": [1, \"}\\\"\"]}\n{}{\"b\": {}}\n"), values);
    EXPECT_EQ(values_of("[{\"a\": [1, \"}\\\"\"]},\n{} , {\"b\": {}}\n]\n"), values);
    EXPECT_EQ(values_of(""), Values());
    EXPECT_EQ(values_of(" [\n ]\n"), Values());
}

TEST(JsonStream, GoesOnAfterAValueThatIsBroken) {
    EXPECT_EQ(values_of("{\"a\": \"\n{\"b\": 1}\nx y\n{}"),
              (Values{"1: {\"a\": \"", "2: {\"b\": 1}", "3: x", "3: y", "4: {}"}));
}

TEST(JsonStream, TakesValuesWhoseNestedBracesStandWithoutIndentation) {
    EXPECT_EQ(values_of("{\n\"a\": [\n{\n}\n]\n}\n{}"),
              (Values{"1: {\n\"a\": [\n{\n}\n]\n}", "7: {}"}));
}

TEST(JsonStream, PassesOverAByteOrderMark) {
    EXPECT_EQ(values_of("\xEF\xBB\xBF[{}]"), (Values{"1: {}"}));
}

TEST(JsonStream, HasAListThatIsNotClosedAsAValueThatIsNone) {
    EXPECT_EQ(values_of("[{},\n{}"), (Values{"1: {}", "2: {}", "2: ["}));
    EXPECT_EQ(values_of("["), (Values{"1: ["}));
}

TEST(JsonStream, KeepsALargeValueWhole) {
    const std::string large = "{\"a\": \"" + std::string(5 << 20, 'x') + "\"}";
    EXPECT_EQ(values_of(large + "\n{}\n"), (Values{"1: " + large, "2: {}"}));
}

TEST(JsonStream, DividesManyValuesAlikeAcrossItsBlocks) {
    std::string lines;
    Values values;
    for (int i = 0; i < 200000; ++i) {
        lines += "{\"value\": 1}\n";
        values.push_back(std::to_string(i + 1) + ": {\"value\": 1}");
    }
    EXPECT_EQ(values_of(lines), values);
}

} // namespace
} // namespace kvt_tool
