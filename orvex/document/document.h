// TORXBaseLabel: the drawing document and the editor controller of one canvas. It owns every item, layer,
// dimension style, counter and library symbol, the undo and redo stacks and the document-level objects;
// it batches change notifications for its observers. A host derives it (supplying the item factory that
// returns its painting classes); the bare class cannot be created.
//
// [SECTION] Lifecycle and content   [SECTION] Items and selection   [SECTION] Layers
// [SECTION] Dimension styles, counters, symbols   [SECTION] Mode, units, options   [SECTION] Batching
// [SECTION] Observers and events   [SECTION] Tools   [SECTION] Arrangement   [SECTION] Persistence
// [SECTION] Undo and redo   [SECTION] Intersections   [SECTION] Fields
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/base_item.h"
#include "orvex/document/doc_objects.h"
#include "orvex/document/document_services.h"
#include "orvex/document/document_types.h"
#include "orvex/document/layer.h"
#include "orvex/document/observer.h"
#include "orvex/io/json_fwd.h"
#include "orvex/items/flow_types.h"

namespace Orvex {

class TORXCmd;
class TIntersectThread;
class TORXEditor;
class TPickIndex;
class TItemIdIndex;
class TFlowLinkIndex;
struct TQVLSnapHit;
enum class TQVLEdKey : std::uint8_t;  // orvex/document/editor_tools.h
enum class TQVLShift : std::uint8_t;
enum class TQVLDiagramFormat : std::uint8_t;  // orvex/diagrams/diagram_model.h

// One crossing of two items' outlines, in base units.
struct TIntSecPoint {
    std::int64_t X = 0;
    std::int64_t Y = 0;
    std::int32_t ItemA = 0;  // internal ids of the two items
    std::int32_t ItemB = 0;
    friend constexpr bool operator==(const TIntSecPoint&, const TIntSecPoint&) = default;
};

inline constexpr std::int32_t kDrawingVersion = 3200;  // written into every drawing

class TORXBaseLabel {
  public:
    virtual ~TORXBaseLabel();
    TORXBaseLabel(const TORXBaseLabel&) = delete;
    TORXBaseLabel& operator=(const TORXBaseLabel&) = delete;

    // [SECTION] Lifecycle and content
    void New();  // Clear(all), then the measure's defaults
    // cleAll leaves the document as new (one default layer and style). cleLayers keeps the base (first)
    // layer unless cleBaseLayer is also given; cleDimStyles keeps the first style unless cleBaseStyle is
    // also given. Removing items also empties both undo stacks, whose commands refer to them. With notify,
    // a repaint is requested for the next flush.
    void Clear(TQVLClears what, bool notify);
    void Loaded();  // once, after the host has set its properties
    // A new item of the kind, built by the family's factory and then added: nullptr for a kind the family
    // does not know (readers then skip the item). When building throws, no item joins the document and
    // nothing is recorded for undo.
    TORXBaseItem* CreateItem(TQVLItemType type);
    // The family's factory: a fully built item on this document that the document does not hold yet, or
    // nullptr for a kind the family does not know.
    virtual std::unique_ptr<TORXBaseItem> MakeItem(TQVLItemType type) = 0;
    // Binds items that refer to others by id; a family with links or symbols overrides it.
    virtual void AssignSymbolAndFlowLinks() {}
    virtual void ComposeImage(const TQVLRect& area,
                              std::int32_t zoom);  // throws: hosts that compose maps override
    // Diagram import through this document's own loader, else the process-wide one (QVLSetDiagramLoader):
    // false without either, and for a file that does not exist. Defined beside the diagram parsers.
    bool LoadFromDiagramText(std::string_view text, TQVLDiagramFormat format);
    bool LoadFromDiagram(const std::string& fileName, TQVLDiagramFormat format);
    // The host's services for this document; what they leave empty comes from the process-wide defaults.
    // Set them before texts are added: texts already placed keep their layout until they change.
    const TQVLDocumentServices& Services() const { return fServices; }
    void SetServices(TQVLDocumentServices services) { fServices = std::move(services); }

