#include "support/record_checker.h"

#include <malloc.h>

#include <cstring>
#include <set>

#include "engine/element_size.h"
#include "engine/member.h"
#include "support/memory_watch.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KVT_SANITIZER_KNOWS_BLOCKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) ||                         \
    __has_feature(thread_sanitizer)
#define KVT_SANITIZER_KNOWS_BLOCKS 1
#endif
#endif

#ifdef KVT_SANITIZER_KNOWS_BLOCKS
// Every sanitizer has these, but g++ has no header for them.
extern "C" int __sanitizer_get_ownership(const volatile void *block);
extern "C" size_t __sanitizer_get_allocated_size(const volatile void *block);
#endif

namespace kvt_test {

using namespace kvt_str;

namespace {

std::string key_of(const Row &row) {
    return {row.label.text, row.key_length};
}

/// Whether a key stands in the text, and how often at most: keys within longer words count too.
uint64_t occurrences(const char *text, const std::string &key) {
    uint64_t count = 0;
    for (const char *at = std::strstr(text, key.c_str()); at != nullptr;
         at = std::strstr(at + 1, key.c_str())) {
        ++count;
    }
    return count;
}

/// The elements that lie in a block from a MemoryWatch that marks growth.
uint64_t elements_there(const Row &row, const char *elements) {
    const size_t size = element_size(row);
    uint64_t count = watched_size(elements) / size;
    while (row.kind == RowKind::run && count != 0 &&
           is_marked(elements + (count - 1) * size, size)) {
        --count;
    }
    return count;
}

class Checker {
public:
    /// `in_part` tells that the blocks of the record are from a MemoryWatch that marks growth.
    Checker(const char *text, bool in_part) : text_(text), in_part_(in_part) {}

    /// Takes a block into the number of those that are held; tells what is wrong with it.
    std::string hold(const void *block, uint64_t size) {
        const size_t room = in_part_ ? watched_size(block) : block_size(block);
        if (room == 0) {
            return ": no block of the heap";
        }
        if (room < size) {
            return ": the block has no room for the elements";
        }
        return blocks_.insert(block).second ? "" : ": the block is held twice";
    }

    size_t blocks() const { return blocks_.size(); }

    /// `agreeing` is null when the record itself is the one that was read with counts that agree.
    std::string check(const Record &table, const char *record, const char *agreeing) {
        for (const Row &row : table.rows) {
            const std::string problem = check_row(table, row, record, agreeing);
            if (!problem.empty()) {
                return "." + key_of(row) + problem;
            }
        }
        return {};
    }

private:
    std::string check_row(const Record &table, const Row &row, const char *record,
                          const char *agreeing) {
        const char *member = member_of(row, record);
        switch (row.kind) {
        case RowKind::text:
            return strnlen(member, row.capacity) < row.capacity ? "" : ": not terminated";
        case RowKind::joined_text:
            return check_joined_text(table, row, record);
        case RowKind::array16:
        case RowKind::array32:
        case RowKind::array64:
        case RowKind::run:
            return check_elements(table, row, record, agreeing);
        case RowKind::block:
            return check(*row.element, member, matching(row, agreeing));
        case RowKind::slots:
            if (load_count(row, record) > row.capacity && !text_says_count(table, row)) {
                return ": more slots in use than there are";
            }
            return check_each(row, member, matching(row, agreeing), row.capacity);
        default:
            return {};
        }
    }

    std::string check_joined_text(const Record &table, const Row &row, const char *record) {
        const char *string = load<const char *>(member_of(row, record));
        const bool is_said = text_says_count(table, row);
        if (string == nullptr) {
            return load_count(row, record) == 0 || is_said ? "" : ": a length without a string";
        }
        const std::string problem = hold(string, 1);
        if (!problem.empty()) {
            return problem;
        }
        const size_t room = in_part_ ? watched_size(string) : block_size(string);
        const size_t length = strnlen(string, room);
        if (length == room) {
            return ": not terminated";
        }
        return load_count(row, record) == length + 1 || is_said ? "" : ": not the string's length";
    }

    std::string check_elements_in_part(const Record &table, const Row &row, const char *record) {
        const char *elements = load<const char *>(member_of(row, record));
        if (elements != nullptr) {
            const std::string problem = hold(elements, 1);
            if (!problem.empty()) {
                return problem;
            }
        }
        const uint64_t count = elements_there(row, elements);
        if (load_count(row, record) > count && !text_says_count(table, row)) {
            return ": more elements than there are";
        }
        return row.kind == RowKind::run ? check_each(row, elements, nullptr, count) : "";
    }

