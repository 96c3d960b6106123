// Paths of fields: what they lead to, and what is said of wrong ones.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "model/block_text.h"
#include "model/field_path.h"
#include "model/write_text.h"
#include "samples/sample.h"
#include "support/messages.h"
#include "support/random_records.h"
#include "tables/records.h"

namespace kvt_tool {
namespace {

using kvt_str::find_kind;

std::string error_of(std::string_view text) {
    const std::variant<FieldPath, std::string> path = FieldPath::parse(text);
    return std::holds_alternative<std::string>(path) ? std::get<std::string>(path) : "(a path)";
}

/// What a path leads to, one line each: the path, a blank, the value.
std::string found(const char *kind_name, const void *record, std::string_view text) {
    const std::variant<FieldPath, std::string> path = FieldPath::parse(text);
    if (std::holds_alternative<std::string>(path)) {
        return std::get<std::string>(path);
    }
    std::string lines;
    std::get<FieldPath>(path).each(*find_kind(kind_name), record, [&](const FoundField &field) {
        lines.append(field.path).append(" ").append(field.value()).append("\n");
    });
    return lines;
}

/// A job with two connections and a tree.
class FieldPathsOfAJob : public testing::Test {
protected:
    FieldPathsOfAJob() {
        job_.job_id = 5;
        job_.conns_num = 2;
        job_.conns = conns_;
        std::memset(conns_[0].qp_child_idxs, 255, sizeof conns_[0].qp_child_idxs);
        conns_[0].qp_child_idxs[0] = 7;
        conns_[0].qp_child_idxs[1] = 8;
        conns_[0].tree_id = 1;
        conns_[1] = conns_[0];
        conns_[1].qp_child_idxs[1] = 255;
        conns_[1].tree_id = 2;
        conns_[1].pr_sd_to_an.sl = 3;
        conns_[1].pr_sd_to_an.raw_traffic = -1;
    }

    std::string show(std::string_view path) const { return found("JOB_DATA", &job_, path); }

