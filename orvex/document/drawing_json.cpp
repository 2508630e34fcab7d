// The drawing file: the envelope, the document-level objects and the arrays of symbols, layers,
// dimension styles, counters and items. Lengths in the sub-objects are millimetres; points are in the
// document's unit.
#include <fmt/format.h>

#include <algorithm>

#include "orvex/document/document.h"
#include "orvex/io/json_text.h"
#include "orvex/io/json_utils.h"
#include "orvex/io/json_writer.h"
#include "orvex/messages/messages.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

// How a reader's warning names a value that is not what it should be.
std::string_view JsonKindName(const TJSON& value) {
    switch (value.type()) {
        case TJSON::value_t::null:
            return "null";
        case TJSON::value_t::object:
            return "an object";
        case TJSON::value_t::array:
            return "an array";
        case TJSON::value_t::string:
            return "a string";
        case TJSON::value_t::boolean:
            return "a Boolean";
        case TJSON::value_t::number_integer:
        case TJSON::value_t::number_unsigned:
        case TJSON::value_t::number_float:
            return "a number";
        case TJSON::value_t::binary:
        case TJSON::value_t::discarded:
            break;
    }
    return "an unusable value";
}

constexpr std::int32_t kAngleVersion = 3100;  // files before it stored no document angle

bool HasDimStyles(TQVLEditorMode mode) {
    return mode == TQVLEditorMode::emDrawing || mode == TQVLEditorMode::emInteractive;
}

TJSON WriteMeasures(const TORXMeasure& m) {
    return TJSON{{"LabelName", m.fLabelName},
                 {"Author", m.fAuthor},
                 {"Note", m.fNote},
                 {"LabelWidth", U::BaseToMM(m.fLabelWidth)},
                 {"LabelHeight", U::BaseToMM(m.fLabelHeight)},
                 {"MarginLeft", U::BaseToMM(m.fMarginLeft)},
                 {"MarginTop", U::BaseToMM(m.fMarginTop)},
                 {"Rows", m.fRows},
                 {"Columns", m.fColumns},
                 {"RowGap", U::BaseToMM(m.fRowGap)},
                 {"ColumnGap", U::BaseToMM(m.fColumnGap)},
                 {"PaperWidth", U::BaseToMM(m.fPaperWidth)},
                 {"PaperHeight", U::BaseToMM(m.fPaperHeight)},
                 {"PaperSize", m.fPaperSize},
                 {"PaperName", m.fPaperName},
                 {"DrawScale", m.fDrawScale},
                 {"ContinousPaper", m.fContinousPaper},
                 {"LabelType", m.fLabelType},
                 {"InnerCircle", U::BaseToMM(m.fInnerCircle)},
                 {"Format", m.fFormat},
                 {"IncludeUnit", m.fIncludeUnit},
                 {"Promoter", m.fPromoter},
                 {"Project", m.fProject},
                 {"Title", m.fTitle},
                 {"Date", m.fDate},
                 {"PlanNumber", m.fPlanNumber}};
}

void ReadMeasures(const TJSON& o, TORXMeasure& m) {
    m.fLabelName = U::GetString(o, "LabelName");
    m.fAuthor = U::GetString(o, "Author");
    m.fNote = U::GetString(o, "Note");
    m.fLabelWidth = U::MMToBase(U::GetFloat(o, "LabelWidth"));
    m.fLabelHeight = U::MMToBase(U::GetFloat(o, "LabelHeight"));
    m.fMarginLeft = U::MMToBase(U::GetFloat(o, "MarginLeft"));
    m.fMarginTop = U::MMToBase(U::GetFloat(o, "MarginTop"));
    m.fRows = static_cast<std::int32_t>(U::GetInt(o, "Rows"));
    m.fColumns = static_cast<std::int32_t>(U::GetInt(o, "Columns"));
    m.fRowGap = U::MMToBase(U::GetFloat(o, "RowGap"));
    m.fColumnGap = U::MMToBase(U::GetFloat(o, "ColumnGap"));
    m.fPaperWidth = U::MMToBase(U::GetFloat(o, "PaperWidth"));
    m.fPaperHeight = U::MMToBase(U::GetFloat(o, "PaperHeight"));
    m.fPaperSize = static_cast<std::int32_t>(U::GetInt(o, "PaperSize"));
    m.fPaperName = U::GetString(o, "PaperName");
    // A scale of 0 would divide by zero wherever real sizes are shown; 1:1 is the neutral reading.
    m.fDrawScale = std::max<std::int64_t>(1, U::GetInt(o, "DrawScale"));
    m.fContinousPaper = U::GetBool(o, "ContinousPaper");
    m.fLabelType = static_cast<std::int32_t>(U::GetInt(o, "LabelType"));
    m.fInnerCircle = U::MMToBase(U::GetFloat(o, "InnerCircle"));
    m.fFormat = U::GetString(o, "Format");
    m.fIncludeUnit = U::GetBool(o, "IncludeUnit");
    m.fPromoter = U::GetString(o, "Promoter");
    m.fProject = U::GetString(o, "Project");
    m.fTitle = U::GetString(o, "Title");
    m.fDate = U::GetString(o, "Date");
    m.fPlanNumber = U::GetString(o, "PlanNumber");
}

