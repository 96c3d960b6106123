#include "stat.h"

#include "messages.h"
#include "output.h"
#include "pipeline.h"
#include "statistics.h"
#include "unread.h"

namespace kvt_tool {

namespace {

class StatJob {
public:
    struct Result {
        Statistics statistics;
        Unread unread;
    };

    static void work(const Unit &unit, Result &result) {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            const auto length = static_cast<uint64_t>(message.end - message.begin);
            result.statistics.add(message.kind, message.record, length);
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        statistics_.merge(result.statistics);
        unread_.take(result.unread);
    }

    ExitStatus end(const std::string &, bool) const { return unread_.status(); }

    const Statistics &statistics() const { return statistics_; }

private:
    Statistics statistics_;
    UnreadOfInput unread_;
};

} // namespace

ExitStatus print_statistics(const std::vector<std::string> &inputs, bool as_json,
                            unsigned threads) {
    ExitStatus status;
    StatJob job;
    {
        Progress progress(inputs);
        status = Pipeline(job, threads, progress).run(inputs);
    }
    print(as_json ? job.statistics().json() + "\n" : job.statistics().table());
    finish_printing();
    return status;
}

} // namespace kvt_tool
