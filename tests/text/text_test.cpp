// The search for quotes and the scan of quoted values, compared with the C library's scan.
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/exact_copy.h"
#include "text/scanner.h"
#include "text/text.h"

namespace {

using kvt_str::Text;
using kvt_test::exact_copy;
using Random = std::mt19937_64;

/// The value that the C library scans from a text that begins with "key"; empty where it does not
/// match. For the two limits that the format knows.
std::string value_of_c_library(const std::string &text, size_t limit) {
    char value[300] = "";
    const int scanned = limit == 298 ? std::sscanf(text.c_str(), "key:%*[^\"]\"%298[^\"]\"", value)
                                     : std::sscanf(text.c_str(), "key:%*[^\"]\"%199[^\"]\"", value);
    return scanned == 1 ? value : "";
}

/// The value that is scanned from a text that begins with "key". Fails where the C library's is
/// another one.
std::string scanned(const std::string &text, size_t limit = 199) {
    const auto copy = exact_copy(text);
    Text reader(copy.get());
    std::string value(reader.scan_quoted(copy.get() + 3, limit));
    EXPECT_EQ(value, value_of_c_library(text, limit)) << testing::PrintToString(text);
    return value;
}

// --- Text::scan_quoted ---------------------------------------------------------------------------

TEST(ScanQuoted, TakesTheTextBetweenTheQuotes) {
    EXPECT_EQ(scanned("key: \"value\"\n"), "value");
    EXPECT_EQ(scanned("key: \"a {b} c: 1\"\n"), "a {b} c: 1");
}

TEST(ScanQuoted, EndsAtTheNextQuote) {
    EXPECT_EQ(scanned("key: \"a\"b\" \"c\"\n"), "a");
}

TEST(ScanQuoted, WantsTheColonAfterTheKeyAtOnce) {
    EXPECT_EQ(scanned("key \"value\"\n"), "");
    EXPECT_EQ(scanned("key : \"value\"\n"), "");
    EXPECT_EQ(scanned("keys: \"value\"\n"), "");
    EXPECT_EQ(scanned("key\n: \"value\"\n"), "");
    EXPECT_EQ(scanned("key\"value\"\n"), "");
}

TEST(ScanQuoted, WantsACharacterBetweenColonAndQuote) {
    EXPECT_EQ(scanned("key:\"value\"\n"), "");
    EXPECT_EQ(scanned("key:\"\" \"value\"\n"), "");
}

TEST(ScanQuoted, TakesAnyCharactersBetweenColonAndQuote) {
    EXPECT_EQ(scanned("key: 5, state: }\t\"value\"\n"), "value");
    EXPECT_EQ(scanned("key::\"value\"\n"), "value");
    EXPECT_EQ(scanned("key:\xff\"value\"\n"), "value");
}

TEST(ScanQuoted, TakesAQuoteOfALaterLine) {
    EXPECT_EQ(scanned("key:\n\"value\"\n"), "value");
    EXPECT_EQ(scanned("key: 5\n}\nname: \"value\"\n"), "value");
}

TEST(ScanQuoted, DoesNotTakeAnEmptyValue) {
    EXPECT_EQ(scanned("key: \"\"\n"), "");
    EXPECT_EQ(scanned("key: \"\"value\"\n"), "");
    EXPECT_EQ(scanned("key: \"\"\nname: \"value\"\n"), "");
}

TEST(ScanQuoted, TakesAValueOverSeveralLines) {
    EXPECT_EQ(scanned("key: \"a\n  b\n\"\n"), "a\n  b\n");
    EXPECT_EQ(scanned("key: \"\n\"\n"), "\n");
}

TEST(ScanQuoted, KeepsBlanksOfTheValue) {
    EXPECT_EQ(scanned("key: \"  \t value \r \"\n"), "  \t value \r ");
}

TEST(ScanQuoted, TakesTheTextsEndForTheClosingQuote) {
    EXPECT_EQ(scanned("key: \"value"), "value");
    EXPECT_EQ(scanned("key: \"value\n"), "value\n");
}

TEST(ScanQuoted, WantsACharacterAfterTheQuote) {
    EXPECT_EQ(scanned("key: \""), "");
}

TEST(ScanQuoted, WantsAQuote) {
    EXPECT_EQ(scanned("key: value\n"), "");
    EXPECT_EQ(scanned("key: "), "");
    EXPECT_EQ(scanned("key:"), "");
    EXPECT_EQ(scanned("key"), "");
}

TEST(ScanQuoted, TakesAsManyCharactersAsTheLimit) {
    for (const size_t limit : {size_t{199}, size_t{298}}) {
        const std::string longest(limit, 'x');
        EXPECT_EQ(scanned("key: \"" + longest.substr(1) + "\"\n", limit), longest.substr(1));
        EXPECT_EQ(scanned("key: \"" + longest + "\"\n", limit), longest);
        EXPECT_EQ(scanned("key: \"" + longest, limit), longest);
    }
}

TEST(ScanQuoted, CutsALongerValueAtTheLimit) {
    for (const size_t limit : {size_t{199}, size_t{298}}) {
        const std::string longest(limit, 'x');
        EXPECT_EQ(scanned("key: \"" + longest + "y\"\n", limit), longest);
        EXPECT_EQ(scanned("key: \"" + longest + "y", limit), longest);
        EXPECT_EQ(scanned("key: \"" + longest + std::string(1000, 'y') + "\"\n", limit), longest);
    }
}

TEST(ScanQuoted, PutsNoLimitToWhatStandsBeforeTheQuote) {
    EXPECT_EQ(scanned("key:" + std::string(1000, ' ') + "\"value\"\n"), "value");
}

TEST(ScanQuoted, PointsIntoTheText) {
    const auto text = exact_copy("key: \"value\"\n");
    Text reader(text.get());
    EXPECT_EQ(reader.scan_quoted(text.get() + 3, 199).data(), text.get() + 6);
}

TEST(ScanQuoted, ReadsLineAfterLine) {
    const auto text = exact_copy("key: \"a\"\n"
                                 "key: 5\n"
                                 "key:\"b\"\n"
                                 "key: \"c\"\n"
                                 "key: d\n");
    Text reader(text.get());
    EXPECT_EQ(reader.scan_quoted(text.get() + 3, 199), "a");
    EXPECT_EQ(reader.scan_quoted(text.get() + 12, 199), "b"); // the next line's
    EXPECT_EQ(reader.scan_quoted(text.get() + 19, 199), "");
    EXPECT_EQ(reader.scan_quoted(text.get() + 27, 199), "c");
    EXPECT_EQ(reader.scan_quoted(text.get() + 36, 199), "");
}

std::string random_text(Random &random, std::string_view alphabet, size_t longest) {
    std::string text(random() % (longest + 1), '\0');
    for (char &c : text) {
        c = alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST(ScanQuoted, RandomTextsAreScannedAsByTheCLibrary) {
    Random random(3);
    for (unsigned i = 0; i < 30000 && !HasFailure(); ++i) {
        scanned("key:" + random_text(random, "\"\" \n:a", 12));
        scanned("key" + random_text(random, ":\"\n \t{}ab\xe9", 20));
    }
}

TEST(ScanQuoted, RandomLengthsAreCutAsByTheCLibrary) {
    Random random(4);
    for (unsigned i = 0; i < 2000 && !HasFailure(); ++i) {
        const size_t limit = i % 2 == 0 ? 199 : 298;
        const std::string value = random_text(random, "abc {}\n:", 2 * limit);
        scanned("key: \"" + value + (random() % 2 == 0 ? "\"" : "") + "\nkey: \"b\"\n", limit);
    }
}

TEST(ScanQuoted, RandomPositionsMovingForwardAreScannedAsByTheCLibrary) {
    Random random(5);
    for (unsigned i = 0; i < 3000; ++i) {
        std::string shown;
        while (shown.size() < 60) {
            const char *const pieces[] = {"key:", ": ", "\"", "\"a\"", "\n", ":\"", "b", " "};
            shown += pieces[random() % std::size(pieces)];
        }
        const auto text = exact_copy(shown);
        Text reader(text.get());
        for (size_t at = random() % 4; at <= shown.size(); at += random() % 6) {
            ASSERT_EQ(std::string(reader.scan_quoted(text.get() + at, 298)),
                      value_of_c_library("key" + shown.substr(at), 298))
                << testing::PrintToString(shown) << " from " << at;
        }
    }
}

// --- Text::find_quote ----------------------------------------------------------------------------

TEST(FindQuote, FindsTheFirstQuoteFromThePositionOn) {
    const auto text = exact_copy("ab\"cd\"e");
    EXPECT_EQ(Text(text.get()).find_quote(text.get()), text.get() + 2);
    EXPECT_EQ(Text(text.get()).find_quote(text.get() + 3), text.get() + 5);
}

TEST(FindQuote, FindsAQuoteAtThePositionItself) {
    const auto text = exact_copy("\"a\"");
    EXPECT_EQ(Text(text.get()).find_quote(text.get()), text.get());
    EXPECT_EQ(Text(text.get()).find_quote(text.get() + 2), text.get() + 2);
}

TEST(FindQuote, GivesTheEndWhenThereIsNone) {
    const auto text = exact_copy("a\"bc");
    Text reader(text.get());
    EXPECT_EQ(reader.find_quote(text.get() + 2), reader.end());
    EXPECT_EQ(reader.find_quote(reader.end()), reader.end());
}

TEST(FindQuote, FindsTheNextQuoteOnceThePositionIsAfterTheRememberedOne) {
    const auto text = exact_copy("a\"b\"\"");
    Text reader(text.get());
    EXPECT_EQ(reader.find_quote(text.get()), text.get() + 1);
    EXPECT_EQ(reader.find_quote(text.get() + 1), text.get() + 1);
    EXPECT_EQ(reader.find_quote(text.get() + 2), text.get() + 3);
    EXPECT_EQ(reader.find_quote(text.get() + 4), text.get() + 4);
    EXPECT_EQ(reader.find_quote(text.get() + 5), reader.end());
}

// A text does not change while it is read. Here it does, to show that nobody looks again.
TEST(FindQuote, RemembersAQuoteItFound) {
    const auto text = exact_copy("abcdef\"");
    Text reader(text.get());
    EXPECT_EQ(reader.find_quote(text.get()), text.get() + 6);
    text[3] = '"';
    EXPECT_EQ(reader.find_quote(text.get() + 1), text.get() + 6);
    EXPECT_EQ(reader.find_quote(text.get() + 3), text.get() + 6);
}

TEST(FindQuote, RemembersThatThereIsNone) {
    const auto text = exact_copy("abcdef");
    Text reader(text.get());
    EXPECT_EQ(reader.find_quote(text.get()), reader.end());
    text[3] = '"';
    EXPECT_EQ(reader.find_quote(text.get() + 1), reader.end());
    EXPECT_EQ(reader.find_quote(text.get() + 3), reader.end());
}

TEST(FindQuote, RandomPositionsMovingForwardGiveTheAnswerOfAFreshSearch) {
    Random random(6);
    for (unsigned i = 0; i < 10000; ++i) {
        const std::string shown = random_text(random, "\"a\n :", 40);
        const auto text = exact_copy(shown);
        Text reader(text.get());
        for (size_t at = random() % 3; at <= shown.size(); at += random() % 4) {
            const char *quote = std::strchr(text.get() + at, '"');
            ASSERT_EQ(static_cast<const void *>(reader.find_quote(text.get() + at)),
                      quote != nullptr ? quote : text.get() + shown.size())
                << testing::PrintToString(shown) << " from " << at;
        }
    }
}

// --- Text::end, Text::has and Text::after_line ---------------------------------------------------

TEST(TextEnd, IsTheTextsNul) {
    const auto text = exact_copy("abc");
    EXPECT_EQ(Text(text.get()).end(), text.get() + 3);
    const auto empty = exact_copy("");
    EXPECT_EQ(Text(empty.get()).end(), empty.get());
}

TEST(TextHas, CountsTheCharactersBeforeTheNul) {
    const auto text = exact_copy("abc");
    const Text reader(text.get());
    EXPECT_TRUE(reader.has(text.get(), 3));
    EXPECT_FALSE(reader.has(text.get(), 4));
    EXPECT_TRUE(reader.has(text.get() + 2, 1));
    EXPECT_FALSE(reader.has(text.get() + 2, 2));
    EXPECT_TRUE(reader.has(text.get() + 3, 0));
    EXPECT_FALSE(reader.has(text.get() + 3, 1));
}

TEST(TextAfterLine, IsTheCharacterAfterTheNewline) {
    const auto text = exact_copy("ab\n\n  c\n");
    const Text reader(text.get());
    EXPECT_EQ(reader.after_line(text.get()), text.get() + 3);
    EXPECT_EQ(reader.after_line(text.get() + 1), text.get() + 3);
    EXPECT_EQ(reader.after_line(text.get() + 2), text.get() + 3);
    EXPECT_EQ(reader.after_line(text.get() + 3), text.get() + 4);
    EXPECT_EQ(reader.after_line(text.get() + 4), reader.end());
}

TEST(TextAfterLine, IsTheEndWhenNoNewlineIsLeft) {
    const auto text = exact_copy("a\nbc");
    const Text reader(text.get());
    EXPECT_EQ(reader.after_line(text.get() + 2), reader.end());
    EXPECT_EQ(reader.after_line(reader.end()), reader.end());
}

// --- Text::find_block_end ------------------------------------------------------------------------

/// Where the block ends, counted from the text's beginning. Fails where the plain scanner says
/// otherwise.
ptrdiff_t block_end(const std::string &text, size_t from = 0) {
    const auto copy = exact_copy(text);
    const Text reader(copy.get());
    const char *end = reader.find_block_end(copy.get() + from);
    EXPECT_EQ(end, kvt_str::find_block_end(copy.get() + from)) << testing::PrintToString(text);
    return end - copy.get();
}

TEST(TextFindBlockEnd, IsAfterTheBlanksAfterTheBlock) {
    EXPECT_EQ(block_end("msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n\n msg {\n"),
              56);
    EXPECT_EQ(block_end("a {\n}\nb\n"), 6);
    EXPECT_EQ(block_end("a\nb {\n"), 2);
    EXPECT_EQ(block_end("a { { {\n} b: 1\n  } c: 123456789012345678901234567890\n}\n"), 55);
}

TEST(TextFindBlockEnd, IsTheEndOfATextThatClosesNoBlock) {
    EXPECT_EQ(block_end(""), 0);
    EXPECT_EQ(block_end("msg {\n  type: END_JOB\n"), 22);
    EXPECT_EQ(block_end("} } }\n a: 12345678901234567890\n"), 31);
}

TEST(TextFindBlockEnd, LooksAtEveryCharacterOfATextOfAnyLength) {
    for (size_t length = 0; length <= 40; ++length) {
        const auto end = static_cast<ptrdiff_t>(length);
        EXPECT_EQ(block_end(std::string(length, 'a')), end);
        EXPECT_EQ(block_end(std::string(length, 'a') + "\n"), end + 1);
        EXPECT_EQ(block_end("{\n" + std::string(length, 'a') + "}\n"), end + 4);
    }
}

TEST(TextFindBlockEnd, RandomTextsEndWhereThePlainScannerSays) {
    Random random(11);
    constexpr std::string_view characters = "{}{}\n\n\n \t\"a:{}";
    for (unsigned i = 0; i < 100000 && !HasFailure(); ++i) {
        std::string text;
        for (size_t left = random() % 80; left-- > 0;) {
            // Long stretches of the same character, so that depths grow.
            text.append(random() % 4 == 0 ? random() % 20 : 1,
                        characters[random() % characters.size()]);
        }
        block_end(text, text.empty() ? 0 : random() % text.size());
    }
}

// --- plain_quoted --------------------------------------------------------------------------------

/// The value of a text that stands after a first quote.
std::string plain(const std::string &text) {
    const auto copy = exact_copy(text);
    const std::string_view value = kvt_str::plain_quoted(copy.get(), copy.get() + text.size());
    EXPECT_TRUE(value.empty() || value.data() == copy.get());
    return std::string(value);
}

TEST(PlainQuoted, IsTheValueUpToAQuoteAndANewline) {
    EXPECT_EQ(plain("value\"\n"), "value");
    EXPECT_EQ(plain("a b: 1\t\"\n}\n"), "a b: 1\t");
    for (size_t length = 1; length < 70; ++length) {
        const std::string value(length, 'v');
        EXPECT_EQ(plain(value + "\"\n"), value);
        EXPECT_EQ(plain(value + "\"\n    next: 12345678901234567890\n"), value);
    }
}

TEST(PlainQuoted, LeavesEveryOtherForm) {
    for (size_t length = 0; length < 40; ++length) {
        const std::string value(length, 'v');
        for (const char *rest :
             {"", "\n", "\"", "\" \n", "\"\r\n", "}\"\n", "}v\"\n", "{\"\n", "\nv\"\n"}) {
            EXPECT_EQ(plain(value + rest), "") << value << testing::PrintToString(rest);
        }
    }
    EXPECT_EQ(plain("\"\n"), "");
}

TEST(PlainQuoted, RandomTextsAreThoseOfTheDescription) {
    Random random(12);
    constexpr std::string_view characters = "vvvvvvvvvvvvvvvvvvv vv{:'\t\xFF\x01v\"}\n";
    for (unsigned i = 0; i < 100000 && !HasFailure(); ++i) {
        std::string text;
        for (size_t left = random() % 60; left-- > 0;) {
            text += characters[random() % characters.size()];
        }
        text += "\"\n";
        const size_t stop = text.find_first_of("\"{}\n");
        const bool is_plain = text[stop] == '"' && text[stop + 1] == '\n';
        EXPECT_EQ(plain(text), is_plain ? text.substr(0, stop) : "")
            << testing::PrintToString(text);
    }
}

} // namespace
