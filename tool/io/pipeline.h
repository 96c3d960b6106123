// Work on the units of several inputs, on several threads, with results in the inputs' order.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "io/input.h"
#include "io/memory.h"
#include "io/problems.h"
#include "io/progress.h"
#include "io/thread_team.h"
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
/// The input stays open from `begin` to `end`. `whole` tells that it has been read to its end, and
/// that there was memory for all of it. No more than a megabyte, or one of the largest messages, is
/// in memory for each thread and its result. Where there is no room for so many threads and their
/// batches, fewer do it.
template <typename Job, typename Stream = UnitStream> class Pipeline {
public:
    Pipeline(Job &job, unsigned threads, Progress &progress)
        : job_(job), threads_(threads_with_room(threads)), progress_(progress),
          team_([this] { work_on_batches(); }) {}

    ~Pipeline() {
        const std::lock_guard lock(mutex_);
        is_over_ = true;
        batch_waits_.notify_all();
    }

    Pipeline(const Pipeline &) = delete;
    Pipeline &operator=(const Pipeline &) = delete;

    ExitStatus run(const std::vector<std::string> &inputs) {
        for (const std::string &name : inputs) {
            read(std::make_shared<InputFile>(name));
        }
        finish_all();
        return status_;
    }

private:
    using Result = typename Job::Result;

    enum class What { beginning, batch, end };
    enum class State { waits, works, done, lacks_memory, failed };

    /// What is done in the inputs' order.
    struct Step {
        What what = What::batch;
        std::shared_ptr<InputFile> input;
        std::shared_ptr<UnitBatch> batch;
        State state = State::waits; ///< of a batch, like the rest
        Result result = {};
        std::exception_ptr exception = nullptr;
    };

    void read(const std::shared_ptr<InputFile> &input) {
        append({What::beginning, input, nullptr});
        remember_input(input->name());
        Stream stream(*input);
        while (std::shared_ptr<UnitBatch> batch = next_batch(*input, stream)) {
            add({What::batch, input, std::move(batch)});
        }
        append({What::end, input, nullptr});
        if (batches_ == 0) {
            finish_all();
        }
    }

    /// The next batch; null at the end, and where there is no memory for it.
    std::shared_ptr<UnitBatch> next_batch(InputFile &input, Stream &stream) {
        while (batches_ >= threads_) {
            finish_oldest();
        }
        try {
            return input.usable() ? stream.next() : nullptr;
        } catch (const std::bad_alloc &) {
            finish_all(); // and make room
        }
        if constexpr (requires { Stream::goes_on_after_bad_alloc; }) {
            try {
                return stream.next();
            } catch (const std::bad_alloc &) {
            }
        }
        lack_memory(input);
        return nullptr;
    }

    void append(Step &&step) {
        const std::lock_guard lock(mutex_);
        steps_.push_back(std::move(step));
    }

    void add(Step &&step) {
        append(std::move(step));
        ++batches_;
        if (threads_ == 1) {
            return;
        }
        if (team_.size() < batches_ && !team_.add_thread() && team_.size() == 0) {
            threads_ = 1; // there is no other
        }
        batch_waits_.notify_one();
    }

    /// The first batch that no thread has begun, where threads are to do that; else null.
    Step *next_for_thread() {
        if (threads_ > 1) {
            for (Step &step : steps_) {
                if (step.what == What::batch && step.state == State::waits) {
                    return &step;
                }
            }
        }
        return nullptr;
    }

    /// What each thread of the team does.
    void work_on_batches() {
        std::unique_lock lock(mutex_);
        while (!is_over_) {
            Step *step = next_for_thread();
            if (step == nullptr) {
                batch_waits_.wait(lock);
                continue;
            }
            step->state = State::works;
            lock.unlock();
            const State state = work_on(*step);
            lock.lock();
            step->state = state;
            batch_is_done_.notify_one();
        }
    }

    State work_on(Step &step) {
        try {
            allocation_has_failed(); // before this
            step.batch->for_each([&](const Unit &unit) { job_.work(unit, step.result); });
            return allocation_has_failed() ? State::lacks_memory : State::done;
        } catch (const std::bad_alloc &) {
            return State::lacks_memory;
        } catch (...) {
            step.exception = std::current_exception();
            return State::failed;
        }
    }

    void finish_all() {
        while (!steps_.empty()) {
            finish_oldest();
        }
    }

    void finish_oldest() {
        Step &step = steps_.front();
        try {
            switch (step.what) {
            case What::beginning:
                is_whole_ = true;
                job_.begin(*step.input);
                break;
            case What::batch:
                --batches_;
                finish_batch(step);
                break;
            case What::end:
                finish_input(*step.input);
                break;
            }
        } catch (const std::bad_alloc &) {
            lack_memory(*step.input);
        }
        const std::lock_guard lock(mutex_);
        steps_.pop_front();
    }

    void finish_batch(Step &step) {
        wait_for(step);
        if (step.state == State::waits) {
            step.state = work_on(step);
        }
        if (step.state == State::lacks_memory) {
            give_up_threads();
            step.result = {};
            step.state = work_on(step);
        }
        if (step.state == State::lacks_memory) {
            step.result = {};
            lack_memory(*step.input);
        } else if (step.state == State::failed) {
            std::rethrow_exception(step.exception);
        } else {
            job_.take(std::move(step.result));
        }
        progress_.advance(step.batch->size());
    }

    /// Waits until the work on a batch is over, or has not begun and there is no thread for it.
    void wait_for(const Step &step) {
        std::unique_lock lock(mutex_);
        batch_is_done_.wait(lock, [&] {
            return step.state != State::works && (step.state != State::waits || threads_ == 1);
        });
    }

    /// From now on this thread alone works: the others' results make room for it.
    void give_up_threads() {
        {
            const std::lock_guard lock(mutex_);
            threads_ = 1;
        }
        for (Step &step : steps_) {
            if (step.what == What::batch) {
                wait_for(step);
                step.state = State::waits;
                step.result = {};
            }
        }
        keep_memory_back();
    }

    void finish_input(const InputFile &input) {
        const bool is_whole = input.usable() && is_whole_;
        const ExitStatus status = job_.end(input.path(), is_whole);
        status_ = worse(status_, is_whole ? status : could_not_work);
    }

    void lack_memory(const InputFile &input) {
        is_whole_ = false;
        status_ = no_memory_for(input.name());
        keep_memory_back();
    }

    Job &job_;
    size_t threads_; ///< 1: this one alone
    Progress &progress_;
    std::deque<Step> steps_; ///< in the inputs' order
    size_t batches_ = 0;     ///< of them, and not finished
    bool is_whole_ = true;   ///< nothing lacked memory of the input whose steps are being finished
    ExitStatus status_ = all_well;

    std::mutex mutex_; ///< of the steps, and whether threads work on them
    std::condition_variable batch_waits_;
    std::condition_variable batch_is_done_;
    bool is_over_ = false;
    ThreadTeam team_; ///< last: its threads use all of this
};

} // namespace kvt_tool
