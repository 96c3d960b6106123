#include "model/end_marks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "engine/read_row.h"
#include "message_codecs.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// Other arrays end at zero, which the reader leaves there.
bool has_end_mark(const Row &row) {
    return row.kind == RowKind::bytes && row.terminator != 0;
}

/// The codec of a record, changed: rows with an end mark are blocks to it, whose reader reads the
/// lines of the array. So it is called where the lines are, and knows how many there are.
struct MarkedRecord {
    const Codec *original;
    std::vector<Row> rows;
    std::vector<const Codec *> elements;
    Codec codec;
};

/// What stands in for the codec of a block's record.
struct MarkedArray {
    const Codec *of; ///< the record's original codec
    const Row *row;  ///< of it
    std::string label;
    Codec codec;
};

/// More than all tables together have.
constexpr size_t most = 8;

template <size_t number>
const char *read_marked_record(Input &input, const char *at, void *record, unsigned level);

template <size_t number>
const char *read_marked_array(Input &input, const char *at, void *member, unsigned level);

template <size_t... number>
constexpr std::array<UnpackRoutine *, most> record_readers(std::index_sequence<number...> /*all*/) {
    return {read_marked_record<number>...};
}

template <size_t... number>
constexpr std::array<UnpackRoutine *, most> array_readers(std::index_sequence<number...> /*all*/) {
    return {read_marked_array<number>...};
}

using Numbers = std::make_index_sequence<most>;

class MarkedCodecs {
public:
    MarkedCodecs() {
        for (uint32_t i = 0; i < message_codec_count; ++i) {
            of_kinds_[i] = change(*message_codecs[i].record);
        }
    }

    const Codec *of_kind(const MessageKind &kind) const {
        return kind.record != nullptr ? of_kinds_[kind.value - 1] : nullptr;
    }

    const MarkedRecord &record(size_t number) const { return records_[number]; }

    const MarkedArray &array(size_t number) const { return arrays_[number]; }

private:
    const Codec *change(const Codec &original);
    const Codec *change_array(const Codec &of, const Row &row, Row &changed);

    // Whose elements stay where they are.
    std::deque<MarkedRecord> records_;
    std::deque<MarkedArray> arrays_;
    const Codec *of_kinds_[message_codec_count] = {};
};

const MarkedCodecs &marked_codecs() {
    static const MarkedCodecs codecs;
    return codecs;
}

const Codec *MarkedCodecs::change_array(const Codec &of, const Row &row, Row &changed) {
    UnpackRoutine *reader = array_readers(Numbers()).at(arrays_.size());
    const std::string key(row.label.text, row.key_length);
    MarkedArray &array =
        arrays_.emplace_back(MarkedArray{&of, &row, KVT_BLANKS + key + " {\n", of});
    array.codec.rows = Rows(nullptr, 0);
    array.codec.has_pointers = false;
    array.codec.unpack = reader;
    // With this label no line of the array is offered as a canonical one: the first is looked at
    // before it is taken, and may hold the brace that ends the record.
    changed.label = {array.label.data() + deepest_indent,
                     static_cast<uint8_t>(array.label.size() - deepest_indent)};
    changed.kind = RowKind::block;
    changed.element = &array.codec;
    return &array.codec;
}

/// The changed codec; null for a record that has no end marks, nor has any in it.
const Codec *MarkedCodecs::change(const Codec &original) {
    for (const MarkedRecord &known : records_) {
        if (known.original == &original) {
            return &known.codec;
        }
    }
    MarkedRecord made = {&original, {original.rows.begin(), original.rows.end()}, {}, original};
    bool is_changed = false;
    for (Row &row : made.rows) {
        const Row &before = original.rows[row.index];
        const Codec *element = nullptr;
        const Codec *changed = nullptr;
        if (has_end_mark(before)) {
            changed = change_array(original, before, row);
        } else if (before.element != nullptr) {
            element = &original.element_of(before);
            changed = change(*element);
        }
        made.elements.push_back(changed != nullptr ? changed : element);
        is_changed = is_changed || changed != nullptr;
    }
    if (!is_changed) {
        return nullptr;
    }
    UnpackRoutine *reader = record_readers(Numbers()).at(records_.size());
    MarkedRecord &kept = records_.emplace_back(std::move(made));
    kept.codec.rows = Rows(kept.rows.data(), kept.rows.size());
    kept.codec.elements = kept.elements.data();
    kept.codec.unpack = reader;
    return &kept.codec;
}

template <size_t number>
const char *read_marked_record(Input &input, const char *at, void *record, unsigned level) {
    const MarkedRecord &marked = marked_codecs().record(number);
    clear_record(marked.codec, record);
    for (const Row &row : marked.original->rows) {
        if (has_end_mark(row)) {
            store(member_of(row, record), row.terminator);
        }
    }
    return BlockReader(input, marked.codec, record, level).read_lines(at, true);
}

/// The beginning of the line before `at`, which is after that line's newline or at the text's end.
/// A line of a record is never the text's first.
const char *line_before(const char *at) {
    do {
        --at;
    } while (at[-1] != '\n');
    return at;
}

/// Reads the lines of an array. `at` is after the first of them.
template <size_t number>
const char *read_marked_array(Input &input, const char *at, void *member, unsigned level) {
    const MarkedArray &array = marked_codecs().array(number);
    const Row &row = *array.row;
    void *record = static_cast<char *>(member) - row.offset;
    BlockReader block(input, *array.of, record, level - 1);
    const char *line = line_before(at);
    const char *after = read_row(block, row, line, Offer::by_key);
    size_t lines = 0;
    for (; line < after; line = next_line(line)) {
        ++lines;
    }
    if (lines < row.capacity) {
        store(static_cast<char *>(member) + lines, row.terminator);
    }
    return after;
}

} // namespace

const Codec *codec_with_end_marks(const MessageKind &kind) {
    return marked_codecs().of_kind(kind);
}

} // namespace kvt_tool
