#include "support/unknown_memory.h"

#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#define KVT_MEMORY_SANITIZER
#endif
#endif

#ifdef KVT_MEMORY_SANITIZER
#include <malloc.h>
#include <sanitizer/msan_interface.h>

// Blocks of the heap count as stored, those that were free before as well. The C++ library is not
// built with the sanitizer, so what its functions store would count as never stored, in every
// std::string and std::map.
extern "C" const char *__msan_default_options(void);

extern "C" const char *__msan_default_options(void) {
    return "poison_in_malloc=0:poison_in_free=0:intercept_memcmp=0";
}
#endif

namespace kvt_test {

size_t known_size([[maybe_unused]] void *block) {
#ifdef KVT_MEMORY_SANITIZER
    return block != nullptr ? malloc_usable_size(block) : 0;
#else
    return 0;
#endif
}

void block_has_grown([[maybe_unused]] void *old, [[maybe_unused]] size_t known,
                     [[maybe_unused]] void *block, [[maybe_unused]] size_t size) {
#ifdef KVT_MEMORY_SANITIZER
    if (block == nullptr) {
        return;
    }
    if (block != old) {
        __msan_unpoison(old, known);
    }
    if (size > known) {
        __msan_poison(static_cast<char *>(block) + known, size - known);
    }
#endif
}

void block_is_released([[maybe_unused]] void *block) {
#ifdef KVT_MEMORY_SANITIZER
    __msan_unpoison(block, known_size(block));
#endif
}

} // namespace kvt_test
