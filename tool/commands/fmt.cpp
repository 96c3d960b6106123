// kvt fmt: messages in normal form.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "commands/command_line.h"
#include "diff/diff_lines.h"
#include "diff/unified_diff.h"
#include "io/new_file.h"
#include "io/normal_form.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "kvt/message_layer.h"
#include "model/write_text.h"

namespace kvt_tool {

namespace {

struct FormatOptions {
    enum class To {
        standard_output,
        their_files, ///< which are replaced
        nowhere,     ///< the names of files that are not in normal form are printed
        comparison,  ///< what would change is printed
    };

    To to = To::standard_output;
    bool lossy = false; ///< files are replaced also where something of them is lost
    unsigned threads = 1;
};

/// What would change in a unit.
struct Changes {
    uint64_t first_line;
    std::string marked_lines;
};

/// The messages of some units in normal form.
struct Formatted {
    std::string text; ///< with an empty line after every message
    std::vector<Finding> findings;
    bool is_incomplete = false; ///< for want of memory
    Likeness likeness = Likeness::same;
    std::vector<Changes> changes; ///< where they are wanted
};

class FormatJob {
public:
    using Result = Formatted;
    using To = FormatOptions::To;

    explicit FormatJob(const FormatOptions &options) : options_(options) {}

    void work(const Unit &unit, Formatted &result) const {
        const size_t before = result.text.size();
        NormalForm form = add_normal_form(unit, result.text);
        if (options_.to == To::comparison) {
            result.changes.push_back(
                {unit.first_line, marked_lines({unit.text, unit.length},
                                               std::string_view(result.text).substr(before))});
        }
        result.likeness = followed_by(result.likeness, form.likeness);
        std::ranges::move(form.findings, std::back_inserter(result.findings));
        result.is_incomplete = result.is_incomplete || form.is_incomplete;
    }

    void begin(const InputFile &input) {
        findings_.begin();
        input_ = &input;
        likeness_ = Likeness::same;
        is_empty_ = true;
        status_ = all_well;
        if (options_.to == To::their_files) {
            is_separator_due_ = false;
            kept_ = 0;
            is_file_refused_ = !input.usable();
            if (input.usable() && !size_of_input(input.path()).has_value()) {
                is_file_refused_ = true;
                status_ = cannot_use(input.name(), "not a regular file");
            }
        }
        comparison_ = UnifiedDiff("--- " + input.name() + "\t(as it is)\n+++ " + input.name() +
                                  "\t(normal form)\n");
    }

    void take(Formatted &&result) {
        likeness_ = followed_by(likeness_, result.likeness);
        is_empty_ = false;
        const std::string findings = findings_.keep(result.findings);
        if (!findings.empty()) {
            say(findings);
            status_ = worse(status_, found_problems);
        }
        if (result.is_incomplete) {
            status_ = cannot_use(input_->name(), "a message is left out: its text takes 4 GiB or "
                                                 "more, or there is not enough memory");
        }
        put(result.text);
        for (const Changes &changes : result.changes) {
            print(comparison_.take(changes.marked_lines, changes.first_line));
        }
    }

    ExitStatus end(const std::string &input, bool whole) {
        // An empty file is in normal form, too.
        const bool is_normal = likeness_ == Likeness::ended || is_empty_;
        if (options_.to == To::nowhere && whole && !is_normal) {
            const bool is_name = input != standard_input && isatty(STDOUT_FILENO) != 1;
            print((is_name ? input : shown_name(input)) + "\n");
            status_ = worse(status_, found_problems);
        }
        if (options_.to == To::comparison) {
            print(comparison_.end());
            status_ = worse(status_, comparison_.differs() ? found_problems : all_well);
        }
        if (options_.to == To::their_files && whole && !is_normal) {
            replace_file();
        }
        file_.reset();
        return status_;
    }

private:
    /// Puts out texts with an empty line after each; that of the last one waits for the next.
    void put(std::string_view texts) {
        if (texts.empty() || options_.to == To::nowhere || options_.to == To::comparison) {
            return;
        }
        texts.remove_suffix(1);
        const char *separator = is_separator_due_ ? "\n" : "";
        if (options_.to == To::standard_output) {
            print(separator);
            print(texts);
        } else {
            put_into_file(separator, texts);
        }
        is_separator_due_ = true;
    }

