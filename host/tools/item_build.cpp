#include "host/tools/item_build.h"

#include <fmt/format.h>

#include <memory>

#include "host/tools/caption_fit.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/paper.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json_text.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/link_items.h"

namespace Orvex::Host {

namespace {

constexpr std::int32_t kCmdItemKeys = 64;  // above the document's own command kinds

// Reads a drawing-file form into the item without recording: the caller records the step.
void ReadSilently(TORXBaseItem& aItem, const TJSON& aObj, const TQVLPtoA* aPoints = nullptr) {
    TORXBaseLabel& doc = *aItem.QVLab();
    TOrvexOptions options = doc.Options();
    const bool recording = options.Contains(TOrvexOption::loUndoRedo);
    options.Exclude(TOrvexOption::loUndoRedo);
    doc.SetOptions(options);
    aItem.ReadJson(kDrawingVersion, aObj);
    if (aPoints != nullptr) aItem.SetPointsProp(*aPoints, kPropPoints);
    if (recording) {
        options.Include(TOrvexOption::loUndoRedo);
        doc.SetOptions(options);
    }
    // Every kind recomputes what it derives from its keys now, so the answer carries the final bounds;
    // links are bound by id and follow the element they join.
    doc.AssignSymbolAndFlowLinks();
    doc.ChangeState(TOrvexState::lsCalc, &aItem);
    doc.CalcPending();
    aItem.UpdateBounds();
}

// Keeps an item's whole drawing-file form; restoring it records the inverse on the other stack. Runs of
// changes to one item are not merged: each tool call is one step.
class TItemKeysCmd final : public TORXCmd {
  public:
    explicit TItemKeysCmd(TORXBaseItem* aItem) : TORXCmd(kCmdItemKeys, aItem, kPropNone) {}

    static void AddCommand(TORXBaseItem* aItem) {
        if (aItem->FromPreview() || !aItem->QVLab()->Options().Contains(TOrvexOption::loUndoRedo)) return;
        Push(std::make_unique<TItemKeysCmd>(aItem));
    }

    void RestoreState() override {
        const TJSON stored = ParseJsonOrDiscarded(fJsonText);
        AddCommand(fItem);
        ReadSilently(*fItem, stored);
    }

  protected:
    void StoreState() override { fJsonText = fItem->WriteJson().dump(); }

  private:
    std::string fJsonText;
};

// Object-valued keys such as "Font" merge one level deep, so a call that sets the font's height keeps
// its name; every other value is replaced.
void MergeKeys(TJSON& aObj, const TJSON& aKeys) {
    for (const auto& [key, value] : aKeys.items()) {
        auto it = aObj.find(key);
        if (it != aObj.end() && it->is_object() && value.is_object() && !value.contains("R"))
            for (const auto& [inner, v] : value.items()) (*it)[inner] = v;
        else
            aObj[key] = value;
    }
}

}  // namespace

std::vector<TORXBaseItem*> LinksOf(const TORXBaseLabel& aDoc, std::int32_t aInID) {
    return aDoc.LinksOf(aInID);
}

TJSON CommonItemProps() {
    // Shared by every add_ tool; their descriptions state the defaults once.
    return ObjectSchema({{"layer", IntegerProp("", 1, INT32_MAX)},
                         {"color", ColorProp("")},
                         {"pen_width", NumberProp("")},
                         {"line_type", EnumProp("", LineTypeNames())},
                         {"name", StringProp("")}});
}

TJSON CommonItemKeys(TORXBaseLabel& aDoc, const TJSON& aArgs, const TORXBaseItem* aExcept) {
    TJSON keys = TJSON::object();
    if (aArgs.contains("layer"))
        keys["Layer"] = aDoc.LayerIdx(ResolveLayer(aDoc, aArgs, "layer"));
    else if (aExcept == nullptr)
        keys["Layer"] = aDoc.LayerIdx(aDoc.GetActiveLayer());
    if (aArgs.contains("color"))
        keys["Color"] = TJSONUtils::SetAlphaColor(ParseToolColor(aArgs["color"].get<std::string>(), "color"));
    if (aArgs.contains("pen_width")) {
        const std::int64_t width = Length(aDoc, aArgs, "pen_width");
        if (width < 0 || width > 100 * kBasePerMM)
            throw EToolArgument(fmt::format("argument \"pen_width\" must lie between 0 and {:g} {}",
                                            ToUnit(aDoc, 100 * kBasePerMM), UnitName(aDoc.Units())));
        keys["PenWidth"] = TJSONUtils::BaseToMM(width);
    }
    if (aArgs.contains("line_type"))
        keys["LineType"] = EnumIndex(LineTypeNames(), aArgs["line_type"].get<std::string>());
    if (aArgs.contains("name")) {
        const std::string name(Trim(aArgs["name"].get_ref<const std::string&>()));
        if (name.empty()) throw EToolArgument("argument \"name\" must not be empty");
        for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i)
            if (aDoc.GetItem(i) != aExcept && SameTextIgnoringCase(aDoc.GetItem(i)->ID(), name))
                throw EToolArgument(fmt::format("the name \"{}\" is taken by the item at index {}", name, i));
        keys["ID"] = name;
    }
    return keys;
}

