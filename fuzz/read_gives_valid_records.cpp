// Any text: a message is read or refused. What is read keeps the promises that record_checker.h
// lists, once with counts as the text says them and once with counts that agree with the elements,
// and is released whole.
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "messages.h"
#include "property.h"
#include "support/memory_watch.h"
#include "support/record_checker.h"

using namespace kvt_fuzz;
using namespace kvt_test;

namespace {

void expect_valid(const Verdict &verdict) {
    if (!verdict.problem.empty()) {
        report(verdict.problem);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText text(data, size);
    MemoryWatch watch;
    watch.mark_growth();

    int nobody = 0;
    void *record = &nobody;
    const int32_t result = kvt_msg_from_str(0, 0, text.get(), &record);
    if (result != 0) {
        expect(result == -1, "a text that is refused gives -1");
        expect(record == &nobody, "a text that is refused leaves the caller's pointer");
        expect(watch.alive() == 0, "a text that is refused leaves nothing allocated");
        return 0;
    }
    const size_t held_as_read = watch.alive();

    const Message agreeing = read_as(text.get(), kvt_str::Counts::agree);
    const kvt_str::Record &table = *agreeing.kind->record;
    const Verdict verdict = check_agreeing(table, agreeing.record, text.get());
    expect_valid(verdict);
    expect(verdict.blocks == watch.alive() - held_as_read,
           "a record whose counts agree holds all that was allocated for it");
    expect_valid(check_as_read(table, record, agreeing.record, text.get()));

    // Counts that the text made too small hide elements, and too great ones invent some.
    count_what_is_there(table, record);
    const auto kind = static_cast<int32_t>(agreeing.kind->value);
    kvt_msg_release(kind, record);
    kvt_msg_release(kind, agreeing.record);
    expect(watch.alive() == 0, "a release frees all of a record");
    return 0;
}
