// Numbers in hexadecimal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kvt_tool {

/// The last digits of a number, so many, in small letters.
std::string hexadecimal(uint64_t number, size_t digits);

/// 0x and sixteen digits, as all tools of a fabric show its GUIDs.
std::string guid_text(uint64_t guid);

} // namespace kvt_tool
