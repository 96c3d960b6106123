// kvt graph: draws messages as graphs.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/command_line.h"
#include "graph/graph.h"
#include "io/messages.h"
#include "io/new_file.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "io/unread.h"

namespace kvt_tool {

namespace {

struct GraphOptions {
    std::string format = "dot"; ///< dot for the text of the graph, or svg, png, pdf, ...
    std::string output;         ///< a file; standard output when empty
    uint64_t message = 0;       ///< its number in all inputs, from 1; 0 for those that can be drawn
    Detail detail = Detail::by_size;

    bool is_text() const { return format == "dot"; }
};

/// Where graphs go.
class GraphOutput {
public:
    explicit GraphOutput(const std::string &output) : output_(output) {
        std::error_code none;
        is_device_ = std::filesystem::exists(output, none) &&
                     !std::filesystem::is_regular_file(output, none); // such as /dev/stdout
    }

    /// A file is begun with the first graph: without one it stays as it is.
    void write(const std::string &graph) {
        if (output_.empty()) {
            refuse_binary_on_terminal(STDOUT_FILENO, graph, "standard output");
            print(graph);
        } else if (is_device_) {
            for_device_ += graph;
        } else {
            if (file_ == nullptr) {
                file_ = std::make_unique<NewFile>(output_, NewFile::Existing::may_replace);
            }
            file_->write(graph);
        }
    }

    void finish() {
        if (file_ != nullptr) {
            file_->commit();
        }
        if (!for_device_.empty()) {
            write_to_device(output_, for_device_);
        }
        finish_printing();
    }

private:
    const std::string &output_;
    bool is_device_;
    std::string for_device_; ///< which may be a pipe, and so is opened once
    std::unique_ptr<NewFile> file_;
};

class GraphJob {
public:
    struct Graph {
        uint64_t message; ///< within these units, counted from 0
        std::string name; ///< `JOB_DATA, job.kvt:12`
        std::string dot;
    };

    struct Result {
        uint64_t messages = 0;
        std::vector<Graph> graphs;
        Unread unread;
    };

    GraphJob(const GraphOptions &options, GraphOutput &output)
        : options_(options), output_(output) {}

    void work(const Unit &unit, Result &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            if (has_graph(message.kind)) {
                const std::string line = std::to_string(message.line);
                const std::string title = unit.input + ", line " + line;
                result.graphs.push_back(
                    {result.messages, message.kind.name + (", " + unit.input) + ":" + line,
                     to_dot(message.kind, message.record, title, options_.detail)});
            }
            ++result.messages;
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        unread_.take(result.unread);
        for (Graph &graph : result.graphs) {
            const uint64_t number = messages_ + graph.message + 1;
            numbers_.push_back(number);
            if (options_.message == 0 || options_.message == number) {
                draw(number, graph);
            }
        }
        messages_ += result.messages;
    }

    ExitStatus end(const std::string &input, bool) { return unread_.end(input); }

    uint64_t messages() const { return messages_; }

    /// The numbers of the messages that can be drawn.
    const std::vector<uint64_t> &numbers() const { return numbers_; }

    /// The first that is drawn: `message 3 (JOB_DATA, job.kvt:12)`; empty when none is.
    const std::string &drawn() const { return drawn_; }

    /// The graph of that one, where it is to be drawn by Graphviz.
    const std::string &dot() const { return dot_; }

private:
    void draw(uint64_t number, Graph &graph) {
        const bool is_first = drawn_.empty();
        if (is_first) {
            drawn_ = "message " + std::to_string(number) + " (" + graph.name + ")";
        }
        if (options_.is_text()) {
            output_.write(graph.dot);
        } else if (is_first) {
            dot_ = std::move(graph.dot);
        }
    }

