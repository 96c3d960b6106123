// kvt graph: draws messages as graphs.
#pragma once

#include <string>
#include <vector>

#include "graph.h"
#include "problems.h"

namespace kvt_tool {

struct DrawOptions {
    std::string format = "dot"; ///< dot for the text of the graph, or svg, png, pdf, ...
    std::string output;         ///< a file; standard output when empty
    uint64_t message = 0;       ///< its number in all inputs, from 1; 0 for those that can be drawn
    Detail detail = Detail::by_size;
};

/// Draws the messages of the inputs that can be drawn: as DOT all of them, otherwise the only one.
ExitStatus draw_messages(const std::vector<std::string> &inputs, const DrawOptions &options);

} // namespace kvt_tool
