// Byte arrays that end at a mark are read with as many elements as they have lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/messages.h"
#include "kvt/messages/job_data.h"
#include "model/fields.h"
#include "support/messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "units.h"
#include "json/from_json.h"
#include "json/parse_json.h"
#include "json/to_json.h"

namespace kvt_tool {
namespace {

using Bytes = std::vector<int>;

std::string job_with(const std::string &lines_of_connections) {
    return "msg {\n  type: JOB_DATA\n  job_data {\n" + lines_of_connections + "  }\n}\n";
}

/// The child indexes of each connection that the tool reads, up to their end.
std::vector<Bytes> child_lists_of(const std::string &text) {
    std::vector<Bytes> lists;
    each_unit(text, [&](const Unit &unit) {
        read_messages(unit, [&](const ReadMessage &message) {
            const auto &job = *static_cast<const vemra_job_data *>(message.record);
            for (uint32_t i = 0; i < job.conns_num; ++i) {
                Bytes &list = lists.emplace_back();
                for (const uint8_t child : job.conns[i].qp_child_idxs) {
                    if (child == 255) {
                        break;
                    }
                    list.push_back(child);
                }
            }
        });
    });
    return lists;
}

std::vector<Bytes> child_lists_of_one(const std::string &lines) {
    return child_lists_of(job_with("    conns {\n" + lines + "    }\n"));
}

TEST(EndMarks, StandAfterTheLinesThatWereThere) {
    EXPECT_EQ(child_lists_of_one("      qp_child_idxs: 4\n"), (std::vector<Bytes>{{4}}));
    EXPECT_EQ(child_lists_of_one("      qp_child_idxs: 0\n      qp_child_idxs: 0\n"),
              (std::vector<Bytes>{{0, 0}}));
}

TEST(EndMarks, StandFirstWhereThereIsNoLine) {
    EXPECT_EQ(child_lists_of_one(""), std::vector<Bytes>{{}});
    EXPECT_EQ(child_lists_of_one("      tree_id: 5\n"), std::vector<Bytes>{{}});
}

TEST(EndMarks, StandInEachOfManyConnections) {
    std::string lines;
    std::vector<Bytes> lists;
    for (int i = 0; i <= 64; ++i) {
        lines += "    conns {\n";
        Bytes &list = lists.emplace_back();
        for (int child = 0; child < i; ++child) {
            lines += "      qp_child_idxs: " + std::to_string(child) + "\n";
            list.push_back(child);
        }
        lines += "    }\n";
    }
    EXPECT_EQ(child_lists_of(job_with(lines)), lists);
}

TEST(EndMarks, DoNotStandInAListThatIsFull) {
    std::string lines;
    for (int i = 0; i < 70; ++i) {
        lines += "      qp_child_idxs: 1\n";
    }
    EXPECT_EQ(child_lists_of_one(lines), (std::vector<Bytes>{Bytes(64, 1)}));
}

TEST(EndMarks, OfALineAreTheLines) {
    EXPECT_EQ(child_lists_of_one("      qp_child_idxs: 4\n      qp_child_idxs: 255\n"),
              (std::vector<Bytes>{{4}}));
}

TEST(EndMarks, FollowTheLastOfTwoRuns) {
    EXPECT_EQ(child_lists_of_one("      qp_child_idxs: 4\n      qp_child_idxs: 5\n"
                                 "      tree_id: 1\n      qp_child_idxs: 6\n"),
              (std::vector<Bytes>{{6}}));
}

TEST(EndMarks, CountLinesInAnyForm) {
    EXPECT_EQ(child_lists_of_one("qp_child_idxs:4\n\n \t qp_child_idxs: x\n"
                                 "qp_child_idxs_of: 3\nqp_child_idxs: 300\n"),
              (std::vector<Bytes>{{4, 0, 0, 44}}));
}

TEST(EndMarks, LeaveABraceWhatItIs) {
    // On the first line of a block a key comes first, on any other line the brace.
    EXPECT_EQ(child_lists_of_one("      qp_child_idxs: 4 }\n      qp_child_idxs: 5\n"),
              (std::vector<Bytes>{{4, 5}}));
    EXPECT_EQ(child_lists_of_one("      tree_id: 1\n      qp_child_idxs: 4 }\n"),
              std::vector<Bytes>{{}});
}

TEST(EndMarks, ComeAtTheEndOfACutText) {
    EXPECT_EQ(child_lists_of("msg {\ntype: JOB_DATA\njob_data {\nconns {\nqp_child_idxs: 4"),
              (std::vector<Bytes>{{4}}));
    EXPECT_EQ(child_lists_of("msg {\ntype: JOB_DATA\njob_data {\nconns {"), std::vector<Bytes>{{}});
}

/// Records of the codec and of the tool differ by the marks alone.
void expect_same_but_for_marks(const Record &table, const void *codec, const void *tool,
                               const std::string &text) {
    for (const Row &row : table.rows) {
        if (row.kind == RowKind::bytes && row.terminator != 0) {
            const auto *a = reinterpret_cast<const uint8_t *>(kvt_str::member_of(row, codec));
            const auto *b = reinterpret_cast<const uint8_t *>(kvt_str::member_of(row, tool));
            int marks = 0;
            for (unsigned i = 0; i < row.capacity; ++i) {
                if (a[i] != b[i]) {
                    ++marks;
                    EXPECT_EQ(a[i], 0) << text;
                    EXPECT_EQ(b[i], row.terminator) << text;
                }
            }
            EXPECT_LE(marks, 1) << text;
        } else if (row.element != nullptr) {
            const Elements a = elements_of(row, codec);
            const Elements b = elements_of(row, tool);
            ASSERT_EQ(a.count, b.count) << text;
            for (uint64_t i = 0; i < a.count; ++i) {
                expect_same_but_for_marks(*row.element, a.at(i), b.at(i), text);
            }
        }
    }
}

TEST(EndMarks, AreAllThatTellsRandomRecordsFromThoseOfTheCodec) {
    kvt_test::Random random(11);
    const kvt_str::MessageKind &kind = *kvt_str::find_kind(VEMRA_MSG_TYPE_JOB_DATA);
    for (int i = 0; i < 400; ++i) {
        kvt_test::OwnedRecord record(*kind.record);
        kvt_test::fill_randomly(*kind.record, record.get(), random);
        std::string text = kvt_test::text_of_record(VEMRA_MSG_TYPE_JOB_DATA, record.get());
        for (size_t changes = kvt_test::below(random, 5); changes != 0; --changes) {
            text = kvt_test::mutate(text, *kind.record, random);
        }
        kvt_str::Input input{kvt_str::Text(text.c_str()), kvt_str::Counts::agree};
        const kvt_str::MessageKind *codec_kind = nullptr;
        void *of_codec = nullptr;
        const kvt_str::MessageReader reader = {"test", &kvt_str::MessageCodec::no_memory};
        const char *end = kvt_str::read_message(input, text.c_str(), reader, codec_kind, &of_codec);
        kvt_str::Input again{kvt_str::Text(text.c_str()), kvt_str::Counts::agree};
        const kvt_str::MessageKind *tool_kind = nullptr;
        void *of_tool = nullptr;
        bool closed = false;
        const char *tool_end = read_one(again, text.c_str(), tool_kind, &of_tool, closed);
        ASSERT_EQ(end == nullptr, tool_end == nullptr) << text;
        if (end != nullptr) {
            ASSERT_EQ(codec_kind, tool_kind) << text;
            EXPECT_EQ(closed, *end == '}') << text;
            EXPECT_EQ(kvt_test::first_difference(*codec_kind->record, of_codec, of_codec), "");
            expect_same_but_for_marks(*codec_kind->record, of_codec, of_tool, text);
            kvt_msg_release(static_cast<int32_t>(codec_kind->value), of_codec);
            kvt_msg_release(static_cast<int32_t>(tool_kind->value), of_tool);
        }
    }
}

TEST(EndMarks, LetJsonGoThereAndBack) {
    const std::string text =
        normal_form_of(job_with("    conns_num: 2\n    conns {\n      qp_child_idxs: 4\n    }\n"
                                "    conns {\n      tree_id: 7\n    }\n"));
    std::string back;
    each_unit(text, [&](const Unit &unit) {
        read_messages(unit, [&](const ReadMessage &message) {
            const std::string json = to_json(message.kind, message.record, {}).dump();
            const OwnedMessage made = from_json(parse_json(json));
            add_text(made.kind(), made.record(), back);
        });
    });
    EXPECT_EQ(back, text);
}

} // namespace
} // namespace kvt_tool
