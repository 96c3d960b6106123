#include "tables_of_texts.h"

#include <cstring>

#include "message_kinds.h"
#include "read_message.h"
#include "support/test_records.h"
#include "text/scanner.h"

namespace kvt_fuzz {

using namespace kvt_str;

const Record *find_table(const char *text) {
    if (!begins_message(text)) {
        return nullptr;
    }
    char name[type_name_capacity];
    scan_type_name(next_line(text), name);
    for (const Record *table : {&RecordOf<test_everything>::table, &RecordOf<test_tree>::table}) {
        if (std::strcmp(name, table->name) == 0) {
            return table;
        }
    }
    const MessageKind *kind = find_kind(name);
    return kind != nullptr ? kind->record : nullptr;
}

} // namespace kvt_fuzz
