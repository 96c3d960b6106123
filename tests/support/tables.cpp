#include "support/tables.h"
#include "support/codecs.h"

#include <gtest/gtest.h>

#include <memory>

#include "message_kinds.h"
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

std::string write_block(const kvt_str::Codec &codec, const void *record, unsigned level) {
    const std::string opening = std::string(2 * level, ' ') + "some_block {\n";
    const size_t size = opening.size() + codec.measure(record, level);
    const std::unique_ptr<char[]> text(new char[size + 1]);
    opening.copy(text.get(), opening.size());
    const char *end = codec.pack(record, level, text.get() + opening.size());
    EXPECT_EQ(end, text.get() + size) << codec.name;
    return {static_cast<const char *>(text.get()), end};
}

std::string write_block(const kvt_str::Record &table, const void *record, unsigned level) {
    return write_block(codec_of(table), record, level);
}

} // namespace kvt_test
