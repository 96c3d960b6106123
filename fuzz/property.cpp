#include "property.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kvt_fuzz {

void report(const std::string &broken) {
    std::fprintf(stderr, "Does not hold: %s\n", broken.c_str());
    std::abort();
}

InputText::InputText(const uint8_t *data, size_t size)
    : length_(strnlen(reinterpret_cast<const char *>(data), size)), text_(new char[length_ + 1]) {
    if (length_ != 0) {
        std::memcpy(text_.get(), data, length_);
    }
    text_[length_] = '\0';
}

uint64_t choice(const InputText &text, uint64_t salt) {
    // FNV-1a
    uint64_t hash = 14695981039346656037U ^ salt;
    for (size_t i = 0; i < text.length(); ++i) {
        hash = (hash ^ static_cast<unsigned char>(text.get()[i])) * 1099511628211U;
    }
    return hash ^ hash >> 29;
}

} // namespace kvt_fuzz
