// The notation of the tables:
//
//     RECORD(vemra_request_sm_data,
//         _kvt_txt_pack_msg_vemra_request_sm_data, _kvt_txt_unpack_msg_vemra_request_sm_data,
//         FIELD(job_id),
//         FIELD(data_type, always));
//
// defines RecordOf<vemra_request_sm_data>::table, and the record's named routines with
// CodecOf<vemra_request_sm_data>::codec. A row's kind and width follow from the C type of its
// member; a member of the wrong type, a member that no row covers and a key that an earlier one
// would capture do not compile.
//
//     FIELD(member)                number, float or text; the key is the member's name
//     FIELD_AS("key", member)      the same under a key of its own
//     JOINED_TEXT(member, length)  string on the heap, several lines joined with commas
//     ARRAY(member, count)         numbers on the heap, one line each
//     BYTES(member, terminator)    bytes in the record, one line each
//     BLOCK(member)                record in the record
//     RUN(member, count)           records on the heap, one block each
//     RUN_AS("key", member, count) the same under a block name of its own
//     SLOTS(member, count)         records in the record, one block each
//
// Options (row.h) follow the other arguments.
//
// Two other forms of RECORD:
//
//     UNROLLED_RECORD(type, pack, unpack, at_levels(2, 3), rows...)   for speed: see unrolled.h
//     DEFINE_RECORD(type, pack, unpack, reading, levels, rows...)     with all particulars
//
// The file of a family is compiled twice: with KVT_TABLES_ALONE it defines the tables, for
// libraries that neither write nor read, and with KVT_CODECS_ALONE the rest. Without either it
// defines both.
#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

#include "engine/row.h"
#include "engine/table_checks.h"
#ifndef KVT_TABLES_ALONE
#include "engine/element_codecs.h"
#include "engine/trace_texts.h"
#include "engine/unrolled.h"
#endif

