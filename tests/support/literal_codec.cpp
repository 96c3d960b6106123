#include "support/literal_codec.h"

#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "engine/release.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/scan_as_long.h"

namespace kvt_test {

namespace {

using namespace kvt_str;

std::string key_of(const Row &row) {
    return {row.label.text, row.key_length};
}

bool has(const char *at, const std::string &key) {
    return std::strncmp(at, key.c_str(), key.size()) == 0;
}

const char *next(const char *at) {
    return ::next_line(at);
}

template <typename... Arguments>
void say(const std::string &function, const std::string &format, Arguments... arguments) {
    if (log_cb != nullptr && log_level >= 6) {
        log_cb("literal_codec.cpp", 1, function.c_str(), 6, format.c_str(), arguments...);
    }
}

char *at_offset(void *record, uint32_t offset) {
    return static_cast<char *>(record) + offset;
}

template <typename Value> Value get(const void *at) {
    Value value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <typename Value> void put(void *at, Value value) {
    std::memcpy(at, &value, sizeof value);
}

uint64_t get_number(const void *at, unsigned width) {
    return width == 1   ? get<uint8_t>(at)
           : width == 2 ? get<uint16_t>(at)
           : width == 4 ? get<uint32_t>(at)
                        : get<uint64_t>(at);
}

void put_number(void *at, unsigned width, uint64_t value) {
    switch (width) {
    case 1:
        put(at, static_cast<uint8_t>(value));
        break;
    case 2:
        put(at, static_cast<uint16_t>(value));
        break;
    case 4:
        put(at, static_cast<uint32_t>(value));
        break;
    default:
        put(at, value);
    }
}

const char *conversion(unsigned width) {
    return width == 1 ? "%hhu" : width == 2 ? "%hu" : width == 4 ? "%u" : "%lu";
}

/// Scans a number of `width` bytes into a place that need not be aligned.
void scan_into(const char *text, const std::string &format, unsigned width, char *place) {
    const auto scan = [&](auto number) {
        if (scan_as_long(text, format, &number) == 1) {
            put(place, number);
        }
    };
    switch (width) {
    case 1:
        return scan(uint8_t{});
    case 2:
        return scan(uint16_t{});
    case 4:
        return scan(uint32_t{});
    default:
        return scan(uint64_t{});
    }
}

/// Where a number of `width` bytes lies that is the low end of one of 64 bits.
char *low_bytes(uint64_t &number, unsigned width) {
    const size_t higher = std::endian::native == std::endian::big ? sizeof number - width : 0;
    return reinterpret_cast<char *>(&number) + higher;
}

class LiteralReader {
public:
    LiteralReader(const Record &table, void *record, Counts counts)
        : table_(table), record_(record), counts_mode_(counts) {}

    const char *read(const char *at) {
        if (table_.reading == Reading::cleared_and_traced) {
            std::memset(record_, 0, table_.size);
        }
        at = read_lines(next(at));
        if (counts_mode_ == Counts::agree) {
            make_agree();
        }
        return at;
    }

private:
    const char *read_lines(const char *at) {
        do {
            if (*at == '\0') {
                return at;
            }
            at = read_line(at);
        } while (check_end_msg(at) == 0);
        return next(at);
    }

    const char *read_line(const char *at) {
        for (const Row &row : table_.rows) {
            if (has(at, key_of(row))) {
                return take(row, at);
            }
        }
        if (check_end_msg(at) == 1) {
            return at;
        }
        if (table_.reading == Reading::cleared_and_traced) {
            say(table_.reader, std::string(table_.reader) + " mismatch, txt_msg[%.50s]\n", at);
        }
        return check_start_msg(at) == 1 ? find_end_msg(at) : next(at);
    }

    const char *take(const Row &row, const char *at) {
        char *member = at_offset(record_, row.offset);
        switch (row.kind) {
        case RowKind::number8:
        case RowKind::number16:
        case RowKind::number32:
        case RowKind::number64:
        case RowKind::signed32: {
            const std::string format = key_of(row) + ":" + conversion(row.size);
            if (row.has(shared_value)) {
                scan_into(at, format, row.size, low_bytes(shared_, row.size));
                put_number(member, row.size, shared_);
            } else {
                scan_into(at, format, row.size, member);
            }
            at = next(at);
            say_value(row, static_cast<unsigned>(get_number(member, row.size)));
            return at;
        }
        case RowKind::real: {
            std::sscanf(at, (key_of(row) + ":%f").c_str(), member);
            at = next(at);
            const auto value = get<float>(member);
            const bool held = std::fabs(value) < std::ldexp(1.0F, 56);
            say_value(row, held ? static_cast<unsigned>(static_cast<int64_t>(value)) : 0U);
            return at;
        }
        case RowKind::text:
            return read_text(row, at);
        case RowKind::joined_text:
            return read_joined(row, at);
        case RowKind::array16:
            return read_numbers<uint16_t>(row, at, "_kvt_txt_unpack_primptr_uint16_t");
        case RowKind::array32:
            return read_numbers<uint32_t>(row, at, "_kvt_txt_unpack_primptr_uint32_t");
        case RowKind::array64:
            return read_numbers<uint64_t>(row, at, "_kvt_txt_unpack_primptr_uint64_t");
        case RowKind::bytes:
            return read_bytes(row, at);
        case RowKind::block:
            if (row.element->has_pointers) {
                release_members(*row.element, member);
            }
            return literal_read(*row.element, at, member, counts_mode_);
        case RowKind::run:
            return read_run(row, at);
        case RowKind::slots:
            return read_slots(row, at);
        }
        std::abort();
    }

    void say_value(const Row &row, unsigned value) {
        if (table_.reading == Reading::cleared_and_traced) {
            say(table_.reader, std::string(table_.reader) + " p_msg->" + key_of(row) + "[0x%x]\n",
                value);
        }
    }

    const char *read_text(const Row &row, const char *at) {
        const std::string function = "_kvt_txt_unpack_primarray_char";
        char *member = at_offset(record_, row.offset);
        std::memset(member, 0, row.capacity);
        char value[200] = {};
        std::sscanf(at, (key_of(row) + R"(:%*[^"]"%199[^"]")").c_str(), value);
        const size_t length = std::strlen(value);
        std::memcpy(member, value, length < row.capacity - 1U ? length : row.capacity - 1U);
        at = next(at);
        say(function, function + " txt unpack value[%.50s]\n", value);
        return at;
    }

