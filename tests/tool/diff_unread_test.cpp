// Lines that the reader does not take as they stand are compared as lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "diff/diff_text.h"
#include "diff/diff_unread.h"
#include "units.h"

namespace kvt_tool {
namespace {

std::vector<UnreadLine> unread_of(const std::string &text) {
    std::vector<UnreadLine> lines;
    each_unit(text, [&](const Unit &unit) {
        for (UnreadLine &line : find_unread_lines(unit)) {
            lines.push_back(std::move(line));
        }
    });
    return lines;
}

std::string shown(const std::vector<UnreadLine> &lines) {
    std::string text;
    for (const UnreadLine &line : lines) {
        text += std::to_string(line.line) + " " + line.path + "|" + line.text + "\n";
    }
    return text;
}

std::string message(const std::string &lines) {
    return "msg {\n  type: END_JOB\n  end_job {\n" + lines + "  }\n}\n";
}

std::string differences(const std::string &a, const std::string &b) {
    const std::vector<UnreadLine> lines_a = unread_of(a);
    const std::vector<UnreadLine> lines_b = unread_of(b);
    std::string text;
    for (const UnreadDifference &difference : diff_unread(lines_a, lines_b)) {
        text += difference_text(difference) + "\n";
    }
    return text;
}

TEST(UnreadLines, AreNoneInATextWithoutFindings) {
    EXPECT_EQ(shown(unread_of(message("    job_id: 5\n"))), "");
}

TEST(UnreadLines, AreThoseWithFindings) {
    EXPECT_EQ(shown(unread_of("\n" + message("    job_id: 5\n    future_key: 7\n    words\n"))),
              "6 end_job|future_key: 7\n7 end_job|words\n");
}

TEST(UnreadLines, AreAllOfABlockThatIsSkipped) {
    EXPECT_EQ(shown(unread_of(message("    future {\n      a: 1\n    }\n    job_id: 5\n"))),
              "4 end_job|future {\n5 end_job|a: 1\n6 end_job|}\n");
}

TEST(UnreadLines, AreBothOfAKeyThatComesTwice) {
    EXPECT_EQ(shown(unread_of(message("    job_id: 5\n    reservation_id: 1\n    job_id: 6\n"))),
              "4 end_job|job_id: 5\n6 end_job|job_id: 6\n");
}

TEST(UnreadLines, AreAllLinesWhereABlockIsNotClosed) {
    EXPECT_EQ(shown(unread_of("msg {\n  type: END_JOB\n\n  end_job {\n    job_id: 5\n")),
              "1 |msg {\n2 |type: END_JOB\n4 |end_job {\n5 |job_id: 5\n");
}

TEST(UnreadLines, AreNoneForTheirEndsAlone) {
    EXPECT_EQ(shown(unread_of("msg {\r\n  type: END_JOB\r\n  end_job {\r\n  }\r\n}\r\n")), "");
}

TEST(DiffOfUnreadLines, ShowsTheValuesOfAKey) {
    EXPECT_EQ(differences(message("    job_id: 5\n    future_key: 7\n"),
                          message("    future_key: 8\n    job_id: 5\n")),
              "line 5, not read: future_key: 7 -> 8\n");
}

TEST(DiffOfUnreadLines, ShowsWhatOnlyOneSideHas) {
    EXPECT_EQ(differences(message("    a: 1\n    words\n"), message("    a: 1\n    b: 2\n")),
              "- line 5, not read: words\n+ line 5, not read: b: 2\n");
}

TEST(DiffOfUnreadLines, IsNoneOfTheSameLines) {
    EXPECT_EQ(differences(message("    a: 1\n    b: 2\n"), message("job_id: 5\na: 1\n\nb: 2\n")),
              "");
}

TEST(DiffOfUnreadLines, TellsOfAnotherOrder) {
    EXPECT_EQ(differences(message("    a: 1\n    b: 2\n"), message("    b: 2\n    a: 1\n")),
              "lines that are not read: order differs\n");
}

TEST(DiffOfUnreadLines, ComparesThemBlockByBlock) {
    const std::string a = "msg {\ntype: JOB_DATA\njob_data {\nconns_num: 2\nconns {\nx: 1\n}\n"
                          "conns {\n}\n}\n}\n";
    const std::string b = "msg {\ntype: JOB_DATA\njob_data {\nconns_num: 2\nconns {\n}\n"
                          "conns {\nx: 1\n}\n}\n}\n";
    EXPECT_EQ(differences(a, b), "- line 6, not read: x: 1\n+ line 8, not read: x: 1\n");
}

} // namespace
} // namespace kvt_tool
