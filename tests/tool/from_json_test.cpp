// Messages from JSON.
#include "json/from_json.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvt/messages/message_type.h"
#include "model/write_text.h"
#include "json/parse_json.h"

namespace kvt_tool {
namespace {

/// The column of what is wrong with a JSON text, and what it is; empty when it is a message.
std::string problem_of(const std::string &json) {
    try {
        from_json(parse_json(json));
        return "";
    } catch (const JsonProblem &problem) {
        return std::to_string(problem.at - json.data() + 1) + ": " + problem.what;
    }
}

/// What is wrong with a field of a kind's block, without its column.
std::string problem_of_field(const std::string &type, const std::string &block,
                             const std::string &field) {
    const std::string json = R"({"type":")" + type + R"(",")" + block + "\":{" + field + "}}";
    const std::string problem = problem_of(json);
    return problem.empty() ? "" : problem.substr(problem.find(": ") + 2);
}

std::string problem_of_end_job(const std::string &field) {
    return problem_of_field("END_JOB", "end_job", field);
}

std::string problem_of_job_error(const std::string &field) {
    return problem_of_field("JOB_ERROR", "job_error", field);
}

std::string problem_of_percentage(const std::string &value) {
    return problem_of_field("BEGIN_JOB", "begin_job", "\"quota_percentage\":" + value);
}

/// The record's lines in the text that is made of a JSON text.
std::string lines_of(const std::string &json) {
    const std::string text = text_of_json(json);
    const size_t begin = text.find('\n', text.find('\n', text.find('\n') + 1) + 1) + 1;
    return text.substr(begin, text.size() - begin - std::strlen("  }\n}\n\n"));
}

std::string lines_of_end_job(const std::string &fields) {
    return lines_of(R"({"type":"END_JOB","end_job":{)" + fields + "}}");
}

// --- Numbers -------------------------------------------------------------------------------------

TEST(FromJson, TakesEveryFormOfANumber) {
    for (const char *number : {"17", "\"17\"", "\"0x11\"", "\"0X0000000000000011\"", "17.0", "17e0",
                               "1700e-2", "1.7e1", "0.17E+2", "\"\\u0031\\u0037\""}) {
        EXPECT_EQ(lines_of_end_job(std::string("\"job_id\":") + number), "    job_id: 17\n")
            << number;
    }
    for (const char *number :
         {"18446744073709551615", "\"18446744073709551615\"", "18446744073709551615.0",
          "1844674407370955161.5e1", "\"0xffffffffffffffff\""}) {
        EXPECT_EQ(lines_of_end_job(std::string("\"job_id\":") + number),
                  "    job_id: 18446744073709551615\n")
            << number;
    }
    EXPECT_EQ(lines_of_end_job("\"job_id\":-0,\"reservation_id\":0e99999999999999999999"), "");
    EXPECT_EQ(lines_of_end_job("\"job_id\":1e19"), "    job_id: 10000000000000000000\n");
}

TEST(FromJson, SaysWhyANumberIsNone) {
    const std::string path = "end_job.job_id: ";
    const std::string strings = "; a string holds digits, or 0x and hexadecimal digits";
    const std::string bits = " does not fit into 64 bits; the greatest number is "
                             "18446744073709551615";
    EXPECT_EQ(problem_of_end_job("\"job_id\":-1"), path + "-1 is negative; the least number is 0");
    for (const char *fraction : {"1.5", "1e-1", "123e-99999999999999999999"}) {
        EXPECT_EQ(problem_of_end_job(std::string("\"job_id\":") + fraction),
                  path + fraction + " is not a whole number");
    }
    for (const char *large : {"18446744073709551616", "\"18446744073709551616\"", "1e20", "1e400",
                              "\"0x10000000000000000\"", "-1e20", "1e99999999999999999999"}) {
        EXPECT_EQ(problem_of_end_job(std::string("\"job_id\":") + large), path + large + bits);
    }
    for (const char *string :
         {"\"\"", "\"x\"", "\"1.5\"", "\"-1\"", "\"0x\"", "\" 1\"", "\"1 \"", "\"+1\""}) {
        EXPECT_EQ(problem_of_end_job(std::string("\"job_id\":") + string),
                  path + string + " is not a whole number" + strings);
    }
    EXPECT_EQ(problem_of_end_job("\"job_id\":true"), path + "true is not a number");
    EXPECT_EQ(problem_of_end_job("\"job_id\":[1]"), path + "a list is not a number");
    EXPECT_EQ(problem_of_end_job("\"job_id\":{}"), path + "an object is not a number");
    EXPECT_EQ(problem_of_job_error("\"tree_id\":65536"),
              "job_error.tree_id: 65536 does not fit into 16 bits; the greatest number is 65535");
    EXPECT_EQ(problem_of_job_error("\"tree_id\":65535"), "");
}

TEST(FromJson, TakesFloatsAsNumbersAndInStrings) {
    for (const char *number : {"12.5", "\"12.5\"", "125e-1", "\"1.25e1\"", "12.500000"}) {
        EXPECT_NE(lines_of(std::string(R"({"type":"BEGIN_JOB","begin_job":{"quota_percentage":)") +
                           number + "}}")
                      .find("    quota_percentage: 12.5\n"),
                  std::string::npos)
            << number;
    }
    for (const char *value : {"12", "\"12\"", "\"NaN\"", "\"-NaN\"", "\"Infinity\"",
                              "\"-Infinity\"", "1e-45", "-0.0", "0.1", "3.40282e38", "0e-999"}) {
        EXPECT_EQ(problem_of_percentage(value), "") << value;
    }
}

TEST(FromJson, SaysWhyAFloatIsNone) {
    const std::string path = "begin_job.quota_percentage: ";
    for (const char *large : {"3.5e38", "\"-1e39\"", "1e-46", "1e400", "-1e-400"}) {
        EXPECT_EQ(problem_of_percentage(large),
                  path + large + " does not fit into a float of 32 bits");
    }
    for (const char *string : {"\"\"", "\"x\"", "\"inf\"", "\"nan\"", "\"0x1p3\"", "\" 1\"",
                               "\"1.5x\"", "\"+1\"", "\"-\""}) {
        EXPECT_EQ(problem_of_percentage(string),
                  path + string +
                      " is not a number; a string holds one, or NaN, -NaN, Infinity or -Infinity");
    }
    EXPECT_EQ(problem_of_percentage("[]"), path + "a list is not a number");
}

TEST(FromJson, RefusesFloatsWithMoreDigitsThanAreWritten) {
    const std::string path = "begin_job.quota_percentage: ";
    const std::string remedy = "; six digits are kept, so round it";
    EXPECT_EQ(problem_of_percentage("12.3456789"),
              path + "12.3456789 would be written as 12.3457" + remedy);
    EXPECT_EQ(problem_of_percentage("16777217"),
              path + "16777217 would be written as 1.67772e+07" + remedy);
    EXPECT_EQ(problem_of_percentage("\"3.4028235e38\""),
              path + "\"3.4028235e38\" would be written as 3.40282e+38" + remedy);
}

// --- Texts ---------------------------------------------------------------------------------------

TEST(FromJson, RefusesWhatTheTextFormCannotHold) {
    for (const auto &[text, what] :
         {std::pair<const char *, const char *>{R"("a\"")", "a double quote"},
          {R"("a\n")", "a newline"},
          {R"("a{")", "a brace"},
          {R"("a}")", "a brace"},
          {R"("a\u0000")", "a NUL"},
          {R"({"hex":"6122"})", "a double quote"},
          {R"({"hex":"610a"})", "a newline"},
          {R"({"hex":"617B"})", "a brace"},
          {R"({"hex":"617d"})", "a brace"},
          {R"({"hex":"6100"})", "a NUL"}}) {
        EXPECT_EQ(problem_of_job_error(std::string("\"description\":") + text),
                  std::string("job_error.description: a text cannot hold ") + what +
                      ", which is its byte 2; replace it");
    }
}

TEST(FromJson, TakesEveryOtherByteOfAText) {
    static constexpr char digits[] = "0123456789abcdef";
    for (unsigned byte = 1; byte < 256; ++byte) {
        if (std::strchr("\"\n{}", static_cast<int>(byte)) != nullptr) {
            continue;
        }
        const std::string text(1, static_cast<char>(byte));
        EXPECT_NE(
            lines_of(std::string(R"({"type":"JOB_ERROR","job_error":{"description":{"hex":")") +
                     digits[byte >> 4] + digits[byte & 15] + "\"}}}")
                .find("    description: \"" + text + "\"\n"),
            std::string::npos)
            << byte;
    }
}

TEST(FromJson, SaysHowLongATextMayBe) {
    EXPECT_EQ(problem_of_job_error("\"description\":\"" + std::string(127, 'x') + "\""), "");
    EXPECT_EQ(problem_of_job_error("\"description\":\"" + std::string(128, 'x') + "\""),
              "job_error.description: a text of 128 bytes where 127 fit; shorten it");
    const auto hosts = [](size_t length) {
        return problem_of_field("BEGIN_JOB", "begin_job",
                                "\"hosts\":\"" + std::string(length, 'x') + "\"");
    };
    EXPECT_EQ(hosts(298), "");
    EXPECT_EQ(hosts(299), "begin_job.hosts: a text of 299 bytes where 298 fit; shorten it");
}

TEST(FromJson, SaysWhatIsNoText) {
    const std::string path = "job_error.description: ";
    const std::string forms = " is not a text: a string in double quotes, or its bytes as "
                              "{\"hex\": \"...\"}";
    EXPECT_EQ(problem_of_job_error("\"description\":5"), path + "5" + forms);
    for (const char *object : {"{}", R"({"hex":1})", R"({"hxe":"61"})", R"({"hex":"61","x":1})"}) {
        EXPECT_EQ(problem_of_job_error(std::string("\"description\":") + object),
                  path + "an object" + forms);
    }
    for (const char *digits : {"6", "616", "6x", "x6", "-1", "0x61"}) {
        EXPECT_EQ(problem_of_job_error(std::string("\"description\":{\"hex\":\"") + digits + "\"}"),
                  path + "\"" + digits +
                      "\" is not pairs of hexadecimal digits, two for each byte");
    }
}

// --- Lists and counts ----------------------------------------------------------------------------

TEST(FromJson, SetsCountsByTheirLists) {
    EXPECT_EQ(lines_of(R"({"type":"TOPOLOGY_INFO_REQUEST",
                           "topology_info_request":{"port_guids":[7,"8"]}})"),
              "    num_guids: 2\n    port_guids: 7\n    port_guids: 8\n");
}

