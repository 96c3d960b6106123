// Any text and any set of allocations that fail: the readers keep the promises that
// memory_promise.h lists, and a release of what they made is as safe as without failures.
//
// An input is a text, its NUL and the bytes of a set (failing_set.h). Without these all succeeds.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "property.h"
#include "support/failing_set.h"
#include "support/memory_promise.h"

using namespace kvt_fuzz;
using namespace kvt_test;

namespace {

void expect_kept(const MemoryVerdict &verdict, const FailingSet &failing) {
    if (!verdict.problem.empty()) {
        report(verdict.problem + "; allocations that fail: " + failing.in_words());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText text(data, size);
    const size_t set = std::min(text.length() + 1, size);
    const FailingSet failing(
        std::string_view(reinterpret_cast<const char *>(data) + set, size - set));
    const auto length = static_cast<uint32_t>(text.length());
    expect_kept(check_memory_of_message(text.get(), failing), failing);
    expect_kept(check_memory_of_sequence(text.get(), length, failing), failing);
    return 0;
}
