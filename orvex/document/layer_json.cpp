// Layers, dimension styles and counters in drawing files. Lengths are millimetres, pen widths too.
#include <algorithm>

#include "orvex/document/layer.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

template <class E>
E ReadEnum(const TJSON& obj, std::string_view key, int count) {
    return static_cast<E>(std::clamp<std::int64_t>(U::GetInt(obj, key), 0, count - 1));
}

void WriteImageFields(TJSON& obj, const TQVLLayerImage& image) {
    obj["ImgMarLeft"] = U::BaseToMM(image.ImgMarLeft);
    obj["ImgMarTop"] = U::BaseToMM(image.ImgMarTop);
    obj["ImgMarBottom"] = U::BaseToMM(image.ImgMarBottom);
    obj["ImgMarRight"] = U::BaseToMM(image.ImgMarRight);
    obj["Img"] = image.Img;
}

void ReadImageFields(const TJSON& obj, TQVLLayerImage& image) {
    image.File = U::GetString(obj, "File");
    image.ImageType = static_cast<std::int32_t>(U::GetInt(obj, "ImageType"));
    image.PrintImage = U::GetBool(obj, "PrintImage");
    image.Embeded = U::GetBool(obj, "Embeded");
    image.ImgMarLeft = U::MMToBase(U::GetFloat(obj, "ImgMarLeft"));
    image.ImgMarTop = U::MMToBase(U::GetFloat(obj, "ImgMarTop"));
    image.ImgMarBottom = U::MMToBase(U::GetFloat(obj, "ImgMarBottom"));
    image.ImgMarRight = U::MMToBase(U::GetFloat(obj, "ImgMarRight"));
    image.Img = U::GetString(obj, "Img");
}

constexpr int kLineTypeCount = 12;
constexpr int kTermTypeCount = 12;
}  // namespace

TJSON TORXLayer::WriteJson() const {
    const auto has = [&](TQVLayerOp op) { return fOptions.Contains(op); };
    TJSON obj = TJSON::object();
    obj["Name"] = fName;
    obj["Color"] = U::SetAlphaColor(fColor);
    obj["BackColor"] = U::SetAlphaColor(fBackColor);
    obj["Fill"] = fFill;
    obj["ZPos"] = fZPos;
    obj["Options"] = TJSON{{"Visible", has(TQVLayerOp::lopVisible)},
                           {"Print", has(TQVLayerOp::lopPrint)},
                           {"Selectable", has(TQVLayerOp::lopSelectable)},
                           {"Export", has(TQVLayerOp::lopExport)},
                           {"Box", has(TQVLayerOp::lopBox)},
                           {"Image", has(TQVLayerOp::lopImage)},
                           {"Map", has(TQVLayerOp::lopMap)},
                           {"PrintBack", has(TQVLayerOp::lopPrintBack)},
                           {"ExportBack", has(TQVLayerOp::lopExportBack)}};
    TJSON image{{"File", fImage.File},
                {"ImageType", fImage.ImageType},
                {"PrintImage", fImage.PrintImage},
                {"Embeded", fImage.Embeded}};
    WriteImageFields(image, fImage);
    obj["Image"] = std::move(image);
    TJSON mapping{{"File", fMapping.File},
                  {"ImageType", fMapping.ImageType},
                  {"PrintImage", fMapping.PrintImage},
                  {"Embeded", fMapping.Embeded},
                  {"Provider", fMapping.Provider},
                  {"Zoom", fMapping.Zoom},
                  {"Latitude", U::Round(fMapping.Latitude)},
                  {"Longitude", U::Round(fMapping.Longitude)},
                  {"ShowMapCenter", fMapping.ShowMapCenter}};
    WriteImageFields(mapping, fMapping);
    obj["Mapping"] = std::move(mapping);
    obj["Font"] = U::SetFont(fFont);
    obj["LineType"] = static_cast<int>(fLineType);
    obj["PenWidth"] = U::BaseToMM(fPenWidth);
    return obj;
}

void TORXLayer::ReadJson(std::int32_t version, const TJSON& obj) {
    (void)version;
    fName = U::GetString(obj, "Name");
    fColor = U::GetColor(obj, "Color");
    fBackColor = U::GetColor(obj, "BackColor");
    fFill = U::GetBool(obj, "Fill");
    fZPos = static_cast<std::int32_t>(U::GetInt(obj, "ZPos"));
    const TJSON& o = U::GetObject(obj, "Options");
    fOptions.Clear();
    const std::pair<const char*, TQVLayerOp> flags[] = {{"Visible", TQVLayerOp::lopVisible},
                                                        {"Print", TQVLayerOp::lopPrint},
                                                        {"Selectable", TQVLayerOp::lopSelectable},
                                                        {"Export", TQVLayerOp::lopExport},
                                                        {"Box", TQVLayerOp::lopBox},
                                                        {"Image", TQVLayerOp::lopImage},
                                                        {"Map", TQVLayerOp::lopMap},
                                                        {"PrintBack", TQVLayerOp::lopPrintBack},
                                                        {"ExportBack", TQVLayerOp::lopExportBack}};
    for (const auto& [key, op] : flags)
        if (U::GetBool(o, key)) fOptions.Include(op);
    ReadImageFields(U::GetObject(obj, "Image"), fImage);
    const TJSON& m = U::GetObject(obj, "Mapping");
    ReadImageFields(m, fMapping);
    fMapping.Provider = static_cast<std::int32_t>(U::GetInt(m, "Provider"));
    fMapping.Zoom = static_cast<std::int32_t>(U::GetInt(m, "Zoom"));
    fMapping.Latitude = U::GetFloat(m, "Latitude");
    fMapping.Longitude = U::GetFloat(m, "Longitude");
    fMapping.ShowMapCenter = U::GetBool(m, "ShowMapCenter");
    fFont = U::GetFont(U::GetObject(obj, "Font"));
    fLineType = ReadEnum<TQVLineType>(obj, "LineType", kLineTypeCount);
    fPenWidth = static_cast<std::int32_t>(U::MMToBase(U::GetFloat(obj, "PenWidth")));
}

