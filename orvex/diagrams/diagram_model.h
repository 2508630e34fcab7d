// The drawing-independent model that the Mermaid and PlantUML parsers fill and the layout stage reads:
// nodes, edges, sequence participants and events, and the parser's findings. Ordinals are part of the
// exchange format with hosts: never reorder the enumerations.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "orvex/core/color.h"
#include "orvex/diagrams/chart_model.h"
#include "orvex/items/flow_types.h"

namespace Orvex {
using Qvl::Types::TAlphaColor;

enum class TQVLDiagramFormat : std::uint8_t { dgAuto, dgMermaid, dgPlantUML };
// dkChart is the full importer's: the model then holds chart data (Chart()) instead of nodes and edges.
enum class TQVLDiagramKind : std::uint8_t { dkFlowChart, dkSequence, dkMindMap, dkIshikawa, dkChart };
enum class TQVLFlowDirection : std::uint8_t { fdTopDown, fdLeftRight };
// Only the full importer writes the values after eaFillRhombus: UML heads (hollow triangle, open arrow,
// lollipop) and the crow's-foot ends of entity relations.
enum class TQVLDiagEdgeArrow : std::uint8_t {
    eaArrow,
    eaNone,
    eaCross,
    eaCircle,
    eaRhombus,
    eaFillRhombus,
    eaTriangle,
    eaOpenArrow,
    eaLollipop,
    eaCrowOnlyOne,
    eaCrowZeroOne,
    eaCrowOneMany,
    eaCrowZeroMany
};
// Only the full importer writes the values after seNote; the core parsers know messages and notes.
enum class TQVLSeqEventType : std::uint8_t {
    seMessage,
    seNote,
    seActivate,
    seDeactivate,
    seFragmentStart,
    seFragmentElse,
    seFragmentEnd,
    seDivider,
    seDelay,
    seCreate,
    seDestroy,
    seAutonumber
};
enum class TQVLSeqArrow : std::uint8_t { saFilled, saOpen, saCross, saNone };
// Ordered: a higher value is more severe.
enum class TQVLDiagramDiagnosticSeverity : std::uint8_t { dsInfo, dsWarning, dsError };

// The look a diagram text asks for. Only what the text sets is present, so a layout can tell "black
// because the text says so" from "black by default".
struct TQVLDiagStyle {
    std::optional<TAlphaColor> Fill;
    std::optional<TAlphaColor> Stroke;
    std::optional<TAlphaColor> TextColor;
    std::optional<double> StrokeWidth;  // in pixels of the diagram text, as written
    std::optional<bool> Dash;
    std::optional<bool> Bold;
    std::optional<bool> Italic;

    bool IsEmpty() const {
        return !Fill && !Stroke && !TextColor && !StrokeWidth && !Dash && !Bold && !Italic;
    }
};

// A container of the diagram text (a subgraph, package, composite state, namespace, participant box).
struct TQVLDiagGroup {
    std::string ID;
    std::string Text;
    std::string Parent;  // the enclosing group's ID; empty at the top
    std::optional<TQVLFlowDirection> Direction;
    std::vector<std::string> Members;  // IDs of the nodes (or participants) directly inside, in order
    TQVLDiagStyle Style;               // what the text sets, nothing else
    bool Region = false;               // a concurrent region of a composite state: drawn with a dashed frame
};

struct TQVLDiagNode {
    std::string ID;         // unique within the model, case-sensitive
    std::int32_t InId = 0;  // the drawing item the layout made for this node; 0 until SetNodeInId
    std::string Text;
    TQVLFlowType Shape = TQVLFlowType::ftProcess;
    bool HasShape = false;  // false when the node was only referenced
    std::int8_t Side = 0;   // placement hint of some kinds (the side of a mind-map branch)
    TAlphaColor BackColor = 0;
    bool HasBackColor = false;
    // Filled only by the full importer.
    std::string Group;  // the innermost container's ID; empty when none
    std::string Role;   // empty for a plain node, else "class", "entity", "state", "note", ...
    TQVLDiagStyle Style;
    std::vector<std::vector<std::string>> Compartments;  // classes: {attributes, methods}; entities: rows
};

struct TQVLDiagEdge {
    std::string FromID;
    std::string ToID;
    std::string Text;
    bool Dotted = false;
    TQVLDiagEdgeArrow FromArrow = TQVLDiagEdgeArrow::eaNone;
    TQVLDiagEdgeArrow Arrow = TQVLDiagEdgeArrow::eaArrow;
    // Filled only by the full importer.
    std::string ID;
    std::string FromText;  // the label at the source end: a multiplicity, cardinality or role
    std::string ToText;
    bool Thick = false;
    TQVLDiagStyle Style;
    std::string Hint;  // where the text places the target from the source: "up", "down", "left", "right"
};

struct TQVLSeqParticipant {
    std::string ID;
    std::string Display;  // equals ID when no alias was given
    // Filled only by the full importer.
    std::string Role;  // "participant", "actor", "boundary", "control", "entity", "database", ...
    std::string Group;
    TQVLDiagStyle Style;
};

struct TQVLSeqEvent {
    TQVLSeqEventType EventType = TQVLSeqEventType::seMessage;
    std::string FromActor;
    std::string ToActor;  // a note's optional second participant; empty otherwise
    std::string Text;
    bool Dotted = false;
    TQVLSeqArrow Arrow = TQVLSeqArrow::saFilled;
    std::string NotePosition;  // "right of", "left of" or "over" for notes; empty for messages
    // Filled only by the full importer: the operator of the innermost fragment the event lies in.
    std::string Fragment;
    // Sequence details only the full importer reads. Variant: a note's shape ("note", "hnote", "rnote"),
    // the separator word of seFragmentElse ("else", "and", "option"), "space" or "delay" for seDelay.
    // Number: the autonumber shown before a message's text. FromArrow, FromCircle, ToCircle: the heads of
    // a two-headed message and the circles of PlantUML's "o" ends. Style: a message's or activation's
    // colour (Stroke or Fill), a note's or fragment's background (Fill).
    TQVLSeqArrow FromArrow = TQVLSeqArrow::saNone;
    bool FromCircle = false;
    bool ToCircle = false;
    std::string Variant;
    std::string Number;
    TQVLDiagStyle Style;
};

struct TQVLDiagramDiagnostic {
    TQVLDiagramDiagnosticSeverity Severity = TQVLDiagramDiagnosticSeverity::dsInfo;
    std::int32_t Line = 0;  // 1-based in the text as the parsers split it; 0 for the whole text
    std::string Code;
    std::string MessageText;
    std::string SourceText;
};

// Raised only by QVLParseDiagram in raising mode; what() is "CODE at line N: message".
class EQVLDiagramParseError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class TORXDiagramModel {
  public:
    TORXDiagramModel() = default;

