// Records read from the text of their block, and written to it: the only place where the tests of
// every row call the codec. Members are looked at where the tables say that they lie.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/codec.h"
#include "support/every_row.h"
#include "support/log_capture.h"

namespace kvt_test {

/// The ways in which a text is read.
enum class Form {
    as_written, ///< as it stands
    tabbed,     ///< each line after a tab, as the writer puts none
    traced,     ///< as it stands, while all traces are listened to
};
inline constexpr Form every_form[] = {Form::as_written, Form::tabbed, Form::traced};

/// A record read from the text after its block's opening line. Releases what hangs from it by its
/// counts.
class BlockRead {
public:
    BlockRead(const Block &block, const std::string &text, Form form = Form::as_written,
              kvt_str::Counts counts = kvt_str::Counts::as_read);
    ~BlockRead();
    BlockRead(const BlockRead &) = delete;
    BlockRead &operator=(const BlockRead &) = delete;

    /// All bytes of the record, and of a member of it.
    std::string record() const { return {record_.get(), block_.table->size}; }

    std::string member(const Place &place) const {
        return record().substr(place.row->offset, place.row->size);
    }

    const std::string &rest() const { return rest_; } ///< of the text, where the reader stopped

    const std::vector<LogLine> &log() const { return log_; }

    uint64_t number(const Place &place) const;
    std::string text(const Place &place) const; ///< of a character array, all characters of it
    const char *joined(const Place &place) const;
    uint64_t count(const Place &place) const;
    void set_count(const Place &place, uint64_t count);
    void *pointer(const Place &place) const;
    /// The numbers of the elements, as element_with put them, as many as the count tells.
    std::vector<uint64_t> elements(const Place &place) const;
    /// The numbers of all elements within the record, used or not.
    std::vector<uint64_t> slots(const Place &place) const;
    std::vector<uint8_t> bytes(const Place &place) const;
    /// True when the member is what Place::full of a number says.
    bool holds_full(const Place &place, uint64_t number) const;
    /// True when all bytes are zero but for the row's member and its count.
    bool is_zero_beside(const Place &place) const;

private:
    const Block block_;
    std::unique_ptr<char[]> record_;
    std::string rest_;
    std::vector<LogLine> log_;
};

/// A record of zeros, to be filled for the writer.
class BlockToWrite {
public:
    explicit BlockToWrite(const Block &block);

    void set_number(const Place &place, uint64_t number);
    void set_count(const Place &place, uint64_t count);
    void set_pointer(const Place &place, const void *pointer);

    char *member(const Place &place) { return &record_[place.row->offset]; }

    /// The lines that are written of it, without the opening and the closing line.
    std::string lines() const;

private:
    const Block block_;
    std::vector<char> record_;
};

} // namespace kvt_test
