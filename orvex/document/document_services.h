// What a document needs from its host beyond its item family: the layout stage that places an imported
// diagram, and the glyph metrics its texts are laid out with. A document given none uses the process-wide
// ones (QVLSetDiagramLoader, QVLSetTextMetrics), so a host that configures the process once passes nothing;
// a host that keeps differently configured documents side by side gives each its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace Orvex {

class TORXBaseLabel;
class ITextMetrics;                           // orvex/items/text_metrics.h
enum class TQVLDiagramFormat : std::uint8_t;  // orvex/diagrams/diagram_model.h

// Parses and places a diagram on the document, true when it did; called on the caller's thread, with a
// format that may still be dgAuto. Unlike the process-wide function pointer it may carry its own state;
// it is called through a copy, so state it must keep between loads lives behind a pointer or reference.
using TQVLDiagramLoaderFunc =
    std::function<bool(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat)>;

struct TQVLDocumentServices {
    TQVLDiagramLoaderFunc DiagramLoader;        // empty: the process-wide loader
    const ITextMetrics* TextMetrics = nullptr;  // not owned, outlives the document; null: the process-wide
};

}  // namespace Orvex
