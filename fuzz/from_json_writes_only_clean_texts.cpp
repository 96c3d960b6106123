// Any bytes that are taken for JSON: what kvt from-json writes of them has no findings and is read
// as the same message; all else is refused with its place and words that can be printed. What is
// JSON, the library decides.
#include <string>

#include "property.h"
#include "tool/json_promise.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string broken =
        kvt_test::broken_by_from_json({reinterpret_cast<const char *>(data), size});
    if (!broken.empty()) {
        kvt_fuzz::report(broken);
    }
    return 0;
}
