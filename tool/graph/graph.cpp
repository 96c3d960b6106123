#include "graph/graph.h"

#include "graph/kinds.h"
#include "kvt/messages/message_type.h"

namespace kvt_tool {

bool has_graph(const kvt_str::MessageKind &kind) {
    return kind.value == VEMRA_MSG_TYPE_JOB_DATA ||
           kind.value == VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY ||
           kind.value == VEMRA_MSG_TYPE_RESOURCE_DATA;
}

std::string to_dot(const kvt_str::MessageKind &kind, const void *record, const std::string &title,
                   Detail detail) {
    switch (kind.value) {
    case VEMRA_MSG_TYPE_JOB_DATA:
        return job_to_dot(*static_cast<const vemra_job_data *>(record), title, detail);
    case VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY:
        return topology_to_dot(*static_cast<const vemra_topology_info_list *>(record), title,
                               detail);
    default:
        return resources_to_dot(*static_cast<const vemra_resource_message *>(record), title,
                                detail);
    }
}

} // namespace kvt_tool
