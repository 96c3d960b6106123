// Byte arrays that end at a mark, such as qp_child_idxs at 255, keep their number of lines.
//
// The writer writes such an array up to its mark, and the mark not at all. The codec's reader puts
// none back: it leaves zeros after the last line, which would be written as lines. That is right
// for the codec, whose callers know how many bytes they want. People want the lines that they see.
#pragma once

#include "engine/codec.h"
#include "message_kinds.h"

namespace kvt_tool {

/// A codec that reads what the kind's own does, and puts an end mark after the lines of every such
/// array: after none of them where the array has no line. Null for a kind without such arrays. It
/// reads only: its records are written and released as the kind's own.
const kvt_str::Codec *codec_with_end_marks(const kvt_str::MessageKind &kind);

} // namespace kvt_tool
