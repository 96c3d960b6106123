// Rows of several lines, and texts: what is taken, what is cut, what is dropped, what is traced.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "engine/read_row.h"
#include "engine/release.h"
#include "support/exact_copy.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/random_records.h"
#include "support/tables.h"
#include "support/test_records.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// A test record read from the lines of its block.
template <typename Type> class ReadBlock {
public:
    explicit ReadBlock(const std::string &lines, Counts counts = Counts::as_read)
        : record_(RecordOf<Type>::table) {
        const auto text = exact_copy("block {\n" + lines + "}\n");
        Input input{Text(text.get()), counts};
        CodecOf<Type>::codec.unpack(input, after_newline(text.get()), record_.get(), 1);
    }

    Type *operator->() { return record_.template as<Type>(); }

private:
    OwnedRecord record_;
};

std::string lines_of(const std::string &key, uint64_t first, uint64_t count) {
    std::string lines;
    for (uint64_t i = 0; i < count; ++i) {
        lines += "    " + key + ": " + std::to_string(first + i) + "\n";
    }
    return lines;
}

// --- Numbers -------------------------------------------------------------------------------------

TEST(NumberArrays, TakeARunOfLinesWhateverTheCountLineSaid) {
    ReadBlock<test_everything> read("    num_guids: 99\n" + lines_of("guids", 1, 3) +
                                    "    num_ids: 1\n" + lines_of("ids", 7, 2) +
                                    lines_of("shorts", 65535, 2));
    ASSERT_EQ(read->num_guids, 3U);
    EXPECT_EQ(read->guids[0], 1U);
    EXPECT_EQ(read->guids[2], 3U);
    ASSERT_EQ(read->num_ids, 2U);
    EXPECT_EQ(read->ids[1], 8U);
    ASSERT_EQ(read->num_shorts, 2U);
    EXPECT_EQ(read->shorts[0], 65535U);
    EXPECT_EQ(read->shorts[1], 0U); // 65536 cut to 16 bits
}

TEST(NumberArrays, HoldEveryElementAtTheEdgesOfTheirGrowth) {
    for (const uint64_t count : {1U, 4U, 5U, 6U, 10U, 11U, 20U, 21U, 41U}) {
        MemoryWatch watch;
        ReadBlock<test_everything> read(lines_of("guids", 100, count));
        ASSERT_EQ(read->num_guids, count);
        for (uint64_t i = 0; i < count; ++i) {
            ASSERT_EQ(read->guids[i], 100 + i);
        }
        // The record, the first block of 5, and a growth whenever 5, 10, 20, 40 are full.
        const size_t growths = (count > 5) + (count > 10) + (count > 20) + (count > 40);
        EXPECT_EQ(watch.requests(), 2 + growths);
        EXPECT_EQ(watch.largest(), std::max<size_t>((5U << growths) * 8, sizeof(test_everything)));
    }
}

TEST(NumberArrays, DropTheElementWhoseGrowthFailsAndGoOn) {
    MemoryWatch watch;
    watch.fail(2); // after the record and the first block
    ReadBlock<test_everything> read(lines_of("guids", 1, 8));
    ASSERT_EQ(read->num_guids, 7U);
    EXPECT_EQ(read->guids[4], 5U);
    EXPECT_EQ(read->guids[5], 7U); // 6 is the one that is missing
}

TEST(NumberArrays, StayNullWhenNothingCanBeAllocated) {
    MemoryWatch watch;
    watch.fail(1, 100);
    LogCapture log;
    ReadBlock<test_everything> read(lines_of("ids", 1, 3));
    EXPECT_EQ(read->num_ids, 0U);
    EXPECT_EQ(read->ids, nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{"_kvt_txt_unpack_primptr_uint32_t END prim ptr, "
                                        "num_lements[0x0], array[0][0x0]\n"}));
}

