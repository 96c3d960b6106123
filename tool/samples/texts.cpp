// The texts and floats of samples.
#include <array>
#include <cstdio>
#include <ctime>
#include <iterator>

#include "samples/rules.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// What the reader takes of one line.
constexpr size_t longest_line = 298;

/// As many as one line can have: a list that goes on would be cut within a name.
std::string hosts(const Site &at) {
    std::string names;
    for (uint64_t host = 0; host < at.scene.size; ++host) {
        const std::string name = Fabric::host_name(host);
        if (names.size() + 1 + name.size() > longest_line) {
            break;
        }
        names += (names.empty() ? "" : ",") + name;
    }
    return names;
}

std::string some_host(const Site &at) {
    return Fabric::host_name(at.random(0, at.scene.size == 0 ? 0 : at.scene.size - 1));
}

std::string description(const Site &at) {
    const std::string tree = std::to_string(at.scene.job.tree_id(0));
    // Drawn one after the other: within one expression, compilers differ in the order.
    const uint64_t topic = at.random(0, 4);
    const std::string host = some_host(at);
    const std::string port = std::to_string(at.random(1, 40));
    switch (topic) {
    case 0:
        return "tree " + tree + ": no answer from " + host + ", port 1";
    case 1:
        return "link down on port " + port + " of leaf-1";
    case 2:
        return "not enough OSTs: " + port + " of 64 are left";
    case 3:
        return host + " left tree " + tree;
    default:
        return "";
    }
}

/// In coordinated universal time.
std::string time_text(uint64_t seconds) {
    const auto time = static_cast<time_t>(seconds);
    std::tm parts = {};
    gmtime_r(&time, &parts);
    std::array<char, 64> text = {};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return text.data();
}

// An event tells these of what it is about, in this order, or the first few of them.
constexpr const char *entry_names[] = {"severity", "host", "job_id", "tree_id", "state", "rails"};

std::string entry_name(const Site &at) {
    return entry_names[at.index % std::size(entry_names)];
}

std::string entry_value(const Site &at) {
    static constexpr const char *severities[] = {"info", "warning", "error"};
    static constexpr const char *states[] = {"up", "down", "draining"};
    switch (at.index % std::size(entry_names)) {
    case 0:
        return severities[at.random(0, std::size(severities) - 1)];
    case 1:
        return some_host(at);
    case 2:
        return std::to_string(at.scene.job.id);
    case 3:
        return std::to_string(at.scene.job.tree_id(0));
    case 4:
        return states[at.random(0, std::size(states) - 1)];
    default:
        return "1";
    }
}

constexpr Rule<TextRule> texts[] = {
    {"", "hosts", hosts},
    {"", "description", description},
    {"vemra_sd_info", "addr",
     [](const Site &at) {
         return Fabric::host_address(at.index);
     }},
    {"persistent_job_info", "addr",
     [](const Site &at) {
         return Fabric::host_name(at.index) + ":6126";
     }},
    {"vemra_topology_switch_info", "name",
     [](const Site &at) {
         return at.scene.switches.name(at.index);
     }},
    {"", "ts",
     [](const Site &at) {
         return time_text(at.scene.time - at.random(0, 59));
     }},
    {"", "entry_name", entry_name},
    {"", "entry_value", entry_value},
};

std::string some_text(const Site &at) {
    return "text " + std::to_string(at.random(1, 100));
}

} // namespace

TextRule *text_rule(const Record &table, std::string_view key) {
    TextRule *found = find_rule<TextRule>(texts, table.name, key);
    if (found == nullptr) {
        found = find_rule<TextRule>(texts, "", key);
    }
    return found != nullptr ? found : some_text;
}

RealRule *real_rule() {
    return [](const Site &at) {
        static constexpr float percentages[] = {100, 50, 25, 12.5F, 6.25F, 0.1F};
        return percentages[at.random(0, std::size(percentages) - 1)];
    };
}

} // namespace kvt_tool
