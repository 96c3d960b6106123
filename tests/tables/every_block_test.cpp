// Blocks, runs and slots: what holds for every record that stands within another one.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/block_read.h"
#include "support/every_row.h"
#include "support/memory_watch.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

using Numbers = std::vector<uint64_t>;

std::vector<Place> every_row_of_blocks() {
    return every_row({RowKind::block, RowKind::run, RowKind::slots});
}

/// The text of an element with another opening line.
std::string opened_by(const std::string &opening, const std::string &element) {
    return opening + element.substr(element.find('\n'));
}

TEST(EveryInnerBlock, OpensWithAnyLineThatBeginsWithItsKey) {
    for (const Place &place : every_row_of_blocks()) {
        for (const char *rest : {" {", "", "zz {", ": {", " { zz: 1", ": 5", "  {  "}) {
            const std::string opening = place.indentation() + place.key() + rest;
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(opened_by(opening, place.element_with(7))),
                                     form);
                ASSERT_EQ(place.row->kind == RowKind::run ? read.elements(place)[0]
                                                          : read.slots(place)[0],
                          7U)
                    << place.name() << rest;
                ASSERT_TRUE(read.is_zero_beside(place));
                ASSERT_EQ(read.rest(), "");
            }
        }
    }
}

TEST(EveryInnerBlock, IsReplacedByALaterOneWithAllThatItOwnsUnlessItIsAnAddress) {
    const MemoryWatch watch;
    for (const Place &place : every_row({RowKind::block})) {
        for (const std::string &between : {std::string(), std::string(unknown_line)}) {
            for (const Form form : every_form) {
                const BlockRead filled(place, place.closed(place.full(7) + between + place.full(8)),
                                       form);
                ASSERT_TRUE(filled.holds_full(place, 8)) << place.name();
                const BlockRead read(
                    place, place.closed(place.full(7) + between + place.inner(place.key(), "")),
                    form);
                if (is_address(*place.row->element)) {
                    ASSERT_TRUE(read.holds_full(place, 7)) << place.name();
                } else {
                    ASSERT_EQ(read.member(place), std::string(place.row->size, '\0'))
                        << place.name();
                }
            }
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Runs ----------------------------------------------------------------------------------------

// Only the first five elements lie in memory that is zero before.
TEST(EveryRun, ClearsEveryElementBeforeItIsRead) {
    for (const Place &place : every_row({RowKind::run})) {
        const size_t size = place.row->element->size;
        std::string text = place.elements(5);
        for (int i = 0; i < 7; ++i) {
            text += place.inner(place.key(), "");
        }
        for (const Form form : every_form) {
            const BlockRead read(place, place.closed(text), form);
            ASSERT_EQ(read.count(place), 12U);
            const char *empty = static_cast<const char *>(read.pointer(place)) + 5 * size;
            ASSERT_EQ(std::string(empty, 7 * size), std::string(7 * size, '\0')) << place.name();
        }
    }
}

TEST(EveryRun, SkipsADroppedElementWholeAndWithoutATrace) {
    MemoryWatch watch;
    for (const Place &place : every_row({RowKind::run})) {
        const std::string dropped =
            place.inner(place.key(), full_lines(place.element(), 7) +
                                         place.element().inner("zz", unknown_line) + unknown_line);
        const BlockRead one(place, place.closed(place.element_with(8)), Form::traced);
        for (const Form form : every_form) {
            watch.fail(0);
            const BlockRead read(place, place.closed(dropped + place.element_with(8)), form);
            ASSERT_EQ(read.elements(place), (Numbers{8})) << place.name();
            ASSERT_EQ(read.log().size(), form == Form::traced ? one.log().size() : 0U);
            ASSERT_EQ(read.rest(), "");
        }
    }
}

// --- Slots ---------------------------------------------------------------------------------------

TEST(EveryRowOfSlots, HoldsFourBlocksAndSkipsTheOthersWholeAndWithoutATrace) {
    for (const Place &place : every_row({RowKind::slots})) {
        for (const uint64_t count : {0U, 1U, 3U, 4U, 5U, 6U, 21U}) {
            std::string text = place.count().says(9) + place.elements(std::min<uint64_t>(count, 4));
            for (uint64_t i = 4; i < count; ++i) {
                text += place.inner(place.key(), full_lines(place.element(), 7) + unknown_line);
            }
            Numbers expected = one_to(std::min<uint64_t>(count, 4));
            expected.resize(4, 0);
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(text), form);
                ASSERT_EQ(read.slots(place), expected) << place.name() << " " << count;
                ASSERT_EQ(read.count(place), count == 0 ? 9 : std::min<uint64_t>(count, 4));
                ASSERT_TRUE(read.is_zero_beside(place));
                ASSERT_EQ(read.rest(), "");
                if (form == Form::traced) {
                    // The count, and a number for each slot.
                    ASSERT_EQ(read.log().size(), 1 + std::min<uint64_t>(count, 4));
                }
            }
        }
    }
}

TEST(EveryRowOfSlots, KeepsACountAfterIt) {
    for (const Place &place : every_row({RowKind::slots})) {
        for (const char *between : {"", unknown_line}) {
            for (const Form form : every_form) {
                const BlockRead read(
                    place, place.closed(place.elements(2) + between + place.count().says(9)), form);
                ASSERT_EQ(read.count(place), 9U) << place.name();
                ASSERT_EQ(read.slots(place), (Numbers{1, 2, 0, 0}));
            }
        }
    }
}

TEST(EveryRowOfSlots, BeginsAnewWithALaterRunAndKeepsTheSlotsThatItDoesNotReach) {
    for (const Place &place : every_row({RowKind::slots})) {
        for (const Form form : every_form) {
            const BlockRead read(
                place, place.closed(place.elements(3) + unknown_line + place.full(8)), form);
            ASSERT_EQ(read.slots(place), (Numbers{8, 2, 3, 0})) << place.name();
            ASSERT_EQ(read.count(place), 1U);
            const BlockRead empty(place,
                                  place.closed(place.full(7) + place.full(7) + unknown_line +
                                               place.inner(place.key(), "")),
                                  form);
            const size_t size = place.row->element->size;
            ASSERT_EQ(empty.member(place).substr(0, size), std::string(size, '\0')) << place.name();
            ASSERT_EQ(empty.slots(place), (Numbers{0, 7, 0, 0}));
        }
    }
}

TEST(EveryRowOfSlots, WritesAsManyAsAreInUseAndFourAtMost) {
    for (const Place &place : every_row({RowKind::slots})) {
        const BlockRead read(place, place.closed(place.elements(4)));
        for (const uint64_t in_use : {0U, 1U, 4U, 5U, 255U}) {
            BlockToWrite record(place);
            read.member(place).copy(record.member(place), place.row->size);
            record.set_count(place, in_use);
            std::string openings;
            for (uint64_t i = 0; i < in_use && i < 4; ++i) {
                openings += place.indentation() + place.key() + " {\n";
            }
            ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), openings);
            ASSERT_EQ(lines_with_key(place, record.lines(), place.count().key()),
                      in_use != 0 ? place.count().says(in_use) : "");
        }
    }
}

} // namespace
} // namespace kvt_test
