#include "support/random_records.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "engine/element_size.h"
#include "engine/member.h"
#include "engine/release.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

uint64_t random_number(Random &random, unsigned width) {
    const uint64_t mask = width == 8 ? UINT64_MAX : (uint64_t{1} << (8 * width)) - 1;
    switch (below(random, 6)) {
    case 0:
        return 0;
    case 1:
        return mask - below(random, 2);
    case 2:
        return below(random, 20);
    case 3:
        return uint64_t{1} << below(random, 8 * width);
    default:
        return (random() >> below(random, 64)) & mask;
    }
}

std::string random_text(Random &random, size_t longest) {
    static constexpr char characters[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 .,:-_/\xC3\xA9";
    std::string text(below(random, longest + 1), ' ');
    for (char &c : text) {
        c = characters[below(random, sizeof characters - 1)];
    }
    return text;
}

size_t random_count(Random &random) {
    static constexpr size_t counts[] = {0, 0, 1, 2, 4, 5, 6, 10, 11};
    return counts[below(random, std::size(counts))];
}

char *allocate(size_t count, size_t size) {
    return static_cast<char *>(std::calloc(count, size));
}

void fill_row(const Row &row, void *record, Random &random) {
    char *member = member_of(row, record);
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
    case RowKind::signed32:
        store_number(member, row.size, random_number(random, row.size));
        break;
    case RowKind::real: {
        static constexpr float values[] = {0, 12.5F, 100, 0.001F, 1e-5F, 1e6F, -3.25F, 99.9999F};
        store(member, values[below(random, std::size(values))]);
        break;
    }
    case RowKind::text: {
        const std::string text = random_text(random, row.capacity - size_t{1});
        std::memcpy(member, text.c_str(), text.size() + 1);
        break;
    }
    case RowKind::joined_text: {
        const std::string text = random_text(random, 298);
        if (!text.empty()) {
            char *copy = allocate(text.size() + 1, 1);
            std::memcpy(copy, text.c_str(), text.size() + 1);
            store(member, copy);
        }
        store_count(row, record, text.empty() ? 0 : text.size() + 1);
        break;
    }
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64: {
        const unsigned width = element_size(row);
        const size_t count = random_count(random);
        char *elements = count != 0 ? allocate(count, width) : nullptr;
        for (size_t i = 0; i < count; ++i) {
            store_number(elements + i * width, width, random_number(random, width));
        }
        store(member, elements);
        store_count(row, record, count);
        break;
    }
    case RowKind::bytes: {
        const uint64_t used = below(random, row.capacity + 1U);
        for (unsigned i = 0; i < row.capacity; ++i) {
            const auto byte = static_cast<uint8_t>(1 + below(random, 254));
            store(member + i, i < used ? byte : row.terminator);
        }
        break;
    }
    case RowKind::block:
        fill_randomly(*row.element, member, random);
        break;
    case RowKind::run: {
        const size_t count = random_count(random);
        char *elements = count != 0 ? allocate(count, row.element->size) : nullptr;
        for (size_t i = 0; i < count; ++i) {
            fill_randomly(*row.element, elements + i * row.element->size, random);
        }
        store(member, elements);
        store_count(row, record, count);
        break;
    }
    case RowKind::slots: {
        const uint64_t count = below(random, row.capacity + 1U);
        for (uint64_t i = 0; i < count; ++i) {
            fill_randomly(*row.element, member + i * row.element->size, random);
        }
        store_count(row, record, count);
        break;
    }
    }
}

std::string difference_of_elements(const Row &row, const char *a, const char *b, uint64_t count) {
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t offset = i * row.element->size;
        const std::string within = first_difference(*row.element, a + offset, b + offset);
        if (!within.empty()) {
            return "[" + std::to_string(i) + "]." + within;
        }
    }
    return {};
}

bool same_string(const char *a, const char *b) {
    return a == nullptr || b == nullptr ? a == b : std::strcmp(a, b) == 0;
}

bool same_bytes(const Row &row, const char *a, const char *b) {
    for (unsigned i = 0; i < row.capacity; ++i) {
        const auto x = static_cast<uint8_t>(a[i]);
        const auto y = static_cast<uint8_t>(b[i]);
        if (x == row.terminator && (y == row.terminator || y == 0)) {
            return true;
        }
        if (x != y) {
            return false;
        }
    }
    return true;
}

std::string difference_of_rows(const Row &row, const void *record_a, const void *record_b) {
    const char *a = member_of(row, record_a);
    const char *b = member_of(row, record_b);
    const auto verdict = [](bool same) {
        return std::string(same ? "" : " ");
    };
    const auto same_counts = [&] {
        return load_count(row, record_a) == load_count(row, record_b);
    };
    switch (row.kind) {
    case RowKind::text:
        return verdict(std::strncmp(a, b, row.capacity) == 0);
    case RowKind::joined_text:
        return verdict(same_string(load<char *>(a), load<char *>(b)) && same_counts());
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64: {
        const char *x = load<const char *>(a);
        const char *y = load<const char *>(b);
        const uint64_t count = load_count(row, record_a);
        return verdict((x == nullptr) == (y == nullptr) && same_counts() &&
                       (x == nullptr || std::memcmp(x, y, count * element_size(row)) == 0));
    }
    case RowKind::bytes:
        return verdict(same_bytes(row, a, b));
    case RowKind::block:
        return difference_of_elements(row, a, b, 1);
    case RowKind::run: {
        const char *x = load<const char *>(a);
        const char *y = load<const char *>(b);
        if ((x == nullptr) != (y == nullptr) || !same_counts()) {
            return " ";
        }
        return x == nullptr ? "" : difference_of_elements(row, x, y, load_count(row, record_a));
    }
    case RowKind::slots:
        return same_counts()
                   ? difference_of_elements(
                         row, a, b, std::min<uint64_t>(load_count(row, record_a), row.capacity))
                   : " ";
    default:
        return verdict(std::memcmp(a, b, row.size) == 0);
    }
}

} // namespace

OwnedRecord::OwnedRecord(const Record &table) : table_(table), record_(allocate(1, table.size)) {}

OwnedRecord::~OwnedRecord() {
    release_members(table_, record_);
    std::free(record_);
}

void fill_randomly(const Record &table, void *record, Random &random) {
    for (const Row &row : table.rows) {
        // A count belongs to the row that it counts, which comes after it.
        fill_row(row, record, random);
    }
}

std::string first_difference(const Record &table, const void *a, const void *b) {
    for (const Row &row : table.rows) {
        const std::string difference = difference_of_rows(row, a, b);
        if (!difference.empty()) {
            return std::string(row.label.text, row.key_length) + difference;
        }
    }
    return {};
}

} // namespace kvt_test
