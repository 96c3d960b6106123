#include "message_codecs.h"

#include "log_texts.h"
#include "message_list.h"
#include "tables/records.h"

namespace kvt_str {

#define KVT_MESSAGE_CODEC(name, block, record)                                                     \
    MessageCodec{"msg {\n  type: " #name "\n  " block " {\n", &CodecOf<record>::codec,             \
                 KVT_NO_MEMORY_TEXT("kvt_msg_from_str", #record),                                  \
                 KVT_NO_MEMORY_TEXT("kvt_msg_arr_from_str", #record)},

constinit const MessageCodec message_codecs[] = {KVT_MESSAGES(KVT_MESSAGE_CODEC)};

} // namespace kvt_str
