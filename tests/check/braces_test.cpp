// One brace that is missing or too many is one finding, at its place by the indentation.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

std::string found_with_consequences(const std::string &text) {
    FoundSoFar user(text, "");
    const kvt_check_options options = {KVT_SEVERITY_STYLE, 1, 0};
    kvt_check_with(text.data(), text.size(), &options, add_finding, &user);
    return user.second;
}

const std::string end_job = message_of("END_JOB", "end_job", "    job_id: 5\n");

TEST(MissingBraces, AreToldAtTheOpeningLineOnce) {
    const std::string text = begin_job("    job_id: 5\n    quota {\n      max_osts: 1\n    uid: 3\n"
                                       "    num_rails: 2\n    pkey: 3\n");
    EXPECT_EQ(found(text), "5:5 not-closed 'quota'\n");
    EXPECT_EQ(said_of(text),
              "'quota' is not closed: by the indentation its brace belongs before line 7; the "
              "reader takes what follows for its lines, and reads no message after this one\n");
    EXPECT_EQ(found(text + end_job), "5:5 not-closed 'quota'\n");
    EXPECT_EQ(found_with_consequences(text),
              "5:5 not-closed 'quota'\n7:5 unknown-key 'uid'\n8:5 unknown-key 'num_rails'\n"
              "9:5 unknown-key 'pkey'\n12:1 not-closed ''\n");
}

TEST(MissingBraces, OfAnEmptyBlockAreTold) {
    EXPECT_EQ(found(begin_job("    quota {\n    uid: 3\n")), "4:5 not-closed 'quota'\n");
}

TEST(MissingBraces, OfElementsAreTold) {
    EXPECT_EQ(found(topology("    num_switches: 2\n    switches {\n      id: 1\n    switches {\n"
                             "      id: 2\n    }\n")),
              "5:5 not-closed 'switches'\n");
}

TEST(MissingBraces, AreTakenFromTheBlockAround) {
    // What closes 'mgid' stands where that of 'trees' would.
    EXPECT_EQ(found(job_data("    trees_num: 1\n    trees {\n      mgid {\n        guid: 1\n    }\n"
                             "    uid: 3\n")),
              "6:7 not-closed 'mgid'\n");
    // At the end of a message, and of a text.
    const std::string open = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n}\n";
    EXPECT_EQ(found(open), "3:3 not-closed 'end_job'\n");
    EXPECT_EQ(found(open + end_job), "3:3 not-closed 'end_job'\n");
    EXPECT_EQ(found(begin_job("    quota {\n      max_osts: 1\n") + end_job),
              "4:5 not-closed 'quota'\n");
    EXPECT_EQ(found(open + open), "3:3 not-closed 'end_job'\n8:3 not-closed 'end_job'\n");
}

TEST(MissingBraces, AreNotGuessedWithoutIndentation) {
    EXPECT_EQ(found("msg {\ntype: BEGIN_JOB\nbegin_job {\nquota {\nuid: 3\n}\n}\n}\n"),
              "5:1 unknown-key 'uid'\n");
    // An unknown key that no block around knows is just that.
    EXPECT_EQ(found(begin_job("    quota {\n    colour: 3\n    }\n")),
              "5:5 unknown-key 'colour'\n");
    EXPECT_EQ(found(begin_job("    quota {\n        uid: 3\n    }\n")), "5:9 unknown-key 'uid'\n");
    // Another indentation is no finding.
    EXPECT_EQ(found(begin_job("    quota {\n  max_osts: 3\n  }\n        uid: 3\n")), "");
}

TEST(ExtraBraces, AreToldAtTheirPlaceOnce) {
    const std::string text = begin_job("    job_id: 5\n    }\n    uid: 3\n    num_rails: x\n");
    EXPECT_EQ(found(text), "5:5 extra-brace '}'\n7:16 not-a-number 'x'\n");
    EXPECT_EQ(said_of(begin_job("    job_id: 5\n    }\n    uid: 3\n")),
              "this brace is one too many: the lines of 'begin_job' go on below it, where the "
              "reader does not take them for such\n");
    EXPECT_EQ(found_with_consequences(text), "5:5 extra-brace '}'\n6:5 outside 'uid: 3'\n");
}

TEST(ExtraBraces, OfABlockWithinAreTold) {
    EXPECT_EQ(found(begin_job("    quota {\n      max_osts: 1\n      }\n      max_qps: 2\n    }\n"
                              "    uid: 3\n")),
              "6:7 extra-brace '}'\n");
    // The one that stands too deep is meant, not the one at which that shows.
    EXPECT_EQ(found(begin_job("    quota {\n      max_osts: 1\n      }\n    }\n    uid: 3\n")),
              "6:7 extra-brace '}'\n");
    EXPECT_EQ(found(begin_job("    job_id: 5\n    }\n")), "5:5 extra-brace '}'\n");
    EXPECT_EQ(found(end_job + "}\n" + end_job), "7:1 extra-brace '}'\n");
}

TEST(ExtraBraces, AreNotGuessedWhereALineIsOnlyInTheWrongBlock) {
    EXPECT_EQ(found(begin_job("    quota {\n      max_osts: 1\n    }\n    max_qps: 2\n")),
              "7:5 unknown-key 'max_qps'\n");
}

TEST(Consequences, OfTextsWithoutABraceTooManyAreNone) {
    for (const std::string &text : {end_job, begin_job("    x: 1\n    job_id: y\n")}) {
        EXPECT_EQ(found_with_consequences(text), found(text));
    }
}

TEST(FirstLines, AreThoseOfThePartThatIsChecked) {
    const std::string text = begin_job("    job_id: 1\n    job_id: 2\n");
    std::string said;
    const auto add = [](const kvt_finding *finding, void *user) {
        *static_cast<std::string *>(user) += std::to_string(finding->line) + " " +
                                             std::to_string(finding->first_line) + " " +
                                             finding->message;
        return 0;
    };
    const kvt_check_options options = {KVT_SEVERITY_STYLE, 0, 101};
    EXPECT_EQ(kvt_check_with(text.data(), text.size(), &options, add, &said), 1U);
    EXPECT_EQ(said, "105 104 'job_id' stands here once more, with another value: that of line 104 "
                    "is lost");
    EXPECT_EQ(kvt_check_with(text.data(), text.size(), nullptr, nullptr, nullptr), 1U);
}

} // namespace
} // namespace kvt_test
