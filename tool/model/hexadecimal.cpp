#include "model/hexadecimal.h"

namespace kvt_tool {

std::string hexadecimal(uint64_t number, size_t digits) {
    std::string text(digits, '0');
    for (size_t i = digits; i-- > 0; number >>= 4) {
        text[i] = "0123456789abcdef"[number & 15];
    }
    return text;
}

std::string guid_text(uint64_t guid) {
    return "0x" + hexadecimal(guid, 16);
}

} // namespace kvt_tool
