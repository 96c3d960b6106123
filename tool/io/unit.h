// Parts of an input that can be worked on by themselves.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/byte_source.h"

namespace kvt_tool {

/// A place in a text, counted from 1; the column in bytes.
struct TextPlace {
    uint64_t line = 1;
    uint64_t column = 1;

    /// Goes on to after a part of the text.
    void add(std::string_view part);
};

/// A part of an input. It begins where a message begins, or holds what stands outside of messages.
/// As a rule it is one message with the empty lines after it.
struct Unit {
    const std::string &input;       ///< its name, as it is shown
    const char *text;               ///< ends with a NUL
    size_t length;                  ///< can be more than up to the first NUL
    uint64_t first_line;            ///< of the input, counted from 1
    uint64_t offset;                ///< in the input, in bytes
    bool is_cut;                    ///< only the beginning is kept of text outside of messages
    uint64_t first_column = 1;      ///< of its first line, in bytes, counted from 1
    bool is_before_message = false; ///< the next unit begins with "msg {"
};

/// Some units that follow each other.
class UnitBatch {
public:
    /// Calls `work(const Unit &)` for each unit.
    template <typename Work> void for_each(Work work) {
        TextPlace place = place_;
        size_t counted = 0;
        for (const auto &[start, end] : parts_) {
            place.add({text_.data() + counted, start - counted});
            counted = start;
            const bool is_last = end == text_.size();
            const bool is_before_message =
                is_last ? is_before_message_ : text_.compare(end, 3, "msg") == 0;
            const TextEnd text_end(text_[end]);
            work(Unit{*input_, text_.data() + start, end - start, place.line, offset_ + start,
                      is_cut_, place.column, is_before_message});
        }
    }

    size_t size() const { return text_.size(); }

private:
    friend class UnitReader;

    /// A unit's text ends here for as long as it is looked at.
    class TextEnd {
    public:
        explicit TextEnd(char &at) : at_(at), after_(std::exchange(at, '\0')) {}

        ~TextEnd() { at_ = after_; }

        TextEnd(const TextEnd &) = delete;
        TextEnd &operator=(const TextEnd &) = delete;

    private:
        char &at_;
        char after_;
    };

    std::shared_ptr<const std::string> input_;
    std::string text_;
    std::vector<std::pair<size_t, size_t>> parts_; ///< of the text: the begin and end of each unit
    TextPlace place_;
    uint64_t offset_ = 0;
    bool is_cut_ = false;
    bool is_before_message_ = false; ///< the text
};

/// What the streams of units have in common: the part of an input that has been read and not yet
/// been handed out.
class UnitReader {
protected:
    static constexpr size_t usual_block = 1 << 20;

    /// `block` is how much is read at once.
    explicit UnitReader(ByteSource &input, size_t block = usual_block);

    bool usable() const { return input_.usable(); }

    /// Reads a block more. False at the end, where `ended_` is set.
    bool read_more();

    /// Reads until there is a block, or all that is left.
    void fill();

    /// Hands out the first bytes, which hold these units.
    std::unique_ptr<UnitBatch> take(size_t length, std::vector<std::pair<size_t, size_t>> parts,
                                    bool is_cut = false);

    /// Forgets the first bytes.
    void drop(size_t length);

    std::string pending_;
    bool ended_ = false;

private:
    ByteSource &input_;
    const size_t block_;
    std::shared_ptr<const std::string> name_;
    TextPlace place_;
    uint64_t offset_ = 0;
};

} // namespace kvt_tool
