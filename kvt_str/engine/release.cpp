#include "engine/release.h"

#include <cstdlib>

#include "engine/member.h"

namespace kvt_str {

bool owns_memory(const Record &table) {
    for (const Row &row : table.rows) {
        if (row.is_pointer() || (row.element != nullptr && owns_memory(*row.element))) {
            return true;
        }
    }
    return false;
}

void release_elements(const Record &element, void *elements, uint64_t first, uint64_t end,
                      LyingCounts::Cursor *lying) {
    // Elements that own nothing are not walked: a count of them that is too large does no harm.
    if (elements == nullptr || !owns_memory(element)) {
        return;
    }
    for (uint64_t i = first; i < end; ++i) {
        release_members(element, static_cast<char *>(elements) + i * element.size, lying);
    }
}

void release_members(const Record &table, void *record, LyingCounts::Cursor *lying) {
    for (const Row &row : table.rows) {
        char *member = member_of(row, record);
        if (row.kind == RowKind::run) {
            void *elements = load<void *>(member);
            const uint64_t count = load_count(row, record);
            release_elements(*row.element, elements, 0,
                             lying != nullptr ? lying->elements_of(elements, count) : count, lying);
        } else if (row.opens_block()) {
            release_elements(*row.element, member, 0, row.capacity, lying);
        }
        if (row.is_pointer()) {
            std::free(load<void *>(member));
        }
    }
}

void release_array(const Row &row, void *array, TrueCount count, const LyingCounts &lying_counts) {
    if (row.kind == RowKind::run) {
        LyingCounts::Cursor lying(lying_counts, count.first_lie);
        release_elements(*row.element, array, 0, count.elements, &lying);
    }
    std::free(array);
}

} // namespace kvt_str
