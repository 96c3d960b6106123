/**
 * @file
 * Messages as text: write them, size them, read them back, split a text of many.
 *
 * A message is a plain C record and its kind; kvt/messages/message_type.h lists the kinds and says
 * what holds for all records. To write one:
 *
 *     vemra_end_job job = {.job_id = 5, .reservation_id = 7};
 *     uint32_t size = kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, &job);
 *     char *text = size >= 9 ? malloc(size) : NULL;
 *     if (text == NULL || kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, &job, text) != 0) {
 *         ... there is no text; free it and give up ...
 *     }
 *
 * The comparison with 9 matters where the kind is not a constant: kvt_msg_to_str() never writes
 * less, but for a wrong kind the size is 0 or 6. `text` now holds
 *
 *     msg {
 *       type: END_JOB
 *       end_job {
 *         job_id: 5
 *         reservation_id: 7
 *       }
 *     }
 *
 * and to read it back into a record of its own:
 *
 *     void *record = NULL;
 *     if (kvt_msg_from_str(0, 0, text, &record) == 0) {
 *         ... ((vemra_end_job *)record)->job_id is 5 ...
 *         kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, record);
 *     }
 *
 * A program that links the codec supplies three names of its own or links the ready-made ones:
 * see kvt/message_layer.h.
 *
 * Threads: every function works only on what it is given and on local storage, so all of them may
 * run on several threads at once for different buffers and records. `log_cb` and `log_level` are
 * only read.
 *
 * Locale: no result depends on it.
 */
#ifndef KVT_STR_H
#define KVT_STR_H

#include <stdint.h>

#include "kvt/kvt_export.h"
#include "kvt/messages/message_type.h"

#ifdef __cplusplus
/** An argument that is not read. Anything of a register's width or less may be passed for it. */
struct kvt_ignored {
    uintptr_t value;

    template <typename Anything> kvt_ignored(Anything) noexcept : value(0) {}
};

