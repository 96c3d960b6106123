// BEGIN_JOB and the quota block.
#include <cmath>
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "kvt/messages/job_start.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
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

    std::vector<uint64_t> guids() const {
        const vemra_begin_job &record = **this;
        return {record.port_guids, record.port_guids + record.num_guids};
    }
};

/// Lines of port GUIDs 101, 102, ...
std::string guid_lines(unsigned count) {
    std::string lines;
    for (unsigned i = 1; i <= count; ++i) {
        lines += "    port_guids: " + std::to_string(100 + i) + "\n";
    }
    return lines;
}

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
    const ReadJob read(every_field);
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(read->job_id, UINT64_MAX);
    EXPECT_EQ(read->uid, UINT32_MAX);
    EXPECT_EQ(read->priority, 255U);
    EXPECT_EQ(read->quota_percentage, 12.5F);
    EXPECT_EQ(read->quota.max_osts, 16U);
    EXPECT_EQ(read->quota.user_data_per_ost, 256U);
    EXPECT_EQ(read->quota.max_buffers, 32U);
    EXPECT_EQ(read->quota.max_groups, 8U);
    EXPECT_EQ(read->quota.max_qps, UINT32_MAX);
    EXPECT_EQ(read->hosts_len, 16U);
    EXPECT_STREQ(read->hosts, "node001,node002");
    EXPECT_EQ(read->num_rails, 2U);
    EXPECT_EQ(read->num_trees, 3U);
    EXPECT_EQ(read->num_guids, 3U);
    EXPECT_EQ(read.guids(),
              (std::vector<uint64_t>{10279397650487484826U, 0, 10279397650487484842U}));
    EXPECT_EQ(read->num_channels, 4U);
    EXPECT_EQ(read->pkey, 65535U);
    EXPECT_EQ(read->enable_mcast, 1U);
    EXPECT_EQ(read->req_feature_mask, 9223372036854775808U);
    EXPECT_EQ(read->reproducible_mode, 5U);
    EXPECT_EQ(read->exclusive_lock, 6U);
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

TEST(JobStart, ABlockWithoutLinesIsAZeroJob) {
    vemra_begin_job zero;
    std::memset(&zero, 0, sizeof zero);
    const ReadJob read(begin_job(""));
    ASSERT_EQ(read.result(), 0);
    EXPECT_EQ(std::memcmp(&*read, &zero, sizeof zero), 0);
}

TEST(JobStart, AQuotaTellsOnlyWhatIsNotZero) {
    vemra_begin_job record = {};
    record.quota.max_qps = 64;
    const std::string text = begin_job("    quota {\n"
                                       "      max_qps: 64\n"
                                       "    }\n"
                                       "    reproducible_mode: 0\n"
                                       "    exclusive_lock: 0\n");
    EXPECT_EQ(written(record), text);
    const ReadJob read(text);
    EXPECT_EQ(read->quota.max_osts, 0U);
    EXPECT_EQ(read->quota.user_data_per_ost, 0U);
    EXPECT_EQ(read->quota.max_buffers, 0U);
    EXPECT_EQ(read->quota.max_groups, 0U);
    EXPECT_EQ(read->quota.max_qps, 64U);
}

TEST(JobStart, ASecondQuotaBlockReplacesTheFirst) {
    const ReadJob read(begin_job("    quota {\n      max_osts: 1\n      max_groups: 2\n    }\n"
                                 "    quota {\n      max_groups: 3\n    }\n"));
    EXPECT_EQ(read->quota.max_osts, 0U);
    EXPECT_EQ(read->quota.max_groups, 3U);
}

TEST(JobStart, AnEmptyHostListIsNotWritten) {
    char hosts[] = "";
    vemra_begin_job record = {};
    record.hosts = hosts;
    EXPECT_EQ(written(record), begin_job_with("", ""));
    record.hosts_len = 1;
    EXPECT_EQ(written(record), begin_job_with("", "    hosts_len: 1\n"));
    record.hosts = nullptr;
    EXPECT_EQ(written(record), begin_job_with("", "    hosts_len: 1\n"));
}

