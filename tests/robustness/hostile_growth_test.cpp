// Time and memory for texts that nobody would write on purpose: both grow with the text, and no
// faster. The texts are those whose instructions are counted, too (bench/instructions_hostile.cpp);
// here they are large, and it is the clock that tells.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "instructions_hostile.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "kvt/messages/message_type.h"
#include "support/time_growth.h"

namespace kvt_test {
namespace {

using kvt_bench::HostileText;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KVT_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) ||                         \
    __has_feature(memory_sanitizer)
#define KVT_TEST_SANITIZED 1
#endif
#endif
#ifndef KVT_TEST_SANITIZED
#define KVT_TEST_SANITIZED 0
#endif

/// Sanitizers have a heap of their own, whose time and memory say nothing of the codec's: with them
/// the texts are only read, and smaller ones do.
constexpr bool measures = KVT_TEST_SANITIZED == 0;

constexpr size_t megabyte = size_t{1} << 20;
constexpr size_t usual_size = measures ? 8 * megabyte : megabyte / 4;

/// A text is compared with so many texts of a part of its size: the characters are as many.
constexpr size_t parts = 8;

/// The time for a text is at most so many times that for its parts.
constexpr double growth_limit = 1.5;

/// The most memory that is there at once, in sizes of the text: of lines as they are written, and
/// of the densest that there are, whose elements take more than their lines. The latter are the
/// multiples of largest_request_test.cpp, and as bad as it gets.
constexpr double usual_memory = 8;
constexpr double densest_read_memory = 64;
constexpr double densest_split_memory = 256;

enum class Way { read, split };

void take(Way way, int32_t kind, const char *text, size_t length) {
    if (way == Way::read) {
        void *record = nullptr;
        if (kvt_msg_from_str(0, 0, text, &record) == 0) {
            kvt_msg_release(kind, record);
        }
        return;
    }
    char **texts = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text, static_cast<uint32_t>(length), &texts, nullptr, &count) == 0) {
        for (int32_t i = 0; i < count; ++i) {
            std::free(texts[i]);
        }
        std::free(texts);
    }
}

/// Kilobytes of this process that are in memory now (VmRSS), or have been at most (VmHWM).
long status_line(const char *name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name, 0) == 0) {
            return std::strtol(line.c_str() + std::strlen(name) + 1, nullptr, 10);
        }
    }
    return -1;
}

struct Measurement {
    double growth = 0;      ///< time for the text, in times for its parts
    double nanoseconds = 0; ///< for a character of the text
    double memory = 0;      ///< the most that was there while it was read, in sizes of the text
};

std::string text_of_size(const HostileText &hostile, size_t size) {
    return hostile.text(size / std::strlen(hostile.repeated));
}

/// Reads the text once for the memory, then it and its parts in turn for the time.
Measurement measure_here(Way way, int32_t kind, const std::string &whole,
                         const std::vector<std::string> &texts) {
    Measurement measurement;
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    const long before = status_line("VmRSS:");
    take(way, kind, whole.c_str(), whole.size());
    measurement.memory = 1024.0 * static_cast<double>(status_line("VmHWM:") - before) /
                         static_cast<double>(whole.size());

    // From now on memory stays in the heap, or new pages would be what takes the time.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    const auto take_parts = [&] {
        for (const std::string &text : texts) {
            take(way, kind, text.c_str(), text.size());
        }
    };
    const auto take_whole = [&] {
        take(way, kind, whole.c_str(), whole.size());
    };
    const LeastTimes least = least_times(growth_limit, take_parts, take_whole);
    measurement.growth = least.growth();
    measurement.nanoseconds = 1e9 * least.whole / static_cast<double>(whole.size());
    return measurement;
}

