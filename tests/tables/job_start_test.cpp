// BEGIN_JOB and the quota block.
#include <cmath>
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "kvt/messages/job_start.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

#if defined(__x86_64__)
static_assert(sizeof(vemra_quota) == 20);
static_assert(offsetof(vemra_quota, max_osts) == 0);
static_assert(offsetof(vemra_quota, user_data_per_ost) == 4);
static_assert(offsetof(vemra_quota, max_buffers) == 8);
static_assert(offsetof(vemra_quota, max_groups) == 12);
static_assert(offsetof(vemra_quota, max_qps) == 16);

static_assert(sizeof(vemra_begin_job) == 96);
static_assert(offsetof(vemra_begin_job, job_id) == 0);
static_assert(offsetof(vemra_begin_job, uid) == 8);
static_assert(offsetof(vemra_begin_job, priority) == 12);
static_assert(offsetof(vemra_begin_job, quota_percentage) == 16);
static_assert(offsetof(vemra_begin_job, quota) == 20);
static_assert(offsetof(vemra_begin_job, hosts_len) == 40);
static_assert(offsetof(vemra_begin_job, hosts) == 48);
static_assert(offsetof(vemra_begin_job, num_rails) == 56);
static_assert(offsetof(vemra_begin_job, num_trees) == 57);
static_assert(offsetof(vemra_begin_job, num_guids) == 60);
static_assert(offsetof(vemra_begin_job, port_guids) == 64);
static_assert(offsetof(vemra_begin_job, num_channels) == 72);
static_assert(offsetof(vemra_begin_job, pkey) == 74);
static_assert(offsetof(vemra_begin_job, enable_mcast) == 76);
static_assert(offsetof(vemra_begin_job, req_feature_mask) == 80);
static_assert(offsetof(vemra_begin_job, reproducible_mode) == 88);
static_assert(offsetof(vemra_begin_job, exclusive_lock) == 92);
#endif

const char every_field[] = R"(msg {
  type: BEGIN_JOB
  begin_job {
    job_id: 18446744073709551615
    uid: 4294967295
    priority: 255
    quota_percentage: 12.5
    quota {
      max_osts: 16
      user_data_per_ost: 256
      max_buffers: 32
      max_groups: 8
      max_qps: 4294967295
    }
    hosts_len: 16
    hosts: "node001,node002"
    num_rails: 2
    num_trees: 3
    num_guids: 3
    port_guids: 10279397650487484826
    port_guids: 0
    port_guids: 10279397650487484842
    num_channels: 4
    pkey: 65535
    enable_mcast: 1
    req_feature_mask: 9223372036854775808
    reproducible_mode: 5
    exclusive_lock: 6
  }
}
)";

std::string begin_job(const std::string &lines) {
    return message_text("BEGIN_JOB", "  begin_job {\n" + lines + "  }\n");
}

/// The lines of a written record that are there whatever it holds, around others.
std::string begin_job_with(const std::string &before_quota, const std::string &behind_quota) {
    return begin_job(before_quota + "    quota {\n    }\n" + behind_quota +
                     "    reproducible_mode: 0\n"
                     "    exclusive_lock: 0\n");
}

std::string written(const vemra_begin_job &record) {
    return to_text(VEMRA_MSG_TYPE_BEGIN_JOB, record);
}

struct ReadJob : ReadMessage<vemra_begin_job> {
    explicit ReadJob(const std::string &text)
        : ReadMessage<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text) {}
};

// --- Writing and reading -------------------------------------------------------------------------

