#include "host/layout/graphviz_text.h"

#include <graphviz/gvplugin.h>
#include <graphviz/gvplugin_textlayout.h>

#include "orvex/core/units.h"
#include "orvex/document/layer.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {

using Qvl::Types::kMMPerInch;
using Qvl::Types::kPointsPerInch;
constexpr double kMMPerPoint = kMMPerInch / kPointsPerInch;
constexpr double kDefaultPoints = 14;  // Graphviz's own default font size

// Graphviz asks for one line at a time; the font name it passes (Times-Roman unless a graph sets one) is
// not the face the captions are painted in, so only the size is taken from it.
boolean MeasureSpan(textspan_t* aSpan, char** aFontPath) {
    if (aFontPath != nullptr) *aFontPath = nullptr;
    const double points =
        aSpan->font != nullptr && aSpan->font->size > 0 ? aSpan->font->size : kDefaultPoints;
    const TLayoutSize extent = GraphvizTextExtent(aSpan->str != nullptr ? aSpan->str : "", points);
    aSpan->size.x = extent.Width;
    aSpan->size.y = extent.Height;
    // As Graphviz's own estimate: the layout's top at the line's top, the centre line a tenth of the size
    // below the middle.
    aSpan->yoffset_layout = 0;
    aSpan->yoffset_centerline = 0.1 * points;
    aSpan->layout = nullptr;
    aSpan->free_layout = nullptr;
    return TRUE;
}

gvtextlayout_engine_t gTextEngine = {MeasureSpan};

// Above the quality of Graphviz's Pango plugin, so that this one is chosen.
gvplugin_installed_t gTextTypes[] = {
    {0, "textlayout", 100, &gTextEngine, nullptr},
    {0, nullptr, 0, nullptr, nullptr},
};

gvplugin_api_t gTextApis[] = {
    {API_textlayout, gTextTypes},
    {static_cast<api_t>(0), nullptr},
};

char gPackageName[] = "orvex_text";
gvplugin_library_t gTextLibrary = {gPackageName, gTextApis};

}  // namespace

TLayoutSize GraphvizTextExtent(std::string_view aLine, double aPoints) {
    TQVLFont font;
    font.FontHeight = static_cast<float>(aPoints * kMMPerPoint);
    const ITextMetrics& metrics = QVLTextMetrics();
    const double perPoint = static_cast<double>(kBasePerMM) * kMMPerPoint;
    return {static_cast<double>(metrics.TextWidth(aLine, font)) / perPoint,
            static_cast<double>(metrics.LineHeight(font)) / perPoint};
}

GVC_t* NewGraphvizContextWithOwnText() {
    // Builtins are installed before the configuration's plugins are read, and the best text layout is
    // chosen after both; gvContext() is this call with an empty list.
    static const lt_symlist_t builtins[] = {
        {"gvplugin_orvex_text_LTX_library", &gTextLibrary},
        {nullptr, nullptr},
    };
    return gvContextPlugins(builtins, 1);
}

}  // namespace Orvex
