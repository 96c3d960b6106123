// Which records own memory: what a walk over their elements is worth.
#include <gtest/gtest.h>

#include "engine/release.h"
#include "support/test_records.h"
#include "tables/records.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

TEST(OwnsMemory, IsTrueOfARecordWithAStringAnArrayOrARun) {
    EXPECT_TRUE(owns_memory(RecordOf<vemra_begin_job>::table));
    EXPECT_TRUE(owns_memory(RecordOf<vemra_topology_info_request>::table));
    EXPECT_TRUE(owns_memory(RecordOf<vemra_event_list>::table));
}

TEST(OwnsMemory, IsTrueOfARecordWhoseInnerRecordDoes) {
    EXPECT_FALSE(RecordOf<vemra_sm_data>::table.has_pointers);
    EXPECT_TRUE(owns_memory(RecordOf<vemra_sm_data>::table));
}

TEST(OwnsMemory, IsFalseOfNumbersTextsAndInnerRecordsOfThem) {
    EXPECT_FALSE(owns_memory(RecordOf<vemra_job_error>::table));
    EXPECT_FALSE(owns_memory(RecordOf<vemra_tree_conn>::table));
    EXPECT_FALSE(owns_memory(RecordOf<vemra_groups_data>::table));
}

} // namespace
} // namespace kvt_test
