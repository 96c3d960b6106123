// What kvt fmt prints: nothing changes what the writer wrote, and nothing changes twice.
#include <gtest/gtest.h>

#include <string>

#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "units.h"

namespace kvt_tool {
namespace {

using kvt_test::Random;

/// The texts that the writer writes of random records, with an empty line after each.
std::string random_text(const kvt_str::MessageKind &kind, Random &random) {
    kvt_test::OwnedRecord record(*kind.record);
    kvt_test::fill_randomly(*kind.record, record.get(), random);
    return kvt_test::text_of_record(static_cast<int32_t>(kind.value), record.get()) + "\n";
}

void expect_settled(const std::string &text) {
    const std::string formatted = normal_form_of(text);
    ASSERT_EQ(normal_form_of(formatted), formatted) << "of\n" << text;
}

std::string begin_job_with(const std::string &lines) {
    return "msg {\n  type: BEGIN_JOB\n  begin_job {\n" + lines + "  }\n}\n";
}

std::string job_error_with(const std::string &lines) {
    return "msg {\n  type: JOB_ERROR\n  job_error {\n" + lines + "  }\n}\n";
}

TEST(NormalForm, IsEveryTextThatTheWriterWrote) {
    Random random(1);
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        for (int i = 0; kind.record != nullptr && i < 30; ++i) {
            const std::string text = random_text(kind, random) + random_text(kind, random);
            ASSERT_EQ(normal_form_of(text), text);
        }
    }
}

TEST(NormalForm, OfChangedRandomTextsIsItsOwn) {
    Random random(2);
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        for (int i = 0; kind.record != nullptr && i < 150; ++i) {
            std::string text = random_text(kind, random);
            for (size_t changes = 1 + kvt_test::below(random, 6); changes != 0; --changes) {
                text = kvt_test::mutate(text, *kind.record, random);
            }
            expect_settled(text + random_text(kind, random));
        }
    }
}

TEST(NormalForm, KeepsTheNumberOfLinesOfAChildList) {
    const std::string text = normal_form_of("msg {\ntype: JOB_DATA\njob_data {\nconns {\n"
                                            "qp_child_idxs: 4\nqp_child_idxs: 255\n}\n}\n}\n");
    EXPECT_NE(text.find("qp_child_idxs: 4\n      pr_sd_to_an"), std::string::npos) << text;
    expect_settled(text);
}

TEST(NormalForm, HasTheTrueLengthOfATextThatCameBeforeIt) {
    const std::string text = normal_form_of(begin_job_with("hosts: \"a\"\nhosts_len: 99\n"));
    EXPECT_NE(text.find("    hosts_len: 2\n    hosts: \"a\"\n"), std::string::npos) << text;
    expect_settled(text);
}

TEST(NormalForm, HasNoMoreOfAStringThanOneLineKeeps) {
    const std::string name(200, 'a');
    const std::string line = "hosts: \"" + name + "\"\n";
    const std::string text = normal_form_of(begin_job_with(line + line));
    EXPECT_NE(
        text.find("    hosts_len: 299\n    hosts: \"" + name + "," + name.substr(103) + "\"\n"),
        std::string::npos)
        << text;
    expect_settled(text);
}

TEST(NormalForm, LosesATextWithABraceThatEndsItsBlockWhereItIsWritten) {
    EXPECT_EQ(normal_form_of(job_error_with("description: \"a}b\"\n")),
              job_error_with("    error: 0\n    type: 0\n") + "\n");
    const std::string text = normal_form_of(begin_job_with("hosts: \"a}b\"\njob_id: 5\n"));
    EXPECT_NE(text.find("    job_id: 5\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("hosts"), std::string::npos) << text;
    expect_settled(text);
}

TEST(NormalForm, KeepsATextWithANewlineThatIsReadBack) {
    const std::string text =
        job_error_with("    error: 0\n    type: 0\n    description: \"a\nb\"\n") + "\n";
    EXPECT_EQ(normal_form_of(text), text);
}

TEST(NormalForm, OfNothingIsNothing) {
    EXPECT_EQ(normal_form_of(""), "");
    EXPECT_EQ(normal_form_of("words\n"), "");
}

} // namespace
} // namespace kvt_tool