    // [SECTION] Items and selection. Item indexes are zero-based, in paint order.
    TORXBaseItem* GetItem(std::int32_t index) const;  // null outside the list
    std::int32_t GetItemsCount() const { return static_cast<std::int32_t>(fItems.size()); }
    std::int32_t ItemIndex(const TORXBaseItem* item) const;  // -1 when not in the list
    void DeleteItem(TORXBaseItem* item, bool record);        // record: a delete command keeps it for undo
    void DeleteSelection();                                  // one undo step
    void CopySelection();  // the selected items' JSON into the clipboard text
    const std::string& Clipboard() const { return fClipboard; }
    TORXBaseItem* SearchItem(std::int32_t index, bool select);
    TORXBaseItem* SearchItem(const std::string& name, bool select);
    TORXBaseItem* ElementByID(const std::string& name, bool select);  // name compared ignoring case
    bool RepeatID(const std::string& name, const TORXBaseItem* except) const;
    std::int32_t NextID();  // returns the next id, then advances it
    std::int32_t PeekNextID() const { return fNextID; }
    void RaiseNextID(std::int32_t id);  // readers: the next id will be above id
    const std::vector<TORXBaseItem*>& Selection() const { return fSelection; }
    void SelectItem(TORXBaseItem* item, bool notify);  // appends to the selection
    void ClearSelection(bool notify);
    const std::vector<TQVLPto64>& SelPoints() const { return fSelPoints; }
    void FillSelPoints();  // the handles of the selected items
    std::int32_t GetPreviewCount() const { return static_cast<std::int32_t>(fPreviewItems.size()); }
    TORXBaseItem* GetPreviewItem(std::int32_t index) const;
    // Takes a fully built item of this document: a preview copy joins the previews, any other item the
    // end of the paint order, recorded for undo. Returns it, or nullptr for nullptr; an item built on
    // another document is refused (std::invalid_argument) and destroyed.
    TORXBaseItem* AddItem(std::unique_ptr<TORXBaseItem> item);
    // Builds an item of a concrete class on this document, TItem(this, args...), and adds it.
    template <class TItem, class... TArgs>
    TItem* AddNew(TArgs&&... args) {
        auto item = std::make_unique<TItem>(this, std::forward<TArgs>(args)...);
        TItem* built = item.get();
        AddItem(std::move(item));
        return built;
    }
    TQVLRect ItemsBounds() const;  // union of the items' bounds; empty without items
    // The topmost item, among those accept passes (all without it), whose own hit test takes (x, y): the
    // item a walk down the paint order would find first. A grid of the items' extents, rebuilt on the first
    // pick after a change, spares the walk over a large drawing.
    TORXBaseItem* ItemAt(std::int64_t x, std::int64_t y, std::int32_t tolerance,
                         const std::function<bool(const TORXBaseItem&)>& accept = nullptr) const;
    void InvalidatePickIndex();                          // the items' places or order changed
    void InvalidatePickIndex(const TORXBaseItem* item);  // only this item's place or extent changed
    std::size_t PickIndexBuilds() const;                 // full builds of the pick grid so far
    // The first item in paint order of the kind with that internal id, null when there is none; through
    // an index kept beside the list, so links find their elements without a walk over the drawing.
    TORXBaseItem* FindItemByInID(TQVLItemType type, std::int32_t id) const;
    void ItemIdChanged();  // an item's internal id was set after it joined the list

    // [SECTION] Containers, defined in document_containers.cpp: items whose members move with them. A
    // container is a flow element framing its members, behind them in paint order, with its caption in a
    // title band at its top; links end at its frame. Each call is one undo step outside a batch. Moving a
    // container (MoveItems, the selection, a drag) moves its members, recursively; deleting one deletes
    // its members and the links that end at any of them; copying one copies its members.
    //
    // GroupItems: a new container framing the items (ids that name no item are skipped), or nullptr when
    // none is left. A listed item whose container (at any depth) is also listed stays inside it, so that
    // listing a container nests it; every other listed item leaves its container for the new one. The new
    // container goes into the innermost container holding all of those, if any.
    TORXBaseItem* GroupItems(const std::vector<std::int32_t>& aInIDs, std::string_view aCaption);
    // Removes the container; its members stay where they are and join its own container, if any. Links
    // that end at the frame go with it. False when the id is not a container.
    bool UngroupItems(std::int32_t aContainerInID);
    bool IsContainer(std::int32_t aInID) const;
    std::int32_t ContainerOf(std::int32_t aInID) const;  // 0 when in no container (or no such item)
    std::vector<std::int32_t> MembersOf(std::int32_t aContainerInID) const;  // direct members, paint order
    // Resizes the frame to enclose its members (member containers fitted first) with a margin on every
    // side and room for the title band above them. Nothing happens to a container without members.
    void FitContainer(std::int32_t aContainerInID);
    // Moves the items by (dx, dy) base units, each container with its members; an item listed together
    // with one of its containers moves once. Links follow. One undo step.
    void MoveItems(const std::vector<std::int32_t>& aInIDs, std::int64_t dx, std::int64_t dy);
    // The items followed by every member of the containers among them, at any depth, each once.
    std::vector<TORXBaseItem*> WithMembers(const std::vector<TORXBaseItem*>& items) const;
    // The items less those that lie inside a container of the list: what a move or a copy acts on.
    std::vector<TORXBaseItem*> OutermostOf(const std::vector<TORXBaseItem*>& items) const;
    static constexpr std::int64_t kContainerMargin = 4'000;  // base units around the members
    // Flow elements by internal id and the links bound to them, from an index built on first use after a
    // change it cannot follow: the first flow element with the id in list order (null when none), and the
    // links whose either end names the id (valid until the next change of the items).
    TORXBaseItem* FlowByInID(std::int32_t id) const;
    const std::vector<TORXBaseItem*>& LinksOf(std::int32_t id) const;
    void LinkEndsChanged(TORXBaseItem* link);  // a link calls this when its ends name other ids
    std::size_t FlowLinkIndexBuilds() const;

