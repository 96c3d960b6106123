// Lines may stand in any order: a record is the same from its text with its lines, blocks and runs
// the other way round.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/codecs.h"
#include "support/exact_copy.h"
#include "support/literal_codec.h"
#include "support/random_records.h"
#include "support/tables.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// The key of a line, without its indentation.
std::string key_of_line(const std::string &line) {
    const size_t start = line.find_first_not_of(' ');
    return line.substr(start, line.find_first_of(": ", start) - start);
}

/// The lines of a block as the parts that must stay together: a line, a block, or a run of either.
std::vector<std::string> parts_of(const std::vector<std::string> &lines) {
    std::vector<std::string> parts;
    std::string last_key;
    int depth = 0;
    for (const std::string &line : lines) {
        const bool starts = depth == 0;
        if (starts && (parts.empty() || key_of_line(line) != last_key)) {
            parts.emplace_back();
        }
        if (starts) {
            last_key = key_of_line(line);
        }
        parts.back() += line;
        depth += line.ends_with(" {\n") ? 1 : line.ends_with("}\n") ? -1 : 0;
    }
    return parts;
}

/// A block's text with its parts the other way round. Between them stands a line that no record
/// knows, since a longer key directly after a run would be taken for one more element of it.
std::string reversed(const std::string &block) {
    std::vector<std::string> lines;
    for (size_t start = 0; start < block.size();) {
        const size_t end = block.find('\n', start) + 1;
        lines.push_back(block.substr(start, end - start));
        start = end;
    }
    const std::string opening = lines.front();
    const std::string closing = lines.back();
    std::vector<std::string> parts = parts_of({lines.begin() + 1, lines.end() - 1});
    std::reverse(parts.begin(), parts.end());
    std::string text = opening;
    for (const std::string &part : parts) {
        text += part + "  zz: 0\n";
    }
    return text + closing;
}

TEST(LineOrder, RandomRecordsAreTheSameFromTheirLinesTheOtherWayRound) {
    Random random(10);
    for (const Record *table : all_tables()) {
        for (int i = 0; i < 50; ++i) {
            OwnedRecord record(*table);
            fill_randomly(*table, record.get(), random);
            const std::string text = reversed(literal_write(*table, record.get(), "some_block", 1));
            const auto copy = exact_copy(text);
            OwnedRecord again(*table);
            Input input{Text(copy.get()), Counts::as_read};
            codec_of(*table).unpack(input, kvt_str::after_newline(copy.get()), again.get(), 1);
            ASSERT_EQ(first_difference(*table, record.get(), again.get()), "") << text;
        }
    }
}

} // namespace
} // namespace kvt_test
