#include "heap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "claim.h"

extern "C" {
void *__wrap_calloc(size_t count, size_t size);
void *__wrap_realloc(void *block, size_t size);
void __wrap_free(void *block);
void __real_free(void *block);
}

namespace kvt_prove {

namespace {

/// What stands before each block.
struct alignas(std::max_align_t) Header {
    size_t size;
    uint64_t state;
};

constexpr uint64_t is_alive = 0x616C697665212121;
constexpr uint64_t is_freed = 0x6672656564212121;

constexpr size_t capacity = size_t{1} << 24;
alignas(Header) char memory[capacity];
size_t used = 0;
size_t alive = 0;
const char *input = "";

/// True for what calloc gave here: the C library's own blocks are its own.
bool is_here(const void *block) {
    const auto *at = static_cast<const char *>(block);
    return at >= memory && at < memory + capacity;
}

Header *header_of(const void *block) {
    auto *header = const_cast<Header *>(static_cast<const Header *>(block)) - 1;
    expect(is_here(block) && header->state == is_alive,
           "a block is used that has been freed or never was", input);
    return header;
}

} // namespace

size_t blocks_alive() {
    return alive;
}

size_t block_size(const void *block) {
    return block == nullptr ? 0 : header_of(block)->size;
}

void begin_blocks_of(const char *text) {
    input = text;
    std::memset(memory, 0, used);
    used = 0;
    alive = 0;
}

} // namespace kvt_prove

using namespace kvt_prove;

extern "C" {

void *__wrap_calloc(size_t count, size_t size) {
    // Memory that is not in use is zero.
    const size_t bytes = count * size;
    const size_t blocks = (bytes + sizeof(Header) - 1) / sizeof(Header) + 1;
    expect(blocks * sizeof(Header) <= capacity - used, "the memory of a proof suffices", input);
    auto *header = reinterpret_cast<Header *>(memory + used);
    used += blocks * sizeof(Header);
    *header = {bytes, is_alive};
    ++alive;
    return header + 1;
}

void *__wrap_realloc(void *block, size_t size) {
    void *moved = __wrap_calloc(1, size);
    if (block != nullptr) {
        std::memcpy(moved, block, std::min(size, block_size(block)));
        __wrap_free(block);
    }
    return moved;
}

void __wrap_free(void *block) {
    if (block != nullptr && !is_here(block)) {
        __real_free(block);
    } else if (block != nullptr) {
        Header *header = header_of(block);
        header->state = is_freed;
        // What is read of it from now on is not what it held.
        std::memset(block, 0xDD, header->size);
        --alive;
    }
}

} // extern "C"
