#include "split.h"

#include <filesystem>
#include <system_error>

#include "messages.h"
#include "output.h"
#include "pipeline.h"
#include "unread.h"

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

    ExitStatus end(const std::string &, bool) const { return unread_.status(); }

private:
    std::filesystem::path folder_;
    uint64_t written_ = 0;
    UnreadOfInput unread_;
};

} // namespace

ExitStatus split_messages(const std::vector<std::string> &inputs, const std::string &folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        return cannot_use(folder, error.message());
    }
    Progress progress(inputs);
    SplitJob job(folder);
    return Pipeline(job, 1, progress).run(inputs);
}

} // namespace kvt_tool