TEST(JobStart, NoGuidIsWrittenForACountOfZero) {
    uint64_t guids[] = {7, 8};
    vemra_begin_job record = {};
    record.port_guids = guids;
    EXPECT_EQ(written(record), begin_job_with("", ""));
    record.num_guids = 1;
    EXPECT_EQ(written(record), begin_job_with("", "    num_guids: 1\n    port_guids: 7\n"));
}

TEST(JobStart, LinesMayComeInReversedOrder) {
    const ReadJob read(begin_job("    exclusive_lock: 6\n"
                                 "    reproducible_mode: 5\n"
                                 "    req_feature_mask: 77\n"
                                 "    enable_mcast: 1\n"
                                 "    pkey: 9\n"
                                 "    num_channels: 4\n"
                                 "    port_guids: 11\n"
                                 "    port_guids: 12\n"
                                 "    num_trees: 3\n"
                                 "    num_rails: 2\n"
                                 "    hosts: \"a,b\"\n"
                                 "    quota {\n"
                                 "      max_qps: 5\n"
                                 "      max_groups: 4\n"
                                 "      max_buffers: 3\n"
                                 "      user_data_per_ost: 2\n"
                                 "      max_osts: 1\n"
                                 "    }\n"
                                 "    quota_percentage: 0.5\n"
                                 "    priority: 8\n"
                                 "    uid: 10\n"
                                 "    job_id: 13\n"));
    EXPECT_EQ(written(*read), begin_job("    job_id: 13\n"
                                        "    uid: 10\n"
                                        "    priority: 8\n"
                                        "    quota_percentage: 0.5\n"
                                        "    quota {\n"
                                        "      max_osts: 1\n"
                                        "      user_data_per_ost: 2\n"
                                        "      max_buffers: 3\n"
                                        "      max_groups: 4\n"
                                        "      max_qps: 5\n"
                                        "    }\n"
                                        "    hosts_len: 4\n"
                                        "    hosts: \"a,b\"\n"
                                        "    num_rails: 2\n"
                                        "    num_trees: 3\n"
                                        "    num_guids: 2\n"
                                        "    port_guids: 11\n"
                                        "    port_guids: 12\n"
                                        "    num_channels: 4\n"
                                        "    pkey: 9\n"
                                        "    enable_mcast: 1\n"
                                        "    req_feature_mask: 77\n"
                                        "    reproducible_mode: 5\n"
                                        "    exclusive_lock: 6\n"));
}

