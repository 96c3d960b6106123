// The codec against the literal form of the same format: texts, records and every log line.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "engine/release.h"
#include "support/codecs.h"
#include "support/exact_copy.h"
#include "support/literal_codec.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "support/rounds.h"
#include "support/tables.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// What a reader makes of a text.
struct Reading {
    void *record;
    ptrdiff_t stops_at;
    std::vector<LogLine> log;
};

/// How a text is read.
struct Way {
    bool literally;
    Counts counts;
    bool traced; ///< then no line is read in canonical form
};

Reading read(const Record &table, const char *text, const Way &way) {
    LogCapture capture(way.traced ? 6 : 0);
    Reading reading{std::calloc(1, table.size), 0, {}};
    const char *after = nullptr;
    if (way.literally) {
        after = literal_read(table, text, reading.record, way.counts);
    } else {
        Input input{Text(text), way.counts};
        after = codec_of(table).unpack(input, after_newline(text), reading.record, 1);
        after = skip_blanks(after);
    }
    reading.stops_at = after - text;
    reading.log = capture.take();
    return reading;
}

/// The members that can be compared whatever the counts say: all but what hangs from pointers.
std::string shallow_difference(const Record &table, const void *a, const void *b) {
    for (const Row &row : table.rows) {
        const char *x = static_cast<const char *>(a) + row.offset;
        const char *y = static_cast<const char *>(b) + row.offset;
        bool same = true;
        if (row.kind == RowKind::block || row.kind == RowKind::slots) {
            for (unsigned i = 0; i < row.capacity; ++i) {
                const size_t offset = size_t{i} * row.element->size;
                same &= shallow_difference(*row.element, x + offset, y + offset).empty();
            }
        } else if (row.kind == RowKind::run || row.is_array() || row.kind == RowKind::joined_text) {
            same = (*reinterpret_cast<char *const *>(x) == nullptr) ==
                   (*reinterpret_cast<char *const *>(y) == nullptr);
        } else {
            same = std::memcmp(x, y, row.size) == 0;
        }
        if (!same) {
            return {row.label.text, row.key_length};
        }
    }
    return {};
}

/// Reads a text literally and by the codec, with the allocations from `first_failure` on failing,
/// `failures` of them, and expects the same record, position and log. False when it differs.
bool expect_same_reading(const Record &table, const std::string &text, size_t first_failure,
                         size_t failures) {
    const auto copy = exact_copy(text);
    std::string difference;
    constexpr std::pair<Counts, bool> ways[] = {{Counts::as_read, true},
                                                {Counts::as_read, false},
                                                {Counts::agree, true},
                                                {Counts::agree, false}};
    for (const auto &[counts, traced] : ways) {
        MemoryWatch watch;
        watch.fail(first_failure + 1, failures); // number 0 is the record
        const Reading codec = read(table, copy.get(), {false, counts, traced});
        watch.fail(first_failure + 1, failures);
        const Reading literal = read(table, copy.get(), {true, counts, traced});
        watch.fail_nothing();

        EXPECT_EQ(codec.stops_at, literal.stops_at);
        EXPECT_EQ(codec.log, literal.log);
        if (counts == Counts::as_read) {
            difference = shallow_difference(table, codec.record, literal.record);
            watch.free_alive(); // the counts may not tell what there is to release
        } else {
            difference = first_difference(table, codec.record, literal.record);
            // Nothing is lost when the records are released by their counts.
            for (void *record : {codec.record, literal.record}) {
                release_members(table, record);
                std::free(record);
            }
            EXPECT_EQ(watch.alive(), 0U);
        }
        EXPECT_EQ(difference, "");
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << table.name << ", counts "
                          << (counts == Counts::agree ? "agree" : "as read")
                          << (traced ? ", traced" : ", untraced") << ", failing " << first_failure
                          << "+" << failures << ":\n"
                          << text;
            return false;
        }
    }
    return true;
}

std::string random_text(const Record &table, Random &random) {
    OwnedRecord record(table);
    fill_randomly(table, record.get(), random);
    return literal_write(table, record.get(), "some_block", 1);
}

TEST(AgainstTheLiteralForm, RandomRecordsAreWrittenAndMeasuredAlike) {
    Random random(1);
    for (const Record *table : all_tables()) {
        for (size_t i = 0; i < rounds(); ++i) {
            OwnedRecord record(*table);
            fill_randomly(*table, record.get(), random);
            for (const unsigned level : {1U, 2U, 3U}) {
                ASSERT_EQ(write_block(*table, record.get(), level),
                          literal_write(*table, record.get(), "some_block", level))
                    << table->name;
            }
        }
    }
}

TEST(AgainstTheLiteralForm, RandomRecordsSurviveWritingAndReading) {
    Random random(2);
    for (const Record *table : all_tables()) {
        for (size_t i = 0; i < rounds(); ++i) {
            OwnedRecord record(*table);
            fill_randomly(*table, record.get(), random);
            const auto text = exact_copy(literal_write(*table, record.get(), "some_block", 1));
            OwnedRecord again(*table);
            Input input{Text(text.get()), Counts::as_read};
            const char *after =
                codec_of(*table).unpack(input, after_newline(text.get()), again.get(), 1);
            ASSERT_EQ(*after, '\0');
            ASSERT_EQ(first_difference(*table, record.get(), again.get()), "")
                << table->name << "\n"
                << text.get();
        }
    }
}

TEST(AgainstTheLiteralForm, RandomTextsAreReadAlike) {
    Random random(3);
    for (const Record *table : all_tables()) {
        for (size_t i = 0; i < rounds(); ++i) {
            if (!expect_same_reading(*table, random_text(*table, random), 0, 0)) {
                return;
            }
        }
    }
}

TEST(AgainstTheLiteralForm, RandomMutationsOfTextsAreReadAlike) {
    Random random(4);
    for (const Record *table : all_tables()) {
        for (size_t i = 0; i < rounds(); ++i) {
            std::string text = random_text(*table, random);
            for (uint64_t changes = 1 + below(random, 8); changes != 0; --changes) {
                text = mutate(text, *table, random);
                if (!expect_same_reading(*table, text, 0, 0)) {
                    return;
                }
            }
        }
    }
}

TEST(AgainstTheLiteralForm, RandomTextsCutAtEveryCharacterAreReadAlike) {
    Random random(6);
    for (const Record *table : all_tables()) {
        std::string text;
        do {
            text = random_text(*table, random);
        } while (text.size() > 3000);
        for (size_t length = 0; length < text.size(); ++length) {
            if (!expect_same_reading(*table, text.substr(0, length), 0, 0)) {
                return;
            }
        }
    }
}

TEST(AgainstTheLiteralForm, RandomTextsAreReadAlikeWhenAllocationsFail) {
    Random random(5);
    for (const Record *table : all_tables()) {
        for (size_t i = 0; i < rounds() / 3; ++i) {
            std::string text = random_text(*table, random);
            text = mutate(text, *table, random);
            if (!expect_same_reading(*table, text, below(random, 12), 1 + below(random, 3)) ||
                !expect_same_reading(*table, text, 0, SIZE_MAX / 2)) {
                return;
            }
        }
    }
}

} // namespace
} // namespace kvt_test
