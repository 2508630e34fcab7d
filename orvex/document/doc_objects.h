// The document-level objects a drawing carries beside its items: page measures, background surface,
// settings, print information, data binding, map settings and library symbols. Their JSON form lives in
// drawing_json.cpp; lengths are held in base units, sizes that users type in millimetres.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

// Units and drawing scale, the label and the page of labels, and the title block of technical drawings.
class TORXMeasure {
  public:
    TQVLUnits fUnits = TQVLUnits::unMM;
    std::string fLabelName;
    std::string fAuthor;
    std::string fNote;
    std::int64_t fLabelWidth = 100000;  // base units
    std::int64_t fLabelHeight = 50000;
    std::int64_t fMarginLeft = 0;
    std::int64_t fMarginTop = 0;
    std::int32_t fRows = 1;
    std::int32_t fColumns = 1;
    std::int64_t fRowGap = 0;
    std::int64_t fColumnGap = 0;
    std::int64_t fPaperWidth = 210000;
    std::int64_t fPaperHeight = 297000;
    std::int32_t fPaperSize = 9;  // the printer's code of A4
    std::string fPaperName = "A4";
    std::int64_t fDrawScale = 1;  // N of 1:N
    bool fContinousPaper = false;
    std::int32_t fLabelType = 0;
    std::int64_t fInnerCircle = 0;
    std::string fFormat = "0.00";
    bool fIncludeUnit = false;
    std::string fPromoter;
    std::string fProject;
    std::string fTitle;
    std::string fDate;
    std::string fPlanNumber;

    void Reset() { *this = TORXMeasure{}; }
};

class TORXBackSurf {
  public:
    explicit TORXBackSurf(bool print) : fPrint(print) {}
    TAlphaColor fColor = kOpaqueWhite;
    TAlphaColor fToColor = kOpaqueWhite;  // the far end of a gradient
    bool fPrint;
    std::string fFileNameImg;
    std::int32_t fStyle = 0;
};

// Terminators and link spacing of flow charts.
class TORXSettings {
  public:
    TAlphaColor fTermColor = kOpaqueBlack;
    TAlphaColor fFillTermColor = kOpaqueBlack;
    float fTermSize = 2.5f;  // millimetres
    float fLinkGap = 5.0f;   // millimetres
};

class TORXBasePrintInfo {
  public:
    std::int32_t fNumLabels = 1;
    std::int32_t fRepetition = 1;
    std::int32_t fPrinterOrientation = 0;
};

// Where data-bound items take their values from. Only the stored settings live here: the data sets
// themselves belong to the host.
class TORXData {
  public:
    std::int32_t fDataType = 0;
    bool fLinkData = false;
    std::string fDataSource;
    std::string fFieldRepeat;
    bool fSaveJson = false;
    std::string fDataJson;  // the data set as JSON text when it is saved with the drawing
    std::string fCsvFileName;
    bool fCsvHeader = true;
    std::string fCsvSeparator = ",";
    std::string fCsvQuote = "\"";
    std::vector<std::string> fCsvFields;
    std::vector<std::string> fValList;  // fixed values offered for fields
    std::vector<std::string> fListAsk;  // fields asked for before printing

    bool HasData() const { return !fDataJson.empty(); }
    // Drops saved data that is not a JSON array or object, so a broken file cannot feed the preview.
    void CheckJson();
};

// The map provider used for geodata backgrounds.
class TORXMapping {
  public:
    std::int32_t fProvider = 0;
    std::string fUrl;
    std::int32_t fZoom = 0;
};

// A symbol of the drawing's library, kept as the object it was read from (compact text, key order kept):
// symbols are drawn by the host.
class TORXBaseLibSymbol {
  public:
    void ReadJson(const TJSON& obj);
    TJSON WriteJson() const;
    std::string Name() const;  // its "Name" key, or empty

  private:
    std::string fJsonText = "{}";
};

}  // namespace Orvex