    // [SECTION] Layers. Indexes are one-based; LayerIdx is zero-based as drawing files store it.
    TORXLayer* AddLayer();                 // named with the catalogue's new-layer text
    bool DeleteLayer(std::int32_t index);  // its items go too; the last layer stays
    bool ExchangeLayers(std::int32_t a, std::int32_t b);
    TORXLayer* GetLayer(std::int32_t index) const;  // null outside 1..count
    std::int32_t GetLayersCount() const { return static_cast<std::int32_t>(fLayers.size()); }
    void GetLayersNames(std::vector<std::string>& names) const;
    std::int32_t LayerIdx(const TORXLayer* layer) const;  // -1 when not a layer of this document
    bool SetActiveLayer(std::int32_t index);              // false when out of range or already active
    TORXLayer* GetActiveLayer() const { return GetLayer(fActiveLayer + 1); }
    void CheckBackLayer();
    std::int32_t BackImageLayer() const { return fBackImageLayer; }  // one-based, -1 for none
    bool HasBackLayer() const { return fBackLayer; }
    void SetLayerZOrder(bool byLayer);  // true: items are painted in layer order
    bool LayerZOrder() const { return fLayerZOrder; }

    // [SECTION] Dimension styles (one-based like layers), counters and library symbols
    TORXDimStyle* AddDimStyle(const std::string& name);
    TORXDimStyle* GetDimStyle(std::int32_t index) const;
    TORXDimStyle* GetDimStyleById(std::int32_t id) const;
    std::int32_t GetDimStylesCount() const { return static_cast<std::int32_t>(fDimStyles.size()); }
    void GetDimStylesNames(std::vector<std::string>& names) const;
    bool SetActiveDimStyle(std::int32_t index);
    bool SetActiveDimStyle(const std::string& name);  // ignoring case
    TORXDimStyle* GetActiveDimStyle() const { return GetDimStyle(fActiveDimStyle + 1); }
    bool DeleteActiveDimStyle();                           // the last style stays
    void ResetDimStyles();                                 // back to the one default style
    std::int32_t DimIdx(const TORXDimStyle* style) const;  // zero-based, -1 when absent
    TORXCounter* AddCounter();
    TORXCounter* GetCounter(std::int32_t index) const;  // one-based
    std::int32_t GetCountersCount() const { return static_cast<std::int32_t>(fCounters.size()); }
    TORXBaseLibSymbol* AddSymbol();
    TORXBaseLibSymbol* GetSymbol(std::int32_t index) const;  // one-based
    std::int32_t GetSymbolsCount() const { return static_cast<std::int32_t>(fSymbols.size()); }

