// kvt check: says what the reader would lose of texts.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "commands/command_line.h"
#include "io/explain.h"
#include "io/finding_summary.h"
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
    FindingScope scope{.from_beginning = true, .consequences = false};
    bool strict = false;  ///< style counts, too
    bool quiet = false;   ///< the exit status alone
    bool summary = false; ///< no single findings
    uint64_t most = UINT64_MAX;
    unsigned threads = 1;
};

/// With more findings than these their summary is said after them.
constexpr size_t few_findings = 10;

class CheckJob {
public:
    struct Result {
        std::vector<Finding> findings;
    };

    explicit CheckJob(const CheckOptions &options) : options_(options) {}

    void work(const Unit &unit, Result &result) const {
        check_unit(unit, options_.wanted, options_.form, result.findings, options_.scope);
    }

    void begin(const InputFile &input) {
        findings_.begin();
        input_ = input.name();
        found_before_ = findings_.count();
        is_empty_ = true;
        status_ = all_well;
    }

    void take(Result &&result) {
        is_empty_ = false;
        std::string lines;
        findings_.for_each_kept(result.findings, [&](const Finding &finding) {
            summary_.add(input_, finding);
            if (options_.strict || finding.severity != KVT_SEVERITY_STYLE) {
                status_ = found_problems;
            }
            if (shown_ < options_.most) {
                ++shown_;
                lines += finding.text;
            }
        });
        if (!options_.quiet && !options_.summary) {
            print(lines);
        }
    }

    ExitStatus end(const std::string &input, bool whole) {
        if (whole && is_empty_) {
            Result result;
            work(Unit{.input = input_,
                      .text = "",
                      .length = 0,
                      .first_line = 1,
                      .offset = 0,
                      .is_cut = false},
                 result);
            take(std::move(result));
        }
        ++inputs_;
        if (findings_.leaves_out() && !options_.quiet && options_.form != FindingForm::json) {
            say(words_on_whole(input));
        }
        inputs_with_findings_ += findings_.count() != found_before_;
        return status_;
    }

    /// Tells people the numbers, after the findings.
    void sum_up() const {
        if (options_.quiet) {
            return;
        }
        if (options_.summary) {
            print(summary_.lines(options_.form));
            finish_printing();
        }
        if (findings_.count() == 0 || options_.form == FindingForm::json) {
            return;
        }
        std::string words;
        if (!options_.summary && findings_.count() > few_findings) {
            words += summary_.lines(options_.form);
        }
        words += std::to_string(findings_.count()) +
                 (findings_.count() == 1 ? " finding in " : " findings in ") +
                 std::to_string(inputs_with_findings_) + " of " + std::to_string(inputs_) +
                 (inputs_ == 1 ? " input" : " inputs");
        if (!options_.summary && shown_ == options_.most) {
            words +=
                ", of which " + std::to_string(shown_) + (shown_ == 1 ? " is" : " are") + " shown";
        }
        say(words + "\n");
    }

private:
    const CheckOptions &options_;
    FindingsOfInput findings_;
    FindingSummary summary_;
    std::string input_;       ///< its name, as it is shown
    size_t found_before_ = 0; ///< in the inputs before
    size_t inputs_ = 0;
    size_t inputs_with_findings_ = 0;
    uint64_t shown_ = 0;
    bool is_empty_ = true; ///< the input, so far
    ExitStatus status_ = all_well;
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

std::string padded(std::string word, size_t width) {
    word.resize(width, ' ');
    return word;
}

/// Prints the kinds of findings.
ExitStatus list_findings() {
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        const auto kind = static_cast<kvt_finding_kind>(number);
        print(padded(kvt_finding_name(kind), 20) +
              padded(kvt_severity_name(kvt_finding_severity(kind)), 9) + kvt_finding_meaning(kind) +
              "\n");
    }
    finish_printing();
    return all_well;
}

ExitStatus explain_finding(kvt_finding_kind kind) {
    print(explain(kind));
    finish_printing();
    return all_well;
}

kvt_finding_kind kind_of_name(const std::string &name) {
    const kvt_finding_kind kind = kvt_finding_of_name(name.c_str());
    if (kind == KVT_FINDING_KINDS) {
        throw CLI::ValidationError("\"" + name +
                                   "\" is no kind of finding; \"kvt check "
                                   "--list\" shows them");
    }
    return kind;
}

FindingKinds kinds_of_names(const std::vector<std::string> &names) {
    FindingKinds kinds;
    for (const std::string &name : names) {
        kinds.set(kind_of_name(name));
    }
    return kinds;
}

kvt_severity severity_of_name(const std::string &name) {
    int number = 0;
    while (name != kvt_severity_name(static_cast<kvt_severity>(number))) {
        ++number; // one of the names, by the option's own check
    }
    return static_cast<kvt_severity>(number);
}

} // namespace

void add_check(CLI::App &app) {
    static CommonOptions common;
    static CheckOptions options;
    static std::vector<std::string> only;
    static std::vector<std::string> ignored;
    static std::string format = "text";
    static std::string severity = "style";
    static std::string explained;
    static bool list = false;
    CLI::App *command = add_command(
        app, "check", "Say what the reader would skip, cut, wrap or overwrite without a word.",
        "Each finding is said as FILE:LINE:COLUMN: NAME: WHAT [SEVERITY], with the line and its\n"
        "place below. The severity is \"refused\" where the codec does not read a message at all,\n"
        "\"lost\" where something of it is lost or changed, and \"style\" where nothing is lost.\n"
        "More than ten findings are summed up by name and key.\n\n"
        "Exit status: 0 nothing is lost, 1 something is, or with --strict there are findings, 2 a\n"
        "file cannot be read.\n\n"
        "Example: kvt check --ignore unknown-key *.kvt");
    take_inputs(command, common);
    command->add_option("--format", format, "text, or json for one object a line")
        ->check(CLI::IsMember({"text", "json"}))
        ->type_name("FORM");
    command->add_flag("-q,--quiet", options.quiet, "Print nothing: the exit status tells");
    command->add_flag("--strict", options.strict, "Findings of style count for the exit status");
    command->add_option("--severity", severity, "Say findings of this severity and of those above")
        ->check(CLI::IsMember({"style", "lost", "refused"}))
        ->type_name("SEVERITY");
    command->add_flag("--all", options.scope.consequences,
                      "Say also what follows from a brace that is missing or too many");
    command->add_option("--max", options.most, "Say so many findings, and only count the others")
        ->type_name("N")
        ->check(whole_number);
    command->add_flag("--summary", options.summary,
                      "Say only how many findings there are by name and key");
    command->add_option("--only", only, "Names of the only findings to be said, with commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command->add_option("--ignore", ignored, "Names of findings not to be said, with commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command->add_flag("--list", list, "List the names of findings and what they mean");
    command->add_option("--explain", explained, "Explain a finding with an example and a remedy")
        ->type_name("NAME");
    take_threads(command, common);
    command->callback([] {
        options.wanted = only.empty() ? FindingKinds().set() : kinds_of_names(only);
        options.wanted &= ~kinds_of_names(ignored) & findings_from(severity_of_name(severity));
        options.threads = common.threads;
        options.form = format == "json"                         ? FindingForm::json
                       : is_terminal_for_colours(STDOUT_FILENO) ? FindingForm::coloured
                                                                : FindingForm::marked;
        if (!explained.empty()) {
            chosen = [kind = kind_of_name(explained)] {
                return explain_finding(kind);
            };
            return;
        }
        chosen = [] {
            return list ? list_findings() : check(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
