// Several threads at once. Built with -fsanitize=thread (KVT_SANITIZE=thread), these tests show
// that the codec shares nothing between them.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/exact_copy.h"
#include "support/messages.h"
#include "support/random_records.h"
#include "support/rich_messages.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

constexpr unsigned number_of_threads = 6;
constexpr unsigned rounds = 100;

/// Lets threads begin at once, so that they meet. They run the work with their numbers.
template <typename Work> void on_threads(Work work) {
    std::atomic<unsigned> waiting = number_of_threads;
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < number_of_threads; ++number) {
        threads.emplace_back([&, number] {
            --waiting;
            while (waiting != 0) {
                std::this_thread::yield();
            }
            work(number);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

/// What a thread's calls have logged. log_cb is called on the thread that called the codec.
thread_local size_t lines_logged = 0;

void count_lines(const char * /*file*/, int /*line*/, const char * /*function*/, int /*level*/,
                 const char *format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    lines_logged += std::vsnprintf(text, sizeof text, format, arguments) > 0 ? 1 : 0;
    va_end(arguments);
}

/// The log is set before threads begin and reset after them, as the message layer wants it.
class CountedLog {
public:
    explicit CountedLog(int level) {
        log_cb = &count_lines;
        log_level = level;
    }

    ~CountedLog() {
        log_cb = nullptr;
        log_level = 0;
    }

    CountedLog(const CountedLog &) = delete;
    CountedLog &operator=(const CountedLog &) = delete;
};

std::string read_and_write_again(const MessageKind &kind, const char *text) {
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text, &record) != 0) {
        return "(not read)";
    }
    std::string written = text_of_record(value_of(kind), record);
    kvt_msg_release(value_of(kind), record);
    return written;
}

std::string split_and_join(const char *text, size_t length) {
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text, static_cast<uint32_t>(length), &texts, &kinds, &count) != 0) {
        return "(not split)";
    }
    std::string joined;
    for (int32_t i = 0; i < count; ++i) {
        joined += texts[i];
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    return joined;
}

size_t count_lines_by_scanner(const char *text) {
    size_t lines = 0;
    for (; *text != '\0'; text = ::next_line(text)) {
        lines += check_start_msg(text) == 0 || check_end_msg(text) == 0 ? 1 : 0;
    }
    return lines;
}

/// A message of every kind, and what one thread alone makes of it.
struct Expected {
    const MessageKind *kind;
    std::string text;
    std::string again;
    size_t lines;
    size_t logged;
};

std::vector<Expected> expected_of_every_kind(unsigned elements) {
    std::vector<Expected> all;
    for (const MessageKind *kind : kinds_with_record()) {
        const std::string text = rich_text(*kind, elements);
        lines_logged = 0;
        const std::string again = read_and_write_again(*kind, text.c_str());
        all.push_back({kind, text, again, count_lines_by_scanner(text.c_str()), lines_logged});
    }
    return all;
}

// Different texts at the same time: each thread has its own, of every kind in turn, and begins
// with another kind.
void expect_different_texts_apart(int level) {
    const CountedLog log(level);
    std::vector<std::vector<Expected>> expected;
    for (unsigned number = 0; number < number_of_threads; ++number) {
        expected.push_back(expected_of_every_kind(number % 7));
    }
    on_threads([&](unsigned number) {
        const std::vector<Expected> &own = expected[number];
        for (unsigned round = 0; round < rounds; ++round) {
            for (size_t i = 0; i < own.size(); ++i) {
                const Expected &message = own[(i + 4 * size_t{number}) % own.size()];
                const auto text = exact_copy(message.text);
                lines_logged = 0;
                EXPECT_EQ(read_and_write_again(*message.kind, text.get()), message.again);
                EXPECT_EQ(lines_logged, message.logged);
                EXPECT_EQ(split_and_join(text.get(), message.text.size()), message.again);
                EXPECT_EQ(count_lines_by_scanner(text.get()), message.lines);
            }
        }
    });
}

TEST(Threads, ReadAndWriteDifferentTextsAtOnce) {
    expect_different_texts_apart(0);
}

TEST(Threads, ReadAndWriteDifferentTextsAtOnceWithTraces) {
    expect_different_texts_apart(6);
}

// A text and a record are only read: all threads may use the same ones.
TEST(Threads, ShareTextsAndRecordsThatNobodyChanges) {
    struct Shared {
        const Expected *message;
        std::unique_ptr<char[]> text;
        std::unique_ptr<OwnedRecord> record;
    };

    const std::vector<Expected> expected = expected_of_every_kind(3);
    std::vector<Shared> all;
    for (const Expected &message : expected) {
        all.push_back({&message, exact_copy(message.text),
                       std::make_unique<OwnedRecord>(*message.kind->record)});
        fill_richly(*message.kind->record, all.back().record->get(), 3);
    }
    on_threads([&](unsigned) {
        for (unsigned round = 0; round < rounds; ++round) {
            for (const Shared &shared : all) {
                const Expected &message = *shared.message;
                EXPECT_EQ(text_of_record(value_of(*message.kind), shared.record->get()),
                          message.text);
                EXPECT_EQ(read_and_write_again(*message.kind, shared.text.get()), message.again);
                EXPECT_EQ(split_and_join(shared.text.get(), message.text.size()), message.again);
            }
        }
    });
}

// Failures are told on the thread that they happen on, and disturb no other.
TEST(Threads, FailOnTheirOwn) {
    const CountedLog log(0);
    const std::vector<Expected> expected = expected_of_every_kind(2);
    on_threads([&](unsigned number) {
        lines_logged = 0;
        for (unsigned round = 0; round < rounds; ++round) {
            for (const Expected &message : expected) {
                if (number % 2 != 0) {
                    const std::string bad = message.text + "msg {\n  type: BAD\n}\n";
                    EXPECT_EQ(split_and_join(bad.c_str(), bad.size()), "(not split)");
                    void *record = nullptr;
                    EXPECT_EQ(kvt_msg_from_str(0, 0, "msg {\n  type: BAD\n}\n", &record), -1);
                    EXPECT_EQ(kvt_str_get_buf_size(-1, &record), 0U);
                } else {
                    EXPECT_EQ(read_and_write_again(*message.kind, message.text.c_str()),
                              message.again);
                }
            }
        }
        EXPECT_EQ(lines_logged, number % 2 != 0 ? 3 * rounds * expected.size() : 0U);
    });
}

// A record that one thread read may be written and released by another.
TEST(Threads, HandRecordsOver) {
    const std::vector<Expected> expected = expected_of_every_kind(6);
    for (const Expected &message : expected) {
        void *record = nullptr;
        std::thread reader(
            [&] { EXPECT_EQ(kvt_msg_from_str(0, 0, exact_copy(message.text).get(), &record), 0); });
        reader.join();
        std::thread writer([&] {
            EXPECT_EQ(text_of_record(value_of(*message.kind), record), message.again);
            kvt_msg_release(value_of(*message.kind), record);
        });
        writer.join();
    }
}

} // namespace
} // namespace kvt_test
