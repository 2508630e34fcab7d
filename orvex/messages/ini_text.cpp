#include "orvex/messages/ini_text.h"

#include "orvex/core/text.h"

namespace Orvex {
namespace {

bool IsCommentStart(char c) {
    return c == ';' || c == '#';
}

bool HasLineBreak(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

}  // namespace

std::vector<TIniSection> ParseIniText(std::string_view text) {
    std::vector<TIniSection> sections;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = Qvl::Utils::Trim(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (line.empty() || IsCommentStart(line.front())) continue;
        const auto equals = line.find('=');
        if (line.front() == '[' && line.back() == ']' && equals == std::string_view::npos) {
            sections.push_back({std::string(Qvl::Utils::Trim(line.substr(1, line.size() - 2))), {}});
            continue;
        }
        if (equals == std::string_view::npos || sections.empty()) continue;
        const auto name = Qvl::Utils::Trim(line.substr(0, equals));
        if (name.empty()) continue;
        sections.back().Entries.push_back(
            {std::string(name), std::string(Qvl::Utils::Trim(line.substr(equals + 1)))});
    }
    return sections;
}

bool IniEntryReadsBack(std::string_view name, std::string_view value) {
    if (name.empty() || Qvl::Utils::Trim(name) != name || Qvl::Utils::Trim(value) != value) return false;
    if (HasLineBreak(name) || HasLineBreak(value) || name.find('=') != std::string_view::npos) return false;
    return !IsCommentStart(name.front());
}

}  // namespace Orvex
