// render_preview: the drawing as a PNG image content, with its size and scale beside it.
#include <fmt/format.h>

#include <cmath>
#include <string>
#include <vector>

#include "host/paint/export.h"
#include "host/tools/preview.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

constexpr double kSmallestScale = 0.05;
constexpr int kShrinkAttempts = 6;

}  // namespace

TJSON AppendPreview(const TORXBaseLabel& aDoc, double aScale, std::int64_t aMaxBytes, TJSON& aResult) {
    double scale = aScale;
    std::vector<std::uint8_t> png;
    for (int attempt = 0; attempt <= kShrinkAttempts; ++attempt) {
        TQVLRasterOptions options;
        options.Scale = static_cast<float>(scale);
        options.Pass = TQVLDrawState::dsEdit;
        std::string error;
        if (!CheckRasterOptions(aDoc, options, error) || !EncodePng(aDoc, options, png, error))
            throw EToolArgument(fmt::format("the preview could not be painted: {}", error));
        if (static_cast<std::int64_t>(png.size()) <= aMaxBytes) break;
        if (attempt == kShrinkAttempts || scale <= kSmallestScale)
            throw EToolArgument(fmt::format("even a small preview takes {} bytes, more than max_bytes {}",
                                            png.size(), aMaxBytes));
        // PNG size grows roughly with the pixel count, so the side shrinks with the square root.
        scale = std::max(
            kSmallestScale,
            scale * 0.9 * std::sqrt(static_cast<double>(aMaxBytes) / static_cast<double>(png.size())));
    }
    const std::string data =
        Qvl::Utils::Base64Encode(std::string_view(reinterpret_cast<const char*>(png.data()), png.size()));
    aResult["content"].push_back({{"type", "image"}, {"data", data}, {"mimeType", "image/png"}});
    return {{"format", "png"},
            {"scale", std::round(scale * 1000.0) / 1000.0},
            {"item_count", aDoc.GetItemsCount()},
            {"byte_size", png.size()}};
}

void RegisterPreviewTools(TToolRegistry& aRegistry) {
    aRegistry.Add(
        "render_preview",
        "Render the drawing as a PNG picture and return it, to check the result visually (overlaps, clipped "
        "or unreadable text, arrows). 96 dpi times scale; the picture is shrunk until it fits max_bytes. "
        "Returns the image and {format, scale, item_count, byte_size}.",
        ObjectSchema({{"scale", NumberProp("Zoom of the picture, 1 = 96 dpi. Default 1.", 0.05, 4.0)},
                      {"max_bytes",
                       IntegerProp("Largest PNG to return, in bytes. Default 750000.", 10'000, 10'000'000)}}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            TJSON result = {{"content", TJSON::array()}};
            TJSON info = AppendPreview(aDoc, aArgs.value("scale", 1.0),
                                       aArgs.value("max_bytes", kDefaultPreviewBytes), result);
            result["content"].push_back({{"type", "text"}, {"text", info.dump()}});
            result["structuredContent"] = std::move(info);
            return result;
        });
}

}  // namespace Orvex::Host
