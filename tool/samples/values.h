// What values the fields of samples have, by their keys.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/row.h"
#include "samples/fabric.h"
#include "samples/sample.h"

namespace kvt_tool {

/// What the fields of one sample have in common.
struct Scene {
    /// `step` tells how much later it is than the start of the fabric.
    Scene(uint64_t fabric_seed, uint32_t sample_size, uint64_t job_number, uint64_t step);

    /// A number that is the same wherever it is asked for in the sample.
    uint64_t settled(uint64_t topic, uint64_t number) const {
        return mixed(mixed(seed, topic), mixed(moment, number));
    }

    uint64_t seed;
    uint64_t moment;
    uint64_t size;
    uint64_t job_number;
    uint64_t time; ///< in seconds since 1970
    Random random;
    Fabric fabric;
    Job job;
    FatTree switches;      ///< as many as the size says
    AggregationTree nodes; ///< for as many hosts
};

/// Where in a sample a value stands: in a record or list, within others.
struct Site {
    Scene &scene;
    const Site *outer;    ///< null for the record of the message
    std::string_view key; ///< of the block or list
    uint64_t index;       ///< in the list; for a block that of the record around it

    uint64_t random(uint64_t low, uint64_t high) const { return scene.random.between(low, high); }
};

using NumberRule = uint64_t(const Site &);
using RealRule = float(const Site &);
using TextRule = std::string(const Site &);

/// The rule for the numbers of a row: the one of its key in this record, else of its key in any,
/// else a small number.
NumberRule *number_rule(const kvt_str::Record &table, std::string_view key);

/// The rule for the number of elements of a list, the size as a rule.
NumberRule *count_rule(const kvt_str::Record &table, std::string_view key);

RealRule *real_rule();

/// The rule for a text, which has no quotes, braces and newlines and at most 298 characters.
TextRule *text_rule(const kvt_str::Record &table, std::string_view key);

/// A sample of a kind that has a record.
OwnedMessage make_sample(const MessageKind &kind, Scene scene);

} // namespace kvt_tool
