// Small messages that are drawn.
#pragma once

#include <string>
#include <vector>

#include "graph/graph.h"
#include "kvt/messages/message_type.h"
#include "support/messages.h"

namespace kvt_tool {

/// The DOT text of a message whose block is `block`, titled "test".
inline std::string dot_of(int32_t kind, const std::string &block, Detail detail = Detail::by_size) {
    const kvt_str::MessageKind &row = *kvt_str::find_kind(kind);
    const kvt_test::ReadMessage<char> message(kind, kvt_test::message_text(row.name, block));
    return to_dot(row, &*message, "test", detail);
}

inline std::string topology_dot(const std::string &lines) {
    return dot_of(VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, "  topology_info_list {\n" + lines + "  }\n");
}

inline std::string job_dot(const std::string &lines) {
    return dot_of(VEMRA_MSG_TYPE_JOB_DATA, "  job_data {\n" + lines + "  }\n");
}

inline std::string resources_dot(const std::string &lines) {
    return dot_of(VEMRA_MSG_TYPE_RESOURCE_DATA, "  resource_message {\n" + lines + "  }\n");
}

/// A switch of a topology with its peers.
inline std::string switch_block(const std::string &id, const std::string &name,
                                const std::vector<std::string> &peers, bool has_port = false) {
    std::string block = "    switches {\n      id: " + id + "\n      name: \"" + name + "\"\n";
    for (const std::string &peer : peers) {
        block += "      peer_ids: " + peer + "\n";
    }
    return block + (has_port ? "      port_guids: 7\n" : "") + "    }\n";
}

/// The lines of a DOT text that hold `what`, without their indentation.
inline std::string lines_with(const std::string &dot, const std::string &what) {
    std::string found;
    for (size_t begin = 0; begin < dot.size();) {
        const size_t end = dot.find('\n', begin);
        const std::string line = dot.substr(begin, end - begin);
        if (line.find(what) != std::string::npos) {
            found += line.substr(line.find_first_not_of(' ')) + "\n";
        }
        begin = end + 1;
    }
    return found;
}

} // namespace kvt_tool
