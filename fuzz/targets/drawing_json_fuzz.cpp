// A drawing file's text read into a headless document, then written back as JSON and SVG: whatever the
// reader accepted must be something the writers can handle, and the JSON written must read again.
#include <string>

#include "fuzz/targets/fuzz_targets.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"

namespace Orvex::Fuzz {

int FuzzDrawingJson(const std::uint8_t* aData, std::size_t aSize) {
    const std::string text(reinterpret_cast<const char*>(aData), aSize);
    TORXHeadlessLabel document;
    if (!LoadDrawingText(text, "fuzz", document)) return 0;
    const std::string json = document.GetJsonString();
    (void)document.SVG(TQVLExportSVG::esFile, 1.0f, false);
    (void)SummarizeDrawing(document);

    TORXHeadlessLabel again;
    FuzzCheck(static_cast<bool>(LoadDrawingText(json, "written", again)),
              "a written drawing does not read back");
    FuzzCheck(again.GetItemsCount() == document.GetItemsCount(), "items were lost on a round trip");
    return 0;
}

}  // namespace Orvex::Fuzz
