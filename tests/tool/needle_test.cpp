// What a search takes for its number or its text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "kvt/messages/message_type.h"
#include "model/needle.h"
#include "tables/records.h"

namespace kvt_tool {
namespace {

/// The paths at which a needle is found in a record.
std::vector<std::string> found(int32_t kind, const void *record, std::string_view what) {
    const Needle needle(what);
    std::vector<std::string> paths;
    std::get<FieldPath>(FieldPath::parse("**"))
        .each(*kvt_str::find_kind(kind), record, [&](const FoundField &field) {
            if (needle.is_in(field)) {
                paths.emplace_back(field.path);
            }
        });
    return paths;
}

using Paths = std::vector<std::string>;

TEST(Needles, ThatAreNumbersAreFoundInEitherNotation) {
    const vemra_end_job job = {747, 10370028842375512066U};
    for (const char *what : {"747", "0747", "0x2eb", "0X00000000000002EB"}) {
        EXPECT_EQ(found(VEMRA_MSG_TYPE_END_JOB, &job, what), Paths{"job_id"}) << what;
    }
    for (const char *what : {"10370028842375512066", "0x8fe9a7c1d3c0a002"}) {
        const vemra_end_job same = {1, 0x8fe9a7c1d3c0a002U};
        const bool is_decimal = what[1] != 'x';
        EXPECT_EQ(found(VEMRA_MSG_TYPE_END_JOB, is_decimal ? &job : &same, what),
                  Paths{"reservation_id"});
    }
    for (const char *what : {"74", "7470", "0x747", "-747", "18446744073709552363", "0x", "747x"}) {
        EXPECT_EQ(found(VEMRA_MSG_TYPE_END_JOB, &job, what), Paths{}) << what;
    }
}

TEST(Needles, BelowZeroAreFoundInFieldsWithASign) {
    vemra_tree_conn conn = {};
    conn.pr_sd_to_an.raw_traffic = -1;
    conn.qp_child_idxs[0] = 255;
    vemra_job_data job = {};
    job.conns = &conn;
    job.conns_num = 1;
    job.job_id = UINT64_MAX;
    EXPECT_EQ(found(VEMRA_MSG_TYPE_JOB_DATA, &job, "-1"),
              Paths{"conns[0].pr_sd_to_an.raw_traffic"});
    EXPECT_EQ(found(VEMRA_MSG_TYPE_JOB_DATA, &job, "18446744073709551615"), Paths{"job_id"});
}

TEST(Needles, ThatAreNumbersAreFoundInTextsAsWholeWords) {
    char hosts[] = "node17,17,0x0011:x";
    vemra_begin_job job = {};
    job.hosts = hosts;
    for (const char *what : {"17", "0x11", "017"}) {
        EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, what), Paths{"hosts"}) << what;
    }
    for (const char *what : {"1", "11", "7", "-17"}) {
        EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, what), Paths{}) << what;
    }
}

TEST(Needles, ThatAreTextsAreFoundAsParts) {
    char hosts[] = "node17,Node18";
    vemra_begin_job job = {};
    job.hosts = hosts;
    for (const char *what : {"node", "Node18", "e17,N", "node1"}) {
        EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, what), Paths{"hosts"}) << what;
    }
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "node18"), Paths{});
}

TEST(Needles, AreFoundInFloats) {
    vemra_begin_job job = {};
    job.quota_percentage = 12.5F;
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "12.5"), Paths{"quota_percentage"});
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "12"), Paths{});
    job.quota_percentage = 12;
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "12"), Paths{"quota_percentage"});
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "-12"), Paths{});
    job.quota_percentage = 0.1F;
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "0.1"), Paths{"quota_percentage"});
    job.quota_percentage = 16777216;
    EXPECT_EQ(found(VEMRA_MSG_TYPE_BEGIN_JOB, &job, "16777217"), Paths{});
}

TEST(Needles, MayBeInTextsThatHoldThem) {
    EXPECT_TRUE(Needle("747").may_be_in("job_id: 747\n"));
    EXPECT_TRUE(Needle("0x2eb").may_be_in("job_id: 747\n"));
    EXPECT_TRUE(Needle("0747").may_be_in("job_id: 747\n"));
    EXPECT_TRUE(Needle("747").may_be_in("addr: \"0X2eb\"\n"));
    EXPECT_TRUE(Needle("747").may_be_in("addr: \"0x2EB\"\n"));
    EXPECT_FALSE(Needle("747").may_be_in("job_id: 748\n"));
    EXPECT_TRUE(Needle("-1").may_be_in("raw_traffic: -1\n"));
    EXPECT_TRUE(Needle("node").may_be_in("hosts: \"a-node\"\n"));
    EXPECT_FALSE(Needle("node").may_be_in("hosts: \"a-nod\"\n"));
    // Lines are joined with commas.
    EXPECT_TRUE(Needle("node1,b").may_be_in("hosts: \"node1\"\nhosts: \"b\"\n"));
    EXPECT_TRUE(Needle(",").may_be_in("hosts: \"a\"\nhosts: \"b\"\n"));
    EXPECT_FALSE(Needle("node1,b").may_be_in("hosts: \"node2\"\nhosts: \"b\"\n"));
}

TEST(Needles, AreOnTheLinesOfTheirValues) {
    const Record &tree = kvt_str::RecordOf<vemra_tree>::table;
    const Record &conn = kvt_str::RecordOf<vemra_tree_conn>::table;
    const Record &path = kvt_str::RecordOf<ibv_sa_path_rec>::table;
    const Record &job = kvt_str::RecordOf<vemra_begin_job>::table;
    EXPECT_TRUE(Needle("0xff").is_on_line(*find_row(tree, "tree_id"), "tree_id: 255\n"));
    EXPECT_TRUE(Needle("255").is_on_line(*find_row(tree, "tree_id"), "tree_id:  +0255 x\n"));
    EXPECT_FALSE(Needle("255").is_on_line(*find_row(tree, "tree_id"), "tree_id : 255\n"));
    EXPECT_FALSE(Needle("255").is_on_line(*find_row(tree, "tree_id"), "tree_id: 2550\n"));
    // Numbers are cut to their fields.
    EXPECT_TRUE(Needle("44").is_on_line(*find_row(conn, "qp_child_idxs"), "qp_child_idxs: 300\n"));
    EXPECT_TRUE(Needle("-3").is_on_line(*find_row(path, "raw_traffic"), "raw_traffic: -3\n"));
    EXPECT_TRUE(
        Needle("12.5").is_on_line(*find_row(job, "quota_percentage"), "quota_percentage: 12.50\n"));
    EXPECT_TRUE(Needle("b").is_on_line(*find_row(job, "hosts"), "hosts: \"a-b\"\n"));
    EXPECT_FALSE(Needle("host").is_on_line(*find_row(job, "hosts"), "hosts: \"a-b\"\n"));
}

} // namespace
} // namespace kvt_tool
