#include "engine/write.h"

#include "engine/write_row.h"

namespace kvt_str {

namespace {

template <typename Out>
Out put_record(Out out, const Record &table, const void *record, unsigned level) {
    for (const Row &row : table.rows) {
        out = put_row(out, row, level + 1, record);
    }
    out.put_label(closing_label, indent_of(level));
    return out;
}

} // namespace

char *write_record(const Record &table, const void *record, unsigned level, char *out) {
    return put_record(Storing{out}, table, record, level).at;
}

uint64_t measure_record(const Record &table, const void *record, unsigned level) {
    return put_record(Counting{0}, table, record, level).size;
}

} // namespace kvt_str
