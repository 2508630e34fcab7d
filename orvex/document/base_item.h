// TORXBaseItem: what every element of a drawing shares (identity, kind, colour, pen, layer, flags, the
// defining points in base units, rotation, bounds, selection and data-preview position) and the virtual
// contract that the item kinds implement. Painting (Draw, Print) is left to the host's subclasses.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/item_types.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

class TORXBaseDraw;
class TORXBaseLabel;
class TORXLayer;

using TQVLPtoA = std::vector<TQVLPto>;

// Property indexes that undo commands carry. Item kinds number their own from kPropFirstKind up.
inline constexpr std::uint16_t kPropNone = 0;
inline constexpr std::uint16_t kPropColor = 1;
inline constexpr std::uint16_t kPropPenWidth = 2;
inline constexpr std::uint16_t kPropAngle = 3;
inline constexpr std::uint16_t kPropOptions = 4;
inline constexpr std::uint16_t kPropLayer = 5;
inline constexpr std::uint16_t kPropID = 6;
inline constexpr std::uint16_t kPropPoints = 7;
inline constexpr std::uint16_t kPropBackColor = 8;
inline constexpr std::uint16_t kPropFilled = 9;
inline constexpr std::uint16_t kPropContainerID = 10;
inline constexpr std::uint16_t kPropContainerFrame = 11;
inline constexpr std::uint16_t kPropFirstKind = 32;

class TJsonWriter;

class TORXBaseItem {
  public:
    // The document takes ownership of the new item (its item list, or its preview list when preview is
    // true); create items with new and keep only the raw pointer. Outside reads and pastes the item draws
    // the document's next id, and a creation command is recorded.
    TORXBaseItem(TORXBaseLabel* owner, TQVLItemType type, bool preview);
    TORXBaseItem(TORXBaseLabel* owner, TQVLItemType type, TORXLayer* layer, bool preview);
    virtual ~TORXBaseItem() = default;
    TORXBaseItem(const TORXBaseItem&) = delete;
    TORXBaseItem& operator=(const TORXBaseItem&) = delete;

    // [SECTION] Identity and common properties. Setters record one undo command when the value differs.
    TORXBaseLabel* QVLab() const { return fOwner; }
    const std::string& ID() const { return fID; }
    void SetID(const std::string& id);
    std::int32_t InID() const { return fInID; }
    void SetInID(std::int32_t id);  // readers only: no undo, no renaming
    TQVLItemType ItemType() const { return fItemType; }
    TAlphaColor Color() const { return fColor; }
    void SetColor(TAlphaColor color);
    TQVLayerOpts Options() const { return fOptions; }
    void SetOptions(TQVLayerOpts options);
    std::int32_t PenWidth() const { return fPenWidth; }  // base units
    void SetPenWidth(std::int32_t width);
    float GetPenWidthMM() const;
    void SetPenWidthMM(float mm);
    TORXLayer* Layer() const { return fLayer; }
    void SetLayer(TORXLayer* layer);
    TQVLAngle Angle() const { return fAngle; }
    void SetAngle(TQVLAngle angle);
    TQVLItemState State() const { return fState; }
    void SetState(TQVLItemState state) { fState = state; }
    bool Resize() const { return fResize; }
    void SetResize(bool resize) { fResize = resize; }
    bool IsData() const { return GetIsData(); }
    bool Changed() const { return fChanged; }
    void SetChanged(bool changed) { fChanged = changed; }
    bool FromPreview() const { return fFromPreview; }
    const TQVLRect& BoundsRect() const { return fBoundsRect; }
    const TQVLRect& CheckRect() const { return fCheckRect; }
    std::int16_t PreviewRow() const { return aRow; }
    std::int16_t PreviewCol() const { return aCol; }
    void PreviewPos(std::int16_t col, std::int16_t row) { aCol = col, aRow = row; }
    void SetName();  // fID = kind name + fInID in at least three digits

    // [SECTION] Containers. A container is a flow element framing other items, which move with it; the
    // document's GroupItems makes them. ContainerID is the internal id of the container this item belongs
    // to directly (0: none), kept as stored: the document resolves it (TORXBaseLabel::ContainerOf).
    std::int32_t ContainerID() const { return fContainerID; }
    void SetContainerID(std::int32_t id);
    TQVLContainerFrame ContainerFrame() const { return fContainerFrame; }
    void SetContainerFrame(TQVLContainerFrame frame);
    bool IsContainerFrame() const { return fContainerFrame != TQVLContainerFrame::cfNone; }

    // [SECTION] Points, one-based: index 1 is the first point. An index outside 1..NumPoints reads as 0
    // and is ignored on writing.
    const TQVLPtoA& Points() const { return fPoints; }
    TQVLPto GetPoint(std::int32_t index) const;
    void SetPoint(std::int32_t index, const TQVLPto& p);
    std::int64_t GetPointX(std::int32_t index) const;
    std::int64_t GetPointY(std::int32_t index) const;
    void SetPointX(std::int32_t index, std::int64_t x);
    void SetPointY(std::int32_t index, std::int64_t y);
    float GetPointMMX(std::int32_t index) const;
    float GetPointMMY(std::int32_t index) const;
    void SetBase(std::int32_t index, std::int64_t x, std::int64_t y);
    void SetBaseX(std::int32_t index, std::int64_t x) { SetPointX(index, x); }
    void SetBaseY(std::int32_t index, std::int64_t y) { SetPointY(index, y); }
    void DeletePoint(std::int32_t index);
    void AssignPoints(const TQVLPto* points, std::int32_t count);
    void SetPointsProp(const TQVLPtoA& points, std::uint16_t property);  // all points as one undo step

