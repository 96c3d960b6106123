// kvt_msg_arr_from_str.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "kvt/messages/job_control.h"
#include "message_kinds.h"
#include "support/exact_copy.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "support/strict_release.h"

namespace kvt_test {
namespace {

/// What the sequence reader makes of a text.
struct Sequence {
    int32_t result;
    std::vector<std::string> texts; ///< "(null)" for a text that could not be allocated
    std::vector<uint32_t> kinds;
    std::vector<LogLine> log;
};

Sequence split(const std::string &text, uint32_t length, int level = 0) {
    LogCapture log(level);
    int place = 0;
    char **const untouched_texts = reinterpret_cast<char **>(&place);
    uint32_t *const untouched_kinds = reinterpret_cast<uint32_t *>(&place);
    char **texts = untouched_texts;
    uint32_t *kinds = untouched_kinds;
    int32_t count = -7;
    Sequence sequence;
    sequence.result = kvt_msg_arr_from_str(exact_copy(text).get(), length, &texts, &kinds, &count);
    sequence.log = log.take();
    if (sequence.result != 0) {
        EXPECT_EQ(texts, untouched_texts);
        EXPECT_EQ(kinds, untouched_kinds);
        EXPECT_EQ(count, -7);
        return sequence;
    }
    for (int32_t i = 0; i < count; ++i) {
        sequence.texts.emplace_back(texts[i] != nullptr ? texts[i] : "(null)");
        sequence.kinds.push_back(kinds[i]);
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    return sequence;
}

Sequence split(const std::string &text) {
    return split(text, static_cast<uint32_t>(text.size()));
}

const std::string end_job = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
const std::string signal_text = "msg {\n  type: AM_SIGNAL\n  am_signal {\n    flags: 3\n  }\n}\n";
const std::string bad = "msg {\n  type: BAD\n  am_signal {\n  }\n}\n";
const std::string last = "msg {\n  type: LAST\n}\n";

TEST(ArrFromStr, SplitsMessagesThatBlankLinesSeparate) {
    const Sequence sequence = split(end_job + "\n" + signal_text + " \t\n\n" + end_job);
    EXPECT_EQ(sequence.result, 0);
    EXPECT_EQ(sequence.texts, (std::vector<std::string>{end_job, signal_text, end_job}));
    EXPECT_EQ(sequence.kinds, (std::vector<uint32_t>{2, 10, 2}));
    EXPECT_TRUE(sequence.log.empty());
}

TEST(ArrFromStr, MessagesNeedNothingBetweenThem) {
    EXPECT_EQ(split(end_job + signal_text).texts, (std::vector<std::string>{end_job, signal_text}));
}

TEST(ArrFromStr, TextsComeInNormalForm) {
    const Sequence sequence =
        split("msg {\ntype:END_JOB\nx {\nreservation_id:7\nodd\njob_id: +5\n}}\n"
              "\nmsg {\ntype:END_JOB\nx {\n}\n}");
    EXPECT_EQ(sequence.texts,
              (std::vector<std::string>{
                  "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n    reservation_id: 7\n"
                  "  }\n}\n"}));
}

TEST(ArrFromStr, ALengthThatEndsInTheFirstClosingLineGivesOneMessage) {
    const std::string text = end_job + "\n" + signal_text;
    const auto closing = static_cast<uint32_t>(end_job.size() - 2);
    for (uint32_t length = closing; length <= closing + 1; ++length) {
        EXPECT_EQ(split(text, length).texts, std::vector<std::string>{end_job}) << length;
    }
    // One more and the next message begins just after the length, which still counts.
    EXPECT_EQ(split(text, closing + 2).texts, (std::vector<std::string>{end_job}));
    EXPECT_EQ(split(text, closing + 3).texts, (std::vector<std::string>{end_job, signal_text}));
}

TEST(ArrFromStr, ALengthThatEndsWithinAMessageDoesNotStopTheReading) {
    const std::string text = end_job + "\n" + signal_text;
    for (uint32_t length = 0; length < end_job.size() - 2; ++length) {
        EXPECT_EQ(split(text, length).texts, (std::vector<std::string>{end_job, signal_text}))
            << length;
    }
    EXPECT_EQ(split(text, UINT32_MAX).texts, (std::vector<std::string>{end_job, signal_text}));
}

TEST(ArrFromStr, OtherTextAfterAMessageEndsTheReading) {
    const Sequence sequence = split(end_job + "and so on\n" + signal_text);
    EXPECT_EQ(sequence.result, 0);
    EXPECT_EQ(sequence.texts, std::vector<std::string>{end_job});
}

TEST(ArrFromStr, OneBadMessageFailsTheCallWhereverItStands) {
    const std::string self = "kvt_msg_arr_from_str";
    for (const auto &[bad_text, logged] : {
             std::pair{bad, "kvt_msg_from_str: Invalid value given for msg_type[BAD]"},
             std::pair{last,
                       "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_LAST not yet implemented"},
             std::pair{std::string("msg {\n  type: NONE\n}\n"),
                       "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_NONE not yet implemented"},
             std::pair{std::string("msg {\n}\n"),
                       "kvt_msg_from_str: Invalid value given for msg_type[]"},
         }) {
        for (const std::string &text :
             {bad_text, bad_text + end_job + signal_text, end_job + bad_text + signal_text,
              end_job + signal_text + bad_text}) {
            const MemoryWatch watch;
            const Sequence sequence = split(text);
            EXPECT_EQ(sequence.result, -1);
            EXPECT_EQ(sequence.log, (std::vector<LogLine>{{self, 0, logged}}));
            EXPECT_EQ(watch.alive(), 0U);
        }
    }
}

TEST(ArrFromStr, ANullTextOrAddressIsAnError) {
    LogCapture log;
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    EXPECT_EQ(kvt_msg_arr_from_str(nullptr, 0, &texts, &kinds, &count), -1);
    EXPECT_EQ(kvt_msg_arr_from_str(end_job.c_str(), 1, nullptr, &kinds, &count), -1);
    ASSERT_EQ(log.lines().size(), 2U);
    char expected[128];
    std::snprintf(expected, sizeof expected,
                  "kvt_msg_from_str: No buffer[%p] or msgs[%p] was specified",
                  static_cast<const void *>(end_job.c_str()), static_cast<void *>(nullptr));
    EXPECT_EQ(log.lines()[1], (LogLine{"kvt_msg_arr_from_str", 0, expected}));
}

TEST(ArrFromStr, KindsAndCountAreNotWantedByEveryone) {
    char **texts = nullptr;
    ASSERT_EQ(kvt_msg_arr_from_str(end_job.c_str(), 99, &texts, nullptr, nullptr), 0);
    EXPECT_EQ(texts[0], end_job);
    std::free(texts[0]);
    std::free(texts);
}

TEST(ArrFromStr, ATextThatDoesNotBeginWithMsgIsRefusedWithoutAWord) {
    for (const char *text : {"", "\nmsg {\n", "Msg {\n"}) {
        const Sequence sequence = split(text);
        EXPECT_EQ(sequence.result, -1);
        EXPECT_TRUE(sequence.log.empty());
    }
}

// Braces in quoted texts hide envelopes from the count that sizes the arrays: every message is
// returned all the same.
TEST(ArrFromStr, MoreMessagesThanEnvelopesAreAllReturned) {
    std::string text;
    std::vector<std::string> texts;
    for (int i = 0; i < 40; ++i) {
        texts.push_back("msg {\n  type: JOB_ERROR\n  job_error {\n    error: " + std::to_string(i) +
                        "\n    type: 0\n    description: \"{{{\"\n  }\n}\n");
        text += texts.back() + "\n";
    }
    const MemoryWatch watch;
    EXPECT_EQ(split(text).texts, texts);
    EXPECT_EQ(watch.alive(), 0U);
}

// A caller that counts envelopes may look at that many entries.
TEST(ArrFromStr, EnvelopesAfterTheLengthHaveEntriesOfZero) {
    const std::string tabbed = "msg {\n\ttype: END_JOB\n\tend_job {\n\t}\n}\n";
    const std::string braces = "msg {\n  type: JOB_ERROR\n  job_error {\n"
                               "    description: \"}}\nmsg {{{\"\n  }\n}\n";
    const std::string quoted = "msg {\n  type: JOB_ERROR\n  job_error {\n    error: 1\n"
                               "    type: 0\n    description: \"{\"\n  }\n}\n";
    for (const std::string &first : {end_job, tabbed, braces, quoted}) {
        for (const std::string &other : {end_job, tabbed, quoted}) {
            std::string text = first;
            for (int i = 0; i < 40; ++i) {
                text += other;
            }
            size_t envelopes = 0;
            for (const char *at = text.c_str(); std::strncmp(at, "msg", 3) == 0;) {
                at = find_end_msg(at);
                ++envelopes;
            }
            char **msgs = nullptr;
            uint32_t *kinds = nullptr;
            int32_t count = 0;
            const auto length = static_cast<uint32_t>(first.size() - 1);
            ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), length, &msgs, &kinds, &count), 0) << text;
            ASSERT_EQ(count, 1) << text;
            for (size_t i = 1; i < envelopes; ++i) {
                EXPECT_EQ(msgs[i], nullptr);
                EXPECT_EQ(kinds[i], 0U);
            }
            std::free(msgs[0]);
            std::free(msgs);
            std::free(kinds);
        }
    }
}

