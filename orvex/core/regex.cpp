#define PCRE2_CODE_UNIT_WIDTH 8
#include "orvex/core/regex.h"

#include <pcre2.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace Qvl::Types {
namespace {

// Bounds every match: past this many backtracking steps a match gives up (and reports no match), so that
// hostile input cannot stall a parser.
constexpr std::uint32_t kMatchLimit = 5'000'000;
constexpr std::size_t kJitStackMax = 1024 * 1024;

struct TMatchResources {
    pcre2_match_context* Context = nullptr;
    pcre2_jit_stack* JitStack = nullptr;
    pcre2_match_data* Data = nullptr;
    std::uint32_t DataPairs = 0;

    TMatchResources() {
        Context = pcre2_match_context_create(nullptr);
        JitStack = pcre2_jit_stack_create(32 * 1024, kJitStackMax, nullptr);
        pcre2_set_match_limit(Context, kMatchLimit);
        pcre2_set_depth_limit(Context, 10'000);
        if (JitStack != nullptr) pcre2_jit_stack_assign(Context, nullptr, JitStack);
    }
    ~TMatchResources() {
        pcre2_match_data_free(Data);
        pcre2_jit_stack_free(JitStack);
        pcre2_match_context_free(Context);
    }
    TMatchResources(const TMatchResources&) = delete;
    TMatchResources& operator=(const TMatchResources&) = delete;

    pcre2_match_data* DataFor(std::uint32_t pairs) {
        if (Data == nullptr || DataPairs < pairs) {
            pcre2_match_data_free(Data);
            Data = pcre2_match_data_create(pairs, nullptr);
            DataPairs = pairs;
        }
        return Data;
    }
};

// One set per thread: parsers on different threads never share match state.
TMatchResources& ThreadResources() {
    thread_local TMatchResources resources;
    return resources;
}

}  // namespace

std::string_view TRegexMatch::Group(std::size_t index) const {
    if (!Matched(index)) return {};
    return fSubject.substr(fSpans[index].Start, fSpans[index].End - fSpans[index].Start);
}

bool TRegexMatch::Matched(std::size_t index) const {
    return index < fSpans.size() && fSpans[index].Start != npos;
}

std::string_view TRegexMatch::Named(std::string_view name) const {
    if (fRegex == nullptr) return {};
    const int number = fRegex->GroupNumber(name);
    return number < 0 ? std::string_view{} : Group(static_cast<std::size_t>(number));
}

bool TRegexMatch::MatchedNamed(std::string_view name) const {
    if (fRegex == nullptr) return false;
    const int number = fRegex->GroupNumber(name);
    return number >= 0 && Matched(static_cast<std::size_t>(number));
}

std::size_t TRegexMatch::Start(std::size_t index) const {
    return Matched(index) ? fSpans[index].Start : npos;
}
std::size_t TRegexMatch::End(std::size_t index) const {
    return Matched(index) ? fSpans[index].End : npos;
}

namespace {

pcre2_code* CompileOrThrow(const std::string& pattern, std::uint32_t options) {
    int error = 0;
    PCRE2_SIZE errorOffset = 0;
    pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                                     &error, &errorOffset, nullptr);
    if (code == nullptr) {
        PCRE2_UCHAR message[256];
        pcre2_get_error_message(error, message, sizeof message);
        throw std::invalid_argument("regular expression /" + pattern + "/ at offset " +
                                    std::to_string(errorOffset) + ": " + reinterpret_cast<char*>(message));
    }
    return code;
}

}  // namespace

TRegex::TRegex(std::string_view pattern, TRegexFlags flags) : fPattern(pattern) {
    std::uint32_t options = PCRE2_UTF | PCRE2_UCP | PCRE2_MATCH_INVALID_UTF;
    if (flags.Contains(TRegexFlag::rfCaseless)) options |= PCRE2_CASELESS;
    if (flags.Contains(TRegexFlag::rfMultiline)) options |= PCRE2_MULTILINE;
    if (flags.Contains(TRegexFlag::rfDotAll)) options |= PCRE2_DOTALL;
    if (flags.Contains(TRegexFlag::rfExtended)) options |= PCRE2_EXTENDED;
    fCode = CompileOrThrow(fPattern, options);
    try {
        fAnchoredCode = CompileOrThrow(fPattern, options | PCRE2_ANCHORED);
    } catch (...) {
        pcre2_code_free(fCode);
        throw;
    }
    // Without JIT support (an unusual build of the library) the interpreter still matches, only slower.
    fJit = pcre2_jit_compile(fCode, PCRE2_JIT_COMPLETE) == 0 &&
           pcre2_jit_compile(fAnchoredCode, PCRE2_JIT_COMPLETE) == 0;
}

