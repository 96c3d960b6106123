// The four arrays of JOB_DATA: their growth, their counts, and runs that meet something else.
#include <gtest/gtest.h>

#include <cstring>

#include "kvt/messages/job_data.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

std::string job_data(const std::string &lines) {
    return message_text("JOB_DATA", "  job_data {\n" + lines + "  }\n");
}

/// The two blocks that every written message has.
const std::string no_options = "    qpc_opts {\n    }\n    sat_qpc_opts {\n    }\n";

std::string written(const vemra_job_data &record) {
    return to_text(VEMRA_MSG_TYPE_JOB_DATA, record);
}

struct ReadData : ReadMessage<vemra_job_data> {
    explicit ReadData(const std::string &text)
        : ReadMessage<vemra_job_data>(VEMRA_MSG_TYPE_JOB_DATA, text) {}
};

std::string rewritten(const std::string &text) {
    return read_and_write<vemra_job_data>(VEMRA_MSG_TYPE_JOB_DATA, text);
}

std::string block(const std::string &name, const std::string &lines) {
    return "    " + name + " {\n" + lines + "    }\n";
}

/// One of the four arrays: what its blocks look like, and what is read of them.
struct Array {
    const char *name;
    const char *count_key;
    const char *key;   ///< of the number that tells elements apart
    const char *other; ///< lines of a written element behind that number
    uint64_t (*count)(const vemra_job_data &);
    const void *(*elements)(const vemra_job_data &);
    uint64_t (*number)(const vemra_job_data &, size_t);

    std::string element(unsigned its_number) const {
        return block(name, std::string("      ") + key + ": " + std::to_string(its_number) + "\n" +
                               other);
    }

    /// Elements numbered 101, 102, ...
    std::string blocks(unsigned how_many) const {
        std::string text;
        for (unsigned i = 1; i <= how_many; ++i) {
            text += element(100 + i);
        }
        return text;
    }

    std::string count_line(unsigned promised) const {
        return std::string("    ") + count_key + ": " + std::to_string(promised) + "\n";
    }

    std::vector<uint64_t> numbers(const vemra_job_data &record) const {
        std::vector<uint64_t> all;
        for (size_t i = 0; i < count(record); ++i) {
            all.push_back(number(record, i));
        }
        return all;
    }
};

template <auto elements, auto count, auto number>
Array array_of(const char *name, const char *count_key, const char *key, const char *other) {
    return {name,
            count_key,
            key,
            other,
            [](const vemra_job_data &data) -> uint64_t { return data.*count; },
            [](const vemra_job_data &data) -> const void * { return data.*elements; },
            [](const vemra_job_data &data, size_t i) -> uint64_t {
                return (data.*elements)[i].*number;
            }};
}

const Array arrays[] = {
    array_of<&vemra_job_data::hosts_sd_info, &vemra_job_data::hosts_num, &vemra_sd_info::vemrad_id>(
        "hosts_sd_info", "hosts_num", "vemrad_id", "      addr: \"192.0.2.1\"\n"),
    array_of<&vemra_job_data::trees, &vemra_job_data::trees_num, &vemra_tree::tree_id>(
        "trees", "trees_num", "tree_id",
        "      versions: 3\n      mgid {\n        guid: 5\n      }\n"
        "      quota {\n        max_qps: 6\n      }\n"),
    array_of<&vemra_job_data::conns, &vemra_job_data::conns_num, &vemra_tree_conn::vemrad_id>(
        "conns", "conns_num", "vemrad_id",
        "      qp_child_idxs: 9\n      qp_child_idxs: 0\n"
        "      pr_sd_to_an {\n        dgid {\n        }\n        sgid {\n        }\n"
        "        sl: 3\n      }\n"
        "      pr_an_to_sd {\n        dgid {\n        }\n        sgid {\n        }\n"
        "        mtu: 4\n      }\n"),
    array_of<&vemra_job_data::agg_nodes, &vemra_job_data::agg_nodes_num, &vemra_tree_an::guid>(
        "agg_nodes", "agg_nodes_num", "guid", "      an_id: 7\n"),
};

const Array &hosts_array = arrays[0];
const Array &trees_array = arrays[1];

TEST(JobDataArrays, AnyNumberOfElementsIsReadInOrder) {
    // Requests for memory: one for the record, one for 5 elements, and one for every doubling.
    const std::pair<unsigned, size_t> cases[] = {{0, 1},  {1, 2},  {4, 2},  {5, 2}, {6, 3},
                                                 {10, 3}, {11, 4}, {20, 4}, {21, 5}};
    for (const Array &array : arrays) {
        for (const auto &[count, requests] : cases) {
            MemoryWatch watch;
            {
                const ReadData read(job_data(array.blocks(count) + "    job_key: 9\n"));
                EXPECT_EQ(array.elements(*read) == nullptr, count == 0);
                ASSERT_EQ(array.count(*read), count);
                for (unsigned i = 0; i < count; ++i) {
                    EXPECT_EQ(array.number(*read, i), 101U + i);
                }
                EXPECT_EQ(read->job_key, 9U);
                EXPECT_EQ(watch.requests(), requests);
            }
            EXPECT_EQ(watch.alive(), 0U);
        }
    }
}

