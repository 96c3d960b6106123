// kvt_bench: all speeds in one run. Its options are those of Google Benchmark; without any, it runs
// all benchmarks eleven times in random order and prints medians and spread.
//
//     kvt_bench --benchmark_filter='decode/W3/'
//
// Every contender is verified before it is measured; the program ends with an error if one of them
// does not do what all do.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <climits>
#include <cstdio>
#include <vector>

#include "benchmarks.h"

int main(int argc, char **argv) {
    // Before each benchmark the heap is trimmed; from then on released memory stays with the
    // process. Otherwise most of the time of a decoder of large records, of any of them, could go
    // into the kernel giving the same pages again and again, depending on which sizes the benchmark
    // before it had released.
    if (mallopt(M_MMAP_THRESHOLD, INT_MAX) == 0 || mallopt(M_TRIM_THRESHOLD, INT_MAX) == 0) {
        std::fputs("kvt_bench: cannot keep released memory; decoding is slower\n", stderr);
    }

    // Given first, so that those of the command line win.
    static char interleaving[] = "--benchmark_enable_random_interleaving=true";
    static char repetitions[] = "--benchmark_repetitions=11";
    static char only_aggregates[] = "--benchmark_report_aggregates_only=true";
    static char min_time[] = "--benchmark_min_time=0.05";
    std::vector<char *> arguments = {argv[0], interleaving, repetitions, only_aggregates, min_time};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }

    benchmark::AddCustomContext("compiler", KVT_COMPILER);
    kvt_bench::register_workloads();
    kvt_bench::register_rotation();
    kvt_bench::register_sequences();
    kvt_bench::register_growth();
    kvt_bench::register_numbers();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
