// Arrays of numbers and runs of blocks on the heap: how they grow, what is dropped, and what their
// counts say. It holds for every one of them.
#include <gtest/gtest.h>

#include "support/block_read.h"
#include "support/every_row.h"
#include "support/memory_watch.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

using Numbers = std::vector<uint64_t>;

size_t size_of_element(const Place &place) {
    return place.row->kind == RowKind::array16   ? 2
           : place.row->kind == RowKind::array32 ? 4
           : place.row->kind == RowKind::array64 ? 8
                                                 : place.row->element->size;
}

// --- Growth --------------------------------------------------------------------------------------

TEST(EveryArray, HasRoomForFiveElementsAndForTwiceAsManyWheneverItIsFull) {
    static constexpr struct {
        uint64_t count;
        size_t requests;
        size_t room;
    } sizes[] = {{0, 0, 0},   {1, 1, 5},   {4, 1, 5},   {5, 1, 5},   {6, 2, 10},
                 {10, 2, 10}, {11, 3, 20}, {20, 3, 20}, {21, 4, 40}, {41, 5, 80}};

    for (const Place &place : every_array_or_run()) {
        for (const auto &[count, requests, room] : sizes) {
            for (const Form form : every_form) {
                const MemoryWatch watch;
                {
                    const BlockRead read(place, place.closed(place.elements(count)), form);
                    ASSERT_EQ(read.elements(place), one_to(count)) << place.name();
                    ASSERT_EQ(read.pointer(place) != nullptr, count != 0);
                    ASSERT_EQ(read.rest(), "");
                    ASSERT_EQ(watch.requests(), requests) << place.name() << " " << count;
                    ASSERT_EQ(watch.largest(), room * size_of_element(place));
                }
                ASSERT_EQ(watch.alive(), 0U);
            }
        }
    }
}

