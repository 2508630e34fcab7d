// The bodies of the fuzz targets. Each is compiled into its libFuzzer binary and into the unit tests, which
// replay the checked-in corpora and every past finding through the same function, so a fixed crash stays
// fixed in builds without clang. A body never throws; a broken invariant aborts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Orvex::Fuzz {

int FuzzMermaid(const std::uint8_t* aData, std::size_t aSize);
int FuzzPlantUml(const std::uint8_t* aData, std::size_t aSize);
int FuzzColor(const std::uint8_t* aData, std::size_t aSize);
int FuzzDrawingJson(const std::uint8_t* aData, std::size_t aSize);
int FuzzMcpRequest(const std::uint8_t* aData, std::size_t aSize);
int FuzzRichText(const std::uint8_t* aData, std::size_t aSize);

using TFuzzEntry = int (*)(const std::uint8_t*, std::size_t);

// The entry of a corpus folder's name ("mermaid", "plantuml", ...); nullptr for an unknown name.
TFuzzEntry FuzzEntryByName(std::string_view aName);

// Aborts with the message when the condition fails: libFuzzer and the replay test both see a crash.
void FuzzCheck(bool aCondition, const char* aMessage);

}  // namespace Orvex::Fuzz
