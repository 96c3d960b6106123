// How many messages there are, and how large they are.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <vector>

#include "kvt/messages/groups.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/topology.h"
#include "model/fields.h"
#include "model/kind_counts.h"
#include "samples/sample.h"

namespace kvt_tool {
namespace {

const MessageKind &kind_of(int32_t value) {
    return *kvt_str::find_kind(value);
}

// --- Sizes ---------------------------------------------------------------------------------------

TEST(SizeHistogram, OfNothingIsAllZero) {
    const SizeHistogram sizes;
    EXPECT_EQ(sizes.count(), 0U);
    EXPECT_EQ(sizes.smallest(), 0U);
    EXPECT_EQ(sizes.largest(), 0U);
    EXPECT_EQ(sizes.mean(), 0);
    EXPECT_EQ(sizes.quantile(50), 0U);
}

TEST(SizeHistogram, OfOneSizeIsThatSize) {
    for (const uint64_t size : {uint64_t{0}, uint64_t{1}, uint64_t{90}, uint64_t{123457},
                                std::numeric_limits<uint64_t>::max()}) {
        SizeHistogram sizes;
        sizes.add(size);
        EXPECT_EQ(sizes.smallest(), size);
        EXPECT_EQ(sizes.quantile(50), size);
        EXPECT_EQ(sizes.quantile(99), size);
        EXPECT_EQ(sizes.largest(), size);
    }
}

TEST(SizeHistogram, SmallSizesHaveExactQuantiles) {
    SizeHistogram sizes;
    for (uint64_t size = 1; size <= 20; ++size) {
        sizes.add(size);
    }
    EXPECT_EQ(sizes.quantile(50), 10U);
    EXPECT_EQ(sizes.quantile(90), 18U);
    EXPECT_EQ(sizes.quantile(99), 20U);
    EXPECT_EQ(sizes.quantile(100), 20U);
    EXPECT_EQ(sizes.mean(), 10.5);
}

TEST(SizeHistogram, QuantilesAreAtMostASixteenthTooLarge) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 50; ++round) {
        std::vector<uint64_t> values(1 + random() % 1000);
        SizeHistogram sizes;
        for (uint64_t &value : values) {
            value = random() >> random() % 64;
            sizes.add(value);
        }
        std::ranges::sort(values);
        for (const unsigned percent : {1U, 50U, 90U, 99U, 100U}) {
            const uint64_t exact = values[(values.size() * percent + 99) / 100 - 1];
            EXPECT_GE(sizes.quantile(percent), exact);
            EXPECT_LE(sizes.quantile(percent) - exact, exact / 16);
        }
    }
}

TEST(SizeHistogram, MergedIsAsIfCountedTogether) {
    std::mt19937_64 random(2);
    SizeHistogram all;
    SizeHistogram parts[3];
    for (int i = 0; i < 3000; ++i) {
        const uint64_t size = random() >> (20 + random() % 40);
        all.add(size);
        parts[random() % 3].add(size);
    }
    parts[0].merge(parts[1]);
    parts[0].merge(SizeHistogram());
    parts[0].merge(parts[2]);
    EXPECT_EQ(parts[0].count(), all.count());
    EXPECT_EQ(parts[0].sum(), all.sum());
    EXPECT_EQ(parts[0].smallest(), all.smallest());
    EXPECT_EQ(parts[0].largest(), all.largest());
    for (unsigned percent = 1; percent <= 100; ++percent) {
        EXPECT_EQ(parts[0].quantile(percent), all.quantile(percent));
    }
}

TEST(SizeHistogram, LastsForManyLargeSizes) {
    SizeHistogram sizes;
    sizes.add(uint64_t{4} << 30);
    // 2^30 sizes of 4 GiB, by doubling.
    for (int i = 0; i < 30; ++i) {
        const SizeHistogram half = sizes;
        sizes.merge(half);
    }
    EXPECT_EQ(sizes.count(), uint64_t{1} << 30);
    EXPECT_EQ(sizes.sum(), uint64_t{1} << 62);
    EXPECT_EQ(sizes.mean(), 4294967296.0);
    EXPECT_EQ(sizes.quantile(99), uint64_t{4} << 30);
}

TEST(HumanSize, HasAUnitAndFewDigits) {
    EXPECT_EQ(human_size(0), "0 B");
    EXPECT_EQ(human_size(999), "999 B");
    EXPECT_EQ(human_size(1000), "1.0 KiB");
    EXPECT_EQ(human_size(1536), "1.5 KiB");
    EXPECT_EQ(human_size(1023.0 * 1024), "1.0 MiB");
    EXPECT_EQ(human_size(12.0 * 1024 * 1024), "12.0 MiB");
    EXPECT_EQ(human_size(18446744073709551615.0), "16.0 EiB");
}