TJSON WriteBackSurf(const TORXBackSurf& b) {
    return TJSON{{"Color", U::SetAlphaColor(b.fColor)},
                 {"ToColor", U::SetAlphaColor(b.fToColor)},
                 {"Print", b.fPrint},
                 {"FileNameImg", b.fFileNameImg},
                 {"Style", b.fStyle}};
}

void ReadBackSurf(const TJSON& o, TORXBackSurf& b) {
    b.fColor = U::GetColor(o, "Color");
    b.fToColor = U::GetColor(o, "ToColor");
    b.fPrint = U::GetBool(o, "Print");
    b.fFileNameImg = U::GetString(o, "FileNameImg");
    b.fStyle = static_cast<std::int32_t>(U::GetInt(o, "Style"));
}

TJSON WriteSettings(const TORXSettings& s) {
    return TJSON{{"TermColor", U::SetAlphaColor(s.fTermColor)},
                 {"FillTermColor", U::SetAlphaColor(s.fFillTermColor)},
                 {"TermSize", U::Round(s.fTermSize)},
                 {"LinkGap", U::Round(s.fLinkGap)}};
}

void ReadSettings(const TJSON& o, TORXSettings& s) {
    s.fTermColor = U::GetColor(o, "TermColor");
    s.fFillTermColor = U::GetColor(o, "FillTermColor");
    s.fTermSize = static_cast<float>(U::GetFloat(o, "TermSize"));
    s.fLinkGap = static_cast<float>(U::GetFloat(o, "LinkGap"));
}

TJSON WritePrintInfo(const TORXBasePrintInfo& p) {
    return TJSON{{"NumLabels", p.fNumLabels},
                 {"Repetition", p.fRepetition},
                 {"PrinterOrientation", p.fPrinterOrientation}};
}

TJSON WriteData(const TORXData& d) {
    return TJSON{{"DataType", d.fDataType},
                 {"LinkData", d.fLinkData},
                 {"DataSource", d.fDataSource},
                 {"FieldRepeat", d.fFieldRepeat},
                 {"SaveJson", d.fSaveJson},
                 {"DataJson", d.fDataJson},
                 {"CsvFileName", d.fCsvFileName},
                 {"CsvHeader", d.fCsvHeader},
                 {"CsvSeparator", d.fCsvSeparator},
                 {"CsvQuote", d.fCsvQuote},
                 {"CsvFields", U::SetStrings(d.fCsvFields)},
                 {"ValList", U::SetStrings(d.fValList)},
                 {"ListAsk", U::SetStrings(d.fListAsk)}};
}

void ReadData(const TJSON& o, TORXData& d) {
    d.fDataType = static_cast<std::int32_t>(U::GetInt(o, "DataType"));
    d.fLinkData = U::GetBool(o, "LinkData");
    d.fDataSource = U::GetString(o, "DataSource");
    d.fFieldRepeat = U::GetString(o, "FieldRepeat");
    d.fSaveJson = U::GetBool(o, "SaveJson");
    d.fDataJson = U::GetString(o, "DataJson");
    d.fCsvFileName = U::GetString(o, "CsvFileName");
    d.fCsvHeader = U::GetBool(o, "CsvHeader");
    d.fCsvSeparator = U::GetString(o, "CsvSeparator");
    d.fCsvQuote = U::GetString(o, "CsvQuote");
    d.fCsvFields = U::GetStrings(o, "CsvFields");
    d.fValList = U::GetStrings(o, "ValList");
    d.fListAsk = U::GetStrings(o, "ListAsk");
}
}  // namespace

