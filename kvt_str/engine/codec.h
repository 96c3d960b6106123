// What writes and reads a record: its table, and the routines that walk it or are unrolled from it.
#pragma once

#include <cstdint>

#include "engine/row.h"
#include "engine/true_counts.h"
#include "text/text.h"

namespace kvt_str {

/// The level of a message's record block.
inline constexpr unsigned message_level = 1;

/// Writes what follows the opening line of a record's block at `level`: its lines, one level
/// deeper, and its closing line. Returns the position after them.
using PackRoutine = char *(const void *record, unsigned level, char *out);

/// The number of characters that the record's PackRoutine writes.
using MeasureRoutine = uint64_t(const void *record, unsigned level);

/// How the counts and lengths of what is read are treated.
enum class Counts : uint8_t {
    as_read, ///< as the last line or run left them, which may be more than there are elements
    agree,   ///< never more than there are elements; elements beyond a smaller count are released
};

/// What the readers of one text share: the text, how its counts are treated, and what has been seen
/// of it so far.
struct Input {
    Text text;
    Counts counts;
    LyingCounts lying_counts = {}; ///< of the elements read so far
    /// All lines so far had the canonical form. So no quoted text had a brace, and every block was
    /// read: after one that is skipped, the next line begins after its blanks and is none.
    bool canonical = true;

    /// The position after the line at `at`, which is read in its general form.
    const char *after_general_line(const char *at) {
        canonical = false;
        return text.after_line(at);
    }
};

/// Reads the block of a record. `at` is the line after the block's opening line; `level` is that
/// of the block where the writer writes it, 1 at least: at another level no line has the canonical
/// form. Returns the position after the newline of the block's closing line, or the text's NUL.
using UnpackRoutine = const char *(Input &input, const char *at, void *record, unsigned level);

/// The table of a record once more, where the compiler sees it beside the routines.
struct Codec : Record {
    const char *mismatch;         ///< format of the trace of an unknown line
    const char *const *traces;    ///< a row each: format of the trace of a number or float, or null
    const Codec *const *elements; ///< a row each: of the records of a block, run or slots, or null
    PackRoutine *pack;
    MeasureRoutine *measure;
    UnpackRoutine *unpack;

    const Codec &element_of(const Row &row) const { return *elements[row.index]; }

    const char *trace_of(const Row &row) const { return traces[row.index]; }
};

/// Where the codec of a C type stands: `CodecOf<vemra_end_job>::codec`.
template <typename Type> struct CodecOf { static const Codec codec; };

} // namespace kvt_str
