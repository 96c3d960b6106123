#include "model/field_path.h"

#include <cstdlib>

#include "engine/find_codec.h"
#include "message_codecs.h"
#include "model/value_text.h"

namespace kvt_tool {

namespace {

bool is_list(const Row &row) {
    return shape_of(row) == Shape::numbers || shape_of(row) == Shape::records;
}

bool is_record(const Row &row) {
    return row.element != nullptr;
}

const kvt_str::Codec &codec_of(const kvt_str::Record &table) {
    for (const kvt_str::MessageCodec &message : kvt_str::message_codecs) {
        if (const kvt_str::Codec *found = kvt_str::find_codec(*message.record, table);
            found != nullptr) {
            return *found;
        }
    }
    std::abort(); // each table that a path leads to is of a record in a message
}

std::string block_lines(const kvt_str::Record &table, const void *record) {
    // The writer stores words, which may reach beyond the last newline where no closing line of a
    // message follows.
    constexpr size_t slack = 16;
    const kvt_str::Codec &codec = codec_of(table);
    const uint64_t size = codec.measure(record, 0);
    std::string lines = "{\n";
    const size_t begin = lines.size();
    lines.resize(begin + size + slack);
    codec.pack(record, 0, lines.data() + begin);
    lines.resize(begin + size - 1);
    return lines;
}

} // namespace

std::string FoundField::value() const {
    if (block != nullptr) {
        return block_lines(*block, content);
    }
    return index.has_value() ? plain_element(*row, elements_of(*row, record), *index)
                             : plain_value(*row, record);
}

std::span<const FieldPath::Step> FieldPath::steps_within(const MessageKind &kind) const {
    const std::span<const Step> steps = steps_;
    const Step &first = steps.front();
    const bool is_block_name =
        first.key == kind.block && !first.has_index && find_row(*kind.record, first.key) == nullptr;
    return steps.subspan(is_block_name ? 1 : 0);
}

std::optional<FieldPath::Mismatch> FieldPath::find_mismatch(const MessageKind &kind) const {
    if (kind.record == nullptr) {
        return Mismatch{Mismatch::Reason::no_such_key, 0, nullptr, nullptr};
    }
    const Record *table = kind.record;
    const size_t first = steps_.size() - steps_within(kind).size();
    for (size_t i = first; i < steps_.size(); ++i) {
        const Row *row = find_row(*table, steps_[i].key);
        if (row == nullptr) {
            return Mismatch{Mismatch::Reason::no_such_key, i, table, nullptr};
        }
        if (steps_[i].has_index && !is_list(*row)) {
            return Mismatch{Mismatch::Reason::no_list, i, table, row};
        }
        if (i + 1 < steps_.size() && !is_record(*row)) {
            return Mismatch{Mismatch::Reason::no_record, i, table, row};
        }
        table = row->element;
    }
    return std::nullopt;
}

namespace {

/// Goes along a path through a record. `Steps` is a span of FieldPath's steps.
template <typename Steps> class Walk {
public:
    explicit Walk(const FieldPath::Callback &found) : found_(found) {}

    void go(Steps steps, const Record &table, const void *record) {
        const auto &step = steps.front();
        const Row &row = *find_row(table, step.key);
        const Steps rest = steps.subspan(1);
        const size_t length = path_.size();
        if (length != 0) {
            path_ += '.';
        }
        path_ += step.key;
        if (is_list(row)) {
            const Elements elements = elements_of(row, record);
            const uint64_t begin = step.index.value_or(0);
            const uint64_t count = elements.count;
            const uint64_t end = step.index.has_value() ? begin + (begin < count) : count;
            const size_t before_index = path_.size();
            for (uint64_t i = begin; i < end; ++i) {
                path_.append("[").append(std::to_string(i)).append("]");
                arrive(rest, row, record, i, elements.at(i));
                path_.resize(before_index);
            }
        } else {
            const void *content = is_record(row) ? elements_of(row, record).first : nullptr;
            arrive(rest, row, record, std::nullopt, content);
        }
        path_.resize(length);
    }

private:
    void arrive(Steps rest, const Row &row, const void *record, std::optional<uint64_t> index,
                const void *content) {
        if (!rest.empty()) {
            go(rest, *row.element, content);
            return;
        }
        found_({path_, &row, record, index, row.element, is_record(row) ? content : nullptr});
    }

    const FieldPath::Callback &found_;
    std::string path_;
};

} // namespace

void FieldPath::each(const MessageKind &kind, const void *record, const Callback &found) const {
    if (!applies_to(kind)) {
        return;
    }
    const std::span<const Step> steps = steps_within(kind);
    if (steps.empty()) {
        found({kind.block, nullptr, record, std::nullopt, kind.record, record});
        return;
    }
    Walk<std::span<const Step>>(found).go(steps, *kind.record, record);
}

} // namespace kvt_tool
