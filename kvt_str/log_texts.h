// Every text that the codec logs. Readers of logs know them as they are: misspellings, names of
// other functions than the one that logs, and the newlines of the traces alone are a part of the
// format.
#pragma once

namespace kvt_str::log_texts {

// --- The entry points, at level 0 ----------------------------------------------------------------

/// Of a value that is no kind with a record.
inline constexpr char invalid_kind[] = "Invalid value given for msg_type[%d]";

inline constexpr char no_write_buffer[] = "kvt_msg_to_str: No buffer[%p] or msg[%p] was specified";
inline constexpr char write_of_none[] =
    "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_NONE not yet implemented";
inline constexpr char write_of_last[] =
    "kvt_msg_to_binary: Support for VEMRA_MSG_TYPE_LAST not yet implemented";

inline constexpr char no_message_to_measure[] = "kvt_str_get_buf_size: No message was specified";
inline constexpr char size_of_none[] =
    "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_NONE not yet implemented";
inline constexpr char size_of_last[] =
    "kvt_str_get_buf_size: Support for VEMRA_MSG_TYPE_LAST not yet implemented";

// Both readers of messages log these, and those of a kind, under the name of the single one.
inline constexpr char no_text_to_read[] =
    "kvt_msg_from_str: No buffer[%p] or msg[%p] was specified";
inline constexpr char no_texts_to_read[] =
    "kvt_msg_from_str: No buffer[%p] or msgs[%p] was specified";
inline constexpr char read_of_none[] =
    "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_NONE not yet implemented";
inline constexpr char read_of_last[] =
    "kvt_msg_from_str: Support for VEMRA_MSG_TYPE_LAST not yet implemented";
inline constexpr char read_of_unknown_name[] =
    "kvt_msg_from_str: Invalid value given for msg_type[%s]";

/// Of a record that cannot be allocated; both names are string literals.
#define KVT_NO_MEMORY_TEXT(reader, record)                                                         \
    reader ": Failed to allocate memory for " record " message"

// --- The readers of records, at level 6 ----------------------------------------------------------

/// What stands between the reader's name and the member in the trace of a number or float, and what
/// stands after the member: "_kvt_txt_unpack_msg_vemra_end_job p_msg->job_id[0x%x]\n".
inline constexpr char trace_member[] = " p_msg->";
inline constexpr char trace_value[] = "[0x%x]\n";

/// Of an unknown line; the reader's name is a string literal.
#define KVT_MISMATCH_TEXT(reader) reader " mismatch, txt_msg[%.50s]\n"

/// Of the reader of arrays of one width.
struct ArrayTexts {
    const char *reader;
    const char *conversion; ///< after the key, in the format that a mismatch shows
    const char *mismatch;
    const char *element;
    const char *end;
};

#define KVT_ARRAY_TEXTS(reader, conversion)                                                        \
    {                                                                                              \
        reader, conversion, reader " missmatch, array[%.50s], frame_key[%.50s], value[%lx]\n",     \
            reader " element[%u]=[0x%lx]\n",                                                       \
            reader " END prim ptr, num_lements[0x%x], array[0][0x%lx]\n"                           \
    }

inline constexpr ArrayTexts array16 = KVT_ARRAY_TEXTS("_kvt_txt_unpack_primptr_uint16_t", ":%hu");
inline constexpr ArrayTexts array32 = KVT_ARRAY_TEXTS("_kvt_txt_unpack_primptr_uint32_t", ":%u");
inline constexpr ArrayTexts array64 = KVT_ARRAY_TEXTS("_kvt_txt_unpack_primptr_uint64_t", ":%lu");

inline constexpr char bytes_reader[] = "_kvt_txt_unpack_primarray_uint8_t";
inline constexpr char byte_value[] = "_kvt_txt_unpack_primarray_uint8_t txt unpack value[0x%x]\n";
inline constexpr char end_of_bytes[] =
    "_kvt_txt_unpack_primarray_uint8_t END ARRAY, key[%.50s] array[%.50s]\n";

inline constexpr char text_reader[] = "_kvt_txt_unpack_primarray_char";
inline constexpr char text_value[] = "_kvt_txt_unpack_primarray_char txt unpack value[%.50s]\n";
inline constexpr char text_of_another_key[] =
    "_kvt_txt_unpack_primarray_char strncmp ret not 0, key[%.50s] array[%.50s]\n";

inline constexpr char joined_reader[] = "_kvt_txt_unpack_primptr_char";
inline constexpr char joined_conversion[] = ":%*[^\"]\"%[^\"]\"";
inline constexpr char joined_mismatch[] =
    "_kvt_txt_unpack_primptr_char missmatch, array[%.50s], frame_key[%.50s], value[%.50s]\n";
inline constexpr char joined_value[] =
    "_kvt_txt_unpack_primptr_char dst_ptr[%.50s], value[%.50s]\n";
inline constexpr char end_of_joined[] =
    "_kvt_txt_unpack_primptr_char END prim ptr, num_lements[0x%x], array[0][0x%lx]\n";

} // namespace kvt_str::log_texts