TEST(FromJson, TakesOnlyCountsThatAgree) {
    const auto guids = [](const char *count) {
        return problem_of_field("TOPOLOGY_INFO_REQUEST", "topology_info_request",
                                std::string("\"num_guids\":") + count + ",\"port_guids\":[7]");
    };
    EXPECT_EQ(guids("1"), "");
    EXPECT_EQ(guids("2"), "topology_info_request.num_guids: 2 does not agree with \"port_guids\", "
                          "which has 1 element; leave it out");
    const auto hosts = [](const char *fields) {
        return problem_of_field("BEGIN_JOB", "begin_job", fields);
    };
    EXPECT_EQ(hosts(R"("hosts":"ab","hosts_len":3)"), "");
    EXPECT_EQ(hosts(R"("hosts_len":3)"), "begin_job.hosts_len: 3 does not agree with \"hosts\", "
                                         "which takes 0 bytes with its end; leave it out");
    EXPECT_EQ(
        problem_of_field("RELEASE_GROUPS", "release_groups", R"("num_groups":4,"groups":[{},{}])"),
        "release_groups.num_groups: 4 does not agree with \"groups\", which has 2 elements; "
        "leave it out");
}

TEST(FromJson, WritesALineForEachNumberOfAByteArray) {
    for (size_t count = 0; count <= 64; ++count) {
        std::string list;
        std::string lines;
        for (size_t i = 0; i < count; ++i) {
            list += (list.empty() ? "" : ",") + std::to_string(i * 3);
            lines += "      qp_child_idxs: " + std::to_string(i * 3) + "\n";
        }
        const std::string text = lines_of(
            R"({"type":"JOB_DATA","job_data":{"conns":[{"qp_child_idxs":[)" + list + "]}]}}");
        const size_t first = std::min(text.find("      qp_child_idxs"), text.find("      pr_sd"));
        EXPECT_EQ(text.substr(first, text.find("      pr_sd") - first), lines);
    }
}

