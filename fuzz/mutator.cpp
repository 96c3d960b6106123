// Changes inputs that are texts of messages, by what the tables know: lines are put in, doubled,
// moved and dropped, values and kinds are changed, messages are added. A part of the changes is
// left to the engine, which knows what comparisons the codec makes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "message_codecs.h"
#include "messages.h"
#include "support/mutations.h"
#include "support/random_records.h"
#include "tables_of_texts.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed);

namespace {

using namespace kvt_fuzz;
using namespace kvt_test;
using namespace kvt_str;

const MessageKind &random_kind(Random &random) {
    for (;;) {
        const MessageKind &kind = message_kinds()[below(random, message_kinds().size())];
        if (kind.record != nullptr) {
            return kind;
        }
    }
}

/// A message as the writer writes it.
std::string random_message(Random &random) {
    const MessageKind &kind = random_kind(random);
    OwnedRecord record(*kind.record);
    fill_randomly(*kind.record, record.get(), random);
    return write_exactly(kind.value, record.get());
}

void collect_counts(const Record &table, std::string &lines, Random &random) {
    for (const Row &row : table.rows) {
        if (row.element != nullptr) {
            collect_counts(*row.element, lines, random);
        }
        for (const Row &count : table.rows) {
            if ((row.counts_elements() || row.kind == RowKind::slots) && count.is_number() &&
                count.offset == row.count_offset && below(random, 3) == 0) {
                lines.append(count.label.text, count.label.length);
                lines += std::to_string(below(random, 9)) + "\n";
            }
        }
    }
}

/// Puts lines that count elements, rightly or not, before one of the text's lines.
std::string lie(std::string text, const Record &table, Random &random) {
    std::string lines;
    collect_counts(table, lines, random);
    const size_t newline = text.find('\n', below(random, text.size() + 1));
    return text.insert(newline == std::string::npos ? 0 : newline + 1, lines);
}

std::string with_kind(const std::string &text, const MessageKind &kind) {
    const size_t first = text.find('\n');
    const size_t second = first == std::string::npos ? first : text.find('\n', first + 1);
    const size_t third = second == std::string::npos ? second : text.find('\n', second + 1);
    return std::string(kvt_str::codec_of(kind).head) +
           (third == std::string::npos ? "" : text.substr(third + 1));
}

/// Puts a run of lines of the text in once more.
std::string with_lines_again(std::string text, Random &random) {
    const size_t from = text.find('\n', below(random, text.size() + 1));
    if (from == std::string::npos) {
        return text;
    }
    const size_t to = text.find('\n', from + 1 + below(random, text.size() - from));
    const std::string lines = text.substr(from + 1, to == std::string::npos ? to : to - from);
    const size_t place = text.find('\n', below(random, text.size() + 1));
    return text.insert(place == std::string::npos ? 0 : place + 1, lines);
}

std::string change(const std::string &text, const Record &table, Random &random) {
    switch (below(random, 16)) {
    case 0:
        return lie(text, table, random);
    case 1:
        return with_kind(text, random_kind(random));
    case 2:
        return text + random_message(random);
    case 3:
        return with_lines_again(text, random);
    default:
        return mutate(text, table, random);
    }
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed) {
    Random random(seed);
    if (below(random, 4) == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::string text(reinterpret_cast<const char *>(data), size);
    if (below(random, 64) == 0) {
        text = random_message(random);
    }
    const Record *table = find_table(text.c_str());
    if (table == nullptr) {
        table = random_kind(random).record;
    }
    for (uint64_t changes = 1 + below(random, 4); changes != 0; --changes) {
        text = change(text, *table, random);
    }
    const size_t changed = std::min(text.size(), max_size);
    if (changed == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::memcpy(data, text.data(), changed);
    return changed;
}
