// The frames of messages, and what stands around them.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

const std::string end_job = message_of("END_JOB", "end_job", "    job_id: 5\n");
const std::string broken = message_of("END_JOB", "end_job", "    job_id: x\n");

TEST(CheckedTextFrames, BeginWithAMessage) {
    EXPECT_EQ(found(end_job), "");
    EXPECT_EQ(found(""), "1:1 no-message ''\n");
    EXPECT_EQ(found("\n \n"), "1:1 no-message ''\n");
    EXPECT_EQ(found("hello\nworld\n"), "1:1 no-message 'hello'\n");
    EXPECT_EQ(found("hello\n" + broken), "1:1 before-message 'hello'\n5:13 not-a-number 'x'\n");
    EXPECT_EQ(found("\n" + end_job), "1:1 before-message ''\n");
    EXPECT_EQ(found(" " + end_job), "1:2 before-message 'msg {'\n");
    EXPECT_EQ(found("\xEF\xBB\xBF" + end_job), "1:1 byte-order-mark '\xEF\xBB\xBF'\n");
    EXPECT_EQ(said_of("\n" + end_job),
              "blanks stand before the first message: a text must begin with "
              "'msg', or the reader refuses it\n");
    EXPECT_EQ(said_of("hello\n" + end_job), "'hello' stands before the first message: a text must "
                                            "begin with 'msg', or the reader refuses it\n");
    EXPECT_EQ(said_of(""), "no line 'msg {' begins a message here\n");
}

TEST(CheckedTextFrames, HoldNothingButMessages) {
    EXPECT_EQ(found(end_job + "\n\n \t\n  " + end_job + end_job + "\n\n"), "");
    EXPECT_EQ(found(end_job + "\nhello\nworld\n" + broken),
              "8:1 outside 'hello'\n13:13 not-a-number 'x'\n");
    EXPECT_EQ(found(end_job + "}\n" + end_job), "7:1 extra-brace '}'\n");
    EXPECT_EQ(found(end_job + "# end"), "7:1 outside '# end'\n");
    // A later message begins at its whole line, whatever blanks stand in it.
    EXPECT_EQ(found(end_job + "}\nmsg\t{\n  type: END_JOB\n  end_job {\n    job_id: x\n  }\n}\n"),
              "7:1 extra-brace '}'\n11:13 not-a-number 'x'\n");
    EXPECT_EQ(found(end_job + "}\nmsg \t"), "7:1 extra-brace '}'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n  }\n  end_job {\n  }\n}\n" + broken),
              "5:3 outside 'end_job {'\n11:13 not-a-number 'x'\n");
    EXPECT_EQ(said_of(end_job + "hello\n"),
              "'hello' stands outside of the messages: the reader stops here, and reads nothing "
              "below\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n  end_job {\n  }\n  x: 5\n}\n"),
              "after the block 'end_job' only the closing brace of its message belongs: the reader "
              "takes this line for that, and stops\n");
}

TEST(CheckedTextFrames, EndAtTheFirstNul) {
    const std::string nul(1, '\0');
    EXPECT_EQ(found(end_job + nul + nul), "");
    EXPECT_EQ(found(end_job + nul + broken), "7:1 nul '" + nul + "'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: 1" + nul + "2\n  }\n}\n"),
              "4:14 not-closed ''\n4:14 nul '" + nul + "'\n");
    EXPECT_EQ(found(nul + "x"), "1:1 no-message ''\n1:1 nul '" + nul + "'\n");
    EXPECT_EQ(said_of(end_job + nul + "x"),
              "a NUL character ends the text for the reader: what follows is not read\n");
}

TEST(CheckedTextFrames, TellOfCarriageReturnsOnce) {
    std::string text;
    for (const char c : end_job + end_job) {
        text += c == '\n' ? "\r\n" : std::string(1, c);
    }
    EXPECT_EQ(found(text), "1:6 carriage-return '\r'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n\r\n    job_id: 5\r\n  }\r\n}\n"),
              "4:1 carriage-return '\r'\n");
    EXPECT_EQ(found(end_job + "\r\n" + end_job + "\r\n" + broken),
              "7:1 carriage-return '\r'\n7:1 outside '\r'\n18:13 not-a-number 'x'\n");
    EXPECT_EQ(found(job_error("    description: \"a\rb\"\n")), "");
}

