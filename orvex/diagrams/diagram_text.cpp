#include "orvex/diagrams/diagram_text.h"

#include "orvex/core/text.h"

namespace Orvex {
namespace {

bool HasAt(std::string_view text, std::size_t at, std::string_view what, bool caseless) {
    if (text.size() - at < what.size()) return false;
    const std::string_view part = text.substr(at, what.size());
    return caseless ? Qvl::Utils::SameTextIgnoringCase(part, what) : part == what;
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (HasAt(text, i, what, true)) {
            out += by;
            i += what.size();
        } else {
            out += text[i++];
        }
    }
    return out;
}

}  // namespace

std::vector<std::string_view> QVLSplitDiagramLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        lines.push_back(text.substr(start, i - start));
        start = i + 1;
    }
    lines.push_back(text.substr(start));
    return lines;
}

std::string QVLCleanCaption(std::string_view text) {
    std::string_view s = Qvl::Utils::Trim(text);
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = s.substr(1, s.size() - 2);
    std::string breaks;
    breaks.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        if (HasAt(s, i, "<br/>", true)) {
            breaks += "\r\n";
            i += 5;
        } else if (HasAt(s, i, "<br>", true)) {
            breaks += "\r\n";
            i += 4;
        } else if (HasAt(s, i, "\\n", false)) {
            breaks += "\r\n";
            i += 2;
        } else {
            breaks += s[i++];
        }
    }
    const std::string decoded = ReplaceAll(ReplaceAll(breaks, "&quot;", "\""), "&amp;", "&");
    return std::string(Qvl::Utils::Trim(decoded));
}

int QVLIndentOf(std::string_view line) {
    int indent = 0;
    for (const char c : line) {
        if (c == ' ')
            ++indent;
        else if (c == '\t')
            indent += 4;
        else
            break;
    }
    return indent;
}

}  // namespace Orvex