namespace kvt_str {

// --- Rows ----------------------------------------------------------------------------------------

template <typename Member, size_t size>
constexpr Row make_row(const char (&label)[size], size_t offset, RowKind kind, unsigned options) {
    Row row;
    row.label = make_label(label);
    row.kind = kind;
    row.key_length = static_cast<uint8_t>(row.label.length - (row.opens_block() ? 3 : 2));
    row.options = static_cast<uint8_t>(options);
    row.capacity = std::is_array_v<Member> ? std::extent_v<Member> : 1;
    row.offset = static_cast<uint32_t>(offset);
    row.size = sizeof(Member);
    return row;
}

/// The kind of a number or of an array of numbers, by the width of one.
template <typename Number>
constexpr RowKind by_width(RowKind one, RowKind two, RowKind four, RowKind eight) {
    return sizeof(Number) == 1   ? one
           : sizeof(Number) == 2 ? two
           : sizeof(Number) == 4 ? four
                                 : eight;
}

template <typename Member, size_t size>
constexpr Row make_field(const char (&label)[size], size_t offset, unsigned options = no_options) {
    if constexpr (std::is_array_v<Member>) {
        static_assert(std::is_same_v<std::remove_extent_t<Member>, char>,
                      "a FIELD that is an array is a text");
        static_assert(std::extent_v<Member> > 50, "a trace shows 50 characters of the member");
        static_assert(std::extent_v<Member> <= 200, "a reader takes 199 characters at most");
        return make_row<Member>(label, offset, RowKind::text, options);
    } else if constexpr (std::is_same_v<Member, float>) {
        return make_row<Member>(label, offset, RowKind::real, options);
    } else if constexpr (std::is_same_v<Member, int32_t>) {
        return make_row<Member>(label, offset, RowKind::signed32, options);
    } else {
        static_assert(std::is_unsigned_v<Member>, "a FIELD is a number, a float or a text");
        return make_row<Member>(label, offset,
                                by_width<Member>(RowKind::number8, RowKind::number16,
                                                 RowKind::number32, RowKind::number64),
                                options);
    }
}

template <typename Count> constexpr Row with_count(Row row, size_t offset) {
    static_assert(std::is_unsigned_v<Count>, "a count is an unsigned number");
    row.count_offset = static_cast<uint32_t>(offset);
    row.count_width = sizeof(Count);
    return row;
}

template <typename Member, typename Length, size_t size>
constexpr Row make_joined_text(const char (&label)[size], size_t offset, size_t length_offset) {
    static_assert(std::is_same_v<Member, char *>, "a JOINED_TEXT is a char pointer");
    static_assert(sizeof(Length) == 4, "the length of a JOINED_TEXT has 32 bits");
    return with_count<Length>(make_row<Member>(label, offset, RowKind::joined_text, no_options),
                              length_offset);
}

template <typename Member, typename Count, size_t size>
constexpr Row make_array(const char (&label)[size], size_t offset, size_t count_offset) {
    using Number = std::remove_pointer_t<Member>;
    static_assert(std::is_pointer_v<Member> && std::is_unsigned_v<Number> && sizeof(Number) >= 2,
                  "an ARRAY is a pointer to unsigned numbers of 16, 32 or 64 bits");
    static_assert(sizeof(Count) == 4, "the count of an ARRAY has 32 bits");
    return with_count<Count>(make_row<Member>(label, offset,
                                              by_width<Number>(RowKind::bytes, RowKind::array16,
                                                               RowKind::array32, RowKind::array64),
                                              no_options),
                             count_offset);
}

template <typename Member, size_t size>
constexpr Row make_bytes(const char (&label)[size], size_t offset, uint8_t terminator,
                         unsigned options = no_options) {
    static_assert(std::is_same_v<std::remove_extent_t<Member>, uint8_t> && std::is_array_v<Member>,
                  "BYTES are an array of uint8_t");
    Row row = make_row<Member>(label, offset, RowKind::bytes, options);
    row.terminator = terminator;
    return row;
}

/// A row whose lines are blocks of records of type `Element`.
template <typename Element> struct BlockRow : Row {
    constexpr explicit BlockRow(const Row &row) : Row(row) { element = &RecordOf<Element>::table; }
};

template <typename Member, size_t size>
constexpr BlockRow<Member> make_block(const char (&label)[size], size_t offset) {
    return BlockRow<Member>(make_row<Member>(label, offset, RowKind::block, no_options));
}

template <typename Member, typename Count, size_t size>
constexpr auto make_run(const char (&label)[size], size_t offset, size_t count_offset,
                        unsigned options = no_options) {
    static_assert(std::is_pointer_v<Member>, "a RUN is a pointer to records");
    const Row row = make_row<Member>(label, offset, RowKind::run, options);
    return BlockRow<std::remove_pointer_t<Member>>(with_count<Count>(row, count_offset));
}

template <typename Member, typename Count, size_t size>
constexpr auto make_slots(const char (&label)[size], size_t offset, size_t count_offset) {
    static_assert(std::is_array_v<Member>, "SLOTS are an array of records");
    static_assert(sizeof(Count) == 1, "the count of SLOTS has 8 bits");
    const Row row = make_row<Member>(label, offset, RowKind::slots, no_options);
    return BlockRow<std::remove_extent_t<Member>>(with_count<Count>(row, count_offset));
}

// Macros, since only they can name a member. `Type` is the record's, within RECORD.
#define KVT_TYPE_OF(member) decltype(std::declval<Type &>().member)
#define FIELD_AS(key, member, ...)                                                                 \
    make_field<KVT_TYPE_OF(member)>(KVT_BLANKS key ": ",                                           \
                                    offsetof(Type, member) __VA_OPT__(, ) __VA_ARGS__)
#define FIELD(member, ...) FIELD_AS(#member, member __VA_OPT__(, ) __VA_ARGS__)
#define JOINED_TEXT(member, length)                                                                \
    make_joined_text<KVT_TYPE_OF(member), KVT_TYPE_OF(length)>(                                    \
        KVT_BLANKS #member ": ", offsetof(Type, member), offsetof(Type, length))
#define ARRAY(member, count)                                                                       \
    make_array<KVT_TYPE_OF(member), KVT_TYPE_OF(count)>(                                           \
        KVT_BLANKS #member ": ", offsetof(Type, member), offsetof(Type, count))
#define BYTES(member, ...)                                                                         \
    make_bytes<KVT_TYPE_OF(member)>(KVT_BLANKS #member ": ", offsetof(Type, member), __VA_ARGS__)
#define BLOCK(member)                                                                              \
    make_block<KVT_TYPE_OF(member)>(KVT_BLANKS #member " {\n", offsetof(Type, member))
#define RUN_AS(key, member, count, ...)                                                            \
    make_run<KVT_TYPE_OF(member), KVT_TYPE_OF(count)>(                                             \
        KVT_BLANKS key " {\n", offsetof(Type, member),                                             \
        offsetof(Type, count) __VA_OPT__(, ) __VA_ARGS__)
#define RUN(member, count, ...) RUN_AS(#member, member, count __VA_OPT__(, ) __VA_ARGS__)
#define SLOTS(member, count)                                                                       \
    make_slots<KVT_TYPE_OF(member), KVT_TYPE_OF(count)>(                                           \
        KVT_BLANKS #member " {\n", offsetof(Type, member), offsetof(Type, count))

// --- The finished table --------------------------------------------------------------------------

template <typename Source> struct Finished {
    static_assert(keys_are_plain(Source::rows), "a key is 2 to 99 of a to z, 0 to 9 and _");
    static_assert(keys_reachable(Source::rows), "an earlier key is a prefix of a later one");
    static_assert(rows_cover_struct<Source>(),
                  "a member of the record has no row, or two: compare the struct with its table");
    static_assert(count_counted_rows<Source>() <= most_counted_rows, "raise most_counted_rows");

    static constexpr size_t row_count = std::size(Source::rows);

    struct NumberedRows {
        Row at[row_count];
    };

    static constexpr NumberedRows numbered = [] {
        NumberedRows result{};
        uint8_t counted = 0;
        for (size_t i = 0; i < row_count; ++i) {
            result.at[i] = Source::rows[i];
            result.at[i].index = static_cast<uint8_t>(i);
            if (result.at[i].counts_elements()) {
                result.at[i].counted_index = counted++;
            }
        }
        return result;
    }();

    static constexpr Rows rows = {numbered.at, row_count};
};

// clang-format off
/// The rows of `type`. They have a name that other files know, so that the two objects which are
/// made of one file share them.
#define KVT_ROWS(type, ...)                                                                        \
    namespace tables_of {                                                                          \
    struct type {                                                                                  \
        using Type = ::type;                                                                       \
        static constexpr Row rows[] = {__VA_ARGS__};                                               \
    };                                                                                             \
    }

#define KVT_RECORD(type, unpack_routine, how)                                                      \
    Record {                                                                                       \
        .name = #type,                                                                             \
        .reader = #unpack_routine,                                                                 \
        .rows = Finished<tables_of::type>::rows,                                                   \
        .size = sizeof(type),                                                                      \
        .has_pointers = has_pointers<tables_of::type>(),                                           \
        .reading = (how),                                                                          \
    }

#ifdef KVT_CODECS_ALONE
#define KVT_TABLE(type, unpack_routine, how)
#else
#define KVT_TABLE(type, unpack_routine, how)                                                       \
    template <>                                                                                    \
    constinit const Record RecordOf<type>::table = KVT_RECORD(type, unpack_routine, how);
#endif

#ifdef KVT_TABLES_ALONE
#define KVT_CODEC(type, pack_routine, unpack_routine, how, levels, ...)
#else
#define KVT_CODEC(type, pack_routine, unpack_routine, how, levels, ...)                            \
    namespace {                                                                                    \
    struct type##_codec {                                                                          \
        using Type = ::type;                                                                       \
        using Table = Finished<tables_of::type>;                                                   \
        static constexpr char reader[] = #unpack_routine;                                          \
        static constexpr auto elements = element_codecs(__VA_ARGS__);                              \
    };                                                                                             \
    using type##_routines = Routines<type##_codec, levels>;                                        \
    }                                                                                              \
    template <> constinit const Codec CodecOf<type>::codec = {                                     \
        KVT_RECORD(type, unpack_routine, how),                                                     \
        KVT_MISMATCH_TEXT(#unpack_routine),                                                        \
        Traces<type##_codec>::formats.at,                                                          \
        type##_codec::elements.at,                                                                 \
        pack_routine,                                                                              \
        type##_routines::measure,                                                                  \
        unpack_routine,                                                                            \
    };                                                                                             \
    char *pack_routine(const void *record, unsigned level, char *out) {                            \
        return type##_routines::write(record, level, out);                                         \
    }                                                                                              \
    const char *unpack_routine(Input &input, const char *at, void *record, unsigned level) {       \
        return type##_routines::read(input, at, record, level);                                    \
    }
#endif

#define DEFINE_RECORD(type, pack_routine, unpack_routine, how, levels, ...)                        \
    KVT_ROWS(type, __VA_ARGS__)                                                                    \
    KVT_TABLE(type, unpack_routine, how)                                                           \
    KVT_CODEC(type, pack_routine, unpack_routine, how, levels, __VA_ARGS__)                        \
    static_assert(true)
// clang-format on

#define RECORD(type, pack_routine, unpack_routine, ...)                                            \
    DEFINE_RECORD(type, pack_routine, unpack_routine, Reading::cleared_and_traced, at_levels(),    \
                  __VA_ARGS__)
#define UNROLLED_RECORD(type, pack_routine, unpack_routine, levels, ...)                           \
    DEFINE_RECORD(type, pack_routine, unpack_routine, Reading::cleared_and_traced, levels,         \
                  __VA_ARGS__)

} // namespace kvt_str
