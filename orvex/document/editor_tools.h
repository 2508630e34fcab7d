// TORXEditor: the interactive editor behind a document. The host forwards pointer and keyboard events in
// device pixels of the edit draw context; the editor turns them into selections, drags, new items and
// edits, each finished gesture one undo group, a cancelled one without any trace. What a host paints on
// top of the drawing while a gesture runs (the tool's rubber points, the rubber band, reference lines and
// alignment guides) is exposed here as plain data.
//
// [SECTION] Vocabulary   [SECTION] Helpers   [SECTION] TORXEditor
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/base_item.h"
#include "orvex/document/document_types.h"
#include "orvex/document/item_types.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json_fwd.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXBaseLabel;
class TORXBaseItem;
struct TTrimEdge;

// [SECTION] Vocabulary

enum class TQVLEdKey : std::uint8_t {
    ekEscape,
    ekEnter,
    ekDelete,
    ekLeft,
    ekUp,
    ekRight,
    ekDown,
    ekBackspace,
    ekHome,
    ekEnd
};

enum class TQVLShift : std::uint8_t { ssShift, ssCtrl, ssAlt };
using TQVLShiftState = TSet<TQVLShift>;

// What the pointer snaps to, each on its own switch.
enum class TQVLSnapMode : std::uint8_t {
    smGrid,
    smEndPoint,
    smMidPoint,
    smCenter,
    smIntersection,
    smTangent,
    smPerpendicular
};
using TQVLSnapModes = TSet<TQVLSnapMode>;

// A line the host paints while dragging: a reference line from the snapped point to the point it lines up
// with (glReference), or an alignment guide along a shared edge or centre of two items (glAlign).
enum class TQVLGuideKind : std::uint8_t { glReference, glAlign };
struct TQVLGuide {
    TQVLGuideKind Kind = TQVLGuideKind::glReference;
    TQVLPto64 From;
    TQVLPto64 To;
};

// Where a snap search landed.
struct TQVLSnapHit {
    TQVLSnapMode Mode = TQVLSnapMode::smGrid;
    TQVLPto64 Point;
    TORXBaseItem* Item = nullptr;  // null for the grid
};

// One selection handle: a point of the item (Index >= 1) or, for box items, a corner (-1 top-left,
// -2 top-right, -3 bottom-right, -4 bottom-left).
struct TQVLHandle {
    TORXBaseItem* Item = nullptr;
    std::int32_t Index = 0;
    TQVLPto64 Point;
};

// The text being edited in place (eaEdText): the item, the text as it stands with the caret as a byte
// offset into it (always on a character boundary), and whether Enter starts a new line.
struct TQVLTextEdit {
    TORXBaseItem* Item = nullptr;
    std::string Text;
    std::size_t Caret = 0;
    bool MultiLine = false;
};

// A second tag for commands that keep all of an item's points: a gesture that follows another change of
// the same item's points records under the other tag, so that it stays an undo step of its own instead of
// merging into the one before.
inline constexpr std::uint16_t kPropPointsStep = 31;
void SetPointsStep(TORXBaseItem* item, const TQVLPtoA& points);  // and queues the item's recalculation
// Before an item operation that records its points under kPropPoints: keeps it from merging into the
// previous step.
void BreakPointsMerge(TORXBaseItem* item);

// Recording of undo commands is off while one lives: previews of a gesture are not edits.
class TNoRecord {
  public:
    explicit TNoRecord(TORXBaseLabel& document);
    ~TNoRecord();
    TNoRecord(const TNoRecord&) = delete;
    TNoRecord& operator=(const TNoRecord&) = delete;

  private:
    TORXBaseLabel& fDocument;
    bool fWasOn;
};

// An item's place in the paint order, kept before SendToBack or BringToFront moves it.
inline constexpr std::int32_t kCmdZOrder = 13;
class TORXZOrderCmd : public TORXCmd {
  public:
    explicit TORXZOrderCmd(TORXBaseItem* item) : TORXCmd(kCmdZOrder, item, kPropNone) {}
    static void AddCommand(TORXBaseItem* item);
    void RestoreState() override;

  protected:
    void StoreState() override;
    std::int32_t fIndex = -1;
};

// The link items of the document bound to any of the items (links follow the elements they join).
std::vector<TORXBaseItem*> LinksOf(const TORXBaseLabel& document, const std::vector<TORXBaseItem*>& items);

// [SECTION] TORXEditor

class TORXEditor {
  public:
    explicit TORXEditor(TORXBaseLabel& document);

