// KVT_SSE2 is defined where the instructions of SSE2 are used: on x86-64, where every processor has
// them, unless KVT_PORTABLE leaves them out. Whatever uses them has a portable form beside.
#pragma once

#if defined(__x86_64__) && !defined(KVT_PORTABLE)
#define KVT_SSE2 1
#include <emmintrin.h>
#endif
