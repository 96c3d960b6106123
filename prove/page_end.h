// Memory that ends where a page ends that nobody may touch: one character too far ends the program.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace kvt_prove {

class PageEnd {
public:
    PageEnd() {
        const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        void *pages =
            mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED || mprotect(static_cast<char *>(pages) + page, page, PROT_NONE)) {
            std::perror("mmap");
            std::abort();
        }
        begin_ = static_cast<char *>(pages);
        end_ = begin_ + page;
    }

    ~PageEnd() { munmap(begin_, 2 * static_cast<size_t>(end_ - begin_)); }

    PageEnd(const PageEnd &) = delete;
    PageEnd &operator=(const PageEnd &) = delete;

    /// The first character that must not be touched.
    char *end() const { return end_; }

    /// Puts a text and its NUL right before the end.
    const char *place(std::string_view text) const {
        char *at = end_ - text.size() - 1;
        std::memcpy(at, text.data(), text.size());
        end_[-1] = '\0';
        return at;
    }

private:
    char *begin_;
    char *end_;
};

} // namespace kvt_prove
