// What the indentation of a message tells of its braces: which one was probably left out, and which
// one is too many. Nothing is reported for the indentation alone.
#pragma once

#include "finding_report.h"

namespace kvt_checking {

/// True when a record has a row of exactly this key.
bool knows(const kvt_str::Record &table, std::string_view key);

class Indentation {
public:
    /// A block whose closing brace stands less deep than its opening line: that brace was probably
    /// meant for the block around.
    struct Missing {
        Place opening;
        std::string_view name;
        size_t before; ///< number of the line before which its own brace belongs
    };

    void begin_message() {
        has_missing_ = false;
        has_extra_ = false;
        is_settled_ = false;
    }

    /// Takes note of the brace that closes a block for the reader.
    void see_brace(const Place &brace, const Frame &frame);

    /// The first block of the message, from a block's opening line on, whose brace is missing by
    /// what was seen. Otherwise the block itself, whose brace belongs before the line `before`.
    Missing missing(const Frame &frame, size_t before) const;

    /// True when some block of the message has no brace by what was seen.
    bool has_missing() const { return has_missing_; }

    const Missing &first_missing() const { return missing_; }

    /// The first brace of the message that stands deeper than the opening line of the block that it
    /// closes; otherwise the brace at hand. It is forgotten.
    Place take_extra(const Place &brace);

    /// Forgets the block that was reported, and looks for no other one in this message where the
    /// check then goes on as the reader does.
    void forget_missing(bool follows_reader) {
        has_missing_ = false;
        is_settled_ = follows_reader;
    }

private:
    bool has_missing_ = false;
    bool has_extra_ = false;
    bool is_settled_ = false;
    Missing missing_{{nullptr, nullptr, 0}, {}, 0};
    Place extra_{nullptr, nullptr, 0};
};

/// True when the line at `at`, in a block, is one of a block around: its key is known there, and it
/// stands no deeper than the block's opening line.
bool is_of_block_around(const Place &at, std::string_view word, const Frame &frame);

/// True when the line at `at`, after a brace that closed a block for the reader, still belongs to
/// the block.
bool is_still_of_block(const Place &at, std::string_view word, const Frame &frame);

} // namespace kvt_checking
