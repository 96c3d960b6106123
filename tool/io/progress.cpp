#include "io/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "io/input.h"
#include "io/output.h"
#include "io/problems.h"

namespace kvt_tool {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 1s;
constexpr auto interval = 200ms;

} // namespace

Progress::Progress(const std::vector<std::string> &inputs)
    : is_shown_anywhere_(isatty(STDERR_FILENO) == 1), total_(0), next_(start_ + patience) {
    before_output = [this] {
        clear();
    };
    if (!is_shown_anywhere_) {
        return;
    }
    for (const std::string &input : inputs) {
        const std::optional<uint64_t> size = size_of_input(input);
        total_ =
            total_.has_value() && size.has_value() ? std::optional(*total_ + *size) : std::nullopt;
    }
}

Progress::~Progress() {
    clear();
    before_output = nullptr;
}

void Progress::advance(uint64_t bytes) {
    done_ += bytes;
    if (is_shown_anywhere_) {
        const auto now = Clock::now();
        if (now >= next_) {
            next_ = now + interval;
            show(now);
        }
    }
}

void Progress::show(Clock::time_point now) {
    // What is printed may go to the same terminal: a bar does not stand in the middle of a line.
    std::fflush(stdout);
    if (!is_at_line_start()) {
        return;
    }
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double megabytes = static_cast<double>(done_) / 1e6;
    const double speed = megabytes / seconds;
    if (!total_.has_value() || *total_ == 0) {
        std::fprintf(stderr, "\r\033[K%.0f MB, %.0f MB/s", megabytes, speed);
    } else {
        constexpr int width = 30;
        const double share =
            std::min(1.0, static_cast<double>(done_) / static_cast<double>(*total_));
        const int filled = static_cast<int>(share * width);
        const double left = (1 - share) * seconds / std::max(share, 1e-6);
        std::fprintf(stderr, "\r\033[K[%.*s%*s] %3.0f %%, %.0f MB/s, %.0f s left", filled,
                     "##############################", width - filled, "", 100 * share, speed,
                     left);
    }
    std::fflush(stderr);
    is_shown_ = true;
}

void Progress::clear() {
    if (is_shown_) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
        is_shown_ = false;
    }
}

} // namespace kvt_tool
