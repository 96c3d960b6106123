// Any record of any kind: it is written into a buffer of exactly the size that is promised, fills
// it, and comes out as the literal form of the format writes it.
#include <cstring>
#include <memory>
#include <string>

#include "kvt/kvt_str.h"
#include "messages.h"
#include "property.h"
#include "records_from_bytes.h"
#include "support/literal_codec.h"

using namespace kvt_fuzz;

namespace {

/// A number that is no kind with a record gets an empty envelope.
void check_no_kind(int32_t value) {
    const int nothing = 0;
    const bool known = value == VEMRA_MSG_TYPE_NONE || value == VEMRA_MSG_TYPE_LAST;
    expect(kvt_str_get_buf_size(value, &nothing) == (known ? 6 : 0), "the size of no kind");
    const std::unique_ptr<char[]> text(new char[9]);
    expect(kvt_msg_to_str(value, &nothing, text.get()) == 0, "no kind is written");
    expect(std::strcmp(text.get(), "msg {\n}\n") == 0, "no kind is an empty envelope");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Bytes bytes(data, size);
    const auto value = static_cast<int32_t>(static_cast<int8_t>(bytes.next()));
    const kvt_str::MessageKind *kind = kvt_str::find_kind(value);
    if (kind == nullptr || kind->record == nullptr) {
        check_no_kind(value);
        return 0;
    }
    const RecordFromBytes record(*kind->record, bytes);
    const std::string text = write_exactly(kind->value, record.get());
    const std::string expected =
        "msg {\n  type: " + std::string(kind->name) + "\n" +
        kvt_test::literal_write(*kind->record, record.get(), kind->block, kvt_str::message_level) +
        "}\n";
    expect(text == expected, "a record is written as the literal form writes it");
    return 0;
}
