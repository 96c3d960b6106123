#include "show.h"

#include "messages.h"
#include "output.h"
#include "pipeline.h"
#include "unread.h"

namespace kvt_tool {

namespace {

class ShowJob {
public:
    struct Result {
        std::string text;
        Unread unread;
    };

    ShowJob(const FieldPath &path, const ShowOptions &options) : path_(path), options_(options) {}

    void work(const Unit &unit, Result &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            path_.each(message.kind, message.record, [&](const FoundField &found) {
                if (options_.with_paths) {
                    result.text += unit.input + ":" + std::to_string(message.line) + ": ";
                    result.text.append(found.path) += ": ";
                }
                result.text += found.value() + "\n";
            });
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        unread_.take(result.unread);
        found_ = found_ || !result.text.empty();
        print(result.text);
    }

    ExitStatus end(const std::string &, bool) const { return unread_.status(); }

    bool found() const { return found_; }

private:
    const FieldPath &path_;
    const ShowOptions &options_;
    UnreadOfInput unread_;
    bool found_ = false;
};

} // namespace

ExitStatus show_fields(const std::vector<std::string> &inputs, const FieldPath &path,
                       const ShowOptions &options) {
    Progress progress(inputs);
    ShowJob job(path, options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    return job.found() ? status : worse(status, found_problems);
}

} // namespace kvt_tool
