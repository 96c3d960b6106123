// Arrays of numbers, on the heap and within the record: what holds for the lines of every one of
// them.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/block_read.h"
#include "support/every_row.h"
#include "support/memory_watch.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

using Bytes = std::vector<uint8_t>;

std::vector<Place> every_byte_array() {
    return every_row({RowKind::bytes});
}

unsigned bits(const Place &place) {
    return place.row->kind == RowKind::array16 ? 16 : place.row->kind == RowKind::array32 ? 32 : 64;
}

// --- On the heap ---------------------------------------------------------------------------------

TEST(EveryNumberArray, TakesAllLinesOfItsKeyAndLeavesOutThoseThatDoNotScan) {
    for (const Place &place : every_array()) {
        const std::string key = place.indentation() + place.key();
        const std::string text = place.says(1) + key + ": 2 }\n" + key + ": x\n" + key + "zz: 9\n" +
                                 key + "\n" + key + ":   +3 {\n" + key + " : 9\n" + place.says(4);
        for (const Form form : every_form) {
            const BlockRead read(place, place.closed(text), form);
            ASSERT_EQ(read.elements(place), one_to(4)) << place.name();
            ASSERT_EQ(read.rest(), "");
        }
    }
}

TEST(EveryNumberArray, CutsItsElementsToTheirWidth) {
    for (const Place &place : every_array()) {
        const uint64_t greatest = UINT64_MAX >> (64 - bits(place));
        const std::string text = place.says("65541") + place.says("4294967301") +
                                 place.says("18446744073709551615") +
                                 place.says("18446744073709551616") + place.says("-1");
        for (const Form form : every_form) {
            const BlockRead read(place, place.closed(text), form);
            ASSERT_EQ(read.elements(place),
                      (std::vector<uint64_t>{bits(place) == 16 ? 5U : 65541U,
                                             bits(place) == 64 ? 4294967301U : 5U, greatest,
                                             greatest, greatest}))
                << place.name();
        }
    }
}

