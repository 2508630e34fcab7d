// render_preview: the drawing, or a part of it, as a PNG image content with its size and scale beside it.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "host/paint/cairo_label.h"
#include "host/paint/export.h"
#include "host/tools/item_build.h"
#include "host/tools/preview.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

constexpr int kShrinkAttempts = 12;
// Room around the items a preview is cropped to, so that their outlines and arrow heads show whole.
constexpr std::int64_t kCropMargin = 5 * kBasePerMM;

}  // namespace

TJSON AppendPreview(const TORXBaseLabel& aDoc, const TPreviewRequest& aRequest, TJSON& aResult) {
    // Painting needs the Cairo family; one copy serves every attempt instead of one copy per attempt.
    std::unique_ptr<TORXCairoLabel> copy;
    const TORXBaseLabel* source = &aDoc;
    if (dynamic_cast<const TORXCairoLabel*>(&aDoc) == nullptr) {
        copy = std::make_unique<TORXCairoLabel>();
        copy->ReadJson(aDoc.GetJson());
        source = copy.get();
    }
    TQVLRasterOptions options;
    options.Pass = TQVLDrawState::dsEdit;
    options.Region = aRequest.Region;
    options.Scale = 1.0f;
    const TQVLPixelSize full = RasterSize(*source, options);
    const double longest = std::max(full.Width, full.Height);
    double scale = std::min(aRequest.Scale, static_cast<double>(aRequest.MaxSide) / longest);

    std::vector<std::uint8_t> png;
    for (int attempt = 0;; ++attempt) {
        options.Scale = static_cast<float>(scale);
        std::string error;
        if (!EncodePng(*source, options, png, error))
            throw EToolArgument(fmt::format("the preview could not be painted: {}", error));
        if (static_cast<std::int64_t>(png.size()) <= aRequest.MaxBytes) break;
        if (attempt == kShrinkAttempts)
            throw EToolArgument(fmt::format("even a small preview takes {} bytes, more than max_bytes {}",
                                            png.size(), aRequest.MaxBytes));
        // PNG size grows roughly with the pixel count, so the side shrinks with the square root.
        scale *= std::min(
            0.9, 0.9 * std::sqrt(static_cast<double>(aRequest.MaxBytes) / static_cast<double>(png.size())));
    }
    const TQVLPixelSize size = RasterSize(*source, options);
    const std::string data =
        Qvl::Utils::Base64Encode(std::string_view(reinterpret_cast<const char*>(png.data()), png.size()));
    aResult["content"].push_back({{"type", "image"}, {"data", data}, {"mimeType", "image/png"}});
    TJSON info = {{"format", "png"},
                  {"scale", std::round(scale * 10000.0) / 10000.0},
                  {"item_count", aDoc.GetItemsCount()},
                  {"byte_size", png.size()},
                  {"width", size.Width},
                  {"height", size.Height}};
    if (aRequest.Region) info["region"] = BoxJson(aDoc, *aRequest.Region);
    return info;
}

namespace {

// The part of the drawing a call asks for: a region, or the items named by id with a margin.
std::optional<TQVLRect> CropOf(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    if (aArgs.contains("region") && aArgs.contains("item_ids"))
        throw EToolArgument("give either \"region\" or \"item_ids\", not both");
    if (aArgs.contains("region")) {
        const TJSON& r = aArgs["region"];
        const TJSON named = {{"region.x", r["x"]},
                             {"region.y", r["y"]},
                             {"region.width", r["width"]},
                             {"region.height", r["height"]}};
        const std::int64_t x = Length(aDoc, named, "region.x");
        const std::int64_t y = Length(aDoc, named, "region.y");
        return TQVLRect(x, y, x + Size(aDoc, named, "region.width"), y + Size(aDoc, named, "region.height"));
    }
    if (!aArgs.contains("item_ids")) return std::nullopt;
    std::vector<TORXBaseItem*> items;
    for (const auto& id : aArgs["item_ids"]) {
        const auto value = id.get<std::int64_t>();
        TORXBaseItem* item =
            value > 0 && value <= INT32_MAX ? ItemByInID(aDoc, static_cast<std::int32_t>(value)) : nullptr;
        if (item == nullptr) throw EToolArgument(fmt::format("item_ids: no item has the id {}", id.dump()));
        items.push_back(item);
    }
    TQVLRect crop = BoundsOf(items);
    crop.Inflate(kCropMargin, kCropMargin);
    return crop;
}

}  // namespace

void RegisterPreviewTools(TToolRegistry& aRegistry) {
    aRegistry.Add(
        "render_preview",
        "A PNG to check the result by eye (overlaps, clipped text, arrows): 96 dpi times scale "
        "(1), shrunk to fit max_side pixels (1600) and max_bytes (750000). Crop to a region or "
        "item_ids.",
        ObjectSchema(
            {{"scale", NumberProp("", 0.01, 4.0)},
             {"max_bytes", IntegerProp("", 10'000, 10'000'000)},
             {"max_side", IntegerProp("", 64, 8000)},
             {"region", ObjectSchema({{"x", NumberProp("")},
                                      {"y", NumberProp("")},
                                      {"width", NumberProp("")},
                                      {"height", NumberProp("")}},
                                     {"x", "y", "width", "height"})},
             {"item_ids", TJSON{{"type", "array"}, {"items", {{"type", "integer"}}}, {"minItems", 1}}}}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            TPreviewRequest request;
            request.Scale = aArgs.value("scale", 1.0);
            request.MaxBytes = aArgs.value("max_bytes", kDefaultPreviewBytes);
            request.MaxSide = aArgs.value("max_side", kDefaultPreviewSide);
            request.Region = CropOf(aDoc, aArgs);
            TJSON result = {{"content", TJSON::array()}};
            TJSON info = AppendPreview(aDoc, request, result);
            result["content"].push_back({{"type", "text"}, {"text", info.dump()}});
            result["structuredContent"] = std::move(info);
            return result;
        },
        nullptr);
}

}  // namespace Orvex::Host
