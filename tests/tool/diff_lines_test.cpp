// Which lines have changed, and how that is told.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "diff/diff_lines.h"
#include "diff/unified_diff.h"
#include "support/random_records.h"

namespace kvt_tool {
namespace {

/// A text of one line for each letter.
std::string letters(const std::string &word) {
    std::string text;
    for (const char letter : word) {
        text += std::string(1, letter) + "\n";
    }
    return text;
}

/// What marked_lines tells of two such texts, without newlines: ` a-b+c`.
std::string marks(const std::string &a, const std::string &b) {
    std::string text = marked_lines(letters(a), letters(b));
    std::erase(text, '\n');
    return text;
}

TEST(DiffLines, TellLinesThatAreAddedRemovedAndReplaced) {
    EXPECT_EQ(marks("abc", "abc"), " a b c");
    EXPECT_EQ(marks("abc", "axbc"), " a+x b c");
    EXPECT_EQ(marks("abc", "ac"), " a-b c");
    EXPECT_EQ(marks("abc", "axc"), " a-b+x c");
    EXPECT_EQ(marks("", "ab"), "+a+b");
    EXPECT_EQ(marks("ab", ""), "-a-b");
    EXPECT_EQ(marks("", ""), "");
}

TEST(DiffLines, AreAsFewAsPossible) {
    EXPECT_EQ(marks("abcabba", "cbabac").size(), 2 * (7 + 6 - 4)); // four letters are in both
    EXPECT_EQ(marks("1234567890", "0123456789").size(), 2 * 11);
}

/// The most lines that two texts have in common, by the table of all beginnings.
size_t common_lines(const Lines &a, const Lines &b) {
    std::vector<size_t> row(b.size() + 1, 0);
    for (const std::string_view line : a) {
        size_t before = 0;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t both = line == b[j] ? before + 1 : std::max(row[j], row[j + 1]);
            before = row[j + 1];
            row[j + 1] = both;
        }
    }
    return row.back();
}

/// B, made of A and the changes; the lines that are left as they are must be equal in both.
std::string changed(const Lines &a, const Lines &b, const std::vector<LineChange> &changes) {
    std::string text;
    size_t at_a = 0;
    const auto add = [&](const Lines &lines, size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            text += lines[i];
        }
    };
    for (const LineChange &change : changes) {
        EXPECT_LT(change.begin_a + change.begin_b, change.end_a + change.end_b);
        add(a, at_a, change.begin_a);
        add(b, change.begin_b, change.end_b);
        at_a = change.end_a;
    }
    add(a, at_a, a.size());
    return text;
}

TEST(DiffLines, OfRandomTextsMakeOneOfTheOtherWithTheFewestLines) {
    kvt_test::Random random(1);
    for (int i = 0; i < 5000; ++i) {
        const auto some_letters = [&] {
            std::string word;
            for (size_t left = kvt_test::below(random, 30); left != 0; --left) {
                word += static_cast<char>('a' + kvt_test::below(random, 4));
            }
            return letters(word);
        };
        const std::string text_a = some_letters();
        const std::string text_b = some_letters();
        const Lines a = lines_of(text_a);
        const Lines b = lines_of(text_b);
        const std::vector<LineChange> changes = diff_lines(a, b);
        ASSERT_EQ(changed(a, b, changes), text_b) << text_a;
        size_t lines = 0;
        for (const LineChange &change : changes) {
            lines += change.end_a - change.begin_a + change.end_b - change.begin_b;
        }
        EXPECT_EQ(lines, a.size() + b.size() - 2 * common_lines(a, b)) << text_a << text_b;
    }
}