    void Clear();

    // The node's index; -1 for an empty ID. A known ID updates the node instead of adding one: a caption
    // that was only the ID takes a real one, and the first explicit shape wins for good.
    int AddNode(std::string_view aID, std::string_view aText, TQVLFlowType aShape, bool aHasShape,
                std::int8_t aSide = 0, TAlphaColor aBackColor = 0, bool aHasBackColor = false);
    int NodeIndexOf(std::string_view aID) const;  // -1 when unknown
    void SetNodeInId(std::string_view aID, std::int32_t aInId);
    std::int32_t GetNodeInId(std::string_view aID) const;  // 0 when unknown

    // Nothing is added when either end is empty; the source end mark is always eaNone.
    void AddEdge(std::string_view aFrom, std::string_view aTo, std::string_view aText, bool aDotted,
                 TQVLDiagEdgeArrow aArrow);
    void AddParticipant(std::string_view aID, std::string_view aDisplay);
    void AddSeqEvent(const TQVLSeqEvent& aEvent);
    void AddDiagnostic(TQVLDiagramDiagnosticSeverity aSeverity, std::int32_t aLine, std::string_view aCode,
                       std::string_view aMessage, std::string_view aSource);
    bool HasDiagnostics(TQVLDiagramDiagnosticSeverity aMinimumSeverity) const;

    TQVLDiagramKind Kind() const { return fKind; }
    TQVLFlowDirection Direction() const { return fDirection; }
    const std::string& Title() const { return fTitle; }
    const std::vector<TQVLDiagNode>& Nodes() const { return fNodes; }
    const std::vector<TQVLDiagEdge>& Edges() const { return fEdges; }
    const std::vector<TQVLSeqParticipant>& Participants() const { return fParticipants; }
    const std::vector<TQVLSeqEvent>& SeqEvents() const { return fSeqEvents; }
    const std::vector<TQVLDiagramDiagnostic>& Diagnostics() const { return fDiagnostics; }

    // The full importer's additions: containers in source order, and write access to the records the
    // core calls made, to attach what the core model has no field for.
    const std::vector<TQVLDiagGroup>& Groups() const { return fGroups; }
    TQVLDiagGroup& AddGroup(TQVLDiagGroup aGroup);
    TQVLDiagGroup* FindGroup(std::string_view aID);
    TQVLDiagNode* FindNode(std::string_view aID);
    std::vector<TQVLDiagEdge>& MutableEdges() { return fEdges; }
    std::vector<TQVLSeqParticipant>& MutableParticipants() { return fParticipants; }
    std::vector<TQVLSeqEvent>& MutableSeqEvents() { return fSeqEvents; }
    // The chart data of a chart-like text; null for every other kind. Shared so that models stay copyable.
    const TQVLChart* Chart() const { return fChart.get(); }
    void SetChart(std::shared_ptr<const TQVLChart> aChart) { fChart = std::move(aChart); }

    // Set directly by the parsers.
    TQVLDiagramKind fKind = TQVLDiagramKind::dkFlowChart;
    TQVLFlowDirection fDirection = TQVLFlowDirection::fdTopDown;
    std::string fTitle;

    // Edge records whose mark stands at the source end (class relations written "A <|-- B") need the
    // source mark, which AddEdge never sets; the parsers adjust the last edge through this.
    TQVLDiagEdge* LastEdge() { return fEdges.empty() ? nullptr : &fEdges.back(); }

  private:
    std::vector<TQVLDiagNode> fNodes;
    std::unordered_map<std::string, int> fNodeIndex;
    std::vector<TQVLDiagEdge> fEdges;
    std::vector<TQVLSeqParticipant> fParticipants;
    std::vector<TQVLSeqEvent> fSeqEvents;
    std::vector<TQVLDiagramDiagnostic> fDiagnostics;
    std::vector<TQVLDiagGroup> fGroups;
    std::shared_ptr<const TQVLChart> fChart;
};

}  // namespace Orvex