TEST(JobStart, NumbersAreCutToTheirWidth) {
    const ReadJob read(begin_job("    uid: 4294967298\n"
                                 "    priority: 257\n"
                                 "    num_rails: 258\n"
                                 "    num_trees: -1\n"
                                 "    num_channels: 512\n"
                                 "    pkey: 65540\n"
                                 "    enable_mcast: 261\n"));
    EXPECT_EQ(read->uid, 2U);
    EXPECT_EQ(read->priority, 1U);
    EXPECT_EQ(read->num_rails, 2U);
    EXPECT_EQ(read->num_trees, 255U);
    EXPECT_EQ(read->num_channels, 0U);
    EXPECT_EQ(read->pkey, 4U);
    EXPECT_EQ(read->enable_mcast, 5U);
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

// --- Keys that are prefixes of others ------------------------------------------------------------

TEST(JobStart, QuotaPercentageAndQuotaKeepApartInEitherOrder) {
    const std::string percentage = "    quota_percentage: 12.5\n";
    const std::string quota = "    quota {\n      max_groups: 8\n    }\n";
    for (const std::string &lines : {percentage + quota, quota + percentage}) {
        const ReadJob read(begin_job(lines + "    uid: 3\n"));
        EXPECT_EQ(read->quota_percentage, 12.5F);
        EXPECT_EQ(read->quota.max_groups, 8U);
        EXPECT_EQ(read->uid, 3U);
    }
}

TEST(JobStart, ALineThatOnlyBeginsWithQuotaOpensAQuotaBlock) {
    const ReadJob read(begin_job("    quota_share: 12.5\n"
                                 "      max_groups: 8\n"
                                 "    }\n"
                                 "    uid: 3\n"));
    EXPECT_EQ(read->quota_percentage, 0.0F);
    EXPECT_EQ(read->quota.max_groups, 8U);
    EXPECT_EQ(read->uid, 3U);
}

TEST(JobStart, HostsLenAndHostsKeepApart) {
    const ReadJob lengths_only(begin_job("    hosts_len: 9\n    uid: 3\n"));
    EXPECT_EQ(lengths_only->hosts_len, 9U);
    EXPECT_EQ(lengths_only->hosts, nullptr);
    EXPECT_EQ(lengths_only->uid, 3U);
    const ReadJob both(begin_job("    hosts_len: 9\n    hosts: \"a,b\"\n    uid: 3\n"));
    EXPECT_EQ(both->hosts_len, 4U);
    EXPECT_STREQ(both->hosts, "a,b");
    EXPECT_EQ(both->uid, 3U);
}

TEST(JobStart, ALongerKeyIsTakenByTheShorterOneButDoesNotScan) {
    LogCapture log;
    const ReadJob read(begin_job("    uid_of_owner: 7\n"));
    EXPECT_EQ(read->uid, 0U);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{"_kvt_txt_unpack_msg_vemra_begin_job p_msg->uid[0x0]\n"}));
}

// --- hosts ---------------------------------------------------------------------------------------

TEST(JobStart, OneLineOfHostsIsReadAsItStands) {
    const ReadJob read(begin_job("    hosts_len: 77\n    hosts: \"ab,cd\"\n"));
    EXPECT_STREQ(read->hosts, "ab,cd");
    EXPECT_EQ(read->hosts_len, 6U);
}

TEST(JobStart, SeveralLinesOfHostsAreJoinedAndWrittenAsOne) {
    const ReadJob read(begin_job("    hosts: \"a\"\n    hosts: \"b\"\n"));
    EXPECT_STREQ(read->hosts, "a,b");
    EXPECT_EQ(read->hosts_len, 4U);
    EXPECT_EQ(written(*read), begin_job_with("", "    hosts_len: 4\n    hosts: \"a,b\"\n"));
}

TEST(JobStart, AnyNumberOfHostsOfOneLengthIsJoinedWhole) {
    for (const unsigned count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 10U, 11U, 20U, 21U, 100U}) {
        for (const char *name : {"n", "node", "node-with-a-long-name-0001"}) {
            std::string lines;
            std::string joined;
            for (unsigned i = 0; i < count; ++i) {
                lines += std::string("    hosts: \"") + name + "\"\n";
                joined += (i == 0 ? "" : ",") + std::string(name);
            }
            MemoryWatch watch;
            {
                const ReadJob read(begin_job(lines + "    uid: 3\n"));
                EXPECT_EQ(read->hosts == nullptr, count == 0);
                EXPECT_EQ(std::string(read->hosts == nullptr ? "" : read->hosts), joined);
                EXPECT_EQ(read->hosts_len, count == 0 ? 0 : joined.size() + 1);
                EXPECT_EQ(read->uid, 3U);
            }
            EXPECT_EQ(watch.alive(), 0U);
        }
    }
}

TEST(JobStart, RoomForHostsIsFiveTimesTheFirstAndDoubledOnce) {
    // 5 characters for "a", 10 from the second on: 9 of them and the NUL are filled, and the last
    // one gives way as the comma would.
    const ReadJob cut(begin_job("    hosts: \"a\"\n    hosts: \"bcdefghijklmnopqrstu\"\n"));
    EXPECT_STREQ(cut->hosts, "a,bcdefg");
    EXPECT_EQ(cut->hosts_len, 9U);
    // A third line doubles again.
    const ReadJob third(begin_job("    hosts: \"a\"\n    hosts: \"bcdefghijklmnopqrstu\"\n"
                                  "    hosts: \"xy\"\n"));
    EXPECT_STREQ(third->hosts, "a,bcdefghxy");
    EXPECT_EQ(third->hosts_len, 12U);
}