TEST(ArrFromStr, EveryFailedAllocationIsSurvived) {
    // As many messages as make the arrays grow, and an odd one first.
    const std::string odd =
        "msg {\n  type: JOB_ERROR\n  job_error {\n    error: 1\n    description: \"{\"\n  }\n}\n";
    std::string text = odd;
    std::vector<std::string> texts = {"msg {\n  type: JOB_ERROR\n  job_error {\n    error: 1\n"
                                      "    type: 0\n    description: \"{\"\n  }\n}\n"};
    for (int i = 0; i < 16; ++i) {
        text += end_job;
        texts.push_back(end_job);
    }
    size_t refused = 0;
    for (size_t failing = 0;; ++failing) {
        MemoryWatch watch;
        watch.fail(failing);
        const Sequence sequence = split(text);
        EXPECT_EQ(watch.alive(), 0U);
        if (watch.failed() == 0) {
            EXPECT_EQ(sequence.texts, texts);
            break;
        }
        if (sequence.result != 0) {
            ++refused;
            continue;
        }
        // A text that could not be allocated is missing, and the writer says so.
        ASSERT_EQ(sequence.texts.size(), 17U);
        EXPECT_EQ(std::count(sequence.texts.begin(), sequence.texts.end(), "(null)"), 1);
        ASSERT_EQ(sequence.log.size(), 1U);
        EXPECT_EQ(sequence.log[0].function, "kvt_msg_to_str");
        EXPECT_EQ(sequence.log[0].text.rfind("kvt_msg_to_str: No buffer[", 0), 0U);
    }
    // Three arrays, which grow once, and 17 records; the texts do not refuse.
    EXPECT_EQ(refused, 3U + 3U + 17U);
}

