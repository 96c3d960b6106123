#include "io/unit.h"

#include <algorithm>

namespace kvt_tool {

namespace {

constexpr size_t block_size = 1 << 20;

} // namespace

void TextPlace::add(std::string_view part) {
    const size_t newline = part.rfind('\n');
    if (newline != std::string_view::npos) {
        line += static_cast<uint64_t>(std::ranges::count(part, '\n'));
        column = 1;
        part.remove_prefix(newline + 1);
    }
    column += part.size();
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
    batch->place_ = place_;
    batch->offset_ = offset_;
    batch->is_cut_ = is_cut;
    batch->is_followed_ = !ended_ || length < pending_.size();
    std::string rest = pending_.substr(length);
    pending_.resize(length);
    batch->text_ = std::exchange(pending_, std::move(rest));
    place_.add(batch->text_);
    offset_ += length;
    return batch;
}

void UnitReader::drop(size_t length) {
    place_.add(std::string_view(pending_).substr(0, length));
    offset_ += length;
    pending_.erase(0, length);
}

} // namespace kvt_tool
