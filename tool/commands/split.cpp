// kvt split: one file for each message.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/messages.h"
#include "io/new_file.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "io/unread.h"

namespace kvt_tool {

namespace {

/// The text of a message as it stands in its input, with a newline at its end.
std::string text_of(const ReadMessage &message) {
    std::string text(message.begin, message.end);
    text.erase(text.find_last_not_of(" \t\n") + 1);
    return text + "\n";
}

class SplitJob {
public:
    struct Result {
        std::vector<std::pair<const char *, std::string>> messages; ///< block names and texts
        Unread unread;
    };

    explicit SplitJob(const std::string &folder) : folder_(folder) {}

    static void work(const Unit &unit, Result &result) {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            result.messages.emplace_back(message.kind.block, text_of(message));
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        unread_.take(result.unread);
        for (const auto &[block, text] : result.messages) {
            std::string number = std::to_string(++written_);
            number.insert(0, number.size() < 6 ? 6 - number.size() : 0, '0');
            NewFile file(folder_ / (number + "-" + block + ".kvt"), NewFile::Existing::keep);
            file.write(text);
            file.commit();
        }
    }

    ExitStatus end(const std::string &input, bool) { return unread_.end(input); }

private:
    std::filesystem::path folder_;
    uint64_t written_ = 0;
    UnreadOfInput unread_;
};

/// Writes each message of all inputs, as it stands there, to a file of its own in a folder:
/// 000001-job_data.kvt, 000002-end_job.kvt and so on. No file that is there is touched.
ExitStatus split_messages(const std::vector<std::string> &inputs, const std::string &folder) {
    Progress progress(inputs);
    SplitJob job(folder);
    const ExitStatus status = Pipeline(job, 1, progress).run(inputs);
    sync_files_of(folder);
    return status;
}

} // namespace

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
        rights.folder = folder;
        chosen = [] {
            return split_messages(common.inputs, folder);
        };
    });
}

} // namespace kvt_tool