    const GraphOptions &options_;
    GraphOutput &output_;
    UnreadOfInput unread_;
    uint64_t messages_ = 0;
    std::vector<uint64_t> numbers_;
    std::string drawn_;
    std::string dot_;
};

/// The first of some numbers: `2, 5, 9, ...`.
std::string list_of(const std::vector<uint64_t> &numbers) {
    constexpr size_t most_numbers = 10;
    std::string list;
    for (size_t i = 0; i < std::min(most_numbers, numbers.size()); ++i) {
        list += (list.empty() ? "" : ", ") + std::to_string(numbers[i]);
    }
    return numbers.size() > most_numbers ? list + ", ..." : list;
}

/// Says why nothing was drawn.
void say_nothing_is_drawn(const GraphJob &job, uint64_t wanted) {
    const std::string count = std::to_string(job.messages());
    if (job.numbers().empty()) {
        say("kvt: none of " + count +
            " messages can be drawn: that is JOB_DATA, TOPOLOGY_INFO_REPLY and RESOURCE_DATA\n");
    } else if (wanted > job.messages()) {
        say("kvt: there is no message " + std::to_string(wanted) + ", only " + count + "\n");
    } else {
        say("kvt: message " + std::to_string(wanted) +
            " cannot be drawn; those that can: " + list_of(job.numbers()) + "\n");
    }
}

/// Says which messages were drawn, where that is not plain.
void say_what_is_drawn(const GraphJob &job, const GraphOptions &options) {
    if (options.message != 0 || job.numbers().size() < 2) {
        return;
    }
    const std::string count = std::to_string(job.numbers().size());
    const std::string numbers = count + " that can be drawn (" + list_of(job.numbers()) + ")";
    say(options.is_text()
            ? "kvt: drew all " + numbers + ", a graph for each; --message N draws one\n"
            : "kvt: drew " + job.drawn() + ", the first of " + numbers +
                  "; --message N chooses another\n");
}

/// Draws the messages of the inputs that can be drawn: as DOT all of them, otherwise the first one.
ExitStatus graph_messages(const std::vector<std::string> &inputs, const GraphOptions &options) {
    for (const std::string &input : inputs) {
        std::error_code none;
        if (!options.output.empty() && std::filesystem::equivalent(input, options.output, none)) {
            return cannot_use(shown_name(options.output), "is an input, too");
        }
    }
    ExitStatus status;
    GraphOutput output(options.output);
    GraphJob job(options, output);
    {
        Progress progress(inputs);
        status = Pipeline(job, 1, progress).run(inputs);
    }
    if (job.drawn().empty()) {
        say_nothing_is_drawn(job, options.message);
        return worse(status, found_problems);
    }
    if (!options.is_text()) {
        std::string reason;
        const std::optional<std::string> picture = render_apart(job.dot(), options.format, reason);
        if (!picture.has_value()) {
            say("kvt: " + job.drawn() + " is not drawn: " + reason + "\n");
            return could_not_work;
        }
        output.write(*picture);
    }
    output.finish();
    say_what_is_drawn(job, options);
    return status;
}

} // namespace

void add_graph(CLI::App &app) {
    static CommonOptions common;
    static GraphOptions options;
    CLI::App *command = add_command(
        app, "graph", "Draw the graph of a job, a topology or resources.",
        "Draws JOB_DATA, TOPOLOGY_INFO_REPLY and RESOURCE_DATA with Graphviz. In large graphs "
        "nodes\n"
        "with the same neighbours are drawn as one. DOT has a graph for each message, another\n"
        "format the first message that can be drawn.\n\n"
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
        ->check(CLI::Validator(
            [](const std::string &word) {
                return word.find_first_not_of('0') == std::string::npos
                           ? "the first message is number 1"
                           : std::string();
            },
            ""))
        ->type_name("N");
    command->add_flag_callback(
        "--all-nodes", [] { options.detail = Detail::all; }, "Draw every node by itself");
    command->callback([] {
        if (!options.output.empty()) {
            rights.outputs = {options.output};
        }
        rights.reads_everything = !options.is_text(); // fonts, and the plugins of Graphviz
        chosen = [] {
            return graph_messages(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
