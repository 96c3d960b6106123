#include "support/memory_watch.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

#include "support/unknown_memory.h"

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
}

namespace kvt_test {

namespace {

struct State {
    bool watching = false;
    bool growth_is_marked = false;
    std::function<bool(const Request &request)> chosen; ///< to fail; null when nothing is
    size_t requests = 0;
    size_t growths = 0;
    size_t failed = 0;
    size_t largest = 0;
    std::map<const void *, size_t> alive; ///< blocks and their sizes
};

constexpr char mark = '\xA5';

State state;

/// True when the request that is made now is to fail.
bool fails(bool growth, size_t size) {
    const bool failing = state.chosen && state.chosen({growth, state.requests, state.growths});
    ++state.requests;
    state.growths += growth;
    state.largest = std::max(state.largest, size);
    state.failed += failing;
    return failing;
}

} // namespace

MemoryWatch::MemoryWatch() {
    state = State{};
    state.watching = true;
}

MemoryWatch::~MemoryWatch() {
    state.watching = false;
}

void MemoryWatch::fail(size_t first, size_t count) {
    fail_where([first, count](const Request &request) {
        return request.number >= first && request.number - first < count;
    });
}

void MemoryWatch::fail_where(std::function<bool(const Request &request)> chosen) {
    state.chosen = std::move(chosen);
    state.requests = 0;
    state.growths = 0;
    state.failed = 0;
}

void MemoryWatch::fail_all_growth() {
    fail_where([](const Request &request) { return request.growth; });
}

void MemoryWatch::fail_nothing() {
    fail(0, 0);
}

void MemoryWatch::mark_growth() {
    state.growth_is_marked = true;
}

size_t MemoryWatch::requests() const {
    return state.requests;
}

size_t MemoryWatch::failed() const {
    return state.failed;
}

size_t MemoryWatch::alive() const {
    return state.alive.size();
}

void MemoryWatch::free_alive() {
    for (const auto &[watched, size] : state.alive) {
        void *block = const_cast<void *>(watched);
        block_is_released(block);
        __real_free(block);
    }
    state.alive.clear();
}

size_t MemoryWatch::largest() const {
    return state.largest;
}

size_t watched_size(const void *block) {
    const auto found = state.alive.find(block);
    return found != state.alive.end() ? found->second : 0;
}

bool is_marked(const char *bytes, size_t size) {
    return std::all_of(bytes, bytes + size, [](char byte) { return byte == mark; });
}

} // namespace kvt_test

extern "C" {

void *__wrap_calloc(size_t count, size_t size) {
    using kvt_test::state;
    if (!state.watching) {
        return __real_calloc(count, size);
    }
    if (kvt_test::fails(false, count * size)) {
        return nullptr;
    }
    void *block = __real_calloc(count, size);
    state.alive[block] = count * size;
    return block;
}

void *__wrap_realloc(void *block, size_t size) {
    using kvt_test::state;
    if (state.watching && kvt_test::fails(true, size)) {
        return nullptr;
    }
    const size_t known = kvt_test::known_size(block);
    const size_t watched = kvt_test::watched_size(block);
    if (state.watching) {
        state.alive.erase(block);
    }
    void *moved = __real_realloc(block, size);
    kvt_test::block_has_grown(block, known, moved, size);
    if (state.watching) {
        state.alive[moved] = size;
        if (state.growth_is_marked && size > watched) {
            std::memset(static_cast<char *>(moved) + watched, kvt_test::mark, size - watched);
        }
    }
    return moved;
}

void __wrap_free(void *block) {
    if (kvt_test::state.watching) {
        kvt_test::state.alive.erase(block);
    }
    kvt_test::block_is_released(block);
    __real_free(block);
}

} // extern "C"