TJSON TORXDimStyle::WriteJson() const {
    TJSON obj = TJSON::object();
    obj["ID"] = fID;
    obj["Name"] = fName;
    obj["DimColor"] = U::SetAlphaColor(fDimColor);
    obj["FillColor"] = U::SetAlphaColor(fFillColor);
    obj["ExtColor"] = U::SetAlphaColor(fExtColor);
    obj["HeadColor"] = U::SetAlphaColor(fHeadColor);
    obj["DimLineType"] = static_cast<int>(fDimLineType);
    obj["DimPenWidth"] = U::BaseToMM(fDimPenWidth);
    obj["ExtLineType"] = static_cast<int>(fExtLineType);
    obj["ExtPenWidth"] = U::BaseToMM(fExtPenWidth);
    obj["HeadType"] = static_cast<int>(fHeadType);
    obj["HeadSize"] = U::Round(fHeadSize);
    obj["ArrowOpen"] = fArrowOpen;
    obj["Font"] = U::SetFont(fFont);
    obj["TextPos"] = fTextPos;
    obj["RadialStyle"] = fRadialStyle;
    obj["DimBreak"] = fDimBreak;
    obj["DimSpace"] = U::Round(fDimSpace);
    obj["ExtSize"] = U::Round(fExtSize);
    obj["ExtGap"] = U::Round(fExtGap);
    obj["Format"] = fFormat;
    obj["Prefix"] = fPrefix;
    obj["Suffix"] = fSuffix;
    obj["Unit"] = fUnit;
    return obj;
}

void TORXDimStyle::ReadJson(std::int32_t version, const TJSON& obj) {
    (void)version;
    fID = static_cast<std::int32_t>(U::GetInt(obj, "ID"));
    fName = U::GetString(obj, "Name");
    fDimColor = U::GetColor(obj, "DimColor");
    fFillColor = U::GetColor(obj, "FillColor");
    fExtColor = U::GetColor(obj, "ExtColor");
    fHeadColor = U::GetColor(obj, "HeadColor");
    fDimLineType = ReadEnum<TQVLineType>(obj, "DimLineType", kLineTypeCount);
    fDimPenWidth = static_cast<std::int32_t>(U::MMToBase(U::GetFloat(obj, "DimPenWidth")));
    fExtLineType = ReadEnum<TQVLineType>(obj, "ExtLineType", kLineTypeCount);
    fExtPenWidth = static_cast<std::int32_t>(U::MMToBase(U::GetFloat(obj, "ExtPenWidth")));
    fHeadType = ReadEnum<TQVLTermType>(obj, "HeadType", kTermTypeCount);
    fHeadSize = static_cast<float>(U::GetFloat(obj, "HeadSize"));
    fArrowOpen = U::GetBool(obj, "ArrowOpen");
    fFont = U::GetFont(U::GetObject(obj, "Font"));
    fTextPos = static_cast<std::int32_t>(U::GetInt(obj, "TextPos"));
    fRadialStyle = static_cast<std::int32_t>(U::GetInt(obj, "RadialStyle"));
    fDimBreak = U::GetBool(obj, "DimBreak");
    fDimSpace = static_cast<float>(U::GetFloat(obj, "DimSpace"));
    fExtSize = static_cast<float>(U::GetFloat(obj, "ExtSize"));
    fExtGap = static_cast<float>(U::GetFloat(obj, "ExtGap"));
    fFormat = U::GetString(obj, "Format");
    fPrefix = U::GetString(obj, "Prefix");
    fSuffix = U::GetString(obj, "Suffix");
    fUnit = static_cast<std::int32_t>(U::GetInt(obj, "Unit"));
}

TJSON TORXCounter::WriteJson() const {
    return TJSON{{"Name", fName},     {"NumFrom", fNumFrom}, {"NumTo", fNumTo},   {"Step", fStep},
                 {"Repeat", fRepeat}, {"Format", fFormat},   {"Before", fBefore}, {"After", fAfter}};
}

void TORXCounter::ReadJson(std::int32_t version, const TJSON& obj) {
    (void)version;
    fName = U::GetString(obj, "Name");
    fNumFrom = U::GetInt(obj, "NumFrom");
    fNumTo = U::GetInt(obj, "NumTo");
    fStep = U::GetInt(obj, "Step");
    fRepeat = static_cast<std::int32_t>(U::GetInt(obj, "Repeat"));
    fFormat = U::GetString(obj, "Format");
    fBefore = U::GetString(obj, "Before");
    fAfter = U::GetString(obj, "After");
}

}  // namespace Orvex
