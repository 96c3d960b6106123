#include "model/columns.h"

#include <algorithm>

namespace kvt_tool {

void Columns::add(std::vector<std::string> cells) {
    cells.resize(sides_.size());
    lines_.push_back({std::move(cells), ""});
}

std::string Columns::text() const {
    std::vector<size_t> widths(sides_.size());
    for (const Line &line : lines_) {
        for (size_t i = 0; i < line.cells.size(); ++i) {
            widths[i] = std::max(widths[i], line.cells[i].size());
        }
    }
    std::string text;
    for (const Line &line : lines_) {
        std::string shown = line.text;
        for (size_t i = 0; i < line.cells.size(); ++i) {
            const std::string blanks(widths[i] - line.cells[i].size(), ' ');
            shown += i == 0 ? "" : "  ";
            shown += sides_[i] == Side::left ? line.cells[i] + blanks : blanks + line.cells[i];
        }
        text.append(shown, 0, shown.find_last_not_of(' ') + 1) += '\n';
    }
    return text;
}

} // namespace kvt_tool
