#include "io/memory.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <utility>

#include "io/problems.h"
#include "io/unfinished.h"

namespace {

thread_local bool has_failed = false;

/// What is kept back: a list of what hangs from a JSON value is made when that is dropped.
constexpr size_t reserve_size = 8 << 20;
std::atomic<void *> reserve = nullptr;

char current_input[256] = "the work";

void give_reserve_back() {
    std::free(reserve.exchange(nullptr));
    throw std::bad_alloc();
}

[[noreturn]] void end_for_lack_of_memory() {
    try {
        if (const std::exception_ptr reason = std::current_exception()) {
            std::rethrow_exception(reason);
        }
    } catch (const std::bad_alloc &) {
        kvt_tool::remove_unfinished_file();
        dprintf(STDERR_FILENO, "kvt: %s: there is not enough memory\n", current_input);
        _exit(kvt_tool::could_not_work);
    } catch (...) { // the system tells of it
    }
    std::abort();
}

void *noted(void *block, size_t size) {
    has_failed = has_failed || (block == nullptr && size != 0);
    return block;
}

} // namespace

// The linker puts these in the place of the C library's functions, for all that is linked into the
// command (--wrap in CMakeLists.txt); those are called by their names with "real".
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void *__wrap_calloc(size_t count, size_t size);
void *__wrap_realloc(void *block, size_t size);

void *__wrap_calloc(size_t count, size_t size) {
    return noted(__real_calloc(count, size), count != 0 ? size : 0);
}

void *__wrap_realloc(void *block, size_t size) {
    return noted(__real_realloc(block, size), size);
}

// NOLINTEND(bugprone-reserved-identifier)
}

namespace kvt_tool {

bool allocation_has_failed() {
    return std::exchange(has_failed, false);
}

void keep_memory_back() {
    if (reserve == nullptr) {
        std::free(reserve.exchange(std::malloc(reserve_size)));
    }
}

void expect_lack_of_memory() {
    keep_memory_back();
    std::set_new_handler(give_reserve_back);
    std::set_terminate(end_for_lack_of_memory);
}

void remember_input(const std::string &name) {
    const size_t length = std::min(name.size(), sizeof current_input - 1);
    std::copy_n(name.begin(), length, current_input);
    current_input[length] = '\0';
}

const char *remembered_input() {
    return current_input;
}

} // namespace kvt_tool
