#include "engine/read_arrays.h"

#include <cstdlib>
#include <cstring>

#include "engine/log.h"
#include "engine/member.h"
#include "engine/read_line.h"
#include "engine/release.h"

namespace kvt_str {

namespace {

// --- What the traces show ------------------------------------------------------------------------

/// The key and its conversion. Only made for a trace, and lives as long as that.
struct ScanFormat {
    char text[128] = {};

    ScanFormat(const Row &row, const char *conversion) {
        std::memcpy(text, row.label.text, row.key_length);
        std::memcpy(text + row.key_length, conversion, std::strlen(conversion));
    }
};

/// The first characters of a text that has no NUL. Only made for a trace, and lives as long as
/// that.
struct Excerpt {
    char text[51] = {};

    explicit Excerpt(std::string_view from) {
        const char *at = from.data();
        for (size_t i = 0; i < from.size() && i < sizeof text - 1; ++i) {
            text[i] = at[i];
        }
    }
};

/// A row's key alone. Only made for a trace, and lives as long as that.
struct Key : ScanFormat {
    explicit Key(const Row &row) : ScanFormat(row, "") {}
};

constexpr char quoted_conversion[] = ":%*[^\"]\"%[^\"]\"";

// --- Numbers -------------------------------------------------------------------------------------

/// The texts of one width's traces.
struct NumberTraces {
    const char *reader;
    const char *conversion;
    const char *mismatch;
    const char *element;
    const char *end;
};

#define KVT_NUMBER_TRACES(reader, conversion)                                                      \
    NumberTraces {                                                                                 \
        reader, conversion, reader " missmatch, array[%.50s], frame_key[%.50s], value[%lx]\n",     \
            reader " element[%u]=[0x%lx]\n",                                                       \
            reader " END prim ptr, num_lements[0x%x], array[0][0x%lx]\n"                           \
    }

template <typename Number>
const char *read_numbers(Input &input, const Row &row, const char *at, void *record,
                         CountedArrays &heap, GrowingArray array, const NumberTraces &traces) {
    input.straight = false;
    Number value = 0;
    for (;;) {
        const char *key = skip_blanks(at);
        if (!has_key(row, key)) {
            break;
        }
        at = input.text.after_line(key);
        uint64_t scanned;
        if (!scan_value(row, key, scanned)) {
            if (listens(trace_level)) {
                trace(traces.reader, traces.mismatch, key, ScanFormat(row, traces.conversion).text,
                      static_cast<unsigned long>(value));
            }
            continue;
        }
        value = static_cast<Number>(scanned);
        char *element = array.next();
        if (element != nullptr) {
            store(element, value);
            ++array.count;
            trace(traces.reader, traces.element, static_cast<unsigned>(array.count),
                  static_cast<unsigned long>(value));
        }
    }
    // An array without elements has no first one to show: 0 stands for it.
    trace(traces.reader, traces.end, static_cast<unsigned>(array.count),
          array.count != 0 ? static_cast<unsigned long>(load<Number>(array.block)) : 0UL);
    replace_array(row, input, record, heap, array, input.lying_counts.size());
    return at;
}

// --- Joined strings ------------------------------------------------------------------------------

/// A string that grows by a comma-ended value at a time. The room reckoned for a value is one more
/// than it takes, and is doubled at most once for it: both decide where a long value is cut.
struct JoinedString {
    char *text = nullptr;
    size_t capacity = 0;
    size_t reckoned = 0;
    size_t length = 0;

    bool append(std::string_view value) {
        const size_t needed = reckoned + value.size() + 2;
        if (needed > capacity && !grow(value.size())) {
            return false;
        }
        add(value.data(), value.size());
        add(",", 1);
        reckoned = needed;
        return true;
    }

private:
    bool grow(size_t first_length) {
        const size_t grown = text == nullptr ? first_lengths * first_length : 2 * capacity;
        void *moved = text == nullptr ? std::calloc(grown, 1) : std::realloc(text, grown);
        if (moved == nullptr) {
            return false;
        }
        text = static_cast<char *>(moved);
        capacity = grown;
        return true;
    }