    /// As long as the file is in normal form, what is put into the new one stands in it already:
    /// only its length is kept in mind.
    void put_into_file(std::string_view separator, std::string_view texts) {
        if (likeness_ != Likeness::other) {
            kept_ += separator.size() + texts.size();
            return;
        }
        if (!may_replace()) {
            return;
        }
        with_file([&](NewFile &file) {
            file.write(separator);
            file.write(texts);
        });
    }

    bool may_replace() const {
        return status_ == all_well || (status_ == found_problems && options_.lossy);
    }

    void replace_file() {
        if (!is_file_refused_ && !may_replace()) {
            cannot_use(input_->name(), "left as it is, for what is said above");
            return;
        }
        with_file([](NewFile &file) { file.commit(); });
    }

    /// Does something with the new file, which is begun when it is needed. Nothing once it has been
    /// refused.
    template <typename Work> void with_file(Work work) {
        if (is_file_refused_) {
            return;
        }
        try {
            if (file_ == nullptr) {
                begin_file();
            }
            work(*file_);
        } catch (const OutputError &error) {
            file_.reset();
            is_file_refused_ = true;
            status_ = cannot_use(error.name, error.reason);
        }
    }

    /// Begins it with what stands in the file already.
    void begin_file() {
        file_ =
            std::make_unique<NewFile>(input_->path(), NewFile::Existing::replace, input_->state());
        std::string part(std::min<uint64_t>(kept_, 1 << 20), '\0');
        for (uint64_t at = 0; at < kept_;) {
            const size_t room = std::min<uint64_t>(kept_ - at, part.size());
            const size_t length = input_->read_at(at, part.data(), room);
            if (length == 0) {
                throw OutputError{input_->name(), "left as it is: it has changed meanwhile"};
            }
            file_->write({part.data(), length});
            at += length;
        }
    }

    const FormatOptions &options_;
    FindingsOfInput findings_;
    ExitStatus status_ = all_well;
    Likeness likeness_ = Likeness::same;
    bool is_empty_ = true;
    bool is_separator_due_ = false;
    const InputFile *input_ = nullptr; ///< of this and what follows, from begin to end
    uint64_t kept_ = 0;                ///< bytes at its beginning that are in normal form
    std::unique_ptr<NewFile> file_;    ///< null while there is nothing else to write
    bool is_file_refused_ = false;
    UnifiedDiff comparison_;
};

/// Formats the messages of all inputs, with an empty line between messages.
ExitStatus format_messages(const std::vector<std::string> &inputs, const FormatOptions &options) {
    Progress progress(inputs);
    FormatJob job(options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    return status;
}

} // namespace

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
        "Exit status: 0 all is well, 1 something would be lost, or with --check or --diff a file "
        "is\n"
        "not in normal form, 2 a file cannot be read or written.\n\n"
        "Example: kvt fmt -i job.kvt events.kvt");
    take_inputs(command, common);
    auto *in_place = command->add_flag_callback(
        "-i,--in-place", [] { options.to = FormatOptions::To::their_files; },
        "Put the files themselves in normal form, each as a whole or not at all");
    auto *check = command->add_flag_callback(
        "--check", [] { options.to = FormatOptions::To::nowhere; },
        "Only print the names of files that are not in normal form");
    check->excludes(in_place);
    command
        ->add_flag_callback(
            "--diff", [] { options.to = FormatOptions::To::comparison; },
            "Only print what would change, as a unified diff")
        ->excludes(in_place)
        ->excludes(check);
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
        if (options.to == FormatOptions::To::their_files) {
            rights.outputs = common.inputs;
        }
        options.threads = common.threads;
        chosen = [] {
            if (verbose) {
                log_cb = kvt_log_to_stderr;
                log_level = 6;
            }
            return format_messages(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
