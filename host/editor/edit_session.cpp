#include "host/editor/edit_session.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "host/editor/edit_properties.h"
#include "host/editor/edit_tool_catalog.h"
#include "host/tools/tool_args.h"
#include "orvex/core/units.h"
#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

using A = TQVLEdAction;

// Device pixels are this many per screen pixel: the draw context's resolution is a whole number, and the
// finer grid keeps its rounding out of where a click lands.
constexpr double kDeviceSubPixels = 8.0;
constexpr float kPickGapPixels = 4.0f;

TQVLShiftState Modifiers(const TJSON& aRequest) {
    TQVLShiftState shift;
    if (aRequest.value("shift", false)) shift.Include(TQVLShift::ssShift);
    if (aRequest.value("ctrl", false)) shift.Include(TQVLShift::ssCtrl);
    if (aRequest.value("alt", false)) shift.Include(TQVLShift::ssAlt);
    return shift;
}

double Number(const TJSON& aRequest, const char* aKey) {
    const auto it = aRequest.find(aKey);
    if (it == aRequest.end() || !it->is_number() || !std::isfinite(it->get<double>()))
        throw std::invalid_argument(fmt::format("\"{}\" must be a number", aKey));
    return it->get<double>();
}

std::string Text(const TJSON& aRequest, const char* aKey) {
    const auto it = aRequest.find(aKey);
    if (it == aRequest.end() || !it->is_string())
        throw std::invalid_argument(fmt::format("\"{}\" must be a text", aKey));
    return it->get<std::string>();
}

std::optional<TQVLEdKey> KeyByName(std::string_view aName) {
    static constexpr std::pair<std::string_view, TQVLEdKey> kKeys[] = {
        {"Escape", TQVLEdKey::ekEscape},  {"Enter", TQVLEdKey::ekEnter},
        {"Delete", TQVLEdKey::ekDelete},  {"ArrowLeft", TQVLEdKey::ekLeft},
        {"ArrowUp", TQVLEdKey::ekUp},     {"ArrowRight", TQVLEdKey::ekRight},
        {"ArrowDown", TQVLEdKey::ekDown}, {"Backspace", TQVLEdKey::ekBackspace},
        {"Home", TQVLEdKey::ekHome},      {"End", TQVLEdKey::ekEnd}};
    for (const auto& [name, key] : kKeys)
        if (name == aName) return key;
    return std::nullopt;
}

bool IsTextTool(A aAction) {
    return aAction == A::eaText || aAction == A::eaParagraph || aAction == A::eaRichText;
}

std::size_t IndexOf(const std::vector<std::string_view>& aNames, const std::string& aName,
                    const char* aWhat) {
    for (std::size_t i = 0; i < aNames.size(); ++i)
        if (aNames[i] == aName) return i;
    throw std::invalid_argument(fmt::format("unknown {} \"{}\"", aWhat, aName));
}

// The message of a tool's error result.
std::string ResultText(const TJSON& aResult) {
    if (const auto content = aResult.find("content"); content != aResult.end() && content->is_array())
        for (const auto& part : *content)
            if (part.value("type", std::string()) == "text") return part.value("text", std::string());
    return "the action failed";
}

constexpr TQVLUnits kUnits[] = {TQVLUnits::unMM, TQVLUnits::unINCH, TQVLUnits::unCM, TQVLUnits::unDM,
                                TQVLUnits::unM,  TQVLUnits::unFt,   TQVLUnits::unYd};
constexpr TQVLEditorMode kModes[] = {TQVLEditorMode::emLabelling, TQVLEditorMode::emFlowChart,
                                     TQVLEditorMode::emDrawing, TQVLEditorMode::emInteractive};

}  // namespace

TEditSession::TEditSession(TORXBaseLabel& aDocument, TToolCaller aTools, TEditOptions aOptions)
    : fDoc(aDocument), fTools(std::move(aTools)), fOptions(std::move(aOptions)) {
    TORXEditor& editor = fDoc.Editor();
    editor.fSnap.Include(TQVLSnapMode::smGrid);
    SetView(fView.PixelsPerUnit);
}

