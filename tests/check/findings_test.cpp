// What a finding tells beside its message, and the functions around findings.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "check/found.h"

namespace kvt_test {
namespace {

/// A finding without what ends with the callback.
struct Kept {
    kvt_finding finding;
    std::string nearest;
    std::string path;
};

std::vector<Kept> findings_in(const std::string &text) {
    std::vector<Kept> kept;
    const auto keep = [](const kvt_finding *finding, void *user) {
        if (!is_no_count(finding)) {
            static_cast<std::vector<Kept> *>(user)->push_back(
                {*finding, finding->nearest != nullptr ? finding->nearest : "(none)",
                 finding->path});
        }
        return 0;
    };
    const size_t count = kvt_check(text.data(), text.size(), keep, &kept);
    EXPECT_GE(count, kept.size());
    return kept;
}

TEST(Findings, TellTheirPlace) {
    const std::string text =
        topology("    switches {\n    }\n    switches {\n\n\t id: 7x \n    }\n");
    const std::vector<Kept> all = findings_in(text);
    ASSERT_EQ(all.size(), 1U);
    const kvt_finding &finding = all[0].finding;
    EXPECT_EQ(finding.kind, KVT_FINDING_UNIT);
    EXPECT_STREQ(finding.name, "unit");
    EXPECT_EQ(finding.line, 8U);
    EXPECT_EQ(finding.column, 8U);
    EXPECT_EQ(finding.offset, text.find("x \n"));
    EXPECT_EQ(finding.length, 1U);
    EXPECT_EQ(finding.line_offset, text.find("\t id"));
    EXPECT_EQ(finding.line_length, 9U);
    EXPECT_EQ(finding.first_line, 0U);
    EXPECT_EQ(finding.in_message, 1U);
    EXPECT_EQ(all[0].nearest, "(none)");
    EXPECT_EQ(all[0].path, "topology_info_list.switches[1]");
}

TEST(Findings, TellTheirBlock) {
    const std::vector<Kept> all = findings_in(
        job_data(
            "    uid: x\n    trees {\n      mgid {\n        x: 1\n      }\n      y: 1\n    }\n") +
        "z\n");
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0].path, "job_data");
    EXPECT_EQ(all[1].path, "job_data.trees[0].mgid");
    EXPECT_EQ(all[2].path, "job_data.trees[0]");
    EXPECT_EQ(all[3].path, "");
}

TEST(Findings, TellTheirMessage) {
    const std::string broken = message_of("END_JOB", "end_job", "    job_id: x\n");
    const std::vector<Kept> all = findings_in("x\n" + broken + broken + "z\n" + broken);
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[0].finding.in_message, 0U);
    EXPECT_EQ(all[1].finding.in_message, 1U);
    EXPECT_EQ(all[2].finding.in_message, 2U);
    EXPECT_EQ(all[3].finding.in_message, 2U);
    EXPECT_EQ(all[4].finding.in_message, 3U);
}

TEST(Findings, TellWhereSomethingStoodFirst) {
    const std::vector<Kept> all = findings_in(
        begin_job("    job_id: 1\n    quota {\n    }\n    port_guids: 1\n    job_id: 2\n"
                  "    quota {\n    }\n    port_guids: 2\n"));
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].finding.first_line, 4U);
    EXPECT_EQ(all[1].finding.first_line, 5U);
    EXPECT_EQ(all[2].finding.first_line, 7U);
    const std::vector<Kept> third =
        findings_in(begin_job("    job_id: 1\n    job_id: 2\n    job_id: 3\n"));
    ASSERT_EQ(third.size(), 2U);
    EXPECT_EQ(third[1].finding.line, 6U);
    EXPECT_EQ(third[1].finding.first_line, 4U);
}

