// Which messages of two sequences are compared with each other.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "diff/align_messages.h"
#include "diff/diff_messages.h"
#include "diff/diff_text.h"
#include "support/messages.h"
#include "support/random_records.h"

namespace kvt_tool {
namespace {

/// Messages given by words: E5 is END_JOB of job 5, E5:7 has 7 as its reservation; S7 is AM_SIGNAL
/// with the flags 7. Message i begins in line i, counted from 1.
class Words : public MessageSource {
public:
    Words(const char *name, const std::string &words)
        : name_(std::make_shared<const std::string>(name)), words_(words) {}

    std::optional<Message> next() override {
        std::string word;
        if (!(words_ >> word)) {
            return std::nullopt;
        }
        ++read_;
        const size_t colon = word.find(':');
        const std::string number = word.substr(1, colon - 1);
        const char *kind_name = word[0] == 'E' ? "END_JOB" : "AM_SIGNAL";
        std::string block = word[0] == 'E' ? "end_job {\n job_id: " + number + "\n"
                                           : "am_signal {\n flags: " + number + "\n";
        if (colon != std::string::npos) {
            block += "reservation_id: " + word.substr(colon + 1) + "\n";
        }
        void *record = nullptr;
        const std::string text = kvt_test::message_text(kind_name, block + "}\n");
        kvt_msg_from_str(0, 0, text.c_str(), &record);
        const MessageKind *kind = kvt_str::find_kind(kind_name);
        return Message{{*kind, record}, name_, read_, 100};
    }