    // Settings. Grid steps are base units; the pick gap is device pixels.
    TORXBaseDraw fDraw;  // resolution, scale and scroll offset (fDX, fDY) of the edit surface
    std::int64_t fGridX = 1000;
    std::int64_t fGridY = 1000;
    TQVLSnapModes fSnap{TQVLSnapMode::smEndPoint, TQVLSnapMode::smMidPoint, TQVLSnapMode::smCenter};
    float fPickGap = 4.0f;
    bool fRefLines = true;    // reference lines to end points in line with the pointer
    bool fAlignLines = true;  // alignment guides while moving items
    std::int64_t fPasteOffset = 5000;

    // Events, positions in device pixels; true when the event changed something the host should repaint.
    bool Pick(float x, float y, TQVLShiftState shift);
    bool Move(float x, float y, TQVLShiftState shift);
    bool Up(float x, float y, TQVLShiftState shift);
    bool RightButton(float x, float y, TQVLShiftState shift);
    bool Key(TQVLEdKey key, TQVLShiftState shift);
    bool Chars(const std::string& utf8);  // typed characters: only the text being edited takes them
    void Cancel();                        // drops the gesture in progress: the drawing is as before it began
    void ActionChanged();                 // the document's tool changed

    // What the host paints over the drawing.
    const std::vector<TQVLPto64>& ToolPoints() const { return fToolPoints; }  // picked points and the cursor
    const std::vector<TQVLGuide>& Guides() const { return fGuides; }
    bool RubberBandActive() const { return fDrag == TDrag::kRubber; }
    TQVLRect RubberBand() const;  // normalised
    bool RubberBandFull() const;  // dragged left to right: only items wholly inside are taken
    const std::vector<TQVLHandle>& Handles() const { return fHandles; }
    const std::vector<TORXBaseItem*>& References() const { return fRefs; }  // trim and extend boundaries
    const TQVLTextEdit& TextEdit() const { return fText; }                  // Item null: no text edit

    // Conversions through the edit draw context.
    TQVLPto64 ToBase(float x, float y) const;
    std::int64_t Tolerance() const;  // the pick gap in base units

    // The snapped position of (x, y) in base units: the nearest enabled object snap within the pick
    // tolerance, else the grid when enabled. from is the previous point of the tool, for tangent and
    // perpendicular snaps. Items in skip are not searched (the ones being dragged).
    bool SearchPoint(std::int64_t& x, std::int64_t& y, TQVLSnapHit& hit, const TQVLPto64* from = nullptr,
                     const std::vector<TORXBaseItem*>* skip = nullptr);

    void FillHandles(std::vector<TQVLPto64>& points);  // rebuilds the handles; points receives their places
    void Paste();                                      // the clipboard's items, with new ids, selected
    void MoveItemTo(TORXBaseItem* item, std::int32_t index);  // in the paint order, recorded

  private:
    enum class TDrag : std::uint8_t { kNone, kPending, kMoving, kHandle, kRubber };

    // [SECTION] editor_events.cpp: selection, handles, moving, keyboard
    bool SelectionPick(const TQVLPto64& p, TQVLShiftState shift);
    bool SelectionMove(const TQVLPto64& raw, TQVLShiftState shift);
    bool SelectionUp(const TQVLPto64& raw, TQVLShiftState shift);
    TORXBaseItem* ItemAt(const TQVLPto64& p) const;
    bool Selectable(const TORXBaseItem* item) const;
    void BeginLive(const std::vector<TORXBaseItem*>& items);
    bool IsDragged(const TORXBaseItem* item) const;
    void ApplyMove(std::int64_t dx, std::int64_t dy, bool record);
    void ApplyHandle(const TQVLPto64& to, bool record);
    void RestoreLive();
    void EndDrag();
    bool MoveByKey(std::int64_t dx, std::int64_t dy);
    void AlignGuides(std::int64_t& dx, std::int64_t& dy);

    // [SECTION] editor_tools.cpp: the drawing tools
    bool ToolPick(const TQVLPto64& p, TQVLShiftState shift);
    bool ToolMove(const TQVLPto64& p, TQVLShiftState shift);
    bool ToolUp(const TQVLPto64& p, TQVLShiftState shift);
    bool Finish();  // creates the tool's item from the picked points; false when there are too few
    TQVLPto64 Constrain(const TQVLPto64& p, TQVLShiftState shift) const;
    TORXBaseItem* CreateFromTool();                 // from fPicked; null when the points make no item
    TORXBaseItem* CreateKind(TQVLEdAction action);  // the tool's new item, or null
    bool ConfigureKind(TORXBaseItem* item, TQVLEdAction action);  // kind-specific geometry from fPicked
    bool LinkEndAt(const TQVLPto64& p, bool start);  // link tools: p lies on an element's link point
    void SetState(TQVLEdState state);
    void Info();                     // the action information to the host's info event
    TQVLEdState FirstState() const;  // the step the current tool starts with

