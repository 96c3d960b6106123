// Messages to be compared, one after the other, and where they come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "io/unread_lines.h"
#include "model/field_set.h"
#include "model/owned_message.h"

namespace kvt_tool {

/// A message whose counts agree with its elements.
struct Message : OwnedMessage {
    std::shared_ptr<const std::string> input; ///< name of its input, as it is shown
    uint64_t first_line;                      ///< in its input, counted from 1
    size_t text_size;                         ///< in its input, in characters
    FieldSet ignored = {};                    ///< what of it is not compared
    std::vector<UnreadLine> unread = {};      ///< its lines that the record does not tell of
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
