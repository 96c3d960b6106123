#include "support/codecs.h"

#include <cstdlib>

#include "engine/find_codec.h"
#include "message_codecs.h"
#include "support/test_records.h"

namespace kvt_test {

using namespace kvt_str;

const Codec &codec_of(const Record &table) {
    for (const MessageCodec &message : message_codecs) {
        if (const Codec *found = find_codec(*message.record, table); found != nullptr) {
            return *found;
        }
    }
    for (const Codec *own : {&CodecOf<test_everything>::codec, &CodecOf<test_tree>::codec}) {
        if (const Codec *found = find_codec(*own, table); found != nullptr) {
            return *found;
        }
    }
    std::abort();
}

} // namespace kvt_test
