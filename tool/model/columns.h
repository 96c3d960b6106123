// A table of texts whose columns are aligned.
#pragma once

#include <string>
#include <vector>

namespace kvt_tool {

class Columns {
public:
    /// Where the cells of a column stand in its width.
    enum class Side : unsigned char { left, right };

    /// A side for each column.
    explicit Columns(std::vector<Side> sides) : sides_(std::move(sides)) {}

    /// A line of the table; the cells that it has no text for are empty.
    void add(std::vector<std::string> cells);

    /// A line that is no part of the columns.
    void add_text(std::string text) { lines_.push_back({{}, std::move(text)}); }

    /// Two blanks between columns, and none at the end of a line.
    std::string text() const;

private:
    struct Line {
        std::vector<std::string> cells; ///< one for each column, or none
        std::string text;               ///< in place of cells
    };

    std::vector<Side> sides_;
    std::vector<Line> lines_;
};

} // namespace kvt_tool