TEST(CheckedMessages, BeginWithTheirLine) {
    EXPECT_EQ(found("msg\n  type: END_JOB\n  end_job {\n  }\n}\n"), "1:1 missing-brace 'msg'\n");
    EXPECT_EQ(found("msgs {\n  type: END_JOB\n  end_job {\n  }\n}\n"), "1:1 envelope 'msgs {'\n");
    EXPECT_EQ(found("msg 5 {\n  type: END_JOB\n  end_job {\n  }\n}\n"), "1:1 envelope 'msg 5 {'\n");
    EXPECT_EQ(found("msg { type: END_JOB\n  end_job {\n  }\n}\n"),
              "1:7 beside-brace 'type: END_JOB'\n2:3 no-type 'end_job {'\n");
    EXPECT_EQ(found(end_job + "message {\n" + end_job), "7:1 outside 'message {'\n");
    EXPECT_EQ(found(end_job + "msgs {\n  type: END_JOB\n  end_job {\n  }\n}\n"),
              "7:1 envelope 'msgs {'\n");
}

TEST(CheckedMessages, SayTheirKind) {
    EXPECT_EQ(found("msg {\n  end_job {\n  }\n}\n" + broken),
              "2:3 no-type 'end_job {'\n8:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type : END_JOB\n  end_job {\n  }\n}\n"),
              "2:3 no-type 'type : END_JOB'\n");
    EXPECT_EQ(found("msg {\n  type:\n  END_JOB\n  end_job {\n  }\n}\n"),
              "2:3 type-below 'type:'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOC\n  end_job {\n  }\n}\n" + broken),
              "2:9 unknown-kind 'END_JOC'\n9:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: NONE\n}\n"), "2:9 no-record 'NONE'\n");
    EXPECT_EQ(found("msg {\n  type: LAST\n}\n"), "2:9 no-record 'LAST'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB_2\n  end_job {\n  }\n}\n"), "2:16 longer-kind '_2'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB 2\n  end_job {\n  }\n}\n"), "2:17 longer-kind '2'\n");
    for (const size_t length : {99U, 100U, 101U}) { // the reader keeps 99 characters of a name
        const std::string rest(length - 7, 'x');
        EXPECT_EQ(found("msg {\n  type: END_JOB" + rest + "\n  end_job {\n  }\n}\n"),
                  "2:16 longer-kind '" + rest + "'\n");
    }
    EXPECT_EQ(said_of("msg {\n  type: end_job\n}\n"),
              "there is no kind 'end_job': the reader refuses the text; did you mean 'END_JOB'?\n");
    EXPECT_EQ(said_of("msg {\n  type: " + std::string(200, 'X') + "\n}\n"),
              "there is no kind '" + std::string(60, 'X') + "...': the reader refuses the text\n");
    EXPECT_EQ(said_of("msg {\n  type: LAST\n}\n"),
              "messages of the kind 'LAST' carry no record: the reader refuses the text\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB_2\n  end_job {\n  }\n}\n"),
              "the reader takes this for 'END_JOB' and skips what stands after it, '_2'\n");
}

TEST(CheckedMessages, HaveTheBlockOfTheirKind) {
    EXPECT_EQ(found(message_of("END_JOB", "end_jobs", "")), "3:3 block-name 'end_jobs'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n}\n" + broken),
              "3:1 no-block '}'\n7:13 not-a-number 'x'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n    job_id: 5\n  }\n}\n"),
              "3:5 no-block 'job_id: 5'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  {\n    job_id: 5\n  }\n}\n"), "3:3 no-block '{'\n");
    EXPECT_EQ(
        said_of(message_of("END_JOB", "end_jobs", "")),
        "the block of 'END_JOB' is 'end_job': the reader does not look at its name; did you mean "
        "'end_job'?\n");
    EXPECT_EQ(said_of("msg {\n  type: END_JOB\n}\n"),
              "the block 'end_job' should be opened here: the reader takes this line for that, and "
              "skips it\n");
}

