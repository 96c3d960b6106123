// Samples: what each of them promises by itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "kvt/kvt_str.h"
#include "kvt/messages/events.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/topology.h"
#include "model/fields.h"
#include "samples.h"
#include "samples/sample.h"
#include "support/messages.h"

namespace kvt_tool {
namespace {

const MessageKind &kind_of(int32_t value) {
    return *kvt_str::find_kind(value);
}

std::string text_of(const OwnedMessage &message) {
    return kvt_test::text_of_record(static_cast<int32_t>(message.kind().value), message.record());
}

std::string read_and_written(const MessageKind &kind, const std::string &text) {
    void *record = nullptr;
    EXPECT_EQ(kvt_msg_from_str(0, nullptr, text.c_str(), &record), 0);
    return text_of(OwnedMessage(kind, record));
}

/// Calls `check(kind, sample)` for every kind with a record and many samples.
template <typename Check> void for_many_samples(Check check) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        for (const uint32_t size : {0U, 1U, 2U, 3U, 4U, 5U, 8U, 9U, 31U, 33U, 40U, 100U}) {
            for (uint64_t seed = 0; kind.record != nullptr && seed < 6; ++seed) {
                check(kind, Sample{seed * seed * 7919, size, seed / 2});
            }
        }
    }
}

TEST(Samples, EverySampleIsReadAndWrittenAsItIs) {
    for_many_samples([](const MessageKind &kind, const Sample &sample) {
        const std::string text = text_of(make_sample(kind, sample));
        EXPECT_EQ(read_and_written(kind, text), text) << kind.name << ' ' << sample.size;
    });
}

TEST(Samples, ASampleDependsOnNoSampleBeforeIt) {
    std::vector<std::tuple<const MessageKind *, Sample, std::string>> samples;
    for_many_samples([&](const MessageKind &kind, const Sample &sample) {
        samples.emplace_back(&kind, sample, text_of(make_sample(kind, sample)));
    });
    std::reverse(samples.begin(), samples.end());
    for (const auto &[kind, sample, text] : samples) {
        EXPECT_EQ(text_of(make_sample(*kind, sample)), text) << kind->name << ' ' << sample.size;
    }
}

TEST(Samples, TheSameSampleHasTheSameTextOnEveryMachine) {
    EXPECT_EQ(text_of(make_sample(kind_of(VEMRA_MSG_TYPE_END_JOB), {1, 8, 1})),
              "msg {\n"
              "  type: END_JOB\n"
              "  end_job {\n"
              "    job_id: 731872\n"
              "    reservation_id: 50604\n"
              "  }\n"
              "}\n");
    EXPECT_EQ(text_of(make_sample(kind_of(VEMRA_MSG_TYPE_BEGIN_JOB), {1, 2, 0})), R"(msg {
  type: BEGIN_JOB
  begin_job {
    job_id: 731871
    uid: 2936
    priority: 4
    quota_percentage: 50
    quota {
      max_osts: 32
      user_data_per_ost: 1024
      max_buffers: 128
      max_groups: 8
      max_qps: 64
    }
    hosts_len: 16
    hosts: "node001,node002"
    num_rails: 1
    num_trees: 2
    num_guids: 2
    port_guids: 13316851643023622160
    port_guids: 13316851643023622176
    num_channels: 1
    pkey: 32767
    enable_mcast: 1
    req_feature_mask: 5
    reproducible_mode: 1
    exclusive_lock: 0
  }
}
)");
    EXPECT_EQ(text_of(make_sample(kind_of(VEMRA_MSG_TYPE_EVENTS_REPLY), {1, 1, 0})), R"(msg {
  type: EVENTS_REPLY
  event_list {
    num_event: 1
    vemra_events {
      event_type: 2
      num_str_entry: 4
      str_entry_list {
        entry_name_len: 9
        entry_name: "severity"
        value_len: 6
        entry_value: "error"
      }
      str_entry_list {
        entry_name_len: 5
        entry_name: "host"
        value_len: 8
        entry_value: "node001"
      }
      str_entry_list {
        entry_name_len: 7
        entry_name: "job_id"
        value_len: 7
        entry_value: "731871"
      }
      str_entry_list {
        entry_name_len: 8
        entry_name: "tree_id"
        value_len: 4
        entry_value: "255"
      }
      ts {
        seconds: 1894579200
        useconds: 551162
      }
    }
  }
}
)");
}

TEST(Samples, AnotherSeedOrIndexIsAnotherSample) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        // A signal and a request are too small to differ always.
        if (kind.record != nullptr && kind.value != VEMRA_MSG_TYPE_AM_SIGNAL &&
            kind.value != VEMRA_MSG_TYPE_JOB_INFO_REQUEST) {
            const std::string text = text_of(make_sample(kind, {1, 8, 0}));
            EXPECT_NE(text_of(make_sample(kind, {2, 8, 0})), text) << kind.name;
            if (kind.value != VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST &&
                kind.value != VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY) {
                EXPECT_NE(text_of(make_sample(kind, {1, 8, 1})), text) << kind.name;
            }
        }
    }
}

