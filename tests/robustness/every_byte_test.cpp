// A rich text of every kind, changed at every byte, and buffers of exactly the promised size. Every
// text stands in a heap block of its own size, where a sanitizer sees one byte too far.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "engine/element_size.h"
#include "engine/member.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/exact_copy.h"
#include "support/memory_watch.h"
#include "support/random_records.h"
#include "support/rich_messages.h"
#include "support/strict_release.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

// --- Readers -------------------------------------------------------------------------------------

/// While it lives, traces are made, and formatted as a program would: so all that they point at is
/// looked at.
class Listening {
public:
    explicit Listening(bool listens) {
        log_cb = listens ? &Listening::format : nullptr;
        log_level = listens ? 6 : 0;
    }

    ~Listening() {
        log_cb = nullptr;
        log_level = 0;
    }

    Listening(const Listening &) = delete;
    Listening &operator=(const Listening &) = delete;

private:
    static void format(const char * /*file*/, int /*line*/, const char * /*function*/,
                       int /*level*/, const char *format, ...) {
        char text[1024];
        va_list arguments;
        va_start(arguments, format);
        EXPECT_GT(std::vsnprintf(text, sizeof text, format, arguments), 0);
        va_end(arguments);
    }
};

/// True when no count promises more than there is room for: all else may come from the text. The
/// texts here have fewer elements than the first room for an array, which is zeroed.
bool counts_hold(const Record &table, void *record) {
    for (const Row &row : table.rows) {
        char *member = member_of(row, record);
        if (row.counts_elements()) {
            char *elements = load<char *>(member);
            const uint64_t count = load_count(row, record);
            if (elements == nullptr) {
                continue;
            }
            if (count > malloc_usable_size(elements) / element_size(row)) {
                return false;
            }
            for (uint64_t i = 0; row.kind == RowKind::run && i < count; ++i) {
                if (!counts_hold(*row.element, elements + i * row.element->size)) {
                    return false;
                }
            }
        } else if (row.kind == RowKind::block && !counts_hold(*row.element, member)) {
            return false;
        }
    }
    return true;
}

/// How many texts were read, and what became of them.
struct Outcomes {
    size_t texts = 0;
    size_t read = 0;
    size_t lying = 0; ///< read with a count that promises too much, and so not released
    size_t split = 0;
};

/// Reads a text in both ways, as one message and as many, and expects that nothing stays allocated.
void read_both_ways(const char *text, size_t length, const Record &table, int32_t kind,
                    Outcomes &outcomes) {
    MemoryWatch watch;
    ++outcomes.texts;
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text, &record) == 0) {
        ++outcomes.read;
        if (counts_hold(table, record)) {
            kvt_msg_release(kind, record);
        } else {
            ++outcomes.lying;
            watch.free_alive();
        }
    }
    ASSERT_EQ(watch.alive(), 0U) << text;

    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    const StrictRelease strict;
    if (kvt_msg_arr_from_str(text, static_cast<uint32_t>(length), &texts, &kinds, &count) == 0) {
        ++outcomes.split;
        for (int32_t i = 0; i < count; ++i) {
            ASSERT_NE(texts[i], nullptr) << text;
            std::free(texts[i]);
        }
        std::free(texts);
        std::free(kinds);
    }
    ASSERT_EQ(watch.alive(), 0U) << text;
}

/// Reads changed texts of every kind, traced and not.
template <typename Change> Outcomes read_changed(unsigned elements, Change change) {
    Outcomes outcomes;
    for (const MessageKind *kind : kinds_with_record()) {
        for (const bool traced : {false, true}) {
            // Traced, every line takes a hundred times as long: half of the elements must do.
            const std::string text = rich_text(*kind, traced ? (elements + 1) / 2 : elements);
            const Listening listening(traced);
            change(text, [&](const char *changed, size_t length) {
                // Another kind on the type line makes another record.
                const char *name = std::strstr(changed, "type:");
                const MessageKind *read_as =
                    name != nullptr ? find_kind(name + std::strspn(name, "type: \n\t")) : nullptr;
                const MessageKind &as =
                    read_as != nullptr && read_as->record != nullptr ? *read_as : *kind;
                read_both_ways(changed, length, *as.record, value_of(as), outcomes);
            });
            if (testing::Test::HasFatalFailure()) {
                return outcomes;
            }
        }
    }
    testing::Test::RecordProperty("texts", std::to_string(outcomes.texts));
    testing::Test::RecordProperty("read", std::to_string(outcomes.read));
    testing::Test::RecordProperty("lying", std::to_string(outcomes.lying));
    testing::Test::RecordProperty("split", std::to_string(outcomes.split));
    return outcomes;
}