TEST(JobDataArrays, EveryElementIsClearedBeforeItIsRead) {
    for (const Array &array : arrays) {
        // A sixth element lies in memory that was not cleared when it was asked for.
        const std::string text =
            job_data(array.count_line(7) + no_options + array.blocks(6) + array.element(1));
        const ReadData read(text);
        // The indexes behind those in the text are 0, which is written.
        for (uint64_t i = 0; i < read->conns_num; ++i) {
            const uint8_t expected[64] = {9};
            EXPECT_EQ(std::memcmp(read->conns[i].qp_child_idxs, expected, 64), 0);
            read->conns[i].qp_child_idxs[2] = 255;
        }
        EXPECT_EQ(written(*read), text);
    }
}

TEST(JobDataArrays, AnElementThatFindsNoMemoryIsDroppedAndTheNextTriesAgain) {
    // Requests: the record, then room for 5 elements, 10 and 20.
    const unsigned dropped[] = {0, 1, 6, 11, 0};
    for (const Array &array : arrays) {
        for (const size_t failing : {1U, 2U, 3U, 4U}) {
            MemoryWatch watch;
            watch.fail(failing);
            {
                const ReadData read(job_data(array.blocks(12) + "    job_key: 9\n"));
                std::vector<uint64_t> expected;
                for (unsigned i = 1; i <= 12; ++i) {
                    if (i != dropped[failing]) {
                        expected.push_back(100 + i);
                    }
                }
                EXPECT_EQ(watch.failed(), failing < 4 ? 1U : 0U);
                EXPECT_EQ(array.numbers(*read), expected);
                EXPECT_EQ(read->job_key, 9U);
            }
            EXPECT_EQ(watch.alive(), 0U);
        }
    }
}

