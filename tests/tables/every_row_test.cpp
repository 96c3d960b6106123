// Lines that belong to no row, lines that end a block, and lines that end with the text: what holds
// around every row.
#include <gtest/gtest.h>

#include <set>

#include "support/block_read.h"
#include "support/every_row.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

std::string unknown_block(const Place &place) {
    return place.inner("zz", place.full(3) + "zz {\n" + unknown_line + "}\n");
}

bool is_line(const Place &place) {
    return place.row->is_number() || place.row->kind == RowKind::text ||
           place.row->kind == RowKind::joined_text;
}

TEST(EveryRow, IsTriedAtEachLevelWhereItStands) {
    std::set<std::string> names;
    std::set<RowKind> kinds;
    for (const Place &place : every_row()) {
        names.insert(place.name());
        kinds.insert(place.row->kind);
    }
    EXPECT_EQ(kinds.size(), static_cast<size_t>(RowKind::slots) + 1);
    for (const char *name :
         {"vemra_am_signal.flags at level 1", "vemra_quota.max_qps at level 2",
          "vemra_quota.max_qps at level 3", "ibv_gid.guid at level 3", "ibv_gid.guid at level 4",
          "vemra_event_str_entry.entry_value at level 3", "test_entry.name at level 3"}) {
        EXPECT_TRUE(names.contains(name)) << name;
    }
}

TEST(EveryRow, SetsItsMemberAndItsCountAndNothingElse) {
    for (const Place &place : every_row()) {
        for (const Form form : every_form) {
            const BlockRead read(place, place.closed(place.full(7)) + "more", form);
            ASSERT_TRUE(read.holds_full(place, 7)) << place.name();
            ASSERT_TRUE(read.is_zero_beside(place)) << place.name();
            ASSERT_EQ(read.rest(), form == Form::tabbed ? "\tmore" : "more");
        }
    }
}

TEST(EveryRow, StandsAmongUnknownLinesAndBlocksThatAreSkipped) {
    for (const Place &place : every_row()) {
        const std::string unknown = place.indentation() + unknown_line + unknown_block(place);
        for (const Form form : every_form) {
            const BlockRead read(place, place.closed(unknown + place.full(7) + unknown), form);
            ASSERT_TRUE(read.holds_full(place, 7)) << place.name();
            ASSERT_TRUE(read.is_zero_beside(place)) << place.name();
            ASSERT_EQ(read.rest(), "");
        }
    }
}

TEST(EveryRow, IsReadFromATextThatEndsWithIt) {
    for (const Place &place : every_row()) {
        const std::string text = place.full(7);
        for (const Form form : every_form) {
            for (const std::string &cut : {text, text.substr(0, text.size() - 1)}) {
                const BlockRead read(place, cut, form);
                ASSERT_TRUE(read.holds_full(place, 7)) << place.name();
                ASSERT_EQ(read.rest(), "");
            }
        }
    }
}

TEST(EveryRow, WithABraceInItsLineIsReadOnTheFirstLineOnlyAndEndsTheBlockOnALaterOne) {
    for (const Place &place : every_row()) {
        if (!is_line(place)) {
            continue;
        }
        const std::string braced =
            place.row->is_number() ? place.says("7 }") : place.says("\"7 }\"");
        const std::string other = place.indentation() + unknown_line;
        for (const Form form : every_form) {
            const BlockRead first(place, place.closed(braced) + "more", form);
            ASSERT_TRUE(place.row->is_number() ? first.number(place) == 7
                        : place.row->kind == RowKind::text
                            ? first.text(place).starts_with("7 }")
                            : first.joined(place) == std::string("7 }"))
                << place.name();
            const BlockRead later(place, other + braced + "more", form);
            ASSERT_EQ(later.rest(), form == Form::tabbed ? "\tmore" : "more") << place.name();
            ASSERT_EQ(later.record(), std::string(place.table->size, '\0')) << place.name();
        }
    }
}

TEST(EveryBlock, EndsAtAnUnknownBlockOfOneLine) {
    for (const Block &block : every_block()) {
        for (const std::string &before : {std::string(), block.indentation() + unknown_line}) {
            for (const Form form : {Form::as_written, Form::traced}) {
                const BlockRead read(block, before + "zz { }\nmore", form);
                ASSERT_EQ(read.rest(), "more") << block.name();
            }
        }
    }
}

TEST(EveryBlock, TracesUnknownLinesUnderItsReader) {
    for (const Block &block : every_block()) {
        const std::string reader = std::string("_kvt_txt_unpack_msg_") + block.table->name;
        const std::string text =
            block.closed(block.inner("zz", unknown_line) + "  " + unknown_line);
        const auto trace_of = [&](const std::string &rest) {
            return LogLine{reader, 6, reader + " mismatch, txt_msg[" + rest.substr(0, 50) + "]\n"};
        };
        const BlockRead read(block, text, Form::traced);
        ASSERT_EQ(read.log(),
                  is_address(*block.table)
                      ? std::vector<LogLine>{}
                      : (std::vector<LogLine>{trace_of(text.substr(text.find("zz"))),
                                              trace_of(text.substr(text.rfind("zz")))}));
    }
}

TEST(EveryBlock, TracesNothingBelowLevelSix) {
    for (const Block &block : every_block()) {
        for (const Form form : {Form::as_written, Form::tabbed}) {
            const BlockRead read(block, block.closed(full_lines(block, 7) + unknown_line), form);
            ASSERT_TRUE(read.log().empty()) << block.name();
        }
    }
}

} // namespace
} // namespace kvt_test