TEST(JobStart, HostsOfALineAreCutAt298Characters) {
    for (const size_t length : {297U, 298U, 299U, 5000U}) {
        const ReadJob read(
            begin_job("    hosts: \"" + std::string(length, 'h') + "\"\n    uid: 3\n"));
        const size_t kept = length < 298 ? length : 298;
        EXPECT_EQ(std::string(read->hosts), std::string(kept, 'h'));
        EXPECT_EQ(read->hosts_len, kept + 1);
        EXPECT_EQ(read->uid, 3U);
    }
}

TEST(JobStart, LinesOfHostsThatDoNotScanAreLeftOut) {
    const ReadJob some(begin_job("    hosts: \"\"\n"
                                 "    hosts: \"a\"\n"
                                 "    hosts:\"b\"\n"
                                 "    hosts_of_others: \"c\"\n"
                                 "    hosts: \"d\"\n"));
    EXPECT_STREQ(some->hosts, "a,d");
    EXPECT_EQ(some->hosts_len, 4U);
    const ReadJob none(begin_job("    hosts_len: 9\n    hosts: \"\"\n"));
    EXPECT_EQ(none->hosts, nullptr);
    EXPECT_EQ(none->hosts_len, 0U);
}

TEST(JobStart, HostsWithoutQuotesTakeTheNextQuotedText) {
    const ReadJob read(begin_job("    hosts: a\n    hosts: \"b\"\n"));
    EXPECT_STREQ(read->hosts, "b,b");
}

TEST(JobStart, HostsLenDirectlyBehindHostsIsTakenByThem) {
    const ReadJob read(begin_job("    hosts: \"a,b\"\n    hosts_len: 99\n    uid: 3\n"));
    EXPECT_STREQ(read->hosts, "a,b");
    EXPECT_EQ(read->hosts_len, 4U);
    EXPECT_EQ(read->uid, 3U);
}

TEST(JobStart, HostsLenBehindAnotherLineOverwritesTheLength) {
    const ReadJob read(begin_job("    hosts: \"a,b\"\n    uid: 3\n    hosts_len: 99\n"));
    EXPECT_STREQ(read->hosts, "a,b");
    EXPECT_EQ(read->hosts_len, 99U);
}

