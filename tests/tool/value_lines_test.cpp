// The lines of a message's text on which the values of its record stand.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "io/messages.h"
#include "kvt/messages/message_type.h"
#include "model/field_path.h"
#include "model/value_lines.h"
#include "model/write_text.h"
#include "samples/sample.h"

namespace kvt_tool {
namespace {

/// Of each path that leads to a value on a line: the last line, without its newline.
std::map<std::string, std::string> lines_of(const MessageKind &kind, const std::string &text) {
    std::map<std::string, std::string> lines;
    each_value_line(
        kind, text.c_str(), [](const Row &, std::string_view) { return true; },
        [&](const std::string &path, const char *line) {
            lines[path] = std::string(line, std::string_view(line).find('\n'));
        });
    return lines;
}

/// The lines that a record has in the writer's form, but for values that it leaves out.
std::map<std::string, std::string> written_lines(const MessageKind &kind, const void *record) {
    std::map<std::string, std::string> lines;
    std::get<FieldPath>(FieldPath::parse("**")).each(kind, record, [&](const FoundField &found) {
        const std::string value = found.value();
        const bool is_text = shape_of(*found.row) == Shape::text;
        const bool is_written = found.index.has_value() || found.row->has(kvt_str::always) ||
                                (is_text ? !value.empty() : value != "0");
        if (is_written) {
            lines[std::string(found.path)] =
                std::string(key_of(*found.row)) + ": " + (is_text ? '"' + value + '"' : value);
        }
    });
    return lines;
}

TEST(ValueLines, OfEverySampleAreThoseOfItsFields) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            const OwnedMessage sample = make_sample(kind, {1, 5, 0});
            std::string text;
            ASSERT_TRUE(add_text(kind, sample.record(), text));
            EXPECT_EQ(lines_of(kind, text), written_lines(kind, sample.record())) << kind.name;
        }
    }
}

/// Reads a message and compares: every value that is not 0 is on the line that is told.
void expect_lines(int32_t value, const std::string &text,
                  const std::map<std::string, std::string> &expected) {
    const MessageKind &kind = *kvt_str::find_kind(value);
    const std::map<std::string, std::string> lines = lines_of(kind, text);
    EXPECT_EQ(lines, expected);
    const std::string name = "a.kvt";
    read_messages(Unit{name, text.c_str(), text.size(), 1, 0, false}, [&](ReadMessage &message) {
        std::get<FieldPath>(FieldPath::parse("**"))
            .each(kind, message.record, [&](const FoundField &found) {
                const auto line = lines.find(std::string(found.path));
                const std::string shown = found.value();
                if (shown != "0" && !shown.empty()) {
                    ASSERT_NE(line, lines.end()) << found.path;
                    EXPECT_NE(line->second.find(shown), std::string::npos) << found.path;
                }
            });
    });
}

TEST(ValueLines, TheLastLineOfAFieldAndTheLastRunOfAListCount) {
    expect_lines(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST,
                 "msg {\ntype: TOPOLOGY_INFO_REQUEST\n\n topology_info_request {\n"
                 "port_guids: 1\nport_guids: 2\nport_guids: x\nport_guids: 3\nnum_guids: 3\n"
                 "port_guids: 7\nnum_guids: 2\nnum_guids: 1\n}\n}\n",
                 {{"num_guids", "num_guids: 1"},
                  {"port_guids[0]", "port_guids: 7"},
                  {"port_guids[1]", "port_guids: 2"},
                  {"port_guids[2]", "port_guids: 3"}});
}

TEST(ValueLines, UnknownLinesAndBlocksHaveNone) {
    expect_lines(VEMRA_MSG_TYPE_END_JOB,
                 "msg {\n  type: END_JOB\n  end_job {\n    future {\n      job_id: 4\n    }\n"
                 "    future: 3\n    job_id: 5 }\n  }\n}\n",
                 {});
    expect_lines(VEMRA_MSG_TYPE_END_JOB,
                 "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5 }\n    reservation_id: 6\n"
                 "  }\n}\nmsg {\n  type: END_JOB\n",
                 {{"job_id", "job_id: 5 }"}, {"reservation_id", "reservation_id: 6"}});
}

TEST(ValueLines, OfSlotsAreThoseThatThereIsRoomFor) {
    std::string text = "msg {\n  type: RELEASE_GROUPS\n  release_groups {\n    job_id: 1\n";
    for (int i = 0; i < 6; ++i) {
        text += "    groups {\n      group_id: " + std::to_string(10 + i) + "\n    }\n";
    }
    text += "    num_groups: 4\n  }\n}\n";
    expect_lines(VEMRA_MSG_TYPE_RELEASE_GROUPS, text,
                 {{"job_id", "job_id: 1"},
                  {"groups[0].group_id", "group_id: 10"},
                  {"groups[1].group_id", "group_id: 11"},
                  {"groups[2].group_id", "group_id: 12"},
                  {"groups[3].group_id", "group_id: 13"},
                  {"num_groups", "num_groups: 4"}});
}

TEST(ValueLines, OnlyWantedOnesAreTold) {
    const std::string text = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n"
                             "    reservation_id: 6\n  }\n}\n";
    std::vector<std::string> asked;
    std::vector<std::string> told;
    each_value_line(
        *kvt_str::find_kind(VEMRA_MSG_TYPE_END_JOB), text.c_str(),
        [&](const Row &row, std::string_view line) {
            asked.emplace_back(line);
            return key_of(row) == "reservation_id";
        },
        [&](const std::string &path, const char *) { told.push_back(path); });
    EXPECT_EQ(asked, (std::vector<std::string>{"job_id: 5\n", "reservation_id: 6\n"}));
    EXPECT_EQ(told, (std::vector<std::string>{"reservation_id"}));
}

} // namespace
} // namespace kvt_tool