TEST(NumberArrays, LinesThatDoNotScanAreTracedWithTheLastValueAndTaken) {
    LogCapture log;
    ReadBlock<test_everything> read("    shorts: x\n"
                                    "    shorts: 65537\n"
                                    "    shorts\n"
                                    "    shorts_more: 1\n"
                                    "    shorts: 2 }\n"
                                    "    byte: 1\n");
    ASSERT_EQ(read->num_shorts, 2U);
    EXPECT_EQ(read->shorts[0], 1U);
    EXPECT_EQ(read->shorts[1], 2U);
    EXPECT_EQ(read->byte, 1U);
    const std::string self = "_kvt_txt_unpack_primptr_uint16_t";
    EXPECT_EQ(
        log.lines(),
        (std::vector<LogLine>{
            {self, 6,
             self + " missmatch, array[shorts: x\n    shorts: 65537\n    shorts\n    shorts_], "
                    "frame_key[shorts:%hu], value[0]\n"},
            {self, 6, self + " element[1]=[0x1]\n"},
            {self, 6,
             self + " missmatch, array[shorts\n    shorts_more: 1\n    shorts: 2 }\n    byte], "
                    "frame_key[shorts:%hu], value[1]\n"},
            {self, 6,
             self + " missmatch, array[shorts_more: 1\n    shorts: 2 }\n    byte: 1\n}\n], "
                    "frame_key[shorts:%hu], value[1]\n"},
            {self, 6, self + " element[2]=[0x2]\n"},
            {self, 6, self + " END prim ptr, num_lements[0x2], array[0][0x1]\n"},
            {"_kvt_txt_unpack_msg_test_everything", 6,
             "_kvt_txt_unpack_msg_test_everything p_msg->byte[0x1]\n"},
        }));
}

