// The rich-text markup parser on arbitrary text: every segment must name a format that exists, and the
// markup composed from the result must parse again. Until the item kinds with rich text are part of the
// build, the body has nothing to exercise and accepts every input.
#include "fuzz/targets/fuzz_targets.h"

#if __has_include("orvex/items/rich_text.h")
#include "orvex/items/rich_text.h"
#define ORVEX_HAS_RICH_TEXT 1
#endif

namespace Orvex::Fuzz {

int FuzzRichText(const std::uint8_t* aData, std::size_t aSize) {
#ifdef ORVEX_HAS_RICH_TEXT
    const std::string_view text(reinterpret_cast<const char*>(aData), aSize);
    const TRichTextFormat base;
    const auto result = TRichTextParser::Parse(text, base, TQVLHorzAlign::haLeft);
    for (const auto& segment : result.Segments)
        FuzzCheck(
            segment.FormatIndex >= 0 && static_cast<std::size_t>(segment.FormatIndex) < result.Formats.size(),
            "a segment names a format that does not exist");
    const std::string markup = TRichTextParser::Compose(result, base, TQVLHorzAlign::haLeft);
    const auto again = TRichTextParser::Parse(markup, base, TQVLHorzAlign::haLeft);
    FuzzCheck(TRichTextParser::PlainText(again).size() <= markup.size() + again.Segments.size(),
              "parsing composed markup produced more text than it holds");
#else
    (void)aData;
    (void)aSize;
#endif
    return 0;
}

}  // namespace Orvex::Fuzz
