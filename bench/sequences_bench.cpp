// A text of many messages: kvt_msg_arr_from_str on the whole, against its parts, the single
// messages read, measured, written and released one by one. What both hand out is released outside
// of the measured time.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "benchmarks.h"
#include "kvt/kvt_str.h"
#include "measure.h"

namespace kvt_bench {

namespace {

using Messages = std::vector<Message>;

/// Those of the larger workloads in turn, at a hundredth of their size: 5 to 23 kB of text.
Messages data_messages() {
    constexpr Scale hundredth{.times = 1, .parts = 100};
    constexpr int rounds = 20;
    Messages messages;
    for (int round = 0; round < rounds; ++round) {
        for (const Workload &workload : workloads().subspan(2)) {
            messages.push_back(workload.make(hundredth));
        }
    }
    return messages;
}

struct Sequence {
    const char *name;
    Messages (*make)();
};

constexpr Sequence sequences[] = {
    {"end_jobs", end_jobs}, {"begin_jobs", begin_jobs}, {"data", data_messages}};

/// The single texts of a sequence, their kinds, and the text of all.
struct Texts {
    std::vector<std::string> single;
    std::vector<int32_t> kinds;
    std::string whole;
};

Texts make_texts(const Sequence &sequence) {
    Texts texts;
    for (const Message &message : sequence.make()) {
        texts.single.push_back(message.text());
        texts.kinds.push_back(message.kind());
        texts.whole += texts.single.back();
    }
    return texts;
}

/// What either way hands out.
struct Split {
    std::vector<char *> texts;

    Split() = default;
    Split(const Split &) = delete;
    Split &operator=(const Split &) = delete;

    ~Split() { std::for_each(texts.begin(), texts.end(), std::free); }
};

/// Splits the whole text; returns the time in seconds.
double split_whole(const Texts &texts, Split &split) {
    char **messages = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    const double time = time_of([&] {
        kvt_msg_arr_from_str(texts.whole.c_str(), static_cast<uint32_t>(texts.whole.size()),
                             &messages, &kinds, &count);
    });
    split.texts.assign(messages, messages + count);
    std::free(messages);
    std::free(kinds);
    return time;
}

/// Reads, measures, writes and releases one message; returns the text.
char *rewrite(int32_t kind, const std::string &text) {
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text.c_str(), &record) != 0) {
        fail("a message cannot be read");
    }
    char *written = allocate<char>(kvt_str_get_buf_size(kind, record));
    kvt_msg_to_str(kind, record, written);
    kvt_msg_release(kind, record);
    return written;
}

/// Does the same with the single texts; returns the time in seconds.
double split_parts(const Texts &texts, Split &split) {
    split.texts.resize(texts.single.size());
    return time_of([&] {
        for (size_t i = 0; i < texts.single.size(); ++i) {
            split.texts[i] = rewrite(texts.kinds[i], texts.single[i]);
        }
    });
}

void verify_sequence(const Texts &texts, const char *name) {
    Split whole;
    Split parts;
    split_whole(texts, whole);
    split_parts(texts, parts);
    const auto same = [](const char *a, const char *b) {
        return std::strcmp(a, b) == 0;
    };
    if (!std::equal(whole.texts.begin(), whole.texts.end(), parts.texts.begin(), parts.texts.end(),
                    same)) {
        fail("a sequence is not split into what its parts give:", name);
    }
}

template <double (*split_up)(const Texts &, Split &)>
void measure(benchmark::State &state, const Sequence &sequence) {
    const Texts texts = make_texts(sequence);
    verify_sequence(texts, sequence.name);
    warm_up([&] {
        Split split;
        split_up(texts, split);
    });
    for ([[maybe_unused]] auto iteration : state) {
        Split split;
        state.SetIterationTime(split_up(texts, split));
    }
    state.counters["messages"] = static_cast<double>(texts.single.size());
}

void add(const char *way, const Sequence &sequence,
         void (*measure_it)(benchmark::State &, const Sequence &)) {
    benchmark::RegisterBenchmark(
        (std::string("sequence/") + way + "/" + sequence.name).c_str(),
        [&sequence, measure_it](benchmark::State &state) { measure_it(state, sequence); })
        ->UseManualTime();
}

} // namespace

void register_sequences() {
    for (const Sequence &sequence : sequences) {
        add("whole", sequence, measure<split_whole>);
        add("parts", sequence, measure<split_parts>);
    }
}

} // namespace kvt_bench
