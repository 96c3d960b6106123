#include "support/every_row.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <sstream>

#include "support/tables.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

void collect(const Record &table, unsigned level, std::vector<Block> &blocks,
             std::set<std::pair<const Record *, unsigned>> &seen) {
    if (!seen.insert({&table, level}).second) {
        return;
    }
    blocks.push_back({&table, level});
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            collect(*row.element, level + 1, blocks, seen);
        }
    }
}

} // namespace

// --- Texts ---------------------------------------------------------------------------------------

std::string Block::name() const {
    return std::string(table->name) + " at level " + std::to_string(level);
}

std::string Block::indentation() const {
    return std::string(2 * (level + size_t{1}), ' ');
}

std::string Block::line(const std::string &key, const std::string &value) const {
    return indentation() + key + ": " + value + "\n";
}

std::string Block::line(const std::string &key, uint64_t value) const {
    return line(key, std::to_string(value));
}

std::string Block::inner(const std::string &key, const std::string &lines) const {
    return indentation() + key + " {\n" + lines + indentation() + "}\n";
}

std::string Block::closed(const std::string &lines) const {
    return lines + std::string(2 * size_t{level}, ' ') + "}\n";
}

std::string Place::name() const {
    return std::string(table->name) + "." + key() + " at level " + std::to_string(level);
}

std::string Place::key() const {
    return {row->label.text, row->key_length};
}

Block Place::element() const {
    return {row->element, level + 1};
}

std::string Place::says(const std::string &value) const {
    return line(key(), value);
}

std::string Place::says(uint64_t value) const {
    return line(key(), value);
}

Place Place::count() const {
    for (const Row &candidate : table->rows) {
        if (candidate.offset == row->count_offset) {
            return {*this, &candidate};
        }
    }
    std::abort(); // no test goes on without it
}

std::string Place::element_with(uint64_t number) const {
    return row->opens_block() ? inner(key(), number_in(element()).says(number)) : says(number);
}

std::string Place::elements(uint64_t last) const {
    std::string text;
    for (uint64_t number = 1; number <= last; ++number) {
        text += element_with(number);
    }
    return text;
}

std::string Place::full(uint64_t number) const {
    switch (row->kind) {
    case RowKind::text:
    case RowKind::joined_text:
        return says("\"text " + std::to_string(number) + "\"");
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
        return says(number) + says(number + 1);
    case RowKind::block:
    case RowKind::slots:
        return inner(key(), full_lines(element(), number));
    case RowKind::run:
        return inner(key(), full_lines(element(), number)) +
               inner(key(), full_lines(element(), number + 1));
    default:
        return says(number);
    }
}

std::string full_lines(const Block &block, uint64_t number) {
    std::string lines;
    for (const Place &place : rows_of(block)) {
        lines += place.full(number);
    }
    return lines;
}

std::string lines_with_key(const Block &block, const std::string &lines, const std::string &key) {
    const std::string start = block.indentation() + key;
    std::istringstream stream(lines);
    std::string found;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(start + ":") || line.starts_with(start + " {")) {
            found += line + "\n";
        }
    }
    return found;
}

std::vector<uint64_t> one_to(uint64_t last, const std::vector<uint64_t> &dropped) {
    std::vector<uint64_t> numbers;
    for (uint64_t number = 1; number <= last; ++number) {
        if (std::find(dropped.begin(), dropped.end(), number) == dropped.end()) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

// --- Rows ----------------------------------------------------------------------------------------

bool is_address(const Record &table) {
    const std::string_view name = table.name;
    return name == "ibv_gid" || name == "ibv_sa_path_rec" || name == "test_address";
}

std::vector<Block> every_block() {
    std::vector<Block> blocks;
    std::set<std::pair<const Record *, unsigned>> seen;
    for (const Record *table : all_tables()) {
        collect(*table, message_level, blocks, seen);
    }
    return blocks;
}

std::vector<Place> rows_of(const Block &block) {
    std::vector<Place> places;
    for (const Row &row : block.table->rows) {
        places.push_back({block, &row});
    }
    return places;
}

std::vector<Place> every_row(std::initializer_list<RowKind> kinds) {
    std::vector<Place> places;
    for (const Block &block : every_block()) {
        for (const Place &place : rows_of(block)) {
            if (kinds.size() == 0 ||
                std::find(kinds.begin(), kinds.end(), place.row->kind) != kinds.end()) {
                places.push_back(place);
            }
        }
    }
    return places;
}

bool is_count(const Place &place) {
    const std::vector<Place> places = rows_of(place);
    return std::any_of(places.begin(), places.end(), [&](const Place &other) {
        return other.has_count() && other.count().row == place.row;
    });
}

Place number_in(const Block &block) {
    std::optional<Place> first;
    for (const Place &place : rows_of(block)) {
        if (place.row->is_number() && !is_count(place)) {
            return place;
        }
        if (place.row->is_number() && !first) {
            first = place;
        }
    }
    return first.value();
}

std::vector<Place> every_number() {
    return every_row({RowKind::number8, RowKind::number16, RowKind::number32, RowKind::number64,
                      RowKind::signed32});
}

std::vector<Place> every_array() {
    return every_row({RowKind::array16, RowKind::array32, RowKind::array64});
}

std::vector<Place> every_array_or_run() {
    return every_row({RowKind::array16, RowKind::array32, RowKind::array64, RowKind::run});
}

} // namespace kvt_test
