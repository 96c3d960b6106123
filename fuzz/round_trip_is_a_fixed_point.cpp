// Any text: what is read from it and written comes back, when it is read and written again, as the
// same record and the same text. Left out is what docs/format.md leaves out, and what only a text
// can say that no writer wrote: see is_written_whole.
#include <cstring>
#include <string>

#include "engine/member.h"
#include "kvt/message_layer.h"
#include "messages.h"
#include "property.h"
#include "support/memory_watch.h"
#include "support/random_records.h"
#include "text/real.h"

using namespace kvt_fuzz;
using namespace kvt_str;

namespace {

/// How much of a record comes back.
enum class Return {
    at_once, ///< all
    later,   ///< all of what the next reading makes of it
    never,   ///< a quoted text looks like lines of the message
};

constexpr size_t longest_line_of_a_string = 298;

Return worse(Return a, Return b) {
    return a > b ? a : b;
}

Return return_of_text(const char *text, size_t length) {
    const std::string_view value(text, length);
    if (value.find_first_of("\n}") != std::string_view::npos) {
        return Return::never;
    }
    return Return::at_once;
}

/// The writer stops at the terminator, and the reader clears the places after it with zeros.
Return return_of_bytes(const Row &row, const char *bytes) {
    const bool ends_early = std::memchr(bytes, row.terminator, row.capacity) != nullptr;
    return row.terminator != 0 && ends_early ? Return::later : Return::at_once;
}

/// A float is written in six digits, and -0 not at all.
Return return_of_real(const char *member) {
    const auto value = load<float>(member);
    char text[real_capacity] = "0";
    float back = 0;
    if (value != 0) {
        format_real(value, text);
    }
    scan_real(text, back);
    return std::memcmp(member, &back, sizeof back) == 0 ? Return::at_once : Return::later;
}

Return return_of(const Record &table, const char *record);

Return return_of_row(const Row &row, const char *record) {
    const char *member = member_of(row, record);
    Return worst = Return::at_once;
    switch (row.kind) {
    case RowKind::real:
        return return_of_real(member);
    case RowKind::text:
        return return_of_text(member, std::strlen(member));
    case RowKind::joined_text: {
        const char *string = load<const char *>(member);
        if (string == nullptr) {
            return Return::at_once;
        }
        const size_t length = std::strlen(string);
        const bool whole =
            length <= longest_line_of_a_string && load_count(row, record) == length + 1;
        return worse(return_of_text(string, length), whole ? Return::at_once : Return::later);
    }
    case RowKind::bytes:
        return return_of_bytes(row, member);
    case RowKind::block:
        return return_of(*row.element, member);
    case RowKind::run: {
        const uint64_t count = load_count(row, record);
        const char *elements = load<const char *>(member);
        for (uint64_t i = 0; i < count; ++i) {
            worst = worse(worst, return_of(*row.element, elements + i * row.element->size));
        }
        return worst;
    }
    case RowKind::slots:
        for (uint64_t i = 0; i < row.capacity; ++i) {
            worst = worse(worst, return_of(*row.element, member + i * row.element->size));
        }
        return worse(worst,
                     load_count(row, record) <= row.capacity ? Return::at_once : Return::later);
    default:
        return Return::at_once;
    }
}

Return return_of(const Record &table, const char *record) {
    Return worst = Return::at_once;
    for (const Row &row : table.rows) {
        worst = worse(worst, return_of_row(row, record));
    }
    return worst;
}

/// A message that is read and released.
class Trip {
public:
    explicit Trip(const char *text) : message_(read_as(text, Counts::agree)) {}

    ~Trip() {
        if (message_.kind != nullptr) {
            kvt_msg_release(static_cast<int32_t>(message_.kind->value), message_.record);
        }
    }

    Trip(const Trip &) = delete;
    Trip &operator=(const Trip &) = delete;

    const MessageKind *kind() const { return message_.kind; }

    const char *record() const { return static_cast<const char *>(message_.record); }

    std::string text() const { return write_exactly(kind()->value, record()); }

private:
    Message message_;
};

void check_return(const Trip &there, const std::string &text) {
    const Trip back(text.c_str());
    expect(back.kind() == there.kind(), "a record that was written is read as the same kind");
    const std::string difference =
        kvt_test::first_difference(*there.kind()->record, there.record(), back.record());
    if (!difference.empty()) {
        report("a record comes back the same: differs in " + difference);
    }
    expect(back.text() == text, "a text that was written comes back the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText input(data, size);
    const kvt_test::MemoryWatch watch;
    {
        const Trip first(input.get());
        if (first.kind() == nullptr) {
            return 0;
        }
        const std::string text = first.text();
        switch (return_of(*first.kind()->record, first.record())) {
        case Return::at_once:
            check_return(first, text);
            break;
        case Return::later: {
            const Trip second(text.c_str());
            expect(second.kind() == first.kind(), "a text is read as the same kind again");
            check_return(second, second.text());
            break;
        }
        case Return::never:
            break;
        }
    }
    expect(watch.alive() == 0, "nothing stays allocated");
    return 0;
}
