// Any text: its message comes back from JSON, in any of its forms, as the same text. It is refused
// only when that text would be read as something else.
#include <string>

#include "engine/codec.h"
#include "kvt/message_layer.h"
#include "messages.h"
#include "property.h"
#include "tool/json_promise.h"

using namespace kvt_fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText input(data, size);
    const Message message = read_as(input.get(), kvt_str::Counts::agree);
    if (message.kind == nullptr) {
        return 0;
    }
    const uint64_t chosen = choice(input, 1);
    const kvt_tool::JsonForm form = {(chosen & 1) != 0, (chosen & 2) != 0
                                                            ? kvt_tool::GuidForm::hexadecimal
                                                            : kvt_tool::GuidForm::decimal};
    const std::string broken = kvt_test::broken_there_and_back(*message.kind, message.record, form);
    kvt_msg_release(static_cast<int32_t>(message.kind->value), message.record);
    if (!broken.empty()) {
        report(broken);
    }
    return 0;
}
