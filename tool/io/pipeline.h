// Work on the units of several inputs, on several threads, with results in the inputs' order.
#pragma once

#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "io/input.h"
#include "io/problems.h"
#include "io/progress.h"
#include "io/unit_stream.h"

namespace kvt_tool {

/// Reads the inputs one after the other and works on their units.
///
/// Job has a type Result, which starts empty, and these functions:
///
///     void work(const Unit &, Result &)           static or const, on any thread
///     void begin(const InputFile &)                these on the calling one, in the inputs' order
///     void take(Result &&)
///     ExitStatus end(const std::string &input, bool whole)
///
/// `whole` tells that the input has been read to its end. No more than a megabyte, or one of the
/// largest messages, is in memory for each thread and its result.
template <typename Job, typename Stream = UnitStream> class Pipeline {
public:
    Pipeline(Job &job, unsigned threads, Progress &progress)
        : job_(job), threads_(threads), progress_(progress) {}

    ExitStatus run(const std::vector<std::string> &inputs) {
        for (const std::string &name : inputs) {
            const auto opened = std::make_shared<InputFile>(name);
            InputFile &input = *opened;
            waiting_.push_back([this, opened] { job_.begin(*opened); });
            Stream stream(input);
            while (std::shared_ptr<UnitBatch> batch = input.usable() ? stream.next() : nullptr) {
                add(std::move(batch));
            }
            waiting_.push_back([this, name, whole = input.usable()] {
                const ExitStatus status = job_.end(name, whole);
                status_ = worse(status_, whole ? status : could_not_work);
            });
            if (batches_waiting_ == 0) {
                finish_oldest(waiting_.size());
            }
        }
        finish_oldest(waiting_.size());
        return status_;
    }

private:
    using Result = typename Job::Result;

    void add(std::shared_ptr<UnitBatch> batch) {
        const size_t bytes = batch->size();
        auto future = std::make_shared<std::future<Result>>(
            std::async(threads_ > 1 ? std::launch::async : std::launch::deferred,
                       [this, batch = std::move(batch)] {
                           Result result;
                           batch->for_each([&](const Unit &unit) { job_.work(unit, result); });
                           return result;
                       }));
        waiting_.push_back([this, future, bytes] {
            --batches_waiting_;
            job_.take(future->get());
            progress_.advance(bytes);
        });
        ++batches_waiting_;
        // One more than there are threads, so that none waits while the oldest is printed.
        while (batches_waiting_ > (threads_ > 1 ? threads_ : 0)) {
            finish_oldest(1);
        }
    }

    void finish_oldest(size_t count) {
        for (; count > 0; --count) {
            waiting_.front()();
            waiting_.pop_front();
        }
    }

    Job &job_;
    size_t threads_;
    Progress &progress_;
    std::deque<std::function<void()>> waiting_; ///< in the inputs' order
    size_t batches_waiting_ = 0;
    ExitStatus status_ = all_well;
};

} // namespace kvt_tool
