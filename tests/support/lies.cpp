#include "support/lies.h"

#include <iterator>
#include <vector>

#include "message_kinds.h"
#include "read_message.h"
#include "text/scanner.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

/// More elements than any list has room for at first, what the reader keeps for itself among them.
constexpr size_t many = 33;

/// More elements than an array has room for at first.
constexpr size_t few = 6;

constexpr char envelope[] = "msg";

bool has_key(const Row &row, const char *line) {
    return begins_with(line, row.label.text, row.key_length);
}

/// The record that the block of a line holds; null when the table has no such block.
const Record *find_element(const Record &table, const char *line) {
    for (const Row &row : table.rows) {
        if (has_key(row, line)) {
            return row.element;
        }
    }
    return nullptr;
}

/// The table of a message by its type line; null for any other line.
const Record *find_table_on(const char *line) {
    char name[type_name_capacity];
    scan_type_name(line, name);
    const MessageKind *kind = name[0] != '\0' ? find_kind(name) : nullptr;
    return kind != nullptr ? kind->record : nullptr;
}

/// Writes the lines of a text again, and lies between them.
class Liar {
public:
    Liar(const Record &table, Random &random)
        : table_(&table), random_(random), honesty_(below(random, 2) * below(random, 4)) {}

    std::string tell(const std::string &text) {
        for (size_t at = 0; at < text.size();) {
            const size_t newline = text.find('\n', at);
            const size_t end = newline == std::string::npos ? text.size() : newline + 1;
            take(text.substr(at, end - at));
            at = end;
        }
        return out_;
    }

private:
    void take(const std::string &line) {
        const size_t blanks = line.find_first_not_of(' ');
        const char *key = line.c_str() + (blanks != std::string::npos ? blanks : line.size());
        const bool closes = line.find('}') != std::string::npos;
        if (closes && !blocks_.empty()) {
            close(line);
            return;
        }
        if (!closes && line.find('{') != std::string::npos) {
            open(key);
        } else if (const Record *table = find_table_on(key); table != nullptr) {
            table_ = table;
        }
        out_ += line;
    }

    void open(const char *key) {
        const Record *table = nullptr;
        if (depth_ != 0) {
            const Record *outer = blocks_.back();
            table = outer != nullptr ? find_element(*outer, key) : nullptr;
        } else if (!begins_with(key, envelope, sizeof envelope - 1)) {
            table = table_;
        }
        depth_ += table != nullptr || depth_ != 0 ? 1 : 0;
        blocks_.push_back(table);
    }

    void close(const std::string &line) {
        const Record *table = blocks_.back();
        if (table != nullptr && lies()) {
            lie_in(*table);
        }
        blocks_.pop_back();
        depth_ -= depth_ != 0 ? 1 : 0;
        out_ += line;
    }

    void lie_in(const Record &table) {
        if (below(random_, depth_ == 1 ? 2 : 4) == 0) {
            add_runs(table, depth_ == 1 ? many : few);
        }
        add_counts(table);
        if (below(random_, 8) == 0) {
            add_runs(table, few);
        }
    }

    bool lies() { return below(random_, 1 + honesty_) == 0; }

    /// Lines of no run end the run before them, whose key a count's may begin with.
    void end_run() { add_line("x: 1"); }

    void add_counts(const Record &table) {
        for (const Row &row : table.rows) {
            for (const Row &count : table.rows) {
                if ((row.counts_elements() || row.kind == RowKind::slots) && count.is_number() &&
                    count.offset == row.count_offset && lies()) {
                    end_run();
                    add_line(std::string(count.label.text, count.key_length) + ": " +
                             random_count());
                }
            }
        }
    }

    /// Adds a run of up to `most` elements for some rows. It replaces the run that was there.
    void add_runs(const Record &table, size_t most) {
        for (const Row &row : table.rows) {
            if (!row.is_pointer() || !lies()) {
                continue;
            }
            end_run();
            const size_t limit = row.opens_block() ? most : few;
            for (size_t elements = 1 + below(random_, limit); elements != 0; --elements) {
                add_element(row);
            }
        }
    }

    void add_element(const Row &row) {
        const std::string key(row.label.text, row.key_length);
        if (!row.opens_block()) {
            add_line(key + (row.is_array() ? ": 7" : ": \"a\""));
            return;
        }
        add_line(key + " {");
        blocks_.push_back(row.element);
        if (lies()) {
            add_runs(*row.element, 1 + below(random_, 2));
            add_counts(*row.element);
        }
        blocks_.pop_back();
        add_line("}");
    }

    std::string random_count() {
        static constexpr const char *counts[] = {"0", "1", "2", "5", "6", "1000", "4294967295"};
        return counts[below(random_, std::size(counts))];
    }

    void add_line(const std::string &line) {
        out_ += std::string(2 * blocks_.size(), ' ') + line + "\n";
    }

    const Record *table_;
    Random &random_;
    uint64_t honesty_; ///< 0 when everything lies that can
    /// The tables of the open blocks; null where that is not known, as for an envelope.
    std::vector<const Record *> blocks_;
    size_t depth_ = 0; ///< of the blocks, those of a record alone
    std::string out_;
};

} // namespace

std::string lie(const std::string &text, const Record &table, Random &random) {
    return Liar(table, random).tell(text);
}

} // namespace kvt_test