constexpr char telling[] = {'\0', '\n', '"', '{', '}', ':', '7', '-', '\xFF'};

TEST(EveryByte, MayBeTheLast) {
    const Outcomes outcomes = read_changed(3, [](const std::string &text, auto read) {
        for (size_t length = 0; length <= text.size(); ++length) {
            read(exact_copy(text.substr(0, length)).get(), length);
        }
    });
    EXPECT_EQ(outcomes.lying, 0U);
}

TEST(EveryByte, MayBeAnother) {
    const Outcomes outcomes = read_changed(3, [](const std::string &text, auto read) {
        const auto copy = exact_copy(text);
        for (size_t i = 0; i < text.size(); ++i) {
            for (const char byte : telling) {
                copy[i] = byte;
                read(copy.get(), text.size());
            }
            copy[i] = text[i];
        }
    });
    // Nearly all of them can still be read.
    EXPECT_GT(outcomes.read, outcomes.texts / 4 * 3);
}

TEST(EveryByte, MayBeMissing) {
    read_changed(3, [](const std::string &text, auto read) {
        for (size_t i = 0; i < text.size(); ++i) {
            read(exact_copy(text.substr(0, i) + text.substr(i + 1)).get(), text.size() - 1);
        }
    });
}

/// Calls `see` with the start and the length of every line.
template <typename See> void each_line(const std::string &text, See see) {
    for (size_t start = 0; start < text.size();) {
        const size_t end = text.find('\n', start) + 1;
        see(start, end - start);
        start = end;
    }
}

TEST(EveryLine, MayBeMissing) {
    read_changed(4, [](const std::string &text, auto read) {
        each_line(text, [&](size_t start, size_t length) {
            const std::string changed = std::string(text).erase(start, length);
            read(exact_copy(changed).get(), changed.size());
        });
    });
}

TEST(EveryLine, MayBeThereTwice) {
    read_changed(4, [](const std::string &text, auto read) {
        each_line(text, [&](size_t start, size_t length) {
            const std::string changed = std::string(text).insert(start, text.substr(start, length));
            read(exact_copy(changed).get(), changed.size());
        });
    });
}

TEST(EveryLine, MayComeAfterTheNext) {
    read_changed(4, [](const std::string &text, auto read) {
        each_line(text, [&](size_t start, size_t length) {
            std::string changed = text;
            changed.erase(start, length);
            const size_t next = changed.find('\n', start);
            if (next != std::string::npos) {
                changed.insert(next + 1, text.substr(start, length));
            }
            read(exact_copy(changed).get(), changed.size());
        });
    });
}

// The functions that step through a text take any position in it.
TEST(EveryByte, MayBeWhereAScannerFunctionStarts) {
    for (const MessageKind *kind : kinds_with_record()) {
        const std::string text = rich_text(*kind, 1);
        for (size_t cut = text.size() - std::min<size_t>(text.size(), 40); cut <= text.size();
             ++cut) {
            const auto copy = exact_copy(text.substr(0, cut));
            for (size_t i = 0; i <= cut; ++i) {
                const char *at = copy.get() + i;
                const auto within = [&](const char *position) {
                    return position != nullptr && position >= at && position <= copy.get() + cut;
                };
                ASSERT_TRUE(within(::next_line(at)));
                ASSERT_TRUE(within(find_end_msg(at)));
                const char *next = next_msg(at, static_cast<uint32_t>(cut - i));
                ASSERT_TRUE(next == nullptr || within(next));
                ASSERT_TRUE(check_start_msg(at) == 0 || check_start_msg(at) == 1);
                ASSERT_TRUE(check_end_msg(at) == 0 || check_end_msg(at) == 1);
            }
        }
    }
}

// --- Writers -------------------------------------------------------------------------------------

/// Writes a record into a block of exactly the promised size, for a sanitizer, and into one with a
/// guard after it, for every build.
void expect_to_fit(int32_t kind, const void *record) {
    const uint32_t size = kvt_str_get_buf_size(kind, record);
    const std::unique_ptr<char[]> exact(new char[size]);
    ASSERT_EQ(kvt_msg_to_str(kind, record, exact.get()), 0);
    ASSERT_EQ(exact[size - 1], '\0');
    ASSERT_EQ(std::strlen(exact.get()), size - 1) << exact.get();

    static constexpr size_t guard = 64;
    static constexpr char untouched = '\x5A';
    const std::unique_ptr<char[]> guarded(new char[size + guard]);
    std::memset(guarded.get(), untouched, size + guard);
    ASSERT_EQ(kvt_msg_to_str(kind, record, guarded.get()), 0);
    ASSERT_STREQ(guarded.get(), exact.get());
    for (size_t i = size; i < size + guard; ++i) {
        ASSERT_EQ(guarded[i], untouched) << i - size << " after the end of\n" << exact.get();
    }
}

