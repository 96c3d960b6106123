#include "support/rich_messages.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "engine/element_size.h"
#include "engine/member.h"
#include "support/messages.h"
#include "support/random_records.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

/// Fills records with values that it counts up.
class RichFiller {
public:
    explicit RichFiller(unsigned elements) : elements_(elements) {}

    void fill(const Record &table, void *record) {
        for (const Row &row : table.rows) {
            // A count belongs to the row that it counts, which comes after it.
            fill_row(row, record);
        }
    }

private:
    /// In turn a small number, and one with as many digits as the width allows.
    uint64_t number(unsigned width) {
        const uint64_t next = ++numbers_;
        const uint64_t largest = width == 8 ? UINT64_MAX : (uint64_t{1} << (8 * width)) - 1;
        return next % 2 != 0 ? 1 + next % 100 : largest - next % 50;
    }

    std::string text() { return "text " + std::to_string(++texts_); }

    static char *allocate(size_t count, size_t size) {
        return static_cast<char *>(std::calloc(count, size));
    }

    void fill_numbers(const Row &row, void *record) {
        const unsigned width = element_size(row);
        char *array = allocate(elements_, width);
        for (unsigned i = 0; i < elements_; ++i) {
            store_number(array + size_t{i} * width, width, number(width));
        }
        store(member_of(row, record), array);
        store_count(row, record, elements_);
    }

    void fill_row(const Row &row, void *record);

    unsigned elements_;
    uint64_t numbers_ = 0;
    uint64_t texts_ = 0;
};

void RichFiller::fill_row(const Row &row, void *record) {
    char *member = member_of(row, record);
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        store_number(member, row.size, number(row.size));
        break;
    case RowKind::real:
        store(member, 12.5F);
        break;
    case RowKind::text: {
        const std::string value = text();
        std::memcpy(member, value.c_str(), value.size() + 1);
        break;
    }
    case RowKind::joined_text: {
        const std::string value = text();
        char *copy = allocate(value.size() + 1, 1);
        std::memcpy(copy, value.c_str(), value.size() + 1);
        store(member, copy);
        store_count(row, record, value.size() + 1);
        break;
    }
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
        fill_numbers(row, record);
        break;
    case RowKind::bytes:
        for (unsigned i = 0; i < row.capacity; ++i) {
            const bool used = i < elements_;
            store(member + i, used ? static_cast<uint8_t>(1 + number(8) % 254) : row.terminator);
        }
        break;
    case RowKind::block:
        fill(*row.element, member);
        break;
    case RowKind::run: {
        char *array = allocate(elements_, row.element->size);
        for (unsigned i = 0; i < elements_; ++i) {
            fill(*row.element, array + size_t{i} * row.element->size);
        }
        store(member, array);
        store_count(row, record, elements_);
        break;
    }
    case RowKind::slots: {
        const unsigned used = std::min<unsigned>(elements_, row.capacity);
        for (unsigned i = 0; i < used; ++i) {
            fill(*row.element, member + size_t{i} * row.element->size);
        }
        store_count(row, record, used);
        break;
    }
    }
}

} // namespace

std::vector<const MessageKind *> kinds_with_record() {
    std::vector<const MessageKind *> kinds;
    for (const MessageKind &kind : message_kinds()) {
        if (kind.record != nullptr) {
            kinds.push_back(&kind);
        }
    }
    return kinds;
}

void fill_richly(const Record &table, void *record, unsigned elements) {
    RichFiller(elements).fill(table, record);
}

std::string rich_text(const MessageKind &kind, unsigned elements) {
    OwnedRecord record(*kind.record);
    fill_richly(*kind.record, record.get(), elements);
    return text_of_record(value_of(kind), record.get());
}

bool is_count_line(const Record &table, const std::string &line) {
    const size_t start = std::min(line.find_first_not_of(' '), line.size());
    for (const Row &row : table.rows) {
        const bool counted = row.counts_elements() || row.kind == RowKind::joined_text;
        for (const Row &other : table.rows) {
            const std::string key(other.label.text, other.key_length);
            if (counted && other.is_number() && other.offset == row.count_offset &&
                line.compare(start, key.size() + 1, key + ":") == 0) {
                return true;
            }
        }
        if (row.element != nullptr && is_count_line(*row.element, line)) {
            return true;
        }
    }
    return false;
}

} // namespace kvt_test
