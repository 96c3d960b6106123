// Texts of several messages, split by the codec and by the literal form: every short sequence of
// messages, parts of messages and lines, with every length.
#include <cstdlib>
#include <string>
#include <string_view>

#include "claim.h"
#include "heap.h"
#include "kvt/kvt_str.h"
#include "page_end.h"
#include "sequences_of.h"
#include "support/literal_sequence.h"
#include "support/log_capture.h"

using namespace kvt_prove;
using namespace kvt_test;

namespace {

/// What a text begins with: a whole message, messages that go on, one in another form, one of a
/// kind without a record, and one whose kind comes later.
constexpr std::string_view beginnings[] = {
    "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n",
    "msg {\n  type: SM_DATA\n",
    "msg\ntype:AM_SIGNALS\n{",
    "msg {\n  type: LAST\n",
    "msg {\n",
    "message {\n  type: JOB_ERROR\n  job_error {\n",
};

constexpr std::string_view parts[] = {
    "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n",
    "msg {\n  type: NONE\n",
    "msg\ntype:\nAM_SIGNAL {\n",
    "  end_job {\n",
    "    job_id: 7\n",
    "    ftree_data {\n",
    "  type: SM_DATA\n",
    " \t",
    "\n",
    "  }\n",
    "}\n",
    "}",
    "x\n",
};
constexpr SequencesOf part_texts(parts, 4);

const char *place_messages(uint64_t number) {
    static const PageEnd page;
    static std::string content;
    content = beginnings[number % std::size(beginnings)];
    part_texts.append(number / std::size(beginnings), content);
    return page.place(content);
}

/// Splits a text in both ways and expects the same.
void expect_same_split(const char *text, uint32_t length) {
    begin_blocks_of(text);
    LogCapture capture(0);
    char **msgs = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = -7;
    const int32_t result = kvt_msg_arr_from_str(text, length, &msgs, &kinds, &count);
    const std::vector<LogLine> logged = capture.take();
    const LiteralSequence literal = literal_sequence(text, length);
    expect(result == literal.result, "a text is split where its literal form is", text);
    expect(logged.size() == (literal.error.empty() ? 0U : 1U), "a failure is logged once", text);
    expect(logged.empty() || logged[0].text == literal.error, "the failure is logged", text);
    if (result == 0) {
        const size_t read = literal.texts.size();
        expect(count == static_cast<int32_t>(read), "as many messages are read", text);
        for (size_t i = 0; i != read; ++i) {
            expect(kinds[i] == literal.kinds[i], "the messages have these kinds", text);
            expect(msgs[i] == literal.texts[i], "the messages have these texts", text);
            std::free(msgs[i]);
        }
        // An entry for every envelope, zero where no message has been read.
        expect(block_size(msgs) / sizeof *msgs >= literal.envelopes &&
                   block_size(kinds) / sizeof *kinds >= literal.envelopes,
               "the arrays have an entry for every envelope", text);
        for (size_t i = read; i < literal.envelopes; ++i) {
            expect(msgs[i] == nullptr && kinds[i] == 0, "entries of unread envelopes are 0", text);
        }
        std::free(msgs);
        std::free(kinds);
    } else {
        expect(msgs == nullptr && kinds == nullptr && count == -7, "a failure gives nothing", text);
    }
    expect(blocks_alive() == 0, "nothing is left behind", text);
}

void messages_are_split(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const char *text = place_messages(i);
        const auto size = static_cast<uint32_t>(std::string_view(text).size());
        for (uint32_t length = 0; length <= size + 2; ++length) {
            expect_same_split(text, length);
        }
        expect_same_split(text, UINT32_MAX);
    }
}

constexpr Claim claims[] = {
    {"messages: six beginnings and up to 4 of 13 parts, with every length",
     part_texts.count() * std::size(beginnings), messages_are_split},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
