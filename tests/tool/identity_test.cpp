// What identifies records.
#include <gtest/gtest.h>

#include <span>
#include <string>

#include "model/identity.h"
#include "tables/records.h"

namespace kvt_tool {
namespace {

using kvt_str::message_kinds;
using kvt_str::RecordOf;

void check_identities(const Record &table) {
    for (const Row *row : identity_of(table)) {
        ASSERT_NE(row, nullptr) << table.name;
        EXPECT_TRUE(shape_of(*row) == Shape::number || shape_of(*row) == Shape::text);
    }
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            check_identities(*row.element);
        }
    }
}

TEST(Identities, AreFieldsOfTheirRecords) {
    for (const MessageKind &kind : message_kinds()) {
        if (kind.record != nullptr) {
            check_identities(*kind.record);
        }
    }
}

TEST(Identities, AreThoseOfAllElementsButEvents) {
    std::string without;
    for (const MessageKind &kind : message_kinds()) {
        for (const Row &row : kind.record != nullptr ? kind.record->rows : std::span<const Row>()) {
            if (shape_of(row) == Shape::records && identity_of(*row.element).empty()) {
                without += row.element->name;
            }
        }
    }
    EXPECT_EQ(without, "vemra_event");
}

TEST(Identities, AreTheSameForTheSameValuesOnly) {
    vemra_tree_conn a = {};
    vemra_tree_conn b = {};
    a.tree_id = b.tree_id = 5;
    a.pr_sd_to_an.sl = 3;
    const Record &table = RecordOf<vemra_tree_conn>::table;
    EXPECT_EQ(identity_hash(table, &a), identity_hash(table, &b));
    b.vemrad_id = 7;
    EXPECT_NE(identity_hash(table, &a), identity_hash(table, &b));
    EXPECT_EQ(identity_text(table, &b), "tree_id 5, vemrad_id 7");
}

TEST(Identities, AreReplacedByAHintWhereThereAreNone) {
    vemra_event event = {};
    EXPECT_EQ(hint_text(RecordOf<vemra_event>::table, &event), "");
    event.event_type = 3;
    event.num_str_entry = 1;
    EXPECT_EQ(identity_text(RecordOf<vemra_event>::table, &event), "");
    EXPECT_EQ(hint_text(RecordOf<vemra_event>::table, &event), "event_type 3");
}

} // namespace
} // namespace kvt_tool
