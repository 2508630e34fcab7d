// The named paper sizes. Codes are the platform's device-mode paper numbers, kept for printing.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace Qvl::Utils {

struct TQVLPaperSize {
    std::string_view Name;
    float Width;   // millimetres
    float Height;  // millimetres
    std::int32_t Code;
};

std::span<const TQVLPaperSize> PaperSizes();  // all 27, "User" last

// Looks the name up case-insensitively; on a hit stores the size in millimetres and returns the paper
// code, otherwise returns -1 and leaves width and height untouched.
std::int32_t GetPaperSize(std::string_view name, float& width, float& height);
std::int32_t UserPaperIndex();  // index of "User", the last entry

}  // namespace Qvl::Utils
