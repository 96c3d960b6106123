// Where log lines go until the program says otherwise: nowhere.
#include "kvt/message_layer.h"

extern "C" {

void (*log_cb)(const char *file, int line, const char *func, int level, const char *format,
               ...) = nullptr;

int log_level = 0;

} // extern "C"
