/**
 * @file
 * Tells what the codec would not read of a text, before it is read.
 *
 * The reader of messages (kvt/kvt_str.h) is patient: what it cannot use it skips, cuts, wraps or
 * overwrites without a word, and counts may promise elements that are not there. The check goes
 * through a text by the same tables and reports each such place. It needs no record and no memory.
 *
 * To refuse a text before it is read:
 *
 *     if (kvt_check_losses(text, length) != 0) {
 *         ... do not read it ...
 *     }
 *
 * To show what is wrong with it:
 *
 *     static int show(const kvt_finding *finding, void *user) {
 *         printf("%zu:%zu: %s [%s]\n", finding->line, finding->column, finding->message,
 *                finding->name);
 *         return 0; // go on
 *     }
 *
 *     kvt_check(text, length, show, NULL);
 *
 * What a text promises whose findings are of style, or that has none: kvt_msg_arr_from_str() reads
 * all of its messages, and kvt_msg_from_str() the first. In the records counts and elements agree,
 * so that they can be given to kvt_msg_to_str(), kvt_str_get_buf_size() and kvt_msg_release() as
 * they are. What is written then has the same lines as the text, with three exceptions: the
 * spelling of numbers (+5, 007), lines that say 0 where 0 is not written, and the order of lines.
 * It has no findings but, where a text holds an opening brace, that one.
 *
 * No findings are: another order of lines, another indentation, blanks and empty lines, a count
 * line that stands after its elements and is right, an array of child indexes that ends before its
 * 64 places without a 255.
 *
 * Threads: there is no state; all functions may run on several threads at once. Locale: no result
 * depends on it. The time is linear in the length of the text.
 *
 * A program that links the library also links what the codec needs: see kvt/message_layer.h.
 * Nothing is logged.
 */
#ifndef KVT_CHECK_H
#define KVT_CHECK_H

#include <stddef.h>

#include "kvt/kvt_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * How bad a finding is. The worse has the greater number.
 */
typedef enum kvt_severity {
    KVT_SEVERITY_STYLE,   /**< nothing is lost, but the writer would not write it */
    KVT_SEVERITY_LOST,    /**< something of the text is lost or changed */
    KVT_SEVERITY_REFUSED, /**< the reader does not read the message at all */

    KVT_SEVERITIES /**< how many there are */
} kvt_severity;

/**
 * What is wrong. kvt_finding_name() gives the short names, kvt_finding_meaning() a line on each.
 */
