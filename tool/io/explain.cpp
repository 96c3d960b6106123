#include "io/explain.h"

#include <sstream>
#include <string_view>
#include <vector>

#include "io/findings.h"
#include "io/unit.h"

namespace kvt_tool {

namespace {

using namespace std::string_literals;

std::string message_of(const char *kind, const char *block, const std::string &lines) {
    return "msg {\n  type: "s + kind + "\n  " + block + " {\n" + lines + "  }\n}\n";
}

std::string begin_job(const std::string &lines) {
    return message_of("BEGIN_JOB", "begin_job", lines);
}

std::string job_error(const std::string &lines) {
    return message_of("JOB_ERROR", "job_error", lines);
}

std::string end_job() {
    return message_of("END_JOB", "end_job", "    job_id: 5\n");
}

std::string example_of_frame(kvt_finding_kind kind) {
    switch (kind) {
    case KVT_FINDING_NO_MESSAGE:
        return "job_id: 5\n";
    case KVT_FINDING_BYTE_ORDER_MARK:
        return "\xEF\xBB\xBF" + end_job();
    case KVT_FINDING_BEFORE_MESSAGE:
        return "jobs of this week\n" + end_job();
    case KVT_FINDING_OUTSIDE:
        return end_job() + "end of file\n" + end_job();
    case KVT_FINDING_NUL:
        return end_job() + "\0"s + end_job();
    case KVT_FINDING_CARRIAGE_RETURN:
        return "msg {\r\n" + end_job().substr(6);
    case KVT_FINDING_ENVELOPE:
        return "msgs {\n" + end_job().substr(6);
    case KVT_FINDING_NO_TYPE:
        return "msg {\n  end_job {\n    job_id: 5\n  }\n}\n";
    case KVT_FINDING_TYPE_BELOW:
        return "msg {\n  type:\n    END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
    case KVT_FINDING_UNKNOWN_KIND:
        return message_of("END_JOC", "end_job", "    job_id: 5\n");
    case KVT_FINDING_LONGER_KIND:
        return message_of("END_JOB_2", "end_job", "    job_id: 5\n");
    case KVT_FINDING_NO_RECORD:
        return "msg {\n  type: NONE\n}\n";
    case KVT_FINDING_BLOCK_NAME:
        return message_of("END_JOB", "begin_job", "    job_id: 5\n");
    case KVT_FINDING_NO_BLOCK:
        return "msg {\n  type: END_JOB\n  job_id: 5\n}\n";
    case KVT_FINDING_NOT_CLOSED:
        return begin_job("    quota {\n      max_osts: 5\n    uid: 3\n");
    case KVT_FINDING_EXTRA_BRACE:
        return begin_job("    job_id: 5\n    }\n    uid: 3\n");
    default:
        return {};
    }
}

std::string example_of_line(kvt_finding_kind kind) {
    switch (kind) {
    case KVT_FINDING_UNKNOWN_KEY:
        return begin_job("    jobid: 5\n");
    case KVT_FINDING_UNKNOWN_BLOCK:
        return begin_job("    quotum {\n      max_osts: 5\n    }\n");
    case KVT_FINDING_STRAY_LINE:
        return begin_job("    job 5 begins\n");
    case KVT_FINDING_COMMENT:
        return begin_job("    # of the night\n");
    case KVT_FINDING_INVISIBLE:
        return begin_job("    job_id: \xC2\xA0"
                         "5\n");
    case KVT_FINDING_LONGER_KEY:
        return begin_job("    job_ids: 5\n");
    case KVT_FINDING_ONE_LINE_BLOCK:
        return begin_job("    job_id: 5\n    quota { max_osts: 5 }\n");
    case KVT_FINDING_BESIDE_BRACE:
        return begin_job("    quota { max_osts: 5\n    }\n");
    case KVT_FINDING_NEEDLESS_BRACE:
        return begin_job("    quota { {\n      max_osts: 5\n    }\n");
    case KVT_FINDING_BRACE_IN_TEXT:
        return job_error("    job_id: 5\n    description: \"link } down\"\n");
    case KVT_FINDING_OPEN_BRACE_IN_TEXT:
        return job_error("    job_id: 5\n    description: \"link { down\"\n");
    case KVT_FINDING_BLOCK_FOR_VALUE:
        return begin_job("    job_id {\n    }\n");
    case KVT_FINDING_NO_BRACE:
        return begin_job("    quota\n    {\n      max_osts: 5\n    }\n");
    case KVT_FINDING_MISSING_BRACE:
        return begin_job("    quota\n      max_osts: 5\n    }\n");
    default:
        return {};
    }
}

std::string example_of_value(kvt_finding_kind kind) {
    switch (kind) {
    case KVT_FINDING_NO_COLON:
        return begin_job("    job_id = 5\n");
    case KVT_FINDING_NO_VALUE:
        return begin_job("    job_id:\n    uid: 3\n");
    case KVT_FINDING_NOT_A_NUMBER:
        return begin_job("    job_id: five\n");
    case KVT_FINDING_AFTER_NUMBER:
        return begin_job("    job_id: 5, uid: 3\n");
    case KVT_FINDING_HEXADECIMAL:
        return begin_job("    job_id: 0x10\n");
    case KVT_FINDING_GROUPED:
        return begin_job("    job_id: 1,000\n");
    case KVT_FINDING_FRACTION:
        return begin_job("    uid: 5.5\n");
    case KVT_FINDING_EXPONENT:
        return begin_job("    job_id: 1e6\n");
    case KVT_FINDING_UNIT:
        return begin_job("    num_rails: 5 rails\n");
    case KVT_FINDING_OUT_OF_RANGE:
        return begin_job("    num_rails: 300\n");
    case KVT_FINDING_ROUNDED:
        return begin_job("    quota_percentage: 12.34567\n");
    case KVT_FINDING_NO_QUOTES:
        return job_error("    description: link down\n");
    case KVT_FINDING_BEFORE_TEXT:
        return job_error("    description:\"link down\"\n");
    case KVT_FINDING_EMPTY_TEXT:
        return job_error("    description: \"\"\n");
    case KVT_FINDING_OPEN_TEXT:
        return job_error("    description: \"link\n    error: 5\n");
    case KVT_FINDING_AFTER_TEXT:
        return job_error("    description: \"the \"first\" link\"\n");
    case KVT_FINDING_LONG_TEXT:
        return message_of("TOPOLOGY_INFO_REPLY", "topology_info_list",
                          "    num_switches: 1\n    switches {\n      name: \"" +
                              std::string(70, 'x') + "\"\n    }\n");
    default:
        return {};
    }
}

std::string example_of_array(kvt_finding_kind kind) {
    switch (kind) {
    case KVT_FINDING_REPEATED_KEY:
        return begin_job("    job_id: 5\n    job_id: 6\n");
    case KVT_FINDING_REPEATED_VALUE:
        return begin_job("    job_id: 5\n    job_id: 5\n");
    case KVT_FINDING_REPEATED_BLOCK:
        return begin_job("    quota {\n      max_osts: 5\n    }\n"
                         "    quota {\n      max_qps: 3\n    }\n");
    case KVT_FINDING_REPEATED_ARRAY:
        return begin_job("    num_guids: 1\n    port_guids: 5\n    uid: 3\n    port_guids: 6\n");
    case KVT_FINDING_KEY_IN_ARRAY:
        return message_of("RESOURCE_DATA", "resource_message",
                          "    links {\n      port_num: 3\n    }\n    links_num: 1\n"
                          "    agg_nodes {\n      priority: 2\n    }\n");
    case KVT_FINDING_NO_COUNT:
        return begin_job("    port_guids: 5\n    port_guids: 6\n");
    case KVT_FINDING_WRONG_COUNT:
        return begin_job("    num_guids: 3\n    port_guids: 5\n    port_guids: 6\n");
    case KVT_FINDING_LATE_COUNT:
        return begin_job("    port_guids: 5\n    port_guids: 6\n    num_guids: 1\n");
    case KVT_FINDING_LONE_COUNT:
        return begin_job("    num_guids: 3\n");
    case KVT_FINDING_WRONG_LENGTH:
        return begin_job("    hosts_len: 9\n    hosts: \"node1\"\n");
    case KVT_FINDING_TOO_MANY: {
        std::string lines = "    num_groups: 4\n";
        for (int i = 0; i < 5; ++i) {
            lines += "    groups {\n    }\n";
        }
        return message_of("RELEASE_GROUPS", "release_groups", lines);
    }
    case KVT_FINDING_AFTER_END:
        return message_of("JOB_DATA", "job_data",
                          "    conns_num: 1\n    conns {\n      qp_child_idxs: 4\n"
                          "      qp_child_idxs: 255\n      qp_child_idxs: 5\n    }\n");
    case KVT_FINDING_END_MARK:
        return message_of("JOB_DATA", "job_data",
                          "    conns_num: 1\n    conns {\n      qp_child_idxs: 4\n"
                          "      qp_child_idxs: 255\n    }\n");
    default:
        return {};
    }
}

std::string indented(const std::string &lines) {
    std::istringstream stream(lines);
    std::string result;
    for (std::string line; std::getline(stream, line);) {
        result += "    " + line + "\n";
    }
    return result;
}

} // namespace

std::string example_of(kvt_finding_kind kind) {
    std::string example;
    for (const auto part :
         {example_of_frame, example_of_line, example_of_value, example_of_array}) {
        example += part(kind);
    }
    return example;
}

std::string explain(kvt_finding_kind kind) {
    const std::string example = example_of(kind);
    const std::string name = "job.kvt";
    std::vector<Finding> findings;
    check_unit(Unit{.input = name,
                    .text = example.c_str(),
                    .length = example.size(),
                    .first_line = 1,
                    .offset = 0,
                    .is_cut = false},
               FindingKinds().set(kind), FindingForm::marked, findings, {.from_beginning = true});
    std::string words = std::string(kvt_finding_name(kind)) + " (" +
                        kvt_severity_name(kvt_finding_severity(kind)) + ")\n\n" +
                        kvt_finding_meaning(kind) + "\n\n";
    if (!findings.empty()) {
        words += indented(findings.front().text) + "\n";
    }
    return words + "What to do: " + kvt_finding_remedy(kind) + "\n";
}

} // namespace kvt_tool
