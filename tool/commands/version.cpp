// kvt --version.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "commands/command_line.h"
#include "graph/graph.h"
#include "message_kinds.h"

namespace kvt_tool {

namespace {

#define KVT_TEXT_OF(number) #number
#define KVT_NUMBERS(major, minor, patch)                                                           \
    KVT_TEXT_OF(major) "." KVT_TEXT_OF(minor) "." KVT_TEXT_OF(patch)

constexpr char json_version[] = KVT_NUMBERS(
    NLOHMANN_JSON_VERSION_MAJOR, NLOHMANN_JSON_VERSION_MINOR, NLOHMANN_JSON_VERSION_PATCH);

#ifdef __clang__
constexpr char compiler[] = "clang++ " __clang_version__;
#else
constexpr char compiler[] = "g++ " __VERSION__;
#endif

} // namespace

std::string version_text() {
    const auto kinds =
        std::ranges::count_if(kvt_str::message_kinds(), [](const kvt_str::MessageKind &kind) {
            return kind.record != nullptr;
        });
    return "kvt " KVT_VERSION "\nformat: " + std::to_string(kinds) +
           " kinds of messages\ncompiler: " + compiler + "\nlibraries: Graphviz " +
           graphviz_version() + ", CLI11 " CLI11_VERSION ", nlohmann_json " + json_version;
}

} // namespace kvt_tool
