#include "model/reads_back.h"

#include <algorithm>

#include "engine/text_limits.h"
#include "model/fields.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

bool looks_like_lines(std::string_view text) {
    return text.find_first_of("\n{}") != std::string_view::npos;
}

/// Some record of this table may not be read back. Most elements of large messages hold numbers.
bool may_differ(const Record &table) {
    return std::ranges::any_of(table.rows, [](const Row &row) {
        return shape_of(row) == Shape::text || row.kind == RowKind::slots ||
               (row.element != nullptr && may_differ(*row.element));
    });
}

bool text_reads_back(const Row &row, const void *record) {
    const std::string_view text = text_of(row, record);
    const bool is_whole =
        row.kind != RowKind::joined_text || text.empty() ||
        (text.size() <= longest_joined_value && load_count(row, record) == text.size() + 1);
    return is_whole && !looks_like_lines(text);
}

bool elements_read_back(const Row &row, const void *record) {
    if (row.kind == RowKind::slots && load_count(row, record) > row.capacity) {
        return false;
    }
    const Elements elements = elements_of(row, record);
    for (uint64_t i = 0; may_differ(*row.element) && i < elements.count; ++i) {
        if (!reads_back(*row.element, elements.at(i))) {
            return false;
        }
    }
    return true;
}

} // namespace

bool reads_back(const Record &table, const void *record) {
    return std::ranges::all_of(table.rows, [&](const Row &row) {
        return row.element != nullptr         ? elements_read_back(row, record)
               : shape_of(row) == Shape::text ? text_reads_back(row, record)
                                              : true;
    });
}

void drop_texts_that_look_like_lines(const Record &table, void *record) {
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            const Elements elements = elements_of(row, record);
            for (uint64_t i = 0; i < elements.count; ++i) {
                drop_texts_that_look_like_lines(*row.element, const_cast<char *>(elements.at(i)));
            }
        } else if (shape_of(row) == Shape::text && looks_like_lines(text_of(row, record))) {
            *const_cast<char *>(text_of(row, record).data()) = '\0';
            if (row.kind == RowKind::joined_text) {
                store_count(row, record, 0);
            }
        }
    }
}

} // namespace kvt_tool
