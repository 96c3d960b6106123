#include "engine/settle_counts.h"

#include <cstdlib>

#include "engine/member.h"
#include "engine/release.h"

namespace kvt_str {

namespace {

void make_count_agree(const Row &row, void *record, uint64_t elements) {
    char *member = member_of(row, record);
    const uint64_t count = load_count(row, record);
    if (count > elements) {
        store_count(row, record, elements);
    } else if (count < elements) {
        if (row.kind == RowKind::run) {
            release_elements(*row.element, load<void *>(member), count, elements);
        }
        if (count == 0) {
            std::free(load<void *>(member));
            store<void *>(member, nullptr);
        }
    }
}

void remember_count(const Row &row, Input &input, void *record, uint64_t elements) {
    if (load_count(row, record) != elements && elements != 0 && owns_memory(*row.element) &&
        !input.lying_counts.remember(load<void *>(member_of(row, record)), elements)) {
        // Without memory for the truth the count itself must tell it. Nothing is released: the
        // counts of the elements may lie, too.
        store_count(row, record, elements);
    }
}

} // namespace

void settle_counts(BlockReader &block) {
    for (const Row &row : block.codec.rows) {
        const uint64_t elements = block.progress.true_counts.of(row).elements;
        if (block.input.counts == Counts::agree && row.counts_elements()) {
            make_count_agree(row, block.record, elements);
        } else if (row.kind == RowKind::run && block.level > message_level) {
            remember_count(row, block.input, block.record, elements);
        }
    }
}

} // namespace kvt_str
