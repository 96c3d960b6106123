// How far a command is, on standard error, for work that takes more than a second.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvt_tool {

/// A bar on a terminal; elsewhere nothing.
class Progress {
public:
    /// The total is known when all inputs are files.
    explicit Progress(const std::vector<std::string> &inputs);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Tells that so many bytes more have been worked on.
    void advance(uint64_t bytes);

    /// Takes the bar away, so that something else can appear. It comes back with a later advance.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    void show(Clock::time_point now);

    bool is_shown_anywhere_;
    bool is_shown_ = false;
    std::optional<uint64_t> total_;
    uint64_t done_ = 0;
    Clock::time_point start_ = Clock::now();
    Clock::time_point next_;
};

} // namespace kvt_tool