TRegex::~TRegex() {
    pcre2_code_free(fCode);
    pcre2_code_free(fAnchoredCode);
}

TRegex::TRegex(TRegex&& other) noexcept
    : fCode(std::exchange(other.fCode, nullptr)),
      fAnchoredCode(std::exchange(other.fAnchoredCode, nullptr)),
      fJit(other.fJit),
      fPattern(std::move(other.fPattern)) {}

TRegex& TRegex::operator=(TRegex&& other) noexcept {
    if (this != &other) {
        pcre2_code_free(fCode);
        pcre2_code_free(fAnchoredCode);
        fCode = std::exchange(other.fCode, nullptr);
        fAnchoredCode = std::exchange(other.fAnchoredCode, nullptr);
        fJit = other.fJit;
        fPattern = std::move(other.fPattern);
    }
    return *this;
}

std::size_t TRegex::CaptureCount() const {
    std::uint32_t count = 0;
    pcre2_pattern_info(fCode, PCRE2_INFO_CAPTURECOUNT, &count);
    return count;
}

int TRegex::GroupNumber(std::string_view name) const {
    const std::string key(name);
    const int number = pcre2_substring_number_from_name(fCode, reinterpret_cast<PCRE2_SPTR>(key.c_str()));
    return number < 0 ? -1 : number;
}

bool TRegex::Run(std::string_view subject, std::size_t offset, bool anchored, TRegexMatch* match) const {
    if (fCode == nullptr || offset > subject.size()) return false;
    TMatchResources& resources = ThreadResources();
    const auto pairs = static_cast<std::uint32_t>(CaptureCount() + 1);
    pcre2_match_data* data = resources.DataFor(pairs);
    pcre2_code* code = anchored ? fAnchoredCode : fCode;
    const auto* bytes = reinterpret_cast<PCRE2_SPTR>(subject.data());
    // The JIT entry skips the UTF-8 scan of the whole subject, which the patterns do not need: they were
    // compiled to treat invalid sequences as non-matching.
    const int rc = fJit ? pcre2_jit_match(code, bytes, subject.size(), offset, 0, data, resources.Context)
                        : pcre2_match(code, bytes, subject.size(), offset, 0, data, resources.Context);
    if (rc < 0) return false;  // no match, or a limit reached: both mean "does not match"
    if (match != nullptr) {
        const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(data);
        match->fSubject = subject;
        match->fRegex = this;
        match->fSpans.assign(pairs, {});
        for (std::uint32_t i = 0; i < pairs; ++i) {
            if (ovector[2 * i] == PCRE2_UNSET) continue;
            match->fSpans[i] = {ovector[2 * i], ovector[2 * i + 1]};
        }
    }
    return true;
}

bool TRegex::Match(std::string_view subject, TRegexMatch& match, std::size_t offset) const {
    return Run(subject, offset, false, &match);
}

bool TRegex::Match(std::string_view subject, std::size_t offset) const {
    return Run(subject, offset, false, nullptr);
}

bool TRegex::MatchAt(std::string_view subject, std::size_t offset, TRegexMatch& match) const {
    return Run(subject, offset, true, &match);
}

std::vector<TRegexMatch> TRegex::MatchAll(std::string_view subject) const {
    std::vector<TRegexMatch> all;
    std::size_t offset = 0;
    TRegexMatch m;
    while (offset <= subject.size() && Run(subject, offset, false, &m)) {
        const std::size_t start = m.Start(0);
        const std::size_t end = m.End(0);
        all.push_back(m);
        if (end > start) {
            offset = end;
        } else {  // an empty match: step one whole UTF-8 character on
            offset = end + 1;
            while (offset < subject.size() && (static_cast<unsigned char>(subject[offset]) & 0xC0) == 0x80)
                ++offset;
        }
    }
    return all;
}

}  // namespace Qvl::Types