TJSON TEditSession::Catalog() {
    TJSON tools = TJSON::array();
    for (const auto& tool : EditTools()) {
        tools.push_back({{"name", std::string(tool.Name)},
                         {"group", std::string(tool.Group)},
                         {"label", std::string(tool.Label)},
                         {"key", tool.Key ? std::string(1, tool.Key) : std::string()},
                         {"title", ActionText(tool.Action, TQVLEdState::edPickPoint)}});
    }
    TJSON units = TJSON::array();
    for (const auto unit : kUnits) units.push_back(UnitName(unit));
    TJSON modes = TJSON::array();
    for (const auto mode : kModes) modes.push_back(std::string(EditorModeName(mode)));
    TJSON flows = TJSON::array();
    for (const auto name : FlowTypeNames()) flows.push_back(std::string(name));
    TJSON links = TJSON::array();
    for (const auto name : LinkTypeNames()) links.push_back(std::string(name));
    return {{"tools", std::move(tools)},
            {"flow_shapes", std::move(flows)},
            {"link_types", std::move(links)},
            {"units", std::move(units)},
            {"modes", std::move(modes)}};
}

TJSON TEditSession::Handle(const TJSON& aRequest) {
    if (!aRequest.is_object()) throw std::invalid_argument("a request is a JSON object");
    const std::string op = Text(aRequest, "op");
    fMessage.clear();
    const std::int32_t firstNewStep = fDoc.NextUndoGroup();
    TJSON answer;
    if (op == "pointer")
        answer = Pointer(aRequest);
    else if (op == "key")
        answer = Key(aRequest);
    else if (op == "chars") {
        fDoc.KeyPressEditor(Text(aRequest, "text"));
        AfterEvent();
        answer = TJSON::object();
    } else if (op == "tool")
        answer = Tool(aRequest);
    else if (op == "command")
        answer = Command(Text(aRequest, "name"));
    else if (op == "settings")
        answer = Settings(aRequest);
    else if (op == "property") {
        Settle();
        SetSelectionProperty(fDoc, Text(aRequest, "name"),
                             aRequest.contains("value") ? aRequest["value"] : TJSON());
        answer = TJSON::object();
    } else if (op == "layer")
        answer = Layer(aRequest);
    else if (op == "page")
        answer = Page(aRequest);
    else if (op == "file")
        answer = File(aRequest);
    else if (op == "catalog")
        answer = Catalog();
    else if (op == "state")
        answer = State();
    else
        throw std::invalid_argument(fmt::format("unknown request \"{}\"", op));
    for (const std::int32_t step : fDoc.UndoGroups(firstNewStep)) fPersonSteps.insert(step);
    answer["ok"] = true;
    return answer;
}

void TEditSession::SetView(double aPixelsPerUnit) {
    if (!(aPixelsPerUnit > 1e-4 && aPixelsPerUnit < 1e5)) return;
    fView.PixelsPerUnit = aPixelsPerUnit;
    TORXBaseDraw& draw = fDoc.Editor().fDraw;
    const std::int64_t scale = std::max<std::int64_t>(1, fDoc.Measure().fDrawScale);
    const double inch = static_cast<double>(kBasePerInch) * static_cast<double>(scale);
    const double basePerUnit = static_cast<double>(TJSONUtils::UnitToBase(1000.0, fDoc.Units())) / 1000.0;
    const double dpi = aPixelsPerUnit / basePerUnit * inch * kDeviceSubPixels;
    draw.fDpix = draw.fDpiy = static_cast<std::int32_t>(std::clamp(std::llround(dpi), 1LL, 2000000000LL));
    draw.fDX = draw.fDY = 0;
    draw.fDrawScale = scale;
    fDeviceScale = static_cast<double>(draw.fDpix) / inch;
    // The pick gap stays the same number of screen pixels whatever the rounding of the resolution.
    fDoc.Editor().fPickGap =
        static_cast<float>(kPickGapPixels * kDeviceSubPixels * static_cast<double>(draw.fDpix) / dpi);
}

std::pair<float, float> TEditSession::ToDevice(double aX, double aY) const {
    const double basePerUnit = static_cast<double>(TJSONUtils::UnitToBase(1000.0, fDoc.Units())) / 1000.0;
    return {static_cast<float>(aX * basePerUnit * fDeviceScale),
            static_cast<float>(aY * basePerUnit * fDeviceScale)};
}

