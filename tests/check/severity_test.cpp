// How bad findings are: what is refused is not read at all, what is of style loses nothing.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "check/found.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/check_promise.h"

namespace kvt_test {
namespace {

const std::string end_job = message_of("END_JOB", "end_job", "    job_id: 5\n");

bool is_read_by_itself(const std::string &text) {
    void *record = nullptr;
    const bool read = kvt_msg_from_str(0, nullptr, text.c_str(), &record) == 0;
    std::free(record); // an END_JOB owns no more
    return read;
}

int32_t count_in_sequence(const std::string &text) {
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &texts, &kinds,
                             &count) != 0) {
        return -1;
    }
    for (int32_t i = 0; i < count; ++i) {
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    return count;
}

size_t count_refused(const std::string &text) {
    const kvt_check_options options = {KVT_SEVERITY_REFUSED, 0, 0};
    return kvt_check_with(text.data(), text.size(), &options, nullptr, nullptr);
}

const char *const beginnings[] = {
    "",
    " ",
    "\t",
    "\n",
    "\n\n  ",
    "\r\n",
    "\r",
    "\v",
    "\f\n",
    "x",
    "x\n",
    "# words\n",
    "}\n",
    "{\n",
    "msg",
    "msg ",
    "msg\n",
    "msg {\n",
    "msg {\r\n",
    "msgs {\n",
    "m",
    "type: X\n",
    "\xEF\xBB\xBF",
    "\xC2\xA0",
    "\xC2\x85",
    "\xE2\x80\x8B",
    "\xFF\xFE",
    "\x01",
    "msg {\n}\n",
    "msg {\n  type: NONE\n}\n",
    "msg {\n  type: LAST\n",
    "msg {\n  type: X\n}\n",
    "msg {\n  type:\n",
    "msg {\n\r\n",
    "msg {\n  type: END_JOB\n",
    "msg {\n  type: END_JOB\n}\n",
    "msg {\n\xC2\xA0 type: END_JOB\n",
    "msg {\n  type:\302\240END_JOB\n", // a no-break space
};

TEST(Beginnings, WithoutALossAreRead) {
    size_t read = 0;
    for (const std::string beginning : beginnings) {
        for (const std::string &rest : {std::string(), end_job, end_job + "\n  " + end_job,
                                        std::string(" \n"), end_job.substr(6)}) {
            const std::string text = beginning + rest;
            if (count_losses(text) == 0) {
                ++read;
                EXPECT_TRUE(is_read_by_itself(text)) << text;
                EXPECT_GE(count_in_sequence(text), 1) << text;
                EXPECT_EQ(broken_promise(text), "") << text;
            }
        }
    }
    EXPECT_GT(read, 3U);
}

TEST(Beginnings, ThatAreRefusedAreNotRead) {
    for (const std::string beginning : beginnings) {
        for (const std::string &rest : {std::string(), end_job, std::string(" \n")}) {
            const std::string text = beginning + rest;
            if (is_read_by_itself(text)) {
                // What is refused then stands in a message below.
                EXPECT_TRUE(count_refused(text) == 0 || rest == end_job) << text;
            } else {
                EXPECT_GT(count_refused(text), 0U) << text;
                EXPECT_EQ(count_in_sequence(text), -1) << text;
            }
        }
    }
}

TEST(Beginnings, BetweenMessagesMayBeBlank) {
    EXPECT_EQ(found(end_job + "\n \t\n  " + end_job), "");
    EXPECT_EQ(count_in_sequence(end_job + "\n \t\n  " + end_job), 2);
}

TEST(Severities, HaveNames) {
    EXPECT_STREQ(kvt_severity_name(KVT_SEVERITY_STYLE), "style");
    EXPECT_STREQ(kvt_severity_name(KVT_SEVERITY_LOST), "lost");
    EXPECT_STREQ(kvt_severity_name(KVT_SEVERITY_REFUSED), "refused");
    EXPECT_EQ(kvt_severity_name(KVT_SEVERITIES), nullptr);
    EXPECT_EQ(kvt_finding_severity(KVT_FINDING_UNKNOWN_KIND), KVT_SEVERITY_REFUSED);
    EXPECT_EQ(kvt_finding_severity(KVT_FINDING_UNKNOWN_KEY), KVT_SEVERITY_LOST);
    EXPECT_EQ(kvt_finding_severity(KVT_FINDING_CARRIAGE_RETURN), KVT_SEVERITY_STYLE);
    EXPECT_EQ(kvt_finding_severity(KVT_FINDING_KINDS), KVT_SEVERITIES);
    EXPECT_EQ(kvt_finding_remedy(KVT_FINDING_KINDS), nullptr);
}

TEST(Severities, ChooseWhatIsCounted) {
    const std::string text = begin_job("    port_guids: 5\n    uid: 3\n    uid: 3\n    x: 1\n");
    EXPECT_EQ(count_findings(text), 3U);
    EXPECT_EQ(count_losses(text), 1U);
    EXPECT_EQ(count_refused(text), 0U);
    EXPECT_EQ(count_refused("x\n" + text), 1U);
}

TEST(Severities, OfStyleLoseNothing) {
    for (const std::string &lines :
         {std::string("    job_id: 5\r\n    uid: 3\r\n"), std::string("    uid: 3\n    uid: 3\n"),
          std::string("    uid: 3 {\n    pkey: 7\n"),
          std::string("    quota\n      max_osts: 5\n    }\n"),
          std::string("    quota { {\n      max_osts: 5\n    }\n"),
          std::string("    port_guids: 5\n    port_guids: 6\n"),
          std::string("    hosts: \"a\"\n    hosts: \"\"\n")}) {
        const std::string text = begin_job(lines);
        EXPECT_GT(count_findings(text), 0U) << text;
        EXPECT_EQ(count_losses(text), 0U) << text;
        EXPECT_EQ(broken_promise(text), "") << text;
    }
}

TEST(InvisibleCharacters, AreNamedWhereverTheyStand) {
    EXPECT_EQ(found("\xEF\xBB\xBF" + end_job), "1:1 byte-order-mark '\xEF\xBB\xBF'\n");
    EXPECT_EQ(said_of("\xC2\xA0" + end_job),
              "'\\xc2\\xa0msg {' stands before the first message: a text must begin with 'msg', or "
              "the reader refuses it; \\xc2\\xa0 is a no-break space\n");
    EXPECT_EQ(said_of(end_job + "\xE2\x80\x8Bmsg {\n" + end_job.substr(6)),
              "'\\xe2\\x80\\x8bmsg {' stands outside of the messages: the reader stops here, and "
              "reads nothing below; \\xe2\\x80\\x8b is a character without width\n");
    EXPECT_EQ(said_of(begin_job("\xC2\xA0   job_id: 5\n")),
              "before 'job_id' stands what cannot be seen, '\\xc2\\xa0   ': the reader skips this "
              "line; \\xc2\\xa0 is a no-break space\n");
    EXPECT_EQ(said_of(begin_job("    job_id\xC2\xA0: 5\n")),
              "between 'job_id' and its colon stands what cannot be seen, '\\xc2\\xa0': the reader "
              "finds no value: the field stays 0; \\xc2\\xa0 is a no-break space\n");
    EXPECT_EQ(found(begin_job("    job_id: 5\xC2\x85\n")), "4:14 invisible '\xC2\x85'\n");
    EXPECT_EQ(found(begin_job("    job_id: \x01"
                              "5\n")),
              "4:13 invisible '\x01'\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\xC2\xA0\n  end_job {\n  }\n}\n"),
              "the reader takes this for 'END_JOB' and skips what stands after it, '\\xc2\\xa0'; "
              "\\xc2\\xa0 is a no-break space\n");
}

TEST(Comments, AreToldAsSuch) {
    EXPECT_EQ(found(begin_job("    # night\n    // day\n    ; dusk\n    job_id: 5 # five\n")),
              "4:5 comment '# night'\n5:5 comment '// day'\n6:5 comment '; dusk'\n"
              "7:15 comment '# five'\n");
    EXPECT_EQ(found(begin_job("    quota { # of the night\n    }\n")),
              "4:13 comment '# of the night'\n");
    EXPECT_EQ(found(job_error("    description: \"a\" # b\n")), "4:22 comment '# b'\n");
}

} // namespace
} // namespace kvt_test
