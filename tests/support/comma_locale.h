// A locale with a decimal comma, for the process or for a thread.
#pragma once

#include <gtest/gtest.h>
#include <locale.h>

#include <string>

namespace kvt_test {

/// The name of the locale; null where the machine has none.
const char *comma_locale_name();

#define SKIP_WITHOUT_COMMA_LOCALE()                                                                \
    if (kvt_test::comma_locale_name() == nullptr) {                                                \
        GTEST_SKIP() << "needs the locale de_DE.UTF-8 or fr_FR.UTF-8";                             \
    }                                                                                              \
    static_assert(true)

/// While it lives, it is the process's locale. Fails where the C library shows or reads no comma
/// then: else nothing would be shown.
class ProcessInComma {
public:
    ProcessInComma();
    ~ProcessInComma();

    ProcessInComma(const ProcessInComma &) = delete;
    ProcessInComma &operator=(const ProcessInComma &) = delete;

private:
    std::string before_;
};

/// The same locale for threads.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();

    CommaLocale(const CommaLocale &) = delete;
    CommaLocale &operator=(const CommaLocale &) = delete;

    locale_t get() const { return locale_; }

private:
    locale_t locale_;
};

/// While it lives, the thread has a locale of its own.
class ThreadIn {
public:
    explicit ThreadIn(locale_t locale) : before_(uselocale(locale)) {}

    ~ThreadIn() { uselocale(before_); }

    ThreadIn(const ThreadIn &) = delete;
    ThreadIn &operator=(const ThreadIn &) = delete;

private:
    locale_t before_;
};

/// As "%g" shows it in the locale of the thread.
std::string shown_by_c_library(double value);

} // namespace kvt_test