TEST(FromJson, SaysWhatDoesNotFitIntoAList) {
    const auto child_list = [](const std::string &list) {
        return problem_of_field("JOB_DATA", "job_data",
                                "\"conns\":[{},{\"qp_child_idxs\":" + list + "}]");
    };
    std::string long_list = "[0";
    for (int i = 0; i < 64; ++i) {
        long_list += ",0";
    }
    EXPECT_EQ(child_list("[1,255]"), "job_data.conns[1].qp_child_idxs[1]: 255 ends such a list and "
                                     "cannot be in it; remove it");
    EXPECT_EQ(child_list(long_list + "]"),
              "job_data.conns[1].qp_child_idxs: 65 elements where 64 fit; remove some");
    EXPECT_EQ(child_list("7"), "job_data.conns[1].qp_child_idxs: 7 is not a list; brackets belong "
                               "around it");
    EXPECT_EQ(child_list("[null]"), "job_data.conns[1].qp_child_idxs[0]: null is not a number");
    EXPECT_EQ(problem_of_field("RELEASE_GROUPS", "release_groups", R"("groups":[{},{},{},{},{}])"),
              "release_groups.groups: 5 elements where 4 fit; remove some");
    EXPECT_EQ(problem_of_field("JOB_DATA", "job_data", R"("conns":[{},7])"),
              "job_data.conns[1]: 7 is not an object; braces belong around its fields");
}

