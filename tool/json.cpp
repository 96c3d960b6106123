#include "json.h"

#include <new>

#include "diff_records.h"
#include "findings.h"
#include "from_json.h"
#include "json_stream.h"
#include "messages.h"
#include "output.h"
#include "pipeline.h"
#include "record_content.h"
#include "write_text.h"

namespace kvt_tool {

namespace {

/// What became of some units.
struct Converted {
    std::string text;
    std::string words; ///< for standard error
    std::vector<Finding> findings;
    ExitStatus status = all_well;
};

// --- To JSON -------------------------------------------------------------------------------------

/// A list for people has each message indented by two blanks.
std::string in_list(const std::string &json) {
    std::string indented = "  ";
    for (const char character : json) {
        indented += character;
        if (character == '\n') {
            indented += "  ";
        }
    }
    return indented;
}

class ToJsonJob {
public:
    using Result = Converted;

    explicit ToJsonJob(const JsonOptions &options) : options_(options) {}

    void work(const Unit &unit, Converted &result) const {
        std::string texts;
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            const Json json = to_json(message.kind, message.record, options_.form);
            result.text += options_.lines ? json.dump() + "\n" : in_list(json.dump(2)) + ",\n";
            add_text(message.kind, message.record, texts);
        });
        // What is in normal form has lost nothing.
        if (compare({unit.text, unit.length}, texts) == Likeness::other &&
            !find(unit, FindingKinds().set(), FindingForm::line, result.findings) && !read) {
            result.words += "kvt: " + unit.input + ": out of memory\n";
            result.status = could_not_work;
        }
    }

    void begin(const InputFile &) {
        findings_.begin();
        status_ = all_well;
    }

    void take(Converted &&result) {
        const std::string words = findings_.keep(result.findings) + result.words;
        if (!words.empty()) {
            say(words);
            status_ = worse(status_, found_problems);
        }
        status_ = worse(status_, result.status);
        std::string_view text = result.text;
        if (text.empty()) {
            return;
        }
        if (!options_.lines) {
            print(printed_ ? ",\n" : "[\n");
            text.remove_suffix(2);
        }
        print(text);
        printed_ = true;
    }

    ExitStatus end(const std::string &, bool) const { return status_; }

    void finish() const {
        if (!options_.lines) {
            print(printed_ ? "\n]\n" : "[]\n");
        }
    }

private:
    const JsonOptions &options_;
    FindingsOfInput findings_;
    ExitStatus status_ = all_well;
    bool printed_ = false;
};

// --- From JSON -----------------------------------------------------------------------------------

/// What stands in a text without findings, and is read as something else.
std::string changes_of(const kvt_str::MessageKind &kind,
                       const std::vector<Difference> &differences) {
    std::string words;
    for (const Difference &difference : differences) {
        words += (words.empty() ? "" : "; ") + (kind.block + ("." + difference.path)) + ": " +
                 difference.before + " would be " + difference.after;
    }
    return words;
}

/// What the reader would lose of a message's text: quotes and braces within its texts, mostly, and
/// digits of floats. Empty when it reads just the same message.
std::string losses_of(const OwnedMessage &made, const std::string &text) {
    const std::string no_name;
    const Unit unit{no_name, text.c_str(), text.size(), 1, 0, false};
    const Record &table = *made.kind().record;
    size_t messages = 0;
    bool same = false;
    std::string changes;
    const bool read = read_messages(unit, [&](const ReadMessage &message) {
        ++messages;
        if (message.kind.value == made.kind().value) {
            same = same_content(table, made.record(), message.record);
            changes =
                same ? ""
                     : changes_of(made.kind(), diff_records(table, made.record(), message.record));
        }
    });
    if (read && same && messages == 1) {
        return "";
    }
    std::string losses;
    const auto add = [](const kvt_finding *finding, void *user) {
        auto &words = *static_cast<std::string *>(user);
        words += words.empty() ? "" : "; ";
        words += std::string(finding->path) + ": " + finding->message;
        return 0;
    };
    kvt_check(text.data(), text.size(), add, &losses);
    return !losses.empty()    ? losses
           : !changes.empty() ? changes
                              : "the reader would take it for something else";
}

class FromJsonJob {
public:
    using Result = Converted;

    static void work(const Unit &unit, Converted &result) {
        const std::string place = unit.input + ":" + std::to_string(unit.first_line);
        try {
            const OwnedMessage made = from_json(parse_json({unit.text, unit.length}));
            std::string text;
            if (!add_text(made.kind(), made.record(), text)) {
                throw JsonProblem{0, "the message's text takes 4 GiB or more"};
            }
            const std::string losses = losses_of(made, text);
            if (!losses.empty()) {
                throw JsonProblem{0, "the message could not be read back: " + losses};
            }
            result.text += text;
        } catch (const JsonProblem &problem) {
            const uint64_t line = unit.first_line + (problem.line > 0 ? problem.line - 1 : 0);
            result.words += unit.input + ":" + std::to_string(line) + ": " + problem.what + "\n";
        } catch (const std::bad_alloc &) {
            result.words += place + ": out of memory\n";
            result.status = could_not_work;
        }
    }

    void begin(const InputFile &) { status_ = all_well; }

    void take(Converted &&result) {
        if (!result.words.empty()) {
            say(result.words);
            status_ = worse(status_, found_problems);
        }
        status_ = worse(status_, result.status);
        std::string_view text = result.text;
        if (!text.empty()) {
            text.remove_suffix(1);
            print(printed_ ? "\n" : "");
            print(text);
            printed_ = true;
        }
    }

    ExitStatus end(const std::string &, bool) const { return status_; }

private:
    ExitStatus status_ = all_well;
    bool printed_ = false;
};

} // namespace

ExitStatus convert_to_json(const std::vector<std::string> &inputs, const JsonOptions &options) {
    Progress progress(inputs);
    ToJsonJob job(options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    job.finish();
    finish_printing();
    return status;
}

ExitStatus convert_from_json(const std::vector<std::string> &inputs, unsigned threads) {
    Progress progress(inputs);
    FromJsonJob job;
    const ExitStatus status = Pipeline<FromJsonJob, JsonStream>(job, threads, progress).run(inputs);
    finish_printing();
    return status;
}

} // namespace kvt_tool
