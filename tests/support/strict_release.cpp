#include "support/strict_release.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include "engine/element_size.h"
#include "engine/member.h"
#include "message_kinds.h"

extern "C" void __real_kvt_msg_release(int32_t msg_type, void *msg);

namespace kvt_test {

namespace {

using namespace kvt_str;

bool strict = false;
size_t records = 0;

void check(const Record &table, void *record) {
    for (const Row &row : table.rows) {
        char *member = member_of(row, record);
        if (row.counts_elements()) {
            char *elements = load<char *>(member);
            const uint64_t count = load_count(row, record);
            ASSERT_EQ(elements == nullptr, count == 0) << table.name << " " << row.label.text;
            ASSERT_LE(count * element_size(row), malloc_usable_size(elements)) << table.name;
            for (uint64_t i = 0; row.kind == RowKind::run && i < count; ++i) {
                check(*row.element, elements + i * row.element->size);
            }
        } else if (row.kind == RowKind::block) {
            check(*row.element, member);
        }
    }
}

} // namespace

StrictRelease::StrictRelease() {
    strict = true;
    records = 0;
}

StrictRelease::~StrictRelease() {
    strict = false;
}

size_t StrictRelease::released() const {
    return records;
}

} // namespace kvt_test

extern "C" void __wrap_kvt_msg_release(int32_t msg_type, void *msg) {
    if (kvt_test::strict) {
        ++kvt_test::records;
        kvt_test::check(*kvt_str::find_kind(msg_type)->record, msg);
    }
    __real_kvt_msg_release(msg_type, msg);
}