TEST(JobStart, LaterHostsReplaceEarlierOnes) {
    MemoryWatch watch;
    {
        const ReadJob read(begin_job("    hosts: \"a\"\n    uid: 3\n    hosts: \"bc\"\n"));
        EXPECT_STREQ(read->hosts, "bc");
        EXPECT_EQ(read->hosts_len, 3U);
        EXPECT_EQ(watch.alive(), 2U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobStart, AHostThatFindsNoMemoryIsDroppedAndTheNextTriesAgain) {
    // Requests: the record, then room for the first host, then its doublings.
    const char *const expected[] = {"", "bbbb,cccc,dddd,eeee", "aaaa,bbbb,cccc,eeee",
                                    "aaaa,bbbb,cccc,dddd,eeee"};
    for (const size_t failing : {1U, 2U, 3U}) {
        MemoryWatch watch;
        watch.fail(failing);
        {
            const ReadJob read(begin_job("    hosts: \"aaaa\"\n    hosts: \"bbbb\"\n"
                                         "    hosts: \"cccc\"\n    hosts: \"dddd\"\n"
                                         "    hosts: \"eeee\"\n    uid: 3\n"));
            EXPECT_EQ(watch.failed(), failing < 3 ? 1U : 0U);
            ASSERT_NE(read->hosts, nullptr);
            EXPECT_STREQ(read->hosts, expected[failing]);
            EXPECT_EQ(read->hosts_len, std::strlen(expected[failing]) + 1);
            EXPECT_EQ(read->uid, 3U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

// --- port_guids ----------------------------------------------------------------------------------

TEST(JobStart, AnyNumberOfGuidsIsReadInOrder) {
    // Requests for memory: one for the record, one for 5 GUIDs, and one for every doubling.
    const std::pair<unsigned, size_t> cases[] = {{0, 1},  {1, 2},  {4, 2},  {5, 2}, {6, 3},
                                                 {10, 3}, {11, 4}, {20, 4}, {21, 5}};
    for (const auto &[count, requests] : cases) {
        MemoryWatch watch;
        {
            const ReadJob read(begin_job("    num_guids: 3\n" + guid_lines(count) +
                                         (count == 0 ? "    num_guids: 0\n" : "") +
                                         "    pkey: 9\n"));
            EXPECT_EQ(read->port_guids == nullptr, count == 0);
            ASSERT_EQ(read->num_guids, count);
            for (unsigned i = 0; i < count; ++i) {
                EXPECT_EQ(read->port_guids[i], 101U + i);
            }
            EXPECT_EQ(read->pkey, 9U);
            EXPECT_EQ(watch.requests(), requests);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobStart, AGuidThatFindsNoMemoryIsDroppedAndTheNextTriesAgain) {
    // Requests: the record, then room for 5 GUIDs, 10 and 20.
    const unsigned dropped[] = {0, 1, 6, 11, 0};
    for (const size_t failing : {1U, 2U, 3U, 4U}) {
        MemoryWatch watch;
        watch.fail(failing);
        {
            const ReadJob read(begin_job(guid_lines(12) + "    pkey: 9\n"));
            std::vector<uint64_t> expected;
            for (unsigned i = 1; i <= 12; ++i) {
                if (i != dropped[failing]) {
                    expected.push_back(100 + i);
                }
            }
            EXPECT_EQ(watch.failed(), failing < 4 ? 1U : 0U);
            EXPECT_EQ(read.guids(), expected);
            EXPECT_EQ(read->pkey, 9U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobStart, FiveGuidsStayWhenNothingGrows) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        const ReadJob read(begin_job(guid_lines(21) + "    pkey: 9\n"));
        EXPECT_EQ(watch.failed(), 16U);
        EXPECT_EQ(read.guids(), (std::vector<uint64_t>{101, 102, 103, 104, 105}));
        EXPECT_EQ(read->pkey, 9U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobStart, NoGuidIsReadWithoutMemoryForTheFirst) {
    MemoryWatch watch;
    watch.fail(1, 100);
    {
        const ReadJob read(begin_job("    num_guids: 3\n" + guid_lines(3) + "    pkey: 9\n"));
        EXPECT_EQ(watch.failed(), 3U);
        EXPECT_EQ(read->port_guids, nullptr);
        EXPECT_EQ(read->num_guids, 0U);
        EXPECT_EQ(read->pkey, 9U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobStart, TheCountBeforeTheGuidsGivesWayToTheirNumber) {
    const ReadJob less(begin_job("    num_guids: 5\n    port_guids: 1\n    port_guids: 2\n"));
    EXPECT_EQ(less.guids(), (std::vector<uint64_t>{1, 2}));
    const ReadJob more(begin_job("    num_guids: 1\n    port_guids: 1\n    port_guids: 2\n"));
    EXPECT_EQ(more.guids(), (std::vector<uint64_t>{1, 2}));
    const std::string text = begin_job_with("", "    num_guids: 3\n"
                                                "    port_guids: 1\n"
                                                "    port_guids: 2\n"
                                                "    port_guids: 3\n");
    EXPECT_EQ(read_and_write<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, text), text);
}

TEST(JobStart, TheCountBehindTheGuidsIsKept) {
    MemoryWatch watch;
    {
        const ReadJob read(begin_job("    port_guids: 1\n    port_guids: 2\n    num_guids: 7\n"));
        EXPECT_EQ(read->num_guids, 7U);
        ASSERT_NE(read->port_guids, nullptr);
        EXPECT_EQ(read->port_guids[0], 1U);
        EXPECT_EQ(read->port_guids[1], 2U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobStart, ACountWithoutGuidsIsKeptAndWrittenWithoutThem) {
    const ReadJob read(begin_job("    num_guids: 7\n"));
    EXPECT_EQ(read->num_guids, 7U);
    EXPECT_EQ(read->port_guids, nullptr);
    EXPECT_EQ(written(*read), begin_job_with("", "    num_guids: 7\n"));
}

TEST(JobStart, LaterGuidsReplaceEarlierOnes) {
    MemoryWatch watch;
    {
        const ReadJob read(begin_job(guid_lines(7) + "    pkey: 9\n    port_guids: 3\n"));
        EXPECT_EQ(read.guids(), (std::vector<uint64_t>{3}));
        EXPECT_EQ(watch.alive(), 2U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobStart, GuidsThatDoNotScanAreLeftOut) {
    const ReadJob some(begin_job("    port_guids: x\n"
                                 "    port_guids: 1\n"
                                 "    port_guids 2\n"
                                 "    port_guids_more: 3\n"
                                 "    port_guids: 4\n"));
    EXPECT_EQ(some.guids(), (std::vector<uint64_t>{1, 4}));
    const ReadJob none(begin_job("    num_guids: 3\n    port_guids: x\n    pkey: 9\n"));
    EXPECT_EQ(none->port_guids, nullptr);
    EXPECT_EQ(none->num_guids, 0U);
    EXPECT_EQ(none->pkey, 9U);
}

TEST(JobStart, ABraceInALaterLineOfGuidsDoesNotEndTheBlock) {
    const ReadJob read(begin_job("    port_guids: 1\n    port_guids: 7 }\n    pkey: 9\n"));
    EXPECT_EQ(read.guids(), (std::vector<uint64_t>{1, 7}));
    EXPECT_EQ(read->pkey, 9U);
}

// --- Lines that belong to no key, and ends -------------------------------------------------------

TEST(JobStart, UnknownLinesAndBlocksAreSkippedInJobAndQuota) {
    const ReadJob read(begin_job("    colour: 5\n"
                                 "    extra {\n"
                                 "      uid: 99\n"
                                 "      deeper {\n"
                                 "        job_id: 98\n"
                                 "      }\n"
                                 "    }\n"
                                 "    quota {\n"
                                 "      colour: 5\n"
                                 "      extra {\n"
                                 "        max_osts: 97\n"
                                 "      }\n"
                                 "      max_qps: 4\n"
                                 "    }\n"
                                 "    priority: 2\n"));
    EXPECT_EQ(read->uid, 0U);
    EXPECT_EQ(read->job_id, 0U);
    EXPECT_EQ(read->quota.max_osts, 0U);
    EXPECT_EQ(read->quota.max_qps, 4U);
    EXPECT_EQ(read->priority, 2U);
}

TEST(JobStart, AnUnknownBlockOfOneLineEndsTheJob) {
    const ReadJob read(begin_job("    uid: 3\n    extra { }\n    priority: 2\n"));
    EXPECT_EQ(read->uid, 3U);
    EXPECT_EQ(read->priority, 0U);
}

TEST(JobStart, AKeyWithAClosingBraceIsReadOnTheFirstLineAlone) {
    const ReadJob first(begin_job("    uid: 3 }\n    priority: 2\n"));
    EXPECT_EQ(first->uid, 3U);
    EXPECT_EQ(first->priority, 2U);
    const ReadJob second(begin_job("    uid: 3\n    priority: 2 }\n    num_rails: 1\n"));
    EXPECT_EQ(second->uid, 3U);
    EXPECT_EQ(second->priority, 0U);
    EXPECT_EQ(second->num_rails, 0U);
}

// --- Traces --------------------------------------------------------------------------------------

const std::string job_reader = "_kvt_txt_unpack_msg_vemra_begin_job";
const std::string quota_reader = "_kvt_txt_unpack_msg_vemra_quota";
const std::string guid_reader = "_kvt_txt_unpack_primptr_uint64_t";
const std::string text_reader = "_kvt_txt_unpack_primptr_char";

/// What a reader traces, behind its name.
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

TEST(JobStart, GuidsThatDoNotScanAreTracedWithTheLastValue) {
    LogCapture log;
    const ReadJob read(begin_job("    port_guids: x\n    port_guids: 17\n    port_guids: y\n"));
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  traced(guid_reader, "missmatch, array[port_guids: x\n    port_guids: 17\n"
                                      "    port_guids: y], frame_key[port_guids:%lu], value[0]"),
                  traced(guid_reader, "element[1]=[0x11]"),
                  traced(guid_reader, "missmatch, array[port_guids: y\n  }\n}\n], "
                                      "frame_key[port_guids:%lu], value[11]"),
                  traced(guid_reader, "END prim ptr, num_lements[0x1], array[0][0x11]"),
              }));
}

TEST(JobStart, GuidsAndHostsWithoutAnElementEndWithZero) {
    LogCapture log;
    const ReadJob read(begin_job("    port_guids: x\n    hosts: \"\"\n"));
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  traced(guid_reader, "missmatch, array[port_guids: x\n    hosts: \"\"\n  }\n}\n], "
                                      "frame_key[port_guids:%lu], value[0]"),
                  traced(guid_reader, "END prim ptr, num_lements[0x0], array[0][0x0]"),
                  traced(text_reader, "missmatch, array[hosts: \"\"\n  }\n}\n], "
                                      "frame_key[hosts:%*[^\"]\"%[^\"]\"], value[]"),
                  traced(text_reader, "END prim ptr, num_lements[0x0], array[0][0x0]"),
              }));
}

TEST(JobStart, HostsAreTracedAsTheyGrow) {
    LogCapture log;
    const ReadJob read(begin_job("    hosts: \"\xE9t\xE9\"\n"
                                 "    hosts: \"" +
                                 std::string(60, 'n') +
                                 "\"\n"
                                 "    hosts_len: 4\n"));
    EXPECT_EQ(
        log.take(),
        (std::vector<LogLine>{
            traced(text_reader, "dst_ptr[\xE9t\xE9,], value[]"),
            traced(text_reader, "dst_ptr[\xE9t\xE9," + std::string(25, 'n') + "], value[]"),
            traced(text_reader, "missmatch, array[hosts_len: 4\n  }\n}\n], "
                                "frame_key[hosts:%*[^\"]\"%[^\"]\"], value[]"),
            traced(text_reader, "END prim ptr, num_lements[0x2], array[0][0xffffffffffffffe9]"),
        }));
}

TEST(JobStart, UnknownLinesAreTracedByTheReaderThatMeetsThem) {
    LogCapture log;
    const ReadJob read(begin_job("    colour: 5\n"
                                 "    quota {\n"
                                 "      extra {\n"
                                 "      }\n"
                                 "      max_qps: x\n"
                                 "    }\n"));
    EXPECT_EQ(
        log.take(),
        (std::vector<LogLine>{
            traced(job_reader,
                   "mismatch, txt_msg[colour: 5\n    quota {\n      extra {\n      }\n      ]"),
            traced(quota_reader,
                   "mismatch, txt_msg[extra {\n      }\n      max_qps: x\n    }\n  }\n}\n]"),
            traced(quota_reader, "p_msg->max_qps[0x0]"),
        }));
}

TEST(JobStart, NothingIsTracedBelowLevelSix) {
    LogCapture log(5);
    const ReadJob read(every_field);
    EXPECT_EQ(log.take(), std::vector<LogLine>{});
}

} // namespace
} // namespace kvt_test
