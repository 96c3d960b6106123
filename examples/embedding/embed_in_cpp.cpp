// The same with records that release themselves.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>
#include <kvt/messages/job_control.h>

namespace {

/// Releases a record of one kind.
template <int32_t kind> struct Release {
    void operator()(void *record) const { kvt_msg_release(kind, record); }
};

using EndJob = std::unique_ptr<vemra_end_job, Release<VEMRA_MSG_TYPE_END_JOB>>;

std::string write(const vemra_end_job &job) {
    const uint32_t size = kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, &job);
    std::string text(size, '\0');
    if (size < 9 || kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, &job, text.data()) != 0) {
        throw std::runtime_error("cannot write the message");
    }
    text.pop_back(); // the NUL: a string has one of its own
    return text;
}

/// The text must hold an END_JOB: the reader does not tell the kind.
EndJob read(const std::string &text) {
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text.c_str(), &record) != 0) {
        throw std::runtime_error("cannot read the message");
    }
    return EndJob(static_cast<vemra_end_job *>(record));
}

} // namespace

int main() {
    try {
        const std::string text = write({5, 7});
        std::fputs(text.c_str(), stdout);
        const EndJob job = read(text);
        std::printf("job %" PRIu64 " of reservation %" PRIu64 " ends\n", job->job_id,
                    job->reservation_id);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
