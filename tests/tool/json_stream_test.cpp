// The division of an input of JSON into its values.
#include "json/json_stream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/input.h"
#include "support/random_records.h"
#include "tool/temporary_file.h"

namespace kvt_tool {
namespace {

using kvt_test::below;
using kvt_test::Random;

using Values = std::vector<std::string>;

/// The values with the line and column of each.
Values values_of(const std::string &content) {
    const TemporaryFile file(content);
    InputFile input(file.name());
    JsonStream stream(input);
    Values values;
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) {
            values.push_back(std::to_string(unit.first_line) + ":" +
                             std::to_string(unit.first_column) + ": " +
                             std::string(unit.text, unit.length));
        });
    }
    return values;
}

TEST(JsonStream, TakesValuesOnLinesOneAfterTheOtherAndInAList) {
    EXPECT_EQ(values_of("{\"a\": [1, \"}\\\"\"]}\n{}{\"b\": {}}\n"),
              (Values{"1:1: {\"a\": [1, \"}\\\"\"]}", "2:1: {}", "2:3: {\"b\": {}}"}));
    EXPECT_EQ(values_of("[{\"a\": [1, \"}\\\"\"]},\n{} , {\"b\": {}}\n]\n"),
              (Values{"1:2: {\"a\": [1, \"}\\\"\"]}", "2:1: {}", "2:6: {\"b\": {}}"}));
    EXPECT_EQ(values_of(""), Values());
    EXPECT_EQ(values_of(" [\n ]\n"), Values());
}

TEST(JsonStream, TakesListsOneAfterTheOther) {
    EXPECT_EQ(values_of("[\n  {}\n]\n[\n  {}\n]\n{}\n[]"),
              (Values{"2:3: {}", "5:3: {}", "7:1: {}"}));
}

TEST(JsonStream, TakesListsWithinAValueInAnyLayout) {
    for (const char *value :
         {"{\"a\":[\n{\"b\":1},\n{\"b\":2}\n]}", "{\"a\":\n[\n{\"b\":\n{\"c\":[\n]}}]\n}",
          "{\n\"a\": [\n{\n}\n]\n}", "{\"a\":[{\"b\":1}\n,\n{\"b\":2}]}",
          "{\"a\":\r\n\t[\r\n{\"b\":\"\\\"\\\\\"}\r\n]}",
          "{\"a\":\"{[\"\n,\"b\":[\"]\"\n,\n{}]}"}) {
        const std::string text = value;
        EXPECT_EQ(values_of(text + "\n{}").front(), "1:1: " + text);
        EXPECT_EQ(values_of(text + "\n{}").size(), 2U) << text;
        EXPECT_EQ(values_of("[" + text + "," + text + "]").size(), 2U) << text;
    }
}

TEST(JsonStream, TakesRandomValuesInAnyLayout) {
    Random random(1);
    static constexpr const char *blanks[] = {"", "", "", " ", "\n", "\n\n", "\t", "\r\n", "    "};
    const auto blank = [&] {
        return std::string(blanks[below(random, std::size(blanks))]);
    };
    // A value whose parts have any blanks between them.
    const auto value = [&](const auto &any, size_t depth) -> std::string {
        switch (depth == 0 ? below(random, 3) : below(random, 6)) {
        case 0:
            return std::to_string(below(random, 100));
        case 1:
            return "\"{[\\\"]}\\\\\"";
        case 2:
            return "{}";
        case 3:
            return "[" + blank() + any(any, depth - 1) + blank() + "," + blank() +
                   any(any, depth - 1) + blank() + "]";
        default:
            return "{" + blank() + "\"a\"" + blank() + ":" + blank() + any(any, depth - 1) +
                   blank() + "," + blank() + "\"b\"" + blank() + ":" + blank() +
                   any(any, depth - 1) + blank() + "}";
        }
    };
    for (int round = 0; round < 2000; ++round) {
        Values expected;
        std::string text;
        for (size_t i = below(random, 4); i > 0; --i) {
            expected.push_back("{\"a\":" + value(value, 4) + "}");
            text += (text.empty() ? "" : blank() + "," + blank()) + expected.back();
        }
        Values found = values_of(blank() + "[" + blank() + text + blank() + "]" + blank());
        for (std::string &one : found) {
            one.erase(0, one.find('{'));
        }
        ASSERT_EQ(found, expected);
    }
}