TEST(CheckedMessages, ThatBeginInAnotherWayAreExplained) {
    EXPECT_EQ(said_of("msg\n  type: END_JOB\n  end_job {\n  }\n}\n"),
              "a message begins with the line 'msg {': the reader looks at the first three letters "
              "only\n");
    EXPECT_EQ(said_of("msgs {\n  type: END_JOB\n  end_job {\n  }\n}\n"),
              "a message begins with the line 'msg {': the reader looks at the first three letters "
              "only, and skips the rest of this line\n");
    EXPECT_EQ(said_of("msg {\n}\n"),
              "the line after 'msg {' must say the kind, such as 'type: END_JOB': the reader "
              "refuses the text\n");
    EXPECT_EQ(said_of("msg {\n  type:\n}\n"),
              "no kind stands after 'type:' on its line: the reader refuses the text\n");
}

TEST(CheckedMessages, AreOfAKindThatHasARecord) {
    EXPECT_EQ(said_of("msg {\n  type: LASR\n}\n"),
              "there is no kind 'LASR': the reader refuses the text\n");
    EXPECT_EQ(said_of("msg {\n  type: PERSISTENT_RESERVATION_INF\n}\n"),
              "there is no kind 'PERSISTENT_RESERVATION_INF': the reader refuses the text; did you "
              "mean 'PERSISTENT_RESERVATION_INFO'?\n");
}

TEST(CheckedMessages, HaveAKindThatEndsAtAnyBlank) {
    EXPECT_EQ(found("msg {\n  type: END_JOC\t2\n}\n"), "2:9 unknown-kind 'END_JOC'\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\t2\n  end_job {\n  }\n}\n"), "2:17 longer-kind '2'\n");
}

TEST(CheckedTextFrames, EndLinesWithCarriageReturnsOnlyBeforeANewline) {
    EXPECT_EQ(found(end_job.substr(0, end_job.size() - 1) + "\r"), "");
    // A line before the first message is one finding.
    EXPECT_EQ(found("x\r\n" + end_job), "1:1 before-message 'x'\n");
}

TEST(CheckedTextFrames, WithCarriageReturnsAreExplained) {
    EXPECT_EQ(
        said_of(end_job + "\r\n" + end_job),
        "lines end with a carriage return and a newline: the reader takes the carriage return "
        "for a character of its line, and an empty line for one with a text; the writer "
        "writes none\n"
        "a line of a carriage return, or the like, stands between two messages: it is not empty "
        "for the reader, which stops here, and reads nothing below\n");
}

TEST(CheckedMessages, HaveAKindBelowOnlyWhereItHasARecord) {
    const auto below = [](const std::string &name) {
        return said_of("msg {\n  type:\n  " + name + "\n  end_job {\n  }\n}\n");
    };
    const std::string refused =
        "no kind stands after 'type:' on its line: the reader refuses the text\n";
    const std::string taken = "no kind stands after 'type:' on its line: the reader takes "
                              "'END_JOB' from a line below, and does not read the block after "
                              "it\n";
    EXPECT_EQ(below("END_JOB"), taken);
    EXPECT_EQ(below("NONE"), refused);
    EXPECT_EQ(below("LAST"), refused);
    EXPECT_EQ(below("END_JOC"), refused);
    EXPECT_EQ(said_of("msg {\n  type:\n"), refused);
    // The reader keeps 99 characters of a name, of which the first ones tell the kind.
    for (const size_t length : {99U, 100U, 101U, 200U}) {
        EXPECT_EQ(below("END_JOB" + std::string(length - 7, 'x')), taken) << length;
    }
}

} // namespace
} // namespace kvt_test
