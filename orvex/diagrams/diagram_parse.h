// The entry points of diagram import: format detection, parsing into a model, and the loader hook
// through which a layout stage places a parsed diagram on a drawing document.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "orvex/diagrams/diagram_model.h"
#include "orvex/document/document_services.h"

namespace Orvex {
class TORXBaseLabel;

// dgPlantUML when a PlantUML start marker appears anywhere in the text, else dgMermaid; never dgAuto.
TQVLDiagramFormat QVLDetectDiagramFormat(std::string_view aText);
// From the file name's extension, case-insensitively; dgAuto when it names neither format.
TQVLDiagramFormat QVLDiagramFormatFromExt(std::string_view aFileName);

// A new model, owned by the caller. dgAuto is resolved by detection. An empty result gets the error
// DIAGRAM_EMPTY_RESULT. In raising mode the first warning or error raises EQVLDiagramParseError instead.
std::unique_ptr<TORXDiagramModel> QVLParseDiagram(std::string_view aText, TQVLDiagramFormat aFormat,
                                                  bool aRaiseOnError);
std::unique_ptr<TORXDiagramModel> QVLParseDiagram(std::string_view aText, TQVLDiagramFormat aFormat);

// The layout stage, registered by the host: parses and places the diagram, true when it did. Called on the
// caller's thread; the format may still be dgAuto.
using TQVLDiagramLoader = bool (*)(TORXBaseLabel& aDocument, std::string_view aText,
                                   TQVLDiagramFormat aFormat);
void QVLSetDiagramLoader(TQVLDiagramLoader aLoader);  // replaces the previous one; nullptr removes it
TQVLDiagramLoader QVLGetDiagramLoader();
// The loader that serves this document: its own (TQVLDocumentServices) when it has one, else the
// process-wide one as it is at this call; empty when there is neither.
TQVLDiagramLoaderFunc QVLDiagramLoaderOf(const TORXBaseLabel& aDocument);

// What the document's LoadFromDiagramText and LoadFromDiagram do: false without a loader, else the answer
// of the document's loader. The file is read whole as UTF-8 (a byte-order mark dropped), or as
// Windows-1252 when it is not valid UTF-8; dgAuto becomes the format of the file's extension, which may
// still be dgAuto.
bool QVLLoadDiagramText(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat);
bool QVLLoadDiagramFile(TORXBaseLabel& aDocument, const std::string& aFileName, TQVLDiagramFormat aFormat);

// The two steps of QVLLoadDiagramFile that need no document. False when the file cannot be read.
bool QVLReadDiagramFile(const std::string& aFileName, std::string& aText);
TQVLDiagramFormat QVLResolveFileFormat(std::string_view aFileName, TQVLDiagramFormat aFormat);

}  // namespace Orvex
