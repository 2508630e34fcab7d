#include "orvex/diagrams/sequence_builder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "orvex/core/color.h"
#include "orvex/core/regex.h"
#include "orvex/core/text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;

constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::uint8_t Channel(std::string_view text) {
    double value = 0;
    std::string copy(Qvl::Utils::Trim(text));
    if (std::sscanf(copy.c_str(), "%lf", &value) != 1) return 0;
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

// "<b>[000]" shows 7 as "[007]": tags go, the first run of 0 and # is the number, zero-padded to the
// zeros' count.
std::string FormatNumber(std::string_view format, double value) {
    const bool whole = std::floor(value) == value;
    char digits[32];
    if (whole)
        std::snprintf(digits, sizeof digits, "%lld", static_cast<long long>(value));
    else
        std::snprintf(digits, sizeof digits, "%g", value);
    if (format.empty()) return digits;
    std::string plain;
    bool inTag = false;
    for (char c : format) {
        if (c == '<') inTag = true;
        if (!inTag) plain += c;
        if (c == '>') inTag = false;
    }
    const std::size_t start = plain.find_first_of("0#");
    if (start == std::string::npos) return plain + digits;
    std::size_t end = start;
    std::size_t zeros = 0;
    while (end < plain.size() && (plain[end] == '0' || plain[end] == '#')) zeros += plain[end++] == '0';
    std::string number = digits;
    while (number.size() < zeros) number.insert(number.begin(), '0');
    return plain.substr(0, start) + number + plain.substr(end);
}

}  // namespace

std::optional<TAlphaColor> QVLSeqColor(std::string_view aText) {
    std::string_view text = Qvl::Utils::Trim(aText);
    if (text.empty()) return std::nullopt;
    static const TRegex kRgb(
        R"(^rgba?\s*\(\s*([\d.]+)\s*,\s*([\d.]+)\s*,\s*([\d.]+)\s*(?:,\s*([\d.]+%?)\s*)?\)$)",
        {TRegexFlag::rfCaseless});
    TRegexMatch m;
    if (kRgb.Match(text, m)) {
        std::uint8_t alpha = 255;
        if (m.Matched(4)) {
            std::string a(m.Group(4));
            const bool percent = !a.empty() && a.back() == '%';
            double value = std::atof(a.c_str());
            if (percent) value /= 100;
            alpha = static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
        }
        return Qvl::Utils::AlphaColor(Channel(m.Group(1)), Channel(m.Group(2)), Channel(m.Group(3)), alpha);
    }
    if (text.front() == '#') {
        text.remove_prefix(1);
        bool hex = !text.empty();
        for (char c : text) hex = hex && HexDigit(c) >= 0;
        if (hex && (text.size() == 3 || text.size() == 4)) {
            auto twice = [&](std::size_t i) { return static_cast<std::uint8_t>(HexDigit(text[i]) * 17); };
            return Qvl::Utils::AlphaColor(twice(0), twice(1), twice(2), text.size() == 4 ? twice(3) : 255);
        }
        if (hex && (text.size() == 6 || text.size() == 8)) {
            TAlphaColor color = 0;
            if (Qvl::Utils::TryParseColor("#" + std::string(text), color)) return color;
        }
    }
    if (Qvl::Utils::SameTextIgnoringCase(text, "transparent"))
        return Qvl::Utils::AlphaColor(255, 255, 255, 0);
    return Qvl::Utils::NamedColor(text);
}

TSequenceBuilder::TSequenceBuilder(TORXDiagramModel& aModel) : fModel(aModel) {
    fModel.fKind = TQVLDiagramKind::dkSequence;
    for (std::size_t i = 0; i < fModel.Participants().size(); ++i) fIndex[fModel.Participants()[i].ID] = i;
}

void TSequenceBuilder::SetLine(int aLine, std::string_view aSource) {
    fLine = aLine;
    fSource = Qvl::Utils::Trim(aSource);
}

void TSequenceBuilder::Diagnose(TQVLDiagramDiagnosticSeverity aSeverity, std::string_view aCode,
                                std::string_view aMessage) {
    fModel.AddDiagnostic(aSeverity, fLine, aCode, aMessage, fSource);
}

void TSequenceBuilder::Unrecognized(std::string_view aCodePrefix) {
    Diagnose(kWarning, std::string(aCodePrefix) + "_UNRECOGNIZED_LINE",
             "The line was not recognized and was ignored.");
}

void TSequenceBuilder::Unsupported(std::string_view aCodePrefix, TQVLDiagramDiagnosticSeverity aSeverity) {
    Diagnose(aSeverity, std::string(aCodePrefix) + "_UNSUPPORTED_STATEMENT",
             "The statement is recognized but is not rendered.");
}

