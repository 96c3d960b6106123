#include "samples/fabric.h"

#include <algorithm>
#include <iterator>

namespace kvt_tool {

namespace {

/// The numbers of one seed for different purposes.
enum Purpose : uint64_t { for_fabric = 1, for_job, for_job_ids };

/// The step and the mixing of the generator splitmix64.
constexpr uint64_t golden_step = 0x9e3779b97f4a7c15;

uint64_t mix(uint64_t value) {
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9;
    value = (value ^ (value >> 27)) * 0x94d049bb133111eb;
    return value ^ (value >> 31);
}

} // namespace

uint64_t mixed(uint64_t a, uint64_t b) {
    return mix(mix(a + golden_step) + golden_step * (b + 1));
}

uint64_t Random::next() {
    state_ += golden_step;
    return mix(state_);
}

// --- Hosts and jobs ------------------------------------------------------------------------------

Fabric::Fabric(uint64_t seed) {
    static constexpr uint64_t vendors[] = {0x0002c903, 0x248a0703, 0x98039b03, 0xb8cef603,
                                           0xec0d9a03};
    constexpr uint64_t first_day = 1893456000; // 2030-01-01
    constexpr uint64_t hour = 3600;
    Random random(mixed(seed, for_fabric));
    guids_ = vendors[random.between(0, std::size(vendors) - 1)] << 32;
    guids_ += random.between(0, 0xff) << 24;
    start_time_ = first_day + hour * random.between(0, 24 * 28 - 1);
}

std::string Fabric::host_name(uint64_t host) {
    constexpr size_t digits = 3;
    const std::string number = std::to_string(host + 1);
    return "node" + std::string(digits - std::min(number.size(), digits), '0') + number;
}

std::string Fabric::host_address(uint64_t host) {
    // The last number of an address is neither 0 nor 255.
    return "10.17." + std::to_string(host / 250) + "." + std::to_string(host % 250 + 1);
}

Job::Job(uint64_t seed, uint64_t number) {
    Random common(mixed(seed, for_job_ids));
    // Jobs before the first one, whose numbers are negative, are listed too.
    const uint64_t half = static_cast<uint64_t>(static_cast<int64_t>(number) >> 1);
    id = common.between(100000, 899999) + number;
    first_tree_id = common.between(1, 255);
    reservation_id = common.between(20000, 89999) + half;
    reservation_pkey = 0x8001 + reservation_id % 0x7ff0;

    Random own(mixed(mixed(seed, for_job), number));
    vemra_id = 1 + id % 0xffff;
    allocation_id = (uint64_t{1} << 40) + id;
    uid = own.between(1000, 4999);
    key = own.next() >> 1;
    transaction = own.next() >> 8;
    priority = own.between(0, 7);
    scale = own.between(0, 2);
    groups = own.between(1, 4);
    is_in_reservation = number % 2 != 0;
    pkey = is_in_reservation ? reservation_pkey : 0x7fff;
}

// --- Aggregation nodes ---------------------------------------------------------------------------

AggregationTree::AggregationTree(uint64_t hosts) {
    constexpr uint64_t children = 4;
    uint64_t width = (hosts + Fabric::hosts_per_leaf - 1) / Fabric::hosts_per_leaf;
    starts_.push_back(0);
    while (width != 0) {
        starts_.push_back(starts_.back() + width);
        width = width == 1 ? 0 : (width + children - 1) / children;
    }
}

uint64_t AggregationTree::parent_of(uint64_t node) const {
    constexpr uint64_t children = 4;
    const auto above = std::ranges::upper_bound(starts_, node);
    const uint64_t in_level = node - *std::prev(above);
    return *above + in_level / children;
}

// --- Switches ------------------------------------------------------------------------------------

FatTree::FatTree(uint64_t switches) {
    constexpr uint64_t most_in_two_levels = 32;
    constexpr uint64_t most_in_pod = 12;
    if (switches <= most_in_two_levels) {
        spines_per_pod_ = switches < 2 ? 0 : std::max<uint64_t>(1, switches / 3);
    } else {
        spines_per_pod_ = 4;
        cores_ = std::clamp<uint64_t>(switches / 8, spines_per_pod_, 64);
        pods_ = (switches - cores_ + most_in_pod - 1) / most_in_pod;
    }
    leaves_ = switches - cores_ - pods_ * spines_per_pod_;
    leaves_per_pod_ = leaves_ / pods_;
    larger_pods_ = leaves_ % pods_;
}

uint64_t FatTree::first_leaf_of(uint64_t pod) const {
    return pod * leaves_per_pod_ + std::min(pod, larger_pods_);
}

uint64_t FatTree::pod_of(uint64_t leaf) const {
    const uint64_t in_larger = larger_pods_ * (leaves_per_pod_ + 1);
    return leaf < in_larger ? leaf / (leaves_per_pod_ + 1)
                            : larger_pods_ + (leaf - in_larger) / leaves_per_pod_;
}

uint64_t FatTree::peers(uint64_t number) const {
    if (number < leaves_) {
        return spines_per_pod_;
    }
    const uint64_t spine = number - leaves_;
    if (spine >= pods_ * spines_per_pod_) {
        return pods_;
    }
    const uint64_t pod = spine / spines_per_pod_;
    const uint64_t in_pod = spine % spines_per_pod_;
    const uint64_t cores = (cores_ + spines_per_pod_ - 1 - in_pod) / spines_per_pod_;
    return first_leaf_of(pod + 1) - first_leaf_of(pod) + cores;
}

uint64_t FatTree::peer(uint64_t number, uint64_t index) const {
    if (number < leaves_) {
        return leaves_ + pod_of(number) * spines_per_pod_ + index;
    }
    const uint64_t spine = number - leaves_;
    const uint64_t spines = pods_ * spines_per_pod_;
    if (spine >= spines) {
        // A core has a link to that spine of each pod which has its remainder.
        return leaves_ + index * spines_per_pod_ + (spine - spines) % spines_per_pod_;
    }
    const uint64_t pod = spine / spines_per_pod_;
    const uint64_t leaves = first_leaf_of(pod + 1) - first_leaf_of(pod);
    return index < leaves
               ? first_leaf_of(pod) + index
               : leaves_ + spines + (index - leaves) * spines_per_pod_ + spine % spines_per_pod_;
}

std::string FatTree::name(uint64_t number) const {
    const uint64_t spines = pods_ * spines_per_pod_;
    if (number < leaves_) {
        return "leaf-" + std::to_string(number + 1);
    }
    return number - leaves_ < spines ? "spine-" + std::to_string(number - leaves_ + 1)
                                     : "core-" + std::to_string(number - leaves_ - spines + 1);
}

} // namespace kvt_tool
