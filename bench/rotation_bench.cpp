// Small messages in turn, 1,024 that all differ, more like what a program meets than one message in
// a loop: fields and the lengths of numbers change from one to the next, and the records and texts
// do not all fit into the first cache. Times are those of one message.
#include <benchmark/benchmark.h>

#include <string>

#include "benchmarks.h"
#include "measure.h"

namespace kvt_bench {

namespace {

using Messages = std::vector<Message>;

/// Those of one kind, made when they are needed first.
template <Messages (*make)()> const Messages &all() {
    static const Messages made = make();
    return made;
}

struct Rotation {
    const char *name;
    const Messages &(*messages)();
};

constexpr Rotation rotations[] = {{"END_JOB", all<end_jobs>}, {"BEGIN_JOB", all<begin_jobs>}};

void verify_all(const Rotation &rotation, const Contender &contender) {
    size_t i = 0;
    for (const Message &message : rotation.messages()) {
        verify(contender, message, (std::string(rotation.name) + std::to_string(i++)).c_str());
    }
}

void encode(benchmark::State &state, const Rotation &rotation, const Contender &contender) {
    verify_all(rotation, contender);
    const Messages &messages = rotation.messages();
    const auto codec = contender.make(messages[0].kind());
    measure_encode(state, *codec, messages);
}

void decode(benchmark::State &state, const Rotation &rotation, const Contender &contender) {
    verify_all(rotation, contender);
    const Messages &messages = rotation.messages();
    const auto codec = contender.make(messages[0].kind());
    std::vector<Document> documents;
    for (const Message &message : messages) {
        documents.push_back(make_document(*codec, message));
    }
    measure_decode(state, *codec, messages[0].kind(), documents);
}

} // namespace

void register_rotation() {
    for (const Rotation &rotation : rotations) {
        for (const char *name : {"kvt_str", "sprintf", "protobuf"}) {
            benchmark::RegisterBenchmark(
                (std::string("rotation/encode/") + rotation.name + "/" + name).c_str(),
                [&rotation, name](benchmark::State &state) {
                    encode(state, rotation, contender(name));
                });
        }
        for (const char *name : {"kvt_str", "sscanf_line", "protobuf"}) {
            benchmark::RegisterBenchmark(
                (std::string("rotation/decode/") + rotation.name + "/" + name).c_str(),
                [&rotation, name](benchmark::State &state) {
                    decode(state, rotation, contender(name));
                })
                ->UseManualTime();
        }
    }
}

} // namespace kvt_bench