    // [SECTION] editor_trim.cpp: trim, join, extend and parallels
    bool EditPick(const TQVLPto64& p, TQVLShiftState shift);
    void ClearRefs();
    std::vector<TTrimEdge> Boundaries(const TORXBaseItem* except) const;
    bool TrimItem(TORXBaseItem* item, const TQVLPto64& p);
    bool ExtendItem(TORXBaseItem* item, const TQVLPto64& p);
    bool TrimPolygon(TORXBaseItem* item, const TQVLPto64& p);  // opens it into a polyline
    bool Parallel(TORXBaseItem* item, const TQVLPto64& p);
    // Arcs, in editor_items.cpp beside the other kind-specific code.
    bool TrimArc(TORXBaseItem* item, const TQVLPto64& p);
    bool ParallelArc(TORXBaseItem* item, const TQVLPto64& p, TQVLPtoA& points);
    bool ItemArcCircleEditable(const TORXBaseItem* item) const;

    // [SECTION] editor_text.cpp: editing a text in place, moving texts
    bool TextPick(const TQVLPto64& p);
    bool BeginTextEdit(TORXBaseItem* item);
    bool TextKey(TQVLEdKey key, TQVLShiftState shift);
    // Replaces bytes [from, to) of the edited text and shows the result in the item, unrecorded.
    void EditText(std::size_t from, std::size_t to, const std::string& insert);
    void EndTextEdit(bool keep);  // keep: the edit becomes one undo step; else the old text is back
    bool MoveTextPick(const TQVLPto64& p);
    TQVLPtoA MovedPoints(const TORXBaseItem* item, const TQVLPtoA& points, std::int64_t dx,
                         std::int64_t dy) const;  // a drag of the selection, or of a dimension's text
    // Whether the point keeps such a drag from passing the drawing's top or left edge.
    bool PointLimitsDrag(const TORXBaseItem* item, std::size_t index) const;

    // [SECTION] editor_arcs.cpp: extend and join on arcs
    bool ExtendArc(TORXBaseItem* item, const TQVLPto64& p);
    bool JoinArc(TORXBaseItem* first, const TQVLPto64& firstPick, TORXBaseItem* second,
                 const TQVLPto64& secondPick);

    // [SECTION] editor_clipboard.cpp
    TORXBaseItem* AddFromJson(const TJSON& obj);  // a new item (new id) from a stored form, recorded

    TORXBaseLabel& fDoc;
    TDrag fDrag = TDrag::kNone;
    TQVLPto64 fDown;      // where the button went down, before snapping
    TQVLPto64 fGrab;      // the point of the dragged items that follows the pointer
    TQVLPto64 fLast;      // last pointer position, snapped
    TQVLPto64 fDelta;     // the offset the moving drag shows
    TQVLPto64 fHandleTo;  // where the dragged handle is shown
    TQVLHandle fHandle;
    bool fButton = false;  // the left button is down
    std::vector<TQVLPto64> fToolPoints;
    std::vector<TQVLPto64> fPicked;  // the points the finishing tool builds from
    std::size_t fPressPicks = 0;     // tool points right after the last press
    TQVLink fLinkFrom;
    TQVLink fLinkTo;
    std::vector<TQVLGuide> fGuides;
    std::vector<TQVLHandle> fHandles;
    std::vector<TORXBaseItem*> fRefs;
    TORXBaseItem* fFirst = nullptr;  // join and parallel: the item picked first
    TQVLPto64 fFirstPick;
    // The items a drag changes, with their points before it began.
    struct TLive {
        TORXBaseItem* Item;
        TQVLPtoA Points;
    };
    std::vector<TLive> fLive;
    std::vector<TORXBaseItem*> fDragged;  // the selection being moved
    std::int64_t fPasteCount = 0;         // pastes of the same clipboard step further away
    std::string fPastedFrom;
    TQVLTextEdit fText;
    std::string fTextBefore;  // the item's text (rich text: its markup) when the edit began
};

// The catalogue text of the tool and of its current step, as the info event shows them.
std::string ActionText(TQVLEdAction action, TQVLEdState state);

}  // namespace Orvex