TEST(Samples, NoTextComesNearToItsLimit) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            const OwnedMessage message = make_sample(kind, {1, largest_sample_size, 0});
            const uint32_t size =
                kvt_str_get_buf_size(static_cast<int32_t>(kind.value), message.record());
            EXPECT_TRUE(size > 0 && size < 100'000'000) << kind.name << ' ' << size;
        }
    }
}

TEST(Samples, ASizeBeyondTheLargestIsTheLargest) {
    const MessageKind &kind = kind_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST);
    EXPECT_EQ(
        record_of<vemra_topology_info_request>(make_sample(kind, {1, UINT32_MAX, 0})).num_guids,
        largest_sample_size);
}

/// Looks at every text in a record.
void check_texts(const Record &table, const void *record) {
    for (const Row &row : table.rows) {
        switch (shape_of(row)) {
        case Shape::text: {
            const std::string_view text = kvt_tool::text_of(row, record);
            EXPECT_EQ(text.find_first_of("\"{}\n"), std::string_view::npos) << text;
            EXPECT_LT(text.size(), row.kind == RowKind::text ? row.capacity : 299U) << text;
            break;
        }
        case Shape::block:
        case Shape::records: {
            const Elements elements = elements_of(row, record);
            for (uint64_t i = 0; i < elements.count; ++i) {
                check_texts(*row.element, elements.at(i));
            }
            break;
        }
        default:
            break;
        }
    }
}

TEST(Samples, TextsHaveNothingThatEndsThem) {
    for_many_samples([](const MessageKind &kind, const Sample &sample) {
        check_texts(*kind.record, make_sample(kind, sample).record());
    });
}

TEST(Samples, HostsAreNamedAsFarAsOneLineGoes) {
    const MessageKind &kind = kind_of(VEMRA_MSG_TYPE_BEGIN_JOB);
    EXPECT_STREQ(record_of<vemra_begin_job>(make_sample(kind, {1, 3, 0})).hosts,
                 "node001,node002,node003");
    const OwnedMessage many = make_sample(kind, {1, 40, 0});
    const std::string hosts = record_of<vemra_begin_job>(many).hosts;
    EXPECT_EQ(hosts.substr(hosts.size() - 16), ",node036,node037");
    EXPECT_EQ(record_of<vemra_begin_job>(many).num_guids, 40U);
}

TEST(Samples, ListsOfSizeZeroAreEmpty) {
    const OwnedMessage message = make_sample(kind_of(VEMRA_MSG_TYPE_JOB_DATA), {1, 0, 0});
    const auto &data = record_of<vemra_job_data>(message);
    EXPECT_EQ(data.hosts_num + data.trees_num + data.conns_num + data.agg_nodes_num, 0U);
    EXPECT_EQ(data.conns, nullptr);
}

// --- Kinds that agree ----------------------------------------------------------------------------

TEST(Samples, SamplesOfOneSeedAndIndexAreOfOneJob) {
    for (uint64_t index = 0; index < 4; ++index) {
        const Sample sample = {5, 8, index};
        const auto begin = make_sample(kind_of(VEMRA_MSG_TYPE_BEGIN_JOB), sample);
        const auto data = make_sample(kind_of(VEMRA_MSG_TYPE_JOB_DATA), sample);
        const auto end = make_sample(kind_of(VEMRA_MSG_TYPE_END_JOB), sample);
        const uint64_t job_id = record_of<vemra_begin_job>(begin).job_id;
        EXPECT_EQ(record_of<vemra_job_data>(data).job_id, job_id);
        EXPECT_EQ(record_of<vemra_end_job>(end).job_id, job_id);
        EXPECT_EQ(record_of<vemra_job_data>(data).uid, record_of<vemra_begin_job>(begin).uid);
        EXPECT_EQ(record_of<vemra_job_data>(data).reservation_id,
                  record_of<vemra_end_job>(end).reservation_id);
        EXPECT_EQ(record_of<vemra_end_job>(end).reservation_id != 0, index % 2 != 0);
        EXPECT_EQ(std::memcmp(&record_of<vemra_job_data>(data).trees[1].quota,
                              &record_of<vemra_begin_job>(begin).quota, sizeof(vemra_quota)),
                  0);
    }
}

