#include "support/block_read.h"

#include <cstring>
#include <sstream>

#include "engine/release.h"
#include "support/codecs.h"
#include "support/exact_copy.h"
#include "support/tables.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

uint64_t get_number(const char *at, unsigned width) {
    const auto get = [at](auto number) {
        std::memcpy(&number, at, sizeof number);
        return static_cast<uint64_t>(number);
    };
    return width == 1   ? get(uint8_t{})
           : width == 2 ? get(uint16_t{})
           : width == 4 ? get(uint32_t{})
                        : get(uint64_t{});
}

void put_number(char *at, unsigned width, uint64_t number) {
    const auto put = [at](auto cut) {
        std::memcpy(at, &cut, sizeof cut);
    };
    switch (width) {
    case 1:
        return put(static_cast<uint8_t>(number));
    case 2:
        return put(static_cast<uint16_t>(number));
    case 4:
        return put(static_cast<uint32_t>(number));
    default:
        return put(number);
    }
}

unsigned width_of_element(const Row &row) {
    return row.kind == RowKind::array16   ? 2
           : row.kind == RowKind::array32 ? 4
           : row.kind == RowKind::array64 ? 8
                                          : row.element->size;
}

std::string with_tabs(const std::string &text) {
    std::istringstream lines(text);
    std::string tabbed;
    for (std::string line; std::getline(lines, line);) {
        const size_t start = line.find_first_not_of(' ');
        tabbed += "\t" + (start == std::string::npos ? "" : line.substr(start)) +
                  (lines.eof() ? "" : "\n");
    }
    return tabbed;
}

void *pointer_at(const char *at) {
    void *pointer;
    std::memcpy(&pointer, at, sizeof pointer);
    return pointer;
}

uint64_t count_of(const Place &place, const char *record) {
    return get_number(record + place.row->count_offset, place.row->count_width);
}

/// True when the elements at a place hold the numbers from one on.
bool elements_hold(const Place &place, const char *elements, size_t count, uint64_t number);

/// True when a row of a record holds what Place::full of a number says.
bool holds(const Place &place, const char *record, uint64_t number) {
    const Row &row = *place.row;
    const char *member = record + row.offset;
    const auto is_text = [&](const char *text) {
        return text != nullptr && text == "text " + std::to_string(number);
    };
    switch (row.kind) {
    case RowKind::real: {
        float value;
        std::memcpy(&value, member, sizeof value);
        return value == static_cast<float>(number);
    }
    case RowKind::text:
        return is_text(member);
    case RowKind::joined_text: {
        const char *text = static_cast<const char *>(pointer_at(member));
        return is_text(text) && count_of(place, record) == std::strlen(text) + 1;
    }
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
    case RowKind::run: {
        const char *elements = static_cast<const char *>(pointer_at(member));
        return elements != nullptr && count_of(place, record) == 2 &&
               elements_hold(place, elements, 2, number);
    }
    case RowKind::slots:
        return count_of(place, record) == 1 && elements_hold(place, member, 1, number);
    case RowKind::block:
        return elements_hold(place, member, 1, number);
    case RowKind::bytes:
        return get_number(member, 1) == number;
    default:
        return get_number(member, row.size) == number;
    }
}

bool elements_hold(const Place &place, const char *elements, size_t count, uint64_t number) {
    const size_t size = width_of_element(*place.row);
    for (size_t i = 0; i < count; ++i) {
        if (!place.row->opens_block()) {
            if (get_number(elements + i * size, width_of_element(*place.row)) != number + i) {
                return false;
            }
            continue;
        }
        for (const Place &inner : rows_of(place.element())) {
            // What a count says is told by the elements that come after it.
            if (!is_count(inner) && !holds(inner, elements + i * size, number + i)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

BlockRead::BlockRead(const Block &block, const std::string &text, Form form, Counts counts)
    : block_(block), record_(std::make_unique<char[]>(block.table->size)) {
    const auto copy = exact_copy(form == Form::tabbed ? with_tabs(text) : text);
    LogCapture log(form == Form::traced ? 6 : 5);
    Input input{Text(copy.get()), counts};
    rest_ = codec_of(*block.table).unpack(input, copy.get(), record_.get(), block.level);
    log_ = log.take();
}

BlockRead::~BlockRead() {
    release_members(*block_.table, record_.get());
}

uint64_t BlockRead::number(const Place &place) const {
    return get_number(&record_[place.row->offset], place.row->size);
}

std::string BlockRead::text(const Place &place) const {
    return {&record_[place.row->offset], place.row->capacity};
}

const char *BlockRead::joined(const Place &place) const {
    return static_cast<const char *>(pointer(place));
}

uint64_t BlockRead::count(const Place &place) const {
    return count_of(place, record_.get());
}

void BlockRead::set_count(const Place &place, uint64_t count) {
    put_number(&record_[place.row->count_offset], place.row->count_width, count);
}

void *BlockRead::pointer(const Place &place) const {
    return pointer_at(&record_[place.row->offset]);
}

std::vector<uint64_t> BlockRead::elements(const Place &place) const {
    const char *array = static_cast<const char *>(pointer(place));
    std::vector<uint64_t> numbers;
    const unsigned width = width_of_element(*place.row);
    for (uint64_t i = 0; i < count(place); ++i) {
        const char *element = array + i * width;
        if (place.row->opens_block()) {
            const Row &row = *number_in(place.element()).row;
            numbers.push_back(get_number(element + row.offset, row.size));
        } else {
            numbers.push_back(get_number(element, width));
        }
    }
    return numbers;
}

std::vector<uint64_t> BlockRead::slots(const Place &place) const {
    const Row &row = *number_in(place.element()).row;
    std::vector<uint64_t> numbers;
    for (size_t i = 0; i < place.row->capacity; ++i) {
        numbers.push_back(get_number(
            &record_[place.row->offset + i * place.row->element->size + row.offset], row.size));
    }
    return numbers;
}

std::vector<uint8_t> BlockRead::bytes(const Place &place) const {
    const auto *first = reinterpret_cast<const uint8_t *>(&record_[place.row->offset]);
    return {first, first + place.row->capacity};
}

bool BlockRead::holds_full(const Place &place, uint64_t number) const {
    return holds(place, record_.get(), number);
}

bool BlockRead::is_zero_beside(const Place &place) const {
    const Row &row = *place.row;
    for (size_t i = 0; i < block_.table->size; ++i) {
        const bool member = i >= row.offset && i < size_t{row.offset} + row.size;
        const bool its_count = place.has_count() && i >= row.count_offset &&
                               i < size_t{row.count_offset} + row.count_width;
        if (record_[i] != 0 && !member && !its_count) {
            return false;
        }
    }
    return true;
}

// --- Writing -------------------------------------------------------------------------------------

BlockToWrite::BlockToWrite(const Block &block) : block_(block), record_(block.table->size) {}

void BlockToWrite::set_number(const Place &place, uint64_t number) {
    put_number(member(place), place.row->size, number);
}

void BlockToWrite::set_count(const Place &place, uint64_t count) {
    put_number(&record_[place.row->count_offset], place.row->count_width, count);
}

void BlockToWrite::set_pointer(const Place &place, const void *pointer) {
    std::memcpy(member(place), &pointer, sizeof pointer);
}

std::string BlockToWrite::lines() const {
    const std::string text = write_block(*block_.table, record_.data(), block_.level);
    const size_t first = text.find('\n') + 1;
    return text.substr(first, text.rfind('\n', text.size() - 2) + 1 - first);
}

} // namespace kvt_test
