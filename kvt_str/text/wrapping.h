// KVT_WRAPPING marks a function that drops high bits of unsigned numbers on purpose: everywhere
// else the sanitizer for integers takes that for a mistake. The reason stands beside.
#pragma once

#ifdef __clang__
#define KVT_WRAPPING                                                                               \
    __attribute__((no_sanitize("unsigned-integer-overflow", "unsigned-shift-base")))
#else
#define KVT_WRAPPING
#endif