    // [SECTION] Mode, units, options and the document-level objects
    TQVLEditorMode EditorMode() const { return fEditorMode; }
    void SetEditorMode(TQVLEditorMode mode);
    TQVLUnits Units() const { return fMeasure.fUnits; }
    void SetUnits(TQVLUnits units);
    TQVLAngle Angle() const { return fAngle; }
    void SetAngle(TQVLAngle angle);
    TOrvexOptions Options() const { return fOptions; }
    void SetOptions(TOrvexOptions options) { fOptions = options; }
    void SetEditable(bool editable) { fEditable = editable; }
    bool GetEditable() const { return fEditable; }
    TORXMeasure& Measure() { return fMeasure; }
    const TORXMeasure& Measure() const { return fMeasure; }
    TORXBackSurf& BackSurf() { return fBackSurf; }
    const TORXBackSurf& BackSurf() const { return fBackSurf; }
    TORXSettings& Settings() { return fSettings; }
    const TORXSettings& Settings() const { return fSettings; }
    TORXBasePrintInfo& PrintInfo() { return fPrintInfo; }
    const TORXBasePrintInfo& PrintInfo() const { return fPrintInfo; }
    TORXData& Data() { return fData; }
    const TORXData& Data() const { return fData; }
    TORXMapping& Mapping() { return fMapping; }
    std::string fLanguageFile;
    std::string fImageFolder;

    // [SECTION] Batching. Changes are collected in the state word and told to observers once, at EndUpdate
    // (legal without BeginUpdate: it then only flushes) or EndRead.
    void BeginUpdate(bool paint = true);
    void EndUpdate();
    void BeginRead(bool paste);
    void EndRead(bool notifyUnits);
    void ChangeState(TOrvexState state, TORXBaseItem* item = nullptr);
    void AddState(TOrvexState state);
    void RemoveState(TOrvexState state);
    bool HasState(TOrvexState state) const;
    std::uint16_t GetState() const { return fState; }
    void CalcPending();
    const std::vector<TORXBaseItem*>& PendingCalc() const { return fPendingCalc; }

    // [SECTION] Observers and events. Observers are not owned; detach before destroying one.
    void Attach(IQVObserver* observer);
    void Detach(IQVObserver* observer);
    void ChangeValue(TQVChange change);                // tells every observer now
    bool GetChangedValue(TQVChange change) const;      // during a notification: is this the change told
    bool IsUndoNotify() const { return fUndoNotify; }  // during a notification sent by Undo or Redo
    void FireInfoEvent(bool onlyWhenFlagged);
    void SetInfoFlag(bool flag) { fInfoFlag = flag; }
    void Refresh() { ChangeValue(TQVChange::chPaint); }
    std::function<void(TORXBaseItem*)> OnSelectItem;
    std::function<void(const TQVLActionInfo&)> OnInfo;
    std::function<void(TORXBaseLabel&, bool undoEmpty, bool redoEmpty)> OnUndoRedo;

    // [SECTION] Tools. Pointer interaction is the host's for now: these only keep the current tool.
    void SetAction(TQVLEdAction action);
    TQVLEdAction GetAction() const { return fAction; }
    TQVLEdAction LastAction() const { return fLastAction; }
    void ResetAction();  // back to selection
    void FlowAction(TQVLFlowType type);
    void LinkAction(TQVLinkType type);
    TQVLEdState EdState() const { return fEdState; }
    TQVLFlowType ActionFlowType() const { return fFlowType; }
    TQVLinkType ActionLinkType() const { return fLinkType; }
    const TQVLActionInfo& ActionInfo() const { return fActionInfo; }

    // [SECTION] Interactive editing, defined in editor_events.cpp. Positions are device pixels of the edit
    // draw context (Editor().fDraw); each returns true when the host should repaint.
    TORXEditor& Editor() { return *fEditor; }
    bool PickEditor(float x, float y, TSet<TQVLShift> shift);  // left button down
    bool MoveEditor(float x, float y, TSet<TQVLShift> shift);
    bool UpEditor(float x, float y, TSet<TQVLShift> shift);
    bool RightButton(float x, float y, TSet<TQVLShift> shift);  // finishes or cancels a multi-point tool
    bool KeyEditor(TQVLEdKey key, TSet<TQVLShift> shift);
    bool KeyPressEditor(const std::string& chars);  // typed characters (UTF-8) for the text being edited
    bool SearchPoint(std::int64_t& x, std::int64_t& y, TQVLSnapHit& hit);  // base units, snapped in place
    void PasteSelection();  // the clipboard's items as new items, selected; one undo step

    // [SECTION] Arrangement of the selection; each is one undo step.
    void SendToBack();
    void BringToFront();
    void SortItemsZLayer();                    // stable: the layers' order is the paint order
    void AlignObjects(TQVLObjectAlign align);  // against the first selected item
    void SameWidth();                          // box items take the first selected item's width
    void SameHeight();
    void CenterHorizontal();  // on the label
    void CenterVertical();
    void SpaceHorizontal(std::int64_t gap);  // left to right, gap base units apart
    void SpaceVertical(std::int64_t gap);
    void RotateLeft();
    void RotateRight();
    void MoveSelection(float dx, float dy);  // in the document's unit
    void MoveSize(std::int64_t dx, std::int64_t dy, std::int64_t dWidth, std::int64_t dHeight);  // base units

