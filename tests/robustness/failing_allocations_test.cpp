// What happens when memory runs out, at every allocation that there is: for every kind of message
// and for sequences of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/member.h"
#include "kvt/kvt_str.h"
#include "kvt/messages/events.h"
#include "support/exact_copy.h"
#include "support/literal_codec.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "support/random_records.h"
#include "support/rich_messages.h"
#include "support/strict_release.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// Arrays of so many elements grow once.
constexpr unsigned elements = 6;

/// Which allocations fail.
enum class Failing {
    one,  ///< a single one
    rest, ///< that one and all after it
};

size_t count_of(Failing failing) {
    return failing == Failing::one ? 1 : SIZE_MAX / 2;
}

/// Calls `attempt` with allocation 0 failing, then 1, then 2, until it tells that none has failed.
/// Whatever fails, nothing may stay allocated.
void fail_each_allocation(Failing failing,
                          const std::function<size_t(MemoryWatch &watch, size_t first)> &attempt) {
    for (size_t first = 0;; ++first) {
        SCOPED_TRACE((failing == Failing::one ? "failing " : "failing from ") +
                     std::to_string(first));
        MemoryWatch watch;
        watch.fail(first, count_of(failing));
        const size_t failed = attempt(watch, first);
        EXPECT_EQ(watch.alive(), 0U);
        if (failed == 0 || testing::Test::HasFailure()) {
            return;
        }
    }
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// True when lines have only been left out of a text; counts may differ.
bool is_part_of(const Record &table, const std::string &part, const std::string &whole) {
    const std::vector<std::string> from = lines_of(whole);
    auto at = from.begin();
    for (const std::string &line : lines_of(part)) {
        if (is_count_line(table, line)) {
            continue;
        }
        at = std::find(at, from.end(), line);
        if (at == from.end()) {
            return false;
        }
        ++at;
    }
    return true;
}

/// Releases what a reader made; nothing when it refused.
void release(const MessageKind &kind, void *record) {
    if (record != nullptr) {
        kvt_msg_release(value_of(kind), record);
    }
}

/// What a reader made of a text, and the lines that it logged.
struct Reading {
    int32_t result;
    void *record;
    std::vector<LogLine> log;
};

/// As kvt_msg_from_str should read a text, in the literal form of the format.
Reading read_literally(const MessageKind &kind, const std::string &text) {
    const LogCapture capture(6);
    void *record = std::calloc(1, kind.record->size);
    if (record == nullptr) {
        const std::string self = "kvt_msg_from_str";
        return {-1,
                nullptr,
                {{self, 0,
                  self + ": Failed to allocate memory for " + kind.record->name + " message"}}};
    }
    const char *block = text.c_str() + text.find('\n', text.find("type:")) + 1;
    literal_read(*kind.record, block, record, Counts::as_read);
    return {0, record, capture.lines()};
}

Reading read(const std::string &text, int level) {
    const LogCapture capture(level);
    int place = 0;
    void *record = &place;
    const int32_t result = kvt_msg_from_str(0, 0, exact_copy(text).get(), &record);
    return {result, record, capture.lines()};
}

std::string read_and_write_again(const MessageKind &kind, const std::string &text) {
    void *record = read(text, 0).record;
    const std::string written = text_of_record(value_of(kind), record);
    release(kind, record);
    return written;
}

/// Reads a text with each of its allocations failing, and expects what the literal form of the
/// format makes of it then: the text without some of its lines.
void expect_literal_reading(const MessageKind &kind, const std::string &text, Failing failing) {
    SCOPED_TRACE(kind.name);
    const StrictRelease strict;
    const std::string whole = read_and_write_again(kind, text);
    for (const int level : {6, 0}) {
        SCOPED_TRACE("log level " + std::to_string(level));
        fail_each_allocation(failing, [&](MemoryWatch &watch, size_t first) {
            const Reading codec = read(text, level);
            const size_t failed = watch.failed();
            watch.fail(first, count_of(failing));
            const Reading literal = read_literally(kind, text);
            EXPECT_EQ(failed, watch.failed());
            watch.fail_nothing();

            EXPECT_EQ(codec.result, first == 0 ? -1 : 0);
            EXPECT_EQ(codec.result, literal.result);
            const bool logs = level == 6 || first == 0;
            EXPECT_EQ(codec.log, logs ? literal.log : std::vector<LogLine>{});
            if (first == 0) {
                EXPECT_EQ(codec.record, nullptr);
                return failed;
            }
            EXPECT_EQ(first_difference(*kind.record, codec.record, literal.record), "");
            EXPECT_TRUE(
                is_part_of(*kind.record, text_of_record(value_of(kind), codec.record), whole));
            release(kind, codec.record);
            release(kind, literal.record);
            return failed;
        });
    }
}

TEST(FailingAllocations, OneOfAnyMessageLeavesOutAnElementOrTheRecord) {
    for (const MessageKind *kind : kinds_with_record()) {
        expect_literal_reading(*kind, rich_text(*kind, elements), Failing::one);
    }
}

TEST(FailingAllocations, AllFromOneOnLeaveWhatWasReadBefore) {
    for (const MessageKind *kind : kinds_with_record()) {
        expect_literal_reading(*kind, rich_text(*kind, elements), Failing::rest);
    }
}

TEST(FailingAllocations, AllGrowthLeavesTheFirstElementsOfEveryArray) {
    const StrictRelease strict;
    for (const MessageKind *kind : kinds_with_record()) {
        // Without growth there is room for five elements, and six are read as five.
        const std::string text = rich_text(*kind, elements);
        const std::string whole = read_and_write_again(*kind, text);
        MemoryWatch watch;
        watch.fail_all_growth();
        const Reading codec = read(text, 0);
        watch.fail_all_growth();
        const Reading literal = read_literally(*kind, text);
        watch.fail_nothing();
        ASSERT_EQ(codec.result, 0) << kind->name;
        EXPECT_EQ(codec.log, std::vector<LogLine>{}) << kind->name;
        EXPECT_EQ(first_difference(*kind->record, codec.record, literal.record), "") << kind->name;
        EXPECT_TRUE(is_part_of(*kind->record, text_of_record(value_of(*kind), codec.record), whole))
            << kind->name;
        for (const Row &row : kind->record->rows) {
            if (row.counts_elements()) {
                EXPECT_EQ(load_count(row, codec.record), 5U) << kind->name << row.label.text;
            }
        }
        release(*kind, codec.record);
        release(*kind, literal.record);
        EXPECT_EQ(watch.alive(), 0U) << kind->name;
    }
}

std::string repeated(const std::string &part, size_t times) {
    std::string text;
    for (size_t i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

TEST(FailingAllocations, OneOfTextsThatAreJoinedAndArraysThatAreReplaced) {
    const std::string hosts = "    hosts: \"node1\"\n";
    const std::string guids = "    port_guids: 7\n";
    const std::string text = message_text(
        "BEGIN_JOB", "  begin_job {\n" + repeated(hosts, 30) + "    uid: 1\n" + repeated(guids, 6) +
                         repeated(hosts, 6) + repeated(guids, 11) + "    pkey: 1\n" + hosts +
                         "    uid: 2\n" + repeated(guids, 1) + "  }\n");
    const MessageKind &kind = *find_kind("BEGIN_JOB");
    const StrictRelease strict;
    fail_each_allocation(Failing::one, [&](MemoryWatch &watch, size_t first) {
        const Reading codec = read(text, 0);
        const size_t failed = watch.failed();
        watch.fail(first);
        const Reading literal = read_literally(kind, text);
        watch.fail_nothing();
        EXPECT_EQ(codec.result, literal.result);
        if (codec.result == 0 && literal.result == 0) {
            EXPECT_EQ(first_difference(*kind.record, codec.record, literal.record), "");
        }
        release(kind, codec.record);
        release(kind, literal.record);
        return failed;
    });
}

// While it reads, the codec keeps how many elements there are where a count line says otherwise.
// Without memory for that it has to make the count true.
TEST(FailingAllocations, OneOfCountsThatLieUntilTheirElementsAreReplaced) {
    const std::string entries = repeated("      str_entry_list {\n        entry_name: \"a\"\n"
                                         "        entry_value: \"b\"\n      }\n",
                                         6);
    const MessageKind &kind = *find_kind("EVENTS_REPLY");
    for (const char *count : {"0", "1", "99", "4294967295"}) {
        const std::string event = "    vemra_events {\n" + entries +
                                  "      x: 1\n      num_str_entry: " + count + "\n    }\n";
        // More than there is room for in the first list of such counts.
        const std::string text =
            message_text("EVENTS_REPLY", "  event_list {\n" + repeated(event, 17) +
                                             "    x: 1\n    vemra_events {\n    }\n  }\n");
        const StrictRelease strict;
        for (const Failing failing : {Failing::one, Failing::rest}) {
            fail_each_allocation(failing, [&](MemoryWatch &watch, size_t first) {
                const Reading codec = read(text, 0);
                EXPECT_EQ(codec.result, first == 0 ? -1 : 0);
                release(kind, codec.record);
                return watch.failed();
            });
        }
    }
}

// Here the counts of a list and of its elements lie at once. Sixteen true counts are remembered at
// first; the seventeenth takes more memory. A count that cannot be remembered becomes true, and
// nothing is released by the counts that the text made up.
TEST(FailingAllocations, OneOfCountsThatLieAtTwoDepthsReleasesNothing) {
    const std::string event = "    vemra_events {\n      str_entry_list {\n      }\n"
                              "      x: 1\n      num_str_entry: 1000\n    }\n";
    for (const size_t events : {16U, 17U}) {
        const std::string text =
            message_text("EVENTS_REPLY", "  event_list {\n" + repeated(event, events) +
                                             "    x: 1\n    num_event: 1\n  }\n");
        for (const Failing failing : {Failing::one, Failing::rest}) {
            std::set<uint32_t> counts;
            fail_each_allocation(failing, [&](MemoryWatch &watch, size_t) {
                const void *record = read(text, 0).record;
                const size_t failed = watch.failed();
                if (record != nullptr) {
                    const auto *list = static_cast<const vemra_event_list *>(record);
                    if (list->events != nullptr) {
                        EXPECT_EQ(list->num_event, 1U);
                        counts.insert(list->events[0].num_str_entry);
                    }
                }
                watch.free_alive(); // the counts do not tell what there is to release
                return failed;
            });
            EXPECT_EQ(counts, (std::set<uint32_t>{1, 1000}));
        }
    }
}

// --- Sequences -----------------------------------------------------------------------------------

/// One rich message of every kind, and their texts as the codec writes them.
struct AllKinds {
    std::vector<const MessageKind *> kinds = kinds_with_record();
    std::vector<std::string> texts;
    std::string joined;

    AllKinds() {
        for (const MessageKind *kind : kinds) {
            const std::string text = rich_text(*kind, elements);
            joined += text + "\n";
            texts.push_back(read_and_write_again(*kind, text));
        }
    }
};

/// Splits the messages while allocations fail, and expects all of them, in part; a null pointer
/// and a log line for each text without memory; or nothing at all and at most one log line. True
/// when they were split.
bool expect_split_or_refused(const AllKinds &all) {
    int place = 0;
    char **const untouched_texts = reinterpret_cast<char **>(&place);
    uint32_t *const untouched_kinds = reinterpret_cast<uint32_t *>(&place);
    char **texts = untouched_texts;
    uint32_t *kinds = untouched_kinds;
    int32_t count = -7;
    const LogCapture log(0);
    const int32_t result =
        kvt_msg_arr_from_str(exact_copy(all.joined).get(), static_cast<uint32_t>(all.joined.size()),
                             &texts, &kinds, &count);
    if (result != 0) {
        EXPECT_EQ(result, -1);
        EXPECT_EQ(texts, untouched_texts);
        EXPECT_EQ(kinds, untouched_kinds);
        EXPECT_EQ(count, -7);
        EXPECT_LE(log.lines().size(), 1U);
        for (const LogLine &line : log.lines()) {
            EXPECT_EQ(line.function, "kvt_msg_arr_from_str");
            EXPECT_NE(line.text.find("Failed to allocate memory for "), std::string::npos);
        }
        return false;
    }
    EXPECT_EQ(static_cast<size_t>(count), all.kinds.size());
    size_t missing = 0;
    for (size_t i = 0; i < all.kinds.size(); ++i) {
        EXPECT_EQ(kinds[i], all.kinds[i]->value);
        if (texts[i] == nullptr) {
            ++missing;
        } else {
            EXPECT_TRUE(is_part_of(*all.kinds[i]->record, texts[i], all.texts[i]))
                << texts[i] << "is no part of\n"
                << all.texts[i];
        }
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    EXPECT_EQ(log.lines().size(), missing);
    for (const LogLine &line : log.lines()) {
        EXPECT_EQ(line.text.rfind("kvt_msg_to_str: No buffer[", 0), 0U) << line.text;
    }
    return true;
}

TEST(FailingAllocations, OneOfASequenceOfEveryKindLeavesOutAPartOrRefusesAll) {
    const AllKinds all;
    const StrictRelease strict;
    size_t refused = 0;
    fail_each_allocation(Failing::one, [&](MemoryWatch &watch, size_t) {
        refused += expect_split_or_refused(all) ? 0 : 1;
        return watch.failed();
    });
    // Three arrays, which grow once after 16 messages, and the records.
    EXPECT_EQ(refused, 3U + 3U + all.kinds.size());
}

TEST(FailingAllocations, AllFromOneOnOfASequenceOfEveryKindRefuseItUntilOnlyTextsAreMissing) {
    const AllKinds all;
    const StrictRelease strict;
    bool split = false;
    size_t texts_missing = 0;
    fail_each_allocation(Failing::rest, [&](MemoryWatch &watch, size_t) {
        const bool split_before = split;
        split = expect_split_or_refused(all);
        EXPECT_TRUE(split || !split_before);
        texts_missing += split && watch.failed() != 0 ? 1 : 0;
        return watch.failed();
    });
    // The texts are made last; before them, some elements of the last message.
    EXPECT_TRUE(split);
    EXPECT_GE(texts_missing, all.kinds.size());
}

TEST(FailingAllocations, AllGrowthRefusesMoreThan16MessagesAndCutsArraysOfFewer) {
    const StrictRelease strict;
    const AllKinds all;
    MemoryWatch watch;
    watch.fail_all_growth();
    EXPECT_FALSE(expect_split_or_refused(all));
    EXPECT_EQ(watch.alive(), 0U);

    AllKinds fewer;
    fewer.joined.resize(fewer.joined.find("msg {\n  type: " + std::string(fewer.kinds[16]->name)));
    fewer.kinds.resize(16);
    watch.fail_all_growth();
    EXPECT_TRUE(expect_split_or_refused(fewer));
    EXPECT_EQ(watch.alive(), 0U);
}

} // namespace
} // namespace kvt_test