TEST(JobStart, BeginJobIsWrittenToTheLetter) {
    char hosts[] = "node001,node002";
    uint64_t guids[] = {10279397650487484826U, 0, 10279397650487484842U};
    const vemra_begin_job record = {.job_id = UINT64_MAX,
                                    .uid = UINT32_MAX,
                                    .priority = 255,
                                    .quota_percentage = 12.5F,
                                    .quota = {.max_osts = 16,
                                              .user_data_per_ost = 256,
                                              .max_buffers = 32,
                                              .max_groups = 8,
                                              .max_qps = UINT32_MAX},
                                    .hosts_len = 16,
                                    .hosts = hosts,
                                    .num_rails = 2,
                                    .num_trees = 3,
                                    .num_guids = 3,
                                    .port_guids = guids,
                                    .num_channels = 4,
                                    .pkey = 65535,
                                    .enable_mcast = 1,
                                    .req_feature_mask = 9223372036854775808U,
                                    .reproducible_mode = 5,
                                    .exclusive_lock = 6};
    EXPECT_EQ(written(record), every_field);
}

TEST(JobStart, BeginJobReadsEveryField) {
    EXPECT_EQ(read_and_write<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, every_field), every_field);
}

TEST(JobStart, AZeroJobTellsItsQuotaBlockAndItsModeAndLockAlone) {
    const std::string text = begin_job("    quota {\n"
                                       "    }\n"
                                       "    reproducible_mode: 0\n"
                                       "    exclusive_lock: 0\n");
    vemra_begin_job zero;
    std::memset(&zero, 0, sizeof zero);
    EXPECT_EQ(written(zero), text);
    const ReadJob read(text);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(std::memcmp(&*read, &zero, sizeof zero), 0);
}

// --- quota_percentage ----------------------------------------------------------------------------

TEST(JobStart, APercentageIsWrittenWithSixDigitsAtMost) {
    const std::pair<float, const char *> cases[] = {
        {12.5F, "12.5"},   {100.0F, "100"},       {33.333333F, "33.3333"}, {1e-05F, "1e-05"},
        {1e+06F, "1e+06"}, {-2.25F, "-2.25"},     {INFINITY, "inf"},       {-INFINITY, "-inf"},
        {NAN, "nan"},      {123456.0F, "123456"}, {0.0001F, "0.0001"},
    };
    for (const auto &[value, text] : cases) {
        vemra_begin_job record = {};
        record.quota_percentage = value;
        EXPECT_EQ(written(record),
                  begin_job_with(std::string("    quota_percentage: ") + text + "\n", ""));
    }
}

TEST(JobStart, APercentageOfEitherZeroIsNotWritten) {
    vemra_begin_job record = {};
    record.quota_percentage = 0.0F;
    EXPECT_EQ(written(record), begin_job_with("", ""));
    record.quota_percentage = -0.0F;
    EXPECT_EQ(written(record), begin_job_with("", ""));
}

TEST(JobStart, APercentageIsReadInEveryFormOfAFloat) {
    const std::pair<const char *, float> cases[] = {
        {"12.5", 12.5F}, {"1e-05", 1e-05F},     {"1e+06", 1e+06F},        {"-2.25", -2.25F},
        {"7", 7.0F},     {"0x1.8p1", 3.0F},     {"inf", INFINITY},        {".5", 0.5F},
        {"+3.", 3.0F},   {"33.3333", 33.3333F}, {"-infinity", -INFINITY},
    };
    for (const auto &[text, value] : cases) {
        const ReadJob read(begin_job(std::string("    quota_percentage: ") + text + "\n"));
        EXPECT_EQ(read->quota_percentage, value) << text;
    }
    const ReadJob not_a_number(begin_job("    quota_percentage: nan\n"));
    EXPECT_TRUE(std::isnan(not_a_number->quota_percentage));
}

TEST(JobStart, APercentageThatDoesNotScanKeepsTheEarlierOne) {
    const ReadJob read(begin_job("    quota_percentage: 12.5\n"
                                 "    quota_percentage: x\n"
                                 "    quota_percentage 99\n"));
    EXPECT_EQ(read->quota_percentage, 12.5F);
}

