// The kinds of messages that can be drawn.
#pragma once

#include <string>

#include "graph/graph.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/topology.h"

namespace kvt_tool {

/// A job's trees with their aggregation nodes, and the daemons that are connected with them.
std::string job_to_dot(const vemra_job_data &job, const std::string &title, Detail detail);

/// Switches and the links between them.
std::string topology_to_dot(const vemra_topology_info_list &list, const std::string &title,
                            Detail detail);

/// Trees, aggregation nodes and the links at these.
std::string resources_to_dot(const vemra_resource_message &message, const std::string &title,
                             Detail detail);

} // namespace kvt_tool
