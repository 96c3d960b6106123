#include "graph/dot.h"

#include "graph/text.h"

namespace kvt_tool {

namespace {

/// A caption and its legend as a table: a label takes no part in the layout, as nodes would.
std::string caption_label(const Caption &caption) {
    const std::string small = std::to_string(caption.font_size * 5 / 7);
    std::string label = "<<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"4\"><TR><TD>"
                        "<FONT POINT-SIZE=\"" +
                        std::to_string(caption.font_size) + "\"><B>" +
                        in_html(visible(caption.title)) + " </B></FONT></TD></TR>";
    const std::string row = "<TR><TD><FONT POINT-SIZE=\"" + small + "\">";
    label += row + in_html(caption.summary) + " </FONT></TD></TR>";
    if (!caption.legend.empty()) {
        label += row + "<TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"6\"><TR>";
        for (const LegendEntry &entry : caption.legend) {
            label += "<TD BGCOLOR=\"" + entry.fill + "\" COLOR=\"" + entry.line + "\" STYLE=\"" +
                     entry.style + "\">" + in_html(entry.meaning) + "</TD>";
        }
        label += "</TR></TABLE></FONT></TD></TR>";
    }
    return label + "</TABLE>>";
}

} // namespace

DotText::DotText(const Caption &caption, const DotAttributes &graph) {
    const std::string font = "\"Helvetica,Arial,sans-serif\"";
    text_ = "digraph kvt {\n";
    DotAttributes attributes = {{"fontname", font},
                                {"label", caption_label(caption)},
                                {"labelloc", "t"},
                                {"tooltip", "\" \""}};
    attributes.insert(attributes.end(), graph.begin(), graph.end());
    defaults("graph", attributes);
    defaults("node", {{"fontname", font}});
    defaults("edge", {{"fontname", font}});
}

void DotText::indent() {
    text_.append(static_cast<size_t>(2) * depth_, ' ');
}

void DotText::list(const DotAttributes &attributes) {
    const char *separator = " [";
    for (const auto &[name, value] : attributes) {
        text_.append(separator).append(name).append("=").append(value);
        separator = ", ";
    }
    text_ += attributes.empty() ? ";\n" : "];\n";
}

void DotText::defaults(std::string_view of_what, const DotAttributes &attributes) {
    indent();
    text_ += of_what;
    list(attributes);
}

void DotText::node(const std::string &id, const DotAttributes &attributes) {
    indent();
    text_ += id;
    list(attributes);
}

void DotText::edge(const std::string &from, const std::string &to,
                   const DotAttributes &attributes) {
    indent();
    text_.append(from).append(" -> ").append(to);
    list(attributes);
}

void DotText::open(const std::string &name, const DotAttributes &attributes) {
    indent();
    text_ += "subgraph " + name + " {\n";
    ++depth_;
    if (!attributes.empty()) {
        defaults("graph", attributes);
    }
}

void DotText::close() {
    --depth_;
    indent();
    text_ += "}\n";
}

std::string DotText::finish() {
    return std::move(text_) + "}\n";
}

} // namespace kvt_tool
