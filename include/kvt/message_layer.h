/**
 * @file
 * What a program supplies to the codec.
 *
 * The codec (kvt_str) calls three names that the message layer around it defines: a log function,
 * its threshold, and the function that releases records. A program defines all three itself, or
 * links the library kvt_message_layer, which defines them as described here.
 */
#ifndef KVT_MESSAGE_LAYER_H
#define KVT_MESSAGE_LAYER_H

#include <stdint.h>

#include "kvt/kvt_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Where log lines go; NULL (the default) for nowhere. The program sets it before it calls the codec
 * and keeps the function; the codec only reads the pointer.
 *
 * @param file    the source file of the codec that the line comes from.
 * @param line    the line in it.
 * @param func    the function that logs.
 * @param level   0 for errors, 6 for the readers' traces of every field, line and element; there
 *                are no other levels.
 * @param format  a printf format for the arguments that follow. Lines of level 6 end with a
 *                newline, lines of level 0 do not.
 *
 * Called on the thread that called the codec. All texts belong to the codec and are never NULL.
 * `file`, `func` and `format` live as long as the program, the arguments only until the function
 * returns.
 */
KVT_EXPORT extern void (*log_cb)(const char *file, int line, const char *func, int level,
                                 const char *format, ...);

/** The highest level that is given to log_cb; 0 (only errors) by default, below 0 for none. */
KVT_EXPORT extern int log_level;

/**
 * Releases a record that kvt_msg_from_str() made, with everything that hangs from it.
 *
 * @param msg_type  the record's kind. For a number that is no kind of record nothing is done.
 * @param msg       the record, which is gone afterwards; NULL is ignored. The counts in it must not
 *                  exceed the elements that are there; null pointers are fine beside any count.
 *
 * The one in kvt_message_layer gives the strings, arrays and elements to free(), then the record.
 * So it also releases a record that the program made, when all of it comes from malloc or its like.
 */
KVT_EXPORT void kvt_msg_release(int32_t msg_type, void *msg);

/**
 * A log function to use as log_cb: prints each line to standard error, with its place in the source
 * in front. A line of more than 1,023 bytes is cut. Only in kvt_message_layer.
 *
 * @param file    the source file that the line comes from.
 * @param line    the line in it.
 * @param func    the function that logs.
 * @param level   0 for errors, 6 for the readers' traces.
 * @param format  a printf format for the arguments that follow.
 */
KVT_EXPORT void kvt_log_to_stderr(const char *file, int line, const char *func, int level,
                                  const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 5, 6)))
#endif
    ;

#ifdef __cplusplus
}
#endif

#endif
