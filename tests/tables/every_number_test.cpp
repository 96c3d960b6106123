// Numbers: what holds for every field of every record that is one.
#include <gtest/gtest.h>

#include <array>

#include "support/block_read.h"
#include "support/every_row.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// One value for each width: 8, 16, 32 and 64 bits.
using ByWidth = std::array<uint64_t, 4>;

uint64_t of_width(const Place &place, const ByWidth &values) {
    switch (place.row->size) {
    case 1:
        return values[0];
    case 2:
        return values[1];
    case 4:
        return values[2];
    default:
        return values[3];
    }
}

constexpr ByWidth greatest = {255, 65535, 4294967295, 18446744073709551615U};

TEST(EveryNumber, IsReadInAnyFormThatTheCLibraryTakes) {
    for (const Place &place : every_number()) {
        for (const char *value :
             {":7", ": 7", ":   7", ":\t7", ": +7", ": 0007", ": 7 x", ": 7.9", ": 7\r", ":\n7"}) {
            for (const Form form : every_form) {
                const BlockRead read(
                    place, place.closed(place.indentation() + place.key() + value + "\n"), form);
                ASSERT_EQ(read.number(place), 7U) << place.name() << value;
                ASSERT_EQ(read.rest(), "");
            }
        }
    }
}

TEST(EveryNumber, IsCutToItsWidthAfterItWasScannedWith64Bits) {
    static constexpr struct {
        const char *value;
        ByWidth read;
    } cases[] = {
        {"255", {255, 255, 255, 255}},
        {"261", {5, 261, 261, 261}},
        {"65535", {255, 65535, 65535, 65535}},
        {"65541", {5, 5, 65541, 65541}},
        {"4294967295", {255, 65535, 4294967295, 4294967295}},
        {"4294967301", {5, 5, 5, 4294967301}},
        {"18446744073709551615", greatest},
        {"18446744073709551616", greatest},
        {"99999999999999999999999", greatest},
        {"-1", greatest},
        {"-2", {254, 65534, 4294967294, 18446744073709551614U}},
    };

    for (const Place &place : every_number()) {
        for (const auto &[value, numbers] : cases) {
            for (const Form form : every_form) {
                const BlockRead read(place, place.closed(place.says(value)), form);
                ASSERT_EQ(read.number(place), of_width(place, numbers)) << place.name() << value;
            }
        }
    }
}

TEST(EveryNumber, IsThatOfTheLastLineOfItsKeyThatScans) {
    for (const Place &place : every_number()) {
        const std::string key = place.indentation() + place.key();
        for (const std::string &failing :
             {key + ": x\n", key + ":\n", key + " 9\n", key + " : 9\n", key + "zz: 9\n",
              key + ": - 9\n", key + ": +-9\n", key + "\n"}) {
            for (const Form form : every_form) {
                const BlockRead none(place, place.closed(failing), form);
                ASSERT_EQ(none.number(place), 0U) << place.name() << failing;
                const BlockRead kept(
                    place, place.closed(place.says(4) + place.says(5) + failing + failing), form);
                ASSERT_EQ(kept.number(place), 5U) << place.name() << failing;
                ASSERT_EQ(kept.rest(), "");
            }
        }
    }
}

TEST(EveryNumber, ThatDoesNotScanTakesTheLastValueOnlyWhereItIsShared) {
    for (const Block &block : every_block()) {
        const auto is_shared = [](const Place &place) {
            return place.row->is_number() && place.row->has(shared_value);
        };
        for (const Place &earlier : rows_of(block)) {
            for (const Place &later : rows_of(block)) {
                if (!earlier.row->is_number() || !later.row->is_number() ||
                    earlier.row == later.row) {
                    continue;
                }
                for (const Form form : every_form) {
                    const BlockRead read(block, block.closed(earlier.says(5) + later.says("x")),
                                         form);
                    ASSERT_EQ(read.number(earlier), 5U) << earlier.name();
                    ASSERT_EQ(read.number(later), is_shared(earlier) && is_shared(later) ? 5U : 0U)
                        << later.name() << " after " << earlier.name();
                }
            }
        }
    }
}

TEST(EveryNumber, IsWrittenInDecimalDigits) {
    for (const Place &place : every_number()) {
        BlockToWrite record(place);
        for (const uint64_t number : {uint64_t{1}, uint64_t{9}, uint64_t{10}, uint64_t{127}}) {
            record.set_number(place, number);
            ASSERT_EQ(lines_with_key(place, record.lines(), place.key()), place.says(number));
        }
        record.set_number(place, of_width(place, greatest));
        ASSERT_EQ(lines_with_key(place, record.lines(), place.key()),
                  place.row->kind == RowKind::signed32 ? place.says("-1")
                                                       : place.says(of_width(place, greatest)));
    }
}

TEST(EveryNumber, OfZeroIsWrittenOnlyWhereTheRowSaysSo) {
    for (const Place &place : every_number()) {
        const BlockToWrite record(place);
        ASSERT_EQ(lines_with_key(place, record.lines(), place.key()),
                  place.row->has(always) ? place.says(0) : "");
    }
}

TEST(EveryNumber, IsTracedByItsLow32BitsUnderTheReaderOfItsRecord) {
    for (const Place &place : every_number()) {
        const std::string reader = std::string("_kvt_txt_unpack_msg_") + place.table->name;
        const auto traced = [&](const std::string &value) {
            return std::vector<LogLine>{
                {reader, 6, reader + " p_msg->" + place.key() + "[" + value + "]\n"}};
        };
        const BlockRead greater(place, place.closed(place.says(4294967303)), Form::traced);
        const BlockRead all_bits(place, place.closed(place.says("-1")), Form::traced);
        const BlockRead failing(place, place.closed(place.says("x")), Form::traced);
        if (is_address(*place.table)) {
            ASSERT_TRUE(greater.log().empty());
            ASSERT_TRUE(failing.log().empty());
            continue;
        }
        ASSERT_EQ(greater.log(), traced("0x7"));
        ASSERT_EQ(all_bits.log(), traced(place.row->size == 1   ? "0xff"
                                         : place.row->size == 2 ? "0xffff"
                                                                : "0xffffffff"));
        ASSERT_EQ(failing.log(), traced("0x0"));
    }
}

} // namespace
} // namespace kvt_test