TEST(Samples, PortsOfAJobAreInTheTopologyOfItsFabric) {
    const Sample sample = {9, 8, 3};
    const auto begin = make_sample(kind_of(VEMRA_MSG_TYPE_BEGIN_JOB), sample);
    const auto reply = make_sample(kind_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY), sample);
    std::set<uint64_t> ports;
    const auto &list = record_of<vemra_topology_info_list>(reply);
    for (uint32_t i = 0; i < list.num_switches; ++i) {
        const vemra_topology_switch_info &info = list.switches[i];
        ports.insert(info.port_guids, info.port_guids + info.num_port_guids);
    }
    for (uint32_t i = 0; i < 8; ++i) {
        EXPECT_TRUE(ports.contains(record_of<vemra_begin_job>(begin).port_guids[i])) << i;
    }
}

// --- Events --------------------------------------------------------------------------------------

TEST(Samples, EventsComeInTheOrderOfTheirTimes) {
    const auto reply = make_sample(kind_of(VEMRA_MSG_TYPE_EVENTS_REPLY), {1, 30, 0});
    const auto &list = record_of<vemra_event_list>(reply);
    ASSERT_EQ(list.num_event, 30U);
    for (uint32_t i = 1; i < list.num_event; ++i) {
        EXPECT_LE(list.events[i - 1].ts.seconds, list.events[i].ts.seconds);
        EXPECT_LT(list.events[i].ts.useconds, 1000000U);
        for (uint32_t k = 0; k < list.events[i].num_str_entry; ++k) {
            EXPECT_NE(list.events[i].str_entry_list[k].entry_name, nullptr);
            EXPECT_NE(list.events[i].str_entry_list[k].entry_value, nullptr);
        }
    }
}

// --- A day ---------------------------------------------------------------------------------------

TEST(FabricDay, HasEveryKind) {
    FabricDay day(1);
    std::map<uint32_t, unsigned> seen;
    for (int i = 0; i < 2000; ++i) {
        const OwnedMessage message = day.next();
        ++seen[message.kind().value];
        const std::string text = text_of(message);
        EXPECT_EQ(read_and_written(message.kind(), text), text);
    }
    EXPECT_EQ(seen.size(), size_t{VEMRA_MSG_TYPE_LAST} - 1);
    EXPECT_GT(seen[VEMRA_MSG_TYPE_BEGIN_JOB], 200U);
}

TEST(FabricDay, BeginsWithItsTopology) {
    FabricDay day(3, 4);
    EXPECT_STREQ(day.next().kind().name, "TOPOLOGY_INFO_REQUEST");
    EXPECT_STREQ(day.next().kind().name, "TOPOLOGY_INFO_REPLY");
    EXPECT_STREQ(day.next().kind().name, "REQ_SM_DATA");
}

TEST(FabricDay, IsTheSameOnEveryMachine) {
    FabricDay day(1, 1);
    std::string names;
    for (int i = 0; i < 12; ++i) {
        names += std::string(day.next().kind().name) + "\n";
    }
    EXPECT_EQ(names, "TOPOLOGY_INFO_REQUEST\n"
                     "TOPOLOGY_INFO_REPLY\n"
                     "REQ_SM_DATA\n"
                     "SM_DATA\n"
                     "RESOURCE_DATA\n"
                     "JOB_INFO_REQUEST\n"
                     "BEGIN_JOB\n"
                     "TOPOLOGY_INFO_REQUEST\n"
                     "JOB_INFO_REPLY\n"
                     "JOB_INFO_REQUEST\n"
                     "BEGIN_JOB\n"
                     "TOPOLOGY_INFO_REPLY\n");
}

TEST(FabricDay, EndsNoJobThatHasNotBegun) {
    for (uint64_t seed = 0; seed < 5; ++seed) {
        FabricDay day(seed);
        std::set<uint64_t> running;
        std::set<uint64_t> ended;
        for (int i = 0; i < 1000; ++i) {
            const OwnedMessage message = day.next();
            if (message.kind().value == VEMRA_MSG_TYPE_BEGIN_JOB) {
                const uint64_t job = record_of<vemra_begin_job>(message).job_id;
                EXPECT_TRUE(running.insert(job).second && !ended.contains(job)) << job;
            } else if (message.kind().value == VEMRA_MSG_TYPE_END_JOB) {
                const uint64_t job = record_of<vemra_end_job>(message).job_id;
                EXPECT_EQ(running.erase(job), 1U) << job;
                ended.insert(job);
            }
        }
        EXPECT_GT(ended.size(), 100U);
    }
}

TEST(FabricDay, IsTheSameForTheSameSeed) {
    FabricDay one(7);
    FabricDay same(7);
    FabricDay other(8);
    bool differs = false;
    for (int i = 0; i < 100; ++i) {
        const std::string text = text_of(one.next());
        EXPECT_EQ(text_of(same.next()), text);
        differs = differs || text_of(other.next()) != text;
    }
    EXPECT_TRUE(differs);
}

TEST(FabricDay, OfSizeZeroHasEmptyLists) {
    FabricDay day(7, 0);
    for (int i = 0; i < 300; ++i) {
        EXPECT_LT(text_of(day.next()).size(), 2000U);
    }
}

} // namespace
} // namespace kvt_tool
