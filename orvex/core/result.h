// The one shape of an expected failure across the library: an error code, a line for a person, and the
// value. Codes are keys of the message catalogue's error group ("errNoFile", "errNoJson"), so a host can
// show its own language for the codes the catalogue holds; the others name a failure the catalogue has no
// text for, in the same form. The message is complete English that names the file or request involved.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace Orvex {

// The codes the library reports. The first two are the catalogue's own entries.
namespace QVLErr {
inline constexpr std::string_view kNoFile = "errNoFile";    // missing, unreadable or not a regular file
inline constexpr std::string_view kNoJson = "errNoJson";    // not JSON, or not the JSON object expected
inline constexpr std::string_view kWrite = "errWrite";      // the file could not be written
inline constexpr std::string_view kLimit = "errLimit";      // valid so far, but deeper or longer than allowed
inline constexpr std::string_view kInvalid = "errInvalid";  // read, but its content is not acceptable
inline constexpr std::string_view kNoAnswer = "errNoAnswer";  // a request got no answer (network, timeout)
}  // namespace QVLErr

// Value is always present: an operation may fill part of it on failure too (a load's diagnostics, an HTTP
// answer's status); each operation says which parts a failure keeps.
template <typename T = void>
struct TQVLResult {
    std::string Code;     // empty on success
    std::string Message;  // empty on success
    T Value{};

    bool Ok() const { return Code.empty(); }
    explicit operator bool() const { return Ok(); }

    static TQVLResult Success(T value) { return TQVLResult{{}, {}, std::move(value)}; }
    static TQVLResult Failure(std::string_view code, std::string message, T value = T{}) {
        return TQVLResult{std::string(code), std::move(message), std::move(value)};
    }
};

template <>
struct TQVLResult<void> {
    std::string Code;
    std::string Message;

    bool Ok() const { return Code.empty(); }
    explicit operator bool() const { return Ok(); }

    static TQVLResult Success() { return {}; }
    static TQVLResult Failure(std::string_view code, std::string message) {
        return TQVLResult{std::string(code), std::move(message)};
    }
};

}  // namespace Orvex