    std::string check_elements(const Record &table, const Row &row, const char *record,
                               const char *agreeing) {
        if (in_part_) {
            return check_elements_in_part(table, row, record);
        }
        const char *elements = load<const char *>(member_of(row, record));
        const uint64_t said = load_count(row, record);
        uint64_t count = said;
        const char *others = nullptr;
        if (agreeing != nullptr) {
            others = load<const char *>(member_of(row, agreeing));
            count = load_count(row, agreeing);
            if (said < count) {
                return ": fewer elements than there are";
            }
            if (said != count && !text_says_count(table, row)) {
                return ": a count that no line says";
            }
        } else if ((elements == nullptr) != (count == 0)) {
            return elements == nullptr ? ": a count without elements" : ": a block that none needs";
        }
        if (elements == nullptr) {
            return count == 0 ? "" : ": the elements are missing";
        }
        if (count > occurrences(text_, key_of(row))) {
            return ": more elements than the text has";
        }
        const std::string problem = hold(elements, count * element_size(row));
        if (!problem.empty()) {
            return problem;
        }
        if (row.kind == RowKind::run) {
            return check_each(row, elements, others, count);
        }
        return others == nullptr || std::memcmp(elements, others, count * element_size(row)) == 0
                   ? ""
                   : ": other numbers";
    }

    std::string check_each(const Row &row, const char *elements, const char *agreeing,
                           uint64_t count) {
        for (uint64_t i = 0; i < count; ++i) {
            const uint64_t offset = i * row.element->size;
            const std::string problem = check(*row.element, elements + offset,
                                              agreeing != nullptr ? agreeing + offset : nullptr);
            if (!problem.empty()) {
                return "[" + std::to_string(i) + "]" + problem;
            }
        }
        return {};
    }

    static const char *matching(const Row &row, const char *agreeing) {
        return agreeing != nullptr ? member_of(row, agreeing) : nullptr;
    }

    /// True when the text may have a line for the count or length of a row: its key stands there.
    bool text_says_count(const Record &table, const Row &row) const {
        for (const Row &count : table.rows) {
            if (count.is_number() && count.offset == row.count_offset) {
                return std::strstr(text_, key_of(count).c_str()) != nullptr;
            }
        }
        return false;
    }

    const char *text_;
    bool in_part_;
    std::set<const void *> blocks_;
};

Verdict verdict(Checker checker, const Record &table, const void *record, const void *agreeing) {
    std::string problem = checker.hold(record, table.size);
    if (problem.empty()) {
        problem = checker.check(table, static_cast<const char *>(record),
                                static_cast<const char *>(agreeing));
    }
    return {problem.empty() ? "" : table.name + problem, checker.blocks()};
}

} // namespace

Verdict check_agreeing(const Record &table, const void *record, const char *text) {
    return verdict({text, false}, table, record, nullptr);
}

Verdict check_as_read(const Record &table, const void *record, const void *agreeing,
                      const char *text) {
    return verdict({text, false}, table, record, agreeing);
}

Verdict check_in_part(const Record &table, const void *record, const char *text) {
    return verdict({text, true}, table, record, nullptr);
}

void count_what_is_there(const Record &table, void *record) {
    for (const Row &row : table.rows) {
        if (row.kind == RowKind::block) {
            count_what_is_there(*row.element, member_of(row, record));
        }
        if (!row.counts_elements()) {
            continue;
        }
        char *elements = load<char *>(member_of(row, record));
        const uint64_t count = elements_there(row, elements);
        store_count(row, record, count);
        for (uint64_t i = 0; row.kind == RowKind::run && i < count; ++i) {
            count_what_is_there(*row.element, elements + i * row.element->size);
        }
    }
}

#ifdef KVT_SANITIZER_KNOWS_BLOCKS

size_t block_size(const void *block) {
    return __sanitizer_get_ownership(block) != 0 ? __sanitizer_get_allocated_size(block) : 0;
}

bool knows_blocks() {
    return true;
}

#else

size_t block_size(const void *block) {
    return malloc_usable_size(const_cast<void *>(block));
}

bool knows_blocks() {
    return false;
}

#endif

} // namespace kvt_test
