// Work on several threads, with results in order, and with less memory than it takes.
#include "io/pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <string>

#include "temporary_file.h"

namespace {

using namespace kvt_tool;

/// So many messages of about a kilobyte.
std::string messages(size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += "msg {\n  type: END_JOB\n" + std::string(1000, ' ') + "\n}\n";
    }
    return text;
}

/// Counts units, and fails as it is told.
struct CountingJob {
    struct Result {
        size_t units = 0;
        uint64_t first_line = 0;
    };

    void work(const Unit &unit, Result &result) const {
        const size_t now = ++working;
        size_t before = most_working;
        while (before < now && !most_working.compare_exchange_weak(before, now)) {
        }
        const std::string_view text(unit.text, unit.length);
        has_nul_within = has_nul_within || text.find('\0') != text.npos;
        if (lacks_memory_always || (unit.first_line > 100 && lacks_memory_once.exchange(false))) {
            --working;
            throw std::bad_alloc();
        }
        result.first_line = result.units == 0 ? unit.first_line : result.first_line;
        ++result.units;
        --working;
    }

    void begin(const InputFile &) { whole = true; }

    void take(Result &&result) {
        units += result.units;
        is_in_order = is_in_order && result.first_line > last_line;
        last_line = result.first_line;
    }

    ExitStatus end(const std::string &, bool is_whole) {
        whole = is_whole;
        return all_well;
    }

    mutable std::atomic<bool> lacks_memory_once = false; ///< in the middle of a batch
    bool lacks_memory_always = false;
    mutable std::atomic<bool> has_nul_within = false;
    mutable std::atomic<size_t> working = 0;
    mutable std::atomic<size_t> most_working = 0;
    size_t units = 0;
    uint64_t last_line = 0;
    bool is_in_order = true;
    bool whole = false;
};

ExitStatus run(CountingJob &job, unsigned threads, const std::string &text) {
    const TemporaryFile file(text);
    const std::vector<std::string> inputs = {file.name()};
    Progress progress(inputs);
    return Pipeline(job, threads, progress).run(inputs);
}

TEST(Pipeline, GivesResultsInOrderAndHasNoMoreBatchesThanThreads) {
    for (const unsigned threads : {1U, 2U, 3U, 16U}) {
        CountingJob job;
        EXPECT_EQ(run(job, threads, messages(5000)), all_well);
        EXPECT_EQ(job.units, 5000);
        EXPECT_TRUE(job.is_in_order);
        EXPECT_LE(job.most_working, threads);
        EXPECT_TRUE(job.whole);
    }
}

TEST(Pipeline, WorksOnOneThreadWhereSeveralLackMemoryAndLosesNothing) {
    for (const unsigned threads : {1U, 4U}) {
        CountingJob job;
        job.lacks_memory_once = true;
        EXPECT_EQ(run(job, threads, messages(20000)), all_well);
        EXPECT_FALSE(job.lacks_memory_once);
        EXPECT_EQ(job.units, 20000);
        EXPECT_TRUE(job.is_in_order);
        EXPECT_TRUE(job.whole);
        EXPECT_FALSE(job.has_nul_within) << "the text is as it was";
    }
}

TEST(Pipeline, SaysThatMemoryIsLackingAndThatTheInputIsNotWhole) {
    for (const unsigned threads : {1U, 4U}) {
        CountingJob job;
        job.lacks_memory_always = true;
        testing::internal::CaptureStderr();
        EXPECT_EQ(run(job, threads, messages(3000)), could_not_work);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(": there is not enough memory\n"),
                  std::string::npos);
        EXPECT_EQ(job.units, 0);
        EXPECT_FALSE(job.whole);
    }
}

/// An allocation of the codec that fails, which the codec itself passes over.
struct FailingCodecJob : CountingJob {
    void work(const Unit &, Result &) const {
        constexpr size_t too_much = size_t{1} << 62;
        const volatile size_t size = too_much;
        void *volatile block = std::calloc(1, size); // the compiler must not leave it out
        std::free(block);
    }
};

TEST(Pipeline, NoticesAnAllocationThatTheCodecPassesOver) {
#ifdef KVT_SANITIZED
    GTEST_SKIP() << "a sanitizer ends the process where so much memory is asked for";
#endif
    FailingCodecJob job;
    const TemporaryFile file(messages(1));
    const std::vector<std::string> inputs = {file.name()};
    Progress progress(inputs);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Pipeline(job, 1, progress).run(inputs), could_not_work);
    EXPECT_NE(testing::internal::GetCapturedStderr().find(file.name() + ": there is not enough"),
              std::string::npos);
}

TEST(ThreadTeam, HasOneThreadAtLeast) {
    EXPECT_EQ(threads_with_room(0), 1);
    EXPECT_EQ(threads_with_room(1), 1);
    EXPECT_GE(threads_with_room(4), 1);
    EXPECT_LE(threads_with_room(4), 4);
}

} // namespace