TEST(DiffLines, OfTextsThatHaveLittleInCommonAreFoundSoon) {
    std::string text_a;
    std::string text_b;
    for (int i = 0; i < 100'000; ++i) {
        text_a += std::to_string(i) + "\n";
        text_b += std::to_string(i % 1000 == 0 ? i : -i) + "\n";
    }
    const Lines a = lines_of(text_a);
    const Lines b = lines_of(text_b);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(changed(a, b, diff_lines(a, b)), text_b);
    // The shortest way takes 4e10 steps, many minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

/// The unified diff of two texts, handed over in parts of both.
std::string unified(const std::vector<std::pair<std::string, std::string>> &parts) {
    UnifiedDiff diff("HEAD\n");
    std::string text;
    uint64_t line = 1;
    for (const auto &[a, b] : parts) {
        text += diff.take(marked_lines(a, b), line);
        line += static_cast<uint64_t>(std::ranges::count(a, '\n'));
    }
    text += diff.end();
    EXPECT_EQ(diff.differs(), !text.empty());
    return text;
}

TEST(UnifiedDiff, HasThreeLinesAboutEveryChange) {
    EXPECT_EQ(unified({{letters("abcdefghi"), letters("abcdXfghi") + "\n"}}),
              "HEAD\n@@ -2,7 +2,7 @@\n b\n c\n d\n-e\n+X\n f\n g\n h\n");
    EXPECT_EQ(unified({{letters("abc"), letters("Xbc") + "\n"}}),
              "HEAD\n@@ -1,3 +1,3 @@\n-a\n+X\n b\n c\n");
}

TEST(UnifiedDiff, JoinsChangesThatAreNear) {
    EXPECT_EQ(unified({{letters("a123456b"), letters("A123456B") + "\n"}}),
              "HEAD\n@@ -1,8 +1,8 @@\n-a\n+A\n 1\n 2\n 3\n 4\n 5\n 6\n-b\n+B\n");
    EXPECT_EQ(unified({{letters("a1234567b"), letters("A1234567B") + "\n"}}),
              "HEAD\n@@ -1,4 +1,4 @@\n-a\n+A\n 1\n 2\n 3\n@@ -6,4 +6,4 @@\n 5\n 6\n 7\n-b\n+B\n");
}

TEST(UnifiedDiff, GoesOnFromPartToPart) {
    EXPECT_EQ(unified({{letters("abc"), letters("abX")}, {letters("def"), letters("def") + "\n"}}),
              "HEAD\n@@ -1,6 +1,6 @@\n a\n b\n-c\n+X\n d\n e\n f\n");
}

TEST(UnifiedDiff, HasNoEmptyLineAfterTheLastMessage) {
    EXPECT_EQ(unified({{letters("ab"), letters("ab") + "\n"}}), "");
    EXPECT_EQ(unified({{"a\n\n", "a\n\n"}}), "HEAD\n@@ -1,2 +1,1 @@\n a\n-\n");
    EXPECT_EQ(unified({{"a\n\n\n", "a\n\n"}, {"x\n", ""}}),
              "HEAD\n@@ -1,4 +1,1 @@\n a\n-\n-\n-x\n");
    EXPECT_EQ(unified({{"a\n", "a\n\n"}, {"b\n", "b\n\n"}}), "HEAD\n@@ -1,2 +1,3 @@\n a\n+\n b\n");
}

TEST(UnifiedDiff, TellsOfALastLineWithoutANewline) {
    EXPECT_EQ(unified({{"a\nb", "a\nb\n\n"}}),
              "HEAD\n@@ -1,2 +1,2 @@\n a\n-b\n\\ No newline at end of file\n+b\n");
}

TEST(UnifiedDiff, SaysWhereTextsThatAreEmptyBegin) {
    EXPECT_EQ(unified({{"a\n", ""}}), "HEAD\n@@ -1,1 +0,0 @@\n-a\n");
    EXPECT_EQ(unified({{"", "a\n\n"}}), "HEAD\n@@ -0,0 +1,1 @@\n+a\n");
}

TEST(UnifiedDiff, KeepsTheLinesOfTheFileWhereSomeAreLeftOut) {
    UnifiedDiff diff("HEAD\n");
    std::string text = diff.take("-x\n a\n", 1);
    text += diff.take(" b\n-c\n+C\n", 100);
    text += diff.end();
    EXPECT_EQ(text, "HEAD\n@@ -1,2 +1,1 @@\n-x\n a\n@@ -100,2 +2,2 @@\n b\n-c\n+C\n");
}

} // namespace
} // namespace kvt_tool