TEST(Findings, TellTheKeyThatWasProbablyMeant) {
    const auto nearest_in = [](const std::string &lines) {
        std::string nearest;
        for (const Kept &kept : findings_in(begin_job(lines))) {
            nearest += kept.nearest + " ";
        }
        return nearest;
    };
    EXPECT_EQ(nearest_in("jobid: 1\n"), "job_id ");
    EXPECT_EQ(nearest_in("JOB_ID: 1\n"), "job_id ");
    EXPECT_EQ(nearest_in("job-id: 1\n"), "job_id ");
    EXPECT_EQ(nearest_in("jbo_id: 1\n"), "job_id ");
    EXPECT_EQ(nearest_in("udi: 1\n"), "uid ");
    EXPECT_EQ(nearest_in("reproducable_modus: 1\n"), "reproducible_mode ");
    EXPECT_EQ(nearest_in("num_giuds: 1\n"), "num_guids ");
    EXPECT_EQ(nearest_in("x: 1\n"), "(none) ");
    EXPECT_EQ(nearest_in("ab: 1\n"), "(none) ");
    EXPECT_EQ(nearest_in("something_else: 1\n"), "(none) ");
    EXPECT_EQ(nearest_in(std::string(1000, 'x') + ": 1\n"), "(none) ");
    EXPECT_EQ(nearest_in("quoat {\n}\n"), "quota ");
}

TEST(Findings, TakeTwoLettersForAShortKeyButNotOne) {
    const auto said_in_agg_node = [](const std::string &line) {
        return said_of(message_of("RESOURCE_DATA", "resource_message",
                                  "    agg_nodes {\n" + line + "    }\n"));
    };
    EXPECT_EQ(said_in_agg_node("st: 1\n"),
              "'agg_nodes' knows no key 'st': the reader skips this line; did you mean 'ts'?\n");
    EXPECT_EQ(said_in_agg_node("t: 1\n"),
              "'agg_nodes' knows no key 't': the reader skips this line\n");
    EXPECT_EQ(said_in_agg_node("as: 1\n"),
              "'agg_nodes' knows no key 'as': the reader skips this line; did you mean 'ts'?\n");
    EXPECT_EQ(said_in_agg_node("ab: 1\n"),
              "'agg_nodes' knows no key 'ab': the reader skips this line\n");
}

TEST(Findings, ShowWhatCannotBePrinted) {
    EXPECT_EQ(said_of(begin_job("    job_id: \x01\x7F\t\xFF\xC3\n")),
              "'\\x01\\x7f\\t\\xff\\xc3' is no number, and 'job_id' wants one: the field stays 0; "
              "\\x01 is a control character\n");
    EXPECT_EQ(
        said_of(begin_job("    job_id: \xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xC2\x80\xE2\x82x\n")),
        "'\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\\xc2\\x80\\xe2\\x82x' is no number, and 'job_id' "
        "wants one: the field stays 0; \\xc2\\x80 is a control character\n");
    EXPECT_EQ(said_of(begin_job("    job_id: \xC2\xA7\xC2\x9F\n")),
              "'\xC2\xA7\\xc2\\x9f' is no number, and 'job_id' wants one: the field stays 0; "
              "\\xc2\\x9f is a control character\n");
    // A byte that begins no character is shown, also where the end is cut off.
    EXPECT_EQ(said_of(begin_job("    job_id: \xFF" + std::string(60, 'x') + "\n")),
              "'\\xff" + std::string(59, 'x') +
                  "...' is no number, and 'job_id' wants one: the field stays 0\n");
    // A character of several bytes is shown whole or not at all.
    EXPECT_EQ(said_of(begin_job("    job_id: " + std::string(59, 'x') + "\xC3\xA9\n")),
              "'" + std::string(59, 'x') +
                  "...' is no number, and 'job_id' wants one: the field stays 0\n");
}

TEST(Findings, HaveRoomForTheirMessage) {
    const auto measure = [](const kvt_finding *finding, void *) {
        EXPECT_LT(std::string(finding->message).size(), size_t{KVT_FINDING_MESSAGE_ROOM});
        EXPECT_EQ(std::string(finding->message).find('\n'), std::string::npos);
        return 0;
    };
    const std::string text = job_error("    description: " + std::string(500, '\x01') + " \"a\" " +
                                       std::string(500, '\x01') + "\n");
    EXPECT_EQ(kvt_check(text.data(), text.size(), measure, nullptr), 2U);
    // Every byte takes four characters, and the sentence goes on after them.
    EXPECT_EQ(said_of(begin_job("    uid" + std::string(60, 'x') + ": 1\n")).substr(0, 20),
              "the reader takes 'ui");
}

