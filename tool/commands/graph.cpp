// kvt graph: draws messages as graphs.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "graph/graph.h"
#include "io/messages.h"
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
};

class GraphJob {
public:
    struct Graph {
        uint64_t message; ///< within these units, counted from 0
        uint64_t line;
        std::string dot;
    };

    struct Result {
        uint64_t messages = 0;
        std::vector<Graph> graphs;
        Unread unread;
    };

    explicit GraphJob(const GraphOptions &options) : options_(options) {}

    void work(const Unit &unit, Result &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            if (has_graph(message.kind)) {
                const std::string title = unit.input + ", line " + std::to_string(message.line);
                result.graphs.push_back(
                    {result.messages, message.line,
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
            if (options_.message != 0 && options_.message != number) {
                continue;
            }
            ++graphs_;
            if (options_.format == "dot" || graphs_ == 1) {
                dot_ += graph.dot;
            }
        }
        messages_ += result.messages;
    }

    ExitStatus end(const std::string &, bool) const { return unread_.status(); }

    uint64_t messages() const { return messages_; }

    uint64_t graphs() const { return graphs_; }

    const std::string &dot() const { return dot_; }

private:
    const GraphOptions &options_;
    UnreadOfInput unread_;
    uint64_t messages_ = 0;
    uint64_t graphs_ = 0;
    std::string dot_; ///< of all graphs, or of the first where only one can be drawn
};

void write_graph(const std::string &graph, const std::string &output) {
    if (output.empty()) {
        print(graph);
        finish_printing();
        return;
    }
    std::error_code none;
    if (std::filesystem::exists(output, none) && !std::filesystem::is_regular_file(output, none)) {
        std::ofstream device(output, std::ios::binary); // such as /dev/stdout, or a pipe
        if (!device.write(graph.data(), static_cast<std::streamsize>(graph.size())).flush()) {
            throw OutputError{output, std::strerror(errno)};
        }
        return;
    }
    NewFile file(output, NewFile::Existing::may_replace);
    file.write(graph);
    file.commit();
}

/// Draws the messages of the inputs that can be drawn: as DOT all of them, otherwise the only one.
ExitStatus graph_messages(const std::vector<std::string> &inputs, const GraphOptions &options) {
    for (const std::string &input : inputs) {
        std::error_code none;
        if (!options.output.empty() && std::filesystem::equivalent(input, options.output, none)) {
            return cannot_use(options.output, "is an input, too");
        }
    }
    ExitStatus status;
    GraphJob job(options);
    {
        Progress progress(inputs);
        status = Pipeline(job, 1, progress).run(inputs);
    }
    if (job.graphs() == 0) {
        say("kvt: none of " + std::to_string(job.messages()) + " messages " +
            (options.message != 0 ? "has this number and can be drawn" : "can be drawn") +
            ": that is JOB_DATA, TOPOLOGY_INFO_REPLY and RESOURCE_DATA\n");
        return worse(status, found_problems);
    }
    if (options.format == "dot") {
        write_graph(job.dot(), options.output);
        return status;
    }
    if (job.graphs() > 1) {
        say("kvt: " + std::to_string(job.graphs()) +
            " messages can be drawn: --message N chooses one\n");
        return could_not_work;
    }
    std::string reason;
    const std::optional<std::string> picture = render(job.dot(), options.format, reason);
    if (!picture.has_value()) {
        say("kvt: " + reason + "\n");
        return could_not_work;
    }
    write_graph(*picture, options.output);
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
            return graph_messages(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
