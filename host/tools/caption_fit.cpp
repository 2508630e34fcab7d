#include "host/tools/caption_fit.h"

#include <cmath>

#include "host/layout/diagram_loader.h"
#include "host/layout/layout_types.h"
#include "orvex/core/units.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex::Host {

TCaptionRoom FlowCaptionRoom(const TORXBaseItem& aFlow) {
    const TTextMetricsScope metrics(QVLTextMetrics(aFlow.QVLab()));
    const TJSON json = aFlow.WriteJson();
    const TQVLFont font = TJSONUtils::GetFont(json.value("Font", TJSON::object()));
    const TLayoutSize text = FontMeasure(font)(json.value("Text", std::string()));
    const auto shape = static_cast<TQVLFlowType>(json.value("FlowType", 1));
    const TLayoutSize needed = FlowBoxSize(shape, text);
    const TQVLRect box = aFlow.BoundsRect();
    const auto base = [](double mm) {
        return static_cast<std::int64_t>(std::ceil(mm * static_cast<double>(kBasePerMM)));
    };
    return {base(needed.Width), base(needed.Height), box.GetWidth(), box.GetHeight()};
}

bool CaptionClipped(const TORXBaseItem& aItem) {
    if (aItem.ItemType() == TQVLItemType::itFlow) return !FlowCaptionRoom(aItem).Fits();
    if (const auto* para = dynamic_cast<const TORXBasePara*>(&aItem)) {
        // The lines run along the box's width when the paragraph is turned.
        const bool turned = para->Angle() == TQVLAngle::ag90 || para->Angle() == TQVLAngle::ag270;
        const TQVLRect box = para->BoundsRect();
        return para->LinesHeight() > (turned ? box.GetWidth() : box.GetHeight());
    }
    return false;
}

}  // namespace Orvex::Host
