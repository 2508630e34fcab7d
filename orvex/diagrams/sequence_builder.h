// What both sequence readers share once a line is understood: participants (declared, implicit, in boxes),
// the open fragments and boxes, activations and their callers, autonumbering, and diagnostics that carry
// the line being read. The readers only recognise statements; the bookkeeping lives here.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// Found and lost messages start or end at the diagram's edge, not at a lifeline.
inline constexpr std::string_view kSeqLeftEdge = "[";
inline constexpr std::string_view kSeqRightEdge = "]";

class TSequenceBuilder {
  public:
    explicit TSequenceBuilder(TORXDiagramModel& aModel);

    // The line every following call reports against (1-based, as the core parsers number lines).
    void SetLine(int aLine, std::string_view aSource);
    void Diagnose(TQVLDiagramDiagnosticSeverity aSeverity, std::string_view aCode, std::string_view aMessage);
    void Unrecognized(std::string_view aCodePrefix);  // "<prefix>_UNRECOGNIZED_LINE"
    void Unsupported(std::string_view aCodePrefix,
                     TQVLDiagramDiagnosticSeverity aSeverity = TQVLDiagramDiagnosticSeverity::dsWarning);

    // A declaration: the participant is added (or, when a message named it first, completed) with its
    // caption, role and colour, and joins the open box.
    TQVLSeqParticipant& Declare(std::string_view aID, std::string_view aDisplay, std::string_view aRole);
    // A participant named by a message or note; the edges of found and lost messages are not participants.
    void Ensure(std::string_view aID);
    bool Known(std::string_view aID) const { return fIndex.count(std::string(aID)) > 0; }

    // A message with its arrow marks: activate the receiver, deactivate the sender, create or destroy the
    // receiver. Numbered when autonumbering is on.
    struct TMarks {
        bool ActivateTarget = false;
        bool DeactivateSource = false;
        bool CreateTarget = false;
        bool DestroyTarget = false;
        TQVLDiagStyle ActivationStyle;
    };
    void Message(TQVLSeqEvent aEvent, const TMarks& aMarks);
    void Note(TQVLSeqEvent aEvent);
    void Activate(std::string_view aID, const TQVLDiagStyle& aStyle, std::string_view aCaller = {});
    void Deactivate(std::string_view aID);
    // A reply from the most recently activated participant to the one that activated it, ending that
    // activation. False (with a diagnostic) when nothing is active.
    bool Return(std::string_view aText);
    void Create(std::string_view aID);
    void Destroy(std::string_view aID);
    void Simple(TQVLSeqEventType aType, std::string_view aText, std::string_view aVariant = {});

    void OpenFragment(std::string_view aOperator, std::string_view aText, const TQVLDiagStyle& aStyle = {},
                      std::string_view aFrom = {}, std::string_view aTo = {});
    // else, and, option; false with a diagnostic outside a fragment.
    bool FragmentElse(std::string_view aWord, std::string_view aText);
    bool CloseFragment();  // false with a diagnostic when none is open
    void OpenBox(std::string_view aText, const TQVLDiagStyle& aStyle);
    bool CloseBox();
    // Mermaid closes fragments and boxes with the same "end": whichever opened last.
    bool CloseInnermost();

    // Autonumbering: start and step; Stop keeps the counter for a later Resume.
    void AutonumberOn(double aStart, double aStep, std::string_view aFormat, std::string_view aSource);
    void AutonumberStop();
    void AutonumberResume(std::optional<double> aStep, std::string_view aFormat);

    // Closes what the text left open, each with a diagnostic.
    void Finish();

  private:
    struct TBlock {
        bool IsBox = false;
        std::string Operator;  // fragments
        std::string GroupID;   // boxes
    };
    struct TActivation {
        std::string ID;
        std::string Caller;
    };

    void Append(TQVLSeqEvent aEvent);
    std::string CurrentFragment() const;
    std::string NextNumber();

    TORXDiagramModel& fModel;
    std::unordered_map<std::string, std::size_t> fIndex;
    std::vector<TBlock> fBlocks;
    std::vector<TActivation> fActive;
    std::string fLastSender;  // who sent the latest message: the caller of an activation it causes
    int fLine = 0;
    std::string fSource;
    int fBoxCount = 0;
    bool fNumbering = false;
    double fNext = 1;
    double fStep = 1;
    std::string fFormat;
};

// The colour of a diagram text: "#hex", "#name", a web colour name, or CSS rgb()/rgba(); nullopt for
// anything else.
std::optional<TAlphaColor> QVLSeqColor(std::string_view aText);

}  // namespace Orvex
