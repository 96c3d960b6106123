// How much memory a text can make the codec ask for at once: a small multiple of its own length,
// whatever it says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/element_size.h"
#include "instructions_hostile.h"
#include "kvt/kvt_str.h"
#include "support/exact_copy.h"
#include "support/memory_watch.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "support/rich_messages.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// Bytes that a reader of one message asks for at once, for each character of the text. An array
/// has room for at most twice its elements, and each element has a line of its own: the key, and
/// two characters at least to end the block ("}" and a newline) or to hold a number (":" and a
/// digit), and a newline. The worst are the `conns` of JOB_DATA: 8 characters make one of 240
/// bytes or so. A joined text takes five times its first line at most, or twice its lines.
constexpr size_t read_multiple = 64;

/// The same for a reader of sequences. It also writes the messages, and asks for the room of one at
/// a time: those 8 characters are written as a block with 64 child indexes and two paths.
constexpr size_t sequence_multiple = 256;

/// What may be asked for in any case: a record, the first five elements of an array, the first
/// places for messages or for counts that lie.
constexpr size_t always = 2048;

struct Requests {
    size_t reading;
    size_t splitting;
};

/// The largest requests for a text. What was read is freed without a look at its counts, which may
/// lie.
Requests largest_requests(const std::string &text) {
    const auto copy = exact_copy(text);
    Requests requests;
    {
        MemoryWatch watch;
        void *record = nullptr;
        kvt_msg_from_str(0, 0, copy.get(), &record);
        requests.reading = watch.largest();
        watch.free_alive();
    }
    MemoryWatch watch;
    char **texts = nullptr;
    kvt_msg_arr_from_str(copy.get(), static_cast<uint32_t>(text.size()), &texts, nullptr, nullptr);
    requests.splitting = watch.largest();
    watch.free_alive();
    return requests;
}

void expect_bounded(const std::string &text, const std::string &name) {
    const Requests requests = largest_requests(text);
    EXPECT_LE(requests.reading, std::max(always, read_multiple * text.size())) << name;
    EXPECT_LE(requests.splitting, std::max(always, sequence_multiple * text.size())) << name;
}

// Else the constants above say nothing of the records of today.
TEST(LargestRequest, TheMultipleHoldsForEveryArrayOfEveryTable) {
    const auto look = [](const auto &self, const Record &table) -> void {
        EXPECT_LE(table.size, always) << table.name;
        for (const Row &row : table.rows) {
            if (row.counts_elements()) {
                EXPECT_LE(5 * element_size(row), always) << table.name << " " << row.label.text;
                EXPECT_LE(2 * element_size(row), read_multiple * (row.key_length + 3U))
                    << table.name << " " << row.label.text;
            }
            if (row.element != nullptr) {
                self(self, *row.element);
            }
        }
    };
    for (const MessageKind *kind : kinds_with_record()) {
        look(look, *kind->record);
    }
}

/// Calls `see` with messages in which an array or run has `count` elements in as few characters as
/// there can be, for each of them in a table.
template <typename See>
void each_dense_text(const Record &table, const std::string &opening, size_t count, See see) {
    for (const Row &row : table.rows) {
        const std::string key(row.label.text, row.key_length);
        if (row.counts_elements()) {
            std::string text = opening;
            for (size_t i = 0; i < count; ++i) {
                text += key + (row.is_array() ? ":1\n" : "\n}\n");
            }
            see(text, key);
        }
        if (row.element != nullptr) {
            each_dense_text(*row.element, opening + key + "\n", count, see);
        }
    }
}

TEST(LargestRequest, TextsWithAsManyElementsAsTheyCanHoldStayWithinTheMultiple) {
    double densest_reading = 0;
    double densest_splitting = 0;
    for (const MessageKind *kind : kinds_with_record()) {
        // One element more than there was room for, so that room has just doubled.
        const std::string opening = std::string("msg\ntype:") + kind->name + "\nx\n";
        each_dense_text(
            *kind->record, opening, 1281, [&](const std::string &text, const auto &key) {
                expect_bounded(text, key);
                const Requests requests = largest_requests(text);
                const auto size = static_cast<double>(text.size());
                densest_reading =
                    std::max(densest_reading, static_cast<double>(requests.reading) / size);
                densest_splitting =
                    std::max(densest_splitting, static_cast<double>(requests.splitting) / size);
            });
    }
    // The texts are as bad as the multiples say, or these could be smaller.
    EXPECT_GT(densest_reading, 0.75 * read_multiple);
    EXPECT_GT(densest_splitting, 0.75 * sequence_multiple);
    RecordProperty("reading", std::to_string(densest_reading));
    RecordProperty("splitting", std::to_string(densest_splitting));
}

TEST(LargestRequest, HostileTextsStayWithinTheMultiple) {
    for (const kvt_bench::HostileText &hostile : kvt_bench::hostile_texts()) {
        expect_bounded(hostile.text(3000), hostile.name);
    }
}

TEST(LargestRequest, CountLinesDoNotMatter) {
    for (const char *count : {"99", "65535", "4294967295", "18446744073709551615", "-1"}) {
        const std::string value = std::string(": ") + count + "\n";
        for (const MessageKind *kind : kinds_with_record()) {
            std::string text = std::string("msg {\n  type: ") + kind->name + "\n  block {\n";
            for (const Row &row : kind->record->rows) {
                text += std::string(row.label.text, row.key_length) + value;
            }
            EXPECT_LE(largest_requests(text).reading, always) << text;
        }
    }
}

// What the codec wrote takes far less: all lines are whole there.
TEST(LargestRequest, IsAFewTimesTheTextForTextsThatTheCodecWrites) {
    for (const MessageKind *kind : kinds_with_record()) {
        for (const unsigned elements : {0U, 1U, 2U, 6U, 21U}) {
            const std::string text = rich_text(*kind, elements);
            const Requests requests = largest_requests(text);
            EXPECT_LE(requests.reading, std::max<size_t>(always, 4 * text.size())) << text;
            EXPECT_LE(requests.splitting, std::max<size_t>(always, 4 * text.size())) << text;
        }
    }
}

TEST(LargestRequest, RandomMutationsStayWithinTheMultiple) {
    Random random(14);
    for (const MessageKind *kind : kinds_with_record()) {
        for (unsigned round = 0; round < 400; ++round) {
            std::string text = rich_text(*kind, static_cast<unsigned>(below(random, 4)));
            for (uint64_t changes = 1 + below(random, 20); changes != 0; --changes) {
                text = mutate(text, *kind->record, random);
            }
            expect_bounded(text, text);
        }
    }
}

} // namespace
} // namespace kvt_test
