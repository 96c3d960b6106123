// Releases records by the same tables that read them.
#include <cstdlib>

#include "engine/release.h"
#include "kvt/message_layer.h"
#include "message_kinds.h"

extern "C" void kvt_msg_release(int32_t msg_type, void *msg) {
    const kvt_str::MessageKind *kind = kvt_str::find_kind(msg_type);
    if (msg == nullptr || kind == nullptr || kind->record == nullptr) {
        return;
    }
    kvt_str::release_members(*kind->record, msg);
    std::free(msg);
}
