// kvt split: one file for each message.
#pragma once

#include <string>
#include <vector>

#include "problems.h"

namespace kvt_tool {

/// Writes each message of all inputs, as it stands there, to a file of its own in a folder, which
/// is made when it is missing: 000001-job_data.kvt, 000002-end_job.kvt and so on. No file that is
/// there is touched.
ExitStatus split_messages(const std::vector<std::string> &inputs, const std::string &folder);

} // namespace kvt_tool
