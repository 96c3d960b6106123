// What surrounds the process does not matter to the codec: locale, environment variables, working
// directory, signals.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <locale.h>
#include <memory>
#include <string>
#include <sys/time.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "kvt/kvt_str.h"
#include "kvt/messages/job_start.h"
#include "support/comma_locale.h"
#include "support/log_capture.h"
#include "support/messages.h"
#include "support/random_records.h"
#include "support/rich_messages.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// All that the codec makes of some messages, texts, sizes and log lines, in one text.
std::string everything() {
    std::string all;
    LogCapture log;
    Random random(21);
    for (const MessageKind *kind : kinds_with_record()) {
        std::vector<std::string> texts = {rich_text(*kind, 2)};
        for (unsigned round = 0; round < 10; ++round) {
            OwnedRecord record(*kind->record);
            fill_randomly(*kind->record, record.get(), random);
            texts.push_back(text_of_record(value_of(*kind), record.get()));
        }
        for (const std::string &text : texts) {
            void *record = nullptr;
            EXPECT_EQ(kvt_msg_from_str(0, 0, text.c_str(), &record), 0);
            const std::string again = text_of_record(value_of(*kind), record);
            kvt_msg_release(value_of(*kind), record);
            char **split = nullptr;
            EXPECT_EQ(kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &split,
                                           nullptr, nullptr),
                      0);
            all += text + again + split[0];
            std::free(split[0]);
            std::free(split);
        }
    }
    for (const std::string &line : log.texts()) {
        all += line;
    }
    return all;
}

// --- Locale --------------------------------------------------------------------------------------

std::string begin_job(const std::string &percentage) {
    return message_text("BEGIN_JOB", "  begin_job {\n    quota_percentage: " + percentage +
                                         "\n    quota {\n    }\n    reproducible_mode: 0\n"
                                         "    exclusive_lock: 0\n  }\n");
}

void expect_point() {
    for (const char *value : {"12.5", "0.25", "1e-05", "1.5e+10", "-3.25", "inf"}) {
        EXPECT_EQ(read_and_write<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, begin_job(value)),
                  begin_job(value));
    }
    EXPECT_EQ(read_and_write<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, begin_job("12,5")),
              begin_job("12"));
    EXPECT_EQ(read_and_write<vemra_begin_job>(VEMRA_MSG_TYPE_BEGIN_JOB, begin_job("1.000,5")),
              begin_job("1"));
}

TEST(Locale, OfTheProcessMakesNoDifference) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const std::string in_c = everything();
    const ProcessInComma comma;
    expect_point();
    EXPECT_EQ(everything(), in_c);
    EXPECT_EQ(shown_by_c_library(12.5), "12,5"); // it is still set
}

TEST(Locale, OfTheThreadMakesNoDifference) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const std::string in_c = everything();
    const CommaLocale comma;
    const ThreadIn thread(comma.get());
    EXPECT_EQ(shown_by_c_library(12.5), "12,5");
    expect_point();
    EXPECT_EQ(everything(), in_c);
    EXPECT_EQ(shown_by_c_library(12.5), "12,5");
}

TEST(Locale, MayDifferBetweenThreadsThatWriteAtOnce) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const CommaLocale locale;
    const auto work = [&](bool comma) {
        const ThreadIn thread(comma ? locale.get() : LC_GLOBAL_LOCALE);
        for (int round = 0; round < 200; ++round) {
            expect_point();
            EXPECT_EQ(shown_by_c_library(12.5), comma ? "12,5" : "12.5");
        }
    };
    std::thread with_comma(work, true);
    std::thread with_point(work, false);
    with_comma.join();
    with_point.join();
}

TEST(Locale, OfTheThreadMayDifferFromThatOfTheProcess) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const ProcessInComma comma;
    const locale_t point = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = uselocale(point);
    expect_point();
    EXPECT_EQ(shown_by_c_library(12.5), "12.5");
    uselocale(before);
    freelocale(point);
    expect_point();
}

// --- Environment, working directory, signals -----------------------------------------------------

/// Gives the environment back when it goes.
class SavedEnvironment {
public:
    SavedEnvironment() {
        for (char **variable = environ; *variable != nullptr; ++variable) {
            saved_.emplace_back(*variable);
        }
    }

    ~SavedEnvironment() {
        clearenv();
        for (const std::string &variable : saved_) {
            const size_t equals = variable.find('=');
            setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
        }
    }

    SavedEnvironment(const SavedEnvironment &) = delete;
    SavedEnvironment &operator=(const SavedEnvironment &) = delete;

private:
    std::vector<std::string> saved_;
};

TEST(Environment, MakesNoDifference) {
    const std::string usual = everything();
    const SavedEnvironment saved;
    clearenv();
    EXPECT_EQ(everything(), usual);
    for (const char *name : {"LANG", "LC_ALL", "LC_NUMERIC", "LANGUAGE", "TZ", "HOME", "TMPDIR",
                             "POSIXLY_CORRECT", "DEBUG", "KVT_LOG", "KVT_LOG_LEVEL"}) {
        setenv(name, "de_DE.UTF-8", 1);
    }
    EXPECT_EQ(everything(), usual);
}

TEST(WorkingDirectory, MakesNoDifference) {
    const std::string usual = everything();
    const std::unique_ptr<char, decltype(&std::free)> before(getcwd(nullptr, 0), &std::free);
    ASSERT_NE(before, nullptr);
    ASSERT_EQ(chdir("/"), 0);
    EXPECT_EQ(everything(), usual);
    ASSERT_EQ(chdir(before.get()), 0);
}

volatile std::sig_atomic_t interruptions = 0;

void interrupt(int /*signal*/) {
    interruptions = interruptions + 1;
}

TEST(Signals, MayInterruptAnythingAndKeepTheirHandlers) {
    const std::string usual = everything();
    struct sigaction handler = {};
    handler.sa_handler = &interrupt; // without SA_RESTART
    ASSERT_EQ(sigaction(SIGALRM, &handler, nullptr), 0);
    const itimerval often = {{0, 100}, {0, 100}};
    const itimerval never = {};
    ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
    interruptions = 0;
    for (int round = 0; round < 1000 && (round < 3 || interruptions < 20); ++round) {
        EXPECT_EQ(everything(), usual);
    }
    ASSERT_EQ(setitimer(ITIMER_REAL, &never, nullptr), 0);
    // The handler stays: a last signal may still be on its way.
    struct sigaction after = {};
    ASSERT_EQ(sigaction(SIGALRM, nullptr, &after), 0);
    EXPECT_EQ(after.sa_handler, &interrupt);
    EXPECT_GE(interruptions, 20);
}

} // namespace
} // namespace kvt_test
