// The loops that measure.
//
// Encoding is measured as it is: document after document into the same room.
//
// Decoding makes records that must be released, and the release is not part of it. So documents are
// decoded in batches, a clock is read before and after each, and then the records are released. A
// batch is as many documents as make 32 kB, at most 128: many enough that the clock does not
// matter, few enough that all records of a batch of small messages stay in the cache.
//
// Before each benchmark the heap is trimmed; from then on released memory stays with the process.
// So no contender finds the holes that another has left, and no figure depends on when the kernel
// gives pages back.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <span>
#include <vector>

#include "contenders.h"

namespace kvt_bench {

/// The time of `work` in seconds.
template <typename Work> double time_of(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    benchmark::ClobberMemory();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Trims the heap, and does once, without the clock, what is to be measured: memory that is used
/// for the first time costs more.
template <typename Work> void warm_up(Work work) {
    malloc_trim(0);
    work();
}

/// Encodes the messages in turn; one iteration is one message.
inline void measure_encode(benchmark::State &state, Codec &codec,
                           std::span<const Message> messages) {
    size_t next = 0;
    warm_up([&] { codec.encode(messages[next].record()); });
    for ([[maybe_unused]] auto iteration : state) {
        codec.encode(messages[next].record());
        benchmark::ClobberMemory();
        next = next + 1 == messages.size() ? 0 : next + 1;
    }
}

/// Decodes the documents in turn; one iteration is one message. For UseManualTime.
inline void measure_decode(benchmark::State &state, Codec &codec, int32_t kind,
                           std::span<const Document> documents) {
    constexpr size_t characters_at_once = 32768;
    constexpr size_t most_at_once = 128;
    size_t characters = 0;
    for (const Document &document : documents) {
        characters += document.view().size();
    }
    const size_t batch =
        std::clamp<size_t>(characters_at_once * documents.size() / characters, 1, most_at_once);
    std::vector<void *> records(batch);
    size_t next = 0;
    const auto decode_batch = [&] {
        const double time = time_of([&] {
            for (void *&record : records) {
                record = codec.decode(documents[next].view());
                next = next + 1 == documents.size() ? 0 : next + 1;
            }
        });
        for (void *record : records) {
            kvt_msg_release(kind, record);
        }
        return time;
    };
    warm_up(decode_batch);
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.SetIterationTime(decode_batch());
    }
}

} // namespace kvt_bench
