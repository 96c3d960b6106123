#include "engine/write.h"

#include "engine/write_row.h"

namespace kvt_str {

namespace {

template <typename Out>
Out put_record(Out out, const Codec &codec, const void *record, unsigned level) {
    for (const Row &row : codec.rows) {
        out = put_row(out, codec, row, level + 1, record);
    }
    out.put_label(closing_label, indent_of(level));
    return out;
}

} // namespace

char *write_record(const Codec &codec, const void *record, unsigned level, char *out) {
    return put_record(Storing{out}, codec, record, level).at;
}

uint64_t measure_record(const Codec &codec, const void *record, unsigned level) {
    return put_record(Measuring{0}, codec, record, level).size;
}

} // namespace kvt_str
