// The codecs of the records in a record, found by the types of its rows when its table is compiled.
#pragma once

#include "engine/codec.h"

namespace kvt_str {

/// A row whose lines are blocks of records of type `Element`.
template <typename Element> struct BlockRow;

constexpr const Codec *codec_of(const Row & /*row*/) {
    return nullptr;
}

template <typename Element> constexpr const Codec *codec_of(const BlockRow<Element> & /*row*/) {
    return &CodecOf<Element>::codec;
}

/// One for each row, null for rows without blocks.
template <typename... Rows> constexpr auto element_codecs(const Rows &...rows) {
    struct Elements {
        const Codec *at[sizeof...(Rows)];
    };

    return Elements{{codec_of(rows)...}};
}

} // namespace kvt_str
