// Changes inputs that are texts of messages.
#include "change_input.h"
#include "text_changes.h"

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed) {
    return kvt_fuzz::change_input(data, size, max_size, seed, kvt_fuzz::change_text);
}
