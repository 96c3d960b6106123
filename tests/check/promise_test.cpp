// What the check promises of texts without findings, for thousands of texts that were changed by
// chance.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kvt/kvt_check.h"
#include "kvt/kvt_str.h"
#include "message_kinds.h"
#include "support/check_promise.h"
#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "support/rich_messages.h"
#include "support/rounds.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

std::string random_text(const MessageKind &kind, Random &random) {
    OwnedRecord record(*kind.record);
    fill_randomly(*kind.record, record.get(), random);
    return text_of_record(value_of(kind), record.get());
}

/// A message with a few lines, where a change meets others more often.
std::string small_text(const MessageKind &kind, Random &random) {
    const std::string text = random_text(kind, random);
    std::string kept;
    for (size_t line = 0; line < text.size();) {
        const size_t next = text.find('\n', line) + 1;
        const std::string content = text.substr(line, next - line);
        const bool is_value = content.find(": ") != std::string::npos &&
                              content.find("  type: ") != 0 && content.find("type: ") != 2;
        if (!is_value || below(random, 3) == 0) {
            kept += content;
        }
        line = next;
    }
    return kept;
}

std::string findings_of(const std::string &text) {
    std::string all;
    const auto add = [](const kvt_finding *finding, void *user) {
        *static_cast<std::string *>(user) +=
            std::to_string(finding->line) + ": " + finding->message + " [" + finding->name + "]\n";
        return 0;
    };
    kvt_check(text.data(), text.size(), add, &all);
    return all;
}

TEST(CheckedTexts, OfRandomRecordsOfEveryKindHaveNoFindings) {
    Random random(17);
    for (const MessageKind *kind : kinds_with_record()) {
        for (size_t i = 0; i < rounds() / 3; ++i) {
            const std::string text = random_text(*kind, random);
            ASSERT_EQ(findings_of(text), "") << text;
            ASSERT_EQ(broken_promise(text), "") << text;
        }
    }
}

TEST(CheckedTexts, OfRichRecordsOfEveryKindHaveNoFindings) {
    for (const MessageKind *kind : kinds_with_record()) {
        for (const unsigned elements : {1U, 2U, 5U, 11U}) {
            const std::string text = rich_text(*kind, elements);
            ASSERT_EQ(findings_of(text), "") << text;
            ASSERT_EQ(broken_promise(text), "") << text;
        }
    }
}

TEST(CheckedTexts, ThatRandomChangesLeftWithoutFindingsAreReadWithoutALoss) {
    Random random(18);
    size_t clean = 0;
    size_t all = 0;
    const std::vector<const MessageKind *> kinds = kinds_with_record();
    for (const MessageKind *kind : kinds) {
        for (size_t i = 0; i < rounds(); ++i) {
            std::string text =
                below(random, 2) == 0 ? random_text(*kind, random) : small_text(*kind, random);
            if (below(random, 4) == 0) {
                text += random_text(*kinds[below(random, kinds.size())], random);
            }
            for (size_t changes = 1 + below(random, 3); changes != 0; --changes) {
                text = mutate(text, *kind->record, random);
            }
            text.resize(std::min(text.size(), text.find('\0')));
            ++all;
            if (count_losses(text) == 0) {
                ++clean;
                ASSERT_EQ(broken_promise(text), "") << text;
            }
        }
    }
    // What is tested here are the texts without findings: there must be some.
    EXPECT_GT(clean, all / 50);
}

TEST(CheckedTexts, CutAnywhereHaveFindingsOrAreReadWithoutALoss) {
    for (const MessageKind *kind : kinds_with_record()) {
        const std::string text = rich_text(*kind, 2);
        for (size_t length = 0; length < text.size(); ++length) {
            const std::string cut = text.substr(0, length);
            if (count_losses(cut) == 0) {
                ASSERT_EQ(length, text.size() - 1) << cut;
                ASSERT_EQ(broken_promise(cut), "") << cut;
            }
        }
    }
}

} // namespace
} // namespace kvt_test