    template <typename Number>
    const char *read_numbers(const Row &row, const char *at, const std::string &function) {
        const std::string format = key_of(row) + ":" + conversion(sizeof(Number));
        Number *block = nullptr;
        size_t capacity = 0;
        size_t used = 0;
        uint32_t count = 0;
        Number value = 0;
        while (has(at, key_of(row))) {
            if (scan_as_long(at, format, &value) != 1) {
                say(function, function + " missmatch, array[%.50s], frame_key[%.50s], value[%lx]\n",
                    at, format.c_str(), static_cast<unsigned long>(value));
            } else {
                if (used + sizeof(Number) > capacity) {
                    void *grown = block == nullptr ? std::calloc(5, sizeof(Number))
                                                   : std::realloc(block, 2 * capacity);
                    if (grown == nullptr) {
                        at = next(at);
                        continue;
                    }
                    capacity = block == nullptr ? 5 * sizeof(Number) : 2 * capacity;
                    block = static_cast<Number *>(grown);
                }
                used += sizeof(Number);
                block[count++] = value;
                say(function, function + " element[%u]=[0x%lx]\n", count,
                    static_cast<unsigned long>(value));
            }
            at = next(at);
        }
        say(function, function + " END prim ptr, num_lements[0x%x], array[0][0x%lx]\n", count,
            count != 0 ? static_cast<unsigned long>(block[0]) : 0UL);
        replace(row, block, count);
        return at;
    }

