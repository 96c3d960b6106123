// Prints the tables of docs/format.md: every kind of message, every block, every key.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "message_kinds.h"
#include "model/describe.h"
#include "model/fields.h"

namespace {

using namespace kvt_str;

/// A record is named by a link to its table, whose heading is its C name.
constexpr kvt_tool::Notation markdown = {
    [](std::string_view key) { return "`" + std::string(key) + "`"; },
    [](const Record &record) {
        return std::string("[`") + record.name + "`](#" + record.name + ")";
    }};

void print_table(const Record &table) {
    std::printf("\n| Key | Value | Written |\n|---|---|---|\n");
    for (const Row &row : table.rows) {
        std::printf("| %s | %s | %s |\n", markdown.key(kvt_tool::key_of(row)).c_str(),
                    kvt_tool::type_of(table, row, markdown).c_str(), kvt_tool::written(row));
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
