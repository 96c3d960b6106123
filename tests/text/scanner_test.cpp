// The five functions that step through a text. Every text lies in a heap block of exactly its size,
// so that a sanitizer sees one byte too far.
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "kvt/kvt_str.h"
#include "support/exact_copy.h"

namespace {

using kvt_test::exact_copy;
using Random = std::mt19937_64;

/// What the text goes on with from where next_line leads.
std::string rest_at_next_line(std::string_view text) {
    const auto copy = exact_copy(text);
    return next_line(copy.get());
}

int opens(std::string_view line) {
    return check_start_msg(exact_copy(line).get());
}

int closes(std::string_view line) {
    return check_end_msg(exact_copy(line).get());
}

/// What the text goes on with from where find_end_msg leads.
std::string rest_after_block(std::string_view text) {
    const auto copy = exact_copy(text);
    return find_end_msg(copy.get());
}

/// What the text goes on with from where next_msg leads; nothing for a null pointer.
std::optional<std::string> rest_at_next_msg(std::string_view text, uint32_t length) {
    const auto copy = exact_copy(text);
    const char *next = next_msg(copy.get(), length);
    return next != nullptr ? std::optional<std::string>(next) : std::nullopt;
}

// --- next_line -----------------------------------------------------------------------------------

TEST(NextLine, LeadsToTheCharacterAfterTheNewline) {
    EXPECT_EQ(rest_at_next_line("job_id: 5\nstate: 1\n"), "state: 1\n");
}

TEST(NextLine, SkipsEmptyLinesSpacesAndTabs) {
    EXPECT_EQ(rest_at_next_line("job_id: 5\n\n\t  state: 1\n"), "state: 1\n");
    EXPECT_EQ(rest_at_next_line("job_id: 5\n \n\t\n\n \t state: 1\n"), "state: 1\n");
}

TEST(NextLine, StopsAtACarriageReturn) {
    EXPECT_EQ(rest_at_next_line("job_id: 5\r\n \r\nstate: 1\n"), "\r\nstate: 1\n");
}

TEST(NextLine, StopsAtOtherBlanksOfTheCLibrary) {
    EXPECT_EQ(rest_at_next_line("a\n \vb"), "\vb");
    EXPECT_EQ(rest_at_next_line("a\n \fb"), "\fb");
}

TEST(NextLine, LooksForTheNewlineFromTheMiddleOfALineToo) {
    const auto text = exact_copy("job_id: 5\n  state: 1\n");
    EXPECT_EQ(next_line(text.get() + 4), text.get() + 12);
}

TEST(NextLine, TakesANewlineAtThePositionItselfForTheLinesEnd) {
    EXPECT_EQ(rest_at_next_line("\nstate: 1\nnode: 2\n"), "state: 1\nnode: 2\n");
}

TEST(NextLine, LeadsToTheNulAfterTheLastLine) {
    const auto text = exact_copy("job_id: 5\n");
    EXPECT_EQ(next_line(text.get()), text.get() + 10);
}

TEST(NextLine, LeadsToTheNulAfterBlanks) {
    const auto text = exact_copy("a\n \t\n ");
    EXPECT_EQ(next_line(text.get()), text.get() + 6);
}

TEST(NextLine, LeadsToTheNulWhenNoNewlineIsLeft) {
    const auto text = exact_copy("job_id: 5");
    EXPECT_EQ(next_line(text.get()), text.get() + 9);
}

TEST(NextLine, StaysAtTheNul) {
    const auto text = exact_copy("");
    EXPECT_EQ(next_line(text.get()), text.get());
}

TEST(NextLine, GivesNullForNull) {
    EXPECT_EQ(next_line(nullptr), nullptr);
}

// --- check_start_msg and check_end_msg -----------------------------------------------------------

TEST(CheckStartMsg, FindsTheBraceAnywhereInTheLine) {
    EXPECT_EQ(opens("{ quota\n"), 1);
    EXPECT_EQ(opens("  quota {\n"), 1);
    EXPECT_EQ(opens("name: \"a{b\"\n"), 1);
    EXPECT_EQ(opens("{\n"), 1);
}

TEST(CheckStartMsg, FindsTheBraceAmongOthers) {
    EXPECT_EQ(opens("}{\n"), 1);
    EXPECT_EQ(opens("}} a { } {\n"), 1);
}

TEST(CheckStartMsg, RefusesALineWithoutTheBrace) {
    EXPECT_EQ(opens("job_id: 5\n"), 0);
    EXPECT_EQ(opens("}\n"), 0);
    EXPECT_EQ(opens("([<\n"), 0);
}

TEST(CheckStartMsg, DoesNotLookAtLaterLines) {
    EXPECT_EQ(opens("job_id: 5\nquota {\n"), 0);
}

TEST(CheckStartMsg, DoesNotLookBeforeThePosition) {
    const auto text = exact_copy("quota { a\n");
    EXPECT_EQ(check_start_msg(text.get() + 7), 0);
}

TEST(CheckStartMsg, RefusesALineThatIsItselfANewline) {
    EXPECT_EQ(opens("\nquota {\n"), 0);
    EXPECT_EQ(opens("\n{\n"), 0);
}

TEST(CheckStartMsg, NeverCountsALastLineWithoutNewline) {
    EXPECT_EQ(opens("  quota {"), 0);
    EXPECT_EQ(opens("{"), 0);
}

TEST(CheckStartMsg, TakesACarriageReturnForAnyCharacter) {
    EXPECT_EQ(opens("quota\r{\r\n"), 1);
    EXPECT_EQ(opens("quota {\r"), 0);
}

TEST(CheckStartMsg, RefusesTheEmptyTextAndNull) {
    EXPECT_EQ(opens(""), 0);
    EXPECT_EQ(check_start_msg(nullptr), 0);
}

TEST(CheckEndMsg, FindsTheBraceAnywhereInTheLine) {
    EXPECT_EQ(closes("  }\n"), 1);
    EXPECT_EQ(closes("} quota\n"), 1);
    EXPECT_EQ(closes("job_id: 5 }\n"), 1);
    EXPECT_EQ(closes("}\n"), 1);
}

TEST(CheckEndMsg, FindsTheBraceAmongOthers) {
    EXPECT_EQ(closes("{}\n"), 1);
    EXPECT_EQ(closes("{{ a } { }\n"), 1);
}

TEST(CheckEndMsg, RefusesALineWithoutTheBrace) {
    EXPECT_EQ(closes("job_id: 5\n"), 0);
    EXPECT_EQ(closes("quota {\n"), 0);
    EXPECT_EQ(closes(")]>\n"), 0);
}

TEST(CheckEndMsg, DoesNotLookAtLaterLines) {
    EXPECT_EQ(closes("job_id: 5\n}\n"), 0);
}

TEST(CheckEndMsg, DoesNotLookBeforeThePosition) {
    const auto text = exact_copy("a } b\n");
    EXPECT_EQ(check_end_msg(text.get() + 3), 0);
}

TEST(CheckEndMsg, RefusesALineThatIsItselfANewline) {
    EXPECT_EQ(closes("\n}\n"), 0);
}

TEST(CheckEndMsg, NeverCountsALastLineWithoutNewline) {
    EXPECT_EQ(closes("  }"), 0);
    EXPECT_EQ(closes("  }\n"), 1);
    EXPECT_EQ(closes("}"), 0);
}

TEST(CheckEndMsg, TakesACarriageReturnForAnyCharacter) {
    EXPECT_EQ(closes("a\r}\r\n"), 1);
    EXPECT_EQ(closes("a }\r"), 0);
}

TEST(CheckEndMsg, RefusesTheEmptyTextAndNull) {
    EXPECT_EQ(closes(""), 0);
    EXPECT_EQ(check_end_msg(nullptr), 0);
}

// --- find_end_msg --------------------------------------------------------------------------------

TEST(FindEndMsg, LeadsAfterTheBlocksClosingLine) {
    EXPECT_EQ(rest_after_block("quota {\n"
                               "  id: 1\n"
                               "}\n"
                               "state: 1\n"),
              "state: 1\n");
}

TEST(FindEndMsg, LeadsAfterABlockThatHoldsAnother) {
    EXPECT_EQ(rest_after_block("quota {\n"
                               "  range {\n"
                               "    id: 1\n"
                               "  }\n"
                               "  id: 2\n"
                               "}\n"
                               "state: 1\n"),
              "state: 1\n");
}

TEST(FindEndMsg, SkipsALineWithoutBracesAlone) {
    EXPECT_EQ(rest_after_block("job_id: 5\nquota {\n}\n"), "quota {\n}\n");
    EXPECT_EQ(rest_after_block("job_id: 5\n}\n"), "}\n");
}

TEST(FindEndMsg, SkipsAnEmptyLineAlone) {
    EXPECT_EQ(rest_after_block("\nquota {\n}\nstate: 1\n"), "quota {\n}\nstate: 1\n");
}

TEST(FindEndMsg, SkipsBlanksAfterTheBlock) {
    EXPECT_EQ(rest_after_block("quota {\n}\n\n\t  \n  state: 1\n"), "state: 1\n");
}

TEST(FindEndMsg, StopsAtACarriageReturnAfterTheBlock) {
    EXPECT_EQ(rest_after_block("quota {\r\n}\r\n\r\nstate: 1\n"), "\r\nstate: 1\n");
}

TEST(FindEndMsg, GoesOnAfterALineThatClosesAndOpens) {
    EXPECT_EQ(rest_after_block("quota {\n"
                               "} {\n"
                               "  id: 1\n"
                               "}\n"
                               "state: 1\n"),
              "state: 1\n");
}

TEST(FindEndMsg, CountsEveryBraceOfALine) {
    EXPECT_EQ(rest_after_block("a { b {\n}\nc\n}\nd\n"), "d\n");
    EXPECT_EQ(rest_after_block("a { {\nb\n}}\nc\n"), "c\n");
    EXPECT_EQ(rest_after_block("a {\n}{}{ {\n}\n}\nb\n"), "b\n");
}

TEST(FindEndMsg, EndsWithALineThatOpensAndCloses) {
    EXPECT_EQ(rest_after_block("a { b }\nc\n"), "c\n");
    EXPECT_EQ(rest_after_block("}{\nc\n"), "c\n");
    EXPECT_EQ(rest_after_block("a {{}}\nb {\n}\n"), "b {\n}\n");
}

TEST(FindEndMsg, CountsBracesInQuotedTextsToo) {
    EXPECT_EQ(rest_after_block("a {\nname: \"}\"\n}\nb\n"), "}\nb\n");
    EXPECT_EQ(rest_after_block("a {\nname: \"{\"\n}\nb\n}\nc\n"), "c\n");
}

TEST(FindEndMsg, LooksAtTheDepthOnlyWhereALineEnds) {
    EXPECT_EQ(rest_after_block("a {\n} {\nb\n}\nc\n"), "c\n");
    EXPECT_EQ(rest_after_block("a {\n}   b: 1\nc\n"), "c\n");
}

TEST(FindEndMsg, GoesOnUntilAFirstClosingLineIsMadeUpFor) {
    EXPECT_EQ(rest_after_block("}\n"
                               "a: 1\n"
                               "b {\n"
                               "c: 2\n"),
              "c: 2\n");
}

TEST(FindEndMsg, StartsToCountAtThePosition) {
    const auto text = exact_copy("{ {\n}\na\n}\n");
    EXPECT_EQ(find_end_msg(text.get() + 1), text.get() + 6);
}

TEST(FindEndMsg, LeadsToTheNulAfterTheLastBlock) {
    const auto text = exact_copy("quota {\n}\n");
    EXPECT_EQ(find_end_msg(text.get()), text.get() + 10);
}

TEST(FindEndMsg, LeadsToTheNulWhenTheBlockIsNeverClosed) {
    const auto text = exact_copy("a {\n  b {\n  }\n");
    EXPECT_EQ(find_end_msg(text.get()), text.get() + 14);
    const auto line = exact_copy("a {\n");
    EXPECT_EQ(find_end_msg(line.get()), line.get() + 4);
}

TEST(FindEndMsg, LeadsToTheNulWhenTheClosingLineHasNoNewline) {
    const auto text = exact_copy("a {\n}");
    EXPECT_EQ(find_end_msg(text.get()), text.get() + 5);
    const auto line = exact_copy("a { }");
    EXPECT_EQ(find_end_msg(line.get()), line.get() + 5);
    const auto plain = exact_copy("a");
    EXPECT_EQ(find_end_msg(plain.get()), plain.get() + 1);
}

TEST(FindEndMsg, StaysAtTheNul) {
    const auto text = exact_copy("");
    EXPECT_EQ(find_end_msg(text.get()), text.get());
}

TEST(FindEndMsg, CountsAsDeepAsTheTextGoes) {
    std::string text;
    for (unsigned i = 0; i < 100000; ++i) {
        text += "a {\n";
    }
    for (unsigned i = 0; i < 100000; ++i) {
        text += "}\n";
    }
    EXPECT_EQ(rest_after_block(text + "b\n"), "b\n");
}

TEST(FindEndMsg, GivesNullForNull) {
    EXPECT_EQ(find_end_msg(nullptr), nullptr);
}

// --- next_msg ------------------------------------------------------------------------------------

TEST(NextMsg, LeadsToTheNextLineThatIsNotBlank) {
    EXPECT_EQ(rest_at_next_msg("}\nmsg {\n", 8), "msg {\n");
    EXPECT_EQ(rest_at_next_msg("}\n\n \t\n  msg {\n", 14), "msg {\n");
}

TEST(NextMsg, TakesANewlineAtThePositionItselfForTheLinesEnd) {
    EXPECT_EQ(rest_at_next_msg("\nmsg {\n", 7), "msg {\n");
}

TEST(NextMsg, GivesNullForLengthZero) {
    EXPECT_EQ(rest_at_next_msg("}\nmsg {\n", 0), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("\nmsg {\n", 0), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("", 0), std::nullopt);
}

TEST(NextMsg, GivesNullWhenTheNewlineIsBeyondTheLength) {
    EXPECT_EQ(rest_at_next_msg("abc\nmsg {\n", 1), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("abc\nmsg {\n", 2), std::nullopt);
}

TEST(NextMsg, GivesNullWhenTheNewlineIsJustAfterTheLength) {
    EXPECT_EQ(rest_at_next_msg("abc\nmsg {\n", 3), std::nullopt);
}

TEST(NextMsg, ReturnsACandidateExactlyAtTheLengthsEnd) {
    EXPECT_EQ(rest_at_next_msg("abc\nmsg {\n", 4), "msg {\n");
    EXPECT_EQ(rest_at_next_msg("a\n\n  msg {\n", 5), "msg {\n");
}

TEST(NextMsg, StepsOverANewlineAtTheLengthsEndAndThenGivesNull) {
    EXPECT_EQ(rest_at_next_msg("a\n\nmsg {\n", 2), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("a\n\nmsg {\n", 3), "msg {\n");
    EXPECT_EQ(rest_at_next_msg("a\n\n\nmsg {\n", 3), std::nullopt);
}

TEST(NextMsg, SkipsSpacesAndTabsOnlyInsideTheLength) {
    EXPECT_EQ(rest_at_next_msg("a\n \tmsg {\n", 2), " \tmsg {\n");
    EXPECT_EQ(rest_at_next_msg("a\n \tmsg {\n", 3), "\tmsg {\n");
    EXPECT_EQ(rest_at_next_msg("a\n \tmsg {\n", 4), "msg {\n");
}

TEST(NextMsg, ReturnsABlankAtTheLengthsEndAfterAnEmptyLineToo) {
    EXPECT_EQ(rest_at_next_msg("a\n \n msg {\n", 4), " msg {\n");
}

TEST(NextMsg, StopsAtACarriageReturn) {
    EXPECT_EQ(rest_at_next_msg("}\r\n\r\nmsg {\n", 11), "\r\nmsg {\n");
}

TEST(NextMsg, LooksPastBracesAndQuotes) {
    EXPECT_EQ(rest_at_next_msg("{ \"\nmsg {\n", 10), "msg {\n");
}

TEST(NextMsg, GivesNullWhenNoNewlineIsLeft) {
    EXPECT_EQ(rest_at_next_msg("abc", 3), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("abc", 4), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("", 1), std::nullopt);
}

TEST(NextMsg, LeadsToTheNulAfterTheLastLine) {
    EXPECT_EQ(rest_at_next_msg("}\n", 2), "");
    EXPECT_EQ(rest_at_next_msg("}\n \n\t", 5), "");
    EXPECT_EQ(rest_at_next_msg("}\n", 1), std::nullopt);
}

TEST(NextMsg, StopsAtTheNulHoweverGreatTheLength) {
    EXPECT_EQ(rest_at_next_msg("}\n", 3), "");
    EXPECT_EQ(rest_at_next_msg("}\n\n ", 1000), "");
    EXPECT_EQ(rest_at_next_msg("abc", 1000), std::nullopt);
    EXPECT_EQ(rest_at_next_msg("}\n msg {\n", 1000), "msg {\n");
}

TEST(NextMsg, TakesTheGreatestLength) {
    EXPECT_EQ(rest_at_next_msg("}\n\n msg {\n", UINT32_MAX), "msg {\n");
    EXPECT_EQ(rest_at_next_msg("}\n", UINT32_MAX), "");
    EXPECT_EQ(rest_at_next_msg("abc", UINT32_MAX), std::nullopt);
}

TEST(NextMsg, GivesNullForNull) {
    EXPECT_EQ(next_msg(nullptr, 5), nullptr);
    EXPECT_EQ(next_msg(nullptr, 0), nullptr);
}

// --- All five once more, byte by byte ------------------------------------------------------------

bool is_scanner_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

const char *literal_next_line(const char *at) {
    while (*at != '\n') {
        if (*at == '\0') {
            return at;
        }
        ++at;
    }
    while (is_scanner_blank(*at)) {
        ++at;
    }
    return at;
}

int literal_check(const char *at, char brace) {
    bool found = false;
    while (*at != '\n') {
        if (*at == '\0') {
            return 0;
        }
        if (*at == brace) {
            found = true;
        }
        ++at;
    }
    return found ? 1 : 0;
}

const char *literal_find_end_msg(const char *at) {
    long depth = 0;
    do {
        for (const char *c = at; *c != '\n' && *c != '\0'; ++c) {
            if (*c == '{') {
                ++depth;
            }
            if (*c == '}') {
                --depth;
            }
        }
        at = literal_next_line(at);
    } while (*at != '\0' && depth != 0);
    return at;
}

const char *literal_next_msg(const char *text, uint32_t length) {
    if (length == 0) {
        return nullptr;
    }
    const char *candidate = std::strchr(text, '\n');
    if (candidate == nullptr) {
        return nullptr;
    }
    ++candidate;
    const auto distance = [&] {
        return static_cast<uint64_t>(candidate - text);
    };
    if (distance() > length) {
        return nullptr;
    }
    for (;;) {
        while (distance() < length && (*candidate == ' ' || *candidate == '\t')) {
            ++candidate;
        }
        if (distance() > length) {
            return nullptr;
        }
        if (*candidate != '\n') {
            return candidate;
        }
        ++candidate;
    }
}

std::string random_text(Random &random, std::string_view alphabet, size_t longest) {
    std::string text(random() % (longest + 1), '\0');
    for (char &c : text) {
        c = alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST(Scanner, RandomTextsAreSteppedThroughAsByteByByte) {
    constexpr std::string_view alphabets[] = {" \t\n\r{}a:\"", "\n{}", "a\n ", "{}{}{}\n\n a",
                                              " \t\n\v\f\r{}a:\"[|~\x7f\x80\xfb\xfd\xff\x01"};
    Random random(1);
    for (unsigned i = 0; i < 60000; ++i) {
        const std::string shown = random_text(random, alphabets[i % std::size(alphabets)], 24);
        const auto text = exact_copy(shown);
        const char *at = text.get();
        SCOPED_TRACE(testing::Message() << "text " << testing::PrintToString(shown));
        ASSERT_EQ(next_line(at) - at, literal_next_line(at) - at);
        ASSERT_EQ(check_start_msg(at), literal_check(at, '{'));
        ASSERT_EQ(check_end_msg(at), literal_check(at, '}'));
        ASSERT_EQ(find_end_msg(at) - at, literal_find_end_msg(at) - at);
    }
}

TEST(NextMsg, RandomTextsAreSteppedThroughAsByteByByte) {
    constexpr std::string_view alphabets[] = {" \t\n\r{}a:\"", "a\n ", "\n \t", "a\n"};
    Random random(2);
    for (unsigned i = 0; i < 20000; ++i) {
        const std::string shown = random_text(random, alphabets[i % std::size(alphabets)], 16);
        const auto text = exact_copy(shown);
        const char *at = text.get();
        for (uint32_t length = 0; length <= shown.size() + 2; ++length) {
            ASSERT_EQ(static_cast<const void *>(next_msg(at, length)), literal_next_msg(at, length))
                << "text " << testing::PrintToString(shown) << " length " << length;
        }
        ASSERT_EQ(static_cast<const void *>(next_msg(at, UINT32_MAX)),
                  literal_next_msg(at, UINT32_MAX))
            << "text " << testing::PrintToString(shown);
    }
}

} // namespace
