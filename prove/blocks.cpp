// Blocks of records, read by the codec and by the literal form: every short sequence of tokens,
// which are pieces of lines, lines or several lines. Records, positions and, where they are told,
// traces are the same.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "claim.h"
#include "engine/member.h"
#include "engine/release.h"
#include "heap.h"
#include "page_end.h"
#include "sequences_of.h"
#include "support/both_readers.h"
#include "support/log_capture.h"
#include "support/test_records.h"

using namespace kvt_prove;
using namespace kvt_str;
using namespace kvt_test;

namespace {

bool same_records(const Record &table, const void *a, const void *b, CountsOf counts);

bool same_elements(const Record &table, const char *a, const char *b, size_t count,
                   CountsOf counts) {
    for (size_t i = 0; i != count; ++i) {
        if (!same_records(table, a + i * table.size, b + i * table.size, counts)) {
            return false;
        }
    }
    return true;
}

/// Whether a row's member is the same in two records, of which `count` is the count. What hangs
/// from a pointer is compared to its end, whatever the count says; but where counts agree with the
/// elements, those beyond the count have been released.
bool same_members(const Row &row, const char *a, const char *b, uint64_t count, CountsOf counts) {
    if (row.is_pointer()) {
        const char *x;
        const char *y;
        std::memcpy(&x, a, sizeof x);
        std::memcpy(&y, b, sizeof y);
        const size_t size = block_size(x);
        if (size != block_size(y)) {
            return false;
        }
        if (row.kind == RowKind::run) {
            const size_t room = size / row.element->size;
            const bool all = counts == CountsOf::a_message || count > room;
            return same_elements(*row.element, x, y, all ? room : static_cast<size_t>(count),
                                 counts);
        }
        return size == 0 || std::memcmp(x, y, size) == 0;
    }
    if (row.opens_block()) {
        return same_elements(*row.element, a, b, row.capacity, counts);
    }
    return std::memcmp(a, b, row.size) == 0;
}

bool same_records(const Record &table, const void *a, const void *b, CountsOf counts) {
    return std::all_of(table.rows.begin(), table.rows.end(), [=](const Row &row) {
        const char *x = static_cast<const char *>(a) + row.offset;
        const char *y = static_cast<const char *>(b) + row.offset;
        // The length of a joined text and the count of slots have no row where they are not
        // written.
        const char *count_x = static_cast<const char *>(a) + row.count_offset;
        const char *count_y = static_cast<const char *>(b) + row.count_offset;
        const uint64_t count = row.counts_elements() ? load_count(row, a) : 0;
        return same_members(row, x, y, count, counts) &&
               std::memcmp(count_x, count_y, row.count_width) == 0;
    });
}

/// Reads a block in both ways and expects the same.
void expect_same_reading(const Record &table, const char *text, CountsOf counts) {
    begin_blocks_of(text);
    // Neither stands on the stack: a reader that keeps a pointer would find what it left.
    void *by_codec = std::calloc(1, table.size);
    void *literal = std::calloc(1, table.size);
    const char *stops_at = read_block(table, text, by_codec, counts);
    expect(read_block_literally(table, text, literal, counts) == stops_at,
           "a block is read as far as its literal reading goes", text);
    expect(same_records(table, by_codec, literal, counts),
           "a record is that of the literal reading", text);
    if (counts == CountsOf::a_sequence) {
        release_members(table, by_codec);
        release_members(table, literal);
        expect(blocks_alive() == 2, "a release frees all of a record, and that once", text);
    }
}

void expect_same_traces(const Record &table, const char *text) {
    begin_blocks_of(text);
    LogCapture capture;
    void *by_codec = std::calloc(1, table.size);
    void *literal = std::calloc(1, table.size);
    const char *stops_at = read_block(table, text, by_codec, CountsOf::a_message);
    const auto traces = capture.take();
    expect(read_block_literally(table, text, literal, CountsOf::a_message) == stops_at,
           "a block that is traced is read as far as its literal reading goes", text);
    expect(same_records(table, by_codec, literal, CountsOf::a_message),
           "a record that is traced is the literal one", text);
    expect(traces == capture.lines(), "the traces are those of the literal reading", text);
}

/// Tokens and the record whose lines they are.
struct Grammar {
    const Record &table;
    SequencesOf texts;
    SequencesOf traced_texts;
};

// --- The tokens ----------------------------------------------------------------------------------

/// Pieces of lines: keys of a number, a text and none, and all that can stand around a value.
constexpr std::string_view pieces[] = {"    number", "text", "job", ":", " ",  "\n",
                                       "{",          "}",    "7",   "-", "\"", "  }\n"};

/// A line of every row, in the writer's form where the row has one.
constexpr std::string_view rows[] = {"    byte: 255\n",
                                     "    word: 300\n",
                                     "    number_always: 3\n",
                                     "    number: 4294967295\n",
                                     "    large: 18446744073709551615\n",
                                     "    signed_number: -6\n",
                                     "    share_exact: 0.5\n",
                                     "    share: x\n",
                                     "    mode: 7\n",
                                     "    mode:\n",
                                     "    text: \"some text\"\n",
                                     "    hosts_len: 9\n",
                                     "    hosts: \"h\"\n",
                                     "    num_shorts: 1\n",
                                     "    shorts: 8\n",
                                     "    ids: 10\n",
                                     "    guids: 11\n",
                                     "    indexes: 12\n",
                                     "    reserved: 13\n",
                                     "    address {\n    }\n",
                                     "    entries {\n    }\n",
                                     "    slots {\n    }\n",
                                     "    unknown: 1\n",
                                     "    unknown {\n  }\n",
                                     "  }\n"};

/// Arrays and joined texts: elements in both forms, those that do not scan, three at once so that
/// arrays grow, counts, and what ends a run.
constexpr std::string_view arrays[] = {"    ids: 1\n",
                                       "    ids: 21\n    ids: 22\n    ids: 23\n",
                                       "  ids:3\n",
                                       "    ids: x\n",
                                       "    num_ids: 2\n",
                                       "    guids: 4\n",
                                       "    hosts: \"ab\"\n",
                                       "    hosts: \"\"\n",
                                       "    indexes: 255\n",
                                       "    reserved: 4\n",
                                       "x\n",
                                       "  }\n"};

/// Blocks, runs and slots, their lines, counts and ends.
constexpr std::string_view blocks[] = {"    entries {\n",
                                       "      id: 1\n",
                                       "      small: 2\n",
                                       "      name: \"n\"\n",
                                       "    }\n",
                                       "    entries_len: 1\n",
                                       "    address {\n",
                                       "      guid: x\n",
                                       "    slots {\n    }\n",
                                       "      tree_id: 3\n",
                                       "    num_slots: 9\n",
                                       "  }\n"};

/// Runs whose elements hold runs.
constexpr std::string_view runs[] = {"    groups {\n",
                                     "      entries {\n",
                                     "        small: 1\n",
                                     "      }\n",
                                     "    }\n",
                                     "      num_entries: 2\n",
                                     "    groups_num: 1\n",
                                     "    other_slots {\n    }\n",
                                     "    others_num: 3\n",
                                     "      num_entries: 0\n",
                                     "  }\n",
                                     "x {\n"};

constexpr Grammar of_pieces = {RecordOf<test_everything>::table, {pieces, 7}, {pieces, 5}};
constexpr Grammar of_rows = {RecordOf<test_everything>::table, {rows, 4}, {rows, 3}};
constexpr Grammar of_arrays = {RecordOf<test_everything>::table, {arrays, 6}, {arrays, 5}};
constexpr Grammar of_blocks = {RecordOf<test_everything>::table, {blocks, 7}, {blocks, 5}};
constexpr Grammar of_runs = {RecordOf<test_tree>::table, {runs, 7}, {runs, 5}};

const char *place_block(const SequencesOf &texts, uint64_t number) {
    static const PageEnd page;
    static std::string content;
    content = "  block {\n";
    texts.append(number, content);
    return page.place(content);
}

template <const Grammar &grammar> void blocks_are_read(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const char *text = place_block(grammar.texts, i);
        expect_same_reading(grammar.table, text, CountsOf::a_message);
        expect_same_reading(grammar.table, text, CountsOf::a_sequence);
    }
}

