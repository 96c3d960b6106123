// How an input is divided, whatever its size.
#include "io/unit_stream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "io/input.h"
#include "temporary_file.h"
#include "units.h"

namespace kvt_tool {
namespace {

struct Part {
    std::string text;
    uint64_t line;
    uint64_t offset;

    bool operator==(const Part &) const = default;
};

std::vector<Part> parts_of(const std::string &content) {
    const TemporaryFile file(content);
    InputFile input(file.name());
    UnitStream stream(input);
    std::vector<Part> parts;
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) {
            EXPECT_EQ(unit.text[unit.length], '\0');
            EXPECT_EQ(unit.input, file.name());
            parts.push_back({std::string(unit.text, unit.length), unit.first_line, unit.offset});
        });
    }
    EXPECT_TRUE(input.usable());
    return parts;
}

std::string repeat(size_t times, const std::string &text) {
    std::string result;
    for (size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

const std::string message = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
const std::string indented = "  msg {\n    type: END_JOB\n    end_job {\n    }\n  }\n";

TEST(UnitStream, HasAUnitForEachMessageWithTheLinesBelow) {
    const std::string other = "msg\t {\ntype: X\n}\n";
    EXPECT_EQ(parts_of(message + "\n" + other + message),
              (std::vector<Part>{{message + "\n", 1, 0},
                                 {other, 8, message.size() + 1},
                                 {message, 11, message.size() + 1 + other.size()}}));
}

TEST(UnitStream, OfNothingHasNothing) {
    EXPECT_EQ(parts_of(""), std::vector<Part>());
}

TEST(UnitStream, HasTextOutsideOfMessagesByItself) {
    EXPECT_EQ(parts_of("words\n" + message + "more\nwords"),
              (std::vector<Part>{{"words\n", 1, 0}, {message + "more\nwords", 2, 6}}));
}

TEST(UnitStream, TakesAnotherWordOrNoBraceForNoMessage) {
    const std::string text = message + "msgs {\nmsg\nmsg: 5\n msg {\n";
    EXPECT_EQ(parts_of(text), (std::vector<Part>{{text, 1, 0}}));
}

TEST(UnitStream, EndsAMessageThatIsNotClosedWhereTheNextBegins) {
    const std::string open = "msg {\n  type: END_JOB\n";
    EXPECT_EQ(parts_of(open + message),
              (std::vector<Part>{{open, 1, 0}, {message, 3, open.size()}}));
}

TEST(UnitStream, DividesManyMessagesAlikeAcrossItsBlocks) {
    const size_t count = 3 * UnitStream::long_unit / message.size();
    const std::vector<Part> parts = parts_of(repeat(count, message));
    ASSERT_EQ(parts.size(), count);
    for (size_t i = 0; i < count; ++i) {
        ASSERT_EQ(parts[i], (Part{message, 1 + 6 * i, message.size() * i})) << i;
    }
}

TEST(UnitStream, KeepsALongMessageWhole) {
    const std::string list = repeat(UnitStream::long_unit, "  x: 1\n");
    const std::string large = "msg {\n" + list + "}\n";
    EXPECT_EQ(
        parts_of(large + message),
        (std::vector<Part>{{large, 1, 0}, {message, UnitStream::long_unit + 3, large.size()}}));
}

// The codec counts all braces of an unknown block, and none after the key of a first line.
TEST(UnitStream, KeepsALongMessageWholeWhoeverCountsItsBraces) {
    for (const char *block : {"  x { {\n  }\n  }\n", "  quota {\n    max_qps: 3 }\n  }\n",
                              "  x {\n  } }\n", "  \"}\"\n", "  y { }\n"}) {
        const std::string lines = repeat(4, block) + repeat(UnitStream::long_unit, "  x: 1\n");
        const std::string large = "msg {\n" + lines + "}\n";
        const std::vector<Part> parts = parts_of(large + message);
        ASSERT_EQ(parts.size(), 2U) << block;
        EXPECT_EQ(parts[0].text, large) << block;
        EXPECT_EQ(parts[1].text, message) << block;
    }
}

TEST(UnitStream, EndsMessagesByTheirBracesWhereNoneBeginsWithoutIndentation) {
    const size_t count = 3 * UnitStream::long_unit / indented.size();
    const std::vector<Part> parts = parts_of(repeat(count, indented));
    std::string all;
    for (const Part &part : parts) {
        all += part.text;
        ASSERT_TRUE(part.text == indented || &part == &parts.back()) << part.offset;
    }
    EXPECT_EQ(all, repeat(count, indented));
    EXPECT_LE(parts.back().text.size(), UnitStream::long_unit + indented.size());
}

TEST(UnitStream, KeepsOnlyTheBeginningOfMuchTextOutsideOfMessages) {
    const std::string words = repeat(UnitStream::long_unit / 2, "words\n");
    const std::vector<Part> parts = parts_of(words + "  " + message);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].text, words.substr(0, 1 << 16));
    EXPECT_EQ(parts[1], (Part{"  " + message, UnitStream::long_unit / 2 + 1, words.size()}));
}