TJSON TEditSession::Pointer(const TJSON& aRequest) {
    if (aRequest.contains("ppu")) SetView(Number(aRequest, "ppu"));
    const auto [x, y] = ToDevice(Number(aRequest, "x"), Number(aRequest, "y"));
    const TQVLShiftState shift = Modifiers(aRequest);
    const std::string kind = Text(aRequest, "kind");
    const std::int32_t before = fDoc.GetItemsCount();
    if (kind == "down") {
        fDoc.PickEditor(x, y, shift);
    } else if (kind == "move") {
        fDoc.MoveEditor(x, y, shift);
    } else if (kind == "up") {
        fDoc.UpEditor(x, y, shift);
        EditNewText(before);
    } else if (kind == "right") {
        fDoc.RightButton(x, y, shift);
    } else if (kind == "double") {
        BeginTextEditAt(x, y);
    } else {
        throw std::invalid_argument(fmt::format("unknown pointer event \"{}\"", kind));
    }
    // The snap mark shows where a drawing tool's next point lands; the selection tool shows guides instead.
    fView.Snap.reset();
    const A action = fDoc.GetAction();
    if (kind != "up" && !fDoc.Editor().fSnap.IsEmpty() && action != A::eaSelection && action != A::eaMove &&
        action != A::eaEdText) {
        TQVLPto64 p = fDoc.Editor().ToBase(x, y);
        TQVLSnapHit hit;
        if (fDoc.SearchPoint(p.X, p.Y, hit)) fView.Snap = hit;
    }
    AfterEvent();
    return TJSON::object();
}

void TEditSession::EditNewText(std::int32_t aCountBefore) {
    const A action = fDoc.GetAction();
    if (!IsTextTool(action) || fDoc.GetItemsCount() <= aCountBefore) return;
    const TORXBaseItem* item = fDoc.GetItem(fDoc.GetItemsCount() - 1);
    const TQVLRect bounds = item->BoundsRect();
    const auto cx = static_cast<float>(static_cast<double>((bounds.Left + bounds.Right) / 2) * fDeviceScale);
    const auto cy = static_cast<float>(static_cast<double>((bounds.Top + bounds.Bottom) / 2) * fDeviceScale);
    BeginTextEditAt(cx, cy);
    TORXEditor& editor = fDoc.Editor();
    if (editor.TextEdit().Item != item) return;
    // The new text shows the tool's name until it is typed over; the whole edit stays one undo step.
    fDoc.KeyEditor(TQVLEdKey::ekEnd, TQVLShiftState{TQVLShift::ssCtrl});
    for (std::size_t guard = editor.TextEdit().Text.size(); guard > 0 && !editor.TextEdit().Text.empty();
         --guard)
        fDoc.KeyEditor(TQVLEdKey::ekBackspace, {});
}

void TEditSession::BeginTextEditAt(float aX, float aY) {
    const A action = fDoc.GetAction();
    if (action != A::eaEdText) {
        fReturnTool = action;
        fDoc.SetAction(A::eaEdText);
    }
    fDoc.PickEditor(aX, aY, {});
    fDoc.UpEditor(aX, aY, {});
    AfterEvent();
}

void TEditSession::AfterEvent() {
    if (fReturnTool && fDoc.Editor().TextEdit().Item == nullptr && fDoc.GetAction() == A::eaEdText) {
        const A back = *fReturnTool;
        fReturnTool.reset();
        fDoc.SetAction(back);
    }
}

void TEditSession::Settle() {
    fDoc.Editor().Cancel();
    fView.Snap.reset();
    AfterEvent();
}

TJSON TEditSession::Key(const TJSON& aRequest) {
    const std::string name = Text(aRequest, "key");
    const auto key = KeyByName(name);
    if (!key) throw std::invalid_argument(fmt::format("the editor takes no key \"{}\"", name));
    fDoc.KeyEditor(*key, Modifiers(aRequest));
    if (*key == TQVLEdKey::ekEscape) fView.Snap.reset();
    AfterEvent();
    return TJSON::object();
}

