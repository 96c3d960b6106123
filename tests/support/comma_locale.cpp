#include "support/comma_locale.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace kvt_test {

const char *comma_locale_name() {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char *name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) != nullptr) {
            std::setlocale(LC_ALL, before.c_str());
            return name;
        }
    }
    return nullptr;
}

ProcessInComma::ProcessInComma() : before_(std::setlocale(LC_ALL, nullptr)) {
    std::setlocale(LC_ALL, comma_locale_name());
    EXPECT_EQ(shown_by_c_library(12.5), "12,5");
    EXPECT_EQ(std::strtod("12,5", nullptr), 12.5);
}

ProcessInComma::~ProcessInComma() {
    std::setlocale(LC_ALL, before_.c_str());
}

// It comes from the locale of the process: newlocale of glibc 2.36 leaks the value of LOCPATH.
CommaLocale::CommaLocale() {
    const ProcessInComma comma;
    locale_ = duplocale(LC_GLOBAL_LOCALE);
}

CommaLocale::~CommaLocale() {
    freelocale(locale_);
}

std::string shown_by_c_library(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

} // namespace kvt_test
