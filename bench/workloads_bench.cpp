// Every workload with every contender: encode/W1/kvt_str, decode/W1/simdjson and so on. Beside them
// size/, where measuring a text stands against writing it, and lines/, what merely copying a text
// and finding its lines costs.
#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <string>

#include "benchmarks.h"
#include "kvt/kvt_str.h"
#include "measure.h"
#include "touch_lines.h"

namespace kvt_bench {

namespace {

/// The full message of a workload, made when it is needed first.
const Message &message_of(const Workload &workload) {
    static std::map<std::string, Message> made;
    return made.try_emplace(workload.name, workload.make({})).first->second;
}

void encode(benchmark::State &state, const Workload &workload, const Contender &contender) {
    const Message &message = message_of(workload);
    verify(contender, message, workload.name);
    const auto codec = contender.make(message.kind());
    state.counters["bytes"] = static_cast<double>(make_document(*codec, message).view().size());
    measure_encode(state, *codec, {&message, 1});
}

void decode(benchmark::State &state, const Workload &workload, const Contender &contender) {
    const Message &message = message_of(workload);
    verify(contender, message, workload.name);
    const auto codec = contender.make(message.kind());
    const Document document = make_document(*codec, message);
    state.counters["bytes"] = static_cast<double>(document.view().size());
    measure_decode(state, *codec, message.kind(), {&document, 1});
}

void measure_size(benchmark::State &state, const Workload &workload) {
    const Message &message = message_of(workload);
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(kvt_str_get_buf_size(message.kind(), message.record()));
    }
}

void copy_text(benchmark::State &state, const Workload &workload) {
    const std::string text = message_of(workload).text();
    std::string copy = text;
    for ([[maybe_unused]] auto iteration : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::ClobberMemory();
    }
}

void find_lines(benchmark::State &state, const Workload &workload) {
    const std::string text = message_of(workload).text();
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(touch_lines(text));
    }
}

template <typename Function, typename... Arguments>
benchmark::internal::Benchmark *add(const std::string &name, Function function,
                                    const Arguments &...arguments) {
    return benchmark::RegisterBenchmark(
        name.c_str(), [=](benchmark::State &state) { function(state, arguments...); });
}

/// sscanf on the rest of the text takes most of a second for the largest text: once is enough.
bool takes_long(const Workload &workload, const Contender &contender) {
    return workload.name == std::string_view("W4") &&
           contender.name == std::string_view("sscanf_rest");
}

} // namespace

void register_workloads() {
    for (const Workload &workload : workloads()) {
        const std::string of_workload = std::string("/") + workload.name + "/";
        for (const Contender &contender : contenders()) {
            if (contender.encodes) {
                add("encode" + of_workload + contender.name, encode, workload, contender);
            }
        }
        for (const Contender &contender : contenders()) {
            if (contender.decodes) {
                auto *added =
                    add("decode" + of_workload + contender.name, decode, workload, contender);
                added->UseManualTime();
                if (takes_long(workload, contender)) {
                    added->Iterations(1);
                }
            }
        }
        add("size" + of_workload + "measure", measure_size, workload);
        add("size" + of_workload + "write", encode, workload, contender("kvt_str"));
        add("lines" + of_workload + "memcpy", copy_text, workload);
        add("lines" + of_workload + "find", find_lines, workload);
    }
}

} // namespace kvt_bench
