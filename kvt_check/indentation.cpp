#include "indentation.h"

namespace kvt_checking {

using namespace kvt_str;

bool knows(const Record &table, std::string_view key) {
    for (const Row &row : table.rows) {
        if (std::string_view(row.label.text, row.key_length) == key) {
            return true;
        }
    }
    return false;
}

void Indentation::see_brace(const Place &brace, const Frame &frame) {
    const size_t indent = indent_of(brace);
    const size_t opening = indent_of(frame.opening);
    if (indent < opening && !has_missing_ && !is_settled_) {
        has_missing_ = true;
        missing_ = {frame.opening, frame.name, brace.line};
    } else if (indent > opening && !has_extra_) {
        has_extra_ = true;
        extra_ = brace;
    }
}

Indentation::Missing Indentation::missing(const Frame &frame, size_t before) const {
    const bool is_below = has_missing_ && missing_.opening.at >= frame.opening.at;
    return is_below ? missing_ : Missing{frame.opening, frame.name, before};
}

Place Indentation::take_extra(const Place &brace) {
    const Place extra = has_extra_ ? extra_ : brace;
    has_extra_ = false;
    return extra;
}

bool is_of_block_around(const Place &at, std::string_view word, const Frame &frame) {
    const size_t opening = indent_of(frame.opening);
    if (frame.around == nullptr || indent_of(at) > opening ||
        opening <= indent_of(frame.around->opening)) {
        return false;
    }
    for (const Frame *around = frame.around; around != nullptr; around = around->around) {
        if (knows(around->table, word)) {
            return true;
        }
    }
    return false;
}

bool is_still_of_block(const Place &at, std::string_view word, const Frame &frame) {
    if (frame.around == nullptr) {
        return knows(frame.table, word);
    }
    return indent_of(at) > indent_of(frame.opening) && knows(frame.table, word) &&
           !knows(frame.around->table, word);
}

} // namespace kvt_checking
