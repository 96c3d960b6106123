// kvt check: says what the reader would lose of texts.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/findings.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "io/read_as_whole.h"

namespace kvt_tool {

namespace {

struct CheckOptions {
    FindingKinds wanted = FindingKinds().set();
    FindingForm form = FindingForm::marked;
    bool quiet = false; ///< the exit status alone
    unsigned threads = 1;
};

class CheckJob {
public:
    using Result = std::vector<Finding>;

    explicit CheckJob(const CheckOptions &options) : options_(options) {}

    void work(const Unit &unit, Result &findings) const {
        check_unit(unit, options_.wanted, options_.form, findings);
    }

    void begin(const InputFile &) {
        findings_.begin();
        found_before_ = findings_.count();
    }

    void take(Result &&findings) {
        const std::string kept = findings_.keep(findings);
        if (!options_.quiet) {
            print(kept);
        }
    }

    ExitStatus end(const std::string &input, bool) {
        ++inputs_;
        if (findings_.count() == found_before_) {
            return all_well;
        }
        if (findings_.leaves_out() && !options_.quiet && options_.form != FindingForm::json) {
            say(words_on_whole(input));
        }
        ++inputs_with_findings_;
        return found_problems;
    }

    /// Tells people the numbers, after the findings.
    void sum_up() const {
        if (findings_.count() > 0 && !options_.quiet && options_.form != FindingForm::json) {
            say(std::to_string(findings_.count()) +
                (findings_.count() == 1 ? " finding in " : " findings in ") +
                std::to_string(inputs_with_findings_) + " of " + std::to_string(inputs_) +
                (inputs_ == 1 ? " input\n" : " inputs\n"));
        }
    }

private:
    const CheckOptions &options_;
    FindingsOfInput findings_;
    size_t found_before_ = 0; ///< in the inputs before
    size_t inputs_ = 0;
    size_t inputs_with_findings_ = 0;
};

/// Prints the findings of all inputs.
ExitStatus check(const std::vector<std::string> &inputs, const CheckOptions &options) {
    Progress progress(inputs);
    CheckJob job(options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    job.sum_up();
    return status;
}

/// Prints the kinds of findings.
ExitStatus list_findings() {
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        const auto kind = static_cast<kvt_finding_kind>(number);
        std::string name = kvt_finding_name(kind);
        name.resize(20, ' ');
        print(name + kvt_finding_meaning(kind) + "\n");
    }
    finish_printing();
    return all_well;
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

} // namespace

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
        options.threads = common.threads;
        options.form = format == "json"                         ? FindingForm::json
                       : is_terminal_for_colours(STDOUT_FILENO) ? FindingForm::coloured
                                                                : FindingForm::marked;
        chosen = [] {
            return list ? list_findings() : check(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