TJSON TEditSession::Tool(const TJSON& aRequest) {
    const std::string name = Text(aRequest, "name");
    const auto action = EditToolByName(name);
    if (!action) throw std::invalid_argument(fmt::format("unknown tool \"{}\"", name));
    fReturnTool.reset();
    fView.Snap.reset();
    if (*action == A::eaFlow && aRequest.contains("shape")) {
        fDoc.FlowAction(
            static_cast<TQVLFlowType>(IndexOf(FlowTypeNames(), Text(aRequest, "shape"), "flow shape")));
    } else if (*action == A::eaLink && aRequest.contains("course")) {
        fDoc.LinkAction(
            static_cast<TQVLinkType>(IndexOf(LinkTypeNames(), Text(aRequest, "course"), "link course")));
    } else {
        fDoc.SetAction(*action);
    }
    return TJSON::object();
}

void TEditSession::UndoPersonStep() {
    const std::vector<std::int32_t> steps = fDoc.UndoGroups();
    const auto own = std::find_if(steps.rbegin(), steps.rend(),
                                  [&](std::int32_t step) { return fPersonSteps.contains(step); });
    if (own == steps.rend()) {
        fMessage = "Nothing of yours to undo.";
        return;
    }
    if (!fDoc.UndoStep(*own))
        fMessage =
            "Your last step changed items that the agent has changed since; undo the agent's steps "
            "first.";
}

TJSON TEditSession::Command(const std::string& aName) {
    // A text being typed or a gesture in progress ends before the command acts on the drawing; Undo drops
    // it, as it is not a step yet.
    if (aName == "undo" || aName == "redo") {
        Settle();
        if (aName == "undo")
            UndoPersonStep();
        else
            fDoc.Redo();
    } else if (aName == "copy") {
        fDoc.CopySelection();
    } else if (aName == "cut" || aName == "delete") {
        Settle();
        if (aName == "cut") fDoc.CopySelection();
        fDoc.DeleteSelection();
    } else if (aName == "paste") {
        Settle();
        fDoc.PasteSelection();
    } else if (aName == "front") {
        fDoc.BringToFront();
    } else if (aName == "back") {
        fDoc.SendToBack();
    } else if (aName == "rotate-left") {
        fDoc.RotateLeft();
    } else if (aName == "rotate-right") {
        fDoc.RotateRight();
    } else if (aName == "escape") {
        Settle();
        fDoc.ClearSelection(true);
    } else {
        throw std::invalid_argument(fmt::format("unknown command \"{}\"", aName));
    }
    fDoc.FillSelPoints();
    fDoc.EndUpdate();
    return TJSON::object();
}

TJSON TEditSession::Settings(const TJSON& aRequest) {
    TORXEditor& editor = fDoc.Editor();
    if (aRequest.contains("grid")) fView.Grid = aRequest["grid"].get<bool>();
    if (aRequest.contains("snap")) {
        fSnapOn = aRequest["snap"].get<bool>();
        editor.fSnap = fSnapOn ? TQVLSnapModes{TQVLSnapMode::smGrid, TQVLSnapMode::smEndPoint,
                                               TQVLSnapMode::smMidPoint, TQVLSnapMode::smCenter}
                               : TQVLSnapModes{};
        editor.fRefLines = fSnapOn;
        editor.fAlignLines = fSnapOn;
        fView.Snap.reset();
    }
    if (aRequest.contains("grid_step")) {
        const double step = Number(aRequest, "grid_step");
        const std::int64_t base = TJSONUtils::UnitToBase(step, fDoc.Units());
        if (base < 10 || base > 100'000'000)
            throw std::invalid_argument(
                fmt::format("a grid step of {:g} {} is out of range", step, UnitName(fDoc.Units())));
        editor.fGridX = editor.fGridY = base;
    }
    return TJSON::object();
}