extern "C" {
#else
/**
 * An argument that is not read. A number or a pointer may be passed for it: kvt_msg_from_str() is a
 * macro, too, that converts either. In C++ it is a class that is made of either.
 */
typedef uintptr_t kvt_ignored;
#endif

/**
 * Writes one message as text.
 *
 * @param msg_type  the kind of the message (kvt/messages/message_type.h).
 * @param msg       the record of that kind; only read. NULL is an error. A count in it must not
 *                  exceed the elements of its array; a null pointer counts as no elements.
 * @param buf       where the text and its NUL go; the caller's. It must have room for as many
 *                  characters as kvt_str_get_buf_size() says for the same record, and for at least
 *                  9: the room is not checked. NULL is an error.
 *
 * @return 0 when a text was written, -1 when `msg` or `buf` is NULL (nothing is written then).
 * For VEMRA_MSG_TYPE_NONE, VEMRA_MSG_TYPE_LAST and any number that is not a kind, the text is an
 * empty envelope (`"msg {\n}\n"`) and the result still 0: a caller that must know checks the kind.
 *
 * Texts of the record are written between double quotes as they are; no character is escaped. Four
 * characters in them mislead the readers, without an error:
 *
 * - A double quote ends the text. The readers lose the rest of it.
 * - A newline is read as a part of the text. But what follows it is read once more, as lines of the
 *   record, and may set other members.
 * - A closing brace ends the block, unless the text stands on the first line of its block. The
 *   text, the rest of the message and all messages after it are lost.
 * - An opening brace does no harm to readers that know the text's key. Others skip what follows, up
 *   to the brace that closes it.
 *
 * So refuse texts with these characters, or check what was written with kvt_check().
 *
 * Each failure is logged at level 0. Nothing is allocated.
 */
KVT_EXPORT int32_t kvt_msg_to_str(int32_t msg_type, const void *msg, char *buf);

/**
 * Tells the exact size, in characters and with its NUL, of the text that kvt_msg_to_str() writes.
 *
 * @param msg_type  the kind of the message.
 * @param msg       the record of that kind; only read.
 *
 * @return that size; 0, logged at level 0, when `msg` is NULL or `msg_type` is not a kind; 0 also
 * for a text of 4 GiB or more. After a 0 there is nothing to allocate, and kvt_msg_to_str() must
 * not be called. For VEMRA_MSG_TYPE_NONE and VEMRA_MSG_TYPE_LAST it logs and returns 6, which is no
 * size to allocate: kvt_msg_to_str() writes 9 characters for these.
 *
 * Nothing is allocated.
 */
KVT_EXPORT uint32_t kvt_str_get_buf_size(int32_t msg_type, const void *msg);

/**
 * Reads one message into a new record.
 *
 * @param ignored1  is not read; pass 0.
 * @param ignored2  is not read; pass 0.
 * @param buf       the NUL-terminated text, beginning with "msg"; what follows the message does not
 *                  matter. NULL is an error.
 * @param msg       where the address of the new record goes. NULL is an error.
 *
 * @return 0 when a record was stored in `*msg`, however much of the text was understood. Returns -1
 * when `buf` or `msg` is NULL, the text does not begin with "msg", its type is not a known one, or
 * the record cannot be allocated. `*msg` is then untouched, but NULL after a failed allocation.
 * Failures are logged at level 0, except that a text which does not begin with "msg" is refused
 * without a word.
 *
 * Unknown lines and blocks are skipped. A value that does not scan leaves its member as it was: 0,
 * unless an earlier line of the same key said otherwise. The end of the text ends every block.
 *
 * The kind is not told: it is the word on the type line, which the caller knows from elsewhere or
 * takes from kvt_msg_arr_from_str(). Reading a record as one of another kind is an error that
 * nobody notices.
 *
 * The time is linear in the length of the whole text, up to its NUL: to go through a text of many
 * messages, use kvt_msg_arr_from_str().
 *
 * The record and all that hangs from it come from calloc and realloc and belong to the caller,
 * who gives them to kvt_msg_release() with the kind.
 *
 * Beware of counts in a text that you do not trust. An array's count is the number of elements
 * read. But a count line that stands after the elements, or without any, is kept as it was read. It
 * may promise elements that are not there; the pointer may even be NULL. Compare before you write,
 * release or walk such a record, or read it with kvt_msg_arr_from_str(), which makes counts and
 * elements agree. A count that says too little does less harm: what the elements beyond it own is
 * not released with the record. The count of elements that stand in the record itself (the up to 4
 * groups) is kept as read too. The writer goes no further than their places, and so should whoever
 * walks them.
 */
KVT_EXPORT int32_t kvt_msg_from_str(kvt_ignored ignored1, kvt_ignored ignored2, const char *buf,
                                    void **msg);
/** @cond */
/* Converts what is passed for the arguments that are not read; else the function itself. */
#ifndef __cplusplus
#define kvt_msg_from_str(ignored1, ignored2, buf, msg)                                             \
    kvt_msg_from_str((kvt_ignored)(ignored1), (kvt_ignored)(ignored2), (buf), (msg))
#endif
/** @endcond */

/**
 * Splits a text of several messages into one text per message, each in the form that
 * kvt_msg_to_str() writes.
 *
 * @param buf     the NUL-terminated text, beginning with "msg"; between messages only blanks may
 *                stand, and other text after a message ends the reading. NULL is an error.
 * @param length  the text's length in characters. A smaller one stops the reading only when it ends
 *                between two messages, or on the last line of the first of them. When it ends
 *                anywhere else within a message, it wraps around, and the NUL ends the reading.
 * @param msgs    where the array of texts goes. NULL is an error.
 * @param kinds   where the array of their kinds goes, in the same order; NULL when not wanted.
 * @param count   where the number of messages goes; NULL when not wanted.
 *
 * @return 0 when all three were stored, or -1 when none was: `buf` or `msgs` is NULL, the text does
 * not begin with "msg", one of the messages is of no known type, or memory ran out. One bad
 * message fails the whole call. Failures are logged at level 0, but for a text that does not
 * begin with "msg" and for arrays that cannot be allocated. A text that cannot be allocated is
 * logged and leaves a null pointer in its place; the result is still 0.
 *
 * Both arrays and each text come from calloc or realloc and belong to the caller, who frees each
 * with free. Records of the messages are made on the way and given to kvt_msg_release(); in them
 * counts and elements on the heap agree, whatever the text says.
 */
KVT_EXPORT int32_t kvt_msg_arr_from_str(const char *buf, uint32_t length, char ***msgs,
                                        uint32_t **kinds, int32_t *count);

/**
 * Steps from one message to the next: to the first character that is not a space, tab or newline
 * on a later line, which may be the text's NUL. What this and the functions below return points
 * into the text that they were given; they change nothing and allocate nothing.
 *
 * @param text    a position in a NUL-terminated text; NULL gives NULL.
 * @param length  the number of characters from there that may be stepped over. The character just
 *                after them is looked at too. When it is reached it is returned, even if it is a
 *                space or tab.
 *
 * @return that position in the text, or NULL when `length` is 0, when no newline is left, or when
 * the next line begins after `length`.
 */
KVT_EXPORT char *next_msg(const char *text, uint32_t length);

/**
 * Steps to the next line: to the first character that is not a space, tab or newline after the
 * end of the line at `text`.
 *
 * @param text  a position in a NUL-terminated text; NULL gives NULL.
 *
 * @return that position, which is the text's NUL when there is none; NULL for NULL.
 */
KVT_EXPORT char *next_line(const char *text);

/**
 * Tells whether the line at `text` opens a block.
 *
 * @param text  a position in a NUL-terminated text, or NULL.
 *
 * @return 1 when "{" stands anywhere between `text` and its newline, else 0; also 0 when no newline
 * ends the line, and for NULL.
 */
KVT_EXPORT int check_start_msg(const char *text);

/**
 * Tells whether the line at `text` closes a block: as check_start_msg(), with "}".
 *
 * @param text  a position in a NUL-terminated text, or NULL.
 *
 * @return 1 when "}" stands anywhere between `text` and its newline, else 0; also 0 when no newline
 * ends the line, and for NULL.
 */
KVT_EXPORT int check_end_msg(const char *text);

/**
 * Skips the block that the line at `text` opens; a line without braces is skipped alone.
 *
 * @param text  a position in a NUL-terminated text, or NULL.
 *
 * @return the first character after it that is not a space, tab or newline: the text's NUL when
 * the block is never closed. NULL for NULL.
 */
KVT_EXPORT char *find_end_msg(const char *text);

#ifdef __cplusplus
}
#endif

#endif
