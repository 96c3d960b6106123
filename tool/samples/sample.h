// kvt gen: sample messages for tests and trials, as a small fabric would send them.
#pragma once

#include <cstdint>
#include <deque>
#include <span>

#include "model/owned_message.h"

namespace kvt_tool {

/// The size of a sample, where nothing else is asked for.
inline constexpr uint32_t default_sample_size = 8;

/// The greatest size: identifiers of 16 bits last for the hosts and switches of such a fabric, and
/// no text comes near to 4 GiB.
inline constexpr uint32_t largest_sample_size = 10000;

/// Which sample of a kind is wanted. The same one has the same text on every machine.
struct Sample {
    uint64_t seed = 0;                   ///< of another seed, everything is different
    uint32_t size = default_sample_size; ///< of its longest lists; hosts, switches, events, ...
    uint64_t index = 0;                  ///< in a series of one seed: of the same fabric, later
};

/// A sample of a kind that has a record. A greater size than the largest is taken for that.
///
/// Its text is in normal form: what it is read into is written as the same text. Samples of one
/// seed are of one fabric, and those of one seed and index of one job: its hosts, their port GUIDs
/// and the job's identifiers agree between kinds. Lists of a size of 0 are empty. `hosts` names
/// only as many hosts as one line can have.
OwnedMessage make_sample(const MessageKind &kind, const Sample &sample);

/// A mixed series of samples, without an end: a day of a fabric. Its topology and resources are
/// asked for, jobs begin, get their data and groups, and end, some with an error or in
/// reservations, and several at the same time; meanwhile, others ask for jobs and events.
class FabricDay {
public:
    /// Jobs have up to `size` hosts, and so on.
    explicit FabricDay(uint64_t seed, uint32_t size = default_sample_size);

    OwnedMessage next();

private:
    /// Messages that belong to one job or one purpose, and come in this order.
    struct Story {
        std::span<const uint32_t> kinds; ///< still to come
        uint64_t job;
        uint32_t size;
    };

    void begin_story();

    uint64_t seed_;
    uint32_t size_;
    uint64_t random_; ///< state of the choice of stories
    uint64_t step_ = 0;
    uint64_t jobs_ = 0;
    std::deque<Story> stories_; ///< under way
};

} // namespace kvt_tool
