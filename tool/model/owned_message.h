// Records that are released with their owner.
#pragma once

#include <memory>

#include "kvt/message_layer.h"
#include "message_kinds.h"

namespace kvt_tool {

using kvt_str::MessageKind;

/// Releases a record with all that hangs from it, as the message layer does.
struct ReleaseRecord {
    const MessageKind *kind = nullptr;

    void operator()(void *record) const {
        kvt_msg_release(static_cast<int32_t>(kind->value), record);
    }
};

using OwnedRecord = std::unique_ptr<void, ReleaseRecord>;

/// A kind and a record of it.
class OwnedMessage {
public:
    /// Takes a record that comes from calloc or realloc, with all that hangs from it.
    OwnedMessage(const MessageKind &kind, void *record) : record_(record, {&kind}) {}

    const MessageKind &kind() const { return *record_.get_deleter().kind; }

    const void *record() const { return record_.get(); }

    void *record() { return record_.get(); }

private:
    OwnedRecord record_;
};

} // namespace kvt_tool
