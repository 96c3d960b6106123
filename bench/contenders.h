// Who is measured, and that all of them do the same.
#pragma once

#include <span>

#include "codec.h"
#include "workloads.h"

namespace kvt_bench {

struct Contender {
    const char *name;
    std::unique_ptr<Codec> (*make)(int32_t kind);
    bool encodes;
    bool decodes;
    bool writes_text; ///< its documents are texts of the format
};

std::span<const Contender> contenders();

/// The one of that name.
const Contender &contender(const char *name);

/// Ends the program unless the contender turns the message into a document - the very text, where
/// that is its form - and that into a record with the same text. Checks each case once.
void verify(const Contender &contender, const Message &message, const char *case_name);

/// A document and its padding.
class Document {
public:
    explicit Document(std::string_view document) : padded_(document), size_(document.size()) {
        padded_.append(document_padding, '\0');
    }

    std::string_view view() const { return {padded_.data(), size_}; }

private:
    std::string padded_;
    size_t size_;
};

/// What the contender makes of the message.
Document make_document(Codec &codec, const Message &message);

} // namespace kvt_bench
