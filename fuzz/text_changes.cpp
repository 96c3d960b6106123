#include "text_changes.h"

#include <cstdint>

#include "engine/release.h"
#include "message_codecs.h"
#include "messages.h"
#include "support/lies.h"
#include "support/mutations.h"
#include "tables_of_texts.h"

namespace kvt_fuzz {

namespace {

using namespace kvt_test;
using namespace kvt_str;

const MessageKind &random_kind(Random &random) {
    const MessageKinds kinds = message_kinds();
    for (;;) {
        const MessageKind &kind = kinds.first[below(random, kinds.count)];
        if (kind.record != nullptr) {
            return kind;
        }
    }
}

bool has_elements_that_own_memory(const Record &table) {
    for (const Row &row : table.rows) {
        if (row.element != nullptr && owns_memory(*row.element)) {
            return true;
        }
    }
    return false;
}

/// A message of nothing but lies. Where elements own memory they do most harm.
std::string random_lies(Random &random) {
    const MessageKind *kind = &random_kind(random);
    for (int tries = 0; tries < 4 && !has_elements_that_own_memory(*kind->record); ++tries) {
        kind = &random_kind(random);
    }
    return lie(std::string(kvt_str::message_codec_of(*kind).head) + "  }\n}\n", *kind->record,
               random);
}

/// A message as the writer writes it.
std::string random_message(Random &random) {
    const MessageKind &kind = random_kind(random);
    OwnedRecord record(*kind.record);
    fill_randomly(*kind.record, record.get(), random);
    return write_exactly(kind.value, record.get());
}

std::string with_kind(const std::string &text, const MessageKind &kind) {
    const size_t first = text.find('\n');
    const size_t second = first == std::string::npos ? first : text.find('\n', first + 1);
    const size_t third = second == std::string::npos ? second : text.find('\n', second + 1);
    return std::string(kvt_str::message_codec_of(kind).head) +
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
    case 1:
        return lie(text, table, random);
    case 2:
        return with_kind(text, random_kind(random));
    case 3:
        return text + random_message(random);
    case 4:
        return with_lines_again(text, random);
    case 5:
        return random_lies(random);
    default:
        return mutate(text, table, random);
    }
}

} // namespace

std::string change_text(std::string text, Random &random) {
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
    return text;
}

} // namespace kvt_fuzz
