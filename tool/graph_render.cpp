#include <gvc.h>

#include <memory>

#include "graph.h"

namespace kvt_tool {

namespace {

/// What Graphviz says while it draws; its callback has no place for an argument of ours.
std::string said;

int note(char *text) {
    said += text;
    return 0;
}

struct Release {
    void operator()(GVC_t *context) const { gvFreeContext(context); }

    void operator()(Agraph_t *graph) const { agclose(graph); }
};

using Context = std::unique_ptr<GVC_t, Release>;
using Graph = std::unique_ptr<Agraph_t, Release>;

/// A layout, which must go before its graph.
class Layout {
public:
    Layout(const Context &context, const Graph &graph) : context_(context), graph_(graph) {
        const char *engine = agget(graph_.get(), const_cast<char *>("layout"));
        done_ = gvLayout(context_.get(), graph_.get(), engine != nullptr ? engine : "dot") == 0;
    }

    ~Layout() { gvFreeLayout(context_.get(), graph_.get()); }

    Layout(const Layout &) = delete;
    Layout &operator=(const Layout &) = delete;

    bool is_done() const { return done_; }

private:
    const Context &context_;
    const Graph &graph_;
    bool done_ = false;
};

/// What Graphviz said, without the line's end; or `otherwise` when it said nothing.
std::string last_words(const char *otherwise) {
    while (!said.empty() && (said.back() == '\n' || said.back() == ' ')) {
        said.pop_back();
    }
    return said.empty() ? otherwise : said;
}

std::optional<std::string> draw(const std::string &dot, const std::string &format,
                                std::string &reason) {
    // Layout by forces took 14 s for half of this.
    constexpr int most_nodes_and_edges = 800000;
    const Context context(gvContext());
    const Graph graph(agmemread(dot.c_str()));
    if (graph == nullptr) {
        reason = last_words("no text in the DOT language");
        return std::nullopt;
    }
    if (agnnodes(graph.get()) > most_nodes_and_edges - agnedges(graph.get())) {
        reason = "too large to be drawn: " + std::to_string(agnnodes(graph.get())) + " nodes, " +
                 std::to_string(agnedges(graph.get())) + " edges";
        return std::nullopt;
    }
    const Layout layout(context, graph);
    if (!layout.is_done()) {
        reason = last_words("no layout found");
        return std::nullopt;
    }
    char *drawn = nullptr;
    unsigned length = 0;
    const bool rendered =
        gvRenderData(context.get(), graph.get(), format.c_str(), &drawn, &length) == 0;
    const std::unique_ptr<char, decltype(&gvFreeRenderData)> owner(drawn, gvFreeRenderData);
    if (!rendered || drawn == nullptr || length == 0) {
        reason = last_words("nothing was drawn");
        return std::nullopt;
    }
    return std::string(drawn, length);
}

} // namespace

std::optional<std::string> render(const std::string &dot, const std::string &format,
                                  std::string &reason) {
    said.clear();
    const agerrlevel_t level_before = agseterr(AGWARN);
    const agusererrf noter_before = agseterrf(note);
    std::optional<std::string> drawn = draw(dot, format, reason);
    agseterrf(noter_before);
    agseterr(level_before);
    return drawn;
}

} // namespace kvt_tool
