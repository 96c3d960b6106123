#include "support/tables.h"

#include "message_table.h"
#include "support/test_records.h"

namespace kvt_test {

std::vector<const kvt_str::Record *> all_tables() {
    using kvt_str::RecordOf;
    std::vector<const kvt_str::Record *> tables = {
        &RecordOf<test_everything>::table,
        &RecordOf<test_tree>::table,
        &RecordOf<test_address>::table,
    };
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            tables.push_back(kind.record);
        }
    }
    return tables;
}

} // namespace kvt_test
