// Large texts that nobody would write on purpose: a text takes about as much time as texts of a
// part of its size that have as many characters together.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "message_kinds.h"
#include "support/exact_copy.h"
#include "support/time_growth.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

constexpr size_t megabyte = size_t{1} << 20;

/// A text is compared with so many texts of a part of its size. A reader that is quadratic takes so
/// many times as long for it, too.
constexpr size_t parts = 8;

/// Between that and 1, which is linear: caches and the heap may take their share.
constexpr double growth_limit = 4;

struct Shape {
    const char *name;
    std::string text;
};

std::string job_error(const std::string &lines) {
    return "msg {\n  type: JOB_ERROR\n  job_error {\n" + lines;
}

std::string begin_job(const std::string &lines) {
    return "msg {\n  type: BEGIN_JOB\n  begin_job {\n" + lines;
}

std::string resource_data(const std::string &lines) {
    return "msg {\n  type: RESOURCE_DATA\n  resource_message {\n" + lines;
}

/// Texts of about a size.
std::vector<Shape> shapes(size_t size) {
    const auto repeated = [size](const std::string &part) {
        std::string text;
        text.reserve(size + part.size());
        while (text.size() < size) {
            text += part;
        }
        return text;
    };
    return {
        {"keys without a value", job_error(repeated("    job_id:\n"))},
        {"keys whose value is far below", job_error("    job_id:" + repeated("\r\n"))},
        {"keys without a quote", job_error(repeated("    description: x\n"))},
        {"strings without a quote", begin_job(repeated("    hosts: x\n"))},
        {"one quote at the very end", job_error(repeated("    description: x\n") + "\"")},
        {"one quote that is never closed", job_error("    description: \"" + repeated("x\n"))},
        {"strings joined", begin_job(repeated("    hosts: \"node\"\n"))},
        {"blank lines", job_error(repeated(" \t\n"))},
        {"one line", job_error(repeated("x"))},
        {"one number", job_error("    job_id: " + repeated("1"))},
        {"one name", "msg {\n  type: " + repeated("N")},
        {"unknown lines", job_error(repeated("    x: 1\n"))},
        {"unknown blocks", job_error(repeated("    x {\n    }\n"))},
        {"nested blocks that are never closed", job_error(repeated("    x {\n"))},
        {"elements that are empty", resource_data(repeated("    links {\n    }\n"))},
        {"elements without an end", resource_data(repeated("    links {\n"))},
        {"runs that replace each other", resource_data(repeated("    links {\n    }\n    x: 1\n"))},
        {"count lines that lie",
         resource_data(repeated("    links {\n    }\n    x: 1\n    links_num: 4294967295\n"))},
        {"arrays that replace each other", begin_job(repeated("    port_guids: 1\n    x: 1\n"))},
        {"array lines that do not scan", begin_job(repeated("    port_guids: x\n"))},
        {"small messages", repeated("msg {\n  type: END_JOB\n  end_job {\n  }\n}\n")},
        {"messages without a line of their own", repeated("msg\ntype:END_JOB\nx\n}\n")},
        {"braces in one line", job_error(repeated("{}"))},
    };
}

/// Calls `read` with texts and their lengths.
template <typename Read> void expect_linear_time(Read read) {
    const std::vector<Shape> wholes = shapes(4 * megabyte);
    const std::vector<Shape> eighths = shapes(4 * megabyte / parts);
    for (size_t i = 0; i < wholes.size(); ++i) {
        const auto whole = exact_copy(wholes[i].text);
        const auto eighth = exact_copy(eighths[i].text);
        const auto take_parts = [&] {
            for (size_t part = 0; part < parts; ++part) {
                read(eighth.get(), eighths[i].text.size());
            }
        };
        const auto take_whole = [&] {
            read(whole.get(), wholes[i].text.size());
        };
        const LeastTimes least = least_times(growth_limit, take_parts, take_whole);
        EXPECT_LE(least.growth(), growth_limit) << wholes[i].name;
    }
}

TEST(HostileSizes, SingleMessagesAreReadInLinearTime) {
    expect_linear_time([](const char *text, size_t /*length*/) {
        void *record = nullptr;
        const char *name = kvt_str::skip_blanks(std::strstr(text, "type:") + 5);
        const kvt_str::MessageKind *kind = kvt_str::find_kind(name);
        if (kvt_msg_from_str(0, 0, text, &record) == 0) {
            kvt_msg_release(static_cast<int32_t>(kind->value), record);
        }
    });
}

TEST(HostileSizes, SequencesAreReadInLinearTime) {
    expect_linear_time([](const char *text, size_t length) {
        char **texts = nullptr;
        int32_t count = 0;
        if (kvt_msg_arr_from_str(text, static_cast<uint32_t>(length), &texts, nullptr, &count) ==
            0) {
            for (int32_t i = 0; i < count; ++i) {
                std::free(texts[i]);
            }
            std::free(texts);
        }
    });
}

} // namespace
} // namespace kvt_test