/// Measures in a process of its own, whose greatest size and whose ways of allocating are its own.
Measurement measure(Way way, const HostileText &hostile, size_t size) {
    const std::string whole = text_of_size(hostile, size);
    if (!measures) {
        take(way, hostile.kind, whole.c_str(), whole.size());
        return {};
    }
    const std::vector<std::string> texts(parts, text_of_size(hostile, size / parts));
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    malloc_trim(0);
    const pid_t child = fork();
    if (child == 0) {
        const Measurement measurement = measure_here(way, hostile.kind, whole, texts);
        const bool told =
            write(ends[1], &measurement, sizeof measurement) == ssize_t{sizeof measurement};
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    Measurement measurement;
    EXPECT_EQ(read(ends[0], &measurement, sizeof measurement), ssize_t{sizeof measurement})
        << hostile.name;
    close(ends[0]);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << hostile.name;
    return measurement;
}

void expect_linear(Way way, const HostileText &hostile, size_t size = usual_size,
                   double memory_limit = usual_memory) {
    const Measurement measured = measure(way, hostile, size);
    EXPECT_LE(measured.growth, growth_limit) << hostile.name;
    EXPECT_LE(measured.memory, memory_limit) << hostile.name;
    // KVT_TEST_FIGURES in the environment shows the figures.
    if (std::getenv("KVT_TEST_FIGURES") != nullptr) {
        std::printf("%-5s %-54s %6.2f ns/character, growth %4.2f, memory %6.2f\n",
                    way == Way::read ? "read" : "split", hostile.name, measured.nanoseconds,
                    measured.growth, measured.memory);
    }
}

TEST(ThousandsOfHostileLines, AreReadInTimeAndMemoryOfTheirNumber) {
    for (const HostileText &hostile : kvt_bench::hostile_texts()) {
        expect_linear(Way::read, hostile);
    }
}

TEST(ThousandsOfHostileLines, AreSplitInTimeAndMemoryOfTheirNumber) {
    for (const HostileText &hostile : kvt_bench::hostile_texts()) {
        expect_linear(Way::split, hostile);
    }
}

/// The lines of a block of a kind, without an end.
constexpr const char *job_error = "msg {\n  type: JOB_ERROR\n  job_error {\n";
constexpr const char *resources = "msg {\n  type: RESOURCE_DATA\n  resource_message {\n";

TEST(ThousandsOfThousands, OfCharactersInOneLineAreReadInTimeAndMemoryOfTheirNumber) {
    static constexpr HostileText lines[] = {
        {"50 MB of one unknown line", VEMRA_MSG_TYPE_JOB_ERROR, job_error, "x", ""},
        {"50 MB of one text", VEMRA_MSG_TYPE_JOB_ERROR,
         "msg {\n  type: JOB_ERROR\n  job_error {\n    description: \"", "x", "\"\n"},
        {"50 MB of one number", VEMRA_MSG_TYPE_BEGIN_JOB,
         "msg {\n  type: BEGIN_JOB\n  begin_job {\n    port_guids: ", "7", "\n"},
    };
    for (const HostileText &line : lines) {
        for (const Way way : {Way::read, Way::split}) {
            expect_linear(way, line, measures ? 50 * megabyte : megabyte);
        }
    }
}

TEST(ThousandsOfThousands, OfElementsAreReadInTimeAndMemoryOfTheirNumber) {
    static constexpr HostileText elements = {"a million empty elements",
                                             VEMRA_MSG_TYPE_RESOURCE_DATA, resources,
                                             "    links {\n    }\n", "  }\n}\n"};
    const size_t size = std::strlen(elements.repeated) * (measures ? 1'000'000 : 100'000);
    expect_linear(Way::read, elements, size);
    expect_linear(Way::split, elements, size);
}

TEST(ThousandsOfThousands, OfNestedBlocksAreReadInTimeAndMemoryOfTheirNumber) {
    static constexpr HostileText nested[] = {
        {"200,000 unknown blocks in each other", VEMRA_MSG_TYPE_JOB_ERROR, job_error, "x {\n", ""},
        {"200,000 elements in each other", VEMRA_MSG_TYPE_RESOURCE_DATA, resources, "links {\n",
         ""},
    };
    for (const HostileText &blocks : nested) {
        for (const Way way : {Way::read, Way::split}) {
            expect_linear(way, blocks, 200'000 * std::strlen(blocks.repeated));
        }
    }
}

// As much memory as a character can be made to take: the shortest element of the largest record,
// which is written with all its child indexes. Time is not the point.
TEST(ThousandsOfThousands, OfTheDensestElementsTakeTheMemoryThatIsPromised) {
    static constexpr HostileText elements = {"the densest elements", VEMRA_MSG_TYPE_JOB_DATA,
                                             "msg\ntype:JOB_DATA\nx\n", "conns\n}\n", ""};
    expect_linear(Way::read, elements, megabyte, densest_read_memory);
    expect_linear(Way::split, elements, megabyte / 2, densest_split_memory);
}

} // namespace
} // namespace kvt_test
