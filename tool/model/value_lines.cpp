#include "model/value_lines.h"

#include <algorithm>

#include "engine/read_line.h"
#include "text/scanner.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// The steps are those of BlockReader and of the rows (engine/read_block.cpp, engine/read_row.h).
class LineWalk {
public:
    LineWalk(const WantedLine &wanted, const FoundLine &found) : wanted_(wanted), found_(found) {}

    /// From the first line in a block to the line after its closing line.
    const char *go_through_block(const Record &table, const char *at) {
        for (bool first = true;; first = false) {
            at = skip_blanks(at);
            if (*at == '\0') {
                return at;
            }
            const Line line = look_at_line(at);
            const auto row = std::ranges::find_if(
                table.rows, [&](const Row &known) { return has_key(known, at); });
            const bool is_known = row != table.rows.end() && (first || !line.closes);
            if (is_known) {
                at = go_through_row(*row, at);
            } else if (line.closes) {
                return line.next;
            } else {
                at = line.opens ? find_block_end(at) : line.next;
            }
        }
    }

private:
    const char *go_through_row(const Row &row, const char *at) {
        const bool goes_on = row.kind != RowKind::block && row.kind != RowKind::text &&
                             row.kind != RowKind::real && !row.is_number();
        uint64_t index = 0;
        do {
            at = row.opens_block() ? go_through_element(row, index, at) : take_line(row, index, at);
            at = skip_blanks(at);
        } while (goes_on && has_key(row, at));
        return at;
    }

    const char *go_through_element(const Row &row, uint64_t &index, const char *at) {
        if (row.kind == RowKind::slots && index == row.capacity) {
            return find_block_end(at);
        }
        const size_t length = path_.size();
        path_ += path_.empty() ? "" : ".";
        path_ += key_of(row);
        if (shape_of(row) == Shape::records) {
            path_ += "[" + std::to_string(index++) + "]";
        }
        at = go_through_block(*row.element, after_newline(at));
        path_.resize(length);
        return at;
    }

    const char *take_line(const Row &row, uint64_t &index, const char *at) {
        const char *next = after_newline(at);
        const bool is_list = shape_of(row) == Shape::numbers;
        if (wanted_(row, {at, static_cast<size_t>(next - at)})) {
            std::string path = path_;
            path += path.empty() ? "" : ".";
            path += key_of(row);
            path += is_list ? "[" + std::to_string(index) + "]" : "";
            found_(path, at);
        }
        uint64_t value = 0;
        index += is_list && (row.kind == RowKind::bytes || scan_value(row, at, value)) ? 1 : 0;
        return next;
    }

    const WantedLine &wanted_;
    const FoundLine &found_;
    std::string path_; ///< of the block
};

} // namespace

void each_value_line(const MessageKind &kind, const char *message, const WantedLine &wanted,
                     const FoundLine &found) {
    // The lines of the message and of its type, and the one that opens the record's block.
    const char *block = next_line(next_line(message));
    LineWalk(wanted, found).go_through_block(*kind.record, after_newline(block));
}

} // namespace kvt_tool