TEST(Findings, AreCountedWithoutACallback) {
    const std::string text = begin_job("    x: 1\n    y: 1\n    job_id: x\n");
    EXPECT_EQ(kvt_check(text.data(), text.size(), nullptr, nullptr), 3U);
    EXPECT_EQ(kvt_check(nullptr, 0, nullptr, nullptr), 1U);
    EXPECT_EQ(kvt_check(nullptr, 5, nullptr, nullptr), 1U);
}

TEST(Findings, EndWhenTheCallbackSaysSo) {
    const std::string message =
        job_data("    x: 1\n    conns {\n      qp_child_idxs: x\n      qp_child_idxs: y\n    }\n"
                 "    conns_num: 3\n    y: 1\n");
    const std::string nul(1, '\0');
    const std::string text = message + "x\n" + message + nul + "x";
    size_t all = kvt_check(text.data(), text.size(), nullptr, nullptr);
    ASSERT_GT(all, 12U);
    for (size_t most = 1; most <= all; ++most) {
        size_t left = most;
        const auto stop = [](const kvt_finding *, void *user) {
            EXPECT_NE(*static_cast<size_t *>(user), 0U);
            return --*static_cast<size_t *>(user) == 0 ? -1 : 0;
        };
        EXPECT_EQ(kvt_check(text.data(), text.size(), stop, &left), most);
        EXPECT_EQ(left, 0U);
    }
}

TEST(FindingKinds, HaveNamesMeaningsAndRemedies) {
    std::set<std::string> names;
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        const auto kind = static_cast<kvt_finding_kind>(number);
        const std::string name = kvt_finding_name(kind);
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_EQ(kvt_finding_of_name(name.c_str()), kind);
        EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string::npos);
        EXPECT_LT(name.size(), 20U);
        const std::string meaning = kvt_finding_meaning(kind);
        EXPECT_EQ(meaning.back(), '.') << name;
        EXPECT_LT(meaning.size(), 100U) << name;
        const std::string remedy = kvt_finding_remedy(kind);
        EXPECT_EQ(remedy.back(), '.') << name;
    }
    EXPECT_STREQ(kvt_finding_remedy(KVT_FINDING_HEXADECIMAL), "Write the number in decimal.");
    EXPECT_EQ(kvt_finding_name(KVT_FINDING_KINDS), nullptr);
    EXPECT_EQ(kvt_finding_meaning(KVT_FINDING_KINDS), nullptr);
    EXPECT_EQ(kvt_finding_of_name("no-such-kind"), KVT_FINDING_KINDS);
    EXPECT_EQ(kvt_finding_of_name(nullptr), KVT_FINDING_KINDS);
}

TEST(Findings, TellTheirPlaceOnALineThatNoNewlineEnds) {
    const std::vector<Kept> all = findings_in("msg {\n  type: END_JOB\n  end_job {\n    job_id");
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].finding.line_length, 10U);
    EXPECT_EQ(all[1].finding.line_length, 10U);
    EXPECT_EQ(all[1].finding.column, 11U);
    EXPECT_EQ(all[1].finding.length, 0U);
}

TEST(Findings, TellTheNumberOfAMessageWithoutItsLine) {
    const std::vector<Kept> all = findings_in("msg\n  type: END_JOB\n  end_job {\n  }\n}\n"
                                              "msgs {\n  type: X\n}\n");
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].finding.in_message, 1U);
    EXPECT_EQ(all[1].finding.in_message, 2U);
    EXPECT_EQ(all[2].finding.in_message, 2U);
}

