// The commands. Each adds its part of the command line; what it does stands in the same file.
#pragma once

namespace CLI {
class App;
}

namespace kvt_tool {

void add_fmt(CLI::App &app);
void add_check(CLI::App &app);
void add_json(CLI::App &app);
void add_from_json(CLI::App &app);
void add_diff(CLI::App &app);
void add_graph(CLI::App &app);
void add_stat(CLI::App &app);
void add_split(CLI::App &app);
void add_show(CLI::App &app);
void add_find(CLI::App &app);
void add_describe(CLI::App &app);
void add_gen(CLI::App &app);
void add_kinds(CLI::App &app);
void add_help(CLI::App &app);

} // namespace kvt_tool