typedef enum kvt_finding_kind {
    /* The text as a whole. */
    KVT_FINDING_NO_MESSAGE,      /**< no-message */
    KVT_FINDING_BYTE_ORDER_MARK, /**< byte-order-mark */
    KVT_FINDING_BEFORE_MESSAGE,  /**< before-message */
    KVT_FINDING_OUTSIDE,         /**< outside */
    KVT_FINDING_NUL,             /**< nul */
    KVT_FINDING_CARRIAGE_RETURN, /**< carriage-return */

    /* The frame of a message. */
    KVT_FINDING_ENVELOPE,     /**< envelope */
    KVT_FINDING_NO_TYPE,      /**< no-type */
    KVT_FINDING_TYPE_BELOW,   /**< type-below */
    KVT_FINDING_UNKNOWN_KIND, /**< unknown-kind */
    KVT_FINDING_LONGER_KIND,  /**< longer-kind */
    KVT_FINDING_NO_RECORD,    /**< no-record */
    KVT_FINDING_BLOCK_NAME,   /**< block-name */
    KVT_FINDING_NO_BLOCK,     /**< no-block */
    KVT_FINDING_NOT_CLOSED,   /**< not-closed */
    KVT_FINDING_EXTRA_BRACE,  /**< extra-brace */

    /* Lines that are skipped. */
    KVT_FINDING_UNKNOWN_KEY,   /**< unknown-key */
    KVT_FINDING_UNKNOWN_BLOCK, /**< unknown-block */
    KVT_FINDING_STRAY_LINE,    /**< stray-line */
    KVT_FINDING_COMMENT,       /**< comment */
    KVT_FINDING_INVISIBLE,     /**< invisible */
    KVT_FINDING_LONGER_KEY,    /**< longer-key */

    /* Braces. */
    KVT_FINDING_ONE_LINE_BLOCK,     /**< one-line-block */
    KVT_FINDING_BESIDE_BRACE,       /**< beside-brace */
    KVT_FINDING_NEEDLESS_BRACE,     /**< needless-brace */
    KVT_FINDING_BRACE_IN_TEXT,      /**< brace-in-text */
    KVT_FINDING_OPEN_BRACE_IN_TEXT, /**< open-brace-in-text */
    KVT_FINDING_BLOCK_FOR_VALUE,    /**< block-for-value */
    KVT_FINDING_NO_BRACE,           /**< no-brace */
    KVT_FINDING_MISSING_BRACE,      /**< missing-brace */

    /* Values. */
    KVT_FINDING_NO_COLON,     /**< no-colon */
    KVT_FINDING_NO_VALUE,     /**< no-value */
    KVT_FINDING_NOT_A_NUMBER, /**< not-a-number */
    KVT_FINDING_AFTER_NUMBER, /**< after-number */
    KVT_FINDING_HEXADECIMAL,  /**< hexadecimal */
    KVT_FINDING_GROUPED,      /**< grouped-digits */
    KVT_FINDING_FRACTION,     /**< fraction */
    KVT_FINDING_EXPONENT,     /**< exponent */
    KVT_FINDING_UNIT,         /**< unit */
    KVT_FINDING_OUT_OF_RANGE, /**< out-of-range */
    KVT_FINDING_ROUNDED,      /**< rounded */
    KVT_FINDING_NO_QUOTES,    /**< no-quotes */
    KVT_FINDING_BEFORE_TEXT,  /**< before-text */
    KVT_FINDING_EMPTY_TEXT,   /**< empty-text */
    KVT_FINDING_OPEN_TEXT,    /**< open-text */
    KVT_FINDING_AFTER_TEXT,   /**< after-text */
    KVT_FINDING_LONG_TEXT,    /**< long-text */

    /* Lines that undo others. */
    KVT_FINDING_REPEATED_KEY,   /**< repeated-key */
    KVT_FINDING_REPEATED_VALUE, /**< repeated-value */
    KVT_FINDING_REPEATED_BLOCK, /**< repeated-block */
    KVT_FINDING_REPEATED_ARRAY, /**< repeated-array */
    KVT_FINDING_KEY_IN_ARRAY,   /**< key-in-array */

    /* Arrays and their counts. */
    KVT_FINDING_NO_COUNT,     /**< no-count */
    KVT_FINDING_WRONG_COUNT,  /**< wrong-count */
    KVT_FINDING_LATE_COUNT,   /**< late-count */
    KVT_FINDING_LONE_COUNT,   /**< lone-count */
    KVT_FINDING_WRONG_LENGTH, /**< wrong-length */
    KVT_FINDING_TOO_MANY,     /**< too-many */
    KVT_FINDING_AFTER_END,    /**< after-end */
    KVT_FINDING_END_MARK,     /**< end-mark */

    KVT_FINDING_KINDS /**< how many there are */
} kvt_finding_kind;

/** One finding. It and its texts live until the callback returns; `name` as long as the program. */
typedef struct kvt_finding {
    kvt_finding_kind kind; /**< what is wrong */
    const char *name;      /**< of the kind, such as "unknown-key"; never NULL */

    /* The place: the marked characters lie on one line. */
    size_t line;        /**< number of the line, from 1 */
    size_t column;      /**< place in the line, in bytes, from 1 */
    size_t offset;      /**< place in the text, in bytes, from 0 */
    size_t length;      /**< of what is marked, in bytes; 0 at the end of a line or of the text */
    size_t line_offset; /**< where the line begins, in bytes: offset - column + 1 */
    size_t line_length; /**< of the line, in bytes, without its newline */
    size_t first_line;  /**< number of the line that this one repeats, or that opens the block which
                             is not closed here; 0 when there is none */

    /** One sentence or more, without a newline. It ends with a NUL and has at most
     *  KVT_FINDING_MESSAGE_ROOM - 1 bytes. All are printable, but for those of UTF-8 in the text's
     *  own words. Never NULL. */
    const char *message;
    const char *nearest; /**< the known key, block or kind that was probably meant; else NULL */
    /** The block, such as "topology_info_list.switches[3]", elements counted from 0. Empty outside
     *  of a message's record; never NULL. */
    const char *path;
    size_t in_message; /**< number of the message in the text, from 1; 0 before the first */
} kvt_finding;

/** Room for a message and its NUL. */
#define KVT_FINDING_MESSAGE_ROOM 400

/**
 * Takes one finding.
 *
 * @param finding  the finding; it lives until the callback returns.
 * @param user     what was given to kvt_check().
 *
 * @return 0 to go on, anything else to end the check.
 */
typedef int kvt_finding_callback(const kvt_finding *finding, void *user);

