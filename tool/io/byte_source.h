// Where the streams of units take their bytes from.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvt_tool {

class ByteSource {
public:
    ByteSource() = default;
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource &) = delete;
    ByteSource &operator=(const ByteSource &) = delete;

    /// The name as it is shown in messages.
    virtual const std::string &name() const = 0;

    /// False once something went wrong, which has been said then.
    virtual bool usable() const = 0;

    /// Reads up to `room` bytes to `to`. Returns how many: 0 at the end, and when it is not usable
    /// any more.
    virtual size_t read(char *to, size_t room) = 0;
};

/// A text in memory.
class TextSource : public ByteSource {
public:
    /// `text` must outlive it. It is handed out in pieces of `piece` bytes at most.
    explicit TextSource(std::string_view text, size_t piece = SIZE_MAX)
        : text_(text), piece_(piece) {}

    const std::string &name() const override { return name_; }

    bool usable() const override { return true; }

    size_t read(char *to, size_t room) override {
        const size_t length = text_.copy(to, std::min(room, piece_));
        text_.remove_prefix(length);
        return length;
    }

private:
    std::string name_ = "(text)";
    std::string_view text_;
    size_t piece_;
};

} // namespace kvt_tool