TEST(JobDataArrays, FiveElementsStayWhenNothingGrows) {
    for (const Array &array : arrays) {
        MemoryWatch watch;
        watch.fail_all_growth();
        {
            const ReadData read(job_data(array.blocks(12) + "    job_key: 9\n"));
            EXPECT_EQ(watch.failed(), 7U);
            EXPECT_EQ(array.numbers(*read), (std::vector<uint64_t>{101, 102, 103, 104, 105}));
            EXPECT_EQ(read->job_key, 9U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobDataArrays, NoElementIsReadWithoutMemoryForTheFirst) {
    for (const Array &array : arrays) {
        MemoryWatch watch;
        watch.fail(1, 100);
        {
            const ReadData read(
                job_data(array.count_line(3) + array.blocks(3) + "    job_key: 9\n"));
            EXPECT_EQ(watch.failed(), 3U);
            EXPECT_EQ(array.elements(*read), nullptr);
            EXPECT_EQ(array.count(*read), 0U);
            EXPECT_EQ(read->job_key, 9U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobDataArrays, NoRecordIsReadWithoutMemoryForIt) {
    MemoryWatch watch;
    watch.fail(0);
    {
        const ReadData read(job_data(trees_array.blocks(2)));
        EXPECT_EQ(read.result(), -1);
        EXPECT_EQ(read.operator->(), nullptr);
    }
    EXPECT_EQ(watch.requests(), 1U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobDataArrays, ACountBeforeItsElementsGivesWayToTheirNumber) {
    for (const Array &array : arrays) {
        const ReadData read(
            job_data(array.count_line(7) + "    uid: 4\n" + array.blocks(3) + "    job_key: 9\n"));
        EXPECT_EQ(array.numbers(*read), (std::vector<uint64_t>{101, 102, 103}));
        EXPECT_EQ(read->job_key, 9U);
    }
}

TEST(JobDataArrays, ACountDirectlyBeforeItsElementsIsNoElement) {
    for (const Array &array : arrays) {
        const ReadData read(job_data(array.count_line(7) + array.blocks(2) + "    job_key: 9\n"));
        EXPECT_EQ(array.numbers(*read), (std::vector<uint64_t>{101, 102}));
        EXPECT_EQ(read->job_key, 9U);
    }
}

TEST(JobDataArrays, ACountBehindItsElementsAndAnotherLineIsKept) {
    for (const Array &array : arrays) {
        MemoryWatch watch;
        {
            const ReadData read(
                job_data(array.blocks(3) + "    job_key: 9\n" + array.count_line(7)));
            EXPECT_EQ(array.count(*read), 7U);
            for (unsigned i = 0; i < 3; ++i) {
                EXPECT_EQ(array.number(*read, i), 101U + i);
            }
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobDataArrays, HostsNumDirectlyBehindTheHostsIsTheCount) {
    const ReadData read(job_data(hosts_array.blocks(3) + "    hosts_num: 7\n    job_key: 9\n"));
    EXPECT_EQ(read->hosts_num, 7U);
    ASSERT_NE(read->hosts_sd_info, nullptr);
    EXPECT_EQ(read->hosts_sd_info[2].vemrad_id, 103U);
    EXPECT_EQ(read->job_key, 9U);
}

TEST(JobDataArrays, ACountThatBeginsAsItsElementsIsOneMoreBehindThem) {
    for (const Array &array : {arrays[1], arrays[2], arrays[3]}) {
        // What follows the count is the inside of the element, up to a closing brace.
        MemoryWatch watch;
        {
            const ReadData read(job_data(array.blocks(2) + array.count_line(7) +
                                         "    job_key: 9\n" + "      " + array.key +
                                         ": 55\n    }\n" + "    reservation_id: 8\n"));
            EXPECT_EQ(array.numbers(*read), (std::vector<uint64_t>{101, 102, 55}));
            EXPECT_EQ(read->job_key, 0U);
            EXPECT_EQ(read->reservation_id, 8U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobDataArrays, ACountBehindElementsTakesTheEndOfTheMessageForItsOwn) {
    const ReadData read(job_data(trees_array.blocks(2) + "    trees_num: 7\n    job_key: 9\n" +
                                 "    conns {\n      tree_id: 4\n    }\n"));
    EXPECT_EQ(trees_array.numbers(*read), (std::vector<uint64_t>{101, 102, 0}));
    EXPECT_EQ(read->job_key, 0U);
    EXPECT_EQ(read->conns_num, 0U);
    EXPECT_EQ(read->conns, nullptr);
}

TEST(JobDataArrays, ACountBehindElementsThatFindsNoMemoryIsSkippedAlone) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        const ReadData read(job_data(trees_array.blocks(5) + "    trees_num: 7\n    job_key: 9\n"));
        EXPECT_EQ(watch.failed(), 1U);
        EXPECT_EQ(read->trees_num, 5U);
        EXPECT_EQ(read->job_key, 9U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(JobDataArrays, ACountWithoutElementsIsKeptAndWrittenWithoutThem) {
    for (const Array &array : arrays) {
        const ReadData read(job_data(array.count_line(2)));
        EXPECT_EQ(array.count(*read), 2U);
        EXPECT_EQ(array.elements(*read), nullptr);
        EXPECT_EQ(written(*read), job_data(array.count_line(2) + no_options));
    }
}

TEST(JobDataArrays, NoElementIsWrittenForACountOfZero) {
    vemra_tree tree = {};
    tree.tree_id = 5;
    vemra_job_data record = {};
    record.trees = &tree;
    EXPECT_EQ(written(record), job_data(no_options));
}

TEST(JobDataArrays, LaterElementsReplaceEarlierOnes) {
    for (const Array &array : arrays) {
        MemoryWatch watch;
        {
            const ReadData read(job_data(array.blocks(6) + "    job_key: 9\n" + array.element(3)));
            EXPECT_EQ(array.numbers(*read), (std::vector<uint64_t>{3}));
            EXPECT_EQ(watch.alive(), 2U);
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(JobDataArrays, AnUnknownLineEndsARunOfElements) {
    const ReadData read(
        job_data(trees_array.blocks(2) + "    colour: 5\n" + trees_array.element(3)));
    EXPECT_EQ(trees_array.numbers(*read), (std::vector<uint64_t>{3}));
}

TEST(JobDataArrays, ManyElementsOfEveryArrayAreWrittenAsTheyWereRead) {
    std::string counts;
    std::string blocks;
    for (const Array &array : {arrays[0], arrays[1], arrays[3]}) {
        counts += array.count_line(11);
        blocks += array.blocks(11);
    }
    const std::string text = job_data(counts + no_options + blocks);
    EXPECT_EQ(rewritten(text), text);
}

TEST(JobDataArrays, ACountBehindItsElementsIsNotTraced) {
    LogCapture log;
    const ReadData read(job_data(trees_array.blocks(1) + "    trees_num: 7\n    }\n"));
    // It is the opening line of another element.
    EXPECT_EQ(read->trees_num, 2U);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "_kvt_txt_unpack_msg_vemra_tree p_msg->tree_id[0x65]\n",
                               "_kvt_txt_unpack_primarray_uint8_t txt unpack value[0x3]\n",
                               "_kvt_txt_unpack_msg_vemra_quota p_msg->max_qps[0x6]\n",
                           }));
}

} // namespace
} // namespace kvt_test