TEST(JsonStream, EndsABrokenValueWhereAMessageSeemsToBegin) {
    EXPECT_EQ(values_of("{\"a\": \"\n{\"b\": 1}\nx y\n{}"),
              (Values{"1:1: {\"a\": \"\n", "2:1: {\"b\": 1}", "3:1: x", "3:3: y", "4:1: {}"}));
    EXPECT_EQ(values_of("{\"a\": {\"b\": 1}\n{\"c\": 1}"),
              (Values{"1:1: {\"a\": {\"b\": 1}\n", "2:1: {\"c\": 1}"}));
    EXPECT_EQ(values_of("{\"a\": [1,\n{\"c\": 1}\n{}"),
              (Values{"1:1: {\"a\": [1,\n", "2:1: {\"c\": 1}", "3:1: {}"}));
    EXPECT_EQ(values_of("{\"a\": 1}}\n  \"b\": 2\n}\n{}"),
              (Values{"1:1: {\"a\": 1}", "1:9: }", "4:1: {}"}));
}

TEST(JsonStream, EndsABrokenValueOfAListBeforeTheNextOne) {
    EXPECT_EQ(
        values_of("[\n  {\n    \"a\": {\n      \"b\": 1\n    },\n  {\n    \"c\": 1\n  }\n]\n"),
        (Values{"2:3: {\n    \"a\": {\n      \"b\": 1\n    },\n  ", "6:3: {\n    \"c\": 1\n  }"}));
}

TEST(JsonStream, HasNoPartOfABrokenValueForAMessage) {
    // Its list is indented by more than messages are.
    EXPECT_EQ(values_of("{\n  \"a\": [\n     {\n      \"b\": 1\n     }\n  }\n}\n{}").back(),
              "8:1: {}");
    EXPECT_EQ(values_of("{\n  \"a\": [\n     {\n      \"b\": 1\n     }\n  }\n}\n{}").size(), 2U);
}

TEST(JsonStream, PassesOverAByteOrderMarkAtTheBeginning) {
    EXPECT_EQ(values_of("\xEF\xBB\xBF[{}]"), (Values{"1:5: {}"}));
}

TEST(JsonStream, HasAListThatIsNotClosedAsAValueThatIsNone) {
    EXPECT_EQ(values_of("[{},\n{}"), (Values{"1:2: {}", "2:1: {}", "2:3: ["}));
    EXPECT_EQ(values_of("["), (Values{"1:2: ["}));
}

TEST(JsonStream, KeepsALargeValueWhole) {
    const std::string large = "{\"a\": \"" + std::string(5 << 20, 'x') + "\"}";
    EXPECT_EQ(values_of(large + "\n{}\n"), (Values{"1:1: " + large, "2:1: {}"}));
}

TEST(JsonStream, KeepsNothingOfWhatIsPassedOver) {
    const std::string passed_over(5 << 20, 'x');
    EXPECT_EQ(values_of("}" + passed_over + "\n     {}\n    {}"), (Values{"1:1: }", "3:5: {}"}));
}

TEST(JsonStream, DividesManyValuesAlikeAcrossItsBlocks) {
    std::string lines;
    std::string list = "[";
    Values values;
    for (int i = 0; i < 200000; ++i) {
        lines += "{\"value\": 1}\n";
        list += "\n{\"value\": 1},";
        values.push_back(std::to_string(i + 1) + ":1: {\"value\": 1}");
    }
    EXPECT_EQ(values_of(lines), values);
    list.back() = ']';
    EXPECT_EQ(values_of("\n" + lines).size(), values.size());
    EXPECT_EQ(values_of(list).size(), values.size());
    EXPECT_EQ(values_of(list).back(), "200001:1: {\"value\": 1}");
}

TEST(JsonStream, TakesTimeThatGrowsWithTheInput) {
    // Each line could be the beginning of a message in a value that is never closed.
    std::string open;
    for (int i = 0; i < 100000; ++i) {
        open += "{\"a\":[\n";
    }
    EXPECT_EQ(values_of(open).size(), 100000U);
    EXPECT_EQ(values_of("{\"a\":\n" + std::string(1 << 20, '[')).size(), 1U);
}

} // namespace
} // namespace kvt_tool