TJSON TEditSession::Layer(const TJSON& aRequest) {
    const std::string action = Text(aRequest, "action");
    const auto index = static_cast<std::int32_t>(aRequest.value("index", 0));
    if (action == "add") {
        TJSON args = TJSON::object();
        if (aRequest.contains("name")) args["name"] = Text(aRequest, "name");
        CallTool("add_layer", args);
        return TJSON::object();
    }
    if (fDoc.GetLayer(index) == nullptr)
        throw std::invalid_argument(fmt::format("there is no layer {}", index));
    if (action == "rename") {
        CallTool("modify_layer", {{"layer", index}, {"name", Text(aRequest, "name")}});
    } else if (action == "visible" || action == "locked") {
        const bool on = aRequest.value("value", true);
        CallTool("modify_layer",
                 {{"layer", index},
                  {action == "visible" ? "visible" : "selectable", action == "visible" ? on : !on}});
    } else if (action == "activate") {
        CallTool("modify_layer", {{"layer", index}, {"active", true}});
    } else if (action == "up" || action == "down") {
        const std::int32_t other = action == "up" ? index - 1 : index + 1;
        if (fDoc.GetLayer(other) == nullptr) throw std::invalid_argument("the layer is already at that end");
        fDoc.ExchangeLayers(index, other);
        fDoc.SortItemsZLayer();
        fDoc.EndUpdate();
    } else if (action == "delete") {
        Settle();
        if (fDoc.GetLayersCount() <= 1) throw std::invalid_argument("the last layer stays");
        fDoc.ClearSelection(true);
        fDoc.DeleteLayer(index);
        fDoc.EndUpdate();
    } else {
        throw std::invalid_argument(fmt::format("unknown layer action \"{}\"", action));
    }
    return TJSON::object();
}

TJSON TEditSession::Page(const TJSON& aRequest) {
    Settle();
    if (aRequest.contains("mode")) {
        const std::string mode = Text(aRequest, "mode");
        const auto it = std::find_if(std::begin(kModes), std::end(kModes),
                                     [&](TQVLEditorMode m) { return EditorModeName(m) == mode; });
        if (it == std::end(kModes)) throw std::invalid_argument(fmt::format("unknown mode \"{}\"", mode));
        fDoc.SetEditorMode(*it);
    }
    if (aRequest.contains("units")) {
        const std::string units = Text(aRequest, "units");
        const auto it = std::find_if(std::begin(kUnits), std::end(kUnits),
                                     [&](TQVLUnits u) { return UnitName(u) == units; });
        if (it == std::end(kUnits)) throw std::invalid_argument(fmt::format("unknown unit \"{}\"", units));
        fDoc.SetUnits(*it);
    }
    TORXMeasure& measure = fDoc.Measure();
    if (aRequest.contains("scale")) {
        const double scale = Number(aRequest, "scale");
        if (scale < 1 || scale > 1'000'000 || scale != std::floor(scale))
            throw std::invalid_argument("the scale is a whole number N of 1:N, from 1 to 1000000");
        measure.fDrawScale = static_cast<std::int64_t>(scale);
    }
    for (const char* side : {"width", "height"}) {
        if (!aRequest.contains(side)) continue;
        const std::int64_t base = TJSONUtils::UnitToBase(Number(aRequest, side), fDoc.Units());
        if (base < 1000 || base > 10'000'000)
            throw std::invalid_argument(fmt::format("the paper's {} must lie between 1 mm and 10 m", side));
        (std::string_view(side) == "width" ? measure.fLabelWidth : measure.fLabelHeight) = base;
    }
    fDoc.ChangeState(TOrvexState::lsUpdateMeasure);
    fDoc.EndUpdate();
    SetView(fView.PixelsPerUnit);
    return TJSON::object();
}

TJSON TEditSession::CallTool(const std::string& aTool, const TJSON& aArgs) {
    TJSON result = fTools(aTool, aArgs);
    fDoc.EndUpdate();
    if (result.value("isError", false)) {
        std::string message = ResultText(result);
        if (const auto s = result.find("structuredContent"); s != result.end() && s->contains("diagnostics"))
            throw std::invalid_argument(
                TJSON({{"message", message}, {"diagnostics", (*s)["diagnostics"]}}).dump());
        throw std::invalid_argument(message);
    }
    return result;
}