    void add(const char *characters, size_t count) {
        const size_t room = capacity - 1 - length;
        const size_t added = count < room ? count : room;
        std::memcpy(text + length, characters, added);
        length += added;
        text[length] = '\0';
    }
};

} // namespace

void replace_array(const Row &row, const Input &input, void *record, CountedArrays &heap,
                   const GrowingArray &array, size_t first_lie) {
    char *member = member_of(row, record);
    void *earlier = load<void *>(member);
    if (row.kind == RowKind::run) {
        LyingCounts::Cursor lying(input.lying_counts, heap.first_lie[row.counted_index]);
        release_elements(*row.element, earlier, 0, heap.elements[row.counted_index], &lying);
    }
    std::free(earlier);
    store(member, array.block);
    store_count(row, record, array.count);
    heap.elements[row.counted_index] = array.count;
    heap.first_lie[row.counted_index] = first_lie;
}

const char *_kvt_txt_unpack_primptr_uint16_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap,
                                             GrowingArray array) {
    static constexpr NumberTraces traces =
        KVT_NUMBER_TRACES("_kvt_txt_unpack_primptr_uint16_t", ":%hu");
    return read_numbers<uint16_t>(input, row, at, record, heap, array, traces);
}

const char *_kvt_txt_unpack_primptr_uint32_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap,
                                             GrowingArray array) {
    static constexpr NumberTraces traces =
        KVT_NUMBER_TRACES("_kvt_txt_unpack_primptr_uint32_t", ":%u");
    return read_numbers<uint32_t>(input, row, at, record, heap, array, traces);
}

const char *_kvt_txt_unpack_primptr_uint64_t(Input &input, const Row &row, const char *at,
                                             void *record, CountedArrays &heap,
                                             GrowingArray array) {
    static constexpr NumberTraces traces =
        KVT_NUMBER_TRACES("_kvt_txt_unpack_primptr_uint64_t", ":%lu");
    return read_numbers<uint64_t>(input, row, at, record, heap, array, traces);
}

const char *_kvt_txt_unpack_primptr_char(Input &input, const Row &row, const char *at,
                                         void *record) {
    static constexpr char reader[] = "_kvt_txt_unpack_primptr_char";
    input.straight = false;
    JoinedString joined;
    unsigned count = 0;
    // The traces show the buffer that a value is scanned into. It is cleared once the value has
    // been added, so most of them show nothing, but a value for which there was no memory stays in
    // it.
    std::string_view buffered;
    for (at = skip_blanks(at); has_key(row, at); at = skip_blanks(input.text.after_line(at))) {
        const std::string_view value =
            input.text.scan_quoted(at + row.key_length, longest_joined_value);
        if (value.empty()) {
            if (listens(trace_level)) {
                trace(reader,
                      "_kvt_txt_unpack_primptr_char missmatch, array[%.50s], frame_key[%.50s], "
                      "value[%.50s]\n",
                      at, ScanFormat(row, quoted_conversion).text, Excerpt(buffered).text);
            }
        } else if (joined.append(value)) {
            ++count;
            buffered = {};
            trace(reader, "_kvt_txt_unpack_primptr_char dst_ptr[%.50s], value[%.50s]\n",
                  joined.text, "");
        } else {
            buffered = value;
        }
    }
    // The first character is shown with its sign, on every machine; 0 stands for an empty string.
    const long first = joined.text != nullptr ? static_cast<signed char>(joined.text[0]) : 0;
    trace(reader, "_kvt_txt_unpack_primptr_char END prim ptr, num_lements[0x%x], array[0][0x%lx]\n",
          count, static_cast<unsigned long>(first));
    // The last comma gives way to the NUL, so the length so far is that of the string with its NUL.
    // A string that was cut short loses its last character in place of the comma.
    if (joined.text != nullptr) {
        joined.text[joined.length - 1] = '\0';
    }
    replace_text(row, record, joined.text, joined.length);
    return at;
}

