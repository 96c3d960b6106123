// Runs the codec's operations for scripts/count_instructions, which counts their instructions.
//
//   kvt_instructions [PREFIX]
//
// is to be run by callgrind with --instr-atstart=no, and leaves one dump for each measurement whose
// name begins with PREFIX: all of them, by default. Names are OPERATION/WORKLOAD, such as
// "read/W3", with "/x8" after them for a larger form of the same. On standard output it says what
// it was built with, and then, for each measurement, how many lines and characters its text has.
#include <gnu/libc-version.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <valgrind/callgrind.h>

#include "instructions_hostile.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "workloads.h"

namespace {

using kvt_bench::HostileText;
using kvt_bench::Message;
using kvt_bench::Scale;
using kvt_bench::Workload;

/// How much larger the larger form of a measurement is.
constexpr unsigned growth = 8;

// --- What is measured ----------------------------------------------------------------------------

/// Something to count the instructions of. Each method may be called again and again, in the order
/// in which they stand here.
class Operation {
public:
    virtual ~Operation() = default;

    virtual void prepare() {}

    /// Returns whether the codec did what it should.
    virtual bool run() = 0;

    virtual void clean_up() {}
};

class Write final : public Operation {
public:
    Write(const Message &message, const std::string &text)
        : message_(message), buffer_(text.size() + 1, '\0') {}

    bool run() override {
        return kvt_msg_to_str(message_.kind(), message_.record(), buffer_.data()) == 0;
    }

private:
    const Message &message_;
    std::string buffer_;
};

class Size final : public Operation {
public:
    explicit Size(const Message &message) : message_(message) {}

    bool run() override { return kvt_str_get_buf_size(message_.kind(), message_.record()) != 0; }

private:
    const Message &message_;
};

class Read : public Operation {
public:
    Read(int32_t kind, const std::string &text) : kind_(kind), text_(text) {}

    bool run() override { return read(); }

    void clean_up() override { release(); }

protected:
    bool read() { return kvt_msg_from_str(0, 0, text_.c_str(), &record_) == 0; }

    void release() {
        kvt_msg_release(kind_, record_);
        record_ = nullptr;
    }

private:
    int32_t kind_;
    const std::string &text_;
    void *record_ = nullptr;
};

class Release final : public Read {
public:
    using Read::Read;

    void prepare() override { was_read_ = read(); }

    bool run() override {
        release();
        return was_read_;
    }

    void clean_up() override {}

private:
    bool was_read_ = false;
};

class ReadAndRelease final : public Read {
public:
    using Read::Read;

    bool run() override {
        const bool was_read = read();
        release();
        return was_read;
    }

    void clean_up() override {}
};

/// Splits a text, and frees what comes of it.
class Sequence final : public Operation {
public:
    explicit Sequence(const std::string &text) : text_(text) {}

    bool run() override {
        char **texts = nullptr;
        uint32_t *kinds = nullptr;
        int32_t count = 0;
        if (kvt_msg_arr_from_str(text_.c_str(), static_cast<uint32_t>(text_.size()), &texts, &kinds,
                                 &count) != 0) {
            return false;
        }
        for (int32_t i = 0; i < count; ++i) {
            std::free(texts[i]);
        }
        std::free(texts);
        std::free(kinds);
        return true;
    }

private:
    const std::string &text_;
};

// --- How it is counted ---------------------------------------------------------------------------

/// Counts one run. Earlier ones go uncounted: they bind the names of the C library, and the heap
/// has come to rest after them. Ends the process when the codec fails.
void count(const std::string &name, const std::string &text, Operation &operation) {
    constexpr int warm_up_runs = 3;
    bool worked = true;
    for (int i = 0; i < warm_up_runs; ++i) {
        operation.prepare();
        worked = operation.run() && worked;
        operation.clean_up();
    }
    operation.prepare();
    CALLGRIND_START_INSTRUMENTATION;
    const bool worked_when_counted = operation.run();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    operation.clean_up();
    if (!worked || !worked_when_counted) {
        std::fprintf(stderr, "kvt_instructions: the codec fails at %s\n", name.c_str());
        _exit(1);
    }
    std::printf("%s\t%td\t%zu\n", name.c_str(), std::ranges::count(text, '\n'), text.size());
}

/// Does something in a process of its own, so that the heap that a measurement finds does not
/// depend on those before it.
template <typename Work> void in_own_process(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "kvt_instructions: a measurement failed\n");
        std::exit(1);
    }
}

/// Goes through all measurements, and makes those that are wanted.
class Measurements {
public:
    explicit Measurements(std::string prefix) : prefix_(std::move(prefix)) {}

    /// Writes, measures, reads, releases and splits a message.
    void of(const Workload &workload, Scale scale, const std::string &suffix) const {
        const auto with_message = [&](const char *operation, auto measure) {
            make(operation + ("/" + (workload.name + suffix)), [&](const std::string &name) {
                const Message message = workload.make(scale);
                measure(name, message, message.text());
            });
        };
        using Text = const std::string &;
        with_message("write", [](Text name, const Message &message, Text text) {
            Write write(message, text);
            count(name, text, write);
        });
        with_message("size", [](Text name, const Message &message, Text text) {
            Size size(message);
            count(name, text, size);
        });
        with_message("read", [](Text name, const Message &message, Text text) {
            Read read(message.kind(), text);
            count(name, text, read);
        });
        with_message("release", [](Text name, const Message &message, Text text) {
            Release release(message.kind(), text);
            count(name, text, release);
        });
        with_message("sequence", [](Text name, const Message &, Text text) {
            const std::string several = text + text + text + text;
            Sequence sequence(several);
            count(name, several, sequence);
        });
    }

    /// Reads, as one message and as several.
    void of(const HostileText &hostile, size_t repetitions, const std::string &suffix) const {
        make("read/" + (hostile.name + suffix), [&](const std::string &name) {
            const std::string text = hostile.text(repetitions);
            ReadAndRelease read(hostile.kind, text);
            count(name, text, read);
        });
        make("sequence/" + (hostile.name + suffix), [&](const std::string &name) {
            const std::string text = hostile.text(repetitions);
            Sequence sequence(text);
            count(name, text, sequence);
        });
    }

private:
    template <typename Measure> void make(const std::string &name, Measure measure) const {
        if (name.starts_with(prefix_)) {
            in_own_process([&] { measure(name); });
        }
    }

    std::string prefix_;
};

} // namespace

int main(int argc, char **argv) {
    const Measurements measurements(argc > 1 ? argv[1] : "");
    std::printf("%s, glibc %s\n", KVT_COMPILER, gnu_get_libc_version());
    std::fflush(stdout); // a child would print it again
    const std::string larger = "/x" + std::to_string(growth);

    for (const Workload &workload : kvt_bench::workloads()) {
        // Two messages are small as they are; the others are made small.
        const bool is_small = workload.name < std::string("W3");
        measurements.of(workload, {.times = 1, .parts = is_small ? 1 : growth}, "");
        if (!is_small) {
            measurements.of(workload, {.times = 1, .parts = 1}, larger);
        }
    }
    for (const HostileText &hostile : kvt_bench::hostile_texts()) {
        constexpr size_t size = 8192;
        const size_t repetitions = size / std::strlen(hostile.repeated);
        measurements.of(hostile, repetitions, "");
        measurements.of(hostile, growth * repetitions, larger);
    }
    return 0;
}
