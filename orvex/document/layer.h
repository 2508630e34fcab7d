// Layers, dimension styles and counters: the named, ordered objects a document keeps beside its items.
// Their JSON form lives in layer_json.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "orvex/core/font.h"
#include "orvex/core/types.h"
#include "orvex/document/item_types.h"
#include "orvex/io/json_fwd.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXBaseLabel;

// A background image of a layer; margins in base units, Img the embedded image as text (base64).
struct TQVLLayerImage {
    std::string File;
    std::int32_t ImageType = 0;
    bool PrintImage = false;
    bool Embeded = false;
    std::int64_t ImgMarLeft = 0;
    std::int64_t ImgMarTop = 0;
    std::int64_t ImgMarBottom = 0;
    std::int64_t ImgMarRight = 0;
    std::string Img;
};

// A map background of a layer: the image fields plus the map view.
struct TQVLLayerMapping : TQVLLayerImage {
    std::int32_t Provider = 0;
    std::int32_t Zoom = 0;
    double Latitude = 0.0;
    double Longitude = 0.0;
    bool ShowMapCenter = false;
};

class TORXLayer {
  public:
    TORXLayer(TORXBaseLabel* owner, std::string name) : fName(std::move(name)), fOwner(owner) {}

    TORXBaseLabel* QVLab() const { return fOwner; }

    std::string fName;
    TAlphaColor fColor = kOpaqueBlack;
    TAlphaColor fBackColor = kOpaqueWhite;
    bool fFill = false;
    std::int32_t fZPos = 0;
    TQVLayerOpts fOptions = kDefaultItemOptions;
    TQVLLayerImage fImage;
    TQVLLayerMapping fMapping;
    TQVLFont fFont;
    TQVLineType fLineType = TQVLineType::iiSolid;
    std::int32_t fPenWidth = 100;  // base units

    TJSON WriteJson() const;  // a new object; the caller owns it
    void ReadJson(std::int32_t version, const TJSON& obj);

  private:
    TORXBaseLabel* fOwner;  // not owned
};

class TORXDimStyle {
  public:
    TORXDimStyle(std::int32_t id, std::string name) : fID(id), fName(std::move(name)) {}

    std::int32_t fID;
    std::string fName;
    TAlphaColor fDimColor = 0xFF808080;
    TAlphaColor fFillColor = kOpaqueBlack;
    TAlphaColor fExtColor = 0xFF808080;
    TAlphaColor fHeadColor = kOpaqueBlack;
    TQVLineType fDimLineType = TQVLineType::iiSolid;
    std::int32_t fDimPenWidth = 100;  // base units
    TQVLineType fExtLineType = TQVLineType::iiSolid;
    std::int32_t fExtPenWidth = 100;
    TQVLTermType fHeadType = TQVLTermType::ttFillArrow;
    float fHeadSize = 2.5f;  // millimetres, as every size below
    bool fArrowOpen = true;
    TQVLFont fFont;
    std::int32_t fTextPos = 0;
    std::int32_t fRadialStyle = 0;
    bool fDimBreak = false;
    float fDimSpace = 1.0f;
    float fExtSize = 2.0f;
    float fExtGap = 1.0f;
    std::string fFormat = "0.00";
    std::string fPrefix;
    std::string fSuffix;
    std::int32_t fUnit = 0;

    TJSON WriteJson() const;
    void ReadJson(std::int32_t version, const TJSON& obj);
};

// A number printed on labels, counting from NumFrom to NumTo by Step, each value Repeat times.
class TORXCounter {
  public:
    std::string fName;
    std::int64_t fNumFrom = 1;
    std::int64_t fNumTo = 9999;
    std::int64_t fStep = 1;
    std::int32_t fRepeat = 1;
    std::string fFormat = "0";
    std::string fBefore;
    std::string fAfter;

    TJSON WriteJson() const;
    void ReadJson(std::int32_t version, const TJSON& obj);
};

}  // namespace Orvex