const char *_kvt_txt_unpack_primarray_char(Input &input, const Row &row, const char *at,
                                           void *record) {
    static constexpr char reader[] = "_kvt_txt_unpack_primarray_char";
    input.straight = false;
    char *member = member_of(row, record);
    std::memset(member, 0, row.capacity);
    at = skip_blanks(at);
    if (!has_key(row, at)) {
        trace(reader, "_kvt_txt_unpack_primarray_char strncmp ret not 0, key[%.50s] array[%.50s]\n",
              Key(row).text, at);
        return at;
    }
    const std::string_view value = input.text.scan_quoted(at + row.key_length, longest_text_value);
    const size_t room = row.capacity - size_t{1};
    if (!value.empty()) {
        std::memcpy(member, value.data(), value.size() < room ? value.size() : room);
    }
    at = input.text.after_line(at);
    trace(reader, "_kvt_txt_unpack_primarray_char txt unpack value[%.50s]\n", member);
    return at;
}

const char *_kvt_txt_unpack_primarray_uint8_t(Input &input, const Row &row, const char *at,
                                              void *record) {
    static constexpr char reader[] = "_kvt_txt_unpack_primarray_uint8_t";
    input.straight = false;
    char *member = member_of(row, record);
    if (row.has(clear_at_run)) {
        std::memset(member, 0, row.capacity);
    }
    at = skip_blanks(at);
    for (unsigned i = 0; i < row.capacity; ++i) {
        if (!has_key(row, at)) {
            if (listens(trace_level)) {
                trace(reader,
                      "_kvt_txt_unpack_primarray_uint8_t END ARRAY, key[%.50s] array[%.50s]\n",
                      Key(row).text, at);
            }
            return at;
        }
        uint64_t value = 0;
        scan_value(row, at, value);
        store(member + i, static_cast<uint8_t>(value));
        at = skip_blanks(input.text.after_line(at));
        trace(reader, "_kvt_txt_unpack_primarray_uint8_t txt unpack value[0x%x]\n",
              static_cast<unsigned>(static_cast<uint8_t>(value)));
    }
    while (has_key(row, at)) {
        at = skip_blanks(input.text.after_line(at));
    }
    return at;
}

const char *read_run(Input &input, const Row &row, const char *at, void *record, unsigned level,
                     CountedArrays &heap, GrowingArray array, size_t first_lie) {
    input.straight = false;
    do {
        char *element = array.next();
        if (element != nullptr) {
            at = row.element->unpack(input, input.text.after_line(at), element, level);
            at = skip_blanks(at);
            ++array.count;
        } else {
            at = input.text.find_block_end(at);
        }
    } while (has_key(row, at));
    replace_array(row, input, record, heap, array, first_lie);
    return at;
}

const char *read_slots(Input &input, const Row &row, const char *at, void *record, unsigned level) {
    input.straight = false;
    char *slot = member_of(row, record);
    unsigned in_use = 0;
    do {
        at = row.element->unpack(input, input.text.after_line(at), slot, level);
        at = skip_blanks(at);
        slot += row.element->size;
        ++in_use;
    } while (in_use < row.capacity && has_key(row, at));
    while (has_key(row, at)) {
        at = input.text.find_block_end(at);
    }
    store_count(row, record, in_use);
    return at;
}

namespace {

/// Makes the count of a row agree with the elements that were read.
void make_count_agree(const Row &row, void *record, uint64_t elements) {
    char *member = member_of(row, record);
    const uint64_t count = load_count(row, record);
    if (count > elements) {
        store_count(row, record, elements);
    } else if (count < elements) {
        if (row.kind == RowKind::run) {
            release_elements(*row.element, load<void *>(member), count, elements);
        }
        if (count == 0) {
            std::free(load<void *>(member));
            store<void *>(member, nullptr);
        }
    }
}

} // namespace

void remember_lying_counts(const Record &table, Input &input, void *record,
                           const CountedArrays &heap) {
    for (const Row &row : table.rows) {
        if (row.kind != RowKind::run) {
            continue;
        }
        const uint64_t elements = heap.elements[row.counted_index];
        if (elements != 0 && load_count(row, record) != elements && owns_memory(*row.element) &&
            !input.lying_counts.remember(load<void *>(member_of(row, record)), elements)) {
            // Without memory for the truth the count itself must tell it. Nothing is released: the
            // counts of the elements may lie, too.
            store_count(row, record, elements);
        }
    }
}

void make_counts_agree(const Record &table, void *record, const CountedArrays &heap) {
    for (const Row &row : table.rows) {
        if (row.counts_elements()) {
            make_count_agree(row, record, heap.elements[row.counted_index]);
        }
    }
}

} // namespace kvt_str
