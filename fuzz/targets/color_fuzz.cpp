// Colour texts: whatever TryParseColor accepts must write back as hex and read back as the same colour.
#include <stdexcept>
#include <string>

#include "fuzz/targets/fuzz_targets.h"
#include "orvex/core/color.h"
#include "orvex/io/json_color.h"
#include "orvex/io/json_text.h"

namespace Orvex::Fuzz {

int FuzzColor(const std::uint8_t* aData, std::size_t aSize) {
    using namespace Qvl::Utils;
    const std::string_view text(reinterpret_cast<const char*>(aData), aSize);
    TAlphaColor color = 1;
    if (TryParseColor(text, color)) {
        TAlphaColor again = 0;
        FuzzCheck(TryParseColor(AlphaColorToHex(color), again) && again == color,
                  "a parsed colour does not survive its hex form");
    } else {
        FuzzCheck(color == 0, "a rejected colour text left a value behind");
    }
    // The documented failure of the strict hex reader is std::invalid_argument; anything else escapes.
    try {
        (void)HexToTAlphaColor(text);
    } catch (const std::invalid_argument&) {
    }
    // The JSON colour readers take whatever a drawing file holds under their keys.
    const TJSON object = ParseJsonOrDiscarded(text);
    if (object.is_object()) {
        (void)ParseJsonColor(object);
        (void)ParseJsColor(object);
    }
    return 0;
}

}  // namespace Orvex::Fuzz