TEST(Findings, TellTheWholePathOfABlock) {
    const std::vector<Kept> deep = findings_in(
        job_data("    conns {\n      pr_sd_to_an {\n        dgid {\n          x: 1\n        }\n"
                 "      }\n    }\n"));
    ASSERT_EQ(deep.size(), 1U);
    EXPECT_EQ(deep[0].path, "job_data.conns[0].pr_sd_to_an.dgid");
    const std::vector<Kept> longest = findings_in(
        message_of("RESERVATION_INFO_REPLY", "reservation_info_list",
                   "    reservation_list {\n      resources {\n        x: 1\n      }\n    }\n"));
    ASSERT_EQ(longest.size(), 1U);
    EXPECT_EQ(longest[0].path, "reservation_info_list.reservation_list[0].resources");
}

TEST(Findings, TellTheWholeNameThatWasProbablyMeant) {
    const std::vector<Kept> all = findings_in("msg {\n  type: PERSISTENT_RESERVATION_INF\n}\n");
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].nearest, "PERSISTENT_RESERVATION_INFO");
}

TEST(Findings, TakeADashForAnUnderscoreAndTheFirstOfTwoThatAreAsNear) {
    const std::vector<Kept> dashes =
        findings_in(job_data("    conns {\n      pr-sd-to-am {\n      }\n    }\n"));
    ASSERT_EQ(dashes.size(), 1U);
    EXPECT_EQ(dashes[0].nearest, "pr_sd_to_an");
    const std::vector<Kept> others =
        findings_in(job_data("    conns {\n      prxsdxtoxam {\n      }\n    }\n"));
    ASSERT_EQ(others.size(), 1U);
    EXPECT_EQ(others[0].nearest, "(none)");
    const std::vector<Kept> two = findings_in(begin_job("    num_raees: 1\n"));
    ASSERT_EQ(two.size(), 1U);
    EXPECT_EQ(two[0].nearest, "num_rails"); // before num_trees
}

TEST(Findings, TakeFourChangesOfALongWordForATypo) {
    const auto nearest = [](const std::string &key) {
        const std::vector<Kept> all = findings_in(
            message_of("PERSISTENT_JOB_INFO", "persistent_job_info", "    " + key + ": 1\n"));
        return all.size() == 1 ? all[0].nearest : "(another count)";
    };
    EXPECT_EQ(nearest("nnm_chxnnels_pxr_cxnn"), "num_channels_per_conn");
    EXPECT_EQ(nearest("nnm_chxnnels_pxr_cxnx"), "(none)");
}

TEST(Findings, ShowSixtyBytesAndNoPartOfACharacter) {
    const auto shown = [](const std::string &value) {
        const std::string said = said_of(begin_job("    job_id: " + value + "\n"));
        return said.substr(0, said.find(" is no number"));
    };
    const std::string sixty(60, 'x');
    EXPECT_EQ(shown(sixty), "'" + sixty + "'");
    EXPECT_EQ(shown(sixty + "y"), "'" + sixty + "...'");
    for (const size_t before : {57U, 58U, 59U}) {
        const std::string some(before, 'x');
        EXPECT_EQ(shown(some + "\xF0\x9F\x98\x80"), "'" + some + "...'") << before;
    }
    EXPECT_EQ(shown(std::string(56, 'x') + "\xF0\x9F\x98\x80"),
              "'" + std::string(56, 'x') + "\xF0\x9F\x98\x80'");
}

TEST(Findings, ShowTheFirstAndTheLastCharactersOfEveryLength) {
    EXPECT_EQ(
        said_of(begin_job("    job_id: \xC2\xA0\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x90\x80"
                          "\x80\xF4\x8F\xBF\xBF\n")),
        "'\\xc2\\xa0\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF' is no "
        "number, and 'job_id' wants one: the field stays 0; \\xc2\\xa0 is a no-break space\n");
    EXPECT_EQ(said_of(begin_job("    job_id: \xC2\x9F\xC1\xBF\xC0\x80\xF5\x80\x80\x80\n")),
              "'\\xc2\\x9f\\xc1\\xbf\\xc0\\x80\\xf5\\x80\\x80\\x80' is no number, and 'job_id' "
              "wants one: the field stays 0; \\xc2\\x9f is a control character\n");
}

} // namespace
} // namespace kvt_test