TQVLSeqParticipant& TSequenceBuilder::Declare(std::string_view aID, std::string_view aDisplay,
                                              std::string_view aRole) {
    const std::string id(aID);
    auto found = fIndex.find(id);
    if (found == fIndex.end()) {
        fModel.AddParticipant(aID, aDisplay);
        found = fIndex.emplace(id, fModel.Participants().size() - 1).first;
    } else if (!aDisplay.empty()) {
        fModel.MutableParticipants()[found->second].Display = aDisplay;
    }
    TQVLSeqParticipant& p = fModel.MutableParticipants()[found->second];
    p.Role = aRole.empty() ? "participant" : aRole;
    for (auto block = fBlocks.rbegin(); block != fBlocks.rend(); ++block) {
        if (!block->IsBox) continue;
        if (p.Group.empty()) {
            p.Group = block->GroupID;
            if (TQVLDiagGroup* group = fModel.FindGroup(block->GroupID)) group->Members.push_back(id);
        }
        break;
    }
    return p;
}

void TSequenceBuilder::Ensure(std::string_view aID) {
    if (aID.empty() || aID == kSeqLeftEdge || aID == kSeqRightEdge || Known(aID)) return;
    Declare(aID, "", "participant");
}

std::string TSequenceBuilder::CurrentFragment() const {
    for (auto block = fBlocks.rbegin(); block != fBlocks.rend(); ++block)
        if (!block->IsBox) return block->Operator;
    return {};
}

void TSequenceBuilder::Append(TQVLSeqEvent aEvent) {
    if (aEvent.Fragment.empty()) aEvent.Fragment = CurrentFragment();
    fModel.AddSeqEvent(aEvent);
}

std::string TSequenceBuilder::NextNumber() {
    if (!fNumbering) return {};
    std::string number = FormatNumber(fFormat, fNext);
    fNext += fStep;
    return number;
}

void TSequenceBuilder::Message(TQVLSeqEvent aEvent, const TMarks& aMarks) {
    aEvent.EventType = TQVLSeqEventType::seMessage;
    Ensure(aEvent.FromActor);
    if (aMarks.CreateTarget && !Known(aEvent.ToActor) && aEvent.ToActor != kSeqRightEdge) {
        Ensure(aEvent.ToActor);
        Create(aEvent.ToActor);
    } else if (aMarks.CreateTarget) {
        Create(aEvent.ToActor);
    }
    Ensure(aEvent.ToActor);
    aEvent.Number = NextNumber();
    const std::string from = aEvent.FromActor;
    const std::string to = aEvent.ToActor;
    Append(std::move(aEvent));
    fLastSender = from;
    if (aMarks.DeactivateSource) Deactivate(from);
    if (aMarks.ActivateTarget) Activate(to, aMarks.ActivationStyle, from);
    if (aMarks.DestroyTarget) Destroy(to);
}

void TSequenceBuilder::Note(TQVLSeqEvent aEvent) {
    aEvent.EventType = TQVLSeqEventType::seNote;
    Ensure(aEvent.FromActor);
    Ensure(aEvent.ToActor);
    Append(std::move(aEvent));
}

void TSequenceBuilder::Activate(std::string_view aID, const TQVLDiagStyle& aStyle, std::string_view aCaller) {
    if (aID.empty() || aID == kSeqLeftEdge || aID == kSeqRightEdge) return;
    Ensure(aID);
    TQVLSeqEvent ev;
    ev.EventType = TQVLSeqEventType::seActivate;
    ev.FromActor = aID;
    ev.Style = aStyle;
    Append(std::move(ev));
    fActive.push_back({std::string(aID), std::string(aCaller.empty() ? fLastSender : aCaller)});
}

void TSequenceBuilder::Deactivate(std::string_view aID) {
    for (auto it = fActive.rbegin(); it != fActive.rend(); ++it) {
        if (it->ID != aID) continue;
        fActive.erase(std::next(it).base());
        TQVLSeqEvent ev;
        ev.EventType = TQVLSeqEventType::seDeactivate;
        ev.FromActor = aID;
        Append(std::move(ev));
        return;
    }
    Diagnose(kWarning, "SEQUENCE_NOT_ACTIVE", "The participant is not active; nothing was deactivated.");
}

bool TSequenceBuilder::Return(std::string_view aText) {
    if (fActive.empty() || fActive.back().Caller.empty()) {
        Diagnose(kWarning, "SEQUENCE_RETURN_WITHOUT_CALL",
                 "No activation is open to return from; the reply was not drawn.");
        return false;
    }
    const TActivation top = fActive.back();
    TQVLSeqEvent ev;
    ev.FromActor = top.ID;
    ev.ToActor = top.Caller;
    ev.Text = aText;
    ev.Dotted = true;
    ev.Arrow = TQVLSeqArrow::saOpen;
    TMarks marks;
    marks.DeactivateSource = true;
    Message(std::move(ev), marks);
    return true;
}

void TSequenceBuilder::Create(std::string_view aID) {
    Ensure(aID);
    TQVLSeqEvent ev;
    ev.EventType = TQVLSeqEventType::seCreate;
    ev.FromActor = aID;
    Append(std::move(ev));
}

