// Which switches of a fabric are at its edge, and how far the others are from there.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace kvt_tool {

struct FabricSwitch {
    std::vector<uint32_t> peers; ///< indices of switches, both ways, each once, without itself
    uint64_t links = 0;          ///< to peers, parallel ones counted
    bool is_absent = false;      ///< named by its peers only
    bool has_ports = false;      ///< the message lists port GUIDs of it
};

/// A level for each switch, 0 at the edge; nothing when the fabric is no hierarchy. A guess: where
/// some switches list ports and others do not, those are at the edge; otherwise those with the
/// fewest links; and of two ends of a tree, the one with more switches.
std::optional<std::vector<int>> guess_levels(const std::vector<FabricSwitch> &switches);

} // namespace kvt_tool