    const char *read_joined(const Row &row, const char *at) {
        const std::string function = "_kvt_txt_unpack_primptr_char";
        const std::string format = key_of(row) + R"(:%*[^"]"%[^"]")";
        const std::string bounded = key_of(row) + R"(:%*[^"]"%298[^"]")";
        char value[300] = {};
        char *string = nullptr;
        size_t capacity = 0;
        size_t reserved = 0;
        unsigned count = 0;
        while (has(at, key_of(row))) {
            if (std::sscanf(at, bounded.c_str(), value) != 1) {
                say(function,
                    function + " missmatch, array[%.50s], frame_key[%.50s], value[%.50s]\n", at,
                    format.c_str(), value);
            } else {
                const size_t length = std::strlen(value);
                const size_t needed = reserved + length + 2;
                if (needed > capacity) {
                    void *grown = string == nullptr ? std::calloc(5 * length, 1)
                                                    : std::realloc(string, 2 * capacity);
                    if (grown == nullptr) {
                        at = next(at);
                        continue;
                    }
                    capacity = string == nullptr ? 5 * length : 2 * capacity;
                    string = static_cast<char *>(grown);
                }
                std::strcat(value, ",");
                std::strncat(string, value, capacity - 1 - std::strlen(string));
                std::memset(value, 0, length + 1);
                reserved = needed;
                ++count;
                say(function, function + " dst_ptr[%.50s], value[%.50s]\n", string, value);
            }
            at = next(at);
        }
        const long first = string != nullptr ? static_cast<signed char>(string[0]) : 0;
        say(function, function + " END prim ptr, num_lements[0x%x], array[0][0x%lx]\n", count,
            static_cast<unsigned long>(first));
        uint32_t size = 0;
        if (string != nullptr) {
            size = static_cast<uint32_t>(std::strlen(string));
            string[size - 1] = '\0';
        }
        std::free(get<void *>(at_offset(record_, row.offset)));
        put(at_offset(record_, row.offset), string);
        put(at_offset(record_, row.count_offset), size);
        return at;
    }

    const char *read_bytes(const Row &row, const char *at) {
        const std::string function = "_kvt_txt_unpack_primarray_uint8_t";
        const std::string format = key_of(row) + ":%hhu";
        char *member = at_offset(record_, row.offset);
        if (row.has(clear_at_run)) {
            std::memset(member, 0, row.capacity);
        }
        for (unsigned i = 0; i < row.capacity; ++i) {
            if (!has(at, key_of(row))) {
                say(function, function + " END ARRAY, key[%.50s] array[%.50s]\n",
                    key_of(row).c_str(), at);
                return at;
            }
            uint8_t value = 0;
            scan_as_long(at, format, &value);
            put(member + i, value);
            at = next(at);
            say(function, function + " txt unpack value[0x%x]\n", static_cast<unsigned>(value));
        }
        while (has(at, key_of(row))) {
            at = next(at);
        }
        return at;
    }

    const char *read_run(const Row &row, const char *at) {
        const size_t size = row.element->size;
        char *block = nullptr;
        size_t capacity = 0;
        uint64_t count = 0;
        do {
            if ((count + 1) * size > capacity) {
                void *grown =
                    block == nullptr ? std::calloc(5, size) : std::realloc(block, 2 * capacity);
                if (grown == nullptr) {
                    at = find_end_msg(at);
                    continue;
                }
                capacity = block == nullptr ? 5 * size : 2 * capacity;
                block = static_cast<char *>(grown);
            }
            at = literal_read(*row.element, at, block + count * size, counts_mode_);
            ++count;
        } while (has(at, key_of(row)));
        replace(row, block, count);
        return at;
    }

    const char *read_slots(const Row &row, const char *at) {
        char *slots = at_offset(record_, row.offset);
        unsigned index = 0;
        for (;;) {
            at = literal_read(*row.element, at, slots + index * row.element->size, counts_mode_);
            ++index;
            if (index == row.capacity) {
                while (has(at, key_of(row))) {
                    at = find_end_msg(at);
                }
                break;
            }
            if (!has(at, key_of(row))) {
                break;
            }
        }
        put_number(at_offset(record_, row.count_offset), row.count_width, index);
        return at;
    }

    /// Stores an array, and frees the one that it replaces.
    void replace(const Row &row, void *block, uint64_t count) {
        void *earlier = get<void *>(at_offset(record_, row.offset));
        if (row.kind == RowKind::run) {
            release(row, earlier, 0, elements_[&row]);
        }
        std::free(earlier);
        put(at_offset(record_, row.offset), block);
        put_number(at_offset(record_, row.count_offset), row.count_width, count);
        elements_[&row] = count;
    }

    static void release(const Row &row, void *elements, uint64_t first, uint64_t end) {
        for (uint64_t i = first; i < end; ++i) {
            release_members(*row.element, static_cast<char *>(elements) + i * row.element->size);
        }
    }

    /// Lowers what says more than was read, and releases what a count hides.
    void make_agree() {
        for (const Row &row : table_.rows) {
            if (row.kind != RowKind::run && !row.is_array()) {
                continue;
            }
            char *count = at_offset(record_, row.count_offset);
            void *array = get<void *>(at_offset(record_, row.offset));
            const uint64_t said = get_number(count, row.count_width);
            const uint64_t read = elements_[&row];
            put_number(count, row.count_width, said < read ? said : read);
            if (row.kind == RowKind::run) {
                release(row, array, said, read);
            }
            if (said == 0) {
                std::free(array);
                put<void *>(at_offset(record_, row.offset), nullptr);
            }
        }
    }

    const Record &table_;
    void *record_;
    uint64_t shared_ = 0;
    Counts counts_mode_;
    std::map<const Row *, uint64_t> elements_; ///< that an array or a run has
};

