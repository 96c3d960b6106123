// Writes statements of the DOT language.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "graph/colours.h"

namespace kvt_tool {

/// What stands above a picture.
struct Caption {
    std::string title;
    std::string summary; ///< one line: what the message holds
    std::vector<LegendEntry> legend;
    unsigned font_size = 14;
};

/// A name and the text of its value, as it stands in DOT: a plain word, or quoted().
using DotAttribute = std::pair<std::string_view, std::string>;
using DotAttributes = std::vector<DotAttribute>;

/// A DOT text that grows statement by statement.
class DotText {
public:
    /// Begins a graph with its caption.
    DotText(const Caption &caption, const DotAttributes &graph);

    /// Sets what holds for all nodes ("node") or edges ("edge") that follow.
    void defaults(std::string_view of_what, const DotAttributes &attributes);
    void node(const std::string &id, const DotAttributes &attributes);
    void edge(const std::string &from, const std::string &to, const DotAttributes &attributes);

    /// Opens and closes a subgraph; one whose name begins with "cluster" is a box around its nodes.
    void open(const std::string &name, const DotAttributes &attributes);
    void close();

    /// Ends the graph.
    std::string finish();

private:
    void indent();
    void list(const DotAttributes &attributes);

    std::string text_;
    unsigned depth_ = 1;
};

} // namespace kvt_tool
