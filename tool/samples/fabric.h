// The fabric and the jobs that samples are about: what messages of different kinds agree on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvt_tool {

/// A number that looks random and is always the same for the same two.
uint64_t mixed(uint64_t a, uint64_t b);

/// Random numbers that are the same on every machine, which those of the standard library's
/// distributions are not.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}

    uint64_t next();

    /// From `low` to `high`, both included, which are less than 2^32.
    uint64_t between(uint64_t low, uint64_t high) {
        return low + ((next() >> 32) * (high - low + 1) >> 32);
    }

private:
    uint64_t state_;
};

/// The hosts and switches of the fabric of a seed. All are counted from 0 here.
class Fabric {
public:
    explicit Fabric(uint64_t seed);

    uint64_t host_guid(uint64_t host) const { return guids_ + 0x10 * (host + 1); }

    uint64_t switch_guid(uint64_t number) const { return guids_ + 0x800000 + 0x40 * (number + 1); }

    /// The LIDs of hosts begin after those of the aggregation nodes of the largest job.
    static uint64_t host_lid(uint64_t host) { return 0x1001 + host; }

    static uint64_t switch_lid(uint64_t number) { return 0x01 + number; }

    static std::string host_name(uint64_t host);

    static std::string host_address(uint64_t host);

    /// The identifier of the daemon on a host.
    uint64_t daemon_id(uint64_t host) const { return host_guid(host); }

    /// When its first sample was sent, in seconds since 1970.
    uint64_t start_time() const { return start_time_; }

    static constexpr uint64_t subnet_prefix = 0xfe80000000000000;

    static constexpr uint64_t hosts_per_leaf = 4;

private:
    uint64_t guids_; ///< those of its ports and switches begin here
    uint64_t start_time_;
};

/// The jobs of a seed are numbered. Every other one, with an odd number, runs in a reservation.
/// Those before the first one have negative numbers, wrapped around.
struct Job {
    Job(uint64_t seed, uint64_t number);

    /// Of the low-latency tree and, as its peer, of the streaming tree.
    uint64_t tree_id(uint64_t tree) const { return first_tree_id + 512 * (tree % 2); }

    uint64_t id;
    uint64_t vemra_id; ///< within the aggregation service, 16 bits
    uint64_t allocation_id;
    uint64_t uid;
    uint64_t key;
    uint64_t transaction;
    uint64_t priority;
    uint64_t scale;  ///< of its quota, from 0 to 2
    uint64_t groups; ///< that it asks for, from 1 to 4
    uint64_t first_tree_id;
    uint64_t reservation_id; ///< of the reservation that has this number, used by the job or not
    bool is_in_reservation;
    uint64_t reservation_pkey;
    uint64_t pkey;
};

/// How the aggregation nodes of a job make a tree: a leaf for each few hosts, above these a node
/// for each few nodes, up to a single one. Nodes are counted from 0, leaves first.
class AggregationTree {
public:
    explicit AggregationTree(uint64_t hosts);

    uint64_t nodes() const { return starts_.back(); }

    static uint64_t leaf_of(uint64_t host) { return host / Fabric::hosts_per_leaf; }

    /// For nodes() - 1, the root, that is nodes().
    uint64_t parent_of(uint64_t node) const;

private:
    std::vector<uint64_t> starts_; ///< of the levels, and after the last one
};

/// How switches make a fat tree. Up to 32 have two levels, where each leaf has a link to each
/// spine. More have three: pods of that form, and cores above them. Switches are counted from 0:
/// leaves, spines, cores.
class FatTree {
public:
    explicit FatTree(uint64_t switches);

    uint64_t leaves() const { return leaves_; }

    bool is_leaf(uint64_t number) const { return number < leaves_; }

    /// Of the switches that a switch has links to.
    uint64_t peers(uint64_t number) const;
    uint64_t peer(uint64_t number, uint64_t index) const;

    std::string name(uint64_t number) const;

private:
    uint64_t first_leaf_of(uint64_t pod) const;
    uint64_t pod_of(uint64_t leaf) const;

    uint64_t pods_ = 1;
    uint64_t spines_per_pod_;
    uint64_t cores_ = 0;
    uint64_t leaves_;
    uint64_t leaves_per_pod_; ///< of the smaller pods
    uint64_t larger_pods_;    ///< the first ones, which have one leaf more
};

} // namespace kvt_tool
