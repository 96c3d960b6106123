// KVT_BOUNDARY(condition) marks a value beside which the code does something else: a room that is
// just full, a text that ends with a chunk. It does nothing. scripts/coverage wants tests for which
// the condition holds and others for which it does not, so that no boundary stays untried. It is
// one comparison, without && and ||.
#pragma once

#ifdef KVT_COVERAGE
#define KVT_BOUNDARY(condition) ((condition) ? kvt_str::at_boundary() : (void)0)
#else
#define KVT_BOUNDARY(condition) ((void)sizeof(condition)) // is compiled, but never evaluated
#endif

namespace kvt_str {

inline void at_boundary() {}

} // namespace kvt_str