template <const Grammar &grammar> void blocks_are_traced(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        expect_same_traces(grammar.table, place_block(grammar.traced_texts, i));
    }
}

constexpr Claim claims[] = {
    {"blocks of up to 7 of 12 pieces of lines", of_pieces.texts.count(),
     blocks_are_read<of_pieces>},
    {"blocks of up to 4 of 25 lines, of every row", of_rows.texts.count(),
     blocks_are_read<of_rows>},
    {"blocks of up to 6 of 12 lines of arrays", of_arrays.texts.count(),
     blocks_are_read<of_arrays>},
    {"blocks of up to 7 of 12 lines of blocks", of_blocks.texts.count(),
     blocks_are_read<of_blocks>},
    {"blocks of up to 7 of 12 lines of runs in runs", of_runs.texts.count(),
     blocks_are_read<of_runs>},
    {"traces of up to 5 of 12 pieces of lines", of_pieces.traced_texts.count(),
     blocks_are_traced<of_pieces>},
    {"traces of up to 3 of 25 lines, of every row", of_rows.traced_texts.count(),
     blocks_are_traced<of_rows>},
    {"traces of up to 5 of 12 lines of arrays", of_arrays.traced_texts.count(),
     blocks_are_traced<of_arrays>},
    {"traces of up to 5 of 12 lines of blocks", of_blocks.traced_texts.count(),
     blocks_are_traced<of_blocks>},
    {"traces of up to 5 of 12 lines of runs in runs", of_runs.traced_texts.count(),
     blocks_are_traced<of_runs>},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