TEST(NumberArrays, ASecondRunReplacesTheFirst) {
    const MemoryWatch watch;
    {
        ReadBlock<test_everything> read(lines_of("guids", 1, 7) + "    byte: 1\n" +
                                        lines_of("guids", 50, 2));
        ASSERT_EQ(read->num_guids, 2U);
        EXPECT_EQ(read->guids[0], 50U);
    }
    {
        ReadBlock<test_everything> read(lines_of("guids", 1, 7) + "    byte: 1\n    guids: x\n");
        EXPECT_EQ(read->num_guids, 0U);
        EXPECT_EQ(read->guids, nullptr);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(NumberArrays, ACountLineBehindTheRunIsKeptAsItIs) {
    ReadBlock<test_everything> read(lines_of("guids", 1, 3) + "    num_guids: 9\n");
    EXPECT_EQ(read->num_guids, 9U);
    ReadBlock<test_everything> alone("    num_guids: 9\n");
    EXPECT_EQ(alone->num_guids, 9U);
    EXPECT_EQ(alone->guids, nullptr);
}

TEST(NumberArrays, CountsCanBeMadeToAgree) {
    const MemoryWatch watch;
    {
        ReadBlock<test_everything> more(lines_of("guids", 1, 3) + "    num_guids: 9\n",
                                        Counts::agree);
        EXPECT_EQ(more->num_guids, 3U);
        ReadBlock<test_everything> fewer(lines_of("guids", 1, 3) + "    num_guids: 2\n",
                                         Counts::agree);
        EXPECT_EQ(fewer->num_guids, 2U);
        EXPECT_EQ(fewer->guids[1], 2U);
        ReadBlock<test_everything> none(lines_of("guids", 1, 3) + "    num_guids: 0\n",
                                        Counts::agree);
        EXPECT_EQ(none->num_guids, 0U);
        EXPECT_EQ(none->guids, nullptr);
        ReadBlock<test_everything> alone("    num_guids: 9\n", Counts::agree);
        EXPECT_EQ(alone->num_guids, 0U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(NumberArrays, HoldsGuidsOfTwentyDigits) {
    ReadBlock<test_everything> read("    guids: 18446744073709551615\n"
                                    "    guids: 18446744073709551616\n"
                                    "    guids: 1844674407370955161\n");
    EXPECT_EQ(read->guids[0], UINT64_MAX);
    EXPECT_EQ(read->guids[1], UINT64_MAX);
    EXPECT_EQ(read->guids[2], 1844674407370955161U);
}

// --- Joined strings ------------------------------------------------------------------------------

TEST(JoinedStrings, JoinLinesWithCommasAndCountTheirNul) {
    ReadBlock<test_everything> read("    hosts_len: 77\n"
                                    "    hosts: \"a\"\n"
                                    "    hosts: \"b\"\n");
    EXPECT_STREQ(read->hosts, "a,b");
    EXPECT_EQ(read->hosts_len, 4U);
}

TEST(JoinedStrings, TakeTheirOwnLengthLineBehindThemForOneOfTheirs) {
    ReadBlock<test_everything> next("    hosts: \"ab,cd\"\n    hosts_len: 77\n");
    EXPECT_STREQ(next->hosts, "ab,cd");
    EXPECT_EQ(next->hosts_len, 6U);
    ReadBlock<test_everything> later("    hosts: \"ab,cd\"\n    byte: 1\n    hosts_len: 77\n");
    EXPECT_EQ(later->hosts_len, 77U);
}

TEST(JoinedStrings, AreCutAfterOneDoublingAndLoseTheirLastCharacter) {
    // Room for five times the first value: 5. The second wants 15 and gets 10.
    ReadBlock<test_everything> read("    hosts: \"a\"\n    hosts: \"0123456789\"\n");
    EXPECT_STREQ(read->hosts, "a,012345");
    EXPECT_EQ(read->hosts_len, 9U);
}

TEST(JoinedStrings, GrowByOneMoreThanTheyTakeForEachValue) {
    // 5 times 4 is 20. A value of 4 is reckoned as 6: three fit, the fourth doubles the room.
    MemoryWatch watch;
    const auto hosts = [](int count) {
        std::string lines;
        for (int i = 0; i < count; ++i) {
            lines += "    hosts: \"abcd\"\n";
        }
        return lines;
    };
    {
        ReadBlock<test_everything> three(hosts(3));
        EXPECT_EQ(watch.requests(), 2U);
        EXPECT_STREQ(three->hosts, "abcd,abcd,abcd");
        EXPECT_EQ(three->hosts_len, 15U);
    }
    watch.fail(100);
    ReadBlock<test_everything> four(hosts(4));
    EXPECT_EQ(watch.requests(), 3U);
    EXPECT_STREQ(four->hosts, "abcd,abcd,abcd,abcd");
    EXPECT_EQ(four->hosts_len, 20U);
}

TEST(JoinedStrings, DropTheLineWhoseGrowthFails) {
    MemoryWatch watch;
    watch.fail(2);
    ReadBlock<test_everything> read("    hosts: \"a\"\n    hosts: \"bbb\"\n    hosts: \"c\"\n");
    EXPECT_STREQ(read->hosts, "a,c");
    EXPECT_EQ(read->hosts_len, 4U);
}

TEST(JoinedStrings, TraceAValueThatCouldNotBeAddedUntilAnotherIs) {
    MemoryWatch watch;
    watch.fail(1);
    LogCapture log;
    ReadBlock<test_everything> read("    hosts: \"abc\"\n    hosts_len: 5\n"
                                    "    hosts: \"d\"\n    hosts_len: 5\n");
    ASSERT_EQ(log.texts().size(), 4U);
    EXPECT_TRUE(log.texts()[0].ends_with("value[abc]\n")) << log.texts()[0];
    EXPECT_TRUE(log.texts()[1].ends_with("dst_ptr[d,], value[]\n")) << log.texts()[1];
    EXPECT_TRUE(log.texts()[2].ends_with("value[]\n")) << log.texts()[2];
    // Only the value that was added counts.
    EXPECT_TRUE(log.texts()[3].ends_with("num_lements[0x1], array[0][0x64]\n")) << log.texts()[3];
}

TEST(JoinedStrings, AreNullWithoutAValue) {
    LogCapture log;
    ReadBlock<test_everything> read("    hosts: \"\"\n    byte: 1\n");
    EXPECT_EQ(read->hosts, nullptr);
    EXPECT_EQ(read->hosts_len, 0U);
    const std::string self = "_kvt_txt_unpack_primptr_char";
    EXPECT_EQ(log.texts()[0], self + " missmatch, array[hosts: \"\"\n    byte: 1\n}\n], "
                                     "frame_key[hosts:%*[^\"]\"%[^\"]\"], value[]\n");
    EXPECT_EQ(log.texts()[1], self + " END prim ptr, num_lements[0x0], array[0][0x0]\n");
}

TEST(JoinedStrings, TraceTheStringSoFarAndItsFirstCharacterWithItsSign) {
    LogCapture log;
    ReadBlock<test_everything> read("    hosts: \"\xC3\xA9\"\n    hosts: \"b\"\n");
    const std::string self = "_kvt_txt_unpack_primptr_char";
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {self, 6, self + " dst_ptr[\xC3\xA9,], value[]\n"},
                               {self, 6, self + " dst_ptr[\xC3\xA9,b,], value[]\n"},
                               {self, 6,
                                self + " END prim ptr, num_lements[0x2], array[0][0x" +
                                    (sizeof(long) == 8 ? "ffffffff" : "") + "ffffffc3]\n"},
                           }));
}

TEST(JoinedStrings, TakeAtMost298CharactersOfALine) {
    for (const size_t length : {297U, 298U, 299U, 5000U}) {
        ReadBlock<test_everything> read("    hosts: \"" + std::string(length, 'h') + "\"\n");
        EXPECT_EQ(std::string(read->hosts), std::string(length < 298 ? length : 298, 'h'));
    }
}

TEST(JoinedStrings, ASecondRunReplacesTheFirst) {
    const MemoryWatch watch;
    {
        ReadBlock<test_everything> read("    hosts: \"first\"\n    byte: 1\n    hosts: \"b\"\n");
        EXPECT_STREQ(read->hosts, "b");
        EXPECT_EQ(read->hosts_len, 2U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// --- Character arrays ----------------------------------------------------------------------------

TEST(CharacterArrays, AreCutToLeaveRoomForTheirNul) {
    for (const size_t length : {62U, 63U, 64U, 199U, 200U, 1000U}) {
        ReadBlock<test_everything> read("    text: \"" + std::string(length, 't') +
                                        "\"\n    byte: 1\n");
        EXPECT_EQ(std::string(read->text), std::string(length < 63 ? length : 63, 't'));
        EXPECT_EQ(read->byte, 1U);
    }
}

TEST(CharacterArrays, AnotherKeyClearsThemAndStaysWhereItIs) {
    LogCapture log;
    OwnedRecord record(RecordOf<test_everything>::table);
    auto *everything = record.as<test_everything>();
    std::memset(everything->text, 'x', sizeof everything->text);
    const Row *row = nullptr;
    for (const Row &candidate : RecordOf<test_everything>::table.rows) {
        row = candidate.kind == RowKind::text ? &candidate : row;
    }
    const auto text = exact_copy("name: \"a\"\n");
    Input input{Text(text.get()), Counts::as_read};
    BlockReader block(input, CodecOf<test_everything>::codec, everything, 1);
    EXPECT_EQ(_kvt_txt_unpack_primarray_char(block, *row, text.get(), Offer::by_key), text.get());
    EXPECT_EQ(std::string(everything->text, sizeof everything->text), std::string(64, '\0'));
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "_kvt_txt_unpack_primarray_char strncmp ret not 0, key[text] "
                               "array[name: \"a\"\n]\n"}));
}

TEST(CharacterArrays, TakeAQuoteFromALaterLineButMoveByOne) {
    ReadBlock<test_everything> read("    text:\n    byte: 7\n    other: \"late\"\n");
    EXPECT_STREQ(read->text, "late");
    EXPECT_EQ(read->byte, 7U);
}

// --- Byte arrays ---------------------------------------------------------------------------------

TEST(ByteArrays, FillFromTheFrontAndStoreZeroForWhatDoesNotScan) {
    LogCapture log;
    ReadBlock<test_everything> read("    indexes: 4\n"
                                    "    indexes: x\n"
                                    "    indexes: 511\n"
                                    "    byte: 1\n");
    EXPECT_EQ(read->indexes[0], 4U);
    EXPECT_EQ(read->indexes[1], 0U);
    EXPECT_EQ(read->indexes[2], 255U);
    EXPECT_EQ(read->indexes[3], 0U);
    const std::string self = "_kvt_txt_unpack_primarray_uint8_t";
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{
                               {self, 6, self + " txt unpack value[0x4]\n"},
                               {self, 6, self + " txt unpack value[0x0]\n"},
                               {self, 6, self + " txt unpack value[0xff]\n"},
                               {self, 6, self + " END ARRAY, key[indexes] array[byte: 1\n}\n]\n"},
                               {"_kvt_txt_unpack_msg_test_everything", 6,
                                "_kvt_txt_unpack_msg_test_everything p_msg->byte[0x1]\n"},
                           }));
}

