// Whether the time of a call grows with its text alone, on a machine that others use meanwhile.
#pragma once

#include <algorithm>
#include <ctime>
#include <limits>

namespace kvt_test {

/// The time that this process has run so far, in seconds. Other processes may run meanwhile.
inline double cpu_seconds() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The least times that have been seen, in seconds.
struct LeastTimes {
    double whole = std::numeric_limits<double>::max();
    double parts = std::numeric_limits<double>::max();

    double growth() const { return whole / parts; }
};

/// Calls `take_parts` and `take_whole`, which do as much, in turn until their times are within the
/// limit without doubt, or have missed it so often that no disturbance explains it: other processes
/// take caches and memory away for seconds. What misses it for good takes 60 times as long.
template <typename TakeParts, typename TakeWhole>
LeastTimes least_times(double limit, TakeParts take_parts, TakeWhole take_whole) {
    constexpr int most_attempts = 60;
    constexpr int strict_attempts = 3;
    LeastTimes least;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        double start = cpu_seconds();
        take_parts();
        least.parts = std::min(least.parts, cpu_seconds() - start);
        start = cpu_seconds();
        take_whole();
        least.whole = std::min(least.whole, cpu_seconds() - start);
        if (least.growth() <= (attempt < strict_attempts ? (1 + limit) / 2 : limit)) {
            break;
        }
    }
    return least;
}

} // namespace kvt_test
