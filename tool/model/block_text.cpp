#include "model/block_text.h"

namespace kvt_tool {

namespace {

class BlockText {
public:
    explicit BlockText(GuidForm guids) : guids_(guids) {}

    void add_block(const Record &table, const void *record, size_t level) {
        text_ += "{\n";
        for (const Row &row : table.rows) {
            add_row(row, record, level + 1);
        }
        text_.append(2 * level, ' ') += '}';
    }

    const std::string &text() const { return text_; }

private:
    /// Up to the value.
    void begin_line(const Row &row, size_t level) {
        text_.append(2 * level, ' ').append(key_of(row)) += row.opens_block() ? " " : ": ";
    }

    void add_value(const Row &row, const std::string &value, size_t level) {
        begin_line(row, level);
        text_.append(value) += '\n';
    }

    void add_row(const Row &row, const void *record, size_t level) {
        switch (shape_of(row)) {
        case Shape::number:
            if (number_of(row, record) != 0 || row.has(kvt_str::always)) {
                add_value(row, plain_value(row, record, guids_), level);
            }
            break;
        case Shape::real:
            if (real_of(row, record) != 0 || row.has(kvt_str::always)) {
                add_value(row, plain_value(row, record), level);
            }
            break;
        case Shape::text:
            if (!text_of(row, record).empty()) {
                add_value(row, '"' + plain_value(row, record) + '"', level);
            }
            break;
        default:
            add_elements(row, elements_of(row, record), level);
        }
    }

    void add_elements(const Row &row, const Elements &elements, size_t level) {
        for (uint64_t i = 0; i < elements.count; ++i) {
            if (row.element == nullptr) {
                add_value(row, plain_element(row, elements, i, guids_), level);
            } else {
                begin_line(row, level);
                add_block(*row.element, elements.at(i), level);
                text_ += '\n';
            }
        }
    }

    GuidForm guids_;
    std::string text_;
};

} // namespace

std::string block_text(const Record &table, const void *record, GuidForm guids) {
    BlockText block(guids);
    block.add_block(table, record, 0);
    return block.text();
}

} // namespace kvt_tool