TEST(UnitStream, FindsAMessageAfterALineThatNeverEnds) {
    const std::string line(5 * UnitStream::long_unit, 'x');
    const std::vector<Part> parts = parts_of(line + "\n" + message);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[1], (Part{message, 2, line.size() + 1}));
}

TEST(UnitStream, FindsAMessageAfterManyBlanks) {
    for (const std::string &before : {std::string(), message}) {
        const std::string blanks(3 * UnitStream::long_unit, ' ');
        const std::vector<Part> parts = parts_of(before + blanks + message);
        ASSERT_FALSE(parts.empty());
        EXPECT_TRUE(parts.back().text.ends_with(message));
        std::string all;
        for (const Part &part : parts) {
            all += part.text;
        }
        EXPECT_EQ(all, before + blanks + message);
    }
}

TEST(UnitStream, TakesMuchTextAfterAWordForNoMessage) {
    const std::vector<Part> parts =
        parts_of("msgs are here\n" + repeat(UnitStream::long_unit, "words\n") + message);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].text.size(), size_t{1} << 16);
    EXPECT_EQ(parts[1].text, message);
}

TEST(UnitStream, KeepsNulCharacters) {
    const std::string text("msg {\n\0\n}\n", 10);
    EXPECT_EQ(parts_of(text), (std::vector<Part>{{text, 1, 0}}));
}

TEST(UnitStream, OfADirectoryHasNothingAndSaysSo) {
    InputFile input("/");
    UnitStream stream(input);
    EXPECT_EQ(stream.next(), nullptr);
    EXPECT_FALSE(input.usable());
}

TEST(UnitStream, DividesTextInSmallPiecesAsInOne) {
    const UnitSizes small = {.block = 8, .long_unit = 60, .kept = 20};
    const UnitSizes at_once = {.long_unit = 60, .kept = 20};
    const std::string blanks(58, ' ');
    const std::string words = "words outside of all messages, more of them than are kept\n";
    for (const std::string &text :
         {message + "\n" + message, indented + indented, words + words + indented + message,
          "\n" + blanks + message, words + blanks + "  msg {\n}\n",
          words + blanks + "   msg {\n}\n", message + blanks + blanks + "\n" + blanks + message,
          std::string(200, '\n') + message, message + "ms",
          "msg" + blanks + blanks + "{\n" + message, words + "msg   "}) {
        for (size_t piece = 1; piece < 20; ++piece) {
            ASSERT_EQ(facts_of_units(text, piece, small), facts_of_units(text, SIZE_MAX, at_once))
                << piece << " bytes of\n"
                << text;
        }
    }
}

TEST(UnitStream, KnowsWhichUnitsAMessageFollows) {
    const std::vector<UnitFacts> units = facts_of_units(message + message + "words\n" + message);
    ASSERT_EQ(units.size(), 3U);
    EXPECT_TRUE(units[0].is_before_message);
    EXPECT_TRUE(units[1].is_before_message);
    EXPECT_FALSE(units[2].is_before_message);
    EXPECT_FALSE(facts_of_units(message + message).back().is_before_message);
}

TEST(UnitStream, KnowsThatAMessageFollowsInTheNextBatch) {
    const size_t count = UnitStream::long_unit / message.size() + 10;
    const std::vector<UnitFacts> units = facts_of_units(repeat(count, message));
    for (size_t i = 0; i + 1 < units.size(); ++i) {
        ASSERT_TRUE(units[i].is_before_message) << i;
    }
}

} // namespace
} // namespace kvt_tool