    vemra_job_data job_ = {};
    vemra_tree_conn conns_[2] = {};
};

TEST_F(FieldPathsOfAJob, LeadToNumbers) {
    EXPECT_EQ(show("job_id"), "job_id 5\n");
    EXPECT_EQ(show("job_data.job_id"), "job_id 5\n");
    EXPECT_EQ(show("qpc_opts.sl"), "qpc_opts.sl 0\n");
    EXPECT_EQ(show("conns[1].pr_sd_to_an.sl"), "conns[1].pr_sd_to_an.sl 3\n");
    EXPECT_EQ(show("conns[1].pr_sd_to_an.raw_traffic"), "conns[1].pr_sd_to_an.raw_traffic -1\n");
    EXPECT_EQ(show("conns_num"), "conns_num 2\n");
}

TEST_F(FieldPathsOfAJob, LeadToAllElementsWithoutAnIndex) {
    EXPECT_EQ(show("conns.tree_id"), "conns[0].tree_id 1\nconns[1].tree_id 2\n");
    EXPECT_EQ(show("conns[*].tree_id"), "conns[0].tree_id 1\nconns[1].tree_id 2\n");
    EXPECT_EQ(show("conns.qp_child_idxs"),
              "conns[0].qp_child_idxs[0] 7\nconns[0].qp_child_idxs[1] 8\n"
              "conns[1].qp_child_idxs[0] 7\n");
    EXPECT_EQ(show("conns[*].qp_child_idxs[1]"), "conns[0].qp_child_idxs[1] 8\n");
}

TEST_F(FieldPathsOfAJob, LeadToElementsFromTheEndOfAList) {
    EXPECT_EQ(show("conns[-1].tree_id"), "conns[1].tree_id 2\n");
    EXPECT_EQ(show("conns[-2].qp_child_idxs[-1]"), "conns[0].qp_child_idxs[1] 8\n");
    EXPECT_EQ(show("conns[-3].tree_id"), "");
    EXPECT_EQ(show("conns[-0].tree_id"), "conns[0].tree_id 1\n");
    EXPECT_EQ(show("conns[-18446744073709551615].tree_id"), "");
}

TEST_F(FieldPathsOfAJob, LeadToSlicesOfLists) {
    const std::string both = "conns[0].tree_id 1\nconns[1].tree_id 2\n";
    EXPECT_EQ(show("conns[:].tree_id"), both);
    EXPECT_EQ(show("conns[0:2].tree_id"), both);
    EXPECT_EQ(show("conns[:18446744073709551615].tree_id"), both);
    EXPECT_EQ(show("conns[-3:].tree_id"), both);
    EXPECT_EQ(show("conns[1:].tree_id"), "conns[1].tree_id 2\n");
    EXPECT_EQ(show("conns[:1].tree_id"), "conns[0].tree_id 1\n");
    EXPECT_EQ(show("conns[:-1].tree_id"), "conns[0].tree_id 1\n");
    EXPECT_EQ(show("conns[-2:-1].tree_id"), "conns[0].tree_id 1\n");
    EXPECT_EQ(show("conns[0].qp_child_idxs[1:2]"), "conns[0].qp_child_idxs[1] 8\n");
    for (const char *nothing :
         {"conns[1:1]", "conns[1:0]", "conns[2:]", "conns[:0]", "conns[:-2]"}) {
        EXPECT_EQ(show(nothing), "") << nothing;
    }
}

TEST_F(FieldPathsOfAJob, LeadToAnyDepth) {
    EXPECT_EQ(show("**.tree_id"), "conns[0].tree_id 1\nconns[1].tree_id 2\n");
    EXPECT_EQ(show("conns[1].**.sl"), "conns[1].pr_sd_to_an.sl 3\nconns[1].pr_an_to_sd.sl 0\n");
    EXPECT_EQ(show("**.job_id"), "job_id 5\n");
    EXPECT_EQ(show("job_data.**.job_id"), "job_id 5\n");
    EXPECT_EQ(show("**.conns[-1].tree_id"), "conns[1].tree_id 2\n");
    EXPECT_EQ(show("**.pr_sd_to_an.**.sl"),
              "conns[0].pr_sd_to_an.sl 0\nconns[1].pr_sd_to_an.sl 3\n");
    // In the order of the text, and each once, however many ways lead there.
    EXPECT_EQ(show("**.sl"), "qpc_opts.sl 0\nsat_qpc_opts.sl 0\n"
                             "conns[0].pr_sd_to_an.sl 0\nconns[0].pr_an_to_sd.sl 0\n"
                             "conns[1].pr_sd_to_an.sl 3\nconns[1].pr_an_to_sd.sl 0\n");
    EXPECT_EQ(show("**.**.sl"), show("**.sl"));
}

TEST_F(FieldPathsOfAJob, LeadToAllValuesBelow) {
    EXPECT_EQ(show("conns[1].qp_child_idxs[0:].**"),
              "column 28: \"qp_child_idxs\" is a list of numbers and has no fields");
    EXPECT_EQ(show("conns[1].pr_sd_to_an.dgid.**"),
              show("conns[1].pr_sd_to_an.dgid.subnet_prefix") +
                  show("conns[1].pr_sd_to_an.dgid.guid"));
    vemra_end_job job = {5, 7};
    EXPECT_EQ(found("END_JOB", &job, "**"), "job_id 5\nreservation_id 7\n");
    EXPECT_EQ(found("END_JOB", &job, "end_job.**"), "job_id 5\nreservation_id 7\n");
    EXPECT_NE(show("**").find("\nconns[1].qp_child_idxs[0] 7\n"), std::string::npos);
    EXPECT_EQ(show("**").find('{'), std::string::npos);
}

TEST_F(FieldPathsOfAJob, ShowGuidsInHexadecimalWhereThatIsWanted) {
    vemra_tree_an node = {};
    node.guid = 0x2c903;
    node.tree_id = 255;
    job_.agg_nodes = &node;
    job_.agg_nodes_num = 1;
    std::string shown;
    const FieldPath path = std::get<FieldPath>(FieldPath::parse("agg_nodes"));
    path.each(*find_kind("JOB_DATA"), &job_, [&](const FoundField &field) {
        shown += field.value(GuidForm::hexadecimal) + "\n" + field.value() + "\n";
    });
    EXPECT_NE(shown.find("\n  guid: 0x000000000002c903\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\n  guid: 182531\n"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("tree_id: 0x"), std::string::npos) << shown;
}

TEST_F(FieldPathsOfAJob, LeadNowhereAfterTheEndOfAList) {
    EXPECT_EQ(show("conns[2].tree_id"), "");
    EXPECT_EQ(show("conns[18446744073709551615]"), "");
    EXPECT_EQ(show("trees.tree_id"), "");
}

TEST_F(FieldPathsOfAJob, LeadToBlocksAsTheyAreWritten) {
    EXPECT_EQ(show("conns[1].pr_sd_to_an"), "conns[1].pr_sd_to_an {\n"
                                            "  dgid {\n"
                                            "  }\n"
                                            "  sgid {\n"
                                            "  }\n"
                                            "  raw_traffic: -1\n"
                                            "  sl: 3\n"
                                            "}\n");
    EXPECT_EQ(show("sat_qpc_opts"), "sat_qpc_opts {\n}\n");
}

TEST(FieldPaths, LeadToTheWholeRecord) {
    vemra_end_job job = {5, 7};
    EXPECT_EQ(found("END_JOB", &job, "end_job"), "end_job {\n"
                                                 "  job_id: 5\n"
                                                 "  reservation_id: 7\n"
                                                 "}\n");
}

TEST(FieldPaths, LeadToTextsAndFloatsAsTheyAre) {
    char hosts[] = "a \"b\"\nc";
    vemra_begin_job job = {};
    job.hosts = hosts;
    job.quota_percentage = 12.5F;
    EXPECT_EQ(found("BEGIN_JOB", &job, "hosts"), "hosts a \"b\"\nc\n");
    EXPECT_EQ(found("BEGIN_JOB", &job, "quota_percentage"), "quota_percentage 12.5\n");
    job.hosts = nullptr;
    job.quota_percentage = 0;
    EXPECT_EQ(found("BEGIN_JOB", &job, "hosts"), "hosts \n");
    EXPECT_EQ(found("BEGIN_JOB", &job, "quota_percentage"), "quota_percentage 0\n");
}

TEST(FieldPaths, LeadToNoMoreSlotsThanThereAre) {
    vemra_release_groups groups = {};
    groups.num_groups = 200;
    groups.groups[3].group_id = 9;
    EXPECT_EQ(found("RELEASE_GROUPS", &groups, "groups.group_id"),
              "groups[0].group_id 0\ngroups[1].group_id 0\ngroups[2].group_id 0\n"
              "groups[3].group_id 9\n");
}

TEST(FieldPaths, TellWhatTheyFound) {
    vemra_tree tree = {};
    vemra_job_data job = {};
    job.trees = &tree;
    job.trees_num = 1;
    const FieldPath path = std::get<FieldPath>(FieldPath::parse("trees"));
    path.each(*find_kind("JOB_DATA"), &job, [&](const FoundField &field) {
        EXPECT_EQ(key_of(*field.row), "trees");
        EXPECT_EQ(field.record, &job);
        EXPECT_EQ(field.index, 0U);
        EXPECT_EQ(field.block, &kvt_str::RecordOf<vemra_tree>::table);
        EXPECT_EQ(field.content, &tree);
    });
}

TEST(FieldPaths, ApplyToKindsThatHaveThem) {
    const auto kinds = [](std::string_view text) {
        const FieldPath path = std::get<FieldPath>(FieldPath::parse(text));
        std::string names;
        for (const MessageKind &kind : kvt_str::message_kinds()) {
            names += path.applies_to(kind) ? std::string(kind.name) + " " : "";
        }
        return names;
    };
    EXPECT_EQ(kinds("groups.group_id"), "GROUPS_DATA RELEASE_GROUPS ");
    EXPECT_EQ(kinds("end_job"), "END_JOB ");
    EXPECT_EQ(kinds("end_job.job_id"), "END_JOB ");
    EXPECT_EQ(kinds("ts"), "EVENTS_REQUEST ");
    vemra_end_job job = {5, 7};
    EXPECT_EQ(found("END_JOB", &job, "groups.group_id"), "");
}

TEST(FieldPaths, SayWhereTheyAreNoPaths) {
    EXPECT_EQ(error_of(""), "column 1: a key is missing");
    EXPECT_EQ(error_of("conns."), "column 7: a key is missing");
    EXPECT_EQ(error_of("conns..sl"), "column 7: a key is missing");
    EXPECT_EQ(error_of("[3]"), "column 1: a key is missing");
    for (const char *wrong : {"conns[]", "conns[-]", "conns[x]", "conns[ 1]", "conns[+1]"}) {
        EXPECT_EQ(error_of(wrong), "column 7: an index is a number, a range such as 2:5, or *");
    }
    EXPECT_EQ(error_of("conns[1:2:3]"), "column 10: \"]\" is missing");
    EXPECT_EQ(error_of("conns[:-]"), "column 8: \"]\" is missing");
    EXPECT_EQ(error_of("conns[1:18446744073709551616]"), "column 9: this index is too large");
    EXPECT_EQ(error_of("*"), "column 1: a key is missing");
    EXPECT_EQ(error_of("***"),
              "column 3: a key, an index or the end of the path should stand here");
    std::string longest = "**";
    for (int i = 0; i < 61; ++i) {
        longest += ".**";
    }
    EXPECT_EQ(error_of(longest + ".sl"), "(a path)");
    EXPECT_EQ(error_of(longest + ".**.sl"), "column 190: this path is too long");
    EXPECT_EQ(error_of("conns[1"), "column 8: \"]\" is missing");
    EXPECT_EQ(error_of("conns[18446744073709551616]"), "column 7: this index is too large");
    EXPECT_EQ(error_of("conns[1]x"),
              "column 9: a key, an index or the end of the path should stand here");
    EXPECT_EQ(error_of("job id"),
              "column 4: a key, an index or the end of the path should stand here");
}

TEST(FieldPaths, SayWhichKeyMayBeMeant) {
    EXPECT_EQ(error_of("conn"),
              "column 1: no message has a field \"conn\"; did you mean \"conns\"?");
    EXPECT_EQ(error_of("job_dat.conns"),
              "column 1: no message has a field \"job_dat\"; did you mean \"job_data\"?");
    EXPECT_EQ(error_of("conns[3].tre_id"),
              "column 10: \"conns[3]\" has no field \"tre_id\"; did you mean "
              "\"conns[3].tree_id\"?");
    EXPECT_EQ(error_of("job_data.tid"),
              "column 10: \"job_data\" has no field \"tid\"; did you mean \"job_data.uid\"?");
    EXPECT_EQ(error_of("qqqqqqqqqqqqqqqqqq"),
              "column 1: no message has a field \"qqqqqqqqqqqqqqqqqq\"");
}

TEST(FieldPaths, SayWhichKeyMayBeMeantAtAnyDepth) {
    EXPECT_EQ(error_of("**.tre_id"),
              "column 4: no message has a field \"tre_id\" at any depth; did "
              "you mean \"**.tree_id\"?");
    EXPECT_EQ(error_of("conns.**.rat"), "column 10: \"conns\" has no field \"rat\" at any depth; "
                                        "did you mean \"conns.**.rate\"?");
    EXPECT_EQ(error_of("**.job_id.x"), "column 11: \"job_id\" is a number and has no fields");
    EXPECT_EQ(error_of("**.qpc_opts[0]"), "column 12: \"qpc_opts\" is no list and takes no index");
    EXPECT_EQ(error_of("reservation_info_request.reservation_id.**"),
              "column 41: \"reservation_id\" is a number and has no fields");
}

TEST(FieldPaths, TellWhereTheyLead) {
    std::string text;
    for (const FieldPlace &place :
         std::get<FieldPath>(FieldPath::parse("**.ftree_data")).places()) {
        text +=
            std::string(place.kind->name) + " " + place.path + " in " + place.table->name + "\n";
        EXPECT_EQ(key_of(*place.row), "ftree_data");
    }
    EXPECT_EQ(text, "SM_DATA sm_data.ftree_data in vemra_sm_data\n");
    const std::vector<FieldPlace> whole = std::get<FieldPath>(FieldPath::parse("end_job")).places();
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].path, "end_job");
    EXPECT_EQ(whole[0].row, nullptr);
}

TEST(FieldPaths, SayWhereAKeyStands) {
    EXPECT_EQ(error_of("rnr_mode"),
              "column 1: no message has a field \"rnr_mode\"; did you mean \"qpc_opts.rnr_mode\"?");
    EXPECT_EQ(error_of("conns[3].rate"),
              "column 10: \"conns[3]\" has no field \"rate\"; did you mean "
              "\"conns[3].pr_sd_to_an.rate\"?");
}

TEST(FieldPaths, SayWhatHasNoIndexAndNoFields) {
    EXPECT_EQ(error_of("job_id[0]"), "column 7: \"job_id\" is no list and takes no index");
    EXPECT_EQ(error_of("qpc_opts[*].sl"), "column 9: \"qpc_opts\" is no list and takes no index");
    EXPECT_EQ(error_of("job_id.x"), "column 8: \"job_id\" is a number and has no fields");
    EXPECT_EQ(error_of("hosts.x"), "column 7: \"hosts\" is a text and has no fields");
    EXPECT_EQ(error_of("port_guids.x"),
              "column 12: \"port_guids\" is a list of numbers and has no fields");
}

TEST(FieldPaths, LeadToTheBlocksOfMessagesAsTheyAreWritten) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        const OwnedMessage sample = make_sample(kind, {3, 6, 0});
        std::string text;
        ASSERT_TRUE(add_text(kind, sample.record(), text));
        // Within the message, the block is indented by two blanks.
        std::string block = block_text(*kind.record, sample.record(), GuidForm::decimal);
        for (size_t at = 0; (at = block.find('\n', at)) != std::string::npos;) {
            block.insert(++at, "  ");
        }
        EXPECT_EQ(text, "msg {\n  type: " + std::string(kind.name) + "\n  " + kind.block + " " +
                            block + "\n}\n\n");
    }
}

void try_all_paths(const MessageKind &kind, const void *record, const Record &table,
                   const std::string &prefix) {
    for (const Row &row : table.rows) {
        const std::string text = prefix + std::string(key_of(row));
        const std::variant<FieldPath, std::string> path = FieldPath::parse(text);
        ASSERT_TRUE(std::holds_alternative<FieldPath>(path)) << text;
        EXPECT_TRUE(std::get<FieldPath>(path).applies_to(kind)) << text;
        std::get<FieldPath>(path).each(kind, record, [&](const FoundField &field) {
            // What is found is all that its own path leads to.
            EXPECT_EQ(found(kind.name, record, field.path),
                      std::string(field.path) + " " + field.value() + "\n");
        });
        if (row.element != nullptr) {
            try_all_paths(kind, record, *row.element, text + ".");
        }
    }
}

TEST(FieldPaths, LeadToEveryFieldOfRandomRecords) {
    kvt_test::Random random(4);
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            kvt_test::OwnedRecord record(*kind.record);
            kvt_test::fill_randomly(*kind.record, record.get(), random);
            try_all_paths(kind, record.get(), *kind.record, "");
        }
    }
}

} // namespace
} // namespace kvt_tool