__attribute__((format(printf, 1, 2))) std::string print(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char *text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    std::string printed(text, static_cast<size_t>(length));
    std::free(text);
    return printed;
}

} // namespace

const char *literal_read(const Record &table, const char *at, void *record, Counts counts) {
    return LiteralReader(table, record, counts).read(at);
}

std::string literal_write(const Record &table, const void *record, const std::string &name,
                          unsigned level) {
    const auto pad = [](unsigned depth) {
        return print("%*s", static_cast<int>(2 * depth), " ");
    };
    std::string out = pad(level) + name + " {\n";
    for (const Row &row : table.rows) {
        const char *member = static_cast<const char *>(record) + row.offset;
        const char *count_at = static_cast<const char *>(record) + row.count_offset;
        const std::string head = pad(level + 1) + key_of(row);
        const auto line = [&](uint64_t value) {
            out += head + print(": %" PRIu64, value) + "\n";
        };
        const auto quoted = [&](const char *text) {
            if (text != nullptr && text[0] != '\0') {
                out += head + print(": \"%s\"\n", text);
            }
        };
        const auto numbers = [&](unsigned width) {
            const char *elements = get<const char *>(member);
            for (uint32_t i = 0; elements != nullptr && i < get<uint32_t>(count_at); ++i) {
                line(get_number(elements + size_t{i} * width, width));
            }
        };
        const auto blocks = [&](const char *elements, uint64_t count) {
            for (uint64_t i = 0; elements != nullptr && i < count; ++i) {
                out += literal_write(*row.element, elements + i * row.element->size, key_of(row),
                                     level + 1);
            }
        };
        switch (row.kind) {
        case RowKind::number8:
        case RowKind::number16:
        case RowKind::number32:
        case RowKind::number64:
            if (get_number(member, row.size) != 0 || row.has(always)) {
                line(get_number(member, row.size));
            }
            break;
        case RowKind::signed32:
            if (get<int32_t>(member) != 0 || row.has(always)) {
                out += head + print(": %d\n", get<int32_t>(member));
            }
            break;
        case RowKind::real:
            if (get<float>(member) != 0.0F) {
                out += head + print(": %g\n", static_cast<double>(get<float>(member)));
            }
            break;
        case RowKind::text:
            quoted(std::string(member, strnlen(member, row.capacity)).c_str());
            break;
        case RowKind::joined_text:
            quoted(get<const char *>(member));
            break;
        case RowKind::array16:
            numbers(2);
            break;
        case RowKind::array32:
            numbers(4);
            break;
        case RowKind::array64:
            numbers(8);
            break;
        case RowKind::bytes:
            for (unsigned i = 0; i < row.capacity && get<uint8_t>(member + i) != row.terminator;
                 ++i) {
                line(get<uint8_t>(member + i));
            }
            break;
        case RowKind::block:
            blocks(member, 1);
            break;
        case RowKind::run: {
            const uint64_t count = get_number(count_at, row.count_width);
            blocks(get<const char *>(member),
                   row.has(low_32_bits) ? static_cast<uint32_t>(count) : count);
            break;
        }
        case RowKind::slots: {
            const uint64_t count = get_number(count_at, row.count_width);
            blocks(member, count < row.capacity ? count : row.capacity);
            break;
        }
        }
    }
    return out + pad(level) + "}\n";
}

} // namespace kvt_test