/**
 * Checks a text of one or several messages.
 *
 * @param text    the text. It need not end with a NUL; the readers of the codec end at the first
 *                NUL, and so does the check. NULL is taken for an empty text.
 * @param length  its length in bytes; nothing is read after it.
 * @param report  is called for each finding, in the order of the text. Some come later than what
 *                stands below them: that a count is wrong is known when all elements have been
 *                seen, and that a brace is missing where the indentation ends. NULL when the
 * findings are only to be counted.
 * @param user    is handed to `report`.
 *
 * @return the number of findings of every severity, including the one at which `report` ended the
 * check.
 *
 * The text must begin with the word "msg", as the readers want it: a caller that lets blanks stand
 * before it skips them. Parts of a larger text can be checked one by one if each holds whole
 * messages. Of carriage returns each call reports only the first.
 *
 * Some mistakes lead the reader astray: it would read most of what follows as something else. The
 * check says so at the place and goes on as the text was meant: after a block on one line, after a
 * brace in a quoted text, after a brace that is missing or one too many by the indentation. Where
 * that does not tell, and after the end of what the reader reads, it goes on with the next line
 * that opens a message, "msg {".
 */
KVT_EXPORT size_t kvt_check(const char *text, size_t length, kvt_finding_callback *report,
                            void *user);

/**
 * What kvt_check_with() is asked for. Zeros ask for what kvt_check() does.
 */
typedef struct kvt_check_options {
    kvt_severity least; /**< findings that are less bad are neither reported nor counted */
    int consequences;   /**< not 0: where a brace is missing or one too many, go on as the reader
                             does, and report also what it finds wrong with the lines below */
    size_t first_line;  /**< number of the text's first line, for a part of a larger text; 0 is as
                             1 */
} kvt_check_options;

/**
 * Checks a text as kvt_check() does, with options.
 *
 * @param text     as for kvt_check().
 * @param length   as for kvt_check().
 * @param options  what is asked for; NULL is as zeros.
 * @param report   as for kvt_check().
 * @param user     as for kvt_check().
 *
 * @return as kvt_check().
 */
KVT_EXPORT size_t kvt_check_with(const char *text, size_t length, const kvt_check_options *options,
                                 kvt_finding_callback *report, void *user);

/**
 * Counts the findings by which something is lost or refused.
 *
 * @param text    as for kvt_check().
 * @param length  as for kvt_check().
 *
 * @return the number of findings that are worse than style; 0 for a text that is read without a
 * loss.
 */
KVT_EXPORT size_t kvt_check_losses(const char *text, size_t length);

/**
 * Tells the short name of a kind.
 *
 * @param kind  a kind, or any other number that the type can hold.
 *
 * @return the name, such as "unknown-key", which lives as long as the program; NULL for a number
 * that is no kind.
 */
KVT_EXPORT const char *kvt_finding_name(kvt_finding_kind kind);

/**
 * Tells what a kind is about.
 *
 * @param kind  a kind, or any other number that the type can hold.
 *
 * @return one line in plain words, without a newline, which lives as long as the program; NULL for
 * a number that is no kind.
 */
KVT_EXPORT const char *kvt_finding_meaning(kvt_finding_kind kind);

/**
 * Tells what to do about findings of a kind.
 *
 * @param kind  a kind, or any other number that the type can hold.
 *
 * @return one line in plain words, without a newline, which lives as long as the program; NULL for
 * a number that is no kind.
 */
KVT_EXPORT const char *kvt_finding_remedy(kvt_finding_kind kind);

/**
 * Tells how bad findings of a kind are.
 *
 * @param kind  a kind, or any other number that the type can hold.
 *
 * @return the severity, which is the same for all findings of the kind; KVT_SEVERITIES for a number
 * that is no kind.
 */
KVT_EXPORT kvt_severity kvt_finding_severity(kvt_finding_kind kind);

/**
 * Tells the name of a severity.
 *
 * @param severity  a severity, or any other number that the type can hold.
 *
 * @return "style", "lost" or "refused", which lives as long as the program; NULL for a number that
 * is no severity.
 */
KVT_EXPORT const char *kvt_severity_name(kvt_severity severity);

/**
 * Tells the kind that has a short name.
 *
 * @param name  the whole name, ending with a NUL, or NULL.
 *
 * @return the kind; KVT_FINDING_KINDS when it is none or NULL.
 */
KVT_EXPORT kvt_finding_kind kvt_finding_of_name(const char *name);

#ifdef __cplusplus
}
#endif

#endif
