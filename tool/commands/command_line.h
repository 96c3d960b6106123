// What the command lines of the commands have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "io/input.h"
#include "io/problems.h"
#include "io/rights.h"
#include "message_kinds.h"
#include "model/value_text.h"

namespace kvt_tool {

struct CommonOptions {
    std::vector<std::string> inputs = {standard_input};
    unsigned threads = 1;
};

/// The command that was chosen, which is run when the whole command line has been understood.
extern std::function<ExitStatus()> chosen;

/// The files that it needs. take_inputs and take_file name those that are read; a command itself
/// names those that it writes. It has no others.
extern Rights rights;

/// Adds a command with what it does, in a line, and what its help says below its options.
CLI::App *add_command(CLI::App &app, const std::string &name, const std::string &what,
                      const std::string &footer);

/// Takes the names of files.
void take_inputs(CLI::App *command, CommonOptions &options);

/// Takes the name of one file to read.
void take_file(CLI::App *command, const std::string &option, std::string &name,
               const std::string &what);

/// Takes --jobs.
void take_threads(CLI::App *command, CommonOptions &options);

/// Takes --guid.
void take_guid_form(CLI::App *command, GuidForm &form);

/// A number of 64 bits. The command line's parser itself would take -1 for the greatest.
extern const CLI::Validator whole_number;

/// The kind that a word of the command line names, which carries a record. Throws a
/// CLI::ValidationError for any other word.
const kvt_str::MessageKind *kind_option(const std::string &word);

/// Whether a word names a command.
bool is_command(const CLI::App &app, const std::string &word);

/// What is wrong with a word that names no command, with the one that may be meant.
std::string unknown_command(const CLI::App &app, const std::string &word);

/// What --version prints: of what this program is made.
std::string version_text();

/// Whether an open file is a terminal, and its user wants colours.
bool is_terminal_for_colours(int file);

} // namespace kvt_tool
