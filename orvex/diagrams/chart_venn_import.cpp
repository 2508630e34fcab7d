// Mermaid venn diagrams: `set A["Label"]:size`, `union A, B["Label"]:size` (label and size optional),
// `text id["Label"]` indented under the set or union it belongs to (or `text A, B id["Label"]`), and
// `style A, B fill:#f96, color:#333`.
#include <algorithm>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/chart_venn.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;
using TArea = TQVLVennChart::TArea;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

// Set names, unquoted and sorted, so that "B, A" and "A, B" name the same overlap.
std::vector<std::string> SetList(std::string_view text) {
    std::vector<std::string> sets;
    for (const std::string_view item : QVLSplitChartList(text)) sets.push_back(QVLPlainCaption(item));
    std::sort(sets.begin(), sets.end());
    return sets;
}

std::string Joined(const std::vector<std::string>& sets) {
    std::string out;
    for (const std::string& s : sets) out += (out.empty() ? "" : ", ") + s;
    return out;
}

}  // namespace

const TQVLVennChart::TArea* TQVLVennChart::Find(const std::vector<std::string>& aSets) const {
    for (const TArea& a : Areas)
        if (a.Sets == aSets) return &a;
    return nullptr;
}

void TQVLVennChart::WriteJson(TJSON& aOut) const {
    TJSON areas = TJSON::array();
    for (const TArea& a : Areas) {
        TJSON texts = TJSON::array();
        for (const TText& t : a.Texts) texts.push_back(TJSON{{"id", t.ID}, {"label", t.Label}});
        areas.push_back(
            TJSON{{"sets", a.Sets}, {"size", a.Size}, {"label", a.Label}, {"texts", std::move(texts)}});
    }
    aOut["areas"] = std::move(areas);
}

bool QVLReadVennChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"venn-beta", "venn"}, aModel, text)) return false;
    // The sets (a list for union), an optional ["label"], an optional ": size".
    static const TRegex kArea(R"re(^(set|union)\s+(.+?)\s*(?:\[\s*(.*?)\s*\])?\s*(?::\s*(\S+))?$)re",
                              {TRegexFlag::rfCaseless});
    static const TRegex kText(R"re(^text\s+(?:(.+?)\s+)?("[^"]*"|[\w-]+)\s*(?:\[\s*(.*?)\s*\])?$)re",
                              {TRegexFlag::rfCaseless});
    static const TRegex kStyle(R"(^style\s+(.+?)\s+([\w-]+\s*:.*)$)", {TRegexFlag::rfCaseless});
    auto chart = std::make_shared<TQVLVennChart>();
    QVLChartBareHeader(aModel, text, "VENN_HEADER");

    std::vector<std::string> current;  // the sets of the last set or union, which indented texts belong to
    const auto known = [&](const std::string& name) { return chart->Find({name}) != nullptr; };
    for (const TQVLChartLine& line : text.Lines) {
        TRegexMatch m;
        if (kArea.MatchAt(line.Text, 0, m)) {
            const bool isUnion = ToLowerAscii(m.Group(1)) == "union";
            TArea area{SetList(m.Group(2)), 0, m.Matched(3) ? QVLPlainCaption(m.Group(3)) : "", {}, {}};
            std::vector<std::string> unknown;
            for (const std::string& s : area.Sets)
                if (isUnion && !known(s)) unknown.push_back(s);
            if ((isUnion && area.Sets.size() < 2) || (!isUnion && area.Sets.size() != 1) ||
                !unknown.empty()) {
                QVLChartNote(aModel, line, kError, "VENN_SETS",
                             !unknown.empty()
                                 ? "The union names sets no `set` line defines: " + Joined(unknown) + "."
                             : isUnion ? "A union joins two or more sets: `union A, B`."
                                       : "A set line names one set: `set A[\"Label\"]`.");
                continue;
            }
            // Without a size, a set counts 10 and an overlap of n sets 10 / n², so that overlaps show.
            area.Size = 10.0 / static_cast<double>(area.Sets.size() * area.Sets.size());
            if (m.Matched(4) && (!QVLChartNumber(m.Group(4), area.Size) || area.Size < 0)) {
                QVLChartNote(aModel, line, kError, "VENN_SIZE", "A size is a number of zero or more.");
                continue;
            }
            if (!isUnion && area.Label.empty()) area.Label = area.Sets.front();
            current = area.Sets;
            chart->Areas.push_back(std::move(area));
        } else if (kText.MatchAt(line.Text, 0, m)) {
            const std::vector<std::string> sets = m.Matched(1) ? SetList(m.Group(1)) : current;
            TArea* area = nullptr;
            for (TArea& a : chart->Areas)
                if (a.Sets == sets) area = &a;
            if (area == nullptr) {
                QVLChartNote(aModel, line, kWarning, "VENN_TEXT",
                             "A text belongs to a set or union: indent it under one, or name its sets.");
                continue;
            }
            const std::string id = QVLPlainCaption(m.Group(2));
            area->Texts.push_back({id, m.Matched(3) ? QVLPlainCaption(m.Group(3)) : id});
        } else if (kStyle.MatchAt(line.Text, 0, m)) {
            const std::vector<std::string> sets = SetList(m.Group(1));
            TArea* area = nullptr;
            for (TArea& a : chart->Areas)
                if (a.Sets == sets) area = &a;
            if (area == nullptr) {
                QVLChartNote(aModel, line, kWarning, "VENN_STYLE",
                             "The style names no set or union defined before it.");
                continue;
            }
            for (const std::string& bad : QVLApplyStyleProperties(m.Group(2), area->Style))
                QVLChartNote(aModel, line, kWarning, "VENN_STYLE",
                             "\"" + bad + "\" is not a style this chart draws.");
        } else {
            QVLChartNote(aModel, line, kWarning, "VENN_UNRECOGNIZED_LINE",
                         "A venn line is `set`, `union`, `text` or `style`.");
        }
    }
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
