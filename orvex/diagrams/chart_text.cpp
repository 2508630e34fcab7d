#include "orvex/diagrams/chart_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "orvex/core/color.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Utils::Trim;

// The line up to a %% comment that is not inside double quotes.
std::string_view WithoutComment(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (!quoted && line[i] == '%' && line[i + 1] == '%') return line.substr(0, i);
    }
    return line;
}

std::size_t IndentOf(std::string_view line) {
    std::size_t n = 0;
    while (n < line.size() && (line[n] == ' ' || line[n] == '\t')) ++n;
    return n;
}

bool StartsWithWord(std::string_view line, std::string_view word) {
    if (line.size() < word.size()) return false;
    if (Qvl::Utils::ToLowerAscii(line.substr(0, word.size())) != word) return false;
    return line.size() == word.size() || line[word.size()] == ' ' || line[word.size()] == '\t' ||
           line[word.size()] == ':' || line[word.size()] == '{';
}

}  // namespace

bool QVLReadChartText(std::string_view aText, TQVLDiagramFormat aFormat,
                      std::initializer_list<std::string_view> aHeaders, TORXDiagramModel& aModel,
                      TQVLChartText& aOut) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    const std::string header = QVLMermaidHeaderWord(aText, &headerLine);
    if (std::find(aHeaders.begin(), aHeaders.end(), header) == aHeaders.end()) return false;

    const auto lines = QVLSplitDiagramLines(aText);
    aOut = {};
    aOut.HeaderNo = static_cast<std::int32_t>(headerLine);
    const std::string_view headerText = Trim(WithoutComment(lines[headerLine - 1]));
    aOut.HeaderRest = Trim(headerText.substr(std::min(header.size(), headerText.size())));
    aModel.fTitle = QVLFrontMatterValue(aText, "title");

    bool inAccBlock = false;
    for (std::size_t i = headerLine; i < lines.size(); ++i) {
        const std::string_view raw = lines[i];
        if (inAccBlock) {
            inAccBlock = raw.find('}') == std::string_view::npos;
            continue;
        }
        const std::string_view text = Trim(WithoutComment(raw));
        if (text.empty()) continue;
        if (StartsWithWord(text, "acctitle") || StartsWithWord(text, "accdescr")) {
            inAccBlock = text.find('{') != std::string_view::npos && text.find('}') == std::string_view::npos;
            continue;
        }
        if (StartsWithWord(text, "title")) {
            aModel.fTitle = QVLPlainCaption(Trim(text.substr(5)));
            continue;
        }
        aOut.Lines.push_back({text, IndentOf(raw), static_cast<std::int32_t>(i + 1)});
    }
    return true;
}

void QVLChartBareHeader(TORXDiagramModel& aModel, const TQVLChartText& aText, std::string_view aCode) {
    if (aText.HeaderRest.empty()) return;
    aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, aText.HeaderNo, aCode,
                         "Nothing may follow the chart's header word.", aText.HeaderRest);
}

bool QVLChartNumber(std::string_view aText, double& aValue) {
    aText = Trim(aText);
    if (aText.starts_with('+')) aText.remove_prefix(1);
    if (aText.empty()) return false;
    const auto [end, error] = std::from_chars(aText.data(), aText.data() + aText.size(), aValue);
    return error == std::errc{} && end == aText.data() + aText.size() && std::isfinite(aValue);
}

void QVLChartNote(TORXDiagramModel& aModel, const TQVLChartLine& aLine,
                  TQVLDiagramDiagnosticSeverity aSeverity, std::string_view aCode,
                  std::string_view aMessage) {
    aModel.AddDiagnostic(aSeverity, aLine.No, aCode, aMessage, aLine.Text);
}

std::vector<std::string_view> QVLSplitChartList(std::string_view aText) {
    std::vector<std::string_view> items;
    if (Trim(aText).empty()) return items;
    bool quoted = false;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= aText.size(); ++i) {
        if (i < aText.size() && aText[i] == '"') quoted = !quoted;
        if (i == aText.size() || (!quoted && aText[i] == ',')) {
            items.push_back(Trim(aText.substr(start, i - start)));
            start = i + 1;
        }
    }
    return items;
}

std::string QVLChartColorText(TAlphaColor aColor) {
    const std::string hex = Qvl::Utils::AlphaColorToHex(aColor);  // "#RRGGBBAA"
    return Qvl::Utils::AlphaOf(aColor) == 255 ? hex.substr(0, 7) : hex;
}

}  // namespace Orvex