TJSON PointsKeys(const TORXBaseLabel& aDoc, const std::vector<TQVLPto64>& aPoints) {
    TJSON points = TJSON::array();
    for (const auto& p : aPoints) points.push_back({{"X", ToUnit(aDoc, p.X)}, {"Y", ToUnit(aDoc, p.Y)}});
    return points;
}

std::vector<TQVLPto64> PointsArg(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey) {
    std::vector<TQVLPto64> points;
    const TJSON& list = aArgs.at(std::string(aKey));
    points.reserve(list.size());
    // Each coordinate is checked where it stands; its name is written only when it is refused, since a
    // polyline may have millions of points.
    const auto coordinate = [&](std::size_t aIndex, const char* aAxis) {
        const TJSON& value = list[aIndex][aAxis];
        try {
            const TJSON named = {{"v", value}};
            return Length(aDoc, named, "v");
        } catch (const EToolArgument&) {
            const std::string at = fmt::format("{}[{}].{}", aKey, aIndex, aAxis);
            return Length(aDoc, TJSON{{at, value}}, at);
        }
    };
    for (std::size_t i = 0; i < list.size(); ++i) points.push_back({coordinate(i, "x"), coordinate(i, "y")});
    return points;
}

namespace {
TORXBaseItem* NewItem(TORXBaseLabel& aDoc, TQVLItemType aType) {
    TORXBaseItem* item = aDoc.CreateItem(aType);
    if (item == nullptr)
        throw std::runtime_error(
            fmt::format("this server cannot create {} items", KindNames()[static_cast<std::size_t>(aType)]));
    return item;
}
}  // namespace

TORXBaseItem* CreateItemFromKeys(TORXBaseLabel& aDoc, TQVLItemType aType, const TJSON& aKeys) {
    TORXBaseItem* item = NewItem(aDoc, aType);
    TJSON obj = item->WriteJson();
    MergeKeys(obj, aKeys);
    ReadSilently(*item, obj);
    return item;
}

TORXBaseItem* CreatePointListItem(TORXBaseLabel& aDoc, TQVLItemType aType, const TJSON& aKeys,
                                  const std::vector<TQVLPto64>& aPoints) {
    if (!IsPointListKind(aType))
        throw std::logic_error("CreatePointListItem takes polylines, polygons and curves");
    TORXBaseItem* item = NewItem(aDoc, aType);
    TJSON obj = item->WriteJson();
    MergeKeys(obj, aKeys);
    TQVLPtoA points;
    points.reserve(aPoints.size());
    for (const TQVLPto64& p : aPoints) points.push_back({p.X, p.Y});
    ReadSilently(*item, obj, &points);
    return item;
}