    size_t read() const { return read_; }

private:
    std::shared_ptr<const std::string> name_;
    std::istringstream words_;
    size_t read_ = 0;
};

/// `count` words from a number on, such as "E5 E6 E7".
std::string words_from(size_t first, size_t count, const std::string &after = "") {
    std::string words;
    for (size_t i = first; i < first + count; ++i) {
        words += "E" + std::to_string(i) + after + " ";
    }
    return words;
}

/// The places of all differences: "2-3" for pairs, "2-" and "-3" for what one side has.
std::string places(const std::string &words_a, const std::string &words_b,
                   const LookAhead &look_ahead = {}) {
    Words a("a", words_a);
    Words b("b", words_b);
    std::string found;
    const auto place = [](const Message *message) {
        return message != nullptr ? std::to_string(message->first_line) : "";
    };
    diff_messages(
        a, b,
        [&](const MessageDifference &difference) {
            found += place(difference.a) + "-" + place(difference.b) + " ";
        },
        look_ahead);
    return found;
}

TEST(DiffMessages, TellsNothingOfEqualSequences) {
    EXPECT_EQ(places("", ""), "");
    EXPECT_EQ(places("E1 S1 E2", "E1 S1 E2"), "");
}

TEST(DiffMessages, FindsWhatIsInserted) {
    EXPECT_EQ(places("E1 E2 E3", "E9 E1 E2 E3"), "-1 ");
    EXPECT_EQ(places("E1 E2 E3", "E1 E2 E8 E9 E3"), "-3 -4 ");
    EXPECT_EQ(places("E1 E2 E3", "E1 E2 E3 E4"), "-4 ");
}

TEST(DiffMessages, FindsWhatIsLeftOut) {
    EXPECT_EQ(places("E1 E2 E3 E4", "E2 E4"), "1- 3- ");
}

TEST(DiffMessages, ComparesMessagesOfOneIdentity) {
    EXPECT_EQ(places("E1 E2:1 E3", "E1 E2:2 E3"), "2-2 ");
    EXPECT_EQ(places("E1:1 E2:1 E3:1", "E9 E1:2 E2:2 E3:2"), "-1 1-2 2-3 3-4 ");
}

TEST(DiffMessages, ComparesMessagesWithoutIdentityByTheirKind) {
    EXPECT_EQ(places("S1 E1 S3", "S2 E1 S4"), "1-1 3-3 ");
}

TEST(DiffMessages, NeverComparesMessagesOfOtherIdentityOrKind) {
    EXPECT_EQ(places("E1", "E2"), "1- -1 ");
    EXPECT_EQ(places("E1", "S1"), "1- -1 ");
}

TEST(DiffMessages, PairsEqualMessagesWhereIdentitiesRepeat) {
    EXPECT_EQ(places("E5:1 E5:2 E5:3", "E5:9 E5:1 E5:2 E5:3"), "-1 ");
    EXPECT_EQ(places("E5:1 E5:2 E5:3 E5:4", "E5:1 E5:3 E5:4"), "2- ");
}

TEST(DiffMessages, IsNotMisledByMessagesThatAreTheSameEverywhere) {
    EXPECT_EQ(places("E1 S1 E2 S1 E3 S1 E4", "E9 S1 E1 S1 E2 S1 E3 S1 E4"), "-1 -2 ");
    EXPECT_EQ(places("E1:1 S1 E2:1 S1 E3:1 S1", "E1:2 S1 S1 E2:2 S1 E3:2 S1"), "1-1 -3 3-4 5-6 ");
}

TEST(DiffMessages, FindsInsertionsThatAreShorterThanWhatIsReadAhead) {
    std::string expected;
    for (size_t i = 1; i <= 900; ++i) {
        expected += "-" + std::to_string(i) + " ";
    }
    const std::string common = words_from(5000, 3000);
    EXPECT_EQ(places(common, words_from(1, 900) + common), expected);
}

TEST(DiffMessages, GoesOnAfterInsertionsThatAreLonger) {
    EXPECT_EQ(places("E1 E2 E3", words_from(11, 7) + "E1 E2 E3", {.messages = 4}),
              "-1 -2 -3 -4 -5 -6 -7 ");
    EXPECT_EQ(places("E1", words_from(10, 3), {.messages = 1}), "1- -1 -2 -3 ");
}

TEST(DiffMessages, ReadFewMessagesAheadWhereTheSidesSoonAgreeAgain) {
    Words a("a", "E1 " + words_from(100, 500));
    Words b("b", "E2 " + words_from(100, 500));
    bool reported = false;
    diff_messages(a, b, [&](const MessageDifference &) {
        EXPECT_LE(a.read(), 20U);
        EXPECT_LE(b.read(), 20U);
        reported = true;
    });
    EXPECT_TRUE(reported);
}

TEST(DiffMessages, ReadNoFurtherAheadThanTheyMay) {
    Words a("a", words_from(1, 500));
    Words b("b", words_from(1001, 500));
    size_t taken = 0;
    diff_messages(a, b,
                  [&](const MessageDifference &) {
                      EXPECT_LE(a.read() + b.read(), taken + 20);
                      ++taken;
                  },
                  {.messages = 10});
    EXPECT_EQ(taken, 1000U);
}

TEST(DiffMessages, ReadNoMoreTextAheadThanTheyMay) {
    Words a("a", words_from(1, 500));
    Words b("b", words_from(1001, 500));
    size_t taken = 0;
    diff_messages(a, b,
                  [&](const MessageDifference &) {
                      EXPECT_LE(a.read() + b.read(), taken + 10);
                      ++taken;
                  },
                  {.text = 500});
    EXPECT_EQ(taken, 1000U);
}

TEST(DiffMessages, TakeEveryMessageOnceAndInOrder) {
    kvt_test::Random random(3);
    for (int i = 0; i < 2000; ++i) {
        const auto some_words = [&] {
            std::string words;
            for (size_t left = kvt_test::below(random, 12); left != 0; --left) {
                words += kvt_test::below(random, 4) == 0 ? "S" : "E";
                words += std::to_string(kvt_test::below(random, 4)) + " ";
            }
            return words;
        };
        Words a("a", some_words());
        Words b("b", some_words());
        uint64_t last_a = 0;
        uint64_t last_b = 0;
        const DiffSummary summary =
            diff_messages(a, b,
                          [&](const MessageDifference &difference) {
                              if (difference.a != nullptr) {
                                  EXPECT_GT(difference.a->first_line, last_a);
                                  last_a = difference.a->first_line;
                              }
                              if (difference.b != nullptr) {
                                  EXPECT_GT(difference.b->first_line, last_b);
                                  last_b = difference.b->first_line;
                              }
                              EXPECT_EQ(difference.a != nullptr && difference.b != nullptr,
                                        !difference.differences.empty());
                          },
                          {.messages = 1 + kvt_test::below(random, 14)});
        EXPECT_EQ(summary.equal + summary.differing + summary.only_in_a, a.read());
        EXPECT_EQ(summary.equal + summary.differing + summary.only_in_b, b.read());
    }
}

TEST(DiffMessages, AreCounted) {
    Words a("a", "E1 E2:1 E3 E4");
    Words b("b", "E1 E2:2 E4 E5 E6");
    const DiffSummary summary = diff_messages(a, b, [](const MessageDifference &) {});
    EXPECT_EQ(summary.equal, 2U);
    EXPECT_EQ(summary.differing, 1U);
    EXPECT_EQ(summary.only_in_a, 1U);
    EXPECT_EQ(summary.only_in_b, 2U);
    EXPECT_FALSE(summary.all_equal());
    EXPECT_TRUE(DiffSummary().all_equal());
}

/// Messages of which one field is not compared.
class IgnoringWords : public Words {
public:
    IgnoringWords(const char *name, const std::string &words, const char *ignored)
        : Words(name, words), paths_{std::get<FieldPath>(FieldPath::parse(ignored))} {}

