// What the fuzz targets share: the property that must hold, and the inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// A target: takes the bytes of one input and ends the program when the property does not hold.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace kvt_fuzz {

/// Ends the program, as a sanitizer does.
[[noreturn]] void report(const std::string &broken);

inline void expect(bool holds, const char *property) {
    if (!holds) {
        report(property);
    }
}

/// The bytes of an input up to the first NUL, as a text in a block of exactly its size: where a
/// sanitizer sees every character too far.
class InputText {
public:
    InputText(const uint8_t *data, size_t size);

    const char *get() const { return text_.get(); }

    size_t length() const { return length_; }

private:
    size_t length_;
    std::unique_ptr<char[]> text_;
};

/// A number that depends on all of a text, to choose by: so that an input needs no bytes beside the
/// text, and a text that somebody sends can be put into a corpus as it is.
uint64_t choice(const InputText &text, uint64_t salt);

} // namespace kvt_fuzz
