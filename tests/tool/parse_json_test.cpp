// JSON, and what is said of a text that is none.
#include "json/parse_json.h"

#include <gtest/gtest.h>

#include <string>

namespace kvt_tool {
namespace {

/// The column of what is wrong, and what it is; empty when the text is JSON.
std::string problem_of(const std::string &json) {
    try {
        parse_json(json);
        return "";
    } catch (const JsonProblem &problem) {
        return std::to_string(problem.at - json.data() + 1) + ": " + problem.what;
    }
}

/// The characters of a string.
std::string characters_of(const std::string &json) {
    return string_of(parse_json(json));
}

TEST(ParseJson, KnowsWhereEveryPartStands) {
    const std::string text = " {\"a\" : [ 1.50, \"x\" ] } ";
    const JsonValue object = parse_json(text);
    EXPECT_EQ(object.kind, JsonKind::object);
    EXPECT_EQ(object.source, "{\"a\" : [ 1.50, \"x\" ] }");
    ASSERT_EQ(object.parts.size(), 2U);
    EXPECT_EQ(object.parts[0].source, "\"a\"");
    EXPECT_EQ(object.parts[0].source.data(), text.data() + 2);
    ASSERT_EQ(object.parts[1].parts.size(), 2U);
    EXPECT_EQ(object.parts[1].parts[0].kind, JsonKind::number);
    EXPECT_EQ(object.parts[1].parts[0].source, "1.50");
    EXPECT_EQ(object.parts[1].parts[1].source, "\"x\"");
}

TEST(ParseJson, TakesEveryKindOfValue) {
    for (const char *text : {"null", "true", "false", "0", "-0", "12", "-1.5", "1e5", "1E+05",
                             "0.00e-0", "\"\"", "[]", "{}", "[[],{}]", " \t\r\n1\n"}) {
        EXPECT_EQ(problem_of(text), "") << text;
    }
}

TEST(ParseJson, TakesEveryEscape) {
    EXPECT_EQ(characters_of(R"("\"\\\/\b\f\n\r\t")"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(characters_of(R"("\u0041\u00e9\u20AC\uffff\ud83d\uDE00\udbff\udfff")"),
              "A\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBF\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(characters_of("\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\""),
              "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F");
}

TEST(ParseJson, SaysWhatIsNoValue) {
    EXPECT_EQ(problem_of(""), "1: a value is missing");
    EXPECT_EQ(problem_of("1 2"), "3: something stands after the value");
    EXPECT_EQ(problem_of("[tru]"), "2: \"tru\" is no value of JSON; a word or another form of a "
                                   "number stands in double quotes");
    EXPECT_EQ(problem_of("0x10").substr(0, 29), "1: \"0x10\" is no value of JSON");
    EXPECT_EQ(problem_of("['a']"), "2: \"'\" begins no value; a string stands in double quotes");
    EXPECT_EQ(problem_of("[1, // one\n]"), "5: \"/\" begins no value; JSON has no comments");
    EXPECT_EQ(problem_of("}"), "1: \"}\" begins no value");
    EXPECT_EQ(problem_of("\xFF"), "1: \"\\xff\" begins no value");
}

TEST(ParseJson, SaysWhatIsNoNumber) {
    EXPECT_EQ(problem_of("01"), "1: a number of JSON does not begin with 0; leave the 0 out");
    EXPECT_EQ(problem_of("-"), "1: this number lacks a digit after its minus");
    EXPECT_EQ(problem_of("-x"), "1: this number lacks a digit after its minus");
    EXPECT_EQ(problem_of("1."), "1: this number lacks a digit after its point");
    EXPECT_EQ(problem_of("1e+"), "1: this number lacks a digit after its \"e\"");
    EXPECT_EQ(problem_of("12a").substr(0, 8), "1: \"12a\"");
    EXPECT_EQ(problem_of("1.2.3").substr(0, 10), "1: \"1.2.3\"");
}

TEST(ParseJson, SaysWhatIsNoString) {
    EXPECT_EQ(problem_of("[\"a"), "2: this string is not closed: its second quote is missing");
    EXPECT_EQ(problem_of("[\"a\\"), "2: this string is not closed: its second quote is missing");
    EXPECT_EQ(problem_of("[\"a\nb\"]"),
              "2: this string is not closed on its line; a newline within it is written \\n");
    EXPECT_EQ(problem_of("\"a\tb\""),
              "3: a control character; it is written \\u and four hexadecimal digits");
    EXPECT_EQ(problem_of("\"a\\x\""), "3: no such escape; a backslash is written \\\\");
    EXPECT_EQ(problem_of("\"\\u12g4\""), "2: \\u wants four hexadecimal digits");
    for (const char *half : {R"("\ud800")", R"("\udc00")", R"("\ud800\u0041")", R"("\ud800\n")"}) {
        EXPECT_EQ(problem_of(half).substr(0, 22), "2: half of a character") << half;
    }
    for (const char *bytes :
         {"\"\xFF\"", "\"\xC3\"", "\"\xED\xA0\x80\"", "\"\xC0\x80\"", "\"\x80\""}) {
        EXPECT_EQ(problem_of(bytes),
                  "2: no UTF-8; the bytes of a text that is none are written {\"hex\": \"...\"}");
    }
}

TEST(ParseJson, SaysWhatIsMissingInListsAndObjects) {
    EXPECT_EQ(problem_of("[1, [2"), "5: this list is not closed: \"]\" is missing");
    for (const char *open : {"{", "{\"a\"", "{\"a\":", "{\"a\":1", "{\"a\":1,"}) {
        EXPECT_EQ(problem_of(open), "1: this object is not closed: \"}\" is missing") << open;
    }
    EXPECT_EQ(problem_of("[1 2]"), "4: a comma or \"]\" is missing before this");
    EXPECT_EQ(problem_of("[1}"), "3: a comma or \"]\" is missing before this");
    EXPECT_EQ(problem_of("{\"a\":1 \"b\""), "8: a comma or \"}\" is missing before this");
    EXPECT_EQ(problem_of("[1,]"), "3: nothing but \"]\" follows this comma; remove it");
    EXPECT_EQ(problem_of("{\"a\":1,}"), "7: nothing but \"}\" follows this comma; remove it");
    EXPECT_EQ(problem_of("{a:1}"), "2: a key in double quotes belongs here");
    EXPECT_EQ(problem_of("{\"a\" 1}"), "6: a colon belongs between \"a\" and its value");
    EXPECT_EQ(problem_of("[,1]"), "2: \",\" begins no value");
}

TEST(ParseJson, TakesNoKeyTwice) {
    EXPECT_EQ(problem_of(R"({"a":1,"b":2,"\u0062":3,"a":4})"),
              "14: this object has the key \"b\" twice; remove one");
    EXPECT_EQ(problem_of(R"({"a":{"a":1},"b":{"a":1}})"), "");
}

TEST(ParseJson, ShowsNoControlCharacters) {
    EXPECT_EQ(problem_of("{\"\\u001b\" 1}"), "11: a colon belongs between \"\\x1b\" and its value");
}

TEST(ParseJson, IsNotLedAstrayByWhatIsDeepOrLong) {
    EXPECT_EQ(problem_of(std::string(64, '[') + std::string(64, ']')), "");
    EXPECT_EQ(problem_of(std::string(100000, '[')),
              "65: lists and objects are nested more than 64 deep: no message is");
    std::string keys = R"({"k":0)";
    for (int i = 0; i < 300000; ++i) {
        keys += ",\"k" + std::to_string(i) + "\":1";
    }
    EXPECT_EQ(problem_of(keys + "}"), "");
    EXPECT_EQ(problem_of(std::string(300000, 'x')).substr(0, 48),
              "1: \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\"...");
}

} // namespace
} // namespace kvt_tool
