// Time against length: 64 messages of the full size, 8 of 8 times the size, 1 of 64 times the size.
// Each time all of them are gone through once, 40 MB or 143 MB of text and their records, so that
// none finds anything in the caches, whatever its size; a time linear in the length is the same for
// all three.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "benchmarks.h"
#include "kvt/kvt_str.h"
#include "measure.h"

namespace kvt_bench {

namespace {

constexpr unsigned most_times = 64;

/// The messages, their texts one after the other with their NULs, and where each text begins.
struct Crowd {
    std::vector<Message> messages;
    std::string texts;
    std::vector<size_t> begins;
};

Crowd make_crowd(const Workload &workload, unsigned times) {
    Crowd crowd;
    for (unsigned i = 0; i < most_times; i += times) {
        crowd.messages.push_back(workload.make({.times = times, .parts = 1}));
        crowd.begins.push_back(crowd.texts.size());
        crowd.texts += crowd.messages.back().text();
        crowd.texts += '\0';
    }
    return crowd;
}

void report(benchmark::State &state, const Crowd &crowd, double seconds) {
    constexpr double nanoseconds = 1e9;
    state.counters["ns_per_byte"] = seconds * nanoseconds /
                                    static_cast<double>(state.iterations()) /
                                    static_cast<double>(crowd.texts.size());
}

double encode_all(Crowd &crowd) {
    return time_of([&] {
        for (size_t i = 0; i < crowd.messages.size(); ++i) {
            const Message &message = crowd.messages[i];
            kvt_msg_to_str(message.kind(), message.record(), crowd.texts.data() + crowd.begins[i]);
        }
    });
}

double decode_all(Crowd &crowd) {
    std::vector<void *> records(crowd.begins.size());
    const double time = time_of([&] {
        for (size_t i = 0; i < records.size(); ++i) {
            kvt_msg_from_str(0, 0, crowd.texts.data() + crowd.begins[i], &records[i]);
        }
    });
    for (void *record : records) {
        kvt_msg_release(crowd.messages[0].kind(), record);
    }
    return time;
}

template <double (*go_through)(Crowd &)>
void measure(benchmark::State &state, const Workload &workload, unsigned times) {
    Crowd crowd = make_crowd(workload, times);
    warm_up([&] { go_through(crowd); });
    double seconds = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const double time = go_through(crowd);
        state.SetIterationTime(time);
        seconds += time;
    }
    report(state, crowd, seconds);
}

void add(const char *way, const Workload &workload, unsigned times,
         void (*measure_it)(benchmark::State &, const Workload &, unsigned)) {
    constexpr int iterations = 3;
    benchmark::RegisterBenchmark(
        (std::string("growth/") + way + "/" + workload.name + "/" + std::to_string(times) + "x")
            .c_str(),
        [&workload, times, measure_it](benchmark::State &state) {
            measure_it(state, workload, times);
        })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

void register_growth() {
    for (const Workload &workload : workloads().subspan(2, 2)) {
        for (const unsigned times : {1U, 8U, most_times}) {
            add("encode", workload, times, measure<encode_all>);
            add("decode", workload, times, measure<decode_all>);
        }
    }
}

} // namespace kvt_bench
