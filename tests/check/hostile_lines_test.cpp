// The time of a check for texts that nobody would write on purpose grows with the text, and no
// faster, and no memory is taken. The texts are those that the reader is measured with, and some
// that are hostile to the check alone.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "instructions_hostile.h"
#include "kvt/kvt_check.h"
#include "support/memory_watch.h"
#include "support/time_growth.h"

namespace kvt_test {
namespace {

using kvt_bench::HostileText;

constexpr HostileText own_texts[] = {
    {"long unknown keys", 0, "msg {\n  type: JOB_DATA\n  job_data {\n",
     "    hosts_sd_infos_and_more: 1\n    peer_hosts_sd_info: 2\n", ""},
    {"keys that are taken for others", 0, "msg {\n  type: BEGIN_JOB\n  begin_job {\n",
     "    reproducible_modes: 1\n", ""},
    {"keys that come again", 0, "msg {\n  type: BEGIN_JOB\n  begin_job {\n", "    job_id: 1\n", ""},
    {"one line of a word", 0, "msg {\n  type: BEGIN_JOB\n  begin_job {\n    port_guids", "s", ""},
    {"blank lines after a key", 0, "msg {\n  type: END_JOB\n  end_job {\n    job_id:\n", "\r\n",
     ""},
    {"keys with carriage returns for values", 0, "msg {\n  type: END_JOB\n  end_job {\n",
     "    job_id:\r\n\r\n", ""},
    {"blocks that swallow messages", 0, "msg {\n  type: END_JOB\n  end_job {\n", "x {\nmsg {\n",
     ""},
    {"messages of no kind", 0, "", "msg {\n  type: X\n", ""},
    {"lines outside", 0, "msg {\n  type: END_JOB\n  end_job {\n  }\n}\n", "x\n", ""},
    {"blank lines with a carriage return outside", 0,
     "msg {\n  type: END_JOB\n  end_job {\n  }\n}\n", "\r\n", ""},
    {"blocks beyond their places", 0, "msg {\n  type: RELEASE_GROUPS\n  release_groups {\n",
     "    groups {\n    }\n", ""},
    {"counts without elements", 0, "msg {\n  type: JOB_DATA\n  job_data {\n",
     "    trees {\n      mgid {\n      }\n    }\n    trees_num: 7\n    uid: 1\n", ""},
    {"braces in texts", 0, "msg {\n  type: JOB_ERROR\n  job_error {\n",
     "    description: \"{}}}}{{{{\"\n", ""},
    {"one line of braces and quotes", 0,
     "msg {\n  type: JOB_ERROR\n  job_error {\n    description: ", "\"}{", "\n"},
    {"nothing", 0, "", "\n", ""},
};

int look_at(const kvt_finding *finding, void *sum) {
    *static_cast<size_t *>(sum) += finding->line_length + std::strlen(finding->message);
    return 0;
}

void check(const std::string &text) {
    size_t sum = 0;
    kvt_check(text.data(), text.size(), look_at, &sum);
}

std::string text_of_size(const HostileText &hostile, size_t size) {
    return hostile.text(size / std::strlen(hostile.repeated));
}

/// A text takes at most so many times as long as so many texts of a part of its size.
constexpr double growth_limit = 1.5;
constexpr size_t parts = 8;

double growth_of(const HostileText &hostile) {
    constexpr size_t size = size_t{1} << 19;
    const std::string whole = text_of_size(hostile, size);
    const std::string part = text_of_size(hostile, size / parts);
    const auto check_parts = [&] {
        for (size_t i = 0; i < parts; ++i) {
            check(part);
        }
    };
    return least_times(growth_limit, check_parts, [&] { check(whole); }).growth();
}

TEST(ThousandsOfCheckedLines, TakeTimeOfTheirNumberAndNoMemory) {
    std::vector<HostileText> texts(std::begin(own_texts), std::end(own_texts));
    for (const HostileText &hostile : kvt_bench::hostile_texts()) {
        texts.push_back(hostile);
    }
    const MemoryWatch watch;
    for (const HostileText &hostile : texts) {
        EXPECT_LE(growth_of(hostile), growth_limit) << hostile.name;
    }
    EXPECT_EQ(watch.requests(), 0U);
}

TEST(ThousandsOfCheckedLines, OfManyNestedBlocksNeedNoDeepStack) {
    std::string text = "msg {\n  type: JOB_DATA\n  job_data {\n";
    for (const char *nested : {"trees {\n", "x {\n", "conns {\n"}) {
        for (int i = 0; i < 200'000; ++i) {
            text += nested;
        }
    }
    EXPECT_NE(kvt_check(text.data(), text.size(), nullptr, nullptr), 0U);
}

} // namespace
} // namespace kvt_test
