/* Takes the codec's log lines. */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>

static void print_log(const char *file, int line, const char *func, int level, const char *format,
                      ...) {
    (void)file; /* the place in the codec's source is of use to those who work on the codec */
    (void)line;
    printf("%s of %s: ", level == 0 ? "error" : "trace", func);
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments); /* the arguments are gone when this function returns */
    va_end(arguments);
    if (level == 0) {
        putchar('\n'); /* lines of higher levels bring their own */
    }
}

int main(void) {
    log_cb = print_log;
    log_level = 0; /* only errors */

    void *record = NULL;
    if (kvt_msg_from_str(0, 0, NULL, &record) == 0) {
        fprintf(stderr, "a message was read out of nothing\n");
        return EXIT_FAILURE;
    }
    if (kvt_str_get_buf_size(1000, "") != 0) {
        fprintf(stderr, "a message of no kind has a size\n");
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
