#include <gvc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "graph/graph.h"

#if defined(__SANITIZE_ADDRESS__)
#define KVT_FINDS_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KVT_FINDS_LEAKS
#endif
#endif

#ifdef KVT_FINDS_LEAKS
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizer looks for this name
extern "C" const char *__lsan_default_suppressions();

/// The libraries that draw keep what they have read of fonts and plugins until the process ends.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libgvc\nleak:libfontconfig\nleak:libglib\nleak:libpango\n";
}

// NOLINTEND(bugprone-reserved-identifier)
#endif

namespace kvt_tool {

namespace {

/// What Graphviz says while it draws; its callback has no place for an argument of ours.
std::string said;

int note(char *text) {
    said += text;
    return 0;
}

/// Lives as long as the process: the plugin that measures texts keeps the fonts of the first
/// context beyond that one's end, and a second context would read what is freed.
GVC_t *context() {
    static GVC_t *const only = gvContext();
    return only;
}

struct Close {
    void operator()(Agraph_t *graph) const { agclose(graph); }
};

using Graph = std::unique_ptr<Agraph_t, Close>;

/// A layout, which must go before its graph.
class Layout {
public:
    explicit Layout(Agraph_t *graph) : graph_(graph) {
        const char *engine = agget(graph, const_cast<char *>("layout"));
        done_ = gvLayout(context(), graph, engine != nullptr ? engine : "dot") == 0;
    }

    ~Layout() { gvFreeLayout(context(), graph_); }

    Layout(const Layout &) = delete;
    Layout &operator=(const Layout &) = delete;

    bool is_done() const { return done_; }

private:
    Agraph_t *graph_;
    bool done_ = false;
};

/// What Graphviz said in one line; or `otherwise` when it said nothing.
std::string last_words(const char *otherwise) {
    std::replace(said.begin(), said.end(), '\n', ' ');
    const size_t end = said.find_last_not_of(' ');
    constexpr std::string_view prefix = "Error: ";
    const size_t begin = said.starts_with(prefix) ? prefix.size() : 0;
    return end == std::string::npos ? otherwise : said.substr(begin, end + 1 - begin);
}

/// The formats that Graphviz can draw with the plugins that are installed.
std::string list_formats() {
    std::string names;
    int count = 0;
    char **formats = gvPluginList(context(), "device", &count, nullptr);
    for (int i = 0; i < count; ++i) {
        names.append(" ").append(formats[i]);
        std::free(formats[i]);
    }
    std::free(formats);
    return names;
}

const std::string &known_formats() {
    static const std::string names = list_formats();
    return names;
}

bool is_known(const std::string &format) {
    return (known_formats() + " ").find(" " + format + " ") != std::string::npos;
}

std::optional<std::string> draw(const std::string &dot, const std::string &format,
                                std::string &reason) {
    // Layout by forces took 14 s for half of this.
    constexpr int most_nodes_and_edges = 800000;
    if (!is_known(format)) {
        reason = "not one of the formats:" + known_formats();
        return std::nullopt;
    }
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
    const Layout layout(graph.get());
    if (!layout.is_done()) {
        reason = last_words("no layout found");
        return std::nullopt;
    }
    char *drawn = nullptr;
    unsigned length = 0;
    const bool rendered =
        gvRenderData(context(), graph.get(), format.c_str(), &drawn, &length) == 0;
    const std::unique_ptr<char, decltype(&gvFreeRenderData)> owner(drawn, gvFreeRenderData);
    if (!rendered || drawn == nullptr || length == 0) {
        reason = last_words("nothing was drawn");
        return std::nullopt;
    }
    return std::string(drawn, length);
}

} // namespace

std::string graphviz_version() {
    return gvcVersion(context());
}

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