TEST(JobStart, APercentageIsTracedWithoutItsFraction) {
    const std::pair<const char *, const char *> cases[] = {
        {"12.9", "0xc"},
        {"0.9", "0x0"},
        {"-2.9", "0xfffffffe"},
        {"3e9", "0xb2d05e00"},
        {"4294967040", "0xffffff00"},
        {"1e10", "0x540be400"},
        {"-2147483648", "0x80000000"},
        {"-3e9", "0x4d2fa200"},
        {"nan", "0x0"},
        {"inf", "0x0"},
        {"x", "0x0"},
    };
    const std::string reader = "_kvt_txt_unpack_msg_vemra_begin_job";
    for (const auto &[text, traced] : cases) {
        LogCapture log;
        const ReadJob read(begin_job(std::string("    quota_percentage: ") + text + "\n"));
        EXPECT_EQ(log.take(),
                  (std::vector<LogLine>{
                      {reader, 6, reader + " p_msg->quota_percentage[" + traced + "]\n"}}))
            << text;
    }
}

// --- hosts ---------------------------------------------------------------------------------------

TEST(JobStart, HostsWithoutQuotesTakeTheNextQuotedText) {
    const ReadJob read(begin_job("    hosts: a\n    hosts: \"b\"\n"));
    EXPECT_STREQ(read->hosts, "b,b");
}

// --- Traces --------------------------------------------------------------------------------------

const std::string job_reader = "_kvt_txt_unpack_msg_vemra_begin_job";
const std::string quota_reader = "_kvt_txt_unpack_msg_vemra_quota";
const std::string guid_reader = "_kvt_txt_unpack_primptr_uint64_t";
const std::string text_reader = "_kvt_txt_unpack_primptr_char";

/// What a reader traces, after its name.
LogLine traced(const std::string &reader, const std::string &text) {
    return {reader, 6, reader + " " + text + "\n"};
}

TEST(JobStart, EveryFieldIsTracedInTheOrderOfTheText) {
    LogCapture log;
    const ReadJob read(every_field);
    EXPECT_EQ(
        log.take(),
        (std::vector<LogLine>{
            traced(job_reader, "p_msg->job_id[0xffffffff]"),
            traced(job_reader, "p_msg->uid[0xffffffff]"),
            traced(job_reader, "p_msg->priority[0xff]"),
            traced(job_reader, "p_msg->quota_percentage[0xc]"),
            traced(quota_reader, "p_msg->max_osts[0x10]"),
            traced(quota_reader, "p_msg->user_data_per_ost[0x100]"),
            traced(quota_reader, "p_msg->max_buffers[0x20]"),
            traced(quota_reader, "p_msg->max_groups[0x8]"),
            traced(quota_reader, "p_msg->max_qps[0xffffffff]"),
            traced(job_reader, "p_msg->hosts_len[0x10]"),
            traced(text_reader, "dst_ptr[node001,node002,], value[]"),
            traced(text_reader, "END prim ptr, num_lements[0x1], array[0][0x6e]"),
            traced(job_reader, "p_msg->num_rails[0x2]"),
            traced(job_reader, "p_msg->num_trees[0x3]"),
            traced(job_reader, "p_msg->num_guids[0x3]"),
            traced(guid_reader, "element[1]=[0x8ea7c1b3564aa19a]"),
            traced(guid_reader, "element[2]=[0x0]"),
            traced(guid_reader, "element[3]=[0x8ea7c1b3564aa1aa]"),
            traced(guid_reader, "END prim ptr, num_lements[0x3], array[0][0x8ea7c1b3564aa19a]"),
            traced(job_reader, "p_msg->num_channels[0x4]"),
            traced(job_reader, "p_msg->pkey[0xffff]"),
            traced(job_reader, "p_msg->enable_mcast[0x1]"),
            traced(job_reader, "p_msg->req_feature_mask[0x0]"),
            traced(job_reader, "p_msg->reproducible_mode[0x5]"),
            traced(job_reader, "p_msg->exclusive_lock[0x6]"),
        }));
}

} // namespace
} // namespace kvt_test