    // [SECTION] The virtual contract.
    // The internal ids of the two flow elements a link joins; {0, 0} for every other kind.
    virtual std::array<std::int32_t, 2> LinkEndIDs() const { return {0, 0}; }
    virtual std::int64_t GetRefX(std::int32_t index) const;  // x of the index-th snap reference
    virtual std::int64_t GetRefY(std::int32_t index) const;
    virtual bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const;
    // The rectangle no hit of Pick lies outside of, before widening by twice the tolerance; false when
    // the item cannot bound its hits, and the document's pick index then asks it at every click.
    virtual bool PickExtent(TQVLRect& extent) const;
    virtual bool SearchRect(const TQVLRect& rect, bool partial) const;
    virtual bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                            TQVLRef& ref);
    // The item's object in a drawing file. WriteJson builds it as a tree; WriteJsonTo writes the same keys
    // to any writer (kinds described by a property table stream them without a tree). WriteKeys writes the
    // keys without the braces: the common ones here, kinds with a table append theirs.
    virtual TJSON WriteJson() const;
    virtual void WriteJsonTo(TJsonWriter& writer) const;
    virtual void WriteKeys(TJsonWriter& writer) const;
    virtual bool GetIsData() const { return false; }
    // Extends the running extents by every point widened by half the pen; -1 marks an extent not yet set.
    virtual void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                          std::int64_t& maxY) const;
    virtual void ReadJson(std::int32_t version, const TJSON& obj);
    virtual void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                          float factor, bool flag) const = 0;
    virtual void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const;
    virtual void UpdateBounds();
    virtual void UpdatePoints() {}
    virtual void CheckPosition();
    virtual void RotateLeft();   // a quarter turn counter-clockwise on screen about the bounds' centre
    virtual void RotateRight();  // a quarter turn clockwise on screen
    virtual void FillData(bool flag) { (void)flag; }
    virtual void BoundsMove(float& dx,
                            float& dy) const;  // in the document's unit; keeps the item at x, y >= 0
    virtual void CheckBaseBoundsMove(std::int64_t& dx, std::int64_t& dy, TQVLMoveOpt option) const;
    virtual void BaseMove(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                          TQVLMoveOpt option, bool flag);
    virtual void Draw(TORXBaseDraw& surface) = 0;
    virtual void Print(TORXBaseDraw& surface) = 0;
    virtual void CalcValues(std::int16_t value) { (void)value; }
    virtual std::int16_t NumPoints() const { return static_cast<std::int16_t>(fPoints.size()); }
    virtual void InsertPoint(std::int64_t x, std::int64_t y,
                             std::int32_t index);  // before index; past the end appends
    virtual TQVLPto64 CenterPoint() const = 0;
    virtual void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const = 0;
    virtual void Move(float dx, float dy, TQVLMoveOpt option);  // dx, dy in the document's unit

    // [SECTION] Property access by index, for undo commands: the getters read the value a command keeps,
    // the setters put it back through the recording setters. Kinds override for their own properties.
    virtual TAlphaColor GetColorProp(std::uint16_t property) const;
    virtual void SetColorProp(std::uint16_t property, TAlphaColor value);
    virtual std::int64_t GetBaseValueProp(std::uint16_t property) const;
    virtual void SetBaseValueProp(std::uint16_t property, std::int64_t value);
    virtual bool GetBoolProp(std::uint16_t property) const;
    virtual void SetBoolProp(std::uint16_t property, bool value);
    virtual std::int64_t GetEnumProp(std::uint16_t property) const;
    virtual void SetEnumProp(std::uint16_t property, std::int64_t value);
    virtual std::string GetTextProp(std::uint16_t property) const;
    virtual void SetTextProp(std::uint16_t property, const std::string& value);
    virtual double GetFloatProp(std::uint16_t property) const;
    virtual void SetFloatProp(std::uint16_t property, double value);

    // [SECTION] Painting dispatch.
    void DrawElement(TORXBaseDraw& surface);  // preview copies for data-bound items in preview and export
    void DrawPreview(TORXBaseDraw& surface);  // the preview copies of this item at the surface's cell
    void PrintElement(TORXBaseDraw& surface);

  protected:
    friend class TORXBaseLabel;  // moves items to the base layer when layers are cleared
    friend class TPickIndex;     // finds the item's entry without a search
    void PointsChanged();        // bounds and the document's repaint mark after the points moved

    std::string fID;
    TQVLItemType fItemType;
    TAlphaColor fColor = kOpaqueBlack;
    TQVLayerOpts fOptions = kDefaultItemOptions;
    TORXLayer* fLayer = nullptr;  // not owned
    std::int32_t fInID = 0;
    TORXBaseLabel* fOwner;  // not owned
    std::int32_t fPenWidth = 100;
    TQVLPtoA fPoints;
    TQVLAngle fAngle = TQVLAngle::ag0;
    TQVLRect fBoundsRect;
    TQVLRect fCheckRect;
    bool fChanged = false;
    TQVLItemState fState = TQVLItemState::isNormal;
    bool fNeedRead = false;
    bool fResize = false;
    bool aIsData = false;
    std::int16_t aRow = 0;
    std::int16_t aCol = 0;
    std::int64_t fmx = 0;
    std::int64_t fmy = 0;
    bool fFromPreview = false;
    std::int32_t fPickSlot = -1;  // the item's entry in the document's pick index, checked before use
    std::int32_t fContainerID = 0;
    TQVLContainerFrame fContainerFrame = TQVLContainerFrame::cfNone;
};

}  // namespace Orvex
