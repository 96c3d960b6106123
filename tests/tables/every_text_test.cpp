// Texts in the record and strings on the heap: what holds for every one of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/block_read.h"
#include "support/every_row.h"
#include "support/memory_watch.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

std::string quoted(const std::string &value) {
    return "\"" + value + "\"";
}

/// Characters that tell their places.
std::string characters(size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += static_cast<char>('a' + i % 23);
    }
    return text;
}

std::vector<Place> every_text() {
    return every_row({RowKind::text});
}

std::vector<Place> every_string() {
    return every_row({RowKind::joined_text});
}

std::vector<Place> every_text_or_string() {
    return every_row({RowKind::text, RowKind::joined_text});
}

/// A text or string as it was read; "(null)" for no string.
std::string value_of(const BlockRead &read, const Place &place) {
    if (place.row->kind == RowKind::text) {
        return read.text(place).c_str();
    }
    return read.joined(place) != nullptr ? read.joined(place) : "(null)";
}

/// What is read where no line has a value.
std::string none(const Place &place) {
    return place.row->kind == RowKind::text ? "" : "(null)";
}

// --- Both ----------------------------------------------------------------------------------------

TEST(EveryText, IsWhatStandsBetweenTheFirstTwoQuotes) {
    const struct {
        std::string line;
        const char *value;
    } cases[] = {
        {": \"a\"", "a"},     {": \"a\"b\"c\"", "a"},    {":\t x \"a b\\\"", "a b\\"},
        {": \" a \"", " a "}, {": x\n\"late\"", "late"},
    };

    for (const Place &place : every_text_or_string()) {
        for (const auto &[line, value] : cases) {
            for (const Form form : {Form::as_written, Form::traced}) {
                const BlockRead read(
                    place, place.closed(place.indentation() + place.key() + line + "\n"), form);
                ASSERT_EQ(value_of(read, place), value) << place.name() << line;
                ASSERT_EQ(read.rest(), "");
            }
        }
    }
}

TEST(EveryText, IsEmptyWhereItsLineDoesNotScan) {
    for (const Place &place : every_text_or_string()) {
        for (const char *line : {": \"\"", ":\"a\"", ": a", "", " \"a"}) {
            for (const Form form : every_form) {
                const BlockRead read(
                    place, place.closed(place.indentation() + place.key() + line + "\n"), form);
                ASSERT_EQ(value_of(read, place), none(place)) << place.name() << line;
            }
        }
    }
}

TEST(EveryText, IsReplacedByALaterLineAndEmptiedByOneThatDoesNotScan) {
    const MemoryWatch watch;
    for (const Place &place : every_text_or_string()) {
        for (const Form form : every_form) {
            const std::string first = place.says(quoted("a longer one")) + unknown_line;
            const BlockRead later(place, place.closed(first + place.says(quoted("b"))), form);
            ASSERT_EQ(value_of(later, place), "b") << place.name();
            const BlockRead failing(place, place.closed(first + place.says("\"\"")), form);
            ASSERT_EQ(value_of(failing, place), none(place)) << place.name();
        }
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Texts in the record -------------------------------------------------------------------------

TEST(EveryText, IsCutToLeaveRoomForItsNul) {
    for (const Place &place : every_text()) {
        const size_t room = place.row->size - size_t{1};
        for (const size_t length :
             {size_t{1}, room - 1, room, room + 1, size_t{199}, size_t{200}, size_t{1000}}) {
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(place.says(quoted(characters(length)))),
                                     form);
                std::string whole = characters(std::min(length, room));
                whole.resize(room + 1, '\0');
                ASSERT_EQ(read.text(place), whole) << place.name() << length;
                ASSERT_TRUE(read.is_zero_beside(place)) << place.name();
            }
        }
    }
}