TEST(ArrFromStr, ARecordThatCannotBeAllocatedIsLoggedUnderTheSequenceReader) {
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        MemoryWatch watch;
        watch.fail(3); // after the three arrays
        const Sequence sequence = split(message_text(kind.name, "  block {\n  }\n"));
        EXPECT_EQ(sequence.result, -1);
        EXPECT_EQ(sequence.log,
                  (std::vector<LogLine>{{"kvt_msg_arr_from_str", 0,
                                         std::string("kvt_msg_arr_from_str: Failed to allocate "
                                                     "memory for ") +
                                             kind.record->name + " message"}}));
        EXPECT_EQ(watch.alive(), 0U);
    }
}

/// Random messages of every kind, with their texts in normal form.
std::vector<std::string> random_messages(Random &random) {
    std::vector<std::string> texts;
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        OwnedRecord record(*kind.record);
        fill_randomly(*kind.record, record.get(), random);
        const auto value = static_cast<int32_t>(kind.value);
        const std::string text = text_of_record(value, record.get());
        // Once through the other entry points: the unused ones of 64 child indexes come back as 0.
        void *read = nullptr;
        EXPECT_EQ(kvt_msg_from_str(0, 0, text.c_str(), &read), 0);
        texts.push_back(text_of_record(value, read));
        kvt_msg_release(value, read);
    }
    return texts;
}

TEST(ArrFromStr, RandomMessagesOfEveryKindAreSplitAsTheyWereJoined) {
    Random random(8);
    for (int round = 0; round < 20; ++round) {
        const std::vector<std::string> texts = random_messages(random);
        std::string joined;
        for (const std::string &text : texts) {
            joined += text + (below(random, 2) == 0 ? "\n" : "");
        }
        const MemoryWatch watch;
        const Sequence sequence = split(joined);
        ASSERT_EQ(sequence.texts, texts);
        ASSERT_EQ(watch.alive(), 0U);
    }
}

TEST(ArrFromStr, RandomMessagesOfEveryKindEndAtTheLengthAndFailWithABadNeighbour) {
    Random random(12);
    const StrictRelease strict;
    const MemoryWatch watch;
    for (const std::string &text : random_messages(random)) {
        const auto in_closing_line = static_cast<uint32_t>(text.size() - 1);
        ASSERT_EQ(split(text + "\n" + text, in_closing_line).texts, std::vector<std::string>{text});
        ASSERT_EQ(split(text + "\n" + text, in_closing_line + 2).texts,
                  (std::vector<std::string>{text, text}));
        for (const std::string &joined : {bad + text, text + bad, text + bad + text}) {
            ASSERT_EQ(split(joined).result, -1) << text;
        }
        ASSERT_EQ(watch.alive(), 0U);
    }
}