void ChangeItemKeys(TORXBaseItem& aItem, const TJSON& aKeys) {
    TJSON obj = aItem.WriteJson();
    MergeKeys(obj, aKeys);
    // A flow element's "TextPos" lists where its caption's lines stand, which follows from text, font and
    // box; kept, it would place a new text by the old one's lines. Without it the caption is laid out
    // again. (An arrow line's "TextPos" is a setting, a number, and stays.)
    if (const auto it = obj.find("TextPos"); it != obj.end() && it->is_array() && !aKeys.contains("TextPos"))
        obj.erase(it);
    TItemKeysCmd::AddCommand(&aItem);
    ReadSilently(aItem, obj);
}

void OffsetItems(TORXBaseLabel& aDoc, const std::vector<TORXBaseItem*>& aItems, std::int64_t aDx,
                 std::int64_t aDy) {
    if (aDx == 0 && aDy == 0) return;
    aDoc.ClearSelection(false);
    for (TORXBaseItem* item : aItems) {
        if (auto* link = dynamic_cast<TORXBaseLink*>(item)) {
            // Ends follow their elements; the bends the link keeps of its own move here.
            const std::vector<TQVLPto64> points = link->LinkPoints();
            for (std::size_t i = 0; i < points.size(); ++i)
                link->SetLinkPoint(static_cast<std::int32_t>(i + 1), GetBaseValue(points[i].X + aDx),
                                   GetBaseValue(points[i].Y + aDy));
        } else {
            aDoc.SelectItem(item, false);
        }
    }
    aDoc.MoveSize(aDx, aDy, 0, 0);
    aDoc.ClearSelection(false);
    aDoc.CalcPending();
}

TQVLRect BoundsOf(const std::vector<TORXBaseItem*>& aItems) {
    if (aItems.empty()) return {};
    TQVLRect r = aItems.front()->BoundsRect();
    for (const TORXBaseItem* item : aItems) {
        const TQVLRect& b = item->BoundsRect();
        r.Left = std::min(r.Left, b.Left), r.Top = std::min(r.Top, b.Top);
        r.Right = std::max(r.Right, b.Right), r.Bottom = std::max(r.Bottom, b.Bottom);
    }
    return r;
}

bool GrowPageToContent(TORXBaseLabel& aDoc) {
    if (aDoc.GetItemsCount() == 0) return false;
    constexpr std::int64_t kMargin = 10 * kBasePerMM;
    const TQVLRect content = aDoc.ItemsBounds();
    TORXMeasure& m = aDoc.Measure();
    const std::int64_t width = std::max(m.fLabelWidth, content.Right + kMargin);
    const std::int64_t height = std::max(m.fLabelHeight, content.Bottom + kMargin);
    if (width == m.fLabelWidth && height == m.fLabelHeight) return false;
    m.fLabelWidth = width;
    m.fLabelHeight = height;
    m.fPaperName = "User";
    m.fPaperSize = PaperSizes()[static_cast<std::size_t>(UserPaperIndex())].Code;
    aDoc.ChangeState(TOrvexState::lsUpdateMeasure);
    return true;
}

TJSON BoxJson(const TORXBaseLabel& aDoc, const TQVLRect& aRect) {
    return {{"x", ToUnit(aDoc, aRect.Left)},
            {"y", ToUnit(aDoc, aRect.Top)},
            {"width", ToUnit(aDoc, aRect.Right - aRect.Left)},
            {"height", ToUnit(aDoc, aRect.Bottom - aRect.Top)}};
}

TJSON AddedResult(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem) {
    TJSON summary = ItemSummary(aDoc, aItem);
    if (CaptionClipped(aItem)) summary["text_clipped"] = true;
    return StructuredResult(std::move(summary));
}

}  // namespace Orvex::Host
