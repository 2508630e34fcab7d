// The PlantUML entry: content-line filtering, the kind from the start marker or the content, and the
// dispatch to the per-kind routines (plantuml_kinds.cpp, plantuml_charts.cpp).
#include "orvex/diagrams/plantuml_parser.h"

#include <array>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/plantuml_relation.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TKind = TORXPlantUMLParser::TPumlKind;

constexpr auto kCaseless = TRegexFlag::rfCaseless;

}  // namespace

TORXPlantUMLParser::TLines TORXPlantUMLParser::ContentLines(std::string_view aText,
                                                            TORXDiagramModel& aModel) {
    static const TRegex kFrame(R"(^@(?:start|end))", {kCaseless});
    static const TRegex kDecoration(R"(^(skinparam|hide|show|scale|autonumber|header|footer|caption)\b)",
                                    {kCaseless});
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    TLines content;
    TRegexMatch m;
    for (const std::string_view raw : QVLSplitDiagramLines(aText)) {
        const std::string_view line = Trim(raw);
        if (line.empty() || line.front() == '\'' || line.front() == '!') continue;
        if (kFrame.Match(line) || kDecoration.Match(line)) continue;
        if (kTitle.Match(line, m)) {
            aModel.fTitle = std::string(m.Group(1));
            continue;
        }
        content.push_back(line);
    }
    return content;
}

TORXPlantUMLParser::TPumlKind TORXPlantUMLParser::KindFromMarker(std::string_view aText) {
    struct TMarker {
        const char* Pattern;
        TKind Kind;
    };
    static constexpr std::array<TMarker, 9> kMarkers{{
        {R"(@start(?:mindmap|wbs)\b)", TKind::pkMindMap},
        {R"(@startchronology\b)", TKind::pkChronology},
        {R"(@start(?:json|yaml)\b)", TKind::pkData},
        {R"(@startsalt\b)", TKind::pkSalt},
        {R"(@start(?:ebnf|regex)\b)", TKind::pkGrammar},
        {R"(@startfiles\b)", TKind::pkFiles},
        {R"(@startditaa\b)", TKind::pkDitaa},
        {R"(@startchen\b)", TKind::pkChen},
        {R"(@startgantt\b)", TKind::pkGantt},
    }};
    static const std::array<TRegex, 9> kPatterns = [] {
        return std::array<TRegex, 9>{
            TRegex(kMarkers[0].Pattern, {kCaseless}), TRegex(kMarkers[1].Pattern, {kCaseless}),
            TRegex(kMarkers[2].Pattern, {kCaseless}), TRegex(kMarkers[3].Pattern, {kCaseless}),
            TRegex(kMarkers[4].Pattern, {kCaseless}), TRegex(kMarkers[5].Pattern, {kCaseless}),
            TRegex(kMarkers[6].Pattern, {kCaseless}), TRegex(kMarkers[7].Pattern, {kCaseless}),
            TRegex(kMarkers[8].Pattern, {kCaseless})};
    }();
    for (std::size_t i = 0; i < kMarkers.size(); ++i)
        if (kPatterns[i].Match(aText)) return kMarkers[i].Kind;
    return TKind::pkUnknown;
}

bool TORXPlantUMLParser::IsStructureRelation(std::string_view aLine) {
    TPumlRelation relation;
    return ParsePumlRelation(aLine, relation);
}