TEST(ArrFromStr, CountsAreMadeToAgreeWithTheElements) {
    const auto reply = [](const std::string &lines) {
        return message_text("RESERVATION_INFO_REPLY",
                            "  reservation_info_list {\n" + lines + "    status: 0\n  }\n");
    };
    const auto element = [](int id, const std::string &lines) {
        return "    reservation_list {\n      reservation_id: " + std::to_string(id) +
               "\n      state: 0\n" + lines + "      resources {\n      }\n    }\n";
    };
    const std::string guids = "      num_guids: 1\n      port_guids: 8\n";
    const std::string elements = element(1, guids) + element(2, guids) + element(3, guids);
    const StrictRelease strict;
    const MemoryWatch watch;
    // A greater count is lowered, a smaller one cuts, and none at all leaves nothing.
    EXPECT_EQ(split(reply(elements + "    x: 1\n    reservation_list_len: 99\n")).texts,
              (std::vector<std::string>{reply("    reservation_list_len: 3\n" + elements)}));
    EXPECT_EQ(
        split(reply(elements + "    x: 1\n    reservation_list_len: 1\n")).texts,
        (std::vector<std::string>{reply("    reservation_list_len: 1\n" + element(1, guids))}));
    EXPECT_EQ(split(reply(elements + "    x: 1\n    reservation_list_len: 0\n")).texts,
              (std::vector<std::string>{reply("")}));
    EXPECT_EQ(split(reply("    reservation_list_len: 18446744073709551615\n")).texts,
              (std::vector<std::string>{reply("")}));
    // Within the elements too.
    EXPECT_EQ(
        split(reply(element(1, "      port_guids: 8\n      num_guids: 4294967295\n"))).texts,
        (std::vector<std::string>{reply("    reservation_list_len: 1\n" + element(1, guids))}));
    EXPECT_EQ(split(reply(element(1, "      num_guids: 7\n"))).texts,
              (std::vector<std::string>{reply("    reservation_list_len: 1\n" + element(1, ""))}));
    EXPECT_EQ(watch.alive(), 0U);
    EXPECT_EQ(strict.released(), 6U);
}

// Such a text is canonical to its end.
TEST(ArrFromStr, CountsWithoutElementsAreLeftOutOfTextsInNormalForm) {
    const auto resources = [](const std::string &counts) {
        return message_text("RESOURCE_DATA",
                            "  resource_message {\n    operation: 0\n    feature_bitmask: 0\n" +
                                counts + "  }\n");
    };
    const StrictRelease strict;
    for (const char *counts :
         {"    agg_trees_num: 4\n", "    links_num: 1\n", "    agg_nodes_num: 4294967295\n",
          "    agg_trees_num: 1\n    links_num: 2\n    agg_nodes_num: 3\n"}) {
        EXPECT_EQ(split(resources(counts)).texts, (std::vector<std::string>{resources("")}))
            << counts;
    }
}

// The release function walks the elements by their counts: texts whose counts lie must neither
// make it read what is not there nor lose what is.
TEST(ArrFromStr, RandomHostileTextsNeitherHarmNorLeak) {
    Random random(9);
    const StrictRelease strict;
    for (int round = 0; round < 60; ++round) {
        for (const std::string &good : random_messages(random)) {
            const size_t name = good.find(": ") + 2;
            const kvt_str::MessageKind *kind = kvt_str::find_kind(good.c_str() + name);
            std::string text = good;
            for (uint64_t changes = 1 + below(random, 6); changes != 0; --changes) {
                text = mutate(text, *kind->record, random);
            }
            MemoryWatch watch;
            if (below(random, 3) == 0) {
                watch.fail(below(random, 12), 1 + below(random, 3));
            }
            const Sequence sequence = split(text + "\n" + good);
            ASSERT_EQ(watch.alive(), 0U) << text;
            for (const std::string &written : sequence.texts) {
                if (written != "(null)") {
                    ASSERT_EQ(written.rfind("msg {\n  type: ", 0), 0U) << text;
                    ASSERT_EQ(written.substr(written.size() - 7), "\n  }\n}\n") << text;
                }
            }
        }
    }
}

TEST(ArrFromStr, KindsAreStoredWithoutACountAndACountWithoutKinds) {
    const MemoryWatch watch;
    const std::string text = end_job + signal_text;
    const auto length = static_cast<uint32_t>(text.size());
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), length, &texts, &kinds, nullptr), 0);
    ASSERT_NE(kinds, nullptr);
    EXPECT_EQ(kinds[0], 2U);
    EXPECT_EQ(kinds[1], 10U);
    std::free(texts[0]);
    std::free(texts[1]);
    std::free(texts);
    std::free(kinds);
    int32_t count = -7;
    ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), length, &texts, nullptr, &count), 0);
    EXPECT_EQ(count, 2);
    std::free(texts[0]);
    std::free(texts[1]);
    std::free(texts);
    EXPECT_EQ(watch.alive(), 0U);
}

} // namespace
} // namespace kvt_test
