#include "orvex/core/paper.h"

#include <array>

#include "orvex/core/text.h"

namespace Qvl::Utils {
namespace {

// The names stay exactly as printers know them: "Sobre B6" is wider than high, and "B4" (354 mm)
// differs from "B4 (ISO)" (353 mm).
constexpr std::array<TQVLPaperSize, 27> kPapers{{
    {"A4", 210.0f, 297.0f, 9},
    {"STATEMENT", 139.7f, 215.9f, 6},
    {"EXECUTIVE", 184.15f, 266.7f, 7},
    {"LETTER", 215.9f, 279.4f, 1},
    {"LEGAL", 215.9f, 355.6f, 5},
    {"A5", 148.0f, 210.0f, 11},
    {"A3", 297.0f, 420.0f, 8},
    {"TABLOID", 279.4f, 431.8f, 3},
    {"LEDGER", 431.8f, 279.4f, 4},
    {"B4", 250.0f, 354.0f, 12},
    {"B5", 182.0f, 257.0f, 13},
    {"Quarto", 215.0f, 275.0f, 15},
    {"Sobre DL", 110.0f, 220.0f, 27},
    {"Sobre C5", 162.0f, 229.0f, 28},
    {"Sobre C3", 324.0f, 458.0f, 29},
    {"Sobre C4", 229.0f, 324.0f, 30},
    {"Sobre C6", 114.0f, 162.0f, 31},
    {"Sobre C65", 114.0f, 229.0f, 32},
    {"Sobre B4", 250.0f, 353.0f, 33},
    {"Sobre B5", 176.0f, 250.0f, 34},
    {"Sobre B6", 176.0f, 125.0f, 35},
    {"Italy", 110.0f, 230.0f, 36},
    {"B4 (ISO)", 250.0f, 353.0f, 42},
    {"Japanese Postcard", 100.0f, 148.0f, 43},
    {"Japanese Doble", 200.0f, 148.0f, 82},
    {"Sobre Invite", 220.0f, 220.0f, 47},
    {"User", 200.0f, 200.0f, 256},
}};

}  // namespace

std::span<const TQVLPaperSize> PaperSizes() {
    return kPapers;
}

std::int32_t GetPaperSize(std::string_view name, float& width, float& height) {
    for (const auto& paper : kPapers) {
        if (SameTextIgnoringCase(paper.Name, name)) {
            width = paper.Width;
            height = paper.Height;
            return paper.Code;
        }
    }
    return -1;
}

std::int32_t UserPaperIndex() {
    return static_cast<std::int32_t>(kPapers.size()) - 1;
}

}  // namespace Qvl::Utils
