// kvt graph: draws what a message says of trees, switches and resources.
#pragma once

#include <optional>
#include <string>

#include "message_kinds.h"

namespace kvt_tool {

/// How much of a large message is drawn.
enum class Detail : uint8_t {
    by_size, ///< what has the same neighbours becomes one node when there are many nodes
    all,     ///< every node by itself
};

/// True for the kinds that can be drawn.
bool has_graph(const kvt_str::MessageKind &kind);

/// A message as a graph in the DOT language, the same for the same message. `kind` is one that can
/// be drawn, and `record` its record, whose counts agree with its elements; all else in it may be
/// wrong. `title` is a caption, such as "job.kvt, message 3".
std::string to_dot(const kvt_str::MessageKind &kind, const void *record, const std::string &title,
                   Detail detail = Detail::by_size);

/// The version of Graphviz.
std::string graphviz_version();

/// A DOT text drawn in a format (svg, png, pdf, ...) by the layout that the text asks for. Says why
/// not in `reason` and returns nothing. Only one thread may draw at a time.
std::optional<std::string> render(const std::string &dot, const std::string &format,
                                  std::string &reason);

/// The same in a process of its own: Graphviz ends its process when it lacks memory. To be called
/// while there are no threads.
std::optional<std::string> render_apart(const std::string &dot, const std::string &format,
                                        std::string &reason);

} // namespace kvt_tool
