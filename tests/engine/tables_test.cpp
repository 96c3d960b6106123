// What the engine relies on in every table and the compiler cannot see.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/release.h"
#include "message_kinds.h"
#include "support/tables.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// Calls `visit` for a table and for those of the records in it, with the level of its block.
template <typename Visit> void for_each_table(const Record &table, unsigned level, Visit visit) {
    visit(table, level);
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            for_each_table(*row.element, level + 1, visit);
        }
    }
}

template <typename Visit> void for_each_table(Visit visit) {
    for (const Record *table : all_tables()) {
        for_each_table(*table, message_level, visit);
    }
}

TEST(Tables, EveryLabelHasBlanksForTheDeepestLine) {
    for_each_table([](const Record &table, unsigned level) {
        EXPECT_LE(indent_of(level + 1), deepest_indent) << table.name;
    });
}

TEST(Tables, LabelsOfRowsStandBehindBlanks) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        for (const Row &row : table.rows) {
            EXPECT_EQ(std::string(row.label.text - deepest_indent, deepest_indent),
                      std::string(deepest_indent, ' '));
            const std::string label(row.label.text, row.label.length);
            const std::string key = label.substr(0, row.key_length);
            EXPECT_EQ(label, key + (row.opens_block() ? " {\n" : ": "));
        }
    });
}

// The elements of a run lie in memory that may hold anything: they must be cleared first.
TEST(Tables, ElementsOfRunsAreCleared) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        for (const Row &row : table.rows) {
            if (row.kind == RowKind::run) {
                EXPECT_EQ(row.element->reading, Reading::cleared_and_traced) << table.name;
            }
        }
    });
}

// A block that comes twice releases what the first one owned, by its counts: that is safe while
// nothing that is counted owns anything in turn.
TEST(Tables, ArraysOfNestedBlocksHoldNothingThatOwnsMemory) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        for (const Row &row : table.rows) {
            if (row.kind != RowKind::block && row.kind != RowKind::slots) {
                continue;
            }
            for (const Row &inner : row.element->rows) {
                if (inner.element != nullptr) {
                    EXPECT_FALSE(inner.element->has_pointers) << table.name;
                }
            }
        }
    });
}

bool has_owning_run(const Record &table) {
    return std::any_of(table.rows.begin(), table.rows.end(), [](const Row &row) {
        return row.kind == RowKind::run && owns_memory(*row.element);
    });
}

// The true lengths of runs whose counts lie are kept in the order of the elements that hold them:
// enough while those elements' own elements hold no such run.
TEST(Tables, RunsOfOwningElementsNestNoDeeperThanTwice) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        for (const Row &row : table.rows) {
            if (row.kind != RowKind::run) {
                continue;
            }
            for (const Row &inner : row.element->rows) {
                EXPECT_FALSE(inner.kind == RowKind::run && has_owning_run(*inner.element))
                    << table.name;
            }
        }
    });
}

// Entries of slots are cleared without a look at what they own.
TEST(Tables, SlotsOwnNothing) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        for (const Row &row : table.rows) {
            EXPECT_FALSE(row.kind == RowKind::slots && row.element->has_pointers) << table.name;
        }
    });
}

// Records that are not cleared before they are read must own nothing either.
TEST(Tables, RecordsThatAreNotClearedOwnNothing) {
    for_each_table([](const Record &table, unsigned /*level*/) {
        EXPECT_FALSE(table.reading == Reading::merged_and_untraced && table.has_pointers)
            << table.name;
    });
}

} // namespace
} // namespace kvt_test