// --- Elements ------------------------------------------------------------------------------------

/// Counts elements without any plan.
uint64_t plain_count(const Record &table, const void *record) {
    uint64_t count = 0;
    for (const Row &row : table.rows) {
        const Shape shape = shape_of(row);
        if (shape == Shape::numbers || shape == Shape::records) {
            count += elements_of(row, record).count;
        }
        if (shape == Shape::block || shape == Shape::records) {
            const Elements elements = elements_of(row, record);
            for (uint64_t i = 0; i < elements.count; ++i) {
                count += plain_count(*row.element, elements.at(i));
            }
        }
    }
    return count;
}

TEST(CountElements, CountsThoseOfAllListsAtAnyDepth) {
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            const OwnedMessage message = make_sample(kind, {3, 7, 1});
            EXPECT_EQ(count_elements(*kind.record, message.record()),
                      plain_count(*kind.record, message.record()))
                << kind.name;
        }
    }
    // 4 leaves with 1 peer and 4 ports each, and a spine with 4 peers.
    const MessageKind &topology = kind_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY);
    EXPECT_EQ(count_elements(*topology.record, make_sample(topology, {3, 5, 1}).record()),
              5U + 4 * 5 + 4);
}

// --- KindCounts ----------------------------------------------------------------------------------

TEST(KindCounts, OfNothingHaveATotal) {
    const KindCounts counts;
    EXPECT_EQ(counts.table(),
              "KIND   MESSAGES  BYTES  ELEMENTS  SMALLEST  MEAN  50 %  90 %  99 %  LARGEST\n"
              "total         0    0 B         0         -     -     -     -     -        -\n");
    EXPECT_EQ(counts.json(), R"({
  "kinds": {},
  "total": {
    "messages": 0,
    "bytes": 0,
    "elements": 0,
    "size": null
  }
})");
}

KindCounts some_counts() {
    KindCounts counts;
    const vemra_end_job end = {};
    counts.add(kind_of(VEMRA_MSG_TYPE_END_JOB), &end, 90);
    counts.add(kind_of(VEMRA_MSG_TYPE_END_JOB), &end, 110);
    vemra_release_groups groups = {};
    groups.num_groups = 3;
    counts.add(kind_of(VEMRA_MSG_TYPE_RELEASE_GROUPS), &groups, 2048);
    counts.add(kind_of(VEMRA_MSG_TYPE_NONE), nullptr, 9);
    return counts;
}

TEST(KindCounts, AreShownByKindAndInTotal) {
    EXPECT_EQ(
        some_counts().table(),
        "KIND            MESSAGES    BYTES  ELEMENTS  SMALLEST     MEAN     50 %     90 %     "
        "99 %  LARGEST\n"
        "NONE                   1      9 B         0       9 B      9 B      9 B      9 B     "
        " 9 B      9 B\n"
        "END_JOB                2    200 B         0      90 B    100 B     91 B    110 B    "
        "110 B    110 B\n"
        "RELEASE_GROUPS         1  2.0 KiB         3   2.0 KiB  2.0 KiB  2.0 KiB  2.0 KiB  "
        "2.0 KiB  2.0 KiB\n"
        "total                  4  2.2 KiB         3       9 B    564 B     91 B  2.0 KiB  "
        "2.0 KiB  2.0 KiB\n");
}

TEST(KindCounts, AreShownAsJson) {
    const auto json = nlohmann::json::parse(some_counts().json());
    EXPECT_EQ(json["kinds"].size(), 3U);
    EXPECT_EQ(json["kinds"]["END_JOB"].dump(),
              R"({"bytes":200,"elements":0,"messages":2,"size":{"largest":110,"mean":100.0,)"
              R"("p50":91,"p90":110,"p99":110,"smallest":90}})");
    EXPECT_EQ(json["kinds"]["RELEASE_GROUPS"]["elements"], 3);
    EXPECT_EQ(json["total"]["messages"], 4);
    EXPECT_EQ(json["total"]["bytes"], 2257);
}

TEST(KindCounts, OfThreadsAreMerged) {
    KindCounts all;
    KindCounts parts[2];
    FabricDay day(4);
    for (uint64_t i = 0; i < 200; ++i) {
        const OwnedMessage message = day.next();
        all.add(message.kind(), message.record(), 100 + 17 * i);
        parts[i % 2].add(message.kind(), message.record(), 100 + 17 * i);
    }
    parts[0].merge(parts[1]);
    parts[0].merge(KindCounts());
    EXPECT_EQ(parts[0].table(), all.table());
    EXPECT_EQ(parts[0].json(), all.json());
}

} // namespace
} // namespace kvt_tool