namespace {
// Everything the drawing's JSON holds but its items, which the two writers below add in their own ways.
TJSON EnvelopeJson(const TORXBaseLabel& doc) {
    TJSON obj = TJSON::object();
    obj["Version"] = kDrawingVersion;
    obj["EditorMode"] = static_cast<int>(doc.EditorMode());
    obj["Units"] = static_cast<int>(doc.Measure().fUnits);
    obj["Angle"] = static_cast<int>(doc.Angle());
    obj["Measures"] = WriteMeasures(doc.Measure());
    obj["BackSurface"] = WriteBackSurf(doc.BackSurf());
    obj["Settings"] = WriteSettings(doc.Settings());
    obj["PrintInfo"] = WritePrintInfo(doc.PrintInfo());
    obj["Data"] = WriteData(doc.Data());
    TJSON symbols = TJSON::array();
    for (std::int32_t i = 1; i <= doc.GetSymbolsCount(); ++i)
        symbols.push_back(doc.GetSymbol(i)->WriteJson());
    obj["Symbols"] = std::move(symbols);
    TJSON layers = TJSON::array();
    for (std::int32_t i = 1; i <= doc.GetLayersCount(); ++i) layers.push_back(doc.GetLayer(i)->WriteJson());
    obj["Layers"] = std::move(layers);
    if (HasDimStyles(doc.EditorMode())) {
        TJSON styles = TJSON::array();
        for (std::int32_t i = 1; i <= doc.GetDimStylesCount(); ++i)
            styles.push_back(doc.GetDimStyle(i)->WriteJson());
        obj["DimStyles"] = std::move(styles);
    }
    TJSON counters = TJSON::array();
    for (std::int32_t i = 1; i <= doc.GetCountersCount(); ++i)
        counters.push_back(doc.GetCounter(i)->WriteJson());
    obj["Counters"] = std::move(counters);
    return obj;
}
}  // namespace

TJSON TORXBaseLabel::GetJson() const {
    TJSON obj = EnvelopeJson(*this);
    TJSON items = TJSON::array();
    items.get_ref<TJSON::array_t&>().reserve(fItems.size());
    for (const auto& item : fItems) items.push_back(item->WriteJson());
    obj["Items"] = std::move(items);
    return obj;
}

// The same text as GetJson().dump(indent), written one item at a time: a large drawing's items never exist
// as one JSON tree, whose building and freeing would cost more than the writing.
std::string TORXBaseLabel::GetJsonString(int indent) const {
    TJSON envelope = EnvelopeJson(*this);
    envelope["Items"] = TJSON::array();
    std::string out = envelope.dump(indent);
    if (fItems.empty()) return out;
    // "Items" is the last key, so the text ends with its empty array and the closing brace.
    const std::string tail = indent < 0 ? "]}" : "]\n}";
    out.resize(out.size() - tail.size());
    const std::string itemIndent =
        indent < 0 ? "" : "\n" + std::string(2 * static_cast<std::size_t>(indent), ' ');
    // Each item is written straight into the text at the depth it has in the whole (inside the object and
    // its "Items" array); kinds with a property table never build a tree for it.
    TJsonTextWriter writer(out, indent, 2);
    constexpr std::size_t kSampleItems = 64;  // enough items to reserve the whole text from their average
    const std::size_t envelopeSize = out.size();
    std::size_t written = 0;
    for (const auto& item : fItems) {
        if (written > 0) out += ',';
        out += itemIndent;
        item->WriteJsonTo(writer);
        if (++written == kSampleItems && fItems.size() > 2 * kSampleItems)
            out.reserve(envelopeSize + (out.size() - envelopeSize) / written * fItems.size() * 9 / 8);
    }
    if (indent >= 0) out += "\n" + std::string(static_cast<std::size_t>(indent), ' ');
    out += tail;
    return out;
}

void TORXBaseLabel::AddReadWarning(std::string message) {
    if (fReadingItem >= 0) fReadWarnings.push_back(fmt::format("Items[{}] {}", fReadingItem, message));
}

