#include <cmath>
#include <map>
#include <span>

#include "graph/dot.h"
#include "graph/kinds.h"
#include "graph/text.h"
#include "model/hexadecimal.h"

namespace kvt_tool {

namespace {

/// More links than these are counted by status.
constexpr size_t most_single_links = 2500;

/// An aggregation node with the links at it.
struct Place {
    uint64_t guid = 0;
    const vemra_resource_agg_node *node = nullptr; ///< null when only links tell of it
    std::vector<const vemra_resource_link *> links;
    size_t listed = 0;
};

/// The nodes in the order of the message, after them those that only links name.
std::vector<Place> places_of(const vemra_resource_message &message) {
    std::map<uint64_t, size_t> index_of_guid;
    std::vector<Place> places;
    const auto place_of = [&](uint64_t guid) -> Place & {
        const auto [found, is_new] = index_of_guid.try_emplace(guid, places.size());
        if (is_new) {
            places.emplace_back().guid = guid;
        }
        return places[found->second];
    };
    for (const auto &node : std::span(message.agg_nodes, message.agg_nodes_num)) {
        Place &place = place_of(node.agg_node_guid);
        place.node = place.node != nullptr ? place.node : &node;
        ++place.listed;
    }
    for (const auto &link : std::span(message.links, message.links_num)) {
        place_of(link.agg_node_guid).links.push_back(&link);
    }
    return places;
}

Colours colours_of(const vemra_resource_message &message) {
    std::vector<uint32_t> codes;
    for (const auto &tree : std::span(message.agg_trees, message.agg_trees_num)) {
        codes.push_back(tree.tree_status);
    }
    for (const auto &link : std::span(message.links, message.links_num)) {
        codes.push_back(link.link_status);
    }
    for (const auto &node : std::span(message.agg_nodes, message.agg_nodes_num)) {
        codes.push_back(node.agg_node_status);
    }
    return {"status", std::move(codes)};
}

/// The attributes that lay a cluster's members out in rows, in the order of "sortv".
DotAttributes rows_of(size_t members, double columns_for_rows) {
    const double columns = std::ceil(std::sqrt(static_cast<double>(members) * columns_for_rows));
    return {{"packmode", "\"array_u" + std::to_string(static_cast<size_t>(columns)) + "\""}};
}

void open_cluster(DotText &text, const std::string &name, const std::string &label, unsigned row,
                  DotAttributes attributes) {
    attributes.insert(attributes.end(), {{"label", quoted(label)},
                                         {"fontsize", "12"},
                                         {"pack", "8"},
                                         {"sortv", std::to_string(row)},
                                         {"color", quoted(faint_line)}});
    text.open("cluster_" + name, attributes);
}

class Resources {
public:
    Resources(const vemra_resource_message &message, Detail detail)
        : message_(message), colours_(colours_of(message)), places_(places_of(message)),
          single_links_(detail == Detail::all || message.links_num <= most_single_links) {}

    std::string to_dot(const std::string &title) const;

private:
    void write_trees(DotText &text) const;
    void write_places(DotText &text) const;
    std::string table_of(const Place &place) const;
    std::string single_links(const Place &place) const;
    std::string counted_links(const Place &place) const;
    static std::string detail_of(const Place &place);
    Caption caption(const std::string &title) const;

