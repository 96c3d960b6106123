#include "claim.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kvt_prove {

namespace {

/// Cases that are taken at once. A sample takes whole stretches, so that what goes on from case to
/// case is the same as in a full run.
constexpr uint64_t stretch = 1024;

/// What the processes share.
struct Shared {
    std::atomic<uint64_t> next_stretch = 0;
    std::atomic<uint64_t> cases = 0;
};

/// Takes stretches until none is left.
void work(const Claim &claim, uint64_t step, Shared &shared) {
    const uint64_t stretches = (claim.cases + stretch - 1) / stretch;
    for (;;) {
        const uint64_t wanted = shared.next_stretch.fetch_add(step);
        // The step that leads past the last stretch takes it instead, once.
        if (wanted >= stretches + step - 1) {
            return;
        }
        const uint64_t first = std::min(wanted, stretches - 1) * stretch;
        const uint64_t end = std::min(first + stretch, claim.cases);
        claim.check(first, end);
        shared.cases += end - first;
    }
}

/// What the processes that have ended have taken of the processors, in seconds.
double processor_time() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

/// True when no case refutes the claim.
bool holds(const Claim &claim, uint64_t step, unsigned processes) {
    const auto start = std::chrono::steady_clock::now();
    const double used_before = processor_time();
    void *memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        std::perror("mmap");
        return false;
    }
    auto *shared = new (memory) Shared;
    unsigned started = 0;
    for (; started != processes; ++started) {
        const pid_t child = fork();
        if (child < 0) {
            std::perror("fork");
            break;
        }
        if (child == 0) {
            work(claim, step, *shared);
            std::_Exit(EXIT_SUCCESS);
        }
    }
    bool all = started == processes;
    for (; started != 0; --started) {
        int status = 0;
        const pid_t child = wait(&status);
        if (WIFSIGNALED(status)) {
            std::printf("process %d: %s\n", static_cast<int>(child), strsignal(WTERMSIG(status)));
        }
        all = all && status == 0;
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    std::printf("%s %12" PRIu64 " of %12" PRIu64 " cases %7.1f s, %7.1f s of processors  %s\n",
                all ? "holds" : "FAILS", shared->cases.load(), claim.cases, taken.count(),
                processor_time() - used_before, claim.text);
    std::fflush(stdout);
    munmap(memory, sizeof(Shared));
    return all;
}

} // namespace

void refute(const char *broken, std::string_view input) {
    std::fprintf(stderr, "broken: %s\nfor: \"", broken);
    for (const char c : input) {
        if (c >= ' ' && c <= '~' && c != '"' && c != '\\') {
            std::fputc(c, stderr);
        } else {
            std::fprintf(stderr, "\\%03o", static_cast<unsigned>(static_cast<unsigned char>(c)));
        }
    }
    std::fprintf(stderr, "\"\n");
    std::_Exit(EXIT_FAILURE);
}

void refute(const char *broken, uint64_t input) {
    std::fprintf(stderr, "broken: %s\nfor: %" PRIu64 "\n", broken, input);
    std::_Exit(EXIT_FAILURE);
}

int prove(std::span<const Claim> claims, int argc, char **argv) {
    uint64_t step = 1;
    if (argc == 3 && std::strcmp(argv[1], "--sample") == 0) {
        step = std::strtoull(argv[2], nullptr, 10);
    }
    if (step == 0 || (argc != 1 && argc != 3)) {
        std::fprintf(stderr, "usage: %s [--sample N]\n", argv[0]);
        return 2;
    }
    const unsigned processes = std::max(1U, std::thread::hardware_concurrency());
    bool all = true;
    for (const Claim &claim : claims) {
        all = holds(claim, step, processes) && all;
    }
    return all ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace kvt_prove