    std::optional<Message> next() override {
        std::optional<Message> message = Words::next();
        if (message.has_value()) {
            message->ignored.add(paths_, message->kind(), message->record());
        }
        return message;
    }

private:
    std::vector<FieldPath> paths_;
};

TEST(DiffMessages, AreEqualWhereOnlyIgnoredFieldsDiffer) {
    IgnoringWords a("a", words_from(1, 500, ":1"), "reservation_id");
    IgnoringWords b("b", words_from(1, 500, ":2"), "reservation_id");
    const DiffSummary summary = diff_messages(a, b, [&](const MessageDifference &) { FAIL(); });
    EXPECT_EQ(summary.equal, 500U);
    EXPECT_TRUE(summary.all_equal());
}

TEST(DiffMessages, AreMatchedByWhatIsNotIgnored) {
    IgnoringWords a("a", "E1:1 E2:1", "reservation_id");
    IgnoringWords b("b", "E3:1 E1:2 E2:3", "reservation_id");
    uint64_t line = 0;
    const DiffSummary summary = diff_messages(
        a, b, [&](const MessageDifference &difference) { line = difference.b->first_line; });
    EXPECT_EQ(line, 1U);
    EXPECT_EQ(summary.equal, 2U);
    EXPECT_EQ(summary.only_in_b, 1U);
}

std::string text_of_diff(const std::string &words_a, const std::string &words_b,
                         const DiffForm &form = {}) {
    Words a("a.kvt", words_a);
    Words b("b.kvt", words_b);
    std::string text;
    diff_messages(a, b, [&](const MessageDifference &difference) {
        text += difference_text(difference, form);
    });
    return text;
}

TEST(DiffText, NamesMessagesAndPlaces) {
    EXPECT_EQ(text_of_diff("E1 E5:2 E6 S1", "E5:4 E7 S2"), "only in a.kvt:1: END_JOB job_id 1\n"
                                                           "END_JOB job_id 5: a.kvt:2, b.kvt:1\n"
                                                           "  reservation_id: 2 -> 4\n"
                                                           "only in a.kvt:3: END_JOB job_id 6\n"
                                                           "only in b.kvt:2: END_JOB job_id 7\n"
                                                           "AM_SIGNAL: a.kvt:4, b.kvt:3\n"
                                                           "  flags: 1 -> 2\n");
}

TEST(DiffText, HasColoursWhereTheyAreWanted) {
    EXPECT_EQ(text_of_diff("E1 E5:2", "E5:4 E7", {.colours = true}),
              "\x1B[31monly in a.kvt:1: END_JOB job_id 1\x1B[0m\n"
              "END_JOB job_id 5: a.kvt:2, b.kvt:1\n"
              "  \x1B[33mreservation_id: 2 -> 4\x1B[0m\n"
              "\x1B[32monly in b.kvt:2: END_JOB job_id 7\x1B[0m\n");
}

TEST(DiffText, IsOneLineForAPairWhereItIsBrief) {
    EXPECT_EQ(text_of_diff("E1 E5:2 E6", "E5:4 E6", {.brief = true}),
              "only in a.kvt:1: END_JOB job_id 1\n"
              "END_JOB job_id 5: a.kvt:2, b.kvt:1: 1 difference\n");
}

TEST(DiffText, SumsUp) {
    EXPECT_EQ(summary_text(
                  {.equal = 37, .differing = 2, .differences = 5, .only_in_a = 1, .only_in_b = 3},
                  "a.kvt", "b.kvt"),
              "messages: 2 differ in 5 places, 1 only in a.kvt, 3 only in b.kvt, 37 equal\n");
    EXPECT_EQ(summary_text({.differing = 1, .differences = 1}, "a.kvt", "b.kvt"),
              "messages: 1 differs in 1 place, 0 equal\n");
    EXPECT_EQ(summary_text({.equal = 2, .only_in_b = 1}, "a.kvt", "b.kvt"),
              "messages: 1 only in b.kvt, 2 equal\n");
}

TEST(Align, PrefersEqualElements) {
    const AlignKey old_job = {1, 5, true};
    const AlignKey new_job = {2, 5, true};
    const std::vector<AlignKey> a = {old_job};
    const std::vector<AlignKey> b = {new_job, old_job};
    EXPECT_EQ(align(a, b), (std::vector<AlignedPair>{{0, 1}}));
}

} // namespace
} // namespace kvt_tool
