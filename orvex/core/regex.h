// TRegex: a compiled Perl-compatible pattern (PCRE2 with JIT, UTF and Unicode properties on). Patterns are
// fixed texts of ours, compiled once as function-local statics:
//
//   static const TRegex kEdge(R"(^\s*(\w+)\s*-->\s*(\w+))");
//   TRegexMatch m;
//   if (kEdge.Match(line, m)) use(m.Group(1), m.Group(2));
//
// Subjects may be any bytes: invalid UTF-8 never matches a character class and never fails the call, and a
// match that would backtrack without bound gives up and reports no match.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/set.h"

struct pcre2_real_code_8;

namespace Qvl::Types {

enum class TRegexFlag : std::uint8_t { rfCaseless, rfMultiline, rfDotAll, rfExtended };
using TRegexFlags = TSet<TRegexFlag>;

class TRegex;

// The captures of the last successful match. They point into the subject, which must outlive them.
class TRegexMatch {
  public:
    std::string_view Group(std::size_t index) const;  // empty when the group did not take part
    bool Matched(std::size_t index) const;            // the group took part in the match
    std::string_view Named(std::string_view name) const;
    bool MatchedNamed(std::string_view name) const;
    std::size_t Start(std::size_t index = 0) const;  // byte offsets in the subject
    std::size_t End(std::size_t index = 0) const;
    std::size_t GroupCount() const { return fSpans.size(); }  // group 0 included

  private:
    friend class TRegex;
    struct TSpan {
        std::size_t Start = npos;
        std::size_t End = npos;
    };
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    std::string_view fSubject;
    std::vector<TSpan> fSpans;
    const TRegex* fRegex = nullptr;
};

class TRegex {
  public:
    // Throws std::invalid_argument with PCRE2's message and offset when the pattern does not compile:
    // a programming error in a fixed pattern, found by the first test that uses it.
    explicit TRegex(std::string_view pattern, TRegexFlags flags = {});
    ~TRegex();
    TRegex(const TRegex&) = delete;
    TRegex& operator=(const TRegex&) = delete;
    TRegex(TRegex&& other) noexcept;
    TRegex& operator=(TRegex&& other) noexcept;

    // Searches from offset onwards.
    bool Match(std::string_view subject, TRegexMatch& match, std::size_t offset = 0) const;
    bool Match(std::string_view subject, std::size_t offset = 0) const;
    // Matches only when the pattern matches exactly at offset.
    bool MatchAt(std::string_view subject, std::size_t offset, TRegexMatch& match) const;
    // Every non-overlapping match from the start, in order.
    std::vector<TRegexMatch> MatchAll(std::string_view subject) const;

    int GroupNumber(std::string_view name) const;  // -1 when there is no such named group
    std::size_t CaptureCount() const;              // groups, group 0 excluded

  private:
    bool Run(std::string_view subject, std::size_t offset, bool anchored, TRegexMatch* match) const;

    // The anchored twin exists because JIT code cannot be anchored at match time: without it MatchAt would
    // fall back to the interpreter, which checks the whole subject's UTF-8 on every call.
    pcre2_real_code_8* fCode = nullptr;
    pcre2_real_code_8* fAnchoredCode = nullptr;
    bool fJit = false;
    std::string fPattern;
};

}  // namespace Qvl::Types