TEST(EveryText, IsWrittenUpToItsNulOrItsCapacity) {
    for (const Place &place : every_text()) {
        const size_t capacity = place.row->size;
        BlockToWrite record(place);
        ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), "");
        for (const size_t length : {size_t{1}, capacity - 1, capacity}) {
            std::memcpy(record.member(place), characters(length).c_str(), length);
            ASSERT_EQ(lines_with_key(place, record.lines(), place.key()),
                      place.says(quoted(characters(length))));
        }
    }
}

TEST(EveryText, IsTracedByItsFirstFiftyCharacters) {
    const std::string self = "_kvt_txt_unpack_primarray_char";
    for (const Place &place : every_text()) {
        for (const size_t length : {size_t{1}, size_t{50}, size_t{51}}) {
            const BlockRead read(place, place.closed(place.says(quoted(characters(length)))),
                                 Form::traced);
            ASSERT_EQ(read.log(), (std::vector<LogLine>{
                                      {self, 6,
                                       self + " txt unpack value[" +
                                           characters(std::min(length, size_t{50})) + "]\n"}}));
        }
    }
}

// --- Strings on the heap -------------------------------------------------------------------------

/// Lines of a string, one for each value.
std::string lines_of(const Place &place, const std::vector<std::string> &values) {
    std::string lines;
    for (const std::string &value : values) {
        lines += place.says(quoted(value));
    }
    return lines;
}

TEST(EveryString, JoinsItsLinesWithCommasAndCountsItsNul) {
    for (const Place &place : every_string()) {
        for (const Form form : every_form) {
            const BlockRead one(
                place, place.closed(place.count().says(77) + lines_of(place, {"abc"})), form);
            ASSERT_STREQ(one.joined(place), "abc") << place.name();
            ASSERT_EQ(one.count(place), 4U);
            const BlockRead three(
                place, place.closed(place.count().says(77) + lines_of(place, {"a", "b,c", "d"})),
                form);
            ASSERT_STREQ(three.joined(place), "a,b,c,d") << place.name();
            ASSERT_EQ(three.count(place), 8U);
            ASSERT_TRUE(three.is_zero_beside(place));
        }
    }
}

TEST(EveryString, LeavesOutLinesThatDoNotScan) {
    for (const Place &place : every_string()) {
        for (const Form form : every_form) {
            const BlockRead read(place,
                                 place.closed(place.says("\"\"") + lines_of(place, {"a"}) +
                                              place.says("\"\"") + lines_of(place, {"b"})),
                                 form);
            ASSERT_STREQ(read.joined(place), "a,b") << place.name();
            const BlockRead none(place, place.closed(place.count().says(77) + place.says("\"\"")),
                                 form);
            ASSERT_EQ(none.joined(place), nullptr) << place.name();
            ASSERT_EQ(none.count(place), 0U);
        }
    }
}

TEST(EveryString, KeepsALengthLineThatIsNotTakenForOneOfItsOwn) {
    for (const Place &place : every_string()) {
        const std::string lines = lines_of(place, {"ab", "c"});
        const bool is_taken = place.count().key().starts_with(place.key());
        for (const Form form : every_form) {
            const BlockRead direct(place, place.closed(lines + place.count().says(77)), form);
            ASSERT_STREQ(direct.joined(place), "ab,c");
            ASSERT_EQ(direct.count(place), is_taken ? 5U : 77U) << place.name();
            const BlockRead later(
                place, place.closed(lines + unknown_line + place.count().says(77)), form);
            ASSERT_EQ(later.count(place), 77U) << place.name();
            const BlockRead alone(place, place.closed(place.count().says(77)), form);
            ASSERT_EQ(alone.count(place), 77U) << place.name();
            ASSERT_EQ(alone.joined(place), nullptr);
        }
    }
}

TEST(EveryString, TakesAtMost298CharactersOfALine) {
    for (const Place &place : every_string()) {
        for (const size_t length : {297U, 298U, 299U, 5000U}) {
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(lines_of(place, {characters(length)})),
                                     form);
                ASSERT_EQ(read.joined(place), characters(std::min<size_t>(length, 298)));
            }
        }
    }
}

