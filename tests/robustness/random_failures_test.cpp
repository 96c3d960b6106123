// Random texts that lie at several depths, read while random sets of allocations fail.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "message_kinds.h"
#include "support/exact_copy.h"
#include "support/failing_set.h"
#include "support/lies.h"
#include "support/memory_promise.h"
#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "support/rich_messages.h"
#include "support/rounds.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// A message of any content, or of nothing but what lies add to it.
std::string random_lies(const MessageKind &kind, Random &random) {
    OwnedRecord record(*kind.record);
    if (below(random, 4) == 0) {
        fill_randomly(*kind.record, record.get(), random);
    }
    std::string text = lie(text_of_record(value_of(kind), record.get()), *kind.record, random);
    if (below(random, 4) == 0) {
        text = mutate(text, *kind.record, random);
    }
    return text;
}

/// Reads texts by `check` with nothing failing, which tells how much can fail, and then with
/// random sets.
template <typename Check> void expect_kept(unsigned seed, Check check) {
    Random random(seed);
    for (const MessageKind *kind : kinds_with_record()) {
        for (size_t i = 0; i < rounds(); ++i) {
            const std::string text = check.text(*kind, random);
            std::string set;
            for (int failures = 0; failures < 4; ++failures) {
                const FailingSet failing(set);
                const MemoryVerdict verdict = check(text, failing);
                ASSERT_EQ(verdict.problem, "") << "failing: " << failing.in_words() << "\n" << text;
                set = random_failures(verdict.allocations + 1, random);
            }
        }
    }
}

struct CheckMessage {
    static std::string text(const MessageKind &kind, Random &random) {
        return random_lies(kind, random);
    }

    MemoryVerdict operator()(const std::string &text, const FailingSet &failing) const {
        return check_memory_of_message(exact_copy(text).get(), failing);
    }
};

struct CheckSequence {
    static std::string text(const MessageKind &kind, Random &random) {
        std::string text = random_lies(kind, random);
        for (size_t more = below(random, 3); more != 0; --more) {
            text += random_lies(kind, random);
        }
        return text;
    }

    MemoryVerdict operator()(const std::string &text, const FailingSet &failing) const {
        return check_memory_of_sequence(exact_copy(text).get(), static_cast<uint32_t>(text.size()),
                                        failing);
    }
};

TEST(FailingAllocations, RandomOnesOfTextsThatLieAtSeveralDepthsCorruptNothing) {
    expect_kept(1, CheckMessage{});
}

TEST(FailingAllocations, RandomOnesOfSequencesThatLieAtSeveralDepthsCorruptNothing) {
    expect_kept(2, CheckSequence{});
}

} // namespace
} // namespace kvt_test
