// All sequences of up to some number of tokens, numbered from 0: shorter ones first.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kvt_prove {

class SequencesOf {
public:
    constexpr SequencesOf(std::span<const std::string_view> tokens, unsigned most)
        : tokens_(tokens), most_(most) {}

    constexpr uint64_t count() const {
        uint64_t sequences = 0;
        uint64_t of_length = 1;
        for (unsigned length = 0; length <= most_; ++length) {
            sequences += of_length;
            of_length *= tokens_.size();
        }
        return sequences;
    }

    /// Appends the tokens of sequence `number` to a text.
    void append(uint64_t number, std::string &text) const {
        uint64_t of_length = 1;
        unsigned length = 0;
        for (; number >= of_length; ++length) {
            number -= of_length;
            of_length *= tokens_.size();
        }
        for (; length != 0; --length) {
            of_length /= tokens_.size();
            text += tokens_[static_cast<size_t>(number / of_length)];
            number %= of_length;
        }
    }

private:
    std::span<const std::string_view> tokens_;
    unsigned most_;
};

} // namespace kvt_prove
