// Only with the memory sanitizer. The C++ library is not built with it, so what its functions store
// would count as never stored: the sanitizer would find that in every std::map. What the tests and
// GoogleTest take by operator new is therefore declared as known. The codec takes no memory that
// way, and is watched in full, as are the stacks of all.
#if defined(__has_feature)
#if __has_feature(memory_sanitizer)

#include <cstddef>

#include <sanitizer/msan_interface.h>

extern "C" {

void *__real__Znwm(size_t size);
void *__wrap__Znwm(size_t size);

void *__wrap__Znwm(size_t size) {
    void *block = __real__Znwm(size);
    __msan_unpoison(block, size);
    return block;
}

} // extern "C"

#endif
#endif
