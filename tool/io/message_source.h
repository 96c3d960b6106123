// A message that has been read, and where it comes from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "model/fields.h"
#include "model/owned_message.h"

namespace kvt_tool {

/// A message whose counts agree with its elements.
struct Message {
    const MessageKind *kind;
    OwnedRecord record;                       ///< by kvt_msg_release, with `kind`
    std::shared_ptr<const std::string> input; ///< name of its input, as it is shown
    uint64_t first_line;                      ///< in its input, counted from 1
    size_t text_size;                         ///< in its input, in characters
};

/// Messages one after the other.
class MessageSource {
public:
    MessageSource() = default;
    virtual ~MessageSource() = default;
    MessageSource(const MessageSource &) = delete;
    MessageSource &operator=(const MessageSource &) = delete;

    /// The next message; nothing, again and again, after the last one.
    virtual std::optional<Message> next() = 0;
};

} // namespace kvt_tool
