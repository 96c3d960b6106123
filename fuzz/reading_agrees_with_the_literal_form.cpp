// Any text: the codec, on its fast path and on the one that traces, stops where the literal form of
// the format stops, logs the same lines, and makes the same record of it.
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/release.h"
#include "property.h"
#include "support/codecs.h"
#include "support/literal_codec.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/random_records.h"
#include "tables_of_texts.h"
#include "text/scanner.h"

using namespace kvt_fuzz;
using namespace kvt_test;
using namespace kvt_str;

namespace {

struct Outcome {
    void *record;
    const char *stops_at;
    std::vector<LogLine> log;
};

Outcome read_by_codec(const Record &table, const char *text, const char *block, int level) {
    const LogCapture capture(level);
    void *record = std::calloc(1, table.size);
    Input input{Text(text), Counts::agree};
    const char *after = codec_of(table).unpack(input, after_newline(block), record, 1);
    return {record, skip_blanks(after), capture.lines()};
}

Outcome read_literally(const Record &table, const char *block) {
    const LogCapture capture;
    void *record = std::calloc(1, table.size);
    const char *after = literal_read(table, block, record, Counts::agree);
    return {record, after, capture.lines()};
}

void expect_same_record(const Record &table, const Outcome &a, const Outcome &b) {
    expect(a.stops_at == b.stops_at, "a reading stops where the literal form stops");
    const std::string difference = first_difference(table, a.record, b.record);
    if (!difference.empty()) {
        report("a record is that of the literal form: differs in " + difference);
    }
}

void release(const Record &table, const Outcome &reading) {
    release_members(table, reading.record);
    std::free(reading.record);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText input(data, size);
    const char *text = input.get();
    const Record *table = find_table(text);
    if (table == nullptr) {
        return 0;
    }
    const char *block = next_line(next_line(text));
    const MemoryWatch watch;
    const Outcome literal = read_literally(*table, block);
    const Outcome traced = read_by_codec(*table, text, block, 6);
    const Outcome untraced = read_by_codec(*table, text, block, 0);

    expect_same_record(*table, traced, literal);
    expect_same_record(*table, untraced, literal);
    expect(traced.log == literal.log, "the traces are those of the literal form");
    expect(untraced.log.empty(), "nothing is logged while nobody listens");

    release(*table, literal);
    release(*table, traced);
    release(*table, untraced);
    expect(watch.alive() == 0, "a release frees all of a record");
    return 0;
}
