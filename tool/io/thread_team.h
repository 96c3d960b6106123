// Threads that do the same work.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace kvt_tool {

/// How many threads, of so many, find room for their work in the memory that the process may have;
/// 1 at least.
size_t threads_with_room(size_t wanted);

/// Threads that are started one by one as they are needed. Where the system gives no more of them,
/// those that there are do the work.
class ThreadTeam {
public:
    /// `work` is what every thread does, once. It must return before the team goes.
    explicit ThreadTeam(std::function<void()> work) : work_(std::move(work)) {}

    ~ThreadTeam();
    ThreadTeam(const ThreadTeam &) = delete;
    ThreadTeam &operator=(const ThreadTeam &) = delete;

    /// Starts another thread. False when there can be no more.
    bool add_thread();

    size_t size() const { return threads_.size(); }

private:
    std::function<void()> work_;
    std::vector<pthread_t> threads_;
    bool can_grow_ = true;
};

} // namespace kvt_tool
