// kvt help: the help of a command; and what is said of a word that is none.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>

#include "commands/command_line.h"
#include "io/output.h"
#include "kvt_check/nearest.h"

namespace kvt_tool {

bool is_command(const CLI::App &app, const std::string &word) {
    return std::ranges::any_of(app.get_subcommands(nullptr), [&](const CLI::App *command) {
        return command->get_name() == word;
    });
}

std::string unknown_command(const CLI::App &app, const std::string &word) {
    kvt_checking::Nearest nearest(word);
    std::string meant;
    for (const CLI::App *command : app.get_subcommands(nullptr)) {
        const std::string &name = command->get_name();
        nearest.consider(name);
        // Somebody who writes "statistics" or "desc".
        const bool is_begin = word.starts_with(name) || (word.size() > 1 && name.starts_with(word));
        meant = meant.empty() && is_begin ? name : meant;
    }
    meant = nearest.word().empty() ? meant : nearest.word();
    return "there is no command '" + word + "'" +
           (meant.empty() ? "; kvt --help lists all" : "; did you mean '" + meant + "'?");
}

void add_help(CLI::App &app) {
    static std::string word;
    CLI::App *command =
        add_command(app, "help", "Tell the options of a command.", "Example: kvt help check");
    command->add_option("COMMAND", word, "A command; all commands when none")->type_name("");
    command->callback([&app] {
        if (!word.empty() && !is_command(app, word)) {
            throw CLI::ValidationError("COMMAND: " + unknown_command(app, word));
        }
        chosen = [&app] {
            print(word.empty() ? app.get_formatter()->make_help(&app, app.get_name(),
                                                                CLI::AppFormatMode::Normal)
                               : app.get_subcommand(word)->help("kvt"));
            finish_printing();
            return all_well;
        };
    });
}

} // namespace kvt_tool
