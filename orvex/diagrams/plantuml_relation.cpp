#include "orvex/diagrams/plantuml_relation.h"

#include "orvex/core/regex.h"
#include "orvex/diagrams/diagram_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;

TQVLDiagEdgeArrow MarkOf(std::string_view mark) {
    if (mark == "<|" || mark == "|>" || mark == "<" || mark == ">" || mark == "^")
        return TQVLDiagEdgeArrow::eaArrow;
    if (mark == "*") return TQVLDiagEdgeArrow::eaFillRhombus;
    if (mark == "o") return TQVLDiagEdgeArrow::eaRhombus;
    if (mark == "x") return TQVLDiagEdgeArrow::eaCross;
    if (mark == "+") return TQVLDiagEdgeArrow::eaCircle;
    return TQVLDiagEdgeArrow::eaNone;
}

}  // namespace

std::string PumlName(std::string_view aName) {
    if (aName.size() >= 2 &&
        ((aName.front() == '[' && aName.back() == ']') || (aName.front() == '(' && aName.back() == ')')))
        aName = aName.substr(1, aName.size() - 2);
    return QVLCleanCaption(aName);
}

bool ParsePumlRelation(std::string_view aLine, TPumlRelation& aRelation) {
    static const TRegex kRelation(
        R"re(^("[^"]+"|\[[^\]]+\]|\([^)]+\)|[\w.:]+)\s*(?:"[^"]*"\s*)?(<\||[<*o#x+^}])?([-.=]+(?:\[[^\]]*\])?(?:(?:left|right|up|down|le|ri|do|l|r|u|d)?[-.=]+)?)(\|>|[>*#+^{]|[ox](?=\s))?\s*(?:"[^"]*"\s*)?("[^"]+"|\[[^\]]+\]|\([^)]+\)|[\w.:]+)\s*(?::\s*(.*))?$)re");
    TRegexMatch m;
    if (!kRelation.Match(aLine, m)) return false;
    const std::string_view tail = m.Group(2);
    const std::string_view body = m.Group(3);
    const std::string_view head = m.Group(4);
    aRelation.From = PumlName(m.Group(1));
    aRelation.To = PumlName(m.Group(5));
    aRelation.Label = QVLCleanCaption(m.Group(6));
    aRelation.Dotted = body.find('.') != std::string_view::npos;
    aRelation.TailMark = MarkOf(tail);
    aRelation.HeadMark = MarkOf(head);
    return !aRelation.From.empty() && !aRelation.To.empty();
}

}  // namespace Orvex