// --- Objects -------------------------------------------------------------------------------------

TEST(FromJson, TakesNullForAFieldThatIsMissing) {
    EXPECT_EQ(lines_of_end_job(R"("job_id":null,"reservation_id":1)"), "    reservation_id: 1\n");
}

TEST(FromJson, SaysWhichFieldIsUnknown) {
    EXPECT_EQ(problem_of_end_job(R"("job_ids":1)"),
              "end_job: there is no field \"job_ids\"; did you mean \"job_id\"?");
    EXPECT_EQ(problem_of_end_job(R"("a\u0000\u001b":1)"),
              "end_job: there is no field \"a\\x00\\x1b\"; \"kvt describe\" lists the fields");
}

TEST(FromJson, SaysWhatIsNoMessage) {
    EXPECT_EQ(problem_of("5"), "1: 5 is not a message: an object with a \"type\" and the block of "
                               "its kind");
    EXPECT_EQ(problem_of("{}"),
              "1: this object has no \"type\", which tells the kind of a message");
    EXPECT_EQ(problem_of(R"({"type":"NONE"})").substr(0, 48),
              "9: type: \"NONE\" is not a kind of message; \"kvt d");
    EXPECT_EQ(problem_of(R"({"type":"END_JOBS"})"),
              "9: type: \"END_JOBS\" is not a kind of message; did you mean \"END_JOB\"?");
    EXPECT_EQ(problem_of(R"({"type":5})"),
              "9: type: 5 is not a kind of message; \"kvt describe\" lists them");
    EXPECT_EQ(problem_of(R"({"type":"END_JOB","job_data":{}})"),
              "19: a message of the kind END_JOB has no \"job_data\", only \"type\" and "
              "\"end_job\"");
    EXPECT_EQ(problem_of(R"({"end_job":[],"type":"END_JOB"})"),
              "12: end_job: a list is not an object; braces belong around its fields");
}

TEST(FromJson, NamesTheColumnOfTheValue) {
    EXPECT_EQ(problem_of(R"({"type":"JOB_DATA","job_data":{"conns":[{},{"tree_id": 70000}]}})"),
              "56: job_data.conns[1].tree_id: 70000 does not fit into 16 bits; the greatest number "
              "is 65535");
    EXPECT_EQ(problem_of(R"({"type":"END_JOB","end_job":{"job":1}})").substr(0, 4), "30: ");
}

TEST(FromJson, HasEmptyRecordsWhereManyAreMissing) {
    std::string list = R"({"type":"JOB_DATA","job_data":{"conns":[{})";
    for (int i = 0; i < 300000; ++i) {
        list += ",{}";
    }
    EXPECT_EQ(problem_of(list + "]}}"), "");
}

TEST(FromJson, RefusesATextWithFindings) {
    const std::string text = "msg {\n  type: END_JOB\n  end_job {\n    job: 5\n  }\n}\n";
    try {
        refuse_findings(text, text.data());
        ADD_FAILURE() << "nothing is refused";
    } catch (const JsonProblem &problem) {
        EXPECT_EQ(problem.at, text.data());
        EXPECT_EQ(problem.what.substr(0, 59),
                  "the text of this message would not be read as it stands: en");
    }
    refuse_findings("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n", nullptr);
}

} // namespace
} // namespace kvt_tool
