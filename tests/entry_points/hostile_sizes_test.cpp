// Large texts that nobody would write on purpose. Each is some megabytes: a reader whose time is
// not linear in the text's length takes minutes for it, a linear one a fraction of a second.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "message_kinds.h"
#include "support/exact_copy.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

constexpr size_t size = size_t{4} << 20;

std::string repeated(const std::string &part) {
    std::string text;
    text.reserve(size + part.size());
    while (text.size() < size) {
        text += part;
    }
    return text;
}

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

std::vector<Shape> shapes() {
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

template <typename Read> void expect_linear_time(const Shape &shape, Read read) {
    const auto copy = exact_copy(shape.text);
    const auto start = std::chrono::steady_clock::now();
    read(copy.get());
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    EXPECT_LT(seconds.count(), 10.0) << shape.name;
}

TEST(HostileSizes, SingleMessagesAreReadInLinearTime) {
    for (const Shape &shape : shapes()) {
        expect_linear_time(shape, [](const char *text) {
            void *record = nullptr;
            const char *name = kvt_str::skip_blanks(std::strstr(text, "type:") + 5);
            const kvt_str::MessageKind *kind = kvt_str::find_kind(name);
            if (kvt_msg_from_str(0, 0, text, &record) == 0) {
                kvt_msg_release(static_cast<int32_t>(kind->value), record);
            }
        });
    }
}

TEST(HostileSizes, SequencesAreReadInLinearTime) {
    for (const Shape &shape : shapes()) {
        expect_linear_time(shape, [&](const char *text) {
            char **texts = nullptr;
            int32_t count = 0;
            if (kvt_msg_arr_from_str(text, static_cast<uint32_t>(shape.text.size()), &texts,
                                     nullptr, &count) == 0) {
                for (int32_t i = 0; i < count; ++i) {
                    std::free(texts[i]);
                }
                std::free(texts);
            }
        });
    }
}

} // namespace
} // namespace kvt_test