    const vemra_resource_message &message_;
    Colours colours_;
    std::vector<Place> places_;
    bool single_links_;
};

Caption Resources::caption(const std::string &title) const {
    std::vector<LegendEntry> legend = colours_.legend();
    bool absent = false;
    for (const Place &place : places_) {
        absent = absent || place.node == nullptr;
    }
    if (absent) {
        legend.push_back({"not in the message", "white", faint_line, "dashed"});
    }
    const std::string summary =
        counted(message_.agg_trees_num, "tree", "trees") + ", " +
        counted(message_.agg_nodes_num, "aggregation node", "aggregation nodes") + ", " +
        counted(message_.links_num, "link", "links") + "; operation " +
        std::to_string(message_.operation) + ", features 0x" +
        guid_text(message_.feature_bitmask).substr(10);
    const auto members = static_cast<double>(places_.size());
    return {title, summary, std::move(legend),
            static_cast<unsigned>(14 + std::min(60.0, 1.2 * std::sqrt(members)))};
}

void Resources::write_trees(DotText &text) const {
    if (message_.agg_trees_num == 0) {
        return;
    }
    open_cluster(text, "trees", "trees", 1, rows_of(message_.agg_trees_num, 6));
    size_t index = 0;
    for (const auto &tree : std::span(message_.agg_trees, message_.agg_trees_num)) {
        const std::string label = "tree " + std::to_string(tree.tree_num);
        text.node(
            "t" + std::to_string(index),
            {{"label", quoted(label)},
             {"tooltip", quoted_tooltip(label + "\nstatus " + std::to_string(tree.tree_status) +
                                        ", priority " + std::to_string(tree.priority))},
             {"fillcolor", quoted(colours_.of(tree.tree_status))},
             {"shape", "ellipse"},
             {"style", "filled"},
             {"sortv", std::to_string(index + 1)}});
        ++index;
    }
    text.close();
}

/// A cell for each link: its port, in the colour of its status.
std::string Resources::single_links(const Place &place) const {
    constexpr size_t ports_in_row = 12;
    std::string rows;
    for (size_t i = 0; i < place.links.size(); ++i) {
        rows += i % ports_in_row == 0 ? (i == 0 ? "<TR>" : "</TR><TR>") : "";
        const vemra_resource_link &link = *place.links[i];
        rows += std::string("<TD BGCOLOR=\"") + colours_.of(link.link_status) + "\">" +
                std::to_string(link.port_num) + "</TD>";
    }
    return rows + "</TR>";
}

/// A cell for each status of links: how many have it.
std::string Resources::counted_links(const Place &place) const {
    std::map<uint32_t, size_t> links_of_status;
    for (const vemra_resource_link *link : place.links) {
        ++links_of_status[link->link_status];
    }
    constexpr size_t most_cells = 7;
    std::string row = "<TR>";
    size_t cells = 0;
    for (const auto &[status, count] : links_of_status) {
        if (++cells > most_cells) {
            row += "<TD>…</TD>";
            break;
        }
        row += std::string("<TD BGCOLOR=\"") + colours_.of(status) + "\">" + std::to_string(count) +
               "×</TD>";
    }
    return row + "</TR>";
}

std::string Resources::table_of(const Place &place) const {
    const std::string fill = place.node != nullptr ? colours_.of(place.node->agg_node_status) : "";
    const std::string look =
        fill.empty() ? " STYLE=\"dashed\" COLOR=\"#aaaaaa\"" : " BGCOLOR=\"" + fill + "\"";
    std::string table = "<<TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"2\" "
                        "COLOR=\"#555555\"><TR><TD" +
                        look + "><FONT FACE=\"monospace\">" + guid_text(place.guid) + "</FONT>";
    if (place.node != nullptr && single_links_) {
        table += "<BR/>" + counted(place.node->trees_num, "tree", "trees") + ", " +
                 counted(place.node->active_jobs, "job", "jobs");
    }
    table += "</TD></TR>";
    if (!place.links.empty()) {
        table += "<TR><TD BORDER=\"0\" CELLPADDING=\"0\"><TABLE BORDER=\"0\" CELLBORDER=\"1\" "
                 "CELLSPACING=\"0\" CELLPADDING=\"2\">" +
                 (single_links_ ? single_links(place) : counted_links(place)) +
                 "</TABLE></TD></TR>";
    }
    return table + "</TABLE>>";
}

std::string Resources::detail_of(const Place &place) {
    constexpr size_t most_links = 100;
    std::string detail = guid_text(place.guid);
    if (place.node != nullptr) {
        detail += "\nstatus " + std::to_string(place.node->agg_node_status) + ", priority " +
                  std::to_string(place.node->priority) + ", " +
                  counted(place.node->trees_num, "tree", "trees") + ", " +
                  counted(place.node->active_jobs, "job", "jobs") + "\n" +
                  visible_array(place.node->ts);
    } else {
        detail += "\nnot in the message";
    }
    if (place.listed > 1) {
        detail += "\nlisted " + std::to_string(place.listed) + " times";
    }
    for (size_t i = 0; i < std::min(place.links.size(), most_links); ++i) {
        const vemra_resource_link &link = *place.links[i];
        detail += "\nport " + std::to_string(link.port_num) + ": status " +
                  std::to_string(link.link_status) + ", priority " + std::to_string(link.priority) +
                  ", " + counted(link.active_jobs, "job", "jobs");
    }
    return detail;
}

void Resources::write_places(DotText &text) const {
    if (places_.empty()) {
        return;
    }
    open_cluster(text, "nodes", "aggregation nodes, with the ports of their links", 2,
                 rows_of(places_.size(), 0.6));
    for (size_t index = 0; index < places_.size(); ++index) {
        text.node("n" + std::to_string(index),
                  {{"label", table_of(places_[index])},
                   {"tooltip", quoted_tooltip(detail_of(places_[index]))},
                   {"sortv", std::to_string(index + 1)}});
    }
    text.close();
}

std::string Resources::to_dot(const std::string &title) const {
    DotText text(caption(title), {{"layout", "osage"}, {"packmode", "\"array_u1\""}});
    text.defaults("node", {{"shape", "plain"}, {"fontsize", "9"}});
    write_trees(text);
    write_places(text);
    return text.finish();
}

} // namespace

std::string resources_to_dot(const vemra_resource_message &message, const std::string &title,
                             Detail detail) {
    return Resources(message, detail).to_dot(title);
}

} // namespace kvt_tool
