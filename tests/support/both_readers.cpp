#include "support/both_readers.h"

#include "support/codecs.h"
#include "support/literal_codec.h"
#include "text/scanner.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

Counts engine_counts(CountsOf counts) {
    return counts == CountsOf::a_message ? Counts::as_read : Counts::agree;
}

} // namespace

const char *read_block(const Record &table, const char *text, void *record, CountsOf counts) {
    Input input{Text(text), engine_counts(counts)};
    return skip_blanks(codec_of(table).unpack(input, after_newline(text), record, message_level));
}

const char *read_block_literally(const Record &table, const char *text, void *record,
                                 CountsOf counts) {
    return literal_read(table, text, record, engine_counts(counts));
}

} // namespace kvt_test
