// Creating and changing items through their drawing-file form. Every kind reads its own keys, so the tools
// need nothing of a kind's class beyond the keys it stores, and a change of any property undoes as one step.
#pragma once

#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/item_types.h"
#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseItem;
class TORXBaseLabel;
}  // namespace Orvex

namespace Orvex::Host {

// The properties every add_ tool takes: layer, color, pen_width, line_type, name.
TJSON CommonItemProps();

// The drawing-file keys that the common properties in aArgs set: "Layer" (the active layer when absent),
// "Color", "PenWidth", "LineType", "ID". Throws EToolArgument for an unknown layer or a taken name.
TJSON CommonItemKeys(TORXBaseLabel& aDoc, const TJSON& aArgs, const TORXBaseItem* aExcept = nullptr);

// "Points": [{"X", "Y"}] in the drawing's unit, from base-unit points.
TJSON PointsKeys(const TORXBaseLabel& aDoc, const std::vector<TQVLPto64>& aPoints);
// The points of a "points" argument, in base units. Throws EToolArgument for a point out of range.
std::vector<TQVLPto64> PointsArg(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey);

// A new item of the kind with the keys merged over its defaults; records one creation step. Throws
// std::runtime_error when the document's item family cannot make the kind.
TORXBaseItem* CreateItemFromKeys(TORXBaseLabel& aDoc, TQVLItemType aType, const TJSON& aKeys);
// The same for a kind with a free number of points (polyline, polygon, Bézier), whose points (base units)
// are set directly: a long polyline's points never pass through their drawing-file form, which would be a
// JSON tree of as many objects.
TORXBaseItem* CreatePointListItem(TORXBaseLabel& aDoc, TQVLItemType aType, const TJSON& aKeys,
                                  const std::vector<TQVLPto64>& aPoints);

// Merges the keys over the item's current form and reads it back, recorded as one undo step.
void ChangeItemKeys(TORXBaseItem& aItem, const TJSON& aKeys);

// The links whose either end is the flow element with this internal id.
std::vector<TORXBaseItem*> LinksOf(const TORXBaseLabel& aDoc, std::int32_t aInID);

// Moves the items by (dx, dy) base units, links' own bend points with them; links to elements outside
// follow their ends. Records undo steps and leaves the selection empty.
void OffsetItems(TORXBaseLabel& aDoc, const std::vector<TORXBaseItem*>& aItems, std::int64_t aDx,
                 std::int64_t aDy);
// The union of the items' bounds (a line's zero height counts); empty for no items.
TQVLRect BoundsOf(const std::vector<TORXBaseItem*>& aItems);
// Grows the page (never shrinks it) so that every item lies on it with a margin; true when it grew.
bool GrowPageToContent(TORXBaseLabel& aDoc);
// {"x", "y", "width", "height"} in the drawing's unit.
TJSON BoxJson(const TORXBaseLabel& aDoc, const TQVLRect& aRect);

// The result of every add_ tool: name, id, index, kind, layer and bounds.
TJSON AddedResult(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem);

}  // namespace Orvex::Host
