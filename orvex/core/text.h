// Small text helpers shared by parsers, file readers and the protocol layer. Case folding here is ASCII
// only: it serves keys, names and keywords, never user captions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Qvl::Utils {

std::string_view Trim(std::string_view text);  // without leading and trailing spaces, tabs, CR and LF
std::string ToLowerAscii(std::string_view text);
std::string ToUpperAscii(std::string_view text);
bool SameTextIgnoringCase(std::string_view a, std::string_view b);
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

bool IsValidUtf8(std::string_view text);
// How many UTF-16 code units the UTF-8 text takes (a character beyond the BMP counts two); a byte that is
// not valid UTF-8 counts one, as a replacement character would.
std::size_t Utf16Length(std::string_view text);
// Reads bytes that are not valid UTF-8 as Windows-1252, the code page such files most often come from.
std::string Windows1252ToUtf8(std::string_view bytes);
// The text as UTF-8: unchanged when valid (a leading byte-order mark removed), else from Windows-1252.
std::string DecodeTextFile(std::string_view bytes);

std::string Base64Encode(std::string_view bytes);  // standard alphabet, padded

}  // namespace Qvl::Utils
