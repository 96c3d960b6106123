// Prints the tables of docs/format.md: every kind of message, every block, every key.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "message_table.h"

namespace {

using namespace kvt_str;

std::string key_of(const Row &row) {
    return {row.label.text, row.key_length};
}

/// The key of the row that holds the count or length of another.
std::string count_key(const Record &table, const Row &row) {
    for (const Row &other : table.rows) {
        if (other.is_number() && other.offset == row.count_offset) {
            return "`" + key_of(other) + "`";
        }
    }
    return "";
}

/// The heading of a nested record: its C name.
std::string link_to(const Record &record) {
    return std::string("[`") + record.name + "`](#" + record.name + ")";
}

std::string bits(unsigned bytes) {
    return std::to_string(8 * bytes) + " bits";
}

/// What stands behind the key.
std::string type_of(const Record &table, const Row &row) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
        return "number, " + bits(row.size);
    case RowKind::signed32:
        return "number with sign, 32 bits";
    case RowKind::real:
        return "decimal number";
    case RowKind::text:
        return "text, at most " + std::to_string(row.capacity - 1) + " characters";
    case RowKind::joined_text:
        return "texts, joined with commas; length in " + count_key(table, row);
    case RowKind::array16:
        return "numbers, 16 bits; count in " + count_key(table, row);
    case RowKind::array32:
        return "numbers, 32 bits; count in " + count_key(table, row);
    case RowKind::array64:
        return "numbers, 64 bits; count in " + count_key(table, row);
    case RowKind::bytes:
        return "at most " + std::to_string(row.capacity) + " number" +
               (row.capacity == 1 ? "" : "s") + ", 8 bits; " + std::to_string(row.terminator) +
               " ends them";
    case RowKind::block:
        return "block " + link_to(*row.element);
    case RowKind::run:
        return "blocks " + link_to(*row.element) + "; count in " + count_key(table, row);
    case RowKind::slots:
        return "at most " + std::to_string(row.capacity) + " blocks " + link_to(*row.element) +
               "; count in " + count_key(table, row);
    }
    return "";
}

/// When the writer writes it.
const char *written(const Row &row) {
    switch (row.kind) {
    case RowKind::text:
    case RowKind::joined_text:
        return "if not empty";
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
    case RowKind::bytes:
        return "one line each";
    case RowKind::block:
        return "always";
    case RowKind::run:
    case RowKind::slots:
        return "one block each";
    default:
        return row.has(always) ? "always" : "if not 0";
    }
}

void print_table(const Record &table) {
    std::printf("\n| Key | Value | Written |\n|---|---|---|\n");
    for (const Row &row : table.rows) {
        std::printf("| `%s` | %s | %s |\n", key_of(row).c_str(), type_of(table, row).c_str(),
                    written(row));
    }
}

void collect_nested(const Record &table, std::vector<const Record *> &nested) {
    for (const Row &row : table.rows) {
        bool known = row.element == nullptr;
        for (const Record *record : nested) {
            known = known || record == row.element;
        }
        if (!known) {
            nested.push_back(row.element);
            collect_nested(*row.element, nested);
        }
    }
}

} // namespace

int main() {
    std::vector<const Record *> nested;
    std::printf("### Messages\n");
    for (const MessageKind &kind : message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        std::printf("\n#### %s\n\nKind %u, block `%s`, record `%s`.\n", kind.name, kind.value,
                    kind.block, kind.record->name);
        print_table(*kind.record);
        collect_nested(*kind.record, nested);
    }
    std::printf("\n### Blocks within messages\n\n"
                "The name of a block is the key in the table that leads here.\n");
    for (const Record *record : nested) {
        std::printf("\n#### %s\n", record->name);
        print_table(*record);
    }
    return 0;
}
