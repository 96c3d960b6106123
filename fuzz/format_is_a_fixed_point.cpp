// Any bytes: what kvt fmt prints of them, it prints again as it is. What the codec's writer wrote
// of a message that reads back, it does not change.
#include <string>

#include "kvt/message_layer.h"
#include "messages.h"
#include "model/reads_back.h"
#include "property.h"
#include "tool/units.h"

using namespace kvt_fuzz;
using kvt_tool::normal_form_of;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string once = normal_form_of({reinterpret_cast<const char *>(data), size});
    if (normal_form_of(once) != once) {
        report("a normal form is its own normal form");
    }
    const InputText input(data, size);
    const Message message = read_as(input.get(), kvt_str::Counts::agree);
    if (message.kind != nullptr) {
        const std::string written = write_exactly(message.kind->value, message.record) + "\n";
        if (kvt_tool::reads_back(*message.kind->record, message.record) &&
            normal_form_of(written) != written) {
            report("a text that the writer wrote is in normal form");
        }
        kvt_msg_release(static_cast<int32_t>(message.kind->value), message.record);
    }
    return 0;
}