void TSequenceBuilder::Destroy(std::string_view aID) {
    Ensure(aID);
    // A destroyed participant's activations end with it.
    for (auto it = fActive.begin(); it != fActive.end();) it = it->ID == aID ? fActive.erase(it) : it + 1;
    TQVLSeqEvent ev;
    ev.EventType = TQVLSeqEventType::seDestroy;
    ev.FromActor = aID;
    Append(std::move(ev));
}

void TSequenceBuilder::Simple(TQVLSeqEventType aType, std::string_view aText, std::string_view aVariant) {
    TQVLSeqEvent ev;
    ev.EventType = aType;
    ev.Text = aText;
    ev.Variant = aVariant;
    Append(std::move(ev));
}

void TSequenceBuilder::OpenFragment(std::string_view aOperator, std::string_view aText,
                                    const TQVLDiagStyle& aStyle, std::string_view aFrom,
                                    std::string_view aTo) {
    TQVLSeqEvent ev;
    ev.EventType = TQVLSeqEventType::seFragmentStart;
    ev.Fragment = aOperator;
    ev.Text = aText;
    ev.Style = aStyle;
    ev.FromActor = aFrom;
    ev.ToActor = aTo;
    Ensure(aFrom);
    Ensure(aTo);
    Append(std::move(ev));
    fBlocks.push_back({false, std::string(aOperator), {}});
}

bool TSequenceBuilder::FragmentElse(std::string_view aWord, std::string_view aText) {
    const std::string op = CurrentFragment();
    if (op.empty()) {
        Diagnose(kWarning, "SEQUENCE_ELSE_OUTSIDE_FRAGMENT",
                 "A fragment separator stands outside any fragment and was ignored.");
        return false;
    }
    TQVLSeqEvent ev;
    ev.EventType = TQVLSeqEventType::seFragmentElse;
    ev.Fragment = op;
    ev.Variant = aWord;
    ev.Text = aText;
    Append(std::move(ev));
    return true;
}

bool TSequenceBuilder::CloseFragment() {
    for (auto it = fBlocks.rbegin(); it != fBlocks.rend(); ++it) {
        if (it->IsBox) continue;
        TQVLSeqEvent ev;
        ev.EventType = TQVLSeqEventType::seFragmentEnd;
        ev.Fragment = it->Operator;
        fBlocks.erase(std::next(it).base());
        Append(std::move(ev));
        return true;
    }
    Diagnose(kWarning, "SEQUENCE_UNMATCHED_END", "An end closes no open fragment or box and was ignored.");
    return false;
}

void TSequenceBuilder::OpenBox(std::string_view aText, const TQVLDiagStyle& aStyle) {
    TQVLDiagGroup group;
    group.ID = "box" + std::to_string(++fBoxCount);
    group.Text = aText;
    group.Style = aStyle;
    for (auto it = fBlocks.rbegin(); it != fBlocks.rend(); ++it)
        if (it->IsBox) {
            group.Parent = it->GroupID;
            break;
        }
    fBlocks.push_back({true, {}, group.ID});
    fModel.AddGroup(std::move(group));
}

bool TSequenceBuilder::CloseBox() {
    for (auto it = fBlocks.rbegin(); it != fBlocks.rend(); ++it) {
        if (!it->IsBox) continue;
        fBlocks.erase(std::next(it).base());
        return true;
    }
    Diagnose(kWarning, "SEQUENCE_UNMATCHED_END", "An end closes no open fragment or box and was ignored.");
    return false;
}

bool TSequenceBuilder::CloseInnermost() {
    if (!fBlocks.empty() && fBlocks.back().IsBox) return CloseBox();
    return CloseFragment();
}

void TSequenceBuilder::AutonumberOn(double aStart, double aStep, std::string_view aFormat,
                                    std::string_view aSource) {
    fNumbering = true;
    fNext = aStart;
    fStep = aStep;
    fFormat = aFormat;
    Simple(TQVLSeqEventType::seAutonumber, aSource, "on");
}

void TSequenceBuilder::AutonumberStop() {
    fNumbering = false;
    Simple(TQVLSeqEventType::seAutonumber, "", "stop");
}

void TSequenceBuilder::AutonumberResume(std::optional<double> aStep, std::string_view aFormat) {
    fNumbering = true;
    if (aStep) fStep = *aStep;
    if (!aFormat.empty()) fFormat = aFormat;
    Simple(TQVLSeqEventType::seAutonumber, "", "resume");
}

void TSequenceBuilder::Finish() {
    fLine = 0;
    fSource.clear();
    while (!fBlocks.empty()) {
        if (fBlocks.back().IsBox) {
            fBlocks.pop_back();
            Diagnose(kWarning, "SEQUENCE_UNCLOSED_BOX", "A box is not closed; it ends with the diagram.");
        } else {
            Diagnose(kWarning, "SEQUENCE_UNCLOSED_FRAGMENT",
                     "A fragment is not closed; it ends with the diagram.");
            CloseFragment();
        }
    }
}

}  // namespace Orvex