    // [SECTION] Persistence: defined in drawing_json.cpp and drawing_svg.cpp.
    TJSON GetJson() const;                             // a new object; the caller owns it
    std::string GetJsonString(int indent = -1) const;  // compact with -1
    void ReadJson(const TJSON& obj);
    // What the last ReadJson could not use and skipped (an entry of "Items" that is no object or of a kind
    // unknown here, a symbol nested too deep), one line each naming the entry; empty after a clean read.
    const std::vector<std::string>& ReadWarnings() const { return fReadWarnings; }
    // An item being read reports a value it could not take as it stood (clamped, say); the warning names the
    // entry of "Items". Outside ReadJson there is no entry to name and the item's correction stays silent.
    void AddReadWarning(std::string message);
    // The whole drawing as SVG: scale multiplies its size on paper (<= 0 counts as 1); flag paints the
    // background surface's colour under the items.
    std::string SVG(TQVLExportSVG kind, float scale, bool flag) const;
    bool SaveSVG(const std::string& fileName, TQVLExportSVG kind, float scale, bool flag) const;

    // [SECTION] Undo and redo
    void Undo();
    void Redo();
    // Takes back one step that is not the latest, when no later step touches an item it touched (a person's
    // last step while an agent has worked on other items since). False, with nothing changed, when the
    // step is not on the undo stack or a later step touched one of its items.
    bool UndoStep(std::int32_t aGroup);
    // The group id the next step recorded outside a batch will get: every step recorded from now on has
    // an id at least this.
    std::int32_t NextUndoGroup() const { return fGroupCounter; }
    // The group ids of the steps on the undo stack, oldest first; with aSince, only the steps at the top
    // whose ids are at least aSince (those recorded since NextUndoGroup() returned it).
    std::vector<std::int32_t> UndoGroups(std::int32_t aSince = INT32_MIN) const;
    bool IsUndoEmpty() const { return fUndoStack.empty(); }
    bool IsRedoEmpty() const { return fRedoStack.empty(); }
    std::int32_t UnReID();
    // Used by the command family.
    bool IsUndoing() const { return fUndoing; }
    bool IsRedoing() const { return fRedoing; }
    void SetUndoing(bool on) { fUndoing = on; }
    void SetRedoing(bool on) { fRedoing = on; }
    const TORXCmd* TopCommand() const;  // of the active stack: redo while undoing, else undo
    void PushCommand(std::unique_ptr<TORXCmd> cmd);
    void RebindCommands(TORXBaseItem* item, bool undoStack);
    // The item from its JSON form at the list index (the end when out of range), recording its creation.
    TORXBaseItem* RecreateItem(const TJSON& obj, std::int32_t index);
    // Commands recorded while one lives share a group; inside a batch or an undo it changes nothing.
    class TUndoGroup {
      public:
        explicit TUndoGroup(TORXBaseLabel& document);
        ~TUndoGroup();
        TUndoGroup(const TUndoGroup&) = delete;
        TUndoGroup& operator=(const TUndoGroup&) = delete;

      private:
        TORXBaseLabel& fDocument;
        bool fOpened;
    };
    std::size_t UndoCount() const { return fUndoStack.size(); }
    // Makes everything recorded since the undo stack held count commands one step, for batches that span
    // several update brackets (an agent's begin_update ... end_update over many calls).
    void JoinUndoSince(std::size_t count);
    std::size_t RedoCount() const { return fRedoStack.size(); }

    // [SECTION] Intersections. The worker reads a snapshot of the outlines and writes only the point
    // list, under its lock.
    void ComputeIntersections();  // stops a running worker first
    void TerminarThread();        // stops the worker early and waits for it
    void ThreadFinished();        // called by the worker as it ends
    void CheckIntersetions();     // recomputes in drawing mode
    bool IntersectionsRunning() const { return fIntersectRunning.load(); }
    std::vector<TIntSecPoint> GetIntersections() const;

  protected:
    TORXBaseLabel();  // a host derives; the bare class cannot be created

    friend class TORXEditor;  // the editor drives the tool state and the selection

