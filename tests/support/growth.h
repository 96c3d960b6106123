// Checks of what grows while it is read: arrays and runs of every size, and with failing
// allocations.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {

/// An array or run of a message.
template <typename Record> struct GrowingMember {
    int32_t kind;
    size_t earlier_requests;       ///< allocations before the first one of the array
    std::string (*text)(unsigned); ///< a message whose array has the elements 1 to that number
    std::vector<uint64_t> (*elements)(const Record &); ///< the elements read, by the count
};

/// 1 to `last` without the dropped ones.
inline std::vector<uint64_t> one_to(unsigned last, const std::vector<uint64_t> &dropped = {}) {
    std::vector<uint64_t> numbers;
    for (uint64_t number = 1; number <= last; ++number) {
        if (std::find(dropped.begin(), dropped.end(), number) == dropped.end()) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

/// There is room for 5 elements at first, and for twice as many whenever it is full.
template <typename Record> void expect_growth_by_doubling(const GrowingMember<Record> &member) {
    static constexpr struct {
        unsigned count;
        size_t requests;
    } sizes[] = {{0, 0}, {1, 1}, {4, 1}, {5, 1}, {6, 2}, {10, 2}, {11, 3}, {20, 3}, {21, 4}};

    for (const auto &size : sizes) {
        SCOPED_TRACE(size.count);
        MemoryWatch watch;
        {
            const ReadMessage<Record> read(member.kind, member.text(size.count));
            EXPECT_EQ(member.elements(*read), one_to(size.count));
            EXPECT_EQ(watch.requests(), member.earlier_requests + size.requests);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

/// An element that no room can be made for is dropped; what was read stays, and the next element
/// tries again.
template <typename Record> void expect_failed_growth_drops(const GrowingMember<Record> &member) {
    static constexpr unsigned count = 22;

    static const struct {
        size_t first;
        size_t failing;
        std::vector<uint64_t> dropped;
    } failures[] = {
        {0, 1, {1}},      {0, 3, {1, 2, 3}}, {1, 1, {6}},      {1, 2, {6, 7}}, {2, 1, {11}},
        {2, 2, {11, 12}}, {3, 1, {21}},      {3, 2, {21, 22}}, {4, 1, {}},
    };

    MemoryWatch watch;
    for (const auto &failure : failures) {
        SCOPED_TRACE(failure.first);
        SCOPED_TRACE(failure.failing);
        watch.fail(member.earlier_requests + failure.first, failure.failing);
        {
            const ReadMessage<Record> read(member.kind, member.text(count));
            EXPECT_EQ(watch.failed(), failure.dropped.size());
            EXPECT_EQ(member.elements(*read), one_to(count, failure.dropped));
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
    watch.fail_all_growth();
    {
        const ReadMessage<Record> read(member.kind, member.text(count));
        EXPECT_EQ(member.elements(*read), one_to(5));
    }
    EXPECT_EQ(watch.alive(), 0U);
}

/// Reads a text that needs `requests` allocations, and lets each of them but the record's own fail:
/// the message is read all the same, and all of it is released.
template <typename Record>
void expect_no_leak(int32_t kind, const std::string &text, size_t requests) {
    MemoryWatch watch;
    for (size_t failing = 1; failing <= requests; ++failing) {
        SCOPED_TRACE(failing);
        watch.fail(failing);
        {
            const ReadMessage<Record> read(kind, text);
            EXPECT_EQ(read.result(), 0);
            EXPECT_EQ(watch.failed(), failing < requests ? 1U : 0U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

} // namespace kvt_test
