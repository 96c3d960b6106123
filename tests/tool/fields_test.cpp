// What the rows of a record mean to people.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvt/messages/groups.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/reservations.h"
#include "kvt/messages/topology.h"
#include "model/fields.h"
#include "tables/records.h"

namespace kvt_tool {
namespace {

template <typename Type> const Row &row_of(std::string_view key) {
    const Row *row = find_row(kvt_str::RecordOf<Type>::table, key);
    EXPECT_NE(row, nullptr) << key;
    return *row;
}

TEST(Fields, AreFoundByTheirKeyAlone) {
    EXPECT_EQ(key_of(row_of<vemra_tree>("mgid")), "mgid");
    EXPECT_EQ(find_row(kvt_str::RecordOf<vemra_tree>::table, "mgi"), nullptr);
    EXPECT_EQ(find_row(kvt_str::RecordOf<vemra_tree>::table, "mgid "), nullptr);
}

TEST(Fields, OfByteArraysEndAtTheirTerminator) {
    vemra_tree_conn conn = {};
    const Row &row = row_of<vemra_tree_conn>("qp_child_idxs");
    EXPECT_EQ(elements_of(row, &conn).count, 64U);
    conn.qp_child_idxs[0] = 7;
    conn.qp_child_idxs[2] = 255;
    EXPECT_EQ(elements_of(row, &conn).count, 2U);
    EXPECT_EQ(number_at(elements_of(row, &conn), 0), 7U);
}

TEST(Fields, OfSlotsAreNoMoreThanThereIsRoomFor) {
    vemra_groups_data groups = {};
    groups.num_groups = 200;
    EXPECT_EQ(elements_of(row_of<vemra_groups_data>("groups"), &groups).count, 4U);
    EXPECT_EQ(true_count(row_of<vemra_groups_data>("groups"), &groups), 4U);
}

TEST(Fields, OfANullPointerAreNone) {
    vemra_topology_info_list list = {};
    list.num_switches = 3;
    EXPECT_EQ(elements_of(row_of<vemra_topology_info_list>("switches"), &list).count, 0U);
}

TEST(Fields, OfAListWhoseCountIsCutAreAsManyAsTheWriterWrites) {
    vemra_reservation_info info = {};
    vemra_reservation_info_list list = {};
    list.reservation_list = &info;
    list.reservation_list_len = (uint64_t{1} << 32) + 1;
    EXPECT_EQ(elements_of(row_of<vemra_reservation_info_list>("reservation_list"), &list).count,
              1U);
}

TEST(Fields, KnowTheirCounts) {
    const Record &table = kvt_str::RecordOf<vemra_job_data>::table;
    EXPECT_EQ(counted_by(table, row_of<vemra_job_data>("trees_num")),
              &row_of<vemra_job_data>("trees"));
    EXPECT_EQ(counted_by(table, row_of<vemra_job_data>("job_id")), nullptr);
}

TEST(Fields, OfSignedNumbersKeepTheirSign) {
    struct ibv_sa_path_rec path = {};
    path.raw_traffic = -2;
    EXPECT_EQ(number_of(row_of<struct ibv_sa_path_rec>("raw_traffic"), &path), uint64_t(-2));
    EXPECT_TRUE(is_signed(row_of<struct ibv_sa_path_rec>("raw_traffic")));
}

TEST(Fields, TellGuidsByTheirKeys) {
    EXPECT_TRUE(is_guid(row_of<vemra_topology_switch_info>("port_guids")));
    EXPECT_TRUE(is_guid(row_of<vemra_tree_an>("guid")));
    EXPECT_FALSE(is_guid(row_of<vemra_topology_switch_info>("num_port_guids")));
    EXPECT_FALSE(is_guid(row_of<vemra_sd_info>("vemrad_id")));
}

TEST(Fields, OfTextsEndWithTheirRoom) {
    vemra_sd_info info = {};
    std::memset(info.addr, 'x', sizeof info.addr);
    EXPECT_EQ(text_of(row_of<vemra_sd_info>("addr"), &info), std::string(sizeof info.addr, 'x'));
}

} // namespace
} // namespace kvt_tool
