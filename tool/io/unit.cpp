#include "io/unit.h"

#include <algorithm>

namespace kvt_tool {

namespace {

constexpr size_t block_size = 1 << 20;

uint64_t lines_of(const char *text, size_t length) {
    return static_cast<uint64_t>(std::count(text, text + length, '\n'));
}

} // namespace

uint64_t UnitBatch::count_lines(size_t from, size_t to) const {
    return lines_of(text_.data() + from, to - from);
}

UnitReader::UnitReader(InputFile &input)
    : input_(input), name_(std::make_shared<const std::string>(input.name())) {}

bool UnitReader::read_more() {
    const size_t before = pending_.size();
    pending_.resize(before + block_size);
    const size_t length = input_.read(pending_.data() + before, block_size);
    pending_.resize(before + length);
    ended_ = length == 0;
    return !ended_;
}

void UnitReader::fill() {
    while (!ended_ && pending_.size() < block_size) {
        read_more();
    }
}

std::unique_ptr<UnitBatch>
UnitReader::take(size_t length, std::vector<std::pair<size_t, size_t>> parts, bool is_cut) {
    auto batch = std::make_unique<UnitBatch>();
    batch->input_ = name_;
    batch->parts_ = std::move(parts);
    batch->first_line_ = line_;
    batch->offset_ = offset_;
    batch->is_cut_ = is_cut;
    std::string rest = pending_.substr(length);
    pending_.resize(length);
    batch->text_ = std::exchange(pending_, std::move(rest));
    line_ += lines_of(batch->text_.data(), length);
    offset_ += length;
    return batch;
}

void UnitReader::drop(size_t length) {
    line_ += lines_of(pending_.data(), length);
    offset_ += length;
    pending_.erase(0, length);
}

} // namespace kvt_tool
