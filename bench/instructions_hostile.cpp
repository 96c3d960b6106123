#include "instructions_hostile.h"

#include "kvt/messages/message_type.h"

namespace kvt_bench {

namespace {

#define BEGIN_JOB VEMRA_MSG_TYPE_BEGIN_JOB, "msg {\n  type: BEGIN_JOB\n  begin_job {\n"
#define EVENTS VEMRA_MSG_TYPE_EVENTS_REPLY, "msg {\n  type: EVENTS_REPLY\n  event_list {\n"
#define JOB_DATA VEMRA_MSG_TYPE_JOB_DATA, "msg {\n  type: JOB_DATA\n  job_data {\n"
#define JOB_ERROR VEMRA_MSG_TYPE_JOB_ERROR, "msg {\n  type: JOB_ERROR\n  job_error {\n"
#define RESOURCES                                                                                  \
    VEMRA_MSG_TYPE_RESOURCE_DATA, "msg {\n  type: RESOURCE_DATA\n  resource_message {\n"
#define TOPOLOGY                                                                                   \
    VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, "msg {\n  type: TOPOLOGY_INFO_REPLY\n  list {\n"

// Every text but the whole messages ends within its blocks: that is hostile, too.
constexpr HostileText all[] = {
    // Values that are not where their keys are.
    {"keys without a value", JOB_ERROR, "    job_id:\n", ""},
    {"a value far below its key", JOB_ERROR "    job_id:", "\r\n", ""},
    {"keys without a quote", JOB_ERROR, "    description: x\n", ""},
    {"joined keys without a quote", BEGIN_JOB, "    hosts: x\n", ""},
    {"one quote at the very end", JOB_ERROR, "    description: x\n", "\""},
    {"one joined quote at the very end", BEGIN_JOB, "    hosts: x\n", "\""},
    {"a quote that is never closed", JOB_ERROR "    description: \"", "x\n", ""},
    {"a joined quote that is never closed", BEGIN_JOB "    hosts: \"", "x\n", ""},
    {"quotes that are never closed", BEGIN_JOB, "    hosts: \"x\n    pkey: 1\n", ""},

    // Braces where they are not expected.
    {"keys in lines that open a block", JOB_ERROR, "    job_id: 1 {\n", ""},
    {"numbers of an array in lines with braces", BEGIN_JOB, "    port_guids: 1 {}\n", ""},
    {"blocks that are never closed", JOB_ERROR, "    x {\n", ""},
    {"blocks within their own like", JOB_DATA, "    conns {\n", ""},
    {"blocks that close at once", RESOURCES, "    links { }\n", ""},
    {"braces in one line", JOB_ERROR, "{}", ""},
    {"braces that only open, in one line", JOB_ERROR, "{", ""},
    {"lines that only close", JOB_ERROR, "}\n", ""},

    // Lines that nobody knows.
    {"unknown lines", JOB_ERROR, "    x: 1\n", ""},
    {"unknown lines in an element", TOPOLOGY "    switches {\n", "      x: 1\n", ""},
    {"unknown blocks", JOB_ERROR, "    x {\n    }\n", ""},
    {"blank lines", JOB_ERROR, " \t\n", ""},
    {"lines with a carriage return", JOB_ERROR, "    job_id: 1\r\n", ""},
    {"lines in reverse order", JOB_ERROR, "    type: 1\n    error: 1\n    job_id: 1\n", ""},

    // Long lines.
    {"one line", JOB_ERROR, "x", ""},
    {"one line of blanks", JOB_ERROR, " ", ""},
    {"one number", JOB_ERROR "    job_id: ", "1", ""},
    {"one number of zeros", BEGIN_JOB "    port_guids: ", "0", ""},
    {"one share", BEGIN_JOB "    quota_percentage: ", "1", ""},
    {"one text", JOB_ERROR "    description: \"", "x", "\"\n"},
    {"one name of a kind", VEMRA_MSG_TYPE_JOB_ERROR, "msg {\n  type: JOB_ERROR", "N", "\n"},

    // Arrays and runs that grow, and that go.
    {"texts joined", BEGIN_JOB, "    hosts: \"node\"\n", ""},
    {"numbers without indentation", BEGIN_JOB, "port_guids: 1\n", ""},
    {"numbers that do not scan", BEGIN_JOB, "    port_guids: x\n", ""},
    // The blank keeps the first ones out of the canonical form, too, or they would be cheaper than
    // the
    // rest.
    {"bytes beyond their places", JOB_DATA "    conns {\n", "      qp_child_idxs: 1 \n", ""},
    {"arrays that replace each other", BEGIN_JOB, "    port_guids: 1\n    x: 1\n", ""},
    {"texts that replace each other", BEGIN_JOB, "    hosts: \"node\"\n    x: 1\n", ""},
    {"elements that are empty", RESOURCES, "    links {\n    }\n", ""},
    {"elements without an end", RESOURCES, "    links {\n", ""},
    {"runs that replace each other", RESOURCES, "    links {\n    }\n    x: 1\n", ""},
    {"runs that own memory and replace each other", EVENTS,
     "    vemra_events {\n      str_entry_list {\n        entry_name: \"a\"\n      }\n    }\n    "
     "x: 1\n",
     ""},

    // Counts that lie.
    {"counts of runs that lie", RESOURCES,
     "    links {\n    }\n    x: 1\n    links_num: 4294967295\n", ""},
    {"counts in elements that lie, until all are replaced", EVENTS,
     "    vemra_events {\n      str_entry_list {\n        entry_name: \"a\"\n      }\n      x: 1\n"
     "      num_str_entry: 99\n    }\n",
     "    x: 1\n    vemra_events {\n    }\n"},
    {"counts in elements that lie, replaced one by one", EVENTS,
     "    vemra_events {\n      str_entry_list {\n        entry_name: \"a\"\n      }\n      x: 1\n"
     "      num_str_entry: 99\n    }\n    x: 1\n",
     "    vemra_events {\n    }\n"},

    // Messages after each other.
    {"small messages", VEMRA_MSG_TYPE_END_JOB, "", "msg {\n  type: END_JOB\n  end_job {\n  }\n}\n",
     ""},
    {"messages without a line of their own", VEMRA_MSG_TYPE_END_JOB, "",
     "msg\ntype:END_JOB\nx\n}\n", ""},
    {"messages that are never closed", VEMRA_MSG_TYPE_END_JOB, "",
     "msg {\n  type: END_JOB\n  end_job {\n", ""},
};

} // namespace

std::string HostileText::text(size_t repetitions) const {
    std::string whole = head;
    for (size_t i = 0; i < repetitions; ++i) {
        whole += repeated;
    }
    return whole + tail;
}

std::span<const HostileText> hostile_texts() {
    return all;
}

} // namespace kvt_bench
