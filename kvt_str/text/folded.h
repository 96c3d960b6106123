// KVT_FOLDED marks the small steps that writing and reading are made of: with arguments that are
// known when compiling, they fold into a few instructions at their place, and only there.
#pragma once

#define KVT_FOLDED [[gnu::always_inline]] inline
// The same for a lambda: there, an attribute in brackets would belong to the type.
#define KVT_FOLDED_LAMBDA __attribute__((always_inline))
