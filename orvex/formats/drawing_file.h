// Drawing files on disk, for hosts and the command line: load, save and a short summary. Failures are
// values with one line of text, never exceptions.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "orvex/core/result.h"
#include "orvex/core/types.h"
#include "orvex/document/document_types.h"

namespace Orvex {

class TORXBaseLabel;

// What reading or writing a drawing file reports besides success. Codes: QVLErr::kNoFile (could not be
// read), kNoJson (not JSON, or not an object), kLimit (nests deeper or runs longer than a drawing may,
// orvex/io/json_text.h), kWrite.
struct TQVLFileReport {
    std::vector<std::string> Warnings;  // a drawing read with entries skipped: one line naming each
};
using TQVLFileResult = TQVLResult<TQVLFileReport>;

// Reads the drawing into document; on any failure the document is left as it was. Only a regular file is
// read (a FIFO or device would block or never end).
TQVLFileResult LoadDrawingFile(const std::string& fileName, TORXBaseLabel& document);
TQVLFileResult LoadDrawingText(const std::string& text, const std::string& name, TORXBaseLabel& document);
// Indented text with a final newline (indent < 0: compact). Every writer here replaces the file whole or
// not at all (orvex/core/safe_file.h): a failed or interrupted save leaves the old file as it was.
TQVLFileResult SaveDrawingFile(const std::string& fileName, const TORXBaseLabel& document, int indent = 2);

// What a file name's extension (ignoring case) asks a drawing to be written as.
enum class TQVLDrawingFormat : std::uint8_t { dfUnknown, dfJson, dfSvg };
TQVLDrawingFormat DrawingFormatFromExt(const std::string& fileName);
// The whole drawing as an SVG file, at natural size on a background of the drawing's surface colour.
TQVLFileResult SaveDrawingSVG(const std::string& fileName, const TORXBaseLabel& document);
// As the extension asks (.json indented, .svg); kWrite with a message naming the extension otherwise.
TQVLFileResult SaveDrawingAs(const std::string& fileName, const TORXBaseLabel& document);

struct TQVLDrawingSummary {
    TQVLEditorMode Mode = TQVLEditorMode::emLabelling;
    TQVLUnits Units = TQVLUnits::unMM;
    std::int32_t Layers = 0;
    std::int32_t Items = 0;
    std::map<std::string, std::int32_t> ItemsByKind;  // kind name -> count
    TQVLRect Bounds;                                  // base units; empty without items
};

TQVLDrawingSummary SummarizeDrawing(const TORXBaseLabel& document);
std::string_view EditorModeName(TQVLEditorMode mode);  // "labelling", "flowchart", "drawing", "interactive"

}  // namespace Orvex