TEST(ByteArrays, PassOverMoreLinesThanTheyHaveBytesWithoutATrace) {
    LogCapture log;
    ReadBlock<test_everything> read(lines_of("reserved", 1, 5) + "    byte: 1\n");
    EXPECT_EQ(read->reserved[0], 1U);
    EXPECT_EQ(read->reserved[2], 3U);
    EXPECT_EQ(read->byte, 1U);
    EXPECT_EQ(log.lines().size(), 4U); // three values and the byte
}

TEST(ByteArrays, AreClearedByALaterRunOnlyWhereTheRowSaysSo) {
    ReadBlock<test_everything> read(lines_of("indexes", 1, 3) + lines_of("reserved", 1, 3) +
                                    "    byte: 1\n" + lines_of("indexes", 9, 1) +
                                    lines_of("reserved", 9, 1));
    EXPECT_EQ(read->indexes[0], 9U);
    EXPECT_EQ(read->indexes[1], 0U);
    EXPECT_EQ(read->reserved[0], 9U);
    EXPECT_EQ(read->reserved[1], 2U);
}

// --- Runs of blocks ------------------------------------------------------------------------------

std::string entries(uint64_t first, uint64_t count) {
    std::string blocks;
    for (uint64_t i = 0; i < count; ++i) {
        blocks += "    entries {\n      id: " + std::to_string(first + i) + "\n      name: \"n" +
                  std::to_string(first + i) + "\"\n    }\n";
    }
    return blocks;
}

