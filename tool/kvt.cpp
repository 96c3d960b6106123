// The kvt command: what the command line says, and which command does it.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <system_error>
#include <thread>

#include "check.h"
#include "describe.h"
#include "diff.h"
#include "draw.h"
#include "field_path.h"
#include "fmt.h"
#include "gen.h"
#include "generate.h"
#include "input.h"
#include "json.h"
#include "kinds.h"
#include "kvt/message_layer.h"
#include "output.h"
#include "show.h"
#include "split.h"
#include "stat.h"

namespace {

using namespace kvt_tool;

/// What the commands have in common.
struct CommonOptions {
    std::vector<std::string> inputs = {standard_input};
    unsigned threads = 1;
};

/// The command that was chosen, which is run when the whole command line has been understood.
std::function<ExitStatus()> chosen;

bool is_terminal_for_colours(int file) {
    const char *no_colour = std::getenv("NO_COLOR");
    const char *terminal = std::getenv("TERM");
    return isatty(file) == 1 && (no_colour == nullptr || *no_colour == '\0') &&
           (terminal == nullptr || std::string_view(terminal) != "dumb");
}

CLI::App *add_command(CLI::App &app, const std::string &name, const std::string &what,
                      const std::string &footer) {
    CLI::App *command = app.add_subcommand(name, what);
    command->footer(footer);
    return command;
}

void take_inputs(CLI::App *command, CommonOptions &options) {
    command->add_option("FILE", options.inputs, "Files to read; standard input when none, or for -")
        ->type_name("");
}

void take_threads(CLI::App *command, CommonOptions &options) {
    command
        ->add_option_function<unsigned>(
            "-j,--jobs",
            [&](unsigned jobs) {
                options.threads = jobs != 0 ? jobs : std::thread::hardware_concurrency();
            },
            "How many messages are worked on at once; 0 for one a processor. The order of what\n"
            "is printed is that of the inputs in any case")
        ->type_name("N")
        ->check(CLI::Range(0U, 1024U).description(""));
}

/// A number of 64 bits. The command line's parser itself would take -1 for the greatest.
const CLI::Validator whole_number(
    [](std::string &word) {
        uint64_t number = 0;
        const char *end = word.data() + word.size();
        const auto [after, error] = std::from_chars(word.data(), end, number);
        return after == end && error == std::errc() ? std::string()
                                                    : word + " is no whole number of 64 bits";
    },
    "");

// --- The commands --------------------------------------------------------------------------------

void add_fmt(CLI::App &app) {
    static CommonOptions common;
    static FormatOptions options;
    static bool verbose = false;
    CLI::App *command = add_command(
        app, "fmt", "Print messages in their normal form.",
        "In normal form lines stand in the format's order, indented by two blanks a level, and\n"
        "fields that are 0 are left out. Lines that the format does not know have no normal form:\n"
        "what is lost is said on standard error, as \"kvt check\" says it, and with -i a file "
        "that\n"
        "would lose something is left as it is.\n\n"
        "Exit status: 0 all is well, 1 something would be lost, or with --check a file is not in\n"
        "normal form, 2 a file cannot be read or written.\n\n"
        "Example: kvt fmt -i job.kvt events.kvt");
    take_inputs(command, common);
    auto *in_place = command->add_flag_callback(
        "-i,--in-place", [] { options.to = FormatOptions::To::their_files; },
        "Put the files themselves in normal form, each as a whole or not at all");
    command
        ->add_flag_callback(
            "--check", [] { options.to = FormatOptions::To::nowhere; },
            "Only print the names of files that are not in normal form")
        ->excludes(in_place);
    command->add_flag("--lossy", options.lossy, "With -i, change also files that lose something")
        ->needs(in_place);
    command->add_flag("-v,--verbose", verbose,
                      "Show the codec's traces on standard error: fields read, lines skipped");
    take_threads(command, common);
    command->callback([] {
        const bool reads_standard_input =
            std::ranges::find(common.inputs, standard_input) != common.inputs.end();
        if (options.to == FormatOptions::To::their_files && reads_standard_input) {
            throw CLI::ValidationError("-i takes names of files, and no standard input");
        }
        chosen = [] {
            if (verbose) {
                log_cb = kvt_log_to_stderr;
                log_level = 6;
            }
            return format_messages(common.inputs, options);
        };
    });
}

FindingKinds kinds_of_names(const std::vector<std::string> &names) {
    FindingKinds kinds;
    for (const std::string &name : names) {
        const kvt_finding_kind kind = kvt_finding_of_name(name.c_str());
        if (kind == KVT_FINDING_KINDS) {
            throw CLI::ValidationError("\"" + name +
                                       "\" is no kind of finding; \"kvt check "
                                       "--list\" shows them");
        }
        kinds.set(kind);
    }
    return kinds;
}

void add_check(CLI::App &app) {
    static CommonOptions common;
    static CheckOptions options;
    static std::vector<std::string> only;
    static std::vector<std::string> ignored;
    static std::string format = "text";
    static bool list = false;
    CLI::App *command = add_command(
        app, "check", "Say what the reader would skip, cut, wrap or overwrite without a word.",
        "Each finding is said as FILE:LINE:COLUMN: NAME: WHAT, with the line and its place below.\n"
        "A text without findings is read as it stands, and loses nothing.\n\n"
        "Exit status: 0 no findings, 1 findings, 2 a file cannot be read.\n\n"
        "Example: kvt check --ignore unknown-key *.kvt");
    take_inputs(command, common);
    command->add_option("--format", format, "text, or json for one object a line")
        ->check(CLI::IsMember({"text", "json"}))
        ->type_name("FORM");
    command->add_flag("-q,--quiet", options.quiet, "Print nothing: the exit status tells");
    command->add_option("--only", only, "Names of the only findings to be said, with commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command->add_option("--ignore", ignored, "Names of findings not to be said, with commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command->add_flag("--list", list, "List the names of findings and what they mean");
    take_threads(command, common);
    command->callback([] {
        options.wanted = only.empty() ? FindingKinds().set() : kinds_of_names(only);
        options.wanted &= ~kinds_of_names(ignored);
        options.form = format == "json"                         ? FindingForm::json
                       : is_terminal_for_colours(STDOUT_FILENO) ? FindingForm::coloured
                                                                : FindingForm::marked;
        chosen = [] {
            return list ? list_findings() : check(common.inputs, options);
        };
    });
}

void add_json(CLI::App &app) {
    static CommonOptions common;
    static JsonOptions options;
    static std::string guids = "decimal";
    static bool schema = false;
    CLI::App *command = add_command(
        app, "json", "Print messages as JSON.",
        "A message is an object of its type and its record; repeated lines are lists, counts "
        "follow\n"
        "from them. Numbers of 64 bits are strings, since many programs lose digits of them. A "
        "text\n"
        "that is no UTF-8 is an object {\"hex\": \"...\"} of its bytes. \"kvt from-json\" takes "
        "all\n"
        "of these forms. What is lost of an input is said on standard error.\n\n"
        "Exit status: 0 all is well, 1 something of a text is lost, 2 a file cannot be read.\n\n"
        "Example: kvt json --lines archive.kvt | jq -r "
        "'select(.type==\"END_JOB\").end_job.job_id'");
    take_inputs(command, common);
    command->add_flag("-l,--lines", options.lines, "One message a line, not one list of all");
    command->add_flag("--plain-numbers", options.form.plain_numbers,
                      "Numbers of 64 bits as numbers, for programs that keep them");
    command->add_option("--guid", guids, "GUIDs in decimal, as in the text, or hex, as 0x...")
        ->check(CLI::IsMember({"decimal", "hex"}))
        ->type_name("FORM");
    command->add_flag("--schema", schema, "Print the JSON Schema of a message instead");
    take_threads(command, common);
    command->callback([] {
        options.form.hexadecimal_guids = guids == "hex";
        options.threads = common.threads;
        chosen = [] {
            return schema ? print_json_schema() : convert_to_json(common.inputs, options);
        };
    });
}

void add_from_json(CLI::App &app) {
    static CommonOptions common;
    CLI::App *command = add_command(
        app, "from-json", "Print messages that are JSON in the text form.",
        "Takes what \"kvt json\" prints: messages one on a line, one after the other, or in a "
        "list.\n"
        "A message with something that a record cannot hold is left out, with its line and "
        "reason.\n\n"
        "Exit status: 0 all is well, 1 a message is left out or cannot be read back, 2 a file "
        "cannot\n"
        "be read.\n\n"
        "Example: kvt json job.kvt | jq '.[].end_job.reservation_id = \"7\"' | kvt from-json");
    take_inputs(command, common);
    take_threads(command, common);
    command->callback([] {
        chosen = [] {
            return convert_from_json(common.inputs, common.threads);
        };
    });
}

void add_diff(CLI::App &app) {
    static std::string a;
    static std::string b;
    CLI::App *command =
        add_command(app, "diff", "Show what differs between the messages of two files.",
                    "Messages are matched by kind and identity, elements of lists by theirs (guid, "
                    "tree_id, id).\n\n"
                    "Exit status: 0 no differences, 1 differences, 2 a file cannot be read.\n\n"
                    "Example: kvt diff yesterday.kvt today.kvt");
    command->add_option("A", a, "A file; - for standard input")->required()->type_name("");
    command->add_option("B", b, "The file to compare it with")->required()->type_name("");
    command->callback([] {
        if (a == standard_input && b == standard_input) {
            throw CLI::ValidationError("only one of A and B can be standard input");
        }
        chosen = [] {
            return diff_inputs(a, b, is_terminal_for_colours(STDOUT_FILENO));
        };
    });
}

void add_graph(CLI::App &app) {
    static CommonOptions common;
    static DrawOptions options;
    CLI::App *command = add_command(
        app, "graph", "Draw the graph of a job, a topology or resources.",
        "Draws JOB_DATA, TOPOLOGY_INFO_REPLY and RESOURCE_DATA with Graphviz. In large graphs "
        "nodes\n"
        "with the same neighbours are drawn as one.\n\n"
        "Exit status: 0 all is well, 1 there is nothing to draw, 2 the drawing cannot be made.\n\n"
        "Example: kvt graph -T svg -o fabric.svg topology.kvt");
    take_inputs(command, common);
    command
        ->add_option("-T,--format", options.format,
                     "dot (by default), svg, png, pdf or another format of Graphviz")
        ->type_name("FORMAT");
    command->add_option("-o,--output", options.output, "A file to write; standard output when none")
        ->type_name("FILE");
    command
        ->add_option("-m,--message", options.message,
                     "The number of the message to draw, counted from 1")
        ->check(whole_number)
        ->type_name("N");
    command->add_flag_callback(
        "--all-nodes", [] { options.detail = Detail::all; }, "Draw every node by itself");
    command->callback([] {
        chosen = [] {
            return draw_messages(common.inputs, options);
        };
    });
}

void add_stat(CLI::App &app) {
    static CommonOptions common;
    static bool as_json = false;
    CLI::App *command = add_command(
        app, "stat", "Count messages, bytes and elements by kind.",
        "Exit status: 0 all is well, 1 something is no message, 2 a file cannot be read.\n\n"
        "Example: kvt stat -j 0 archive/*.kvt");
    take_inputs(command, common);
    command->add_flag("--json", as_json, "Print a JSON object");
    take_threads(command, common);
    command->callback([] {
        chosen = [] {
            return print_statistics(common.inputs, as_json, common.threads);
        };
    });
}

void add_split(CLI::App &app) {
    static CommonOptions common;
    static std::string folder;
    CLI::App *command = add_command(app, "split", "Write each message to a file of its own.",
                                    "The files are called 000001-job_data.kvt and so on, and have "
                                    "the messages as they stand in\n"
                                    "the input. No file that is there is touched.\n\n"
                                    "Exit status: 0 all is well, 1 something is no message, 2 a "
                                    "file cannot be read or written.\n\n"
                                    "Example: kvt split -o messages archive.kvt");
    take_inputs(command, common);
    command->add_option("-o,--output", folder, "The folder, which is made when it is missing")
        ->required()
        ->type_name("DIR");
    command->callback([] {
        chosen = [] {
            return split_messages(common.inputs, folder);
        };
    });
}

void add_show(CLI::App &app) {
    static CommonOptions common;
    static ShowOptions options;
    static std::string path;
    CLI::App *command = add_command(
        app, "show", "Print the values at a field path.",
        "A path is made of keys with dots between them. [3] after the key of a list is its "
        "element\n"
        "3, counted from 0; [*], or nothing, all of them. Messages without the field are passed "
        "over.\n\n"
        "Exit status: 0 something was found, 1 nothing was, or something is no message, 2 a file\n"
        "cannot be read.\n\n"
        "Example: kvt show 'conns[3].pr_sd_to_an.sl' job.kvt");
    command->add_option("PATH", path, "The path")->required()->type_name("");
    take_inputs(command, common);
    command->add_flag("-p,--with-paths", options.with_paths,
                      "Print file, line and path before each value");
    take_threads(command, common);
    command->callback([] {
        options.threads = common.threads;
        static auto parsed = FieldPath::parse(path);
        if (const auto *wrong = std::get_if<std::string>(&parsed)) {
            throw CLI::ValidationError("PATH: " + *wrong);
        }
        chosen = [] {
            return show_fields(common.inputs, std::get<FieldPath>(parsed), options);
        };
    });
}

const kvt_str::MessageKind *kind_option(const std::string &word) {
    const kvt_str::MessageKind *kind = kind_of_word(word);
    if (kind == nullptr) {
        throw CLI::ValidationError("KIND: " + unknown_kind(word));
    }
    if (kind->record == nullptr) {
        throw CLI::ValidationError(std::string("KIND: ") + kind->name + " carries no record");
    }
    return kind;
}

void add_describe(CLI::App &app) {
    static std::string word;
    CLI::App *command =
        add_command(app, "describe", "List the kinds of messages, or the keys of one.",
                    "Example: kvt describe job_data");
    command->add_option("KIND", word, "A kind or the name of its block; all kinds when none")
        ->type_name("");
    command->callback([] {
        static const kvt_str::MessageKind *kind = word.empty() ? nullptr : kind_option(word);
        chosen = [] {
            print(kind != nullptr ? describe_kind(*kind) : describe_kinds());
            finish_printing();
            return all_well;
        };
    });
}

void add_gen(CLI::App &app) {
    static GenOptions options = {.size = default_sample_size};
    static std::string word;
    CLI::App *command = add_command(
        app, "gen", "Print sample messages, for tests and trials.",
        "The same KIND, seed and size give the same text on every machine. Without KIND the\n"
        "messages are a mix, as on a day of a fabric.\n\n"
        "Example: kvt gen TOPOLOGY_INFO_REPLY --seed 1 --size 500 | kvt graph -T svg -o "
        "fabric.svg");
    command->add_option("KIND", word, "A kind or the name of its block; a mix when none")
        ->type_name("");
    command->add_option("--seed", options.seed, "Another number, another fabric")
        ->check(whole_number)
        ->type_name("N");
    command
        ->add_option("--size", options.size, "Elements of the longest lists: hosts, switches, ...")
        ->check(CLI::Range(0U, largest_sample_size).description(""))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("-n,--count", options.count, "How many messages")
        ->check(whole_number)
        ->type_name("N")
        ->capture_default_str();
    command->callback([] {
        options.kind = word.empty() ? nullptr : kind_option(word);
        chosen = [] {
            return print_samples(options);
        };
    });
}

void add_kinds(CLI::App &app) {
    CLI::App *command = add_command(app, "kinds", "List the kinds of messages and their records.",
                                    "Example: kvt kinds | grep RESERVATION");
    command->callback([] { chosen = list_kinds; });
}

ExitStatus run() {
    try {
        return chosen();
    } catch (const OutputError &error) {
        // Nobody reads any more: that is how a pipe into "head" ends, and no matter.
        return error.reason.empty() ? could_not_work : cannot_use(error.name, error.reason);
    } catch (const std::bad_alloc &) {
        return cannot_use("memory", "there is not enough of it");
    } catch (const std::exception &error) {
        return cannot_use("internal error", error.what());
    }
}

/// A file that is opened must not become standard output or standard error, where these are closed.
void occupy_closed_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // Standard input cannot be read then and standard output not written, which is said as
            // for any other reason.
            open("/dev/null", stream == STDOUT_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    occupy_closed_streams();
    // The command line's parser would take a name in brackets for a list of names.
    std::vector<std::string> words(argv, argv + argc);
    for (std::string &word : words) {
        if (word.starts_with('[') && word.ends_with(']')) {
            word.insert(0, "./");
        }
    }
    std::vector<const char *> arguments;
    arguments.reserve(words.size());
    for (const std::string &word : words) {
        arguments.push_back(word.c_str());
    }
    CLI::App app("Works on messages in the text form of the kvt_str codec.", "kvt");
    app.set_version_flag("--version", "kvt " KVT_VERSION);
    app.require_subcommand(1);
    app.footer("\"kvt COMMAND --help\" tells more, with an example.");
    app.failure_message(CLI::FailureMessage::simple);
    for (const auto add : {add_fmt, add_check, add_json, add_from_json, add_diff, add_graph,
                           add_stat, add_split, add_show, add_describe, add_gen, add_kinds}) {
        add(app);
    }
    try {
        app.parse(argc, arguments.data());
    } catch (const CLI::ParseError &error) {
        const int wrong_usage = app.exit(error);
        if (!std::cout.flush()) {
            return cannot_use("standard output", std::strerror(errno));
        }
        return wrong_usage == 0 ? all_well : could_not_work;
    }
    return run();
}
