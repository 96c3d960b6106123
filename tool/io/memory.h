// What happens when memory runs out.
#pragma once

#include <string>

namespace kvt_tool {

/// Whether an allocation of the codec has failed on this thread since this was asked last. The
/// codec goes on without the element that had no room, so that nothing else tells.
bool allocation_has_failed();

/// Keeps some memory back until an allocation fails: what was begun then cannot be dropped without
/// any. To be called again when that is done.
void keep_memory_back();

/// From now on a lack of memory that nobody can handle ends the program with an exit status and the
/// name of the input, as any other does.
void expect_lack_of_memory();

/// The input that is worked on, for what is said then.
void remember_input(const std::string &name);

/// That one, or what else is worked on.
const char *remembered_input();

} // namespace kvt_tool