TEST(EveryArray, DropsTheElementsWhoseGrowthFailsAndTriesAgainWithTheNext) {
    static const struct {
        size_t first;
        size_t failing;
        Numbers dropped;
    } failures[] = {
        {0, 1, {1}},      {0, 3, {1, 2, 3}}, {1, 1, {6}},      {1, 2, {6, 7}}, {2, 1, {11}},
        {2, 2, {11, 12}}, {3, 1, {21}},      {3, 2, {21, 22}}, {4, 1, {}},
    };

    MemoryWatch watch;
    for (const Place &place : every_array_or_run()) {
        for (const auto &[first, failing, dropped] : failures) {
            for (const Form form : every_form) {
                watch.fail(first, failing);
                const BlockRead read(place, place.closed(place.elements(22)), form);
                ASSERT_EQ(watch.failed(), dropped.size());
                ASSERT_EQ(read.elements(place), one_to(22, dropped)) << place.name();
                ASSERT_EQ(read.rest(), "");
            }
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(EveryArray, KeepsFiveElementsWhenNothingGrowsAndNoneWithoutAnyMemory) {
    MemoryWatch watch;
    for (const Place &place : every_array_or_run()) {
        for (const Form form : every_form) {
            watch.fail_all_growth();
            const BlockRead five(place, place.closed(place.elements(12)), form);
            ASSERT_EQ(five.elements(place), one_to(5)) << place.name();
            watch.fail(0, 12);
            const BlockRead none(place, place.closed(place.count().says(7) + place.elements(12)),
                                 form);
            ASSERT_EQ(none.count(place), 0U) << place.name();
            ASSERT_EQ(none.pointer(place), nullptr);
            watch.fail_nothing();
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(EveryArray, LosesNothingElseWhicheverAllocationFails) {
    for (const Block &block : every_block()) {
        for (const Form form : every_form) {
            const std::string text = block.closed(full_lines(block, 7));
            bool failed = true;
            for (size_t first = 0; failed; ++first) {
                MemoryWatch watch;
                watch.fail(first);
                {
                    const BlockRead read(block, text, form);
                    ASSERT_EQ(read.rest(), "") << block.name();
                    failed = watch.failed() != 0;
                }
                ASSERT_EQ(watch.alive(), 0U) << block.name() << " " << first;
            }
        }
    }
}

// --- Counts --------------------------------------------------------------------------------------

TEST(EveryArray, TakesItsNumberOfElementsOverACountBefore) {
    for (const Place &place : every_array_or_run()) {
        for (const char *count : {"0", "1", "3", "99", "4294967295", "x"}) {
            for (const Form form : every_form) {
                const BlockRead read(
                    place, place.closed(place.count().says(count) + place.elements(3)), form);
                ASSERT_EQ(read.elements(place), one_to(3)) << place.name();
                ASSERT_TRUE(read.is_zero_beside(place)) << place.name();
            }
        }
    }
}

TEST(EveryArray, KeepsACountAfterAnotherLineAndOneWithoutElements) {
    for (const Place &place : every_array_or_run()) {
        for (const uint64_t count : {0U, 1U, 2U, 9U}) {
            for (const Form form : every_form) {
                BlockRead later(
                    place,
                    place.closed(place.elements(2) + unknown_line + place.count().says(count)),
                    form);
                ASSERT_EQ(later.count(place), count) << place.name();
                later.set_count(place, 2);
                ASSERT_EQ(later.elements(place), one_to(2)) << place.name();
                const BlockRead alone(place, place.closed(place.count().says(count)), form);
                ASSERT_EQ(alone.count(place), count) << place.name();
                ASSERT_EQ(alone.pointer(place), nullptr);
            }
        }
    }
}

// Within a run only the element's key is tested. So a longer count key opens an element more, which
// takes the lines up to the next closing one.
TEST(EveryArray, TakesACountDirectlyAfterItForAnElementWhereItsKeyIsLonger) {
    size_t taken = 0;
    for (const Place &place : every_array_or_run()) {
        const bool is_longer = place.count().key().starts_with(place.key());
        taken += is_longer;
        const std::string text = place.elements(2) + place.count().says(9);
        for (const Form form : every_form) {
            if (is_longer) {
                // The element's number stands in the count's block, as it were.
                const std::string one = place.element_with(3);
                const BlockRead read(place, place.closed(text + one.substr(one.find('\n') + 1)),
                                     form);
                ASSERT_EQ(read.elements(place), one_to(3)) << place.name();
                ASSERT_EQ(read.rest(), "");
            } else {
                BlockRead read(place, place.closed(text), form);
                ASSERT_EQ(read.count(place), 9U) << place.name();
                read.set_count(place, 2);
                ASSERT_EQ(read.elements(place), one_to(2)) << place.name();
            }
        }
    }
    EXPECT_GT(taken, 0U);
}

TEST(EveryArray, HasACountThatAgreesWhereCountsAreMadeTo) {
    static constexpr struct {
        uint64_t said;
        uint64_t kept;
    } counts[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 3}, {4294967295, 3}};

    const MemoryWatch watch;
    for (const Place &place : every_array_or_run()) {
        std::string three;
        for (int i = 0; i < 3; ++i) {
            three += place.row->kind == RowKind::run
                         ? place.inner(place.key(), full_lines(place.element(), 7))
                         : place.says(7);
        }
        for (const auto &[said, kept] : counts) {
            for (const Form form : every_form) {
                const BlockRead read(place,
                                     place.closed(three + unknown_line + place.count().says(said)),
                                     form, Counts::agree);
                ASSERT_EQ(read.count(place), kept) << place.name();
                ASSERT_EQ(read.pointer(place) != nullptr, kept != 0) << place.name();
                const BlockRead alone(place, place.closed(place.count().says(said)), form,
                                      Counts::agree);
                ASSERT_EQ(alone.count(place), 0U) << place.name();
            }
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Later runs ----------------------------------------------------------------------------------

TEST(EveryArray, IsReplacedByALaterRunWithAllThatItOwnsWhateverItsCountSays) {
    const MemoryWatch watch;
    for (const Place &place : every_array_or_run()) {
        for (const uint64_t count : {0U, 1U, 2U, 99U}) {
            for (const Form form : every_form) {
                for (const Counts counts : {Counts::as_read, Counts::agree}) {
                    const BlockRead read(place,
                                         place.closed(place.full(7) + unknown_line +
                                                      place.count().says(count) + unknown_line +
                                                      place.full(8)),
                                         form, counts);
                    ASSERT_TRUE(read.holds_full(place, 8)) << place.name();
                }
            }
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(EveryArray, IsReplacedWithWhatItsElementsOwnWhateverTheirCountsSay) {
    const MemoryWatch watch;
    size_t deep = 0;
    for (const Place &place : every_row({RowKind::run})) {
        for (const Place &inner : rows_of(place.element())) {
            if (inner.row->kind != RowKind::run) {
                continue;
            }
            ++deep;
            std::string elements;
            for (const uint64_t count : {0U, 1U, 2U, 99U}) {
                elements += place.inner(place.key(),
                                        inner.full(7) + unknown_line + inner.count().says(count));
            }
            for (const Form form : every_form) {
                const BlockRead read(
                    place,
                    place.closed(elements + unknown_line + elements + unknown_line + place.full(8)),
                    form);
                ASSERT_TRUE(read.holds_full(place, 8)) << place.name();
            }
        }
    }
    EXPECT_GT(deep, 0U);
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Writing -------------------------------------------------------------------------------------

TEST(EveryArray, IsNotWrittenWithoutElementsWhateverItsCountAndPointerSay) {
    for (const Place &place : every_array_or_run()) {
        BlockToWrite record(place);
        record.set_count(place, 3);
        ASSERT_EQ(lines_with_key(place, record.lines(), place.count().key()),
                  place.count().says(3));
        ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), "") << place.name();
        static constexpr uint64_t something = 5;
        record.set_count(place, 0);
        record.set_pointer(place, &something);
        ASSERT_EQ(lines_with_key(place, record.lines(), place.count().key()), "");
        ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), "") << place.name();
    }
}

TEST(EveryArray, IsWrittenElementByElementAsItWasRead) {
    for (const Place &place : every_array_or_run()) {
        for (const uint64_t count : {1U, 5U, 6U, 21U}) {
            const BlockRead read(place, place.closed(place.elements(count)));
            BlockToWrite record(place);
            record.set_count(place, count);
            record.set_pointer(place, read.pointer(place));
            const std::string lines = record.lines();
            ASSERT_EQ(lines_with_key(place, lines, place.count().key()), place.count().says(count));
            const std::string elements = place.elements(count);
            ASSERT_EQ(lines_with_key(place, lines, place.key()),
                      lines_with_key(place, elements, place.key()));
            if (place.row->kind == RowKind::run) {
                const Block element = place.element();
                const std::string key = number_in(element).key();
                ASSERT_EQ(lines_with_key(element, lines, key),
                          lines_with_key(element, elements, key));
            }
        }
    }
}

} // namespace
} // namespace kvt_test