  private:
    std::int32_t LayerDefaultIndex() const;
    void ClearItems();
    void ClearUndoRedo();
    void RemoveFromLists(const TORXBaseItem* item);
    void Flush();
    void ResetRefLines() { fRefLines.clear(); }
    // Moves the item and, for a container, its members; part of the caller's batch.
    void MoveItemBy(TORXBaseItem* item, std::int64_t dx, std::int64_t dy);
    void DeleteOne(TORXBaseItem* item, bool record);         // the item alone
    void DeleteContainer(TORXBaseItem* frame, bool record);  // with its members and their links
    void FollowLinks();        // links of the selection recalculate at the end of the batch
    void CalcRestoredLinks();  // after undo and redo

    // [SECTION] Fields, in the order they are created.
    TORXBasePrintInfo fPrintInfo;
    TORXData fData;
    std::vector<IQVObserver*> fObservers;
    TORXMeasure fMeasure;
    TORXMapping fMapping;
    TORXBackSurf fBackSurf{true};
    TORXSettings fSettings;
    std::vector<std::unique_ptr<TORXLayer>> fLayers;
    std::int16_t fActiveLayer = 0;
    std::vector<std::unique_ptr<TORXDimStyle>> fDimStyles;
    std::int16_t fActiveDimStyle = 0;
    std::int32_t fNextDimStyleID = 1;
    std::vector<std::unique_ptr<TORXBaseItem>> fItems;
    mutable std::unique_ptr<TPickIndex> fPickIndex;  // built by ItemAt
    mutable bool fPickIndexDirty = true;
    mutable std::unique_ptr<TItemIdIndex> fIdIndex;      // built by FindItemByInID
    mutable std::unique_ptr<TFlowLinkIndex> fFlowLinks;  // valid or rebuilt on its next lookup
    std::vector<std::unique_ptr<TORXBaseItem>> fPreviewItems;
    std::vector<std::unique_ptr<TORXBaseLibSymbol>> fSymbols;
    std::vector<TIntSecPoint> fIntersections;
    mutable std::mutex fIntersectLock;  // guards fIntersections
    std::vector<TORXBaseItem*> fSelection;
    std::vector<TORXBaseItem*> fSelection2;
    std::vector<TORXBaseItem*> fPendingCalc;
    std::unordered_set<const TORXBaseItem*> fPendingCalcSet;  // the same items, for the duplicate check
    std::vector<std::unique_ptr<TORXCounter>> fCounters;
    std::string fClipboard;
    TQVLDocumentServices fServices;
    std::vector<std::string> fReadWarnings;
    std::int64_t fReadingItem = -1;  // the entry of "Items" ReadJson is reading, -1 outside
    std::vector<std::unique_ptr<TORXCmd>> fUndoStack;
    std::vector<std::unique_ptr<TORXCmd>> fRedoStack;
    bool fUndoing = false;
    bool fRedoing = false;
    TOrvexOptions fOptions{TOrvexOption::loUniqueID, TOrvexOption::loUndoRedo};
    std::uint16_t fState = 0;
    std::int32_t fNextID = 1;
    bool fGroupMark = true;
    std::int32_t fGroupCounter = 0;
    std::int32_t fCurrentGroup = 0;
    std::int32_t fBackImageLayer = -1;
    bool fNotifyNow = false;

    bool fBackLayer = false;
    bool fLayerZOrder = false;
    bool fEditable = true;
    bool fInfoFlag = false;
    bool fUndoNotify = false;
    bool fUndoRecordingSaved = false;     // loUndoRedo was on when the read began
    const TQVChange* fTelling = nullptr;  // the change being told, during a notification
    TQVLEditorMode fEditorMode = TQVLEditorMode::emLabelling;
    TQVLAngle fAngle = TQVLAngle::ag0;
    TQVLEdAction fAction = TQVLEdAction::eaSelection;
    TQVLEdAction fLastAction = TQVLEdAction::eaSelection;
    TQVLEdState fEdState = TQVLEdState::edPickPoint;
    TQVLFlowType fFlowType = TQVLFlowType::ftProcess;
    TQVLinkType fLinkType = TQVLinkType::ltDirLine;
    TQVLActionInfo fActionInfo;
    std::vector<TQVLPto64> fSelPoints;
    std::vector<TQVLRef> fRefLines;
    std::unique_ptr<TIntersectThread> fIntersectThread;
    std::unique_ptr<TORXEditor> fEditor;
    std::atomic<bool> fIntersectRunning{false};
};

}  // namespace Orvex