// Room for five times the first value; a value is reckoned with a comma and a NUL.
TEST(EveryString, GrowsByDoublingAndIsCutWhereThatIsNotEnough) {
    const std::string four = "abcd";

    const struct {
        std::vector<std::string> values;
        size_t requests;
        const char *joined;
    } cases[] = {
        {{four}, 1, "abcd"},
        {{four, four, four}, 1, "abcd,abcd,abcd"},
        {{four, four, four, four}, 2, "abcd,abcd,abcd,abcd"},
        {{"a", "b", "c", "d"}, 3, "a,b,c,d"},
        {{"a", "0123456789"}, 2, "a,012345"},
        {{"a", "0123456789", "xy"}, 3, "a,0123456xy"},
    };

    for (const Place &place : every_string()) {
        for (const auto &[values, requests, joined] : cases) {
            for (const Form form : every_form) {
                const MemoryWatch watch;
                const BlockRead read(place, place.closed(lines_of(place, values)), form);
                ASSERT_STREQ(read.joined(place), joined) << place.name();
                ASSERT_EQ(read.count(place), std::strlen(joined) + 1);
                ASSERT_EQ(watch.requests(), requests) << place.name() << joined;
            }
        }
    }
}

TEST(EveryString, LacksTheLinesForWhichThereWasNoMemory) {
    const struct {
        size_t first;
        size_t failing;
        const char *joined;
    } cases[] = {{0, 1, "bbb,c"}, {0, 2, "c"},     {0, 3, "(null)"},
                 {1, 1, "a,c"},   {2, 1, "a,bbb"}, {3, 1, "a,bbb,c"}};

    MemoryWatch watch;
    for (const Place &place : every_string()) {
        for (const auto &[first, failing, joined] : cases) {
            for (const Form form : every_form) {
                watch.fail(first, failing);
                const BlockRead read(place, place.closed(lines_of(place, {"a", "bbb", "c"})), form);
                ASSERT_EQ(value_of(read, place), joined) << place.name();
                ASSERT_EQ(read.count(place),
                          read.joined(place) != nullptr ? std::strlen(joined) + 1 : 0U);
            }
        }
        watch.fail(0);
        const BlockRead alone(place, place.closed(place.count().says(77) + lines_of(place, {"a"})));
        ASSERT_EQ(alone.joined(place), nullptr);
        ASSERT_EQ(alone.count(place), 0U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(EveryString, IsWrittenAsOneLineBehindItsLengthAndNotAtAllWhereItIsEmpty) {
    for (const Place &place : every_string()) {
        BlockToWrite record(place);
        const auto lines = [&] {
            return lines_with_key(place, record.lines(), place.count().key()) +
                   lines_with_key(place, record.lines(), place.key());
        };
        record.set_count(place, 5);
        ASSERT_EQ(lines(), place.count().says(5)) << place.name();
        record.set_pointer(place, "");
        ASSERT_EQ(lines(), place.count().says(5)) << place.name();
        record.set_pointer(place, "a,b and more");
        ASSERT_EQ(lines(), place.count().says(5) + place.says("\"a,b and more\""));
    }
}

TEST(EveryString, IsTracedAsItGrows) {
    const std::string self = "_kvt_txt_unpack_primptr_char";
    for (const Place &place : every_string()) {
        const std::string rest = place.says("\"\"") + lines_of(place, {"a", "b"});
        const std::string text = place.closed(rest);
        const std::string excerpt = text.substr(text.find(place.key()), 50);
        const BlockRead read(place, text, Form::traced);
        ASSERT_EQ(read.log(),
                  (std::vector<LogLine>{
                      {self, 6,
                       self + " missmatch, array[" + excerpt + "], frame_key[" + place.key() +
                           ":%*[^\"]\"%[^\"]\"], value[]\n"},
                      {self, 6, self + " dst_ptr[a,], value[]\n"},
                      {self, 6, self + " dst_ptr[a,b,], value[]\n"},
                      {self, 6, self + " END prim ptr, num_lements[0x2], array[0][0x61]\n"},
                  }));
    }
}

} // namespace
} // namespace kvt_test