TEST(Runs, HoldEveryElementAtTheEdgesOfTheirGrowth) {
    for (const uint64_t count : {1U, 4U, 5U, 6U, 10U, 11U, 20U, 21U}) {
        const MemoryWatch watch;
        {
            ReadBlock<test_everything> read(entries(100, count));
            ASSERT_EQ(read->entries_len, count);
            for (uint64_t i = 0; i < count; ++i) {
                ASSERT_EQ(read->entries[i].id, 100 + i);
                ASSERT_EQ(read->entries[i].name, "n" + std::to_string(100 + i));
            }
        }
        EXPECT_EQ(watch.alive(), 0U);
    }
}

TEST(Runs, DropTheElementsForWhichThereIsNoMemory) {
    MemoryWatch watch;
    watch.fail_all_growth();
    {
        ReadBlock<test_everything> read(entries(1, 12) + "    byte: 1\n");
        ASSERT_EQ(read->entries_len, 5U);
        EXPECT_EQ(read->entries[4].id, 5U);
        EXPECT_EQ(read->byte, 1U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Runs, TakeALongerKeyDirectlyBehindThemForOneMoreElement) {
    LogCapture log;
    ReadBlock<test_everything> read(entries(1, 2) + "    entries_len: 9\n"
                                                    "    id: 3\n"
                                                    "    }\n"
                                                    "    byte: 1\n");
    ASSERT_EQ(read->entries_len, 3U);
    EXPECT_EQ(read->entries[2].id, 3U);
    EXPECT_EQ(read->byte, 1U);
}

TEST(Runs, AReplacedRunIsReleasedByItsTrueLengthWhateverItsCountSays) {
    const MemoryWatch watch;
    for (const char *count : {"0", "1", "3", "4", "4294967295"}) {
        ReadBlock<test_everything> read(entries(1, 3) + "    byte: 1\n    entries_len: " + count +
                                        "\n    byte: 2\n" + entries(8, 1));
        ASSERT_EQ(read->entries_len, 1U);
        EXPECT_STREQ(read->entries[0].name, "n8");
    }
    EXPECT_EQ(watch.alive(), 0U);
}

// The elements that go have runs of their own, whose counts a later line has changed.
TEST(Runs, ElementsOfAReplacedRunAreReleasedByTheTrueLengthOfTheirOwnRuns) {
    const auto group = [](int count, const std::string &count_line) {
        return "  groups {\n" + entries(1, static_cast<uint64_t>(count)) + "    x: 1\n" +
               count_line + "  }\n";
    };
    const auto says = [](const std::string &count) {
        return "    num_entries: " + count + "\n";
    };
    const std::string run = group(2, says("4294967295")) + group(3, says("0")) + group(1, "") +
                            group(0, says("7")) + group(7, says("8")) + group(3, says("2"));
    const std::string last = "  x: 1\n" + group(1, "");
    MemoryWatch watch;
    {
        ReadBlock<test_tree> read(run + "  x: 1\n  groups_num: 1\n" + last);
        ASSERT_EQ(read->groups_num, 1U);
        EXPECT_STREQ(read->groups[0].entries[0].name, "n1");
    }
    EXPECT_EQ(watch.alive(), 0U);
    {
        ReadBlock<test_tree> read(run + "  x: 1\n" + run + "  x: 1\n" + run + last);
        EXPECT_EQ(read->groups_num, 1U);
    }
    EXPECT_EQ(watch.alive(), 0U);
    // Nothing is lost either when there is no memory to remember the truth.
    for (size_t failing = 0; failing < 80; ++failing) {
        watch.fail(failing + 1);
        { ReadBlock<test_tree> read(run + last); }
        EXPECT_EQ(watch.alive(), 0U) << failing;
    }
}

// The 17th lie takes more room than there was. Where it cannot be had, the count is made true.
TEST(Runs, CountsThatLieAreMadeTrueWhereThereIsNoMemoryForOneMore) {
    std::string groups;
    for (int i = 0; i < 17; ++i) {
        groups += "  groups {\n" + entries(1, 1) + "    x: 1\n    num_entries: 7\n  }\n";
    }
    MemoryWatch watch;
    size_t made_true = 0;
    bool failed = true;
    for (size_t failing = 1; failed; ++failing) {
        watch.fail(failing);
        ReadBlock<test_tree> read(groups);
        failed = watch.failed() != 0;
        if (failed && read->groups_num == 17 && read->groups[16].num_entries == 1) {
            ++made_true;
            EXPECT_EQ(read->groups[15].num_entries, 7U);
        }
        // So that they can be released with the record.
        for (size_t i = 0; i < read->groups_num; ++i) {
            read->groups[i].num_entries = read->groups[i].entries != nullptr ? 1 : 0;
        }
    }
    EXPECT_EQ(made_true, 1U);
    EXPECT_EQ(watch.alive(), 0U);
}

// Nothing is released then: all elements that were read stay.
TEST(Runs, ASmallerCountIsMadeTrueWhereThereIsNoMemoryForTheTruth) {
    MemoryWatch watch;
    size_t made_true = 0;
    bool failed = true;
    for (size_t failing = 1; failed; ++failing) {
        watch.fail(failing);
        ReadBlock<test_tree> read("  groups {\n" + entries(1, 2) +
                                  "    x: 1\n    num_entries: 1\n  }\n");
        failed = watch.failed() != 0;
        made_true += failed && read->groups_num == 1 && read->groups[0].num_entries == 2;
        // So that they can be released with the record.
        if (read->groups_num == 1) {
            read->groups[0].num_entries = read->groups[0].entries != nullptr ? 2 : 0;
        }
    }
    EXPECT_EQ(made_true, 1U);
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Runs, CountsCanBeMadeToAgreeAtEveryDepth) {
    const MemoryWatch watch;
    {
        ReadBlock<test_tree> read("  groups {\n" + entries(1, 3) +
                                      "    x: 1\n    num_entries: 1\n" +
                                      "  }\n"
                                      "  groups {\n" +
                                      entries(5, 2) + "    x: 1\n    num_entries: 90\n" +
                                      "  }\n"
                                      "  groups {\n    num_entries: 4\n  }\n"
                                      "  other_slots {\n  tree_idx: 1\n  }\n"
                                      "  x: 1\n"
                                      "  groups_num: 2\n"
                                      "  others_num: 18446744073709551615\n",
                                  Counts::agree);
        ASSERT_EQ(read->groups_num, 2U);
        ASSERT_EQ(read->groups[0].num_entries, 1U);
        EXPECT_STREQ(read->groups[0].entries[0].name, "n1");
        ASSERT_EQ(read->groups[1].num_entries, 2U);
        EXPECT_STREQ(read->groups[1].entries[1].name, "n6");
        EXPECT_EQ(read->others_num, 1U);
    }
    EXPECT_EQ(watch.alive(), 0U);
}

TEST(Runs, OnlyTheLowHalfOfACountIsWrittenWhereTheRowSaysSo) {
    test_entry entry = {};
    entry.id = 5;
    test_everything record = {};
    record.entries_len = (uint64_t{1} << 32) + 1;
    record.entries = &entry;
    const std::string text = write_block(RecordOf<test_everything>::table, &record, 1);
    EXPECT_NE(text.find("    entries_len: 4294967297\n"
                        "    entries {\n"
                        "      id: 5\n"
                        "    }\n"
                        "  }\n"),
              std::string::npos)
        << text;
}

// --- Slots ---------------------------------------------------------------------------------------

TEST(Slots, TakeFourBlocksAndSkipTheOthersWithoutATrace) {
    std::string blocks;
    for (int i = 1; i <= 6; ++i) {
        blocks +=
            "    slots {\n      tree_id: " + std::to_string(i) + "\n      x {\n      }\n    }\n";
    }
    LogCapture log;
    ReadBlock<test_everything> read(blocks + "    byte: 1\n    num_slots: 9\n");
    EXPECT_EQ(read->num_slots, 9U); // as read
    EXPECT_EQ(read->slots[0].tree_id, 1U);
    EXPECT_EQ(read->slots[3].tree_id, 4U);
    EXPECT_EQ(log.lines().size(), 4 * 2 + 2U);
}

TEST(Slots, AreCountedByTheirBlocks) {
    for (unsigned count = 1; count <= 5; ++count) {
        std::string blocks = "    num_slots: 77\n";
        for (unsigned i = 0; i < count; ++i) {
            blocks += "    slots {\n      tree_id: 1\n    }\n";
        }
        ReadBlock<test_everything> read(blocks);
        EXPECT_EQ(read->num_slots, count < 4 ? count : 4U);
    }
}

TEST(Slots, ALaterRunStartsAtTheFirstAndClearsOnlyWhatItReads) {
    ReadBlock<test_everything> read("    slots {\n    tree_id: 1\n    tree_idx: 1\n    }\n"
                                    "    slots\n    tree_id: 2\n    }\n"
                                    "    byte: 1\n"
                                    "    slots {\n    tree_id: 3\n    }\n");
    EXPECT_EQ(read->num_slots, 1U);
    EXPECT_EQ(read->slots[0].tree_id, 3U);
    EXPECT_EQ(read->slots[0].tree_idx, 0U);
    EXPECT_EQ(read->slots[1].tree_id, 2U);
}

// --- Blocks and single values --------------------------------------------------------------------

TEST(Blocks, ThatAreNotClearedMergeAndTraceNothing) {
    LogCapture log;
    ReadBlock<test_everything> read("    address {\n      prefix: 5\n      plain: 6\n    }\n"
                                    "    address {\n      odd: 1\n      box {\n      }\n"
                                    "      guid: 7\n    }\n");
    EXPECT_EQ(read->address.prefix, 5U);
    EXPECT_EQ(read->address.guid, 7U);
    EXPECT_EQ(read->address.plain, 6U);
    EXPECT_TRUE(log.lines().empty());
}

TEST(SharedValues, AreStoredWhetherTheScanSucceedsOrNot) {
    ReadBlock<test_everything> read("    share: x\n    mode: 5\n    share: x\n"
                                    "    address {\n      guid: x\n      prefix: 3\n"
                                    "      guid: y\n      plain: z\n    }\n");
    EXPECT_EQ(read->mode, 5U);
    EXPECT_EQ(read->share, 5U);
    EXPECT_EQ(read->address.guid, 3U);
    EXPECT_EQ(read->address.plain, 0U);
    ReadBlock<test_everything> first("    mode: x\n    share: 4\n");
    EXPECT_EQ(first->mode, 0U);
}

TEST(SignedNumbers, AreWrittenWithTheirSignAndReadAsTheSameBits) {
    for (const int32_t number : {-1, INT32_MIN, INT32_MAX, 1, -2147483647}) {
        test_everything record = {};
        record.signed_number = number;
        const std::string text = write_block(RecordOf<test_everything>::table, &record, 1);
        const std::string line = "    signed_number: " + std::to_string(number) + "\n";
        EXPECT_NE(text.find(line), std::string::npos);
        ReadBlock<test_everything> read(line);
        EXPECT_EQ(read->signed_number, number);
    }
}

TEST(Floats, TraceTheLow32BitsOfTheirInteger) {
    const struct {
        const char *value;
        const char *traced;
    } cases[] = {
        {"12.9", "0xc"},       {"-5.5", "0xfffffffb"}, {"3000000000", "0xb2d05e00"},
        {"4294967296", "0x0"}, {"5e9", "0x2a05f200"},  {"-2147483648", "0x80000000"},
        {"1e30", "0x0"},       {"-1e30", "0x0"},       {"-2147483904", "0x7fffff00"},
        {"nan", "0x0"},        {"-inf", "0x0"},        {"inf", "0x0"},
        {"x", "0x0"},          {"0x10", "0x10"},       {"-5e9", "0xd5fa0e00"},
    };

    for (const auto &c : cases) {
        LogCapture log;
        ReadBlock<test_everything> read(std::string("    share_exact: ") + c.value + "\n");
        EXPECT_EQ(log.texts(),
                  std::vector<std::string>{std::string("_kvt_txt_unpack_msg_test_everything "
                                                       "p_msg->share_exact[") +
                                           c.traced + "]\n"})
            << c.value;
    }
}

} // namespace
} // namespace kvt_test