TORXPlantUMLParser::TPumlKind TORXPlantUMLParser::DetectKind(const TLines& aLines) {
    static const TRegex kChronology(R"(^\[[^\]]+\]\s+happens\s+on\s+)", {kCaseless});
    static const TRegex kDataPair(R"re(^"[^"]+"\s*:)re", {kCaseless});
    static const TRegex kC4(
        R"(^(Person|Person_Ext|System|System_Ext|SystemDb|SystemDb_Ext|Container|Container_Ext|ContainerDb|ContainerDb_Ext|Component|Component_Ext|ComponentDb|ComponentDb_Ext|Deployment_Node|Rel)\s*\()",
        {kCaseless});
    static const TRegex kTiming(R"(^(robust|concise|clock|binary|analog|digital)\s+)", {kCaseless});
    static const TRegex kNetwork(R"(^nwdiag\s*\{?)", {kCaseless});
    static const TRegex kArchimate(R"(^Rel_\w+\s*\()", {kCaseless});
    static const TRegex kMindMap(R"(^(\*+|[+-]+)(?:\[[^\]]+\])?_?\s+\S)");
    static const TRegex kActivityWord(R"(^(start|stop|end)\s*$)", {kCaseless});
    static const TRegex kActivityAction(R"(^:.*;\s*$)");
    static const TRegex kActivityBlock(R"(^(if|while|repeat)\s*\()", {kCaseless});
    static const TRegex kState(R"(^state\s)", {kCaseless});
    static const TRegex kParticipant(R"(^(participant|actor)\s)", {kCaseless});
    static const TRegex kMessage(R"re(^("[^"]+"|[\w.]+)\s*-{1,2}>{1,2}[xo]?\s*("[^"]+"|[\w.]+)\s*:)re");
    static constexpr std::array<std::string_view, 22> kStructureWords{
        "class ",     "interface ", "abstract class ", "enum ",     "annotation ", "component ",
        "usecase ",   "node ",      "cloud ",          "artifact ", "folder ",     "frame ",
        "rectangle ", "queue ",     "package ",        "object ",   "map ",        "json ",
        "file ",      "storage ",   "card ",           "agent "};

    TKind remembered = TKind::pkUnknown;
    for (const std::string_view raw : aLines) {
        const std::string_view line = Trim(raw);
        if (line.empty()) continue;
        const std::string lower = Qvl::Utils::ToLowerAscii(line);
        if (kChronology.Match(line)) return TKind::pkChronology;
        if (line == "{" || line == "[" || kDataPair.Match(line)) return TKind::pkData;
        if (kC4.Match(line)) return TKind::pkC4;
        if (kTiming.Match(line)) return TKind::pkTiming;
        if (kNetwork.Match(line)) return TKind::pkNetwork;
        if (kArchimate.Match(line)) return TKind::pkArchimate;
        for (const std::string_view word : kStructureWords)
            if (lower.starts_with(word)) return TKind::pkStructure;
        if (kMindMap.Match(line)) return TKind::pkMindMap;
        if (kActivityWord.Match(line) || kActivityAction.Match(line) || kActivityBlock.Match(line))
            return TKind::pkActivity;
        if (line.find("[*]") != std::string_view::npos || kState.Match(line)) return TKind::pkState;
        if (kParticipant.Match(line) || kMessage.Match(line)) {
            remembered = TKind::pkSequence;
            continue;
        }
        if (IsStructureRelation(line)) return TKind::pkStructure;
    }
    return remembered == TKind::pkUnknown ? TKind::pkSequence : remembered;
}

void TORXPlantUMLParser::Parse(std::string_view aText, TORXDiagramModel& aModel) {
    const TLines lines = ContentLines(aText, aModel);
    TKind kind = KindFromMarker(aText);
    if (kind == TKind::pkUnknown) kind = DetectKind(lines);
    if (kind == TKind::pkUnknown)
        aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, 0, "PLANTUML_KIND_FALLBACK",
                             "Diagram kind was not detected; sequence parsing was used as fallback.", "");
    switch (kind) {
        case TKind::pkUnknown:
        case TKind::pkSequence:
            ParseSequence(lines, aModel);
            break;
        case TKind::pkActivity:
            ParseActivity(lines, aModel);
            break;
        case TKind::pkState:
            ParseState(lines, aModel);
            break;
        case TKind::pkMindMap:
            ParseMindMap(lines, aModel);
            break;
        case TKind::pkArchimate:
            ParseArchimate(lines, aModel);
            break;
        case TKind::pkStructure:
            ParseStructure(lines, aModel);
            break;
        case TKind::pkC4:
            ParseC4(lines, aModel);
            break;
        case TKind::pkTiming:
            ParseTiming(lines, aModel);
            break;
        case TKind::pkNetwork:
            ParseNetwork(lines, aModel);
            break;
        case TKind::pkChronology:
            ParseChronology(lines, aModel);
            break;
        case TKind::pkData:
            ParseData(lines, aModel);
            break;
        case TKind::pkSalt:
            ParseSalt(lines, aModel);
            break;
        case TKind::pkGrammar:
            ParseGrammar(lines, aModel);
            break;
        case TKind::pkFiles:
            ParseFiles(lines, aModel);
            break;
        case TKind::pkDitaa:
            ParseDitaa(lines, aModel);
            break;
        case TKind::pkChen:
            ParseChen(lines, aModel);
            break;
        case TKind::pkGantt:
            ParseGantt(lines, aModel);
            break;
    }
}

}  // namespace Orvex
