// The groups of benchmarks. Each function registers those of one file.
#pragma once

namespace kvt_bench {

void register_workloads();
void register_rotation();
void register_sequences();
void register_growth();
void register_numbers();

} // namespace kvt_bench