TJSON TEditSession::File(const TJSON& aRequest) {
    const std::string action = Text(aRequest, "action");
    TJSON args = TJSON::object();
    const bool hasPath = aRequest.contains("path") && !Text(aRequest, "path").empty();
    if (hasPath) args["path"] = Text(aRequest, "path");
    if (action == "list") {
        TJSON files = TJSON::array();
        if (fOptions.FilesRoot) {
            std::error_code ec;
            for (const auto& entry : std::filesystem::directory_iterator(*fOptions.FilesRoot, ec))
                if (entry.is_regular_file(ec) && entry.path().extension() == ".json")
                    files.push_back(entry.path().filename().string());
            std::sort(files.begin(), files.end());
        }
        return {{"files", std::move(files)},
                {"root", fOptions.FilesRoot.has_value()},
                {"current", fOptions.FileName}};
    }
    Settle();
    if (action == "open") {
        if (!hasPath) throw std::invalid_argument("name the drawing to open");
        TJSON result = CallTool("load_drawing", args);
        fOptions.FileName = args["path"].get<std::string>();
        fDoc.RemoveState(TOrvexState::lsModified);
        fMessage = fmt::format("opened {}", fOptions.FileName);
        return {{"result", std::move(result)}};
    }
    if (action == "save") {
        if (!hasPath && !fOptions.FileName.empty() && fOptions.FilesRoot) args["path"] = fOptions.FileName;
        TJSON result = CallTool("save_drawing", args);
        if (args.contains("path")) {
            fOptions.FileName = args["path"].get<std::string>();
            fMessage = fmt::format("saved {}", fOptions.FileName);
        }
        fDoc.RemoveState(TOrvexState::lsModified);
        return {{"result", std::move(result)}};
    }
    if (action == "export") {
        args["format"] = Text(aRequest, "format");
        TJSON result = CallTool("export_document", args);
        if (hasPath) fMessage = fmt::format("exported {}", args["path"].get<std::string>());
        return {{"result", std::move(result)}};
    }
    if (action == "import") {
        TJSON result = CallTool("load_diagram", {{"text", Text(aRequest, "text")},
                                                 {"format", aRequest.value("format", std::string("auto"))}});
        fMessage = "imported the diagram";
        return {{"result", std::move(result)}};
    }
    throw std::invalid_argument(fmt::format("unknown file action \"{}\"", action));
}

TJSON TEditSession::State() const {
    const TORXEditor& editor = fDoc.Editor();
    TJSON layers = TJSON::array();
    for (std::int32_t i = 1; i <= fDoc.GetLayersCount(); ++i) {
        const TORXLayer* layer = fDoc.GetLayer(i);
        layers.push_back({{"index", i},
                          {"name", layer->fName},
                          {"visible", layer->fOptions.Contains(TQVLayerOp::lopVisible)},
                          {"locked", !layer->fOptions.Contains(TQVLayerOp::lopSelectable)},
                          {"active", fDoc.GetActiveLayer() == layer}});
    }
    const TORXMeasure& measure = fDoc.Measure();
    const TQVLTextEdit& edit = editor.TextEdit();
    return {{"tool", std::string(EditToolName(fDoc.GetAction()))},
            {"step", ActionText(fDoc.GetAction(), fDoc.EdState())},
            {"flow_shape", std::string(FlowTypeNames()[static_cast<std::size_t>(fDoc.ActionFlowType())])},
            {"link_course", std::string(LinkTypeNames()[static_cast<std::size_t>(fDoc.ActionLinkType())])},
            {"can_undo", !fDoc.IsUndoEmpty()},
            {"can_redo", !fDoc.IsRedoEmpty()},
            {"items", fDoc.GetItemsCount()},
            {"modified", fDoc.HasState(TOrvexState::lsModified)},
            {"editing_text", edit.Item != nullptr},
            {"text", edit.Item != nullptr ? edit.Text : std::string()},
            {"selection", SelectionProperties(fDoc)},
            {"layers", std::move(layers)},
            {"page",
             {{"mode", std::string(EditorModeName(fDoc.EditorMode()))},
              {"units", UnitName(fDoc.Units())},
              {"scale", measure.fDrawScale},
              {"width", TJSONUtils::BaseToUnit(measure.fLabelWidth, fDoc.Units())},
              {"height", TJSONUtils::BaseToUnit(measure.fLabelHeight, fDoc.Units())}}},
            {"grid", fView.Grid},
            {"snap", fSnapOn},
            {"grid_step", TJSONUtils::BaseToUnit(editor.fGridX, fDoc.Units())},
            {"file", fOptions.FileName},
            {"files", fOptions.FilesRoot.has_value()},
            {"message", fMessage}};
}

void TEditSession::Publish() {
    fStore.Publish(fDoc.SVG(TQVLExportSVG::esEmbedded, 1.0f, true), EditOverlaySVG(fDoc, fView),
                   State().dump());
}

}  // namespace Orvex::Host