void TORXBaseLabel::ReadJson(const TJSON& obj) {
    BeginRead(false);
    Clear(
        TQVLClears{TQVLClear::cleItems, TQVLClear::cleLayers, TQVLClear::cleBaseLayer, TQVLClear::cleCounters,
                   TQVLClear::cleSymbols, TQVLClear::cleUndoRedo, TQVLClear::cleDimStyles},
        true);
    const auto version = static_cast<std::int32_t>(U::GetInt(obj, "Version"));
    fEditorMode = static_cast<TQVLEditorMode>(std::clamp<std::int64_t>(U::GetInt(obj, "EditorMode"), 0, 3));
    const bool dimStyles = HasDimStyles(fEditorMode);
    if (dimStyles) Clear(TQVLClears{TQVLClear::cleDimStyles, TQVLClear::cleBaseStyle}, true);
    fMeasure.fUnits =
        static_cast<TQVLUnits>(std::clamp<std::int64_t>(U::GetInt(obj, "Units"), 0, kUnitCount - 1));
    fAngle = version >= kAngleVersion
                 ? static_cast<TQVLAngle>(std::clamp<std::int64_t>(U::GetInt(obj, "Angle"), 0, 3))
                 : TQVLAngle::ag0;
    const TQVLUnits units = fMeasure.fUnits;
    ReadMeasures(U::GetObject(obj, "Measures"), fMeasure);
    fMeasure.fUnits = units;
    ReadBackSurf(U::GetObject(obj, "BackSurface"), fBackSurf);
    ReadSettings(U::GetObject(obj, "Settings"), fSettings);
    ReadData(U::GetObject(obj, "Data"), fData);
    fReadWarnings.clear();
    fReadingItem = -1;
    std::size_t index = 0;
    for (const auto& element : U::GetArray(obj, "Symbols")) {
        // The symbol keeps its object as text; one nested beyond what a reader takes could not be written
        // back out, so it is kept empty, as a non-object is.
        if (!JsonTreeNestingWithin(element, kJSONMaxDepth))
            fReadWarnings.push_back(
                fmt::format("Symbols[{}] nests deeper than {} levels; read as empty", index, kJSONMaxDepth));
        else if (!element.is_object())
            fReadWarnings.push_back(
                fmt::format("Symbols[{}] is {}, not an object; read as empty", index, JsonKindName(element)));
        AddSymbol()->ReadJson(element);
        ++index;
    }
    for (const auto& element : U::GetArray(obj, "Layers")) {
        fLayers.push_back(std::make_unique<TORXLayer>(this, std::string{}));
        fLayers.back()->ReadJson(version, element);
    }
    // Items need a layer to stand on.
    if (fLayers.empty())
        fLayers.push_back(std::make_unique<TORXLayer>(this, TORXMsg::GetPropValue("Default")));
    if (dimStyles) {
        for (const auto& element : U::GetArray(obj, "DimStyles")) {
            TORXDimStyle* style = AddDimStyle(std::string{});
            style->ReadJson(version, element);
            fNextDimStyleID = std::max(fNextDimStyleID, style->fID + 1);
        }
    }
    if (fDimStyles.empty()) ResetDimStyles();
    for (const auto& element : U::GetArray(obj, "Counters")) AddCounter()->ReadJson(version, element);
    index = 0;
    for (const auto& element : U::GetArray(obj, "Items")) {
        const std::size_t at = index++;
        if (!element.is_object()) {
            fReadWarnings.push_back(
                fmt::format("Items[{}] is {}, not an item object; skipped", at, JsonKindName(element)));
            continue;
        }
        const std::int64_t type = U::GetInt(element, "Type");
        TORXBaseItem* item = type >= 0 && type <= 255 ? CreateItem(static_cast<TQVLItemType>(type)) : nullptr;
        if (item == nullptr) {  // a kind this family does not know
            const std::string name = U::GetString(element, "TypeName");
            fReadWarnings.push_back(fmt::format("Items[{}] has the unknown item type {}{}; skipped", at, type,
                                                name.empty() ? "" : fmt::format(" (\"{}\")", name)));
            continue;
        }
        fReadingItem = static_cast<std::int64_t>(at);
        item->ReadJson(version, element);  // kinds with derived values queue their own recalculation
    }
    fReadingItem = -1;
    EndRead(true);
}

}  // namespace Orvex