TEST(EveryNumberArray, IsNullAfterALaterRunWithoutOneGoodElement) {
    const MemoryWatch watch;
    for (const Place &place : every_array()) {
        for (const Form form : every_form) {
            const BlockRead read(
                place, place.closed(place.elements(7) + unknown_line + place.says("x")), form);
            ASSERT_EQ(read.count(place), 0U) << place.name();
            ASSERT_EQ(read.pointer(place), nullptr);
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(EveryNumberArray, TracesItsElementsAndItsEnd) {
    MemoryWatch watch;
    for (const Place &place : every_array()) {
        const std::string self =
            "_kvt_txt_unpack_primptr_uint" + std::to_string(bits(place)) + "_t";
        const std::string conversion = bits(place) == 16   ? ":%hu"
                                       : bits(place) == 32 ? ":%u"
                                                           : ":%lu";
        const std::string text = place.closed(place.says("x") + place.says(10) + place.says("x") +
                                              place.says(11) + place.says(12));
        const auto excerpt_from = [&](size_t line) {
            size_t at = 0;
            for (; line != 0; --line) {
                at = text.find('\n', at) + 1;
            }
            return text.substr(text.find(place.key(), at), 50);
        };
        watch.fail(1, 0);
        const BlockRead read(place, text, Form::traced);
        const std::string failed = "], frame_key[" + place.key() + conversion + "], value[";
        ASSERT_EQ(read.log(),
                  (std::vector<LogLine>{
                      {self, 6, self + " missmatch, array[" + excerpt_from(0) + failed + "0]\n"},
                      {self, 6, self + " element[1]=[0xa]\n"},
                      {self, 6, self + " missmatch, array[" + excerpt_from(2) + failed + "a]\n"},
                      {self, 6, self + " element[2]=[0xb]\n"},
                      {self, 6, self + " element[3]=[0xc]\n"},
                      {self, 6, self + " END prim ptr, num_lements[0x3], array[0][0xa]\n"},
                  }));
        // An element that is dropped is not traced, and an array without one shows 0.
        watch.fail(0);
        const BlockRead none(place, place.closed(place.says(10)), Form::traced);
        ASSERT_EQ(none.log(),
                  (std::vector<LogLine>{
                      {self, 6, self + " END prim ptr, num_lements[0x0], array[0][0x0]\n"}}));
    }
}

// --- Bytes within the record ---------------------------------------------------------------------

TEST(EveryByteArray, TakesAsManyLinesAsItHasBytesAndPassesOverTheOthers) {
    for (const Place &place : every_byte_array()) {
        const size_t capacity = place.row->size;
        for (const size_t count :
             {size_t{0}, size_t{1}, capacity - 1, capacity, capacity + 1, 2 * capacity + 1}) {
            Bytes expected(capacity, 0);
            for (size_t i = 0; i < capacity && i < count; ++i) {
                expected[i] = static_cast<uint8_t>(i + 1);
            }
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(place.elements(count)), form);
                ASSERT_EQ(read.bytes(place), expected) << place.name() << " " << count;
                ASSERT_TRUE(read.is_zero_beside(place)) << place.name() << " " << count;
                ASSERT_EQ(read.rest(), "");
                // One for each byte, and one at the end of a run that does not fill the array.
                ASSERT_EQ(read.log().size(), form != Form::traced || count == 0 ? 0
                                             : count < capacity                 ? count + 1
                                                                                : capacity);
            }
        }
    }
}

TEST(EveryByteArray, HoldsZeroForALineThatDoesNotScanAndCutsWhatIsTooLarge) {
    for (const Place &place : every_byte_array()) {
        const std::string key = place.indentation() + place.key();
        const std::pair<std::string, uint8_t> cases[] = {
            {key + ": x\n", 0},    {key + "\n", 0},
            {key + "zz: 5\n", 0},  {key + ": 259\n", 3},
            {key + ": -1\n", 255}, {key + ":7\n", 7},
            {key + ": 8 {\n", 8},  {key + ": 4294967305\n", 9}};
        for (const auto &[line, value] : cases) {
            for (const Form form : every_form) {
                Bytes expected(place.row->size, 0);
                expected[0] = value;
                std::string text = line;
                if (expected.size() > 1) {
                    expected[1] = 5;
                    text += place.says("5 }");
                }
                const BlockRead read(place, place.closed(text), form);
                ASSERT_EQ(read.bytes(place), expected) << place.name() << line;
            }
        }
    }
}

TEST(EveryByteArray, IsWrittenUpToTheValueThatEndsIt) {
    for (const Place &place : every_byte_array()) {
        const size_t capacity = place.row->size;
        const uint8_t end = place.row->terminator;
        for (size_t used = 0; used <= capacity; ++used) {
            BlockToWrite record(place);
            auto *bytes = reinterpret_cast<uint8_t *>(record.member(place));
            std::string expected;
            for (size_t i = 0; i < capacity; ++i) {
                // The other value that ends arrays ends this one not.
                bytes[i] = i == used ? end : static_cast<uint8_t>(end == 0 ? 255 - i : i);
                expected += i < used ? place.says(bytes[i]) : "";
            }
            ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), expected) << place.name();
        }
    }
}

TEST(EveryByteArray, TracesItsBytesAndTheLineThatEndsIt) {
    const std::string self = "_kvt_txt_unpack_primarray_uint8_t";
    for (const Place &place : every_byte_array()) {
        const std::string text = place.closed(place.says("x") + unknown_line);
        const BlockRead read(place, text, Form::traced);
        std::vector<LogLine> expected = {{self, 6, self + " txt unpack value[0x0]\n"}};
        if (place.row->size > 1) {
            expected.push_back({self, 6,
                                self + " END ARRAY, key[" + place.key() + "] array[" +
                                    text.substr(text.find(unknown_line), 50) + "]\n"});
        }
        ASSERT_EQ(read.log().size(), expected.size() + 1) << place.name(); // and the unknown line
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), read.log().begin()))
            << place.name();
    }
}

} // namespace
} // namespace kvt_test