TEST(EveryBuffer, OfThePromisedSizeTakesRichRecords) {
    for (const MessageKind *kind : kinds_with_record()) {
        for (unsigned elements = 0; elements <= 21; ++elements) {
            OwnedRecord record(*kind->record);
            fill_richly(*kind->record, record.get(), elements);
            expect_to_fit(value_of(*kind), record.get());
        }
    }
}

TEST(EveryBuffer, OfThePromisedSizeTakesRandomRecords) {
    Random random(11);
    for (const MessageKind *kind : kinds_with_record()) {
        for (unsigned round = 0; round < 200; ++round) {
            OwnedRecord record(*kind->record);
            fill_randomly(*kind->record, record.get(), random);
            expect_to_fit(value_of(*kind), record.get());
        }
    }
}

/// Calls `write` with every number of a record in turn at 0 and at each of its powers of ten and
/// their predecessors: at every number of digits. Then it is again what it was.
template <typename Write> void vary_numbers(const Record &table, void *record, Write write) {
    for (const Row &row : table.rows) {
        char *member = member_of(row, record);
        if (row.is_number()) {
            bool is_count = false;
            for (const Row &other : table.rows) {
                is_count |= other.count_width != 0 && other.count_offset == row.offset;
            }
            const uint64_t before = load_number(member, row.size);
            const uint64_t largest =
                row.size == 8 ? UINT64_MAX : (uint64_t{1} << (8 * row.size)) - 1;
            for (uint64_t power = 1; !is_count; power *= 10) {
                for (const uint64_t value : {power - 1, power, largest}) {
                    store_number(member, row.size, value);
                    write();
                }
                if (power > largest / 10) {
                    break;
                }
            }
            store_number(member, row.size, before);
        } else if (row.kind == RowKind::run && load<void *>(member) != nullptr) {
            vary_numbers(*row.element, load<char *>(member), write);
        } else if (row.kind == RowKind::block || row.kind == RowKind::slots) {
            vary_numbers(*row.element, member, write);
        }
    }
}

TEST(EveryBuffer, OfThePromisedSizeTakesEveryNumberOfDigitsInEveryField) {
    for (const MessageKind *kind : kinds_with_record()) {
        for (const bool rich : {false, true}) {
            OwnedRecord record(*kind->record);
            if (rich) {
                fill_richly(*kind->record, record.get(), 1);
            }
            vary_numbers(*kind->record, record.get(),
                         [&] { expect_to_fit(value_of(*kind), record.get()); });
        }
    }
}

/// Calls `write` with every text in a record in turn at every length. Then it is again empty.
template <typename Write> void vary_texts(const Record &table, void *record, Write write) {
    for (const Row &row : table.rows) {
        char *member = member_of(row, record);
        if (row.kind == RowKind::text) {
            std::memset(member, 0, row.capacity);
            for (unsigned i = 0; i < row.capacity; ++i) {
                member[i] = 'a'; // at last without a NUL
                write();
            }
            std::memset(member, 0, row.capacity);
        } else if (row.kind == RowKind::joined_text && load<void *>(member) != nullptr) {
            char *const before = load<char *>(member);
            std::string text;
            for (unsigned length = 0; length < 70; ++length) {
                store<const char *>(member, text.c_str());
                write();
                text += 'a';
            }
            store(member, before);
        } else if (row.kind == RowKind::run && load<void *>(member) != nullptr) {
            vary_texts(*row.element, load<char *>(member), write);
        } else if (row.kind == RowKind::block) {
            vary_texts(*row.element, member, write);
        }
    }
}

TEST(EveryBuffer, OfThePromisedSizeTakesTextsOfEveryLength) {
    for (const MessageKind *kind : kinds_with_record()) {
        OwnedRecord record(*kind->record);
        fill_richly(*kind->record, record.get(), 1);
        vary_texts(*kind->record, record.get(),
                   [&] { expect_to_fit(value_of(*kind), record.get()); });
    }
}

TEST(EveryBuffer, OfNineCharactersTakesAnEnvelope) {
    const int64_t record = 0;
    for (const int32_t kind :
         {int32_t{VEMRA_MSG_TYPE_NONE}, int32_t{VEMRA_MSG_TYPE_LAST}, -1, 99}) {
        const std::unique_ptr<char[]> exact(new char[9]);
        EXPECT_EQ(kvt_msg_to_str(kind, &record, exact.get()), 0);
        EXPECT_STREQ(exact.get(), "msg {\n}\n");
    }
}

} // namespace
} // namespace kvt_test
